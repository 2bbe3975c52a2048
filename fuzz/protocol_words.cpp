// SPDX-License-Identifier: MIT
#include "protocol_words.h"

#include "embedded/protocol_commands.h"
#include "request.h"

#include <algorithm>
#include <cstring>

namespace fuzz {
namespace {

std::string text_of(const cJSON *object, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object, key));
    return text != nullptr ? text : "";
}

// The keys in a description, including those of elements.
void add_keys(const cJSON *rows, std::vector<std::string> &keys)
{
    const cJSON *row;
    cJSON_ArrayForEach(row, rows)
    {
        keys.push_back(text_of(row, "key"));
        add_keys(cJSON_GetObjectItemCaseSensitive(row, "items"), keys);
    }
}

// The texts in objects, but not their keys.
void add_texts(const cJSON *item, std::vector<std::string> &texts)
{
    if (cJSON_IsString(item)) {
        texts.emplace_back(cJSON_GetStringValue(item));
    }
    const cJSON *child;
    cJSON_ArrayForEach(child, item)
    {
        add_texts(child, texts);
    }
}

// The constant texts in the description of a reply.
void add_fixed_texts(const cJSON *item, std::vector<std::string> &texts)
{
    const cJSON *child;
    cJSON_ArrayForEach(child, item)
    {
        if (child->string != nullptr &&
            (strcmp(child->string, "text") == 0 || strcmp(child->string, "one_of") == 0)) {
            add_texts(child, texts);
        }
        add_fixed_texts(child, texts);
    }
}

void make_unique(std::vector<std::string> &words)
{
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
}

CommandWords words_of(std::string_view description)
{
    const Json json(cJSON_ParseWithLength(description.data(), description.size()));
    const cJSON *example = cJSON_GetObjectItemCaseSensitive(json.get(), "example");
    CommandWords words;
    words.name = text_of(json.get(), "command");
    words.request = print(cJSON_GetObjectItemCaseSensitive(example, "request"));
    words.reply = print(cJSON_GetObjectItemCaseSensitive(example, "reply"));
    add_keys(cJSON_GetObjectItemCaseSensitive(json.get(), "request"), words.keys);
    add_texts(example, words.texts);
    add_fixed_texts(cJSON_GetObjectItemCaseSensitive(json.get(), "replies"), words.texts);
    make_unique(words.keys);
    make_unique(words.texts);
    return words;
}

std::vector<CommandWords> read_all()
{
    std::vector<CommandWords> all;
    for (const embedded::Text &file : embedded::protocol_commands()) {
        all.push_back(words_of(file.text));
    }
    std::sort(all.begin(), all.end(), [](const CommandWords &one, const CommandWords &other) {
        return one.name < other.name;
    });
    return all;
}

} // namespace

const std::vector<CommandWords> &commands()
{
    static const std::vector<CommandWords> &all = *new std::vector<CommandWords>(read_all());
    return all;
}

const CommandWords *find_command(std::string_view name)
{
    const auto at = std::lower_bound(
        commands().begin(), commands().end(), name,
        [](const CommandWords &words, std::string_view wanted) { return words.name < wanted; });
    return at != commands().end() && at->name == name ? &*at : nullptr;
}

} // namespace fuzz
