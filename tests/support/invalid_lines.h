// SPDX-License-Identifier: MIT
// Lines that serve, and the service, refuse as invalid requests, and others.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

inline std::vector<std::string> invalid_lines(std::initializer_list<std::string> others)
{
    const std::string nul(1, '\0');
    std::vector<std::string> lines = {
        "rubbish",
        "",
        " ",
        "{",
        "null",
        "\"text\"",
        "12",
        "[]",
        R"([{"command":"GET_SN_INFO"}])",
        R"({"id":1,"command":"GET_SN_INFO"} {})",
        R"({"id":1,"command":"GET_SN_INFO"}})",
        "{\"id\":1,\"command\":\"GET_SN_INFO\"}" + nul,
        "{\"id\":1,\"command\":\"GET_SN_INFO\",\"params\":{\"a\":\"\xff\"}}",
        R"({"id":1,"command":"GET_SN_INFO","params":{"a":"\u0000"}})",
        R"({"id":1,"command":"GET_SN_INFO","params":{"a":)" + std::string(5000, '[') +
            std::string(5000, ']') + "}}",
        std::string(500000, '['),
        R"({"id":1,"command":"GET_SN_INFO","params":{"a":1e999}})",
        R"({"id":1e999,"command":"GET_SN_INFO","params":{"a":1e999}})",
    };
    lines.insert(lines.end(), others);
    return lines;
}
