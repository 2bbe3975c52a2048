// SPDX-License-Identifier: MIT
// Keeps the answers to requests that change something, so that each is executed at most once
// however often its client repeats it. An entry begins when its request is accepted, and ends ten
// minutes after its answer. It is never removed earlier to make room for others: when the cache is
// full, no new request is accepted.
#pragma once

#include "service/common/request.h"

#include <chrono>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

namespace agent::service {

class AnswerCache {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::minutes kKept{10};

    struct Limits {
        size_t answers = 16384;
        size_t bytes = 8UL * 1024 * 1024; // of keys and answers
    };

    struct Entry {
        bool is_same_request = true; // false: the key belongs to a different request
        bool is_answered = false;
        std::string_view answer; // until the cache is changed
        Code code = Code::kNone;
    };

    void set_limits(const Limits &limits) { limits_ = limits; }

    // Whether the cache has the key, and what it has. request: everything that makes two requests
    // the same.
    bool find(std::string_view key, std::string_view request, Time now, Entry &found);
    // Begins an entry for a key that it does not have. Result: false when the cache is full.
    bool begin(std::string_view key, std::string_view request, Time now);
    // The answer to the key's request.
    void keep(std::string_view key, std::string answer, Code code, Time now);
    // The key's request has not been executed: the next one with the key is a new request.
    void forget(std::string_view key);

    // Without those that had expired when a time was last passed.
    size_t answers() const { return entries_.size(); }
    size_t bytes() const { return bytes_; }

  private:
    struct Kept {
        std::string key;
        size_t request = 0; // its hash
        bool is_answered = false;
        std::string answer;
        Code code = Code::kNone;
        Time end;
    };
    using List = std::list<Kept>;

    void remove(List::iterator entry);
    void remove_expired(Time now);

    Limits limits_;
    List pending_;
    List answered_; // by their ends
    std::unordered_map<std::string_view, List::iterator> entries_;
    size_t bytes_ = 0;
};

} // namespace agent::service
