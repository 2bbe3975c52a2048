// SPDX-License-Identifier: MIT
// Inputs that consist of pieces: each begins with a line "@WORD", and its text ends before the line
// end in front of the next one. What precedes the first such line is a piece without a word.
// Programs that link this have an LLVMFuzzerCustomCrossOver() for such inputs.
#pragma once

#include "parts.h"

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

struct Piece {
    std::string word; // the rest of its first line
    std::string text;
};

// The first 32 pieces.
std::vector<Piece> pieces_of(std::string_view input);
std::string text_of(const std::vector<Piece> &pieces);

// Changes the JSON at the end of a text. Result: whether there was any.
bool change_json(std::string &text, const std::string &command, Mutator &mutator);

} // namespace fuzz
