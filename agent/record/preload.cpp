// SPDX-License-Identifier: MIT
// libhg_record.so: loaded with LD_PRELOAD, it records what any agent, its plug-in and its device
// library do. The functions of the device library are found behind it, or in HGAGENT_DEVICE.
#include "host/plugin_services.h"
#include "record/recording.h"
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

#include <array>
#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>

extern "C" void device_layer_start(agent::DeviceStage *first);

namespace agent::record {

namespace {

constexpr char kDispatcher[] = "hg_process_json_cmd";

using FindSymbol = void *(*)(void *, const char *) noexcept;

#ifdef __GLIBC__
// The C library's dlsym(), which is hidden by the one below. Its version depends on the processor.
FindSymbol real_dlsym() noexcept
{
    static const FindSymbol found = [] {
        for (const char *version : {"GLIBC_2.34", "GLIBC_2.17", "GLIBC_2.2.5", "GLIBC_2.4",
                                    "GLIBC_2.27", "GLIBC_2.2", "GLIBC_2.0"}) {
            void *function = dlvsym(RTLD_NEXT, "dlsym", version);
            if (function != nullptr) {
                return reinterpret_cast<FindSymbol>(function);
            }
        }
        fputs("libhg_record.so: this C library has no known dlsym()\n", stderr);
        abort();
    }();
    return found;
}
#else
FindSymbol real_dlsym() noexcept
{
    return dlsym;
}
#endif

void *next_symbol(const char *name)
{
    return real_dlsym()(RTLD_NEXT, name);
}

template <class Function> Function *next_function(const char *name)
{
    return reinterpret_cast<Function *>(next_symbol(name));
}

// Whether the address is in this library.
bool is_here(const void *address)
{
    static const char here = 0;
    Dl_info own = {};
    Dl_info other = {};
    return dladdr(&here, &own) != 0 && dladdr(address, &other) != 0 &&
           own.dli_fbase == other.dli_fbase;
}

std::string variable(const char *name)
{
    const char *value = getenv(name); // NOLINT(concurrency-mt-unsafe): nothing here changes it
    return value != nullptr ? value : "";
}

uint64_t limit_of(const std::string &text)
{
    int64_t limit = HostOptions().record_limit;
    const char *const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, limit);
    if (!text.empty() && (error != std::errc() || rest != end || limit < kLeastRecordLimit ||
                          limit > kMostRecordLimit)) {
        throw std::runtime_error("HGAGENT_RECORD_LIMIT: not a number of bytes from " +
                                 std::to_string(kLeastRecordLimit) + " to " +
                                 std::to_string(kMostRecordLimit));
    }
    return static_cast<uint64_t>(limit);
}

void *given_device_library()
{
    static void *const library = [] {
        const std::string path = variable("HGAGENT_DEVICE");
        return path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    }();
    return library;
}

// The last stage: the functions of the device library.
class NextDevice : public DeviceStage {
  public:
    void run(DeviceCall &call) override
    {
        std::atomic<void *> &known =
            functions_[static_cast<size_t>(&call.function - std::begin(device_layout::kFunctions))];
        void *function = known.load(std::memory_order_acquire);
        if (function == nullptr) {
            function = next_symbol(call.function.name);
            if (function == nullptr && given_device_library() != nullptr) {
                function = real_dlsym()(given_device_library(), call.function.name);
            }
            known.store(function, std::memory_order_release);
        }
        call.is_missing = function == nullptr;
        if (function != nullptr) {
            call.result = call.make(function, call.arguments.data());
        }
    }

  private:
    std::array<std::atomic<void *>, std::size(device_layout::kFunctions)> functions_ = {};
};

// The functions of the agent and of the C library that are found behind this library.
class NextServices : public PluginServices {
  public:
    void log(const char *module, int32_t level, const char *format, va_list arguments) override
    {
        static const auto next = next_function<decltype(ts_mod_log_printf)>("ts_mod_log_printf");
        // Not on the stack: a thread of a router may have little of it.
        char *text = nullptr;
        if (next != nullptr && vasprintf(&text, format, arguments) >= 0) {
            next(module, level, "%s", text);
            free(text);
        }
    }
    char *base64_encode(const char *text) override
    {
        static const auto next = next_function<decltype(::base64_encode)>("base64_encode");
        return next != nullptr ? next(text) : nullptr;
    }
    void getmd5(const char *text, char *out) override
    {
        static const auto next = next_function<decltype(::getmd5)>("getmd5");
        *out = '\0';
        if (next != nullptr) {
            next(text, out);
        }
    }
    void mac_form_translate(const char *in, int32_t form, char *out) override
    {
        static const auto next =
            next_function<decltype(::mac_form_translate)>("mac_form_translate");
        *out = '\0';
        if (next != nullptr) {
            next(in, form, out);
        }
    }
    void ts_sys_mgr_get_brmac(char *mac) override
    {
        static const auto next =
            next_function<decltype(::ts_sys_mgr_get_brmac)>("ts_sys_mgr_get_brmac");
        *mac = '\0';
        if (next != nullptr) {
            next(mac);
        }
    }
    int32_t dev_is_exist(int32_t index) override
    {
        static const auto next = next_function<decltype(::dev_is_exist)>("dev_is_exist");
        return next != nullptr ? next(index) : 0;
    }
    int32_t kaa_device_notice(const char *text) override
    {
        static const auto next = next_function<decltype(::kaa_device_notice)>("kaa_device_notice");
        return next != nullptr ? next(text) : -1;
    }
    int32_t kaa_update_profile_info() override
    {
        static const auto next =
            next_function<decltype(::kaa_update_profile_info)>("kaa_update_profile_info");
        return next != nullptr ? next() : 0;
    }
    void free_str_buf(char **text) override
    {
        static const auto next = next_function<decltype(::free_str_buf)>("free_str_buf");
        if (next != nullptr) {
            next(text);
        }
    }
    int system(const char *command) override
    {
        static const auto next = next_function<decltype(::system)>("system");
        return next(command);
    }
    time_t time(time_t *result) override
    {
        static const auto next = next_function<decltype(::time)>("time");
        return next(result);
    }
    tm *localtime_r(const time_t *time, tm *result) override
    {
        static const auto next = next_function<decltype(::localtime_r)>("localtime_r");
        return next(time, result);
    }
    unsigned sleep(unsigned seconds) override
    {
        static const auto next = next_function<decltype(::sleep)>("sleep");
        return next(seconds);
    }
};

// What an agent's process has: it lives until the process ends.
class Preload {
  public:
    static Preload &get()
    {
        static Preload &preload = *new Preload;
        return preload;
    }

    // Null without HGAGENT_RECORD, or if the file cannot be written.
    Recording *recording() { return recording_.get(); }
    DeviceStage &stage() { return recording_ != nullptr ? recording_->stage(device_) : device_; }

    // The plug-in's dispatcher; null unless it is the first one.
    void use_plugin(void *dispatcher)
    {
        void *none = nullptr;
        if (dispatcher_.compare_exchange_strong(none, dispatcher) && recording_ != nullptr) {
            replace_services(recording_->services(host_services()), dispatcher);
        }
    }
    void *dispatcher() const { return dispatcher_; }

  private:
    Preload()
    {
        RecordOptions options;
        options.file = variable("HGAGENT_RECORD");
        if (options.file.empty()) {
            return;
        }
        options.mask_key = variable("HGAGENT_MASK_KEY");
        options.show_secrets = variable("HGAGENT_SHOW_SECRETS") == "1";
        options.program = "libhg_record.so " HGAGENT_VERSION;
        options.device = variable("HGAGENT_DEVICE");
        // The executable's own functions cannot be replaced.
        options.agent_services = is_here(real_dlsym()(RTLD_DEFAULT, "ts_mod_log_printf"));
        try {
            options.limit = limit_of(variable("HGAGENT_RECORD_LIMIT"));
            recording_ = std::make_unique<Recording>(options);
        } catch (const std::exception &problem) {
            fprintf(stderr, "libhg_record.so: %s; nothing is recorded\n", problem.what());
        }
    }

    NextDevice device_;
    std::unique_ptr<Recording> recording_;
    std::atomic<void *> dispatcher_ = nullptr;
};

// Begins the recording at the first call, not in every process that loads this library.
class FirstCall : public DeviceStage {
  public:
    void run(DeviceCall &call) override
    {
        static DeviceStage &stage = Preload::get().stage();
        stage.run(call);
    }
};

__attribute__((constructor)) void start()
{
    static FirstCall stage;
    device_layer_start(&stage);
}

int32_t process(const char *command, cJSON *object)
{
    Preload &preload = Preload::get();
    const auto dispatcher = reinterpret_cast<decltype(&hg_process_json_cmd)>(preload.dispatcher());
    Recording *recording = preload.recording();
    if (recording == nullptr || command == nullptr || object == nullptr) {
        return dispatcher(command, object);
    }
    recording->begin_command(command, object);
    const int32_t result = dispatcher(command, object);
    recording->end(object, result);
    return result;
}

} // namespace

} // namespace agent::record

agent::PluginServices &agent::host_services()
{
    static agent::record::NextServices &services = *new agent::record::NextServices;
    return services;
}

// For an agent that is linked with the plug-in.
int32_t hg_process_json_cmd(const char *command, cJSON *object)
{
    using namespace agent::record;
    static const bool found = [] {
        Preload::get().use_plugin(next_symbol(kDispatcher));
        return Preload::get().dispatcher() != nullptr;
    }();
    return found ? process(command, object) : -1;
}

#ifdef __GLIBC__
namespace agent::record {

namespace {

// Without the C library: a sanitizer calls dlsym() before its functions work.
bool is_dispatcher(const char *name)
{
    const char *wanted = kDispatcher;
    while (*name == *wanted && *name != '\0') {
        ++name;
        ++wanted;
    }
    return *name == *wanted;
}

__attribute__((noinline)) void *find_dispatcher(void *handle)
{
    void *dispatcher = real_dlsym()(handle, kDispatcher);
    if (dispatcher == nullptr || is_here(dispatcher)) {
        return dispatcher;
    }
    Preload &preload = Preload::get();
    preload.use_plugin(dispatcher);
    return dispatcher == preload.dispatcher() ? reinterpret_cast<void *>(&process) : dispatcher;
}

} // namespace

} // namespace agent::record

// For an agent that loads the plug-in. What RTLD_NEXT means depends on the caller's address: the
// call of the C library's function has to be a jump.
extern "C" void *dlsym(void *handle, const char *name) noexcept
{
    using namespace agent::record;
    if (handle != RTLD_NEXT && is_dispatcher(name)) {
        return find_dispatcher(handle);
    }
    return real_dlsym()(handle, name);
}
#endif
