#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs programs whose standard output is full or closed: output_check.py PROGRAM [WORD...] [-- PROGRAM [WORD...]]...

Each must end with status 1 and one line on standard error that begins with its name, and nothing else may get what
was meant for standard output. With a standard output that takes everything each must succeed.
"""

import os
import subprocess
import sys


def commands(words):
    command = []
    for word in words + ["--"]:
        if word != "--":
            command.append(word)
            continue
        yield command
        command = []


def run(command, **streams):
    return subprocess.run(command, stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=60, **streams)


def faults(command):
    name = os.path.basename(command[0])
    if run(command, stdout=subprocess.DEVNULL).returncode != 0:
        yield f"{name} fails by itself"
    with open("/dev/full", "wb") as full:
        results = {"full": run(command, stdout=full), "closed": run(command, preexec_fn=lambda: os.close(1))}
    for kind, result in results.items():
        message = result.stderr.decode(errors="replace")
        if result.returncode != 1:
            yield f"{name} with a {kind} output ends with status {result.returncode}"
        if not message.startswith(name + ": ") or message.count("\n") != 1:
            yield f"{name} with a {kind} output says: {message!r}"


def main():
    found = [fault for command in commands(sys.argv[1:]) for fault in faults(command)]
    print("\n".join(found) or "No fault found.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
