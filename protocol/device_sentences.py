# SPDX-License-Identifier: MIT
"""Builds the sentences about a device function from its description."""

from device_interface import INTEGER_SIZES


def rooms(arguments):
    """The lengths of the texts, and the values of numbers before the call."""
    endless = []
    for argument in arguments:
        name = argument["name"]
        if "before" in argument:
            yield f"*{name} is {argument['before']} before the call"
        elif "size" in argument:
            more = " + 1" if "size_is" in argument else ""
            yield f"{name} has room for {argument['size']}{more} bytes"
        elif "width" in argument and argument["way"] == "out":
            yield f"{name} has room for {argument['width']} bytes"
        elif "width" in argument:
            yield f"{name} is shorter than {argument['width']} bytes"
        elif argument["type"] == "text":
            endless.append(name)
    if endless:
        yield f"{listed(endless)} may have any length"


def result_sentences(function):
    """The meaning of the results, and what is read after a failure."""
    result = function.get("result", {})
    known = [f"{each['result']} {'that' if at else 'means that'} {each['means']}"
             for at, each in enumerate(result.get("known", [])) if isinstance(each["result"], int)]
    yield from sentence(known, ", ")
    filled = listed(list(filled_arguments(function)))
    if "callers" in result:
        rules = [f"for {listed(caller['who'])} {rule(caller, filled)}" for caller in result["callers"]]
        yield from sentence([capital(rules[0]), *rules[1:]])
    elif result.get("failure", "answer") != "answer":
        yield from sentence([capital(rule(result, filled)) + (f": {result['so']}" if "so" in result else "")])
    if "further" in result:
        yield result["further"]


def sentence(parts, separator="; "):
    """The parts as one sentence, or none."""
    text = separator.join(parts)
    if text:
        yield text + "."


def capital(text):
    return text[0].upper() + text[1:]


def listed(names):
    return " and ".join(filter(None, [", ".join(names[:-1]), *names[-1:]]))


def filled_arguments(function):
    for argument in function.get("arguments", []):
        if argument.get("way") in ("out", "in_out") and "may_fill" not in argument:
            number = argument["type"] in INTEGER_SIZES
            yield f"*{argument['name']}" if number else argument["name"]


FAILURES = {"not 0": "any result other than 0 is a failure", "-1": "only -1 is a failure",
            "not 1": "any result other than 1 is a failure", "negative": "a negative result is a failure",
            "logged": "any result other than 0 is logged", "ignored": "the result is ignored"}
AFTERWARDS = {"unread": ", after which {} {} not read", "emptied": ", after which {} {} taken as empty"}


def rule(result, filled):
    text = FAILURES[result["failure"]]
    if result["failure"] in ("logged", "ignored"):
        return text + (f": {filled} is used as the call leaves it" if filled else "")
    return text if "so" in result or "then" not in result else text + AFTERWARDS[result["then"]].format(
        filled, "are" if " and " in filled else "is")
