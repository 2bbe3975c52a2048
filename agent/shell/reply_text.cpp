// SPDX-License-Identifier: MIT
#include "shell/reply_text.h"

#include "io/text.h"
#include "protocol/json_text.h"

#include <cstring>

namespace agent {

namespace {

constexpr char kNoColour[] = "\x1b[0m";
constexpr char kKey[] = "\x1b[34m";
constexpr char kText[] = "\x1b[32m";
constexpr char kNumber[] = "\x1b[33m";
constexpr char kLiteral[] = "\x1b[35m";
constexpr char kFailure[] = "\x1b[1;31m";
constexpr char kEvent[] = "\x1b[1;36m";

constexpr size_t kIndent = 2;
constexpr size_t kMostText = 2UL * 1024 * 1024;

class Writer {
  public:
    explicit Writer(bool coloured) : coloured_(coloured) {}

    void value(const cJSON *item, size_t depth)
    {
        if (cJSON_IsObject(item) != 0 || cJSON_IsArray(item) != 0) {
            members(item, depth);
        } else {
            add(colour_of(item), shown(print(item)));
        }
    }

    std::string take() { return std::move(text_); }

  private:
    static std::string shown(const std::string &json) { return json_for_terminal(json); }

    static const char *colour_of(const cJSON *item)
    {
        const bool is_status = item->string != nullptr && strcmp(item->string, "Status") == 0;
        const bool is_success = cJSON_IsString(item) != 0 && strcmp(item->valuestring, "0") == 0;
        return is_status && !is_success    ? kFailure
               : cJSON_IsString(item) != 0 ? kText
               : cJSON_IsNumber(item) != 0 ? kNumber
                                           : kLiteral;
    }

    void members(const cJSON *item, size_t depth)
    {
        const bool is_object = cJSON_IsObject(item) != 0;
        text_ += is_object ? '{' : '[';
        for (const cJSON *member = item->child; member != nullptr; member = member->next) {
            line(depth + 1);
            if (text_.size() > kMostText) {
                text_ += "… [the rest is not shown]";
                break;
            }
            if (is_object) {
                add(kKey, shown(agent::quoted(member->string)));
                text_ += ": ";
            }
            value(member, depth + 1);
            text_ += member->next != nullptr ? "," : "";
        }
        if (item->child != nullptr) {
            line(depth);
        }
        text_ += is_object ? '}' : ']';
    }

    void line(size_t depth) { text_ += '\n' + std::string(depth * kIndent, ' '); }

    void add(const char *colour, const std::string &text)
    {
        text_ += coloured_ ? colour + text + kNoColour : text;
    }

    const bool coloured_;
    std::string text_;
};

} // namespace

std::string text_for_terminal(const cJSON *item, bool coloured)
{
    Writer writer(coloured);
    writer.value(item, 0);
    return writer.take();
}

std::string event_for_terminal(const std::string &name, const cJSON *data, bool coloured)
{
    const std::string shown = "* " + one_line(name);
    return (coloured ? kEvent + shown + kNoColour : shown) +
           (data != nullptr ? " " + one_line(json_for_terminal(print(data))) : "");
}

} // namespace agent
