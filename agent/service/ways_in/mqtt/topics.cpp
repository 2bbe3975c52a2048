// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/topics.h"

#include "io/text.h"

#include <algorithm>

namespace agent::service {

namespace {

// What all brokers carry.
constexpr size_t kMaxTopic = 256;
constexpr std::ptrdiff_t kMaxSlashes = 7;
// Together with the longest name of a command, topics stay within both.
constexpr size_t kMaxId = 64;
constexpr size_t kMaxRoot = 96;
constexpr std::ptrdiff_t kMaxSlashesOfRoot = 3;
constexpr size_t kMaxClientIdentifier = 128;

constexpr std::string_view kLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.:";

struct Level {
    std::string_view name; // with its slash
    Topics::Target::Kind kind;
};
constexpr Level kLevels[] = {
    {"command/", Topics::Target::Kind::kCommand},
    {"report/", Topics::Target::Kind::kReport},
    {"request/", Topics::Target::Kind::kLine},
};
constexpr std::string_view kStateRequest = "state/get";

bool is_level(std::string_view text)
{
    return !text.empty() && text.find_first_not_of(kLetters) == std::string_view::npos;
}

bool is_control_character(char letter)
{
    return static_cast<unsigned char>(letter) < ' ' || letter == '\x7f';
}

// Whether it is a topic that anything may be published to, and that every broker carries.
bool is_plain_topic(std::string_view topic)
{
    return !topic.empty() && topic.size() <= kMaxTopic && topic.front() != '$' &&
           topic.find_first_of("+#") == std::string_view::npos &&
           std::ranges::none_of(topic, is_control_character) && is_valid_utf8(topic) &&
           std::ranges::count(topic, '/') <= kMaxSlashes;
}

} // namespace

std::string problem_of_gateway_id(std::string_view id)
{
    if (id.size() > kMaxId) {
        return "the id of a gateway has at most " + std::to_string(kMaxId) + " bytes";
    }
    return is_level(id) ? "" : "the id of a gateway has letters, digits, - _ . and :";
}

std::string problem_of_topic_root(std::string_view root)
{
    if (root.size() > kMaxRoot || std::ranges::count(root, '/') > kMaxSlashesOfRoot) {
        return "the root of the topics has at most " + std::to_string(kMaxRoot) + " bytes and " +
               std::to_string(kMaxSlashesOfRoot) + " slashes";
    }
    size_t begin = 0;
    while (begin <= root.size()) {
        const size_t end = std::min(root.find('/', begin), root.size());
        if (!is_level(root.substr(begin, end - begin))) {
            return "the root of the topics has levels of letters, digits, - _ . and :";
        }
        begin = end + 1;
    }
    return "";
}

std::string problem_of_client_identifier(std::string_view root, std::string_view id)
{
    const std::string identifier = client_identifier(root, id);
    return identifier.size() <= kMaxClientIdentifier
               ? ""
               : "the client identifier " + identifier + " has more than " +
                     std::to_string(kMaxClientIdentifier) + " bytes: choose a shorter root or id";
}

// Neither root nor id contains an @. A slash would be refused by brokers that insert the identifier
// into the topics of their access lists.
std::string client_identifier(std::string_view root, std::string_view id)
{
    std::string identifier(id);
    if (root != kDefaultRoot) {
        identifier += "@" + std::string(root);
        std::ranges::replace(identifier, '/', '@');
    }
    return identifier;
}

std::string problem_of_response_topic(std::string_view topic)
{
    return is_plain_topic(topic) ? ""
                                 : "it has to be a topic without wildcards and $, or the beginning "
                                   "of such topics, with a slash at its end";
}

Topics::Topics(std::string_view root, std::string_view id, std::vector<std::string> response_topics)
    : base_(std::string(root) + "/" + std::string(id) + "/"), reply_(base_ + "reply/"),
      state_(base_ + "state"), response_topics_(std::move(response_topics))
{
}

Topics::Target Topics::target_of(std::string_view topic) const
{
    if (!topic.starts_with(base_)) {
        return {};
    }
    const std::string_view rest = topic.substr(base_.size());
    if (rest == kStateRequest) {
        return {Target::Kind::kState, {}};
    }
    for (const Level &level : kLevels) {
        if (rest.starts_with(level.name)) {
            const std::string_view name = rest.substr(level.name.size());
            return is_level(name) ? Target{level.kind, name} : Target{};
        }
    }
    return {};
}

bool Topics::may_answer_at(std::string_view topic) const
{
    if (!is_plain_topic(topic)) {
        return false;
    }
    if (topic.starts_with(base_)) { // never its own commands, events or state
        return topic.starts_with(reply_) && topic.size() > reply_.size();
    }
    return std::ranges::any_of(response_topics_, [&](const std::string &allowed) {
        return allowed.ends_with('/') ? topic.starts_with(allowed) && topic.size() > allowed.size()
                                      : topic == allowed;
    });
}

std::vector<std::string> Topics::subscriptions() const
{
    std::vector<std::string> all;
    for (const Level &level : kLevels) {
        all.push_back(base_ + std::string(level.name) + "+");
    }
    all.push_back(base_ + std::string(kStateRequest));
    return all;
}

std::string Topics::event(std::string_view name) const
{
    return base_ + "event/" + std::string(name);
}

std::string Topics::reply(std::string_view client) const
{
    return reply_ + std::string(client);
}

} // namespace agent::service
