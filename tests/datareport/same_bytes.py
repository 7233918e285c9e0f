#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the data report writes the same bytes on every target; ../common/digests.py tells how."""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from digests import check  # noqa: E402

CASES = [
    ("earthquakes", ["--input", "earthquakes.csv", "--x", "longitude", "--y", "latitude", "--z", "depth"]),
    ("sampled", ["--input", "earthquakes.csv", "--sample", "500", "--x", "longitude", "--y", "latitude"]),
    ("cities", ["--input", "cities-utf16le.csv", "--x", "lon", "--y", "lat"]),
    ("countries", ["--input", "countries-attributes.csv", "--title", "Länder & <Kontinente>"]),
]

if __name__ == "__main__":
    sys.exit(check(sys.argv[1:], CASES))
