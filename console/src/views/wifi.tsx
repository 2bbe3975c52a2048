// SPDX-License-Identifier: MIT
// The wireless networks, their neighbours, and the guest network.
import type {
    GetHgGuestSsidSuccess,
    GetScanWifiSsidlistSSIDList,
    GetWifiInfoSuccess,
    GetWifiListInfoWIFIList,
    SetHgGuestSsidRequest,
} from "hg_protocol";
import { call, session } from "../connection.ts";
import { daysText, duration, isOn, numberOf, switchText, textOf } from "../format.ts";
import { act, Card, Facts, say, Secret, secretOf, Signal, Switch, Table } from "../parts.tsx";
import { Setting } from "../setting.tsx";
import { blockOf } from "../spectrum.ts";
import { mayCall, useReply } from "../store.ts";

type Network = GetWifiListInfoWIFIList;

const bandOf = (network: Network): string => (network.Type === "1" ? "5 GHz" : "2.4 GHz");

async function switchNetwork(network: Network, on: boolean): Promise<void> {
    try {
        const { SSIDIndex } = network;
        const { reply } = await call("GET_WIFI_INFO", JSON.stringify({ SSIDIndex }), true);
        const { SSID, PWD, ENCRYPT, PowerLevel, Channel } = reply as unknown as GetWifiInfoSuccess;
        const params = { SSIDIndex, SSID, PWD, ENCRYPT, PowerLevel, Channel, Enable: switchText(on) };
        await act("SET_WIFI_INFO", params, `${network.SSID} is ${on ? "on" : "off"}.`);
    } catch (error) {
        say({ ok: false, text: (error as Error).message });
    }
}

function Networks(props: { networks: Network[] }) {
    // The gateway wants the password again, even if only the switch changes.
    const maySwitch = mayCall("SET_WIFI_INFO") && mayCall("GET_WIFI_INFO") && session!.secrets;
    return (
        <Table
            name="Networks"
            heads={["Network", "On", "Band", "Channel", "Security", "Password", <span class="hidden">Actions</span>]}
        >
            {props.networks.map((network) => (
                <tr key={network.SSIDIndex}>
                    <td>
                        {network.SSID}
                        <small class="muted">
                            {[
                                network.PermissionProperty === "GUEST" ? "guests" : "",
                                network.AdvertisementEnable === "0" ? "name not broadcast" : "",
                            ]
                                .filter(Boolean)
                                .map((note) => ` ${note}`)
                                .join(",")}
                        </small>
                    </td>
                    <td>
                        <Switch
                            label={`${network.SSID} on`}
                            hideLabel
                            on={isOn(network.Enable)}
                            disabled={!maySwitch}
                            onChange={(on) => void switchNetwork(network, on)}
                        />
                    </td>
                    <td>{bandOf(network)}</td>
                    <td>
                        {network.Channel === "0" ? "automatic" : network.Channel}{" "}
                        <small class="muted">{network.Bandwidth} MHz</small>
                    </td>
                    <td>{network.ENCRYPT}</td>
                    <td>
                        {network.ENCRYPT === "OPEN" ? (
                            "–"
                        ) : (
                            <Secret
                                label={`password of ${network.SSID}`}
                                fetch={() =>
                                    secretOf("GET_WIFI_INFO", { SSIDIndex: network.SSIDIndex }, (reply) => reply.PWD)
                                }
                            />
                        )}
                    </td>
                    <td>
                        <Setting
                            title={`Edit ${network.SSID}`}
                            command="SET_WIFI_INFO"
                            query="GET_WIFI_INFO"
                            params={{ SSIDIndex: network.SSIDIndex! }}
                        />
                    </td>
                </tr>
            ))}
        </Table>
    );
}

interface Count {
    Name: string;
    Count: number;
}

// A rounded hill over a block of channels.
function hill(from: number, to: number, base: number, height: number): string {
    const shoulder = Math.min((to - from) / 4, 14);
    const top = base - height;
    return `M${from},${base} C${from + shoulder / 2},${base} ${from + shoulder / 2},${top} ${from + shoulder},${top} H${to - shoulder} C${to - shoulder / 2},${top} ${to - shoulder / 2},${base} ${to},${base} Z`;
}

function Spectrum(props: { band: string; counts: Count[]; networks: Network[] }) {
    const { counts } = props;
    const width = 440;
    const height = 150;
    const base = height - 30;
    const channels = counts.map(({ Name }) => Name);
    const step = width / (channels.length + 3);
    const x = (position: number) => (position + 2) * step;
    const most = Math.max(4, ...counts.map(({ Count }) => Count));
    // The networks of a radio share its channel.
    const own = new Map<string, Network[]>();
    props.networks
        .filter((network) => isOn(network.Enable))
        .forEach((network) => own.set(network.Channel!, [...(own.get(network.Channel!) ?? []), network]));
    const words = counts.filter(({ Count }) => Count > 0).map(({ Name, Count }) => `channel ${Name}: ${Count}`);
    return (
        <figure class="spectrum">
            <figcaption>{props.band}</figcaption>
            <svg
                viewBox={`0 0 ${width} ${height}`}
                role="img"
                aria-label={`${props.band}. Own networks on channel ${[...own.keys()].join(", ") || "none"}. Access points found: ${words.join(", ") || "none"}.`}
            >
                <path class="axis" d={`M0,${base} H${width}`} />
                {counts.map(({ Name, Count }) => {
                    const block = blockOf(channels, Name, 20);
                    return (
                        Count > 0 && (
                            <path
                                key={Name}
                                class="others"
                                d={hill(x(block!.from), x(block!.to), base, (Count / most) * (base - 34))}
                            />
                        )
                    );
                })}
                {[...own].map(([channel, networks]) => {
                    const block = blockOf(channels, channel, Number(networks[0]!.Bandwidth) || 20);
                    return (
                        block && (
                            <g key={channel} class="own">
                                <path d={hill(x(block.from), x(block.to), base, base - 18)} />
                                <text x={x((block.from + block.to) / 2)} y={13} text-anchor="middle">
                                    {networks[0]!.SSID}
                                    {networks.length > 1 && ` and ${networks.length - 1} more`}
                                </text>
                            </g>
                        )
                    );
                })}
                {counts.map(({ Name, Count }, at) => (
                    <g key={Name}>
                        {Count > 0 && (
                            <text class="count" x={x(at)} y={base - (Count / most) * (base - 34) - 4} text-anchor="middle">
                                {Count}
                            </text>
                        )}
                        <text class={own.has(Name) ? "channel own" : "channel"} x={x(at)} y={base + 18} text-anchor="middle">
                            {Name}
                        </text>
                    </g>
                ))}
            </svg>
        </figure>
    );
}

function Neighbours(props: { found: GetScanWifiSsidlistSSIDList[]; own: Set<string> }) {
    const others = props.found.filter(({ SSID }) => !props.own.has(SSID!));
    return (
        <Table name="Neighbours" heads={["Network", "Band", "Security", "Signal"]}>
            {others.map((network, at) => (
                <tr key={at}>
                    <td>{textOf(network.SSID) || <span class="muted">no name</span>}</td>
                    <td>{network.Band!.replace("GHz", " GHz")}</td>
                    <td>{network.ENCRYPT}</td>
                    <td>
                        <Signal dbm={numberOf(network.PowerLevel)} />
                    </td>
                </tr>
            ))}
        </Table>
    );
}

function Guests(props: { band: string }) {
    const known = useReply({ command: "GET_HG_GUEST_SSID", params: { Band: props.band } }, 5000);
    const guest = known.reply;
    if (guest === undefined || textOf(guest.SSID) === "") {
        return null;
    }
    const left = numberOf(guest.Remainingtime) ?? -1;
    const maySwitch = mayCall("SET_HG_GUEST_SSID") && session!.secrets;
    // Without its times, the network would be open without a limit from now on.
    const turn = async (on: boolean) => {
        const { reply } = await call("GET_HG_GUEST_SSID", JSON.stringify({ Band: props.band }), true);
        const { SSID, PWD, ENCRYPT, ContinueTime, HourTime } = reply as unknown as GetHgGuestSsidSuccess;
        const params: SetHgGuestSsidRequest = { Enable: switchText(on), SSID, Band: props.band, PWD, ENCRYPT };
        if ((numberOf(ContinueTime) ?? -1) >= 0) {
            params.ContinueTime = ContinueTime;
        }
        if ((numberOf(HourTime) ?? -1) >= 0) {
            params.HourTime = HourTime;
        }
        await act("SET_HG_GUEST_SSID", params);
    };
    return (
        <Card
            title={`Guest network, ${props.band.replace("GHz", " GHz")}`}
            tools={
                <Setting
                    title={`Edit guest network, ${props.band}`}
                    command="SET_HG_GUEST_SSID"
                    query="GET_HG_GUEST_SSID"
                    params={{ Band: props.band }}
                />
            }
        >
            <Switch
                label={textOf(guest.SSID)}
                on={isOn(guest.Enable)}
                disabled={!maySwitch}
                onChange={(on) => void turn(on).catch((error: Error) => say({ ok: false, text: error.message }))}
            />
            <Facts
                facts={[
                    ["Time left", !isOn(guest.Enable) ? "off" : left < 0 ? "no limit" : duration(left)],
                    ["Guests may use", guest.PermissionProperty === "GUEST" ? "the Internet only" : "the Internet and this home"],
                    ["Security", textOf(guest.ENCRYPT)],
                    [
                        "Password",
                        guest.ENCRYPT === "OPEN" ? (
                            ""
                        ) : (
                            <Secret
                                label={`password of the guest network, ${props.band}`}
                                fetch={() => secretOf("GET_HG_GUEST_SSID", { Band: props.band }, (reply) => reply.PWD)}
                            />
                        ),
                    ],
                ]}
            />
        </Card>
    );
}

export function WiFi() {
    const list = useReply({ command: "GET_WIFI_LIST_INFO" }, 5000);
    const counts = useReply({ command: "GET_SCAN_CHANNEL_COUNT" }, 15000);
    const scan = useReply({ command: "GET_SCAN_WIFI_SSIDLIST" }, 15000);
    const sleep = useReply({ command: "GET_WIFI_SLEEP_SCHEDULE" }, 15000);
    const networks = list.reply?.WIFIList ?? [];
    const ofBand = (type: string) => networks.filter((network) => network.Type === type);
    const periods = sleep.reply?.WIFISleepList ?? [];
    return (
        <div class="cards">
            {mayCall("GET_WIFI_LIST_INFO") && (
                <Card title="Networks" wide known={list}>
                    <Networks networks={networks} />
                </Card>
            )}
            {mayCall("GET_SCAN_CHANNEL_COUNT") && (
                <Card title="Channels" wide known={counts} tools={<span class="muted">access points found on each channel</span>}>
                    <div class="spectra">
                        <Spectrum band="2.4 GHz" counts={counts.reply?.List24g ?? []} networks={ofBand("0")} />
                        <Spectrum band="5 GHz" counts={counts.reply?.List58g ?? []} networks={ofBand("1")} />
                    </div>
                </Card>
            )}
            <Guests band="2.4GHz" />
            <Guests band="5GHz" />
            {mayCall("GET_WIFI_SLEEP_SCHEDULE") && (
                <Card title="Wi-Fi sleeps" known={sleep}>
                    {periods.length === 0 && <p class="muted">Never.</p>}
                    <Facts
                        facts={periods.map((period) => [
                            `${period.StartTime} to ${period.EndTime}`,
                            isOn(period.Enable) ? daysText(period.DaysOfWeek ?? "") : <span class="muted">off</span>,
                        ])}
                    />
                </Card>
            )}
            {mayCall("GET_SCAN_WIFI_SSIDLIST") && (
                <Card title="Neighbours" wide known={scan}>
                    <Neighbours found={scan.reply?.SSIDList ?? []} own={new Set(networks.map(({ SSID }) => SSID!))} />
                </Card>
            )}
        </div>
    );
}
