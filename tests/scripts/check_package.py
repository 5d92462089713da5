#!/usr/bin/env python3
"""Checks the package of one machine: what is in it, and that the same sources give the same bytes.

    check_package.py REPOSITORY MACHINE

The programs of both machines have to be built.
"""

import os
import pathlib
import subprocess
import sys
import zipfile


def make(repository, machine):
    """Makes the package; its file."""
    command = [sys.executable, repository / "tools" / "make_package.py", repository, machine]
    said = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return repository / said.split()[-1]


def faults_in(repository, machine):
    """What is wrong with it, as messages."""
    file = make(repository, machine)
    first = file.read_bytes()
    with zipfile.ZipFile(file) as package:
        contents = {pathlib.PurePosixPath(name).name: package.read(name) for name in package.namelist()}
        folders = {str(pathlib.PurePosixPath(name).parent) for name in package.namelist()}
    if len(first) > 1.5 * 2**20:
        yield f"it has {len(first)} bytes"
    if folders != {file.stem}:
        yield f"it unpacks into {sorted(folders)}"
    libraries = sorted(path.name for path in (repository / "resources" / "starter").glob("*.bns"))
    vba = ["BnSnipstoreVba32.dll", "BnSnipstoreVba64.dll"]
    expected = sorted(["BnSnipstore2.exe", *vba, "LICENSE.txt", "README.txt", "bns.exe", "bns.txt", *libraries])
    if sorted(contents) != expected:
        yield f"it holds {sorted(contents)}"
    for name in ("LICENSE.txt", "README.txt", "bns.txt"):
        text = contents.get(name, b"")
        if text.count(b"\n") != text.count(b"\r\n"):
            yield f"{name} has lines that Notepad does not see"
    for source in ("LICENSE", "resources/package/README.txt", f"build/{machine}/BnSnipstore2.exe"):
        os.utime(repository / source)
    if make(repository, machine).read_bytes() != first:
        yield "made once more it has other bytes"


def main():
    faults = list(faults_in(pathlib.Path(sys.argv[1]), sys.argv[2]))
    for fault in faults:
        print(f"the package for {sys.argv[2]}: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
