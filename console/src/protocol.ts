// SPDX-License-Identifier: MIT
// The descriptions of the commands, which the service provides.
import type { Command } from "hg_protocol";
import { useEffect, useState } from "preact/hooks";
import { onState } from "./connection.ts";
import type { FieldDescription, Values } from "./parts.tsx";

export interface RequestKey {
    key: string;
    required: boolean;
    meaning: string;
    type?: "text" | "array" | "object" | "any";
    items?: RequestKey[];
    max_bytes?: number;
    max_items?: number;
    form?: string;
    unit?: string;
    values?: string[];
    pattern?: string;
    example?: string;
    secret?: boolean;
    found_in?: { command: Command; list?: string; key: string; separator?: string };
}

export interface CommandDescription {
    command: Command;
    summary: string;
    details?: string;
    subject: string;
    effect: "none" | "setting" | "lasting";
    device_calls?: string[];
    request: RequestKey[];
    replies: { outcome: string; when: string }[];
    example: { request: Record<string, unknown>; reply: Record<string, unknown> };
}

export interface Descriptions {
    commands: CommandDescription[];
}

let loading: Promise<Descriptions> | undefined;

async function load(): Promise<Descriptions> {
    const response = await fetch("/api/protocol.json");
    if (!response.ok) {
        throw new Error("The descriptions of the commands cannot be loaded.");
    }
    return response.json();
}

export function useDescriptions(): Descriptions | undefined {
    const [known, setKnown] = useState<Descriptions>();
    useEffect(() => {
        const get = () => {
            loading ??= load();
            loading.then(setKnown, () => (loading = undefined));
        };
        get();
        return onState((state) => void (state === "open" && get()));
    }, []);
    return known;
}

const capital = (text: string): string => text.charAt(0).toUpperCase() + text.slice(1);

// The field of a form that changes this key from its present value.
export function fieldOf(key: RequestKey, value: string): FieldDescription {
    const values = key.values?.filter((each) => each !== "-1");
    const meaning = key.meaning.split(";")[0]!;
    const shared = { name: key.key, required: key.required && key.pattern !== undefined };
    if (values?.join() === "0,1") {
        return { ...shared, type: "checkbox", label: capital(meaning.replace(/^whether /, "")) };
    }
    const label = capital(meaning) + (key.unit === undefined ? "" : ` in ${key.unit}`);
    if (values !== undefined) {
        const options = value === "" || values.includes(value) ? values : [value, ...values];
        return { ...shared, type: "select", label, options: key.required ? options : [["", "unchanged"], ...options] };
    }
    return {
        ...shared,
        label,
        type: key.secret ? "password" : "text",
        pattern: key.pattern,
        hint: key.form === "any text" ? undefined : key.form,
        longest: key.max_bytes,
    };
}

// The parameters of a setting: optional keys without a value are left out.
export function paramsOf(keys: RequestKey[], values: Values): Values {
    return Object.fromEntries(
        keys
            .filter(({ key, required }) => required || (values[key] ?? "") !== "")
            .map(({ key }) => [key, values[key] ?? ""]),
    );
}
