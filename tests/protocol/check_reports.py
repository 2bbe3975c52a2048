# SPDX-License-Identifier: MIT
"""Checks the descriptions of the reports: against their schema, against the agent's list of reports, and against
recorded reports of the built-in homes and the examples."""

import json
import re
import sys

import jsonschema

import protocol
import schemas
from descriptions import reports

GOLDEN = protocol.ROOT / "tests/end_to_end/golden"


def schema_faults():
    schema = json.loads((protocol.ROOT / "protocol/report.schema.json").read_text(encoding="utf-8"))
    # The parts of a report are those of a command.
    schema["$defs"] = json.loads((protocol.ROOT / "protocol/command.schema.json").read_text(encoding="utf-8"))["$defs"]
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    for file, description in protocol.as_written("reports").items():
        for error in validator.iter_errors(description):
            yield f"{file.name}: {error.json_path}: {error.message}"
        if file.stem != description.get("report"):
            yield f"{file.name}: describes {description.get('report')}"


def agent_faults(described):
    """The agent's reports have the same names, functions and summaries."""
    text = (protocol.ROOT / "agent/host/report_builders.cpp").read_text(encoding="utf-8")
    known = {name.replace("kStations", "stations").strip('"'): (summary, builder) for name, summary, builder in
             re.findall(r'\{("[a-z-]+"|kStations), "([^"]+)",\s+"(json_\w+)"', text)}
    for description in described:
        if "builder" not in description:
            continue
        summary, builder = known.pop(description["report"], ("", ""))
        if builder != description["builder"] or not summary.startswith(description["summary"]):
            yield f"{description['report']}: the agent has {builder}, \"{summary}\""
    yield from (f"the report {name} is not described" for name in known)


def recorded_faults(described):
    count = 0
    for description in described:
        name = description["report"]
        written = protocol.parse((protocol.ROOT / f"protocol/reports/{name}.json").read_text(encoding="utf-8"))
        replies = {"the example": dict(dict(written)["example"])["reply"]}
        replies.update({file.name: protocol.parse(file.read_text(encoding="utf-8"))
                        for file in sorted(GOLDEN.glob(f"*.{name}.json"))})
        schema = jsonschema.Draft202012Validator(schemas.reply_schema(description))
        for where, reply in replies.items():
            count += 1
            whys = [protocol.object_mismatch(reply, one["keys"]) for one in description["replies"]]
            if all(whys):
                yield f"{name}: {where}: {whys[0]}"
            for error in schema.iter_errors(plain(reply)):
                yield f"{name}: {where}: {error.json_path}: {error.message[:200]}"
    if count <= len(described):
        yield f"there are no recorded reports in {GOLDEN}"


def plain(value):
    """With objects as dictionaries: of a repeated key, the last one."""
    if isinstance(value, protocol.Object):
        return {key: plain(inner) for key, inner in value}
    return [plain(inner) for inner in value] if isinstance(value, list) else value


def main():
    described = list(reports().values())
    faults = [*schema_faults(), *agent_faults(described), *recorded_faults(described)]
    for fault in faults:
        print(fault)
    print(f"{len(described)} reports, {len(faults)} faults")
    return 1 if faults or not described else 0


sys.exit(main())
