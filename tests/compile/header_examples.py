#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Compiles the examples in the file comments of the public headers: header_examples.py ROOT -- COMPILER ARGUMENT...

An example is a run of lines of the file comment that are set in by four blanks more, but for drawings, which stand
between lines of three backquotes. It becomes the body of a function behind all public headers, in a namespace that has
the name of the header. One that shows a whole function or class is compiled as it is. Three dots stand for code of the reader. ExampleNames.h declares what examples take as given; a value
(its name begins small) may be missing there, then what is done with it is not checked. Examples of the headers that
build on Boost or Eigen compile only where these are. Understands the messages of g++.
"""

import os
import pathlib
import re
import subprocess
import sys

UNITS = re.compile(r"shared_units\((?P<folder>\S+)\s+HEADERS(?P<headers>.*?)(\bSOURCES\b|\))", re.DOTALL)
EXAMPLE = re.compile(r"^/// {5}(.*)$")
DOTS = re.compile(r"\{ *\.\.\. *\}|(?<![\w>)\]&*])(?<!, )\.\.\.(?!\w)")
# An error for a name that the reader is to have; with it, the error of a call that it appears in.
GIVEN = re.compile(r"error: '(?P<name>[a-z_]\w*)' "
                   r"(was not declared in this scope|does not name a type|has not been declared)")
PLACE = re.compile(r"^(?P<file>shared/[^:]+):(?P<line>\d+):")
LOST_WORD = re.compile(r"^/// {5,}(?P<name>[a-z]\w*)( [A-Za-z]|$)")
WHOLE = re.compile(r"^(int \w+\(|void \w+::|template|namespace)")
# What a header needs besides itself.
CONDITIONS = {"shared/text/GStringFormatter.h": "defined(__cpp_lib_format)",
              "shared/polygons/BoostGeometry.h": "__has_include(<boost/geometry.hpp>)",
              "shared/geometry/EigenMaps.h": "__has_include(<Eigen/Core>)",
              "shared/numerics/doubledouble/DoubleDoubleEigen.h": "__has_include(<Eigen/Core>)"}
FEWEST = 40  # an emptier result shows that the examples were not found


def public_headers(root):
    """Yields the paths of the headers that are installed, from the root."""
    for listing in sorted((root / "shared").rglob("CMakeLists.txt")):
        for match in UNITS.finditer(listing.read_text(encoding="utf-8")):
            for name in match["headers"].split():
                path = f"shared/{match['folder']}/{name}"
                if (root / path).is_file():
                    yield path


def without_dots(line):
    """A line whose dots, which stand for code of the reader, are code that does nothing."""
    return ";" if line.strip() == "..." else DOTS.sub("{}", line)


def examples(text):
    """Yields (line number, lines) of every example of a header's file comment."""
    block, begin, is_drawing = [], 0, False
    for number, line in enumerate(text.splitlines(), 1):
        is_drawing ^= line.startswith("/// ```")
        match = None if is_drawing else EXAMPLE.match(line)
        if match:
            begin = begin if block else number
            block.append(without_dots(match[1]))
        elif block and line.strip() == "///":
            block.append("")
        else:
            if block:
                yield begin, block
            block = []
            if line.startswith("#pragma once"):
                return


def as_code(header, begin, block):
    """The lines that make a function, or what stands for itself, of an example."""
    name = pathlib.PurePosixPath(header).stem
    whole = WHOLE.match(block[0])
    includes = [line for line in block if line.startswith("#")]
    body = ["" if line.startswith("#") else line.replace("int main(", "int Main(") for line in block]
    platform = ["using namespace shr::platform;"] if header.startswith("shared/platform/") else []
    return [*includes, f"namespace shr::example::in_{name} {{", *platform, "" if whole else f"void At{begin}() {{",
            f'#line {begin} "{header}"', *body, "}" if whole else "}}"]


def program(root):
    """Returns one source with all examples, and their number."""
    headers = sorted(public_headers(root))
    free = [header for header in headers if header not in CONDITIONS]
    lines = ["#include <version>", *(f'#include "{header}"' for header in free),
             '#include "tests/compile/ExampleNames.h"']
    count = 0
    for header in [*free, *(header for header in headers if header in CONDITIONS)]:
        condition = CONDITIONS.get(header)
        if condition:
            lines += [f"#if {condition}", f'#include "{header}"']
        for begin, block in examples((root / header).read_text(encoding="utf-8")):
            count += 1
            lines += as_code(header, begin, block)
        if condition:
            lines.append("#endif")
    return "\n".join(lines) + "\n", count


def is_given(root, error):
    """Whether an error is that a name is missing which the reader is to have. A comment that was broken in the wrong
    place leaves words that look like one: a line that begins with the name and is it alone or goes on with another."""
    match = GIVEN.search(error)
    place = PLACE.match(error)
    if not match or not place:
        return False
    line = (root / place["file"]).read_text(encoding="utf-8").splitlines()[int(place["line"]) - 1]
    lost = LOST_WORD.match(line)
    return not lost or lost["name"] != match["name"]


def check(root, command):
    """Returns the errors in the examples of a tree, and the number of examples."""
    source, count = program(root)
    process = subprocess.run([*command, "-fsyntax-only", "-x", "c++", "-w", "-"], input=source, text=True,
                             encoding="utf-8", cwd=root, check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             env={**os.environ, "LC_ALL": "C"})
    errors = [line for line in process.stdout.splitlines() if "error: " in line]
    return [error for error in errors if not is_given(root, error)], count


def main():
    if len(sys.argv) < 4 or sys.argv[2] != "--":
        sys.exit(__doc__)
    errors, count = check(pathlib.Path(sys.argv[1]), sys.argv[3:])
    print("\n".join([*errors[:60], f"{count} examples, {len(errors)} errors"]))
    return 1 if errors or count < FEWEST else 0


if __name__ == "__main__":
    sys.exit(main())
