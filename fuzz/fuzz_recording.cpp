// SPDX-License-Identifier: MIT
// Fuzzes the reading of recordings: the input is the file of one.
//
// Its calls are answered with what it says was written, into memory of exactly the size that the
// functions have. A recording that can be read does not differ from itself, and a test case made of
// it can be read as well.
#include "files.h"
#include "give_up.h"
#include "host/device_layer.h"
#include "io/exit_status.h"
#include "lines.h"
#include "mutator.h"
#include "protocol/device_text.h"
#include "protocol/value_at.h"
#include "record/device_answer.h"
#include "record/recording_diff.h"
#include "record/recording_reader.h"
#include "record/test_case.h"
#include "request.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <optional>
#include <span>
#include <unistd.h>
#include <vector>

using namespace fuzz;
using namespace agent::record;
using device_layout::Argument;
using device_layout::Field;
using device_layout::Kind;
using device_layout::Pointer;
using device_layout::Record;
using device_layout::Way;

namespace {

const MemoryFile &input()
{
    static const MemoryFile file("input");
    return file;
}

// Standard output.
const MemoryFile &output()
{
    static const MemoryFile file("output");
    return file;
}

// ---- Calls --------------------------------------------------------------------------------------

void free_pointers(const Record &record, char *at);

void free_entries(const Field &field, char *entries, size_t count)
{
    if (field.kind == Kind::kRecord) {
        for (size_t at = 0; at < count; ++at) {
            free_pointers(*record_of(field), entries + at * field.size);
        }
    }
}

// What the fields of a record point to, except the next node of a list.
void free_pointers(const Record &record, char *at)
{
    for (const Field &field : record.fields) {
        char *place = at + field.offset;
        if (field.is_reserved || field.pointer == Pointer::kNext) {
            continue;
        }
        if (field.pointer == Pointer::kNone) {
            free_entries(field, place, field.length);
            continue;
        }
        const size_t pointers = field.pointer == Pointer::kOne ? field.length : 1;
        for (size_t number = 0; number < pointers; ++number) {
            char *memory = value_at<char *>(place + number * sizeof memory);
            if (memory != nullptr) {
                free_entries(field, memory, malloc_usable_size(memory) / field.size);
                free(memory);
            }
        }
    }
}

// The arguments of a call, as the plug-in would pass them: zeroed, and no larger than they have to
// be.
class Arguments {
  public:
    explicit Arguments(const device_layout::Function &function) : function_(function)
    {
        constexpr intptr_t kWidth = 16; // of texts whose width is an argument
        words_.resize(function.arguments.size());
        for (size_t at = 0; at < words_.size(); ++at) {
            words_[at] = kWidth;
        }
        for (size_t at = 0; at < words_.size(); ++at) {
            const Argument &argument = function.arguments[at];
            if (argument.way != Way::kValue) {
                size_t size = device_text::size_of(argument, words_.data());
                if (size == 0) { // a list, or a text that is only read
                    size = argument.is_chain ? record_of(argument)->size : 1;
                }
                words_[at] = reinterpret_cast<intptr_t>(calloc(1, size));
            }
        }
    }

    ~Arguments()
    {
        for (size_t at = 0; at < words_.size(); ++at) {
            const Argument &argument = function_.arguments[at];
            char *memory = agent::address_of(words_[at]);
            if (argument.way == Way::kValue || (function_.frees && argument.is_chain)) {
                continue;
            }
            if (argument.is_handed_over) {
                free(value_at<char *>(memory));
            } else if (argument.kind == Kind::kRecord) {
                free_records(argument, memory);
            }
            free(memory);
        }
    }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    std::span<intptr_t> words() { return words_; }

  private:
    static void free_records(const Argument &argument, char *first)
    {
        const Record &record = *record_of(argument);
        free_pointers(record, first);
        if (!argument.is_chain) {
            return;
        }
        const size_t next =
            std::ranges::find(record.fields, Pointer::kNext, &Field::pointer)->offset;
        char *node = value_at<char *>(first + next);
        while (node != nullptr) {
            char *following = value_at<char *>(node + next);
            free_pointers(record, node);
            free(node);
            node = following;
        }
    }

    const device_layout::Function &function_;
    std::vector<intptr_t> words_;
};

void make_call(const Event &event)
{
    const device_layout::Function *function = device_layout::find(event.name);
    if (function == nullptr) {
        give_up("no such function", event.name);
    }
    Arguments arguments(*function);
    agent::DeviceCall call{*function, arguments.words(), -1, false, nullptr};
    answer_call(call, event.line.get());
}

// ---- Recordings ---------------------------------------------------------------------------------

// Result: whether all of it can be read.
bool read_all(const std::string &file)
{
    try {
        RecordingReader recording(file);
        for (const LineStart &start : recording.sessions()) {
            recording.go_to(start);
            recording.head();
            while (const std::optional<Event> event = recording.next()) {
                if (event->kind == EventKind::kCall) {
                    make_call(*event);
                }
            }
        }
        return true;
    } catch (const BadRecording &problem) {
        if (!std::string_view(problem.what()).starts_with(file)) {
            give_up("a reason without the file", problem.what());
        }
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    keep_error_output();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    input().put(text_of(data, size));
    output().put("");
    dup2(output().descriptor(), STDOUT_FILENO);
    const bool is_readable = read_all(input().path());
    if ((run_diff(input().path(), input().path()) == agent::kSuccess) != is_readable) {
        give_up("a recording differs from itself, or only one of two readings succeeds",
                output().content());
    }
    output().put("");
    if (run_make_test({input().path(), 0}) == agent::kSuccess && !read_all(output().path())) {
        give_up("a test case that cannot be read", output().content());
    }
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    std::vector<std::string> lines = lines_of(text_of(data, size));
    if (lines.empty() || mutator.one_in(3)) {
        return LLVMFuzzerMutate(data, size, room);
    }
    if (mutator.one_in(6)) {
        change_order(lines, mutator);
    } else {
        std::string &line = lines[mutator.below(lines.size())];
        Request request;
        request.object.reset(cJSON_Parse(line.c_str()));
        if (request.object == nullptr) {
            line = mutator.changed_bytes(line, line.size() + 64);
        } else {
            mutator.change(request);
            line = print(request.object.get());
        }
    }
    return write_out(fuzz::text_of(lines), data, size, room);
}
