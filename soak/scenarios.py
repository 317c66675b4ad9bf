"""Scenarios: a command, the contents before it, and what must hold after the next start."""

import json
import os
import shutil
import subprocess
import time
import zipfile
from dataclasses import dataclass, field
from pathlib import Path

from contents import Inventory, Originals
from tracing import finish
from volumes import WITHOUT_LINKS

DAY = 86_400


class World:
    """One account and one folder on each volume, created anew for every try."""

    def __init__(self, volumes, programs):
        self.volumes = volumes
        self.programs = Path(programs)
        self.base = Path(volumes.base) / "world"
        self.home = self.base / "home"

    @property
    def brellin(self):
        return str(self.programs / "brellin")

    def account(self):
        return {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(self.home),
                "XDG_RUNTIME_DIR": str(self.base / "run")}

    def clean(self):
        tops = [self.base] + [path for top in self.volumes.folders.values()
                              for path in (top / "case", top / ".Trash-0")]
        for path in tops:
            shutil.rmtree(path, ignore_errors=True)
        self.home.mkdir(parents=True)
        (self.base / "run").mkdir(mode=0o700)

    def on(self, kind):
        """The folder of this try on a volume; "home" is the account itself."""
        folder = self.home / "case" if kind == "home" else self.volumes[kind] / "case"
        folder.mkdir(parents=True, exist_ok=True)
        return folder

    def everything(self):
        """Where contents may be: the account and the volumes with their Trashes, without the program's own data."""
        tops = [self.home / name for name in os.listdir(self.home) if not name.startswith(".")]
        tops.append(self.home / ".local/share/Trash/files")
        for top in self.volumes.folders.values():
            tops += [top / "case", top / ".Trash-0/files"]
        return tops

    def run(self, *words):
        return finish([self.brellin, *map(str, words)], self.account())

    def json(self, *words):
        """The JSON output of a command with --json, without other messages around it."""
        text = self.run(*words, "--json").text
        return json.loads(text[text.index("["):text.rindex("]") + 1])


@dataclass
class Case:
    """A scenario before its command runs."""

    originals: Originals
    words: list
    # A visible file that may have new content, e.g. a new archive.
    made: callable = lambda path: False
    # Further checks at the end; returns the findings.
    after: callable = lambda world: []
    again: bool = True
    folders: list = field(default_factory=list)


@dataclass(frozen=True)
class Scenario:
    name: str
    build: callable


def transfer(verb, source, target, replacing):
    def build(world):
        originals = Originals()
        tag = "plain" if "ntfs" in (source, target) or "exfat" in (source, target) else "neu"
        here, there = world.on(source) / "von", world.on(target) / "nach"
        there.mkdir()
        originals.tree(here / "T", tag)
        originals.put(here / "einzeln.txt", "einzeln", 70_000)
        if source not in WITHOUT_LINKS and target not in WITHOUT_LINKS:
            (here / "T/link").symlink_to("a.bin")
            os.link(here / "T/a.bin", here / "T/hart.bin")
        if replacing:
            originals.tree(there / "T", "plain alt", 3)
            originals.put(there / "einzeln.txt", "alt einzeln", 500)
        return Case(originals, [world.brellin, verb, "--konflikt", "ersetzen", here / "T", here / "einzeln.txt", there])
    return build


def rename(kind):
    def build(world):
        originals = Originals()
        folder = world.on(kind) / "namen"
        files = [folder / f"{number:02}.txt" for number in range(1, 6)]
        for file in files:
            originals.put(file, file.name, 100)
        names = {file.name for file in files} | {f"Urlaub – {number:02}.txt" for number in range(1, 12)}
        names |= {f" – {number:02}.txt" for number in range(1, 12)}

        def after(_):
            here = set(os.listdir(folder))
            wrong = [name for name in here if not (name in names or name.endswith(".txt"))]
            return [f"a name that nobody gave: {name}" for name in wrong] + \
                ([f"{len(here)} entries instead of {len(files)}"] if len(here) != len(files) else [])
        # New names are old names of others, which makes a cycle.
        return Case(originals, [world.brellin, "umbenennen", "--modus", "nummer", "--basis", "0", "--trenner", "",
                                "--stellen", "1", "--start", "3", *files], after=after, again=False)
    return build


def packing(kind):
    def build(world):
        originals = Originals()
        folder = world.on(kind)
        originals.tree(folder / "T", "plain pack")

        def whole(path):
            try:
                return path.endswith(".zip") and zipfile.ZipFile(path).testzip() is None
            except zipfile.BadZipFile:
                return False
        return Case(originals, [world.brellin, "zip", folder / "T"], made=whole)
    return build


def unpacking(kind):
    def build(world):
        originals = Originals()
        folder = world.on(kind)
        originals.tree(folder / "T", "plain pack")
        archive = folder / "T.zip"
        with zipfile.ZipFile(archive, "w") as writer:
            for path in originals.places.values():
                writer.write(path, path.relative_to(folder))
        originals.put(folder / "bleibt.txt", "bleibt", 10)
        return Case(originals, [str(world.programs / "brellin-unpack"), archive, folder],
                    made=lambda path: path == str(archive), folders=[folder])
    return build


def trash(kind):
    def build(world):
        originals = Originals()
        folder = world.on(kind)
        originals.tree(folder / "T", "plain weg")
        originals.put(folder / "eins.txt", "eins", 999)
        return Case(originals, [world.brellin, "papierkorb", folder / "T", folder / "eins.txt"])
    return build


def undone(verb, source, target):
    """A transfer and its undo in one program; both are disturbed."""
    def build(world):
        case = transfer(verb, source, target, replacing=True)(world)
        files = [word for word in case.words if isinstance(word, Path)]
        return Case(case.originals, [str(world.programs / "brellin-undo"), verb, *files], folders=case.folders)
    return build


UNTIDY = [("Downloads/Rechnung 1.pdf", 900), ("Downloads/Rechnung 2.pdf", 200_000), ("Downloads/bild.jpg", 5_000),
          ("Downloads/alt.zip", 80_000), ("Downloads/setup.dmg", 10_000), ("Downloads/vergessen.xyz", 60),
          ("Downloads/kopie.dat", 3_000), ("Desktop/Bildschirmfoto 2026-01-01.png", 400)]


def untidy_home(world, documents):
    """An account for the agent with its Documents on another volume."""
    originals = Originals()
    target = world.on(documents) / "Documents"
    target.mkdir()
    (world.home / "Documents").symlink_to(target)
    for name, size in UNTIDY:
        originals.put(world.home / name, name, size, 200 * DAY)
    time.sleep(0)
    shutil.copy2(world.home / "Downloads/kopie.dat", world.home / "Downloads/kopie (2).dat")
    world.run("regeln", "beispiele")
    return originals


def back_in_place(originals):
    """After a run was undone: everything is where it was."""
    def after(world):
        # What a failure kept back is undone separately, as the program then says.
        world.run("rueckgaengig")
        for run in world.json("verlauf"):
            world.run("rueckgaengig", run["id"])
        return [f"not back: {path}" for path in originals.places.values() if not path.exists()]
    return after


def agent_run(documents):
    def build(world):
        originals = untidy_home(world, documents)
        return Case(originals, [world.brellin, "pruefen", "--doppelte", "--ausfuehren", "--alle"],
                    after=back_in_place(originals), again=False)
    return build


def agent_undo(documents):
    def build(world):
        originals = untidy_home(world, documents)
        world.run("pruefen", "--doppelte", "--ausfuehren", "--alle")
        return Case(originals, [world.brellin, "rueckgaengig"], after=back_in_place(originals), again=False)
    return build


PAIRS = [("ext4", "xfs"), ("ext4", "ext4"), ("btrfs", "tmpfs"), ("xfs", "ntfs"), ("ntfs", "xfs"), ("ext4", "exfat"),
         ("exfat", "ext4"), ("btrfs", "btrfs"), ("ext4", "home")]


def all_scenarios():
    found = []
    for source, target in PAIRS:
        for verb in ("kopieren", "verschieben"):
            for replacing in (False, True):
                name = f"{verb}-{source}-{target}" + ("-ersetzen" if replacing else "")
                found.append(Scenario(name, transfer(verb, source, target, replacing)))
    for kind in ("ext4", "xfs", "btrfs", "tmpfs", "exfat", "ntfs"):
        found.append(Scenario(f"umbenennen-{kind}", rename(kind)))
    for kind in ("ext4", "exfat", "ntfs"):
        found += [Scenario(f"zip-{kind}", packing(kind)), Scenario(f"entpacken-{kind}", unpacking(kind)),
                  Scenario(f"papierkorb-{kind}", trash(kind))]
    for source, target in (("ext4", "xfs"), ("ext4", "ext4"), ("exfat", "ext4"), ("ext4", "ntfs")):
        found += [Scenario(f"zurueck-{verb}-{source}-{target}", undone(verb, source, target))
                  for verb in ("kopieren", "verschieben")]
    for kind in ("xfs", "exfat", "ntfs"):
        found += [Scenario(f"lauf-{kind}", agent_run(kind)), Scenario(f"ruecknahme-{kind}", agent_undo(kind))]
    return found


def faults(case, world):
    """Faults in the present contents, whatever happened."""
    inventory = Inventory(world.everything())
    return [f"lost: {path}" for path in inventory.lost(case.originals)] + \
        [f"torn or foreign: {path}" for path in inventory.strange(case.originals, case.made)]


def unlisted_remnants(case, world):
    """Our hidden entries that no start offers to remove."""
    listed = subprocess.run([world.brellin, "reste", "--json"], env=world.account(), capture_output=True, text=True,
                            check=False).stdout
    return [path for path in Inventory(world.everything()).hidden() if os.path.basename(path) not in listed]
