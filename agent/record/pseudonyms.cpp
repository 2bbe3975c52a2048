// SPDX-License-Identifier: MIT
#include "record/pseudonyms.h"

#include "io/text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sodium/crypto_shorthash_siphash24.h>
#include <stdexcept>
#include <sys/random.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utf8.h>

namespace agent::record {

namespace {

using Digest = std::array<unsigned char, crypto_shorthash_siphashx24_BYTES>;
static_assert(crypto_shorthash_siphashx24_KEYBYTES == std::tuple_size_v<MaskKey>);

constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr size_t kMostKnown = 1024;
constexpr size_t kLongestKnown = 256;

// The digest of a text, one character after the other.
class RunningDigest {
  public:
    explicit RunningDigest(const MaskKey &key) : key_(key) {}

    uint32_t add(char letter)
    {
        std::array<unsigned char, sizeof(Digest) + 1> input = {};
        std::copy(digest_.begin(), digest_.end(), input.begin());
        input.back() = static_cast<unsigned char>(letter);
        crypto_shorthash_siphashx24(digest_.data(), input.data(), input.size(), key_.data());
        uint32_t number = 0;
        memcpy(&number, digest_.data(), sizeof number);
        return number;
    }
    const Digest &digest() const { return digest_; }

  private:
    const MaskKey &key_;
    Digest digest_ = {};
};

[[noreturn]] void fail(const std::string &file)
{
    throw std::system_error(errno, std::generic_category(), file);
}

bool is_digit(char letter)
{
    return letter >= '0' && letter <= '9';
}

unsigned hex_value(std::string_view digits)
{
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return error == std::errc() && end == digits.data() + digits.size() ? value : 0;
}

std::string hex_of(const unsigned char *bytes, size_t size)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (size_t at = 0; at < size; ++at) {
        hex += digits[bytes[at] / 16];
        hex += digits[bytes[at] % 16];
    }
    return hex;
}

// The character after a backslash, without it. Takes it from the text.
void unescape(std::string_view &rest, std::string &decoded)
{
    constexpr std::string_view names = "bfnrt";
    constexpr std::string_view meanings = "\b\f\n\r\t";
    const char letter = rest.front();
    rest.remove_prefix(1);
    if (letter != 'u') {
        const size_t at = names.find(letter);
        decoded += at == std::string_view::npos ? letter : meanings[at];
        return;
    }
    unsigned point = hex_value(rest.substr(0, 4));
    rest.remove_prefix(std::min<size_t>(rest.size(), 4));
    if (point >= 0xd800 && point < 0xdc00 && rest.starts_with("\\u")) {
        const unsigned low = hex_value(rest.substr(2, 4));
        point = 0x10000 + ((point - 0xd800) << 10) + ((low - 0xdc00) & 0x3ff);
        rest.remove_prefix(std::min<size_t>(rest.size(), 6));
    }
    if (utf8::internal::is_code_point_valid(point)) {
        utf8::unchecked::append(point, std::back_inserter(decoded));
    }
}

// The text of a JSON string without its quotes.
std::string decoded(std::string_view rest)
{
    std::string text;
    while (!rest.empty()) {
        const char letter = rest.front();
        rest.remove_prefix(1);
        if (letter == '\\' && !rest.empty()) {
            unescape(rest, text);
        } else if (letter != '\\') {
            text += letter;
        }
    }
    return text;
}

} // namespace

MaskKey random_key()
{
    MaskKey key = {};
    if (getrandom(key.data(), key.size(), 0) != static_cast<ssize_t>(key.size())) {
        throw std::system_error(errno, std::generic_category(), "cannot make a key");
    }
    return key;
}

MaskKey key_of_file(const std::string &file)
{
    MaskKey key = random_key();
    constexpr int kNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    int opened = open(file.c_str(), kNew, S_IRUSR | S_IWUSR);
    if (opened >= 0) {
        const std::string line = hex_of(key.data(), key.size()) + "\n";
        const ssize_t written = write(opened, line.data(), line.size());
        if (close(opened) != 0 || written != static_cast<ssize_t>(line.size())) {
            fail(file);
        }
        return key;
    }
    opened = errno == EEXIST ? open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
    if (opened < 0) {
        fail(file);
    }
    char line[2 * sizeof key + 2] = "";
    const ssize_t length = read(opened, line, sizeof line);
    close(opened);
    std::string_view text(line, static_cast<size_t>(std::max<ssize_t>(length, 0)));
    text = text.substr(0, text.find('\n'));
    if (text.size() != 2 * key.size() ||
        !std::all_of(text.begin(), text.end(),
                     [](unsigned char digit) { return isxdigit(digit) != 0; })) {
        throw std::runtime_error(file + ": not the key of a recording");
    }
    for (size_t at = 0; at < key.size(); ++at) {
        key[at] = static_cast<unsigned char>(hex_value(text.substr(2 * at, 2)));
    }
    return key;
}

std::string Pseudonyms::text(std::string_view secret) const
{
    if (secret.empty() || secret == "NULL" || secret == "-1" || secret == "(null)") {
        return std::string(secret);
    }
    if (secret.size() > kLongestKnown) {
        return made(secret);
    }
    const std::lock_guard lock(mutex_);
    std::string key(secret);
    const auto found = known_.find(key);
    if (found != known_.end()) {
        return found->second;
    }
    if (known_.size() >= kMostKnown) {
        known_.clear();
    }
    return known_.emplace(std::move(key), made(secret)).first->second;
}

std::string Pseudonyms::made(std::string_view secret) const
{
    RunningDigest digest(key_);
    std::string pseudonym;
    for (const char letter : secret) {
        pseudonym += kLetters[digest.add(letter) % kLetters.size()];
    }
    return pseudonym;
}

std::string Pseudonyms::number(std::string_view number) const
{
    RunningDigest digest(key_);
    std::string pseudonym;
    for (const char letter : number) {
        const uint32_t value = digest.add(letter);
        const bool may_be_zero = letter == '0';
        pseudonym += !is_digit(letter) || may_be_zero ? letter : static_cast<char>('1' + value % 9);
    }
    return number == "-1" ? "-1" : pseudonym;
}

std::string Pseudonyms::json(std::string_view value) const
{
    std::string masked;
    while (!value.empty()) {
        size_t end = 1;
        if (value.front() == '"') {
            end = end_of_string(value, 0);
            const bool is_whole = end > 1 && value[end - 1] == '"';
            const std::string text = decoded(value.substr(1, end - (is_whole ? 2 : 1)));
            masked += '"' + this->text(text) + '"';
        } else if (value.front() == '-' || is_digit(value.front())) {
            end = std::min(value.find_first_not_of("+-.eE0123456789"), value.size());
            masked += number(value.substr(0, end));
        } else {
            masked += value.front();
        }
        value.remove_prefix(end);
    }
    return masked;
}

std::string Pseudonyms::without_secrets(std::string_view text) const
{
    std::string masked(text);
    if (text.find('"') != std::string_view::npos) {
        masked = mask_json(masked, *this);
    }
    if (text.find("://") != std::string_view::npos) {
        masked = mask_address(masked, *this);
    }
    return masked;
}

std::string Pseudonyms::key_digest() const
{
    constexpr std::string_view name = "recording";
    RunningDigest digest(key_);
    for (const char letter : name) {
        digest.add(letter);
    }
    return hex_of(digest.digest().data(), digest.digest().size() / 2);
}

bool may_contain_secrets(std::string_view text)
{
    return memchr(text.data(), '"', text.size()) != nullptr ||
           text.find("://") != std::string_view::npos;
}

bool is_secret_member(std::string_view name)
{
    // The last characters of all secret names.
    return !name.empty() && strchr("deksDEKS", name.back()) != nullptr && is_secret_name(name);
}

} // namespace agent::record
