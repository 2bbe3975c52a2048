// SPDX-License-Identifier: MIT
#include "service/common/toml_file.h"

#include "io/text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace agent::service {

namespace {

constexpr size_t kMaxBytes = 256UL * 1024;
// Each dot of a key nests a table, and tables are freed recursively.
constexpr auto kMaxDots = 200;

[[noreturn]] void fail(const std::string &file, size_t line, std::string text)
{
    throw ConfigError({{file, line, "", std::move(text)}});
}

class File {
  public:
    explicit File(const std::string &path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {
    }
    ~File() { close(descriptor_); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    int descriptor() const { return descriptor_; }

  private:
    const int descriptor_;
};

std::string too_long()
{
    return "the file is longer than " + std::to_string(kMaxBytes) + " bytes";
}

void check_lines(std::string_view text, const std::string &file)
{
    size_t number = 0;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        ++number;
        if (!is_valid_utf8(line)) {
            fail(file, number, "the line is not UTF-8");
        }
        if (std::ranges::count(line, '.') > kMaxDots) {
            fail(file, number, "the line has more than " + std::to_string(kMaxDots) + " dots");
        }
    }
}

const char *type_name(const toml::node &node)
{
    switch (node.type()) {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "a list";
    case toml::node_type::string:
        return "a text";
    case toml::node_type::integer:
    case toml::node_type::floating_point:
        return "a number";
    case toml::node_type::boolean:
        return "true or false";
    default:
        return "a date or a time";
    }
}

std::string wrong_type(const char *expected, const toml::node &node)
{
    return std::string("has to be ") + expected + ", and is " + type_name(node);
}

} // namespace

std::string read_toml_file(const std::string &path)
{
    const File file(path);
    if (file.descriptor() < 0) {
        fail(path, 0, std::string("cannot be opened: ") + std::generic_category().message(errno));
    }
    struct stat info = {};
    if (fstat(file.descriptor(), &info) != 0 || !S_ISREG(info.st_mode)) {
        fail(path, 0, "is not a regular file");
    }
    std::string text(kMaxBytes + 1, '\0');
    size_t size = 0;
    while (size < text.size()) {
        const ssize_t count = read(file.descriptor(), text.data() + size, text.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(path, 0, std::string("cannot be read: ") + std::generic_category().message(errno));
        }
        if (count == 0) {
            break;
        }
        size += static_cast<size_t>(count);
    }
    text.resize(size);
    return text;
}

toml::table parse_toml(std::string_view text, const std::string &file)
{
    if (text.size() > kMaxBytes) {
        fail(file, 0, too_long());
    }
    check_lines(text, file);
    try {
        return toml::parse(text);
    } catch (const toml::parse_error &problem) {
        fail(file, problem.source().begin.line, std::string(problem.description()));
    }
}

std::string TomlReader::full_key(std::string_view key) const
{
    return prefix_ + (prefix_.empty() ? "" : ".") + std::string(key);
}

size_t TomlReader::line_of(std::string_view key) const
{
    const auto found = table_.find(key);
    return found != table_.end() ? found->first.source().begin.line : 0;
}

void TomlReader::add_problem(size_t line, std::string_view key, std::string text)
{
    problems_.push_back({file_, line, full_key(key), std::move(text)});
}

const toml::node *TomlReader::find(std::string_view key)
{
    asked_.emplace_back(key);
    return table_.get(key);
}

template <typename Value>
const toml::value<Value> *TomlReader::value(std::string_view key, const char *expected)
{
    const toml::node *node = find(key);
    const toml::value<Value> *value = node != nullptr ? node->as<Value>() : nullptr;
    if (node != nullptr && value == nullptr) {
        add_problem(line_of(key), key, wrong_type(expected, *node));
    }
    return value;
}

const toml::table *TomlReader::table(std::string_view key)
{
    const toml::node *node = find(key);
    if (node != nullptr && !node->is_table()) {
        add_problem(line_of(key), key, wrong_type("a table", *node));
    }
    return node != nullptr ? node->as_table() : nullptr;
}

const toml::array *TomlReader::list(std::string_view key)
{
    const toml::node *node = find(key);
    if (node != nullptr && !node->is_array()) {
        add_problem(line_of(key), key, wrong_type("a list", *node));
    }
    return node != nullptr ? node->as_array() : nullptr;
}

const std::string *TomlReader::text(std::string_view key)
{
    const auto *found = value<std::string>(key, "a text");
    return found != nullptr ? &found->get() : nullptr;
}

std::optional<int64_t> TomlReader::whole_number(std::string_view key)
{
    const auto *found = value<int64_t>(key, "a whole number");
    return found != nullptr ? std::optional(found->get()) : std::nullopt;
}

std::optional<double> TomlReader::number(std::string_view key)
{
    const toml::node *node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const std::optional<double> found = node->is_number() ? node->value<double>() : std::nullopt;
    if (!found || !std::isfinite(*found)) {
        add_problem(line_of(key), key,
                    found ? "has to be a finite number" : wrong_type("a number", *node));
        return std::nullopt;
    }
    return found;
}

std::optional<bool> TomlReader::flag(std::string_view key)
{
    const auto *found = value<bool>(key, "true or false");
    return found != nullptr ? std::optional(found->get()) : std::nullopt;
}

std::vector<std::pair<std::string, size_t>> TomlReader::texts(std::string_view key)
{
    std::vector<std::pair<std::string, size_t>> found;
    const toml::node *node = find(key);
    if (node == nullptr) {
        return found;
    }
    const toml::array *list = node->as_array();
    if (list == nullptr) {
        add_problem(line_of(key), key, wrong_type("a list of texts", *node));
        return found;
    }
    for (const toml::node &element : *list) {
        const size_t line = element.source().begin.line;
        if (const auto *text = element.as_string()) {
            found.emplace_back(text->get(), line);
        } else {
            add_problem(line, key,
                        std::string("has to be a list of texts, and has ") + type_name(element));
        }
    }
    return found;
}

void TomlReader::refuse_other_keys()
{
    for (const auto &[key, node] : table_) {
        if (std::ranges::find(asked_, key.str()) == asked_.end()) {
            add_problem(key.source().begin.line, key.str(), "there is no such key");
        }
    }
}

} // namespace agent::service
