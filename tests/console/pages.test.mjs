// SPDX-License-Identifier: MIT
// Logging in, roles, two pages at once, and a service that restarts under the page.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";
import { card, closePage, eventually, isSwitchedOn, openPage, show, turn } from "./browser.mjs";
import { startService } from "./console.mjs";
import { Service } from "./service.mjs";

const { browser, service } = await startService();

test("the token does not stay in the address", async () => {
    const page = await openPage(browser, service);
    assert.ok(!page.url().includes(service.token));
    assert.ok(!(await page.content()).includes(service.token));
    await closePage(page);
});

test("without a token there is a form, which takes one", async () => {
    const context = await browser.newContext();
    const page = await context.newPage();
    let sockets = 0;
    page.on("websocket", () => (sockets += 1));
    await page.goto(`${service.origin}/#/wifi`);
    const token = page.getByLabel("Token or address");
    await token.fill("0123456789abcdef");
    await page.getByRole("button", { name: "Log in" }).click();
    await page.getByRole("alert").waitFor();
    // The page looks for a new cookie when it gets the focus, and when it has logged in.
    await page.evaluate(() => {
        const realFetch = fetch;
        globalThis.fetch = async (address, ...more) => {
            if (address === "/api/session") {
                globalThis.fetch = realFetch;
                dispatchEvent(new Event("focus"));
            }
            return realFetch(address, ...more);
        };
    });
    // The whole address may be entered as well.
    await token.fill(service.address);
    await page.getByRole("button", { name: "Log in" }).click();
    await page.getByRole("heading", { name: "Wi-Fi", exact: true, level: 1 }).waitFor();
    await service.ask({ notice: { plugin_name: "parental_control", text: "only once" } });
    await show(page, "notices");
    await page.getByText("only once").waitFor();
    assert.equal(sockets, 1);
    await page.getByRole("button", { name: "Log out" }).click();
    await token.waitFor();
    await context.close();
});

test("the whole address may be opened where the page is already", async () => {
    const page = await openPage(browser, service, { view: "wifi" });
    await page.evaluate((address) => (location.href = address), service.address);
    await page.getByRole("heading", { name: "Home", exact: true, level: 1 }).waitFor();
    await page.getByText("Connected", { exact: true }).waitFor();
    assert.ok(!page.url().includes(service.token));
    await closePage(page);
});

test("a password manager recognises the form", async () => {
    const context = await browser.newContext();
    const page = await context.newPage();
    await page.goto(service.origin);
    assert.equal(await page.getByLabel("User").getAttribute("autocomplete"), "username");
    assert.equal(await page.getByLabel("Password", { exact: true }).getAttribute("autocomplete"), "current-password");
    await context.close();
});

test("a failed query is shown as one, not as values", async () => {
    const set = async (...faults) => assert.equal((await service.ask({ control: { faults } })).error, undefined);
    const base = ["hg_base", "lan_ip", "wan_ip"].map((name) => `devapi_get_${name}_info=-1`);
    await set(...base, "devapi_get_uplink_qos_info=-1");
    const page = await openPage(browser, service);
    const gateway = card(page, "Gateway");
    await gateway.getByText("The gateway refused: ").waitFor();
    assert.equal(await gateway.locator("dd").count(), 0);
    await show(page, "qos");
    await card(page, "Rules").getByText("The gateway refused: ").waitFor();
    assert.equal(await card(page, "Rules").getByText("None.").count(), 0);
    await set();
    await eventually(async () => assert.equal(await page.getByText("The gateway refused: ").count(), 0));
    // What is known stays in sight when a later query fails.
    await show(page, "home");
    await gateway.getByText("HGU-AX3000").waitFor();
    await set(...base);
    await gateway.getByText("The gateway refused: ").waitFor();
    await gateway.getByText("HGU-AX3000").waitFor();
    await set();
    await closePage(page);
});

test("the descriptions are loaded again when the connection is back", async () => {
    const first = await openPage(browser, service);
    await first.context().addInitScript(() => {
        globalThis.WebSocket = class extends WebSocket {
            constructor(...words) {
                super(...words);
                globalThis.lastSocket = this;
            }
        };
    });
    const page = await openPage(browser, service, { context: first.context() });
    await page.route("**/api/protocol.json", (route) => route.abort());
    await show(page, "commands");
    await page.locator("main").getByText("Loading…").waitFor();
    await page.unroute("**/api/protocol.json");
    await page.evaluate(() => globalThis.lastSocket.close());
    await page.locator(".finder a").first().waitFor();
    await page.close();
    await closePage(first);
});

test("two pages stay in step", async () => {
    const first = await openPage(browser, service, { view: "internet" });
    const second = await openPage(browser, service, { context: first.context(), view: "internet" });
    const stranger = await openPage(browser, service, { view: "internet" });
    for (const wanted of [false, true]) {
        await turn(card(first, "Services"), "UPnP");
        for (const page of [first, second, stranger]) {
            await eventually(async () => assert.equal(await isSwitchedOn(card(page, "Services"), "UPnP"), wanted));
        }
    }
    await service.ask({ notice: { plugin_name: "parental_control", text: "for all" } });
    for (const page of [first, second, stranger]) {
        await show(page, "notices");
        await page.getByText("for all").waitFor();
    }
    await second.close();
    await closePage(first);
    await closePage(stranger);
});

test("a change by another client is seen", async () => {
    const page = await openPage(browser, service);
    await service.call("SET_HG_BASE_INFO", { Name: "Renamed" });
    await page.locator("header.top strong", { hasText: "Renamed" }).waitFor();
    await card(page, "Mesh").getByRole("button", { name: /^router Renamed/ }).waitFor();
    await service.call("SET_HG_BASE_INFO", { Name: "Lindenhof" });
    await closePage(page);
});

test("a worker process that ends does not disturb the page", async () => {
    const page = await openPage(browser, service);
    const children = readFileSync(`/proc/${service.process.pid}/task/${service.process.pid}/children`, "utf8");
    const workers = children.trim().split(" ").filter(Boolean).map(Number);
    assert.equal(workers.length, 1);
    await show(page, "events");
    process.kill(workers[0], "SIGKILL");
    await page.getByRole("list", { name: "Events" }).getByText("worker.crashed", { exact: true }).waitFor();
    await show(page, "home");
    await card(page, "Mesh").getByRole("button", { name: /^router Attic/ }).waitFor();
    await service.call("SET_HG_BASE_INFO", { Name: "After the crash" });
    await page.locator("header.top strong", { hasText: "After the crash" }).waitFor();
    await closePage(page);
});

test("polling pauses in a hidden page", async () => {
    const page = await openPage(browser, service, { clock: true });
    const sent = [];
    const session = await page.context().newCDPSession(page);
    await session.send("Network.enable");
    session.on("Network.webSocketFrameSent", ({ response }) => sent.push(response.payloadData));
    const hide = (hidden) =>
        page.evaluate((value) => {
            Object.defineProperty(document, "hidden", { value, configurable: true });
            document.dispatchEvent(new Event("visibilitychange"));
        }, hidden);
    // A minute of the page's clock, in which each step leaves time for an answer.
    const minute = async () => {
        const before = sent.length;
        for (let step = 0; step < 20; step += 1) {
            await page.clock.runFor(3000);
            await service.call("GET_SN_INFO");
        }
        return sent.length - before;
    };
    await hide(true);
    // Requests that were waiting may still be sent; none follows them.
    assert.ok((await minute()) <= 6);
    assert.equal(await minute(), 0);
    await hide(false);
    await eventually(async () => assert.ok((await minute()) > 10));
    await closePage(page);
});

test("the service restarts under the page, which comes back", async () => {
    const page = await openPage(browser, service, { view: "devices" });
    await page.getByRole("button", { name: "printer", exact: true }).waitFor();
    await service.end();
    await page.getByText("Connecting…").waitFor();
    // What is known stays in sight.
    assert.equal(await page.getByRole("button", { name: "printer", exact: true }).isVisible(), true);
    await service.restart();
    // A new start has a new token: logging in continues where the page was.
    await page.getByLabel("Token or address").fill(service.token);
    await page.getByRole("button", { name: "Log in" }).click();
    await page.getByText("Connected", { exact: true }).waitFor();
    await page.getByRole("button", { name: "printer", exact: true }).waitFor();
    assert.ok(page.url().endsWith("#/devices"));
    await closePage(page);
});

// Of "viewing-2026".
const hash = "$argon2id$v=19$m=4096,t=1,p=1$YSBzYWx0IGZvciB0ZXN0cw$UYyboIrz6NU/LHy+ugNINzrUPr0DuXuxRXp9FDQZ4EU";

test("the role decides what there is", async (context) => {
    const folder = mkdtempSync(join(tmpdir(), "console-roles-"));
    const file = (name, text) => {
        writeFileSync(join(folder, name), text, { mode: 0o600 });
        return join(folder, name);
    };
    const policy = file(
        "policy.toml",
        `[roles.viewer]
members = ["http-user:viewer"]
allow = ["effect:none", "report:*", "event:*"]
deny = ["GET_ADMIN_INFO"]

[roles.editor]
members = ["http-user:editor"]
allow = ["*"]

[roles.listener]
members = ["http-user:listener"]
allow = ["event:*"]

[roles.guest]
members = ["http-user:guest"]
allow = ["GET_AD_BASE_INFO"]
`,
    );
    const passwords = file("passwords", `viewer:${hash}\nguest:${hash}\nlistener:${hash}\neditor:${hash}\n`);
    const limited = await Service.start({ run: ["--policy", policy, "--console-passwords", passwords] });
    const logIn = async (user) => {
        const page = await (await browser.newContext()).newPage();
        await page.goto(limited.origin);
        await page.getByLabel("User").fill(user);
        await page.getByLabel("Password", { exact: true }).fill("viewing-2026");
        await page.getByRole("button", { name: "Log in" }).click();
        await page.getByText("Connected", { exact: true }).waitFor();
        return page;
    };
    const viewsOf = (page) => page.locator("nav a").allTextContents();
    try {
        await context.test("a viewer changes nothing and sees no secret", async () => {
            const page = await logIn("viewer");
            assert.ok(!(await viewsOf(page)).includes("Simulated gateway"));
            await show(page, "wifi");
            const networks = card(page, "Networks");
            await networks.getByText("hidden").first().waitFor();
            assert.equal(await page.getByRole("button", { name: /^(Edit|Show)/ }).count(), 0);
            assert.equal(await networks.getByRole("switch").first().isDisabled(), true);
            await show(page, "firmware");
            await card(page, "Versions").getByText("Attic").waitFor();
            assert.equal(await page.getByRole("button", { name: "Factory settings" }).count(), 0);
            assert.equal(await page.getByLabel("Image on this computer").count(), 0);
            await show(page, "parental");
            await page.locator(".slot.all").first().waitFor();
            assert.equal(await page.getByRole("button", { name: "Save" }).count(), 0);
            await show(page, "commands");
            await page.locator(".finder a").first().waitFor();
            const names = await page.locator(".finder a").allTextContents();
            assert.ok(names.includes("GET_WIFI_INFO") && !names.includes("GET_ADMIN_INFO"));
            assert.deepEqual(names.filter((name) => name.startsWith("SET_")), []);
            assert.equal(await page.getByRole("switch", { name: "Show secrets" }).count(), 0);
            await page.context().close();
        });
        await context.test("a guest has the views of what it may ask for", async () => {
            const page = await logIn("guest");
            assert.deepEqual(await viewsOf(page), ["Devices", "Notices", "Commands", "Events"]);
            await page.getByText("printer").waitFor();
            assert.equal(await page.getByRole("button", { name: "printer" }).count(), 0);
            await page.context().close();
        });
        await context.test("a password that the role may not see is not replaced by an empty one", async () => {
            const page = await logIn("editor");
            const { PWD } = await limited.call("GET_WIFI_INFO", { SSIDIndex: "3" });
            await show(page, "wifi");
            await page.getByRole("button", { name: "Edit Lindenhof-IoT" }).click();
            await page.locator("dialog [name=SSID]").fill("Things");
            await page.getByRole("button", { name: "Save" }).click();
            const field = page.locator("dialog [name=PWD]");
            assert.equal(await field.evaluate((input) => input.validity.valueMissing), true);
            await field.fill(PWD);
            await page.getByRole("button", { name: "Save" }).click();
            await page.getByRole("dialog").waitFor({ state: "detached" });
            assert.equal((await limited.call("GET_WIFI_INFO", { SSIDIndex: "3" })).SSID, "Things");
            await page.context().close();
        });
        await context.test("a role that may call no command gets a note", async () => {
            const page = await logIn("listener");
            await show(page, "commands");
            await page.getByText("Your role may not call any command.").waitFor();
            await page.context().close();
        });
    } finally {
        await limited.stop();
        rmSync(folder, { recursive: true });
    }
});
