// SPDX-License-Identifier: MIT
// All that a policy can name, so that a rule that would match nothing is found when it is read.
#pragma once

#include "service/common/request.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// The words before the colon of a rule that speak of a request other than a command, by subject.
struct SubjectWord {
    Subject subject;
    std::string_view word;
};
const std::vector<SubjectWord> &subject_words();

// The names of a subject's requests; none where any name can come, as with notices.
std::vector<std::string> known_names(Subject subject);

// The values that the protocol's commands have under the key "subject" or "effect", each with the
// names of the commands that have it, sorted.
std::map<std::string, std::vector<std::string>> commands_by(const std::string &key);

} // namespace agent::service
