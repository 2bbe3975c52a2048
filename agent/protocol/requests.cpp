// SPDX-License-Identifier: MIT
#include "protocol/requests.h"

#include "io/text.h"
#include "protocol/plain_json.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <nlohmann/json.hpp>
#include <utf8.h>

namespace agent {

namespace {

constexpr size_t kMaxMessage = 200;
constexpr size_t kMostControlText = 256;

// " at line 2, column 7": the place after what has been read.
std::string place(std::string_view read)
{
    const size_t line_begin = read.rfind('\n') + 1; // 0 if there is none
    return " at line " + std::to_string(std::count(read.begin(), read.end(), '\n') + 1) +
           ", column " + std::to_string(read.size() - line_begin + 1);
}

// Checks the grammar. cJSON accepts some invalid JSON (control characters in strings, numbers such
// as 01) and reports no error text; this parser does, and it needs no stack for nested values.
class SyntaxCheck : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit SyntaxCheck(std::string_view text) : text_(text) {}
    const std::string &error() const { return error_; }
    // The end of the number that is too large for the parser, if that is the only error so far and
    // the number is in the value of the object's member "id"; otherwise 0.
    size_t large_number_in_id() const { return large_number_in_id_; }
    size_t depth() const { return depth_; }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t &) override { return true; }
    bool string(string_t &text) override { return check_text(text); }
    bool binary(binary_t &) override { return true; }
    bool start_object(size_t) override { return enter(); }
    bool key(string_t &text) override
    {
        in_id_ = depth_ == 1 ? text == "id" : in_id_;
        return check_text(text);
    }
    bool end_object() override { return leave(); }
    bool start_array(size_t) override { return enter(); }
    bool end_array() override { return leave(); }

    bool parse_error(size_t position, const std::string &,
                     const nlohmann::json::exception &problem) override
    {
        constexpr int number_overflow = 406;
        if (problem.id == number_overflow && in_id_) {
            large_number_in_id_ = position;
        }
        // "[json.exception.parse_error.101] parse error at line 1, column 2: …"
        error_ = problem.what();
        error_.erase(0, error_.find("] ") + 2);
        if (!error_.starts_with("parse error")) {
            error_ += place(text_.substr(0, position));
        }
        return false;
    }

  private:
    bool enter()
    {
        ++depth_;
        return true;
    }

    bool leave()
    {
        --depth_;
        return true;
    }

    // The plug-in's strings end at their first NUL: a NUL inside would truncate the string
    // silently.
    bool check_text(const string_t &text)
    {
        if (text.find('\0') != std::string::npos) {
            error_ = "\\u0000 stands in the text " + quoted(text.c_str()) + "…";
            return false;
        }
        return true;
    }

    std::string_view text_;
    std::string error_;
    size_t depth_ = 0;
    bool in_id_ = false;
    size_t large_number_in_id_ = 0;
};

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kInNumbers = "+-.0123456789Ee";

// Consumes the next character if it is one of these.
bool take_one(std::string_view &rest, std::string_view letters)
{
    const bool found = !rest.empty() && letters.find(rest.front()) != std::string_view::npos;
    rest.remove_prefix(found ? 1 : 0);
    return found;
}

// Consumes all digits that follow.
bool take_digits(std::string_view &rest)
{
    const size_t count = std::min(rest.find_first_not_of(kDigits), rest.size());
    rest.remove_prefix(count);
    return count > 0;
}

bool is_number(std::string_view text)
{
    take_one(text, "-");
    bool right = take_one(text, "0") || take_digits(text);
    right = right && (!take_one(text, ".") || take_digits(text));
    if (right && take_one(text, "eE")) {
        take_one(text, "+-");
        right = take_digits(text);
    }
    return right && text.empty();
}

// The text with the numbers from the place to the end of the member replaced by 0, so that none is
// too large for the parser. Everything else keeps its position.
std::string without_numbers(std::string_view text, size_t place, size_t depth)
{
    std::string copy(text);
    size_t at = place;
    while (at < copy.size() && depth > 0 && !(depth == 1 && copy[at] == ',')) {
        if (copy[at] == '"') {
            at = end_of_string(copy, at);
            continue;
        }
        depth += copy[at] == '[' || copy[at] == '{' ? 1 : 0;
        depth -= copy[at] == ']' || copy[at] == '}' ? 1 : 0;
        const size_t length = std::min(copy.find_first_not_of(kInNumbers, at), copy.size()) - at;
        if (is_number(std::string_view(copy).substr(at, length))) {
            copy.replace(at, length, "0" + std::string(length - 1, ' '));
        }
        at += std::max<size_t>(length, 1);
    }
    return copy;
}

// With any_id, the value of the member "id" may hold numbers of any size.
void check_syntax(std::string_view text, bool any_id)
{
    if (is_plain_json(text)) {
        return; // at a tenth of the parser's time
    }
    // The parser takes a NUL byte for the end of the text and would ignore the rest.
    const size_t nul = text.find('\0');
    if (nul != std::string_view::npos) {
        throw BadRequest("NUL byte" + place(text.substr(0, nul)));
    }
    SyntaxCheck check(text);
    if (nlohmann::json::sax_parse(text, &check)) {
        return;
    }
    if (any_id && check.large_number_in_id() > 0) {
        const size_t end = check.large_number_in_id();
        const size_t begin = text.find_last_not_of(kInNumbers, end - 1) + 1;
        check_syntax(without_numbers(text, begin, check.depth()), false);
        return;
    }
    throw BadRequest(one_line(check.error(), kMaxMessage));
}

// A cursor over a text whose grammar has been checked.
class Cursor {
  public:
    explicit Cursor(std::string_view text) : text_(text), rest_(text) {}

    char next() const { return rest_.empty() ? '\0' : rest_.front(); }

    void skip_space()
    {
        while (next() == ' ' || next() == '\t' || next() == '\r' || next() == '\n') {
            rest_.remove_prefix(1);
        }
    }

    // Skips a separator or bracket and the space after it.
    void skip_mark()
    {
        rest_.remove_prefix(1);
        skip_space();
    }

    // Returns the text of the value that begins here, and skips the space after it.
    std::string_view value()
    {
        size_t depth = 0;
        size_t at = 0;
        do {
            const char mark = rest_[at];
            depth += mark == '[' || mark == '{' ? 1 : 0;
            depth -= mark == ']' || mark == '}' ? 1 : 0;
            if (depth > CJSON_NESTING_LIMIT) {
                refuse(rest_.data() + at);
            }
            if (mark == '"') {
                at = end_of_string(rest_, at);
            } else if (depth > 0 || mark == ']' || mark == '}') {
                ++at;
            } else { // a number or a literal
                at = std::min(rest_.find_first_of(",]} \t\r\n"), size());
            }
        } while (depth > 0);
        const std::string_view text = rest_.substr(0, at);
        rest_.remove_prefix(at);
        skip_space();
        return text;
    }

    // The same, as a tree.
    Json tree() { return tree_of(value()); }

    // The value as a string; nothing if it is not a string.
    std::optional<std::string> text_of(std::string_view value) const
    {
        const bool stands_for_itself =
            value.front() == '"' && value.find('\\') == std::string_view::npos;
        if (stands_for_itself) {
            return std::string(value.substr(1, value.size() - 2));
        }
        const Json tree = tree_of(value);
        const char *text = cJSON_GetStringValue(tree.get());
        return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
    }

    Json tree_of(std::string_view value) const
    {
        const char *end = nullptr;
        Json item(cJSON_ParseWithLengthOpts(value.data(), value.size(), &end, 0));
        if (item == nullptr) {
            const size_t length = static_cast<size_t>(end - value.data());
            if (!is_too_much(value, length)) {
                throw std::bad_alloc();
            }
            refuse(end);
        }
        return item;
    }

  private:
    size_t size() const { return rest_.size(); }

    // Values beyond the limits are rejected even where only the client would read them.
    [[noreturn]] void refuse(const char *here) const
    {
        throw BadRequest("nested too deep or too large" +
                         place(text_.substr(0, static_cast<size_t>(here - text_.data()))));
    }

    // Whether the failure is a limit of cJSON that JSON does not have: more than 1000 levels, or
    // numbers of more than 63 characters. Otherwise it ran out of memory.
    static bool is_too_much(std::string_view value, size_t stopped)
    {
        const auto in_number = [&](size_t at) {
            return at < value.size() && kInNumbers.find(value[at]) != std::string_view::npos;
        };
        size_t depth = 0;
        for (size_t at = 0; at < stopped; ++at) {
            if (value[at] == '"') {
                at = end_of_string(value, at) - 1;
            } else if (value[at] == '[' || value[at] == '{') {
                ++depth;
            } else if (value[at] == ']' || value[at] == '}') {
                --depth;
            }
        }
        return depth >= CJSON_NESTING_LIMIT ||
               (stopped > 0 && in_number(stopped - 1) && in_number(stopped));
    }

    std::string_view text_;
    std::string_view rest_;
};

// A cursor at the opening brace of the object.
Cursor object_in(std::string_view text, bool any_id = false)
{
    if (utf8::starts_with_bom(text.begin(), text.end())) {
        text.remove_prefix(sizeof(utf8::bom));
    }
    check_syntax(text, any_id);
    Cursor cursor(text);
    cursor.skip_space();
    if (cursor.next() != '{') {
        throw BadRequest("a JSON object is needed, and this is " +
                         std::string(cursor.next() == '[' ? "an array" : "a single value"));
    }
    return cursor;
}

// The string under the key; null when there is none.
const char *text_in(const Json &object, const char *key)
{
    return cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object.get(), key));
}

// Each of them fills in the request, or its error.
void read_command(std::optional<std::string> command, Call &call)
{
    if (!command) {
        call.error = "\"command\" is missing or no text";
    } else if (cJSON_IsObject(call.params.get()) == 0) {
        call.error = "\"params\" is no object";
    } else {
        call.command = *std::move(command);
    }
}

void read_report(const Json &report, Call &call)
{
    if (cJSON_IsString(report.get()) == 0) {
        call.error = "\"report\" is no text";
    } else if (cJSON_IsObject(call.params.get()) == 0) {
        call.error = "\"params\" is no object";
    } else {
        call.report = report->valuestring;
    }
}

void read_hello(const Json &hello, Call &call)
{
    call.is_hello = cJSON_IsObject(hello.get()) != 0;
    call.error = call.is_hello ? "" : "\"hello\" is no object";
}

// A text of a control: longer ones are never valid, and would fill the error message.
bool is_short_text(const cJSON *value)
{
    return cJSON_IsString(value) != 0 && std::strlen(value->valuestring) <= kMostControlText;
}

bool is_list_of_texts(const cJSON *value)
{
    const cJSON *element = nullptr;
    cJSON_ArrayForEach(element, value)
    {
        if (!is_short_text(element)) {
            return false;
        }
    }
    return cJSON_IsArray(value) != 0;
}

// What is wrong with the value of a control; empty if nothing is.
std::string control_error(const cJSON *value)
{
    const std::string_view name = value->string;
    if (name == "faults") {
        return is_list_of_texts(value) ? ""
                                       : "\"faults\" is no array of texts of at most 256 bytes";
    }
    if (name == "scenario") {
        return is_short_text(value) ? "" : "\"scenario\" is no text of at most 256 bytes";
    }
    if (name == "clock") {
        return is_short_text(value) || cJSON_IsNull(value) != 0
                   ? ""
                   : "\"clock\" is neither a text of at most 256 bytes nor null";
    }
    if (name == "trace") {
        return cJSON_IsBool(value) != 0 ? "" : "\"trace\" is neither true nor false";
    }
    return cJSON_IsObject(value) != 0 ? "" : "\"show\" is no object";
}

void read_control(Json control, Call &call)
{
    const bool is_one = cJSON_IsObject(control.get()) != 0 &&
                        cJSON_GetArraySize(control.get()) == 1 &&
                        std::ranges::find(kControls, control->child->string) != std::end(kControls);
    call.error = is_one ? control_error(control->child)
                        : "\"control\" needs one of \"faults\", \"scenario\", \"clock\", "
                          "\"trace\" and \"show\"";
    call.control = std::move(control);
}

void read_notice(const Json &notice, Call &call)
{
    const char *plugin_name = text_in(notice, "plugin_name");
    const char *text = text_in(notice, "text");
    if (plugin_name == nullptr || text == nullptr) {
        call.error = "\"notice\" needs the texts \"plugin_name\" and \"text\"";
    } else {
        call.notice = Notice{plugin_name, text};
    }
}

} // namespace

Json parse_object(std::string_view text)
{
    return object_in(text).tree();
}

Json new_object()
{
    Json object(cJSON_CreateObject());
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return object;
}

Json object_from_words(std::span<const std::string> words)
{
    Json object = new_object();
    for (const std::string &word : words) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0) {
            throw BadRequest("\"" + word + "\" has not the form KEY=VALUE");
        }
        if (!utf8::is_valid(word)) {
            throw BadRequest("\"" + word + "\" is not UTF-8");
        }
        const std::string key = word.substr(0, equals);
        if (cJSON_AddStringToObject(object.get(), key.c_str(), word.c_str() + equals + 1) ==
            nullptr) {
            throw std::bad_alloc();
        }
    }
    return object;
}

Call parse_call(std::string_view line)
{
    Cursor cursor = object_in(line, true);
    std::optional<std::string> command;
    Json notice;
    Json report;
    Json control;
    Json hello;
    Call call;
    bool has_id = false;
    bool has_command = false;
    cursor.skip_mark();
    while (cursor.next() != '}') {
        const std::string key = *cursor.text_of(cursor.value());
        cursor.skip_mark();
        const std::string_view text = cursor.value();
        if (cursor.next() == ',') {
            cursor.skip_mark();
        }
        if (key == "id" && !has_id) {
            has_id = true;
            call.id = text;
        } else if (key == "command" && !has_command) {
            has_command = true;
            command = cursor.text_of(text);
        } else if (key == "params" && call.params == nullptr) {
            call.params = cursor.tree_of(text);
            call.params_text = text;
        } else if (key == "notice" && notice == nullptr) {
            notice = cursor.tree_of(text);
        } else if (key == "report" && report == nullptr) {
            report = cursor.tree_of(text);
        } else if (key == "control" && control == nullptr) {
            control = cursor.tree_of(text);
        } else if (key == "hello" && hello == nullptr) {
            hello = cursor.tree_of(text);
        }
    }
    if (call.params == nullptr) {
        call.params = new_object();
    }

    if (!has_command && notice != nullptr) {
        read_notice(notice, call);
    } else if (!has_command && report != nullptr) {
        read_report(report, call);
    } else if (!has_command && control != nullptr) {
        read_control(std::move(control), call);
    } else if (!has_command && hello != nullptr) {
        read_hello(hello, call);
    } else {
        read_command(std::move(command), call);
    }
    return call;
}

} // namespace agent
