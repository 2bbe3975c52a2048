// SPDX-License-Identifier: MIT
// Reads recordings: protocol/recording.schema.json describes their lines.
#pragma once

#include "protocol/device_layout.h"
#include "protocol/json.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace agent::record {

// The file is not a recording that this program can read; what() says why.
class BadRecording : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

enum class EventKind { kHead, kRequest, kReply, kCall, kService, kEnd };

// One line of a recording.
struct Event {
    EventKind kind = EventKind::kHead;
    std::string name; // of the command or function; empty for a reply
    int thread = 0;
    std::string place; // "FILE:LINE"
    Json line;
    Json given;      // what the plug-in passes, or replies; what it gets is only in the line
    size_t size = 0; // bytes of the line
};

// What a call passes, of its arguments in a recording: the values that it only reads, and those
// that it may write to as they were before it.
Json given_to_call(const device_layout::Function &function, const cJSON *arguments);

// Makes what is behind the NUL of each text in the value the same, except its length. A recording
// with pseudonyms does not have what was there: it may be the rest of a secret.
void hide_remains(cJSON *value);

// Where a line begins.
struct LineStart {
    size_t file = 0; // of those that the recording consists of
    long offset = 0;
    size_t line = 1;
};

// Reads a recording line by line. All functions throw BadRecording.
class RecordingReader {
  public:
    // A file that continues a session is read behind FILE.1, if that has the session's lines before
    // it.
    explicit RecordingReader(const std::string &file);

    // The beginning of each session. A session that continues in another file counts once if that
    // file follows directly.
    std::vector<LineStart> sessions();
    void go_to(const LineStart &start);

    // The head of the session at this place.
    Event head();
    // The session's next line that is not padding; nothing from its end on. A last line of the file
    // without a line end is skipped, and so is what belongs to requests in an earlier file.
    std::optional<Event> next();

    // Whether the session has pseudonyms for secrets.
    bool has_pseudonyms() const { return has_pseudonyms_; }
    // Whether the session is known to have ended as its last line says.
    bool is_cut() const { return is_cut_; }

  private:
    struct CloseFile {
        void operator()(FILE *file) const { fclose(file); }
    };
    struct File {
        std::string name;
        std::unique_ptr<FILE, CloseFile> stream;
    };
    static File open_file(const std::string &name);
    void add_earlier_file(const std::string &name);
    LineStart next_place() const;
    bool read_line();
    bool read_line_of_file();
    bool is_head() const;
    bool continues(const cJSON *head) const;
    std::optional<Event> read_event();
    std::optional<Event> next_line();
    void check_number(const Event &event, int64_t expected) const;
    bool belongs_to_earlier_file(const Event &event);
    Event event_of(Json line) const;
    const char *text_in(const cJSON *line, const char *key) const;
    [[noreturn]] void refuse(const std::string &reason) const;

    const File &file() const { return files_[at_]; }

    std::vector<File> files_;
    size_t at_ = 0; // the file that is being read
    std::string line_;
    size_t number_ = 0; // in this file
    std::string session_;
    int64_t next_seq_ = 0;
    bool lacks_begin_ = false;       // the session began in an earlier file
    int64_t first_request_ = 0;      // the number of its line, in this file
    std::map<int, bool> is_earlier_; // whether a thread continues what is in an earlier file
    bool has_ended_ = false;         // what follows in the file is not part of the session
    bool has_pseudonyms_ = false;
    bool is_cut_ = true;
};

} // namespace agent::record
