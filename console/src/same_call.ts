// SPDX-License-Identifier: MIT
// The same call by other means, as text to copy.
import { type JsonText, printJson } from "./json_text.ts";

// As one word of a POSIX shell.
export function quoted(text: string): string {
    return /^[A-Za-z0-9_./:,@%+=-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`;
}

// A password has no place on a command line, which everybody on the machine can read.
function onStandardInput(call: string, json: string): string {
    return `${call} - <<'END'\n${json}\nEND`;
}

export function agentCall(command: string, params: JsonText, hasSecret: boolean): string {
    const call = `hgagent call --socket "$XDG_RUNTIME_DIR/hgagent.sock" ${command}`;
    const members = params.kind === "object" ? params.members : [];
    if (hasSecret) {
        return onStandardInput(call, printJson(params));
    }
    if (members.every(([key, value]) => value.kind === "string" && /^[A-Za-z0-9_]+$/.test(key))) {
        return [call, ...members.map(([key, value]) => quoted(`${key}=${(value as { value: string }).value}`))].join(" ");
    }
    return `${call} ${quoted(printJson(params))}`;
}

export function mqttCall(command: string, params: JsonText, hasSecret: boolean): string {
    const call = `mosquitto_rr -V mqttv5 -t "gateway/$ID/command/${command}" -e "gateway/$ID/reply/$USER"`;
    const json = printJson(params);
    return hasSecret ? `${call} -s <<'END'\n${json}\nEND` : `${call} -m ${quoted(json)}`;
}

export function pythonCall(command: string, params: JsonText, origin: string): string {
    return `import json, os, urllib.request

request = urllib.request.Request(
    ${JSON.stringify(`${origin}/api/command/${command}`)},
    data=${pythonText(printJson(params))}.encode(),
    headers={"Authorization": "Bearer " + os.environ["HGAGENT_TOKEN"], "Content-Type": "application/json"},
)
with urllib.request.urlopen(request) as response:
    print(json.load(response))`;
}

// A string literal of Python; JSON's escapes are also Python's.
const pythonText = (text: string): string => JSON.stringify(text);
