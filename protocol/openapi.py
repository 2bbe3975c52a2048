# SPDX-License-Identifier: MIT
"""Generates the OpenAPI 3.1 document of the service's HTTP interface."""

from components import (LICENCE, NOTES, PROTOCOL_VERSION, command_answer, component, component_schemas, report_answer,
                        summary_of)
from reference import subject_title
from schemas import CODES

INTRODUCTION = """\
The HTTP interface of `hgagent run --console`. Programs send the token that the service prints, or has written to its
file, as `Authorization: Bearer TOKEN`; a page logs in and gets a cookie. An answer with status 200 has a `result` and
a `reply`, any other an `error` and a `code`; a reply that reports a failure of the command has status 200 as well.
"""
JSON = "application/json"


def openapi(commands, reports, events):
    paths = {}
    for description in commands:
        paths[f"/api/command/{description['command']}"] = {"post": command_operation(description)}
    for description in reports:
        paths[f"/api/report/{description['report']}"] = {"post": report_operation(description)}
    paths.update(other_paths(events))
    subjects = sorted({description["subject"] for description in commands})
    return {
        "openapi": "3.1.0",
        "info": {"title": "Home gateway: HTTP interface", "version": PROTOCOL_VERSION,
                 "description": INTRODUCTION + "\n" + NOTES, "license": LICENCE},
        "servers": [
            {"url": "/", "description": "the service that this document comes from"},
            {"url": "http://{address}", "description": "a service elsewhere", "variables": {
                "address": {"default": "127.0.0.1:8080", "description": "address and port of --console"}}},
        ],
        "security": [{"token": []}, {"session": []}],
        "tags": [*({"name": subject_title(subject)} for subject in subjects), {"name": "Reports"},
                 {"name": "Session"}, {"name": "Service"}],
        "paths": paths,
        "components": {
            "securitySchemes": {
                "token": {"type": "http", "scheme": "bearer", "description": "the token that the service prints"},
                "session": {"type": "apiKey", "in": "cookie", "name": "hgagent-8080",
                            "description": "cookie of /api/login; its name ends with the port of the service"},
            },
            "parameters": parameters(),
            "responses": responses(),
            "schemas": {**component_schemas(commands, reports, events), **session_schemas()},
        },
    }


def command_operation(description):
    name = description["command"]
    seconds = f" It may take {description['seconds']} seconds." if "seconds" in description else ""
    return {
        "operationId": name,
        "tags": [subject_title(description["subject"])],
        "summary": description["summary"],
        "description": summary_of(description) + seconds,
        "x-effect": description["effect"],
        **call(name, description, command_answer(description), needs_body(description)),
    }


def report_operation(description):
    name = description["report"]
    return {
        "operationId": f"report.{name}",
        "tags": ["Reports"],
        "summary": description["summary"],
        "description": summary_of(description),
        **call(f"report.{name}", description, report_answer(description), needs_body(description)),
    }


def needs_body(description):
    return any(key["required"] for key in description["request"])


def call(name, description, answer, needs):
    example = description["example"]
    return {
        "parameters": [{"$ref": "#/components/parameters/secrets"},
                       {"$ref": "#/components/parameters/idempotency-key"}],
        "requestBody": {"required": needs, "description": "no body is the same as {}", "content": {
            JSON: {"schema": component(f"{name}.request"), "example": example["request"]}}},
        "responses": {
            "200": {"description": "the result", "content": {
                JSON: {"schema": answer, "example": {"result": 0, "reply": example["reply"]}}}},
            **error_responses(),
        },
    }


def error_responses():
    return {status: {"$ref": f"#/components/responses/{status}"}
            for status in ("400", "401", "403", "413", "429", "502", "503", "504")}


# What is refused before the gate has no code: who sends it is not known.
WITHOUT_CODE = {"type": "object", "properties": {"error": {"type": "string"}}, "required": ["error"]}


def responses():
    by_status = {401: ["the request has no valid token or session"],
                 403: ["the page is of another origin, which has no code"]}
    schemas = {401: WITHOUT_CODE, 403: WITHOUT_CODE}
    for code, (status, meaning) in CODES.items():
        by_status.setdefault(status, []).append(f"{code}: {meaning}")
    found = {}
    for status, meanings in sorted(by_status.items()):
        found[str(status)] = {"description": "; ".join(meanings),
                              "content": {JSON: {"schema": schemas.get(status, component("error"))}}}
        if status in (429, 503):
            found[str(status)]["headers"] = {"Retry-After": {
                "description": "when another attempt makes sense, in seconds", "schema": {"type": "integer"}}}
    return found


def parameters():
    return {
        "secrets": {"name": "secrets", "in": "query", "schema": {"const": "show"},
                    "description": "shows secrets in the reply, if the role may see them; otherwise they are masked"},
        "idempotency-key": {
            "name": "Idempotency-Key", "in": "header", "schema": {"type": "string", "minLength": 1},
            "example": "3f6c1c1e-8f0f-4a5e-9a55-0d8a2a0f6c11",
            "description": "identifies repetitions of one request: a command that changes something is carried out "
                           "once for each key, and its answer is kept for ten minutes"},
    }


def plain(operation, summary, tag, success, **more):
    return {"operationId": operation, "tags": [tag], "summary": summary, **more,
            "responses": {**success, **{status: {"$ref": f"#/components/responses/{status}"}
                                        for status in ("401", "403")}}}


def content(media, schema, description, example=None):
    shown = {} if example is None else {"example": example}
    return {"200": {"description": description, "content": {media: {"schema": schema, **shown}}}}


def other_paths(events):
    none = {"204": {"description": "done"}}
    first = next(event for event in events if event["event"] == "update.progress")
    stream = {
        "type": "string", "x-events": [event["event"] for event in events],
        "description": "`event:` has the name of an event, `data:` its data as JSON: "
                       + ", ".join(f"[{event['event']}](#/components/schemas/{event['event']}.event)"
                                   for event in events)}
    return {
        "/api/login": {"post": {
            **plain("login", "Starts a session", "Session", none, security=[{}]),
            "requestBody": {"required": True, "content": {JSON: {
                "schema": component("login"), "example": {"user": "alice", "password": "…"}}}}}},
        "/api/logout": {"post": plain("logout", "Ends the session", "Session", none)},
        "/api/session": {"get": plain("session", "The client, and what it may do", "Session", content(
            JSON, component("session"), "the session", SESSION_EXAMPLE))},
        "/api/events": {"get": {
            **plain("events", "Events as they happen, as server-sent events", "Service",
                    content("text/event-stream", stream, "a stream that does not end",
                            f"event: {first['event']}\ndata: {{\"task\": \"firmware\", \"percent\": 54}}\n\n")),
            "parameters": [{"name": "pattern", "in": "query", "schema": {"type": "string", "default": "*"},
                            "example": "update.*", "description": "the names of the events; `*` stands for any "
                                                                  "characters"}]}},
        "/api/socket": {"get": {
            **plain("socket", "The lines of hgagent serve over a WebSocket", "Service",
                    {"101": {"description": "from now on each text message is a line: a request such as "
                             '`{"id": 1, "command": "GET_SN_INFO", "params": {}}`, its answer, or an event'}})}},
        "/api/firmware": {"put": {
            **plain("firmware", "Stores an image for IMAGE_DOWNLOAD or HG_IMAGE_UPDATE, in place of the previous one",
                    "Service", content(JSON, component("firmware"), "where the image is", FIRMWARE_EXAMPLE)),
            "requestBody": {"required": True, "content": {
                "application/octet-stream": {"schema": {"type": "string", "format": "binary"}}}}}},
        "/api/protocol.json": {"get": plain(
            "protocol", "The descriptions of all commands and events", "Service",
            content(JSON, {"type": "object"}, "what protocol/complete and protocol/events have"))},
        "/api/openapi.json": {"get": plain("openapi", "This document", "Service",
                                           content(JSON, {"type": "object"}, "this document"))},
        "/metrics": {"get": plain("metrics", "Figures in Prometheus' text form", "Service",
                                  content("text/plain", {"type": "string"}, "the figures"))},
    }


SESSION_EXAMPLE = {
    "who": "http-user:alice", "role": "installer", "secrets": False, "control": False,
    "commands": ["GET_SN_INFO", "SET_LED_STATUS"], "reports": ["home-page"], "service": "0.2.0", "protocol": "1.0",
    "epoch": "5c9f0a7e2b41d863", "device": "simulated",
}
FIRMWARE_EXAMPLE = {
    "url": "file:///var/lib/hgagent/firmware/image", "size": 8388608,
    "sha256": "9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08",
    "md5": "098f6bcd4621d373cade4e832627b4f6",
}


def session_schemas():
    def text(meaning):
        return {"type": "string", "description": meaning}

    def names(meaning):
        return {"type": "array", "items": {"type": "string"}, "description": meaning}

    return {
        "login": {"title": "The token that the service prints, or a user with a password", "oneOf": [
            {"type": "object", "required": ["token"], "properties": {"token": text("hexadecimal digits")}},
            {"type": "object", "required": ["user", "password"],
             "properties": {"user": text("name of the user"), "password": text("its password")}}]},
        "session": {"title": "The client, and what it may do", "type": "object",
                    "required": list(SESSION_EXAMPLE), "properties": {
                        "who": text("the client, as in the audit"),
                        "role": text("its role in the policy"),
                        "secrets": {"type": "boolean", "description": "whether it may see secrets"},
                        "control": {"type": "boolean", "description": "whether it may control the simulated gateway"},
                        "commands": names("the commands that it may send"),
                        "reports": names("the reports that it may request"),
                        "service": text("version of the service"),
                        "protocol": text("version of the commands"),
                        "epoch": text("identifies this start of the service"),
                        "device": {"enum": ["simulated", "other"], "description": "the device library"}}},
        "firmware": {"title": "A stored image", "type": "object", "required": list(FIRMWARE_EXAMPLE), "properties": {
            "url": text("its address, for the commands"),
            "size": {"type": "integer", "description": "its size in bytes"},
            "sha256": text("its SHA-256, in hexadecimal digits"),
            "md5": text("its MD5, in hexadecimal digits")}},
    }
