// SPDX-License-Identifier: MIT
#include "shell/shell_line.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/requests.h"
#include "shell/shell_secrets.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace agent {

namespace {

// A word of these characters only needs no quotes.
constexpr std::string_view kPlainLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-+.,:/@%=";
constexpr size_t kMaxWordShown = 64;

constexpr std::array<ShellWordHelp, 8> kWords = {{
    {"call", "[call] NAME [KEY=VALUE ... | JSON]", "Run a command and show its reply"},
    {"report", "report NAME [KEY=VALUE ... | JSON]",
     "Show a report that the plug-in builds without a command"},
    {"events", "events on [PATTERN] | off", "Show what happens by itself, or no longer"},
    {"help", "help [NAME]", "Show this, or what a command takes and replies"},
    {"list", "list [PATTERN]", "List the commands"},
    {"status", "status", "Show which service this is"},
    {"quit", "quit", "End; so does the end of input (Ctrl-D)"},
    {"exit", "exit", "The same"},
}};

bool is_space(char letter)
{
    return std::string_view(kSpace).find(letter) != std::string_view::npos;
}

// Whether a backslash escapes the character within double quotes.
bool is_special_in_quotes(char letter)
{
    return std::string_view("\"\\$`").find(letter) != std::string_view::npos;
}

// The word that begins there.
ShellWord word_at(std::string_view line, size_t begin)
{
    ShellWord word;
    word.begin = begin;
    char quote = '\0';
    size_t at = begin;
    for (; at < line.size() && (quote != '\0' || !is_space(line[at])); ++at) {
        const char letter = line[at];
        const bool escapes = letter == '\\' && at + 1 < line.size() && quote != '\'' &&
                             (quote == '\0' || is_special_in_quotes(line[at + 1]));
        if (escapes) {
            word.text += line[++at];
        } else if (quote == '\0' && (letter == '"' || letter == '\'')) {
            quote = letter;
        } else if (quote != '\0' && letter == quote) {
            quote = '\0';
        } else {
            word.text += letter;
        }
    }
    word.end = at;
    word.is_open = quote != '\0';
    return word;
}

std::string in_message(std::string_view word)
{
    return "\"" + one_line(word, kMaxWordShown) + "\"";
}

void refuse_more_than(std::span<const ShellWord> words, size_t count)
{
    if (words.size() > count) {
        throw BadRequest(in_message(words[count].text) + " is one word too many");
    }
}

std::string params_of(std::span<const ShellWord> words)
{
    if (words.size() == 1 && words.front().text.find_first_of("{[\"") == 0) {
        parse_object(words.front().text);
        return words.front().text; // printing a parsed number again might lose a digit
    }
    std::vector<std::string> texts;
    for (const ShellWord &word : words) {
        texts.push_back(word.text);
    }
    return print(object_from_words(texts).get());
}

ShellInput request_of(ShellVerb verb, std::span<const ShellWord> words)
{
    ShellInput input;
    input.verb = verb;
    if (words.empty()) {
        throw BadRequest("a name is missing");
    }
    if (!is_valid_utf8(words.front().text)) {
        throw BadRequest("the name is not UTF-8");
    }
    input.name = words.front().text;
    words = words.subspan(1);
    if (holds_mask(words)) {
        throw BadRequest("\"***\" stands for a secret that the history does not keep: put it in");
    }
    input.params = params_of(words);
    return input;
}

ShellInput events_of(std::span<const ShellWord> words)
{
    ShellInput input;
    input.verb = ShellVerb::kEvents;
    input.is_on = !words.empty() && words.front().text == "on";
    if (words.empty() || (!input.is_on && words.front().text != "off")) {
        throw BadRequest("events needs \"on\" or \"off\"");
    }
    refuse_more_than(words, input.is_on ? 2 : 1);
    input.name = words.size() == 2 ? words.back().text : "*";
    return input;
}

} // namespace

std::vector<ShellWord> words_of(std::string_view line)
{
    std::vector<ShellWord> words;
    size_t at = 0;
    while ((at = std::min(line.find_first_not_of(kSpace, at), line.size())) < line.size()) {
        if (!words.empty() && line[at] == '{') {
            const size_t end = line.find_last_not_of(kSpace) + 1;
            words.push_back({std::string(line.substr(at, end - at)), at, end, false});
            break;
        }
        words.push_back(word_at(line, at));
        at = words.back().end;
    }
    return words;
}

std::string as_word(std::string_view text)
{
    if (!text.empty() && text.find_first_not_of(kPlainLetters) == std::string_view::npos) {
        return std::string(text);
    }
    std::string word = "\"";
    for (const char letter : text) {
        word += is_special_in_quotes(letter) ? std::string{'\\', letter} : std::string(1, letter);
    }
    return word + '"';
}

ShellInput parse_shell_line(std::string_view line)
{
    const std::vector<ShellWord> all = words_of(line);
    if (all.empty() || line[all.front().begin] == '#') {
        return {};
    }
    if (line.find('\0') != std::string_view::npos) {
        throw BadRequest("NUL byte");
    }
    if (all.back().is_open) {
        throw BadRequest("a quote has no end");
    }
    const std::span<const ShellWord> words = std::span(all).subspan(1);
    const std::string &first = all.front().text;
    ShellInput input;
    if (first == "call") {
        return request_of(ShellVerb::kCall, words);
    }
    if (first == "report") {
        return request_of(ShellVerb::kReport, words);
    }
    if (first == "events") {
        return events_of(words);
    }
    if (first == "help" || first == "list") {
        refuse_more_than(words, 1);
        input.verb = first == "help" ? ShellVerb::kHelp : ShellVerb::kList;
        input.name = words.empty() ? "" : words.front().text;
        return input;
    }
    if (first == "status" || first == "quit" || first == "exit") {
        refuse_more_than(words, 0);
        input.verb = first == "status" ? ShellVerb::kStatus : ShellVerb::kQuit;
        return input;
    }
    return request_of(ShellVerb::kCall, all);
}

std::span<const ShellWordHelp> shell_words()
{
    return kWords;
}

} // namespace agent
