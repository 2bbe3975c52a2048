// SPDX-License-Identifier: MIT
// Replies of the gateway, shared by the views, and kept up to date while a view shows them.
import { useEffect, useState } from "preact/hooks";
import { type Answer, type Refusal, call, onEvent, onState, report, session, state } from "./connection.ts";
import { remember } from "./history.ts";

export interface Query {
    command?: string;
    report?: string;
    params?: object;
}

export interface Known<T> {
    reply?: T;
    // Why there is no newer reply.
    error?: Refusal;
}

interface Entry {
    query: Query;
    known: Known<any>;
    // How often each view wants it, in milliseconds.
    users: Map<() => void, number>;
    running: boolean;
    again: boolean;
    timer?: ReturnType<typeof setTimeout>;
}

const entries = new Map<string, Entry>();
const otherPages = new BroadcastChannel("changes");

function wanted(entry: Entry): boolean {
    return entry.users.size > 0 && !document.hidden && state === "open";
}

async function load(entry: Entry): Promise<void> {
    clearTimeout(entry.timer);
    if (!wanted(entry)) {
        return;
    }
    if (entry.running) {
        entry.again = true;
        return;
    }
    entry.running = true;
    entry.again = false;
    const params = JSON.stringify(entry.query.params ?? {});
    try {
        const answer = await (entry.query.command !== undefined
            ? call(entry.query.command, params)
            : report(entry.query.report!, params));
        entry.known = { reply: answer.reply };
        remember(entry.query.command ?? "", answer.reply);
    } catch (error) {
        entry.known = { reply: entry.known.reply, error: error as Refusal };
    }
    entry.running = false;
    entry.users.forEach((_, update) => update());
    if (entry.again) {
        void load(entry);
    } else if (entry.users.size > 0) {
        entry.timer = setTimeout(() => void load(entry), Math.min(...entry.users.values()));
    }
}

export function refresh(): void {
    entries.forEach((entry) => void load(entry));
}

document.addEventListener("visibilitychange", refresh);
onState(refresh);
otherPages.onmessage = refresh;
onEvent((event) => {
    if (/^(background\.ended|reboot\.|update\.(failed|succeeded)|worker\.started)/.test(event.name)) {
        refresh();
    }
});

export const mayCall = (command: string): boolean => session?.commands.includes(command) ?? false;

export const mayReport = (name: string): boolean => session?.reports.includes(name) ?? false;

// The reply to a query, asked again every so often; nothing for null or without the right to it.
export function useReply<T = Record<string, any>>(query: Query | null, milliseconds = 10000): Known<T> {
    const key = query === null ? "" : JSON.stringify(query);
    const allowed =
        query !== null && (query.command !== undefined ? mayCall(query.command) : mayReport(query.report!));
    const [, setCount] = useState(0);
    useEffect(() => {
        if (!allowed) {
            return undefined;
        }
        const update = () => setCount((count) => count + 1);
        let entry = entries.get(key);
        if (entry === undefined) {
            entry = { query: query!, known: {}, users: new Map(), running: false, again: false };
            entries.set(key, entry);
        }
        const used = entry;
        used.users.set(update, milliseconds);
        void load(used);
        return () => {
            used.users.delete(update);
            if (used.users.size === 0) {
                clearTimeout(used.timer);
            }
        };
    }, [key, allowed, milliseconds]);
    return allowed ? (entries.get(key)?.known ?? {}) : {};
}

export interface Outcome {
    ok: boolean;
    text: string;
    answer?: Answer;
}

// Calls a command that changes something, and has everything that is shown asked again, here and in the other pages.
export async function change(command: string, params: object = {}): Promise<Outcome> {
    try {
        const answer = await call(command, JSON.stringify(params));
        const { Status, FailReason } = answer.reply;
        const ok = answer.result === 0 && (Status === undefined || Status === "0");
        return { ok, text: ok ? "Saved." : `The gateway refused: ${FailReason ?? `Status ${Status}`}.`, answer };
    } catch (error) {
        const { message, rule } = error as Refusal;
        return { ok: false, text: rule === undefined ? message : `${message} (${rule})` };
    } finally {
        changed();
    }
}

export function changed(): void {
    refresh();
    otherPages.postMessage(null);
}
