// SPDX-License-Identifier: MIT
// Requests in which a test changes one key at a time.
#pragma once

#include <string>
#include <utility>
#include <vector>

// The text as a JSON text; it must need no escapes.
inline std::string quoted(const std::string &text)
{
    return '"' + text + '"';
}

// JSON values of every type except string.
inline const std::vector<std::string> kNoTexts = {"7",  "-0.5",     "true", "false",       "null",
                                                  "[]", R"(["x"])", "{}",   R"({"x":"y"})"};

// An object under construction: keys with their values as JSON, in order.
class Request {
  public:
    using Keys = std::vector<std::pair<std::string, std::string>>;

    explicit Request(Keys keys) : keys_(std::move(keys)) {}

    // A copy, so that a range-based loop may iterate over the keys of a temporary request.
    Keys keys() const { return keys_; }

    // The same with the key's value replaced, or with a new key appended.
    Request with(const std::string &key, const std::string &json) const
    {
        Request changed = *this;
        for (auto &[name, value] : changed.keys_) {
            if (name == key) {
                value = json;
                return changed;
            }
        }
        changed.keys_.emplace_back(key, json);
        return changed;
    }

    Request without(const std::string &key) const
    {
        Request changed = *this;
        std::erase_if(changed.keys_, [&](const auto &pair) { return pair.first == key; });
        return changed;
    }

    // The requests that lack the key, or have a value for it that is not a string.
    std::vector<Request> without_text(const std::string &key) const
    {
        std::vector<Request> requests = {without(key)};
        for (const std::string &no_text : kNoTexts) {
            requests.push_back(with(key, no_text));
        }
        return requests;
    }

    std::string json() const { return "{" + members() + "}"; }

    // The request followed by the members of a reply: the object if nothing was removed from it.
    std::string followed_by(const std::string &reply) const
    {
        return "{" + members() + (keys_.empty() || reply.empty() ? "" : ",") + reply + "}";
    }

  private:
    std::string members() const
    {
        std::string text;
        for (const auto &[key, value] : keys_) {
            text += (text.empty() ? "\"" : ",\"") + key + "\":" + value;
        }
        return text;
    }

    Keys keys_;
};

// JSON values that are not objects with a string for each of the keys.
inline std::vector<std::string> not_like(const Request &whole)
{
    std::vector<std::string> others = {"null", "7",  "true",     R"("x")",
                                       "[]",   "{}", "[[[[]]]]", "[" + whole.json() + "]"};
    for (const auto &[key, json] : whole.keys()) {
        others.push_back(quoted(key));
        for (const Request &request : whole.without_text(key)) {
            others.push_back(request.json());
        }
    }
    return others;
}

// The members of a failure's reply.
inline std::string failure(const std::string &reason)
{
    return R"("Status":"1","FailReason":")" + reason + '"';
}
