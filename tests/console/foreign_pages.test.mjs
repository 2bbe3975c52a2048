// SPDX-License-Identifier: MIT
// A page of somebody else, in a browser that is logged in to the console, reaches nothing.
import assert from "node:assert/strict";
import { createServer } from "node:http";
import { after, before, test } from "node:test";
import { closePage, openPage, startBrowser } from "./browser.mjs";
import { Service } from "./service.mjs";

const evil = "evil.example";
let browser;
let service;
let site; // serves an empty page

before(async () => {
    service = await Service.start();
    site = createServer((request, response) => response.setHeader("Content-Type", "text/html").end("<!DOCTYPE html>"));
    await new Promise((resolve) => site.listen(0, "127.0.0.1", resolve));
    browser = await startBrowser(`--host-resolver-rules=MAP ${evil} 127.0.0.1`);
});

after(async () => {
    await browser.close();
    site.close();
    await service.stop();
});

// What a page at the address gets from the service, with the cookie of its login where the browser sends it.
async function attempts(context, address, target) {
    const page = await context.newPage();
    await page.goto(address);
    const results = await page.evaluate(async (origin) => {
        const read = (path, options) =>
            fetch(origin + path, { credentials: "include", ...options }).then(
                (response) => response.status,
                () => "unreadable",
            );
        const post = { method: "POST", body: '{"Enable":"0"}' };
        const opened = (source) =>
            new Promise((resolve) => {
                source.onopen = () => resolve("open");
                source.onerror = () => resolve("refused");
            });
        // Its answer is never readable; whether it has been carried out shows in the gateway.
        await read("/api/command/SET_UPNP_STATE", { ...post, mode: "no-cors" });
        return {
            session: await read("/api/session"),
            command: await read("/api/command/SET_UPNP_STATE", post),
            events: await opened(new EventSource(`${origin}/api/events`, { withCredentials: true })),
            socket: await opened(new WebSocket(`${origin.replace("http", "ws")}/api/socket`)),
        };
    }, target);
    await page.close();
    return results;
}

const upnp = async () => (await service.ask({ command: "GET_UPNP_STATE" })).reply.Enable;

async function check(wanted, address, target) {
    const own = await openPage(browser, service);
    assert.equal(await upnp(), "1");
    assert.deepEqual(await attempts(own.context(), address, target), wanted);
    assert.equal(await upnp(), "1");
    await closePage(own);
}

test("a page on another port, to which the browser sends the cookie", async () => {
    await check(
        { session: "unreadable", command: "unreadable", events: "refused", socket: "refused" },
        `http://127.0.0.1:${site.address().port}/`,
        service.origin,
    );
});

test("a page of another site", async () => {
    await check(
        { session: "unreadable", command: "unreadable", events: "refused", socket: "refused" },
        `http://${evil}:${site.address().port}/`,
        service.origin,
    );
});

test("a site whose name points to the service", async () => {
    const rebound = service.origin.replace("127.0.0.1", evil);
    await check({ session: 421, command: 421, events: "refused", socket: "refused" }, `${rebound}/`, rebound);
});

// Otherwise the other tests would show nothing.
test("the console's own page gets all of it", async () => {
    const own = await openPage(browser, service);
    const results = await attempts(own.context(), `${service.origin}/metrics`, service.origin);
    assert.deepEqual(results, { session: 200, command: 200, events: "open", socket: "open" });
    assert.equal(await upnp(), "0");
    await closePage(own);
});
