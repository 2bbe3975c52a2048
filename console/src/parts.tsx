// SPDX-License-Identifier: MIT
// The parts that all views are made of.
import type { Command, Request } from "hg_protocol";
import type { ComponentChildren } from "preact";
import { useEffect, useId, useRef, useState } from "preact/hooks";
import { call, session } from "./connection.ts";
import { byteLength, dbmText, signalLevel } from "./format.ts";
import { change, type Known, type Outcome, type ReplyOf } from "./store.ts";

// A message about the last action, which a screen reader reads at once.
let announce: (outcome: Outcome) => void = () => {};

export function Messages() {
    const [shown, setShown] = useState<Outcome | null>(null);
    announce = setShown;
    useEffect(() => {
        if (shown?.ok !== true) {
            return undefined;
        }
        const timer = setTimeout(() => setShown(null), 5000);
        return () => clearTimeout(timer);
    }, [shown]);
    return (
        <div class="messages" role="status" aria-live="polite">
            {shown && (
                <p class={shown.ok ? "message good" : "message bad"}>
                    {shown.text}
                    <button type="button" class="plain" aria-label="Close message" onClick={() => setShown(null)}>
                        ✕
                    </button>
                </p>
            )}
        </div>
    );
}

export const say = (outcome: Outcome): void => announce(outcome);

// Calls a command that changes something and shows the outcome.
export async function act<C extends Command>(command: C, params: Request<C>, saved?: string): Promise<Outcome> {
    const outcome = await change(command, params);
    announce(outcome.ok && saved !== undefined ? { ...outcome, text: saved } : outcome);
    return outcome;
}

export function Card(props: {
    title: string;
    children: ComponentChildren;
    tools?: ComponentChildren;
    wide?: boolean;
    known?: Known<unknown>;
}) {
    const id = useId();
    return (
        <section class={props.wide ? "card wide" : "card"} aria-labelledby={id}>
            <header>
                <h2 id={id}>{props.title}</h2>
                {props.tools}
            </header>
            {props.known?.error && <p class="problem">{props.known.error.message}</p>}
            {props.known === undefined || props.known.reply !== undefined ? (
                props.children
            ) : (
                !props.known.error && <p class="muted">Loading…</p>
            )}
        </section>
    );
}

// A table that scrolls within its card where the page is narrow. The columns from figuresFrom on are aligned as figures.
export function Table(props: {
    name: string;
    heads: ComponentChildren[];
    figuresFrom?: number;
    children: ComponentChildren;
}) {
    return (
        <div class="scroll" tabIndex={0} role="region" aria-label={`${props.name}, table`}>
            <table>
                <thead>
                    <tr>
                        {props.heads.map((head, at) => (
                            <th scope="col" key={at} class={at >= (props.figuresFrom ?? Infinity) ? "figure" : undefined}>
                                {head}
                            </th>
                        ))}
                    </tr>
                </thead>
                <tbody>{props.children}</tbody>
            </table>
        </div>
    );
}

export function Facts(props: { facts: [string, ComponentChildren][] }) {
    return (
        <dl class="facts">
            {props.facts
                .filter(([, value]) => value !== "" && value !== undefined)
                .map(([name, value]) => (
                    <div key={name}>
                        <dt>{name}</dt>
                        <dd>{value}</dd>
                    </div>
                ))}
        </dl>
    );
}

export function Switch(props: {
    label: string;
    // Distinguishes several of the same label.
    name?: string;
    on: boolean;
    disabled?: boolean;
    hideLabel?: boolean;
    onChange: (on: boolean) => void;
}) {
    return (
        <label class="switch">
            <input
                type="checkbox"
                role="switch"
                checked={props.on}
                disabled={props.disabled}
                aria-label={props.name ?? (props.hideLabel ? props.label : undefined)}
                onClick={(event) => {
                    // It moves when the gateway has confirmed the change.
                    event.preventDefault();
                    props.onChange(!props.on);
                }}
            />
            <span class="track" aria-hidden="true" />
            {!props.hideLabel && <span>{props.label}</span>}
        </label>
    );
}

export interface FieldDescription {
    name: string;
    label: string;
    type?: "text" | "number" | "time" | "password" | "select" | "checkbox";
    options?: (string | [value: string, label: string])[];
    required?: boolean;
    pattern?: string;
    hint?: string;
    min?: number;
    max?: number;
    // In bytes of UTF-8.
    longest?: number;
    autocomplete?: "username" | "current-password";
}

export function Field(props: { field: FieldDescription; value: string; onInput: (value: string) => void }) {
    const { field, value, onInput } = props;
    const id = useId();
    const hint = field.hint === undefined ? undefined : `${id}-hint`;
    const shared = { id, name: field.name, "aria-describedby": hint, required: field.required };
    // The gateway would cut a longer text. The browser counts characters, which can have several bytes.
    const isTooLong = (text: string) => field.longest !== undefined && byteLength(text) > field.longest;
    if (field.type === "checkbox") {
        return (
            <label class="check">
                <input
                    type="checkbox"
                    name={field.name}
                    checked={value === "1"}
                    onChange={(event) => onInput(event.currentTarget.checked ? "1" : "0")}
                />
                {field.label}
            </label>
        );
    }
    return (
        <div class="field">
            <label for={id}>{field.label}</label>
            {field.type === "select" ? (
                <select {...shared} value={value} onChange={(event) => onInput(event.currentTarget.value)}>
                    {field.options!.map((option) => {
                        const [key, label] = typeof option === "string" ? [option, option] : option;
                        return (
                            <option key={key} value={key}>
                                {label}
                            </option>
                        );
                    })}
                </select>
            ) : (
                <input
                    {...shared}
                    type={(field.type ?? "text") as "text"}
                    value={value}
                    pattern={field.pattern}
                    min={field.min}
                    max={field.max}
                    maxLength={field.longest}
                    autocomplete={field.autocomplete ?? (field.type === "password" ? "new-password" : "off")}
                    spellcheck={false}
                    onInput={({ currentTarget: input }) => {
                        input.setCustomValidity(isTooLong(input.value) ? `At most ${field.longest} bytes; some characters have several.` : "");
                        onInput(input.value);
                    }}
                />
            )}
            {hint && (
                <small id={hint} class="muted">
                    {field.hint}
                </small>
            )}
        </div>
    );
}

export type Values = Record<string, string>;

// A form in a dialog. It stays open until the gateway has accepted the values.
export function FormDialog(props: {
    title: string;
    fields: FieldDescription[];
    values: Values;
    button?: string;
    children?: ComponentChildren;
    onSubmit: (values: Values) => Promise<Outcome>;
    onClose: () => void;
}) {
    const dialog = useRef<HTMLDialogElement>(null);
    const [values, setValues] = useState(props.values);
    const [waiting, setWaiting] = useState(false);
    const [problem, setProblem] = useState("");
    const id = useId();
    useEffect(() => dialog.current!.showModal(), []);
    const submit = async (event: Event) => {
        event.preventDefault();
        setWaiting(true);
        const outcome = await props.onSubmit(values);
        setWaiting(false);
        if (outcome.ok) {
            dialog.current?.close();
        } else {
            setProblem(outcome.text);
        }
    };
    return (
        <dialog ref={dialog} aria-labelledby={id} onClose={props.onClose}>
            <form onSubmit={submit}>
                <h2 id={id}>{props.title}</h2>
                {props.children}
                {props.fields.map((field) => (
                    <Field
                        key={field.name}
                        field={field}
                        value={values[field.name] ?? ""}
                        onInput={(value) => setValues({ ...values, [field.name]: value })}
                    />
                ))}
                {problem && (
                    <p class="problem" role="alert">
                        {problem}
                    </p>
                )}
                <div class="buttons">
                    <button type="button" onClick={() => dialog.current!.close()}>
                        Cancel
                    </button>
                    <button type="submit" class="primary" disabled={waiting}>
                        {props.button ?? "Save"}
                    </button>
                </div>
            </form>
        </dialog>
    );
}

// A button whose action is confirmed first. `name` distinguishes several of the same label.
export function ConfirmButton(props: {
    label: string;
    name?: string;
    question: string;
    class?: string;
    onConfirm: () => Promise<Outcome>;
}) {
    const [asked, setAsked] = useState(false);
    return (
        <>
            <button type="button" class={props.class} aria-label={props.name} onClick={() => setAsked(true)}>
                {props.label}
            </button>
            {asked && (
                <FormDialog
                    title={props.name ?? props.label}
                    fields={[]}
                    values={{}}
                    button={props.label}
                    onSubmit={props.onConfirm}
                    onClose={() => setAsked(false)}
                >
                    <p>{props.question}</p>
                </FormDialog>
            )}
        </>
    );
}

// Requests a value that the service masks by default.
export async function secretOf<C extends Command>(
    command: C,
    params: Request<C>,
    pick: (reply: ReplyOf<C>) => unknown,
): Promise<string> {
    const answer = await call(command, JSON.stringify(params), true);
    return String(pick(answer.reply as ReplyOf<C>) ?? "");
}

export function Secret(props: { label: string; fetch: () => Promise<string> }) {
    const [value, setValue] = useState<string | null>(null);
    if (session?.secrets !== true) {
        return <span class="muted">hidden</span>;
    }
    const show = async () => {
        try {
            setValue(await props.fetch());
        } catch (error) {
            say({ ok: false, text: (error as Error).message });
        }
    };
    return (
        <span class="secret">
            {value === null ? "••••••••" : <code>{value}</code>}{" "}
            <button
                type="button"
                class="link"
                aria-label={`${value === null ? "Show" : "Hide"} ${props.label}`}
                onClick={() => (value === null ? void show() : setValue(null))}
            >
                {value === null ? "Show" : "Hide"}
            </button>
        </span>
    );
}

export function Signal(props: { dbm: number | undefined }) {
    const level = signalLevel(props.dbm);
    return (
        <span class="signal">
            <Bars level={level} />
            {dbmText(props.dbm)}
        </span>
    );
}

export function Bars(props: { level: number }) {
    return (
        <svg class="bars" width="14" height="12" aria-hidden="true">
            <BarShapes level={props.level} />
        </svg>
    );
}

export function BarShapes(props: { level: number }) {
    return (
        <g class={`level${props.level}`}>
            {[1, 2, 3, 4].map((bar) => (
                <rect
                    key={bar}
                    x={(bar - 1) * 3.6}
                    y={12 - bar * 3}
                    width="2.6"
                    height={bar * 3}
                    rx="0.6"
                    class={bar <= props.level ? "lit" : "unlit"}
                />
            ))}
        </g>
    );
}

// A curve of the last values, scaled to the largest.
export function Sparkline(props: { values: readonly number[]; label: string; width?: number; height?: number }) {
    const { values, width = 96, height = 24 } = props;
    const most = Math.max(1, ...values);
    const step = width / Math.max(values.length - 1, 1);
    const points = values.map((value, at) => `${(at * step).toFixed(1)},${(height - 1 - (value / most) * (height - 2)).toFixed(1)}`);
    return (
        <svg class="sparkline" viewBox={`0 0 ${width} ${height}`} width={width} height={height} role="img" aria-label={props.label}>
            {values.length > 1 && (
                <>
                    <polygon points={`0,${height} ${points.join(" ")} ${width},${height}`} />
                    <polyline points={points.join(" ")} />
                </>
            )}
        </svg>
    );
}

export function Meter(props: { label: string; percent: number }) {
    return (
        <div class="meter">
            <span>{props.label}</span>
            <progress max="100" value={props.percent} aria-label={props.label} />
            <span class="figure">{props.percent} %</span>
        </div>
    );
}

export const State = (props: { good: boolean; children: ComponentChildren }) => (
    <span class={props.good ? "state good" : "state bad"}>{props.children}</span>
);
