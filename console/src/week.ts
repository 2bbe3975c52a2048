// SPDX-License-Identifier: MIT
// The periods of a week as minutes, so that they can be painted, and back.

export interface Period {
    StartTime: string;
    EndTime: string;
    Enable: string;
    DaysOfWeek: string;
}

export const day = 24 * 60;
export const week = 7 * day;

// One element for each minute from Monday 00:00, 1 where a period covers it.
export type Minutes = Uint8Array;

const minuteOf = (time: string): number => Number(time.slice(0, 2)) * 60 + Number(time.slice(3, 5));

function timeOf(minute: number): string {
    const inDay = minute % day;
    return `${String(Math.floor(inDay / 60)).padStart(2, "0")}:${String(inDay % 60).padStart(2, "0")}`;
}

// A period that ends before it starts ends on the next day; so does one that ends at 00:00.
export function minutesOf(periods: readonly Period[]): Minutes {
    const minutes = new Uint8Array(week);
    for (const period of periods) {
        if (period.Enable !== "1") {
            continue;
        }
        const start = minuteOf(period.StartTime);
        const end = minuteOf(period.EndTime);
        const length = end > start ? end - start : end - start + day;
        for (const digit of period.DaysOfWeek.replace(/[^1-7]/g, "")) {
            const first = (Number(digit) - 1) * day + start;
            for (let at = first; at < first + length; at += 1) {
                minutes[at % week] = 1;
            }
        }
    }
    return minutes;
}

// The fewest periods that cover exactly these minutes, followed by those that are switched off, which are kept.
export function periodsOf(minutes: Minutes, off: readonly Period[] = []): Period[] {
    const daysOf = new Map<string, string>();
    const add = (start: number, end: number): void => {
        // A period lasts less than a day: a longer run is divided at noon, so that no part starts when it ends.
        for (let at = start; at < end; ) {
            const rest = end - at;
            const until = rest < day ? end : (Math.floor(at / (day / 2)) + 1) * (day / 2);
            const times = `${timeOf(at)} ${timeOf(until)}`;
            daysOf.set(times, (daysOf.get(times) ?? "") + (Math.floor((at % week) / day) + 1));
            at = until;
        }
    };
    let first = minutes.indexOf(0);
    if (first < 0) {
        add(0, week);
    } else {
        // From a minute that is not covered, so that no run is cut at the end of the week.
        let start = -1;
        for (let at = first; at <= first + week; at += 1) {
            const covered = minutes[at % week] === 1 && at < first + week;
            if (covered && start < 0) {
                start = at;
            } else if (!covered && start >= 0) {
                add(start, at);
                start = -1;
            }
        }
    }
    const periods = [...daysOf].sort().map(([times, days]) => ({
        StartTime: times.slice(0, 5),
        EndTime: times.slice(6),
        Enable: "1",
        DaysOfWeek: [...days].sort().join(""),
    }));
    return [...periods, ...off];
}
