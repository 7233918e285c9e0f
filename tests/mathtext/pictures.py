#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the pictures of docs/math-text.md are what the example mathtext draws, on every target.

Usage: pictures.py [--update] PICTURES [EMULATOR ...] PROGRAM

After an intended change, run it with --update and look at the new pictures.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

SVG = "{http://www.w3.org/2000/svg}"
STYLE = ["--face", "Liberation Sans", "--height", "20", "--now", "2026-03-05T14:30"]


def faults_of(path):
    root = ElementTree.parse(path).getroot()
    if root.tag != SVG + "svg" or not root.findtext(SVG + "title"):
        yield "is no picture with a title"
    if root.find(f".//{SVG}text") is not None:
        yield "needs fonts"
    names = {element.get("id") for element in root.iter() if element.get("id")}
    if not {use.get("href")[1:] for use in root.iter(SVG + "use")} == names != set():
        yield "defines other glyphs than it uses"


def main(arguments):
    update = arguments[:1] == ["--update"]
    pictures, *command = arguments[1:] if update else arguments
    pictures = pathlib.Path(pictures)
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*command, "--pictures", folder, *STYLE], check=True)
        drawn = sorted(os.listdir(folder))
        for name in drawn:
            path = pathlib.Path(folder) / name
            faults += [f"{name}: {fault}" for fault in faults_of(path)]
            if update:
                pictures.mkdir(exist_ok=True)
                shutil.copy(path, pictures / name)
            elif not (pictures / name).is_file() or (pictures / name).read_bytes() != path.read_bytes():
                faults.append(f"{name} is not what {pictures.name}/ holds; pictures.py --update")
    page = (pictures.parent.parent / "math-text.md").read_text(encoding="utf-8")
    shown = set(re.findall(r"pictures/mathtext/([\w-]+\.svg)", page))
    if not drawn or shown != set(drawn):
        faults.append(f"docs/math-text.md shows other pictures: {sorted(shown ^ set(drawn))}")
    print("\n".join(faults) or "No fault found.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
