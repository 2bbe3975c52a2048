// SPDX-License-Identifier: MIT
#include "record/recorded_services.h"

#include "protocol/log_format.h"
#include "record/line_memory.h"
#include "record/object_text.h"
#include "smart_router_service/host_agent.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace agent::record {

namespace {

// The arguments of a call.
class Arguments {
  public:
    explicit Arguments(LineText &line) : line_(line)
    {
        line_.add_name("arguments");
        line_.add('{');
    }
    ~Arguments() { line_.add('}'); }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    void number(const char *name, int64_t number)
    {
        line_.add_name(name);
        line_.add_number(number);
    }
    // The text has no secrets, or pseudonyms for them.
    void text(const char *name, const char *text, std::string_view shown)
    {
        line_.add_name(name);
        if (text == nullptr) {
            line_.add("null");
        } else {
            line_.add_text(shown);
        }
    }
    // A text that the call has written.
    void written(const char *name, std::string_view text)
    {
        line_.add_name(name);
        line_.add('{');
        if (!text.empty()) {
            line_.add_name("after");
            line_.add_text(text);
        }
        line_.add('}');
    }

  private:
    LineText &line_;
};

void add_result(LineText &line, int64_t result)
{
    line.add_name("result");
    line.add_number(result);
}

void add_time(LineText &line, const tm &time)
{
    const std::pair<const char *, int> members[] = {
        {"tm_sec", time.tm_sec},   {"tm_min", time.tm_min},   {"tm_hour", time.tm_hour},
        {"tm_mday", time.tm_mday}, {"tm_mon", time.tm_mon},   {"tm_year", time.tm_year},
        {"tm_wday", time.tm_wday}, {"tm_yday", time.tm_yday}, {"tm_isdst", time.tm_isdst}};
    line.add('{');
    for (const auto &[name, value] : members) {
        if (value != 0) {
            line.add_name(name);
            line.add_number(value);
        }
    }
    if (time.tm_gmtoff != 0) {
        line.add_name("tm_gmtoff");
        line.add_number(time.tm_gmtoff);
    }
    if (time.tm_zone != nullptr) {
        line.add_name("tm_zone");
        line.add_text(time.tm_zone);
    }
    line.add('}');
}

// What a notice's text became in base64 and as a digest, and what they would have become without
// its secrets: the notice itself contains both.
thread_local std::vector<std::pair<std::string, std::string>> made_of_secrets;

std::string replaced(std::string text)
{
    for (const auto &[made, shown] : made_of_secrets) {
        for (size_t at = made.empty() ? std::string::npos : text.find(made);
             at != std::string::npos; at = text.find(made, at + shown.size())) {
            text.replace(at, made.size(), shown);
        }
    }
    return text;
}

} // namespace

template <class Add>
void RecordedServices::record(const Recorder::Begin &begin, const char *name, Add add)
{
    try {
        LineText &line = empty_line();
        line.add_name("service");
        line.add_quoted(name);
        add(line);
        line.add('}');
        recorder_.add_call(begin, line);
    } catch (const std::exception &problem) { // must not reach the plug-in
        recorder_.end(problem.what());
    }
}

// The format of a log line shows where its other secrets are.
std::string RecordedServices::without_addresses(const std::string &text) const
{
    return text.find("://") == std::string::npos ? text
                                                 : mask_address(text, *recorder_.pseudonyms());
}

std::string RecordedServices::shown(const char *text) const
{
    const std::string all = text != nullptr ? text : "";
    const Pseudonyms *pseudonyms = recorder_.pseudonyms();
    return pseudonyms == nullptr ? all : replaced(pseudonyms->without_secrets(all));
}

void RecordedServices::log(const char *module, int32_t level, const char *format, va_list arguments)
{
    va_list copy;
    va_copy(copy, arguments);
    const Recorder::Begin begin = recorder_.begin();
    next_.log(module, level, format, arguments);
    record(begin, "ts_mod_log_printf", [&](LineText &line) {
        std::string text = format_log_text(recorder_.pseudonyms(), format, copy);
        if (recorder_.pseudonyms() != nullptr) {
            text = replaced(without_addresses(text));
        }
        Arguments members(line);
        members.text("module", module, module != nullptr ? module : "");
        members.number("level", level);
        members.text("text", text.c_str(), text);
    });
    va_end(copy);
}

char *RecordedServices::base64_encode(const char *text)
{
    const Recorder::Begin begin = recorder_.begin();
    char *const encoded = next_.base64_encode(text);
    record(begin, "base64_encode", [&](LineText &line) {
        made_of_secrets.clear(); // a notice begins
        const std::string without = shown(text);
        std::string result = encoded != nullptr ? encoded : "";
        if (encoded != nullptr && without != text) {
            char *const other = next_.base64_encode(without.c_str());
            const std::string shown_result = other != nullptr ? other : "";
            free(other);
            made_of_secrets.emplace_back(result, shown_result);
            result = shown_result;
        }
        Arguments(line).text("text", text, without);
        line.add_name("result");
        if (encoded == nullptr) {
            line.add("null");
        } else {
            line.add_text(result);
        }
    });
    return encoded;
}

void RecordedServices::getmd5(const char *text, char *out)
{
    const Recorder::Begin begin = recorder_.begin();
    next_.getmd5(text, out);
    record(begin, "getmd5", [&](LineText &line) {
        const std::string without = shown(text);
        std::string digest(out, strnlen(out, HG_MD5_TEXT_SIZE));
        if (text != nullptr && without != text) {
            std::array<char, HG_MD5_TEXT_SIZE> other = {};
            next_.getmd5(without.c_str(), other.data());
            made_of_secrets.emplace_back(digest, other.data());
            digest = other.data();
        }
        Arguments members(line);
        members.text("text", text, without);
        members.written("out", digest);
    });
}

void RecordedServices::mac_form_translate(const char *in, int32_t form, char *out)
{
    const Recorder::Begin begin = recorder_.begin();
    next_.mac_form_translate(in, form, out);
    record(begin, "mac_form_translate", [&](LineText &line) {
        Arguments members(line);
        members.text("in", in, shown(in));
        members.number("form", form);
        members.written("out", {out, strnlen(out, HG_MAC_TEXT_SIZE)});
    });
}

void RecordedServices::ts_sys_mgr_get_brmac(char *mac)
{
    const Recorder::Begin begin = recorder_.begin();
    next_.ts_sys_mgr_get_brmac(mac);
    record(begin, "ts_sys_mgr_get_brmac", [&](LineText &line) {
        Arguments(line).written("mac", {mac, strnlen(mac, HG_BRIDGE_MAC_SIZE)});
    });
}

int32_t RecordedServices::dev_is_exist(int32_t index)
{
    const Recorder::Begin begin = recorder_.begin();
    const int32_t result = next_.dev_is_exist(index);
    record(begin, "dev_is_exist", [&](LineText &line) {
        Arguments(line).number("index", index);
        add_result(line, result);
    });
    return result;
}

int32_t RecordedServices::kaa_device_notice(const char *text)
{
    const Recorder::Begin begin = recorder_.begin();
    const int32_t result = next_.kaa_device_notice(text);
    record(begin, "kaa_device_notice", [&](LineText &line) {
        Arguments(line).text("text", text, shown(text));
        add_result(line, result);
    });
    return result;
}

int32_t RecordedServices::kaa_update_profile_info()
{
    const Recorder::Begin begin = recorder_.begin();
    const int32_t result = next_.kaa_update_profile_info();
    record(begin, "kaa_update_profile_info", [&](LineText &line) { add_result(line, result); });
    return result;
}

void RecordedServices::free_str_buf(char **text)
{
    const Recorder::Begin begin = recorder_.begin();
    record(begin, "free_str_buf", [&](LineText &line) {
        const char *freed = text != nullptr ? *text : nullptr;
        Arguments(line).text("text", freed, shown(freed));
    });
    next_.free_str_buf(text);
}

int RecordedServices::system(const char *command)
{
    const Recorder::Begin begin = recorder_.begin();
    const int result = next_.system(command);
    record(begin, "system", [&](LineText &line) {
        Arguments(line).text("command", command, shown(command));
        add_result(line, result);
    });
    return result;
}

time_t RecordedServices::time(time_t *result)
{
    const Recorder::Begin begin = recorder_.begin();
    const time_t now = next_.time(result);
    record(begin, "time", [&](LineText &line) { add_result(line, now); });
    return now;
}

tm *RecordedServices::localtime_r(const time_t *time, tm *result)
{
    const Recorder::Begin begin = recorder_.begin();
    tm *const local = next_.localtime_r(time, result);
    record(begin, "localtime_r", [&](LineText &line) {
        {
            Arguments members(line);
            members.number("time", *time);
            line.add_name("local");
            line.add('{');
            if (local != nullptr) {
                line.add_name("after");
                add_time(line, *local);
            }
            line.add('}');
        }
        add_result(line, local != nullptr ? 0 : -1);
    });
    return local;
}

unsigned RecordedServices::sleep(unsigned seconds)
{
    const Recorder::Begin begin = recorder_.begin();
    const unsigned left = next_.sleep(seconds);
    record(begin, "sleep", [&](LineText &line) {
        Arguments(line).number("seconds", seconds);
        add_result(line, left);
    });
    return left;
}

} // namespace agent::record
