// SPDX-License-Identifier: MIT
// The file of a recording. Wherever the process is killed, the file ends at a line: a write is only
// interrupted at the boundary of a page, and no line of at most a page extends over one.
#pragma once

#include "record/line_text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace agent::record {

class RecordingFile {
  public:
    // Appends to the file, which is locked. Throws std::system_error, and std::runtime_error with a
    // message if it is no file or if another process records into it.
    RecordingFile(std::string path, uint64_t limit);
    ~RecordingFile();
    RecordingFile(const RecordingFile &) = delete;
    RecordingFile &operator=(const RecordingFile &) = delete;

    // The line is kept until flush(). It has no line end.
    void add(std::string_view begin, std::string_view rest = {});
    size_t pending() const { return pending_.size(); }
    // False if the file cannot be written: it ends at a line, and nothing more is written.
    bool flush();
    // The same within a signal handler.
    void flush_after_crash() const;

    // Whether the limit leaves no room for another line, or for few more ones.
    bool is_full(size_t line) const { return size() + line + 1 > limit_; }
    bool is_almost_full() const { return size() > limit_ / 8 * 7; }
    // Continues with an empty file; the former one gets the suffix .1. False as above.
    bool rotate();

    // Why it cannot be written.
    const std::string &problem() const { return problem_; }

  private:
    uint64_t size() const { return written_ + pending_.size(); }
    void open_file();
    void close_file();
    bool is_recording() const;
    void cut_incomplete_line();
    // Fills the page so that no line begins in the rest of it.
    void fill_page(size_t gap);
    bool fail(const std::string &problem);

    const std::string path_;
    const uint64_t limit_;
    int file_ = -1;
    uint64_t written_ = 0;
    LineText pending_;
    std::string problem_;
};

} // namespace agent::record
