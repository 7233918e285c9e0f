#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the pictures of docs/plots.md are what the example draws, on every target, and that they are sound.

Usage: pictures.py [--update] PICTURES EARTHQUAKES [EMULATOR ...] PROGRAM

After an intended change of plots, run it with --update and look at the new pictures.
"""

import os
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from picture_test import check, run  # noqa: E402

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


def main(update, arguments):
    pictures, data, *command = arguments
    pictures = pathlib.Path(pictures)
    return check(pictures.parent / "plots.md", pictures, [*command, data], faults_of, update)


if __name__ == "__main__":
    run(main)
