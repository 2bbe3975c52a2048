// SPDX-License-Identifier: MIT
#include "host/notice_receiver.h"

#include "protocol/log_sink.h"

#include <exception>
#include <mutex>
#include <new>
#include <utility>

namespace agent {

namespace {

constexpr int32_t kNotPassedOn = -1;

std::mutex receiver_lock; // held during the call, so that the receiver is not removed meanwhile
const NoticeReceiver *receiver = nullptr;

Json json_of(const char *text)
{
    Json notice(cJSON_ParseWithOpts(text, nullptr, 1));
    if (notice == nullptr) {
        notice.reset(cJSON_CreateString(text));
    }
    if (notice == nullptr) {
        throw std::bad_alloc();
    }
    return notice;
}

} // namespace

NoticeReceiver::NoticeReceiver(int32_t refusal, PassOn pass_on)
    : refusal_(refusal), pass_on_(std::move(pass_on))
{
    const std::lock_guard lock(receiver_lock);
    receiver = this;
}

NoticeReceiver::~NoticeReceiver()
{
    const std::lock_guard lock(receiver_lock);
    receiver = nullptr;
}

int32_t NoticeReceiver::receive(const char *text) const
{
    if (refusal_ != 0) {
        return refusal_;
    }
    return pass_on_(json_of(text)) ? 0 : kNotPassedOn;
}

int32_t receive_notice(const char *text)
{
    if (text == nullptr) {
        return kNotPassedOn;
    }
    const std::lock_guard lock(receiver_lock);
    if (receiver == nullptr) {
        log_line(kLogError, "nobody receives notices");
        return kNotPassedOn;
    }
    try {
        return receiver->receive(text);
    } catch (const std::exception &problem) { // exceptions must not reach the C callers
        log_line(kLogError, "a notice is lost: %s", problem.what());
        return kNotPassedOn;
    }
}

} // namespace agent
