// SPDX-License-Identifier: MIT
#include "service/gate/answer_cache.h"

#include <functional>
#include <utility>

namespace agent::service {

namespace {

// The parameters may be long: only a hash is kept. It protects clients from their own mistakes, so
// a forged collision harms nobody else.
size_t hash_of(std::string_view request)
{
    return std::hash<std::string_view>()(request);
}

} // namespace

bool AnswerCache::find(std::string_view key, std::string_view request, Time now, Entry &found)
{
    remove_expired(now);
    const auto entry = entries_.find(key);
    if (entry == entries_.end()) {
        return false;
    }
    const Kept &kept = *entry->second;
    found = {kept.request == hash_of(request), kept.is_answered, kept.answer, kept.code};
    return true;
}

bool AnswerCache::begin(std::string_view key, std::string_view request, Time now)
{
    remove_expired(now);
    if (entries_.size() >= limits_.answers || bytes_ + key.size() > limits_.bytes) {
        return false;
    }
    Kept &kept = pending_.emplace_front();
    kept.key = key;
    kept.request = hash_of(request);
    entries_.emplace(kept.key, pending_.begin());
    bytes_ += key.size();
    return true;
}

// An answer may exceed the limit: the command has been executed, and only one runs at a time.
void AnswerCache::keep(std::string_view key, std::string answer, Code code, Time now)
{
    const auto entry = entries_.find(key);
    if (entry == entries_.end()) {
        return;
    }
    Kept &kept = *entry->second;
    bytes_ += answer.size();
    kept.is_answered = true;
    kept.answer = std::move(answer);
    kept.code = code;
    kept.end = now + kKept;
    answered_.splice(answered_.end(), pending_, entry->second);
}

void AnswerCache::forget(std::string_view key)
{
    const auto entry = entries_.find(key);
    if (entry != entries_.end()) {
        remove(entry->second);
    }
}

void AnswerCache::remove(List::iterator entry)
{
    bytes_ -= entry->key.size() + entry->answer.size();
    entries_.erase(entry->key);
    (entry->is_answered ? answered_ : pending_).erase(entry);
}

void AnswerCache::remove_expired(Time now)
{
    while (!answered_.empty() && answered_.front().end <= now) {
        remove(answered_.begin());
    }
}

} // namespace agent::service
