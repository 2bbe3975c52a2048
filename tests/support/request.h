// Requests of which a test changes one key at a time.
#pragma once

#include <string>
#include <utility>
#include <vector>

// The text as a JSON text; it must need no escapes.
inline std::string quoted(const std::string &text)
{
    return '"' + text + '"';
}

// Values that are no JSON text, in every type that there is.
inline const std::vector<std::string> kNoTexts = {"7",  "-0.5",     "true", "false",       "null",
                                                  "[]", R"(["x"])", "{}",   R"({"x":"y"})"};

// An object under construction: keys with their values as JSON, in order.
class Request {
  public:
    using Keys = std::vector<std::pair<std::string, std::string>>;

    explicit Request(Keys keys) : keys_(std::move(keys)) {}

    // A copy, so that a loop may run over the keys of a request made on the spot.
    Keys keys() const { return keys_; }

    // The same with the key's value replaced, or with the key at the end where it is new.
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

    std::string json() const { return "{" + members() + "}"; }

    // The request with the members of a reply behind it: what the object holds when nothing was
    // taken out of it.
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

// The members of a failure's reply.
inline std::string failure(const std::string &reason)
{
    return R"("Status":"1","FailReason":")" + reason + '"';
}
