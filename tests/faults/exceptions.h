// SPDX-License-Identifier: MIT
// Where a command deliberately differs from what all commands have in common.
#pragma once

#include "subject.h"

#include <string>
#include <string_view>

// What all commands have in common.
enum class Rule {
    kAbsentKey,   // is refused, or an optional one left out
    kOtherType,   // counts as it is described
    kCut,         // a text is cut to its field and changes nothing else
    kEmptyText,   // is a text like any other
    kRepeatedKey, // only the first counts
    kOtherCase,   // a key is found in any letter case, or else is absent
    kPresentKey,  // keys of a reply that are there already stay
    kResult,      // a device function's result counts as it is described; the key is the function
    kZeroed,      // what the device writes to is zero before; the key is the field
    kNoError,     // a success logs no error
    kCallOrder,   // the calls come in the order that is described
    kNoObject,    // a value that is not an object is left unchanged, and nothing is changed
};

// Why the rule does not apply to the key; null if it does. An empty key means the whole request.
const char *exception(const Subject &subject, Rule rule, const std::string &key);

// The exceptions of a subject that were never used: they are obsolete.
std::string stale_exceptions(const Subject &subject, Rule rule);
