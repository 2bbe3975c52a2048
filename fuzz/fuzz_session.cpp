// SPDX-License-Identifier: MIT
// Fuzzes a session: successive requests to one simulated gateway, whose clock is stopped. An input
// has a request on each line; "!" switches the gateway off and on again. The first line may choose
// the home.
//
//   @operator_variant
//   COMMAND {"Key": "value"}
//   !
//
// The gateway is opened for each input and closed at its end, and its state is in memory. No input
// reaches the network: curl_easy_perform() is replaced by a function that reports a server that
// does not respond. Two images can be downloaded: file:///proc/self/fd/700/good and /damaged.
#include "files.h"
#include "firmware/image.h"
#include "give_up.h"
#include "home.h"
#include "lines.h"
#include "mutator.h"
#include "request.h"
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/processjsonability.h"
#include "workers.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

using namespace fuzz;

namespace {

// The descriptor of the folder of images, so that its path is the same in every process.
constexpr int kImages = 700;
const std::string images_path = "/proc/self/fd/" + std::to_string(kImages);
constexpr char kHome[] = "three_storey_house";

// Result: false when there is no such built-in home.
bool open_gateway(const std::string &home)
{
    if (home.find_first_of("/.") != std::string::npos) {
        return false; // a file on this machine
    }
    SimulatedGatewayOptions options = {};
    options.scenario = home.c_str();
    options.firmware_folder = images_path.c_str();
    return simulated_gateway_open(&options, nullptr, 0) == 0;
}

void make_folder_of_images()
{
    static const Folder folder("fuzz_session");
    const int opened = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
    if (opened < 0 || dup2(opened, kImages) != kImages) {
        give_up("no folder for images");
    }
    close(opened);
}

void offer_image(const char *name, const std::string &bytes)
{
    if (!(std::ofstream(images_path + "/" + name, std::ios::binary) << bytes)) {
        give_up("no image");
    }
}

std::string image(const char *version)
{
    const std::string payload = "firmware";
    simulated_gateway::ImageHeader header;
    header.product = "HGU-AX3000";
    header.version = version;
    header.date = "2026-01-01";
    header.payload_size = payload.size();
    simulated_gateway::Sha256 digest;
    digest.add(header.encode());
    digest.add(payload);
    header.sha256 = digest.finish();
    return header.encode() + payload;
}

bool chooses_home(const std::string &line)
{
    return line.starts_with('@');
}

Request request_of(const std::string &line)
{
    Request request;
    const size_t end = std::min(line.find(' '), line.size());
    request.command = line.substr(0, end);
    request.object.reset(end < line.size() ? cJSON_Parse(line.c_str() + end + 1)
                                           : cJSON_CreateObject());
    return request;
}

std::string line_of(const Request &request)
{
    return request.command + ' ' + print(request.object.get());
}

// Mostly a small one, which takes less time.
void choose_home(std::vector<std::string> &lines, Mutator &mutator)
{
    static constexpr const char *kHomes[] = {"@operator_variant", "@short_report",
                                             "@single_router"};
    const std::string home =
        mutator.one_in(16) ? "@crowded_mesh" : kHomes[mutator.below(std::size(kHomes))];
    if (chooses_home(lines[0])) {
        lines[0] = home;
    } else {
        lines.insert(lines.begin(), home);
    }
}

void run_line(const std::string &line)
{
    if (line == "!") {
        simulated_gateway_power_cycle();
        return;
    }
    const Request request = request_of(line);
    if (request.object != nullptr) {
        run_command(request.command, request.object.get());
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    stop_clock();
    setenv("SIMULATED_GATEWAY_LARGEST_IMAGE", "100000", 1);
    make_folder_of_images();
    offer_image("good", image("V3.0.0"));
    offer_image("damaged", image("V3.0.1").substr(0, 410) + "damaged");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::vector<std::string> lines = lines_of(fuzz::text_of(data, size));
    if ((lines.empty() || !chooses_home(lines[0]) || !open_gateway(lines[0].substr(1))) &&
        !open_gateway(kHome)) {
        give_up("the gateway does not open");
    }
    run_workers_at_once(size % 2 == 0);
    for (const std::string &line : lines) {
        run_line(line);
    }
    run_workers();
    check_home();
    simulated_gateway_close();
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    std::vector<std::string> lines = lines_of(fuzz::text_of(data, size));
    if (lines.empty()) {
        lines.push_back(line_of(mutator.another_request()));
    }
    const size_t at = mutator.below(lines.size());
    const auto place = lines.begin() + static_cast<std::ptrdiff_t>(at);
    switch (mutator.below(10)) {
    case 0:
        return LLVMFuzzerMutate(data, size, room);
    case 1:
        lines.insert(place, line_of(mutator.another_request()));
        break;
    case 2:
    case 3:
    case 4:
        change_order(lines, mutator);
        break;
    case 5:
        if (mutator.one_in(2)) {
            lines.insert(place, "!");
        } else {
            choose_home(lines, mutator);
        }
        break;
    default: {
        Request request = request_of(lines[at]);
        mutator.change(request);
        lines[at] = line_of(request);
        break;
    }
    }
    return write_out(fuzz::text_of(lines), data, size, room);
}
