// SPDX-License-Identifier: MIT
// The connections to the Internet, the local network, and the ports.
import type { Command, GetPortStatisticsPortStatList, Request, SetApAlgAbilityRequest } from "hg_protocol";
import { isOn, numberOf, size, switchText, textOf } from "../format.ts";
import { act, Card, Facts, Secret, secretOf, State, Switch, Table } from "../parts.tsx";
import { Setting } from "../setting.tsx";
import { mayCall, useReply } from "../store.ts";

function Wan(props: { name: string }) {
    const params = { WANName: props.name };
    const known = useReply({ command: "QUERY_WAN_INFO", params }, 10000);
    const wan = known.reply ?? {};
    const connected = wan.CONNECTIONSTATUS === "Connected";
    const list = (...values: unknown[]) => values.map(textOf).filter(Boolean).join(", ");
    return (
        <Card
            title={props.name}
            known={known}
            tools={
                <Setting title={`Edit ${props.name}`} command="SET_ROUTE_WAN_INFO" query="QUERY_WAN_INFO" params={params} />
            }
        >
            <Facts
                facts={[
                    ["State", <State good={connected}>{connected ? "connected" : textOf(wan.CONNECTIONSTATUS) || "unknown"}</State>],
                    ["Services", textOf(wan.SERVICELIST).replaceAll(",", ", ")],
                    ["Interface", list(wan.IFNAME, textOf(wan.CONNECTIONTYPE).replace("IP_", "").toLowerCase())],
                    ["Addresses by", textOf(wan.ADDRESSTYPE)],
                    ["IPv4 address", textOf(wan.IPADDRESS)],
                    ["IPv4 gateway", textOf(wan.GATEWAY)],
                    ["DNS servers", list(wan.DNS1, wan.DNS2)],
                    ["IPv6 address", textOf(wan.IPV6_IPADDRESS)],
                    ["IPv6 prefix", list(wan.IPV6_PRIFIX) && `${list(wan.IPV6_PRIFIX)}/${textOf(wan.IPV6_PREFIXLENGTH)}`],
                    ["PPPoE account", textOf(wan.PPPOE_USR_NAME)],
                    [
                        "PPPoE password",
                        textOf(wan.PPPOE_USR_NAME) && (
                            <Secret
                                label={`PPPoE password of ${props.name}`}
                                fetch={() => secretOf("QUERY_WAN_INFO", params, (reply) => reply.PPPOE_PASSWORD)}
                            />
                        ),
                    ],
                    ["VLAN", textOf(wan.VLANID)],
                    ["NAT", textOf(wan.NATENABLE) && (isOn(wan.NATENABLE) ? "on" : "off")],
                ]}
            />
        </Card>
    );
}

function Lan() {
    const lan = useReply({ command: "GET_LAN_IP_INFO" }, 10000);
    const dhcp = useReply({ command: "GET_HG_DHCP_INFO" }, 10000);
    const facts = lan.reply ?? {};
    return (
        <Card
            title="Local network"
            known={mayCall("GET_LAN_IP_INFO") ? lan : dhcp}
            tools={<Setting title="Edit local network" command="SET_LAN_IP_INFO" query="GET_LAN_IP_INFO" />}
        >
            <Facts
                facts={[
                    ["Address of the gateway", textOf(facts.GatewayLanIP)],
                    ["Mask", textOf(facts.SubnetMask)],
                    ["Addresses for devices", facts.StartIp && `${textOf(facts.StartIp)} to ${textOf(facts.EndIp)}`],
                ]}
            />
            {dhcp.reply && (
                <Switch
                    label="DHCP server"
                    on={isOn(dhcp.reply.Enable)}
                    disabled={!mayCall("SET_HG_DHCP_INFO")}
                    onChange={(on) => void act("SET_HG_DHCP_INFO", { Enable: switchText(on) })}
                />
            )}
        </Card>
    );
}

const serviceQueries = ["GET_UPNP_STATE", "GET_WPS_ENABLE", "HG_INSPECTION", "GET_AP_ALG_ABILITY"] as const;

const gatewayNames = ["PPTP", "FTP", "IPSEC", "L2TP", "RTSP", "H323", "SIP"] as const;

function Services() {
    const upnp = useReply({ command: "GET_UPNP_STATE" }, 10000);
    const wps = useReply({ command: "GET_WPS_ENABLE" }, 10000);
    const inspection = useReply({ command: "HG_INSPECTION" }, 10000);
    const alg = useReply({ command: "GET_AP_ALG_ABILITY" }, 10000);
    const gateways = alg.reply as SetApAlgAbilityRequest | undefined;
    const one = <C extends Command>(label: string, command: C, value: unknown, params: (on: string) => Request<C>) =>
        value !== undefined && (
            <Switch
                key={label}
                label={label}
                on={isOn(value)}
                disabled={!mayCall(command)}
                onChange={(on) => void act(command, params(switchText(on)))}
            />
        );
    return (
        <Card title="Services">
            <div class="switches">
                {one("Firewall", "SET_FIREWALL_SWITCH", inspection.reply?.FireWallEnable, (Enable) => ({ Enable }))}
                {one("UPnP", "SET_UPNP_STATE", upnp.reply?.Enable, (Enable) => ({ Enable }))}
                {one("WPS", "SET_WPS_ENABLE", wps.reply?.Enable, (Enable) => ({ Enable }))}
            </div>
            {gateways && (
                <>
                    <h3>Application-level gateways</h3>
                    <div class="switches">
                        {gatewayNames.map((name) =>
                            one(name, "SET_AP_ALG_ABILITY", gateways[name], (on) => {
                                const values = gatewayNames.map((each) => [each, each === name ? on : gateways[each]]);
                                return Object.fromEntries(values) as SetApAlgAbilityRequest;
                            }),
                        )}
                    </div>
                </>
            )}
        </Card>
    );
}

function Ports() {
    const statistics = useReply({ command: "GET_PORT_STATISTICS" }, 3000);
    const bindings = useReply({ command: "GET_PORT_BINDING" }, 10000);
    const ports = statistics.reply?.port_stat_list ?? [];
    const bound = bindings.reply?.port_stat_list ?? [];
    const wanOf = (port: string) =>
        bound.find(({ BoundPorts }) => textOf(BoundPorts).split(",").includes(port))?.WANName ?? "";
    const figures: [keyof GetPortStatisticsPortStatList, string, (value: number) => string][] = [
        ["rx_traffic", "Received", size],
        ["tx_traffic", "Sent", size],
        ["rx_packets", "Packets received", String],
        ["tx_packets", "Packets sent", String],
    ];
    return (
        <Card title="Ports" wide known={mayCall("GET_PORT_STATISTICS") ? statistics : bindings}>
            <Table name="Ports" heads={["Port", "Bound to", ...figures.map(([, label]) => label)]} figuresFrom={2}>
                {ports.map((port) => (
                    <tr key={port.Port}>
                        <td>{port.Port!.replace("GHz", " GHz")}</td>
                        <td>{wanOf(port.Port!) || <span class="muted">–</span>}</td>
                        {figures.map(([key, , format]) => (
                            <td class="figure" key={key}>
                                {format(numberOf(port[key]) ?? 0)}
                            </td>
                        ))}
                    </tr>
                ))}
            </Table>
            {mayCall("SET_PORT_BINDING") && bound.length > 0 && (
                <div class="buttons">
                    {bound.map(({ Index, WANName }) => (
                        <Setting
                            key={Index}
                            title={`Ports of ${WANName}`}
                            label={`Ports of ${WANName}`}
                            command="SET_PORT_BINDING"
                            query="GET_PORT_BINDING"
                            pick={(reply) => reply.port_stat_list.find((each: Record<string, string>) => each.Index === Index)}
                            given={{ Index: Index! }}
                        />
                    ))}
                </div>
            )}
        </Card>
    );
}

export function Internet() {
    const names = useReply({ command: "QUERY_WAN_NUM" }, 10000);
    return (
        <div class="cards">
            {mayCall("QUERY_WAN_INFO") &&
                textOf(names.reply?.Description)
                    .split(",")
                    .filter(Boolean)
                    .map((name) => <Wan key={name} name={name} />)}
            {(mayCall("GET_LAN_IP_INFO") || mayCall("GET_HG_DHCP_INFO")) && <Lan />}
            {serviceQueries.some(mayCall) && <Services />}
            {mayCall("GET_PORT_STATISTICS") && <Ports />}
        </div>
    );
}
