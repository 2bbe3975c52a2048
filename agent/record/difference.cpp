// SPDX-License-Identifier: MIT
#include "record/difference.h"

#include "io/pages.h"
#include "io/text.h"
#include "protocol/json_text.h"

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <unistd.h>

namespace agent::record {

namespace {

constexpr char kPlain[] = "\x1b[0m";
constexpr char kBold[] = "\x1b[1m";
constexpr char kExpected[] = "\x1b[32m";
constexpr char kFound[] = "\x1b[31m";

constexpr size_t kMaxShown = 2000;

std::string text_of(const cJSON *item)
{
    return item != nullptr ? print(item, {.raw_bytes = true}) : "";
}

// The member with this key that follows as many others of the same key.
const cJSON *member_like(const cJSON *object, const cJSON *member, const cJSON *first)
{
    size_t before = 0;
    for (const cJSON *other = first; other != member; other = other->next) {
        before += strcmp(other->string, member->string) == 0 ? 1 : 0;
    }
    for (const cJSON *other = object->child; other != nullptr; other = other->next) {
        if (strcmp(other->string, member->string) == 0 && before-- == 0) {
            return other;
        }
    }
    return nullptr;
}

// Whether the values are the same in the same order.
bool are_same(const cJSON *left, const cJSON *right)
{
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    const bool is_object = cJSON_IsObject(left) != 0 && cJSON_IsObject(right) != 0;
    if (cJSON_IsNumber(left) != 0 && cJSON_IsNumber(right) != 0) { // which may be infinite
        return left->valuedouble == right->valuedouble;
    }
    if (!is_object && (cJSON_IsArray(left) == 0 || cJSON_IsArray(right) == 0)) {
        return cJSON_Compare(left, right, 1) != 0;
    }
    const cJSON *other = right->child;
    for (const cJSON *item = left->child; item != nullptr; item = item->next, other = other->next) {
        if (other == nullptr || (is_object && strcmp(item->string, other->string) != 0) ||
            !are_same(item, other)) {
            return false;
        }
    }
    return other == nullptr;
}

class Comparison {
  public:
    std::vector<FieldDifference> differences;

    void values(const std::string &path, const cJSON *expected, const cJSON *found)
    {
        if (are_same(expected, found)) {
            return;
        }
        if (cJSON_IsObject(expected) != 0 && cJSON_IsObject(found) != 0) {
            objects(path, expected, found);
        } else if (cJSON_IsArray(expected) != 0 && cJSON_IsArray(found) != 0) {
            arrays(path, expected, found);
        } else {
            differences.push_back({path, text_of(expected), text_of(found)});
        }
    }

  private:
    void objects(const std::string &path, const cJSON *expected, const cJSON *found)
    {
        const std::string prefix = path.empty() ? "" : path + ".";
        const size_t before = differences.size();
        for (const cJSON *member = expected->child; member != nullptr; member = member->next) {
            values(prefix + member->string, member, member_like(found, member, expected->child));
        }
        for (const cJSON *member = found->child; member != nullptr; member = member->next) {
            if (member_like(expected, member, found->child) == nullptr) {
                differences.push_back({prefix + member->string, "", text_of(member)});
            }
        }
        if (differences.size() == before) { // only the order differs
            differences.push_back({path, text_of(expected), text_of(found)});
        }
    }

    void arrays(const std::string &path, const cJSON *expected, const cJSON *found)
    {
        const cJSON *left = expected->child;
        const cJSON *right = found->child;
        for (size_t at = 0; left != nullptr || right != nullptr; ++at) {
            values(path + "[" + std::to_string(at) + "]", left, right);
            left = left != nullptr ? left->next : nullptr;
            right = right != nullptr ? right->next : nullptr;
        }
    }
};

std::string shown(const std::string &json)
{
    return json.empty() ? "nothing" : one_line(json_for_terminal(json), kMaxShown);
}

} // namespace

std::vector<FieldDifference> differences_of(const cJSON *expected, const cJSON *found)
{
    Comparison comparison;
    comparison.values("", expected, found);
    return std::move(comparison.differences);
}

void DifferenceReport::add(const Place &place, const FieldDifference &difference)
{
    if (++count_ == 1 || style_.shows_all) {
        show((count_ == 1 ? "" : "\n") + text(place, difference));
    }
}

std::string DifferenceReport::text(const Place &place, const FieldDifference &difference) const
{
    const auto coloured = [this](const char *colour, const std::string &text) {
        return style_.in_colour ? colour + text + kPlain : text;
    };
    const std::string command = place.command == 0 ? "before the first command"
                                                   : "command " + std::to_string(place.command) +
                                                         ", " + one_line(place.name);
    std::ostringstream page;
    page << coloured(kBold, "difference in " + command) << " (" << place.line << ")\n";
    Table table;
    if (!place.request.empty()) {
        table.row({"request", shown(place.request)});
    }
    if (!place.thread.empty()) {
        table.row({"thread", place.thread});
    }
    table.row({"call", one_line(place.call)});
    if (!difference.field.empty()) {
        table.row({"field", one_line(difference.field)});
    }
    table.row({style_.expected, coloured(kExpected, shown(difference.expected))});
    table.row({style_.found, coloured(kFound, shown(difference.found))});
    table.print(page, "  ");
    return page.str();
}

std::string count_of(size_t count, const std::string &what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

bool is_in_colour()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    const char *no_colour = getenv("NO_COLOR");
    return (no_colour == nullptr || no_colour[0] == '\0') && isatty(STDOUT_FILENO) != 0;
}

} // namespace agent::record
