// SPDX-License-Identifier: MIT
#include "pieces.h"

#include <algorithm>
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

} // namespace fuzz

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *first, size_t first_size,
                                            const uint8_t *second, size_t second_size, uint8_t *out,
                                            size_t room, unsigned seed)
{
    fuzz::Mutator mutator(seed);
    const auto parts = fuzz::spliced(fuzz::pieces_of(fuzz::text_of(first, first_size)),
                                     fuzz::pieces_of(fuzz::text_of(second, second_size)), mutator);
    return fuzz::write_out(fuzz::text_of(parts), out, 0, room);
}
