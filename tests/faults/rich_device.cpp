// SPDX-License-Identifier: MIT
#include "rich_device.h"

#include "failing_memory.h"
#include "protocol/device_facts.h"
#include "record_fields.h"
#include "recording_device.h"
#include "rich_values.h"
#include "smart_router_service/host_agent.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <typeindex>

namespace rich_device {

namespace {

using recording_device::Argument;

// ---- A run -------------------------------------------------------------------------------------

// What can go wrong in a call.
struct Call {
    bool writes = false;
    bool returns_memory = false;
    std::vector<std::vector<int32_t>> numbers; // the values to try for each of them

    // All of those; without numbers, a placeholder.
    std::set<int32_t> values() const
    {
        std::set<int32_t> all;
        for (const std::vector<int32_t> &tried : numbers) {
            all.insert(tried.begin(), tried.end());
        }
        return all.empty() ? std::set{0} : all;
    }
};

Home home;
Fault fault;
bool is_endless;
std::vector<Call> made;
std::map<std::string, std::set<std::string>, std::less<>>
    written_texts; // by record and field, or function
std::set<std::pair<std::string, std::string>> given;
std::string calling; // the function

const char *name_of(std::type_index record)
{
    const char *name = "";
    device_facts::visit_records([&]<class Record>(std::type_identity<Record>) {
        if (record == typeid(Record)) {
            name = device_facts::kName<Record>;
        }
    });
    return name;
}

int32_t limited(int32_t number)
{
    return is_endless ? std::min(number, kLongWalk) : number;
}

// Writes the output of one call.
class Pen {
  public:
    Pen(Written how, Call &call) : how_(how), call_(call) {}

    // The name is that of the record and its field, or of the function.
    void text(char *field, size_t width, const std::string &value, const std::string &name)
    {
        note_given(field, width, name);
        write_text(field, width, value, name);
        written_texts[name].insert({field, strnlen(field, width)});
    }

    static void note_given(const void *place, size_t width, const std::string &name)
    {
        const char *bytes = static_cast<const char *>(place);
        if (std::any_of(bytes, bytes + width, [](char byte) { return byte != 0; })) {
            given.insert({calling, name});
        }
    }

    void write_text(char *field, size_t width, const std::string &value, const std::string &name)
    {
        call_.writes = true;
        if (how_ == Written::kWidest && name.ends_with(value)) {
            for (size_t at = 0; at < width; ++at) {
                field[at] = name[at % name.size()];
            }
            return;
        }
        if (fills_fields()) {
            memset(field, '9', width);
        } else if (how_ == Written::kGarbage) {
            for (size_t at = 0; at < width; ++at) {
                field[at] = static_cast<char>((at + 3) * 167);
            }
        } else if (how_ != Written::kNothing && field[0] == '\0') {
            field[value.copy(field, width - 1)] = '\0';
        }
    }

    void number(int32_t &place, int32_t value, const std::vector<int32_t> &values,
                const std::string &name)
    {
        note_given(&place, sizeof place, name);
        write_number(place, value, values);
        written_texts[name].insert(std::to_string(place));
    }

    void write_number(int32_t &place, int32_t value, const std::vector<int32_t> &values)
    {
        call_.writes = true;
        if (place != 0) { // what selects a record
            return;
        }
        if (how_ != Written::kNothing) {
            place = how_ == Written::kGarbage ? limited(0x5A5A5A5A) : value;
        }
        if (how_ == Written::kRubbish ||
            (how_ == Written::kNumber && fault.number == call_.numbers.size())) {
            place = limited(fault.value);
        }
        call_.numbers.push_back(values);
    }

    void record(std::type_index type, void *address)
    {
        std::vector<int32_t> values = {INT_MIN, -1, INT_MAX};
        for (const RecordField &field : fields_of(type)) {
            if (field.count > 1) {
                values.push_back(static_cast<int32_t>(field.count) + 1);
            }
        }
        for (const RecordField &field : fields_of(type)) {
            const size_t entries = std::min<size_t>(field.count, 3);
            for (size_t at = 0; at < entries; ++at) {
                entry(name_of(type), field,
                      static_cast<char *>(address) + field.offset + at * field.width, at, values);
            }
        }
    }

    // An array that the plug-in frees, with its count.
    template <class Entry> void array(int32_t &count, Entry *&entries)
    {
        call_.returns_memory = true;
        write_number(count, 2, {INT_MIN, -1});
        if (how_ == Written::kNoMemory) {
            count = INT_MAX;
        } else if (how_ != Written::kNothing) {
            entries = zeroed<Entry>(2);
            // An invalid count without entries could not be distinguished from a valid one.
            count = std::min(count, 2);
            record(typeid(Entry), &entries[0]);
            record(typeid(Entry), &entries[1]);
        }
    }

    template <class Node> void list(Node *first)
    {
        call_.returns_memory = call_.writes = true;
        if (how_ == Written::kNothing || how_ == Written::kNoMemory) {
            return;
        }
        Node *last = first;
        for (int entry = 0; entry < 2; ++entry) {
            last = last->next = zeroed<Node>(1);
            fill(last);
        }
        last->next = how_ == Written::kGarbage ? first->next : nullptr;
    }

    void scan(ScanResult *result)
    {
        call_.returns_memory = call_.writes = true;
        if (how_ == Written::kNothing || how_ == Written::kNoMemory) {
            return;
        }
        for (const size_t slot : {0, 7, 19, 20, 59}) {
            result->entries[slot] = zeroed<ScanEntry>(1);
            record(typeid(ScanEntry), result->entries[slot]);
        }
    }

    void answer(char **text)
    {
        call_.returns_memory = call_.writes = true;
        if (how_ == Written::kNothing || how_ == Written::kNoMemory) {
            return;
        }
        std::string answer = R"({"Count":"2","BaseInfo":[{"Mac":"A"},{"Mac":"B"}]})";
        if (how_ == Written::kGarbage) {
            answer.assign(5000, '[');
        } else if (fills_fields()) {
            answer = R"({"BaseInfo":")" + std::string(5000, '9') + R"("})";
        }
        *text = static_cast<char *>(FailingMemory::granted(answer.size() + 1));
        memcpy(*text, answer.c_str(), answer.size() + 1);
    }

  private:
    bool fills_fields() const { return how_ == Written::kFull || how_ == Written::kRubbish; }

    void entry(const char *record_name, const RecordField &field, char *place, size_t at,
               const std::vector<int32_t> &values)
    {
        const std::string name = std::string(record_name) + '.' + std::string(field.name);
        if (field.type == typeid(char)) {
            text(place, field.width, text_for(field.name, home), name);
        } else if (field.type == typeid(int32_t) && field.count == 1) {
            number(*reinterpret_cast<int32_t *>(place), 2, values, name);
        } else if (field.type == typeid(int32_t) || field.type == typeid(int16_t)) {
            if (how_ != Written::kNothing) {
                *place = static_cast<char>(how_ == Written::kGarbage ? 0xA5 : at + 1);
                written_texts[name].insert(std::to_string(*place));
            }
        } else {
            record(field.type, place);
        }
    }

    template <class Entry> static Entry *zeroed(size_t count)
    {
        void *memory = FailingMemory::granted(count * sizeof(Entry));
        return static_cast<Entry *>(memset(memory, 0, count * sizeof(Entry)));
    }

    void fill(TopoNode *node) { node->level = how_ == Written::kGarbage ? INT_MAX : 2; }
    void fill(NodeBaseInfo *node)
    {
        node->Kind = 2;
        text(node->Mac, sizeof node->Mac, "A4:BB:6D:31:07:5E", "NodeBaseInfo.Mac");
    }

    Written how_;
    Call &call_;
};

const char *text_at(const Argument &argument)
{
    return static_cast<const char *>(argument.address);
}

// Writes to every place that the arguments of a call lead to.
void write(std::string_view function, std::initializer_list<Argument> arguments, Pen &pen)
{
    for (const Argument *at = arguments.begin(); at != arguments.end(); ++at) {
        if (at->is_read_only || function == "devapi_topo_xml_info_list") {
            continue;
        }
        const std::type_index type = *at->type;
        void *const place = at->address;
        if (type == typeid(char)) {
            const Argument *next = at + 1;
            const bool has_size = next != arguments.end() && next->address == nullptr;
            pen.text(static_cast<char *>(place),
                     has_size ? static_cast<size_t>(next->number) : width_for(function),
                     function == "devapi_topo_xml_getinfo" ? parameter(text_at(*arguments.begin()))
                                                           : text_for(function, home),
                     std::string(function));
        } else if (type == typeid(int32_t)) {
            pen.number(*static_cast<int32_t *>(place), number_for(function),
                       {INT_MIN, -1, GREENNET_MAX_HOSTS + 1, INT_MAX}, std::string(function));
        } else if (type == typeid(char *)) {
            pen.answer(static_cast<char **>(place));
        } else if (type == typeid(ScanResult)) {
            pen.scan(static_cast<ScanResult *>(place));
        } else if (type == typeid(ChannelPowerResult)) {
            auto *result = static_cast<ChannelPowerResult *>(place);
            pen.array(result->count, result->entries);
        } else if (type == typeid(PortStatisticsInfo)) {
            auto *info = static_cast<PortStatisticsInfo *>(place);
            pen.array(info->count, info->entries);
        } else if (type == typeid(TopoNode)) {
            pen.list(static_cast<TopoNode *>(place));
        } else if (type == typeid(NodeBaseInfo)) {
            pen.list(static_cast<NodeBaseInfo *>(place));
        } else {
            pen.record(type, place);
        }
    }
}

void free_list(TopoNode *node)
{
    while (node != nullptr) {
        TopoNode *next = node->next;
        free(node);
        node = next;
    }
}

int32_t answer(const char *name, std::initializer_list<Argument> arguments)
{
    const std::string_view function = name;
    calling = name;
    if (function == "devapi_free_topo_list") {
        free_list(static_cast<TopoNode *>(arguments.begin()->address));
        return 0;
    }
    if (!is_counted(function)) {
        Call host;
        Pen pen(Written::kWhole, host);
        write(function, arguments, pen);
        return 0;
    }
    const bool fails = made.size() == fault.call || (fault.lasts && made.size() > fault.call);
    if (made.size() > kLongWalk) {
        return -1;
    }
    made.emplace_back();
    // One of the devices of a request is new to the table of parental control.
    if (!fails && function == "devapi_get_greennet_index_by_mac" &&
        std::string_view(text_at(*arguments.begin())).starts_with("DA")) {
        return 0;
    }
    Pen pen(fails ? fault.written : Written::kWhole, made.back());
    write(function, arguments, pen);
    return fails && fault.result ? *fault.result : result_for(function);
}

} // namespace

bool has_written(std::string_view field, std::string_view text)
{
    auto texts = written_texts.find(field);
    if (texts == written_texts.end()) {
        texts = written_texts.find(field.substr(0, field.find('.')));
    }
    return texts != written_texts.end() && texts->second.contains(std::string(text));
}

const std::set<std::pair<std::string, std::string>> &given_fields()
{
    return given;
}

bool is_counted(std::string_view function)
{
    return function.starts_with("devapi_") && function != "devapi_free_topo_list";
}

std::string Fault::name() const
{
    static const std::map<Written, std::string> kNames = {
        {Written::kNothing, "nothing"}, {Written::kGarbage, "garbage"},
        {Written::kFull, "full"},       {Written::kNoMemory, "no_memory"},
        {Written::kNumber, "number"},   {Written::kRubbish, "rubbish"},
        {Written::kWidest, "widest"},
    };
    std::string text = std::to_string(call) + (lasts ? "+" : "");
    if (written != Written::kWhole) {
        text += ":" + kNames.at(written);
    }
    if (written == Written::kNumber) {
        text += std::to_string(number);
    }
    if (written == Written::kNumber || written == Written::kRubbish) {
        text += "=" + std::to_string(value);
    }
    return result ? text + ":result=" + std::to_string(*result) : text;
}

void set_up(const Home &where, const Fault &what, bool has_endless_walk)
{
    home = where;
    fault = what;
    is_endless = has_endless_walk;
    made.clear();
    written_texts.clear();
    given.clear();
    recording_device::answer_all(answer);
    recording_device::when<base64_encode>([](const char *) {
        if (FailingMemory::next_fails()) {
            return static_cast<char *>(nullptr);
        }
        return static_cast<char *>(memcpy(FailingMemory::granted(9), "bWVzc2Fn", 9));
    });
}

std::vector<Fault> possible_faults()
{
    std::vector<Fault> faults;
    for (size_t at = 0; at < made.size(); ++at) {
        for (const int32_t result : {-1, 1, 2, -2, 3, 4, 1000, INT_MIN}) {
            faults.push_back({at, result});
        }
        const Call &call = made[at];
        if (call.writes) {
            faults.push_back({at, -1, Written::kGarbage});
            faults.push_back({at, -1, Written::kFull});
            faults.push_back({at, {}, Written::kNothing});
            faults.push_back({at, {}, Written::kGarbage});
            faults.push_back({at, {}, Written::kFull});
        }
        if (call.returns_memory) {
            faults.push_back({at, {}, Written::kNoMemory});
            faults.push_back({at, -1, Written::kNoMemory});
        }
        for (size_t number = 0; number < call.numbers.size(); ++number) {
            for (const int32_t value : call.numbers[number]) {
                faults.push_back({at, {}, Written::kNumber, number, value});
            }
        }
        // A library whose failing calls write garbage, once or from then on.
        for (const int32_t value : call.values()) {
            for (const bool lasts : {false, true}) {
                faults.push_back({at, -1, Written::kRubbish, 0, value, lasts});
            }
        }
    }
    return faults;
}

} // namespace rich_device
