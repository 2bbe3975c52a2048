// SPDX-License-Identifier: MIT
// The page of hgagent fleet drive --page and fleet campaign --page: what the report says, and its curves.
import uPlot from "uplot";
import { type Intervals, type Report, curve, endingNames, isCampaign, processNames } from "./data.js";

const report = JSON.parse(document.getElementById("data")!.textContent!) as Report;
const main = document.getElementById("report")!;
const colours = ["#2f7ed8", "#2a9d5c", "#d9822b", "#c23b3b", "#7a52c7", "#5f6b76"];

function add(tag: string, text = "", className = "", parent: HTMLElement = main): HTMLElement {
    const element = document.createElement(tag);
    element.textContent = text;
    element.className = className;
    parent.append(element);
    return element;
}

function table(head: readonly string[], rows: readonly (readonly (string | number)[])[]): void {
    const body = add("table", "", "", add("div", "", "wide"));
    const first = add("tr", "", "", body);
    for (const name of head) {
        add("th", name, "", first).setAttribute("scope", "col");
    }
    for (const row of rows) {
        const line = add("tr", "", "", body);
        for (const value of row) {
            add("td", typeof value === "number" ? value.toLocaleString("en-GB") : value, "", line);
        }
    }
}

interface Curves {
    title: string;
    unit: string;
    curves: [name: string, values: (number | null)[]][];
    isLogarithmic?: boolean;
}

// A line at each power of ten, without those between them.
function powersOfTen(low: number, high: number): number[] {
    const first = Math.ceil(Math.log10(low));
    return Array.from({ length: Math.max(0, Math.floor(Math.log10(high)) - first + 1) }, (_, at) => 10 ** (first + at));
}

// One chart below the other; the time under the pointer is the same in all of them.
function chart({ title, unit, curves, isLogarithmic }: Curves): void {
    add("h2", title);
    const style = getComputedStyle(document.documentElement);
    const axis = { stroke: style.getPropertyValue("--weak"), grid: { stroke: style.getPropertyValue("--line") } };
    const place = add("div");
    const width = (): number => Math.min(960, place.clientWidth);
    const plot = new uPlot(
        {
            width: width(),
            height: 260,
            cursor: { sync: { key: "time" } },
            scales: { x: { time: false }, y: isLogarithmic ? { distr: 3 } : { range: { min: { soft: 0, mode: 1 }, max: { pad: 0.1, mode: 2 } } } },
            axes: [
                { ...axis, label: "seconds" },
                { ...axis, label: unit, size: 70,
                    ...(isLogarithmic && { splits: (_plot: uPlot, _axis: number, low: number, high: number) => powersOfTen(low, high) }) },
            ],
            series: [
                { label: "seconds" },
                ...curves.map(([label], at) => ({ label, stroke: colours[at % colours.length]!, width: 1.5, spanGaps: false })),
            ],
        },
        [report.intervals.seconds, ...curves.map(([, values]) => values)] as uPlot.AlignedData,
        place,
    );
    addEventListener("resize", () => plot.setSize({ width: width(), height: 260 }));
}

function verdict(): void {
    const what = isCampaign(report) ? `Firmware campaign: ${report.firmware}` : "Commands to a fleet";
    add("h1", what);
    const good = isCampaign(report)
        ? report.stopped ? "stopped, since too many gateways have failed" : report.good ? "completed" : "not completed"
        : report.good ? "nothing lost, nothing executed twice" : report.complete ? "not as it should be" : "ended early";
    add("p", good, report.good ? "good" : "bad");
    const { given, missing, restarted } = report.gateways;
    add("p", `${given.toLocaleString("en-GB")} gateways, ${missing} missing, ${restarted} restarted; ` +
        `hgagent ${report.version}, seed ${report.seed}`, "weak");
}

function load(): void {
    if (isCampaign(report)) {
        add("h2", "Waves");
        table(["up to", "gateways", "updated", "failed", "seconds"],
            report.waves.map((wave) => [`${wave.percent} %`, wave.gateways, wave.updated, wave.failed, Math.round(wave.seconds)]));
        if (Object.keys(report.reasons).length > 0) {
            add("h2", "Reasons of failures");
            table(["reason", "gateways"], Object.entries(report.reasons));
        }
        return;
    }
    add("h2", "Ledger");
    table(["what", "number"], Object.entries(report.ledger).map(([name, count]) => [name.replaceAll("_", " "), count]));
}

function commands(): void {
    add("h2", "Requests");
    const endings = endingNames(report);
    table(["command", ...endings.map((name) => name.replaceAll("_", " ")), "p50 ms", "p99", "max"],
        [...Object.entries(report.commands ?? {}), ["all", report] as const].map(([name, one]) => [
            name, ...endings.map((ending) => one.endings[ending] ?? 0), one.milliseconds["p50"]!, one.milliseconds["p99"]!,
            one.milliseconds["max"]!,
        ]));
    const { interruptions, repetitions, late_answers: late } = report.broker;
    add("p", `${repetitions} repetitions, ${late} answers that came twice or late, ` +
        `${interruptions} interruptions of connections to the broker`, "weak");
}

function charts(): void {
    const of = (name: keyof Intervals): (number | null)[] => curve(report, name);
    chart({ title: "Time to the answer, from when the request should be sent", unit: "milliseconds", isLogarithmic: true,
        curves: ["p50", "p90", "p99", "p99.9"].map((name) => [name.replace("p", "") + " %", of(name)]) });
    chart({ title: "Rate", unit: "per second",
        curves: [["answers", of("requests_per_second")], ["errors", of("errors_per_second")],
            ["repetitions", of("repetitions_per_second")]] });
    chart({ title: "Gateways that are up", unit: "gateways", curves: [["up", of("up")]] });
    chart({ title: "Gateways that connect", unit: "per second", curves: [["announcements", of("announcements_per_second")]] });
    chart({ title: "Open requests", unit: "requests", curves: [["open", of("open")]] });
    const names = processNames(report);
    chart({ title: "Processor time", unit: "processors", curves: names.map((name) => [name, of(`cpu_${name}`)]) });
    chart({ title: "Memory", unit: "MB",
        curves: names.map((name) => [name, of(`memory_${name}`).map((bytes) => (bytes ?? 0) / 1e6)]) });
}

verdict();
load();
commands();
charts();
if (report.problems.length > 0) {
    add("h2", "What was found");
    table(["the first ones"], report.problems.map((problem) => [problem]));
}
