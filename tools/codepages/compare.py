#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Compares what the two targets make of the code pages, from two outputs of codepage_dump.

    tools/codepages/compare.py LINUX.txt WINDOWS.txt           a line a page, then the sums
    tools/codepages/compare.py --extra LINUX.txt WINDOWS.txt   the rows that codepage-delta-extra.tsv lacks

Counted are the bytes, the byte pairs and the UTF-16 units whose conversions differ. Exit status 1 when any do.
"""

import sys


class Page:
    def __init__(self, served):
        self.served = served
        self.single, self.pairs, self.units, self.default = {}, {}, {}, ""

    def pair(self, key):
        return self.pairs.get(key) or self.single[key[:2]] + self.single[key[2:]]

    def unit(self, key):
        return self.units.get(key, self.default)

    def is_lead(self, byte):
        return sum(key[:2] == byte for key in self.pairs) > 200


def read(path):
    pages = {}
    page = None
    with open(path, encoding="ascii") as lines:
        for line in lines:
            kind, *fields = line.split()
            if kind == "page":
                page = pages[int(fields[0])] = Page(fields[1] == "served")
            elif kind == "default":
                page.default = fields[0]
            else:
                {"b": page.single, "p": page.pairs, "w": page.units}[kind][fields[0]] = fields[1]
    return pages


def differences(linux, windows):
    bytes_ = [key for key in sorted(windows.single) if linux.single[key] != windows.single[key]]
    pairs = [key for key in sorted(linux.pairs.keys() | windows.pairs.keys())
             if linux.pair(key) != windows.pair(key)]
    units = [key for key in sorted(linux.units.keys() | windows.units.keys())
             if linux.unit(key) != windows.unit(key)]
    return bytes_, pairs, units


def extra_rows(number, linux, windows):
    bytes_, pairs, units = differences(linux, windows)
    leads = [f"{byte:02X}" for byte in range(256) if windows.is_lead(f"{byte:02X}")]
    for byte in range(256):
        key = f"{byte:02X}"
        if key in leads and not linux.is_lead(key):
            yield f"{number}\t-\tlead\t{key}\t"
        elif key not in leads and (key in bytes_ or linux.is_lead(key)):
            yield f"{number}\t-\tb2w\t{key}\t{windows.single[key]}"
    for key in pairs:
        if key[:2] in leads and key[2:] != "00":
            yield f"{number}\t-\tb2w\t{key}\t{windows.pair(key)}"
    for key in units:
        yield f"{number}\t-\tw2b\t{key}\t{windows.unit(key)}"


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--extra"]
    if len(arguments) != 2:
        print(__doc__)
        return 2
    linux, windows = read(arguments[0]), read(arguments[1])
    both = [number for number in sorted(linux) if linux[number].served and
            number in windows and windows[number].served]
    if "--extra" in sys.argv:
        for number in (page for page in both if page > 1):  # 0 and 1 only name other pages
            for row in extra_rows(number, linux[number], windows[number]):
                print(row)
        return 0
    sums = [0, 0, 0]
    for number in both:
        counts = [len(keys) for keys in differences(linux[number], windows[number])]
        sums = [total + count for total, count in zip(sums, counts)]
        if any(counts):
            print(f"{number}: {counts[0]} bytes, {counts[1]} pairs, {counts[2]} units differ")
    print(f"served: {sum(page.served for page in linux.values())} on Linux, "
          f"{sum(page.served for page in windows.values())} on Windows, {len(both)} on both")
    print(f"differing in all: {sums[0]} bytes, {sums[1]} pairs, {sums[2]} units")
    return 1 if any(sums) else 0


if __name__ == "__main__":
    sys.exit(main())
