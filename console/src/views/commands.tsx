// SPDX-License-Identifier: MIT
// Every command as a form, with request, reply and the device calls between them.
import { useEffect, useMemo, useState } from "preact/hooks";
import { call, control, type Refusal, session } from "../connection.ts";
import { useEvents } from "../events.ts";
import { textOf } from "../format.ts";
import { type JsonText, parseJson, printJson } from "../json_text.ts";
import { Card, say, Switch } from "../parts.tsx";
import { type CommandDescription, type RequestKey, useDescriptions } from "../protocol.ts";
import { agentCall, mqttCall, pythonCall } from "../same_call.ts";
import { changed, mayCall } from "../store.ts";
import { Keys } from "./command_form.tsx";

interface Sent {
    command: string;
    request: string;
    // Of the reply or of the error.
    text: string;
    ok: boolean;
    summary: string;
    milliseconds: number;
    at: Date;
}

const mostSent = 50;

// The last requests, the newest first; they survive a change of the view, not of the page.
let history: Sent[] = [];

const pretty = (json: JsonText): string => printJson(json, "    ");

const exampleOf = (description: CommandDescription): string =>
    pretty(parseJson(JSON.stringify(description.example.request)));

function parsed(text: string): JsonText | string {
    try {
        const json = parseJson(text.trim() === "" ? "{}" : text);
        return json.kind === "object" ? json : "The request has to be an object.";
    } catch (error) {
        return (error as Error).message;
    }
}

function hasSecret(keys: RequestKey[]): boolean {
    return keys.some((key) => key.secret === true || (key.items !== undefined && hasSecret(key.items)));
}

async function send(command: string, request: string, params: JsonText, showSecrets: boolean): Promise<Sent> {
    const at = new Date();
    const began = performance.now();
    const result = (text: string, ok: boolean, summary: string): Sent => ({
        command,
        request,
        text,
        ok,
        summary,
        milliseconds: Math.round(performance.now() - began),
        at,
    });
    try {
        const { result: code, reply, whole } = await call(command, printJson(params), showSecrets);
        const status = textOf(reply.Status);
        const ok = code === 0 && (status === "0" || reply.Status === undefined);
        return result(pretty(whole()), ok, code !== 0 ? `result ${code}` : status === "" ? "answered" : `Status ${status}`);
    } catch (error) {
        const { message, code, rule } = error as Refusal;
        return result([message, rule].filter(Boolean).join("\n"), false, code);
    }
}

function Finder(props: { commands: CommandDescription[]; current: string }) {
    const [filter, setFilter] = useState("");
    const wanted = filter.toLowerCase();
    const shown = props.commands.filter(({ command, summary }) => `${command} ${summary}`.toLowerCase().includes(wanted));
    const subjects = [...new Set(shown.map(({ subject }) => subject))].sort();
    return (
        <Card title="Commands" tools={<span class="muted">{shown.length}</span>}>
            <input
                type="search"
                placeholder="Find a command"
                aria-label="Find a command"
                value={filter}
                onInput={(event) => setFilter(event.currentTarget.value)}
            />
            <div class="finder" tabIndex={0} role="region" aria-label="List of commands">
                {subjects.map((subject) => (
                    <div key={subject}>
                        <h3>{subject.replaceAll("_", " ")}</h3>
                        <ul>
                            {shown
                                .filter((each) => each.subject === subject)
                                .map(({ command }) => (
                                    <li key={command}>
                                        <a
                                            href={`#/commands/${command}`}
                                            aria-current={command === props.current ? "true" : undefined}
                                        >
                                            {command}
                                        </a>
                                    </li>
                                ))}
                        </ul>
                    </div>
                ))}
            </div>
        </Card>
    );
}

function Trace(props: { command: string; since: Date | undefined }) {
    const [on, setOn] = useState<boolean | null>(null);
    useEffect(() => {
        control({ show: {} }).then(
            ({ reply }) => setOn(reply.trace === true),
            () => setOn(null),
        );
    }, []);
    // Calls of a worker that continues after the reply belong to no command.
    const calls = useEvents(/^device\.call$/).filter(
        ({ data, at }) =>
            (data.command ?? props.command) === props.command && props.since !== undefined && at >= props.since,
    );
    if (on === null) {
        return null;
    }
    const turn = async (value: boolean) => {
        try {
            await control({ trace: value });
            setOn(value);
        } catch (error) {
            say({ ok: false, text: (error as Error).message });
        }
    };
    return (
        <Card title="Device calls" tools={<Switch label="Trace" on={on} onChange={(value) => void turn(value)} />}>
            {calls.length === 0 ? (
                <p class="muted">{on ? "None since the request was sent." : "The trace is off."}</p>
            ) : (
                <ol class="trace" aria-label="Device calls" reversed={false}>
                    {calls.reverse().map(({ data }, at) => (
                        <li key={at} class={data.result === 0 ? "" : "bad"}>
                            <code>{textOf(data.text)}</code>
                        </li>
                    ))}
                </ol>
            )}
        </Card>
    );
}

function SameCall(props: { description: CommandDescription; request: JsonText }) {
    const { description, request } = props;
    const [kind, setKind] = useState("hgagent");
    const secret = hasSecret(description.request);
    const texts: Record<string, string> = {
        hgagent: agentCall(description.command, request, secret),
        MQTT: mqttCall(description.command, request, secret),
        Python: pythonCall(description.command, request, location.origin),
    };
    const copy = () =>
        navigator.clipboard.writeText(texts[kind]!).then(
            () => say({ ok: true, text: "Copied." }),
            () => say({ ok: false, text: "The browser does not allow copying." }),
        );
    return (
        <Card
            title="The same call"
            tools={
                <>
                    <div class="choice" role="group" aria-label="By">
                        {Object.keys(texts).map((name) => (
                            <button key={name} type="button" aria-pressed={name === kind} onClick={() => setKind(name)}>
                                {name}
                            </button>
                        ))}
                    </div>
                    <button type="button" onClick={() => void copy()}>
                        Copy
                    </button>
                </>
            }
        >
            <pre class="code" tabIndex={0} role="region" aria-label={`The same call by ${kind}`}>
                {texts[kind]}
            </pre>
        </Card>
    );
}

function Workbench(props: { description: CommandDescription }) {
    const { description } = props;
    const { command, effect } = description;
    const last = history.find((sent) => sent.command === command);
    const [text, setText] = useState(last?.request ?? exampleOf(description));
    const [sent, setSent] = useState(last);
    const [since, setSince] = useState(last?.at);
    const [waiting, setWaiting] = useState(false);
    const [secrets, setSecrets] = useState(false);
    const request = useMemo(() => parsed(text), [text]);
    const valid = typeof request !== "string";
    const submit = async (event: Event) => {
        event.preventDefault();
        setWaiting(true);
        setSince(new Date());
        const result = await send(command, text, request as JsonText, secrets);
        history = [result, ...history].slice(0, mostSent);
        setSent(result);
        setWaiting(false);
        if (effect !== "none") {
            changed();
        }
    };
    return (
        <div class="workbench">
            <form onSubmit={submit}>
                <Card
                    title={command}
                    tools={
                        <span class={`badge ${effect}`}>
                            {{ none: "changes nothing", setting: "changes a setting", lasting: "cannot be undone" }[effect]}
                        </span>
                    }
                >
                    <p>{description.summary}.</p>
                    {description.details && <p class="muted">{description.details}</p>}
                    {description.request.length === 0 && <p class="muted">The request has no keys.</p>}
                    {valid && (
                        <Keys
                            keys={description.request}
                            path=""
                            value={request}
                            onChange={(json) => setText(pretty(json!))}
                        />
                    )}
                    <div class="buttons">
                        <button type="submit" class="primary" disabled={!valid || waiting}>
                            {waiting ? "Waiting…" : "Send"}
                        </button>
                        <button type="button" onClick={() => setText(exampleOf(description))}>
                            Example
                        </button>
                        <button type="button" onClick={() => setText("{}")}>
                            Clear
                        </button>
                        {session!.secrets && <Switch label="Show secrets" on={secrets} onChange={setSecrets} />}
                    </div>
                </Card>
            </form>
            <div class="pair">
                <Card title="Request">
                    <textarea
                        class="code"
                        aria-label="Request"
                        rows={Math.min(24, Math.max(6, text.split("\n").length + 1))}
                        spellcheck={false}
                        value={text}
                        onInput={(event) => setText(event.currentTarget.value)}
                    />
                    {!valid && (
                        <p class="problem" role="alert">
                            {request}
                        </p>
                    )}
                </Card>
                <Card
                    title="Reply"
                    tools={
                        sent && (
                            <span class={sent.ok ? "state good" : "state bad"} data-reply={sent.at.getTime()}>
                                {sent.summary}, {sent.milliseconds} ms
                            </span>
                        )
                    }
                >
                    <pre class="code" tabIndex={0} role="region" aria-label="Text of the reply" aria-live="polite">
                        {sent?.text ?? ""}
                    </pre>
                </Card>
            </div>
            {session!.control && <Trace command={command} since={since} />}
            {valid && <SameCall description={description} request={request} />}
            <Past
                onChoose={(chosen) => {
                    setText(chosen.request);
                    setSent(chosen);
                }}
                command={command}
            />
        </div>
    );
}

function Past(props: { command: string; onChoose: (sent: Sent) => void }) {
    if (history.length === 0) {
        return null;
    }
    return (
        <Card title="History">
            <ol class="log" aria-label="History">
                {history.map((sent) => (
                    <li key={sent.at.getTime()}>
                        <time dateTime={sent.at.toISOString()}>{sent.at.toLocaleTimeString()}</time>
                        {sent.command === props.command ? (
                            <button type="button" class="link" onClick={() => props.onChoose(sent)}>
                                {sent.command}
                            </button>
                        ) : (
                            <a href={`#/commands/${sent.command}`}>{sent.command}</a>
                        )}
                        <span class={sent.ok ? "state good" : "state bad"}>{sent.summary}</span>
                        <span class="muted">{sent.milliseconds} ms</span>
                    </li>
                ))}
            </ol>
        </Card>
    );
}

export function Commands(props: { path: string }) {
    const descriptions = useDescriptions();
    const allowed = useMemo(() => descriptions?.commands.filter(({ command }) => mayCall(command)) ?? [], [descriptions]);
    const current = allowed.find(({ command }) => command === props.path) ?? allowed[0];
    if (current === undefined) {
        return <p class="muted">{descriptions === undefined ? "Loading…" : "Your role may not call any command."}</p>;
    }
    return (
        <div class="commands">
            <Finder commands={allowed} current={current.command} />
            <Workbench key={current.command} description={current} />
        </div>
    );
}
