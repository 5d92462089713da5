#!/usr/bin/env python3
"""Checks the snippet libraries that ship beside the program.

    check_starter_libraries.py FOLDER

Every .bns file in the folder is read strictly: the bytes, the order of the
lines, and the Visual Basic 5 code in each snippet as far as that can be judged
without a compiler. Each fault is printed as FILE:LINE: TEXT and makes the exit
code 1. When all is well, one line with counts is printed.
"""

import re
import sys
from pathlib import Path

HEADER = "BNS2.0"
CODE_MARKER = "(,)"
SNIPPET_MARKER = "(.)"
END_MARKER = "..."
MARKERS = (CODE_MARKER, SNIPPET_MARKER, END_MARKER)

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


class Fault(Exception):
    """The file cannot be read any further."""

    def __init__(self, line, text):
        super().__init__(text)
        self.line = line
        self.text = text


class Snippet:
    def __init__(self, line, name):
        self.line = line
        self.name = name
        self.description = []
        self.code = []  # pairs of line number and text


# --- Bytes and lines ---------------------------------------------------------


def decode_lines(data):
    """Returns the lines of a file without their line ends."""
    lines = data.split(b"\r\n")
    # The last line end leaves an empty piece behind it; anything else there
    # is a last line without its end.
    if lines[-1] != b"":
        raise Fault(len(lines), "the last line is not ended by CR LF")
    texts = []
    for number, raw in enumerate(lines[:-1], 1):
        if b"\r" in raw or b"\n" in raw:
            raise Fault(number, "a line end is not CR LF")
        try:
            text = raw.decode("cp1252")
        except UnicodeDecodeError as error:
            byte = raw[error.start]
            raise Fault(number, f"byte {byte:02X} is no character of code page 1252")
        texts.append(text)
    return texts


def spacing_faults(lines):
    for number, text in enumerate(lines, 1):
        if text != text.rstrip():
            yield number, "white space at the end of the line"


# --- The order of the lines --------------------------------------------------


def read_until(lines, at, wanted, what):
    """Collects numbered lines from index at up to one of the wanted markers.

    Returns them with the index of the marker. A line that a reader would take
    for any other marker after trimming is a fault.
    """
    collected = []
    while at < len(lines):
        text = lines[at]
        if text in wanted:
            return collected, at
        if text.strip() in MARKERS:
            raise Fault(at + 1, f'marker "{text.strip()}" inside the {what}')
        collected.append((at + 1, text))
        at += 1
    if END_MARKER in wanted:
        raise Fault(len(lines), f'the end marker "{END_MARKER}" is missing')
    raise Fault(len(lines), f"the file ends inside the {what}")


def read_name(lines, at):
    if at >= len(lines):
        raise Fault(len(lines), "the file ends where a snippet should begin")
    name = lines[at]
    if name.strip() == "":
        raise Fault(at + 1, "empty name")
    if name.strip() in MARKERS:
        raise Fault(at + 1, f'marker "{name.strip()}" in place of a name')
    if at + 1 >= len(lines) or lines[at + 1] != "":
        raise Fault(at + 2, "the attachment line is not empty")
    return name


def read_snippets(lines):
    """Takes the lines of a library apart, or raises a Fault."""
    if not lines or lines[0] != HEADER:
        raise Fault(1, f'the first line is not "{HEADER}"')
    snippets = []
    at = 1
    while True:
        snippet = Snippet(at + 1, read_name(lines, at))
        snippet.description, at = read_until(
            lines, at + 2, (CODE_MARKER,), "description")
        snippet.code, at = read_until(
            lines, at + 1, (SNIPPET_MARKER, END_MARKER), "code")
        snippets.append(snippet)
        if lines[at] == END_MARKER:
            break
        at += 1
    if at + 1 < len(lines):
        raise Fault(at + 2, "something follows the end marker")
    return snippets


def content_faults(snippets):
    seen = set()
    for snippet in snippets:
        key = snippet.name.strip().lower()
        if key in seen:
            yield snippet.line, f'the name "{snippet.name}" is there twice'
        seen.add(key)
        if not any(text.strip() for _, text in snippet.description):
            yield snippet.line, f'"{snippet.name}" has no description'
        if not any(text.strip() for _, text in snippet.code):
            yield snippet.line, f'"{snippet.name}" has no code'


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


def code_faults(snippet):
    blocks = BlockChecker()
    faults = []
    for line, text in logical_lines(snippet.code):
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


def check_library(data):
    """Returns the snippets of a library and its faults."""
    try:
        lines = decode_lines(data)
        faults = list(spacing_faults(lines))
        snippets = read_snippets(lines)
    except Fault as fault:
        return [], [(fault.line, fault.text)]
    faults += content_faults(snippets)
    for snippet in snippets:
        faults += code_faults(snippet)
    return snippets, sorted(faults)


def check_folder(folder):
    """Checks all libraries; returns the counts and the messages of faults."""
    files = sorted(p for p in folder.iterdir() if p.suffix.lower() == ".bns")
    messages, snippet_count, code_count = [], 0, 0
    for path in files:
        snippets, faults = check_library(path.read_bytes())
        messages += [f"{path.name}:{line}: {text}" for line, text in faults]
        snippet_count += len(snippets)
        code_count += sum(len(snippet.code) for snippet in snippets)
    if len(files) < MIN_LIBRARIES:
        messages.append(f"{folder}: only {len(files)} libraries, "
                        f"at least {MIN_LIBRARIES} are needed")
    # A file that could not be read has its own message already.
    if snippet_count < MIN_SNIPPETS:
        messages.append(f"{folder}: only {snippet_count} snippets, "
                        f"at least {MIN_SNIPPETS} are needed")
    return len(files), snippet_count, code_count, messages


def main(arguments):
    if len(arguments) != 1 or not Path(arguments[0]).is_dir():
        print("usage: check_starter_libraries.py FOLDER", file=sys.stderr)
        return 2
    files, snippets, lines, messages = check_folder(Path(arguments[0]))
    for message in messages:
        print(message)
    if messages:
        return 1
    print(f"starter libraries: {files} libraries, {snippets} snippets, "
          f"{lines} lines of code, no fault")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
