// SPDX-License-Identifier: MIT
// Conversion of texts at the agent's interfaces. Device libraries and requests may pass any bytes;
// the agent's output is UTF-8, and messages for people are also on one line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent {

constexpr size_t kMaxMessage = 4096; // bytes of a message for people

bool is_valid_utf8(std::string_view text);

// The text as UTF-8. Other text is taken for GBK, which the plug-in and the libraries of some
// routers use for messages to users; bytes that are not GBK either become U+FFFD. Convert one text
// at a time: in a mix of both encodings, one of them would be misread.
std::string to_utf8(std::string_view text);

// The text as UTF-8 on one line: control characters, bidirectional controls and zero-width
// characters become escapes such as \n, \x1b or \x200b, so that nothing can end a line early, steer
// a terminal or look like another text. A line may be composed of texts of any encoding: bytes that
// are not UTF-8 become U+FFFD. The line is truncated to max_bytes, with a note that it was.
std::string one_line(std::string_view bytes, size_t max_bytes = kMaxMessage);

// The text in quotes on one line, as device calls are shown: bytes that are not UTF-8 become
// escapes, one per byte, and so do quotes and backslashes.
std::string in_quotes(std::string_view bytes);

// The same JSON, in UTF-8, with the characters that one_line() escapes as JSON escapes.
std::string json_for_terminal(std::string_view json);

// JSON's whitespace.
constexpr char kSpace[] = " \t\r\n";

// The end of the JSON string that begins at the quote: after its closing quote, or the text's end.
size_t end_of_string(std::string_view text, size_t quote);

// The number of terminal columns of a text on one line.
size_t columns_of(std::string_view utf8_text);

// "a, b, c"; unless all are wanted, only the first few and the number of the others.
std::string list_of_names(const std::vector<std::string> &names, bool all);

// The number of characters to insert, remove or replace to turn one text into the other.
size_t edit_distance(std::string_view from, std::string_view to);

// Whether the texts are equal, ignoring case.
bool same_text(std::string_view left, std::string_view right);
std::string lower_case(std::string_view text);

// Writes "hgagent: MESSAGE", or another program's name, to standard error, on one line truncated as
// above.
void print_error(std::string_view message, size_t max_bytes = kMaxMessage);

// The same for messages that are not errors.
void print_notice(std::string_view message);

// The same as an error for running out of memory, without allocating.
void print_out_of_memory();

} // namespace agent
