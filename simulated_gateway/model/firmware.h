// SPDX-License-Identifier: MIT
// The firmware part of the model: two slots, one running and the other one writable.
#pragma once

#include "model/rules.h"
#include "smart_router_service/device_access.h"

#include <array>
#include <cstdint>
#include <string>

namespace simulated_gateway {

// The content of a slot. The factory firmware has no image file.
struct FirmwareSlot {
    std::string version;
    std::string date;
    std::string sha256;   // of the image
    int64_t rollback = 0; // also 0 for an image without a number

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        constexpr auto optional = Presence::kOptional;
        visit.field("version", self.version, Text{sizeof(SystemInfo::SWVersion), optional});
        visit.field("date", self.date, Text{sizeof(HgBaseInfo::FWDATA), optional});
        visit.field("sha256", self.sha256, Text{65, optional});
        visit.field("rollback", self.rollback, Range{0, UINT32_MAX, optional});
    }
};

struct Firmware {
    std::array<FirmwareSlot, 2> slots;
    int64_t running = 1; // number of the slot, from 1
    int64_t next = 1;    // the slot that the next restart boots

    const FirmwareSlot &slot(int64_t number) const
    {
        return slots[static_cast<size_t>(number - 1)];
    }
    FirmwareSlot &slot(int64_t number) { return slots[static_cast<size_t>(number - 1)]; }
    int64_t not_running() const { return 3 - running; }

    template <class Self, class Visitor> static void describe(Self &self, Visitor &visit)
    {
        visit.object("slot_1", self.slots[0]);
        visit.object("slot_2", self.slots[1]);
        visit.field("running", self.running, Range{1, 2});
        visit.field("next", self.next, Range{1, 2});
    }
};

} // namespace simulated_gateway
