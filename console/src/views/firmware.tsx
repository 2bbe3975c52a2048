// SPDX-License-Identifier: MIT
// Firmware: the versions in use, an update, and restarts.
import { useEffect, useRef, useState } from "preact/hooks";
import { onEvent } from "../connection.ts";
import { daysText, isOn, size, textOf } from "../format.ts";
import { act, Card, ConfirmButton, Facts, say, Table } from "../parts.tsx";
import { Setting } from "../setting.tsx";
import { mayCall, useReply } from "../store.ts";

function Versions() {
    const known = useReply({ command: "GET_UPDATE_STATUS" }, 5000);
    const main = known.reply?.MainRouter;
    const routers = main === undefined ? [] : [main, ...(known.reply!.ChildRouter ?? [])];
    return (
        <Card title="Versions" wide known={known}>
            <Table name="Versions" heads={["Router", "Model", "Hardware", "Firmware", "Date"]}>
                {routers.map((router, at) => (
                    <tr key={at}>
                        <td>{textOf(router.name)}</td>
                        <td>{textOf(router.DeviceType)}</td>
                        <td>{textOf(router.HWVersion)}</td>
                        <td>{textOf(router.FWVersion)}</td>
                        <td>{textOf(router.FWDATA)}</td>
                    </tr>
                ))}
            </Table>
        </Card>
    );
}

interface Upload {
    url: string;
    size: number;
    sha256: string;
}

// An upload of several megabytes shows how far it is, which fetch() cannot.
function upload(file: File, onProgress: (percent: number) => void): Promise<Upload> {
    return new Promise((resolve, reject) => {
        const request = new XMLHttpRequest();
        request.open("PUT", "/api/firmware");
        request.responseType = "json";
        request.upload.onprogress = ({ loaded, total }) => onProgress(Math.round((100 * loaded) / total));
        request.onload = () =>
            request.status === 200
                ? resolve(request.response)
                : reject(new Error(request.response?.error ?? `The service refuses the image (${request.status}).`));
        request.onerror = () => reject(new Error("The upload was interrupted."));
        request.send(file);
    });
}

function Update() {
    const [phase, setPhase] = useState("");
    const [percent, setPercent] = useState<number | null>(null);
    const [image, setImage] = useState<(Upload & { name: string }) | null>(null);
    const [address, setAddress] = useState("");
    const file = useRef<HTMLInputElement>(null);
    useEffect(
        () =>
            onEvent(({ name, data }) => {
                if (name === "update.progress") {
                    setPhase("Loading the image");
                    setPercent(Number(data.percent));
                } else if (name === "update.failed") {
                    setPhase(`The update has failed: ${data.reason}`);
                    setPercent(null);
                } else if (name === "update.succeeded") {
                    setPhase("The image is installed.");
                    setPercent(null);
                } else if (name === "reboot.begun") {
                    setPhase((before) => (before === "" ? "" : "The gateway restarts."));
                } else if (name === "reboot.ended") {
                    setPhase((before) => (before === "The gateway restarts." ? "The gateway has restarted." : before));
                }
            }),
        [],
    );
    const send = async () => {
        const chosen = file.current!.files?.[0];
        if (chosen === undefined) {
            return;
        }
        setImage(null);
        setPhase("Uploading");
        setPercent(0);
        try {
            setImage({ ...(await upload(chosen, setPercent)), name: chosen.name });
            setPhase("Uploaded.");
        } catch (error) {
            setPhase("");
            say({ ok: false, text: (error as Error).message });
        }
        setPercent(null);
    };
    const install = (url: string) => {
        setPhase("Starting");
        setPercent(0);
        return act("IMAGE_DOWNLOAD", { MainRouter: { UpdateUrl: url } }, "The update has begun.").then((outcome) => {
            if (!outcome.ok) {
                setPhase("");
                setPercent(null);
            }
            return outcome;
        });
    };
    const question = "The gateway installs the image and restarts. Meanwhile there is no connection to the Internet.";
    return (
        <Card title="Update">
            <div class="field">
                <label for="image">Image on this computer</label>
                <input id="image" type="file" ref={file} onChange={() => void send()} />
            </div>
            {image && (
                <>
                    <Facts
                        facts={[
                            ["Image", image.name],
                            ["Size", size(image.size)],
                            ["SHA-256", <code>{image.sha256}</code>],
                        ]}
                    />
                    <ConfirmButton
                        label="Install and restart"
                        class="primary"
                        question={question}
                        onConfirm={() => install(image.url)}
                    />
                </>
            )}
            <div class="field">
                <label for="address">Address of an image</label>
                <input
                    id="address"
                    type="text"
                    placeholder="https://"
                    value={address}
                    onInput={(event) => setAddress(event.currentTarget.value)}
                />
            </div>
            {address !== "" && (
                <ConfirmButton label="Load, install and restart" question={question} onConfirm={() => install(address)} />
            )}
            <div role="status" class="phase">
                {phase && <p>{phase}</p>}
            </div>
            {percent !== null && (
                <div class="meter bar">
                    <progress max="100" value={percent} aria-label={phase} />
                    <span class="figure">{percent} %</span>
                </div>
            )}
        </Card>
    );
}

const scheduleQueries = ["GET_UPDATE_SCHEDULE", "GET_HG_REBOOT_INFO", "GET_HG_SLEEP_INFO"] as const;

function Schedules() {
    const update = useReply({ command: "GET_UPDATE_SCHEDULE" });
    const reboot = useReply({ command: "GET_HG_REBOOT_INFO" });
    const sleep = useReply({ command: "GET_HG_SLEEP_INFO" });
    const time = (hour: unknown, minute: unknown) => `${textOf(hour).padStart(2, "0")}:${textOf(minute).padStart(2, "0")}`;
    const { reply: when } = update;
    const off = <span class="muted">off</span>;
    const sleepers = [
        ["gateway", sleep.reply?.GatewaySleepEnable],
        ["Wi-Fi", sleep.reply?.WiFiSleepEnable],
        ["LEDs", sleep.reply?.LedSleepEnable],
    ].filter(([, enable]) => isOn(enable));
    return (
        <Card title="Schedules">
            <Facts
                facts={[
                    ...(when
                        ? ([
                              [
                                  "Updates itself",
                                  isOn(when.Enable)
                                      ? `${time(when.StartHour, when.StartMinute)} to ${time(when.EndHour, when.EndMinute)}`
                                      : off,
                              ],
                          ] as [string, string][])
                        : []),
                    ...(reboot.reply
                        ? ([
                              [
                                  "Restarts",
                                  isOn(reboot.reply.GatewayRebootEnable)
                                      ? `${reboot.reply.Time}, ${daysText(textOf(reboot.reply.DaysOfWeek))}`
                                      : off,
                              ],
                          ] as [string, string][])
                        : []),
                    ...(sleep.reply
                        ? ([
                              [
                                  "Sleeps",
                                  sleepers.length > 0
                                      ? `${sleepers.map(([name]) => name).join(", ")}: ${sleep.reply.StartTime} to ${sleep.reply.EndTime}`
                                      : off,
                              ],
                          ] as [string, string][])
                        : []),
                ]}
            />
            <div class="buttons">
                {when && <Setting title="Edit updates" label="Updates" command="SET_UPDATE_SCHEDULE" query="GET_UPDATE_SCHEDULE" />}
                {reboot.reply && (
                    <Setting title="Edit restarts" label="Restarts" command="SET_HG_REBOOT_INFO" query="GET_HG_REBOOT_INFO" />
                )}
                {sleep.reply && <Setting title="Edit sleep" label="Sleep" command="SET_HG_SLEEP_INFO" query="GET_HG_SLEEP_INFO" />}
            </div>
        </Card>
    );
}

export function Firmware() {
    return (
        <div class="cards">
            {mayCall("GET_UPDATE_STATUS") && <Versions />}
            {mayCall("IMAGE_DOWNLOAD") && <Update />}
            {scheduleQueries.some(mayCall) && <Schedules />}
            {(mayCall("RP_HG_REBOOT") || mayCall("HG_LOCAL_RECOVERY")) && (
                <Card title="Restart">
                    <p class="muted">A restart takes about a minute. The factory settings delete all settings of this home.</p>
                    <div class="buttons">
                        {mayCall("RP_HG_REBOOT") && (
                            <ConfirmButton
                                label="Restart the gateway"
                                question="Meanwhile there is no connection to the Internet."
                                onConfirm={() => act("RP_HG_REBOOT", {}, "The gateway restarts.")}
                            />
                        )}
                        {mayCall("HG_LOCAL_RECOVERY") && (
                            <ConfirmButton
                                label="Factory settings"
                                class="danger"
                                question="All settings of this gateway are lost, with names, passwords and restrictions."
                                onConfirm={() => act("HG_LOCAL_RECOVERY", {}, "The gateway returns to its factory settings.")}
                            />
                        )}
                    </div>
                </Card>
            )}
        </div>
    );
}
