#!/usr/bin/env python3
"""Checks the snippet libraries that ship beside the program.

    check_starter_libraries.py BNS FOLDER

The files themselves are checked by the program BNS, strictly; here it is their number, that each snippet is
whole, and the Visual Basic 5 code in it as far as that can be judged without a compiler. Each fault is printed
as FILE: SNIPPET: LINE: TEXT, the line counted in the snippet's code, and makes the exit code 1. When all is
well, one line with counts is printed.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

MIN_LIBRARIES = 4
MIN_SNIPPETS = 40

# These came with Visual Basic 6, so version 5 does not know them.
NEWER_FUNCTIONS = {
    "callbyname", "filter", "formatcurrency", "formatdatetime", "formatnumber",
    "formatpercent", "instrrev", "join", "monthname", "replace", "round",
    "split", "strreverse", "weekdayname",
}
NEWER_OBJECTS = {"dictionary", "filesystemobject"}

# What a block is called by its closing statement, as "End ..." names it.
END_BLOCKS = {"sub", "function", "property", "if", "select", "with", "type", "enum"}
CLOSERS = {"loop": "do", "wend": "while", "#end": "#if"}
# What may stand only right inside a block of the other kind.
OWNERS = {"else": "if", "elseif": "if", "case": "select",
          "#else": "#if", "#elseif": "#if"}
PROCEDURES = {"sub", "function", "property"}
MODIFIERS = {"public", "private", "friend", "static", "global"}

STRING = re.compile(r'"((?:[^"]|"")*)"')


# --- From lines of code to statements ----------------------------------------


def logical_lines(code):
    """Joins lines that go on with " _" and yields them with the first number."""
    start, joined = 0, ""
    for number, text in code:
        start = start or number
        body = text.strip()
        if body == "_" or body.endswith(" _"):
            joined += body[:-1]
            continue
        yield start, joined + body
        start, joined = 0, ""
    if start:
        yield start, joined


def strip_literals(text):
    """Removes the comment, and exchanges what stands in strings for "#".

    Returns the text and whether each string has been closed. The length is
    kept, so that an empty string can still be told from another.
    """
    result, at = "", 0
    # A remark may contain a single quote character.
    if re.match(r"rem\b", text, re.I):
        return "", True
    while at < len(text):
        letter = text[at]
        if letter == "'":
            break
        if letter != '"':
            result += letter
            at += 1
            continue
        # Two quotes inside a string stand for one.
        match = STRING.match(text, at)
        if match is None:
            return result, False
        result += '"' + "#" * len(match.group(1)) + '"'
        at = match.end()
    return result, True


def split_statements(text):
    """Splits a stripped line at its colons and at the Then of a short If.

    "If a Then b Else c" gives "If a Then ...", "b" and "c": the dots mark an
    If that ends with its line and needs no End If.
    """
    # A line number would hide the first word.
    text = re.sub(r"^\d+:?\s+", "", text)
    # Date literals and named arguments contain colons of their own.
    text = re.sub(r"#\d[\d/:. \-APMapm]*#", "0", text)
    for part in re.split(r":(?!=)", text):
        yield from split_short_if(part.strip())


def split_short_if(part):
    if re.match(r"rem\b", part, re.I):
        return
    match = re.match(r"(If\b.*?\bThen\b)\s*(\S.*)$", part, re.I)
    if match is None:
        if part:
            yield part
        return
    yield match.group(1) + " ..."
    for branch in re.split(r"\bElse\b", match.group(2), flags=re.I):
        yield from split_short_if(branch.strip())


# --- Blocks ------------------------------------------------------------------


class BlockChecker:
    """Keeps the open blocks of one snippet while its statements go by."""

    def __init__(self):
        self.open = []  # kind, detail and line number of each open block
        self.faults = []

    def fault(self, line, text):
        self.faults.append((line, text))

    def take(self, line, statement):
        # What begins with a dot is a member of a With block's object.
        words = re.findall(r"[A-Za-z_#]\w*", statement.lower())
        if not words or statement.startswith("."):
            return
        while len(words) > 1 and words[0] in MODIFIERS:
            words.pop(0)
        first, second = words[0], words[1] if len(words) > 1 else ""
        if first == "end" and second in END_BLOCKS:
            self.close(line, second)
        elif self.open and self.open[-1][0] in ("type", "enum"):
            # Members may be called like statements: Next As Long.
            return
        elif first == "end" and second != "":
            self.fault(line, f'"{statement}" is no statement')
        elif first == "exit":
            self.leave(line, second)
        elif first == "next":
            self.close_loops(line, statement)
        elif first in CLOSERS:
            self.close(line, CLOSERS[first])
        elif first in OWNERS:
            self.inside(line, first)
        else:
            self.begin(line, first, second, statement)

    def begin(self, line, first, second, statement):
        if first in PROCEDURES:
            if self.open:
                self.fault(line, f"{first.title()} begins inside another block")
            self.push(line, first)
        elif first in ("type", "enum"):
            # Only "Type Name": a variable may be called Type.
            if re.search(r"\b(type|enum)\s+\w+$", statement, re.I):
                self.push(line, first)
        elif first in ("if", "#if"):
            self.begin_if(line, first, statement)
        elif first in ("with", "while", "do"):
            self.push(line, first)
        elif first == "select" and second == "case":
            self.push(line, first)
        elif first == "for":
            variable = second if second != "each" else statement.split()[2].lower()
            self.push(line, first, variable)

    def begin_if(self, line, kind, statement):
        if statement.endswith("..."):
            return
        if not re.search(r"\bthen$", statement, re.I):
            self.fault(line, "If without Then")
        self.push(line, kind)

    def push(self, line, kind, detail=""):
        self.open.append((kind, detail, line))

    def close(self, line, kind):
        if not self.open:
            self.fault(line, f"the end of a {kind.title()} that was not begun")
            return ""
        opened, detail, start = self.open.pop()
        if opened != kind:
            self.fault(line, f"{opened.title()} of line {start} is not ended "
                             f"where a {kind.title()} ends")
        return detail

    def close_loops(self, line, statement):
        """Next i, j ends two loops, and a plain Next one of any variable."""
        names = [name.strip().lower() for name in statement[4:].split(",")]
        for name in names:
            variable = self.close(line, "for")
            if name and variable and name != variable:
                self.fault(line, f"Next {name} ends the loop of {variable}")

    def leave(self, line, kind):
        if kind not in [opened for opened, _, _ in self.open]:
            self.fault(line, f"Exit {kind.title()} outside of one")

    def inside(self, line, first):
        """Else and Case may stand only right inside their own blocks."""
        if not self.open or self.open[-1][0] != OWNERS[first]:
            self.fault(line, f"{first.title()} outside of its block")

    def finish(self):
        for kind, _, line in self.open:
            self.fault(line, f"{kind.title()} is never ended")
        return self.faults


# --- Single statements -------------------------------------------------------


def newer_name_faults(line, statement):
    """Names that version 5 does not have, unless they are members.

    A recordset has a Filter of its own, so what follows a dot or an
    exclamation mark is left alone; only after VBA it is the function again.
    """
    for match in re.finditer(r"(\bVBA\.|[.!])?\b([A-Za-z]\w*)", statement, re.I):
        owner, name = match.group(1), match.group(2)
        if name.lower() in NEWER_OBJECTS:
            yield line, f"{name} is no object of Visual Basic 5"
        elif name.lower() in NEWER_FUNCTIONS and owner not in (".", "!"):
            yield line, f"{name} came only after Visual Basic 5"


def declare_faults(line, statement):
    match = re.match(r"(?:(?:Public|Private)\s+)?Declare\b(.*)", statement, re.I)
    if match is None:
        return
    if not re.match(r'\s+(Sub|Function)\s+\w+\s+Lib\s+"#+"', match.group(1), re.I):
        yield line, "Declare without its Lib"


def scripting_faults(line, text):
    """Objects made by name hide in a string, where no identifier is seen."""
    if re.search(r'"Scripting\.', text, re.I):
        yield line, "the Scripting library is no part of Visual Basic 5"


def code_faults(code):
    blocks = BlockChecker()
    faults = []
    for line, text in logical_lines(enumerate(code.splitlines(), 1)):
        stripped, closed = strip_literals(text)
        if not closed:
            faults.append((line, "a string is not closed"))
        faults += scripting_faults(line, text)
        for statement in split_statements(stripped):
            blocks.take(line, statement)
            faults += newer_name_faults(line, statement)
            faults += declare_faults(line, statement)
    return faults + blocks.finish()


# --- Files and the folder ----------------------------------------------------


def ask(bns, *arguments):
    """What the program BNS answers in JSON."""
    said = subprocess.run([bns, *arguments, "--json"], check=True, capture_output=True)
    return json.loads(said.stdout)


def snippets_in(bns, library):
    for listed in ask(bns, "list", library):
        yield ask(bns, "show", library, f"#{listed['position']}")


def content_faults(snippet):
    if snippet["attachment"]:
        yield 0, "it has an attachment, which nobody else has"
    for part in ("name", "description", "code"):
        if not snippet[part].strip():
            yield 0, f"it has no {part}"


def check_folder(bns, folder):
    """Checks all libraries; returns what they hold and the messages of faults."""
    libraries = sorted(folder.glob("*.bns"))
    check = subprocess.run([bns, "check", "--strict", *libraries], capture_output=True, text=True)
    messages = check.stdout.splitlines() + check.stderr.splitlines()
    if check.returncode != 0:
        return len(libraries), [], messages or ["the program fails"]
    snippets = []
    for library in libraries:
        for snippet in snippets_in(bns, library):
            snippets.append(snippet)
            for line, text in [*content_faults(snippet), *code_faults(snippet["code"])]:
                messages.append(f"{library.name}: {snippet['name']}: {line}: {text}")
    if len(libraries) < MIN_LIBRARIES or len(snippets) < MIN_SNIPPETS:
        messages.append(f"{folder}: {len(libraries)} libraries and {len(snippets)} snippets, "
                        f"not {MIN_LIBRARIES} and {MIN_SNIPPETS}")
    return len(libraries), snippets, messages


def main(arguments):
    if len(arguments) != 2 or not Path(arguments[1]).is_dir():
        print("usage: check_starter_libraries.py BNS FOLDER", file=sys.stderr)
        return 2
    libraries, snippets, messages = check_folder(arguments[0], Path(arguments[1]))
    for message in messages:
        print(message)
    if messages:
        return 1
    lines = sum(len(snippet["code"].splitlines()) for snippet in snippets)
    print(f"starter libraries: {libraries} libraries, {len(snippets)} snippets, {lines} lines of code, no fault")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
