#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Generates the initial inputs of the fuzzers from the protocol's descriptions.

    make_seeds.py COMMANDS SCENARIOS OUT

writes OUT/protocol.dict, the dictionary of all, and the seeds OUT/TARGET/* of each fuzzer. The same
descriptions always give the same files.
"""

import json
import pathlib
import re
import sys


# The functions that the agent calls directly, and the keys that contain their arguments.
AGENT_CALLS = {
    "json_get_home_page_info": {},
    "json_get_main_router_info": {},
    "json_get_main_router_baseinfo": {},
    "json_get_topo_router_info": {},
    "json_get_topo_router_agent_info_bynewmethod": {},
    "json_get_router_sta_info": {},
    "json_msg_notice_to_app": {"Message": "new firmware"},
    "pthread_hg_image_upgrade": {"UpdateUrl": "file:///proc/self/fd/700/good"},
    "parse_wifi_set_info_from_json": {
        "SSIDIndex": "1", "SSID": "home", "PowerLevel": "80", "Channel": "6", "Enable": "1", "PWD": "secret",
    },
}


# The homes that are quick to open.
SMALL_HOMES = ("operator_variant", "short_report", "single_router")


def keys_of(rows):
    for row in rows:
        yield row["key"]
        yield from keys_of(row.get("items", []))


def texts_of(item):
    if isinstance(item, str):
        yield item
    elif isinstance(item, dict):
        for value in item.values():
            yield from texts_of(value)
    elif isinstance(item, list):
        for value in item:
            yield from texts_of(value)


def words_of(description):
    yield description["command"]
    yield from keys_of(description["request"])
    for reply in description["replies"]:
        yield from keys_of(reply["keys"])
        for row in reply["keys"]:
            yield from [row["text"]] if "text" in row else row.get("one_of", [])
    yield from texts_of(description["example"])


def quoted(word):
    """A word as a line of a dictionary, with bytes that are not printable as \\xNN."""
    characters = (
        chr(byte) if 32 <= byte < 127 and byte not in b'"\\' else f"\\x{byte:02x}"
        for byte in word.encode()
    )
    return '"' + "".join(characters) + '"'


def one_line(item):
    return json.dumps(item, ensure_ascii=False, separators=(",", ":"))


def write(folder, name, text):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_text(text, encoding="utf-8")


def main():
    commands = [
        json.loads(path.read_text(encoding="utf-8"))
        for path in sorted(pathlib.Path(sys.argv[1]).glob("*.json"))
    ]
    out = pathlib.Path(sys.argv[4])
    words = sorted({word for command in commands for word in words_of(command) if 0 < len(word) <= 64})
    write(out, "protocol.dict", "".join(quoted(word) + "\n" for word in words))

    lines = [f"{name} {one_line(request)}\n" for name, request in AGENT_CALLS.items()]
    for name, request in AGENT_CALLS.items():
        write(out / "fuzz_device", name, f"{name}\n{one_line(request)}\n")
    for command in commands:
        name, request = command["command"], one_line(command["example"]["request"])
        lines.append(f"{name} {request}\n")
        write(out / "fuzz_request", name, f"{name}\n{request}\n")
        write(out / "fuzz_serve", name, f'{{"id":1,"command":"{name}","params":{request}}}\n')
        write(out / "fuzz_device", name, f"{name}\n")
        # Every call fills its fields one by one, or fails, or fills them completely without a NUL.
        for kind, steering in ("field", "\n"), ("failure", "\f"), ("full", "\t"):
            write(out / "fuzz_device", f"{name}.{kind}", f"{name}\n{steering * 16}")
    for at in range(0, len(lines), 4):
        write(out / "fuzz_session", f"{at:03}", "".join(lines[at : at + 4]))
    for home in "crowded_mesh", "operator_variant", "short_report", "single_router":
        reports = [line for line in lines if line.startswith(("GET_TSLINK", "GET_AD_BASE", "json_get"))]
        write(out / "fuzz_session", home, f"@{home}\n" + "".join(reports))
    write(
        out / "fuzz_serve",
        "notice",
        '{"id":"a","notice":{"plugin_name":"agent","text":"{}"}}\nrubbish\n\n{"id":[1.50],"command":1}\n',
    )
    controls = ('{"faults":["devapi_get_sn_info=-1*2@5ms"]}', '{"scenario":"single_router"}', '{"clock":"+3600"}',
                '{"clock":null}', '{"trace":true}', '{"show":{}}', '{"show":{},"trace":1}')
    write(out / "fuzz_serve", "control", "".join(f'{{"id":1,"control":{control}}}\n' for control in controls))
    for scenario in sorted(pathlib.Path(sys.argv[2]).glob("*.json")):
        home = json.loads(scenario.read_text(encoding="utf-8"))
        if scenario.stem in SMALL_HOMES:
            write(out / "fuzz_state", scenario.stem, one_line(home))
    for file in sorted(pathlib.Path(sys.argv[3]).glob("*.toml")):
        # Every default that stands behind a "#" is a value as well.
        text = file.read_text(encoding="utf-8")
        write(out / "fuzz_policy", file.stem, text)
        write(out / "fuzz_policy", f"{file.stem}.all", re.sub(r"^# (?=[a-z-]+ = )", "", text, flags=re.M))
    images = (
        'HG_IMAGE_DOWNLOAD {"UpdateUrl":"file:///proc/self/fd/700/%s"}\nHG_GET_UPDATE_STATUS {}\n'
        'HG_IMAGE_UPDATE {"Update":"1"}\n!\nHG_GET_UPDATE_STATUS {}\n'
    )
    for name in "good", "damaged":
        write(out / "fuzz_session", f"image.{name}", images % name)
    write(
        out / "fuzz_session",
        "image.worker",
        'UPDATE_IMMEDIATE {"Image":{"UpdateUrl":"file:///proc/self/fd/700/good"}}\n'
        'IMAGE_DOWNLOAD {"MainRouter":{"UpdateUrl":"http://127.0.0.1/image"}}\nGET_UPDATE_STATUS {}\n',
    )


main()
