// SPDX-License-Identifier: MIT
#include "service/mqtt_call/broker_session.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace agent::service {

namespace {

constexpr std::chrono::seconds kAttempt(10); // for connection, TLS and subscriptions

} // namespace

std::string random_client_name()
{
    std::random_device device;
    char text[33];
    snprintf(text, sizeof(text), "hgagent-%08x%08x%08x", device(), device(), device());
    return text;
}

bool is_epoch(std::string_view text)
{
    constexpr size_t kMaxEpoch = 64;
    return !text.empty() && text.size() <= kMaxEpoch &&
           text.find_first_not_of(
               "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-") ==
               std::string_view::npos;
}

bool is_to_be_repeated(std::string_view code)
{
    return code == "busy" || code == "rate-limited" || code == "rebooting";
}

BrokerSession::BrokerSession(boost::asio::io_context &loop, BrokerSessionOptions options,
                             BrokerSessionListener &listener)
    : loop_(loop), options_(std::move(options)), listener_(listener), lookup_(loop), attempt_(loop)
{
}

void BrokerSession::start()
{
    resolve();
}

void BrokerSession::stop()
{
    has_ended_ = true;
    attempt_.cancel();
    if (is_connected_) {
        connection_->disconnect();
    }
}

int BrokerSession::publish(const PublishedMessage &message)
{
    return is_connected_ ? connection_->publish(message) : 0;
}

void BrokerSession::try_next(const std::string &why)
{
    if (has_ended_) {
        return;
    }
    if (!addresses_.empty()) {
        connect();
        return;
    }
    const std::string url = broker().url();
    broker_ = (broker_ + 1) % options_.brokers.size();
    if (++failures_ < options_.brokers.size()) {
        resolve();
        return;
    }
    if (!has_been_connected_) {
        listener_.on_no_broker("cannot connect to " + url + ": " + why);
        return;
    }
    failures_ = 0;
    attempt_.expires_after(backoff_.next(std::uniform_real_distribution<>(0, 1)(random_)));
    attempt_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            resolve();
        }
    });
}

void BrokerSession::resolve()
{
    if (is_address(broker().host)) {
        addresses_ = {broker().host};
        connect();
        return;
    }
    lookup_.start(broker().host,
                  [this](std::vector<std::string> found, const std::string &problem) {
                      addresses_ = std::move(found);
                      if (broker().is_local()) {
                          std::erase_if(addresses_, [](const std::string &address) {
                              return !is_loopback_address(address);
                          });
                      }
                      std::ranges::reverse(addresses_);
                      try_next(problem.empty() ? "it has no address" : problem);
                  });
}

void BrokerSession::connect()
{
    ConnectOptions options;
    options.broker = broker();
    options.address = std::move(addresses_.back());
    addresses_.pop_back();
    options.id = options_.client;
    options.credentials = options_.credentials;
    options.max_packet = options_.max_packet;
    options.subscriptions = options_.subscriptions;
    tls_.reset();
    if (broker().is_tls) {
        try {
            tls_.emplace(options_.tls, broker().host);
        } catch (const std::runtime_error &problem) {
            try_next(problem.what());
            return;
        }
        options.tls = &*tls_;
    }
    connection_ = std::make_unique<BrokerConnection>(loop_, std::move(options),
                                                     static_cast<BrokerListener &>(*this));
    attempt_.expires_after(kAttempt);
    attempt_.async_wait([this](const boost::system::error_code &problem) {
        // An expiry that is queued already cannot be cancelled.
        if (!problem && connection_ != nullptr && !is_connected_) {
            on_lost("no answer within " + std::to_string(kAttempt.count()) + " seconds");
        }
    });
    connection_->start();
}

void BrokerSession::on_connected()
{
    attempt_.cancel();
    addresses_.clear();
    failures_ = 0;
    backoff_.reset();
    has_been_connected_ = true;
    is_connected_ = true;
    listener_.on_connected(broker().url());
}

void BrokerSession::on_message(const ReceivedMessage &message)
{
    if (!has_ended_) {
        listener_.on_message(message);
    }
}

void BrokerSession::on_lost(const std::string &why)
{
    attempt_.cancel();
    connection_.reset();
    if (has_ended_) {
        return;
    }
    if (std::exchange(is_connected_, false)) {
        listener_.on_interruption("the connection to " + broker().url() + " is lost: " + why);
        failures_ = options_.brokers.size(); // a pause first
    }
    try_next(why);
}

} // namespace agent::service
