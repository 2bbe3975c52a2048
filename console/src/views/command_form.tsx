// SPDX-License-Identifier: MIT
// The fields of a request, made from the description of its command.
import { useId } from "preact/hooks";
import { byteLength, textOf } from "../format.ts";
import { type JsonText, memberOf } from "../json_text.ts";
import type { RequestKey } from "../protocol.ts";
import { useReply } from "../store.ts";

type Change = (json: JsonText | undefined) => void;

// The object with the first member of this name replaced, or removed for undefined.
function withMember(json: JsonText | undefined, key: string, value: JsonText | undefined): JsonText {
    const members: [string, JsonText][] = json?.kind === "object" ? [...json.members] : [];
    const at = members.findIndex(([name]) => name === key);
    if (value === undefined) {
        members.splice(at, at < 0 ? 0 : 1);
    } else {
        members.splice(at < 0 ? members.length : at, 1, [key, value]);
    }
    return { kind: "object", members };
}

const emptyValue = (key: RequestKey): JsonText =>
    key.type === "array"
        ? { kind: "array", items: [] }
        : key.type === "object"
          ? emptyObject(key.items ?? [])
          : { kind: "string", value: key.example ?? "" };

const emptyObject = (keys: RequestKey[]): JsonText => ({
    kind: "object",
    members: keys.filter(({ required }) => required).map((key) => [key.key, emptyValue(key)]),
});

function valuesFound(key: RequestKey, reply: Record<string, any> | undefined): string[] {
    const { found_in: source } = key;
    if (source === undefined || reply === undefined) {
        return [];
    }
    const records: Record<string, unknown>[] = source.list === undefined ? [reply] : (reply[source.list] ?? []);
    return records
        .map((record) => textOf(record[source.key]))
        .flatMap((text) => (source.separator === undefined ? [text] : text.split(source.separator)))
        .filter(Boolean);
}

function TextKey(props: { id: string; label: string; describedBy: string; field: RequestKey; value: JsonText; onChange: Change }) {
    const { field, value } = props;
    const source = field.found_in?.command;
    const found = useReply(source === undefined ? null : { command: source }, 60000).reply;
    const offered = [...new Set([...(field.values ?? []), ...valuesFound(field, found), ...(field.example ? [field.example] : [])])];
    const text = value.kind === "string" ? value.value : value.kind === "other" ? value.text : "";
    const bytes = byteLength(text);
    return (
        <>
            <input
                id={props.id}
                type="text"
                aria-label={props.label}
                aria-describedby={props.describedBy}
                list={offered.length > 0 ? `${props.id}-values` : undefined}
                autocomplete="off"
                spellcheck={false}
                value={text}
                onInput={(event) => props.onChange({ kind: "string", value: event.currentTarget.value })}
            />
            {offered.length > 0 && (
                <datalist id={`${props.id}-values`}>
                    {offered.map((each) => (
                        <option key={each} value={each} />
                    ))}
                </datalist>
            )}
            {field.max_bytes !== undefined && bytes > field.max_bytes && (
                <small class="problem">
                    {bytes} bytes; what follows byte {field.max_bytes} is cut off
                </small>
            )}
        </>
    );
}

function Key(props: { field: RequestKey; path: string; value: JsonText | undefined; onChange: Change }) {
    const { field, value } = props;
    const id = useId();
    const path = props.path === "" ? field.key : `${props.path} ${field.key}`;
    const notes = [
        field.meaning,
        field.form === "any text" ? "" : field.form,
        field.unit,
        field.max_bytes === undefined ? "" : `${field.max_bytes} bytes at most`,
        field.secret ? "secret" : "",
    ];
    return (
        <div class="key">
            <label class="check">
                <input
                    type="checkbox"
                    aria-label={`Send ${path}`}
                    checked={value !== undefined}
                    onChange={(event) => props.onChange(event.currentTarget.checked ? emptyValue(field) : undefined)}
                />
                <code>{field.key}</code>
                {field.required && <span class="badge">required</span>}
            </label>
            <small class="muted" id={`${id}-notes`}>
                {notes.filter(Boolean).join("; ")}
            </small>
            {value !== undefined &&
                (field.type === "array" ? (
                    <Elements field={field} path={path} value={value} onChange={props.onChange} />
                ) : field.type === "object" ? (
                    <Keys keys={field.items ?? []} path={path} value={value} onChange={props.onChange} />
                ) : (
                    <TextKey
                        id={id}
                        label={path}
                        describedBy={`${id}-notes`}
                        field={field}
                        value={value}
                        onChange={props.onChange}
                    />
                ))}
        </div>
    );
}

function Elements(props: { field: RequestKey; path: string; value: JsonText; onChange: Change }) {
    const { field, path } = props;
    const items = props.value.kind === "array" ? props.value.items : [];
    const change = (changed: JsonText[]) => props.onChange({ kind: "array", items: changed });
    return (
        <div>
            {items.map((item, at) => (
                <div class="element" key={at} role="group" aria-label={`${path} ${at + 1}`}>
                    {field.items === undefined ? (
                        <input
                            type="text"
                            aria-label={`${path} ${at + 1}`}
                            value={item.kind === "string" ? item.value : ""}
                            onInput={(event) =>
                                change(items.with(at, { kind: "string", value: event.currentTarget.value }))
                            }
                        />
                    ) : (
                        <Keys
                            keys={field.items}
                            path={`${path} ${at + 1}`}
                            value={item}
                            onChange={(changed) => change(items.with(at, changed!))}
                        />
                    )}
                    <button
                        type="button"
                        aria-label={`Remove ${path} ${at + 1}`}
                        onClick={() => change(items.filter((_, other) => other !== at))}
                    >
                        Remove
                    </button>
                </div>
            ))}
            <button
                type="button"
                aria-label={`Add to ${path}`}
                onClick={() =>
                    change([...items, field.items === undefined ? { kind: "string", value: "" } : emptyObject(field.items)])
                }
            >
                Add
            </button>
        </div>
    );
}

export function Keys(props: { keys: RequestKey[]; path: string; value: JsonText | undefined; onChange: Change }) {
    return (
        <>
            {props.keys.map((field) => (
                <Key
                    key={field.key}
                    field={field}
                    path={props.path}
                    value={memberOf(props.value, field.key)}
                    onChange={(value) => props.onChange(withMember(props.value, field.key, value))}
                />
            ))}
        </>
    );
}
