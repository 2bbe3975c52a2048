// SPDX-License-Identifier: MIT
#include "conformance/requests.h"

#include "io/text.h"
#include "protocol/json_text.h"

#include <algorithm>

namespace agent {

namespace {

constexpr size_t kMostRequests = 16;

Json json_of(const Description &value)
{
    return Json(cJSON_Parse(value.as_json().c_str()));
}

void put(cJSON *object, const std::string &key, Json value)
{
    cJSON_AddItemToObject(object, key.c_str(), value.release());
}

void put_copy(cJSON *object, const std::string &key, const cJSON *value)
{
    put(object, key, Json(cJSON_Duplicate(value, 1)));
}

const cJSON *item_of(const cJSON *object, const std::string &key)
{
    return cJSON_GetObjectItemCaseSensitive(object, key.c_str());
}

// A string, or a number converted to one: requests take only strings.
std::string value_of(const cJSON *item)
{
    if (cJSON_IsNumber(item) != 0) {
        return print(item);
    }
    const char *text = cJSON_GetStringValue(item);
    return text != nullptr ? text : "";
}

// A device without a value says "NULL".
bool is_value(const std::string &text)
{
    return !text.empty() && text != "NULL";
}

std::vector<std::string> parts_of(const std::string &text, const std::string &separator)
{
    std::vector<std::string> parts;
    size_t begin = 0;
    for (size_t end = text.find(separator); end != std::string::npos;
         begin = end + separator.size(), end = text.find(separator, begin)) {
        parts.push_back(text.substr(begin, end - begin));
    }
    parts.push_back(text.substr(begin));
    return parts;
}

std::vector<std::string> values_in(const cJSON *reply, const Description &place)
{
    const std::string key = place["key"].text();
    std::vector<std::string> values;
    if (place.contains("separator")) {
        values = parts_of(value_of(item_of(reply, key)), place["separator"].text());
    } else {
        const cJSON *element = nullptr;
        cJSON_ArrayForEach(element, item_of(reply, place["list"].text()))
        {
            values.push_back(value_of(item_of(element, key)));
        }
    }
    std::erase_if(values, [](const std::string &value) { return !is_value(value); });
    return values;
}

// The key whose values the device lists; an empty part when there is none.
Description key_with_place(const Description &command)
{
    for (const Description &key : command["request"]) {
        if (key.contains("found_in")) {
            return key;
        }
    }
    return Description();
}

bool has_key(const Description &keys, const std::string &name)
{
    for (const Description &key : keys) {
        if (key["key"].text() == name) {
            return true;
        }
    }
    return false;
}

Json request_with(const Description &command, const std::string &selecting,
                  const std::string &value)
{
    Json request = json_of(command["example"]["request"]);
    cJSON_ReplaceItemInObjectCaseSensitive(request.get(), selecting.c_str(),
                                           cJSON_CreateString(value.c_str()));
    return request;
}

// The request that reads a setting back: its keys have the same names as the setting's.
Json request_of_query(const Description &query, const cJSON *selected)
{
    Json request(cJSON_CreateObject());
    for (const Description &key : query["request"]) {
        put_copy(request.get(), key["key"].text(), item_of(selected, key["key"].text()));
    }
    return request;
}

// The part of the reply that contains the values of the setting.
const cJSON *place_of(const cJSON *reply, const Description &command, const cJSON *selected)
{
    const Description &back = command["read_back"];
    const Description key = key_with_place(command);
    if (!back.contains("list") || !key.exists()) {
        return reply;
    }
    const std::string wanted = value_of(item_of(selected, key["key"].text()));
    const cJSON *element = nullptr;
    cJSON_ArrayForEach(element, item_of(reply, back["list"].text()))
    {
        if (value_of(item_of(element, key["found_in"]["key"].text())) == wanted) {
            return element;
        }
    }
    return nullptr;
}

void put_reported(cJSON *request, const Description &key, const cJSON *reported);

Json list_of(const Description &items, const cJSON *reported)
{
    Json list(cJSON_CreateArray());
    const cJSON *element = nullptr;
    cJSON_ArrayForEach(element, reported)
    {
        Json entry(cJSON_CreateObject());
        for (const Description &key : items) {
            put_reported(entry.get(), key, item_of(element, key["key"].text()));
        }
        cJSON_AddItemToArray(list.get(), entry.release());
    }
    return list;
}

// Adds the value that the device reports for a key. An optional key without a value is omitted, so
// that the request leaves it unchanged.
void put_reported(cJSON *request, const Description &key, const cJSON *reported)
{
    if (cJSON_IsArray(reported) != 0) {
        put(request, key["key"].text(), list_of(key["items"], reported));
        return;
    }
    const std::string value = value_of(reported);
    if (is_value(value) || key["required"].is_true()) {
        put(request, key["key"].text(),
            Json(cJSON_CreateString(is_value(value) ? value.c_str() : "")));
    }
}

bool is_secret(const std::string &key)
{
    return secret_keys().contains(lower_case(key));
}

std::string shown(const std::string &key, const cJSON *item)
{
    if (is_secret(key)) {
        return "***";
    }
    return cJSON_IsArray(item) != 0 ? "another list" : agent::quoted(to_utf8(value_of(item)));
}

} // namespace

std::vector<Json> requests_for(const Description &command, const Ask &ask)
{
    std::vector<Json> requests;
    const Description key = key_with_place(command);
    if (key.exists()) {
        const Description &place = key["found_in"];
        const Json reply = ask(place["command"].text(), Json(cJSON_CreateObject()));
        if (reply != nullptr) {
            std::vector<std::string> values = values_in(reply.get(), place);
            std::reverse(values.begin(), values.end());
            values.resize(std::min(values.size(), kMostRequests));
            for (const std::string &value : values) {
                requests.push_back(request_with(command, key["key"].text(), value));
            }
            return requests;
        }
    }
    requests.push_back(json_of(command["example"]["request"]));
    return requests;
}

Json setting_in_force(const Description &command, const cJSON *selected, const Ask &ask)
{
    const Description &back = command["read_back"];
    const Description &query = *find_description(back["command"].text());
    const Json reply = ask(query["command"].text(), request_of_query(query, selected));
    const cJSON *place = reply != nullptr ? place_of(reply.get(), command, selected) : nullptr;
    if (place == nullptr) {
        return nullptr;
    }
    const Description renamed = back["keys"];
    const Description given = back["given"];
    const std::vector<std::string> without = back["without"].texts();
    Json setting(cJSON_CreateObject());
    for (const Description &key : command["request"]) {
        const std::string name = key["key"].text();
        const cJSON *reported =
            item_of(place, renamed.contains(name) ? renamed[name].text() : name);
        if (given.contains(name)) {
            put(setting.get(), name, json_of(given[name]));
        } else if (key.contains("found_in") || has_key(query["request"], name)) {
            put_copy(setting.get(), name, item_of(selected, name));
        } else if (std::ranges::find(without, name) != without.end()) {
            continue;
        } else if (reported != nullptr) {
            put_reported(setting.get(), key, reported);
        } else if (key["required"].is_true()) {
            return nullptr;
        }
    }
    return setting;
}

std::string key_without_value(const cJSON *setting)
{
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, setting)
    {
        if (cJSON_IsString(item) != 0 && !is_value(value_of(item))) {
            return item->string;
        }
    }
    return "";
}

Json changed_setting(const Description &command, const cJSON *setting)
{
    const Description &back = command["read_back"];
    if (!back.contains("change")) {
        return nullptr;
    }
    const std::string key = back["change"]["key"].text();
    const std::string missing = key_without_value(setting);
    if (!missing.empty() && missing != key) {
        return nullptr; // a device may require the others to accept this one
    }
    const cJSON *present = item_of(setting, key);
    for (const Description &value : back["change"]["values"]) {
        Json wanted = json_of(value);
        if (cJSON_Compare(present, wanted.get(), 1) == 0) {
            Json changed(cJSON_Duplicate(setting, 1));
            cJSON_DeleteItemFromObjectCaseSensitive(changed.get(), key.c_str());
            put(changed.get(), key, std::move(wanted));
            return changed;
        }
    }
    return nullptr;
}

std::string difference(const cJSON *made, const cJSON *in_force)
{
    const cJSON *wanted = nullptr;
    cJSON_ArrayForEach(wanted, made)
    {
        const cJSON *found = item_of(in_force, wanted->string);
        const bool same = found != nullptr
                              ? cJSON_Compare(wanted, found, 1) != 0
                              : cJSON_IsArray(wanted) == 0 && !is_value(value_of(wanted));
        if (!same) {
            return std::string(wanted->string) + " was set to " + shown(wanted->string, wanted) +
                   " and reads " + shown(wanted->string, found);
        }
    }
    return "";
}

} // namespace agent
