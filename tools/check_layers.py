#!/usr/bin/env python3
"""Checks that no file includes anything from a layer above its own.

    check_layers.py REPOSITORY

Arrows point down: a layer may include itself and the layers below it. Neighbours on one level do not know
each other.
"""

import pathlib
import re
import sys

# From top to bottom; the folders of one entry are neighbours.
LAYERS = [
    ["vba"],
    ["app", "cli"],
    ["ui/main"],
    ["ui/find", "ui/history"],
    ["find", "history"],
    ["ui/dialogs", "ui/menu", "ui/editor"],
    ["ui/commandbar"],
    ["ui/caption"],
    ["library", "settings"],
    ["platform"],
]

# What any layer may include: generated and shared numbers, no code.
SHARED = ("resources/", "version.h")

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def folder_of(path):
    """The layer folder that a path of the repository lies in, or None."""
    folders = [folder for layer in LAYERS for folder in layer]
    return next((folder for folder in folders if path.startswith(folder + "/")), None)


def level_of(folder):
    return next(level for level, layer in enumerate(LAYERS) if folder in layer)


def faults_in(path, text):
    """The includes of one file that point up or sideways, as messages."""
    own = folder_of(path)
    for included in INCLUDE.findall(text):
        if included.startswith(SHARED):
            continue
        target = folder_of(included)
        if target is None:
            yield f"{path}: \"{included}\" is in no layer"
        elif target != own and level_of(target) <= level_of(own):
            yield f"{path}: includes \"{included}\", which is not below it"


def main():
    repository = pathlib.Path(sys.argv[1])
    faults = []
    checked = 0
    for layer in LAYERS:
        for folder in layer:
            for file in sorted((repository / folder).rglob("*")):
                if file.suffix in (".h", ".cpp"):
                    checked += 1
                    path = file.relative_to(repository).as_posix()
                    faults += faults_in(path, file.read_text(encoding="utf-8"))
    if checked == 0:
        faults.append(f"{repository}: no source files found")
    print("\n".join(faults) or f"{checked} files include only what is below them")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
