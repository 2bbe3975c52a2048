// SPDX-License-Identifier: MIT
// Validates protocol/asyncapi.json and protocol/openapi.json, and that a fault in each would be found.
import { readFileSync } from "node:fs";
import { Parser } from "@asyncapi/parser";
import { Validator } from "@seriousme/openapi-schema-validator";

function read(name) {
  return JSON.parse(readFileSync(new URL(`../../protocol/${name}.json`, import.meta.url), "utf8"));
}

async function asyncapiFaults(document) {
  const { diagnostics } = await new Parser().parse(JSON.stringify(document));
  const newerVersion = "asyncapi-latest-version";
  return diagnostics.filter(({ code }) => code !== newerVersion)
    .map(({ path, message }) => `asyncapi.json: ${path.join("/")}: ${message}`);
}

async function openapiFaults(document) {
  const validator = new Validator();
  const { valid, errors } = await validator.validate(document);
  if (!valid) {
    return [`openapi.json: ${JSON.stringify(errors)}`];
  }
  try {
    validator.resolveRefs();
    return [];
  } catch (fault) {
    return [`openapi.json: ${fault.message}`];
  }
}

// The document with one command alone, since parsing all of them takes seconds.
function reduced(document, name) {
  const { messages } = document.components;
  const kept = [`${name}.request`, `${name}.answer`, "error"];
  const only = (all, names) => Object.fromEntries(names.map((one) => [one, all[one]]));
  const answers = { ...document.channels.answers, messages: only(document.channels.answers.messages, kept.slice(1)) };
  return structuredClone({
    ...document,
    channels: { ...only(document.channels, [name]), answers },
    operations: only(document.operations, [name]),
    components: { ...document.components, messages: only(messages, kept) },
  });
}

const command = "SET_HG_BASE_INFO";
const asyncapi = read("asyncapi");
const openapi = read("openapi");
const faults = [...await asyncapiFaults(asyncapi), ...await openapiFaults(openapi),
  ...await asyncapiFaults(reduced(asyncapi, command))];

const broken = {
  "a schema with a type that does not exist": [asyncapiFaults, reduced(asyncapi, command), (document) => {
    document.components.schemas[`${command}.request`].type = "record";
  }],
  "an operation without an action": [asyncapiFaults, reduced(asyncapi, command), (document) => {
    delete document.operations[command].action;
  }],
  "a reference to a message that does not exist": [asyncapiFaults, reduced(asyncapi, command), (document) => {
    document.channels[command].messages[`${command}.request`].$ref = "#/components/messages/none";
  }],
  "a path without responses": [openapiFaults, structuredClone(openapi), (document) => {
    document.paths[`/api/command/${command}`].post.responses = 7;
  }],
  "a reference to a schema that does not exist": [openapiFaults, structuredClone(openapi), (document) => {
    document.components.responses["400"].content["application/json"].schema.$ref = "#/components/schemas/none";
  }],
};
for (const [what, [find, document, damage]] of Object.entries(broken)) {
  damage(document);
  if ((await find(document)).length === 0) {
    faults.push(`the validation does not find ${what}`);
  }
}

faults.forEach((fault) => console.log(fault));
console.log(`${Object.keys(asyncapi.channels).length} channels and ${Object.keys(openapi.paths).length} paths, `
  + `${faults.length} faults`);
process.exitCode = faults.length > 0 ? 1 : 0;
