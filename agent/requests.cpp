#include "requests.h"

#include "text.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <nlohmann/json.hpp>
#include <utf8.h>

namespace agent {

namespace {

constexpr size_t kMaxMessage = 200;

// " at line 2, column 7": behind what has been read.
std::string place(std::string_view read)
{
    const size_t line_begin = read.rfind('\n') + 1; // 0 where there is none
    return " at line " + std::to_string(std::count(read.begin(), read.end(), '\n') + 1) +
           ", column " + std::to_string(read.size() - line_begin + 1);
}

// Checks the grammar. cJSON would let pass what is no JSON (control characters in texts, numbers
// such as 01) and could not say what is wrong; this parser can, and it needs no stack for depth.
class SyntaxCheck : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit SyntaxCheck(std::string_view text) : text_(text) {}
    const std::string &error() const { return error_; }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t &) override { return true; }
    bool string(string_t &text) override { return check_text(text); }
    bool binary(binary_t &) override { return true; }
    bool start_object(size_t) override { return true; }
    bool key(string_t &text) override { return check_text(text); }
    bool end_object() override { return true; }
    bool start_array(size_t) override { return true; }
    bool end_array() override { return true; }

    bool parse_error(size_t position, const std::string &,
                     const nlohmann::json::exception &problem) override
    {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: …"
        error_ = problem.what();
        error_.erase(0, error_.find("] ") + 2);
        if (!error_.starts_with("parse error")) {
            error_ += place(text_.substr(0, position));
        }
        return false;
    }

  private:
    // The plug-in's texts end at their first NUL: one inside would cut the text unnoticed.
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
};

void check_syntax(std::string_view text)
{
    // The parser takes a NUL byte for the end of the text and would not see what follows.
    const size_t nul = text.find('\0');
    if (nul != std::string_view::npos) {
        throw BadRequest("NUL byte" + place(text.substr(0, nul)));
    }
    SyntaxCheck check(text);
    if (!nlohmann::json::sax_parse(text, &check)) {
        throw BadRequest(one_line(check.error(), kMaxMessage));
    }
}

// Walks over a text whose grammar has been checked.
class Cursor {
  public:
    explicit Cursor(std::string_view text) : text_(text), rest_(text) {}

    char next() const { return rest_.empty() ? '\0' : rest_.front(); }

    void skip_space() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kSpace), size())); }

    // Past one of the characters that stand between values, and the space behind it.
    void skip_mark()
    {
        rest_.remove_prefix(1);
        skip_space();
    }

    // The value that begins here; text becomes its text.
    Json value(std::string_view *text = nullptr)
    {
        const char *end = nullptr;
        Json item(cJSON_ParseWithLengthOpts(rest_.data(), size(), &end, 0));
        if (item == nullptr) {
            // What JSON allows and cJSON does not: more than 1000 levels.
            throw BadRequest("nested too deep or too large" +
                             place(text_.substr(0, static_cast<size_t>(end - text_.data()))));
        }
        const size_t length = static_cast<size_t>(end - rest_.data());
        if (text != nullptr) {
            *text = rest_.substr(0, length);
        }
        rest_.remove_prefix(length);
        skip_space();
        return item;
    }

  private:
    size_t size() const { return rest_.size(); }

    std::string_view text_;
    std::string_view rest_;
};

// A cursor at the brace that opens the object.
Cursor object_in(std::string_view text)
{
    if (utf8::starts_with_bom(text.begin(), text.end())) {
        text.remove_prefix(sizeof(utf8::bom));
    }
    check_syntax(text);
    Cursor cursor(text);
    cursor.skip_space();
    if (cursor.next() != '{') {
        throw BadRequest("a JSON object is needed, and this is " +
                         std::string(cursor.next() == '[' ? "an array" : "a single value"));
    }
    return cursor;
}

// The text behind the key; null when there is none.
const char *text_in(const Json &object, const char *key)
{
    return cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object.get(), key));
}

// Both fill in what is asked for, or what is wrong with it.
void read_command(const Json &command, Json params, Call &call)
{
    call.params = params != nullptr ? std::move(params) : Json(cJSON_CreateObject());
    if (cJSON_IsString(command.get()) == 0) {
        call.error = "\"command\" is missing or no text";
    } else if (cJSON_IsObject(call.params.get()) == 0) {
        call.error = "\"params\" is no object";
    } else {
        call.command = command->valuestring;
    }
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
    return object_in(text).value();
}

Json object_from_words(std::span<const std::string> words)
{
    Json object(cJSON_CreateObject());
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
    Cursor cursor = object_in(line);
    Json id;
    Json command;
    Json params;
    Json notice;
    Call call;
    cursor.skip_mark();
    while (cursor.next() != '}') {
        const Json key = cursor.value();
        cursor.skip_mark();
        std::string_view text;
        Json value = cursor.value(&text);
        if (cursor.next() == ',') {
            cursor.skip_mark();
        }
        const std::string_view name = key->valuestring;
        if (name == "id" && id == nullptr) {
            id = std::move(value);
            call.id = text;
        } else if (name == "command" && command == nullptr) {
            command = std::move(value);
        } else if (name == "params" && params == nullptr) {
            params = std::move(value);
        } else if (name == "notice" && notice == nullptr) {
            notice = std::move(value);
        }
    }

    if (command == nullptr && notice != nullptr) {
        read_notice(notice, call);
    } else {
        read_command(command, std::move(params), call);
    }
    return call;
}

} // namespace agent
