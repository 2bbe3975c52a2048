// SPDX-License-Identifier: MIT
// Which channels a Wi-Fi network occupies.

export interface Block {
    // Positions on the axis, in channels of the band's raster; the middle of a channel is a whole number.
    from: number;
    to: number;
}

// At 2.4 GHz channels are 5 MHz apart, and a network of 20 MHz overlaps its neighbours. At 5 GHz they are 20 MHz
// apart, and wider networks occupy fixed groups of them.
export function blockOf(channels: readonly string[], channel: string, megahertz: number): Block | undefined {
    const at = channels.indexOf(channel);
    if (at < 0) {
        return undefined;
    }
    if (Number(channels[0]) < 36) {
        const half = megahertz / 10;
        return { from: at - half, to: at + half };
    }
    const width = Math.max(1, megahertz / 20);
    // The groups are counted from channel 36, and again from 149.
    const lower = Number(channel) < 149;
    const start = channels.findIndex((each) => (lower ? Number(each) >= 36 : Number(each) >= 149));
    const first = start + Math.floor((at - start) / width) * width;
    return { from: first - 0.5, to: first + width - 0.5 };
}
