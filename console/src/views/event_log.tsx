// SPDX-License-Identifier: MIT
// All events as they come.
import { useState } from "preact/hooks";
import { clearEvents, useEvents } from "../events.ts";
import { Card } from "../parts.tsx";

export function EventLog() {
    const [filter, setFilter] = useState("");
    const events = useEvents(/^/).filter(({ name }) => name.includes(filter.trim()));
    return (
        <Card
            title="Since this page was opened"
            wide
            tools={
                <>
                    <input
                        type="search"
                        placeholder="Part of a name"
                        aria-label="Part of the name of an event"
                        value={filter}
                        onInput={(event) => setFilter(event.currentTarget.value)}
                    />
                    <button type="button" onClick={clearEvents}>
                        Clear
                    </button>
                </>
            }
        >
            {events.length === 0 && <p class="muted">None.</p>}
            <ul class="log" aria-label="Events">
                {events.map(({ name, data, at }, index) => (
                    <li key={events.length - index}>
                        <time dateTime={at.toISOString()}>{at.toLocaleTimeString()}</time>
                        <span class="badge">{name}</span>
                        <code>{JSON.stringify(data)}</code>
                    </li>
                ))}
            </ul>
        </Card>
    );
}
