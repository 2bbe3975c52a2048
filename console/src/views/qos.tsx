// SPDX-License-Identifier: MIT
// Quality of service: which traffic goes first.
import type { GetQosInfoClassificationInfoList } from "hg_protocol";
import { useState } from "preact/hooks";
import { isOn, switchText } from "../format.ts";
import { act, Card, ConfirmButton, FormDialog, Switch, type Values } from "../parts.tsx";
import { mayCall, useReply } from "../store.ts";

const priorities = ["1", "2", "3", "4", "5", "6", "7", "8"];

const types: [string, string][] = [
    ["", "All traffic"],
    ["SIP", "Address of the sender"],
    ["DIP", "Address of the receiver"],
    ["SPORT", "Port of the sender"],
    ["DPORT", "Port of the receiver"],
    ["SMAC", "MAC address of the sender"],
    ["DSCP", "DSCP mark"],
    ["8021P", "Priority of the frame"],
];

type Rule = GetQosInfoClassificationInfoList;

const matchText = ({ Type, Min, Max }: Rule["type_list"][number]): string =>
    `${types.find(([type]) => type === Type)?.[1] ?? Type} ${Min === Max ? Min : `${Min} to ${Max}`}`;

const slots = [1, 2, 3];

function RuleDialog(props: { rule: Rule | null; onClose: () => void }) {
    const { rule } = props;
    const values: Values = { Name: rule?.Name ?? "", PriorityLevel: rule?.PriorityLevel ?? "4" };
    slots.forEach((at) => {
        const match = rule?.type_list[at - 1];
        values[`Type${at}`] = match?.Type ?? "";
        values[`Min${at}`] = match?.Min ?? "";
        values[`Max${at}`] = match?.Max ?? "";
    });
    const save = (changed: Values) =>
        act("SET_QOS_CLASSIFICATION_INFO", {
            Id: rule?.Id ?? "0",
            Action: rule === null ? "1" : "0",
            Name: changed.Name,
            PriorityLevel: changed.PriorityLevel,
            type_list: slots
                .filter((at) => changed[`Type${at}`] !== "")
                .map((at) => ({
                    Type: changed[`Type${at}`],
                    Min: changed[`Min${at}`],
                    Max: changed[`Max${at}`] || changed[`Min${at}`],
                })),
        });
    return (
        <FormDialog
            title={rule === null ? "New rule" : `Edit ${rule.Name}`}
            fields={[
                { name: "Name", label: "Name", required: true, longest: 31 },
                { name: "PriorityLevel", label: "Priority, 1 is the highest", type: "select", options: priorities },
                ...slots.flatMap((at) => [
                    { name: `Type${at}`, label: `Traffic ${at}`, type: "select" as const, options: types },
                    { name: `Min${at}`, label: `Lowest value ${at}` },
                    { name: `Max${at}`, label: `Highest value ${at}`, hint: "Empty: the same." },
                ]),
            ]}
            values={values}
            onSubmit={save}
            onClose={props.onClose}
        />
    );
}

export function Qos() {
    const known = useReply({ command: "GET_QOS_INFO" }, 5000);
    const [edited, setEdited] = useState<Rule | "new" | null>(null);
    const qos = known.reply ?? {};
    const rules = qos.classification_info_list ?? [];
    const maySet = mayCall("SET_QOS_CLASSIFICATION_INFO");
    return (
        <div class="cards">
            <Card
                title="Applications"
                known={known}
                tools={
                    <Switch
                        label="Quality of service"
                        on={isOn(qos.Enable)}
                        disabled={!mayCall("SET_QOS_ENABLE")}
                        onChange={(on) => void act("SET_QOS_ENABLE", { Enable: switchText(on) })}
                    />
                }
            >
                <table>
                    <thead>
                        <tr>
                            <th scope="col">Application</th>
                            <th scope="col">Priority, 1 is the highest</th>
                        </tr>
                    </thead>
                    <tbody>
                        {(qos.app_info_list ?? []).map((app) => (
                            <tr key={app.Id}>
                                <td>{app.Name}</td>
                                <td>
                                    <select
                                        aria-label={`Priority of ${app.Name}`}
                                        value={app.PriorityLevel}
                                        disabled={!mayCall("SET_QOS_APP_INFO")}
                                        onChange={(event) =>
                                            void act("SET_QOS_APP_INFO", { Id: app.Id, PriorityLevel: event.currentTarget.value })
                                        }
                                    >
                                        {priorities.map((priority) => (
                                            <option key={priority}>{priority}</option>
                                        ))}
                                    </select>
                                </td>
                            </tr>
                        ))}
                    </tbody>
                </table>
            </Card>
            <Card
                title="Rules"
                wide
                known={known}
                tools={
                    maySet && (
                        <button type="button" onClick={() => setEdited("new")}>
                            New rule
                        </button>
                    )
                }
            >
                {rules.length === 0 && <p class="muted">None.</p>}
                {rules.map((rule) => (
                    <div class="rule" key={rule.Id}>
                        <span class="badge" title="Priority">
                            <span class="hidden">Priority </span>
                            {rule.PriorityLevel}
                        </span>
                        <div>
                            <strong>{rule.Name}</strong>
                            <p class="muted">{rule.type_list.map(matchText).join("; ") || "All traffic"}</p>
                        </div>
                        {maySet && (
                            <div class="buttons">
                                <button type="button" aria-label={`Edit ${rule.Name}`} onClick={() => setEdited(rule)}>
                                    Edit
                                </button>
                                <ConfirmButton
                                    label="Delete"
                                    name={`Delete ${rule.Name}`}
                                    question={`The rule "${rule.Name}" is deleted.`}
                                    onConfirm={() => act("SET_QOS_CLASSIFICATION_INFO", { Id: rule.Id, Action: "2" })}
                                />
                            </div>
                        )}
                    </div>
                ))}
            </Card>
            {edited !== null && <RuleDialog rule={edited === "new" ? null : edited} onClose={() => setEdited(null)} />}
        </div>
    );
}
