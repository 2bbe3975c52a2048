// Lines to a descriptor that somebody reads, slowly or not at all: writing never waits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace line_output {

// A descriptor of the caller's own for what the given one writes to. Where that is a pipe or a
// terminal, a write to it does not wait; that cannot be had by a flag of the given one, which other
// processes share. -1 on failure.
int own_descriptor(int descriptor);

// What there is no room for is kept, 1 MiB at most; what comes beyond that is dropped, and counted
// by a line in its place. A file takes everything. Nothing is allocated and nothing is thrown. One
// thread at a time.
class LineOutput {
  public:
    // The name is what the line about dropped ones begins with.
    LineOutput(std::string_view name, int descriptor) : name_(name), descriptor_(descriptor) {}
    LineOutput(const LineOutput &) = delete;
    LineOutput &operator=(const LineOutput &) = delete;

    void use(int descriptor); // which stays the caller's
    int descriptor() const { return descriptor_; }

    // Writes the pieces as one text, which is one line with its end, or some.
    void write(std::initializer_list<std::string_view> pieces);
    // Writes as much of what is kept as there is room for.
    void flush();
    bool has_backlog() const { return begin_ < end_; }
    // Writes what is kept, as long as the reader takes some of it every second.
    void finish();

  private:
    void write_kept();
    void report_lost();
    void append(std::string_view piece);

    std::string_view name_;
    int descriptor_;
    bool is_socket_ = false;
    bool is_file_ = false;
    bool in_line_ = false; // the last byte that was written ends no line
    uint64_t lost_ = 0;    // texts that were dropped and not told of
    size_t begin_ = 0;     // what is kept in the buffer
    size_t end_ = 0;
    std::array<char, 1UL << 20> buffer_; // not zeroed, so that it takes no memory until it is used
};

} // namespace line_output
