#!/usr/bin/env python3
"""Puts the program of one machine and what belongs to it into a zip file, the same bytes every time.

    make_package.py REPOSITORY MACHINE

The machine is that of a build preset: x86 or x64. Both have to be built.
"""

import pathlib
import re
import sys
import zipfile

# The earliest moment that a zip file can give; the true ones would differ from build to build.
NO_DATE = (1980, 1, 1, 0, 0, 0)


def version_of(repository):
    match = re.search(r"project\(Snipstore VERSION (\S+)", (repository / "CMakeLists.txt").read_text())
    return match.group(1)


def windows_text(file):
    """A text file as Windows' own editors of all ages show it."""
    return file.read_text(encoding="ascii").replace("\n", "\r\n").encode("ascii")


def contents(repository, machine):
    """The files of the package by their names in it."""
    for program in ("BnSnipstore2.exe", "bns.exe"):
        yield program, (repository / "build" / machine / program).read_bytes()
    # An Office of either width uses the program of either.
    for builds, library in (("x86", "BnSnipstoreVba32.dll"), ("x64", "BnSnipstoreVba64.dll")):
        yield library, (repository / "build" / builds / library).read_bytes()
    for text in ("README.txt", "bns.txt"):
        yield text, windows_text(repository / "resources" / "package" / text)
    yield "LICENSE.txt", windows_text(repository / "LICENSE")
    for library in sorted((repository / "resources" / "starter").glob("*.bns")):
        yield library.name, library.read_bytes()


def main():
    repository = pathlib.Path(sys.argv[1])
    machine = sys.argv[2]
    name = f"BnSnipstore2-{version_of(repository)}-{machine}"
    target = repository / "build" / "packages" / f"{name}.zip"
    target.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(target, "w") as package:
        for file, data in contents(repository, machine):
            entry = zipfile.ZipInfo(f"{name}/{file}", NO_DATE)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            package.writestr(entry, data, compresslevel=9)
    print(f"The package is in {target.relative_to(repository)}")


if __name__ == "__main__":
    main()
