// SPDX-License-Identifier: MIT
#include "service/gate/policy_names.h"

#include "commands/image_upgrade.h"
#include "commands/topology.h"
#include "host/report_builders.h"
#include "protocol/protocol.h"

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

std::map<std::string, std::vector<std::string>> commands_by(const std::string &key)
{
    std::map<std::string, std::vector<std::string>> commands;
    for (const Description &description : descriptions()) { // sorted by name
        commands[description[key].text()].push_back(description["command"].text());
    }
    return commands;
}

} // namespace agent::service
