#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Makes Symbols/Stroke.sym, the stroked text face: make_stroke_face.py [FOLDER] > Symbols/Stroke.sym

FOLDER holds the Hershey fonts as Debian's package hershey-fonts-data installs them (/usr/share/hershey-fonts). ASCII
and most Greek letters are converted from its "simplex" fonts; everything else is drawn in drawn_glyphs.py or composed
of these. Symbols/LICENCE-hershey.txt is the acknowledgement that has to travel with the data.

A line of a .jhf file: five columns of the number of the glyph, three of the number of pairs, then the pairs, each
character standing for its distance from "R". The first pair holds the left and right side of the glyph, " R" lifts the
pen. Vertical coordinates grow downwards; the baseline is 9 below the origin.
"""

import re
import sys
import unicodedata
from pathlib import Path

from drawn_glyphs import ACCENTED, ACCENTS, ALIKE, BELOW, GLYPHS

BASELINE = 9
CAPITAL, SMALL = 21, 14
NUMBERS_OF_STEP = {"M": 2, "L": 2, "Q": 4, "C": 6, "A": 5, "Z": 0}

HEAD = """shared-symbols 1
# SPDX-License-Identifier: MIT AND LicenseRef-Hershey
# Copyright (c) 2026 The Shared authors
#
# A face of strokes with ASCII, Latin-1, Greek and Cyrillic, made by tools/symbols/make_stroke_face.py.
# ASCII and most Greek letters are converted from the Hershey Fonts:
# - The Hershey Fonts were originally created by Dr. A. V. Hershey while working at the U. S. National Bureau of
#   Standards.
# - The format of the Font data in this distribution was originally created by James Hurt, Cognition, Inc.,
#   900 Technology Park Drive, Billerica, MA 01821 (mit-eddie!ci-dandelion!hurt)
# The format of this file is another one. Letters and signs that those fonts lack are the authors' own.
name "Shared Stroke"
em 32
ascent 30
descent 9
capheight 21
xheight 14
underline -4 2
strikeout 8 2
pen 2
missing U+25A1
"""


def read_hershey(path):
    """Yields (advance, path) of the glyphs of a file, in its order."""
    for line in path.read_text(encoding="ascii").splitlines():
        if not line.strip():
            continue
        count = int(line[5:8])
        pairs = [line[8 + 2 * i : 10 + 2 * i] for i in range(count)]
        left, right = (ord(ch) - ord("R") for ch in pairs[0])
        steps, pen_is_up = [], True
        for pair in pairs[1:]:
            if pair == " R":
                pen_is_up = True
                continue
            x, y = ord(pair[0]) - ord("R") - left, BASELINE - (ord(pair[1]) - ord("R"))
            if pen_is_up:
                steps.append(f"M {x} {y}")
            elif steps[-1].startswith("M") or not steps:
                steps.append(f"L {x} {y}")
            else:
                steps[-1] += f" {x} {y}"
            pen_is_up = False
        yield right - left, " ".join(steps)


def steps_of(path):
    """Yields (letter, numbers) of each step, repeated ones apart."""
    for letter, rest in re.findall(r"([A-Z])([^A-Z]*)", path):
        numbers = [float(word) for word in rest.split()]
        size = NUMBERS_OF_STEP[letter]
        assert (len(numbers) % size == 0 and numbers) if size else not numbers, path
        for begin in range(0, max(len(numbers), 1), size or 1):
            yield letter, numbers[begin : begin + size]


def number(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def moved(path, dx, dy):
    """The path moved; steps of one letter are joined."""
    out, before = [], ""
    for letter, numbers in steps_of(path):
        places = 2 if letter == "A" else len(numbers)
        shifted = [v + ((dx, dy)[i % 2] if i < places else 0) for i, v in enumerate(numbers)]
        words = " ".join(number(v) for v in shifted)
        out.append(words if letter == before and letter in "LQC" else f"{letter} {words}".strip())
        before = letter
    return " ".join(out)


def sides(path):
    """The least and largest x of the points of a path, good enough to find its middle."""
    xs = []
    for letter, numbers in steps_of(path):
        xs += [numbers[0] - numbers[2], numbers[0] + numbers[2]] if letter == "A" else numbers[0::2]
    return min(xs), max(xs)


def top(character):
    return CAPITAL if unicodedata.category(character) == "Lu" else SMALL


def accented(glyphs, base, accent):
    _, advance, path = glyphs[ord(base)]
    left, right = sides(path)
    middle = (left + right) / 2
    if accent == "before":
        return advance + 4, moved(path, 4, 0) + " " + moved("M 2.5 21 L 0 16", 1, 0)
    if accent in BELOW:
        return advance, path + " " + moved(BELOW[accent], middle, 0)
    return advance, path + " " + moved(ACCENTS[accent], middle, top(base))


def name_of(code):
    return unicodedata.name(chr(code), f"U+{code:04X}").lower()


def collect(folder):
    glyphs = {}
    for i, (advance, path) in enumerate(read_hershey(folder / "rowmans.jhf")):
        if i < 0x5F:  # the last is a block for "delete"
            glyphs[0x20 + i] = (name_of(0x20 + i), advance, path)
    greek = list(read_hershey(folder / "greeks.jhf"))
    for first, code in ((ord("A") - 0x20, 0x391), (ord("a") - 0x20, 0x3B1)):
        for i in range(24):
            # The code behind rho is that of a final sigma, which has no capital.
            letter = code + i + (1 if i >= 17 else 0)
            glyphs[letter] = (name_of(letter), *greek[first + i])
    for code, (name, advance, path) in GLYPHS.items():
        glyphs[code] = (name, advance, moved(path, 0, 0))
    for code, (name, other) in ALIKE.items():
        glyphs[code] = (name, *glyphs[ord(other)][1:])
    for code, (name, base, accent) in ACCENTED.items():
        glyphs[code] = (name, *accented(glyphs, base, accent))
    return glyphs


def wrapped(path, width=110):
    line = ""
    for step in re.findall(r"[A-Z][^A-Z]*", path):
        words = step.split()
        # A long row of places is broken behind a whole one of them.
        while len(" ".join(words)) > width:
            size, end = max(NUMBERS_OF_STEP[words[0]], 1), 1
            while len(" ".join(words[: end + size])) < width:
                end += size
            yield from ([line] if line else [])
            line = ""
            yield " ".join(words[:end])
            words = [words[0]] + words[end:]
        step = " ".join(words)
        if line and len(line) + len(step) >= width:
            yield line
            line = ""
        line = f"{line} {step}".strip()
    if line:
        yield line


def main():
    folder = Path(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/hershey-fonts")
    glyphs = collect(folder)
    print(HEAD + f"glyphs {len(glyphs)}")
    for code, (name, advance, path) in sorted(glyphs.items()):
        print(f'\nglyph U+{code:04X} "{name.replace(chr(34), "")}"\nadvance {number(advance)}')
        for line in wrapped(path):
            print(line)
    print("end")


if __name__ == "__main__":
    main()
