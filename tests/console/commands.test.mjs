// SPDX-License-Identifier: MIT
// Every command as a form: it sends its example and shows the reply; and what a developer finds next to it.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readdirSync } from "node:fs";
import { test } from "node:test";
import { card, eventually, show, turn } from "./browser.mjs";
import { startPage } from "./console.mjs";

const { service, page } = await startPage();
const { commands } = await page.evaluate(async () => (await fetch("/api/protocol.json")).json());

const request = () => page.getByRole("textbox", { name: "Request", exact: true });
const reply = () => page.getByRole("region", { name: "Text of the reply" });
const sameCall = (kind) => page.getByRole("region", { name: `The same call by ${kind}` });

async function send() {
    const shown = page.locator("[data-reply]");
    const known = (await shown.count()) === 0 ? "" : await shown.getAttribute("data-reply");
    await page.getByRole("button", { name: "Send", exact: true }).click();
    await page.locator(`[data-reply]:not([data-reply="${known}"])`).waitFor();
    return reply().textContent();
}

const editing = (command) => page.locator(".workbench h2").getByText(command, { exact: true }).waitFor();

const keysOf = (list) => list.flatMap((key) => [key, ...(key.items ?? [])]);

test("every command has a form with its keys, which sends and shows the reply", async (context) => {
    assert.equal(commands.length, readdirSync(new URL("../../protocol/commands", import.meta.url)).length);
    for (const { command, request: keys, example } of commands) {
        await context.test(command, async () => {
            await show(page, `commands/${command}`);
            await editing(command);
            assert.deepEqual(JSON.parse(await request().inputValue()), example.request);
            for (const { key, secret, max_bytes: bytes } of keysOf(keys)) {
                const row = page.locator(`.key:has(> .check code:text-is("${key}"))`).first();
                const inExample = JSON.stringify(example.request).includes(`"${key}"`);
                if (!inExample && (await row.count()) === 0) {
                    continue; // the key of an element that the example does not have
                }
                const notes = await row.locator("> small").first().textContent();
                assert.equal(notes.includes("secret"), secret === true, notes);
                assert.equal(notes.includes(`${bytes} bytes at most`), bytes !== undefined, notes);
            }
            const shown = JSON.parse(await send());
            assert.equal(typeof shown, "object");
            // Which keys a reply has is described; here it matters that all of them are shown.
            const { reply: whole } = await service.ask({ command, params: example.request });
            if (command.startsWith("GET_") || command.startsWith("QUERY_")) {
                assert.deepEqual(Object.keys(shown), Object.keys(whole));
            }
            assert.ok("Status" in shown || "updateResult" in shown || Object.keys(shown).length > 0);
            await sameCall("hgagent").getByText(command).waitFor();
        });
    }
});

test("fields and text follow each other", async () => {
    await show(page, "commands/SET_WIFI_SLEEP_SCHEDULE");
    await editing("SET_WIFI_SLEEP_SCHEDULE");
    await page.getByRole("button", { name: "Clear" }).click();
    assert.deepEqual(JSON.parse(await request().inputValue()), {});
    await page.getByRole("checkbox", { name: "Send WIFISleepList", exact: true }).check();
    await page.getByRole("button", { name: "Add to WIFISleepList" }).click();
    await page.getByLabel("WIFISleepList 1 StartTime", { exact: true }).fill("21:45");
    const [period] = JSON.parse(await request().inputValue()).WIFISleepList;
    assert.equal(period.StartTime, "21:45");
    await request().fill('{"WIFISleepList": [{"StartTime": "20:15"}]}');
    assert.equal(await page.getByLabel("WIFISleepList 1 StartTime", { exact: true }).inputValue(), "20:15");
    assert.equal(await page.getByRole("checkbox", { name: "Send WIFISleepList 1 EndTime" }).isChecked(), false);
    await page.getByRole("button", { name: "Remove WIFISleepList 1" }).click();
    assert.deepEqual(JSON.parse(await request().inputValue()), { WIFISleepList: [] });
    await request().fill("{");
    await page.getByRole("alert").waitFor();
    assert.equal(await page.getByRole("button", { name: "Send", exact: true }).isDisabled(), true);
});

test("known values are offered, and what is too long is reported", async () => {
    await show(page, "commands/SET_AD_BASE_INFO");
    await editing("SET_AD_BASE_INFO");
    const { BaseInfo } = await service.call("GET_AD_BASE_INFO");
    const input = page.getByRole("combobox", { name: "MAC", exact: true });
    await eventually(async () => {
        const offered = await page
            .locator(`datalist#${await input.getAttribute("list")} option`)
            .evaluateAll((options) => options.map((option) => option.value));
        BaseInfo.forEach(({ Mac }) => assert.ok(offered.includes(Mac), Mac));
    });
    await page.getByLabel("ByName", { exact: true }).fill("ä".repeat(20));
    await page.getByText("40 bytes; what follows byte 31 is cut off").waitFor();
});

test("repeated keys are sent and shown", async () => {
    await show(page, "commands/PLATEFORM_UPDATE_IMMEDIATE");
    await editing("PLATEFORM_UPDATE_IMMEDIATE");
    await request().fill('{"Other": "1", "Other": "2", "Image": {}}');
    const shown = await send();
    assert.equal(shown.match(/"FailReason"/g).length, 2);
    assert.equal(shown.match(/"Other"/g).length, 2);
    assert.ok(shown.indexOf('"get version error"') < shown.indexOf('"handle pack error"'));
});

test("secrets are masked unless they are asked for", async () => {
    await show(page, "commands/GET_ADMIN_INFO");
    await editing("GET_ADMIN_INFO");
    const { Password } = await service.call("GET_ADMIN_INFO");
    assert.ok(!(await send()).includes(Password));
    await turn(page, "Show secrets");
    assert.ok((await send()).includes(Password));
});

test("the same call works on the command line", async () => {
    await show(page, "commands/GET_WIFI_INFO");
    await editing("GET_WIFI_INFO");
    await page.getByRole("button", { name: "Example" }).click();
    const text = (await sameCall("hgagent").textContent())
        .replace(/^hgagent/, '"$HGAGENT"')
        .replace("$XDG_RUNTIME_DIR/hgagent.sock", service.socket);
    const printed = execFileSync("sh", ["-c", text], { encoding: "utf8" });
    assert.deepEqual(JSON.parse(printed), await service.call("GET_WIFI_INFO", { SSIDIndex: "1" }));
});

test("the same call works in Python", async () => {
    await page.getByRole("button", { name: "Python" }).click();
    const printed = execFileSync("python3", ["-c", await sameCall("Python").textContent()], {
        encoding: "utf8",
        env: { ...process.env, HGAGENT_TOKEN: service.token },
    });
    const { SSID } = await service.call("GET_WIFI_INFO", { SSIDIndex: "1" });
    assert.ok(printed.includes(`'SSID': '${SSID}'`), printed);
    await page.getByRole("button", { name: "MQTT" }).click();
    assert.ok((await sameCall("MQTT").textContent()).includes("/command/GET_WIFI_INFO"));
});

test("earlier requests can be sent again", async () => {
    await show(page, "commands/RESPONSE_ROUTER_VERSION");
    await editing("RESPONSE_ROUTER_VERSION");
    await request().fill('{"VersionInfo": "first"}');
    await send();
    await request().fill('{"VersionInfo": "second"}');
    await send();
    const history = page.getByRole("list", { name: "History" }).getByRole("button", { name: "RESPONSE_ROUTER_VERSION" });
    await history.nth(1).click();
    assert.equal(await request().inputValue(), '{"VersionInfo": "first"}');
});

test("a refusal of the service is shown with its code", async () => {
    await show(page, "commands/GET_SN_INFO");
    await editing("GET_SN_INFO");
    await request().fill('{"a": "\\u0000"}');
    await send();
    await page.locator("[data-reply]").getByText(/bad-request/).waitFor();
});

test("commands are found by a part of their name or description", async () => {
    await page.getByRole("searchbox", { name: "Find a command" }).fill("guest");
    const links = page.locator(".finder a");
    await eventually(async () =>
        assert.deepEqual(await links.allTextContents(), ["GET_HG_GUEST_SSID", "SET_HG_GUEST_SSID"]),
    );
    await links.first().click();
    await editing("GET_HG_GUEST_SSID");
});

test("device calls are traced", async () => {
    await show(page, "commands/GET_SN_INFO");
    await editing("GET_SN_INFO");
    await turn(card(page, "Device calls"), "Trace");
    await page.getByRole("button", { name: "Clear" }).click();
    await send();
    const calls = page.getByRole("list", { name: "Device calls" });
    await calls.getByText(/devapi_get_sn_info\(.*\) = 0 in/).waitFor();
    await turn(card(page, "Device calls"), "Trace");
    await eventually(async () =>
        assert.equal(await page.getByRole("switch", { name: "Trace" }).isChecked(), false),
    );
});

test("faults, clock and scenario of the simulated gateway are set", async () => {
    await show(page, "simulation");
    const faults = card(page, "Faults");
    await faults.getByRole("combobox", { name: "New fault" }).fill("devapi_get_sn_info=-1");
    await faults.getByRole("button", { name: "Add" }).click();
    await faults.getByRole("list").getByText("devapi_get_sn_info=-1").waitFor();
    assert.equal((await service.call("GET_SN_INFO")).Status, "1");
    await faults.getByRole("button", { name: "Lift all" }).click();
    await eventually(async () => assert.equal((await service.call("GET_SN_INFO")).Status, "0"));
    await faults.getByRole("combobox", { name: "New fault" }).fill("no_such_function=-1");
    await faults.getByRole("button", { name: "Add" }).click();
    await page.locator(".message.bad").waitFor();
    const clock = card(page, "Clock");
    const { UpTime } = await service.call("GET_HG_BASE_INFO");
    await clock.getByRole("button", { name: "+ 1 hour" }).click();
    await eventually(async () => {
        const after = await service.call("GET_HG_BASE_INFO");
        assert.ok(Number(after.UpTime) >= Number(UpTime) + 3600);
    });
    await clock.getByText("stands still", { exact: true }).waitFor();
    await clock.getByRole("button", { name: "Computer's time" }).click();
    await clock.getByText("runs", { exact: true }).waitFor();
    await clock.getByRole("button", { name: "+ 1 day" }).click();
    await clock.getByText("runs, 1 d ahead", { exact: true }).waitFor();
    const scenario = card(page, "Scenario");
    await scenario.getByRole("combobox", { name: "Scenario" }).selectOption("single_router");
    await scenario.getByRole("button", { name: "Start this scenario" }).click();
    // It is refused while a worker of an earlier command is still running.
    await eventually(async () => {
        await page.evaluate(() => document.querySelector("dialog button.primary:not(:disabled)")?.click());
        assert.equal(await page.getByRole("dialog").count(), 0);
    });
    await scenario.locator("dd").getByText("single_router").waitFor();
    const { Name } = await service.call("GET_HG_BASE_INFO");
    assert.notEqual(Name, "Lindenhof");
    await page.locator("header.top strong").getByText(Name, { exact: true }).waitFor();
});
