// SPDX-License-Identifier: MIT
#include "shell/line_editor.h"

#include "io/text.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <langinfo.h>
#include <new>
#include <sys/ioctl.h>
#include <unistd.h>

namespace agent {

namespace {

constexpr int kHistorySize = 1000;
constexpr size_t kGap = 2;
constexpr size_t kMostShown = 200; // candidates
constexpr char kEraseBelow[] = "\r\x1b[J";

size_t terminal_width()
{
    constexpr size_t kUsual = 80;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

// Arranges the words in as many columns as fit.
std::string in_columns(const std::vector<std::string> &words)
{
    size_t widest = 0;
    for (const std::string &word : words) {
        widest = std::max(widest, columns_of(word));
    }
    const size_t in_a_row = std::max<size_t>(terminal_width() / (widest + kGap), 1);
    const size_t count = std::min(words.size(), kMostShown);
    std::string text;
    for (size_t at = 0; at < count; ++at) {
        const bool ends_row = (at + 1) % in_a_row == 0 || at + 1 == count;
        text += words[at];
        text += ends_row ? "\n" : std::string(widest - columns_of(words[at]) + kGap, ' ');
    }
    if (count < words.size()) {
        text += "and " + std::to_string(words.size() - count) + " more\n";
    }
    return text;
}

void write_out(const std::string &text)
{
    fwrite(text.data(), 1, text.size(), stdout);
    fflush(stdout);
}

LineEditor &owner_of(EditLine *editor)
{
    void *owner = nullptr;
    el_get(editor, EL_CLIENTDATA, &owner);
    return *static_cast<LineEditor *>(owner);
}

} // namespace

LineEditor::LineEditor(const std::string &prompt, Wait wait, Complete complete)
    : prompt_(prompt), wait_(std::move(wait)), complete_(std::move(complete)),
      history_(history_init())
{
    // Lines are UTF-8, regardless of the locale's encoding.
    // NOLINTBEGIN(concurrency-mt-unsafe): the shell has one thread
    setlocale(LC_CTYPE, "");
    if (strcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        setlocale(LC_CTYPE, "C.UTF-8");
    }
    // NOLINTEND(concurrency-mt-unsafe)
    editor_.reset(el_init("hgagent", stdin, stdout, stderr));
    if (history_ == nullptr || editor_ == nullptr) {
        throw std::bad_alloc();
    }
    HistEvent event = {};
    history(history_.get(), &event, H_SETSIZE, kHistorySize);
    history(history_.get(), &event, H_SETUNIQUE, 1);
    EditLine *editor = editor_.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_PROMPT, prompt_of);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, history_.get());
    el_set(editor, EL_GETCFN, get_character);
    // el_set() would copy narrow strings here and never free them.
    el_wset(editor, EL_ADDFN, L"complete", L"Complete the word", complete_line);
    el_set(editor, EL_BIND, "^I", "complete", nullptr);
    el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
}

char *LineEditor::prompt_of(EditLine *editor)
{
    return owner_of(editor).prompt_.data();
}

int LineEditor::get_character(EditLine *editor, wchar_t *character)
{
    return owner_of(editor).next_character(character);
}

// Result, as libedit requires: 1 for a character, 0 at the end of input, -1 with errno.
int LineEditor::next_character(wchar_t *character)
{
    mbstate_t state = {};
    for (;;) {
        const Wake wake = wait_();
        if (wake == Wake::kGiveUp) {
            has_given_up_ = true;
            errno = EINTR;
            return -1;
        }
        if (wake == Wake::kContinued) {
            el_set(editor_.get(), EL_PREP_TERM, 1);
            el_resize(editor_.get());
            el_set(editor_.get(), EL_REFRESH);
            continue;
        }
        char byte = '\0';
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (count <= 0) { // a lost terminal is an end of input as well
            return 0;
        }
        // NOLINTNEXTLINE(concurrency-mt-unsafe): with a state of its own it is safe
        const size_t used = mbrtowc(character, &byte, 1, &state);
        if (used == static_cast<size_t>(-1)) {
            state = {};
        } else if (used != static_cast<size_t>(-2)) {
            return 1;
        }
    }
}

LineEditor::Result LineEditor::read(std::string &line)
{
    has_given_up_ = false;
    is_editing_ = true;
    // el_gets() prints the prompt first: a Ctrl-D that answers it would be lost to the change of
    // modes.
    el_set(editor_.get(), EL_PREP_TERM, 1);
    int count = 0;
    const char *text = el_gets(editor_.get(), &count);
    is_editing_ = false;
    if (text == nullptr || count <= 0) {
        write_out("\n");
        return has_given_up_ ? Result::kGivenUp : Result::kEnd;
    }
    line.assign(text, strcspn(text, "\r\n"));
    return Result::kLine;
}

void LineEditor::remember(const std::string &line)
{
    HistEvent event = {};
    history(history_.get(), &event, H_ENTER, line.c_str());
}

// Moves the cursor to the start of the line and clears the screen from there.
void LineEditor::leave_line()
{
    const LineInfo *line = el_line(editor_.get());
    const std::string_view before(line->buffer, static_cast<size_t>(line->cursor - line->buffer));
    const size_t rows = (columns_of(prompt_) + columns_of(before)) / terminal_width();
    const std::string up = rows > 0 ? "\x1b[" + std::to_string(rows) + "A" : "";
    write_out(up + kEraseBelow);
}

void LineEditor::print_above(const std::string &text)
{
    if (is_editing_) {
        leave_line();
    }
    write_out(text + "\n");
    if (is_editing_) {
        el_set(editor_.get(), EL_REFRESH);
    }
}

unsigned char LineEditor::complete_line(EditLine *editor, int)
{
    return owner_of(editor).complete_here();
}

unsigned char LineEditor::complete_here()
{
    const LineInfo *line = el_line(editor_.get());
    const std::string before(line->buffer, static_cast<size_t>(line->cursor - line->buffer));
    const Completion completion = complete_(before);
    if (completion.candidates.empty()) {
        return CC_REFRESH_BEEP;
    }
    const std::string begun = before.substr(completion.begin);
    if (!completion.text.empty() && completion.text != begun) {
        // libedit counts characters here, not bytes.
        const size_t characters = static_cast<size_t>(std::count_if(
            begun.begin(), begun.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
        el_deletestr(editor_.get(), static_cast<int>(characters));
        el_insertstr(editor_.get(), completion.text.c_str());
        return CC_REFRESH;
    }
    write_out("\n" + in_columns(completion.candidates));
    return CC_REDISPLAY;
}

} // namespace agent
