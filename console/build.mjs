// SPDX-License-Identifier: MIT
// Bundles the page: node build.mjs FOLDER. The names of script, style sheet and icon contain a hash of their contents, so
// that a browser may keep them forever. A compressed variant is next to each file. The service serves index.html as
// / and the others below /assets/.
import { build } from "esbuild";
import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { basename, dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

// The page has to open at once over a slow connection: this is the most that it may weigh, compressed.
const heaviestPage = 60000;
const source = dirname(fileURLToPath(import.meta.url));
const folder = process.argv[2] ?? join(source, "dist");

const options = {
    absWorkingDir: source,
    outdir: folder,
    bundle: true,
    minify: true,
    write: false,
    metafile: true,
    format: "esm",
    target: "es2023",
    legalComments: "none",
};
const result = await build({
    ...options,
    entryPoints: { app: join(source, "src/main.tsx") },
    jsx: "automatic",
    jsxImportSource: "preact",
    entryNames: "[name]-[hash]",
});
const files = new Map(result.outputFiles.map((file) => [`assets/${basename(file.path)}`, Buffer.from(file.contents)]));
const icon = readFileSync(join(source, "src/icon.svg"));
files.set(`assets/icon-${createHash("sha256").update(icon).digest("hex").slice(0, 8)}.svg`, icon);
const nameOf = (end) => [...files.keys()].find((name) => name.endsWith(end));
const index = readFileSync(join(source, "src/index.html"), "utf8")
    .replace("SCRIPT", `/${nameOf(".js")}`)
    .replace("STYLE", `/${nameOf(".css")}`)
    .replace("ICON", `/${nameOf(".svg")}`);
files.set("index.html", Buffer.from(index));

// The licences of the bundled packages require their texts to go with them.
function licencesOf(metafile) {
    const packages = new Set(
        Object.keys(metafile.inputs).flatMap((input) => /node_modules\/((?:@[^/]+\/)?[^/]+)/.exec(input)?.[1] ?? []),
    );
    return [...packages].sort().map((name) => {
        const home = join(source, "node_modules", name);
        const file = readdirSync(home).find((entry) => /^licen[cs]e/i.test(entry));
        const { version } = JSON.parse(readFileSync(join(home, "package.json"), "utf8"));
        return `${name} ${version}\n\n${readFileSync(join(home, file), "utf8")}`;
    });
}
const licences = licencesOf(result.metafile);

// The page of a report on a fleet, whose data hgagent puts in: all in one file, which works without a network.
const report = await build({
    ...options,
    entryPoints: { report: join(source, "src/fleet_report/report.ts"), style: join(source, "src/fleet_report/style.css") },
});
const textOf = (end) => report.outputFiles.find((file) => file.path.endsWith(end)).text;
const reportPage = readFileSync(join(source, "src/fleet_report/index.html"), "utf8")
    .replace("STYLE", () => textOf(".css").trim())
    .replace("SCRIPT", () => textOf(".js").replaceAll("</script", "<\\/script").trim())
    .replace("LICENCES", () => licencesOf(report.metafile).join("\n----\n\n").replaceAll("--", "- -").trim());

rmSync(join(folder, "assets"), { recursive: true, force: true });
mkdirSync(join(folder, "assets"), { recursive: true });
let weight = 0;
for (const [name, contents] of files) {
    const compressed = gzipSync(contents, { level: 9 });
    weight += compressed.length;
    writeFileSync(join(folder, name), contents);
    writeFileSync(join(folder, `${name}.gz`), compressed);
}
writeFileSync(join(folder, "fleet_report.html"), reportPage);
writeFileSync(join(folder, "licences.txt"), licences.join("\n----\n\n"));
console.log(`console: ${weight} bytes compressed, of at most ${heaviestPage}`);
if (weight > heaviestPage) {
    console.error("the page is too heavy");
    process.exit(1);
}
