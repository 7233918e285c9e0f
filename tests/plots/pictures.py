#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the pictures of docs/plots.md are what the example draws, on every target, and that they are sound.

Usage: pictures.py [--update] PICTURES EARTHQUAKES [EMULATOR ...] PROGRAM

After an intended change of plots, run it with --update and look at the new pictures.
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


def faults_of(path):
    root = ElementTree.parse(path).getroot()
    if root.tag != SVG + "svg" or root.get("role") != "img":
        yield "is no picture"
    texts = {child.get("id"): child for child in root if child.tag in (SVG + "title", SVG + "desc")}
    for name in root.get("aria-labelledby", "none").split():
        if name not in texts or not texts[name].text:
            yield f"has no {name}"
    if "prefers-color-scheme" not in "".join(style.text for style in root.iter(SVG + "style")):
        yield "has no dark colors"


def main(arguments):
    update = arguments[:1] == ["--update"]
    pictures, data, *command = arguments[1:] if update else arguments
    pictures = pathlib.Path(pictures)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*command, data, folder], check=True)
        drawn = sorted(os.listdir(folder))
        faults = []
        for name in drawn:
            path = pathlib.Path(folder) / name
            faults += [f"{name}: {fault}" for fault in faults_of(path)]
            if update:
                pictures.mkdir(exist_ok=True)
                shutil.copy(path, pictures / name)
            elif not (pictures / name).is_file() or (pictures / name).read_bytes() != path.read_bytes():
                faults.append(f"{name} is not what docs/pictures/ holds; pictures.py --update")
    shown = set(re.findall(r"pictures/([\w-]+\.svg)", (pictures.parent / "plots.md").read_text(encoding="utf-8")))
    if not drawn or shown != set(drawn):
        faults.append("docs/plots.md shows other pictures than are drawn")
    print("\n".join(faults) or "No fault found.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
