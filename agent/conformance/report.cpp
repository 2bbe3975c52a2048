// SPDX-License-Identifier: MIT
#include "conformance/report.h"

#include "io/pages.h"
#include "io/text.h"

#include <algorithm>
#include <sstream>

namespace agent {

namespace {

// Escaped for an XML document: on one line, without characters that XML does not allow.
std::string xml(const std::string &text)
{
    constexpr char kNoCharacter[] = "\ufffd";
    std::string escaped;
    const std::string line = one_line(text);
    for (size_t at = 0; at < line.size(); ++at) {
        switch (line[at]) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            if (line.compare(at, 3, "\uffff") == 0 || line.compare(at, 3, "\ufffe") == 0) {
                escaped += kNoCharacter;
                at += 2;
            } else {
                escaped += line[at];
            }
        }
    }
    return escaped;
}

void write_case(std::ostream &page, const Check &check, const CheckResult &result)
{
    page << "    <testcase classname=\"" << xml(check.subject) << "\" name=\"" << xml(check.name)
         << '"';
    const std::string first = result.details.empty() ? "" : result.details.front();
    switch (result.verdict) {
    case Verdict::kPassed:
        if (result.warnings.empty()) {
            page << "/>\n";
            return;
        }
        page << ">\n";
        break;
    case Verdict::kFailed:
        page << ">\n      <failure message=\"" << xml(first) << "\">";
        for (const std::string &detail : result.details) {
            page << xml(detail) << '\n';
        }
        for (const std::string &name : result.names) {
            page << xml(name) << '\n';
        }
        page << "</failure>\n";
        break;
    case Verdict::kNotSupported:
        page << ">\n      <skipped message=\"not supported: " << xml(first) << "\"/>\n";
        break;
    case Verdict::kSkipped:
        page << ">\n      <skipped message=\"" << xml(first) << "\"/>\n";
        break;
    }
    if (!result.warnings.empty()) {
        page << "      <system-out>";
        for (const std::string &warning : result.warnings) {
            page << "warning: " << xml(warning) << '\n';
        }
        page << "</system-out>\n";
    }
    page << "    </testcase>\n";
}

std::string first_line_of(const CheckResult &result, bool verbose)
{
    const std::string detail = result.details.empty() ? "" : result.details.front();
    return result.names.empty() ? detail
           : verbose            ? detail + ":"
                                : detail + ": " + list_of_names(result.names, false);
}

} // namespace

const char *word_for(Verdict verdict)
{
    switch (verdict) {
    case Verdict::kPassed:
        return "passed";
    case Verdict::kFailed:
        return "failed";
    case Verdict::kNotSupported:
        return "not supported";
    case Verdict::kSkipped:
        return "skipped";
    }
    return "";
}

size_t count_of(const CheckResults &results, Verdict verdict)
{
    return static_cast<size_t>(std::ranges::count_if(
        results, [&](const auto &row) { return row.second.verdict == verdict; }));
}

std::string table_of(const CheckResults &results, bool verbose)
{
    Table table;
    table.row({"COMMAND", "RESULT", "DETAIL"});
    for (const auto &[check, result] : results) {
        table.row({check.name, word_for(result.verdict), first_line_of(result, verbose)});
        for (size_t at = 1; at < result.details.size(); ++at) {
            table.row({"", "", result.details[at]});
        }
        if (verbose) {
            for (const std::string &name : result.names) {
                table.row({"", "", name});
            }
        }
        for (const std::string &warning : result.warnings) {
            table.row({"", "", "warning: " + warning});
        }
    }
    std::ostringstream page;
    table.print(page, "");
    page << '\n' << results.size() << " checks";
    const char *separator = ": ";
    for (const Verdict verdict :
         {Verdict::kPassed, Verdict::kFailed, Verdict::kNotSupported, Verdict::kSkipped}) {
        page << separator << count_of(results, verdict) << ' ' << word_for(verdict);
        separator = ", ";
    }
    const auto warned = std::ranges::count_if(
        results, [](const auto &row) { return !row.second.warnings.empty(); });
    if (warned > 0) {
        page << ", " << warned << " with warnings";
    }
    return page.str();
}

std::string junit_of(const CheckResults &results, const std::string &library)
{
    std::ostringstream sums;
    sums << " tests=\"" << results.size() << "\" failures=\"" << count_of(results, Verdict::kFailed)
         << "\" errors=\"0\" skipped=\""
         << count_of(results, Verdict::kNotSupported) + count_of(results, Verdict::kSkipped)
         << "\">\n";
    std::ostringstream page;
    page << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" << sums.str()
         << "  <testsuite name=\"" << xml(library) << '"' << sums.str();
    for (const auto &[check, result] : results) {
        write_case(page, check, result);
    }
    page << "  </testsuite>\n</testsuites>\n";
    return page.str();
}

} // namespace agent
