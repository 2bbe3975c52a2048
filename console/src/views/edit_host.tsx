// SPDX-License-Identifier: MIT
// The form of one attached device.
import type { SetAdBaseInfoRequest } from "hg_protocol";
import { textOf } from "../format.ts";
import { act, FormDialog, type Values } from "../parts.tsx";
import { useReply } from "../store.ts";

const types = ["Computer", "Phone", "Tablet", "TV", "Console", "Camera", "Printer", "Speaker", "Other"];

export function EditHost(props: { mac: string; onClose: () => void }) {
    const hosts = useReply({ command: "GET_AD_BASE_INFO" }).reply?.BaseInfo;
    const host = hosts?.find((each) => each.Mac === props.mac);
    if (host === undefined) {
        return null;
    }
    const type = textOf(host.DevType) || "Other";
    const save = (values: Values) => {
        const params: SetAdBaseInfoRequest = {
            MAC: props.mac,
            DevType: values.DevType!,
            ByName: values.ByName!,
            AccessEnable: values.AccessEnable!,
        };
        if (values.DownLimit !== "") {
            params.DownLimit = values.DownLimit!;
            params.SpeedLimit = values.DownLimit === "0" ? "0" : "1";
        }
        if (textOf(host.ip) !== "") {
            params.StaticDhcpEnable = values.StaticDhcpEnable!;
            params.ip = textOf(host.ip);
        }
        return act("SET_AD_BASE_INFO", params);
    };
    return (
        <FormDialog
            title={textOf(host.ByName) || textOf(host.Name)}
            fields={[
                { name: "ByName", label: "Name", longest: 31, hint: `The device calls itself ${textOf(host.Name)}.` },
                { name: "DevType", label: "Type", type: "select", options: types.includes(type) ? types : [type, ...types] },
                { name: "AccessEnable", label: "May use the Internet", type: "checkbox" },
                {
                    name: "DownLimit",
                    label: "Download limit in kbit/s",
                    type: "number",
                    min: 0,
                    hint: "0 removes the limit; empty leaves it as it is.",
                },
                ...(textOf(host.ip) === ""
                    ? []
                    : [
                          {
                              name: "StaticDhcpEnable",
                              label: `Always gets the address ${textOf(host.ip)}`,
                              type: "checkbox" as const,
                          },
                      ]),
            ]}
            values={{
                ByName: textOf(host.ByName) || textOf(host.Name),
                DevType: type,
                AccessEnable: textOf(host.AccessEnable) || "1",
                DownLimit: "",
                StaticDhcpEnable: textOf(host.StaticDhcpEnable) || "0",
            }}
            onSubmit={save}
            onClose={props.onClose}
        />
    );
}
