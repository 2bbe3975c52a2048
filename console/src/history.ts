// SPDX-License-Identifier: MIT
// The last rates of the gateway and of each host, for the curves. They are only known since the page was opened.
import { numberOf, textOf } from "./format.ts";

const longest = 60;

export interface Rates {
    up: number[];
    down: number[];
}

function add(rates: Rates, record: Record<string, unknown>): void {
    rates.up.push(numberOf(record.UpSpeed) ?? 0);
    rates.down.push(numberOf(record.DownSpeed) ?? 0);
    if (rates.up.length > longest) {
        rates.up.shift();
        rates.down.shift();
    }
}

export const traffic: Rates = { up: [], down: [] };

const hosts = new Map<string, Rates>();

export const hostRates = (mac: string): Rates => hosts.get(mac) ?? { up: [], down: [] };

export function remember(command: string, reply: Record<string, unknown>): void {
    if (command === "GET_HG_BASE_INFO") {
        add(traffic, reply);
    } else if (command === "GET_AD_BASE_INFO" && Array.isArray(reply.BaseInfo)) {
        const present = new Set<string>();
        for (const host of reply.BaseInfo) {
            const mac = textOf(host.Mac);
            present.add(mac);
            let rates = hosts.get(mac);
            if (rates === undefined) {
                rates = { up: [], down: [] };
                hosts.set(mac, rates);
            }
            add(rates, host);
        }
        for (const mac of hosts.keys()) {
            if (!present.has(mac)) {
                hosts.delete(mac);
            }
        }
    }
}
