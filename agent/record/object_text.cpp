// SPDX-License-Identifier: MIT
#include "record/object_text.h"

#include <string>

namespace agent::record {

namespace {

class ObjectText {
  public:
    ObjectText(LineText &line, const Pseudonyms *pseudonyms) : line_(line), pseudonyms_(pseudonyms)
    {
    }

    void add(const cJSON *item, bool is_secret) const
    {
        switch (item->type & 0xff) {
        case cJSON_True:
            line_.add("true");
            break;
        case cJSON_False:
            line_.add("false");
            break;
        case cJSON_Number:
            add_number(item->valuedouble, is_secret);
            break;
        case cJSON_String:
        case cJSON_Raw:
            add_string(item->valuestring != nullptr ? item->valuestring : "", is_secret);
            break;
        case cJSON_Array:
            add_members(item, '[', ']', is_secret);
            break;
        case cJSON_Object:
            add_members(item, '{', '}', is_secret);
            break;
        default:
            line_.add("null");
        }
    }

  private:
    void add_members(const cJSON *item, char begin, char end, bool is_secret) const
    {
        line_.add(begin);
        for (const cJSON *member = item->child; member != nullptr; member = member->next) {
            line_.add(member == item->child ? "" : ",");
            bool is_secret_value = is_secret;
            if (begin == '{') {
                const std::string_view name = member->string != nullptr ? member->string : "";
                line_.add_quoted(name);
                line_.add(':');
                is_secret_value = is_secret || is_secret_member(name);
            }
            add(member, is_secret_value);
        }
        line_.add(end);
    }

    void add_number(double number, bool is_secret) const
    {
        const size_t begin = line_.size();
        line_.add_number(number);
        if (is_secret && pseudonyms_ != nullptr) {
            const std::string masked = pseudonyms_->number(line_.text().substr(begin));
            line_.cut(begin);
            line_.add(masked);
        }
    }

    void add_string(std::string_view text, bool is_secret) const
    {
        if (pseudonyms_ == nullptr || (!is_secret && !may_contain_secrets(text))) {
            line_.add_quoted(text);
        } else {
            line_.add_quoted(is_secret ? pseudonyms_->text(text)
                                       : pseudonyms_->without_secrets(text));
        }
    }

    LineText &line_;
    const Pseudonyms *pseudonyms_;
};

} // namespace

void add_object(LineText &line, std::string_view name, const cJSON *object,
                const Pseudonyms *pseudonyms)
{
    const size_t begin = line.size();
    line.add_name(name);
    const size_t value = line.size();
    ObjectText(line, pseudonyms).add(object, false);
    const std::string_view text = line.text().substr(value);
    if (!is_utf8(text)) {
        const std::string bytes(text);
        line.cut(begin);
        line.add_name(std::string(name) + "_hex");
        line.add('"');
        line.add_hex(bytes);
        line.add('"');
    }
}

void add_shown(LineText &line, std::string_view text, const Pseudonyms *pseudonyms)
{
    line.add_text(pseudonyms != nullptr && may_contain_secrets(text)
                      ? pseudonyms->without_secrets(text)
                      : std::string(text));
}

} // namespace agent::record
