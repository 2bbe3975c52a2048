// SPDX-License-Identifier: MIT
#include "fleet/states.h"

#include "io/streams.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <sys/file.h>
#include <sys/statvfs.h>

namespace agent::fleet {

namespace {

namespace fs = std::filesystem;

constexpr char kFile[] = "/fleet.json";
constexpr char kLock[] = "/fleet.lock";
constexpr char kFormat[] = "hgagent fleet";
constexpr size_t kMaxFile = 64UL * 1024;
constexpr uint32_t kPerFolder = 1000;
// Of a gateway: its state, the last good copy, and its lock; measured with the built-in scenarios.
constexpr uint64_t kBytes = 128UL * 1024;
constexpr uint64_t kFiles = 4;

[[noreturn]] void refuse(const std::string &folder, const std::string &why)
{
    throw std::runtime_error("the folder of states " + folder + " " + why);
}

nlohmann::ordered_json description_of(const FleetOptions &options)
{
    return {{"format", kFormat},
            {"version", 1},
            {"seed", options.seed},
            {"prefix", options.prefix},
            {"scenario", options.mix}};
}

int open_lock(const std::string &folder)
{
    const int lock = open((folder + kLock).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0) {
        refuse(folder, service::system_problem("cannot be used"));
    }
    if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
        close(lock);
        refuse(folder, "is in use by another fleet");
    }
    return lock;
}

void make_folder(const std::string &folder)
{
    std::error_code problem;
    fs::create_directories(folder, problem);
    if (problem) {
        refuse(folder, "cannot be created: " + problem.message());
    }
    bool is_known = fs::exists(folder + kFile, problem);
    // The lock alone is left by a fleet that ended before it described the folder.
    for (fs::directory_iterator entry(folder, problem), end; !problem && !is_known && entry != end;
         entry.increment(problem)) {
        if (entry->path().filename() != kLock + 1) {
            refuse(folder, "is not empty, and it is not that of a fleet");
        }
    }
    if (problem) {
        refuse(folder, "cannot be read: " + problem.message());
    }
}

// What differs between the fleet of the folder and this one, in words.
std::string difference(const nlohmann::ordered_json &found, const nlohmann::ordered_json &wanted)
{
    for (const auto &[key, value] : wanted.items()) {
        const auto own = found.find(key);
        if (own == found.end()) {
            return "has no " + key + " in its fleet.json";
        }
        if (*own != value) {
            return "is that of a fleet with the " + key + " " + own->dump() + ", not " +
                   value.dump();
        }
    }
    return {};
}

void check_or_write(const std::string &folder, const FleetOptions &options)
{
    const nlohmann::ordered_json wanted = description_of(options);
    const std::string file = folder + kFile;
    if (!fs::exists(file)) {
        std::ofstream out(file);
        out << wanted.dump(4) << '\n';
        if (!out.flush()) {
            const std::string why = service::system_problem("cannot be written");
            std::error_code ignored;
            fs::remove(file, ignored); // the next attempt must not find a part of it
            refuse(folder, why);
        }
        return;
    }
    const auto found = nlohmann::ordered_json::parse(read_all_of(file, kMaxFile), nullptr, false);
    if (!found.is_object()) {
        refuse(folder, "has a fleet.json that is not a JSON object");
    }
    const std::string wrong = difference(found, wanted);
    if (!wrong.empty()) {
        refuse(folder, wrong);
    }
}

uint64_t states_in(const std::string &folder, const FleetOptions &options)
{
    std::error_code ignored;
    uint64_t count = 0;
    for (uint32_t number = options.first; number < options.first + options.count; ++number) {
        const std::string file = folder + "/" + std::to_string(number / kPerFolder) + "/" +
                                 gateway_id(options.prefix, number) + ".json";
        count += fs::exists(file, ignored) ? 1 : 0;
    }
    return count;
}

void check_room(const std::string &folder, const FleetOptions &options)
{
    struct statvfs info = {};
    if (statvfs(folder.c_str(), &info) != 0) {
        refuse(folder, service::system_problem("has a disk whose free space cannot be read"));
    }
    const uint64_t missing = options.count - states_in(folder, options);
    const uint64_t bytes = missing * kBytes;
    const uint64_t free = info.f_bavail * info.f_frsize;
    if (bytes > free) {
        refuse(folder, "needs about " + std::to_string(bytes >> 20) + " MB for " +
                           std::to_string(missing) + " gateways, and its disk has " +
                           std::to_string(free >> 20) + " MB left");
    }
    // Some file systems have no limit and say 0.
    if (info.f_files > 0 && missing * kFiles > info.f_favail) {
        refuse(folder, "needs " + std::to_string(missing * kFiles) + " files, and its disk has " +
                           "room for " + std::to_string(info.f_favail));
    }
}

} // namespace

States::States(const FleetOptions &options)
    : options_(options), lock_((make_folder(options.states), open_lock(options.states)))
{
    check_or_write(options.states, options);
    check_room(options.states, options);
}

std::string States::file_of(uint32_t number) const
{
    const std::string folder = options_.states + "/" + std::to_string(number / kPerFolder);
    std::error_code ignored; // without the folder, the gateway says what is wrong
    fs::create_directory(folder, ignored);
    return folder + "/" + gateway_id(options_.prefix, number) + ".json";
}

} // namespace agent::fleet
