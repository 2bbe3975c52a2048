// SPDX-License-Identifier: MIT
// The commands that are measured, each with its request and with the hand-written baseline that it
// is compared with.
#pragma once

#include <cjson/cJSON.h>
#include <cstdint>
#include <string>
#include <vector>

struct Case {
    const char *command;
    int32_t hosts;   // attached to the device
    size_t elements; // in the list of the request; 0 without one
    std::string (*request)(size_t elements);
    int32_t (*handler)(cJSON *obj);
    void (*floor)(cJSON *obj);

    // The command, and what distinguishes the case from others of the same command.
    std::string name() const;
};

// Two implementations with the same reply.
enum class Side { kPlugin, kFloor };
constexpr Side kSides[] = {Side::kPlugin, Side::kFloor};
constexpr const char *name_of(Side side)
{
    return side == Side::kPlugin ? "plug-in" : "floor";
}

// All cases; those with a list once for each size.
std::vector<Case> cases(const std::vector<size_t> &sizes);

// Prepares the device for the case.
void prepare(const Case &measured);

// Runs only the handler.
void handle(const Case &measured, Side side, cJSON *obj);

// Does all that an agent does for a command: parses the request, calls the handler and prints the
// reply, which belongs to the caller. The baseline does not need the dispatcher.
char *answer(const Case &measured, Side side, const std::string &request);

// Whether both sides give the same reply and pass the same bytes to the device.
bool sides_agree(const Case &measured);
