// SPDX-License-Identifier: MIT
// Changes to requests that keep them requests, which changes of random bytes would hardly do.
#pragma once

#include "request.h"

#include <random>
#include <string>
#include <vector>

// Changes the bytes without regard to their meaning. Result: the new size.
extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t room);

namespace fuzz {

class Mutator {
  public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    // 0 to count - 1.
    size_t below(size_t count) { return random_() % count; }
    bool one_in(size_t count) { return below(count) == 0; }

    // Bytes changed by the fuzzer itself.
    std::string changed_bytes(std::string_view bytes, size_t longest);

    // A few changes to the object; sometimes another command, or the command's example.
    void change(Request &request);

    Request another_request();

  private:
    std::string word(const std::string &command);
    std::string text(const std::string &command);
    std::string changed_text(const std::string &command, const std::string &old);
    std::string key(const std::string &command);
    Json value(const std::string &command);
    void change_object(const std::string &command, cJSON *object);

    std::minstd_rand random_;
};

// An item of a document, and what contains it.
struct Place {
    cJSON *parent;
    cJSON *item;
};
std::vector<Place> places_in(cJSON *document);

// Puts the item in the place of another one, under the same key.
void replace(const Place &place, cJSON *item);
// Adds the item to an object, or to an array, which needs no key.
void add(cJSON *parent, const std::string &key, cJSON *item);
std::string key_of(const cJSON *item); // empty in an array

// The last step of LLVMFuzzerCustomMutator(): replaces the data by the text and returns the new
// size. A text that is too long is not written, since a partial request is not a request.
size_t write_out(std::string_view text, uint8_t *data, size_t size, size_t room);

} // namespace fuzz
