// SPDX-License-Identifier: MIT
// Each action changes the home, and the page follows.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { join } from "node:path";
import { test } from "node:test";
import { card, eventually, fact, isSwitchedOn, openPage, show, turn } from "./browser.mjs";
import { startPage } from "./console.mjs";
import { fileFor } from "./service.mjs";

const { service, page } = await startPage();

const dialog = () => page.getByRole("dialog");

async function save(button = "Save") {
    await dialog().getByRole("button", { name: button, exact: true }).click();
    await dialog().waitFor({ state: "detached" });
}

// Turns a switch, and expects the home to have it, and the page to show it.
async function turnBoth(where, name, read) {
    await eventually(async () => assert.equal(await isSwitchedOn(where, name), (await read()) === "1"));
    for (const wanted of (await read()) === "1" ? ["0", "1"] : ["1", "0"]) {
        await turn(where, name);
        await eventually(async () => assert.equal(await read(), wanted));
        await eventually(async () => assert.equal(await isSwitchedOn(where, name), wanted === "1"));
    }
}

test("the LEDs are switched", async () => {
    await show(page, "home");
    const gateway = card(page, "Gateway");
    await turnBoth(gateway, "LEDs", async () => (await service.call("GET_LED_STATUS")).LedSwitch);
});

test("routers are renamed, and the drawing follows", async () => {
    await show(page, "home");
    const mesh = card(page, "Mesh");
    for (const [name, wanted] of [
        ["Lindenhof", "Lindenhof 2"],
        ["Attic", "Loft"],
    ]) {
        await mesh.getByRole("button", { name: new RegExp(`^router ${name}\\b`) }).click();
        await card(page, name).getByRole("button", { name: "Rename" }).click();
        const field = dialog().getByLabel("Name");
        // 64 bytes, which the gateway would cut.
        await field.fill("ü".repeat(32));
        await dialog().getByRole("button", { name: "Save" }).click();
        assert.match(await field.evaluate((input) => input.validationMessage), /^At most 63 bytes/);
        await field.fill(wanted);
        await save();
        await mesh.getByRole("button", { name: new RegExp(`^router ${wanted}`) }).waitFor();
        await mesh.getByRole("button", { name: new RegExp(`^router ${wanted}`) }).click();
    }
    assert.equal((await service.call("GET_HG_BASE_INFO")).Name, "Lindenhof 2");
    await page.locator("header.top strong", { hasText: "Lindenhof 2" }).waitFor();
    const { ChildRouter } = await service.call("GET_TSLINK_TOPOLOGY_INFO");
    assert.ok(ChildRouter.some(({ Name }) => Name === "Loft"));
});

test("a new router may join", async () => {
    await show(page, "home");
    await page.getByRole("button", { name: "Add a router" }).click();
    await save("Add a router");
    await page.getByText("A new router may join.").waitFor();
});

test("a device is named, blocked and limited", async () => {
    await show(page, "devices");
    await page.getByRole("button", { name: "printer", exact: true }).click();
    await dialog().getByLabel("Name", { exact: true }).fill("Drucker");
    await dialog().getByLabel("May use the Internet").uncheck();
    await dialog().getByLabel("Download limit in kbit/s").fill("5000");
    await save();
    const row = page.getByRole("row").filter({ hasText: "Drucker" });
    await row.getByText("online, blocked").waitFor();
    const { BaseInfo } = await service.call("GET_AD_BASE_INFO");
    const host = BaseInfo.find(({ Name }) => Name === "printer");
    assert.equal(host.ByName, "Drucker");
    assert.equal(host.AccessEnable, "0");
    await show(page, "home");
    await card(page, "Mesh").getByRole("button", { name: /^Drucker.*blocked/ }).waitFor();
});

test("a type of device that the page does not know is kept", async () => {
    const sent = [];
    await page.context().routeWebSocket(/\/api\/socket$/, (client) => {
        const server = client.connectToServer();
        client.onMessage((text) => {
            sent.push(text);
            server.send(text);
        });
        server.onMessage((text) => client.send(text.replaceAll('"DevType":"Printer"', '"DevType":"Toaster"')));
    });
    const other = await openPage(page.context().browser(), service, { context: page.context(), view: "devices" });
    await other.getByRole("button", { name: "Drucker", exact: true }).click();
    await other.getByRole("button", { name: "Save" }).click();
    await eventually(async () => assert.ok(sent.some((text) => /SET_AD_BASE_INFO.*"DevType":"Toaster"/.test(text))));
    await other.close();
});

test("a refusal of the gateway is shown, and nothing is lost", async () => {
    await show(page, "internet");
    const local = card(page, "Local network");
    await local.getByRole("button", { name: "Edit local network" }).click();
    const start = dialog().locator("[name=StartIp]");
    await start.fill("10.9.9.9");
    await dialog().getByRole("button", { name: "Save" }).click();
    await dialog().getByRole("alert").getByText("The gateway refused").waitFor();
    assert.equal(await start.inputValue(), "10.9.9.9");
    await start.fill("192.168.1.120");
    await save();
    await eventually(async () =>
        assert.equal(await fact(local, "Addresses for devices").textContent(), "192.168.1.120 to 192.168.1.249"),
    );
    assert.equal((await service.call("GET_LAN_IP_INFO")).StartIp, "192.168.1.120");
});

test("networks are switched and changed", async () => {
    await show(page, "wifi");
    const networks = card(page, "Networks");
    const read = (index) => async () => (await service.call("GET_WIFI_INFO", { SSIDIndex: index })).Enable;
    await turnBoth(networks, "Lindenhof-IoT on", read("3"));
    const { PWD } = await service.call("GET_WIFI_INFO", { SSIDIndex: "3" });
    await networks.getByRole("button", { name: "Edit Lindenhof-IoT" }).click();
    await dialog().locator("[name=SSID]").fill("Things");
    await dialog().locator("[name=Channel]").fill("11");
    await save();
    await networks.getByRole("row").filter({ hasText: "Things" }).getByText("11").waitFor();
    const changed = await service.call("GET_WIFI_INFO", { SSIDIndex: "3" });
    assert.equal(changed.SSID, "Things");
    assert.equal(changed.Channel, "11");
    assert.equal(changed.PWD, PWD);
    // The spectrum has moved with it.
    await page.getByRole("img", { name: /^2.4 GHz\. Own networks on channel 11\./ }).waitFor();
});

test("the guest network opens for a time", async () => {
    await show(page, "wifi");
    const guests = card(page, "Guest network, 2.4 GHz");
    const read = async () => (await service.call("GET_HG_GUEST_SSID", { Band: "2.4GHz" })).Enable;
    await turnBoth(guests, "Lindenhof-Guest", read);
    await guests.getByRole("button", { name: /^Edit/ }).click();
    await dialog().locator("[name=ContinueTime]").fill("2");
    await dialog().locator("[name=HourTime]").fill("3");
    await save();
    await eventually(async () => assert.equal(await fact(guests, "Time left").textContent(), "2 d 3 h"));
    const { Remainingtime } = await service.call("GET_HG_GUEST_SSID", { Band: "2.4GHz" });
    assert.equal(Remainingtime, "183600");
    // Switching it off and on again starts its time again, and keeps it.
    await turnBoth(guests, "Lindenhof-Guest", read);
    const { ContinueTime, HourTime, Remainingtime: left } = await service.call("GET_HG_GUEST_SSID", { Band: "2.4GHz" });
    assert.deepEqual({ ContinueTime, HourTime, left }, { ContinueTime: "2", HourTime: "3", left: "183600" });
});

const periods = async (Mac) => (await service.call("GET_GREENNET_PROTECT_PERIOD_LIST", { Mac })).Sleep;
const cell = (day, slot) => page.locator(`[data-day="${day}"][data-slot="${slot}"]`);

async function saveTimes(name) {
    await page.getByRole("region", { name: `When ${name} is restricted` }).getByRole("button", { name: "Save" }).click();
    await eventually(async () => assert.equal(await page.getByRole("button", { name: "Discard" }).isDisabled(), true));
}

test("restricted times are painted with the mouse", async () => {
    await show(page, "parental");
    const Mac = "72:9B:E0:46:D8:15";
    await page.locator(".children").getByRole("button", { name: "Jonas", exact: true }).click();
    await cell(1, 36).waitFor();
    const before = await periods(Mac);
    await cell(1, 36).hover();
    await page.mouse.down();
    await cell(1, 39).hover();
    await cell(2, 39).hover();
    await page.mouse.up();
    await saveTimes("Jonas");
    const after = await periods(Mac);
    assert.deepEqual(
        after.filter(({ StartTime }) => StartTime >= "18:00" && StartTime < "20:00"),
        [
            { StartTime: "18:00", EndTime: "20:00", Enable: "1", DaysOfWeek: "2" },
            { StartTime: "19:30", EndTime: "20:00", Enable: "1", DaysOfWeek: "3" },
        ],
    );
    assert.equal(after.length, before.length + 2);
    // Painting over restricted cells frees them.
    await cell(1, 36).hover();
    await page.mouse.down();
    await cell(1, 39).hover();
    await page.mouse.up();
    await cell(2, 39).click();
    await saveTimes("Jonas");
    assert.deepEqual(await periods(Mac), before);
});

test("restricted times are painted by keyboard", async () => {
    const Mac = "70:F0:88:2C:A6:93";
    await page.locator(".children").getByRole("button", { name: "Console", exact: true }).click();
    await page.getByRole("region", { name: "When Console is restricted" }).waitFor();
    const before = await periods(Mac);
    await page.getByRole("grid").locator('[tabindex="0"]').focus();
    await page.keyboard.press("Home");
    for (let day = 0; day < 6; day += 1) {
        await page.keyboard.press("ArrowDown");
    }
    assert.equal(await page.evaluate(() => document.activeElement.dataset.day), "6");
    for (let slot = 0; slot < 20; slot += 1) {
        await page.keyboard.press("ArrowRight");
    }
    await page.keyboard.press("Space");
    await page.keyboard.press("Shift+ArrowRight");
    await page.keyboard.press("Shift+ArrowRight");
    assert.equal(await cell(6, 22).getAttribute("aria-label"), "Sunday 11:00, restricted");
    await page.keyboard.press("Shift+Home");
    await saveTimes("Console");
    const added = { StartTime: "00:00", EndTime: "11:30", Enable: "1", DaysOfWeek: "7" };
    const after = await periods(Mac);
    assert.ok(after.some((period) => JSON.stringify(period) === JSON.stringify(added)), JSON.stringify(after));
    assert.equal(after.length, before.length + 1);
});

test("devices come under parental control and leave it", async () => {
    await show(page, "parental");
    const list = async () => (await service.call("GET_GREENNET_DEVICE_LIST")).DeviceList;
    const devices = page.locator(".children li");
    await page.getByRole("combobox", { name: "Device to add" }).selectOption({ label: "Anna" });
    await page.getByRole("button", { name: "Add", exact: true }).click();
    const anna = devices.filter({ hasText: "Anna" });
    await anna.waitFor();
    assert.equal((await list()).length, 3);
    await turnBoth(anna, "Notices of Anna", async () => (await list()).find(({ Name }) => Name === "Anna").NotifyEnable);
    await anna.getByRole("button", { name: "Remove Anna", exact: true }).click();
    await save("Remove");
    await anna.waitFor({ state: "detached" });
    assert.deepEqual((await list()).map(({ Name }) => Name), ["Jonas", "Console"]);
    await turnBoth(page, "Parental control", async () => (await service.call("GET_GREENNET_ENABLE")).Enable);
});

test("a WAN connection is changed", async () => {
    await show(page, "internet");
    const voice = card(page, "Voice");
    await voice.getByRole("button", { name: "Edit Voice" }).click();
    await dialog().locator("[name=IPADDRESS]").fill("172.24.9.20");
    await save();
    await eventually(async () => assert.equal(await fact(voice, "IPv4 address").textContent(), "172.24.9.20"));
    assert.equal((await service.call("QUERY_WAN_INFO", { WANName: "Voice" })).IPADDRESS, "172.24.9.20");
});

test("services and the DHCP server are switched", async () => {
    await show(page, "internet");
    const services = card(page, "Services");
    await turnBoth(services, "UPnP", async () => (await service.call("GET_UPNP_STATE")).Enable);
    await turnBoth(services, "WPS", async () => (await service.call("GET_WPS_ENABLE")).Enable);
    await turnBoth(services, "SIP", async () => (await service.call("GET_AP_ALG_ABILITY")).SIP);
    await turnBoth(services, "Firewall", async () => (await service.call("HG_INSPECTION")).FireWallEnable);
    await turnBoth(card(page, "Local network"), "DHCP server", async () => (await service.call("GET_HG_DHCP_INFO")).Enable);
});

test("ports are bound to another connection", async () => {
    await show(page, "internet");
    await page.getByRole("button", { name: "Ports of IPTV" }).click();
    await dialog().locator("[name=BoundPorts]").fill("LAN3,LAN4");
    await save();
    const row = card(page, "Ports").getByRole("row").filter({ hasText: "LAN3" });
    await row.getByText("IPTV").waitFor();
    const { port_stat_list: list } = await service.call("GET_PORT_BINDING");
    assert.equal(list.find(({ WANName }) => WANName === "IPTV").BoundPorts, "LAN3,LAN4");
});

test("quality of service is switched, ordered and given rules", async () => {
    await show(page, "qos");
    const qos = () => service.call("GET_QOS_INFO");
    await turnBoth(card(page, "Applications"), "Quality of service", async () => (await qos()).Enable);
    await page.getByRole("combobox", { name: "Priority of Web" }).selectOption("7");
    await eventually(async () => assert.equal((await qos()).app_info_list.find(({ Name }) => Name === "Web").PriorityLevel, "7"));
    const rules = card(page, "Rules");
    await rules.getByRole("button", { name: "New rule" }).click();
    await dialog().getByLabel("Name", { exact: true }).fill("Backup");
    await dialog().getByLabel("Priority, 1 is the highest").selectOption("8");
    await dialog().getByLabel("Traffic 1").selectOption("DPORT");
    await dialog().getByLabel("Lowest value 1").fill("873");
    await save();
    await rules.getByText("Port of the receiver 873").waitFor();
    const rule = (await qos()).classification_info_list.find(({ Name }) => Name === "Backup");
    assert.deepEqual(rule.type_list, [{ Type: "DPORT", Min: "873", Max: "873" }]);
    await rules.getByRole("button", { name: "Edit Backup" }).click();
    await dialog().getByLabel("Highest value 1").fill("880");
    await save();
    await rules.getByText("Port of the receiver 873 to 880").waitFor();
    await rules.locator(".rule").filter({ hasText: "Backup" }).getByRole("button", { name: "Delete Backup", exact: true }).click();
    await save("Delete");
    await rules.getByText("Backup").waitFor({ state: "detached" });
    assert.equal((await qos()).classification_info_list.length, 1);
});

test("an optimisation shows the values before and after", async () => {
    await show(page, "inspection");
    const before = await service.call("HG_WIFI_INSPECTION");
    await page.getByRole("button", { name: "Optimise" }).click();
    await page.getByRole("columnheader", { name: "After" }).waitFor();
    const cells = page.getByRole("row").filter({ hasText: "Congestion of the channel" }).getByRole("cell");
    assert.equal(await cells.nth(1).textContent(), `${before.Congestion} %`);
    const after = await service.call("HG_WIFI_INSPECTION");
    assert.equal(await cells.nth(2).textContent(), `${after.Congestion} %`);
});

test("schedules are changed", async () => {
    await show(page, "firmware");
    const schedules = card(page, "Schedules");
    await schedules.getByRole("button", { name: "Edit restarts" }).click();
    await dialog().locator("[name=Time]").fill("05:15");
    await dialog().locator("[name=DaysOfWeek]").fill("7");
    await save();
    await eventually(async () => assert.equal(await fact(schedules, "Restarts").textContent(), "05:15, Sun"));
    assert.equal((await service.call("GET_HG_REBOOT_INFO")).Time, "05:15");
});

test("firmware is uploaded, installed, and runs after the restart", async () => {
    await show(page, "firmware");
    const image = join(service.folder, "new.img");
    execFileSync(process.env.MKIMAGE, ["--product", "HGU-AX3000", "--version", "V2.5.0", "--date", "2026-01-01", "--size", "200000", image]);
    await page.getByLabel("Image on this computer").setInputFiles(image);
    const update = card(page, "Update");
    await update.getByText("Uploaded.").waitFor();
    assert.equal(await fact(update, "Image").textContent(), "new.img");
    await update.getByRole("button", { name: "Install and restart" }).click();
    await save("Install and restart");
    await update.getByText("The gateway has restarted.").waitFor();
    await card(page, "Versions").getByText("V2.5.0").waitFor();
    assert.equal((await service.call("HG_GET_UPDATE_STATUS")).FWVersion, "V2.5.0");
});

test("an invalid image is reported", async () => {
    await show(page, "home");
    await show(page, "firmware");
    await page.getByLabel("Image on this computer").setInputFiles(fileFor(service, "bad.img", "no image"));
    const update = card(page, "Update");
    await update.getByRole("button", { name: "Install and restart" }).click();
    await save("Install and restart");
    await update.getByText(/^The update has failed: /).waitFor();
});

test("factory settings bring the first names back", async () => {
    await show(page, "firmware");
    await page.getByRole("button", { name: "Factory settings" }).click();
    await save("Factory settings");
    await page.locator("header.top strong", { hasText: /^Lindenhof$/ }).waitFor();
    assert.equal((await service.call("GET_HG_BASE_INFO")).Name, "Lindenhof");
});

test("the mesh is switched off", async () => {
    await show(page, "home");
    const gateway = card(page, "Gateway");
    await turn(gateway, "Mesh");
    await eventually(async () => assert.equal((await service.call("GET_MESH_STATUS")).MeshEnable, "0"));
    await eventually(async () => assert.equal(await isSwitchedOn(gateway, "Mesh"), false));
    // It is busy for a while afterwards, and the clock is stopped.
    await turn(gateway, "Mesh");
    await page.getByText("The gateway refused: MESH_BUSY_0.").waitFor();
    assert.equal(await isSwitchedOn(gateway, "Mesh"), false);
});
