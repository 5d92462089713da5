#!/usr/bin/env python3
"""Drives the real bns: streams, exit codes, files and what is left of them.

    check_bns.py [--wine] BNS

With --wine, BNS is the Windows program, and what only a POSIX system has is left out.
"""

import json
import os
import pathlib
import re
import shutil
import stat
import subprocess
import sys
import tempfile

WINE = "--wine" in sys.argv
BNS = ([] if not WINE else ["wine"]) + [str(pathlib.Path(sys.argv[-1]).resolve())]
STARTER = pathlib.Path(__file__).resolve().parents[2] / "resources/starter/Strings.bns"

LIBRARY = ("BNS2.0\r\nOne\r\nC:\\a.txt\r\nFirst \xe9\r\n(,)\r\nDim s$\r\n    s$ = \"\x80\"\r\n(.)\r\n"
           "Two\r\n\r\n\r\n(,)\r\n' nothing\r\n...\r\n").encode("latin-1")
OLD = b"BNS1.0\r\nOne\r\nFirst\r\nDim x\r\n.\r\nTwo\r\n\r\n'\r\n..\r\n"
TEMPLATE = '{"T": {"body": "For ${1:i}", "description": ""}, "P": {"body": "plain\\\\$"}, "\u2603": {"body": "\u2603"}}'
DONE, NO, USAGE, FILE, MALFORMED, REFUSED = range(6)

faults = []
checks = 0


def expect(holds, what):
    global checks
    checks += 1
    if not holds:
        faults.append(what)


class Result:
    def __init__(self, arguments, stdin=b"", environment=None):
        # A Wine process may leave services behind that keep its streams: files need not be closed by all.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err, tempfile.TemporaryFile() as given:
            given.write(stdin)
            given.seek(0)
            self.code = subprocess.run(BNS + list(arguments), stdin=given, stdout=out, stderr=err, check=False,
                                       env={**os.environ, **(environment or {})}, timeout=120).returncode
            out.seek(0)
            err.seek(0)
            self.out = out.read()
            self.err = err.read().decode()


def bns(code, *arguments, stdin=b"", says="", **more):
    """Runs a command and expects its exit code and some words on the standard error output."""
    result = Result(arguments, stdin, **more)
    expect(result.code == code and says in result.err,
           f"{arguments}: {result.code} in place of {code}, or not '{says}': {result.err.strip()}")
    return result


def read(path):
    return pathlib.Path(path).read_bytes()


def write(path, data):
    pathlib.Path(path).write_bytes(data)


def refuse(code, *arguments, says="", **more):
    """As bns(), and expects that no file changed."""
    before = {path: path.read_bytes() for path in pathlib.Path().rglob("*") if path.is_file()}
    bns(code, *arguments, says=says, **more)
    after = {path: path.read_bytes() for path in pathlib.Path().rglob("*") if path.is_file()}
    expect(before == after, f"{arguments}: files changed: {set(before.items()) ^ set(after.items())}")


def finding():
    write("l.bns", LIBRARY)
    write("tags.bns", LIBRARY.replace(b"First", b"#Best, #caf\xe9").replace(b"nothing", b"one"))
    both = ("l.bns", "tags.bns")
    expect(bns(DONE, "find", "one", *both).out == b"One - l.bns\nOne - tags.bns\nTwo - tags.bns\n", "find: order")
    expect(json.loads(bns(DONE, "find", "--json", "-n1", "FIRST E in:l", *both).out) ==
           [{"library": "l.bns", "position": 1, "name": "One", "part": "description"}], "find: as JSON")
    expect(bns(DONE, "tags", *both).out == "#Best 1\n#café 1\n".encode(), "tags")
    expect(bns(DONE, "list", "--tag", "#CAFE", "tags.bns").out == b"One\n", "list --tag")
    bns(USAGE, "find", "-n0", "one", *both, says="1 or more")
    expect(bns(NO, "find", "\u2603", *both).out == bns(NO, "tags", "l.bns").out == b"", "nothing to find")


def reading():
    write("l.bns", LIBRARY)
    expect(bns(DONE, "list", "l.bns").out == b"One\nTwo\n", "list")
    expect(bns(DONE, "list", "-", stdin=LIBRARY).out == b"One\nTwo\n", "list from the standard input")
    expect(bns(DONE, "show", "-c", "l.bns", "one").out.decode() == 'Dim s$\n    s$ = "\u20ac"\n', "show")
    expect(bns(DONE, "show", "-c", "--raw", "l.bns", "#1").out == b'Dim s$\r\n    s$ = "\x80"\r\n', "show --raw")
    shown = json.loads(bns(DONE, "show", "--json", "l.bns", "One").out)
    expect(shown == {"position": 1, "name": "One", "attachment": "C:\\a.txt", "description": "First \u00e9",
                     "code": 'Dim s$\n    s$ = "\u20ac"'}, f"show --json: {shown}")
    expect(bns(DONE, "search", "s$", "l.bns").out.decode() == 'One: code 1: Dim s$\nOne: code 2:     s$ = "\u20ac"\n',
           "search")
    expect(bns(DONE, "search", "-i", "FIRST \u00c9", "--in", "description", "-l", "l.bns").out == b"One\n", "search -i")
    expect(bns(DONE, "search", "-n", "-E", "^ +s.", "l.bns").out == b"1\n", "search -E")
    hits = json.loads(bns(DONE, "search", "--json", "nothing", "l.bns").out)
    expect([(hit["name"], hit["part"], hit["line"]) for hit in hits] == [("Two", "code", 1)], f"search --json {hits}")
    for pattern in ("First", "\u2603"):
        bns(NO, "search", pattern, "--in", "code", "l.bns")
    bns(USAGE, "search", "-E", "(", "l.bns", says="regular expression")
    bns(NO, "show", "l.bns", "Three", says="Three")
    bns(FILE, "list", "none.bns", says="none.bns")
    bns(FILE, "list", ".", says="folder")
    bns(MALFORMED, "list", "-", stdin=b"x", says="standard input:1:")
    bns(MALFORMED, "search", "x", "-", stdin=b"", says="standard input:1:")
    bns(USAGE, "nonsense")
    bns(DONE, "--help")
    bns(DONE, "check", "l.bns")
    check = bns(NO, "check", "-", stdin=LIBRARY + b"more\r\n")
    expect(b":15: error: " in check.out, f"check: {check.out}")
    bns(NO, "check", "--strict", "-", stdin=LIBRARY.replace(b"Two", b"One"))
    write("twice.bns", LIBRARY.replace(b"Two", b"One"))
    wanted = {"version": 2, "snippets": 2, "described": 1, "attached": 1, "repeatedNames": 1, "codeLines": 3,
              "longestCode": 2}
    stats = json.loads(bns(DONE, "stats", "--json", "l.bns", "twice.bns").out)
    expect(stats[1] == {"library": "twice.bns", **wanted} and stats[0]["repeatedNames"] == 0, f"stats: {stats}")
    lines = "".join(f"{key}: {value}\n" for key, value in {"library": "twice.bns", **wanted}.items())
    expect(bns(DONE, "stats", "twice.bns").out.decode() == lines, "stats in lines")
    listed = json.loads(bns(DONE, "list", "--json", "l.bns").out)
    expect([(each["name"], each["position"], "code" in each) for each in listed] == [("One", 1, False), ("Two", 2, False)],
           f"list --json: {listed}")
    expect(bns(DONE, "list", "-l", "l.bns").out.decode() ==
           "One\n    First \u00e9\n    Attachment: C:\\a.txt\nTwo\n    \n", "list --long")
    bns(NO, "show", "twice.bns", "One", says="#1, #2")
    bns(NO, "show", "twice.bns", "one", says="#1, #2")
    expect(bns(DONE, "show", "-c", "twice.bns", "#2").out == b"' nothing\n", "the second of a name by its number")
    expect(bns(DONE, "search", "-w", "s", "--in", "code", "-n", "l.bns").out == b"2\n", "search --word")
    bns(NO, "search", "-w", "Di", "l.bns")


def changing():
    write("l.bns", LIBRARY)
    code = bns(DONE, "show", "-c", "--raw", "l.bns", "One").out
    bns(DONE, "add", "l.bns", "Th\u00e9", "-C", "-", "--encoding", "ansi", "-d", "a\nb", stdin=code)
    expect(bns(DONE, "show", "-c", "--raw", "l.bns", "Th\u00e9").out == code, "raw code comes back")
    bns(DONE, "move", "l.bns", "Th\u00e9", "--before", "One")
    bns(DONE, "rename", "l.bns", "#1", "Three")
    bns(DONE, "move", "l.bns", "One", "--to", "3")
    expect(bns(DONE, "list", "l.bns").out == b"Three\nTwo\nOne\n", "move and rename")
    bns(DONE, "edit", "l.bns", "Two", "-c", "x = 1  \ny = 2", "-a", "C:\\b")
    expect(bns(DONE, "show", "--raw", "l.bns", "Two").out == b"Two\r\nAttachment: C:\\b\r\n\r\nx = 1\r\ny = 2\r\n", "edit")
    bns(DONE, "remove", "l.bns", "#1", "Two")
    bns(DONE, "move", "l.bns", "One", "--after", "One")
    expect(read("l.bns") == LIBRARY[:LIBRARY.index(b"(.)")] + b"...\r\n", "what is left is as it was")
    out = bns(DONE, "remove", "-", "Two", stdin=LIBRARY).out
    expect(out == read("l.bns"), "a library through the standard streams")
    refuse(USAGE, "move", "l.bns", "One", "--into", "./l.bns", says="already in that library")
    write("text", b"\xef\xbb\xbfA\nB\n")
    bns(DONE, "add", "--create", "new.bns", "One", "-D", "text")
    expect(bns(DONE, "show", "-d", "--raw", "new.bns", "One").out == b"A\r\nB\r\n", "--description-file")
    refuse(REFUSED, "rename", "new.bns", "One", "...")
    refuse(REFUSED, "move", "l.bns", "One", "--into", "new.bns", says="already")
    bns(DONE, "rename", "new.bns", "One", "Other")
    bns(DONE, "move", "l.bns", "One", "--into", "new.bns")
    expect(bns(DONE, "list", "new.bns").out == b"Other\nOne\n" and read("l.bns") == b"BNS2.0\r\n...\r\n", "move --into")
    bns(DONE, "add", "--same-name", "new.bns", "One", "-c", "2")
    bns(DONE, "rename", "--same-name", "new.bns", "Other", "One")
    bns(DONE, "rename", "new.bns", "#3", "#1")
    expect(bns(DONE, "show", "-c", "new.bns", "#1").out == b"2\n", "a name goes before a number")


def refusing():
    write("l.bns", LIBRARY)
    write("old.bns", OLD)
    write("full.bns", b"BNS2.0\r\n" + b"(.)\r\n".join([b"\r\n\r\n\r\n(,)\r\n\r\n"] * 32767) + b"...\r\n")
    refuse(REFUSED, "add", "full.bns", "x", says="32,767")
    refuse(REFUSED, "add", "l.bns", "One", says="already")
    refuse(REFUSED, "add", "l.bns", "a\nb", says="more than one line")
    refuse(REFUSED, "rename", "l.bns", "One", " ... ", says="reserves")
    refuse(REFUSED, "edit", "l.bns", "One", "-d", "(,)", says="line 1 of its description")
    refuse(REFUSED, "edit", "l.bns", "One", "-c", "\u2603", says="1 character")
    refuse(NO, "remove", "l.bns", "Two", "Three", says="Three")
    refuse(USAGE, "edit", "l.bns", "One")
    refuse(USAGE, "move", "l.bns", "One", "--to", "9")
    refuse(REFUSED, "add", "old.bns", "x", says="convert")
    refuse(FILE, "add", "none.bns", "x", says="none.bns")
    refuse(REFUSED, "add", "-", "x", stdin=LIBRARY + b"more", says=":15:")
    bns(DONE, "edit", "--lossy", "l.bns", "One", "-c", "\u2603", says="1 character")
    expect(bns(DONE, "show", "-c", "l.bns", "One").out == b"?\n", "--lossy")


def converting():
    write("old.bns", OLD)
    expected = b"BNS2.0\r\nOne\r\n\r\nFirst\r\n(,)\r\nDim x\r\n(.)\r\nTwo\r\n\r\n\r\n(,)\r\n'\r\n...\r\n"
    expect(bns(DONE, "convert", "-", stdin=OLD).out == expected, "convert to the standard output")
    refuse(REFUSED, "convert", "old.bns", "-o", "old.bns", says="exists")
    bns(DONE, "convert", "old.bns")
    expect(read("old.bns") == expected, "convert")
    refuse(REFUSED, "convert", "-", "-o", "x.bns", stdin=OLD.replace(b"Dim x", b"a\r\n..."), says="line 2 of its code")
    refuse(MALFORMED, "convert", "-", stdin=b"x")


def exchanging():
    shutil.copy(STARTER, "s.bns")
    for output in ("s.snippet", "s.code-snippets", "folder/"):
        bns(DONE, "export", "s.bns", output, says="exported 11")
        refuse(REFUSED, "export", "s.bns", output, says="exists")
        bns(DONE, "import", "back.bns", output, "--create", says="imported 11")
        expect(read("back.bns") == read("s.bns"), f"{output} comes back")
        refuse(DONE, "import", "back.bns", output, says="already there 11")
        os.remove("back.bns")
    out = bns(DONE, "export", "s.bns", "-", "--format", "vs").out
    refuse(DONE, "import", "n.bns", "-", "--format", "vs", "--create", "--dry-run", stdin=out, says="would have imported 11")
    write("t.json", TEMPLATE.encode())
    refuse(REFUSED, "import", "n.bns", "t.json", "--create", "--templates", "skip", says="--lossy")
    report = json.loads(bns(NO, "import", "n.bns", "t.json", "--create", "--templates", "skip", "--lossy", "--json").out)
    expect((report["imported"], report["leftOut"]) == (2, 1) and report["notes"][-1]["loss"] == "template"
           or "template" in [note["loss"] for note in report["notes"]], f"import --json: {report}")
    bns(DONE, "import", "n.bns", "t.json", "--lossy", "--templates", "fill", says="imported 1")
    expect(bns(DONE, "show", "-c", "n.bns", "T").out == b"For i\n", "a filled template")
    write("l.bns", LIBRARY)
    bns(DONE, "export", "l.bns", "l.json")
    bns(DONE, "import", "l2.bns", "l.json", "--create")
    expect(read("l2.bns") == LIBRARY, "attachments in the file beside")
    write("twice.bns", LIBRARY.replace(b"Two", b"One"))
    bns(DONE, "export", "twice.bns", "twice.snippet")
    bns(DONE, "import", "twice2.bns", "twice.snippet", "--create")
    expect(read("twice2.bns") == read("twice.bns"), "two snippets of one name")
    bns(DONE, "edit", "l2.bns", "One", "-c", "other")
    refuse(NO, "merge", "l.bns", "l2.bns", says='"One": skipped')
    refuse(DONE, "merge", "l.bns", "l2.bns", "--same-name", "number", "--dry-run", says="One (2)")
    bns(DONE, "merge", "l.bns", "l2.bns", "--same-name", "number")
    expect(bns(DONE, "list", "l.bns").out == b"One\nTwo\nOne (2)\n", "merge")
    refuse(FILE, "import", "l.bns", "nowhere/", says="nowhere")
    write("old.bns", OLD)
    bns(DONE, "merge", "--create", "all.bns", "old.bns", "l2.bns", "--same-name", "number", says="merged 4")
    expect(bns(DONE, "list", "all.bns").out == b"One\nTwo\nOne (2)\nTwo (2)\n", "merge of several libraries")
    write("cut.bns", LIBRARY[:60])
    for name, code, says in (("cut.bns", REFUSED, "cut.bns:8: "), ("old.bns", REFUSED, "old.bns:1: "),
                             ("t.json", MALFORMED, "t.json:1: "), ("none.bns", FILE, "none.bns")):
        refuse(code, "merge", "--base", "l2.bns", name, "l2.bns", says=says)
        refuse(code, "merge", "--base", "l2.bns", "l2.bns", name, "--label", name, says=says.replace(":", " (theirs):", 1))
    refuse(REFUSED, "merge", "--base", "cut.bns", "l2.bns", "l2.bns", says="cut.bns:8: ")
    refuse(USAGE, "diff", "l2.bns", "none.bns", says="none.bns")
    refuse(DONE, "diff", "l2.bns", "l2.bns")
    compared = json.loads(bns(NO, "diff", "--json", "l2.bns", "cut.bns", says="").out)
    expect([(each["name"], each["change"]) for each in compared] == [("One", "changed"), ("Two", "removed")], f"diff {compared}")
    write("full.bns", b"BNS2.0\r\n" + b"(.)\r\n".join([b"\r\n\r\n\r\n(,)\r\n\r\n"] * 32766) + b"...\r\n")
    bns(NO, "merge", "full.bns", "l2.bns", says="merged 1, already there 0, skipped 1")
    write("none", b"")
    refuse(REFUSED, "merge", "--base", "none", "full.bns", "l.bns", "--label", "team.bns", "--dry-run", says="team.bns: ")
    bns(DONE, "export", "--force", "-s", "Two", "-s", "One", "l.bns", "l.json", says="exported 2")
    expect(list(json.loads(read("l.json"))) == ["Two", "One"], "export --snippet")
    write("dollar.bns", LIBRARY.replace(b"Dim s$", b"$a$ = 1"))
    bns(DONE, "export", "--as-templates", "-s", "One", "dollar.bns", "dollar.snippet")
    bns(NO, "import", "dollar2.bns", "dollar.snippet", "--create", "--templates", "skip", says="placeholders")
    write("cs.json", b'{"a": {"scope": "csharp", "body": "x"}}')
    refuse(NO, "import", "l.bns", "cs.json", says="not Visual Basic")
    bns(DONE, "import", "l.bns", "cs.json", "--all-languages", says="imported 1")
    for name, data in (("h.snippet", b"<a>\n<b>"), ("h.json", b"{\n\"a\" 1}")):
        write(name, data)
        refuse(MALFORMED, "import", "l.bns", name, says=f"{name}:2:")


def posix_files():
    write("l.bns", LIBRARY)
    os.chmod("l.bns", 0o640)
    os.symlink("l.bns", "link.bns")
    bns(DONE, "remove", "link.bns", "Two")
    expect(os.path.islink("link.bns") and b"Two" not in read("l.bns"), "links are followed")
    expect(stat.S_IMODE(os.stat("l.bns").st_mode) == 0o640, "permissions are kept")
    expect(sorted(os.listdir()) == ["l.bns", "link.bns"], f"nothing is left behind: {os.listdir()}")
    old = os.umask(0o027)
    bns(DONE, "add", "--create", "new.bns", "x")
    os.umask(old)
    expect(stat.S_IMODE(os.stat("new.bns").st_mode) == 0o640, "new files have the usual permissions")
    with open("/dev/full", "wb") as full:
        code = subprocess.run(BNS + ["list", "l.bns"], stdout=full, stderr=subprocess.DEVNULL, check=False).returncode
    expect(code == FILE, "a full device")
    # On a terminal there are colours, and control characters command nothing.
    write("c.bns", LIBRARY.replace(b"One", b"O\x1b[2Jne"))
    for environment, coloured in (({"NO_COLOR": ""}, True), ({"NO_COLOR": "1"}, False)):
        shown = subprocess.run(["script", "-qec", f"{BNS[0]} search Dim c.bns", "/dev/null"], capture_output=True,
                               stdin=subprocess.DEVNULL, check=False, env={**os.environ, **environment}).stdout
        expect((b"\x1b[1;31mDim" in shown) == coloured and b"\x1b[2J" not in shown, f"colours: {shown}")


def failing_writes():
    """Whatever makes a write fail, the old library is there in whole and nothing else."""
    def fails(folder, *arguments, stdin=b"", says="cannot be written"):
        before = {path: read(path) for path in pathlib.Path(folder).rglob("*") if path.is_file()}
        bns(FILE, *arguments, stdin=stdin, says=says)
        after = {path: read(path) for path in pathlib.Path(folder).rglob("*") if path.is_file()}
        expect(before == after, f"{arguments}: {sorted(map(str, after))}")

    if os.geteuid() != 0:
        os.mkdir("folder")
        write("folder/l.bns", LIBRARY)
        os.chmod("folder", 0o500)
        fails("folder", "remove", "folder/l.bns", "One")
        os.chmod("folder", 0o700)
        os.chmod("folder/l.bns", 0o400)
        fails("folder", "remove", "folder/l.bns", "One")
    fails(".", "add", "--create", "nowhere/new.bns", "x")
    os.mkfifo("pipe.bns")
    fails(".", "export", "--force", str(STARTER), "pipe.bns", "--format", "vs", says="not a regular file")
    os.remove("pipe.bns")
    small, readonly = (os.environ.get(f"SNIPSTORE_{name}_DISK") for name in ("SMALL", "READ_ONLY"))
    if small:
        library = os.path.join(small, "l.bns")
        write(library, LIBRARY)
        fails(small, "edit", library, "One", "-C", "-", stdin=b"x" * 70000)
        write("from.bns", LIBRARY.replace(b"One", b"Big").replace(b"Dim s$", b"x" * 70000))
        fails(".", "move", "from.bns", "Big", "--into", library)
        os.remove(library)
    if readonly:
        fails(readonly, "add", "--create", os.path.join(readonly, "new.bns"), "x")


def shortened_file():
    """What becomes shorter while a search reads it ends there, and a pipe is searched like a file."""
    lines = b"needle in a haystack\r\n" * 200000
    write("l.bns", b"BNS2.0\r\nOne\r\n\r\n\r\n(,)\r\n" + lines + b"...\r\n")
    with subprocess.Popen(BNS + ["search", "needle", "l.bns"], stdout=subprocess.PIPE) as search:
        search.stdout.read(1)  # the rest fills the pipe, and the search waits within the file
        os.truncate("l.bns", 50)
        found = search.stdout.read().count(b"\n")
        expect(search.wait() == DONE and found < 200000, f"shortened file: {search.returncode} with {found} lines")
    piped = subprocess.run(["bash", "-c", '"$1" search -n nothing <(cat)', "bash", *BNS], input=LIBRARY,
                           capture_output=True, check=False)
    expect(piped.stdout == b"1\n", f"search in a pipe: {piped}")


def shell_completion():
    """Completes command lines as bash does."""
    shutil.copy(STARTER, "Strings.bns")
    write("completion", bns(DONE, "completion", "bash").out)
    for words, wanted in ((["li"], "list"), (["m"], "manual merge move"), (["show", "--r"], "--raw"),
                          (["show", "Strings.bns", "Cou"], "Count\\ occurrences"),
                          (["remove", "Strings.bns", "Other", "Cou"], "Count\\ occurrences"),
                          (["import", "Strings.bns", "--same-name", "s"], "skip"), (["search", "Cou"], ""),
                          (["move", "Strings.bns", "x", "--bef"], "--before"), (["list", "Str"], "Strings.bns"),
                          (["move", "Strings.bns", "x", "--before", "Cou"], "Count\\ occurrences"),
                          (["add", "-c", "code", "Str"], "Strings.bns")):
        script = ('bns() { "$BNS" "$@"; }; . ./completion; COMP_WORDS=(bns "$@"); COMP_CWORD=$#; _bns; '
                  'printf "%s\\n" "${COMPREPLY[@]}" | sort | paste -sd" "')
        offered = subprocess.run(["bash", "-c", script, "bash", *words], capture_output=True, check=False, text=True,
                                 env={**os.environ, "BNS": BNS[0]})
        expect(offered.stdout.strip() == wanted, f"completing {words}: {offered.stdout}{offered.stderr}")
    for command in re.findall(r"^  ([\w-]+)", bns(DONE, "--help").out.decode().split("Subcommands:")[1], re.M)[:20]:
        table = re.search(rf"\['{command}'\]='(.*)'", read("completion").decode())
        named = set(re.findall(r"--[a-z-]+", bns(DONE, command, "--help").out.decode()))
        expect(table and set(table[1].split()) == named, f"{command}: {table and table[1]} completed, {named} in the help")


def keeping():
    write("l.bns", LIBRARY)
    bns(DONE, "remove", "l.bns", "One")
    versions = json.loads(bns(DONE, "history", "l.bns", "--json").out)
    expect([(each["kind"], each["added"], each["removed"]) for each in versions] == [("saved", 0, 1), ("saved", 2, 0)],
           f"history {versions}")
    bns(DONE, "restore", "l.bns", "#2", "one")
    expect(read("l.bns") == LIBRARY, "a restored snippet is where it was")
    bns(DONE, "edit", "l.bns", "One", "-c", "other")
    bns(DONE, "restore", "l.bns", "#2", "One")
    expect(read("l.bns") == LIBRARY, "a snippet is restored in its place")
    bns(DONE, "restore", "l.bns", versions[0]["version"])
    expect(bns(DONE, "list", "l.bns").out == b"Two\n", "a restored library")
    refuse(NO, "restore", "l.bns", "#9", says='no version "#9"')
    refuse(NO, "restore", "l.bns", "#1", "One", says='no snippet "One"')
    refuse(NO, "history", "none.bns")


def main():
    state = tempfile.TemporaryDirectory()
    os.environ["XDG_STATE_HOME"] = state.name
    # Wine's server ends when nothing runs, and whatever starts at that moment fails: one process waits for input.
    waiting = WINE and subprocess.Popen(BNS + ["list", "-"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
    parts = [reading, finding, changing, keeping, refusing, converting, exchanging] + ([] if WINE else [posix_files, failing_writes, shortened_file, shell_completion])
    for part in parts:
        with tempfile.TemporaryDirectory() as folder:
            os.chdir(folder)
            part()
            os.chdir("/")
    if waiting:
        waiting.communicate()
    print("\n".join(faults) or f"{checks} checks passed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
