// SPDX-License-Identifier: MIT
// Commands for child routers. Each is the text of a command's JSON object, without the command's
// name: a child router acts according to the keys present.
#include "device/attached_device.h"
#include "io/clock.h"
#include "model/json.h"
#include "simulation/host_activity.h"

#include <set>

using namespace simulated_gateway;

// ---- Which child router ------------------------------------------------------------------------

static const std::string *text_of(const Json &command, const char *key)
{
    const auto item = command.find(key);
    if (item == command.end()) {
        return nullptr;
    }
    if (!item->is_string()) {
        throw Error(std::string(key) + " is not a string");
    }
    return &item->get_ref<const std::string &>();
}

static std::string required_text(const Json &command, const char *key)
{
    const std::string *text = text_of(command, key);
    if (text == nullptr) {
        throw Error(std::string(key) + " is missing");
    }
    return *text;
}

static Json parse_command(std::string_view text)
{
    Json command = parse_json(text);
    if (!command.is_object()) {
        throw Error("the command is not an object");
    }
    return command;
}

// The child router that the command names by the identifier from the topology. Only a reachable one
// can receive a command.
static const ChildRouter &addressed_router(const Home &home, const Json &command)
{
    const std::string identifier = required_text(command, "DeviceID");
    for (const ChildRouter &router : child_routers(home)) {
        if (identifier_of(router.mac) == identifier) {
            if (!is_active(home, router)) {
                throw Error(router.mac + " is offline");
            }
            return router;
        }
    }
    throw Error("there is no child router " + in_quotes(identifier));
}

static ChildRouter &addressed_router(Home &home, const Json &command)
{
    return const_cast<ChildRouter &>(addressed_router(std::as_const(home), command));
}

// ---- What it does ------------------------------------------------------------------------------

static void restart(ChildRouter &router)
{
    constexpr int64_t start_seconds = 45;
    router.start_time = later(now(), start_seconds);
}

static void rename_router(ChildRouter &router, const std::string &name)
{
    refuse_for("Name", validation_error(name, Text{sizeof(ChildRouterInfo::Name)}));
    router.name = name;
}

// Restores the factory settings, as far as the main router knows them.
static void recover(const Home &factory, ChildRouter &router)
{
    for (const ChildRouter &original : factory.mesh.child_routers) {
        if (original.mac == router.mac) {
            router.name = original.name;
        }
    }
    restart(router);
}

// Applies the given settings to one of the router's devices.
static void set_device(Home &home, const ChildRouter &router, const Json &command)
{
    Host &host = named_host(home, "Mac", required_text(command, "Mac"));
    if (place_of(home, host).router != &router) {
        throw Error(host.mac + " is not a device of " + router.mac);
    }
    if (const std::string *kind = text_of(command, "DevType")) {
        refuse_for("DevType", validation_error(*kind, kHostKinds));
        host.kind = *kind;
    }
    if (const std::string *alias = text_of(command, "ByName")) {
        const bool none = alias->empty() || *alias == kNoValue;
        refuse_for("ByName",
                   none ? "" : validation_error(*alias, Text{sizeof(AdBaseInfo::ByName)}));
        host.alias = none ? "" : *alias;
    }
    if (const std::string *access = text_of(command, "AccessEnable")) {
        host.blocked = !flag_of("AccessEnable", *access);
    }
    // No device can have the network to itself: "0" is accepted, nothing else.
    if (const std::string *monopoly = text_of(command, "NetMonopoly")) {
        refuse_for("NetMonopoly", validation_error(*monopoly, one_of("0")));
    }
}

// A command is recognised by a key that no other has, and must not contain any other keys.
struct Form {
    const char *sign; // empty for the command that has none
    std::set<std::string> keys;
    void (*run)(State &state, ChildRouter &router, const Json &command);
};

static const std::vector<Form> &forms()
{
    static const std::vector<Form> forms = {
        {"Mac",
         {"DeviceID", "Mac", "DevType", "ByName", "NetMonopoly", "AccessEnable"},
         [](State &state, ChildRouter &router, const Json &command) {
             set_device(state.home, router, command);
         }},
        {"Name",
         {"DeviceID", "Name"},
         [](State &, ChildRouter &router, const Json &command) {
             rename_router(router, required_text(command, "Name"));
         }},
        {"Recovery",
         {"DeviceID", "Recovery"},
         [](State &state, ChildRouter &router, const Json &command) {
             refuse_for("Recovery",
                        validation_error(required_text(command, "Recovery"), one_of("1")));
             recover(state.factory, router);
         }},
        {"",
         {"DeviceID"},
         [](State &, ChildRouter &router, const Json &) {
             restart(router);
         }},
    };
    return forms;
}

static void run_command(State &state, ChildRouter &router, const Json &command)
{
    const Form &form = *std::ranges::find_if(
        forms(), [&](const Form &it) { return *it.sign == '\0' || command.contains(it.sign); });
    for (const auto &[key, value] : command.items()) {
        if (!form.keys.contains(key)) {
            throw Error("no command for a child router has the key " + in_quotes(key) +
                        (*form.sign != '\0' ? std::string(" together with ") + form.sign : ""));
        }
    }
    form.run(state, router, command);
}

// ---- The relay ---------------------------------------------------------------------------------

// A text with an explicit length.
static Argument request_bytes(const char *name, const std::string_view &text)
{
    return {name, text.data() != nullptr ? &text : nullptr, false, [](const void *value, bool) {
                return in_quotes(*static_cast<const std::string_view *>(value));
            }};
}

int32_t devapi_cmdstring_sendto_tslink(const char *text, int32_t length)
{
    const std::string_view sent(text,
                                text != nullptr && length > 0 ? static_cast<size_t>(length) : 0);
    return setting(__func__, {request_bytes("text", sent), number("length", length)},
                   [&](State &state) {
                       const Json command = parse_command(sent);
                       run_command(state, addressed_router(state.home, command), command);
                       return 0;
                   });
}

// ---- The devices of a child router -------------------------------------------------------------

// In the form in which the main router reports its own devices.
static Json described(const AdBaseInfo &info)
{
    return {{"Mac", info.Mac},
            {"UID", info.UID},
            {"DevType", info.DevType},
            {"DevFactory", info.DevFactory},
            {"DevModle", info.DevType},
            {"Name", info.Name},
            {"ByName", info.ByName},
            {"OS", info.OS},
            {"Version", info.Version},
            {"NetStatus", info.NetStatus},
            {"NetMonopoly", info.NetMonopoly},
            {"AccessType", info.AccessType},
            {"AccessEnable", info.AccessEnable},
            {"AccessTime", info.AccessTime},
            {"UpSpeed", info.UpSpeed},
            {"DownSpeed", info.DownSpeed},
            {"ip", info.ip},
            {"GreennetProtectEnable", info.GreennetProtectEnable},
            {"StaticDhcpEnable", info.StaticDhcpEnable}};
}

static Json devices_of(const State &state, const ChildRouter &router)
{
    Json devices = Json::array();
    for (const Host *host : hosts_at(state.home, &router)) {
        AdBaseInfo info = {};
        fill(info, state, *host, state.home.local_times ? Clock::kLocal : Clock::kUtc);
        devices.push_back(described(info));
    }
    return {{"BaseInfo", devices}, {"Status", "0"}};
}

// A reply in memory that the plug-in frees.
static Argument reply_allocated_text(const char *name, char **text)
{
    return {name, text, true, [](const void *value, bool) {
                return in_quotes(*static_cast<char *const *>(value));
            }};
}

int32_t devapi_cmdstring_sendto_tslink_with_retinfo(const char *text, const char *method,
                                                    char **answer)
{
    return query(__func__,
                 {request_text("text", text), request_text("method", method),
                  reply_allocated_text("answer", answer)},
                 [&](const State &state) {
                     refuse_for("method", validation_error(std::string(method),
                                                           one_of("get_childrouter_host_info")));
                     const Json command = parse_command(text);
                     const ChildRouter &router = addressed_router(state.home, command);
                     const std::string devices = devices_of(state, router).dump();
                     *answer = allocated<char>(devices.size() + 1);
                     devices.copy(*answer, devices.size());
                     return 0;
                 });
}
