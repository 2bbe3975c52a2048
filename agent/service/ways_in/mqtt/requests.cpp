// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/requests.h"

#include "io/text.h"

#include <algorithm>

namespace agent::service {

namespace {

// The id of the line that is made of a message: the correlation data identify the request.
constexpr std::string_view kNoId = R"({"id":null,)";
constexpr std::string_view kEvent = R"({"event":")";
constexpr std::string_view kData = R"(","data":)";

std::string_view without_space(std::string_view text)
{
    const size_t begin = std::min(text.find_first_not_of(kSpace), text.size());
    text.remove_prefix(begin);
    return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

// Replaces the line ends between JSON's values, because the worker reads lines. Those within
// strings are invalid, and stay for the parser to report.
void put_on_one_line(std::string &json, size_t begin)
{
    size_t at = json.find_first_of("\n\"", begin);
    while (at < json.size()) {
        if (json[at] == '"') {
            at = end_of_string(json, at);
        } else {
            json[at++] = ' ';
        }
        at = json.find_first_of("\n\"", at);
    }
}

Request refused(Request request, Code code, std::string error)
{
    request.code = code;
    request.error = std::move(error);
    return request;
}

Request checked(Request request)
{
    if (request.line.find('\n') != std::string::npos) {
        return refused(std::move(request), Code::kBadRequest, "a string has a line end in it");
    }
    if (request.code != Code::kNone) {
        return request;
    }
    if (request.subject == Subject::kSubscription) {
        return refused(std::move(request), Code::kBadRequest,
                       "events are subscribed to at the broker");
    }
    if (request.subject == Subject::kControl && request.name != kHello) {
        return refused(std::move(request), Code::kDenied,
                       "the simulated gateway is not controlled by MQTT");
    }
    return request;
}

} // namespace

Request request_of(const Topics::Target &target, std::string_view payload)
{
    payload = without_space(payload);
    if (target.kind == Topics::Target::Kind::kLine) {
        std::string line(payload);
        put_on_one_line(line, 0);
        return checked(read_request(line));
    }
    std::string line(kNoId);
    line += target.kind == Topics::Target::Kind::kReport ? R"("report":")" : R"("command":")";
    line += target.name; // characters that need no escape
    line += R"(","params":)";
    const size_t begin = line.size();
    line += payload.empty() ? "{}" : payload;
    const size_t size = line.size() - begin;
    if (line.find('\n', begin) != std::string::npos) {
        put_on_one_line(line, begin);
    }
    line += '}';
    Request request = checked(read_request(line));
    // Otherwise a payload such as {},"command":"NAME" could name another command.
    const bool is_object =
        request.params_begin == begin && request.params_size == size && request.line[begin] == '{';
    if (request.code == Code::kNone && !is_object) {
        return refused(std::move(request), Code::kBadRequest, "the payload is no JSON object");
    }
    request.id = "null";
    return request;
}

std::string answer_payload(std::string_view line)
{
    if (!line.starts_with(kNoId)) {
        return std::string(line);
    }
    std::string payload;
    payload.reserve(line.size() - kNoId.size() + 1);
    payload += '{';
    payload += line.substr(kNoId.size());
    return payload;
}

EventParts parts_of_event(std::string_view line)
{
    if (!line.starts_with(kEvent) || !line.ends_with('}')) {
        return {};
    }
    line.remove_prefix(kEvent.size());
    line.remove_suffix(1);
    const size_t end = line.find('"');
    if (!line.substr(std::min(end, line.size())).starts_with(kData)) {
        return {};
    }
    return {line.substr(0, end), line.substr(end + kData.size())};
}

} // namespace agent::service
