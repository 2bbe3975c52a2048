# SPDX-License-Identifier: MIT
"""Checks the traffic of the tests against the protocol's descriptions: each reply has to be one of those
described for its command, and each described reply has to have been seen, but with --part."""

import sys

import protocol


def main(traffic_file, is_part):
    sys.stdout.reconfigure(errors="backslashreplace")
    descriptions = {description["command"]: description
                    for description in protocol.descriptions().values()}
    unseen = {command: list(range(len(description["replies"])))
              for command, description in descriptions.items()}
    faults = []
    count = 0
    # A device library may return any bytes; they are compared unchanged.
    with open(traffic_file, encoding="utf-8", errors="surrogateescape") as lines:
        for line in lines:
            record = dict(protocol.parse(line))
            if "line" in record:
                continue  # of a session, for check_schemas.py
            count += 1
            command = record["command"]
            if command not in descriptions:
                faults.append(f"{command} is not described")
                continue
            fault, matched = check(record, descriptions[command])
            if fault:
                faults.append(f"{command}: {fault}\n  {line[:1000].rstrip()}")
            unseen[command] = [reply for reply in unseen[command] if reply not in matched]

    for command, replies in unseen.items() if not is_part else ():
        for reply in replies:
            when = descriptions[command]["replies"][reply]["when"]
            faults.append(f"{command}: no test has seen the reply when {when}")
    for fault in faults:
        print(fault)
    print(f"{count} replies to {len(descriptions)} commands, {len(faults)} faults")
    return 1 if faults or count == 0 else 0


def check(record, description):
    """The fault of one reply, or None, and the positions of the described replies that it matches."""
    replies = description["replies"]
    case_sensitive = description.get("case_sensitive", False)
    faults = [protocol.mismatch(record["reply"], record["request"], reply, case_sensitive)
              for reply in replies]
    matched = [position for position, fault in enumerate(faults) if fault is None]
    if matched:
        return None, matched
    reasons = [f"not when {reply['when']}: {fault}" for reply, fault in zip(replies, faults)]
    return "\n  ".join(["no described reply", *reasons]), []


sys.exit(main(sys.argv[1], "--part" in sys.argv[2:]))
