#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs benchmark programs: bench_run.py [--rows REGEX] --out FOLDER [--runner COMMAND] [--ours-only] PROGRAM...

All contenders of a program share one process and are repeated in mixed order, so that what disturbs the machine for
a while hits all of them alike. A contender whose name ends in "@alone" (subsystem/task/geos@alone/30) has a process
of its own for every repetition, at one size: nothing is left in memory by the others. One that fails there is told
and left out, unless it is ours. Results go to FOLDER/<program>.json, for tools/bench_table.py.

Contenders of a row that tell the counters `area` and `area_tolerance` (relative) must agree on the area.
"""

import argparse
import json
import pathlib
import random
import re
import subprocess
import sys

from bench_table import ALONE, split_name


class Failure(Exception):
    """A benchmark program that ended with an error."""


def run(command, log):
    """Runs a command to its end; what it prints goes to `log` and is returned."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                            check=False)
    with open(log, "a", encoding="utf-8") as stream:
        stream.write(result.stdout)
    if result.returncode != 0:
        last = "\n".join(result.stdout.splitlines()[-20:])
        raise Failure(f"{' '.join(command[:2])} ended with status {result.returncode}\n{last}")
    return result.stdout


def names_of(output, rows, ours_only):
    """The benchmarks among the lines of a listing that are wanted."""
    wanted = re.compile(rows)
    names = []
    for name in output.split("\n"):
        name = name.strip()
        key = split_name(name)
        if key is None or not wanted.search(name) or (ours_only and key[1] != "ours"):
            continue
        names.append(name)
    return names


def is_alone(name):
    return any(part.endswith(ALONE) for part in name.split("/"))


def filter_of(names):
    """A regular expression, extended POSIX and ECMAScript alike, for just these names."""
    quoted = [re.sub(r"([.\[\](){}\\*+?|^$])", r"\\\1", name) for name in names]
    return "^(" + "|".join(quoted) + ")$"


def check_areas(entries):
    """Demands of all contenders of a row that they agree on the area of the result, within the wider tolerance."""
    first = {}
    for entry in entries:
        if "area" not in entry:
            continue
        name = entry.get("run_name", entry["name"])
        row, _, size = split_name(name)
        other = first.setdefault((row, size), entry)
        tolerance = max(entry["area_tolerance"], other["area_tolerance"])
        if not abs(entry["area"] - other["area"]) <= tolerance * abs(other["area"]):
            raise Failure(f"{name}: the area is {entry['area']:.17g}, that of {other['name']} {other['area']:.17g}")


class Program:
    def __init__(self, path, options):
        self.path = pathlib.Path(path)
        self.options = options
        self.command = ([options.runner] if options.runner else []) + [str(path)]
        self.out = pathlib.Path(options.out) / (self.path.stem + ".json")
        self.log = self.out.with_suffix(".log")

    def list(self):
        names = names_of(run([*self.command, "--benchmark_list_tests"], self.log), self.options.rows,
                         self.options.ours_only)
        return [name for name in names if not is_alone(name)], [name for name in names if is_alone(name)]

    def measure(self, names, repetitions):
        part = self.out.with_suffix(".part")
        run([*self.command, f"--benchmark_filter={filter_of(names)}", f"--benchmark_repetitions={repetitions}",
             f"--benchmark_min_time={self.options.min_time}", "--benchmark_enable_random_interleaving=true",
             f"--benchmark_out={part}", "--benchmark_out_format=json"], self.log)
        document = json.loads(part.read_text(encoding="utf-8"))
        part.unlink()
        return document

    def measure_alone(self, names):
        """Every repetition goes once through all contenders, in mixed order."""
        failed = set()
        for _ in range(self.options.repetitions):
            for name in random.sample(names, len(names)):
                if name in failed:
                    continue
                try:
                    yield self.measure([name], 1)
                except Failure as failure:
                    if split_name(name)[1] == "ours":
                        raise
                    failed.add(name)
                    print(f"left out: {name}: {failure}", file=sys.stderr)

    def run(self):
        """Returns False when no benchmark of the program is wanted."""
        together, alone = self.list()
        if not together and not alone:
            return False
        print(f"Running {self.path} ({len(together)} together, {len(alone)} alone)", flush=True)
        documents = [self.measure(together, self.options.repetitions)] if together else []
        documents += self.measure_alone(alone)
        check_areas(entry for document in documents for entry in document["benchmarks"])
        merged = {"context": documents[0].get("context", {}) if documents else {},
                  "benchmarks": [entry for document in documents for entry in document["benchmarks"]]}
        self.out.write_text(json.dumps(merged, indent=1), encoding="utf-8")
        return True


def main():
    parser = argparse.ArgumentParser(description="Runs benchmark programs.")
    parser.add_argument("--rows", default=".", help="regular expression that names must match")
    parser.add_argument("--out", required=True, help="folder for the results, which exists")
    parser.add_argument("--runner", help="program that runs the benchmarks (of another system)")
    parser.add_argument("--ours-only", action="store_true", help="run only contenders named ours")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--min-time", type=float, default=0.1, help="seconds a measurement lasts at least")
    parser.add_argument("programs", nargs="+")
    options = parser.parse_args()
    try:
        found = [Program(path, options).run() for path in options.programs]
    except Failure as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0 if any(found) else 3


if __name__ == "__main__":
    sys.exit(main())
