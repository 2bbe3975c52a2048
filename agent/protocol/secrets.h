// SPDX-License-Identifier: MIT
// Which values are secret, and how a log shows a text without them.
#pragma once

#include <string>
#include <string_view>

namespace agent {

constexpr char kMask[] = "***";

// Whether a value of this name is secret: the name ends in one of a short list of words such as
// "password", or the protocol's descriptions mark it as secret. Upper or lower case is the same.
bool is_secret_name(std::string_view name);

// Whether the text names what follows it as secret: the last word in it is a secret name, with
// nothing but punctuation behind ("Account:%s|Password:", "pwd = ").
bool labels_a_secret(std::string_view text);

// Lets the kernel write no image of this process's memory, wherever core dumps go: secrets stand in
// the home, in trees of JSON, on stacks and in libraries, so there is no part to leave out.
void forbid_core_dumps();

// The text with the values of secret keys in every piece of JSON in it replaced by "***"; all else
// stays as it is. JSON that is broken or cut off is masked as well.
std::string mask_json(std::string_view text);

// An address of the web without the secrets that may stand in it: its password, the values in its
// query, and what is behind a "#". Where the password ends nobody can tell for sure: it is taken to
// be as long as it can be.
std::string mask_address(std::string_view address);

} // namespace agent
