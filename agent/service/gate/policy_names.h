// SPDX-License-Identifier: MIT
// All names that a policy can use, so that a rule that matches nothing is detected when it is read.
#pragma once

#include "service/common/request.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// The prefixes, before the colon, of rules on requests other than commands, by subject.
struct SubjectWord {
    Subject subject;
    std::string_view word;
};
const std::vector<SubjectWord> &subject_words();

// The names of a subject's requests; empty if any name is possible, as with notices.
std::vector<std::string> known_names(Subject subject);

// Whether there is such a request; for a subscription, whether its pattern matches an event.
bool is_known(Subject subject, std::string_view name);

// A request in the notation of rules: "report:topology".
std::string rule_for(Subject subject, std::string_view name);

// The sorted names of the commands that only query, and not for secrets.
const std::vector<std::string> &open_queries();

// Maps each value of the key "subject" or "effect" in the protocol's descriptions to the sorted
// names of the commands with that value.
std::map<std::string, std::vector<std::string>> commands_by(const std::string &key);

} // namespace agent::service
