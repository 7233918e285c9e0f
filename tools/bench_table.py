#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Makes one table: bench_table.py [--cache CMakeCache.txt] [--out table.tsv] RESULT.json... [--windows RESULT.json...]

Benchmarks are named subsystem/task/contender/size. The contender is `ours`, a peer, or a limit whose name begins with
an underscore (what the memory alone would take, say). The ending "@alone" of a contender that has processes of its own
(tools/bench_run.py) is no part of its name. A row of the table is one work at one size: our time beside
that of the fastest peer, the median of all repetitions in CPU seconds. The ratio is peer time / our time, above 1
where ours is ahead. The exponent says how our time grows over the sizes of a work: 1 is linear. The column `windows`
is our time on the same row in the Windows build; rows where it is over WINDOWS_GOAL of ours are listed below the table.
"""

import argparse
import collections
import json
import math
import re
import statistics
import sys

UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
COLUMNS = ["row", "size", "ours", "peer_time", "peer", "ratio", "exponent", "windows"]
ALONE = "@alone"
WINDOWS_GOAL = 1.15
# What Google Benchmark adds to a name for settings of a run.
SETTING = re.compile(r"^(iterations|min_time|min_warmup_time|repeats|process_time|real_time|manual_time|threads)(:|$)")


def split_name(name):
    """Returns (row, contender, size), or None for a name that is not of the form the table knows."""
    parts = [part for part in name.split("/") if not SETTING.match(part)]
    size = 0
    if parts and re.fullmatch(r"(\w+:)?\d+", parts[-1]):
        size = int(parts.pop().split(":")[-1])
    if len(parts) < 3:
        return None
    return "/".join(parts[:-1]), parts[-1].removesuffix(ALONE), size


def read_times(documents):
    """Returns ({(row, size): {contender: median seconds}}, [names left out])."""
    samples = collections.defaultdict(list)
    left_out = []
    for document in documents:
        for entry in document["benchmarks"]:
            if entry.get("run_type", "iteration") != "iteration":
                continue
            if entry.get("error_occurred"):
                raise SystemExit(f"{entry['name']}: {entry.get('error_message', 'failed')}")
            key = split_name(entry.get("run_name", entry["name"]))
            if key is None:
                left_out.append(entry["name"])
                continue
            samples[key].append(entry["cpu_time"] * UNITS[entry["time_unit"]])
    times = collections.defaultdict(dict)
    for (row, contender, size), values in samples.items():
        times[row, size][contender] = statistics.median(values)
    return dict(times), sorted(set(left_out))


def growth(points):
    """Slope of log time over log size by least squares; None with fewer than two sizes."""
    points = [(math.log(size), math.log(time)) for size, time in points if size > 0 and time > 0]
    if len({x for x, _ in points}) < 2:
        return None
    mean_x = statistics.fmean(x for x, _ in points)
    mean_y = statistics.fmean(y for _, y in points)
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / sum((x - mean_x) ** 2 for x, _ in points)


def make_rows(times, windows=None):
    """Returns the rows as dictionaries by COLUMNS; what a row lacks is None. `windows` are the times of that build.

    The keys "slower" and "limits" hold the times of the other peers and of the limits.
    """
    rows = []
    for row, size in sorted(times):
        contenders = times[row, size]
        peers = {name: time for name, time in contenders.items() if name != "ours" and name[0] != "_"}
        peer = min(peers, key=peers.get, default=None)
        ours = contenders.get("ours")
        slope = growth([(s, t["ours"]) for (r, s), t in times.items() if r == row and "ours" in t])
        rows.append({
            "row": row, "size": size, "ours": ours, "peer_time": peers.get(peer), "peer": peer,
            "ratio": peers[peer] / ours if peer and ours else None, "exponent": slope,
            "windows": (windows or {}).get((row, size), {}).get("ours"),
            "limits": {name: time for name, time in contenders.items() if name[0] == "_"},
            "slower": {name: time for name, time in peers.items() if name != peer},
        })
    return rows


def text_of(value):
    if value is None:
        return ""
    return f"{value:.4g}" if isinstance(value, float) else str(value)


def print_table(header, lines, out):
    widths = [max(len(line[i]) for line in [header, *lines]) for i in range(len(header))]
    for line in [header, *lines]:
        cells = [line[0].ljust(widths[0]), *(cell.rjust(width) for cell, width in zip(line[1:], widths[1:]))]
        print("  ".join(cells).rstrip(), file=out)


def print_banner(documents, cache, out):
    context = documents[0].get("context", {}) if documents else {}
    model = next((line.split(":", 1)[1].strip() for line in lines_of("/proc/cpuinfo") if line.startswith("model name")),
                 "unknown processor")
    print(f"{context.get('date', '')}  {model}, {context.get('num_cpus', '?')} processors", file=out)
    settings = dict(re.findall(r"^(\w+):\w+=(.*)$", "\n".join(lines_of(cache)), re.MULTILINE)) if cache else {}
    build_type = settings.get("CMAKE_BUILD_TYPE", "")
    flags = settings.get(f"CMAKE_CXX_FLAGS_{build_type.upper()}", "")
    print(f"{settings.get('CMAKE_CXX_COMPILER', '')} {settings.get('CMAKE_CXX_FLAGS', '')} {flags} ({build_type})", file=out)
    if cache and "-O" not in flags.replace("-O0", ""):
        print("WARNING: this is a build without optimisation, its times say nothing.", file=out)
    if context.get("cpu_scaling_enabled"):
        print("WARNING: the processor changes its clock, times will vary.", file=out)
    load = context.get("load_avg", [])
    if load and load[0] > 1:
        print(f"WARNING: other programs were running (load {load[0]:.1f}), times will vary.", file=out)
    print(file=out)


def lines_of(path):
    try:
        with open(path, encoding="utf-8") as stream:
            return stream.read().splitlines()
    except OSError:
        return []


def load(paths):
    documents = []
    for path in paths:
        with open(path, encoding="utf-8") as stream:
            documents.append(json.load(stream))
    return documents


def slow_on_windows(rows):
    """The rows over the goal, worst first."""
    slow = [row for row in rows if row["windows"] and row["ours"] and row["windows"] > WINDOWS_GOAL * row["ours"]]
    return sorted(slow, key=lambda row: -row["windows"] / row["ours"])


def main():
    parser = argparse.ArgumentParser(description="Makes one table of benchmark results.")
    parser.add_argument("--cache", help="CMakeCache.txt of the build, for the compiler and its flags")
    parser.add_argument("--out", help="where the tab-separated table goes")
    parser.add_argument("results", nargs="+", help="JSON files of Google Benchmark")
    parser.add_argument("--windows", nargs="*", default=[], help="the same of the Windows build")
    options = parser.parse_args()

    documents = load(options.results)
    times, left_out = read_times(documents)
    rows = make_rows(times, read_times(load(options.windows))[0])
    lines = [[text_of(row[column]) for column in COLUMNS] for row in rows]

    print_banner(documents, options.cache, sys.stdout)
    print_table(COLUMNS, lines, sys.stdout)
    for key, title in (("slower", "slower peers of"), ("limits", "limits of")):
        others = [[row["row"], text_of(row["size"]), name, text_of(time),
                   text_of(time / row["ours"] if row["ours"] else None)]
                  for row in rows for name, time in sorted(row[key].items())]
        if others:
            print()
            print_table([title, "size", "contender", "time", "ratio"], others, sys.stdout)
    slow = [[row["row"], text_of(row["size"]), text_of(row["windows"] / row["ours"])] for row in slow_on_windows(rows)]
    if slow:
        print()
        print_table([f"Windows over {WINDOWS_GOAL} of Linux", "size", "quotient"], slow, sys.stdout)
    for name in left_out:
        print(f"not in the table, its name is not subsystem/task/contender/size: {name}")
    if options.out:
        with open(options.out, "w", encoding="utf-8") as stream:
            for line in [COLUMNS, *lines]:
                stream.write("\t".join(line) + "\n")
        print(f"\n{options.out}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
