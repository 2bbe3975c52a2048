// SPDX-License-Identifier: MIT
// Editing a line at a terminal, with libedit.
#pragma once

#include "shell/shell_completion.h"

#include <functional>
#include <histedit.h>
#include <memory>
#include <string>
#include <string_view>

namespace agent {

class LineEditor {
  public:
    enum class Wake {
        kKey,       // standard input is readable
        kGiveUp,    // editing is cancelled
        kContinued, // the process was stopped meanwhile, or the terminal was resized
    };
    // Waits for the next key and handles other events meanwhile.
    using Wait = std::function<Wake()>;
    using Complete = std::function<Completion(std::string_view before_cursor)>;

    // Edits on standard input and output, which must be a terminal.
    LineEditor(const std::string &prompt, Wait wait, Complete complete);

    enum class Result { kLine, kEnd, kGivenUp };
    // The line is without its end.
    Result read(std::string &line);

    // Adds the line to those that the arrow keys recall.
    void remember(const std::string &line);

    // Writes the text and a line end above the line that is being edited, if there is one.
    void print_above(const std::string &text);

  private:
    struct EndEditor {
        void operator()(EditLine *editor) const { el_end(editor); }
    };
    struct EndHistory {
        void operator()(History *history) const { history_end(history); }
    };

    static int get_character(EditLine *editor, wchar_t *character);
    static unsigned char complete_line(EditLine *editor, int key);
    static char *prompt_of(EditLine *editor);
    int next_character(wchar_t *character);
    unsigned char complete_here();
    void leave_line();

    std::string prompt_;
    Wait wait_;
    Complete complete_;
    std::unique_ptr<History, EndHistory> history_;
    std::unique_ptr<EditLine, EndEditor> editor_;
    bool is_editing_ = false;
    bool has_given_up_ = false;
};

} // namespace agent
