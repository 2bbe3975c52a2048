// SPDX-License-Identifier: MIT
#include "model/json.h"

#include <algorithm>
#include <set>

namespace simulated_gateway {
namespace {

constexpr size_t kDeepestNesting = 16;

// A parser callback that detects what the finished document no longer shows.
class ParseObserver {
  public:
    bool operator()(int, Json::parse_event_t event, const Json &parsed)
    {
        switch (event) {
        case Json::parse_event_t::object_start:
        case Json::parse_event_t::array_start:
            if (levels_.size() == kDeepestNesting) {
                throw Error(path() + ": is nested too deep");
            }
            levels_.push_back({event == Json::parse_event_t::array_start, {}, {}, 0});
            break;
        case Json::parse_event_t::key: {
            Level &level = levels_.back();
            level.key = parsed.get<std::string>();
            if (!level.keys.insert(level.key).second) {
                throw Error(path() + ": is repeated");
            }
            break;
        }
        case Json::parse_event_t::object_end:
        case Json::parse_event_t::array_end:
            levels_.pop_back();
            next_item();
            break;
        case Json::parse_event_t::value:
            next_item();
            break;
        }
        return true;
    }

  private:
    struct Level {
        bool is_list;
        std::string key;
        std::set<std::string> keys;
        size_t position;
    };

    void next_item()
    {
        if (!levels_.empty()) {
            ++levels_.back().position;
        }
    }

    std::string path() const
    {
        std::string path;
        for (const Level &level : levels_) {
            path += "/" + (level.is_list ? std::to_string(level.position) : level.key);
        }
        return path;
    }

    std::vector<Level> levels_;
};

// The library's message without its preamble: "line 3, column 7: ...". The message quotes what was
// read last, which may be most of the file.
std::string reason(const Json::exception &error)
{
    constexpr size_t longest = 200;
    std::string text = error.what();
    text.erase(0, text.find("] ") + 2);
    constexpr std::string_view preamble = "parse error at ";
    if (text.starts_with(preamble)) {
        text.erase(0, preamble.size());
    }
    return text.size() <= longest ? text : text.substr(0, longest) + "...";
}

} // namespace

Json parse_json(std::string_view text)
{
    if (text.empty()) {
        throw Error("is empty");
    }
    try {
        ParseObserver observer;
        return Json::parse(text, std::ref(observer));
    } catch (const Json::exception &error) {
        throw Error(reason(error));
    }
}

JsonReader::JsonReader(const Json &object, std::string path)
    : object_(object), path_(std::move(path))
{
    if (!object.is_object()) {
        throw Error((path_.empty() ? "the document" : path_ + ":") + " is not an object");
    }
}

const Json *JsonReader::find(const char *name, Presence presence)
{
    names_.push_back(name);
    const auto found = object_.find(name);
    if (found != object_.end()) {
        return &*found;
    }
    if (presence == Presence::kRequired) {
        throw Error(path_ + "/" + name + ": is missing");
    }
    return nullptr;
}

void JsonReader::refuse_unknown_keys() const
{
    for (const auto &[key, value] : object_.items()) {
        if (std::ranges::find(names_, key) == names_.end()) {
            throw Error(path_ + "/" + key + ": there is no such field" + did_you_mean(key, names_));
        }
    }
}

void JsonReader::read(const Json &item, const std::string &path, std::string &value)
{
    if (!item.is_string()) {
        throw Error(path + ": is not a string");
    }
    value = item.get<std::string>();
}

void JsonReader::read(const Json &item, const std::string &path, int64_t &value)
{
    if (!item.is_number_integer()) {
        throw Error(path + ": is not an integer");
    }
    if (item.is_number_unsigned() && item.get<uint64_t>() > INT64_MAX) {
        throw Error(path + ": is too large");
    }
    value = item.get<int64_t>();
}

void JsonReader::read(const Json &item, const std::string &path, bool &value)
{
    if (!item.is_boolean()) {
        throw Error(path + ": is neither true nor false");
    }
    value = item.get<bool>();
}

void JsonReader::require_list(const Json &item, const std::string &path, size_t most)
{
    if (!item.is_array()) {
        throw Error(path + ": is not a list");
    }
    if (item.size() > most) {
        throw Error(path + ": has more than " + std::to_string(most) + " items");
    }
}

} // namespace simulated_gateway
