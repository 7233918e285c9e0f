# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""tools/check_bodies.py finds an inline function with two bodies and lets one with a single body pass."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import check_bodies  # noqa: E402

GOLD = shutil.which("ld.gold")


class CheckBodies(unittest.TestCase):
    def faults_of(self, second_header):
        headers = {"a": "inline int F(int a) { return a * 3; }\n", "b": second_header}
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            objects = []
            for unit, text in headers.items():
                (folder / f"{unit}.cpp").write_text(text + f"int {unit}(int x) {{ return F(x); }}\n", encoding="utf-8")
                objects.append(folder / f"{unit}.o")
                subprocess.run([os.environ.get("CXX", "c++"), "-g1", "-O0", "-c", folder / f"{unit}.cpp",
                                "-o", objects[-1]], check=True)
            return check_bodies.two_bodies(GOLD, objects)

    def test_two_bodies_are_told(self):
        self.assertIn("F(int)", self.faults_of("\n\ninline int F(int a) { return a * 4; }\n")[0])

    def test_one_body_passes(self):
        self.assertEqual(self.faults_of("int F(int);\n"), [])


if __name__ == "__main__":
    unittest.main()
