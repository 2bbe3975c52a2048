// SPDX-License-Identifier: MIT
// The session with the service, and its WebSocket: requests, events, and reconnecting.
import { memberOf, parseJson, type JsonText } from "./json_text.ts";

export interface Session {
    who: string;
    role: string;
    secrets: boolean;
    control: boolean;
    commands: string[];
    reports: string[];
    service: string;
    protocol: string;
    epoch: string;
    device: string;
}

export type State = "starting" | "login" | "open" | "lost";

export interface Answer {
    result: number;
    // Values as JSON.parse() gives them; of a repeated key, the last.
    reply: Record<string, unknown>;
    // The same reply with everything that it contains; only parsed where it is wanted.
    whole: () => JsonText;
}

export interface GatewayEvent {
    name: string;
    data: Record<string, unknown>;
    at: Date;
}

// A request that the service refused or could not answer.
export class Refusal extends Error {
    constructor(
        message: string,
        readonly code: string,
        readonly rule?: string,
    ) {
        super(message);
    }
}

interface Waiting {
    resolve: (answer: Answer) => void;
    reject: (error: Refusal) => void;
}

// More than these at once would be refused, since the service lets sixteen requests of a client wait.
const mostInFlight = 6;
const shortestPause = 250;
const longestPause = 5000;

type Listener<T> = (value: T) => void;

function listeners<T>() {
    const all = new Set<Listener<T>>();
    return {
        add: (listener: Listener<T>) => {
            all.add(listener);
            return () => void all.delete(listener);
        },
        call: (value: T) => all.forEach((listener) => listener(value)),
    };
}

const stateListeners = listeners<State>();
const eventListeners = listeners<GatewayEvent>();
export const onState = stateListeners.add;
export const onEvent = eventListeners.add;

export let state: State = "starting";
export let session: Session | undefined;

let socket: WebSocket | undefined;
let lastId = 0;
let pause = shortestPause;
// Logging in and the focus may each connect: only the last attempt counts.
let attempts = 0;
const sent = new Map<number, Waiting>();
const queue: { line: (id: number) => string; waiting: Waiting }[] = [];

function setState(value: State): void {
    state = value;
    stateListeners.call(value);
}

const lost = () => new Refusal("The connection to the service was lost.", "lost");

function sendQueued(): void {
    while (socket?.readyState === WebSocket.OPEN && sent.size < mostInFlight) {
        const next = queue.shift();
        if (next === undefined) {
            return;
        }
        lastId += 1;
        sent.set(lastId, next.waiting);
        socket.send(next.line(lastId));
    }
}

function send(line: (id: number) => string): Promise<Answer> {
    return new Promise((resolve, reject) => {
        if (state !== "open") {
            reject(lost());
            return;
        }
        queue.push({ line, waiting: { resolve, reject } });
        sendQueued();
    });
}

// `params` is the text of a JSON object, which may have repeated keys.
export function call(command: string, params = "{}", showSecrets = false): Promise<Answer> {
    const secrets = showSecrets ? ',"secrets":"show"' : "";
    return send((id) => `{"id":${id},"command":${JSON.stringify(command)}${secrets},"params":${params}}`);
}

export function report(name: string, params = "{}"): Promise<Answer> {
    return send((id) => `{"id":${id},"report":${JSON.stringify(name)},"params":${params}}`);
}

export function control(what: Record<string, unknown>): Promise<Answer> {
    return send((id) => JSON.stringify({ id, control: what }));
}

function receive(text: string): void {
    const line = JSON.parse(text);
    if (typeof line.event === "string") {
        eventListeners.call({ name: line.event, data: line.data ?? {}, at: new Date() });
        return;
    }
    // An answer to a line that the service could not read has no number. Answers come in the order of the requests.
    const id = line.id ?? sent.keys().next().value;
    const waiting = sent.get(id);
    if (waiting === undefined) {
        return;
    }
    sent.delete(id);
    if (line.error !== undefined) {
        waiting.reject(new Refusal(line.error, line.code, line.rule));
    } else {
        const whole = () => memberOf(parseJson(text), "reply") ?? { kind: "object" as const, members: [] };
        waiting.resolve({ result: line.result, reply: line.reply ?? {}, whole });
    }
    sendQueued();
}

function close(): void {
    socket = undefined;
    const waiting = [...sent.values(), ...queue.map((entry) => entry.waiting)];
    sent.clear();
    queue.length = 0;
    waiting.forEach(({ reject }) => reject(lost()));
}

function retry(): void {
    setState("lost");
    setTimeout(() => void connect(), pause);
    pause = Math.min(pause * 2, longestPause);
}

async function connect(): Promise<void> {
    attempts += 1;
    const attempt = attempts;
    const isLast = () => attempt === attempts;
    try {
        const response = await fetch("/api/session");
        if (!isLast()) {
            return;
        }
        if (response.status === 401) {
            setState("login");
            return;
        }
        if (!response.ok) {
            retry();
            return;
        }
        session = await response.json();
    } catch {
        if (isLast()) {
            retry();
        }
        return;
    }
    if (!isLast()) {
        return;
    }
    const opening = new WebSocket(`${location.origin.replace(/^http/, "ws")}/api/socket`);
    opening.onopen = () => {
        if (!isLast()) {
            opening.close();
            return;
        }
        socket = opening;
        pause = shortestPause;
        setState("open");
        // Without the right to all events, those that the role may see are sent.
        send((id) => JSON.stringify({ id, subscribe: "*" })).catch(() => {});
    };
    opening.onmessage = (message) => receive(message.data);
    opening.onclose = () => {
        if (isLast()) {
            close();
            retry();
        }
    };
}

// Exchanges the token or the password for a cookie. Returns an error message, empty on success.
export async function logIn(credentials: { token: string } | { user: string; password: string }): Promise<string> {
    try {
        const response = await fetch("/api/login", { method: "POST", body: JSON.stringify(credentials) });
        if (!response.ok) {
            const { error } = await response.json().catch(() => ({ error: undefined }));
            return error ?? (response.status === 401 ? "That is not correct." : "The service refuses to log you in.");
        }
    } catch {
        return "The service does not answer.";
    }
    await connect();
    return "";
}

export async function logOut(): Promise<void> {
    await fetch("/api/logout", { method: "POST" }).catch(() => undefined);
    location.reload();
}

// The address that the service prints ends in #token=HEX.
const tokenOfAddress = (): string | undefined => /^#token=(\w+)$/.exec(location.hash)?.[1];

export async function start(): Promise<void> {
    // Another page of this browser may have logged in, and its cookie is also ours.
    addEventListener("focus", () => {
        if (state === "login") {
            void connect();
        }
    });
    // An address that is opened where the page is already changes only the part behind the #.
    addEventListener("hashchange", () => {
        if (tokenOfAddress() !== undefined) {
            location.reload();
        }
    });
    const token = tokenOfAddress();
    if (token === undefined) {
        await connect();
        return;
    }
    // It must not stay in the browser's history.
    history.replaceState(null, "", location.pathname);
    if ((await logIn({ token })) !== "") {
        setState("login");
    }
}
