// SPDX-License-Identifier: MIT
#include "system/machine.h"

#include "system/files.h"
#include "system/text.h"

#include <ctime>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <utility>

namespace linux_gateway {
namespace {

constexpr size_t kMostLineBytes = 4096;
constexpr char kStatusFile[] = "/var/lib/dpkg/status";
constexpr size_t kMostStatusBytes = 32 << 20;

std::string line_of(const std::string &path)
{
    const std::string text = read_file_if_there(path, kMostLineBytes).value_or("");
    // The texts of a device tree end in NUL.
    return printable(trimmed(std::string_view(text).substr(0, text.find_first_of("\n\0", 0, 2))));
}

// The value of a line NAME=VALUE, whose value may be in quotes.
std::string assigned_value(std::string_view text, std::string_view name)
{
    for (std::string_view line : split(text, '\n')) {
        if (line.starts_with(name) && line.substr(name.size()).starts_with('=')) {
            line.remove_prefix(name.size() + 1);
            if (line.size() > 1 && line.front() == '"' && line.back() == '"') {
                line = line.substr(1, line.size() - 2);
            }
            return printable(line);
        }
    }
    return "";
}

std::string date_of(const std::string &path)
{
    struct stat status = {};
    tm date = {};
    char text[16] = "";
    if (stat(path.c_str(), &status) == 0 && localtime_r(&status.st_mtime, &date) != nullptr) {
        strftime(text, sizeof(text), "%Y-%m-%d", &date);
    }
    return text;
}

std::string processor_name()
{
    const std::string text = read_file_if_there("/proc/cpuinfo", kMostLineBytes).value_or("");
    for (const std::string_view line : split(text, '\n')) {
        const size_t colon = line.find(':');
        const std::string_view name = trimmed(line.substr(0, colon));
        if (colon != std::string_view::npos &&
            (name == "model name" || name == "cpu model" || name == "Hardware")) {
            return printable(trimmed(line.substr(colon + 1)));
        }
    }
    utsname system = {};
    return uname(&system) == 0 ? system.machine : "";
}

} // namespace

Machine read_machine()
{
    const std::string of_tree = line_of("/proc/device-tree/model");
    const std::string of_firmware = line_of("/sys/class/dmi/id/product_name");
    Machine machine;
    machine.product = !of_firmware.empty() ? of_firmware : !of_tree.empty() ? of_tree : "Linux";
    machine.hardware_version = line_of("/sys/class/dmi/id/product_version");
    machine.processor = processor_name();
    return machine;
}

std::optional<std::string> installed_version(std::string_view status, std::string_view package)
{
    const std::string first_line = "Package: " + std::string(package) + '\n';
    size_t start = status.starts_with(first_line) ? 0 : status.find('\n' + first_line);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    start += start == 0 ? 0 : 1;
    const std::string_view entry = status.substr(start, status.find("\n\n", start) - start);
    bool is_installed = false;
    std::string version;
    for (const std::string_view line : split(entry, '\n')) {
        constexpr std::string_view name = "Version: ";
        if (line.starts_with(name)) {
            version = printable(line.substr(name.size()));
        }
        is_installed |= line.starts_with("Status: ") && line.ends_with(" installed");
    }
    return is_installed && !version.empty() ? std::optional(version) : std::nullopt;
}

static Software read_software(const std::string &package)
{
    const std::string status = read_file_if_there(kStatusFile, kMostStatusBytes).value_or("");
    if (const std::optional<std::string> version = installed_version(status, package)) {
        return {*version, date_of("/var/lib/dpkg/info/" + package + ".list")};
    }
    constexpr char of_system[] = "/etc/os-release";
    const std::string text = read_file_if_there(of_system, kMostLineBytes).value_or("");
    const std::string name = assigned_value(text, "ID");
    const std::string version = assigned_value(text, "VERSION_ID");
    return {name + (name.empty() || version.empty() ? "" : "-") + version, date_of(of_system)};
}

SoftwareReader::SoftwareReader(std::string package) : package_(std::move(package)) {}

Software SoftwareReader::read()
{
    // The file has several megabytes, and is replaced when anything is installed.
    struct stat status = {};
    std::string found = "none";
    if (stat(kStatusFile, &status) == 0) {
        found = std::to_string(status.st_ino) + ' ' + std::to_string(status.st_mtim.tv_sec) + ' ' +
                std::to_string(status.st_mtim.tv_nsec);
    }
    const std::lock_guard lock(mutex_);
    if (found != status_) {
        software_ = read_software(package_);
        status_ = found;
    }
    return software_;
}

std::string host_name()
{
    utsname system = {};
    return uname(&system) == 0 ? printable(system.nodename) : "";
}

int64_t uptime_seconds()
{
    timespec time = {};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return time.tv_sec;
}

std::optional<int64_t> processor_temperature()
{
    constexpr int64_t thousandths = 1000;
    const std::optional<int64_t> value =
        number_in<int64_t>(line_of("/sys/class/thermal/thermal_zone0/temp"));
    return value ? std::optional(*value / thousandths) : std::nullopt;
}

bool has_ipv6()
{
    return access("/proc/self/net/if_inet6", F_OK) == 0;
}

} // namespace linux_gateway
