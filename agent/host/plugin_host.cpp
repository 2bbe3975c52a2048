// SPDX-License-Identifier: MIT
#include "host/plugin_host.h"

#include "host/device_trace.h"
#include "host/device_watch.h"
#include "host/library_file.h"
#include "host/plugin_seam.h"
#include "io/text.h"
#include "protocol/device_layout.h"
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/processjsonability.h"

#include <dlfcn.h>
#include <filesystem>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace agent {

namespace {

constexpr char kDeviceLibrary[] = "libsimulated_gateway.so";
constexpr char kDeviceLayer[] = "libdevice_layer.so";
constexpr char kPlugin[] = "libsmart_router_service.so";
constexpr char kOwnLibraries[] = "the libraries that it needs";
constexpr char kDeviceProviders[] = "the device library";
constexpr char kOpenGateway[] = "simulated_gateway_open";
constexpr char kPrepare[] = "simulated_gateway_prepare";
constexpr size_t kMaxGatewayError = 1024;

// Libraries are found relative to the executable, so that the installation can be moved: in the
// installed place, or in the directory lib next to the executable's.
std::string library_path(const std::string &given, const char *standard)
{
    namespace fs = std::filesystem;
    if (!given.empty()) {
        return fs::absolute(given); // dlopen() would search a bare name elsewhere
    }
    std::error_code problem;
    const fs::path folder = fs::read_symlink("/proc/self/exe", problem).parent_path();
    if (problem) {
        throw HostError(kCannotLoad, std::string("cannot find out where ") + standard +
                                         " is: /proc/self/exe: " + problem.message());
    }
    const fs::path installed = (folder / HGAGENT_LIBRARIES / standard).lexically_normal();
    return fs::exists(installed, problem) ? installed : folder.parent_path() / "lib" / standard;
}

// The message for a library that lacks these symbols.
std::string lack_of(const std::vector<std::string> &missing, const std::string &providers,
                    bool verbose)
{
    const bool one = missing.size() == 1;
    return std::to_string(missing.size()) + (one ? " name is" : " names are") +
           " provided neither by " + providers +
           " nor by the agent: " + list_of_names(missing, verbose);
}

// providers: where else a library of this kind finds its symbols.
void *load(const std::string &kind, const std::string &path, int flags,
           const std::string &providers, bool verbose)
{
    const std::string message = "cannot load the " + kind + " " + path + ": ";
    std::error_code problem;
    // Opening anything else, such as a pipe, might block forever.
    if (!std::filesystem::is_regular_file(path, problem)) {
        throw HostError(kCannotLoad,
                        message + (problem ? problem.message() : "not a regular file"));
    }
    if (is_cut_off(path)) {
        throw HostError(kCannotLoad, message + "the file is cut off");
    }
    void *library = dlopen(path.c_str(), flags);
    if (library == nullptr) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the text is per thread
        const std::string reason = dlerror();
        const std::vector<std::string> missing = missing_symbols(path);
        throw HostError(kCannotLoad,
                        message +
                            (missing.empty() ? reason : lack_of(missing, providers, verbose)));
    }
    return library;
}

template <class Function> Function *function_of(void *library, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(library, name));
}

const char *text_or_null(const std::optional<std::string> &text)
{
    return text ? text->c_str() : nullptr;
}

// The usual notation: the upper half of the number, then the lower half.
std::string version_text(int32_t version)
{
    const auto halves = static_cast<uint32_t>(version);
    return std::to_string(halves >> 16) + "." + std::to_string(halves & 0xffff);
}

// Records and prototypes differ between major versions. A library without a version is assumed to
// be compatible.
void check_version(void *library, const std::string &path)
{
    const auto version =
        function_of<decltype(device_access_version)>(library, "device_access_version");
    if (version == nullptr) {
        return;
    }
    const int32_t theirs = version();
    if (theirs / 65536 != DEVICE_ACCESS_VERSION_MAJOR) {
        throw HostError(kCannotLoad, "the device library " + path + " is built with version " +
                                         version_text(theirs) +
                                         " of device_access.h, and this agent with version " +
                                         version_text(DEVICE_ACCESS_VERSION));
    }
}

// The last stage: the device library's own functions.
class DeviceFunctions : public DeviceStage {
  public:
    explicit DeviceFunctions(void *library) : library_(library) {}

    void run(DeviceCall &call) override
    {
        void *function = dlsym(library_, call.function.name);
        call.is_missing = function == nullptr;
        if (function != nullptr) {
            call.result = call.make(function, call.arguments.data());
        }
    }

  private:
    void *library_;
};

// The last stage where there is no device library.
class DeviceReplacement : public DeviceStage {
  public:
    explicit DeviceReplacement(DeviceStage &stage) : stage_(stage) {}

    void run(DeviceCall &call) override { stage_.run(call); }

  private:
    DeviceStage &stage_;
};

FindSeam find_seam = nullptr;

PluginSeam *seam_for(const HostOptions &options)
{
    return find_seam == nullptr ? nullptr
                                : find_seam(options, library_path(options.plugin, kPlugin),
                                            library_path(options.device, kDeviceLibrary));
}

// The stages between the plug-in and the device library, the last one first. They live until the
// process ends, because workers of the plug-in may call them until then.
std::vector<std::unique_ptr<DeviceStage>> stages;

template <class Stage, class... Arguments> Stage &add_stage(Arguments &&...arguments)
{
    auto stage = std::make_unique<Stage>(std::forward<Arguments>(arguments)...);
    Stage &added = *stage;
    stages.push_back(std::move(stage));
    return added;
}

// A library that is loaded into the global scope later finds the layer's functions before those of
// the device library. The device library's own calls are already bound.
void load_layer(DeviceStage &first)
{
    void *layer = load("device layer", library_path("", kDeviceLayer), RTLD_NOW | RTLD_GLOBAL,
                       kOwnLibraries, false);
    const auto start =
        function_of<std::remove_pointer_t<StartDeviceLayer>>(layer, kStartDeviceLayer);
    if (start == nullptr) {
        throw HostError(kCannotLoad, "the device layer cannot be started");
    }
    start(&first);
}

} // namespace

void load_in_advance(const HostOptions &options, const std::vector<std::string> &scenarios)
{
    const std::string path = library_path(options.device, kDeviceLibrary);
    void *device = load("device library", path, RTLD_NOW | RTLD_GLOBAL, kOwnLibraries, false);
    load("plug-in", library_path(options.plugin, kPlugin), RTLD_NOW, kDeviceProviders, false);
    const auto prepare = function_of<decltype(simulated_gateway_prepare)>(device, kPrepare);
    if (prepare == nullptr) {
        throw HostError(kWrongUsage,
                        "the device library " + path + " is not the simulated gateway");
    }
    for (const std::string &scenario : scenarios) {
        char error[kMaxGatewayError] = "";
        if (prepare(scenario.c_str(), error, sizeof(error)) != 0) {
            throw HostError(kCannotLoad, error);
        }
    }
}

void use_seams(FindSeam find)
{
    find_seam = find;
}

DeviceLibrary::DeviceLibrary(const HostOptions &options, const DeviceWatcher *watcher)
    : seam_(seam_for(options))
{
    if (options.device_stage != nullptr) {
        put_stages(options, watcher, true);
        load_layer(seam_ != nullptr ? seam_->stage(*stages.back()) : *stages.back());
        return;
    }
    const std::string path = library_path(options.device, kDeviceLibrary);
    library_ = load("device library", path, RTLD_NOW | RTLD_LOCAL, kOwnLibraries, options.verbose);
    check_version(library_, path);
    // The simulated gateway traces its own calls.
    const bool has_own_trace = symbol(kOpenGateway) != nullptr;
    if (watcher != nullptr || seam_ != nullptr || (options.trace && !has_own_trace)) {
        put_stages(options, watcher, !has_own_trace);
        load_layer(seam_ != nullptr ? seam_->stage(*stages.back()) : *stages.back());
        has_layer_ = true;
    }
    dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL | RTLD_NOLOAD);
    open_gateway(path, options);
}

void DeviceLibrary::put_stages(const HostOptions &options, const DeviceWatcher *watcher,
                               bool may_trace)
{
    if (options.device_stage != nullptr) {
        add_stage<DeviceReplacement>(*options.device_stage);
    } else {
        add_stage<DeviceFunctions>(library_);
    }
    if (watcher != nullptr) {
        add_stage<DeviceWatch>(*stages.back(), *watcher);
    }
    if (options.trace && may_trace) {
        trace_ = &add_stage<DeviceTrace>(*stages.back(), *options.trace, options.show_secrets);
    }
    has_watcher_ = watcher != nullptr;
}

// The layer has every function, so the plug-in would load even if the device library lacks one.
void DeviceLibrary::require_functions(const std::string &plugin, bool verbose) const
{
    if (!has_layer_ || has_watcher_) { // the watch must see calls of missing functions
        return;
    }
    std::vector<std::string> missing;
    for (const std::string &name : needed_symbols(plugin)) {
        if (device_layout::find(name) != nullptr && symbol(name.c_str()) == nullptr) {
            missing.push_back(name);
        }
    }
    if (!missing.empty()) {
        throw HostError(kCannotLoad, "cannot load the plug-in " + plugin + ": " +
                                         lack_of(missing, kDeviceProviders, verbose));
    }
}

void DeviceLibrary::open_gateway(const std::string &path, const HostOptions &options)
{
    const auto open = function_of<decltype(simulated_gateway_open)>(library_, kOpenGateway);
    if (open == nullptr) {
        if (options.scenario || options.state || options.firmware_folder || options.firmware_key ||
            !options.faults.empty()) {
            throw HostError(kWrongUsage,
                            "--scenario, --state, --fault, --firmware-folder and --firmware-key "
                            "are for the simulated gateway, and the device library " +
                                path + " is none");
        }
        close_ = function_of<void()>(library_, "device_library_close");
        return;
    }

    std::vector<const char *> faults;
    for (const std::string &fault : options.faults) {
        faults.push_back(fault.c_str());
    }
    faults.push_back(nullptr);

    SimulatedGatewayOptions gateway = {};
    gateway.scenario = text_or_null(options.scenario);
    gateway.state_file = text_or_null(options.state);
    gateway.faults = options.faults.empty() ? nullptr : faults.data();
    gateway.trace = text_or_null(options.trace);
    gateway.show_secrets = options.show_secrets ? 1 : 0;
    gateway.firmware_folder = text_or_null(options.firmware_folder);
    gateway.firmware_key = text_or_null(options.firmware_key);
    gateway.reboot_seconds = options.reboot_seconds.value_or(0);
    SimulatedGatewayHome home = {};
    if (options.home) {
        home = {options.home->seed, options.home->number};
        gateway.home = &home;
    }
    char error[kMaxGatewayError] = "";
    if (open(&gateway, error, sizeof(error)) != 0) {
        throw HostError(kCannotLoad, error);
    }
    close_ = function_of<decltype(simulated_gateway_close)>(library_, "simulated_gateway_close");
}

DeviceLibrary::~DeviceLibrary()
{
    if (trace_ != nullptr) {
        trace_->finish();
    }
    // The library itself stays loaded: workers of the plug-in may still be calling it.
    if (close_ != nullptr) {
        close_();
    }
}

void *DeviceLibrary::symbol(const char *name) const
{
    return library_ != nullptr ? dlsym(library_, name) : nullptr;
}

PluginHost::PluginHost(const HostOptions &options, const DeviceWatcher *watcher)
    : device_(options, watcher), path_(library_path(options.plugin, kPlugin)),
      library_(load("plug-in", path_, RTLD_NOW, kDeviceProviders, options.verbose)),
      process_(function_of<decltype(hg_process_json_cmd)>(library_, "hg_process_json_cmd"))
{
    device_.require_functions(path_, options.verbose);
    if (process_ == nullptr) {
        throw HostError(kCannotLoad,
                        "the plug-in " + path_ + " has no function hg_process_json_cmd");
    }

    if (device_.seam() != nullptr) {
        replace_services(device_.seam()->services(host_services()),
                         reinterpret_cast<const void *>(process_));
    }

    static char version_info[HG_VERSION_INFO_SIZE];
    const auto kept = static_cast<char **>(symbol("info_wersion"));
    if (kept != nullptr) {
        *kept = version_info;
    }
}

int32_t PluginHost::process(const std::string &command, cJSON *object) const
{
    PluginSeam *seam = device_.seam();
    if (seam == nullptr) {
        return process_(command.c_str(), object);
    }
    seam->begin_command(command, object);
    const int32_t result = process_(command.c_str(), object);
    seam->end(object, result);
    return result;
}

void *PluginHost::symbol(const char *name) const
{
    return dlsym(library_, name);
}

void *PluginHost::required_symbol(const char *name) const
{
    void *found = symbol(name);
    if (found == nullptr) {
        throw HostError(kCannotLoad, "the plug-in " + path_ + " does not export " + name);
    }
    return found;
}

} // namespace agent
