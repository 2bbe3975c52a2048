// SPDX-License-Identifier: MIT
// Texts at the agent's edge. Device libraries and requests may hand over any bytes; what leaves the
// agent is UTF-8, and what goes to a person is also one line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent {

bool is_valid_utf8(std::string_view text);

// The text as UTF-8. One that is not is taken for GBK, in which the plug-in and the libraries of
// some routers speak to their users; what is no GBK either becomes U+FFFD. Only one text at a time
// can be judged so: where the two encodings stand side by side, one of them would be misread.
std::string to_utf8(std::string_view text);

// The text as UTF-8 on one line: control characters, those that turn the direction of writing and
// those without a width become escapes such as \n, \x1b or \x200b, so that nothing can end a line
// early, steer a terminal or look like another text. A line may be put together from texts of any
// encoding: what is no UTF-8 becomes U+FFFD. Anything beyond max_bytes is cut off, and the line
// says so.
std::string one_line(std::string_view bytes, size_t max_bytes = 4096);

// The text in quotes on one line, as device calls are shown: what is no UTF-8 becomes escapes, byte
// by byte, and so do quotes and backslashes.
std::string in_quotes(std::string_view bytes);

// The same JSON, in UTF-8, with these characters as JSON's own escapes.
std::string json_for_terminal(std::string_view json);

// What JSON takes for space.
constexpr char kSpace[] = " \t\r\n";

// Where the JSON string ends that begins at the quote: behind its closing quote, or at the text's
// end.
size_t end_of_string(std::string_view text, size_t quote);

// How many columns a terminal takes for a text on one line.
size_t columns_of(std::string_view utf8_text);

// "a, b, c"; unless all are wanted, only the first few of many, and how many more there are.
std::string list_of_names(const std::vector<std::string> &names, bool all);

// How many letters have to be put in, taken out or replaced to make one text the other.
size_t edit_distance(std::string_view from, std::string_view to);

// Whether the letters are the same, upper or lower case.
bool same_text(std::string_view left, std::string_view right);
std::string lower_case(std::string_view text);

// Writes "hgagent: MESSAGE", or another program's name, to standard error, on one line that is cut
// as above.
void print_error(std::string_view message, size_t max_bytes = 4096);

// The same of memory that has run out, without allocating any.
void print_out_of_memory();

} // namespace agent
