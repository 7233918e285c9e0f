# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that a program writes the same bytes on every target. The script of a program imports this one:

    sys.exit(check(sys.argv[1:], CASES))

Usage of such a script: [--update] DIGESTS DATA_FOLDER [EMULATOR ...] PROGRAM

The digests of what the program writes for each case must be those of the file DIGESTS, which is one for all targets.
After an intended change of the output, look at what is new and run the script with --update.
"""

import hashlib
import os
import subprocess
import tempfile


def digests_of(cases, outputs, command, data):
    for name, arguments in cases:
        with tempfile.TemporaryDirectory() as folder:
            filled = [argument.replace("{out}", folder) for argument in arguments]
            subprocess.run([*command, *filled, "--out", folder, "--quiet"], cwd=data, check=True)
            for output in outputs or sorted(os.listdir(folder)):
                with open(os.path.join(folder, output), "rb") as file:
                    yield f"{name} {output} {hashlib.sha256(file.read()).hexdigest()}\n"


def check(arguments, cases, outputs=None):
    """Returns the exit status. A case is a name and the arguments of a run, in which {out} stands for the folder that
    it writes to; `outputs` names the files that are looked at, all unless told."""
    update = arguments[:1] == ["--update"]
    expected_path, data, *command = arguments[1:] if update else arguments
    command = [os.path.abspath(part) if os.path.exists(part) else part for part in command]
    expected_path = os.path.abspath(expected_path)
    found = list(digests_of(cases, outputs, command, data))
    if update:
        with open(expected_path, "w", encoding="utf-8", newline="\n") as file:
            file.writelines(found)
        return 0
    with open(expected_path, encoding="utf-8") as file:
        expected = file.readlines()
    for line in sorted(set(found) - set(expected)):
        print("not expected:", line, end="")
    return 0 if found == expected else 1
