# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""The frame of tests that compare what a program draws with the pictures of a page of docs/."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def check(page, pictures, command, faults_of, update):
    """Runs `command` with a folder for its last argument, and returns the exit status: 1, and the faults on standard
    output, where a picture has one of `faults_of(path)`, is not that in the folder `pictures`, or is not shown on
    `page`. With `update` the pictures are put there."""
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*command, folder], check=True)
        drawn = sorted(pathlib.Path(folder).iterdir())
        for path in drawn:
            faults += [f"{path.name}: {fault}" for fault in faults_of(path)]
            kept = pictures / path.name
            if update:
                pictures.mkdir(exist_ok=True)
                shutil.copy(path, kept)
            elif not kept.is_file() or kept.read_bytes() != path.read_bytes():
                faults.append(f"{path.name} is not what {pictures.name}/ holds; pictures.py --update")
    where = pictures.relative_to(page.parent).as_posix()
    shown = set(re.findall(rf"\({where}/([\w-]+\.svg)", page.read_text(encoding="utf-8")))
    names = {path.name for path in drawn}
    if not drawn or shown != names:
        faults.append(f"{page.name} shows other pictures than are drawn: {sorted(shown ^ names)}")
    print("\n".join(faults) or "No fault found.")
    return 1 if faults else 0


def run(main):
    """Calls `main(update, arguments)`, where "--update" may be the first argument, and exits with its status."""
    arguments = sys.argv[1:]
    update = arguments[:1] == ["--update"]
    sys.exit(main(update, arguments[1:] if update else arguments))
