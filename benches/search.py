#!/usr/bin/env python3
"""Compares `bns search --count` with `grep -c` over the largest library there can be.

    benches/search.py BNS [LIMIT]

Makes a library of 32,767 snippets of about 2 KB each, runs both programs in turn with the same patterns, and
prints the shortest times of each and their ratio. With LIMIT, exits with 1 where a ratio is above it.
"""

import os
import random
import subprocess
import sys
import tempfile
import time

SNIPPETS = 32767
ROUNDS = 9
WORDS = ("Dim Set If Then Else End Sub Function Loop Until Next For Each With Exit Public Private ByVal "
         "String Long nCount sText oItem vbCrLf True False Nothing Call Len Mid Left Trim InStr").split()

# What is looked for: options of bns, of grep, and the pattern.
CASES = [
    ("a rare word", [], ["-F"], "Zanzibar"),
    ("nowhere", [], ["-F"], "xylophone quartz"),
    ("in one line of ten", [], ["-F"], "InStr Mid"),
    ("ignoring case", ["-i"], ["-F", "-i"], "zanzibar"),
    ("whole words", ["-w"], ["-F", "-w"], "Zanzibar"),
    ("an expression", ["-E"], ["-E"], "Zan[a-z]*r"),
]


def make_library(path):
    numbers = random.Random(5)
    with open(path, "w", encoding="cp1252", newline="\r\n") as library:
        library.write("BNS2.0\n")
        for i in range(SNIPPETS):
            library.write(f"Snippet {i}\n\nWhat snippet {i} does.\n(,)\n")
            size = 0
            while size < 2000:
                line = " " * numbers.choice((4, 8, 12)) + " ".join(numbers.choices(WORDS, k=7))
                if numbers.random() < 1e-4:
                    line += " Zanzibar"
                library.write(line + "\n")
                size += len(line) + 2
            library.write("...\n" if i == SNIPPETS - 1 else "(.)\n")


def run(command):
    start = time.perf_counter()
    output = subprocess.run(command, capture_output=True, check=False, text=True).stdout
    return time.perf_counter() - start, output.strip()


def main():
    bns = sys.argv[1]
    limit = float(sys.argv[2]) if len(sys.argv) > 2 else None
    above = False
    with tempfile.TemporaryDirectory() as folder:
        library = os.path.join(folder, "large.bns")
        make_library(library)
        print(f"{SNIPPETS} snippets, {os.path.getsize(library) / 1e6:.0f} MB; the shortest of {ROUNDS} runs")
        for name, ours, theirs, pattern in CASES:
            times = {"bns": [], "grep": []}
            counts = set()
            for _ in range(ROUNDS):
                for program, command in (("bns", [bns, "search", "--count", *ours, pattern, library]),
                                         ("grep", ["grep", "-c", *theirs, pattern, library])):
                    taken, count = run(command)
                    times[program].append(taken)
                    counts.add(count)
            if len(counts) != 1:
                sys.exit(f"{name}: the programs disagree: {counts}")
            ratio = min(times["bns"]) / min(times["grep"])
            above = above or (limit is not None and ratio > limit)
            print(f"{name:20} {counts.pop():>6} lines   bns {min(times['bns']) * 1000:6.1f} ms   "
                  f"grep {min(times['grep']) * 1000:6.1f} ms   ratio {ratio:.2f}")
    sys.exit(1 if above else 0)


if __name__ == "__main__":
    main()
