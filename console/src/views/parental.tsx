// SPDX-License-Identifier: MIT
// Parental control: which devices, and when they are restricted, painted on a grid of the week.
import type { GetGreennetDeviceListDeviceList } from "hg_protocol";
import { useEffect, useRef, useState } from "preact/hooks";
import { isOn, nameOf, switchText, textOf } from "../format.ts";
import { act, Card, ConfirmButton, Switch } from "../parts.tsx";
import { mayCall, useReply } from "../store.ts";
import { day, type Minutes, minutesOf, periodsOf } from "../week.ts";

const days = ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"];
const slot = 30;
const slots = day / slot;

const covers = (minutes: Minutes, dayAt: number, slotAt: number): "none" | "part" | "all" => {
    const start = dayAt * day + slotAt * slot;
    const part = minutes.subarray(start, start + slot);
    return part.every((minute) => minute === 1) ? "all" : part.some((minute) => minute === 1) ? "part" : "none";
};

function clock(slotAt: number): string {
    return `${String(Math.floor((slotAt * slot) / 60)).padStart(2, "0")}:${String((slotAt * slot) % 60).padStart(2, "0")}`;
}

interface Cell {
    day: number;
    slot: number;
}

function Grid(props: { minutes: Minutes; disabled: boolean; onChange: (minutes: Minutes) => void }) {
    const { minutes, disabled } = props;
    const grid = useRef<HTMLDivElement>(null);
    const [focus, setFocus] = useState({ day: 0, slot: 0 });
    // Whether the pointer restricts or frees, and the cell that it painted last; null while it is up.
    const brush = useRef<(Cell & { value: 0 | 1 }) | null>(null);
    const latest = useRef(minutes);
    latest.current = minutes;
    const paint = (dayAt: number, slotAt: number, value: 0 | 1) => {
        const painted = latest.current.slice();
        const start = dayAt * day + slotAt * slot;
        painted.fill(value, start, start + slot);
        latest.current = painted;
        props.onChange(painted);
    };
    // Paints all cells on the way, except the first.
    const paintLine = (from: Cell, to: Cell, value: 0 | 1) => {
        const steps = Math.max(Math.abs(to.day - from.day), Math.abs(to.slot - from.slot));
        for (let step = 1; step <= steps; step += 1) {
            const part = step / steps;
            paint(Math.round(from.day + (to.day - from.day) * part), Math.round(from.slot + (to.slot - from.slot) * part), value);
        }
    };
    const opposite = (dayAt: number, slotAt: number): 0 | 1 => (covers(latest.current, dayAt, slotAt) === "all" ? 0 : 1);
    const cellAt = (event: PointerEvent): Cell | undefined => {
        const cell = document.elementFromPoint(event.clientX, event.clientY)?.closest<HTMLElement>("[data-slot]");
        return cell && grid.current!.contains(cell)
            ? { day: Number(cell.dataset.day), slot: Number(cell.dataset.slot) }
            : undefined;
    };
    useEffect(() => {
        const up = () => void (brush.current = null);
        addEventListener("pointerup", up);
        return () => removeEventListener("pointerup", up);
    }, []);
    const move = (event: KeyboardEvent) => {
        const steps: Record<string, [number, number]> = {
            ArrowLeft: [0, -1],
            ArrowRight: [0, 1],
            ArrowUp: [-1, 0],
            ArrowDown: [1, 0],
            Home: [0, -slots],
            End: [0, slots],
        };
        const step = steps[event.key];
        if (step !== undefined) {
            const target = {
                day: Math.min(6, Math.max(0, focus.day + step[0])),
                slot: Math.min(slots - 1, Math.max(0, focus.slot + step[1])),
            };
            if (event.shiftKey && !disabled) {
                // The cells that the focus passes and enters get the value of the one that it leaves.
                paintLine(focus, target, covers(latest.current, focus.day, focus.slot) === "all" ? 1 : 0);
            }
            setFocus(target);
            grid.current!.querySelector<HTMLElement>(`[data-day="${target.day}"][data-slot="${target.slot}"]`)!.focus();
        } else if ((event.key === " " || event.key === "Enter") && !disabled) {
            paint(focus.day, focus.slot, opposite(focus.day, focus.slot));
        } else {
            return;
        }
        event.preventDefault();
    };
    return (
        <div class="week" role="grid" aria-label="Restricted times of the week" ref={grid} onKeyDown={move}>
            <div class="line hours" role="row">
                <span role="columnheader" class="day">
                    <span class="hidden">Day</span>
                </span>
                {Array.from({ length: slots }, (_, at) => (
                    <span key={at} role="columnheader" class={at % 6 === 0 ? "hour" : "hour minor"}>
                        {at % 2 === 0 ? String(at / 2) : <span class="hidden">{clock(at)}</span>}
                    </span>
                ))}
            </div>
            {days.map((name, dayAt) => (
                <div class="line" role="row" key={name}>
                    <span role="rowheader" class="day">
                        {name.slice(0, 3)}
                    </span>
                    {Array.from({ length: slots }, (_, slotAt) => {
                        const state = covers(minutes, dayAt, slotAt);
                        return (
                            <span
                                key={slotAt}
                                role="gridcell"
                                class={`slot ${state} ${slotAt % 2 === 0 ? "full" : ""}`}
                                data-day={dayAt}
                                data-slot={slotAt}
                                tabIndex={focus.day === dayAt && focus.slot === slotAt ? 0 : -1}
                                aria-label={`${name} ${clock(slotAt)}, ${{ none: "free", part: "partly restricted", all: "restricted" }[state]}`}
                                aria-selected={state === "all"}
                                aria-readonly={disabled}
                                onPointerDown={(event) => {
                                    setFocus({ day: dayAt, slot: slotAt });
                                    if (disabled || event.button !== 0) {
                                        return;
                                    }
                                    event.currentTarget.releasePointerCapture(event.pointerId);
                                    brush.current = { value: opposite(dayAt, slotAt), day: dayAt, slot: slotAt };
                                    paint(dayAt, slotAt, brush.current.value);
                                }}
                                onPointerMove={(event) => {
                                    const from = brush.current;
                                    const to = from === null ? undefined : cellAt(event);
                                    if (from !== null && to !== undefined) {
                                        // A fast pointer skips cells.
                                        paintLine(from, to, from.value);
                                        brush.current = { ...to, value: from.value };
                                    }
                                }}
                            />
                        );
                    })}
                </div>
            ))}
        </div>
    );
}

function Times(props: { mac: string; name: string }) {
    const known = useReply({ command: "GET_GREENNET_PROTECT_PERIOD_LIST", params: { Mac: props.mac } }, 5000);
    const [draft, setDraft] = useState<Minutes | null>(null);
    const periods = known.reply?.Sleep ?? [];
    const off = periods.filter((period) => !isOn(period.Enable));
    const maySet = mayCall("SET_GREENNET_PROTECT_PERIOD_LIST");
    const save = async () => {
        const Sleep = periodsOf(draft!, off);
        const outcome = await act("SET_GREENNET_PROTECT_PERIOD_LIST", { Mac: props.mac, Sleep });
        if (outcome.ok) {
            setDraft(null);
        }
    };
    return (
        <Card
            title={`When ${props.name} is restricted`}
            wide
            known={known}
            tools={
                maySet && (
                    <>
                        <button type="button" disabled={draft === null} onClick={() => setDraft(null)}>
                            Discard
                        </button>
                        <button type="button" class="primary" disabled={draft === null} onClick={() => void save()}>
                            Save
                        </button>
                    </>
                )
            }
        >
            <p class="muted" id="week-help">
                {maySet
                    ? "Paint with the mouse, or move with the arrow keys, change with the space bar, and hold Shift to continue."
                    : "Your role may not change these times."}
            </p>
            <Grid minutes={draft ?? minutesOf(periods)} disabled={!maySet} onChange={setDraft} />
            {off.length > 0 && (
                <p class="muted">
                    Switched off and not shown: {off.map((period) => `${period.StartTime} to ${period.EndTime}`).join(", ")}
                </p>
            )}
        </Card>
    );
}

type Child = GetGreennetDeviceListDeviceList;

export function Parental() {
    const enabled = useReply({ command: "GET_GREENNET_ENABLE" }, 5000);
    const list = useReply({ command: "GET_GREENNET_DEVICE_LIST" }, 5000);
    const hosts = useReply({ command: "GET_AD_BASE_INFO" }, 10000);
    const [chosen, setChosen] = useState("");
    const [added, setAdded] = useState("");
    const devices = list.reply?.DeviceList ?? [];
    const known = new Map((hosts.reply?.BaseInfo ?? []).map((host) => [textOf(host.Mac), host]));
    const current = devices.find(({ Mac }) => Mac === chosen) ?? devices[0];
    const maySet = mayCall("SET_GREENNET_DEVICE_LIST");
    const replace = (all: Child[]) =>
        act("SET_GREENNET_DEVICE_LIST", {
            DeviceList: all.map(({ Mac, Name, NotifyEnable }) => ({ Mac, Name, NotifyEnable })),
        });
    const add = async () => {
        const host = known.get(added)!;
        const outcome = await replace([...devices, { Mac: added, Name: nameOf(host), NotifyEnable: "0", ProtectEnable: "0" }]);
        if (outcome.ok) {
            setChosen(added);
            setAdded("");
        }
    };
    return (
        <div class="cards">
            <Card
                title="Devices under parental control"
                wide
                known={list}
                tools={
                    enabled.reply && (
                        <Switch
                            label="Parental control"
                            on={isOn(enabled.reply.Enable)}
                            disabled={!mayCall("SET_GREENNET_ENABLE")}
                            onChange={(on) => void act("SET_GREENNET_ENABLE", { Enable: switchText(on) })}
                        />
                    )
                }
            >
                {devices.length === 0 && <p class="muted">None.</p>}
                <ul class="children">
                    {devices.map((device) => (
                        <li key={device.Mac} class={device === current ? "current" : ""}>
                            <button
                                type="button"
                                class="link"
                                aria-pressed={device === current}
                                onClick={() => setChosen(device.Mac!)}
                            >
                                {device.Name}
                            </button>
                            <span class="muted">{nameOf(known.get(device.Mac!) ?? device)}</span>
                            <Switch
                                label="Notices"
                                name={`Notices of ${device.Name}`}
                                on={isOn(device.NotifyEnable)}
                                disabled={!mayCall("SET_GREENNET_NOTIFY_ENABLE")}
                                onChange={(on) =>
                                    void act("SET_GREENNET_NOTIFY_ENABLE", { Mac: device.Mac, NotifyEnable: switchText(on) })
                                }
                            />
                            {maySet && (
                                <ConfirmButton
                                    label="Remove"
                                    name={`Remove ${device.Name}`}
                                    question={`${device.Name} is no longer restricted, and its times are forgotten.`}
                                    onConfirm={() => replace(devices.filter((each) => each !== device))}
                                />
                            )}
                        </li>
                    ))}
                </ul>
                {maySet && known.size > 0 && (
                    <div class="buttons">
                        <select aria-label="Device to add" value={added} onChange={(event) => setAdded(event.currentTarget.value)}>
                            <option value="">Choose a device</option>
                            {[...known]
                                .filter(([mac]) => !devices.some(({ Mac }) => Mac === mac))
                                .map(([mac, host]) => (
                                    <option key={mac} value={mac}>
                                        {nameOf(host)}
                                    </option>
                                ))}
                        </select>
                        <button type="button" disabled={added === ""} onClick={() => void add()}>
                            Add
                        </button>
                    </div>
                )}
            </Card>
            {current && mayCall("GET_GREENNET_PROTECT_PERIOD_LIST") && <Times key={current.Mac} mac={current.Mac!} name={current.Name!} />}
        </div>
    );
}
