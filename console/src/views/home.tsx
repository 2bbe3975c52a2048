// SPDX-License-Identifier: MIT
// The mesh as a drawing, and the state of the gateway.
import { useEffect, useMemo, useRef, useState } from "preact/hooks";
import { accessText, dbmText, duration, isOn, numberOf, rate, signalLevel, textOf } from "../format.ts";
import { traffic } from "../history.ts";
import { layoutOf, meshOf, type MeshNode, type PlacedNode } from "../mesh.ts";
import { act, BarShapes, Card, ConfirmButton, Facts, FormDialog, Meter, Signal, Sparkline, State, Switch } from "../parts.tsx";
import { mayCall, mayReport, useReply, useReport } from "../store.ts";
import { EditHost } from "./edit_host.tsx";

const routerWidth = 150;

function kindOf(access: string): string {
    return access === "cable" ? "cable" : access.startsWith("5") ? "band5" : access.startsWith("2") ? "band2" : "wan";
}

// A line is the thicker the more passes through it.
const thickness = (node: MeshNode): number => 1.25 + Math.log10(1 + node.up + node.down) * 0.5;

function Link(props: { node: PlacedNode; sideways: boolean }) {
    const { node, sideways } = props;
    const parent = node.parent!;
    const path = sideways
        ? `M${parent.x + (parent.kind === "router" ? routerWidth : 44)},${parent.y} C${node.x - 28},${parent.y} ${node.x - 46},${node.y} ${node.x - 2},${node.y}`
        : `M${parent.x + 9},${parent.y + 16} C${parent.x + 9},${node.y} ${parent.x + 9},${node.y} ${node.x - 2},${node.y}`;
    const kind = node.kind === "router" && parent.kind === "internet" ? "wan" : kindOf(node.access);
    const live = node.online && parent.online;
    return <path class={`link ${kind} ${live ? "" : "offline"}`} d={path} stroke-width={live ? thickness(node) : 1.25} />;
}

// The two lines of a node.
function textsOf(node: PlacedNode): [name: string, detail: string] {
    if (node.kind === "internet") {
        return ["Internet", node.online ? node.access : "no connection"];
    }
    const state = node.online ? [accessText(node.access), dbmText(node.dbm)] : ["offline"];
    const more = node.kind !== "station" ? [] : [node.blocked ? "blocked" : "", node.online && node.down > 0 ? `↓ ${rate(node.down)}` : ""];
    const name = shortened(node.name, node.kind === "router" ? 19 : 26);
    return [name, node.kind === "more" ? "" : [...state, ...more].filter(Boolean).join(" · ")];
}

// What is to be seen, and the rest of the name.
function labelOf(node: PlacedNode): string {
    const [name, detail] = textsOf(node);
    const rest = name === node.name || node.kind === "internet" ? "" : `, ${node.name}`;
    return `${node.kind === "router" ? "router " : ""}${name} ${detail}${rest}`.trim();
}

function NodeShape(props: { node: PlacedNode }) {
    const { node } = props;
    const [name, detail] = textsOf(node);
    const bars = node.online && node.dbm !== undefined && <BarShapes level={signalLevel(node.dbm)} />;
    // The blanks keep the two lines apart where only their text counts.
    if (node.kind === "internet") {
        return (
            <>
                <circle cx="20" cy="0" r="15" class="globe" />
                <path class="globe lines" d="M5,0 H35 M20,-15 C10,-6 10,6 20,15 M20,-15 C30,-6 30,6 20,15" />
                <text x="44" y="-6" class="name">
                    {name}
                </text>{" "}
                <text x="44" y="18" class="detail">
                    {detail}
                </text>
            </>
        );
    }
    if (node.kind === "router") {
        return (
            <>
                <rect x="0" y="-17" width={routerWidth} height="34" rx="8" class="box" />
                <text x="12" y={detail === "" ? 5 : -1} class="name">
                    {name}
                </text>{" "}
                <text x="12" y="12" class="detail">
                    {detail}
                </text>
                {bars && <g transform={`translate(${routerWidth - 24} -6)`}>{bars}</g>}
            </>
        );
    }
    return (
        <>
            <circle cx="6" cy="0" r="6" class={`dot ${kindOf(node.access)}`} />
            <text x="20" y={detail === "" ? 4 : -1} class="name">
                {name}
            </text>{" "}
            <text x={bars ? 38 : 20} y="12" class="detail">
                {detail}
            </text>
            {bars && <g transform="translate(20 2)">{bars}</g>}
        </>
    );
}

function shortened(text: string, most: number): string {
    const letters = [...text];
    return letters.length <= most ? text : `${letters.slice(0, most - 1).join("")}…`;
}

function useWidth() {
    const element = useRef<HTMLDivElement>(null);
    const [width, setWidth] = useState(0);
    useEffect(() => {
        const observer = new ResizeObserver(([entry]) => setWidth(Math.floor(entry!.contentRect.width)));
        observer.observe(element.current!);
        return () => observer.disconnect();
    }, []);
    return { element, width };
}

function Drawing(props: { root: MeshNode; selected: string; onSelect: (node: MeshNode) => void }) {
    const { element, width } = useWidth();
    const layout = useMemo(() => (width === 0 ? null : layoutOf(props.root, width)), [props.root, width]);
    const nodes = layout?.nodes ?? [];
    const current = nodes.some((node) => node.id === props.selected) ? props.selected : nodes[0]?.id;
    const move = (event: KeyboardEvent, node: PlacedNode) => {
        const step = { ArrowDown: 1, ArrowRight: 1, ArrowUp: -1, ArrowLeft: -1 }[event.key];
        if (event.key === "Enter" || event.key === " ") {
            props.onSelect(node);
        } else if (step !== undefined) {
            const target = nodes[nodes.indexOf(node) + step];
            const all = (event.currentTarget as Element).parentElement!.querySelectorAll<SVGGElement>("[data-id]");
            [...all].find((each) => each.dataset.id === target?.id)?.focus();
        } else {
            return;
        }
        event.preventDefault();
    };
    return (
        <div class="mesh" ref={element}>
            {layout && (
                <svg
                    viewBox={`0 0 ${layout.width} ${layout.height}`}
                    width={layout.width}
                    height={layout.height}
                    role="group"
                    aria-label="Mesh"
                >
                    {nodes.slice(1).map((node) => (
                        <Link key={`link ${node.id}`} node={node} sideways={layout.sideways} />
                    ))}
                    {nodes.map((node) => (
                        <g
                            key={node.id}
                            data-id={node.id}
                            class={`node ${node.kind} ${node.online ? "" : "offline"} ${node.id === props.selected ? "selected" : ""}`}
                            style={{ transform: `translate(${node.x}px, ${node.y}px)` }}
                            role="button"
                            tabindex={node.id === current ? 0 : -1}
                            aria-label={labelOf(node)}
                            onClick={() => props.onSelect(node)}
                            onKeyDown={(event) => move(event, node)}
                        >
                            <rect class="target" x="-4" y="-17" width={node.kind === "router" ? routerWidth + 8 : 200} height="34" rx="8" />
                            <NodeShape node={node} />
                        </g>
                    ))}
                </svg>
            )}
        </div>
    );
}

function Details(props: { node: MeshNode }) {
    const { node } = props;
    const { record } = node;
    const [dialog, setDialog] = useState<"" | "rename" | "edit">("");
    const id = textOf(record.RouterDeviceID);
    const main = node.kind === "router" && id === "";
    const rename = main ? "SET_HG_BASE_INFO" : "SET_CHILD_ROUTER_HG_BASE_INFO";
    return (
        <Card title={node.name}>
            <Facts
                facts={[
                    ["State", <State good={node.online}>{node.online ? "online" : "offline"}</State>],
                    ["Internet access", node.kind === "station" ? (node.blocked ? "blocked" : "allowed") : ""],
                    ["Link", accessText(node.access)],
                    ["Signal", node.dbm === undefined ? "" : <Signal dbm={node.dbm} />],
                    ["Download", rate(node.down)],
                    ["Upload", rate(node.up)],
                    ["IP address", textOf(record.ip)],
                    ["MAC address", textOf(record.Mac)],
                    ["Model", textOf(record.DeviceType)],
                    ["Firmware", textOf(record.FWVersion)],
                    ["Running for", numberOf(record.UpTime) === undefined ? "" : duration(numberOf(record.UpTime)!)],
                ]}
            />
            <div class="buttons">
                {node.kind === "router" && mayCall(rename) && (
                    <button type="button" onClick={() => setDialog("rename")}>
                        Rename
                    </button>
                )}
                {node.kind === "router" && mayCall(main ? "RP_HG_REBOOT" : "RP_CHILD_HG_REBOOT") && (
                    <ConfirmButton
                        label="Restart"
                        question={`${node.name} restarts. Devices attached to it lose their connection for a while.`}
                        onConfirm={() =>
                            main
                                ? act("RP_HG_REBOOT", {}, "The gateway restarts.")
                                : act("RP_CHILD_HG_REBOOT", { DeviceID: id }, `${node.name} restarts.`)
                        }
                    />
                )}
                {node.kind === "station" && mayCall("SET_AD_BASE_INFO") && (
                    <button type="button" onClick={() => setDialog("edit")}>
                        Edit
                    </button>
                )}
            </div>
            {dialog === "rename" && (
                <FormDialog
                    title={`Rename ${node.name}`}
                    fields={[{ name: "Name", label: "Name", required: true, longest: 63 }]}
                    values={{ Name: textOf(record.Name) }}
                    onSubmit={({ Name }) => act(rename, main ? { Name } : { DeviceID: id, Name })}
                    onClose={() => setDialog("")}
                />
            )}
            {dialog === "edit" && <EditHost mac={textOf(record.Mac)} onClose={() => setDialog("")} />}
        </Card>
    );
}

function Traffic(props: { base: Record<string, any> }) {
    const { base } = props;
    return (
        <div class="traffic">
            <div>
                <span class="muted">Download</span>
                <strong>{rate(numberOf(base.DownSpeed) ?? 0)}</strong>
                <Sparkline values={traffic.down} label="Download, last minutes" width={150} height={36} />
            </div>
            <div>
                <span class="muted">Upload</span>
                <strong>{rate(numberOf(base.UpSpeed) ?? 0)}</strong>
                <Sparkline values={traffic.up} label="Upload, last minutes" width={150} height={36} />
            </div>
        </div>
    );
}

export function Home() {
    const whole = mayReport("mesh");
    const mesh = useReport(whole ? { report: "mesh" } : null, 3000);
    const alone = useReply(whole ? null : { command: "GET_TSLINK_TOPOLOGY_INFO" }, 3000);
    const base = useReply({ command: "GET_HG_BASE_INFO" }, 3000);
    const leds = useReply({ command: "GET_LED_STATUS" });
    const meshState = useReply({ command: "GET_MESH_STATUS" });
    const [selected, setSelected] = useState("");
    const [expanded, setExpanded] = useState<ReadonlySet<string>>(new Set());
    const topology: Record<string, any> | undefined = whole ? mesh.reply?.topology : alone.reply;
    const tree = mesh.reply?.tree;
    const root = useMemo(() => (topology?.MainRouter ? meshOf(topology, tree, expanded) : null), [topology, tree, expanded]);
    const select = (node: MeshNode) => {
        if (node.kind === "more") {
            setExpanded(new Set([...expanded, node.id.replace(/^more /, "")]));
        } else {
            setSelected(node.id === selected ? "" : node.id);
        }
    };
    const chosen = root === null ? undefined : find(root, selected);
    const facts = base.reply ?? {};
    return (
        <div class="cards">
            {(whole || mayCall("GET_TSLINK_TOPOLOGY_INFO")) && (
                <Card
                    title="Mesh"
                    wide
                    known={whole ? mesh : alone}
                    tools={
                        <>
                            <Legend />
                            {mayCall("SET_MESH_PAIR") && (
                                <ConfirmButton
                                    label="Add a router"
                                    question="For two minutes, a new router may join the mesh. Switch it on now."
                                    onConfirm={() => act("SET_MESH_PAIR", { Enable: "1", Time: "120" }, "A new router may join.")}
                                />
                            )}
                        </>
                    }
                >
                    {root === null ? (
                        <p class="muted">The gateway reports no mesh.</p>
                    ) : (
                        <Drawing root={root} selected={selected} onSelect={select} />
                    )}
                </Card>
            )}
            {chosen !== undefined && chosen.kind !== "internet" && <Details key={chosen.id} node={chosen} />}
            {mayCall("GET_HG_BASE_INFO") && (
                <>
                    <Card title="Traffic" known={base}>
                        <Traffic base={facts} />
                    </Card>
                    <Card title="Gateway" known={base}>
                        <Facts
                            facts={[
                                ["Internet", <State good={facts.NetStatus === "1"}>{facts.NetStatus === "1" ? "connected" : "no connection"}</State>],
                                ["Connected by", textOf(facts.WanLinkMode)],
                                ["Model", textOf(facts.DeviceType)],
                                ["Firmware", `${textOf(facts.FWVersion)} (${textOf(facts.FWDATA)})`],
                                ["IP address", textOf(facts.LanIp)],
                                ["Running for", duration(numberOf(facts.UpTime) ?? 0)],
                            ]}
                        />
                        <Meter label="Processor" percent={numberOf(facts.Cpu) ?? 0} />
                        <Meter label="Memory" percent={numberOf(facts.Memory) ?? 0} />
                        {leds.reply && (
                            <Switch
                                label="LEDs"
                                on={isOn(leds.reply.LedSwitch)}
                                disabled={!mayCall("SET_LED_STATUS")}
                                onChange={(on) =>
                                    void act("SET_LED_STATUS", {
                                        LedSwitch: on ? "1" : "0",
                                        LedCoLor: leds.reply!.LedCoLor ?? "",
                                        LedLight: leds.reply!.LedLight ?? "",
                                    })
                                }
                            />
                        )}
                        {meshState.reply && (
                            <Switch
                                label="Mesh"
                                on={isOn(meshState.reply.MeshEnable)}
                                disabled={!mayCall("SET_MESH_STATUS")}
                                onChange={(on) =>
                                    void act("SET_MESH_STATUS", { MeshEnable: on ? "1" : "0", MeshMode: meshState.reply!.MeshMode ?? "" })
                                }
                            />
                        )}
                    </Card>
                </>
            )}
        </div>
    );
}

function find(node: MeshNode, id: string): MeshNode | undefined {
    if (node.id === id) {
        return node;
    }
    for (const child of node.children) {
        const found = find(child, id);
        if (found !== undefined) {
            return found;
        }
    }
    return undefined;
}

const Legend = () => (
    <ul class="legend">
        {[
            ["cable", "Cable"],
            ["band5", "5 GHz"],
            ["band2", "2.4 GHz"],
        ].map(([kind, label]) => (
            <li key={kind}>
                <svg width="28" height="8" aria-hidden="true">
                    <path class={`link ${kind}`} d="M0,4 H28" stroke-width="2.5" />
                </svg>
                {label}
            </li>
        ))}
    </ul>
);
