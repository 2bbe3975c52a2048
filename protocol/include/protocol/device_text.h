// SPDX-License-Identifier: MIT
// Device calls in readable form: {MAC="3C:6A:D2:10:4F:20", tslinkstatus="1"}.
#pragma once

#include "protocol/device_layout.h"

#include <string>
#include <string_view>

namespace device_text {

// The width of a text that a call fills, given the arguments of the call.
size_t width_of(const device_layout::Argument &argument, const intptr_t *arguments);

// The number of bytes that an argument points to; 0 for a value, a list and a text of any length.
size_t size_of(const device_layout::Argument &argument, const intptr_t *arguments);

// The number of a kind other than text and record, which need not be aligned.
int64_t number_at(device_layout::Kind kind, const char *place);

struct Style {
    bool show_secrets = false;
    // The text in quotes and on one line, regardless of its content.
    std::string (*in_quotes)(std::string_view text) = nullptr;
    // The text without the secrets that a text of this form may contain.
    std::string (*masked)(std::string_view form, std::string_view text) = nullptr;
};

// The fields of a record, except reserved ones, and an argument. Texts are not read beyond their
// fields, and at most 4096 bytes are shown; of arrays and lists, the first entries are shown, and
// the number of the others. After a failure, nothing that the record points to is read.
std::string shown_record(const Style &style, const device_layout::Record &record, const void *at,
                         bool success);
std::string shown_argument(const Style &style, const device_layout::Argument &argument,
                           intptr_t value, const intptr_t *arguments, bool success);

} // namespace device_text
