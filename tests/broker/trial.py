# SPDX-License-Identifier: MIT
"""Requests that change the device while something fails: what was answered, and how often each was executed."""
import dataclasses
import threading

COMMAND = "SET_HG_BASE_INFO"
REPEAT_SECONDS = 1
PATIENCE_SECONDS = 5


@dataclasses.dataclass
class Tally:
    sent: int = 0
    answered: int = 0
    outcome_unknown: int = 0   # of the answered
    refused: int = 0           # of the answered: any other error
    repeated_answers: int = 0  # answers beyond the first
    once: int = 0              # executed
    twice: int = 0             # or more often
    never: int = 0
    failures: int = 0
    reconnects: int = 0

    def kept_promise(self):
        """Every request answered, none executed twice, and those with a result executed."""
        return (self.answered == self.sent and self.twice == 0 and
                self.once >= self.sent - self.outcome_unknown - self.refused)


def requests(count, user):
    """The user properties are those of the moment at which a request is sent."""
    return ((COMMAND, {"Name": f"n{number}"}, user()) for number in range(count))


def run(caller, executed, count, in_flight=16, rule=True, fail=None, failures=4, user=lambda: ()):
    """Sends `count` requests. fail() makes something fail and repairs it; it is called `failures` times, evenly spread
    over the requests, on a separate thread. executed() counts the executions of each name."""
    wanted = requests(count, user)
    tally = Tally(sent=count)
    disturbance = None
    errors = []

    def disturb():
        try:
            fail()
        except Exception as error:  # the thread that waits for it reports it
            errors.append(error)

    def during(answered):
        nonlocal disturbance
        if errors:
            raise errors[0]
        if fail is None or tally.failures == failures or (disturbance is not None and disturbance.is_alive()):
            return
        if answered >= count * (tally.failures + 1) // (failures + 1):
            tally.failures += 1
            disturbance = threading.Thread(target=disturb)
            disturbance.start()

    before = caller.reconnects
    try:
        asked = caller.ask_all(wanted, in_flight, REPEAT_SECONDS if rule else None, PATIENCE_SECONDS, during)
    finally:
        if disturbance is not None:
            disturbance.join()
    if errors:
        raise errors[0]
    # Requests that were not answered may still be executed, and answered late.
    if not rule:
        caller.ask_all([("GET_SN_INFO", {})], 1, repeat_seconds=REPEAT_SECONDS)
    tally.reconnects = caller.reconnects - before
    times = executed()
    for request in asked:
        name = request.params["Name"]
        tally.once += times[name] == 1
        tally.twice += times[name] > 1
        tally.never += times[name] == 0
        if request.answers:
            tally.answered += 1
            tally.repeated_answers += len(request.answers) - 1
            code = request.answers[0].code
            tally.outcome_unknown += code == "outcome-unknown"
            tally.refused += code not in (None, "outcome-unknown")
    return tally
