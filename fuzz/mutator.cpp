// SPDX-License-Identifier: MIT
#include "mutator.h"

#include "agent_calls.h"
#include "protocol_words.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace fuzz {
namespace {

// Objects nested more deeply than this cost time, and cJSON refuses them at some depth.
constexpr int kDeepest = 40;

// Larger numbers in texts are clamped, so that a change cannot overflow.
constexpr int64_t kLargest = INT64_MAX / 2;

void add_places(cJSON *parent, std::vector<Place> &places, int depth = 0)
{
    cJSON *item;
    cJSON_ArrayForEach(item, parent)
    {
        places.push_back({parent, item});
        if (depth < kDeepest) {
            add_places(item, places, depth + 1);
        }
    }
}

} // namespace

std::vector<Place> places_in(cJSON *document)
{
    std::vector<Place> places;
    add_places(document, places);
    return places;
}

void add(cJSON *parent, const std::string &key, cJSON *item)
{
    if (cJSON_IsObject(parent)) {
        cJSON_AddItemToObject(parent, key.c_str(), item);
    } else {
        cJSON_AddItemToArray(parent, item);
    }
}

void replace(const Place &place, cJSON *item)
{
    if (place.item->string != nullptr) {
        cJSON_free(item->string);
        item->string = strdup(place.item->string);
    }
    cJSON_ReplaceItemViaPointer(place.parent, place.item, item);
}

std::string key_of(const cJSON *item)
{
    return item->string != nullptr ? item->string : "";
}

std::string Mutator::changed_bytes(std::string_view bytes, size_t longest)
{
    std::string changed(std::max(longest, bytes.size()), '\0');
    bytes.copy(changed.data(), bytes.size());
    changed.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t *>(changed.data()), bytes.size(),
                                    changed.size()));
    return changed;
}

std::string Mutator::word(const std::string &command)
{
    const CommandWords *own = find_command(command);
    const CommandWords &words =
        own != nullptr && !one_in(4) ? *own : commands()[below(commands().size())];
    return words.texts.empty() ? "1" : words.texts[below(words.texts.size())];
}

std::string Mutator::key(const std::string &command)
{
    const CommandWords *own = find_command(command);
    const CommandWords &words =
        own != nullptr && !one_in(4) ? *own : commands()[below(commands().size())];
    return words.keys.empty() ? "DeviceID" : words.keys[below(words.keys.size())];
}

std::string Mutator::text(const std::string &command)
{
    static constexpr size_t kWidths[] = {2,  7,  8,   9,   15,  16,  17,  31,  32,   33,
                                         63, 64, 127, 128, 255, 256, 257, 511, 2047, 4096};
    static constexpr const char *kTexts[] = {
        "",      "-1",   "0",     "1",          "2",
        "8",     "33",   "9",     "00:00",      "-00001",
        "65536", "NULL", "1,2,3", "2147483648", ",",
        "%s%n",  "\xff", "24:00", "\n",         "9999999999999999999999"};
    switch (below(4)) {
    case 0:
        return std::string(kWidths[below(std::size(kWidths))], static_cast<char>('0' + below(80)));
    case 1:
        return kTexts[below(std::size(kTexts))];
    default:
        return word(command);
    }
}

std::string Mutator::changed_text(const std::string &command, const std::string &old)
{
    char *end = nullptr;
    const int64_t number = std::clamp<int64_t>(strtol(old.c_str(), &end, 10), -kLargest, kLargest);
    if (end != old.c_str() && !one_in(3)) { // a number close to it, and the rest of the text
        return std::to_string(number - 4 + static_cast<int64_t>(below(9))) + end;
    }
    return one_in(2) ? text(command) : changed_bytes(old, 80);
}

Json Mutator::value(const std::string &command)
{
    switch (below(12)) {
    case 0:
        return Json(cJSON_CreateNull());
    case 1:
        return Json(cJSON_CreateBool(below(2) == 0 ? 1 : 0));
    case 2:
        return Json(cJSON_CreateNumber(static_cast<double>(random_()) - 1e9));
    case 3:
        return Json(cJSON_CreateArray());
    case 4:
        return Json(cJSON_CreateObject());
    case 5: {
        Json list(cJSON_CreateArray());
        for (size_t left = below(4); left > 0; --left) {
            cJSON_AddItemToArray(list.get(), value(command).release());
        }
        return list;
    }
    case 6: {
        const CommandWords *own = find_command(command);
        return Json(own != nullptr ? cJSON_Parse(own->request.c_str()) : cJSON_CreateObject());
    }
    default:
        return Json(cJSON_CreateString(text(command).c_str()));
    }
}

void Mutator::change_object(const std::string &command, cJSON *object)
{
    const std::vector<Place> places = places_in(object);
    if (places.empty() || one_in(8)) {
        add(object, key(command), value(command).release());
        return;
    }
    const Place place = places[below(places.size())];
    switch (below(18)) { // half of the time another value
    case 0:
        replace(place, value(command).release());
        break;
    case 1: // another key
        if (cJSON_IsObject(place.parent)) {
            cJSON *item = cJSON_DetachItemViaPointer(place.parent, place.item);
            add(place.parent, key(command), item);
        }
        break;
    case 2: // the same key in another case
        if (place.item->string != nullptr && *place.item->string != '\0') {
            char &letter = place.item->string[below(strlen(place.item->string))];
            letter = static_cast<char>(letter ^ 0x20);
        }
        break;
    case 3: // the same key again
        add(place.parent, key_of(place.item), cJSON_Duplicate(place.item, 1));
        break;
    case 4:
        cJSON_Delete(cJSON_DetachItemViaPointer(place.parent, place.item));
        break;
    case 5: { // deeper
        cJSON *outer = one_in(2) ? cJSON_CreateArray() : cJSON_CreateObject();
        add(outer, key(command), cJSON_Duplicate(place.item, 1));
        replace(place, outer);
        break;
    }
    case 6: // a longer list
        for (size_t left = one_in(4) ? 70 : below(9); left > 0; --left) {
            add(place.parent, key_of(place.item), cJSON_Duplicate(place.item, 1));
        }
        break;
    case 7: { // a text from elsewhere
        const Place other = places[below(places.size())];
        if (cJSON_IsString(other.item)) {
            replace(place, cJSON_Duplicate(other.item, 1));
        }
        break;
    }
    case 8:
        add(cJSON_IsObject(place.item) ? place.item : object, key(command),
            value(command).release());
        break;
    default:
        if (cJSON_IsString(place.item)) {
            const std::string changed = changed_text(command, cJSON_GetStringValue(place.item));
            replace(place, cJSON_CreateString(changed.c_str()));
        } else {
            replace(place, value(command).release());
        }
        break;
    }
}

Request Mutator::another_request()
{
    const CommandWords &words = commands()[below(commands().size())];
    Request request;
    request.command = words.name;
    request.object.reset(cJSON_Parse(words.request.c_str()));
    if (one_in(12)) {
        request.command = agent_calls()[below(agent_calls().size())];
    }
    return request;
}

void Mutator::change(Request &request)
{
    if (request.object == nullptr || one_in(12)) {
        Request other = another_request();
        if (request.object == nullptr || one_in(2)) {
            request.object = std::move(other.object);
        }
        request.command = other.command;
    }
    for (size_t left = 1 + below(4); left > 0; --left) {
        change_object(request.command, request.object.get());
    }
}

size_t write_out(std::string_view text, uint8_t *data, size_t size, size_t room)
{
    return text.size() <= room ? text.copy(reinterpret_cast<char *>(data), room) : size;
}

} // namespace fuzz
