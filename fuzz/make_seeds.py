#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Generates the initial inputs of the fuzzers from the protocol's descriptions.

    make_seeds.py COMMANDS SCENARIOS SERVICE_FILES RECORDINGS OUT

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


def write(folder, name, text, encoding="utf-8"):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(text.encode(encoding))


def write_mixes(folder, commands):
    """Mixes of commands that a fleet is driven with."""
    write(folder, "mix", "".join(
        f'[[request]]\ncommand = "{name}"\nweight = {weight}\n{rest}'
        for name, weight, rest in (
            ("GET_HG_BASE_INFO", 40, ""), ("GET_AD_BASE_INFO", 0.5, "params = '{\"MAC\":\"1\"}'\n"),
            ("SET_HG_BASE_INFO", 8, 'value = "Home {sequence}"\n'), ("SET_UPNP_STATE", 1e3, ""),
            ("SET_WIFI_INFO", 4, 'key = "SSID"\nvalues = ["{gateway}", "{sequence} {gateway}"]\n'))))
    settings = [command["command"] for command in commands if command["effect"] == "setting"]
    write(folder, "mix.settings", "".join(
        f'[[request]]\ncommand = "{name}"\nkey = "Enable"\nvalue = "1"\n' for name in settings[:20]))


def write_recordings(folder, recordings):
    """Whole recordings, and the lines of long ones in parts, with their own numbers."""
    most = 10
    for file in sorted(recordings.glob("*.jsonl")):
        lines = [json.loads(line) for line in file.read_text(encoding="utf-8").splitlines()]
        for at in range(1, len(lines), most):
            part = [{**line, "seq": seq} for seq, line in enumerate([lines[0], *lines[at : at + most]])]
            write(folder, f"{file.stem}.{at:03}", "".join(one_line(line) + "\n" for line in part))


# The secrets that fuzz_http gives to its clients.
TOKEN, OWNER, USER = (f"0{number}" * 32 for number in (1, 2, 3))


def http(line, *fields, body="", length=True):
    """A request of HTTP/1.1."""
    fields = ["Host: 127.0.0.1:8080", *fields]
    if body and length:
        fields.append(f"Content-Length: {len(body)}")
    return f"{line} HTTP/1.1\r\n" + "".join(f"{field}\r\n" for field in fields) + f"\r\n{body}"


def pieces(*all_pieces):
    """An input in pieces; one is a text, or a word and a text."""
    return "".join(
        f"@{piece[0]}\n{piece[1]}\n" if isinstance(piece, tuple) else f"@\n{piece}\n" for piece in all_pieces)


def write_http(folder):
    """Clients of HTTP and WebSocket."""
    bearer = f"Authorization: Bearer {TOKEN}"
    owner, user = (f"Cookie: hgagent-8080={value}" for value in (OWNER, USER))
    own = "Origin: http://127.0.0.1:8080"
    query = http("POST /api/command/GET_SN_INFO", bearer, own, body="{}")
    change = http("POST /api/command/SET_HG_BASE_INFO", owner, "Idempotency-Key: a", body='{"Name":"a"}')
    denied = http("POST /api/command/SET_HG_BASE_INFO", user, body='{"Name":"a"}')
    socket = http("GET /api/socket", "Upgrade: websocket", "Connection: Upgrade", "Sec-WebSocket-Version: 13",
                  "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==", own, "Cookie: a=b; " + owner[8:])
    hello = ("message", '{"id":1,"hello":{}}')
    inputs = {
        "query": [query, query],
        "change": [change, change, denied],
        "chunked": [http("POST /api/command/GET_SN_INFO?secrets=show", bearer, "Transfer-Encoding: chunked",
                         body="2;a=b\r\n{}\r\n0\r\nTrailer: a\r\n\r\n", length=False)],
        "continue": [http("POST /api/command/GET_SN_INFO", user, "Expect: 100-continue", "Content-Length: 2"), "{}"],
        "pipelined": [query + denied + query],
        "report": [http("POST /api/report/topology", user, "Sec-Fetch-Site: same-origin", body='{"a":\n{}}')],
        "session": [http("GET /api/session", user), http("POST /api/logout", user), http("GET /api/session", user)],
        "login": [http("POST /api/login", body=f'{{"token":"{TOKEN}"}}'),
                  http("POST /api/login", body='{"user":"alice","password":"a"}')],
        "events": [http("GET /api/events?pattern=notice", bearer), ("connect", query), ("", query)],
        "page": [http("GET /", "Accept-Encoding: gzip", 'If-None-Match: "a"'), http("HEAD /"), http("PUT /")],
        "documents": [http("GET /api/openapi.json", user, "Accept-Encoding: gzip"), http("GET /metrics", user)],
        "elsewhere": [http("GET /nothing", user), http("DELETE /api/firmware", user), http("GET /api/command/A", user)],
        "old": [http("GET /api/session", bearer).replace("HTTP/1.1", "HTTP/1.0")],
        "upload": [http("PUT /api/firmware", bearer, body="image"),
                   http("PUT /api/firmware", bearer, "Content-Length: 6"), "ima", ("connect", ""),
                   http("PUT /api/firmware", bearer, body="other")],
        "socket": [socket, hello, ("message", '{"id":[1],"command":"GET_SN_INFO",\n"params":{}}'),
                   ("message", '{"id":2,"subscribe":"*"}'), ("message", '{"id":3,"report":"topology"}'),
                   ("message", "rubbish"), ("message", '{"id":4,"unsubscribe":"*"}')],
        "held": [socket, ("hold", ""), *[("message", '{"id":1,"command":"GET_SN_INFO"}')] * 20, ("go", ""), hello],
        "frames": [socket, "\x01\x81\0\0\0\0{", "\x89\x80\0\0\0\0", "\x80\x81\0\0\0\0}", hello,
                   "\x88\x82\0\0\0\0\x03\xe8"],
        "logout": [socket, hello, ("connect", http("POST /api/logout", owner)), hello],
    }
    for name, all_pieces in inputs.items():
        write(folder, name, pieces(*all_pieces), encoding="latin-1")


def write_mqtt(folder):
    """Messages to a gateway on a broker."""
    base = "message gateway/gw1/"
    reply = "response gateway/gw1/reply/app\n"
    query = (base + "command/GET_SN_INFO", reply + "correlation 1\n\n{}")
    change = (base + "command/SET_HG_BASE_INFO", reply + 'correlation 2\n\n{"Name":"a"}')
    inputs = {
        "query": [query, query],
        "change": [change, change, (change[0], reply + 'correlation 2\n\n{"Name":"b"}')],
        "silent": [(base + "command/SET_HG_BASE_INFO", '\n{"Name":"a"}')],
        "elsewhere": [(query[0], f"response {topic}\n\n{{}}") for topic in (
            "platform/a", "platform/", "gateway/gw1/command/REBOOT", "gateway/gw1/reply/#")],
        "lines": [(base + "request/app", "\n" + line) for line in (
            '{"id":1,"command":"GET_SN_INFO"}', '{"id":"a","hello":{}}', '{"id":2,"subscribe":"*"}',
            '{"id":3,"control":{"clock":null}}', '{"id":4,\n"notice":{"plugin_name":"a","text":"b"}}', "rubbish")],
        "report": [(base + "report/topology", reply + "gzip\nqos 0\n\n")],
        "state": [(base + "state/get", "\n"), (base + "state", "\n"), ("message gateway/gw2/command/A", "\n")],
        "retained": [(query[0], reply + "retain\n\n{}")],
        "expired": [("hold", ""), query, (query[0], reply + "expiry 0\n\n{}"), ("go", "")],
        "epoch": [(change[0], reply + 'epoch 0123456789abcdef\n\n{"Name":"a"}')],
        "held": [("hold", ""), change, change, query, ("go", ""), change],
        "deaf": [("deaf", ""), *[query] * 12, ("hear", ""), query],
        "guest": [("guest", ""), query, change],
        "small": [("small", ""), (base + "command/" + "A" * 250, reply + "\n{}"), query],
        "objects": [(query[0], reply + "\n" + payload) for payload in (
            "[]", "{} {}", '{},"command":"REBOOT"', '{"a":\n\t{}}', '{"a":"b\nc"}', "{")],
    }
    for name, all_pieces in inputs.items():
        write(folder, name, pieces(*all_pieces))


def write_linux(folder):
    """The files that the library for Linux reads."""
    inputs = {
        "configuration": (
            'lan_bridge = "br7"\nwan_port = "wan7"\nlease_file = "/run/leases"\ndnsmasq_configuration = "/etc/a"\n'
            'resolver_configuration = "/etc/b"\nstate = "/srv/state.json"\ntime_zone = "Europe/Berlin"\n'
            'package = "gateway"\narea_code = "NORTH-07"\nmanagement_host = "fd00::1"\nremove_at_exit = true\n'),
        "host": 'management_host = "a4-bb-6d-31-07-5e"\n"a\\n" = 1\n',
        "leases": ("1795344631 a4:bb:6d:31:07:5e 192.168.1.101 Küche 01:a4:bb:6d:31:07:5e\n"
                   "0 72:9b:e0:46:d8:15 192.168.1.102 * *\nduid 00:01\n1 2 fd00::1 pc 00:01\n"),
        "dnsmasq": ("conf-dir=/etc/x,*.conf\ndhcp-range=set:a,192.168.1.2,192.168.1.9,12h # a\n"
                    "dhcp-option=option:router,192.168.1.1\ndhcp-host=a4:bb:6d:31:07:5e,192.168.1.3\n"
                    "dhcp-leasefile=/run/a\n"),
        "state": one_line({
            "name": "Küche", "green_net": True, "access_restricted": True,
            "hosts": [{"mac": "A4:BB:6D:31:07:5E", "alias": "Anna", "kind": "Computer", "blocked": True,
                       "down_limit_kbps": 20000}],
            "green_hosts": [{"number": 7, "mac": "72:9B:E0:46:D8:15", "name": "a", "notify": True, "protected": True,
                             "periods": [{"enabled": True, "start": "22:00", "end": "07:30", "days": "12345"}]}]}),
    }
    for name, text in inputs.items():
        write(folder, name, text)


def main():
    commands = [
        json.loads(path.read_text(encoding="utf-8"))
        for path in sorted(pathlib.Path(sys.argv[1]).glob("*.json"))
    ]
    out = pathlib.Path(sys.argv[5])
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
    write_mixes(out / "fuzz_policy", commands)
    write_recordings(out / "fuzz_recording", pathlib.Path(sys.argv[4]))
    write_http(out / "fuzz_http")
    write_mqtt(out / "fuzz_mqtt")
    write_linux(out / "fuzz_linux")
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
