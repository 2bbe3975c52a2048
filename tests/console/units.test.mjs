// SPDX-License-Identifier: MIT
// Parsers, formats and computations of the console, without a browser.
import assert from "node:assert/strict";
import { createRequire } from "node:module";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";

const require = createRequire(join(process.env.CONSOLE_WORK, "package.json"));
const folder = mkdtempSync(join(tmpdir(), "console-units-"));
after(() => rmSync(folder, { recursive: true }));

// The module of the page with this name.
async function load(name) {
    const outfile = join(folder, `${name}.mjs`);
    await require("esbuild").build({
        entryPoints: [join(process.env.CONSOLE_WORK, `src/${name}.ts`)],
        outfile,
        bundle: true,
        format: "esm",
        logLevel: "error",
    });
    return import(outfile);
}

const { parseJson, printJson, memberOf } = await load("json_text");
const format = await load("format");
const { minutesOf, periodsOf, week, day } = await load("week");
const { meshOf, layoutOf } = await load("mesh");
const { fieldOf } = await load("protocol");
const { blockOf } = await load("spectrum");
const { agentCall, mqttCall, pythonCall, quoted } = await load("same_call");

test("JSON keeps the order of keys, repeated keys and numbers as written", () => {
    const text = '{"b": 1, "a": 1.50e3, "b": "x", "2": true, "1": null}';
    assert.equal(printJson(parseJson(text)), text);
    assert.equal(memberOf(parseJson(text), "b").text, "1");
    assert.equal(printJson(parseJson("12345678901234567890")), "12345678901234567890");
});

test("JSON is read as JSON.parse() reads it", () => {
    const texts = [
        "{}",
        "[]",
        "[[],{}]",
        ' { "a" : [ 1 , -0.5e-3 , "\\u00e4\\n\\"" ] } ',
        '"\\ud83d\\ude00"',
        '{"__proto__": {"x": 1}}',
        "-0",
        "false",
    ];
    for (const text of texts) {
        assert.deepEqual(JSON.parse(printJson(parseJson(text))), JSON.parse(text), text);
    }
});

test("invalid JSON is refused with its position", () => {
    const invalid = ["", "{", "[1,]", '{"a":1,}', "{a:1}", "'a'", "01", "1.", ".5", "+1", "nul", '"\t"', '"\\x"', '{"a" 1}', "[] []", "NaN", '"abc'];
    for (const text of invalid) {
        assert.throws(() => parseJson(text), SyntaxError, text);
        assert.throws(() => JSON.parse(text), SyntaxError, text);
    }
    assert.throws(() => parseJson('{"a": tru}'), /at character 7/);
    assert.throws(() => parseJson("[".repeat(100000)), /nested too deeply/);
});

test("JSON is printed on several lines", () => {
    assert.equal(printJson(parseJson('{"a":[1,{}],"b":[]}'), "  "), '{\n  "a": [\n    1,\n    {}\n  ],\n  "b": []\n}');
});

test("rates and sizes", () => {
    assert.equal(format.rate(0), "0 kbit/s");
    assert.equal(format.rate(999), "999 kbit/s");
    assert.equal(format.rate(1234), "1.2 Mbit/s");
    assert.equal(format.rate(232020), "232 Mbit/s");
    assert.equal(format.rate(5000000), "5.0 Gbit/s");
    assert.equal(format.size(12), "12 bytes");
    assert.equal(format.size(42400000), "42.4 MB");
});

test("durations", () => {
    assert.equal(format.duration(0), "0 s");
    assert.equal(format.duration(59.9), "59 s");
    assert.equal(format.duration(3600), "1 h");
    assert.equal(format.duration(3 * 86400 + 2 * 3600 + 59), "3 d 2 h");
    assert.equal(format.duration(183600), "2 d 3 h");
});

test("values of the device", () => {
    assert.equal(format.textOf("NULL"), "");
    assert.equal(format.textOf(undefined), "");
    assert.equal(format.textOf(12), "12");
    assert.equal(format.numberOf("NULL"), undefined);
    assert.equal(format.numberOf("-58"), -58);
    assert.equal(format.numberOf("x"), undefined);
    assert.equal(format.nameOf({ Name: "own", ByName: "NULL", Mac: "m" }), "own");
    assert.equal(format.nameOf({ Name: "own", ByName: "given" }), "given");
    assert.equal(format.nameOf({ Name: "NULL", Mac: "m" }), "m");
    assert.equal(format.dbmText(-58), "−58 dBm");
    assert.deepEqual([-90, -80, -70, -60].map(format.signalLevel), [1, 2, 3, 4]);
    assert.equal(format.signalLevel(undefined), 0);
    assert.equal(format.daysText("1,4"), "Mon, Thu");
    assert.equal(format.daysText("1234567"), "every day");
    assert.equal(format.byteLength("ä€"), 5);
});

test("notices", () => {
    assert.equal(format.decodedMessage(Buffer.from("Grüße 😀").toString("base64")), "Grüße 😀");
    assert.equal(format.decodedMessage("/w=="), undefined);
    assert.equal(format.decodedMessage("no base64!"), undefined);
});

const period = (StartTime, EndTime, DaysOfWeek, Enable = "1") => ({ StartTime, EndTime, Enable, DaysOfWeek });

test("periods of a week become minutes and the same periods again", () => {
    const lists = [
        [],
        [period("12:30", "15:00", "12345")],
        [period("12:31", "14:59", "3")],
        [period("22:00", "07:30", "56")],
        [period("22:00", "07:30", "7")],
        [period("00:00", "12:00", "1"), period("18:00", "00:00", "1")],
    ];
    for (const periods of lists) {
        assert.deepEqual(periodsOf(minutesOf(periods)), periods);
    }
});

test("minutes of any pattern are covered exactly", () => {
    let seed = 1;
    const random = () => (seed = (seed * 48271) % 2147483647) / 2147483647;
    for (let round = 0; round < 200; round += 1) {
        const minutes = new Uint8Array(week);
        for (let runs = 0; runs < 6; runs += 1) {
            const start = Math.floor(random() * week);
            const length = Math.floor(random() * 3 * day);
            for (let at = start; at < start + length; at += 1) {
                minutes[at % week] = 1;
            }
        }
        const periods = periodsOf(minutes);
        periods.forEach(({ StartTime, EndTime }) => assert.notEqual(StartTime, EndTime));
        assert.deepEqual(minutesOf(periods), minutes);
    }
    const all = new Uint8Array(week).fill(1);
    assert.deepEqual(minutesOf(periodsOf(all)), all);
});

test("periods that are switched off are kept and not painted", () => {
    const off = period("10:00", "11:00", "1", "0");
    assert.deepEqual(minutesOf([off]), new Uint8Array(week));
    assert.deepEqual(periodsOf(new Uint8Array(week), [off]), [off]);
});

const station = (Mac, more = {}) => ({ Mac, Name: Mac, AccessType: "5GHz", NetStatus: "1", dbm: "-50", ...more });
const router = (Mac, stations = []) => ({ Mac, Name: Mac, NetStatus: "1", ChildRouterAccessType: "cable", ChildBaseInfo: stations });
const namesBelow = (node) => [node.name, ...node.children.map(namesBelow)];

test("routers are attached to their parents", () => {
    const topology = {
        MainRouter: { Mac: "AA:00", Name: "main", NetStatus: "0", MainBaseInfo: [station("s1")] },
        ChildRouter: [router("BB:00", [station("s2", { NetStatus: "0" })]), router("CC:00")],
    };
    const relations = { ChildRouter: [{ Mac: "cc00", ParentMacAddress: "BB:00" }] };
    const root = meshOf(topology, relations, new Set());
    assert.deepEqual(namesBelow(root), ["Internet", ["main", ["s1"], ["BB:00", ["s2"], ["CC:00"]]]]);
    assert.equal(root.online, false);
    assert.equal(root.children[0].online, true);
    assert.equal(root.children[0].children[1].children[0].online, false);
    // Without the relations all are attached to the main router.
    assert.deepEqual(namesBelow(meshOf(topology, undefined, new Set()))[1].length, 4);
});

test("routers that are their own parents are attached to the main router", () => {
    const topology = { MainRouter: { Mac: "A" }, ChildRouter: [router("B"), router("C"), router("D")] };
    const relations = {
        ChildRouter: [
            { Mac: "B", ParentMacAddress: "C" },
            { Mac: "C", ParentMacAddress: "B" },
            { Mac: "D", ParentMacAddress: "D" },
        ],
    };
    const main = meshOf(topology, relations, new Set()).children[0];
    assert.deepEqual(main.children.map(({ name }) => name), ["B", "C", "D"]);
});

test("many stations are drawn as one line until they are asked for", () => {
    const stations = Array.from({ length: 64 }, (_, at) => station(`s${at}`));
    const topology = { MainRouter: { Mac: "A", MainBaseInfo: stations }, ChildRouter: [] };
    const collapsed = meshOf(topology, undefined, new Set()).children[0];
    assert.equal(collapsed.children.length, 11);
    assert.equal(collapsed.children.at(-1).name, "54 more devices");
    assert.equal(meshOf(topology, undefined, new Set([collapsed.id])).children[0].children.length, 64);
});

test("no two nodes of the drawing overlap", () => {
    const topology = {
        MainRouter: { Mac: "A", MainBaseInfo: [station("s1"), station("s2")] },
        ChildRouter: [router("B", [station("s3"), station("s4")]), router("C", [station("s5")])],
    };
    for (const width of [320, 1000]) {
        const { nodes, sideways, height } = layoutOf(meshOf(topology, undefined, new Set()), width);
        assert.equal(sideways, width === 1000);
        assert.equal(nodes.length, 9);
        nodes.forEach((one, at) => {
            assert.ok(one.x >= 0 && one.y >= 0 && one.y < height);
            nodes.slice(at + 1).forEach((other) => {
                // Only the text of a router, and of the Internet, fits into its column.
                const left = one.x < other.x ? one : other;
                const fits = ["router", "internet"].includes(left.kind) && Math.abs(one.x - other.x) >= 160;
                assert.ok(Math.abs(one.y - other.y) >= 30 || fits, `${one.name}, ${other.name}`);
            });
        });
    }
});

test("a network occupies its group of channels", () => {
    const low = Array.from({ length: 13 }, (_, at) => String(at + 1));
    const high = ["36", "40", "44", "48", "52", "56", "60", "64", "149", "153", "157", "161", "165"];
    assert.deepEqual(blockOf(low, "6", 20), { from: 3, to: 7 });
    assert.deepEqual(blockOf(low, "6", 40), { from: 1, to: 9 });
    assert.deepEqual(blockOf(high, "44", 20), { from: 1.5, to: 2.5 });
    assert.deepEqual(blockOf(high, "44", 80), { from: -0.5, to: 3.5 });
    assert.deepEqual(blockOf(high, "161", 40), { from: 9.5, to: 11.5 });
    assert.deepEqual(blockOf(high, "100", 20), undefined);
});

test("words of a shell", () => {
    assert.equal(quoted("Key=value"), "Key=value");
    assert.equal(quoted("it's"), "'it'\\''s'");
    assert.equal(quoted("$(reboot)"), "'$(reboot)'");
});

test("the same call by other means", () => {
    const simple = parseJson('{"Enable": "1", "Name": "a b"}');
    assert.ok(agentCall("SET_X", simple, false).endsWith(" SET_X Enable=1 'Name=a b'"));
    const nested = parseJson('{"List": []}');
    assert.ok(agentCall("SET_X", nested, false).endsWith(` SET_X '{"List": []}'`));
    // A password does not go onto the command line.
    assert.ok(agentCall("SET_X", simple, true).includes(" SET_X - <<'END'\n"));
    assert.ok(mqttCall("SET_X", simple, true).includes("<<'END'\n"));
    assert.ok(mqttCall("SET_X", nested, false).endsWith(` -m '{"List": []}'`));
    assert.ok(pythonCall("SET_X", nested, "http://127.0.0.1:1").includes('data="{\\"List\\": []}".encode()'));
});

test("the field of a switch is a checkbox with a statement", () => {
    const key = { key: "Enable", required: true, meaning: "whether the mesh is on; unchanged when absent" };
    const { type, label } = fieldOf({ ...key, form: "1 for on, 0 for off", values: ["0", "1"] }, "1");
    assert.deepEqual([type, label], ["checkbox", "The mesh is on"]);
});
