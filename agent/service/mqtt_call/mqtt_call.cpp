// SPDX-License-Identifier: MIT
#include "service/mqtt_call/mqtt_call.h"

#include "client/service_client.h"
#include "commands/call.h"
#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/protocol.h"
#include "protocol/reply.h"
#include "protocol/requests.h"
#include "service/common/config_error.h"
#include "service/gate/pattern.h"
#include "service/mqtt_call/mqtt_caller.h"
#include "service/ways_in/mqtt/topics.h"
#include "smart_router_service/processjsonability.h"

#include <CLI/CLI.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <algorithm>
#include <csignal>
#include <map>
#include <memory>

namespace agent::service {

namespace {

// Above what the gateway itself allows for a command, so that its answer comes first.
constexpr std::chrono::seconds kMoreTime(30);

struct MqttCallOptions : BrokerArguments {
    std::vector<std::string> ids;
    std::optional<std::string> ids_file;
    std::string events;
    bool follows = false;
    double timeout = 0; // seconds; 0: the command's own
    double repeat = 5;
};

// ---- Arguments ----------------------------------------------------------------------------------

std::vector<std::string> ids_of(const MqttCallOptions &call)
{
    std::vector<std::string> ids = call.ids;
    if (call.ids_file) {
        const std::vector<std::string> listed = gateways_in(*call.ids_file);
        ids.insert(ids.end(), listed.begin(), listed.end());
    }
    for (const std::string &id : ids) {
        if (const std::string problem = problem_of_gateway_id(id); !problem.empty()) {
            throw WrongUsage(in_message(id) + ": " + problem);
        }
    }
    std::ranges::sort(ids);
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    if (ids.empty()) {
        throw WrongUsage("no gateway is given: --id or --ids");
    }
    return ids;
}

MqttCallerOptions caller_options(const MqttCallOptions &call, const std::string &command)
{
    MqttCallerOptions options;
    static_cast<BrokerAccess &>(options) = broker_access(call);
    options.ids = ids_of(call);
    options.command = command;
    options.is_change = may_change(command);
    options.has_events = !call.events.empty();
    options.follows = call.follows || command.empty();
    const std::chrono::duration<double> time(call.timeout);
    options.timeout = call.timeout > 0 ? std::chrono::ceil<std::chrono::seconds>(time)
                                       : std::chrono::seconds(seconds_of(command) + kMoreTime);
    options.repeat = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(call.repeat));
    return options;
}

// ---- Output -------------------------------------------------------------------------------------

class MqttCall : MqttCallerListener {
  public:
    MqttCall(const Options &options, std::string events, MqttCallerOptions caller)
        : options_(options), events_(std::move(events)), is_alone_(caller.ids.size() == 1),
          timeout_(caller.timeout), caller_(loop_, std::move(caller), *this),
          signals_(loop_, SIGINT, SIGTERM)
    {
    }

    int run()
    {
        signals_.async_wait([this](const boost::system::error_code &problem, int signal) {
            if (!problem) {
                status_ = kSignalled + signal;
                caller_.stop();
                loop_.stop();
            }
        });
        caller_.start();
        loop_.run();
        return status_;
    }

  private:
    void on_connected(const std::string &broker) override
    {
        if (!events_.empty()) {
            write_error_line("connected to " + broker);
        }
    }

    bool on_answer(const std::string &gateway, const std::string &payload) override
    {
        ServiceAnswer answer;
        std::string object;
        try {
            object = print(parse_object(payload).get());
            answer = read_answer(payload);
        } catch (const BadRequest &problem) {
            fail(gateway, std::string("its answer is not valid: ") + problem.what());
            return true;
        }
        if (is_to_be_repeated(answer.code)) {
            refusals_[gateway] = answer.error + " (" + answer.code + ")";
            return false;
        }
        if (is_alone_) {
            show(answer);
        } else {
            print_of(gateway, object);
            raise(!answer.error.empty()                 ? kCommandFailed
                  : answer.result == HG_NO_SUCH_COMMAND ? kUnknownCommand
                                                        : status_of(answer.reply.get()));
        }
        return true;
    }

    void show(ServiceAnswer &answer)
    {
        if (!answer.error.empty()) {
            print_error("the gateway refuses: " + answer.error +
                        (answer.code.empty() ? "" : " (" + answer.code + ")") +
                        (answer.rule.empty() ? "" : ": " + answer.rule));
            raise(kCommandFailed);
            return;
        }
        if (answer.reply == nullptr) {
            answer.reply = new_object();
        }
        raise(show_reply(options_, answer.result, answer.reply.get(), output_));
    }

    void on_no_answer(const std::string &gateway, bool was_sent, bool is_offline) override
    {
        std::string text = "no answer within " + std::to_string(timeout_.count()) + " seconds";
        text += is_offline ? "; it is offline" : "";
        if (const auto refusal = refusals_.find(gateway); refusal != refusals_.end()) {
            fail(gateway, text + "; it refuses: " + refusal->second);
            return;
        }
        text += was_sent && may_change(options_.call.command)
                    ? "; whether the command has been executed is unknown"
                    : "";
        fail(gateway, text);
    }

    void on_event(const std::string &gateway, std::string_view name, std::string_view data) override
    {
        if (!matches(events_, name)) {
            return;
        }
        const Json parsed(cJSON_ParseWithLength(data.data(), data.size()));
        if (parsed != nullptr) {
            const std::string line =
                "{\"event\":" + agent::quoted(name) + ",\"data\":" + print(parsed.get()) + "}";
            is_alone_ ? write(line) : print_of(gateway, line);
        }
    }

    void on_interruption(const std::string &why) override { print_error(why); }

    void on_no_broker(const std::string &why) override
    {
        print_error(why);
        raise(kCannotLoad);
        loop_.stop();
    }

    void on_end() override { loop_.stop(); }

    // A gateway without an answer, or without a valid one.
    void fail(const std::string &gateway, const std::string &text)
    {
        if (is_alone_) {
            print_error("the gateway " + gateway + ": " + text);
        } else {
            print_of(gateway, "{\"error\":" + agent::quoted(text) + "}");
        }
        raise(kCommandFailed);
    }

    // A JSON object with the gateway as its first member.
    void print_of(const std::string &gateway, const std::string &object)
    {
        write("{\"gateway\":" + agent::quoted(gateway) + (object.size() > 2 ? "," : "") +
              object.substr(1));
    }

    void write(const std::string &line)
    {
        if (!output_.write_line(output_.is_terminal() ? json_for_terminal(line) : line)) {
            raise(kCannotWrite);
            caller_.stop();
            loop_.stop();
        }
    }

    void raise(int status) { status_ = std::max(status_, status); }

    const Options &options_;
    const std::string events_;
    const bool is_alone_; // a single gateway
    const std::chrono::seconds timeout_;
    boost::asio::io_context loop_{1};
    ReplyOutput output_;
    MqttCaller caller_;
    boost::asio::signal_set signals_;
    std::map<std::string, std::string> refusals_; // the last ones, by gateways
    int status_ = kSuccess;
};

int run_mqtt_call(const Options &options, const MqttCallOptions &call)
{
    try {
        if (options.call.command.empty() && call.events.empty()) {
            throw WrongUsage("neither a command nor --events is given");
        }
        MqttCallerOptions caller = caller_options(call, options.call.command);
        const Json request = request_of(options.call);
        if (request == nullptr) {
            return kWrongUsage;
        }
        if (!options.call.command.empty() && !problem_of_gateway_id(options.call.command).empty()) {
            print_error(no_such_command(options.call.command));
            return kUnknownCommand;
        }
        caller.params = print(request.get());
        return MqttCall(options, call.events, std::move(caller)).run();
    } catch (const WrongUsage &problem) {
        print_error(problem.what());
        return kWrongUsage;
    }
}

} // namespace

void add_mqtt_call(CLI::App &app, Options &options)
{
    CLI::App *command =
        app.add_subcommand("mqtt-call", "Run one command on gateways that are on an MQTT broker");
    auto call = std::make_shared<MqttCallOptions>();
    const auto add_text = [command](const char *name, auto &place, const char *help,
                                    const char *type) {
        return command->add_option(name, place, help)->type_name(type)->allow_extra_args(false);
    };
    add_request(command, options.call);
    exclude_library_options(app, add_broker_options(*command, *call));
    add_text("--id", call->ids, "Name of a gateway on the broker; may be repeated", "ID");
    add_text("--ids", call->ids_file, "File with the names of gateways, each on a line", "FILE");
    add_text("--timeout", call->timeout,
             "How long to wait for answers; by default 30 seconds more than the command may take",
             "SECONDS")
        ->check(CLI::Range(0.1, 86400.0).description(""));
    add_text("--repeat", call->repeat,
             "When a request without an answer is sent again; 5 seconds by default", "SECONDS")
        ->check(CLI::Range(0.1, 3600.0).description(""));
    CLI::Option *events =
        add_text("--events", call->events, "Print the events that match as well", "PATTERN");
    command->add_flag("--follow", call->follows, "Continue with events after the answers")
        ->needs(events);
    command->footer(R"(
hgagent mqtt-call --broker URL --id ID [NAME [JSON | - | KEY=VALUE ...]]
The request is given as for call. It is repeated until it is answered, and executed at most once; if the
gateway's service restarts meanwhile, the outcome of a change is unknown. With several gateways each answer
is a line of JSON that begins with the gateway's name. Without NAME only events are printed.)");
    command->callback([command, call, &options] {
        take_request(*command, options.call);
        options.subcommand = Subcommand::kOther;
        options.other = [call, given = options] {
            return run_mqtt_call(given, *call);
        };
    });
}

} // namespace agent::service
