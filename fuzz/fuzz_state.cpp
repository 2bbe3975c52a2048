// SPDX-License-Identifier: MIT
// Fuzzes the files that the simulated gateway opens. An input is such a file: a scenario if it is
// marked as one, otherwise a state file.
//
// A state file that is refused must not be changed. After opening one that is accepted, the gateway
// has to reply to queries with success, to keep a change, and to open the state that it has saved.
#include "files.h"
#include "give_up.h"
#include "home.h"
#include "mutator.h"
#include "request.h"
#include "simulated_gateway/simulated_gateway.h"
#include "workers.h"

#include <fstream>
#include <iterator>

using namespace fuzz;

namespace {

const Folder &folder()
{
    static const Folder only("fuzz_state");
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

// ---- Changes to documents -----------------------------------------------------------------------

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
    const std::vector<Place> places = places_in(document);
    if (places.empty()) {
        return;
    }
    const Place place = places[mutator.below(places.size())];
    switch (mutator.below(8)) {
    case 0:
        cJSON_Delete(cJSON_DetachItemViaPointer(place.parent, place.item));
        break;
    case 1: // repeat it
        add(place.parent, key_of(place.item), cJSON_Duplicate(place.item, 1));
        break;
    case 2: // a value from elsewhere, mostly of the same type
        for (int tries = 0; tries < 20; ++tries) {
            const cJSON *other = places[mutator.below(places.size())].item;
            if (other != place.item && (other->type == place.item->type || tries == 19)) {
                replace(place, cJSON_Duplicate(other, 1));
                break;
            }
        }
        break;
    default:
        replace(place, changed_value(place.item, mutator));
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
    const std::string path = folder().path() / "home.json";
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
