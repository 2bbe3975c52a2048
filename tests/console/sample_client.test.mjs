// SPDX-License-Identifier: MIT
// The sample client in TypeScript of examples/platform, compiled and run with a real service.
import assert from "node:assert/strict";
import { execFile, execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { connect, createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { Service } from "./service.mjs";

const phone = "DA:41:7C:0E:92:B3";
const examples = fileURLToPath(new URL("../../examples/platform", import.meta.url));
const packages = join(process.env.CONSOLE_WORK, "node_modules");
const compiler = join(packages, "typescript/bin/tsc");
let folder;

function compile(project) {
    execFileSync(process.execPath, [compiler, "--project", project, "--typeRoots", join(packages, "@types"),
        "--outDir", folder]);
}

before(() => {
    folder = mkdtempSync(join(tmpdir(), "sample-client-"));
    compile(examples);
});
after(() => rmSync(folder, { recursive: true }));

function run(address, ...words) {
    return new Promise((resolve) => {
        execFile(process.execPath, [join(folder, "http_client.mjs"), address, ...words],
            (problem, output, message) => resolve({ status: problem?.code ?? 0, output, message }));
    });
}

async function withService(options, use) {
    const service = await Service.start({ clock: null, ...options });
    try {
        await use(service);
    } finally {
        await service.stop();
    }
}

async function succeeds(...words) {
    const { status, output, message } = await run(...words);
    assert.deepEqual({ status, message }, { status: 0, message: "" });
    return output;
}

test("renames the gateway, lists its hosts and sets a bedtime", () => withService({}, async (service) => {
    await succeeds(service.address, "rename", "Attic");
    assert.equal((await service.call("GET_HG_BASE_INFO")).Name, "Attic");

    assert.match(await succeeds(service.address, "hosts"), new RegExp(phone));

    await succeeds(service.address, "bedtime", phone, "21:00", "06:30");
    assert.equal((await service.call("GET_GREENNET_ENABLE")).Enable, "1");
    const { Sleep: periods } = await service.call("GET_GREENNET_PROTECT_PERIOD_LIST", { Mac: phone });
    assert.deepEqual(periods.map(({ StartTime, EndTime }) => [StartTime, EndTime]), [["21:00", "06:30"]]);
}));

test("shows how it is used", async () => {
    for (const words of [["hosts", "all"], ["bedtime", phone], ["reset"]]) {
        const { status, message } = await run("http://127.0.0.1:1/#token=0", ...words);
        assert.equal(status, 1);
        assert.match(message, /^usage: /);
    }
});

test("updates the firmware, to the end of the reboot", () =>
    withService({ agent: ["--firmware-folder", folder], run: ["--reboot-seconds", "1"] }, async (service) => {
        const image = join(folder, "firmware.img");
        execFileSync(process.env.MKIMAGE, ["--product", "HGU-AX3000", "--version", "V9.1.4", image]);
        const lines = (await succeeds(service.address, "firmware", pathToFileURL(image).href)).trimEnd().split("\n");
        assert.deepEqual(lines.slice(-3), ["100 %", "reboots for 1 seconds", "V9.1.4"]);

        const failed = await run(service.address, "firmware", pathToFileURL(join(folder, "none")).href);
        assert.equal(failed.status, 1);
        assert.notEqual(failed.message, "");
    }));

// A relay to the service, which calls beforeFirst() before it forwards the first request, and loses the answer to that with
// its connection.
async function withRelay(service, beforeFirst, use) {
    const { host, hostname, port } = new URL(service.address);
    let connections = 0;
    const relay = createServer((client) => {
        connections += 1;
        const losesAnswer = connections === 1;
        const onward = connect(Number(port), hostname);
        client.on("error", () => {}).on("close", () => onward.destroy());
        onward.on("error", () => {}).on("close", () => client.destroy());
        // The service only answers requests for its own host and port.
        client.on("data", async (data) => {
            if (losesAnswer) {
                await beforeFirst();
            }
            onward.write(data.toString().replace(`127.0.0.1:${relay.address().port}`, host));
        });
        onward.on("data", (data) => (losesAnswer ? client.destroy() : client.write(data)));
    });
    await new Promise((resolve) => relay.listen(0, "127.0.0.1", resolve));
    try {
        await use(service.address.replace(host, `127.0.0.1:${relay.address().port}`));
    } finally {
        await new Promise((resolve) => relay.close(resolve));
    }
    assert.ok(connections > 1);
}

test("repeats a request whose answer gets lost, and what is refused during a reboot", () => {
    const audit = join(folder, "audit");
    return withService({ run: ["--audit", audit, "--reboot-seconds", "3"] }, async (service) => {
        const renamed = (name) => readFileSync(audit, "utf8").trimEnd().split("\n").map((line) => JSON.parse(line))
            .filter(({ params }) => params?.Name === name);
        await withRelay(service, () => {}, (address) => succeeds(address, "rename", "Attic"));
        const [first, ...others] = renamed("Attic");
        assert.equal(first.repetition, undefined);
        assert.ok(others.length > 0 && others.every(({ repetition }) => repetition === true));

        await withRelay(service, () => service.call("RP_HG_REBOOT"), (address) => succeeds(address, "rename", "Cellar"));
        assert.equal(renamed("Cellar")[0].code, "rebooting");
        assert.equal((await service.call("GET_HG_BASE_INFO")).Name, "Cellar");
    });
});

test("says why it cannot go on", () => withService({}, async (service) => {
    assert.equal((await run(service.address.replace(service.token, "wrong"), "hosts")).message, "log in first (no code)\n");
    assert.equal((await run(service.address.replace(service.token, "wrong"), "firmware", "file:///none")).message,
        "log in first\n");
}));
