#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Tells what a public header costs a program that includes it: header_cost.py [options] [FOLDER ...]

Compiles a program that includes the header and does nothing else, once for each public header of the folders of
shared/ (default: geometry polygons), and prints a table: the CPU seconds of the compiler, the smallest of some runs,
how much that is above an empty program, and the lines the compiler saw after the preprocessor.

  --compiler NAME   the compiler to run, default g++
  --runs COUNT      how often each program is compiled, default 3
  --limit SECONDS   exit with 1 when a header costs more than this above the empty program
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
UNITS = re.compile(r"shared_units\((?P<folder>\S+)\s+HEADERS(?P<headers>.*?)(\bSOURCES\b|\))", re.DOTALL)


def public_headers(folder):
    """Returns the headers that the CMakeLists.txt of a folder of shared/ installs, by their path from the root."""
    text = (ROOT / "shared" / folder / "CMakeLists.txt").read_text()
    headers = []
    for match in UNITS.finditer(text):
        headers += [f"shared/{match['folder']}/{name}" for name in match["headers"].split()]
    return sorted(headers)


def command(compiler, *arguments):
    return [compiler, "-std=c++20", "-O2", f"-I{ROOT}", *arguments]


def cpu_seconds(arguments):
    """Runs a program and returns the CPU time of it and its children."""
    process = subprocess.Popen(arguments)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"failed: {' '.join(arguments)}")
    return usage.ru_utime + usage.ru_stime


def measure(compiler, runs, include):
    """Returns the CPU seconds for a program with this line in front, and its lines after the preprocessor."""
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "program.cpp"
        source.write_text(f"{include}\nint main() {{}}\n")
        compile_it = command(compiler, "-c", str(source), "-o", str(source.with_suffix(".o")))
        seconds = min(cpu_seconds(compile_it) for _ in range(runs))
        text = subprocess.run(command(compiler, "-E", "-P", str(source)), capture_output=True, check=True).stdout
    return seconds, text.count(b"\n")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("folders", nargs="*", default=["geometry", "polygons"])
    parser.add_argument("--compiler", default="g++")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--limit", type=float)
    options = parser.parse_args()
    empty, _ = measure(options.compiler, options.runs, "")
    print(f"{'header':<44} {'seconds':>8} {'above':>8} {'lines':>8}")
    print(f"{'(none)':<44} {empty:8.2f} {'':>8} {1:8}")
    too_dear = 0
    for folder in options.folders:
        for header in public_headers(folder):
            seconds, lines = measure(options.compiler, options.runs, f'#include "{header}"')
            above = seconds - empty
            too_dear += options.limit is not None and above > options.limit
            print(f"{header:<44} {seconds:8.2f} {above:8.2f} {lines:8}", flush=True)
    return 1 if too_dear else 0


if __name__ == "__main__":
    sys.exit(main())
