// SPDX-License-Identifier: MIT
// Pages of a real browser for the tests. What a page reports as an error fails the test that has opened it.
import assert from "node:assert/strict";
import { createRequire } from "node:module";
import { join } from "node:path";

// The packages are in the build folder.
const require = createRequire(join(process.env.CONSOLE_WORK, "package.json"));
const { chromium } = require("playwright-core");
export const axeFile = require.resolve("axe-core/axe.min.js");

// Only ends a test that would never end.
const patience = Number(process.env.CONSOLE_PATIENCE ?? 600000);

export async function startBrowser(...more) {
    return chromium.launch({
        executablePath: process.env.CHROMIUM,
        args: [...(process.getuid() === 0 ? ["--no-sandbox"] : []), ...more],
    });
}

// A page that is logged in, in a separate browser context, or in that of another page.
export async function openPage(browser, service, options = {}) {
    const { context, view = "home", clock = false, ...rest } = options;
    const own = context ?? (await browser.newContext({ reducedMotion: "reduce", ...rest }));
    const page = await own.newPage();
    page.setDefaultTimeout(patience);
    page.problems = [];
    page.on("pageerror", (error) => page.problems.push(error.stack));
    page.on("console", (message) => {
        // A lost connection is reported by the browser itself.
        if (message.type() === "error" && !/WebSocket|net::ERR_|status of 401/.test(message.text())) {
            page.problems.push(message.text());
        }
    });
    // Everything that the page loads has to come from the service.
    page.on("request", (request) => {
        if (!request.url().startsWith(service.origin)) {
            page.problems.push(`a request to ${request.url()}`);
        }
    });
    if (clock) {
        await page.clock.install();
    }
    await page.goto(context === undefined ? service.address : service.origin);
    await page.getByText("Connected", { exact: true }).waitFor();
    await show(page, view);
    return page;
}

export async function show(page, view) {
    await page.evaluate((hash) => (location.hash = hash), `#/${view}`);
    await page.locator(`nav a[href="#/${view.split("/")[0]}"][aria-current]`).waitFor();
}

// Repeats the assertions until they hold.
export async function eventually(assertions) {
    for (const end = Date.now() + patience; ; ) {
        try {
            return await assertions();
        } catch (error) {
            if (Date.now() > end) {
                throw error;
            }
            await new Promise((resolve) => setTimeout(resolve, 100));
        }
    }
}

export const card = (page, title) => page.getByRole("region", { name: title, exact: true });

// The value that a card shows for a name.
export const fact = (where, name) =>
    where
        .locator(".facts > div")
        .filter({ has: where.page().locator("dt", { hasText: new RegExp(`^${name}$`) }) })
        .locator("dd");

export const isSwitchedOn = (where, name) => where.getByRole("switch", { name, exact: true }).isChecked();

export async function turn(where, name) {
    await where.getByRole("switch", { name, exact: true }).click();
}

export async function closePage(page) {
    assert.deepEqual(page.problems, []);
    await page.context().close();
}
