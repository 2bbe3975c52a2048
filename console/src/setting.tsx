// SPDX-License-Identifier: MIT
// A button that opens a form for a setting, made from the description of its command.
import type { Command, Request } from "hg_protocol";
import { useState } from "preact/hooks";
import { call, session } from "./connection.ts";
import { textOf } from "./format.ts";
import { act, FormDialog, say, type Values } from "./parts.tsx";
import { fieldOf, paramsOf, useDescriptions } from "./protocol.ts";
import { mayCall } from "./store.ts";

export function Setting(props: {
    title: string;
    command: Command;
    // The query whose reply has the present values, with passwords if the role may see them.
    query: Command;
    params?: Record<string, string>;
    // The part of the reply that has the values, by default the reply itself.
    pick?: (reply: Record<string, any>) => Record<string, unknown> | undefined;
    // Keys that the form does not show, with their values.
    given?: Values;
    label?: string;
}) {
    const description = useDescriptions()?.commands.find(({ command }) => command === props.command);
    const [values, setValues] = useState<Values | null>(null);
    if (description === undefined || !mayCall(props.command)) {
        return null;
    }
    const { request } = description;
    const open = async () => {
        try {
            const answer = await call(props.query, JSON.stringify(props.params ?? {}), session!.secrets);
            const present = (props.pick ?? ((reply) => reply))(answer.reply) ?? {};
            const texts = request.map(({ key, secret }) => {
                const text = textOf(present[key]);
                return [key, (secret && !session!.secrets) || text === "-1" ? "" : text];
            });
            setValues({ ...Object.fromEntries(texts), ...props.params, ...props.given });
        } catch (error) {
            say({ ok: false, text: (error as Error).message });
        }
    };
    const hidden = new Set([...Object.keys(props.params ?? {}), ...Object.keys(props.given ?? {})]);
    return (
        <>
            <button type="button" aria-label={props.title} onClick={() => void open()}>
                {props.label ?? "Edit"}
            </button>
            {values && (
                <FormDialog
                    title={props.title}
                    fields={request
                        .filter(({ key, type }) => !hidden.has(key) && type === undefined)
                        .map((key) => fieldOf(key, values[key.key] ?? ""))}
                    values={values}
                    onSubmit={(changed) => act(props.command, paramsOf(request, changed) as Request<Command>)}
                    onClose={() => setValues(null)}
                />
            )}
        </>
    );
}
