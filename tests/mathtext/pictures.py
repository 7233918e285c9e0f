#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the pictures of docs/math-text.md are what the example mathtext draws, on every target.

Usage: pictures.py [--update] PICTURES [EMULATOR ...] PROGRAM

After an intended change, run it with --update and look at the new pictures.
"""

import os
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from picture_test import check, run  # noqa: E402

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


def main(update, arguments):
    pictures, *command = arguments
    pictures = pathlib.Path(pictures)
    page = pictures.parent.parent / "math-text.md"
    return check(page, pictures, [*command, *STYLE, "--pictures"], faults_of, update)


if __name__ == "__main__":
    run(main)
