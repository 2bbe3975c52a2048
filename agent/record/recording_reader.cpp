// SPDX-License-Identifier: MIT
#include "record/recording_reader.h"

#include "record/json_members.h"
#include "record/line_text.h"
#include "smart_router_service/device_access.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace agent::record {

namespace {

using device_layout::Way;

constexpr int kVersion = 1;
constexpr std::string_view kHeadBegin = R"({"recording":)";

void add_copy(cJSON *object, const char *name, const cJSON *value)
{
    if (value != nullptr) {
        add_member(object, name, Json(cJSON_Duplicate(value, 1)));
    }
}

// The object of a request or a reply: itself, or as bytes of its text.
Json object_in(const cJSON *line, const char *key)
{
    const cJSON *object = member(line, key);
    if (object != nullptr) {
        Json copy(cJSON_Duplicate(object, 1));
        return copy != nullptr ? std::move(copy) : throw std::bad_alloc();
    }
    const cJSON *hex = member(line, (std::string(key) + "_hex").c_str());
    const std::optional<std::string> text =
        cJSON_IsString(hex) != 0 ? bytes_of_hex(hex->valuestring) : std::nullopt;
    return Json(text ? cJSON_ParseWithLength(text->data(), text->size()) : nullptr);
}

std::string session_in(const cJSON *head)
{
    return decoded_text(member(head, "session")).value_or("");
}

bool is_written(const device_layout::Function &function, const device_layout::Argument &argument)
{
    return (argument.way == Way::kOut || argument.way == Way::kInOut) && !function.frees;
}

// What a call of a host service passes.
Json given_to_service(const cJSON *arguments)
{
    Json given = new_object();
    const cJSON *argument = cJSON_IsObject(arguments) != 0 ? arguments->child : nullptr;
    for (; argument != nullptr; argument = argument->next) {
        const bool is_written = cJSON_IsObject(argument) != 0 && member(argument, "hex") == nullptr;
        add_copy(given.get(), argument->string, is_written ? member(argument, "before") : argument);
    }
    return given;
}

Json given_in_reply(const cJSON *line)
{
    Json given = new_object();
    add_copy(given.get(), "result", member(line, "result"));
    if (Json reply = object_in(line, "reply")) {
        add_member(given.get(), "reply", std::move(reply));
    }
    return given;
}

} // namespace

Json given_to_call(const device_layout::Function &function, const cJSON *arguments)
{
    Json given = new_object();
    for (const device_layout::Argument &argument : function.arguments) {
        const cJSON *value = member(arguments, argument.name);
        add_copy(given.get(), argument.name,
                 is_written(function, argument) ? member(value, "before") : value);
    }
    return given;
}

void hide_remains(cJSON *value)
{
    cJSON *hex = cJSON_GetObjectItemCaseSensitive(value, "hex");
    if (cJSON_IsString(hex) != 0 && value->child == hex && hex->next == nullptr) {
        char *digits = hex->valuestring;
        bool is_behind = false;
        for (; digits[0] != '\0' && digits[1] != '\0'; digits += 2) {
            const bool is_nul = digits[0] == '0' && digits[1] == '0';
            if (is_behind && !is_nul) {
                digits[0] = digits[1] = 'f';
            }
            is_behind = is_behind || is_nul;
        }
        return;
    }
    cJSON *part = nullptr;
    cJSON_ArrayForEach(part, value)
    {
        hide_remains(part);
    }
}

RecordingReader::RecordingReader(const std::string &file)
{
    files_.push_back(open_file(file));
    if (!read_line() || !is_head()) {
        throw BadRecording(file + " is not a recording");
    }
    const Json head(cJSON_ParseWithLength(line_.data(), line_.size()));
    session_ = session_in(head.get());
    if (number_in(head.get(), "seq") > 0) {
        add_earlier_file(file + ".1");
    }
    go_to({});
}

RecordingReader::File RecordingReader::open_file(const std::string &name)
{
    // Without O_NONBLOCK, opening a pipe would block until it has a writer.
    const int opened = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    File file{name, std::unique_ptr<FILE, CloseFile>(opened < 0 ? nullptr : fdopen(opened, "r"))};
    if (file.stream == nullptr) {
        throw BadRecording(name + ": " + std::generic_category().message(errno));
    }
    if (fseek(file.stream.get(), 0, SEEK_SET) != 0) { // a pipe
        throw BadRecording(name + ": not a regular file");
    }
    return file;
}

// The name may be that of an older recording, or of something else: then it is left out.
void RecordingReader::add_earlier_file(const std::string &name)
{
    struct stat status = {};
    if (stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return;
    }
    try {
        RecordingReader earlier(name);
        earlier.sessions();
        if (!session_.empty() && earlier.session_ == session_) {
            files_.insert(files_.begin(), std::move(earlier.files_.back()));
        }
    } catch (const BadRecording &) {
        return;
    }
}

void RecordingReader::refuse(const std::string &reason) const
{
    throw BadRecording(file().name + ":" + std::to_string(number_) + ": " + reason);
}

// A line without its end; false at the end of the last file.
bool RecordingReader::read_line()
{
    while (!read_line_of_file()) {
        if (at_ + 1 == files_.size()) {
            return false;
        }
        go_to({.file = at_ + 1});
    }
    return true;
}

// False at the end of the file, and for a line that was cut.
bool RecordingReader::read_line_of_file()
{
    line_.clear();
    std::array<char, 65536> piece = {};
    while (fgets(piece.data(), piece.size(), file().stream.get()) != nullptr) {
        const size_t size = strlen(piece.data());
        line_.append(piece.data(), size);
        if (line_.size() > kMostLineBytes + 1) {
            ++number_;
            refuse("longer than a line of a recording may be, " + std::to_string(kMostLineBytes) +
                   " bytes");
        }
        if (size > 0 && line_.back() == '\n') {
            line_.pop_back();
            ++number_;
            return true;
        }
        if (size + 1 < piece.size()) { // it contains a NUL, or is the last one
            break;
        }
    }
    if (ferror(file().stream.get()) != 0) {
        throw BadRecording(file().name + ": " + std::generic_category().message(errno));
    }
    return false;
}

bool RecordingReader::is_head() const
{
    return line_.starts_with(kHeadBegin);
}

std::vector<LineStart> RecordingReader::sessions()
{
    std::vector<LineStart> starts;
    session_.clear();
    go_to({});
    for (LineStart here; read_line(); here = next_place()) {
        if (!is_head()) {
            continue;
        }
        const Json head(cJSON_ParseWithLength(line_.data(), line_.size()));
        if (!continues(head.get())) {
            starts.push_back(here);
        }
        session_ = session_in(head.get());
    }
    return starts;
}

// Whether it is the head of a file that was begun within the session.
bool RecordingReader::continues(const cJSON *head) const
{
    return !session_.empty() && session_in(head) == session_ && number_in(head, "seq") > 0;
}

LineStart RecordingReader::next_place() const
{
    return {at_, ftell(file().stream.get()), number_ + 1};
}

void RecordingReader::go_to(const LineStart &start)
{
    if (start.file >= files_.size()) { // one has been renamed meanwhile
        throw BadRecording(file().name + ": changed while it was read");
    }
    at_ = start.file;
    number_ = start.line - 1;
    if (fseek(file().stream.get(), start.offset, SEEK_SET) != 0) {
        refuse(std::generic_category().message(errno));
    }
}

Event RecordingReader::head()
{
    std::optional<Event> head = read_event();
    if (!head || head->kind != EventKind::kHead) {
        refuse("a session begins with a head");
    }
    const cJSON *secrets = member(head->line.get(), "secrets");
    has_pseudonyms_ = cJSON_IsString(secrets) == 0 || strcmp(secrets->valuestring, "shown") != 0;
    session_ = session_in(head->line.get());
    next_seq_ = number_in(head->line.get(), "seq").value_or(0) + 1;
    lacks_begin_ = next_seq_ > 1;
    first_request_ = 0;
    is_earlier_.clear();
    has_ended_ = false;
    is_cut_ = true;
    return std::move(*head);
}

std::optional<Event> RecordingReader::next()
{
    for (;;) {
        std::optional<Event> event = has_ended_ ? std::nullopt : next_line();
        has_ended_ = !event.has_value();
        if (!event || !lacks_begin_ || !belongs_to_earlier_file(*event)) {
            return event;
        }
    }
}

bool RecordingReader::belongs_to_earlier_file(const Event &event)
{
    const int64_t seq = number_in(event.line.get(), "seq").value_or(0);
    if (event.kind == EventKind::kRequest) {
        first_request_ = first_request_ == 0 ? seq : first_request_;
        is_earlier_[event.thread] = false;
    }
    const int64_t begin = number_in(event.line.get(), "began").value_or(seq - 1);
    const bool is_earlier = first_request_ == 0 || begin < first_request_;
    return is_earlier_.try_emplace(event.thread, is_earlier).first->second;
}

std::optional<Event> RecordingReader::next_line()
{
    LineStart before = next_place();
    std::optional<Event> event = read_event();
    while (event && event->kind == EventKind::kHead && continues(event->line.get())) {
        check_number(*event, next_seq_ - 1);
        before = next_place();
        event = read_event();
    }
    if (!event) {
        return std::nullopt;
    }
    if (event->kind == EventKind::kHead) { // of the next session
        go_to(before);
        return std::nullopt;
    }
    check_number(*event, next_seq_);
    ++next_seq_;
    if (event->kind == EventKind::kEnd) {
        is_cut_ = false;
        return std::nullopt;
    }
    return event;
}

void RecordingReader::check_number(const Event &event, int64_t expected) const
{
    if (number_in(event.line.get(), "seq") != expected) {
        refuse("line " + std::to_string(next_seq_) + " of the session is missing");
    }
}

std::optional<Event> RecordingReader::read_event()
{
    while (read_line()) {
        Json line(cJSON_ParseWithLength(line_.data(), line_.size()));
        if (cJSON_IsObject(line.get()) == 0) {
            refuse("not a line of a recording");
        }
        if (line->child != nullptr) {
            return event_of(std::move(line));
        }
    }
    return std::nullopt;
}

const char *RecordingReader::text_in(const cJSON *line, const char *key) const
{
    const cJSON *text = member(line, key);
    if (cJSON_IsString(text) == 0) {
        refuse(std::string("\"") + key + "\" is not a text");
    }
    return text->valuestring;
}

Event RecordingReader::event_of(Json line) const
{
    Event event;
    event.place = file().name + ":" + std::to_string(number_);
    event.size = line_.size();
    const cJSON *object = line.get();
    if (member(object, "recording") != nullptr) {
        const std::optional<int64_t> version = number_in(object, "recording");
        if (version != kVersion) {
            refuse("the recording has version " + (version ? std::to_string(*version) : "unknown") +
                   " of the format, and this program reads version " + std::to_string(kVersion));
        }
        const char *interface = text_in(object, "interface");
        if (strtol(interface, nullptr, 10) != DEVICE_ACCESS_VERSION_MAJOR) {
            refuse(std::string("recorded with version ") + interface +
                   " of device_access.h, and this program has version " +
                   std::to_string(DEVICE_ACCESS_VERSION_MAJOR) + "." +
                   std::to_string(DEVICE_ACCESS_VERSION_MINOR));
        }
        event.line = std::move(line);
        return event;
    }
    const int64_t thread = number_in(object, "thread").value_or(0);
    event.thread = std::in_range<int>(thread) ? static_cast<int>(thread) : 0;
    if (member(object, "end") != nullptr) {
        event.kind = EventKind::kEnd;
    } else if (member(object, "command") != nullptr || member(object, "function") != nullptr) {
        event.kind = EventKind::kRequest;
        const char *key = member(object, "command") != nullptr ? "command" : "function";
        const std::optional<std::string> name = decoded_text(member(object, key));
        if (!name) {
            refuse(std::string("\"") + key + "\" is not a text");
        }
        event.name = *name;
        event.given = object_in(object, "request");
    } else if (member(object, "call") != nullptr) {
        event.kind = EventKind::kCall;
        event.name = text_in(object, "call");
        const device_layout::Function *function = device_layout::find(event.name);
        if (function == nullptr) {
            refuse("there is no device function " + event.name);
        }
        event.given = given_to_call(*function, member(object, "arguments"));
        if (has_pseudonyms_) {
            hide_remains(event.given.get());
        }
    } else if (member(object, "service") != nullptr) {
        event.kind = EventKind::kService;
        event.name = text_in(object, "service");
        event.given = given_to_service(member(object, "arguments"));
    } else if (member(object, "result") != nullptr) {
        event.kind = EventKind::kReply;
        event.given = given_in_reply(object);
    } else {
        refuse("not a line of a recording");
    }
    if (event.kind != EventKind::kEnd && event.thread < 1) {
        refuse("\"thread\" is not a number from 1");
    }
    event.line = std::move(line);
    return event;
}

} // namespace agent::record
