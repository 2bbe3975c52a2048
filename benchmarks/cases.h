// The commands that are measured, each with its request and with the straight cJSON code that it is
// held against.
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

    // The command, and what sets it apart from others of the same name.
    std::string name() const;
};

// Two ways to the same reply.
enum class Side { kPlugin, kFloor };
constexpr Side kSides[] = {Side::kPlugin, Side::kFloor};
constexpr const char *name_of(Side side)
{
    return side == Side::kPlugin ? "plug-in" : "floor";
}

// All cases, those with a list once for each of the sizes.
std::vector<Case> cases(const std::vector<size_t> &sizes);

// Has the device ready for the case.
void prepare(const Case &measured);

// The handler alone.
void handle(const Case &measured, Side side, cJSON *obj);

// All that an agent does for a command: parses the request, has it handled and prints the reply,
// which belongs to the caller. The floor needs no dispatcher.
char *answer(const Case &measured, Side side, const std::string &request);

// Whether both sides answer the same bytes and tell the device the same.
bool sides_agree(const Case &measured);
