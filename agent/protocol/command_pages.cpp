// SPDX-License-Identifier: MIT
#include "protocol/command_pages.h"

#include "io/pages.h"
#include "io/text.h"
#include "protocol/protocol.h"

#include <algorithm>
#include <fnmatch.h>
#include <sstream>

namespace agent {

namespace {

bool matches(const std::string &name, const std::string &pattern)
{
    if (pattern.find_first_of("*?[") != std::string::npos) {
        return fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
    }
    return lower_case(name).find(lower_case(pattern)) != std::string::npos;
}

std::string joined(const std::vector<std::string> &words, const std::string &separator)
{
    std::string text;
    for (const std::string &word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

// The form of its value in words, with the unit, and an example unless the form lists the values.
std::string form_of(const Description &key)
{
    std::vector<std::string> parts;
    if (!key.contains("form")) {
        return "";
    }
    const std::string form = key["form"].text();
    if (form != "any text" && key["meaning"].text().find(form) == std::string::npos) {
        parts.push_back(form);
    }
    if (key.contains("unit")) {
        parts.push_back("in " + key["unit"].text());
    }
    if (!key.contains("values")) {
        const Description example = key["example"];
        parts.push_back("e.g. " + (key["type"] == "number" ? example.text() : example.as_json()));
    }
    return joined(parts, ", ");
}

// Everything about a key except its name, in the order in which a reader needs it.
std::string about(const Description &key, bool in_request)
{
    std::vector<std::string> parts;
    if (in_request) {
        parts.emplace_back(key["required"].is_true() ? "required" : "optional");
    } else if (key["optional"].is_true()) {
        parts.emplace_back("not always present");
    }
    if (key.contains("type") && key["type"].text() != "text") {
        parts.push_back(key["type"].text());
    }
    if (key.contains("text")) {
        parts.push_back(key["text"].as_json());
    }
    if (key.contains("one_of")) {
        std::vector<std::string> texts;
        for (const Description &text : key["one_of"]) {
            texts.push_back(text.as_json());
        }
        parts.push_back(joined(texts, " or "));
    }
    if (key.contains("max_bytes")) {
        parts.push_back((in_request ? "truncated to " : "at most ") + key["max_bytes"].as_json() +
                        " bytes");
    }
    if (key["secret"].is_true()) {
        parts.emplace_back("secret");
    }
    if (key.contains("meaning")) {
        parts.push_back(key["meaning"].text());
    }
    if (std::string form = form_of(key); !form.empty()) {
        parts.push_back(std::move(form));
    }
    if (key.contains("found_in")) {
        parts.push_back("reported by " + key["found_in"]["command"].text());
    }
    return joined(parts, "; ");
}

std::string changes_of(const Description &command)
{
    if (command.contains("read_back")) {
        return "a setting, reported by " + command["read_back"]["command"].text();
    }
    return command["effect"] == "none" ? "nothing" : "what it cannot change back";
}

void add_keys(Table &table, const Description &keys, bool in_request, const std::string &indent)
{
    for (const Description &key : keys) {
        table.row({indent + key["key"].text(), about(key, in_request)});
        if (key.contains("items")) {
            add_keys(table, key["items"], in_request, indent + "  ");
        }
    }
}

void print_keys(std::ostream &page, const Description &keys, bool in_request)
{
    Table table;
    add_keys(table, keys, in_request, "");
    if (table.empty()) {
        table.row({"(no keys)"});
    }
    table.print(page, "    ");
}

void print_page(std::ostream &page, const Description &command)
{
    page << command["command"].text() << " - " << command["summary"].text() << "\n\n";
    if (command.contains("details")) {
        page << command["details"].text() << "\n\n";
    }
    const std::vector<std::string> calls = command["device_calls"].texts();
    Table facts;
    facts.row({"Subject", command["subject"].text()});
    facts.row({"Handler", command["handler"].text()});
    facts.row({"Device calls", calls.empty() ? "none" : joined(calls, ", ")});
    facts.row({"Changes", changes_of(command)});
    if (command.contains("seconds")) {
        facts.row({"Takes", "up to " + command["seconds"].as_json() + " seconds"});
    }
    facts.print(page, "");

    page << "\nRequest" << (command["case_sensitive"].is_true() ? " (case-sensitive)" : "") << '\n';
    print_keys(page, command["request"], true);

    for (const Description &reply : command["replies"]) {
        page << "\nReply, " << reply["outcome"].text() << ": " << reply["when"].text() << '\n';
        print_keys(page, reply["keys"], false);
        const std::vector<std::string> removed = reply["removes"].texts();
        if (!removed.empty()) {
            page << "    Removed from the object: " << joined(removed, ", ") << '\n';
        }
        const std::vector<std::string> strings = reply["removes_if_text"].texts();
        if (!strings.empty()) {
            page << "    Removed if they are strings: " << joined(strings, ", ") << '\n';
        }
    }

    page << "\nExample\n    " << command["example"]["request"].as_json() << "\n    "
         << command["example"]["reply"].as_json() << '\n';
}

void print_event_page(std::ostream &page, const Description &event)
{
    page << event["event"].text() << " - " << event["summary"].text() << "\n\n";
    if (event.contains("details")) {
        page << event["details"].text() << "\n\n";
    }
    Table facts;
    facts.row({"When", event["when"].text()});
    facts.row({"Sent by", event["made_by"] == "serve" ? "hgagent serve --events" : "the service"});
    facts.print(page, "");
    page << "\nData\n";
    print_keys(page, event["data"], false);
    page << "\nExample\n    {\"event\":\"" << event["event"].text()
         << "\",\"data\":" << event["example"].as_json() << "}\n";
}

// key: the member that contains the name.
std::string list_of(const std::vector<Description> &all, const std::string &key,
                    const std::string &pattern)
{
    Table table;
    for (const Description &description : all) {
        if (matches(description[key].text(), pattern)) {
            table.row({description[key].text(), description["summary"].text()});
        }
    }
    std::ostringstream page;
    table.print(page, "");
    return page.str();
}

} // namespace

std::string list_page(const std::string &pattern)
{
    return list_of(descriptions(), "command", pattern);
}

std::string event_list_page(const std::string &pattern)
{
    return list_of(events(), "event", pattern);
}

std::string description_page(const std::string &name)
{
    const Description *command = find_description(name);
    const Description *event = find_event(name);
    std::ostringstream page;
    if (command != nullptr) {
        print_page(page, *command);
    } else if (event != nullptr) {
        print_event_page(page, *event);
    }
    return page.str();
}

} // namespace agent
