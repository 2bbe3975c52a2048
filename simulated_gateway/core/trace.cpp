#include "core/trace.h"

#include "io/text.h"

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
    // Without O_NONBLOCK a pipe in the file's place would make us wait for its reader.
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
    const std::string outcome = outcome_of(call);
    remember(uptime, call.function + outcome);
    if (is_on()) {
        write(uptime, call.function + arguments_of(call) + outcome);
    }
} catch (const std::exception &) {
}

void Trace::event(int64_t uptime, const char *text, const char *note) noexcept
try {
    const std::string whole = text + std::string(*note != '\0' ? ", " : "") + note;
    remember(uptime, whole);
    if (is_on()) {
        write(uptime, whole);
    }
} catch (const std::exception &) {
}

static std::string line_of(int64_t uptime, const std::string &text)
{
    return "[" + std::to_string(uptime) + "] " + text;
}

std::string Trace::recent()
{
    const std::lock_guard lock(mutex_);
    std::string lines;
    for (const std::string &line : recent_) {
        lines += printable(line) + "\n";
    }
    return lines;
}

std::string Trace::arguments_of(const Call &call) const
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
            text += argument.shown(argument.value, show_secrets_);
        }
    }
    return text + ")";
}

std::string Trace::outcome_of(const Call &call)
{
    const std::string text = " = " + std::to_string(call.result) + " in " +
                             std::to_string(call.duration.count()) + " us";
    return call.note.empty() ? text : text + ", " + call.note;
}

void Trace::write(int64_t uptime, const std::string &text)
{
    const std::string line = printable(line_of(uptime, text)) + "\n";
    const std::lock_guard lock(mutex_);
    const WithoutWriteSignals without_signals;
    output_.write({line});
}

void Trace::remember(int64_t uptime, const std::string &text)
{
    constexpr size_t most_bytes = 64U << 10;
    std::string line = line_of(uptime, text);
    const std::lock_guard lock(mutex_);
    recent_size_ += line.size();
    recent_.push_back(std::move(line));
    while (recent_size_ > most_bytes) {
        recent_size_ -= recent_.front().size();
        recent_.pop_front();
    }
}

} // namespace simulated_gateway
