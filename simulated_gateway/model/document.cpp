// SPDX-License-Identifier: MIT
#include "model/document.h"

namespace simulated_gateway {
namespace {

constexpr int64_t kVersion = 1;

struct Head {
    std::string format;
    int64_t version = 0;

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.field("format", self.format, Text{64});
        visit.field("version", self.version, Range{kVersion, kVersion});
    }
};

} // namespace

void take_head(Json &document, const std::string &format)
{
    Head head;
    JsonReader reader(document, "");
    Head::describe(head, reader);
    if (head.format != format) {
        throw Error("/format: is " + in_quotes(head.format) + ", not " + in_quotes(format));
    }
    if (head.version != kVersion) {
        throw Error("/version: is " + std::to_string(head.version) + ", not " +
                    std::to_string(kVersion));
    }
    document.erase("format");
    document.erase("version");
}

Json make_head(const std::string &format)
{
    return write_struct(Head{format, kVersion});
}

} // namespace simulated_gateway
