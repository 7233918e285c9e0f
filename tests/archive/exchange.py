#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Lets two targets exchange archives: exchange.py OTHER PROGRAM...

OTHER is archive_exchange of the native build, PROGRAM that of this one with what it needs to run. Each stores a file,
each loads the file of the other, and both files have the same bytes. The status is 77 when OTHER has not been built.
"""

import pathlib
import subprocess
import sys
import tempfile

NOT_BUILT = 77


def main():
    other, program = [sys.argv[1]], sys.argv[2:]
    if not pathlib.Path(other[0]).exists():
        print(f"{other[0]} has not been built, so there is nobody to exchange files with.")
        return NOT_BUILT
    with tempfile.TemporaryDirectory() as folder:
        theirs, ours = pathlib.Path(folder) / "theirs.bin", pathlib.Path(folder) / "ours.bin"
        for command in ([*other, "store", theirs], [*program, "store", ours], [*other, "load", ours],
                        [*program, "load", theirs]):
            # The emulator must not hold the caller's pipe open.
            subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, check=True, timeout=100)
        if theirs.read_bytes() != ours.read_bytes():
            print("The two targets store different bytes.")
            return 1
        print(f"{ours.stat().st_size} bytes, the same from both targets and loaded by both.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
