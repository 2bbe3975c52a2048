// SPDX-License-Identifier: MIT
// axe-core finds nothing in any view, in light and dark, wide and narrow; and the page works by keyboard.
import assert from "node:assert/strict";
import { test } from "node:test";
import { axeFile, card, closePage, eventually, openPage, show } from "./browser.mjs";
import { startService } from "./console.mjs";
import { viewport, views, waitForView } from "./all_views.mjs";

const { browser, service } = await startService();

async function findings(page) {
    // The page's policy allows no foreign script; the developer tools of the browser may add one.
    await page.evaluate(await (await import("node:fs/promises")).readFile(axeFile, "utf8"));
    const { violations } = await page.evaluate(() =>
        // eslint-disable-next-line no-undef
        axe.run(document, { resultTypes: ["violations"] }),
    );
    return violations.flatMap(({ id, nodes }) => nodes.map(({ target, failureSummary }) => `${id} ${target}: ${failureSummary}`));
}

for (const colorScheme of ["light", "dark"]) {
    for (const width of [360, 1280]) {
        test(`axe finds nothing, ${colorScheme}, ${width} pixels`, async (context) => {
            const page = await openPage(browser, service, { colorScheme, viewport: viewport(width) });
            for (const view of views) {
                await context.test(view.id, async () => {
                    await waitForView(page, view);
                    assert.deepEqual(await findings(page), []);
                    // Nothing is wider than the window, except in areas that scroll.
                    const excess = await page.evaluate(
                        () => document.documentElement.scrollWidth - document.documentElement.clientWidth,
                    );
                    assert.ok(excess <= 0, `${excess} pixels too wide`);
                });
            }
            await closePage(page);
        });
    }
}

test("axe finds nothing in dialogs, details and the log-in form", async () => {
    const page = await openPage(browser, service);
    await card(page, "Mesh").getByRole("button", { name: /^router Attic/ }).click();
    await card(page, "Attic").getByRole("button", { name: "Rename" }).click();
    await page.getByRole("dialog").waitFor();
    assert.deepEqual(await findings(page), []);
    await page.keyboard.press("Escape");
    await show(page, "wifi");
    await page.getByRole("button", { name: "Edit Lindenhof", exact: true }).click();
    await page.getByRole("dialog").waitFor();
    assert.deepEqual(await findings(page), []);
    await page.keyboard.press("Escape");
    await page.getByRole("button", { name: "Log out" }).click();
    await page.getByLabel("Token or address").waitFor();
    assert.deepEqual(await findings(page), []);
    await closePage(page);
});

test("switches and times can be read with forced colours", async () => {
    const page = await openPage(browser, service, { forcedColors: "active", view: "parental" });
    const colourOf = (selector) =>
        page.locator(selector).first().evaluate((element) => getComputedStyle(element).backgroundColor);
    await page.locator(".slot.all").first().waitFor();
    assert.notEqual(await colourOf(".slot.all"), await colourOf(".slot.none"));
    await show(page, "wifi");
    await page.locator("input:checked + .track").first().waitFor();
    assert.notEqual(await colourOf("input:checked + .track"), await colourOf("input:not(:checked) + .track"));
    await closePage(page);
});

test("the page works by keyboard", async () => {
    const page = await openPage(browser, service);
    await card(page, "Mesh").getByRole("button", { name: /^router Attic/ }).waitFor();
    await page.keyboard.press("Tab");
    assert.equal(await page.evaluate(() => document.activeElement.textContent), "Skip to the content");
    await page.keyboard.press("Enter");
    assert.equal(await page.evaluate(() => document.activeElement.id), "content");
    // Through the drawing with the arrow keys, to the details with Enter.
    const focused = () => page.evaluate(() => document.activeElement.getAttribute("aria-label"));
    await eventually(async () => {
        await page.keyboard.press("Tab");
        assert.equal(await page.evaluate(() => document.activeElement.dataset.id !== undefined), true);
    });
    await page.keyboard.press("ArrowDown");
    assert.match(await focused(), /^router Lindenhof/);
    await page.keyboard.press("Enter");
    await card(page, "Lindenhof").waitFor();
    // A dialog takes the focus, keeps it, and gives it back.
    await card(page, "Lindenhof").getByRole("button", { name: "Rename" }).focus();
    await page.keyboard.press("Enter");
    await page.getByRole("dialog").waitFor();
    assert.equal(await page.evaluate(() => document.activeElement.closest("dialog") !== null), true);
    await page.keyboard.press("Escape");
    await eventually(async () => assert.equal(await page.evaluate(() => document.activeElement.textContent), "Rename"));
    await closePage(page);
});
