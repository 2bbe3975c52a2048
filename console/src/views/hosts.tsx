// SPDX-License-Identifier: MIT
// The attached devices as a table. Only the rows that are in sight are in the document, so that hundreds stay smooth.
import type { GetAdBaseInfoBaseInfo } from "hg_protocol";
import { useLayoutEffect, useMemo, useRef, useState } from "preact/hooks";
import { accessText, nameOf, numberOf, rate, textOf } from "../format.ts";
import { hostRates } from "../history.ts";
import { Card, Sparkline } from "../parts.tsx";
import { mayCall, useReply } from "../store.ts";
import { EditHost } from "./edit_host.tsx";

type Host = GetAdBaseInfoBaseInfo;

const rowHeight = 44;
// Rows beyond the edges, which are there before they are scrolled into sight.
const margin = 6;

interface Column {
    id: string;
    label: string;
    order: (host: Host) => string | number;
    largestFirst?: boolean;
}

const columns: Column[] = [
    { id: "name", label: "Name", order: (host) => nameOf(host).toLowerCase() },
    { id: "ip", label: "IP address", order: (host) => textOf(host.ip).split(".").map((part) => part.padStart(3, "0")).join(".") },
    { id: "mac", label: "MAC address", order: (host) => textOf(host.Mac) },
    { id: "access", label: "Link", order: (host) => textOf(host.AccessType) },
    { id: "state", label: "State", order: (host) => stateOf(host) },
    { id: "up", label: "Upload", order: (host) => numberOf(host.UpSpeed) ?? 0, largestFirst: true },
    { id: "down", label: "Download", order: (host) => numberOf(host.DownSpeed) ?? 0, largestFirst: true },
];

const isOnline = (host: Host): boolean => host.NetStatus !== "0";

function stateOf(host: Host): string {
    const state = isOnline(host) ? "online" : "offline";
    return host.AccessEnable === "0" ? `${state}, blocked` : state;
}

function sorted(hosts: Host[], column: Column, descending: boolean): Host[] {
    const keyed = hosts.map((host) => ({ host, key: column.order(host) }));
    keyed.sort((a, b) => (a.key < b.key ? -1 : a.key > b.key ? 1 : 0));
    const result = keyed.map(({ host }) => host);
    return descending ? result.reverse() : result;
}

function Row(props: { host: Host; index: number; onEdit?: (mac: string) => void }) {
    const { host, onEdit } = props;
    const rates = hostRates(textOf(host.Mac));
    const down = numberOf(host.DownSpeed) ?? 0;
    return (
        <div
            class={`row ${isOnline(host) ? "" : "offline"}`}
            role="row"
            aria-rowindex={props.index + 2}
            style={{ top: `${props.index * rowHeight}px` }}
        >
            <span role="cell" class="name">
                {onEdit ? (
                    <button type="button" class="link" onClick={() => onEdit(textOf(host.Mac))}>
                        {nameOf(host)}
                    </button>
                ) : (
                    nameOf(host)
                )}
                <small>{textOf(host.DevType)}</small>
            </span>
            <span role="cell" class="ip">
                {textOf(host.ip) || "–"}
            </span>
            <span role="cell" class="mac">
                {textOf(host.Mac)}
            </span>
            <span role="cell" class="access">
                {accessText(textOf(host.AccessType))}
            </span>
            <span role="cell" class="state">
                {stateOf(host)}
            </span>
            <span role="cell" class="up">
                {rate(numberOf(host.UpSpeed) ?? 0)}
            </span>
            <span role="cell" class="down">
                {rate(down)}
            </span>
            <span role="cell" class="curve">
                <Sparkline values={rates.down} label={`Download of ${nameOf(host)}`} width={80} height={22} />
            </span>
        </div>
    );
}

export function Hosts() {
    const known = useReply({ command: "GET_AD_BASE_INFO" }, 2000);
    const [filter, setFilter] = useState("");
    const [order, setOrder] = useState({ id: "", descending: false });
    const [edited, setEdited] = useState("");
    const [scroll, setScroll] = useState(0);
    const [height, setHeight] = useState(600);
    const body = useRef<HTMLDivElement>(null);
    const all = known.reply?.BaseInfo ?? [];
    const shown = useMemo(() => {
        const wanted = filter.toLowerCase();
        const found = all.filter((host) =>
            [nameOf(host), textOf(host.ip), textOf(host.Mac), textOf(host.DevType)].some((text) => text.toLowerCase().includes(wanted)),
        );
        const column = columns.find(({ id }) => id === order.id);
        return column === undefined ? found : sorted(found, column, order.descending);
    }, [all, filter, order]);
    useLayoutEffect(() => {
        if (body.current !== null) {
            setHeight(body.current.clientHeight);
        }
    });
    const first = Math.max(0, Math.floor(scroll / rowHeight) - margin);
    const last = Math.min(shown.length, Math.ceil((scroll + height) / rowHeight) + margin);
    const online = all.filter(isOnline).length;
    const onEdit = mayCall("SET_AD_BASE_INFO") ? setEdited : undefined;
    return (
        <Card
            title="Devices"
            wide
            known={known}
            tools={
                <>
                    <span class="muted">
                        {online} of {all.length} online
                    </span>
                    <input
                        type="search"
                        placeholder="Find a device"
                        aria-label="Find a device"
                        value={filter}
                        onInput={(event) => setFilter(event.currentTarget.value)}
                    />
                </>
            }
        >
            <div class="hosts" role="table" aria-label="Devices" aria-rowcount={shown.length + 1}>
                <div class="row head" role="row" aria-rowindex={1}>
                    {columns.map(({ id, label, largestFirst = false }) => (
                        <span
                            key={id}
                            role="columnheader"
                            class={id}
                            aria-sort={order.id !== id ? "none" : order.descending ? "descending" : "ascending"}
                        >
                            <button
                                type="button"
                                class="plain"
                                onClick={() => setOrder({ id, descending: order.id === id ? !order.descending : largestFirst })}
                            >
                                {label}
                                <span aria-hidden="true">{order.id !== id ? "" : order.descending ? " ↓" : " ↑"}</span>
                            </button>
                        </span>
                    ))}
                    <span role="columnheader" class="curve">
                        Last minutes
                    </span>
                </div>
                <div
                    class="rows"
                    role="rowgroup"
                    tabIndex={0}
                    aria-label="Rows"
                    ref={body}
                    onScroll={(event) => setScroll(event.currentTarget.scrollTop)}
                >
                    <div role="presentation" class="sheet" style={{ height: `${shown.length * rowHeight}px` }}>
                        {shown.slice(first, last).map((host, at) => (
                            <Row key={textOf(host.Mac)} host={host} index={first + at} onEdit={onEdit} />
                        ))}
                    </div>
                </div>
            </div>
            {known.reply && shown.length === 0 && <p class="muted">No device matches.</p>}
            {edited !== "" && <EditHost mac={edited} onClose={() => setEdited("")} />}
        </Card>
    );
}
