# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Whoever compiles a header as C++17 gets one line that says what is needed."""

import os
import pathlib
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEADERS = ["text/GString.h", "archive/Archive.h", "files/File.h", "geometry/Vec2.h", "geometry/Mat4.h",
           "polygons/GPolygon2d.h", "polygons/PodVector.h"]


class OlderLanguage(unittest.TestCase):
    def test_one_line_tells_what_is_needed(self):
        for name in HEADERS:
            with self.subTest(name):
                process = subprocess.run(
                    [os.environ.get("CXX", "c++"), "-std=c++17", f"-I{ROOT}", "-fsyntax-only", "-x", "c++",
                     str(ROOT / "shared" / name)], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                    check=False)
                errors = [line for line in process.stderr.splitlines() if "error:" in line]
                self.assertEqual(len(errors), 1, errors)
                self.assertIn("Shared_needs_C++20", errors[0])


if __name__ == "__main__":
    unittest.main()
