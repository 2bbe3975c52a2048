// SPDX-License-Identifier: MIT
#include "service/run.h"

#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "protocol/secrets.h"
#include "service/common/service_manager.h"
#include "service/common/sockets.h"
#include "service/gate/gate.h"
#include "service/ways_in/http/announce.h"
#include "service/ways_in/http/server.h"
#include "service/ways_in/mqtt/mqtt.h"
#include "service/ways_in/unix_socket.h"
#include "service/worker/child_worker.h"
#include "service/worker/in_process_worker.h"
#include "service/worker/unit_worker.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <sys/file.h>
#include <thread>

namespace agent::service {

namespace {

constexpr std::chrono::milliseconds kLastAnswers(1000); // for clients to read them at the end
constexpr std::chrono::milliseconds kStateWait(10'000);
constexpr std::chrono::milliseconds kStatePause(20);

constexpr char kClockVariable[] = "SIMULATED_GATEWAY_TIME";
constexpr char kFirmwareVariable[] = "SIMULATED_GATEWAY_FIRMWARE_FOLDER";
constexpr char kStateVariable[] = "SIMULATED_GATEWAY_STATE";

// systemd's protocol requires the time of the reload.
std::string reloading()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return "RELOADING=1\nMONOTONIC_USEC=" +
           std::to_string(now.tv_sec * 1'000'000 + now.tv_nsec / 1000);
}

std::string variable(const char *name)
{
    const char *value = getenv(name); // NOLINT(concurrency-mt-unsafe): alone
    return value != nullptr ? value : "";
}

// A file of the service's own: next to the socket, so that services with separate sockets have
// separate files.
std::string file_beside(const std::string &socket, const std::string &ending)
{
    namespace fs = std::filesystem;
    const std::string systemd_folder = variable("RUNTIME_DIRECTORY");
    const fs::path path(socket);
    const fs::path folder = systemd_folder.empty() ? path.parent_path() : fs::path(systemd_folder);
    return folder / (path.stem().string() + ending);
}

// The default path of the simulated home's state without --state.
std::string state_beside(const std::string &socket)
{
    return file_beside(socket, ".state.json");
}

// Where the console's address is written when standard error is not a terminal.
std::string console_file(const std::string &socket)
{
    return file_beside(socket, ".console");
}

std::chrono::seconds seconds(int64_t count)
{
    return std::chrono::seconds(count);
}

SocketLimits socket_limits(const LimitsConfig &config)
{
    SocketLimits limits;
    limits.clients = static_cast<size_t>(config.clients);
    limits.line = static_cast<size_t>(config.line);
    limits.pending = static_cast<size_t>(config.pending_output);
    limits.idle = seconds(config.idle_seconds);
    return limits;
}

MqttLimits mqtt_limits(const LimitsConfig &config)
{
    MqttLimits limits;
    limits.clients = static_cast<size_t>(config.clients);
    limits.request = static_cast<size_t>(config.line);
    limits.pending = static_cast<size_t>(config.pending_output);
    return limits;
}

// A local broker without a policy may query what is not secret.
bool is_guest(const ServiceConfig &config)
{
    return config.mqtt.is_local() && !config.policy.has_roles();
}

MqttOptions mqtt_options(const ServiceConfig &config)
{
    const MqttConfig &mqtt = config.mqtt;
    MqttOptions options;
    options.brokers = mqtt.brokers;
    options.id = mqtt.id;
    options.root = mqtt.root;
    options.response_topics = mqtt.response_topics;
    options.credentials = mqtt.credentials;
    options.tls = {mqtt.ca, mqtt.certificate, mqtt.key, mqtt.alpn, mqtt.server_name};
    options.keep_alive = seconds(mqtt.keep_alive_seconds);
    options.session = seconds(mqtt.session_seconds);
    options.max_packet = static_cast<size_t>(mqtt.max_packet);
    options.is_trusted = mqtt.trust;
    options.is_guest = is_guest(config);
    return options;
}

HttpOptions http_options(const ServiceConfig &config, const std::string &uploads)
{
    HttpOptions options;
    options.certificate = config.console.certificate;
    options.key = config.console.key;
    options.passwords = config.console.passwords;
    options.names = config.console.names;
    options.folder = config.console.folder;
    options.clients = static_cast<size_t>(config.limits.clients);
    options.body = static_cast<size_t>(config.limits.line);
    options.pending = static_cast<size_t>(config.limits.pending_output);
    options.request_time = seconds(config.limits.request_seconds);
    options.session_time = seconds(config.console.session_seconds);
    options.is_simulated = config.worker.host.device.empty() && config.worker.unit_socket().empty();
    options.uploads = uploads;
    return options;
}

WorkerTimes worker_times(const WorkerConfig &config)
{
    WorkerTimes times;
    times.background = seconds(config.background_seconds);
    return times;
}

GateOptions gate_options(const ServiceConfig &config)
{
    GateOptions options;
    options.queue = static_cast<size_t>(config.limits.queue);
    options.time = seconds(config.worker.command_seconds);
    options.policy = config.policy;
    options.audit = config.audit;
    options.answers = {static_cast<size_t>(config.limits.answers),
                       static_cast<size_t>(config.limits.answer_bytes)};
    return options;
}

Options serve_options(const ServiceConfig &config)
{
    Options options;
    options.host = config.worker.host;
    options.log_level = static_cast<int32_t>(config.log_level);
    options.reasons = config.worker.reasons;
    options.raw_bytes = config.worker.raw_bytes;
    options.notice_refusal = static_cast<int32_t>(config.worker.refuse_notices);
    options.serve.max_line = static_cast<size_t>(config.limits.line);
    options.serve.events = true;
    // With a stopped clock a reboot would never end.
    const bool is_clock_stopped = !variable(kClockVariable).empty();
    options.host.reboot_seconds =
        is_clock_stopped ? 0 : static_cast<int32_t>(config.worker.reboot_seconds);
    return options;
}

// The worker of a killed service may live on for a moment and keep the state locked.
void await_state(const std::string &state)
{
    const Descriptor lock(open((state + ".lock").c_str(), O_RDONLY | O_CLOEXEC));
    const auto end = std::chrono::steady_clock::now() + kStateWait;
    while (lock.get() >= 0 && flock(lock.get(), LOCK_EX | LOCK_NB) != 0 &&
           std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kStatePause);
    }
}

class Service {
  public:
    Service(const RunOptions &options, ServiceConfig config)
        : options_(options), config_(std::move(config)), signals_(loop_), grace_(loop_),
          watchdog_(loop_)
    {
    }

    int run()
    {
        sockets_ = manager_.take_sockets();
        if (sockets_.empty() && config_.socket.path.empty()) {
            print_error("XDG_RUNTIME_DIR is not set: --socket has to say where to listen, such as "
                        "--socket /tmp/hgagent.sock");
            return kWrongUsage;
        }
        gate_.emplace(loop_, make_worker(),
                      Gate::Hooks{
                          .on_no_worker = [this](const std::string &reason,
                                                 int status) { give_up(reason, status); },
                          .on_ready = [this] { manager_.notify("READY=1"); },
                          .on_stopped = [this] { end(); },
                      });
        socket_.emplace(loop_, *gate_, socket_limits(config_.limits));
        ways_in_.push_back(&*socket_);
        if (!config_.mqtt.brokers.empty()) {
            mqtt_.emplace(loop_, *gate_, mqtt_limits(config_.limits));
            ways_in_.push_back(&*mqtt_);
        }
        try {
            open_console();
            apply();
            apply_to_console();
            listen();
        } catch (const std::runtime_error &problem) {
            print_error(problem.what());
            return kCannotLoad;
        }
        watch_signals();
        gate_->start();
        feed_watchdog();
        loop_.run();
        remove_own_state();
        return exit_status_;
    }

  private:
    std::unique_ptr<Worker> make_worker()
    {
        const std::string unit = config_.worker.unit_socket();
        if (!unit.empty()) {
            uploads_ = file_beside(config_.socket.path, ".firmware");
            return std::make_unique<UnitWorker>(loop_, unit);
        }
        const std::string given = config_.worker.host.state.value_or(variable(kStateVariable));
        if (given.empty()) {
            own_state_ = state_beside(config_.socket.path);
            // Set in the environment, because other device libraries than the simulated gateway
            // reject the option.
            setenv(kStateVariable, own_state_.c_str(), 1); // NOLINT(concurrency-mt-unsafe): alone
        }
        const std::string state = given.empty() ? own_state_ : given;
        await_state(state);
        choose_uploads(state);
        if (config_.worker.in_process()) {
            return std::make_unique<InProcessWorker>(loop_, serve_options(config_));
        }
        auto child = std::make_unique<ChildWorker>(loop_, child_arguments());
        child_ = child.get();
        return child;
    }

    // The simulated gateway reads images from its firmware folder only. Without one, it is given
    // the folder of the uploads, as above in the environment.
    void choose_uploads(const std::string &state)
    {
        if (config_.console.address.empty()) {
            return;
        }
        const std::string given =
            config_.worker.host.firmware_folder.value_or(variable(kFirmwareVariable));
        uploads_ = given.empty() ? state + ".firmware" : given + "/hgagent-uploads";
        if (given.empty()) {
            std::error_code ignored; // without the folder, the worker says what is wrong
            std::filesystem::create_directories(uploads_, ignored);
            setenv(kFirmwareVariable, uploads_.c_str(), 1); // NOLINT(concurrency-mt-unsafe): alone
        }
    }

    std::vector<std::string> child_arguments() const
    {
        std::vector<std::string> words = worker_arguments(config_);
        words.insert(words.begin(),
                     "--reboot-seconds=" +
                         std::to_string(*serve_options(config_).host.reboot_seconds));
        words.emplace_back("--events");
        return words;
    }

    void listen()
    {
        if (sockets_.empty()) {
            socket_->listen(
                {config_.socket.path, config_.socket.group, config_.socket.mode_bits()});
        } else {
            socket_->take_over(sockets_.front());
        }
        write_error_line("listening on unix:" + socket_->path());
        if (http_) {
            http_->listen();
            announced_.emplace(*http_, console_file(config_.socket.path));
        }
        if (mqtt_) {
            mqtt_->start(mqtt_options(config_));
        }
    }

    void open_console()
    {
        if (!config_.console.address.empty()) {
            http_.emplace(loop_, *gate_, config_.console.address);
            ways_in_.push_back(&*http_);
        }
    }

    // Applies the settings that can change while the service is running.
    void apply()
    {
        set_log({static_cast<int32_t>(config_.log_level), config_.worker.host.show_secrets});
        gate_->supervisor().set_times(worker_times(config_.worker));
        if (child_ != nullptr) {
            child_->set_arguments(child_arguments());
        }
        socket_->set_limits(socket_limits(config_.limits));
        if (mqtt_) {
            mqtt_->set_limits(mqtt_limits(config_.limits));
            mqtt_->set_guest(is_guest(config_));
        }
        const std::string problem = gate_->set_options(gate_options(config_));
        if (!problem.empty()) {
            print_error(problem);
        }
    }

    // Throws std::runtime_error when a file is not what it should be.
    void apply_to_console()
    {
        if (http_) {
            http_->set_options(http_options(config_, uploads_));
        }
    }

    void load_again()
    {
        manager_.notify(reloading());
        std::string said;
        if (auto loaded = reload_config(options_, config_, said)) {
            config_ = std::move(*loaded);
            apply();
            print_notice(said);
            try {
                apply_to_console();
            } catch (const std::runtime_error &problem) {
                print_error(std::string("the console keeps its settings: ") + problem.what());
            }
        } else {
            print_error(said);
        }
        manager_.notify("READY=1");
    }

    void watch_signals()
    {
        for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
            signals_.add(signal);
        }
        wait_for_signal();
    }

    void wait_for_signal()
    {
        signals_.async_wait([this](const boost::system::error_code &problem, int signal) {
            if (problem) {
                return;
            }
            if (signal == SIGHUP) {
                load_again();
            } else {
                stop();
            }
            wait_for_signal();
        });
    }

    void stop()
    {
        if (is_stopping_) {
            gate_->supervisor().stop_now();
            return;
        }
        is_stopping_ = true;
        manager_.notify("STOPPING=1");
        stop_accepting();
        gate_->stop();
    }

    void give_up(const std::string &reason, int status)
    {
        print_error(reason);
        exit_status_ = status > 0 ? status : kCannotLoad;
        is_stopping_ = true;
        stop_accepting();
        end();
    }

    void stop_accepting()
    {
        for (WayIn *one : ways_in_) {
            one->stop_accepting();
        }
    }

    // The worker has ended: only the last answers remain to be written.
    void end()
    {
        busy_ways_in_ = ways_in_.size();
        for (WayIn *one : ways_in_) {
            one->on_empty([this] {
                if (--busy_ways_in_ == 0) {
                    loop_.stop();
                }
            });
        }
        grace_.expires_after(kLastAnswers);
        grace_.async_wait([this](const boost::system::error_code &) { loop_.stop(); });
    }

    void feed_watchdog()
    {
        const auto interval = manager_.watchdog();
        if (interval.count() == 0) {
            return;
        }
        manager_.notify("WATCHDOG=1");
        watchdog_.expires_after(interval / 2);
        watchdog_.async_wait([this](const boost::system::error_code &problem) {
            if (!problem) {
                feed_watchdog();
            }
        });
    }

    // A home without --state survives crashes only. The socket exists until the home is removed, so
    // that no other service starts with it.
    void remove_own_state() const
    {
        if (own_state_.empty()) {
            return;
        }
        for (const char *ending : {"", ".good", ".lock"}) {
            std::error_code ignored;
            std::filesystem::remove(own_state_ + ending, ignored);
        }
        std::error_code ignored;
        std::filesystem::remove_all(own_state_ + ".firmware", ignored);
    }

    const RunOptions &options_;
    ServiceConfig config_;
    boost::asio::io_context loop_{1};
    ServiceManager manager_;
    std::vector<int> sockets_;
    std::string own_state_;
    std::string uploads_;          // folder for firmware images from the console
    ChildWorker *child_ = nullptr; // owned by the gate
    std::optional<Gate> gate_;
    std::optional<UnixSocket> socket_;
    std::optional<HttpServer> http_;
    std::optional<Announcement> announced_;
    std::optional<Mqtt> mqtt_;
    std::vector<WayIn *> ways_in_;
    size_t busy_ways_in_ = 0; // at the end: those with answers to write
    boost::asio::signal_set signals_;
    boost::asio::steady_timer grace_;
    boost::asio::steady_timer watchdog_;
    bool is_stopping_ = false;
    int exit_status_ = kSuccess;
};

} // namespace

int run_service(const RunOptions &options)
{
    std::optional<ServiceConfig> config;
    try {
        config = load_config(options);
    } catch (const ConfigError &wrong) {
        return report_problems(wrong);
    }
    if (!config->worker.host.show_secrets) {
        forbid_core_dumps();
    }
    Service service(options, std::move(*config));
    return service.run();
}

} // namespace agent::service
