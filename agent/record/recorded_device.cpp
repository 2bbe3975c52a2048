// SPDX-License-Identifier: MIT
#include "record/recorded_device.h"

#include "io/text.h"
#include "protocol/device_facts.h"
#include "protocol/json_text.h"
#include "record/device_answer.h"
#include "record/device_values.h"
#include "record/json_members.h"
#include "record/recording_reader.h"

#include <optional>

namespace agent::record {

namespace {

using device_layout::Argument;
using device_layout::Way;

// What the answer depends on: the function, the values that it reads, and of a record that it reads
// and fills the fields that it is given.
std::string key_of(const device_layout::Function &function, const cJSON *given)
{
    const std::string_view fields = device_facts::find(function.name)->given;
    const Json input = new_object();
    for (const Argument &argument : function.arguments) {
        const cJSON *value = member(given, argument.name);
        if (argument.way == Way::kOut || value == nullptr) {
            continue;
        }
        Json copy(cJSON_Duplicate(value, 1));
        for (cJSON *field = copy != nullptr ? copy->child : nullptr; field != nullptr;) {
            cJSON *next = field->next;
            const bool is_filled =
                argument.way == Way::kInOut && field->string != nullptr && !fields.empty() &&
                fields.find(" " + std::string(field->string) + " ") == std::string_view::npos;
            if (is_filled) {
                cJSON_Delete(cJSON_DetachItemViaPointer(copy.get(), field));
            }
            field = next;
        }
        add_member(input.get(), argument.name, std::move(copy));
    }
    hide_remains(input.get());
    return function.name + print(input.get(), {.raw_bytes = true});
}

} // namespace

RecordedDevice::RecordedDevice(const std::string &file)
{
    RecordingReader recording(file);
    for (const LineStart &start : recording.sessions()) {
        recording.go_to(start);
        recording.head();
        while (std::optional<Event> event = recording.next()) {
            const device_layout::Function *function = device_layout::find(event->name);
            if (event->kind == EventKind::kCall && function->reads) {
                answers_.insert_or_assign(key_of(*function, event->given.get()),
                                          std::move(event->line));
            }
        }
    }
}

void RecordedDevice::run(DeviceCall &call)
{
    refuse_call(call);
    if (call.function.frees) {
        return;
    }
    if (!call.function.reads) {
        print_error(std::string("a recording answers queries only: ") + call.function.name +
                    "() changes the device");
        return;
    }
    const std::string key = key_of(call.function, given_to(call).get());
    const std::lock_guard lock(mutex_);
    const auto recorded = answers_.find(key);
    if (recorded == answers_.end()) {
        print_error(std::string("the recording has no answer to ") + key);
        return;
    }
    answer_call(call, recorded->second.get());
}

} // namespace agent::record
