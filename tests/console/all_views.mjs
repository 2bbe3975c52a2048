// SPDX-License-Identifier: MIT
// Every view of the page, and what is in it when its data have arrived.
import { show } from "./browser.mjs";

export const viewport = (width) => ({ width, height: width < 700 ? 740 : 900 });

export const views = [
    { id: "home", ready: ".node.station", act: (page) => page.getByText("Memory").waitFor() },
    { id: "devices", ready: ".hosts .rows .row" },
    { id: "wifi", ready: ".spectrum .own", act: (page) => page.getByText("Gasthof Krone").first().waitFor() },
    { id: "parental", ready: ".slot.all" },
    { id: "internet", ready: ".facts .state", act: (page) => page.getByText("LAN4", { exact: true }).waitFor() },
    { id: "firmware", ready: "tbody tr" },
    { id: "qos", ready: ".rule" },
    {
        id: "inspection",
        ready: "button.primary",
        act: async (page) => {
            await page.getByRole("button", { name: "Optimise" }).click();
            await page.getByRole("columnheader", { name: "After" }).waitFor();
        },
    },
    { id: "notices", ready: ".log" },
    {
        id: "commands",
        ready: ".workbench",
        path: "commands/GET_WIFI_INFO",
        act: async (page) => {
            await page.locator(".workbench h2").getByText("GET_WIFI_INFO", { exact: true }).waitFor();
            await page.getByRole("button", { name: "Send", exact: true }).click();
            await page.locator("[data-reply]").waitFor();
        },
    },
    { id: "events", ready: ".log" },
    { id: "simulation", ready: ".facts" },
];

export async function waitForView(page, { id, ready, path = id, act }) {
    await show(page, path);
    await page.locator(ready).first().waitFor({ state: "attached" });
    await act?.(page);
}
