// SPDX-License-Identifier: MIT
#include "core/trace.h"

#include "io/text.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace simulated_gateway {
namespace {

FileDescriptor open_trace(const std::string &file)
{
    if (file == "-") {
        return FileDescriptor(line_output::own_descriptor(STDERR_FILENO));
    }
    // Without O_NONBLOCK opening a named pipe would block until it has a reader.
    return FileDescriptor(::open(
        file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR));
}

} // namespace

void Trace::open(const std::string &file, bool show_secrets)
{
    show_secrets_ = show_secrets;
    file_ = open_trace(file);
    if (!file_.is_open()) {
        refuse_file(file);
    }
    output_.use(file_.get());
}

Trace::~Trace()
{
    const WithoutWriteSignals without_signals;
    output_.finish();
}

void Trace::call(int64_t uptime, const Call &call) noexcept
try {
    const Entry entry = {uptime, call.function, call.result, call.duration, call.note};
    remember(entry);
    if (is_on()) {
        write(line_of(entry, arguments_of(call, show_secrets_)));
    }
} catch (const std::exception &) {
}

std::string Trace::masked_line(int64_t uptime, const Call &call)
{
    const Entry entry = {uptime, call.function, call.result, call.duration, call.note};
    return printable(line_of(entry, arguments_of(call, false)));
}

void Trace::event(int64_t uptime, const char *text, const char *note) noexcept
try {
    const Entry entry = {
        uptime, nullptr, 0, {}, text + std::string(*note != '\0' ? ", " : "") + note};
    remember(entry);
    if (is_on()) {
        write(line_of(entry));
    }
} catch (const std::exception &) {
}

std::string Trace::line_of(const Entry &entry, const std::string &arguments)
{
    const std::string time = "[" + std::to_string(entry.uptime) + "] ";
    if (entry.function == nullptr) {
        return time + entry.note;
    }
    return time + entry.function + arguments + " = " + std::to_string(entry.result) + " in " +
           std::to_string(entry.duration.count()) + " us" + (entry.note.empty() ? "" : ", ") +
           entry.note;
}

static size_t digits_of(int64_t number)
{
    size_t digits = number < 0 ? 2 : 1;
    while ((number /= 10) != 0) {
        ++digits;
    }
    return digits;
}

// The length of its line, without formatting it: this is called for every device call.
size_t Trace::length_of(const Entry &entry)
{
    const size_t length = std::strlen("[] ") + digits_of(entry.uptime) + entry.note.size();
    if (entry.function == nullptr) {
        return length;
    }
    return length + std::strlen(entry.function) + std::strlen(" =  in  us") +
           digits_of(entry.result) + digits_of(entry.duration.count()) +
           (entry.note.empty() ? 0 : std::strlen(", "));
}

std::string Trace::recent()
{
    const std::lock_guard lock(mutex_);
    std::string lines;
    for (const Entry &entry : recent_) {
        lines += printable(line_of(entry)) + "\n";
    }
    return lines;
}

std::string Trace::arguments_of(const Call &call, bool show_secrets)
{
    std::string text = "(";
    const char *separator = "";
    for (const Argument &argument : call.arguments) {
        text += separator;
        text += argument.name;
        text += '=';
        separator = ", ";
        if (argument.value == nullptr) {
            text += "null";
        } else if (argument.is_reply && !call.filled) {
            text += "unset";
        } else {
            text += argument.shown(argument.value, show_secrets);
        }
    }
    return text + ")";
}

void Trace::write(const std::string &text)
{
    const std::string line = printable(text) + "\n";
    const std::lock_guard lock(mutex_);
    const WithoutWriteSignals without_signals;
    output_.write({line});
}

void Trace::remember(const Entry &entry)
{
    constexpr size_t most_bytes = 64U << 10;
    const std::lock_guard lock(mutex_);
    recent_.push_back(entry);
    recent_size_ += length_of(entry);
    while (recent_size_ > most_bytes) {
        recent_size_ -= length_of(recent_.front());
        recent_.pop_front();
    }
}

} // namespace simulated_gateway
