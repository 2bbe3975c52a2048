// SPDX-License-Identifier: MIT
// Replies of the gateway, shared by the views, and kept up to date while a view shows them.
import type { Command, Commands, Report, Reports, Request } from "hg_protocol";
import { useEffect, useState } from "preact/hooks";
import { type Answer, Refusal, call, onEvent, onState, report, session, state } from "./connection.ts";
import { remember } from "./history.ts";

interface Query {
    command?: string;
    report?: string;
    params?: object;
}

type AnyKey<Union> = Union extends unknown ? keyof Union : never;
type AnyValue<Union, Key> = Union extends unknown ? (Key extends keyof Union ? Union[Key] : never) : never;
// What a reply may have, be it a success or a failure.
type Merged<Union> = { [Key in AnyKey<Union>]?: AnyValue<Union, Key> };

export type ReplyOf<C extends Command> = Merged<Commands[C]["reply"]>;
export type ReportOf<R extends Report> = Merged<Reports[R]["reply"]>;

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

// GET_QOS_INFO fails with the status of a success, and a reason.
const isSuccess = ({ result, reply: { Status, FailReason } }: Answer): boolean =>
    result === 0 && (Status === undefined || Status === "0") && FailReason === undefined;

const failureText = ({ result, reply: { Status, FailReason } }: Answer): string =>
    `The gateway refused: ${FailReason ?? (Status === undefined ? `result ${result}` : `Status ${Status}`)}.`;

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
        if (isSuccess(answer)) {
            entry.known = { reply: answer.reply };
            remember(entry.query.command ?? "", answer.reply);
        } else {
            entry.known = { reply: entry.known.reply, error: new Refusal(failureText(answer), "failed") };
        }
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

export const mayCall = (command: Command): boolean => session?.commands.includes(command) ?? false;

export const mayReport = (name: Report): boolean => session?.reports.includes(name) ?? false;

// The reply to a command, asked again every so often; nothing for null or without the right to it.
export function useReply<C extends Command>(
    query: { command: C; params?: Request<C> } | null,
    milliseconds?: number,
): Known<ReplyOf<C>> {
    return useQuery(query, milliseconds);
}

export function useReport<R extends Report>(query: { report: R } | null, milliseconds?: number): Known<ReportOf<R>> {
    return useQuery(query, milliseconds);
}

function useQuery(query: Query | null, milliseconds = 10000): Known<any> {
    const key = query === null ? "" : JSON.stringify(query);
    const allowed =
        query !== null && (query.command !== undefined ? mayCall(query.command as Command) : mayReport(query.report as Report));
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
export async function change<C extends Command>(command: C, params: Request<C>): Promise<Outcome> {
    try {
        const answer = await call(command, JSON.stringify(params));
        const ok = isSuccess(answer);
        return { ok, text: ok ? "Saved." : failureText(answer), answer };
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
