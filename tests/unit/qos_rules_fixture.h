// SPDX-License-Identifier: MIT
// Requests with rules of quality of service.
#pragma once

#include "qos.h"
#include "request.h"

inline constexpr char kCommand[] = "SET_QOS_CLASSIFICATION_INFO";

inline const Request kType({{"Type", R"("port")"}, {"Min", R"("80")"}, {"Max", R"("90")"}});
inline const Request kRule({{"Id", R"("5")"},
                            {"Action", R"("3")"},
                            {"Name", R"("games")"},
                            {"PriorityLevel", R"("7")"},
                            {"type_list", "[" + kType.json() + "]"}});

inline Request action(const std::string &text)
{
    return kRule.with("Action", quoted(text));
}

// The remainder of a request with a rule after the device call.
inline std::string left_after(const Request &request, bool failed)
{
    Request left = request;
    for (const char *key : {"Action", "Name", "PriorityLevel", "type_list"}) {
        left = left.without(key);
    }
    return failed ? left.followed_by(failure("set qos cls info error"))
                  : left.without("Id").followed_by(R"("Status":"0")");
}
