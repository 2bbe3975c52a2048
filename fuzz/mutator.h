// Changes to requests that keep them requests: what bytes alone would hardly ever become.
#pragma once

#include "request.h"

#include <random>
#include <string>
#include <vector>

namespace fuzz {

class Mutator {
  public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    // 0 to count - 1.
    size_t below(size_t count) { return random_() % count; }
    bool one_in(size_t count) { return below(count) == 0; }

    // Bytes as the fuzzer itself changes them.
    std::string changed_bytes(std::string_view bytes, size_t longest);

    // A few changes to the object; now and then another command, or the example of its own.
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

// What LLVMFuzzerCustomMutator() ends with: the text in place of the data, and the new size. One
// for which there is no room leaves the data as it is: half a request is none.
size_t write_out(std::string_view text, uint8_t *data, size_t size, size_t room);

} // namespace fuzz
