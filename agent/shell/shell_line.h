// SPDX-License-Identifier: MIT
// Parsing of a line of the shell.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

// A word as typed. Quotes and backslashes work as in a POSIX shell. A word that begins with a brace
// reaches to the end of the line, so that JSON needs no quotes.
struct ShellWord {
    std::string text; // without its quotes
    size_t begin = 0; // in the line
    size_t end = 0;
    bool is_open = false; // an unterminated quote
};

std::vector<ShellWord> words_of(std::string_view line);

// The text quoted as a word that words_of() reads back.
std::string as_word(std::string_view text);

enum class ShellVerb {
    kNothing, // an empty line or a comment
    kCall,
    kReport,
    kEvents,
    kHelp,
    kList,
    kStatus,
    kQuit,
};

struct ShellInput {
    ShellVerb verb = ShellVerb::kNothing;
    std::string name; // of the command or report; the pattern of list and events; the topic of help
    std::string params = "{}"; // of a command or report, as JSON
    bool is_on = false;        // of events
};

// Throws BadRequest.
ShellInput parse_shell_line(std::string_view line);

struct ShellWordHelp {
    const char *word;
    const char *usage;
    const char *summary;
};

// The words that a line can begin with in addition to the names of commands.
std::span<const ShellWordHelp> shell_words();

} // namespace agent
