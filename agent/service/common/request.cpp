// SPDX-License-Identifier: MIT
#include "service/common/request.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/plain_json.h"
#include "protocol/requests.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>

namespace agent::service {

namespace {

constexpr std::array<std::string_view, 9> kCodes = {
    "",        "bad-request",     "denied",    "rate-limited", "busy",
    "timeout", "outcome-unknown", "too-large", "rebooting"};

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

// Iterates over the members of the outer object. For valid JSON it agrees with every parser. Its
// results for other texts do not matter: the worker rejects them.
class OuterKeys {
  public:
    explicit OuterKeys(std::string_view line) : line_(line)
    {
        if (line_.starts_with(kByteOrderMark)) {
            at_ = kByteOrderMark.size();
        }
        is_good_ = take('{');
        skip_space();
        has_ended_ = is_good_ && next() == '}';
    }

    bool is_good() const { return is_good_; }

    // The next key and value, unparsed. Result: false at the object's end, or on an error.
    bool next_member(std::string_view &key, std::string_view &value)
    {
        if (!is_good_ || has_ended_) {
            return false;
        }
        skip_space();
        is_good_ = next() == '"';
        if (is_good_) {
            key = take_value();
            is_good_ = take(':');
            skip_space();
            value = take_value();
            is_good_ = is_good_ && !value.empty();
            skip_space();
            has_ended_ = next() == '}';
            is_good_ = is_good_ && (has_ended_ || take(','));
        }
        return is_good_;
    }

    size_t place_of(std::string_view value) const
    {
        return static_cast<size_t>(value.data() - line_.data());
    }

  private:
    char next() const { return at_ < line_.size() ? line_[at_] : '\0'; }

    void skip_space()
    {
        while (next() == ' ' || next() == '\t' || next() == '\r' || next() == '\n') {
            ++at_;
        }
    }

    bool take(char mark)
    {
        skip_space();
        const bool found = next() == mark;
        at_ += found ? 1 : 0;
        return found;
    }

    std::string_view take_value()
    {
        const size_t begin = at_;
        size_t depth = 0;
        do {
            const char mark = next();
            if (mark == '"') {
                at_ = end_of_string(line_, at_);
            } else if (mark == '{' || mark == '[') {
                ++depth;
                ++at_;
            } else if (depth > 0) {
                depth -= mark == '}' || mark == ']' ? 1 : 0;
                ++at_;
            } else {
                at_ = std::min(line_.find_first_of(",]} \t\r\n", at_), line_.size());
            }
        } while (depth > 0 && at_ < line_.size());
        return line_.substr(begin, at_ - begin);
    }

    std::string_view line_;
    size_t at_ = 0;
    bool is_good_ = false;
    bool has_ended_ = false;
};

// The value of a JSON string; nothing for other values.
std::optional<std::string> text_of(std::string_view value)
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') {
        return std::nullopt;
    }
    if (value.find('\\') == std::string_view::npos) {
        return std::string(value.substr(1, value.size() - 2));
    }
    const auto parsed = nlohmann::json::parse(value, nullptr, false);
    return parsed.is_string() ? std::optional(parsed.get<std::string>()) : std::nullopt;
}

struct Kind {
    std::string_view key;
    Subject subject;
    bool has_name; // the value is the name; otherwise the key is
};

constexpr std::string_view kControl = "control";
constexpr Kind kKinds[] = {
    {"command", Subject::kCommand, true},          {"report", Subject::kReport, true},
    {"notice", Subject::kNotice, false},           {kHello, Subject::kControl, false},
    {kControl, Subject::kControl, false},          {"subscribe", Subject::kSubscription, true},
    {"unsubscribe", Subject::kSubscription, true},
};
constexpr std::string_view kUnsubscribe = "unsubscribe";

Request refused(Request request, std::string error)
{
    request.code = Code::kBadRequest;
    request.error = std::move(error);
    return request;
}

// Takes the error message from the worker's parser.
Request refused_by_parser(Request request)
{
    try {
        const Call call = parse_call(request.line);
        request.id = call.id;
        std::string error = call.error;
        return refused(std::move(request), error.empty() ? "the line is no request" : error);
    } catch (const BadRequest &problem) {
        request.id = "null";
        return refused(std::move(request), problem.what());
    }
}

// The part of the system that raises a notice; empty if not given.
std::string raiser_of(std::string_view notice)
{
    OuterKeys keys(notice);
    std::string_view key;
    std::string_view value;
    while (keys.next_member(key, value)) {
        if (text_of(key) == "plugin_name") {
            return text_of(value).value_or("");
        }
    }
    return "";
}

// The name of the only control in the object; nothing if it is not the only one.
std::optional<std::string> control_in(std::string_view controls)
{
    OuterKeys keys(controls);
    std::string_view key;
    std::string_view value;
    if (!keys.next_member(key, value)) {
        return std::nullopt;
    }
    const auto name = text_of(key);
    return name && std::ranges::find(kControls, *name) != std::end(kControls) &&
                   !keys.next_member(key, value) && keys.is_good()
               ? name
               : std::nullopt;
}

// Reads the request's type and name from its key. Result: whether the value is valid.
bool read_kind(const Kind &kind, std::string_view value, Request &request)
{
    request.subject = kind.subject;
    request.is_unsubscribe = kind.key == kUnsubscribe;
    if (kind.subject == Subject::kNotice) {
        request.name = raiser_of(value);
        return true;
    }
    const auto name = kind.has_name          ? text_of(value)
                      : kind.key == kControl ? control_in(value)
                                             : std::string(kind.key);
    request.name = name.value_or("");
    return name.has_value();
}

} // namespace

std::string_view name_of(Code code)
{
    return kCodes[static_cast<size_t>(code)];
}

Request read_request(std::string_view line)
{
    Request request;
    request.line = line;
    OuterKeys keys(request.line);
    std::string_view key;
    std::string_view value;
    size_t kinds = 0;
    bool has_id = false;
    bool has_name = true;
    while (keys.next_member(key, value)) {
        const auto name = text_of(key);
        if (name == "id" && !has_id) {
            has_id = true;
            request.id = value;
        } else if (name == "params" && request.params_size == 0) {
            request.params_begin = keys.place_of(value);
            request.params_size = value.size();
        } else if (name == "secrets") {
            request.shows_secrets = text_of(value) == "show";
        } else if (const auto *kind = std::ranges::find_if(
                       kKinds, [&](const Kind &one) { return name == one.key; });
                   kind != std::end(kKinds)) {
            ++kinds;
            has_name = read_kind(*kind, value, request) && has_name;
        }
    }
    if (!keys.is_good() || kinds == 0 || !has_name) {
        return refused_by_parser(std::move(request));
    }
    // Otherwise gate and worker could disagree on which request is meant.
    if (kinds > 1) {
        return refused(std::move(request), "the line has more than one request");
    }
    // The service repeats the id in answers of its own, for which no parser has read the line.
    if (!is_plain_json(request.id)) {
        try {
            parse_call(request.line);
        } catch (const BadRequest &problem) {
            request.id = "null";
            return refused(std::move(request), problem.what());
        }
    }
    return request;
}

std::string error_answer(std::string_view id, Code code, std::string_view text,
                         std::string_view rule)
{
    std::string answer = R"({"id":)" + std::string(id) + R"(,"error":)" + agent::quoted(text) +
                         R"(,"code":")" + std::string(name_of(code)) + '"';
    if (!rule.empty()) {
        answer += R"(,"rule":)" + agent::quoted(rule);
    }
    return answer + "}";
}

std::string too_long_answer(size_t max_line)
{
    return error_answer("null", Code::kTooLarge,
                        "the line is longer than " + std::to_string(max_line) + " bytes");
}

Code code_in(std::string_view answer)
{
    OuterKeys keys(answer);
    std::string_view key;
    std::string_view value;
    bool is_error = false;
    while (keys.next_member(key, value) && key != R"("result")") {
        is_error = is_error || key == R"("error")";
        if (key == R"("code")") {
            const auto found = std::ranges::find(kCodes, text_of(value).value_or(""));
            return found != kCodes.end() ? static_cast<Code>(found - kCodes.begin())
                                         : Code::kBadRequest;
        }
    }
    return is_error ? Code::kBadRequest : Code::kNone;
}

} // namespace agent::service
