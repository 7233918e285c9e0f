#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that no inline function has two bodies: check_bodies.py LINKER OBJECT...

An inline function or a template that two sources define in different words breaks the one-definition rule: the linker
keeps either, without a word. LINKER is gold, which can compare the places where such functions are defined, by the line
tables of the objects. The objects are linked into a program that is thrown away; symbols that are missing
or defined twice in it (each test has its own helpers) do not matter. Prints what has two bodies and exits with 1 if
anything has.
"""

import pathlib
import subprocess
import sys
import tempfile

MARK = "defined in multiple places"


def two_bodies(linker, objects):
    """Returns gold's paragraphs about functions that are defined in several places."""
    with tempfile.TemporaryDirectory() as folder:
        response = pathlib.Path(folder) / "objects"
        response.write_text("\n".join(f'"{path}"' for path in objects), encoding="utf-8")
        process = subprocess.run(
            [linker, "--detect-odr-violations", "--unresolved-symbols=ignore-all", "--allow-multiple-definition",
             "--defsym=__dso_handle=0",
             "-o", f"{folder}/program", f"@{response}"],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        if process.returncode != 0:
            raise SystemExit(f"{linker} failed:\n{process.stdout[-4000:]}")
    paragraphs, inside = [], False
    for line in process.stdout.splitlines():
        inside = MARK in line or (inside and line.startswith("  "))
        if inside:
            paragraphs.append(line)
    return paragraphs


def main():
    linker, objects = sys.argv[1], sys.argv[2:]
    faults = two_bodies(linker, objects)
    print("\n".join(faults) or f"No inline function of {len(objects)} objects has two bodies.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
