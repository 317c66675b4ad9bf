"""SIGKILL and errors at every call by which a scenario changes something, each followed by the next start."""

import time
from dataclasses import dataclass, field

from contents import Inventory
from scenarios import faults, unlisted_remnants
from tracing import CHANGING, FAILING, points, spread, with_injection

ERRORS = ("EIO", "ENOSPC")


@dataclass
class Tally:
    name: str
    points: int = 0
    tried: int = 0
    struck: int = 0
    findings: list = field(default_factory=list)

    def line(self):
        return (f"{self.name}: {self.tried} of {self.points} points tried, {self.struck} struck, "
                f"{len(self.findings)} findings")


class Sweep:
    """Tries one scenario at its points within its time limit."""

    def __init__(self, world, scenario, say):
        self.world = world
        self.scenario = scenario
        self.say = say

    def build(self):
        self.world.clean()
        return self.scenario.build(self.world)

    def found_points(self, calls):
        case = self.build()
        words = list(map(str, case.words))
        log = self.world.base / "trace"
        folders = [self.world.volumes.base]
        return points(words, self.world.account(), folders, log, calls)

    def sweep(self, what, calls, seconds, attempt):
        found = self.found_points(calls)
        tally = Tally(f"{what} {self.scenario.name}", len(found))
        end = time.monotonic() + seconds
        for number, point in enumerate(spread(found)):
            if time.monotonic() > end:
                break
            case = self.build()
            struck, findings = attempt(case, point, number)
            tally.tried += 1
            tally.struck += struck
            for finding in findings:
                line = f"{tally.name} at {point.call} {point.number}: {finding}"
                tally.findings.append(line)
                self.say("  " + line)
        self.say(tally.line())
        return tally

    def kills(self, seconds):
        return self.sweep("kill", CHANGING, seconds, self.killed)

    def errors(self, seconds):
        return self.sweep("error", FAILING, seconds, self.failed)

    def killed(self, case, point, _):
        ending = with_injection(list(map(str, case.words)), self.world.account(), point, "signal=KILL")
        if ending.code is None:
            return False, ["hangs"]
        # Until the next start, a file may be incomplete under its final name if that is documented.
        return ending.killed, [f"lost: {path}" for path in Inventory(self.world.everything()).lost(case.originals)] + \
            self.next_start(case)

    def failed(self, case, point, number):
        error = ERRORS[number % len(ERRORS)]
        ending = with_injection(list(map(str, case.words)), self.world.account(), point, "error=" + error)
        if ending.code is None:
            return False, ["hangs"]
        findings = faults(case, self.world)
        findings += [f"{error}: stays without a word: {path}" for path in Inventory(self.world.everything()).hidden()
                     if not ending.text]
        return True, findings + self.next_start(case)

    def next_start(self, case):
        """What users do after a crash: list leftovers, resolve them, and repeat the command."""
        self.world.run("reste", *case.folders, "--aufraeumen")
        findings = faults(case, self.world)
        findings += [f"hidden and not offered: {path}" for path in unlisted_remnants(case, self.world)]
        only_hidden = Inventory(self.world.everything()).only_hidden(case.originals)
        findings += [f"only under a hidden name: {path}" for path in only_hidden]
        if case.again:
            self.world.run(*case.words[1:]) if case.words[0] == self.world.brellin else None
            findings += [f"after doing it again: {fault}" for fault in faults(case, self.world)]
        return findings + case.after(self.world)
