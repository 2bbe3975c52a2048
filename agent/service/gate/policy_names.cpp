// SPDX-License-Identifier: MIT
#include "service/gate/policy_names.h"

#include "commands/image_upgrade.h"
#include "commands/topology.h"
#include "host/report_builders.h"
#include "protocol/protocol.h"
#include "protocol/secrets.h"
#include "service/gate/pattern.h"

#include <algorithm>

namespace agent::service {

const std::vector<SubjectWord> &subject_words()
{
    static const std::vector<SubjectWord> words = {{Subject::kReport, "report"},
                                                   {Subject::kNotice, "notice"},
                                                   {Subject::kControl, "control"},
                                                   {Subject::kSubscription, "event"}};
    return words;
}

std::vector<std::string> known_names(Subject subject)
{
    std::vector<std::string> names;
    switch (subject) {
    case Subject::kCommand:
        for (const Description &description : descriptions()) {
            names.push_back(description["command"].text());
        }
        break;
    case Subject::kReport:
        for (const ReportBuilder &builder : report_builders()) {
            names.emplace_back(builder.name);
        }
        names.emplace_back(kMesh);
        names.emplace_back(kImageUpgrade);
        break;
    case Subject::kControl:
        names.emplace_back(kHello);
        break;
    case Subject::kSubscription:
        for (const Description &description : events()) {
            names.push_back(description["event"].text());
        }
        break;
    case Subject::kNotice: // any part of the system may raise one
        break;
    }
    return names;
}

bool is_known(Subject subject, std::string_view name)
{
    const std::vector<std::string> names = known_names(subject);
    return names.empty() || std::ranges::any_of(names, [&](const std::string &known) {
               return subject == Subject::kSubscription ? matches(name, known) : name == known;
           });
}

std::string rule_for(Subject subject, std::string_view name)
{
    const auto &words = subject_words();
    const auto found = std::ranges::find(words, subject, &SubjectWord::subject);
    return (found != words.end() ? std::string(found->word) + ":" : "") + std::string(name);
}

const std::vector<std::string> &open_queries()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> queries;
        for (const std::string &name : known_names(Subject::kCommand)) { // sorted
            if (!may_change(name) && !may_reply_secrets(name)) {
                queries.push_back(name);
            }
        }
        return queries;
    }();
    return names;
}

std::map<std::string, std::vector<std::string>> commands_by(const std::string &key)
{
    std::map<std::string, std::vector<std::string>> commands;
    for (const Description &description : descriptions()) { // sorted by name
        commands[description[key].text()].push_back(description["command"].text());
    }
    return commands;
}

} // namespace agent::service
