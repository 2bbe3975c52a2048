// SPDX-License-Identifier: MIT
// A home with more than five hundred devices. The time between frames is reported but not checked: it depends
// on the machine. What keeps it short is checked: few rows and nodes are in the document.
import assert from "node:assert/strict";
import { test } from "node:test";
import { card, eventually, show } from "./browser.mjs";
import { startPage } from "./console.mjs";

const { service, page } = await startPage({ agent: ["--scenario", "crowded_mesh"], clock: null });

// The times between frames while `steps` frames are drawn, with a step of the action in each.
const framesOf = (steps, step) =>
    page.evaluate(
        ({ count, body }) =>
            new Promise((resolve) => {
                const action = (0, eval)(`(${body})`);
                const times = [];
                let last = performance.now();
                const frame = (now) => {
                    times.push(now - last);
                    last = now;
                    if (times.length === count) {
                        resolve(times.slice(1).sort((a, b) => a - b));
                    } else {
                        action(times.length);
                        requestAnimationFrame(frame);
                    }
                };
                requestAnimationFrame(frame);
            }),
        { count: steps, body: step.toString() },
    );

function report(context, what, times) {
    const at = (part) => times[Math.floor((times.length - 1) * part)].toFixed(1);
    context.diagnostic(`${what}: time between frames ${at(0.5)} ms (median), ${at(0.95)} ms (95 %), ${at(1)} ms (longest)`);
}

test("the table scrolls through all devices with few rows in the document", async (context) => {
    const { BaseInfo } = await service.call("GET_AD_BASE_INFO");
    assert.ok(BaseInfo.length > 500);
    await show(page, "devices");
    await page.getByText(`of ${BaseInfo.length} online`).waitFor();
    const rows = page.locator(".hosts .rows .row");
    assert.ok((await rows.count()) < 60);
    const times = await framesOf(120, () => {
        const rows = document.querySelector(".hosts .rows");
        rows.scrollTop = (rows.scrollTop + 400) % rows.scrollHeight;
    });
    report(context, `${BaseInfo.length} devices, scrolling`, times);
    assert.ok((await rows.count()) < 60);
    await page.locator(".hosts .rows").evaluate((element) => (element.scrollTop = element.scrollHeight));
    const last = BaseInfo.at(-1);
    await rows.filter({ hasText: last.Mac }).waitFor();
    assert.equal(await rows.filter({ hasText: last.Mac }).getAttribute("aria-rowindex"), String(BaseInfo.length + 1));
    await page.getByRole("searchbox", { name: "Find a device" }).fill(last.Mac);
    await eventually(async () => assert.equal(await rows.count(), 1));
});

test("the mesh summarises routers with many stations until they are expanded", async (context) => {
    await show(page, "home");
    const nodes = card(page, "Mesh").locator(".node");
    await nodes.nth(20).waitFor();
    assert.ok((await nodes.count()) < 130);
    const times = await framesOf(60, () => {});
    report(context, "the mesh, summarised", times);
    const before = await nodes.count();
    await nodes.filter({ hasText: "more devices" }).first().click();
    await eventually(async () => assert.ok((await nodes.count()) > before + 10));
});
