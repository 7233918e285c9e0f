#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the map report writes the same bytes on every target; ../common/digests.py tells how.

Texts that are measured by the fonts of the machine differ with these, so the cases ask for estimates, or for outlines in
the library's own face."""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from digests import check  # noqa: E402

WRITTEN = ["--points", "earthquakes.csv", "--text", "portable", "--save", "{out}/saved.map", "--geojson", "{out}/areas.json"]
CASES = [
    ("world", [*WRITTEN, "--map", "countries-50m.txt", "--cities", "cities-utf16le.csv"]),
    ("europe", [*WRITTEN, "--map", "countries-50m.txt", "--cities", "cities-utf8.csv", "--window", "-25,34,45,72", "--rivers",
                "rivers-50m.txt", "--dashes", "6,3", "--track", "danube.gpx", "--clip", "POLYGON ((-20 30, 40 36, 30 71, 5 60))",
                "--union-continent", "Europe"]),
    ("pacific", [*WRITTEN, "--map", "countries-110m.txt", "--cities", "cities-utf16le.csv", "--window", "120,-50,-120,60", "--track", "pacific.kml",
                 "--undo", "2", "--colors", "#ffffcc,#cc0000"]),
    ("outlines", [*WRITTEN[:2], *WRITTEN[4:], "--map", "countries-50m.txt", "--cities", "cities-utf8.csv", "--window", "-25,51,13,68",
                  "--text", "outlines", "--face", "Shared Stroke",
                  "--title", r"{\b North} \color(Navy)of \i Europe\plain {\up30\fs60 2018}"]),
]
OUTPUTS = ["map.svg", "overview.svg", "report.html", "saved.map", "areas.json"]

if __name__ == "__main__":
    sys.exit(check(sys.argv[1:], CASES, OUTPUTS))
