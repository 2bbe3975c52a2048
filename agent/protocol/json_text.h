// SPDX-License-Identifier: MIT
// Trees of cJSON's as texts.
#pragma once

#include <cjson/cJSON.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace agent {

// How a reply is written.
struct Form {
    bool indented = false;  // or on one line
    bool raw_bytes = false; // texts as the plug-in left them, or as UTF-8
};

std::string print(const cJSON *item, const Form &form = {});

// Prints one reply after the other into memory that it keeps, as much as the longest of them takes.
class ReplyPrinter {
  public:
    // The same text as print() makes. It is there until forget().
    std::string_view print(const cJSON *reply, bool raw_bytes);

    // Wipes the text, in which passwords may stand.
    void forget();

  private:
    void print_bytes(const cJSON *item);

    std::unique_ptr<char[]> memory_;
    size_t size_ = 0;
    size_t used_ = 0;
};

// The text as a JSON text, in quotes.
std::string quoted(std::string_view text);

} // namespace agent
