#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that every row of docs/faults.md names tests, and that these and the paths of docs/platforms.md exist."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def known_tests():
    sources = "".join(path.read_text(encoding="utf-8") for path in (ROOT / "tests").rglob("*.cpp"))
    names = {f"{suite}.{name}" for suite, name in re.findall(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", sources)}
    lists = (ROOT / "tests" / "faults" / "CMakeLists.txt").read_text(encoding="utf-8")
    kinds = re.search(r"foreach\(kind ([\w ]+)\)", lists)[1].split()
    for name in re.findall(r"kill_test\((\S+)", lists):
        names.update(f"Faults.{name}".replace("${kind}", kind) for kind in kinds)
    return names


def main():
    faults = []
    rows = [line for line in (ROOT / "docs" / "faults.md").read_text(encoding="utf-8").splitlines()
            if line.startswith("| ") and not line.startswith(("| fault |", "| --- |"))]
    tests = known_tests()
    for row in rows:
        named = re.findall(r"`(\w+\.[\w.]+)`", row.rsplit("|", 2)[1])
        faults += [f"docs/faults.md has a row without a test: {row}"] if not named else []
        faults += [f"docs/faults.md names {name}, which does not exist" for name in named if name not in tests]
    platforms = (ROOT / "docs" / "platforms.md").read_text(encoding="utf-8")
    faults += [f"docs/platforms.md names {name}, which does not exist"
               for name in re.findall(r"`(tests/[\w./-]+)`", platforms) if not (ROOT / name).exists()]
    print("\n".join(faults) or f"No fault found in {len(rows)} rows.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
