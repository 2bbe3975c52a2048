// SPDX-License-Identifier: MIT
// A client of a service's HTTP interface, with the types of the protocol, for Node.js 18 or later:
//
//   http_client ADDRESS rename NAME | hosts | bedtime MAC START END | firmware URL
//
// ADDRESS is the one that hgagent run --console prints, with the token. A request is repeated with the same key until it
// is answered: a change is executed at most once. After a restart of the service the token is another one: whether a change
// was executed has to be read from the gateway.
import { randomUUID } from "node:crypto";
import { setTimeout as sleep } from "node:timers/promises";
import type { Answer, Code, Command, Event, Failed, Reply, Request } from "hg_protocol";

type Success<C extends Command> = Extract<Reply<C>, { Status: "0" }>;

const [repeatSeconds, attemptSeconds] = [1, 10];
const notExecuted: readonly Code[] = ["busy", "rate-limited", "rebooting"]; // after these a request is repeated as well

// The command was not executed, has failed, or its outcome is unknown.
class Refused extends Error {}

class Gateway {
    readonly #url: string;
    readonly #login: Record<string, string>;

    constructor(address: string) {
        const url = new URL(address);
        this.#login = { Authorization: `Bearer ${new URLSearchParams(url.hash.slice(1)).get("token") ?? ""}` };
        this.#url = url.origin;
    }

    // The reply to a command that succeeds.
    async call<C extends Command>(command: C, params: Request<C>, seconds = 60): Promise<Success<C>> {
        const [end, key] = [Date.now() + seconds * 1000, randomUUID()];
        for (;;) {
            const answer = await this.#ask(command, params, key);
            if (answer !== undefined && !("error" in answer && notExecuted.includes(answer.code))) {
                return checked<C>(answer);
            }
            if (Date.now() + repeatSeconds * 1000 >= end) {
                throw new Refused(`${answer && "error" in answer ? answer.error : "no answer"} for ${seconds} seconds`);
            }
            await sleep(repeatSeconds * 1000);
        }
    }

    // Nothing if the connection has failed, or has been silent for long.
    async #ask<C extends Command>(command: C, params: Request<C>, key: string): Promise<Answer<C> | undefined> {
        try {
            const response = await fetch(`${this.#url}/api/command/${command}`, {
                method: "POST",
                headers: { ...this.#login, "Idempotency-Key": key },
                body: JSON.stringify(params),
                signal: AbortSignal.timeout(attemptSeconds * 1000),
            });
            return (await response.json()) as Answer<C>;
        } catch {
            return undefined;
        }
    }

    // Returns when the service reports what happens from now on.
    async events(): Promise<AsyncGenerator<Event>> {
        const response = await fetch(`${this.#url}/api/events`, { headers: this.#login });
        if (!response.ok || response.body === null) {
            throw new Refused(((await response.json()) as Failed).error);
        }
        return eventsOf(response.body);
    }
}

function checked<C extends Command>(answer: Answer<C>): Success<C> {
    if ("error" in answer) {
        throw new Refused(`${answer.error} (${answer.code ?? "no code"})`);
    }
    const reply = answer.reply as { Status?: string; FailReason?: string };
    if (reply.Status !== "0") {
        throw new Refused(reply.FailReason);
    }
    return answer.reply as Success<C>;
}

async function* eventsOf(stream: AsyncIterable<Uint8Array>): AsyncGenerator<Event> {
    const decoder = new TextDecoder();
    let text = "";
    for await (const part of stream) {
        const blocks = (text + decoder.decode(part, { stream: true })).split("\n\n");
        text = blocks.pop() ?? "";
        for (const block of blocks) {
            const event = /^event: (.*)$/m.exec(block)?.[1];
            const data = /^data: (.*)$/m.exec(block)?.[1];
            if (event !== undefined && data !== undefined) {
                yield { event, data: JSON.parse(data) } as Event;
            }
        }
    }
    throw new Refused("the service has ended");
}

async function bedtime(gateway: Gateway, mac: string, start: string, end: string): Promise<void> {
    const { DeviceList: known } = await gateway.call("GET_GREENNET_DEVICE_LIST", {});
    if (!known.some((device) => device.Mac === mac)) {
        const devices = known.map(({ Mac, Name, NotifyEnable }) => ({ Mac, Name, NotifyEnable }));
        devices.push({ Mac: mac, Name: mac, NotifyEnable: "0" });
        await gateway.call("SET_GREENNET_DEVICE_LIST", { DeviceList: devices });
    }
    const period = { StartTime: start, EndTime: end, Enable: "1", DaysOfWeek: "1234567" };
    await gateway.call("SET_GREENNET_PROTECT_PERIOD_LIST", { Mac: mac, Sleep: [period] });
    await gateway.call("SET_GREENNET_ENABLE", { Enable: "1" });
}

async function firmware(gateway: Gateway, url: string): Promise<void> {
    const events = await gateway.events();
    await gateway.call("IMAGE_DOWNLOAD", { MainRouter: { UpdateUrl: url } });
    for await (const happened of events) {
        if (happened.event === "update.failed") {
            throw new Refused(happened.data.reason);
        } else if (happened.event === "update.progress") {
            console.log(`${happened.data.percent} %`);
        } else if (happened.event === "reboot.begun") {
            console.log(`reboots for ${happened.data.seconds} seconds`);
        } else if (happened.event === "reboot.ended") {
            return console.log((await gateway.call("GET_HG_BASE_INFO", {})).FWVersion);
        }
    }
}

async function main([address = "", action = "", ...words]: string[]): Promise<void> {
    if (words.length !== new Map([["rename", 1], ["hosts", 0], ["bedtime", 3], ["firmware", 1]]).get(action)) {
        throw new Error("usage: http_client ADDRESS rename NAME | hosts | bedtime MAC START END | firmware URL");
    }
    const gateway = new Gateway(address);
    const [first = "", start = "", end = ""] = words;
    if (action === "rename") {
        await gateway.call("SET_HG_BASE_INFO", { Name: first });
    } else if (action === "hosts") {
        for (const host of (await gateway.call("GET_AD_BASE_INFO", {})).BaseInfo) {
            console.log(host.Mac, host.ip, host.Name);
        }
    } else if (action === "bedtime") {
        await bedtime(gateway, first, start, end);
    } else {
        await firmware(gateway, first);
    }
}

await main(process.argv.slice(2)).catch((problem: Error) => {
    console.error(problem.message);
    process.exitCode = 1;
});
