// SPDX-License-Identifier: MIT
#include "shell/shell_secrets.h"

#include "protocol/json_text.h"
#include "protocol/requests.h"
#include "protocol/secrets.h"

#include <algorithm>
#include <new>
#include <optional>

namespace agent {

namespace {

constexpr std::string_view kNameLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";

bool is_address(std::string_view text)
{
    return text.find("://") != std::string_view::npos;
}

// The name at the beginning of the text.
std::string_view name_in(std::string_view text)
{
    return text.substr(0, text.find_first_not_of(kNameLetters));
}

bool is_json(const ShellWord &word)
{
    return word.text.find_first_of("{[\"") == 0;
}

// Whether any word in the text is the name of a secret.
bool names_a_secret(std::string_view text)
{
    while (!text.empty()) {
        const std::string_view name = name_in(text);
        if (is_secret_name(name)) {
            return true;
        }
        text.remove_prefix(std::max<size_t>(name.size(), 1));
    }
    return false;
}

struct Found {
    bool secrets = false;
    bool masks = false;
};

std::string text_of_item(const cJSON *item)
{
    const char *text = cJSON_GetStringValue(item);
    return text != nullptr ? text : "";
}

// Masks the secrets in the members, or elements, of the item.
void mask_members(cJSON *item, Found &found)
{
    cJSON *member = item->child;
    while (member != nullptr) {
        cJSON *next = member->next;
        const std::string text = text_of_item(member);
        const bool is_secret = member->string != nullptr && is_secret_name(member->string);
        if (is_secret || is_address(text)) {
            found.secrets = true;
            found.masks = found.masks || text.find(kMask) != std::string::npos;
            const std::string masked = is_secret ? kMask : mask_address(text);
            Json shown(cJSON_CreateString(masked.c_str()));
            if (shown == nullptr) {
                throw std::bad_alloc();
            }
            // The new item needs the name: replacing by pointer does not copy the old item's name.
            if (member->string != nullptr) {
                Json named = new_object();
                cJSON_AddItemToObject(named.get(), member->string, shown.release());
                shown.reset(cJSON_DetachItemViaPointer(named.get(), named->child));
            }
            cJSON_ReplaceItemViaPointer(item, member, shown.release());
        } else {
            mask_members(member, found);
        }
        member = next;
    }
}

// The JSON without its secrets; nothing when it is invalid and may contain secrets.
std::optional<std::string> masked_json(const std::string &text, Found &found)
{
    try {
        const Json object = parse_object(text);
        mask_members(object.get(), found);
        return found.secrets ? print(object.get()) : text;
    } catch (const BadRequest &) {
        return names_a_secret(text) || is_address(text) ? std::nullopt : std::optional(text);
    }
}

} // namespace

std::string without_secrets(std::string_view line)
{
    std::string kept;
    size_t copied = 0; // bytes of the line
    bool in_secret = false;
    for (const ShellWord &word : words_of(line)) {
        const std::string_view name = name_in(word.text);
        const bool is_secret = is_secret_name(name);
        const bool has_key = !name.empty() && word.text.substr(name.size()).starts_with('=');
        std::optional<std::string> shown;
        if (is_json(word)) {
            Found found;
            shown = masked_json(word.text, found);
            if (!shown) {
                return "";
            }
            const bool is_raw = line[word.begin] == '{';
            *shown = !found.secrets ? std::string(line.substr(word.begin, word.end - word.begin))
                     : is_raw       ? *shown
                                    : as_word(*shown);
        } else if (is_secret && name.size() < word.text.size()) {
            shown = std::string(name) + "=" + kMask;
        } else if (in_secret && !has_key && !is_secret) {
            shown = ""; // the rest of an unquoted value with spaces
        } else if (is_address(word.text)) {
            shown = as_word(mask_address(word.text));
        }
        in_secret = is_secret || (in_secret && !has_key);
        if (shown) {
            kept += line.substr(copied, word.begin - copied);
            kept += *shown;
            copied = word.end;
        }
    }
    kept += line.substr(copied);
    return kept;
}

bool holds_mask(std::span<const ShellWord> words)
{
    return std::any_of(words.begin(), words.end(), [](const ShellWord &word) {
        if (is_json(word)) {
            Found found;
            masked_json(word.text, found);
            return found.masks;
        }
        return (is_secret_name(name_in(word.text)) || is_address(word.text)) &&
               word.text.find(kMask) != std::string::npos;
    });
}

} // namespace agent
