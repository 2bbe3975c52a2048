// SPDX-License-Identifier: MIT
// What has happened since the page was opened.
import { useLayoutEffect, useState } from "preact/hooks";
import { type GatewayEvent, onEvent } from "./connection.ts";

const mostEvents = 500;

export const events: GatewayEvent[] = [];

const watchers = new Set<() => void>();

onEvent((event) => {
    events.push(event);
    if (events.length > mostEvents) {
        events.shift();
    }
    watchers.forEach((watcher) => watcher());
});

export function clearEvents(): void {
    events.length = 0;
    watchers.forEach((watcher) => watcher());
}

// The events whose names match, the newest first.
export function useEvents(pattern: RegExp): GatewayEvent[] {
    const [, setCount] = useState(0);
    useLayoutEffect(() => {
        const watcher = () => setCount((count) => count + 1);
        watchers.add(watcher);
        return () => void watchers.delete(watcher);
    }, []);
    return events.filter(({ name }) => pattern.test(name)).reverse();
}
