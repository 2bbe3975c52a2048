// SPDX-License-Identifier: MIT
// Inspection of the gateway and its optimisation, with the values before and after.
import type { Command } from "hg_protocol";
import { useState } from "preact/hooks";
import { call } from "../connection.ts";
import { numberOf, rate, textOf } from "../format.ts";
import { Card, Facts, say } from "../parts.tsx";
import { changed, mayCall } from "../store.ts";

type Values = Record<string, string>;

const upText = (value: string): string => (value === "1" ? "up" : "down");
const percent = (value: string): string => `${value} %`;

const rows: { key: string; label: string; text?: (value: string) => string }[] = [
    { key: "WanStatus", label: "Internet connection" },
    { key: "DnsStatus", label: "DNS", text: upText },
    { key: "NetQuality", label: "Quality" },
    { key: "CpuPercent", label: "Processor", text: percent },
    { key: "MemPercent", label: "Memory", text: percent },
    { key: "Channel", label: "Wi-Fi channel" },
    { key: "Congestion", label: "Congestion of the channel", text: percent },
    { key: "PowerLevel", label: "Transmit power", text: percent },
    { key: "Security", label: "Security of the Wi-Fi" },
    { key: "WiFiDevNum", label: "Devices by Wi-Fi" },
    { key: "LanDevNum", label: "Devices" },
    { key: "ProtectedDevNum", label: "Under parental control" },
];

const inspections: Command[] = [
    "HG_INSPECTION",
    "HG_NETCONN_INSPECTION",
    "HG_NETQUAL_INSPECTION",
    "HG_RESOURCE_INSPECTION",
    "HG_WIFI_INSPECTION",
];

const optimisations: Command[] = [
    "HG_NETCONN_OPTIMIZATION",
    "HG_NETQUAL_OPTIMIZATION",
    "HG_RESOURCE_OPTIMIZATION",
    "HG_WIFI_CHANNEL_POWER_OPTIMIZATION",
];

// Calls those that the role may call, and puts the values of their replies together.
async function collect(commands: Command[], params: object = {}): Promise<Values> {
    const values: Values = {};
    for (const command of commands.filter(mayCall)) {
        const { reply } = await call(command, JSON.stringify(params));
        if (reply.Status !== "0") {
            throw new Error(`${command} has failed: ${reply.FailReason ?? "no reason is given"}`);
        }
        rows.filter(({ key }) => textOf(reply[key]) !== "").forEach(({ key }) => (values[key] = textOf(reply[key])));
    }
    return values;
}

function Results(props: { before: Values; after: Values | null }) {
    const { before, after } = props;
    return (
        <table>
            <thead>
                <tr>
                    <th scope="col">Value</th>
                    <th scope="col">{after === null ? "Now" : "Before"}</th>
                    {after && <th scope="col">After</th>}
                </tr>
            </thead>
            <tbody>
                {rows
                    .filter(({ key }) => before[key] !== undefined)
                    .map(({ key, label, text = String }) => (
                        <tr key={key}>
                            <td>{label}</td>
                            <td>{text(before[key]!)}</td>
                            {after && (
                                <td class={after[key] === before[key] ? "" : "different"}>
                                    {after[key] === undefined ? "–" : text(after[key]!)}
                                </td>
                            )}
                        </tr>
                    ))}
            </tbody>
        </table>
    );
}

function LineSpeed() {
    const [result, setResult] = useState<Record<string, unknown> | null>(null);
    const [running, setRunning] = useState(false);
    const measure = async () => {
        setRunning(true);
        try {
            setResult((await call("HG_SPEEDTEST_REQUEST")).reply);
        } catch (error) {
            say({ ok: false, text: (error as Error).message });
        }
        setRunning(false);
    };
    return (
        <Card title="Speed of the line">
            {result && (
                <Facts
                    facts={[
                        ["Download", rate(numberOf(result.DownBandWidth) ?? 0)],
                        ["Upload", rate(numberOf(result.UpBandWidth) ?? 0)],
                        ["Delay", `${textOf(result.Delay)} ms`],
                    ]}
                />
            )}
            <div class="buttons">
                <button type="button" disabled={running} onClick={() => void measure()}>
                    {running ? "Measuring…" : "Measure"}
                </button>
            </div>
        </Card>
    );
}

export function Inspection() {
    const [before, setBefore] = useState<Values | null>(null);
    const [after, setAfter] = useState<Values | null>(null);
    const [running, setRunning] = useState("");
    const run = async (what: string, action: () => Promise<void>) => {
        setRunning(what);
        try {
            await action();
        } catch (error) {
            say({ ok: false, text: (error as Error).message });
        }
        setRunning("");
    };
    const inspect = () =>
        run("inspect", async () => {
            setBefore(await collect(inspections));
            setAfter(null);
        });
    const optimise = () =>
        run("optimise", async () => {
            const first = await collect(inspections);
            setBefore(first);
            setAfter(null);
            const { Channel, PowerLevel } = first;
            const reached = await collect(optimisations, { Channel, PowerLevel });
            setAfter({ ...(await collect(inspections)), ...reached });
            changed();
        });
    return (
        <div class="cards">
            <Card title="Inspection" wide>
                {before === null ? (
                    <p class="muted">An inspection changes nothing. An optimisation may change the channel and the transmit power.</p>
                ) : (
                    <Results before={before} after={after} />
                )}
                <div class="buttons">
                    <button type="button" class="primary" disabled={running !== ""} onClick={() => void inspect()}>
                        {running === "inspect" ? "Inspecting…" : "Inspect"}
                    </button>
                    {optimisations.some(mayCall) && (
                        <button type="button" disabled={running !== ""} onClick={() => void optimise()}>
                            {running === "optimise" ? "Optimising…" : "Optimise"}
                        </button>
                    )}
                </div>
            </Card>
            {mayCall("HG_SPEEDTEST_REQUEST") && <LineSpeed />}
        </div>
    );
}
