// SPDX-License-Identifier: MIT
// Reads requests of HTTP/1.1 from bytes. It knows no socket.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace agent::service {

struct HttpRequest {
    std::string method;
    std::string path;  // as sent: without the query, not decoded
    std::string query; // behind the "?"
    bool is_http_11 = true;
    bool keep_alive = false;
    bool is_upgrade = false;                                 // to a WebSocket
    std::vector<std::pair<std::string, std::string>> fields; // names in lower case

    // The value of a field that is there once; null otherwise.
    const std::string *find(std::string_view name) const;
    // Whether the field's list has the word, ignoring case.
    bool has_word(std::string_view name, std::string_view word) const;
    // The value of a key in the query, decoded; empty if absent.
    std::string query_value(std::string_view key) const;
};

// The text with %XX decoded; an invalid escape is kept.
std::string decoded(std::string_view text, bool plus_is_space);

class RequestReader {
  public:
    enum class State { kHeader, kBody, kDone, kBad };

    RequestReader();
    ~RequestReader();

    // Takes bytes. In the state kHeader or kBody it takes only those up to the next state. Result:
    // how many were taken; the others have to be given again.
    size_t take(std::string_view bytes);
    State state() const;

    // In the state kBad: the status to answer with.
    int problem_status() const;

    // From the state kBody on.
    HttpRequest &request();
    // The size of the body if it is known; 0 if there is none or it is chunked.
    size_t announced_size() const;
    // The part of the body that the last take() has brought.
    std::string_view body() const;

  private:
    class Parser;
    std::unique_ptr<Parser> parser_;
};

} // namespace agent::service
