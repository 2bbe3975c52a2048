// SPDX-License-Identifier: MIT
#include "record/difference.h"

#include "io/pages.h"
#include "io/text.h"
#include "protocol/json_text.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <sstream>
#include <string_view>
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

// The members of an object by their names. Those of the same name stay in their order.
class Members {
  public:
    explicit Members(const cJSON *object)
    {
        for (const cJSON *member = object->child; member != nullptr; member = member->next) {
            members_.emplace(member->string, member);
        }
    }

    // The next one of the name; null if there is no further one.
    const cJSON *next(const char *name)
    {
        const auto found = members_.lower_bound(name);
        return found != members_.end() && found->first == name ? members_.extract(found).mapped()
                                                               : nullptr;
    }

  private:
    std::multimap<std::string_view, const cJSON *> members_;
};

class Comparison {
  public:
    explicit Comparison(const std::function<void(const FieldDifference &)> &report)
        : report_(report)
    {
    }

    void values(const cJSON *expected, const cJSON *found)
    {
        if (are_same(expected, found)) {
            return;
        }
        if (cJSON_IsObject(expected) != 0 && cJSON_IsObject(found) != 0) {
            objects(expected, found);
        } else if (cJSON_IsArray(expected) != 0 && cJSON_IsArray(found) != 0) {
            arrays(expected, found);
        } else {
            report(expected, found);
        }
    }

  private:
    void report(const cJSON *expected, const cJSON *found)
    {
        ++count_;
        report_({path_.size() <= kMaxShown ? path_ : path_.substr(0, kMaxShown) + "...",
                 text_of(expected), text_of(found)});
    }

    void objects(const cJSON *expected, const cJSON *found)
    {
        const size_t end = path_.size();
        const size_t before = count_;
        const auto go_to = [&](const cJSON *member) {
            path_.resize(end);
            path_.append(end == 0 ? "" : ".").append(member->string);
        };
        Members in_found(found);
        for (const cJSON *member = expected->child; member != nullptr; member = member->next) {
            go_to(member);
            values(member, in_found.next(member->string));
        }
        Members in_expected(expected);
        for (const cJSON *member = found->child; member != nullptr; member = member->next) {
            if (in_expected.next(member->string) == nullptr) {
                go_to(member);
                report(nullptr, member);
            }
        }
        path_.resize(end);
        if (count_ == before) { // only the order differs
            report(expected, found);
        }
    }

    void arrays(const cJSON *expected, const cJSON *found)
    {
        const size_t end = path_.size();
        const cJSON *left = expected->child;
        const cJSON *right = found->child;
        for (size_t at = 0; left != nullptr || right != nullptr; ++at) {
            path_.resize(end);
            path_.append("[").append(std::to_string(at)).append("]");
            values(left, right);
            left = left != nullptr ? left->next : nullptr;
            right = right != nullptr ? right->next : nullptr;
        }
        path_.resize(end);
    }

    const std::function<void(const FieldDifference &)> &report_;
    std::string path_;
    size_t count_ = 0;
};

std::string shown(const std::string &json)
{
    return json.empty() ? "nothing" : shown_json(json);
}

} // namespace

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

void find_differences(const cJSON *expected, const cJSON *found,
                      const std::function<void(const FieldDifference &)> &report)
{
    Comparison(report).values(expected, found);
}

std::string shown_json(const std::string &json)
{
    return one_line(json_for_terminal(json), kMaxShown);
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
        table.row({"request", place.request});
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
