// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "leeway.h"
#include "protocol/described_reply.h"
#include "protocol/device_facts.h"
#include "sweep_run.h"

#include <algorithm>
#include <sstream>

namespace {

// The calls whose result is ignored; some only in subjects with this name prefix.
constexpr struct {
    std::string_view function;
    std::string_view subject;
} kIgnoredResults[] = {
    {"devapi_call_tslink_set_topo_speed", ""},
    {"devapi_get_5g_wifi_index", ""},
    {"devapi_get_Multi_Ap_enable", ""},
    {"devapi_get_basic_area_code", ""},
    {"devapi_get_child_mesh_info_bynewmethod", ""},
    {"devapi_get_childrouter_info", "json_get_topo_router_info"},
    {"devapi_get_childrouter_list", ""},
    {"devapi_get_childsta_list", ""},
    {"devapi_get_devicemodel", ""},
    {"devapi_get_duration_num_by_index", ""},
    {"devapi_get_hg_log", ""},
    {"devapi_get_host_num", "GET_ATTACH_DEVICE_RIGHT"},
    {"devapi_get_hostindex_by_mac", "json_get_topo_router_info_on_a_small_page"},
    {"devapi_get_iotagtd_device_mac", "json_"},
    {"devapi_get_link_info", ""},
    {"devapi_get_local_timezone", ""},
    {"devapi_get_node_dev_info_by_newmetod", ""},
    {"devapi_get_node_sta_info_by_newmetod", ""},
    {"devapi_set_5gwifi_powerlevel", ""},
    {"devapi_set_ssid_list_info", ""},
    {"devapi_set_wifi_fastroaming", ""},
    {"devapi_set_wifi_stactrl", ""},
    {"devapi_setup_mesh", ""},
    {"devapi_topo_xml_info_list", ""},
};

template <class List> bool has(const List &list, std::string_view name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

// Whether the item equals the complete one, except for what may be omitted. Names the lists that
// lack an element.
bool is_thinned(const cJSON *item, const cJSON *whole, const Leeway &may,
                Leeway::Names &short_lists)
{
    if (item->type % 256 != whole->type % 256) {
        return false;
    }
    if (cJSON_IsObject(whole) == 0 && cJSON_IsArray(whole) == 0) {
        return cJSON_Compare(item, whole, 1) != 0;
    }
    const bool is_list = cJSON_IsArray(whole) != 0;
    const bool may_be_short = whole->string != nullptr && has(may.lists, whole->string);
    const cJSON *at = item->child;
    const cJSON *other;
    cJSON_ArrayForEach(other, whole)
    {
        while (!is_list && at != nullptr && std::string_view(at->string) != other->string &&
               has(may.added, at->string)) {
            at = at->next;
        }
        const bool is_same = at != nullptr &&
                             (is_list || std::string_view(at->string) == other->string) &&
                             is_thinned(at, other, may, short_lists);
        if (is_same) {
            at = at->next;
        } else if (is_list && may_be_short) {
            short_lists.push_back(whole->string);
        } else if (is_list || !has(may.keys, other->string)) {
            return false;
        }
    }
    while (!is_list && at != nullptr && has(may.added, at->string)) {
        at = at->next;
    }
    return at == nullptr;
}

// ---- Calls -------------------------------------------------------------------------------------

std::string described(const recording_device::Call &call)
{
    std::ostringstream text;
    recording_device::PrintTo(call, &text);
    return text.str();
}

// Why the calls are not a subsequence of the complete run's calls with the same bytes.
std::string other_calls(const std::vector<recording_device::Call> &calls,
                        const std::vector<recording_device::Call> &whole)
{
    auto next = whole.begin();
    for (const recording_device::Call &call : calls) {
        next = std::find(next, whole.end(), call);
        if (next == whole.end()) {
            return "a call that the complete run does not make, or not here or not with these "
                   "arguments: " +
                   described(call);
        }
        ++next;
    }
    return "";
}

// Whether the subject uses the result of the function.
bool is_result_used(const Subject &subject, std::string_view function)
{
    return std::none_of(
        std::begin(kIgnoredResults), std::end(kIgnoredResults), [&](const auto &row) {
            return row.function == function && subject.name.starts_with(row.subject);
        });
}

// The position of the faulty call among those of the complete run.
size_t position_of(const SweepRun &whole, const rich_device::Fault &fault)
{
    size_t counted = 0;
    size_t at = 0;
    while (!rich_device::is_counted(whole.calls.at(at).function) || counted++ != fault.call) {
        ++at;
    }
    return at;
}

// ---- Replies -----------------------------------------------------------------------------------

// Whether the object is the request minus some of its keys, followed by the tail.
bool splits(const cJSON *request, const cJSON *object, const cJSON **tail)
{
    const cJSON *item = object->child;
    const cJSON *sent;
    cJSON_ArrayForEach(sent, request)
    {
        if (item != nullptr && std::string_view(item->string) == sent->string &&
            cJSON_Compare(item, sent, 1) != 0) {
            item = item->next;
        }
    }
    *tail = item;
    return item == nullptr || cJSON_GetObjectItem(request, item->string) == nullptr;
}

// Whether one of the replies of the command gives the reason, or gives the device's own. That of a
// request without a key does not count if the request is whole.
bool knows_reason(const cJSON *description, std::string_view reason, bool is_whole)
{
    const cJSON *reply;
    cJSON_ArrayForEach(reply, cJSON_GetObjectItem(description, "replies"))
    {
        if (is_whole && agent::is_of_request(reply)) {
            continue;
        }
        const cJSON *key;
        cJSON_ArrayForEach(key, cJSON_GetObjectItem(reply, "keys"))
        {
            const cJSON *name = cJSON_GetObjectItem(key, "key");
            const cJSON *text = cJSON_GetObjectItem(key, "text");
            if (std::string_view(name->valuestring) == "FailReason" &&
                (text == nullptr || text->valuestring == reason)) {
                return true;
            }
        }
    }
    return false;
}

// Whether the items are those of a failure: its status, with a reason or, where there is none,
// alone.
bool is_failure(const cJSON *item, const cJSON *description, bool is_whole)
{
    const auto take = [&item](std::string_view key, std::string_view text) {
        const bool is_there = item != nullptr && item->string == key && cJSON_IsString(item) != 0 &&
                              (text.empty() || text == item->valuestring);
        item = is_there ? item->next : item;
        return is_there;
    };
    take("updateResult", "-1");
    if (!take("Status", "1")) {
        return false;
    }
    const cJSON *reason = item;
    return item == nullptr ||
           (take("FailReason", "") && item == nullptr &&
            (description == nullptr || knows_reason(description, reason->valuestring, is_whole)));
}

// Whether the object has the status of a failure, even before that of a success: some commands have
// both.
bool reports_failure(const cJSON *object)
{
    const char *status = cJSON_GetStringValue(cJSON_GetObjectItem(object, "Status"));
    return status != nullptr && std::string_view(status) == "1";
}

// What is wrong with the reply of a failed command, or the result of a failed builder.
std::string failure_verdict(const Subject &subject, const SweepRun &whole, const SweepRun &run,
                            FailingMemory::Fail how)
{
    if (run.object == whole.object) {
        return "";
    }
    const Leeway &may = leeway_of(subject);
    const Json request = parse(run.request);
    const Json object = parse(run.object);
    const Json whole_object = parse(whole.object);
    const cJSON *tail;
    if (!splits(request.get(), object.get(), &tail)) {
        return "the request's keys are not left as they were";
    }
    Leeway::Names short_lists;
    while (
        tail != nullptr && has(may.before, tail->string) &&
        is_thinned(tail, cJSON_GetObjectItem(whole_object.get(), tail->string), may, short_lists)) {
        tail = tail->next;
    }
    if (tail != nullptr) {
        const bool is_whole = run.request == request_for(subject);
        return is_failure(tail, description_of(subject.command), is_whole)
                   ? ""
                   : "the reply is neither a success nor a failure of this command";
    }
    // If there is a failure to report already, there may be no memory left for its reply.
    const bool is_owed =
        how == FailingMemory::Fail::kOnce && subject.builder == nullptr && whole.succeeded(subject);
    return is_owed ? "there is no reply, though there is memory for one" : "";
}

} // namespace

bool is_query(const std::string &function)
{
    for (const char *start :
         {"devapi_get_", "devapi_inspect_", "devapi_query_", "devapi_scan_", "devapi_topo_xml_",
          "devapi_handle_topo_", "devapi_free_topo_", "devapi_call_tslink_set_topo_speed",
          "devapi_speedtest_", "devapi_cmdstring_sendto_tslink_with_retinfo"}) {
        if (function.starts_with(start)) {
            return function != "devapi_get_hg_log"; // sends it
        }
    }
    return !function.starts_with("devapi_") && function != "kaa_device_notice" &&
           function != "kaa_update_profile_info" && function != "system";
}

std::string damage(const Subject &subject, const SweepRun &run)
{
    if (subject.builder == nullptr && run.result != 0) {
        return "the dispatcher returned " + std::to_string(run.result);
    }
    if (!run.is_idle) {
        return "a lock is held";
    }
    if (run.blocks != 0) {
        return std::to_string(run.blocks) + " blocks were not freed";
    }
    const Json kept(cJSON_Parse(run.kept.c_str()));
    if (subject.builder == nullptr && !run.kept.empty() && print(kept.get()) != run.object) {
        return "what is kept is not what is reported";
    }
    return run.is_json ? "" : "the object cannot be read back";
}

std::string memory_verdict(const Subject &subject, const SweepRun &whole, const SweepRun &run,
                           FailingMemory::Fail how)
{
    const Leeway &may = leeway_of(subject);
    std::string fault = damage(subject, run);
    if (fault.empty()) {
        fault = other_calls(run.calls, whole.calls);
    }
    if (!fault.empty()) {
        return fault;
    }
    if (!run.succeeded(subject)) {
        const auto change = std::find_if(run.calls.begin(), run.calls.end(), [&](const auto &call) {
            return !is_query(call.function) &&
                   (may.called == nullptr || call.function != may.called);
        });
        return change != run.calls.end() && whole.succeeded(subject)
                   ? "a failure is reported, though the device was changed: " + described(*change)
                   : failure_verdict(subject, whole, run, how);
    }
    if (!whole.succeeded(subject)) {
        return "a success is reported although the run fails";
    }
    if (run.kept != whole.kept && (may.keeps || !run.kept.empty())) {
        return "a success is reported, though something else is kept";
    }
    if (run.object == whole.object) {
        return run.calls == whole.calls || !may.calls
                   ? ""
                   : "a success is reported, though calls are missing";
    }
    Leeway::Names short_lists;
    const Json object = parse(run.object);
    const Json whole_object = parse(whole.object);
    if (!is_thinned(object.get(), whole_object.get(), may, short_lists)) {
        return "a success is reported, though the reply is not whole";
    }
    const bool is_logged =
        may.logged == nullptr ||
        std::any_of(run.log.begin(), run.log.end(), [&](const recording_host::LogLine &line) {
            return line.level == 3 && line.text.starts_with(may.logged);
        });
    if (!short_lists.empty() && !is_logged) {
        return "a list is short, and nothing in the log says so";
    }
    const bool is_to_be_reported =
        std::any_of(short_lists.begin(), short_lists.end(),
                    [&](std::string_view list) { return has(may.reported, list); });
    return is_to_be_reported && !reports_failure(object.get())
               ? "a list is short, and nothing in the reply says so"
               : "";
}

const std::string &called_function(const SweepRun &whole, const rich_device::Fault &fault)
{
    return whole.calls[position_of(whole, fault)].function;
}

bool is_result_ignored(const Subject &subject, const SweepRun &whole,
                       const rich_device::Fault &fault)
{
    return !is_result_used(subject, called_function(whole, fault));
}

std::optional<int32_t> equal_result(const Subject &subject, const SweepRun &whole,
                                    const rich_device::Fault &fault)
{
    const std::string &function = called_function(whole, fault);
    const device_facts::Function &facts = *device_facts::find(function);
    const std::string &caller = subject.command.empty() ? subject.name : subject.command;
    if (!is_result_used(subject, function) || facts.known.contain(*fault.result) ||
        device_facts::is_among(facts.other_rules_for, caller)) {
        return {};
    }
    if (facts.minus_one_fails_for.empty() && !facts.results.empty() &&
        !facts.results.contain(*fault.result)) {
        return {}; // a result that the function never has
    }
    const bool only_minus_one = device_facts::is_among(facts.minus_one_fails_for, caller);
    return only_minus_one && *fault.result != -1 ? 0 : -1;
}

std::string device_verdict(const Subject &subject, const SweepRun &whole, const SweepRun &run,
                           const rich_device::Fault &fault)
{
    const std::string harm = damage(subject, run);
    if (!harm.empty()) {
        return harm;
    }
    // There must be no difference before the failed call.
    const size_t position = position_of(whole, fault);
    for (size_t at = 0; at <= position; ++at) {
        if (at >= run.calls.size() || !(run.calls[at] == whole.calls[at])) {
            return "another call before the failure: " + described(whole.calls[at]);
        }
    }
    const std::string &failed = whole.calls[position].function;
    const bool counts = is_result_used(subject, failed);
    // No reply contains the worker's result.
    const bool is_refusal =
        fault.result == -1 && counts && !is_query(failed) && failed != "devapi_flash_update_image";
    const Json request = parse(run.request);
    const Json object = parse(run.object);
    const bool leaves_texts = fault.written == rich_device::Written::kFull ||
                              fault.written == rich_device::Written::kRubbish;
    if (fault.result == -1 && leaves_texts && !fault.lasts && counts && is_query(failed) &&
        run.object.find("99999999") != std::string::npos) {
        return "the reply shows what a failed call left: " + failed;
    }
    if (is_refusal && run.succeeded(subject) && !reports_failure(object.get())) {
        return "a success is reported although the device refused: " + failed;
    }
    if (subject.builder != nullptr) {
        return "";
    }
    const cJSON *description = description_of(subject.command);
    const cJSON *reply = agent::reply_given(description, request.get(), object.get());
    if (reply == nullptr) {
        return agent::undescribed(description, request.get(), object.get());
    }
    return agent::is_of_request(reply) ? "the reply blames the request for a failure of the device"
                                       : "";
}
