"""What lies in folders, by the digests of contents: the only witness that nothing was lost and nothing is torn."""

import hashlib
import os
import random
import stat
from collections import defaultdict

# Own entries that are not finished, by the beginnings of their names.
HIDDEN = (".brellin-", ".umbenennen-")


def digest(data):
    return hashlib.sha256(data).hexdigest()


def is_hidden(path):
    return any(part.startswith(HIDDEN) for part in os.fspath(path).split("/"))


class Originals:
    """The contents that a scenario begins with. No content is empty: an empty file is never a whole one."""

    def __init__(self):
        self.places = {}

    def put(self, path, tag, size, age=0):
        path.parent.mkdir(parents=True, exist_ok=True)
        data = tag.encode() + b"|" + random.Random(tag).randbytes(size)
        path.write_bytes(data)
        time = 1_700_000_000 - age + 10 * len(self.places)
        os.utime(path, (time, time))
        self.places[digest(data)] = path

    def tree(self, folder, tag, count=5):
        """Unlike files on two levels, with names that need care everywhere."""
        names = ["a.bin", "unter/b ä.bin", "unter/c'\"$.bin" if not tag.startswith("plain") else "unter/c.bin", "d.bin",
                 "unter/tief/e.bin", "f.bin"]
        sizes = [1, 4096, 70_000, 300_000, 20, 1_500_000]
        for name, size in list(zip(names, sizes))[:count]:
            self.put(folder / name, tag + name, size)


class Inventory:
    """Every regular file below some folders, by digest. Nothing is followed."""

    def __init__(self, folders):
        self.places = defaultdict(list)
        self.folders_hidden = []
        for top in folders:
            for folder, names, files in os.walk(top):
                self.folders_hidden += [os.path.join(folder, name) for name in names if name.startswith(HIDDEN)]
                for name in files:
                    self.add(os.path.join(folder, name))

    def add(self, path):
        if stat.S_ISREG(os.lstat(path).st_mode):
            with open(path, "rb") as file:
                self.places[digest(file.read())].append(path)

    def lost(self, originals):
        return [str(path) for key, path in originals.places.items() if key not in self.places]

    def only_hidden(self, originals):
        """Contents that are there, but only under names that nobody sees."""
        return [self.places[key][0] for key in originals.places
                if key in self.places and all(map(is_hidden, self.places[key]))]

    def strange(self, originals, allowed=lambda path: False):
        """Contents under visible names that no scenario began with: torn or empty."""
        return [path for key, paths in self.places.items() if key not in originals.places for path in paths
                if not is_hidden(path) and not allowed(path)]

    def hidden(self):
        return self.folders_hidden + [path for paths in self.places.values() for path in paths
                                      if os.path.basename(path).startswith(HIDDEN)]
