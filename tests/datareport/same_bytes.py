#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the data report writes the same bytes on every target.

Usage: same_bytes.py [--update] DIGESTS DATA_FOLDER [EMULATOR ...] PROGRAM

The digests of what the program writes for each row of CASES must be those of the file DIGESTS, which is one for
all targets. After an intended change of the output, look at the new pages and run it with --update.
"""

import hashlib
import os
import subprocess
import sys
import tempfile

CASES = [
    ("earthquakes", ["--input", "earthquakes.csv", "--x", "longitude", "--y", "latitude", "--z", "depth"]),
    ("sampled", ["--input", "earthquakes.csv", "--sample", "500", "--x", "longitude", "--y", "latitude"]),
    ("cities", ["--input", "cities-utf16le.csv", "--x", "lon", "--y", "lat"]),
    ("countries", ["--input", "countries-attributes.csv", "--title", "Länder & <Kontinente>"]),
]


def digests_of(command, data):
    for name, arguments in CASES:
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([*command, *arguments, "--out", folder, "--quiet"], cwd=data, check=True)
            for output in sorted(os.listdir(folder)):
                with open(os.path.join(folder, output), "rb") as file:
                    yield f"{name} {output} {hashlib.sha256(file.read()).hexdigest()}\n"


def main(arguments):
    update = arguments[:1] == ["--update"]
    expected_path, data, *command = arguments[1:] if update else arguments
    command = [os.path.abspath(part) if os.path.exists(part) else part for part in command]
    expected_path = os.path.abspath(expected_path)
    found = list(digests_of(command, data))
    if update:
        with open(expected_path, "w", encoding="ascii", newline="\n") as file:
            file.writelines(found)
        return 0
    with open(expected_path, encoding="ascii") as file:
        expected = file.readlines()
    for line in sorted(set(found) - set(expected)):
        print("not expected:", line, end="")
    return 0 if found == expected else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
