"""The files in folders by the digests of their contents, which prove that nothing was lost or torn."""

import hashlib
import os
import random
import stat
from collections import defaultdict

# Prefixes of the names of our own unfinished entries.
HIDDEN = (".brellin-", ".umbenennen-")


def digest(data):
    return hashlib.sha256(data).hexdigest()


def is_hidden(path):
    return any(part.startswith(HIDDEN) for part in os.fspath(path).split("/"))


class Originals:
    """The initial contents of a scenario. None is empty, since an empty file counts as incomplete."""

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
        """Different files on two levels, with difficult names."""
        names = ["a.bin", "unter/b ä.bin", "unter/c'\"$.bin" if not tag.startswith("plain") else "unter/c.bin", "d.bin",
                 "unter/tief/e.bin", "f.bin"]
        sizes = [1, 4096, 70_000, 300_000, 20, 1_500_000]
        for name, size in list(zip(names, sizes))[:count]:
            self.put(folder / name, tag + name, size)


class Inventory:
    """All regular files below some folders, by digest. Does not follow links."""

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
        """Contents that only exist under hidden names."""
        return [self.places[key][0] for key in originals.places
                if key in self.places and all(map(is_hidden, self.places[key]))]

    def strange(self, originals, allowed=lambda path: False):
        """Contents under visible names that the scenario did not start with: torn or empty ones."""
        return [path for key, paths in self.places.items() if key not in originals.places for path in paths
                if not is_hidden(path) and not allowed(path)]

    def hidden(self):
        return self.folders_hidden + [path for paths in self.places.values() for path in paths
                                      if os.path.basename(path).startswith(HIDDEN)]
