// Device calls as people read them: {MAC="3C:6A:D2:10:4F:20", tslinkstatus="1"}.
#pragma once

#include "protocol/device_layout.h"

#include <string>
#include <string_view>

namespace device_text {

// The width of a text that a call fills, by the arguments of the call.
size_t width_of(const device_layout::Argument &argument, const intptr_t *arguments);

// How many bytes an argument leads to; 0 for a value, a list and a text of any length.
size_t size_of(const device_layout::Argument &argument, const intptr_t *arguments);

struct Style {
    bool show_secrets = false;
    // The text in quotes and on one line, whatever it holds.
    std::string (*in_quotes)(std::string_view text) = nullptr;
    // The text without the secrets that may stand in one of this form.
    std::string (*masked)(std::string_view form, std::string_view text) = nullptr;
};

// The fields of a record, but for reserved ones, and an argument. Texts are read no further than
// their fields, and shown up to 4096 bytes; of arrays and lists the first entries are shown, and
// how many more there are. After a failure nothing is read that the record points to.
std::string shown_record(const Style &style, const device_layout::Record &record, const void *at,
                         bool success);
std::string shown_argument(const Style &style, const device_layout::Argument &argument,
                           intptr_t value, const intptr_t *arguments, bool success);

} // namespace device_text
