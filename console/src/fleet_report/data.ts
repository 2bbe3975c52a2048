// SPDX-License-Identifier: MIT
// The report as hgagent writes it.

export type Intervals = Record<string, (number | null)[]>;

interface Requests {
    endings: Record<string, number>;
    milliseconds: Record<string, number>;
}

interface Common extends Requests {
    version: string;
    seed: number;
    good: boolean;
    complete: boolean;
    gateways: { given: number; missing: number; restarted: number };
    broker: { interruptions: number; repetitions: number; late_answers: number };
    commands?: Record<string, Requests>;
    processes: { name: string }[];
    problems: string[];
    intervals: Intervals & { seconds: number[] };
}

export interface Drive extends Common {
    kind: "drive";
    ledger: Record<string, number>;
}

export interface Campaign extends Common {
    kind: "campaign";
    firmware: string;
    stopped: boolean;
    waves: { percent: number; gateways: number; updated: number; failed: number; seconds: number }[];
    reasons: Record<string, number>;
}

export type Report = Drive | Campaign;

export function isCampaign(report: Report): report is Campaign {
    return report.kind === "campaign";
}

// On a logarithmic scale there is no place for 0.
export function curve(report: Report, name: string): (number | null)[] {
    const values = report.intervals[name] ?? [];
    return /^p[0-9.]+$/.test(name) ? values.map((value) => (value === 0 ? null : value)) : values;
}

// The kinds of endings that have occurred.
export function endingNames(report: Report): string[] {
    return Object.entries(report.endings)
        .filter(([, count]) => count > 0)
        .map(([name]) => name);
}

export function processNames(report: Report): string[] {
    return report.processes.map((one) => one.name);
}
