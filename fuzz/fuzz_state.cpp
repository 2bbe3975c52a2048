// SPDX-License-Identifier: MIT
// Fuzzes the files that the simulated gateway opens. An input is such a file: a scenario if it is
// marked as one, otherwise a state file.
//
// A state file that is refused must not be changed. After opening one that is accepted, the gateway
// has to reply to queries with success, to keep a change, and to open the state that it has saved.
#include "home.h"
#include "mutator.h"
#include "request.h"
#include "simulated_gateway/simulated_gateway.h"
#include "workers.h"

#include <cstdlib>
#include <cstring>
#include <curl/curl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

using namespace fuzz;

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t room);

extern "C" CURLcode __wrap_curl_easy_perform(CURL *)
{
    return CURLE_COULDNT_CONNECT;
}

namespace {

namespace fs = std::filesystem;

// In memory if possible, since several files are written for each input.
class Folder {
  public:
    Folder()
    {
        const fs::path shared = "/dev/shm";
        std::string name =
            (fs::exists(shared) ? shared : fs::temp_directory_path()) / "fuzz_state.XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            give_up("no folder " + name);
        }
        path_ = name;
    }
    ~Folder() { fs::remove_all(path_); }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string file() const { return path_ / "home.json"; }

    void clear() const
    {
        for (const fs::directory_entry &entry : fs::directory_iterator(path_)) {
            fs::remove_all(entry.path());
        }
    }

  private:
    fs::path path_;
};

const Folder &folder()
{
    static const Folder only;
    return only;
}

void write_file(const std::string &path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        give_up("no file " + path);
    }
}

std::string read_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool is_scenario(std::string_view input)
{
    return input.find("simulated gateway scenario") != std::string_view::npos;
}

// Result: the reason why it does not open; empty when it does.
std::string open_gateway(const std::string &path, bool scenario)
{
    SimulatedGatewayOptions options = {};
    (scenario ? options.scenario : options.state_file) = path.c_str();
    char error[4096] = "";
    if (simulated_gateway_open(&options, error, sizeof error) == 0) {
        return "";
    }
    const std::string why = error;
    if (why.empty() || why.find('\n') != std::string::npos) {
        give_up("refused without a reason on one line: " + why);
    }
    return why;
}

void keep_a_change()
{
    const Json object(cJSON_Parse(R"({"LedSwitch":"1","LedCoLor":"BLUE","LedLight":"40"})"));
    run_command("SET_LED_STATUS", object.get());
}

// ---- Changes to documents
// ------------------------------------------------------------------------

struct Place {
    cJSON *parent;
    cJSON *item;
};

void add_places(cJSON *parent, std::vector<Place> &places)
{
    cJSON *item;
    cJSON_ArrayForEach(item, parent)
    {
        places.push_back({parent, item});
        add_places(item, places);
    }
}

cJSON *changed_value(const cJSON *item, Mutator &mutator)
{
    static constexpr double kNumbers[] = {
        0,          1,          -1,  2,          8,   64,    65,   255,    65535, 65536,
        2147483647, 2147483648, 1e9, 1767301200, 0.5, -1e18, 1e18, 9.3e18, 1e300};
    static constexpr const char *kTexts[] = {
        "",    "0", "1", "up", "5GHz", "192.168.1.1", "00:00:00:00:00:00", "\xff", "\xe4\xb8\xad",
        "../x"};
    if (cJSON_IsNumber(item) != 0 && !mutator.one_in(8)) {
        const double near = item->valuedouble + static_cast<double>(mutator.below(5)) - 2;
        return cJSON_CreateNumber(mutator.one_in(2) ? near
                                                    : kNumbers[mutator.below(std::size(kNumbers))]);
    }
    if (cJSON_IsBool(item) != 0 && !mutator.one_in(8)) {
        return cJSON_CreateBool(cJSON_IsTrue(item) == 0);
    }
    if (cJSON_IsString(item) != 0 && !mutator.one_in(8)) {
        const std::string old = item->valuestring;
        if (mutator.one_in(4)) {
            return cJSON_CreateString(kTexts[mutator.below(std::size(kTexts))]);
        }
        return cJSON_CreateString(mutator.one_in(8)
                                      ? std::string(mutator.below(300), 'x').c_str()
                                      : mutator.changed_bytes(old, old.size() + 8).c_str());
    }
    switch (mutator.below(5)) {
    case 0:
        return cJSON_CreateNull();
    case 1:
        return cJSON_CreateArray();
    case 2:
        return cJSON_CreateObject();
    case 3:
        return cJSON_CreateString("text");
    default:
        return cJSON_CreateNumber(1);
    }
}

void change_document(cJSON *document, Mutator &mutator)
{
    std::vector<Place> places;
    add_places(document, places);
    if (places.empty()) {
        return;
    }
    const Place place = places[mutator.below(places.size())];
    const std::string key = place.item->string != nullptr ? place.item->string : "";
    const bool is_in_object = cJSON_IsObject(place.parent) != 0;
    const auto replace = [&](cJSON *item) {
        if (is_in_object) {
            item->string = strdup(key.c_str());
        }
        cJSON_ReplaceItemViaPointer(place.parent, place.item, item);
    };
    switch (mutator.below(8)) {
    case 0:
        cJSON_Delete(cJSON_DetachItemViaPointer(place.parent, place.item));
        break;
    case 1: // repeat it
        if (is_in_object) {
            cJSON_AddItemToObject(place.parent, key.c_str(), cJSON_Duplicate(place.item, 1));
        } else {
            cJSON_AddItemToArray(place.parent, cJSON_Duplicate(place.item, 1));
        }
        break;
    case 2: // a value from elsewhere, mostly of the same type
        for (int tries = 0; tries < 20; ++tries) {
            const cJSON *other = places[mutator.below(places.size())].item;
            if (other != place.item && (other->type == place.item->type || tries == 19)) {
                cJSON *copy = cJSON_Duplicate(other, 1);
                cJSON_free(copy->string);
                copy->string = nullptr;
                replace(copy);
                break;
            }
        }
        break;
    default:
        replace(changed_value(place.item, mutator));
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    stop_clock();
    folder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view input = text_of(data, size);
    const std::string path = folder().file();
    folder().clear();
    write_file(path, input);
    run_workers_at_once(true);
    const bool scenario = is_scenario(input);
    if (!open_gateway(path, scenario).empty()) {
        if (read_file(path) != input) {
            give_up("a file that was refused has changed");
        }
        return 0;
    }
    check_home();
    keep_a_change();
    simulated_gateway_close();
    if (!scenario) {
        const std::string why = open_gateway(path, false);
        if (!why.empty()) {
            give_up("what the gateway has saved it does not open: " + why);
        }
        check_home();
        simulated_gateway_close();
    }
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    const std::string_view input = text_of(data, size);
    const Json document(cJSON_ParseWithLength(input.data(), input.size()));
    if (document == nullptr || mutator.one_in(8)) {
        return LLVMFuzzerMutate(data, size, room);
    }
    for (size_t left = 1 + mutator.below(3); left > 0; --left) {
        change_document(document.get(), mutator);
    }
    return write_out(print(document.get()), data, size, room);
}
