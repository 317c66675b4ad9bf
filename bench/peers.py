#!/usr/bin/env python3
"""Compares our programs with similar ones: bench/peers.py BIN [--runs N] [--only NAME] [--scale X]

BIN is the folder of our built programs. Trees are generated in a temporary folder; the two sides take turns, and the
median of several runs counts. Setting up a run is not timed. Prints ours / theirs: below 1 we are faster. The results
of both sides are compared once before timing.
"""

import argparse
import json
import os
import platform
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import uuid
from pathlib import Path

MONTH = 30 * 24 * 3600


class Disagreement(Exception):
    """The two sides did not do the same work."""


def require(condition, text):
    if not condition:
        raise Disagreement(text)


# -- trees ------------------------------------------------------------------------------------------------------------

def write_file(path, content, age=0.0):
    with open(path, "wb", buffering=0) as file:
        file.write(content)
    if age:
        then = time.time() - age
        os.utime(path, (then, then))


def make_names(folder, files, folders):
    """Empty files evenly in subfolders on two levels; one in 10,000 is named "Rechnung …"."""
    for number in range(folders):
        inner = folder / f"Bereich {number % 40}" / f"Ordner {number}"
        inner.mkdir(parents=True)
        for index in range(number, files, folders):
            name = f"Rechnung {index}.pdf" if index % 10000 == 0 else f"Datei {index}.txt"
            os.close(os.open(inner / name, os.O_CREAT | os.O_WRONLY, 0o644))


def make_downloads(folder, files):
    """Small files of ten kinds in 50 subfolders, some of them old."""
    kinds = ["pdf", "jpg", "txt", "zip", "docx", "mp3", "html", "dmg", "csv", "bin"]
    for number in range(50):
        (folder / f"Ordner {number}").mkdir(parents=True)
    for index in range(files):
        word = ("Rechnung", "Bildschirmfoto")[index // 200 % 2] if index % 200 < 2 else "Datei"
        age = 3 * MONTH if index % 100 == 3 else 3600
        path = folder / f"Ordner {index % 50}" / f"{word} {index}.{kinds[index % 10]}"
        write_file(path, b"x" * (index % 512), age)


def make_flat(folder, files, size):
    folder.mkdir(parents=True)
    content = b"y" * size
    for index in range(files):
        write_file(folder / f"Datei {index:05}.txt", content, 3600)


def make_big_file(path, size):
    piece = os.urandom(1 << 20)
    with open(path, "wb") as file:
        for _ in range(max(1, size >> 20)):
            file.write(piece)


# -- running ----------------------------------------------------------------------------------------------------------

def rules_file(path, rules):
    """A rules file for "brellin regeln import" from (kind, value, action, source, target) rows."""
    path.write_text(json.dumps([{
        "id": str(uuid.uuid4()).upper(), "enabled": True, "name": f"Regel {number}", "sourcePath": str(source),
        "includeSubfolders": True,
        "conditions": [{"id": str(uuid.uuid4()).upper(), "kind": kind, "value": value}] if kind else [],
        "action": action, "targetPath": str(target), "renamePattern": "", "automatic": False,
    } for number, (kind, value, action, source, target) in enumerate(rules, 1)]))


class Home:
    """A temporary home folder, so that the user's is neither read nor changed."""

    def __init__(self, folder):
        self.folder = folder
        folder.mkdir(parents=True)
        self.environment = os.environ | {
            "HOME": str(folder), "XDG_CONFIG_HOME": str(folder / ".config"),
            "XDG_DATA_HOME": str(folder / ".local/share"), "XDG_STATE_HOME": str(folder / ".local/state"),
            "XDG_CACHE_HOME": str(folder / ".cache"), "LC_ALL": "C.UTF-8",
        }


def output_of(command, **options):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False, **options)
    require(done.returncode == 0, f"{command[0]} ended with {done.returncode}")
    return done.stdout


def seconds_of(command, **options):
    start = time.perf_counter()
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=False, **options)
    taken = time.perf_counter() - start
    require(done.returncode == 0, f"{command[0]} ended with {done.returncode}")
    return taken


class Contest:
    """One comparison. Subclasses create the tree and run either side from the same initial state."""

    title = ""
    peer = ""
    aim = 1.0

    def __init__(self, bin_folder, folder, scale):
        self.bin = bin_folder
        self.folder = folder
        self.scale = scale

    def count(self, full):
        return max(10, int(full * self.scale))

    def make(self):
        """Creates the tree and checks that both sides do the same."""

    def ours(self):
        raise NotImplementedError

    def theirs(self):
        raise NotImplementedError


class NameSearch(Contest):
    title = "name search, 200,000 files in 2,000 folders"
    peer = "fdfind -HI -F"

    def make(self):
        make_names(self.folder / "tree", self.count(200_000), self.count(2_000))
        self.our_command = [self.bin / "NameSearch", self.folder / "tree", "rechnung"]
        self.their_command = ["fdfind", "-HI", "-F", "rechnung", self.folder / "tree"]
        found = [sorted(output_of(command).splitlines()) for command in (self.our_command, self.their_command)]
        require(found[0] == found[1] and found[0], "different hits")

    def ours(self):
        return seconds_of(self.our_command)

    def theirs(self):
        return seconds_of(self.their_command)


class PaneList(Contest):
    """We read everything that rows show, including tags, and sort; the peer does not sort, but prints its lines."""

    title = "listing and sorting a folder of 100,000 files"
    peer = "ls -lU"

    def make(self):
        make_flat(self.folder / "flat", self.count(100_000), 10)
        self.our_command = [self.bin / "ListFolder", self.folder / "flat"]
        self.their_command = ["ls", "-lU", self.folder / "flat"]
        ours = int(output_of(self.our_command))
        theirs = output_of(self.their_command).count(b"\n") - 1
        require(ours == theirs, f"we listed {ours} entries of {theirs}")

    def ours(self):
        return seconds_of(self.our_command)

    def theirs(self):
        return seconds_of(self.their_command)


class PaneSearch(NameSearch):
    title = "search in a folder, 200,000 files in 2,000 folders"

    def make(self):
        super().make()
        self.our_command = [self.bin / "SearchFolder", self.folder / "tree", "rechnung"]
        found = [sorted(output_of(command).splitlines()) for command in (self.our_command, self.their_command)]
        require(found[0] == found[1] and found[0], "different hits")


class Rules(Contest):
    title = "ten rules over 100,000 files"
    peer = "find -printf '%s %T@ %p'"

    def make(self):
        home = Home(self.folder / "home")
        source = home.folder / "Downloads"
        target = home.folder / "Ablage"
        make_downloads(source, self.count(100_000))
        rules_file(self.folder / "rules.json", [
            ("nameContains", "Rechnung", "move", source, target / "Rechnungen"),
            ("nameContains", "Bildschirmfoto, Screenshot", "move", source, target / "Bilder"),
            ("extensionIs", "iso, img", "trash", source, ""),
            ("category", "Videos", "move", source, target / "Videos"),
            ("nameContains", "Vertrag", "copy", source, target / "Dokumente"),
            ("largerThanMB", "500", "move", source, target / "Gross"),
            ("olderThanDays", "30", "move", source, target / "Alt"),
            ("extensionIs", "torrent", "trash", source, ""),
            ("nameContains", "Kontoauszug", "move", source, target / "Bank"),
            ("extensionIs", "epub, mobi", "move", source, target / "Buecher"),
        ])
        self.environment = home.environment
        output_of([self.bin / "brellin", "regeln", "import", self.folder / "rules.json"], env=self.environment)
        self.our_command = [self.bin / "brellin", "pruefen", "--json"]
        self.their_command = ["find", source, "-type", "f", "-printf", "%s %T@ %p\n"]
        answer = json.loads(output_of(self.our_command, env=self.environment))
        listed = output_of(self.their_command).count(b"\n")
        require(answer["checkedFiles"] == listed, f"we checked {answer['checkedFiles']} files of {listed}")
        require(answer["proposals"], "no proposals")

    def ours(self):
        return seconds_of(self.our_command, env=self.environment)

    def theirs(self):
        return seconds_of(self.their_command)


class Digest(Contest):
    title = "SHA-256 of 1 GB"
    peer = "openssl dgst -sha256"

    def make(self):
        file = self.folder / "big"
        make_big_file(file, self.count(10 ** 9))
        self.our_command = [self.bin / "DigestFile", file]
        self.their_command = ["openssl", "dgst", "-sha256", "-r", file]
        digests = [output_of(command).split()[0] for command in (self.our_command, self.their_command)]
        require(digests[0] == digests[1], "different digests")

    def ours(self):
        return seconds_of(self.our_command)

    def theirs(self):
        return seconds_of(self.their_command)


class Moves(Contest):
    title = "10,000 moves on one volume, with journal"
    peer = "mv -t"
    aim = 2.0

    def fresh(self):
        """A new home with the files to move and the rule that moves them all."""
        shutil.rmtree(self.folder / "home", ignore_errors=True)
        self.home = Home(self.folder / "home")
        self.source = self.home.folder / "Downloads"
        self.target = self.home.folder / "Ablage"
        make_flat(self.source, self.count(10_000), 1000)
        os.sync()

    def check_moved(self):
        moved, left = len(os.listdir(self.target)), len(os.listdir(self.source))
        require((moved, left) == (self.count(10_000), 0), f"moved {moved}, left {left}")

    def make(self):
        self.names = [f"Datei {index:05}.txt" for index in range(self.count(10_000))]

    def ours(self):
        self.fresh()
        rules_file(self.folder / "rules.json", [("extensionIs", "txt", "move", self.source, self.target)])
        environment = self.home.environment
        output_of([self.bin / "brellin", "regeln", "import", self.folder / "rules.json"], env=environment)
        taken = seconds_of([self.bin / "brellin", "pruefen", "--ausfuehren", "--ruhig"], env=environment)
        self.check_moved()
        return taken

    def theirs(self):
        self.fresh()
        self.target.mkdir()
        taken = seconds_of(["mv", "-t", self.target, "--", *self.names], cwd=self.source)
        self.check_moved()
        return taken


class Copy(Contest):
    """Copies self.folder/source; before each run removes the copy and waits until the disk is idle."""

    peer = "cp -a"

    def copied(self, command):
        target = self.folder / "copy"
        if target.is_dir():
            shutil.rmtree(target)
        target.unlink(missing_ok=True)
        os.sync()
        taken = seconds_of([*command, self.folder / "source", target])
        self.check(target)
        return taken

    def check(self, target):
        raise NotImplementedError

    def ours(self):
        return self.copied([self.bin / "CopyTree"])

    def theirs(self):
        return self.copied(["cp", "-a"])


class Duplicates(Contest):
    """20,000 pictures, a fifth of them copies of others and a fifth of equal size with different contents. We compare byte
    by byte, the peer as it does by default unless told to use SHA-256."""

    def make(self):
        self.home = Home(self.folder / "home")
        self.tree = self.folder / "tree"
        count = self.count(20_000)
        content = [b""] * count
        for number in range(count):
            if number % 5 == 4:
                content[number] = content[number - 4]
            else:
                size = 30_000 if number % 5 == 3 else 4_000 + 3 * number
                content[number] = os.urandom(size)
            place = self.tree / f"Ordner {number % 200}"
            if number < 200:
                place.mkdir(parents=True)
            write_file(place / f"Bild {number}.jpg", content[number])
        found = json.loads(output_of([*self.our_command(), "--json"], env=self.home.environment))
        require(len(found["pairs"]) == count // 5, f"{len(found['pairs'])} duplicates were found")

    def our_command(self):
        return [self.bin / "brellin", "doppelte", self.tree]

    def ours(self):
        return seconds_of(self.our_command(), env=self.home.environment)

    def theirs(self):
        return seconds_of(self.their_command(), env=self.home.environment, cwd=self.home.folder,
                          stderr=subprocess.DEVNULL)


class DuplicatesJdupes(Duplicates):
    title = "duplicates among 20,000 files"
    peer = "jdupes"

    def their_command(self):
        return ["jdupes", "-r", "-q", self.tree]


class DuplicatesRmlint(Duplicates):
    title = "duplicates among 20,000 files"
    peer = "rmlint"

    def their_command(self):
        return ["rmlint", "-T", "df", "-o", "fdupes", self.tree]


class DuplicatesRdfind(Duplicates):
    title = "duplicates among 20,000 files"
    peer = "rdfind, SHA-256"

    def their_command(self):
        return ["rdfind", "-checksum", "sha256", "-dryrun", "true", "-makeresultsfile", "false", self.tree]


class FolderSize(Contest):
    """We count bytes of content, the peer disk usage including folders; both examine every entry."""

    title = "size of a folder of 200,000 files"
    peer = "du -s"
    aim = 0.7

    def make(self):
        count = self.count(200_000)
        folders = max(1, count // 200)
        tree = self.folder / "tree"
        for number in range(folders):
            (tree / f"Ordner {number % 40}" / f"Ordner {number}").mkdir(parents=True)
        for number in range(count):
            place = tree / f"Ordner {number % folders % 40}" / f"Ordner {number % folders}"
            (place / f"Datei {number}").write_bytes(b"z" * (number % 7))
        self.our_command = [self.bin / "FolderSize", tree]
        self.their_command = ["du", "-s", tree]
        told = output_of(self.our_command).split()
        require([int(one) for one in told] == [sum(number % 7 for number in range(count)), count],
                f"we counted {told}")

    def ours(self):
        return seconds_of(self.our_command)

    def theirs(self):
        return seconds_of(self.their_command)


class CopySmall(Copy):
    title = "copying 20,000 small files"

    def make(self):
        for number in range(20):
            make_flat(self.folder / "source" / f"Ordner {number}", self.count(20_000) // 20, 2000)

    def check(self, target):
        copied = sum(len(files) for _, _, files in os.walk(target))
        require(copied == self.count(20_000) // 20 * 20, f"{copied} files were copied")


class CopyBig(Copy):
    title = "copying one file of 2 GB"

    def make(self):
        make_big_file(self.folder / "source", self.count(2 * 10 ** 9))

    def check(self, target):
        require(target.stat().st_size == (self.folder / "source").stat().st_size, "the copy is not complete")


class Transfer(Copy):
    """The same by the whole program: planned, measured, with progress, and flushed at the end. So is the peer's copy."""

    peer = "cp -a, sync -f"

    def copied(self, command, flush=None):
        """`command` copies self.folder/source into a folder, which `flush` writes to the disk."""
        target = self.folder / "copy"
        shutil.rmtree(target, ignore_errors=True)
        target.mkdir()
        os.sync()
        taken = seconds_of([*command, self.folder / "source", target])
        if flush:
            taken += seconds_of([*flush, target])
        self.check(target / "source")
        return taken

    def ours(self):
        return self.copied([self.bin / "brellin", "kopieren"])

    def theirs(self):
        return self.copied(["cp", "-a"], flush=["sync", "-f"])


class TransferSmall(Transfer, CopySmall):
    title = "a transfer of 50,000 small files"

    def make(self):
        for number in range(50):
            make_flat(self.folder / "source" / f"Ordner {number}", self.count(50_000) // 50, 2000)

    def check(self, target):
        copied = sum(len(files) for _, _, files in os.walk(target))
        require(copied == self.count(50_000) // 50 * 50, f"{copied} files were copied")


class TransferBig(Transfer, CopyBig):
    title = "a transfer of one file of 4 GB"

    def make(self):
        make_big_file(self.folder / "source", self.count(4 * 10 ** 9))


class TransferMove(Contest):
    """A single rename, whatever the folder contains; the rest is starting the program and examining the folder."""

    title = "moving a folder of 100,000 files, and back"
    peer = "mv twice"
    aim = 100.0

    def make(self):
        for number in range(100):
            make_flat(self.folder / "here" / "source" / f"Ordner {number}", self.count(100_000) // 100, 1)
        (self.folder / "there").mkdir()

    def there_and_back(self, command):
        here, there = self.folder / "here", self.folder / "there"
        taken = seconds_of([*command, here / "source", there]) + seconds_of([*command, there / "source", here])
        require((here / "source").is_dir(), "the folder did not come back")
        return taken

    def ours(self):
        return self.there_and_back([self.bin / "brellin", "verschieben"])

    def theirs(self):
        return self.there_and_back(["mv"])


class WindowStart(Contest):
    """From program start until the window on a virtual display is painted, i.e. has more than one colour. Each side has its
    own session bus: without one the peer takes itself for a second instance and quits."""

    title = "window of a folder with 1,000 files"
    peer = "pcmanfm-qt"
    display = ":87"

    def make(self):
        make_flat(self.folder / "flat", self.count(1_000), 10)
        self.home = Home(self.folder / "home")
        (self.folder / "run").mkdir(mode=0o700)
        self.home.environment |= {"DISPLAY": self.display, "XDG_RUNTIME_DIR": str(self.folder / "run")}
        self.screen = subprocess.Popen(["Xvfb", self.display, "-screen", "0", "1280x800x24"], stderr=subprocess.DEVNULL)
        self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=self.home.environment)
        self.home.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()
        time.sleep(1)

    def __del__(self):
        for program in (getattr(self, "bus", None), getattr(self, "screen", None)):
            if program:
                program.kill()
                program.wait()

    def painted(self):
        picture = subprocess.run(["xwd", "-root", "-silent", "-display", self.display], capture_output=True, check=False)
        pixels = picture.stdout[-1280 * 800 * 4:]
        return len({pixels[at:at + 4] for at in range(0, len(pixels), 4 * 997)}) > 3

    def start(self, command):
        start = time.perf_counter()
        program = subprocess.Popen([*command, self.folder / "flat"], env=self.home.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        try:
            while not self.painted():
                require(program.poll() is None, f"{command[0]} ended with {program.returncode}")
                require(time.perf_counter() - start < 60, f"{command[0]} shows nothing")
            return time.perf_counter() - start
        finally:
            if program.poll() is None:
                os.killpg(program.pid, signal.SIGKILL)
                program.wait()
            while self.painted():
                time.sleep(0.01)

    def ours(self):
        return self.start([self.bin / "brellin-fenster"])

    def theirs(self):
        return self.start(["pcmanfm-qt"])


CONTESTS = {"transfer": TransferSmall, "transfer-big": TransferBig, "transfer-move": TransferMove,
            "search": NameSearch, "fenster": WindowStart, "liste": PaneList, "suchen": PaneSearch, "groesse": FolderSize, "rules": Rules,
            "digest": Digest, "moves": Moves, "copy": CopySmall, "big": CopyBig, "jdupes": DuplicatesJdupes,
            "rmlint": DuplicatesRmlint, "rdfind": DuplicatesRdfind}


# -- printing ---------------------------------------------------------------------------------------------------------

def machine(folder):
    """One line about where this was measured."""
    model = platform.processor() or platform.machine()
    for line in Path("/proc/cpuinfo").read_text().splitlines() if Path("/proc/cpuinfo").exists() else []:
        if line.startswith("model name"):
            model = line.split(":", 1)[1].strip()
            break
    kind = subprocess.run(["stat", "-f", "-c", "%T", folder], capture_output=True, text=True, check=False).stdout.strip()
    return f"{model}, {os.cpu_count()} cores, {platform.system()} {platform.release()}, {kind or 'unknown disk'}"


def hold(contest, runs):
    """The medians of both sides in seconds. They take turns, also in starting first."""
    contest.make()
    sides = [contest.ours, contest.theirs]
    for side in sides:
        side()
    taken = {side: [] for side in sides}
    for run in range(runs):
        for side in sides if run % 2 == 0 else reversed(sides):
            taken[side].append(side())
    return [statistics.median(taken[side]) for side in sides]


def parse():
    parser = argparse.ArgumentParser(description="compares our speed with that of programs of the same kind")
    parser.add_argument("bin", type=Path, help="the folder of our built programs")
    parser.add_argument("--runs", type=int, default=7, help="timed runs of each side")
    parser.add_argument("--only", choices=CONTESTS, action="append", help="only this comparison; may be repeated")
    parser.add_argument("--scale", type=float, default=1.0, help="part of the full size, for trying the script out")
    parser.add_argument("--folder", type=Path, help="where to make the trees (default: the temporary folder)")
    return parser.parse_args()


def run():
    options = parse()
    bin_folder = options.bin.resolve()
    failed = False
    with tempfile.TemporaryDirectory(prefix="brellin-peers-", dir=options.folder) as base:
        print(machine(base))
        print(f"{'':46} {'ours':>9} {'theirs':>9} {'ratio':>6} {'aim':>5}")
        for name in options.only or CONTESTS:
            folder = Path(base, name)
            folder.mkdir()
            contest = CONTESTS[name](bin_folder, folder, options.scale)
            try:
                ours, theirs = hold(contest, options.runs)
                ratio = ours / theirs
                verdict = "" if ratio <= contest.aim else "  missed"
                print(f"{contest.title:46} {ours * 1000:6.0f} ms {theirs * 1000:6.0f} ms {ratio:6.2f} {contest.aim:5.1f}"
                      f"{verdict}  ({contest.peer})", flush=True)
            except (Disagreement, OSError) as fault:
                print(f"{contest.title:46} not measured: {fault}", flush=True)
                failed = True
            shutil.rmtree(folder, ignore_errors=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(run())
