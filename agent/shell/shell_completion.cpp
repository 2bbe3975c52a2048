// SPDX-License-Identifier: MIT
#include "shell/shell_completion.h"

#include "host/report_builders.h"
#include "io/text.h"
#include "protocol/protocol.h"
#include "shell/shell_line.h"

#include <algorithm>

namespace agent {

namespace {

// Limits on the candidates: more or longer ones would be useless to choose from.
constexpr size_t kMaxValues = 256;
constexpr size_t kMaxValue = 64;

using Words = std::vector<std::string>;

Words command_names()
{
    Words names;
    for (const Description &description : descriptions()) {
        names.push_back(description["command"].text());
    }
    return names;
}

Words event_names()
{
    Words names;
    for (const Description &description : events()) {
        names.push_back(description["event"].text());
    }
    return names;
}

Words report_names()
{
    Words names;
    for (const ReportBuilder &builder : report_builders()) {
        names.emplace_back(builder.name);
    }
    return names;
}

Words first_words()
{
    Words words;
    for (const ShellWordHelp &help : shell_words()) {
        words.emplace_back(help.word);
    }
    const Words names = command_names();
    words.insert(words.end(), names.begin(), names.end());
    return words;
}

// Whether the key can be given as KEY=VALUE.
bool can_be_text(const Description &key)
{
    const std::string type = key["type"].text();
    return (type.empty() || type == "text" || type == "any") &&
           key["meaning"].text().find("not read") == std::string::npos;
}

Description key_of(const Description &command, std::string_view name)
{
    for (const Description &key : command["request"]) {
        if (same_text(key["key"].text(), name)) {
            return key;
        }
    }
    return Description();
}

bool begins_with(std::string_view word, std::string_view beginning)
{
    return same_text(word.substr(0, beginning.size()), beginning);
}

// The common prefix of the texts; no character is split.
std::string common_beginning(const Words &texts)
{
    std::string_view common = texts.front();
    for (const std::string &text : texts) {
        const auto end = std::mismatch(common.begin(), common.end(), text.begin(), text.end());
        common = common.substr(0, static_cast<size_t>(end.first - common.begin()));
    }
    while (!is_valid_utf8(common)) {
        common.remove_suffix(1);
    }
    return std::string(common);
}

// Completes the word with the candidates that begin with it.
Completion among(const ShellWord &word, const Words &candidates, const std::string &behind = " ")
{
    Completion result;
    result.begin = word.begin;
    Words quoted;
    for (const std::string &candidate : candidates) {
        if (begins_with(candidate, word.text)) {
            result.candidates.push_back(candidate);
            quoted.push_back(as_word(candidate));
        }
    }
    if (quoted.size() == 1) {
        result.text = quoted.front() + behind;
    } else if (!quoted.empty()) {
        const std::string common = common_beginning(quoted);
        const bool is_progress =
            !common.empty() && words_of(common).front().text.size() >= word.text.size();
        result.text = is_progress ? common : "";
    }
    return result;
}

Completion keys_of(const Description &command, const std::vector<ShellWord> &words)
{
    Words keys;
    for (const Description &key : command["request"]) {
        const std::string assignment = key["key"].text() + "=";
        const bool is_given =
            std::any_of(words.begin(), words.end() - 1,
                        [&](const ShellWord &word) { return begins_with(word.text, assignment); });
        if (can_be_text(key) && !is_given) {
            keys.push_back(assignment);
        }
    }
    return among(words.back(), keys, "");
}

Completion values_of(const Description &command, const ShellWord &word,
                     const KnownValues &known_values)
{
    const std::string assignment = word.text.substr(0, word.text.find('=') + 1);
    const Description key = key_of(command, assignment.substr(0, assignment.size() - 1));
    Words candidates;
    for (const std::string &value :
         key.contains("found_in") ? known_values(key["found_in"]) : key["values"].texts()) {
        candidates.push_back(assignment + value);
    }
    Completion result = among(word, candidates);
    for (std::string &candidate : result.candidates) {
        candidate.erase(0, assignment.size());
    }
    return result;
}

Completion in_request(const std::string &command, const std::vector<ShellWord> &words,
                      const KnownValues &known_values)
{
    const Description *description = find_description(command);
    const std::string &begun = words.back().text;
    if (description == nullptr || begun.starts_with('{')) {
        return {};
    }
    return begun.find('=') == std::string::npos
               ? keys_of(*description, words)
               : values_of(*description, words.back(), known_values);
}

} // namespace

Completion complete(std::string_view text, const KnownValues &known_values)
{
    std::vector<ShellWord> words = words_of(text);
    if (words.empty() || words.back().end < text.size()) { // a new word begins
        words.push_back({"", text.size(), text.size(), false});
    }
    const ShellWord &begun = words.back();
    const std::string &first = words.front().text;
    if (words.size() == 1) {
        return among(begun, first_words());
    }
    if (first == "call") {
        return words.size() == 2 ? among(begun, command_names())
                                 : in_request(words[1].text, words, known_values);
    }
    if (words.size() == 2 && first == "help") {
        return among(begun, command_names());
    }
    if (words.size() == 2 && first == "report") {
        return among(begun, report_names());
    }
    if (words.size() == 2 && first == "events") {
        return among(begun, {"on", "off"});
    }
    if (words.size() == 3 && first == "events" && words[1].text == "on") {
        return among(begun, event_names());
    }
    return in_request(first, words, known_values);
}

std::vector<std::string> values_in_reply(const cJSON *reply, const Description &found_in)
{
    Words texts;
    const Description whole(reply);
    const std::string key = found_in["key"].text();
    const std::string separator = found_in["separator"].text();
    if (found_in.contains("list")) {
        for (const Description &element : whole[found_in["list"].text()]) {
            texts.push_back(element[key].text());
        }
    } else {
        const std::string text = whole[key].text();
        size_t begin = 0;
        while (begin < text.size() && !separator.empty()) {
            const size_t end = std::min(text.find(separator, begin), text.size());
            texts.push_back(text.substr(begin, end - begin));
            begin = end + separator.size();
        }
    }
    Words values;
    for (const std::string &text : texts) {
        // Invisible characters could control the terminal.
        const bool is_plain = is_valid_utf8(text) && one_line(text, kMaxValue) == text;
        if (!text.empty() && is_plain && values.size() < kMaxValues &&
            std::find(values.begin(), values.end(), text) == values.end()) {
            values.push_back(text);
        }
    }
    return values;
}

} // namespace agent
