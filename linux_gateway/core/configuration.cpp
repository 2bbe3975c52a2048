// SPDX-License-Identifier: MIT
#include "core/configuration.h"

#include "system/error.h"
#include "system/files.h"
#include "system/text.h"

#include <cstdlib>
#include <toml++/toml.h>

namespace linux_gateway {
namespace {

constexpr char kDefaultFile[] = "/etc/linux_gateway.toml";
constexpr size_t kMostBytes = 65536;

std::string file_of_configuration()
{
    const char *named = secure_getenv("LINUX_GATEWAY_CONFIG");
    return named != nullptr && *named != '\0' ? named : kDefaultFile;
}

void read_file(Configuration &configuration, const std::string &path, const std::string &text)
{
    toml::parse_result parsed;
    try {
        parsed = toml::parse(text);
    } catch (const toml::parse_error &error) {
        throw Error(path + ", line " + std::to_string(error.source().begin.line) + ": " +
                    std::string(error.description()));
    }
    const auto refuse = [&](const toml::key &key, const char *problem) {
        throw Error(path + ", line " + std::to_string(key.source().begin.line) + ": " +
                    std::string(key.str()) + ' ' + problem);
    };
    for (const auto &[key, value] : parsed) {
        const auto take = [&](std::string &target) {
            if (!value.is_string() || value.as_string()->get().empty()) {
                refuse(key, "is not a text");
            }
            target = value.as_string()->get();
        };
        const std::string_view name = key.str();
        if (name == "lan_bridge") {
            take(configuration.lan_bridge);
        } else if (name == "wan_port") {
            take(configuration.wan_port);
        } else if (name == "lease_file") {
            take(configuration.lease_file);
        } else if (name == "dnsmasq_configuration") {
            take(configuration.dnsmasq_configuration);
        } else if (name == "resolver_configuration") {
            take(configuration.resolver_configuration);
        } else if (name == "state") {
            take(configuration.state);
        } else if (name == "time_zone") {
            take(configuration.time_zone);
        } else if (name == "package") {
            take(configuration.package);
        } else if (name == "area_code") {
            take(configuration.area_code);
        } else if (name == "management_host") {
            take(configuration.management_host.emplace());
        } else if (name == "remove_at_exit") {
            if (!value.is_boolean()) {
                refuse(key, "is neither true nor false");
            }
            configuration.remove_at_exit = value.as_boolean()->get();
        } else {
            refuse(key, "is not a key of this file");
        }
    }
}

} // namespace

Configuration configuration()
{
    Configuration configuration;
    const std::string path = file_of_configuration();
    if (const std::optional<std::string> text = read_file_if_there(path, kMostBytes)) {
        read_file(configuration, path, *text);
    } else if (path != kDefaultFile) {
        throw Error("cannot read the configuration " + path);
    }
    return configuration;
}

} // namespace linux_gateway
