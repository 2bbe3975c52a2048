// SPDX-License-Identifier: MIT
#include "shell/shell.h"

#include "io/pages.h"
#include "io/text.h"
#include "protocol/command_pages.h"
#include "protocol/json_text.h"
#include "protocol/protocol.h"
#include "protocol/reply.h"
#include "protocol/requests.h"
#include "shell/reply_text.h"
#include "smart_router_service/processjsonability.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace agent {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr ShellClock::duration kFirstPause = seconds(1);
constexpr ShellClock::duration kLongestPause = seconds(30);
// Short, because the user is waiting at the keyboard.
constexpr ShellClock::duration kForGreeting = seconds(2);
constexpr ShellClock::duration kForValues = seconds(2);
// How long values are cached for completion before they are requested again.
constexpr ShellClock::duration kKeep = seconds(10);
constexpr size_t kMaxShown = 200;

// Text from the service, which may contain anything, on one line.
std::string text_in(const Json &object, const char *key)
{
    return one_line(string_at(object.get(), key), kMaxShown);
}

std::string without_last_end(std::string page)
{
    while (page.ends_with('\n')) {
        page.pop_back();
    }
    return page;
}

std::string usage_page()
{
    Table table;
    for (const ShellWordHelp &help : shell_words()) {
        table.row({help.usage, help.summary});
    }
    std::ostringstream page;
    table.print(page, "");
    return page.str() + "Values are quoted as in a POSIX shell; JSON begins with { and needs no "
                        "quotes. The Tab key\ncompletes names, keys and values.";
}

} // namespace

Shell::Shell(ShellUser &user, std::string path, Look look)
    : user_(user), path_(std::move(path)), look_(look), pause_(kFirstPause)
{
}

int Shell::descriptor() const
{
    return client_ ? client_->descriptor() : -1;
}

short Shell::wanted_events() const
{
    return client_ ? client_->wanted_events() : short(0);
}

std::optional<ShellClock::time_point> Shell::work_time() const
{
    return client_ ? std::nullopt : std::optional(next_try_);
}

// ---- The connection -----------------------------------------------------------------------------

void Shell::connect()
{
    client_.emplace(path_,
                    [this](const std::string &name, const cJSON *data) { keep_event(name, data); });
    kept_.clear();
}

void Shell::lose(const ServiceError &problem)
{
    client_.reset();
    print_events();
    user_.show(std::string(problem.what()) + "; the shell will connect again");
    next_try_ = ShellClock::now() + pause_;
    pause_ = std::min(pause_ * 2, kLongestPause);
}

std::optional<ServiceAnswer> Shell::ask(const std::string &request,
                                        std::optional<ShellClock::time_point> until)
{
    client_->begin(request);
    for (;;) {
        client_->work();
        print_events();
        if (std::optional<ServiceAnswer> answer = client_->take_answer()) {
            return answer;
        }
        if (!user_.wait_for(client_->descriptor(), client_->wanted_events(), until)) {
            return std::nullopt;
        }
    }
}

void Shell::greet()
{
    const std::optional<ServiceAnswer> hello =
        ask(hello_request(), ShellClock::now() + kForGreeting);
    if (hello && hello->error.empty()) {
        service_ = text_in(hello->reply, "service");
        protocol_ = text_in(hello->reply, "protocol");
        epoch_ = text_in(hello->reply, "epoch");
    }
}

void Shell::connect_again()
{
    connect();
    const std::string epoch = epoch_;
    greet();
    if (!events_pattern_.empty()) {
        ask(subscribe_request(events_pattern_), ShellClock::now() + kForGreeting);
    }
    user_.show("connected to the service again" +
               std::string(!epoch.empty() && epoch != epoch_ ? "; it was restarted" : ""));
}

void Shell::work()
{
    try {
        if (client_) {
            client_->work();
            print_events();
        } else if (ShellClock::now() >= next_try_) {
            connect_again();
        }
    } catch (const ServiceError &problem) {
        if (client_) {
            lose(problem);
        } else { // already reported
            next_try_ = ShellClock::now() + pause_;
            pause_ = std::min(pause_ * 2, kLongestPause);
        }
    }
}

// ---- Events -------------------------------------------------------------------------------------

void Shell::keep_event(const std::string &name, const cJSON *data)
{
    if (events_pattern_.empty()) {
        return; // events that were in transit when they were switched off
    }
    if (look_ != Look::kLines) {
        events_ += (events_.empty() ? "" : "\n") +
                   event_for_terminal(name, data, look_ == Look::kColoured);
        return;
    }
    events_ += events_.empty() ? "" : "\n";
    events_ += "{\"event\":" + agent::quoted(name) +
               (data != nullptr ? ",\"data\":" + agent::print(data) : "") + "}";
}

void Shell::print_events()
{
    if (!events_.empty()) {
        user_.print(std::exchange(events_, ""));
    }
}

// ---- Completion ---------------------------------------------------------------------------------

Completion Shell::complete(std::string_view before_cursor)
{
    return agent::complete(before_cursor,
                           [this](const Description &found_in) { return known_values(found_in); });
}

std::vector<std::string> Shell::known_values(const Description &found_in)
{
    const std::string command = found_in["command"].text();
    const Description *description = find_description(command);
    if (!client_ || description == nullptr || !((*description)["effect"] == "none")) {
        return {};
    }
    const auto now = ShellClock::now();
    Kept &kept = kept_[command];
    if (kept.reply == nullptr || kept.until < now) {
        try {
            std::optional<ServiceAnswer> answer =
                ask(command_request(command, "{}"), now + kForValues);
            kept = {now + kKeep, answer ? std::move(answer->reply) : nullptr};
        } catch (const ServiceError &problem) {
            lose(problem);
            kept.reply = nullptr;
        }
    }
    return values_in_reply(kept.reply.get(), found_in);
}

// ---- Lines --------------------------------------------------------------------------------------

ExitStatus Shell::run(std::string_view line)
{
    try {
        return carry_out(parse_shell_line(line));
    } catch (const BadRequest &problem) {
        user_.show("bad request: " + std::string(problem.what()));
        return kWrongUsage;
    } catch (const ServiceError &problem) {
        lose(problem);
        return kCannotLoad;
    }
}

ExitStatus Shell::carry_out(const ShellInput &input)
{
    switch (input.verb) {
    case ShellVerb::kNothing:
        return kSuccess;
    case ShellVerb::kCall:
    case ShellVerb::kReport:
        return request(input);
    case ShellVerb::kEvents:
        return switch_events(input);
    case ShellVerb::kHelp:
        return help(input.name);
    case ShellVerb::kList:
        return list(input.name);
    case ShellVerb::kStatus:
        return status();
    case ShellVerb::kQuit:
        has_quit_ = true;
        return kSuccess;
    }
    return kWrongUsage;
}

ExitStatus Shell::request(const ShellInput &input)
{
    if (!client_) {
        connect_again();
    }
    const bool is_report = input.verb == ShellVerb::kReport;
    const std::optional<ServiceAnswer> answer =
        ask(is_report ? report_request(input.name, input.params)
                      : command_request(input.name, input.params));
    if (!answer) {
        user_.show("not waiting for the answer; the request may still be executed");
        return kCommandFailed;
    }
    pause_ = kFirstPause;
    if (!is_report && input.params != "{}") {
        kept_.clear(); // the command may have changed the values
    }
    return show_answer(input, *answer);
}

ExitStatus Shell::show_answer(const ShellInput &input, const ServiceAnswer &answer)
{
    if (!answer.error.empty()) {
        user_.show((answer.code.empty() ? "" : answer.code + ": ") + answer.error +
                   (answer.rule.empty() ? "" : " (" + answer.rule + ")"));
        return answer.code == "bad-request" ? kWrongUsage : kCommandFailed;
    }
    if (input.verb == ShellVerb::kCall && answer.result == HG_NO_SUCH_COMMAND) {
        user_.show(no_such_command(input.name));
        return kUnknownCommand;
    }
    if (answer.reply != nullptr) {
        user_.print(look_ == Look::kLines
                        ? agent::print(answer.reply.get())
                        : text_for_terminal(answer.reply.get(), look_ == Look::kColoured));
    }
    const ExitStatus status = status_of(answer.reply.get());
    return status == kSuccess && answer.result != 0 ? kCommandFailed : status;
}

ExitStatus Shell::switch_events(const ShellInput &input)
{
    if (!client_) {
        connect_again();
    }
    const std::string before = std::exchange(events_pattern_, "");
    if (!before.empty() && (!input.is_on || before != input.name)) {
        ask(unsubscribe_request(before));
    }
    if (!input.is_on) {
        return kSuccess;
    }
    // The first event may arrive before the answer.
    events_pattern_ = input.name;
    const std::optional<ServiceAnswer> answer = ask(subscribe_request(input.name));
    if (!answer || !answer->error.empty()) {
        events_pattern_.clear();
        return answer ? show_answer(input, *answer) : kCommandFailed;
    }
    return kSuccess;
}

ExitStatus Shell::help(const std::string &name)
{
    const auto words = shell_words();
    const auto word = std::find_if(words.begin(), words.end(),
                                   [&](const ShellWordHelp &help) { return name == help.word; });
    const std::string page = description_page(name);
    if (name.empty()) {
        user_.print(usage_page());
    } else if (word != words.end()) {
        user_.print(std::string(word->usage) + "\n" + word->summary);
    } else if (!page.empty()) {
        user_.print(without_last_end(page));
    } else {
        user_.show(no_such_command(name));
        return kUnknownCommand;
    }
    return kSuccess;
}

ExitStatus Shell::list(const std::string &pattern)
{
    const std::string page = list_page(pattern);
    if (page.empty()) {
        user_.show("no command matches \"" + pattern + "\"");
        return kCommandFailed;
    }
    user_.print(without_last_end(page));
    return kSuccess;
}

ExitStatus Shell::status()
{
    if (client_) {
        greet();
    }
    const auto cell = [](const std::string &text) {
        return text.empty() ? "-" : text;
    };
    Table table;
    table.row({"Socket", "unix:" + one_line(path_)});
    table.row({"Connection", client_ ? "open" : "closed"});
    table.row({"Service", cell(service_)});
    table.row({"Protocol", cell(protocol_)});
    table.row({"Epoch", cell(epoch_)});
    table.row({"Events", events_pattern_.empty() ? "off" : "on, " + one_line(events_pattern_)});
    std::ostringstream page;
    table.print(page, "");
    user_.print(without_last_end(page.str()));
    return client_ ? kSuccess : kCannotLoad;
}

} // namespace agent
