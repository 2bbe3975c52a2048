// SPDX-License-Identifier: MIT
// Inputs that consist of pieces: each begins with a line "@WORD", and its text ends before the line
// end in front of the next one. What precedes the first such line is a piece without a word.
#pragma once

#include "mutator.h"

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

// Repeats a piece, removes one, or swaps two. There has to be at least one.
void change_order(std::vector<Piece> &pieces, Mutator &mutator);

// Changes the JSON at the end of a text. Result: whether there was any.
bool change_json(std::string &text, const std::string &command, Mutator &mutator);

// The start of one input and the end of another.
std::vector<Piece> spliced_pieces(std::string_view first, std::string_view second,
                                  Mutator &mutator);

} // namespace fuzz
