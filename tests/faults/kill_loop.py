#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Kills a writer again and again and checks what it leaves: kill_loop.py [options] --check 'COMMAND...' -- WRITER...

In all commands {} stands for a temporary folder. --prepare makes there what the writer begins with. Each round starts
the writer, kills it by SIGKILL at a random moment, and runs the check, which must succeed. The writer is first run once
undisturbed, and the moments are spread over the time that this took; one that does not end by itself is killed within
--endless seconds. The first failing check ends the loop with its output, the round and the seed. It is a failure, too,
when most rounds came too late to kill anything.

    kill_loop.py --prepare 'file_writer prepare ini {}/a.ini' --check 'file_writer check ini {}/a.ini' \\
                 --endless 0.1 -- file_writer write ini {}/a.ini
"""

import argparse
import random
import shlex
import subprocess
import sys
import tempfile
import time


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--kills", type=int, default=200, help="number of rounds")
    parser.add_argument("--seed", type=int, default=1, help="of the random moments")
    parser.add_argument("--endless", type=float, help="the writer is endless; seconds that it lives at most")
    parser.add_argument("--prepare", help="command that is run once before")
    parser.add_argument("--check", required=True, help="command that succeeds when what was left is whole")
    parser.add_argument("writer", nargs="+", help="command that writes")
    return parser.parse_args()


def start(command):
    return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)


def undisturbed(command):
    """Returns the seconds that the writer takes."""
    begin = time.monotonic()
    process = start(command)
    _, errors = process.communicate(timeout=60)
    if process.returncode != 0:
        raise SystemExit(f"The writer fails by itself: {errors.decode(errors='replace')}")
    return time.monotonic() - begin


def kill_at(command, moment):
    """Returns whether the writer was still running when it was killed."""
    process = start(command)
    time.sleep(moment)
    running = process.poll() is None
    process.kill()
    _, errors = process.communicate()
    if not running and process.returncode != 0:
        raise SystemExit(f"The writer failed: {errors.decode(errors='replace')}")
    return running


def run_rounds(arguments, folder):
    def filled(words):
        return [word.replace("{}", folder) for word in words]

    check, writer = filled(shlex.split(arguments.check)), filled(arguments.writer)
    if arguments.prepare:
        subprocess.run(filled(shlex.split(arguments.prepare)), stdout=subprocess.DEVNULL, check=True)
    moments = random.Random(arguments.seed)
    longest = arguments.endless or undisturbed(writer)
    killed = 0
    for round_number in range(1, arguments.kills + 1):
        killed += kill_at(writer, moments.uniform(0, longest))
        result = subprocess.run(check, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if result.returncode != 0:
            print(result.stdout.decode(errors="replace"))
            print(f"Round {round_number} of seed {arguments.seed} left something broken.")
            return 1
    print(f"{killed} of {arguments.kills} rounds killed a running writer within {longest:.3f} s; every check passed.")
    print(f"Last check: {result.stdout.decode(errors='replace').strip()}")
    return 0 if 2 * killed >= arguments.kills else 1


def main():
    arguments = parse_arguments()
    with tempfile.TemporaryDirectory() as folder:
        return run_rounds(arguments, folder)


if __name__ == "__main__":
    sys.exit(main())
