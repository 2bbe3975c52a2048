// Writes down what tests send and receive, so that a last test can hold all of it against the
// description of the protocol.
#pragma once

#include <string_view>

// Appends {"command": …, "request": …, "reply": …} as one line to the file that the environment
// variable PROTOCOL_TRAFFIC names; without the variable nothing is written. Request and reply are
// JSON objects as they went over the wire: they are written as they are, so that the order of keys
// and repeated keys survive. Several threads and processes may write to the same file.
//
// Throws std::system_error when the file cannot be written: a test whose traffic is lost must fail.
void record_traffic(std::string_view command, std::string_view request_json,
                    std::string_view reply_json);
