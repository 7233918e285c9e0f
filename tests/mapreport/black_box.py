#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs the map report as its users do: exit status, one line on standard error, an untouched output folder.

Usage: black_box.py DATA_FOLDER [EMULATOR ...] PROGRAM
"""

import os
import subprocess
import sys
import tempfile
import unittest

DATA = sys.argv[1]
COMMAND = sys.argv[2:]
SQUARE = b"0, 0\n0, 4\n4, 4\n4, 0\n"
POINTS = b"latitude,longitude,magnitude\n1,1,5\n"
CITIES = b"name,country,lat,lon,population\nX,XX,2,2,1000\n"

# name, option that gets the file, content (None: no file, a folder where it ends in "/"), what the line holds
BAD_INPUTS = [
    ("missing.txt", "--map", None, "missing.txt"),
    ("folder/", "--map", None, "folder"),
    ("folder/", "--points", None, "folder"),
    ("empty.csv", "--points", b"", "empty.csv:1:"),
    ("mark-only.csv", "--cities", b"\xff\xfe", "mark-only.csv:1:"),
    ("odd.csv", "--cities", b"\xff\xfen\0a\0m\0e\0\n\0x", "odd.csv:2:"),
    ("zeros.csv", "--points", POINTS + b"\0\0\0\n", "zeros.csv:3:"),
    ("cut.csv", "--cities", CITIES + "Κιλκίς,GR,1,1,1\nΆ".encode()[:-1], "cut.csv:4:"),
    ("count.txt", "--map", b"A\touter\t5\n" + SQUARE + b"B\touter\t4\n" + SQUARE, "count.txt:6:"),
    ("short.txt", "--map", b"A\touter\t40\n" + SQUARE, "short.txt:5:"),
    ("hole.txt", "--map", b"A\thole\t4\n" + SQUARE, "hole.txt:1:"),
    ("number.txt", "--map", b"A\touter\t4\n0, 0\n0, x\n4, 4\n4, 0\n", "number.txt:3:"),
    ("number.csv", "--points", POINTS + b"1,east,2\n", "number.csv:3:"),
    ("row.csv", "--cities", CITIES + b"Y,YY,1\n", "row.csv:3:"),
    ("quote.csv", "--cities", CITIES + b'"Y,YY,1,1,1\n', "quote.csv:3:"),
    ("column.csv", "--points", b"lat,magnitude\n1,2\n", "column.csv:1:"),
    ("line.csv", "--points", POINTS + b"x" * 3_000_000, "line.csv:3:"),
    ("Ünï地.csv", "--points", POINTS + b"1,east,2\n", "Ünï地.csv:3:"),
]


class MapReport(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.out = self.path("out")
        self.good = {"--map": self.write("good.txt", b"A\touter\t4\n" + SQUARE),
                     "--points": self.write("good.csv", POINTS),
                     "--cities": self.write("cities.csv", CITIES)}

    def tearDown(self):
        self.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    def run_program(self, *arguments):
        """Returns exit status, standard output and error together, as the emulator mixes them."""
        result = subprocess.run([*COMMAND, *arguments], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                check=False)
        return result.returncode, result.stdout.decode("utf-8").replace("\r\n", "\n")

    def run_inputs(self, *more, **inputs):
        options = dict(self.good, **{"--" + key: value for key, value in inputs.items()})
        pairs = [part for pair in options.items() for part in pair]
        return self.run_program(*pairs, "--out", self.out, *more)

    def assert_one_line(self, text, part):
        self.assertTrue(text.startswith("mapreport: ") and text.endswith("\n"), text)
        self.assertEqual(1, text.count("\n"), text)
        self.assertIn(part, text)

    def test_bad_inputs_are_told_by_file_and_line(self):
        for name, option, content, part in BAD_INPUTS:
            with self.subTest(name=name, option=option):
                if content is not None:
                    self.write(name, content)
                elif name.endswith("/"):
                    os.makedirs(self.path(name), exist_ok=True)
                status, text = self.run_inputs(**{option[2:]: self.path(name)})
                self.assertEqual(1, status, text)
                self.assert_one_line(text, part)
                self.assertFalse(os.path.exists(self.out))

    def test_bad_input_leaves_old_outputs(self):
        os.mkdir(self.out)
        self.write("out/map.svg", b"old")
        status, _ = self.run_inputs(points=self.path("missing.csv"))
        self.assertEqual(1, status)
        self.assertEqual(["map.svg"], os.listdir(self.out))
        with open(self.path("out/map.svg"), "rb") as file:
            self.assertEqual(b"old", file.read())

    def test_output_folder_that_cannot_be(self):
        self.out = self.path("good.csv/out")
        status, text = self.run_inputs()
        self.assertEqual(1, status)
        self.assert_one_line(text, "out")

    def test_wrong_usage(self):
        for arguments in ([], ["--out"], ["--out", self.out, "--window", "1,2"], ["--nothing"]):
            with self.subTest(arguments=arguments):
                status, text = self.run_program(*arguments)
                self.assertEqual(2, status, text)
                self.assert_one_line(text, "--help")

    def test_help_and_version(self):
        status, text = self.run_program("--help")
        self.assertEqual(0, status)
        for option in ("--map", "--points", "--cities", "--window", "--out", "--quiet"):
            self.assertIn(option, text)
        status, text = self.run_program("--version")
        self.assertEqual(0, status)
        self.assertRegex(text, r"^mapreport \d+\.\d+\.\d+\n$")

    def test_success_prints_the_report_and_nothing_else(self):
        status, text = self.run_inputs()
        self.assertEqual(0, status, text)
        self.assertRegex(text, r"^.*report\.html\n$")
        self.assertEqual(["map.svg", "report.html"], sorted(os.listdir(self.out)))
        status, text = self.run_inputs("--quiet")
        self.assertEqual((0, ""), (status, text))

    def test_multi_byte_code_page(self):
        cities = self.write("sjis.csv", CITIES + "東京都,JP,3,3,9000000\n".encode("cp932"))
        status, text = self.run_inputs("--cities-codepage", "932", cities=cities)
        self.assertEqual(0, status, text)
        with open(self.path("out/map.svg"), "rb") as file:
            self.assertIn("東京都".encode(), file.read())
        with open(self.path("out/report.html"), "rb") as file:
            self.assertIn(b"code page 932", file.read())

    def test_real_data_twice_gives_the_same_bytes(self):
        outputs = []
        for _ in range(2):
            status, text = self.run_program("--map", os.path.join(DATA, "countries-110m.txt"), "--points",
                                            os.path.join(DATA, "earthquakes.csv"), "--cities",
                                            os.path.join(DATA, "cities-utf8.csv"), "--out", self.out)
            self.assertEqual(0, status, text)
            with open(self.path("out/map.svg"), "rb") as file:
                outputs.append(file.read())
        self.assertEqual(outputs[0], outputs[1])
        for name in ("Αθήνα", "Москва", "القاهرة", "東京都", "上海"):
            self.assertIn(name.encode(), outputs[0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
