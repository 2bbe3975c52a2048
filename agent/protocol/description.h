// SPDX-License-Identifier: MIT
// A part of the description of a command or an event: an object, a list, a string or a flag in a
// cJSON tree. A missing part is an empty part.
#pragma once

#include <cjson/cJSON.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

class Description {
  public:
    explicit Description(const cJSON *part = nullptr) : part_(part) {}

    Description operator[](const std::string &key) const
    {
        return Description(cJSON_GetObjectItemCaseSensitive(part_, key.c_str()));
    }
    bool contains(const std::string &key) const { return (*this)[key].exists(); }
    bool exists() const { return part_ != nullptr; }
    bool empty() const { return part_ == nullptr || part_->child == nullptr; }

    std::string text() const;               // empty if not a string
    std::vector<std::string> texts() const; // of a list
    bool is_true() const { return cJSON_IsTrue(part_) != 0; }
    int64_t number() const; // 0 if not a number
    std::string as_json() const;

    friend bool operator==(const Description &part, std::string_view text)
    {
        return part.text() == text;
    }

    // Iterates over the elements of a list or the members of an object.
    class Iterator {
      public:
        explicit Iterator(const cJSON *at) : at_(at) {}
        Description operator*() const { return Description(at_); }
        Iterator &operator++()
        {
            at_ = at_->next;
            return *this;
        }
        bool operator==(const Iterator &other) const = default;

      private:
        const cJSON *at_;
    };
    Iterator begin() const { return Iterator(part_ != nullptr ? part_->child : nullptr); }
    Iterator end() const { return Iterator(nullptr); }

  private:
    const cJSON *part_;
};

} // namespace agent
