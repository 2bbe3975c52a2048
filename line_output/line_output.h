// SPDX-License-Identifier: MIT
// Output of lines to a descriptor whose reader may be slow or not read at all: writing never
// blocks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace line_output {

// A new descriptor, owned by the caller, for the file of the given one. If that is a pipe or a
// terminal, writing to the new one does not block. Setting a flag of the given one instead would
// affect other processes that share it. Result: -1 on failure.
int own_descriptor(int descriptor);

// Text that cannot be written yet is buffered, up to 1 MiB; beyond that, it is dropped and replaced
// by a line with the number of dropped texts. A file accepts everything. No memory is allocated, no
// exception is thrown. To be used by one thread at a time.
class LineOutput {
  public:
    // The name is the start of the line about dropped texts.
    LineOutput(std::string_view name, int descriptor) : name_(name), descriptor_(descriptor) {}
    LineOutput(const LineOutput &) = delete;
    LineOutput &operator=(const LineOutput &) = delete;

    void use(int descriptor); // still owned by the caller
    int descriptor() const { return descriptor_; }

    // Writes the pieces as one text of one or more complete lines.
    void write(std::initializer_list<std::string_view> pieces);
    // Writes as much buffered text as possible without blocking.
    void flush();
    bool has_backlog() const { return begin_ < end_; }
    // Writes the buffered text, as long as the reader accepts some of it every second.
    void finish();

  private:
    void write_kept();
    void report_lost();
    void append(std::string_view piece);

    std::string_view name_;
    int descriptor_;
    bool is_socket_ = false;
    bool is_file_ = false;
    bool in_line_ = false; // the last byte that was written did not end a line
    uint64_t lost_ = 0;    // texts that were dropped and not yet reported
    size_t begin_ = 0;     // the buffered text
    size_t end_ = 0;
    std::array<char, 1UL << 20> buffer_; // not zeroed, so that it needs no memory until it is used
};

} // namespace line_output
