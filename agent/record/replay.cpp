// SPDX-License-Identifier: MIT
#include "record/replay.h"

#include "host/plugin_host.h"
#include "host/plugin_seam.h"
#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/log_format.h"
#include "record/device_answer.h"
#include "record/difference.h"
#include "record/json_members.h"
#include "record/recording_reader.h"
#include "record/sequence.h"
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>
#include <pthread.h>
#include <set>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace agent::record {

namespace {

// What was played, and what came of it; shared with the process that plays a session.
struct Tally {
    size_t commands = 0;
    char command[64] = ""; // the last one
    size_t calls = 0;
    size_t differences = 0;
    bool is_cut = false;
};

const cJSON *after(const Event &event, const char *argument)
{
    return member(member(member(event.line.get(), "arguments"), argument), "after");
}

int int_or(const cJSON *number, int otherwise)
{
    return cJSON_IsNumber(number) != 0 ? number->valueint : otherwise;
}

void copy_text(char *out, size_t size, const std::string &text)
{
    const size_t length = std::min(text.size(), size - 1);
    memcpy(out, text.data(), length);
    out[length] = '\0';
}

// The arguments of a call of a host service, as a recording has them.
class Given {
  public:
    Given() : json_(new_object()) {}

    Given &text(const char *name, const char *value)
    {
        add_member(json_.get(), name,
                   value != nullptr ? text_of_bytes(value) : Json(cJSON_CreateNull()));
        return *this;
    }
    Given &number(const char *name, double value)
    {
        add_member(json_.get(), name, Json(cJSON_CreateNumber(value)));
        return *this;
    }
    const cJSON *get() const { return json_.get(); }

  private:
    Json json_;
};

// struct tm has a pointer to the name of the time zone, which has to stay. A machine has one or two
// zones; the names that a file contains beyond these must not fill the memory.
const char *lasting(const std::string &text)
{
    constexpr size_t kMostTexts = 16;
    static std::mutex mutex;
    static std::set<std::string> texts;
    const std::lock_guard lock(mutex);
    const auto known = texts.find(text);
    if (known != texts.end()) {
        return known->c_str();
    }
    return texts.size() < kMostTexts ? texts.insert(text).first->c_str() : "";
}

void fill_time(tm &local, const cJSON *fields)
{
    local = {};
    local.tm_sec = int_or(member(fields, "tm_sec"), 0);
    local.tm_min = int_or(member(fields, "tm_min"), 0);
    local.tm_hour = int_or(member(fields, "tm_hour"), 0);
    local.tm_mday = int_or(member(fields, "tm_mday"), 0);
    local.tm_mon = int_or(member(fields, "tm_mon"), 0);
    local.tm_year = int_or(member(fields, "tm_year"), 0);
    local.tm_wday = int_or(member(fields, "tm_wday"), 0);
    local.tm_yday = int_or(member(fields, "tm_yday"), 0);
    local.tm_isdst = int_or(member(fields, "tm_isdst"), 0);
    local.tm_gmtoff = int_or(member(fields, "tm_gmtoff"), 0);
    local.tm_zone = lasting(decoded_text(member(fields, "tm_zone")).value_or(""));
}

// Exceptions must not reach the plug-in: when memory runs out, the call fails.
template <class Answer, class Result> Result guarded(Result failed, const Answer &answer)
{
    try {
        return answer();
    } catch (const std::exception &) {
        return failed;
    }
}

// The recording as the host of the plug-in.
class ReplayedServices : public PluginServices {
  public:
    explicit ReplayedServices(Sequence &sequence) : sequence_(sequence) {}

    // For a recording without the functions of host_agent.h: these do their work, nothing is
    // logged, and notices are accepted.
    void use_for_agent(PluginServices &own) { own_ = &own; }

    void log(const char *module, int32_t level, const char *format, va_list arguments) override
    {
        if (own_ != nullptr) {
            return;
        }
        guarded(0, [&] {
            const std::string text = format_log_text(true, format, arguments);
            take("ts_mod_log_printf",
                 Given().text("module", module).number("level", level).text("text", text.c_str()));
            return 0;
        });
    }

    char *base64_encode(const char *text) override
    {
        if (own_ != nullptr) {
            return own_->base64_encode(text);
        }
        return guarded(static_cast<char *>(nullptr), [&]() -> char * {
            const auto recorded = take("base64_encode", Given().text("text", text));
            const auto answer = decoded_text(result_of(recorded));
            return answer ? strdup(answer->c_str()) : nullptr;
        });
    }

    void getmd5(const char *text, char *out) override
    {
        if (own_ != nullptr) {
            return own_->getmd5(text, out);
        }
        guarded(0, [&] {
            write(take("getmd5", Given().text("text", text)), "out", out, HG_MD5_TEXT_SIZE);
            return 0;
        });
    }

    void mac_form_translate(const char *in, int32_t form, char *out) override
    {
        if (own_ != nullptr) {
            return own_->mac_form_translate(in, form, out);
        }
        guarded(0, [&] {
            write(take("mac_form_translate", Given().text("in", in).number("form", form)), "out",
                  out, HG_MAC_TEXT_SIZE);
            return 0;
        });
    }

    void ts_sys_mgr_get_brmac(char *mac) override
    {
        if (own_ != nullptr) {
            return own_->ts_sys_mgr_get_brmac(mac);
        }
        guarded(0, [&] {
            write(take("ts_sys_mgr_get_brmac", Given()), "mac", mac, HG_BRIDGE_MAC_SIZE);
            return 0;
        });
    }

    int32_t dev_is_exist(int32_t index) override
    {
        return own_ != nullptr ? 0 : number_from("dev_is_exist", Given().number("index", index));
    }
    int32_t kaa_device_notice(const char *text) override
    {
        return own_ != nullptr ? 0 : number_from("kaa_device_notice", Given().text("text", text));
    }
    int32_t kaa_update_profile_info() override
    {
        return own_ != nullptr ? 0 : number_from("kaa_update_profile_info", Given());
    }
    int system(const char *command) override
    {
        return number_from("system", Given().text("command", command));
    }

    void free_str_buf(char **text) override
    {
        guarded(0, [&] {
            if (own_ != nullptr) {
                return 0;
            }
            take("free_str_buf", Given().text("text", text != nullptr ? *text : nullptr));
            return 0;
        });
        if (text != nullptr) {
            free(*text);
            *text = nullptr;
        }
    }

    time_t time(time_t *result) override
    {
        const time_t now = guarded(static_cast<time_t>(-1), [&] {
            const auto recorded = take("time", Given());
            const cJSON *number = result_of(recorded);
            constexpr double kLimit = 1e15; // far beyond any clock, in the range of the type
            return cJSON_IsNumber(number) != 0 && std::abs(number->valuedouble) < kLimit
                       ? static_cast<time_t>(number->valuedouble)
                       : static_cast<time_t>(-1);
        });
        if (result != nullptr) {
            *result = now;
        }
        return now;
    }

    tm *localtime_r(const time_t *time, tm *result) override
    {
        return guarded(static_cast<tm *>(nullptr), [&]() -> tm * {
            const auto recorded =
                take("localtime_r", Given().number("time", static_cast<double>(*time)));
            if (!recorded || int_or(result_of(recorded), -1) != 0) {
                return nullptr;
            }
            fill_time(*result, after(*recorded, "local"));
            return result;
        });
    }

    unsigned sleep(unsigned seconds) override
    {
        return static_cast<unsigned>(
            std::max(number_from("sleep", Given().number("seconds", seconds)), 0));
    }

  private:
    std::optional<Event> take(const char *service, const Given &given)
    {
        return sequence_.take({EventKind::kService, service, given.get()});
    }

    static const cJSON *result_of(const std::optional<Event> &recorded)
    {
        return recorded ? member(recorded->line.get(), "result") : nullptr;
    }

    int number_from(const char *service, const Given &given)
    {
        return guarded(-1, [&] { return int_or(result_of(take(service, given)), -1); });
    }

    static void write(const std::optional<Event> &recorded, const char *argument, char *out,
                      size_t size)
    {
        const auto text = recorded ? decoded_text(after(*recorded, argument)) : std::nullopt;
        if (text) {
            copy_text(out, size, *text);
        } else if (!recorded) {
            *out = '\0';
        }
    }

    Sequence &sequence_;
    PluginServices *own_ = nullptr; // null where the recording has all functions
};

// Plays one session in this process. Exists until the process ends.
class Replay : public DeviceStage, public PluginSeam {
  public:
    Replay(RecordingReader &recording, DifferenceReport &report, const std::string &plugin,
           Tally &tally)
        : sequence_(recording, report, [this](const Event &request) { run_request(request); }),
          services_(sequence_), tally_(tally),
          has_agent_services_(
              cJSON_IsFalse(member(recording.head().line.get(), "agent_services")) == 0),
          has_pseudonyms_(recording.has_pseudonyms())
    {
        playing = this;
        use_seams([](const HostOptions &, const std::string &,
                     const std::string &) -> PluginSeam * { return playing; });
        HostOptions options;
        options.plugin = plugin;
        options.device_stage = this;
        host_ = std::make_unique<PluginHost>(options);
    }

    Sequence::Played play() { return sequence_.play(); }

    void run(DeviceCall &call) override
    {
        const Json given = given_to(call);
        if (has_pseudonyms_) {
            hide_remains(given.get());
        }
        const auto recorded = sequence_.take({EventKind::kCall, call.function.name, given.get()});
        if (recorded) {
            answer_call(call, recorded->line.get());
        } else {
            refuse_call(call);
        }
    }

    DeviceStage &stage(DeviceStage &next) override { return next; }
    PluginServices &services(PluginServices &next) override
    {
        if (!has_agent_services_) {
            services_.use_for_agent(next);
        }
        return services_;
    }
    void begin_command(std::string_view /*command*/, const cJSON * /*request*/) override {}
    void begin_function(const char * /*function*/, Texts /*arguments*/) override {}
    void end(const cJSON * /*reply*/, int32_t /*result*/) override {}

  private:
    void run_request(const Event &request);
    Json run_function(const Event &request);
    void upgrade_image(decltype(&pthread_hg_image_upgrade) upgrade, const std::string &url) const;

    static Replay *playing;

    Sequence sequence_;
    ReplayedServices services_;
    Tally &tally_;
    const bool has_agent_services_;
    const bool has_pseudonyms_;
    std::unique_ptr<PluginHost> host_;
};

Replay *Replay::playing = nullptr;

Json result_and_reply(int32_t result, Json reply)
{
    Json found = new_object();
    add_member(found.get(), "result", Json(cJSON_CreateNumber(result)));
    if (reply != nullptr) {
        add_member(found.get(), "reply", std::move(reply));
    }
    return found;
}

// Calls a function that the plug-in exports. Result: what is compared.
Json Replay::run_function(const Event &request)
{
    constexpr const char *kBuilders[] = {
        "json_get_home_page_info", "json_get_main_router_info", "json_get_main_router_baseinfo",
        "json_get_topo_router_info", "json_get_topo_router_agent_info_bynewmethod"};
    const auto text = [&](const char *name) {
        return decoded_text(member(request.given.get(), name)).value_or("");
    };
    const std::string &name = request.name;
    void *function = host_->symbol(name.c_str());
    if (function == nullptr) {
        return result_and_reply(-1, nullptr);
    }
    if (name == "json_msg_notice_to_app") {
        return result_and_reply(reinterpret_cast<decltype(&json_msg_notice_to_app)>(function)(
                                    text("text").c_str(), text("plugin_name").c_str()),
                                nullptr);
    }
    if (name == "pthread_hg_image_upgrade") {
        upgrade_image(reinterpret_cast<decltype(&pthread_hg_image_upgrade)>(function), text("url"));
        return result_and_reply(0, nullptr);
    }
    Json object = new_object();
    int32_t result = -1;
    if (name == "json_get_router_sta_info") {
        result = reinterpret_cast<decltype(&json_get_router_sta_info)>(function)(
            object.get(), text("router").c_str(), text("path").c_str());
    } else if (std::ranges::find(kBuilders, name) != std::end(kBuilders)) {
        result = reinterpret_cast<decltype(&json_get_home_page_info)>(function)(object.get());
    }
    return result_and_reply(result, std::move(object));
}

// As an agent does: it takes the lock, which the function releases.
void Replay::upgrade_image(decltype(&pthread_hg_image_upgrade) upgrade,
                           const std::string &url) const
{
    auto *lock = static_cast<pthread_mutex_t *>(host_->symbol("downimagelock"));
    auto *address = static_cast<char *>(host_->symbol("g_update_url"));
    if (lock != nullptr && address != nullptr && pthread_mutex_trylock(lock) == 0) {
        copy_text(address, HG_UPDATE_URL_SIZE, url);
        upgrade(nullptr);
    }
}

void Replay::run_request(const Event &request)
{
    ++tally_.commands;
    copy_text(tally_.command, sizeof tally_.command, request.name);
    Json found;
    if (member(request.line.get(), "command") == nullptr) {
        found = run_function(request);
    } else {
        Json object(cJSON_Duplicate(request.given.get(), 1));
        const int32_t result = host_->process(request.name, object.get());
        found = result_and_reply(result, std::move(object));
    }
    sequence_.take({EventKind::kReply, "", found.get()});
}

// Plays one session in this process. Result: the exit status.
int play_session(const ReplayOptions &options, const LineStart &start, Tally &tally)
{
    static std::unique_ptr<Replay>
        replay; // workers of the plug-in may use it until the process ends
    static std::unique_ptr<RecordingReader> recording;
    static std::unique_ptr<DifferenceReport> report;
    recording = std::make_unique<RecordingReader>(options.file);
    recording->go_to(start);
    report = std::make_unique<DifferenceReport>(
        DifferenceReport::Style{.shows_all = options.shows_all, .in_colour = is_in_colour()},
        tally.differences);
    replay = std::make_unique<Replay>(*recording, *report, options.plugin, tally);
    const Sequence::Played played = replay->play();
    tally.calls += played.calls;
    tally.is_cut = tally.is_cut || played.is_cut;
    return kSuccess;
}

// Memory that a process shares with those that it starts.
Tally &shared_tally()
{
    void *memory =
        mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    return *new (memory) Tally;
}

// How the process that played a session has ended. Result: its exit status.
int await_player(pid_t player, const Tally &tally)
{
    int status = 0;
    while (waitpid(player, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFSIGNALED(status)) {
        return WEXITSTATUS(status);
    }
    print_error("signal " + std::to_string(WTERMSIG(status)) + " ended the plug-in in command " +
                std::to_string(tally.commands) + ", " + tally.command);
    return kCommandFailed;
}

int show_result(const ReplayOptions &options, const Tally &tally)
{
    const size_t differences = tally.differences;
    return show(options.file + ": " + count_of(tally.commands, "command") + ", " +
                count_of(tally.calls, "call") + ": " +
                (differences == 0 ? "no difference" : count_of(differences, "difference")) +
                (differences > 1 && !options.shows_all ? "; --all shows every one" : "") +
                (tally.is_cut ? "; the recording has no end" : "") + "\n");
}

} // namespace

int run_replay(const ReplayOptions &options)
{
    try {
        const std::vector<LineStart> sessions = RecordingReader(options.file).sessions();
        Tally &tally = shared_tally();
        // The plug-in has state that lasts as long as its process; so has its crash.
        for (const LineStart &session : sessions) {
            const pid_t parent = getpid();
            const pid_t player = fork();
            if (player == 0) {
                prctl(PR_SET_PDEATHSIG, SIGKILL);
                if (getppid() != parent) {
                    return kCommandFailed;
                }
                return play_session(options, session, tally);
            }
            const int status = player > 0 ? await_player(player, tally) : throw std::bad_alloc();
            if (status != kSuccess) {
                return status;
            }
        }
        const int status = show_result(options, tally);
        return status != kSuccess ? status : tally.differences == 0 ? kSuccess : kCommandFailed;
    } catch (const BadRecording &problem) {
        print_error(problem.what());
        return kWrongUsage;
    }
}

} // namespace agent::record
