#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that the georeference writes the same bytes on every target; ../common/digests.py tells how."""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from digests import check  # noqa: E402

METHODS = ["thin-plate-spline", "natural-cubic-spline", "marcov-spline", "exponential-spline",
           "rational-quadratic-spline", "idw", "quadratic", "affine", "conformal", "mixed-scale", "uniform-scale",
           "translate", "identity-map"]
WARPED = ["--warp-points", "control-points-svalbard.csv"]
CASES = [(f"svalbard {method}", ["--points", "control-points-svalbard.csv", "--method", method, *WARPED])
         for method in METHODS] + [
    (name, ["--points", f"control-points-{name}", *WARPED]) for name in (
        "svalbard.csv", "lynn-sheet-a.csv", "lynn-sheet-b.csv", "world-metres.csv", "europe.points",
        "europe-laea.points")]
OUTPUTS = ["report.html", "grid.svg", "residuals.csv", "coefficients.csv", "points.csv"]

if __name__ == "__main__":
    sys.exit(check(sys.argv[1:], CASES, OUTPUTS))
