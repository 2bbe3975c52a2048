// SPDX-License-Identifier: MIT
#include "service/ways_in/http/password_file.h"

#include "service/common/config_error.h"
#include "service/common/sockets.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace agent::service {

namespace {

constexpr size_t kMostPasswordBytes = 256UL * 1024;
constexpr size_t kMostName = 64;
constexpr std::string_view kHashBegin = "$argon2id$v=19$m=";
// A hash says itself how much memory and time it takes to verify.
constexpr uint32_t kMostKilobytes = 256U * 1024;
constexpr uint32_t kMostPasses = 16;
constexpr uint32_t kMostLanes = 16;

// Takes the number behind a text from the front. Result: whether it was there and in its range.
bool take_number(std::string_view &text, std::string_view before, uint32_t most)
{
    if (!text.starts_with(before)) {
        return false;
    }
    text.remove_prefix(before.size());
    uint32_t number = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc() || number == 0 || number > most) {
        return false;
    }
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    return true;
}

bool is_base64(std::string_view text)
{
    return !text.empty() &&
           text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                  "+/") == std::string_view::npos;
}

bool is_hash(std::string_view text)
{
    if (!take_number(text, kHashBegin, kMostKilobytes) || !take_number(text, ",t=", kMostPasses) ||
        !take_number(text, ",p=", kMostLanes) || !text.starts_with('$')) {
        return false;
    }
    text.remove_prefix(1);
    const size_t mark = text.find('$');
    return mark != std::string_view::npos && is_base64(text.substr(0, mark)) &&
           is_base64(text.substr(mark + 1));
}

bool is_user(std::string_view name)
{
    return !name.empty() && name.size() <= kMostName &&
           std::ranges::all_of(name, [](unsigned char letter) { return letter > ' '; });
}

// The same hash with another result.
std::string with_other_result(std::string hash)
{
    for (size_t at = hash.rfind('$') + 1; at < hash.size(); ++at) {
        hash[at] = 'A';
    }
    return hash;
}

} // namespace

PasswordFile PasswordFile::read(const std::string &path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        throw std::runtime_error(system_problem("cannot read " + path));
    }
    if (!S_ISREG(status.st_mode) || static_cast<size_t>(status.st_size) > kMostPasswordBytes) {
        throw std::runtime_error(path + " is not a file of passwords");
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        throw std::runtime_error(path + " may be used by others than its owner: chmod 600 it");
    }
    std::string text(static_cast<size_t>(status.st_size), '\0');
    if (::read(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error(system_problem("cannot read " + path));
    }
    try {
        return parse(text);
    } catch (const std::runtime_error &problem) {
        throw std::runtime_error(path + ":" + problem.what());
    }
}

PasswordFile PasswordFile::parse(std::string_view text)
{
    PasswordFile file;
    for (size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        const size_t colon = std::min(line.find(':'), line.size());
        const std::string_view user = line.substr(0, colon);
        const std::string_view hash = line.substr(std::min(colon + 1, line.size()));
        if (!is_user(user) || !is_hash(hash)) {
            throw std::runtime_error(std::to_string(number) +
                                     ": the line is not USER:HASH with a hash by argon2 -id -e");
        }
        if (!file.hashes_.emplace(user, hash).second) {
            throw std::runtime_error(std::to_string(number) + ": " + in_message(user) +
                                     " is there already");
        }
    }
    if (!file.hashes_.empty()) {
        file.nobody_ = with_other_result(file.hashes_.begin()->second);
    }
    return file;
}

const std::string &PasswordFile::hash_of(const std::string &user) const
{
    const auto found = hashes_.find(user);
    return found != hashes_.end() ? found->second : nobody_;
}

} // namespace agent::service
