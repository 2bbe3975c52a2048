// SPDX-License-Identifier: MIT
// SHA-256 of data that arrives in pieces.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace simulated_gateway {

class Sha256 {
  public:
    static constexpr size_t kSize = 32;

    // All throw an Error if memory is exhausted.
    Sha256();
    void add(std::string_view bytes);
    // The digest, kSize bytes; nothing may be added afterwards.
    std::string finish();

  private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st *)> context_;
};

// Bytes as lower-case hexadecimal digits.
std::string hexadecimal(std::string_view bytes);

} // namespace simulated_gateway
