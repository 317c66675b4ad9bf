"""Small volumes of all supported kinds, mounted in a private mount namespace."""

import os
import subprocess
import sys
from contextlib import ExitStack
from pathlib import Path

# How to create and mount each kind of volume; {image} is a file, {device} a loop device on it.
MEGABYTES = {"xfs": 320}
MAKE = {
    "ext4": ["mkfs.ext4", "-q", "{image}"],
    "xfs": ["mkfs.xfs", "-q", "{image}"],
    "btrfs": ["mkfs.btrfs", "-q", "{image}"],
    "exfat": ["mkfs.exfat", "{image}"],
    "ntfs": ["mkfs.ntfs", "-q", "-F", "-Q", "{image}"],
}
MOUNT = {
    "ext4": ["mount", "{device}", "{folder}"],
    "xfs": ["mount", "{device}", "{folder}"],
    "btrfs": ["mount", "{device}", "{folder}"],
    "exfat": ["mount.exfat-fuse", "{device}", "{folder}"],
    "ntfs": ["ntfs-3g", "{device}", "{folder}"],
    "tmpfs": ["mount", "-t", "tmpfs", "-o", "size=120M", "tmpfs", "{folder}"],
}
KINDS = tuple(MOUNT)
WITHOUT_LINKS = ("exfat",)


def in_own_namespace():
    """Restarts this program in a mount namespace of its own, whose mounts end with it."""
    if os.environ.get("BRELLIN_SOAK_NAMESPACE"):
        return
    if os.geteuid() != 0:
        sys.exit("soak: mounting needs root")
    os.environ["BRELLIN_SOAK_NAMESPACE"] = "1"
    os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, *sys.argv])


def run(words, **values):
    subprocess.run([word.format(**values) for word in words], check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)


class Volumes:
    """The mounted volumes by kind: `volumes["ext4"]` is a folder. Each is created on first use."""

    def __init__(self, base):
        self.base = Path(base)
        self.folders = {}
        self.ends = ExitStack()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.ends.close()

    def __getitem__(self, kind):
        if kind not in self.folders:
            self.folders[kind] = self.mount(kind)
        return self.folders[kind]

    def mount(self, kind):
        folder = self.base / "volumes" / kind
        folder.mkdir(parents=True)
        device = self.device(kind) if kind in MAKE else None
        run(MOUNT[kind], device=device, folder=folder)
        self.ends.callback(subprocess.run, ["umount", "--lazy", folder])
        return folder

    def device(self, kind):
        image = self.base / f"{kind}.img"
        with open(image, "wb") as file:
            file.truncate(MEGABYTES.get(kind, 120) << 20)
        run(MAKE[kind], image=image)
        found = subprocess.run(["losetup", "--find", "--show", image], check=True, capture_output=True, text=True)
        device = found.stdout.strip()
        self.ends.callback(subprocess.run, ["losetup", "--detach", device])
        return device
