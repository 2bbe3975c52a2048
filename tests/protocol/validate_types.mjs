// SPDX-License-Identifier: MIT
// Compiles types_usage.ts, and each example of the protocol as a constant of its type.
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import ts from "typescript";

const here = fileURLToPath(new URL(".", import.meta.url));
const protocol = join(here, "../../protocol");

function descriptions(folder) {
  return readdirSync(join(protocol, folder))
    .map((file) => JSON.parse(readFileSync(join(protocol, folder, file), "utf8")));
}

// The object without those keys of the request that the command does not know: the compiler refuses them in a constant.
function known(keys, request, object) {
  const unknown = Object.keys(request).filter((name) => keys.every(({ key }) => key !== name));
  return Object.fromEntries(Object.entries(object).filter(([name]) => !unknown.includes(name)));
}

function constants() {
  const lines = [];
  const add = (type, value) => lines.push(`export const c${lines.length}: ${type} = ${JSON.stringify(value)};`);
  for (const { command, request, example } of descriptions("commands")) {
    add(`Request<"${command}">`, known(request, example.request, example.request));
    add(`Reply<"${command}">`, known(request, example.request, example.reply));
  }
  for (const { report, example } of descriptions("reports")) {
    add(`ReportRequest<"${report}">`, example.request);
    add(`ReportReply<"${report}">`, example.reply);
  }
  for (const { event, example } of descriptions("events")) {
    add(`Events["${event}"]`, example);
  }
  return lines;
}

const { config } = ts.readConfigFile(join(here, "tsconfig.json"), ts.sys.readFile);
const { options } = ts.parseJsonConfigFileContent(config, ts.sys, here);
const folder = mkdtempSync(join(tmpdir(), "types-"));
try {
  const types = join(protocol, "types/hg_protocol");
  const lines = constants();
  const examples = join(folder, "examples.ts");
  writeFileSync(examples, [
    `import type { Events, Reply, ReportReply, ReportRequest, Request } from ${JSON.stringify(types)};`,
    ...lines].join("\n"));
  const program = ts.createProgram([`${types}.d.ts`, join(here, "types_usage.ts"), examples], options);
  const faults = ts.getPreEmitDiagnostics(program);
  process.stdout.write(ts.formatDiagnostics(faults, {
    getCanonicalFileName: (name) => name, getCurrentDirectory: () => here, getNewLine: () => "\n",
  }));
  console.log(`${lines.length} examples compiled, ${faults.length} faults`);
  process.exitCode = faults.length > 0 || lines.length === 0 ? 1 : 0;
} finally {
  rmSync(folder, { recursive: true });
}
