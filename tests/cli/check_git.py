#!/usr/bin/env python3
"""Random histories of libraries in real git repositories, with bns as merge driver: check_git.py BNS [HISTORIES]"""
# Two clones of a bare repository change one library by chance and join their changes by merges, rebases and
# cherry-picks. Nothing may get lost, every conflict is named, and there is none where both changed different snippets.

import collections
import os
import pathlib
import random
import subprocess
import sys
import tempfile

BNS = str(pathlib.Path(sys.argv[1]).resolve())
HISTORIES = int(sys.argv[2]) if len(sys.argv) > 2 else 20
Snippet = collections.namedtuple("Snippet", "name attachment description code")
counts = collections.Counter()


def run(folder, *command, code=0):
    """What a command prints; `code` is the exit code that it must have. With None for any the exit code as well."""
    done = subprocess.run(command, cwd=folder, capture_output=True, check=False, timeout=120)
    text = done.stdout + done.stderr
    assert code in (None, done.returncode), f"{command}: {done.returncode}: {text.decode(errors='replace')}"
    return (done.returncode, text.decode("latin-1")) if code is None else done.stdout


def git(folder, *arguments, **more):
    return run(folder, "git", *arguments, **more)


def parsed(data):
    """The snippets of a library's bytes; fails for anything but a faultless one."""
    lines = data.decode("latin-1").split("\r\n")
    assert lines[0] == "BNS2.0" and lines[-2:] == ["...", ""], lines
    snippets, at = [], 1
    while at < len(lines) - 2:
        middle = lines.index("(,)", at + 2)
        end = next(i for i in range(middle, len(lines)) if lines[i] in ("(.)", "..."))
        snippets.append(Snippet(lines[at], lines[at + 1], "\n".join(lines[at + 2:middle]), "\n".join(lines[middle + 1:end])))
        at = end + 1
    return snippets


def written(snippets):
    blocks = "(.)\n".join("\n".join((*s[:3], "(,)", s.code, "")) for s in snippets)
    return f"BNS2.0\n{blocks}...\n".replace("\n", "\r\n").encode("latin-1")


class Editor:  # Every name and line it writes is new, but for lines that look like markers.

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.number = 0

    def fresh(self, kind="\xe9 line"):
        self.number += 1
        return f"{kind} {self.number}"

    def snippet(self, owner):
        lines = [self.fresh() for _ in range(self.random.randint(3, 8))] + ["(,)", "<<<<<<< HEAD", "(.)x"]
        return Snippet(self.fresh("Name"), "", f"{owner}\n{self.fresh()}", "\n".join(lines))

    def change(self, snippets, owner, apart):
        # If `apart`, only the snippets of this owner are changed.
        places = [i for i, s in enumerate(snippets) if not apart or s.description.startswith(owner)]
        action = self.random.choice("edit edit edit describe rename move attach add delete".split())
        if action == "add" or not places:
            snippets.insert(self.random.randint(0, len(snippets)), self.snippet(owner))
            return
        i = self.random.choice(places)
        old = snippets.pop(i)
        if action == "edit":
            lines = old.code.split("\n")
            at = self.random.randrange(len(lines))
            lines[at:at + self.random.randint(0, 2)] = [self.fresh()]
            old = old._replace(code="\n".join(lines))
        elif action == "describe":
            old = old._replace(description=old.description.split("\n")[0] + "\n" + self.fresh())
        elif action == "rename":
            old = old._replace(name=self.fresh("Name"))
        elif action == "attach":
            old = old._replace(attachment=self.fresh("C:\\file"))
        elif action == "move":
            i = self.random.randint(0, len(snippets))
        if action != "delete":
            snippets.insert(i, old)


def texts(snippets):
    return collections.Counter(line for s in snippets for part in s for line in part.split("\n"))


def check(base, ours, theirs, merged, output, apart):
    # What must hold of a merge, whichever way it was made.
    old, our, their, new = texts(base), texts(ours), texts(theirs), texts(merged)
    lost = {*our, *their} - {*(old - our), *(old - their), *new, *(name.split(" (theirs")[0] for name in new)}
    assert not lost, f"lost: {lost}"
    for name in (s.name for s in merged if " (theirs" in s.name and s.name not in our + their):
        assert f'"{name}"' in output, f"{name} is not named in {output}"
    if apart:
        wanted = [s for side, owner in ((ours, "A"), (theirs, "B")) for s in side if s.description.startswith(owner)]
        assert sorted(merged) == sorted(wanted), f"{sorted(merged)}\n{sorted(wanted)}"
        assert not {"CONFLICT", "conflict:"} & set(output.split()), output
    counts["with conflicts" if "conflict:" in output else "without conflicts"] += 1


def check_alone(folder, base, ours, theirs, apart):
    # The command by itself: from both sides, and where one side changed nothing or both did the same.
    for name, snippets in (("b", base), ("o", ours), ("t", theirs)):
        (folder / name).write_bytes(written(snippets))
    results = []
    for one, other in ("ot", "to"):
        code, output = run(folder, BNS, "merge", "--base", "b", one, other, "-o", "m", code=None)
        merged = parsed((folder / "m").read_bytes())
        assert code in (0, 1) and (code == 1) == ("conflict:" in output), output
        check(base, *((ours, theirs) if one == "o" else (theirs, ours)), merged, output, False)
        results.append((code, sorted(merged) if code == 0 else set(texts(merged)) - {s.name for s in merged}))
    assert results[0] == results[1], "it matters who merges"
    assert not apart or results[0][0] == 0
    for three in ("boo", "bbo", "bob", "too"):
        run(folder, BNS, "merge", "--base", *three, "-o", "m")
        assert (folder / "m").read_bytes() == (folder / "o").read_bytes(), three


def join(clone, how):
    # Brings the other side's commits into this clone, with conflicts as they are; returns what was printed.
    output = ""
    for command in {"merge": ["merge"], "rebase": ["rebase"], "cherry-pick": ["cherry-pick", "merge"]}[how]:
        step = "HEAD..origin/main" if command == "cherry-pick" else "origin/main"
        for _ in range(20):
            code, text = git(clone, command, step, code=None)
            output += text
            if code == 0:
                break
            git(clone, "add", "l.bns")
            empty = command != "merge" and git(clone, "diff", "--cached", "--quiet", code=None)[0] == 0
            step = "--skip" if empty else "--continue"
        assert code == 0, output
    return output


def setup(folder):
    # What git-setup does to a repository and takes back, and what git shows with it.
    (folder / ".gitattributes").write_bytes(b"*.txt text")
    git(folder, "init", "-q", ".")
    before = [(folder / name).read_bytes() for name in (".gitattributes", ".git/config")]
    run(folder, BNS, "git-setup")
    run(folder, BNS, "git-setup")
    assert (folder / ".gitattributes").read_bytes() == b"*.txt text\n*.bns -text diff=bns merge=bns"
    for snippet in (Snippet("One", "", "", "a\nb"), Snippet("One", "", "\xe9", "a\nc")):
        git(folder, "add", ".")
        (folder / "l.bns").write_bytes(written([snippet]))
    shown = git(folder, "diff").decode()
    assert '-    b\n+    c' in shown and "+    \u00e9\n" in shown, shown
    shown = git(folder, "-c", "diff.external=bns diff --git", "diff").decode()
    assert '"One": changed\n@@ description' in shown and "-b\n+c\n" in shown, shown
    run(folder, BNS, "git-setup", "--undo")
    assert before == [(folder / name).read_bytes() for name in (".gitattributes", ".git/config")]
    windows, line = b"*.txt text\r\n", b"*.bns -text diff=bns merge=bns\r\n"  # as git checks it out there
    (folder / ".gitattributes").write_bytes(windows)
    for options, added in ((), line), ((), line), (("--undo",), b""):
        run(folder, BNS, "git-setup", *options)
        assert (folder / ".gitattributes").read_bytes() == windows + added, options


def history(seed, folder):
    editor = Editor(seed)
    apart = seed % 2 == 0
    git(folder, "init", "-q", "--bare", "-b", "main", "hub")
    library = [editor.snippet("AB"[i % 2]) for i in range(editor.random.randint(0, 12))]
    for name in "AB":
        clone = folder / name
        git(folder, "clone", "-q", "hub", name)
        git(clone, "config", "core.autocrlf", "true" if name == "A" else "input")  # which must not matter
        run(clone, BNS, "git-setup")
        if name == "A":
            (clone / "l.bns").write_bytes(written(library))
            git(clone, "add", ".")
            git(clone, "commit", "-qm", "first")
            git(clone, "push", "-q")
    for number in range(3):
        tips = {}
        for name in "AB":
            tips[name] = parsed((folder / name / "l.bns").read_bytes())
            base = list(tips[name])
            for _ in range(editor.random.randint(1, 3)):
                for _ in range(editor.random.randint(1, 4)):
                    editor.change(tips[name], name, apart)
                (folder / name / "l.bns").write_bytes(written(tips[name]))
                git(folder / name, "commit", "-qam", "change", code=None)
        first, second = ("A", "B") if number % 2 == 0 else ("B", "A")
        git(folder / first, "push", "-q")
        git(folder / second, "fetch", "-q")
        output = join(folder / second, editor.random.choice(("merge", "rebase", "cherry-pick")))
        data = (folder / second / "l.bns").read_bytes()
        check(base, tips["A"], tips["B"], parsed(data), output, apart)
        check_alone(folder, base, tips["A"], tips["B"], apart)
        git(folder / second, "push", "-q")
        git(folder / first, "pull", "-q", "--ff-only")
        assert (folder / first / "l.bns").read_bytes() == data, "a clone has other bytes"


def main():
    with tempfile.TemporaryDirectory() as home:
        os.environ.update({"HOME": home, "GIT_CONFIG_NOSYSTEM": "1", "GIT_EDITOR": "true",
                           "PATH": f"{pathlib.Path(BNS).parent}:{os.environ['PATH']}"})
        git(home, "config", "--global", "user.name", "Somebody")
        git(home, "config", "--global", "user.email", "somebody@example.org")
        for seed in range(-1, HISTORIES):
            with tempfile.TemporaryDirectory() as folder:
                try:
                    setup(pathlib.Path(folder)) if seed < 0 else history(seed, pathlib.Path(folder))
                except AssertionError as error:
                    sys.exit(f"history {seed}: {error}")
    print(f"{HISTORIES} histories: {dict(counts)}")


if __name__ == "__main__":
    main()
