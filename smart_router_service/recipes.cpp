// SPDX-License-Identifier: MIT
#include "recipes.h"

namespace smart_router {

void answer_query(cJSON *obj, bool failed, FieldList fields, const void *record,
                  const char *failure, StatusAt status)
{
    if (failed) {
        fail(obj, failure);
        return;
    }
    Reply reply;
    if (status == StatusAt::kFirst) {
        reply.success();
    }
    reply.fields(fields, record);
    if (status == StatusAt::kLast) {
        reply.success();
    }
    answer(obj, reply, failure);
}

// A zeroed record for an engine, with room for the record of any row.
class RowRecord {
  public:
    explicit RowRecord(FieldList fields) { memset(bytes_, 0, fields.record_size()); }
    void *get() { return bytes_; }

  private:
    alignas(max_align_t) char bytes_[kLargestRecord];
};

int32_t run_query(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                  StatusAt status, FailureRule failed)
{
    RowRecord record(fields);
    const int32_t result = call(record.get());
    answer_query(obj, failed(result), fields, record.get(), failure, status);
    return result;
}

bool can_conclude(cJSON *obj, const Reply &success, const char *failure)
{
    if (cJSON_IsObject(obj) != 0 && success.complete()) {
        return true;
    }
    fail(obj, failure);
    return false;
}

void conclude(cJSON *obj, Reply &success, bool failed, const char *failure)
{
    conclude(obj, success, failed, failure, SIZE_MAX);
}

void conclude(cJSON *obj, Reply &success, bool failed, const char *failure, size_t width)
{
    if (failed) {
        fail(obj, failure, width);
    } else {
        success.join(obj);
    }
}

int32_t carry_out(cJSON *obj, int32_t (*call)(), const char *failure)
{
    SuccessReply success;
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call();
    conclude(obj, success, result != 0, failure);
    return result;
}

int32_t run_reporting_action(cJSON *obj, FieldList fields, const char *failure, RecordCall call)
{
    RowRecord record(fields);
    SuccessReply success;
    success.reserve(fields);
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call(record.get());
    success.set_reserved(fields, record.get());
    conclude(obj, success, result != 0, failure);
    return result;
}

bool SettingSteps::find(const MissingTexts &missing)
{
    const char *wrong = find_required(obj_, fields_, missing, items_);
    if (wrong == nullptr) {
        success_.success();
        return true;
    }
    if (when_ == RemoveKeys::kAlways) {
        remove_from(0);
    }
    fail(obj_, wrong);
    return false;
}

bool SettingSteps::fill_record(void *record, const char *failure, size_t width)
{
    if (!success_.complete()) {
        end(true, failure, width);
        return false;
    }
    copy_items(fields_, items_, record);
    return true;
}

void SettingSteps::end(bool failed, const char *failure, size_t width)
{
    if (when_ != RemoveKeys::kOnSuccess || !failed) {
        remove_from(0);
    }
    conclude(obj_, success_, failed, failure, width);
}

void SettingSteps::remove_from(size_t position)
{
    for (size_t at = position; at < fields_.count(); ++at) {
        if (at < fields_.required() || text_of(items_[at]) != nullptr) {
            remove_key(obj_, items_[at]);
            items_[at] = nullptr;
        }
    }
}

int32_t run_setting(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                    RemoveKeys when, FailureRule failed, const MissingTexts &missing)
{
    RowRecord record(fields);
    SettingSteps steps(obj, fields, when);
    if (!steps.find(missing) || !steps.fill_record(record.get(), failure, SIZE_MAX)) {
        return -1;
    }
    const int32_t result = call(record.get());
    steps.end(failed(result), failure);
    return result;
}

} // namespace smart_router
