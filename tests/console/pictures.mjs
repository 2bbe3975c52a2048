// SPDX-License-Identifier: MIT
// Takes a picture of each view, in light and dark, wide and narrow: node pictures.mjs FOLDER [--documents]. With
// --documents only those that the documents show.
import { mkdirSync } from "node:fs";
import { join } from "node:path";
import { viewport, views, waitForView } from "./all_views.mjs";
import { card, closePage, openPage, startBrowser } from "./browser.mjs";
import { Service } from "./service.mjs";

const [folder, documents] = process.argv.slice(2);
mkdirSync(folder, { recursive: true });
// The evening of a Thursday: everybody is at home.
const service = await Service.start({ clock: "1767294000" });
const browser = await startBrowser();

async function prepare() {
    await service.ask({ notice: { plugin_name: "parental_control", text: "Jonas has been online for two hours" } });
    await service.ask({ notice: { plugin_name: "mesh", text: "The attic has a weak link" } });
}

async function take(colorScheme, width) {
    const size = viewport(width);
    const page = await openPage(browser, service, { colorScheme, viewport: size });
    await prepare();
    for (const view of views) {
        await waitForView(page, view);
        if (view.id === "home") {
            await card(page, "Mesh").getByRole("button", { name: /^router Attic/ }).click();
        }
        // Messages about actions are not part of the view.
        for (const button of await page.locator(".message button").all()) {
            await button.click();
        }
        await page.mouse.move(0, 0);
        const name = documents ? `console-${view.id}.png` : `${view.id}-${colorScheme}-${width}.png`;
        await page.screenshot({ path: join(folder, name), fullPage: !documents });
    }
    await closePage(page);
}

try {
    if (documents) {
        await take("light", 1280);
    } else {
        for (const colorScheme of ["light", "dark"]) {
            for (const width of [360, 1280]) {
                await take(colorScheme, width);
            }
        }
    }
} finally {
    await browser.close();
    await service.stop();
}
