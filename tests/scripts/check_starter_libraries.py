#!/usr/bin/env python3
"""Checks the snippet libraries that ship beside the program.

    check_starter_libraries.py BNS FOLDER

The program BNS checks the files themselves, strictly. This script checks their number, that each snippet is whole,
and the Visual Basic 5 code in it as far as that can be judged without a compiler. It prints each fault as
FILE: SNIPPET: LINE: TEXT, the line counted in the snippet's code, and exits with 1 if there are any.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

MIN_LIBRARIES = 4
MIN_SNIPPETS = 40

# Visual Basic 6 introduced these. A member of that name, as in Recordset.Filter, is another thing.
NEWER = re.compile(
    r"(?:(?<![.!])|(?<=\bVBA\.))\b(CallByName|Filter|Format(?:Currency|DateTime|Number|Percent)|InStrRev|Join|"
    r"MonthName|Replace|Round|Split|StrReverse|WeekdayName)\b|\b(Dictionary|FileSystemObject)\b", re.I)
# A string; two quotes inside it stand for one.
STRING = re.compile(r'"((?:[^"]|"")*)"')

# Statements that begin a block, with the word that names its kind, and for loops the variable.
BEGINS = [re.compile(pattern, re.I) for pattern in (
    r"(?:(?:Public|Private|Friend|Static|Global)\s+)*(?P<kind>Sub|Function|Property)\b",
    r"(?:(?:Public|Private)\s+)*(?P<kind>Type|Enum)\s+\w+$",
    r"(?P<kind>#?If)\b(?!.*\.\.\.$)",
    r"(?P<kind>Select)\s+Case\b",
    r"(?P<kind>With|While|Do)\b",
    r"(?P<kind>For)\s+(?:Each\s+)?(?P<variable>\w+)")]
ENDS = re.compile(r"(?:End\s+(?P<end>Sub|Function|Property|If|Select|With|Type|Enum)|(?P<word>Loop|Wend|#End))\b", re.I)
CLOSES = {"loop": "do", "wend": "while", "#end": "#if"}
# Statements that are valid only directly inside a block of the other kind.
OWNERS = {"else": "if", "elseif": "if", "case": "select", "#else": "#if", "#elseif": "#if"}


def logical_lines(code):
    """Joins lines that go on with " _"; yields each with the number of its first line."""
    start, joined = 0, ""
    for number, text in enumerate(code.splitlines() + [""], 1):
        body = text.strip()
        start = start or number
        joined += body.removesuffix("_")
        if body != "_" and not body.endswith(" _"):
            yield start, joined
            start, joined = 0, ""


def statements(text):
    """Splits a line without literals at its colons and at the Then of a short If.

    "If a Then b Else c" gives "If a Then ...", "b" and "c": such an If has no End If.
    """
    text = re.sub(r"^\d+:?\s+", "", text)
    # Date literals and named arguments contain colons of their own.
    for part in re.split(r":(?!=)", re.sub(r"#\d[\d/:. \-APMapm]*#", "0", text)):
        short = re.match(r"\s*(If\b.*?\bThen\b)\s*(\S.*)$", part, re.I)
        if short:
            yield short[1] + " ..."
            for branch in re.split(r"\bElse\b", short[2], flags=re.I):
                yield from statements(branch)
        elif part.strip() and not re.match(r"\s*Rem\b", part, re.I):
            yield part.strip()


def block_fault(blocks, statement):
    """Follows the open blocks, a list of (kind, loop variable), over one statement; its fault or None."""
    first = re.match(r"#?\w*", statement)[0].lower()
    ends = ENDS.match(statement)
    if ends or first == "next":
        names = statement[4:].lower().replace(" ", "").split(",") if first == "next" else [""]
        kind = "for" if first == "next" else CLOSES.get(first) or ends["end"].lower()
        for name in names:
            opened, variable = blocks.pop() if blocks else ("nothing", "")
            if opened != kind or (name and name != variable):
                return f"{statement} ends {opened.title()} {variable}"
    elif blocks and blocks[-1][0] in ("type", "enum"):
        return None  # members may be named like statements
    elif re.match(r"End\s+\w", statement, re.I):
        return f"{statement} is no statement"
    elif first == "exit":
        kind = statement[5:].strip().lower()
        return None if kind in dict(blocks) else f"{statement} outside of one"
    elif first in OWNERS:
        return None if blocks and blocks[-1][0] == OWNERS[first] else f"{first.title()} outside of its block"
    for begins in BEGINS if not ends and first != "next" else ():
        if begun := begins.match(statement):
            kind = begun["kind"].lower()
            nested = kind in ("sub", "function", "property") and len(blocks) > 0
            blocks.append((kind, (begun.groupdict().get("variable") or "").lower()))
            if nested or (kind.endswith("if") and not re.search(r"\bThen$", statement, re.I)):
                return f"{kind.title()} inside another block" if nested else "If without Then"
    return None


def code_faults(code):
    blocks = []
    for line, text in logical_lines(code):
        # Strings keep their length, so that an empty one can still be told from another.
        bare = STRING.sub(lambda match: f'"{"#" * len(match[1])}"', text)
        bare = "" if re.match(r"Rem\b", text, re.I) else re.sub(r'^((?:[^"\']|"[^"]*")*)\'.*', r"\1", bare)
        if bare.count('"') % 2:
            yield line, "a string is not closed"
        if re.search(r'"Scripting\.', text, re.I):
            yield line, "the Scripting library is no part of Visual Basic 5"
        for statement in statements(bare):
            if fault := block_fault(blocks, statement):
                yield line, fault
            if newer := NEWER.search(statement):
                yield line, f"{newer[0]} came only after Visual Basic 5"
            if re.match(r"((Public|Private)\s+)?Declare\b(?!\s+(Sub|Function)\s+\w+\s+Lib\s+\"#+\")", statement, re.I):
                yield line, "Declare without its Lib"
    for kind, _ in blocks:
        yield 0, f"{kind.title()} is never ended"


def ask(bns, *arguments):
    """What the program BNS answers in JSON."""
    return json.loads(subprocess.run([bns, *arguments, "--json"], check=True, capture_output=True).stdout)


def faults_in(bns, folder):
    libraries = sorted(folder.glob("*.bns"))
    check = subprocess.run([bns, "check", "--strict", *libraries], capture_output=True, text=True)
    if check.returncode != 0:
        yield check.stdout + check.stderr + "the program finds faults"
        return
    snippets = 0
    for library in libraries:
        for listed in ask(bns, "list", library):
            snippets += 1
            snippet = ask(bns, "show", library, f"#{listed['position']}")
            faults = [(0, f"it has no {part}") for part in ("name", "description", "code") if not snippet[part].strip()]
            if snippet["attachment"]:
                faults.append((0, "it has an attachment, which nobody else has"))
            for line, text in [*faults, *code_faults(snippet["code"])]:
                yield f"{library.name}: {snippet['name']}: {line}: {text}"
    if len(libraries) < MIN_LIBRARIES or snippets < MIN_SNIPPETS:
        yield f"{len(libraries)} libraries and {snippets} snippets, not {MIN_LIBRARIES} and {MIN_SNIPPETS}"


def main():
    faults = list(faults_in(sys.argv[1], Path(sys.argv[2])))
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
