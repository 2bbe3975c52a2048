// SPDX-License-Identifier: MIT
#include "pieces.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fuzz {
namespace {

constexpr size_t kMostPieces = 32;

} // namespace

std::vector<Piece> pieces_of(std::string_view input)
{
    std::vector<Piece> pieces;
    while (!input.empty() && pieces.size() < kMostPieces) {
        Piece piece;
        if (input.starts_with('@')) {
            const size_t end = std::min(input.find('\n'), input.size());
            piece.word = input.substr(1, end - 1);
            input.remove_prefix(std::min(end + 1, input.size()));
        }
        if (!input.starts_with('@')) {
            const size_t last = input.size() - (input.ends_with('\n') ? 1 : 0);
            const size_t end = std::min(input.find("\n@"), last);
            piece.text = input.substr(0, end);
            input.remove_prefix(std::min(end + 1, input.size()));
        }
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

std::string text_of(const std::vector<Piece> &pieces)
{
    std::string text;
    for (const Piece &piece : pieces) {
        text += '@' + piece.word + '\n' + piece.text + '\n';
    }
    return text;
}

void change_order(std::vector<Piece> &pieces, Mutator &mutator)
{
    const size_t at = mutator.below(pieces.size());
    const auto place = pieces.begin() + static_cast<std::ptrdiff_t>(at);
    switch (mutator.below(3)) {
    case 0:
        pieces.insert(place, Piece(pieces[mutator.below(pieces.size())]));
        break;
    case 1:
        pieces.erase(place);
        break;
    default:
        std::swap(pieces[at], pieces[mutator.below(pieces.size())]);
        break;
    }
}

bool change_json(std::string &text, const std::string &command, Mutator &mutator)
{
    const size_t begin = text.find('{');
    if (begin == std::string::npos) {
        return false;
    }
    Request request;
    request.command = command;
    request.object.reset(cJSON_ParseWithLength(text.data() + begin, text.size() - begin));
    if (request.object == nullptr) {
        return false;
    }
    mutator.change(request);
    text.replace(begin, std::string::npos, print(request.object.get()));
    return true;
}

std::vector<Piece> spliced_pieces(std::string_view first, std::string_view second, Mutator &mutator)
{
    std::vector<Piece> pieces = pieces_of(first);
    const std::vector<Piece> others = pieces_of(second);
    pieces.resize(mutator.below(pieces.size() + 1));
    const size_t from = mutator.below(others.size() + 1);
    pieces.insert(pieces.end(), others.begin() + static_cast<std::ptrdiff_t>(from), others.end());
    return pieces;
}

} // namespace fuzz
