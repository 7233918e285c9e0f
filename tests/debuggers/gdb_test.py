#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Looks at the values of a program through the printers of gdb: gdb_test.py GDB PRINTERS PROGRAM"""

import os
import subprocess
import sys

# expression, what must be shown for it
EXPECTED = [
    ("text", '"Reykjavík 😀 \\"x\\""'),
    ("vector", "(1, 2.5, -3)"),
    ("box", "(0, 1) .. (2, 3)"),
    ("matrix", "(2, 0, 0)\n(0, 4, 0)\n(0, 0, 1)"),
    ("color", "#ff800040"),
    ("piece", "CPodVector of 1 = {(5, 6)}"),
    ("river", "GPolyline of 2 = {(0, 0), (3, 4)}"),
    ("land", 'GPolygon of 1 contours = {[0] = contour of 3: (0, 0) (4, 0) (4, 3)}'),
    ("country", "GPolygon2d of 1 polygons = {[0] = (0, 0) (4, 3) (4, 0) (0, 0)}"),
]


def main():
    gdb, printers, program = sys.argv[1:4]
    commands = ["set width 0", f"source {printers}", "break StopHere", "run", "up"]
    for name, _ in EXPECTED:
        commands += [f"echo <{name}>", f"output {name}", "echo \\n"]
    arguments = [part for command in commands for part in ("-ex", command)]
    process = subprocess.run([gdb, "-q", "-nx", "-batch", *arguments, "-ex", "kill", program], timeout=100, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, encoding="utf-8",
                             env={**os.environ, "ASAN_OPTIONS": "detect_leaks=0", "LC_ALL": "C.UTF-8"})
    wrong = [f"{name} is not shown as {expected!r}" for name, expected in EXPECTED
             if f"<{name}>{expected}" not in process.stdout]
    print("\n".join(wrong) + "\n" + process.stdout if wrong else "All values are shown.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
