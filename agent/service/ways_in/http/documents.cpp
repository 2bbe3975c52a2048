// SPDX-License-Identifier: MIT
#include "service/ways_in/http/documents.h"

#include "embedded/openapi_document.h"
#include "protocol/protocol.h"

namespace agent::service {

namespace {

std::string list_of(const std::vector<Description> &all)
{
    std::string text = "[";
    for (const Description &one : all) {
        text += text.size() > 1 ? "," : "";
        text += one.as_json();
    }
    return text + "]";
}

} // namespace

const StaticFile &protocol_document()
{
    static const StaticFile document =
        StaticFile::make("application/json", std::string(R"({"protocol":")") + kProtocolVersion +
                                                 R"(","commands":)" + list_of(descriptions()) +
                                                 R"(,"events":)" + list_of(events()) + "}");
    return document;
}

const StaticFile &openapi_document()
{
    static const StaticFile document = StaticFile::make(
        "application/json", std::string(embedded::openapi_document().front().text));
    return document;
}

} // namespace agent::service
