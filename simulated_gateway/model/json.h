// SPDX-License-Identifier: MIT
// The model as JSON: reading and writing both use the descriptions in model.h.
#pragma once

#include "model/rules.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace simulated_gateway {

// Keeps the keys in the order in which the model describes them.
using Json = nlohmann::ordered_json;

// Parses strictly: repeated keys and deep nesting are errors, as is bad syntax.
Json parse_json(std::string_view text);

// Reads the fields of one described struct from a JSON object.
class JsonReader {
  public:
    JsonReader(const Json &object, std::string path);

    template <class Value, class Rule> void field(const char *name, Value &value, const Rule &rule)
    {
        if (const Json *item = find(name, rule.presence)) {
            read(*item, path_ + "/" + name, value);
        }
    }
    template <class Struct> void object(const char *name, Struct &value);
    template <class Struct> void list(const char *name, std::vector<Struct> &values, size_t most);

    // A key that no field was read from is most likely a typo.
    void refuse_unknown_keys() const;

  private:
    // Null only for an optional field that is absent.
    const Json *find(const char *name, Presence presence);
    static void read(const Json &item, const std::string &path, std::string &value);
    static void read(const Json &item, const std::string &path, int64_t &value);
    static void read(const Json &item, const std::string &path, bool &value);
    static void require_list(const Json &item, const std::string &path, size_t most);

    const Json &object_;
    std::string path_;
    std::vector<std::string_view> names_;
};

template <class Struct> Struct read_struct(const Json &object, const std::string &path)
{
    Struct value;
    JsonReader reader(object, path);
    Struct::describe(value, reader);
    reader.refuse_unknown_keys();
    return value;
}

template <class Struct> void JsonReader::object(const char *name, Struct &value)
{
    value = read_struct<Struct>(*find(name, Presence::kRequired), path_ + "/" + name);
}

template <class Struct>
void JsonReader::list(const char *name, std::vector<Struct> &values, size_t most)
{
    const Json &items = *find(name, Presence::kRequired);
    const std::string path = path_ + "/" + name;
    require_list(items, path, most);
    for (size_t at = 0; at < items.size(); ++at) {
        values.push_back(read_struct<Struct>(items[at], path + "/" + std::to_string(at)));
    }
}

// Writes the fields of one described struct; optional fields without a value are left out.
class JsonWriter {
  public:
    template <class Value, class Rule>
    void field(const char *name, const Value &value, const Rule &rule)
    {
        if (rule.presence == Presence::kRequired || value != Value()) {
            object_[name] = value;
        }
    }
    template <class Struct> void object(const char *name, const Struct &value);
    template <class Struct>
    void list(const char *name, const std::vector<Struct> &values, size_t most);

    const Json &result() const { return object_; }

  private:
    Json object_ = Json::object();
};

template <class Struct> Json write_struct(const Struct &value)
{
    JsonWriter writer;
    Struct::describe(value, writer);
    return writer.result();
}

template <class Struct> void JsonWriter::object(const char *name, const Struct &value)
{
    object_[name] = write_struct(value);
}

template <class Struct>
void JsonWriter::list(const char *name, const std::vector<Struct> &values, size_t)
{
    Json items = Json::array();
    for (const Struct &value : values) {
        items.push_back(write_struct(value));
    }
    object_[name] = std::move(items);
}

} // namespace simulated_gateway
