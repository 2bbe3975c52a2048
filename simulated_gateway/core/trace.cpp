#include "core/trace.h"

#include "io/text.h"

#include <charconv>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

void append_number(std::string &line, int64_t number)
{
    char digits[24];
    line.append(digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr);
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

// Opens a line.
static void append_time(std::string &line, int64_t uptime)
{
    line += '[';
    append_number(line, uptime);
    line += "] ";
}

static void append_outcome(std::string &line, const Trace::Call &call)
{
    line += " = ";
    append_number(line, call.result);
    line += " in ";
    append_number(line, call.duration.count());
    line += " us";
    if (!call.note.empty()) {
        line += ", " + call.note;
    }
}

void Trace::call(int64_t uptime, const Call &call) noexcept
try {
    constexpr size_t usual_size = 63;
    std::string line;
    line.reserve(usual_size);
    append_time(line, uptime);
    line += call.function;
    append_outcome(line, call);
    remember(std::move(line));
    if (is_on()) {
        std::string whole;
        append_time(whole, uptime);
        whole += call.function;
        append_arguments(whole, call);
        append_outcome(whole, call);
        write(whole);
    }
} catch (const std::exception &) {
}

void Trace::event(int64_t uptime, const char *text, const char *note) noexcept
try {
    std::string line;
    append_time(line, uptime);
    line += text;
    if (*note != '\0') {
        line += std::string(", ") + note;
    }
    remember(line);
    if (is_on()) {
        write(line);
    }
} catch (const std::exception &) {
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

void Trace::append_arguments(std::string &text, const Call &call) const
{
    text += '(';
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
    text += ')';
}

void Trace::write(const std::string &text)
{
    const std::string line = printable(text) + "\n";
    const std::lock_guard lock(mutex_);
    const WithoutWriteSignals without_signals;
    output_.write({line});
}

void Trace::remember(std::string line)
{
    constexpr size_t most_bytes = 64U << 10;
    const std::lock_guard lock(mutex_);
    recent_size_ += line.size();
    recent_.push_back(std::move(line));
    while (recent_size_ > most_bytes) {
        recent_size_ -= recent_.front().size();
        recent_.pop_front();
    }
}

} // namespace simulated_gateway
