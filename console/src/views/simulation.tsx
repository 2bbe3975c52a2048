// SPDX-License-Identifier: MIT
// Scenario, clock and faults of the simulated gateway.
import { useEffect, useState } from "preact/hooks";
import { control, onState } from "../connection.ts";
import { duration, textOf } from "../format.ts";
import { Card, ConfirmButton, Facts, say } from "../parts.tsx";
import { changed, type Outcome } from "../store.ts";

type Shown = Record<string, any>;

// A clock that runs ahead is given as "+SECONDS", a stopped one as its time.
function clockText(clock: string): string {
    if (clock === "") {
        return "runs";
    }
    return clock.startsWith("+") ? `runs, ${duration(Number(clock))} ahead` : "stands still";
}

export function Simulation() {
    const [shown, setShown] = useState<Shown | null>(null);
    const [problem, setProblem] = useState("");
    const [scenario, setScenario] = useState("");
    const [fault, setFault] = useState("");
    const [time, setTime] = useState("");
    const load = () =>
        control({ show: {} }).then(
            ({ reply }) => {
                setShown(reply);
                setProblem("");
            },
            (error: Error) => setProblem(error.message),
        );
    useEffect(() => {
        void load();
        return onState((state) => void (state === "open" && load()));
    }, []);
    const set = async (what: object, text: string): Promise<Outcome> => {
        try {
            await control(what as Record<string, unknown>);
            await load();
            changed();
            say({ ok: true, text });
            return { ok: true, text };
        } catch (error) {
            const outcome = { ok: false, text: (error as Error).message };
            say(outcome);
            return outcome;
        }
    };
    if (shown === null) {
        return <p class={problem ? "problem" : "muted"}>{problem || "Loading…"}</p>;
    }
    const faults = (shown.faults ?? []) as string[];
    const scenarios = (shown.scenarios ?? []) as string[];
    const functions = (shown.fault_kinds?.functions ?? []) as string[];
    return (
        <div class="cards">
            <Card title="Scenario">
                <Facts facts={[["In use", textOf(shown.scenario)]]} />
                <div class="buttons">
                    <select aria-label="Scenario" value={scenario} onChange={(event) => setScenario(event.currentTarget.value)}>
                        <option value="">Choose a scenario</option>
                        {scenarios.map((name) => (
                            <option key={name}>{name}</option>
                        ))}
                    </select>
                    {scenario !== "" && (
                        <ConfirmButton
                            label="Start this scenario"
                            question={`The home becomes ${scenario}. All changes to the present one are lost.`}
                            onConfirm={() => set({ scenario }, `The home is ${scenario}.`)}
                        />
                    )}
                </div>
            </Card>
            <Card title="Clock">
                <Facts
                    facts={[
                        ["Time of the gateway, UTC", textOf(shown.time).replace("T", " ")],
                        ["Clock", clockText(textOf(shown.clock))],
                    ]}
                />
                <form
                    class="buttons"
                    onSubmit={(event) => {
                        event.preventDefault();
                        void set({ clock: time.length === 16 ? `${time}:00` : time }, "The clock is set.");
                    }}
                >
                    <input
                        type="datetime-local"
                        aria-label="New time, UTC"
                        step="1"
                        required
                        value={time}
                        onInput={(event) => setTime(event.currentTarget.value)}
                    />
                    <button type="submit">Set</button>
                    <button type="button" onClick={() => void set({ clock: "+3600" }, "An hour has passed.")}>
                        + 1 hour
                    </button>
                    <button type="button" onClick={() => void set({ clock: "+86400" }, "A day has passed.")}>
                        + 1 day
                    </button>
                    <button type="button" onClick={() => void set({ clock: null }, "The clock follows this computer.")}>
                        Computer's time
                    </button>
                </form>
            </Card>
            <Card
                title="Faults"
                wide
                tools={
                    <button type="button" disabled={faults.length === 0} onClick={() => void set({ faults: [] }, "No faults.")}>
                        Lift all
                    </button>
                }
            >
                {faults.length === 0 && <p class="muted">None: every device call succeeds that the model allows.</p>}
                <ul class="log" aria-label="Faults">
                    {faults.map((text, at) => (
                        <li key={text}>
                            <code>{text}</code>
                            <button
                                type="button"
                                class="link"
                                aria-label={`Lift ${text}`}
                                onClick={() => void set({ faults: faults.filter((_, other) => other !== at) }, "The fault is lifted.")}
                            >
                                Lift
                            </button>
                        </li>
                    ))}
                </ul>
                <p class="muted">
                    <code>devapi_get_sn_info=-1</code> makes every call fail, <code>devapi_get_sn_info=-1*3@250ms</code> the
                    next three, after 250 ms.
                </p>
                <form
                    class="buttons"
                    onSubmit={(event) => {
                        event.preventDefault();
                        void set({ faults: [...faults, fault] }, "The fault is set.").then(({ ok }) => ok && setFault(""));
                    }}
                >
                    <input
                        type="text"
                        aria-label="New fault"
                        placeholder="FUNCTION=RESULT*COUNT@DELAYms"
                        required
                        list="fault-functions"
                        value={fault}
                        onInput={(event) => setFault(event.currentTarget.value)}
                    />
                    <datalist id="fault-functions">
                        {functions.map((name) => (
                            <option key={name} value={`${name}=-1`} />
                        ))}
                    </datalist>
                    <button type="submit">Add</button>
                </form>
            </Card>
        </div>
    );
}
