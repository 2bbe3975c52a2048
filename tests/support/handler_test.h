// SPDX-License-Identifier: MIT
// Helpers for tests of a handler.
#pragma once

#include "recording_device.h"
#include "recording_host.h"
#include "smart_router_service/processjsonability.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

// What most tests of handlers use of the recordings.
using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_device::writes;
using recording_host::LogLine;
using Calls = std::vector<Call>;
using LogLines = std::vector<LogLine>;
using Names = std::vector<std::string>;

struct DeleteJson {
    void operator()(cJSON *json) const { cJSON_Delete(json); }
};
using Json = std::unique_ptr<cJSON, DeleteJson>;

// Parses a test's JSON; a text that is not JSON fails the test.
Json parse(const std::string &text);

// The object on one line, keys in order and repeated keys included; "null" for a null pointer.
std::string print(const cJSON *json);

// Sends a command as the agent would and returns the object afterwards. The traffic is kept for the
// check against the protocol's description.
std::string run(const std::string &command, const std::string &request = "{}");

// A text of this many bytes in which each byte differs from its neighbours.
std::string text_of_length(size_t length);

// Writes a text into a field, without a NUL if it is as long as the field.
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    memset(field, '\0', width);
    text.copy(field, width);
}

// Fills a field completely, without a NUL.
template <size_t width> void fill(char (&field)[width])
{
    put(field, text_of_length(width));
}

class HandlerTest : public testing::Test {
  protected:
    HandlerTest() { forget(); }

    // Forgets the calls, what the device is programmed to do, and the log.
    static void forget()
    {
        recording_device::reset();
        recording_host::reset();
    }
};
