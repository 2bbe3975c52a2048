// SPDX-License-Identifier: MIT
// Values of the protocol as people read them.

// The protocol's text for a missing value.
const nothing = "NULL";

export function textOf(value: unknown): string {
    return typeof value === "string" && value !== nothing ? value : typeof value === "number" ? String(value) : "";
}

export function numberOf(value: unknown): number | undefined {
    const text = textOf(value);
    const number = Number(text);
    return text === "" || !Number.isFinite(number) ? undefined : number;
}

export const isOn = (value: unknown): boolean => value === "1";

export const switchText = (on: boolean): string => (on ? "1" : "0");

interface Named {
    Name?: unknown;
    ByName?: unknown;
    Mac?: unknown;
}

// The name that the user gave, else the device's own, else its address.
export function nameOf(device: Named): string {
    return textOf(device.ByName) || textOf(device.Name) || textOf(device.Mac);
}

function scaled(value: number, step: number, units: string[]): string {
    let unit = 0;
    while (value >= step && unit < units.length - 1) {
        value /= step;
        unit += 1;
    }
    const digits = unit === 0 || value >= 100 ? 0 : 1;
    return `${value.toFixed(digits)} ${units[unit]}`;
}

export const rate = (kbits: number): string => scaled(kbits, 1000, ["kbit/s", "Mbit/s", "Gbit/s"]);

export const size = (bytes: number): string => scaled(bytes, 1000, ["bytes", "kB", "MB", "GB", "TB"]);

// The two largest units of a duration: 2 days 3 h, 4 h 5 min, 6 min, 7 s.
export function duration(seconds: number): string {
    const parts: [number, string][] = [
        [Math.floor(seconds / 86400), "d"],
        [Math.floor((seconds % 86400) / 3600), "h"],
        [Math.floor((seconds % 3600) / 60), "min"],
        [Math.floor(seconds % 60), "s"],
    ];
    const first = parts.findIndex(([count]) => count > 0);
    if (first < 0) {
        return "0 s";
    }
    return parts
        .slice(first, first + 2)
        .filter(([count]) => count > 0)
        .map(([count, unit]) => `${count} ${unit}`)
        .join(" ");
}

// 0 (none) to 4 (excellent) for a received power in dBm.
export function signalLevel(dbm: number | undefined): number {
    if (dbm === undefined) {
        return 0;
    }
    return 1 + [-80, -70, -60].filter((limit) => dbm >= limit).length;
}

export const dbmText = (dbm: number | undefined): string => (dbm === undefined ? "" : `${dbm} dBm`.replace("-", "−"));

export function accessText(access: string): string {
    return access === "cable" ? "Cable" : access.replace("GHz", " GHz");
}

// The text of a notice, which is base64 of UTF-8; undefined if it is something else.
export function decodedMessage(base64: string): string | undefined {
    try {
        const bytes = Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
        return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
    } catch {
        return undefined;
    }
}

export const byteLength = (text: string): number => new TextEncoder().encode(text).length;

const dayNames = ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"];

// "1,2,3" or "123" as "Mon, Tue, Wed".
export function daysText(days: string): string {
    const found = [...days].filter((digit) => /[1-7]/.test(digit)).map((digit) => dayNames[Number(digit) - 1]);
    return found.length === 7 ? "every day" : found.join(", ");
}
