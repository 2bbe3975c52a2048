// SPDX-License-Identifier: MIT
// JSON that keeps what JSON.parse() drops: the order of all keys, repeated keys, and numbers as they were written.

export type JsonText =
    | { kind: "object"; members: [key: string, value: JsonText][] }
    | { kind: "array"; items: JsonText[] }
    | { kind: "string"; value: string }
    | { kind: "other"; text: string }; // a number, true, false or null

const deepest = 1000;

// Throws a SyntaxError that names the position.
export function parseJson(text: string): JsonText {
    let at = 0;
    const fail = (what: string): never => {
        throw new SyntaxError(`${what} at character ${at + 1}`);
    };
    const match = (pattern: RegExp): string | undefined => {
        pattern.lastIndex = at;
        const found = pattern.exec(text)?.[0];
        at += found?.length ?? 0;
        return found;
    };
    const next = (letter: string): boolean => {
        match(/[ \t\r\n]*/y);
        if (text[at] !== letter) {
            return false;
        }
        at += 1;
        match(/[ \t\r\n]*/y);
        return true;
    };
    const string = (): string => {
        const found = match(/"(?:[^"\\\u0000-\u001f]|\\(?:["\\/bfnrt]|u[0-9a-fA-F]{4}))*"/y);
        return found === undefined ? fail("a string is expected") : JSON.parse(found);
    };
    // Calls `element` for each, up to the closing letter.
    const list = (end: string, element: () => void): void => {
        if (next(end)) {
            return;
        }
        do {
            element();
        } while (next(","));
        if (!next(end)) {
            fail(`"," or "${end}" is expected`);
        }
    };
    const value = (depth: number): JsonText => {
        if (depth > deepest) {
            fail("nested too deeply");
        }
        if (next("{")) {
            const members: [string, JsonText][] = [];
            list("}", () => {
                const key = string();
                if (!next(":")) {
                    fail('":" is expected');
                }
                members.push([key, value(depth + 1)]);
            });
            return { kind: "object", members };
        }
        if (next("[")) {
            const items: JsonText[] = [];
            list("]", () => items.push(value(depth + 1)));
            return { kind: "array", items };
        }
        if (text[at] === '"') {
            return { kind: "string", value: string() };
        }
        const other = match(/-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?|true|false|null/y);
        return other === undefined ? fail("a value is expected") : { kind: "other", text: other };
    };
    match(/[ \t\r\n]*/y);
    const whole = value(0);
    match(/[ \t\r\n]*/y);
    return at === text.length ? whole : fail("something follows the value");
}

// With `indent`, each member and element is on its own line.
export function printJson(json: JsonText, indent = "", margin = ""): string {
    const inner = margin + indent;
    const join = (parts: string[], open: string, close: string): string => {
        if (parts.length === 0) {
            return open + close;
        }
        return indent === ""
            ? open + parts.join(", ") + close
            : `${open}\n${inner}${parts.join(`,\n${inner}`)}\n${margin}${close}`;
    };
    switch (json.kind) {
        case "object":
            return join(
                json.members.map(([key, value]) => `${JSON.stringify(key)}: ${printJson(value, indent, inner)}`),
                "{",
                "}",
            );
        case "array":
            return join(json.items.map((item) => printJson(item, indent, inner)), "[", "]");
        case "string":
            return JSON.stringify(json.value);
        case "other":
            return json.text;
    }
}

// The first member of this name, as the plug-in reads it.
export function memberOf(json: JsonText | undefined, key: string): JsonText | undefined {
    return json?.kind === "object" ? json.members.find(([name]) => name === key)?.[1] : undefined;
}
