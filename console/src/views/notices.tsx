// SPDX-License-Identifier: MIT
// The notices that the gateway pushes to the app, as they come.
import { useEvents } from "../events.ts";
import { decodedMessage, textOf } from "../format.ts";
import { Card } from "../parts.tsx";

export function Notices() {
    const notices = useEvents(/^notice$/);
    return (
        <Card title="Since this page was opened" wide>
            {notices.length === 0 && <p class="muted">No notice has arrived yet.</p>}
            <ul class="log" aria-live="polite" aria-label="Notices">
                {notices.map(({ data, at }, index) => (
                    <li key={notices.length - index}>
                        <time dateTime={at.toISOString()}>{at.toLocaleTimeString()}</time>
                        <span class="badge">{textOf(data.Plugin_Name) || "notice"}</span>
                        <span>{decodedMessage(textOf(data.Message)) ?? JSON.stringify(data)}</span>
                    </li>
                ))}
            </ul>
        </Card>
    );
}
