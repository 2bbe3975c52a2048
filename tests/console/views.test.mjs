// SPDX-License-Identifier: MIT
// Each view shows what the home holds.
import assert from "node:assert/strict";
import { test } from "node:test";
import { card, eventually, fact, isSwitchedOn, show } from "./browser.mjs";
import { startPage } from "./console.mjs";

const { service, page } = await startPage();

const nameOf = ({ ByName, Name }) => (ByName !== undefined && ByName !== "NULL" && ByName !== "" ? ByName : Name);
const rateText = (kbits) => (Number(kbits) < 1000 ? `${kbits} kbit/s` : `${(kbits / 1000).toFixed(1)} Mbit/s`);

test("the mesh has every router and station, with its link", async () => {
    await show(page, "home");
    const { topology } = (await service.ask({ report: "mesh" })).reply;
    const routers = [topology.MainRouter, ...topology.ChildRouter];
    const stations = [...topology.MainRouter.MainBaseInfo, ...topology.ChildRouter.flatMap((router) => router.ChildBaseInfo)];
    const mesh = card(page, "Mesh");
    await eventually(async () => {
        assert.equal(await mesh.locator(".node.router").count(), routers.length);
        assert.equal(await mesh.locator(".node.station").count(), stations.length);
    });
    for (const { Name, NetStatus, ChildRouterAccessType: access, dbm } of topology.ChildRouter) {
        const label = `router ${Name} ${access === "cable" ? "Cable" : access.replace("GHz", " GHz")}${dbm === "NULL" ? "" : ` · ${dbm.replace("-", "−")} dBm`}`;
        assert.equal(NetStatus, "1");
        await mesh.getByRole("button", { name: label, exact: true }).waitFor();
    }
    for (const host of stations) {
        const node = mesh.locator(".node.station").filter({ has: page.locator("text.name", { hasText: nameOf(host) }) });
        const label = await node.getAttribute("aria-label");
        const link = host.AccessType === "cable" ? "Cable" : host.AccessType.replace("GHz", " GHz");
        assert.equal(label.includes(link), host.NetStatus !== "0", label);
        assert.equal(label.includes("offline"), host.NetStatus === "0", label);
        assert.equal(/\boffline\b/.test(await node.getAttribute("class")), host.NetStatus === "0");
        assert.equal(label.includes("blocked"), host.AccessEnable === "0", label);
    }
    // The attic is attached to the first floor, not to the main router.
    const middle = async (name) =>
        (await mesh.locator(".node.router").filter({ hasText: name }).locator(".box").boundingBox()).x;
    assert.ok((await middle("Attic")) > (await middle("First floor")));
});

test("home shows the state and the traffic of the gateway", async () => {
    const base = await service.call("GET_HG_BASE_INFO");
    const gateway = card(page, "Gateway");
    await eventually(async () => assert.equal(await fact(gateway, "Model").textContent(), base.DeviceType));
    assert.equal(await fact(gateway, "Firmware").textContent(), `${base.FWVersion} (${base.FWDATA})`);
    assert.equal(await fact(gateway, "Internet").textContent(), "connected");
    assert.equal(await fact(gateway, "IP address").textContent(), base.LanIp);
    assert.equal(await gateway.getByRole("progressbar", { name: "Memory" }).getAttribute("value"), base.Memory);
    const traffic = await card(page, "Traffic").textContent();
    assert.ok(traffic.includes(rateText(base.DownSpeed)) && traffic.includes(rateText(base.UpSpeed)), traffic);
    assert.equal(await isSwitchedOn(gateway, "LEDs"), true);
    assert.equal(await isSwitchedOn(gateway, "Mesh"), true);
});

test("devices are those of the gateway, in its order, and can be sorted and found", async () => {
    await show(page, "devices");
    const { BaseInfo } = await service.call("GET_AD_BASE_INFO");
    const table = page.getByRole("table", { name: "Devices" });
    const names = () => table.locator(".rows .name > button").allTextContents();
    await eventually(async () => assert.deepEqual(await names(), BaseInfo.map(nameOf)));
    for (const host of BaseInfo) {
        const row = table.getByRole("row").filter({ hasText: host.Mac });
        const cells = await row.getByRole("cell").allTextContents();
        assert.equal(cells[1], host.ip === "NULL" || host.ip === "" ? "–" : host.ip);
        assert.equal(cells[3], host.AccessType === "cable" ? "Cable" : host.AccessType.replace("GHz", " GHz"));
        assert.equal(cells[4], (host.NetStatus === "0" ? "offline" : "online") + (host.AccessEnable === "0" ? ", blocked" : ""));
        assert.equal(cells[5], rateText(host.UpSpeed));
        assert.equal(cells[6], rateText(host.DownSpeed));
    }
    const rates = BaseInfo.map((host) => Number(host.DownSpeed));
    await table.getByRole("button", { name: "Download" }).click();
    await eventually(async () => {
        const shown = await names();
        const sorted = shown.map((name) => Number(BaseInfo.find((host) => nameOf(host) === name).DownSpeed));
        assert.deepEqual(sorted, [...rates].sort((a, b) => b - a));
    });
    assert.equal(await table.getByRole("columnheader", { name: "Download" }).getAttribute("aria-sort"), "descending");
    await table.getByRole("button", { name: "Download" }).click();
    await eventually(async () =>
        assert.equal(await table.getByRole("columnheader", { name: "Download" }).getAttribute("aria-sort"), "ascending"),
    );
    const rising = (await names()).map((name) => Number(BaseInfo.find((host) => nameOf(host) === name).DownSpeed));
    assert.deepEqual(rising, [...rates].sort((a, b) => a - b));
    await page.getByRole("searchbox", { name: "Find a device" }).fill("printer");
    await eventually(async () => assert.deepEqual(await names(), ["printer"]));
});

test("the curve of a device grows", async () => {
    const curve = page.getByRole("img", { name: "Download of printer" }).locator("polyline");
    const points = async () => (await curve.getAttribute("points")).split(" ").length;
    const first = await points();
    await eventually(async () => assert.ok((await points()) > first));
});

test("Wi-Fi shows networks, channels and neighbours", async () => {
    await show(page, "wifi");
    const { WIFIList } = await service.call("GET_WIFI_LIST_INFO");
    const rows = card(page, "Networks").locator("tbody tr");
    await eventually(async () => assert.equal(await rows.count(), WIFIList.length));
    for (const [at, network] of WIFIList.entries()) {
        const row = rows.nth(at);
        const text = await row.textContent();
        for (const value of [network.SSID, network.Channel, network.ENCRYPT, network.Type === "1" ? "5 GHz" : "2.4 GHz"]) {
            assert.ok(text.includes(value), text);
        }
        assert.equal(await isSwitchedOn(row, `${network.SSID} on`), network.Enable === "1");
    }
    const counts = await service.call("GET_SCAN_CHANNEL_COUNT");
    for (const [band, list, own] of [
        ["2.4 GHz", counts.List24g, "6"],
        ["5 GHz", counts.List58g, "44"],
    ]) {
        const label = await page.getByRole("img", { name: new RegExp(`^${band}\\.`) }).getAttribute("aria-label");
        assert.ok(label.includes(`Own networks on channel ${own}.`), label);
        list.forEach(({ Name, Count }) =>
            assert.equal(label.includes(`channel ${Name}: ${Count}`), Count > 0, `${label} ${Name}`),
        );
    }
    const { SSIDList } = await service.call("GET_SCAN_WIFI_SSIDLIST");
    const own = new Set(WIFIList.map(({ SSID }) => SSID));
    const others = SSIDList.filter(({ SSID }) => !own.has(SSID));
    const neighbours = card(page, "Neighbours").locator("tbody tr");
    await eventually(async () => assert.equal(await neighbours.count(), others.length));
    assert.ok((await neighbours.first().textContent()).includes(others[0].PowerLevel.replace("-", "−")));
    await eventually(async () =>
        assert.equal(await fact(card(page, "Guest network, 2.4 GHz"), "Time left").textContent(), "no limit"),
    );
});

test("parental control shows the restricted times of each device", async () => {
    await show(page, "parental");
    const { DeviceList } = await service.call("GET_GREENNET_DEVICE_LIST");
    const devices = page.locator(".children li");
    await eventually(async () => assert.equal(await devices.count(), DeviceList.length));
    for (const { Mac, Name } of DeviceList) {
        await devices.getByRole("button", { name: Name, exact: true }).click();
        const { Sleep } = await service.call("GET_GREENNET_PROTECT_PERIOD_LIST", { Mac });
        const grid = page.getByRole("region", { name: `When ${Name} is restricted` }).getByRole("grid");
        const covered = new Set();
        for (const { StartTime, EndTime, Enable, DaysOfWeek } of Sleep.filter(({ Enable }) => Enable === "1")) {
            const slotOf = (time) => Number(time.slice(0, 2)) * 2 + Number(time.slice(3)) / 30;
            const end = slotOf(EndTime) + (EndTime <= StartTime ? 48 : 0);
            for (const day of DaysOfWeek) {
                for (let slot = slotOf(StartTime); slot < end; slot += 1) {
                    covered.add(((Number(day) - 1) * 48 + slot) % (7 * 48));
                }
            }
            assert.equal(Enable, "1");
        }
        await eventually(async () => {
            const cells = await grid
                .getByRole("gridcell")
                .evaluateAll((all) => all.map((cell) => cell.getAttribute("aria-selected") === "true"));
            assert.equal(cells.length, 7 * 48);
            cells.forEach((selected, at) => assert.equal(selected, covered.has(at), `${Name}, half hour ${at}`));
        });
    }
});

test("WAN, LAN and ports", async () => {
    await show(page, "internet");
    const { Description } = await service.call("QUERY_WAN_NUM");
    for (const WANName of Description.split(",")) {
        const wan = await service.call("QUERY_WAN_INFO", { WANName });
        const shown = card(page, WANName);
        await eventually(async () =>
            assert.equal(await fact(shown, "State").textContent(), wan.CONNECTIONSTATUS.toLowerCase()),
        );
        if (wan.IPADDRESS !== "NULL" && wan.IPADDRESS !== "") {
            assert.equal(await fact(shown, "IPv4 address").textContent(), wan.IPADDRESS);
        }
    }
    const lan = await service.call("GET_LAN_IP_INFO");
    const local = card(page, "Local network");
    await eventually(async () => assert.equal(await fact(local, "Address of the gateway").textContent(), lan.GatewayLanIP));
    assert.equal(await fact(local, "Addresses for devices").textContent(), `${lan.StartIp} to ${lan.EndIp}`);
    const { port_stat_list: ports } = await service.call("GET_PORT_STATISTICS");
    const rows = card(page, "Ports").locator("tbody tr");
    await eventually(async () => assert.equal(await rows.count(), ports.length));
    assert.ok((await rows.filter({ hasText: "LAN4" }).textContent()).includes("IPTV"));
    await eventually(async () => assert.equal(await isSwitchedOn(card(page, "Services"), "UPnP"), true));
    assert.equal(await isSwitchedOn(card(page, "Services"), "SIP"), true);
});

test("firmware of all routers, and schedules", async () => {
    await show(page, "firmware");
    const { MainRouter, ChildRouter } = await service.call("GET_UPDATE_STATUS");
    const rows = card(page, "Versions").locator("tbody tr");
    await eventually(async () => assert.equal(await rows.count(), 1 + ChildRouter.length));
    for (const [at, router] of [MainRouter, ...ChildRouter].entries()) {
        assert.deepEqual(await rows.nth(at).getByRole("cell").allTextContents(), [
            router.name,
            router.DeviceType,
            router.HWVersion,
            router.FWVersion,
            router.FWDATA,
        ]);
    }
    const schedules = card(page, "Schedules");
    await eventually(async () => assert.equal(await fact(schedules, "Updates itself").textContent(), "02:00 to 04:00"));
    await eventually(async () => assert.equal(await fact(schedules, "Restarts").textContent(), "04:30, Mon, Thu"));
    await eventually(async () => assert.equal(await fact(schedules, "Sleeps").textContent(), "LEDs: 22:30 to 06:30"));
});

test("quality of service", async () => {
    await show(page, "qos");
    const qos = await service.call("GET_QOS_INFO");
    const applications = card(page, "Applications");
    for (const { Name, PriorityLevel } of qos.app_info_list) {
        await eventually(async () =>
            assert.equal(await applications.getByRole("combobox", { name: `Priority of ${Name}` }).inputValue(), PriorityLevel),
        );
    }
    assert.equal(await isSwitchedOn(applications, "Quality of service"), qos.Enable === "1");
    const rules = await card(page, "Rules").textContent();
    qos.classification_info_list.forEach(({ Name, type_list: types }) => {
        assert.ok(rules.includes(Name));
        types.forEach(({ Min, Max }) => assert.ok(rules.includes(Min) && rules.includes(Max)));
    });
});

test("an inspection shows what the gateway reports", async () => {
    await show(page, "inspection");
    await page.getByRole("button", { name: "Inspect" }).click();
    const whole = await service.call("HG_INSPECTION");
    const resources = await service.call("HG_RESOURCE_INSPECTION");
    const row = (name) => page.getByRole("row").filter({ has: page.getByRole("cell", { name, exact: true }) });
    await row("Devices").waitFor();
    assert.equal(await row("Devices").getByRole("cell").nth(1).textContent(), resources.LanDevNum);
    assert.equal(await row("Memory").getByRole("cell").nth(1).textContent(), `${resources.MemPercent} %`);
    assert.equal(await row("Wi-Fi channel").getByRole("cell").nth(1).textContent(), whole.Channel);
    assert.equal(await row("Security of the Wi-Fi").getByRole("cell").nth(1).textContent(), whole.Security);
    await card(page, "Speed of the line").getByRole("button", { name: "Measure" }).click();
    const line = await service.call("HG_SPEEDTEST_REQUEST");
    await eventually(async () =>
        assert.equal(await fact(card(page, "Speed of the line"), "Delay").textContent(), `${line.Delay} ms`),
    );
});

test("notices and events appear as they come", async () => {
    await show(page, "notices");
    await page.getByText("No notice has arrived yet.").waitFor();
    await service.ask({ notice: { plugin_name: "parental_control", text: "Grüße aus dem Haus" } });
    const notices = page.getByRole("list", { name: "Notices" });
    await notices.getByText("Grüße aus dem Haus").waitFor();
    await notices.getByText("parental_control").waitFor();
    await show(page, "events");
    await page.getByRole("list", { name: "Events" }).getByText("notice", { exact: true }).waitFor();
});

test("secrets are shown on demand only", async () => {
    await show(page, "wifi");
    const { PWD } = await service.call("GET_WIFI_INFO", { SSIDIndex: "1" });
    const networks = card(page, "Networks");
    await networks.getByRole("button", { name: "Show password of Lindenhof", exact: true }).waitFor();
    assert.ok(!(await page.content()).includes(PWD));
    await networks.getByRole("button", { name: "Show password of Lindenhof", exact: true }).click();
    await networks.getByText(PWD).waitFor();
    await networks.getByRole("button", { name: "Hide password of Lindenhof", exact: true }).click();
    assert.ok(!(await page.content()).includes(PWD));
});
