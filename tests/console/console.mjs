// SPDX-License-Identifier: MIT
// What most tests of the console begin with: a service, a browser and a page, which end after the last test.
import { after } from "node:test";
import { closePage, openPage, startBrowser } from "./browser.mjs";
import { Service } from "./service.mjs";

async function start(options, finish = () => {}) {
    const service = await Service.start(options);
    const browser = await startBrowser();
    after(async () => {
        try {
            await finish();
        } finally {
            await browser.close();
            await service.stop();
        }
    });
    return { service, browser };
}

export const startService = () => start();

export async function startPage(options) {
    let page;
    const { service, browser } = await start(options, () => closePage(page));
    page = await openPage(browser, service);
    return { service, page };
}
