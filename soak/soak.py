#!/usr/bin/env python3
"""Kills and disturbs the program at every call by which it changes something, and checks whether data was lost.

    soak/soak.py BIN [--part kill|error|change|share]... [--only TEXT] [--minutes N] [--list]

BIN is the folder of the built programs. Volumes are loop devices, so it needs root. The time is divided evenly; points
are tried in an order that spreads over each scenario from the start. Exits with 1 if there are findings.
"""

import argparse
import sys
import tempfile
import time
from pathlib import Path

import volumes
from disturbances import ChangedMeanwhile, StoppedServer
from scenarios import World, all_scenarios
from sweeps import Sweep

PARTS = ("kill", "error", "change", "share")


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bin", type=Path)
    parser.add_argument("--part", action="append", choices=PARTS)
    parser.add_argument("--only", default="", help="scenarios whose name holds this text")
    parser.add_argument("--minutes", type=float, default=60)
    parser.add_argument("--list", action="store_true", help="name the scenarios and end")
    return parser.parse_args()


def say(line):
    print(line, flush=True)


def jobs(world, parts, scenarios):
    """The parts to run, each with its time limit."""
    found = []
    for scenario in scenarios:
        sweep = Sweep(world, scenario, say)
        found += [lambda seconds, sweep=sweep: [sweep.kills(seconds)]] if "kill" in parts else []
        found += [lambda seconds, sweep=sweep: [sweep.errors(seconds)]] if "error" in parts else []
    found += [ChangedMeanwhile(world, say).run] if "change" in parts else []
    found += [StoppedServer(world, say).run] if "share" in parts else []
    return found


def soak(options, base):
    scenarios = [scenario for scenario in all_scenarios() if options.only in scenario.name]
    tallies = []
    with volumes.Volumes(base) as mounted:
        world = World(mounted, options.bin.resolve())
        waiting = jobs(world, options.part or PARTS, scenarios)
        end = time.monotonic() + options.minutes * 60
        for number, job in enumerate(waiting):
            tallies += job(max(0, end - time.monotonic()) / (len(waiting) - number))
        world.clean()
    return tallies


def main():
    options = arguments()
    if options.list:
        for scenario in all_scenarios():
            say(scenario.name)
        return 0
    volumes.in_own_namespace()
    with tempfile.TemporaryDirectory(prefix="brellin-soak-", ignore_cleanup_errors=True) as base:
        tallies = soak(options, Path(base))
    findings = [finding for tally in tallies for finding in tally.findings]
    say(f"{sum(tally.tried for tally in tallies)} of {sum(tally.points for tally in tallies)} points tried, "
        f"{sum(tally.struck for tally in tallies)} struck, {len(findings)} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
