// SPDX-License-Identifier: MIT
// A button that opens a form for a setting, made from the description of its command.
import type { Command, Request } from "hg_protocol";
import { useState } from "preact/hooks";
import { call, session } from "./connection.ts";
import { textOf } from "./format.ts";
import { act, FormDialog, say, type Values } from "./parts.tsx";
import { fieldOf, paramsOf, type RequestKey, useDescriptions } from "./protocol.ts";
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
    // Keys of passwords that the gateway has and the role may not see.
    const [unseen, setUnseen] = useState<ReadonlySet<string>>(new Set());
    if (description === undefined || !mayCall(props.command)) {
        return null;
    }
    const { request } = description;
    const open = async () => {
        try {
            const answer = await call(props.query, JSON.stringify(props.params ?? {}), session!.secrets);
            const present = (props.pick ?? ((reply) => reply))(answer.reply) ?? {};
            const isUnseen = ({ key, secret }: RequestKey) => secret && !session!.secrets && textOf(present[key]) !== "";
            const texts = request.map((key) => {
                const text = textOf(present[key.key]);
                return [key.key, isUnseen(key) || text === "-1" ? "" : text];
            });
            setUnseen(new Set(request.filter(isUnseen).map(({ key }) => key)));
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
                        .map((key) => {
                            const field = fieldOf(key, values[key.key] ?? "");
                            // An empty one would replace it.
                            return key.required && unseen.has(key.key)
                                ? { ...field, required: true, hint: "Your role may not see it, so it has to be entered again." }
                                : field;
                        })}
                    values={values}
                    onSubmit={(changed) => act(props.command, paramsOf(request, changed) as Request<Command>)}
                    onClose={() => setValues(null)}
                />
            )}
        </>
    );
}
