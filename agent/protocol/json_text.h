// SPDX-License-Identifier: MIT
// Printing of cJSON trees.
#pragma once

#include <cjson/cJSON.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace agent {

// How a reply is written.
struct Form {
    bool indented = false;  // otherwise on one line
    bool raw_bytes = false; // strings unchanged from the plug-in, otherwise converted to UTF-8
};

std::string print(const cJSON *item, const Form &form = {});

// Prints replies into a buffer that it reuses; the buffer grows to the longest reply.
class ReplyPrinter {
  public:
    // The same text as from print(). It is valid until forget().
    std::string_view print(const cJSON *reply, bool raw_bytes);

    // Wipes the text, which may contain passwords.
    void forget();

  private:
    void print_bytes(const cJSON *item);

    std::unique_ptr<char[]> memory_;
    size_t size_ = 0;
    size_t used_ = 0;
};

// The text as a JSON string, in quotes.
std::string quoted(std::string_view text);

} // namespace agent
