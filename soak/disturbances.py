"""Other programs acting during a command: sources that change during a transfer, a share whose server stops."""

import os
import signal
import subprocess
import time
from pathlib import Path

from contents import Inventory, Originals, digest
from scenarios import Case, faults
from sweeps import Tally
from tracing import CHANGING, PATIENCE, finish, points, spread

SERVER = "/usr/lib/openssh/sftp-server"
PAIRS = [("ext4", "xfs"), ("btrfs", "tmpfs"), ("ext4", "exfat"), ("ext4", "ntfs"), ("ntfs", "ext4"), ("exfat", "ext4")]


# -- changes: each returns the contents that must exist afterwards, besides the unchanged ones -----------------------

def put_back_times(path, change):
    before = path.stat()
    change()
    os.utime(path, ns=(before.st_atime_ns, before.st_mtime_ns))


def overwrite(path):
    data = bytearray(path.read_bytes())
    data[:3] = b"NEU"

    def change():
        with open(path, "r+b") as file:
            file.write(data[:3])
    put_back_times(path, change)
    return [bytes(data)]


def exchange(path):
    new = path.with_name("neu.tmp")
    data = b"N" * path.stat().st_size
    new.write_bytes(data)
    before = path.stat()
    os.utime(new, ns=(before.st_atime_ns, before.st_mtime_ns))
    new.replace(path)
    return [data]


def append(path):
    with open(path, "ab") as file:
        file.write(b" und mehr")
    return [path.read_bytes()]


def add_beside(path):
    data = b"dazugekommen"
    (path.parent / "neu.txt").write_bytes(data)
    return [data]


def add_folder(path):
    folder = path.parent / "Neuer Ordner"
    folder.mkdir()
    return add_beside(folder / "x")


def rename_away(path):
    path.rename(path.with_name("umbenannt"))
    return []


CHANGES = [overwrite, exchange, append, add_beside, add_folder, rename_away]


# -- a transfer that is paused, disturbed and continued ------------------------------------------------------------

def children(process):
    return [int(number) for number in Path(f"/proc/{process}/task/{process}/children").read_text().split()]


def is_stopped(process):
    """Whether all threads have stopped for good, rather than just for a moment at a traced call."""
    def stands(task):
        return task.joinpath("stat").read_text().rpartition(")")[2].split()[0] in "Tt"
    for _ in range(8):
        if not all(map(stands, Path(f"/proc/{process}/task").iterdir())):
            return False
        time.sleep(0.005)
    return True


def stopped_child(tracer, seconds):
    """The program run by strace, once it has stopped."""
    end = time.monotonic() + seconds
    while time.monotonic() < end and tracer.poll() is None:
        try:
            for process in children(tracer.pid):
                if is_stopped(process):
                    return process
        except (FileNotFoundError, ProcessLookupError):
            pass
        time.sleep(0.005)
    return None


def let_go_on(tracer, seconds):
    """Whether it ends. strace counts calls per thread, so each thread that reaches its own stops the program again."""
    end = time.monotonic() + seconds
    while tracer.poll() is None and time.monotonic() < end:
        stopped = stopped_child(tracer, 0.2)
        if stopped:
            os.kill(stopped, signal.SIGCONT)
    if tracer.poll() is not None:
        return True
    for process in children(tracer.pid):
        os.kill(process, signal.SIGKILL)
    tracer.wait()
    return False


class ChangedMeanwhile:
    """A move across volumes whose source is changed at each point where the move changes something."""

    def __init__(self, world, say):
        self.world = world
        self.say = say

    def build(self, source, target):
        self.world.clean()
        originals = Originals()
        here, there = self.world.on(source) / "von", self.world.on(target) / "nach"
        there.mkdir()
        originals.tree(here / "T", "plain neu")
        return Case(originals, [self.world.brellin, "verschieben", here / "T", there]), here / "T/d.bin"

    def run(self, seconds):
        return [self.pair(source, target, seconds / len(PAIRS)) for source, target in PAIRS]

    def pair(self, source, target, seconds):
        case, _ = self.build(source, target)
        words = list(map(str, case.words))
        found = points(words, self.world.account(), [self.world.volumes.base], self.world.base / "trace", CHANGING)
        tally = Tally(f"change {source}-{target}", len(found) * len(CHANGES))
        end = time.monotonic() + seconds
        for number, point in enumerate(spread(found)):
            for change in (CHANGES[number % len(CHANGES)], CHANGES[(number + 3) % len(CHANGES)]):
                if time.monotonic() > end:
                    break
                findings = self.one(source, target, point, change, tally)
                for finding in findings:
                    tally.findings.append(f"{tally.name} {change.__name__} at {point.call} {point.number}: {finding}")
                    self.say("  " + tally.findings[-1])
        self.say(tally.line())
        return tally

    def one(self, source, target, point, change, tally):
        case, victim = self.build(source, target)
        words = ["strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=" + point.call, "-e",
                 point.injection("signal=STOP"), *map(str, case.words)]
        tracer = subprocess.Popen(words, env=self.world.account(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        tally.tried += 1
        stopped = stopped_child(tracer, 20)
        wanted = []
        if stopped:
            if victim.exists():
                tally.struck += 1
                case.originals.places.pop(digest(victim.read_bytes()), None)
                wanted = change(victim)
                if change in (add_beside, add_folder, rename_away):
                    case.originals.places[digest(wanted[0] if wanted else victim.with_name("umbenannt").read_bytes())] = victim
        if not let_go_on(tracer, PATIENCE if stopped else 20):
            return ["hangs"]
        here = Inventory(self.world.everything())
        findings = [f"newer content lost: {change.__name__}" for data in wanted if digest(data) not in here.places]
        return findings + [f"lost: {path}" for path in here.lost(case.originals)]


# -- a share whose server stops ---------------------------------------------------------------------------------------

class Share:
    """A local folder as a share: sshfs connected directly to the server program, without a network."""

    def __init__(self, world):
        self.served = world.base / "serviert"
        self.mounted = world.base / "freigabe"
        self.note = world.base / "server.pid"
        for folder in (self.served, self.mounted):
            folder.mkdir()
        start = world.base / "server"
        start.write_text(f"#!/bin/sh\necho $$ > '{self.note}'\nexec {SERVER}\n")
        start.chmod(0o755)
        subprocess.run(["sshfs", f"server:{self.served}", self.mounted, "-o", f"ssh_command={start}", "-o", "dir_cache=no"],
                       check=True)

    def signal(self, number):
        os.kill(int(self.note.read_text()), number)

    def end(self):
        try:
            self.signal(signal.SIGKILL)
        except ProcessLookupError:
            pass
        subprocess.run(["umount", "--lazy", self.mounted], check=False, stderr=subprocess.DEVNULL)


class StoppedServer:
    """Copies to a share and stops its server: for a while, for good, and before the command is killed."""

    def __init__(self, world, say):
        self.world = world
        self.say = say

    def run(self, _):
        tally = Tally("share", 3)
        for attempt in (self.pause, self.death, self.killed):
            self.world.clean()
            share = Share(self.world)
            originals = Originals()
            originals.tree(self.world.on("home") / "T", "plain teil", 6)
            try:
                findings = attempt(share, originals)
            finally:
                share.end()
            tally.tried += 1
            tally.struck += 1
            for finding in findings:
                tally.findings.append(f"share {attempt.__name__}: {finding}")
                self.say("  " + tally.findings[-1])
        self.say(tally.line())
        return [tally]

    def started(self, share):
        """A copy that is running when the server stops."""
        words = [self.world.brellin, "kopieren", str(self.world.on("home") / "T"), str(share.mounted)]
        copy = subprocess.Popen(words, env=self.world.account(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)
        end = time.monotonic() + 20
        while not os.listdir(share.served) and time.monotonic() < end:
            time.sleep(0.001)
        share.signal(signal.SIGSTOP)
        time.sleep(1)
        return copy

    def others_work(self):
        """Commands that do not use the share."""
        started = time.monotonic()
        ending = finish(["timeout", "20", self.world.brellin, "schnellzugriff"], self.world.account())
        return [] if ending.code == 0 else [f"another command: {ending.code} after {time.monotonic() - started:.0f} s"]

    def pause(self, share, originals):
        copy = self.started(share)
        findings = self.others_work()
        share.signal(signal.SIGCONT)
        code = copy.wait(PATIENCE)
        there = Inventory([share.served])
        return findings + ([f"exit code {code}"] if code else []) + [f"not copied: {path}" for path in there.lost(originals)]

    def death(self, share, originals):
        copy = self.started(share)
        share.signal(signal.SIGKILL)
        try:
            code = copy.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            copy.kill()
            return ["hangs when the server is gone"]
        torn = Inventory([share.served]).strange(originals)
        return ([] if code else ["done, says the exit code"]) + [f"torn: {path}" for path in torn]

    def killed(self, share, originals):
        copy = self.started(share)
        copy.kill()
        findings = self.others_work()
        share.signal(signal.SIGCONT)
        copy.wait(PATIENCE)
        self.world.run("reste", "--aufraeumen")
        here = Inventory([share.served])
        return findings + [f"left: {path}" for path in here.hidden()] + \
            [f"torn: {path}" for path in here.strange(originals)] + faults(Case(originals, []), self.world)
