"""Finds the calls by which a command changes something, and reruns it with a signal or an error at one of them."""

import os
import re
import signal
import subprocess
from dataclasses import dataclass

CHANGING = ("openat open creat renameat2 renameat rename unlinkat unlink rmdir mkdirat mkdir linkat symlinkat symlink write "
            "pwrite64 copy_file_range ftruncate fallocate fsync fdatasync syncfs fchmod fchmodat fchown fchownat fsetxattr "
            "setxattr fremovexattr utimensat ioctl").split()
# Calls that get injected errors; e.g. an openat error of a library would not test files.
FAILING = [call for call in CHANGING if call not in ("openat", "open", "ioctl", "write")] + ["pread64", "read"]
LINE = re.compile(r"^(\d+) +(\w+)\((.*)$")
PATIENCE = 120


@dataclass(frozen=True)
class Point:
    """The n-th time a thread makes this call."""

    call: str
    number: int

    def injection(self, what):
        return f"inject={self.call}:{what}:when={self.number}"


@dataclass
class Ending:
    """How a command ended: its exit code, None if it hung, negative if a signal killed it."""

    code: int | None
    text: str

    @property
    def killed(self):
        return self.code is not None and self.code < 0


def finish(words, account):
    try:
        done = subprocess.run(words, env=account, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired as late:
        return Ending(None, (late.output or b"").decode(errors="replace"))
    code = -signal.SIGKILL if done.returncode == 128 + signal.SIGKILL else done.returncode
    return Ending(code, done.stdout.decode(errors="replace").strip())


def touches(call, rest, folders):
    """Whether a call changes something below these folders, or opens it for writing."""
    if call in ("openat", "open"):
        return ("O_WRONLY" in rest or "O_RDWR" in rest or "O_CREAT" in rest) and any(f in rest for f in folders)
    return any(folder in rest for folder in folders)


def points(words, account, folders, log, calls):
    """Runs the command once and returns the points at which it changes something below `folders`."""
    subprocess.run(["strace", "-f", "-qq", "-y", "-s", "4096", "-o", log, "-e", "trace=" + ",".join(calls), *words],
                   env=account, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   timeout=PATIENCE, check=False)
    counts = {}
    found = []
    folders = [os.fspath(folder) for folder in folders]
    with open(log, errors="replace") as lines:
        for line in lines:
            match = LINE.match(line)
            if not match:
                continue
            thread, call, rest = match.groups()
            number = counts[thread, call] = counts.get((thread, call), 0) + 1
            point = Point(call, number)
            if point not in found and touches(call, rest, folders):
                found.append(point)
    return found


def with_injection(words, account, point, what):
    return finish(["strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=" + point.call, "-e", point.injection(what), *words],
                  account)


def spread(found):
    """All points, in an order whose prefixes spread over the whole, since time may run out."""
    step = 1
    while step < len(found):
        step *= 2
    seen = set()
    while step >= 1:
        for at in range(0, len(found), step):
            if at not in seen:
                seen.add(at)
                yield found[at]
        step //= 2
