// SPDX-License-Identifier: MIT
#include "fleet/gateway.h"

#include "fleet/loop_worker.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "service/gate/gate.h"
#include "service/ways_in/mqtt/mqtt.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <csignal>
#include <optional>

namespace agent::fleet {

namespace {

constexpr std::chrono::seconds kLastMessages(2); // for the broker to take them
constexpr int32_t kRebootSeconds = 45;
// A platform is few clients with short requests.
constexpr size_t kMostClients = 32;
constexpr size_t kLongestRequest = 256UL * 1024;

Options serve_options(const FleetOptions &fleet, const GatewaySettings &settings)
{
    Options options;
    options.host = fleet.host;
    options.host.scenario = settings.scenario;
    if (!settings.state.empty()) {
        options.host.state = settings.state;
    }
    options.host.faults = settings.faults;
    options.host.home = HomeOptions{fleet.seed, settings.number};
    options.host.reboot_seconds = fleet.host.reboot_seconds.value_or(kRebootSeconds);
    options.log_level = fleet.log_level;
    options.serve.max_line = kLongestRequest;
    options.serve.events = true;
    return options;
}

class Gateway {
  public:
    Gateway(const CommonSettings &common, const GatewaySettings &settings, Slot &slot)
        : common_(common), settings_(settings), slot_(slot), signals_(loop_), grace_(loop_)
    {
    }

    int run()
    {
        gate_.emplace(
            loop_,
            std::make_unique<LoopWorker>(loop_, serve_options(common_.options, settings_),
                                         settings_.was_off, slot_),
            service::Gate::Hooks{
                .on_no_worker = [this](const std::string &reason, int) { give_up(reason); },
                .on_ready = [this] { connect(); },
                .on_stopped = [this] { disconnect(); },
            });
        service::GateOptions options;
        options.policy = common_.policy;
        gate_->set_options(options);
        service::MqttLimits limits;
        limits.clients = kMostClients;
        limits.request = kLongestRequest;
        mqtt_.emplace(loop_, *gate_, limits);
        for (const int signal : {SIGTERM, SIGUSR1}) {
            signals_.add(signal);
        }
        await_signal();
        gate_->start();
        loop_.run();
        return exit_status_;
    }

  private:
    void connect()
    {
        slot_.phase = Slot::Phase::kConnecting;
        service::MqttOptions options;
        const service::BrokerArguments &broker = common_.options.broker;
        options.brokers = broker.brokers;
        options.id = settings_.id;
        options.root = broker.root;
        options.credentials = broker.credentials;
        options.tls = broker.tls;
        options.is_trusted = common_.is_trusted;
        options.reconnect_spread = common_.reconnect_spread;
        options.on_connection_event = [this](service::ConnectionEvent event,
                                             const std::string &why) {
            take(event, why);
        };
        try {
            mqtt_->start(std::move(options));
        } catch (const std::runtime_error &problem) {
            give_up(problem.what());
        }
    }

    void take(service::ConnectionEvent event, const std::string &why)
    {
        using service::ConnectionEvent;
        if (event == ConnectionEvent::kConnected) {
            ++slot_.connections;
            slot_.phase = Slot::Phase::kUp;
            return;
        }
        slot_.problem.set(why);
        slot_.phase = Slot::Phase::kConnecting;
        slot_.losses += event == ConnectionEvent::kFailed ? 0 : 1;
        slot_.takeovers += event == ConnectionEvent::kTakenOver ? 1 : 0;
    }

    void await_signal()
    {
        signals_.async_wait([this](const boost::system::error_code &problem, int signal) {
            if (problem) {
                return;
            }
            if (signal == SIGUSR1) {
                mqtt_->drop_connection();
            } else if (!is_stopping_) {
                is_stopping_ = true;
                mqtt_->stop_accepting();
                gate_->stop();
            }
            await_signal();
        });
    }

    void disconnect()
    {
        mqtt_->on_empty([this] { loop_.stop(); });
        grace_.expires_after(kLastMessages);
        grace_.async_wait([this](const boost::system::error_code &) { loop_.stop(); });
    }

    void give_up(const std::string &reason)
    {
        print_error(reason);
        slot_.problem.set(reason);
        exit_status_ = kCannotLoad;
        loop_.stop();
    }

    const CommonSettings &common_;
    const GatewaySettings &settings_;
    Slot &slot_;
    boost::asio::io_context loop_{1};
    std::optional<service::Gate> gate_;
    std::optional<service::Mqtt> mqtt_;
    boost::asio::signal_set signals_;
    boost::asio::steady_timer grace_;
    bool is_stopping_ = false;
    int exit_status_ = kSuccess;
};

} // namespace

int run_gateway(const CommonSettings &common, const GatewaySettings &settings, Slot &slot)
{
    Gateway gateway(common, settings, slot);
    return gateway.run();
}

} // namespace agent::fleet
