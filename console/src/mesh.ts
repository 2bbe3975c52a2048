// SPDX-License-Identifier: MIT
// The mesh as a tree, from the gateway's topology report, and where each node is drawn.
import { cluster, hierarchy } from "d3-hierarchy";
import { nameOf, numberOf, textOf } from "./format.ts";

export interface MeshNode {
    kind: "internet" | "router" | "station" | "more";
    id: string;
    name: string;
    access: string;
    dbm?: number;
    online: boolean;
    blocked: boolean;
    up: number;
    down: number;
    record: Record<string, unknown>;
    children: MeshNode[];
}

export interface PlacedNode extends MeshNode {
    x: number;
    y: number;
    depth: number;
    parent?: PlacedNode;
}

type Records = Record<string, unknown>[];

// As comparable text; the two reports may spell an address differently.
const bare = (mac: unknown): string => textOf(mac).replace(/[^0-9A-Fa-f]/g, "").toUpperCase();

function nodeOf(kind: MeshNode["kind"], record: Record<string, unknown>, access: unknown): MeshNode {
    return {
        kind,
        id: `${kind} ${bare(record.Mac)}`,
        name: nameOf(record),
        access: textOf(access),
        dbm: numberOf(record.dbm),
        online: record.NetStatus !== "0",
        blocked: record.AccessEnable === "0",
        up: numberOf(record.UpSpeed) ?? 0,
        down: numberOf(record.DownSpeed) ?? 0,
        record,
        children: [],
    };
}

// Of a router with more stations than this, only the first are drawn until it is expanded.
const mostStations = 12;

function stationsOf(router: MeshNode, list: unknown, expanded: ReadonlySet<string>): MeshNode[] {
    const stations = ((list ?? []) as Records).map((record) => nodeOf("station", record, record.AccessType));
    const shown = expanded.has(router.id) || stations.length <= mostStations ? stations.length : mostStations - 2;
    const rest = stations.slice(shown);
    if (rest.length === 0) {
        return stations;
    }
    const more: MeshNode = {
        ...nodeOf("more", {}, ""),
        id: `more ${router.id}`,
        name: `${rest.length} more devices`,
        online: rest.some((station) => station.online),
    };
    return [...stations.slice(0, shown), more];
}

// `topology` is the reply of GET_TSLINK_TOPOLOGY_INFO; `routers` the report that says which router a child router is
// attached to, without which all are attached to the main router.
export function meshOf(
    topology: Record<string, any>,
    routers: Record<string, any> | undefined,
    expanded: ReadonlySet<string>,
): MeshNode {
    const mainRecord = topology.MainRouter ?? {};
    const main = nodeOf("router", mainRecord, "");
    // For the main router the report gives the state of the Internet connection.
    const online = main.online;
    main.online = true;
    const byMac = new Map([[bare(mainRecord.Mac), main]]);
    const children: [MeshNode, Record<string, unknown>][] = ((topology.ChildRouter ?? []) as Records).map((record) => [
        nodeOf("router", record, record.ChildRouterAccessType),
        record,
    ]);
    children.forEach(([node, record]) => byMac.set(bare(record.Mac), node));
    const parents = new Map<MeshNode, MeshNode>();
    for (const record of (routers?.ChildRouter ?? []) as Records) {
        const node = byMac.get(bare(record.Mac));
        const parent = byMac.get(bare(record.ParentMacAddress));
        if (node !== undefined && node !== main && parent !== undefined) {
            parents.set(node, parent);
        }
    }
    // A chain of parents that does not end at the main router is a circle.
    const isReached = (node: MeshNode): boolean => {
        let at = node;
        for (let steps = 0; steps <= children.length && at !== main; steps += 1) {
            at = parents.get(at) ?? main;
        }
        return at === main;
    };
    main.children = stationsOf(main, mainRecord.MainBaseInfo, expanded);
    children.forEach(([node, record]) => (node.children = stationsOf(node, record.ChildBaseInfo, expanded)));
    children.forEach(([node]) => ((isReached(node) && parents.get(node)) || main).children.push(node));
    const internet: MeshNode = {
        ...nodeOf("internet", {}, textOf(mainRecord.WanConMode)),
        id: "internet",
        name: "Internet",
        online,
        up: main.up,
        down: main.down,
        children: [main],
    };
    return internet;
}

export interface Layout {
    nodes: PlacedNode[];
    width: number;
    height: number;
    // Lines from parent to child leave to the right, else downwards.
    sideways: boolean;
}

export const rowHeight = 34;
const columnWidth = 190;
const lastColumnWidth = 240;
const indent = 22;

// Where there is room, a tree that grows to the right; else one line for each node, indented.
export function layoutOf(root: MeshNode, available: number): Layout {
    const whole = hierarchy(root);
    const wide = whole.height * columnWidth + lastColumnWidth;
    const sideways = wide <= available;
    const nodes: PlacedNode[] = [];
    const placed = new Map<MeshNode, PlacedNode>();
    const column = sideways ? Math.min((available - lastColumnWidth) / whole.height, 260) : 0;
    // Each leaf has a separate row, since its text is wider than a column.
    const positions = sideways
        ? cluster<MeshNode>()
              .nodeSize([rowHeight, 1])
              .separation((a, b) => (a.parent === b.parent ? 1 : 1.3))(whole)
        : undefined;
    const top = positions === undefined ? 0 : Math.min(...positions.descendants().map((node) => node.x));
    let row = 0;
    (positions ?? whole).eachBefore((node) => {
        const parent = node.parent === null ? undefined : placed.get(node.parent.data);
        const place =
            positions === undefined
                ? { x: node.depth * indent, y: row * 44 }
                : { x: node.depth * column, y: (node.x as number) - top };
        const at = { ...node.data, x: place.x, y: place.y + rowHeight / 2 + 4, depth: node.depth, parent };
        row += 1;
        nodes.push(at);
        placed.set(node.data, at);
    });
    const height = Math.max(...nodes.map((node) => node.y)) + rowHeight;
    return { nodes, width: sideways ? column * whole.height + lastColumnWidth : available, height, sideways };
}
