#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs the data report as its users do: exit status, one line on standard error, an untouched output folder, sound
pages and pictures whatever the table holds."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from program_test import DATA, ProgramTest, main  # noqa: E402

TABLE = b"a,b\n1,2\n3,5\n4,4\n9,1\n"

# name, content (None: no file, a folder where it ends in "/"), options, what the line holds
BAD_INPUTS = [
    ("missing.csv", None, [], "missing.csv"),
    ("folder/", None, [], "folder"),
    ("empty.csv", b"", [], "empty.csv:1:"),
    ("mark-only.csv", b"\xff\xfe", [], "mark-only.csv:1:"),
    ("head-only.csv", b"a,b\n", [], "head-only.csv:1:"),
    ("zeros.csv", TABLE + b"\0\0\0\n", [], "zeros.csv:6:"),
    ("cut.csv", TABLE + "α,β\nγ,δ\nΆ,α\nΆ".encode()[:-1], [], "cut.csv:9:"),
    ("row.csv", TABLE + b"1\n", [], "row.csv:6:"),
    ("wide.csv", TABLE + b"1,2,3\n", [], "wide.csv:6:"),
    ("quote.csv", TABLE + b'"1,2\n', [], "quote.csv:6:"),
    ("behind.csv", TABLE + b'"1"2,3\n', [], "behind.csv:6:"),
    ("line.csv", TABLE + b"x" * 3_000_000, [], "line.csv:6:"),
    ("columns.csv", b"," * 2000 + b"\n", [], "columns.csv:1:"),
    ("text.csv", b"a,b\n1,x\n2,y\n", ["--x", "a", "--y", "b"], "text.csv:2:"),
    ("none.csv", TABLE, ["--x", "a", "--y", "c"], "none.csv:1:"),
    ("Ünï地.csv", TABLE + b"1\n", [], "Ünï地.csv:6:"),
]

# Tables that are odd but sound.
ODD_TABLES = [
    ("one value", b"a\n5\n"),
    ("equal values", b"a,b\n5,5\n5,5\n5,5\n"),
    ("nothing but missing", b"a,b\n,\nNA,-\n"),
    ("hostile names", b'"<script>alert(1)</script>","]]>&amp;\'"""\n1,2\n2,3\n3,5\n'),
    ("hostile values", b'a\n<b>x</b>\n"&quot;<"\n]]>\n'),
    ("names and values like markup", b"\\b x,{a},\\bogus\n\\f,}{,\\\\\n1,2,\\ssbeg(\n"),
    ("huge and tiny", b"a,b\n1e308,1e-308\n-1e308,2e-308\n1e300,5e-324\n"),
    ("times", b"t\n0001-01-01\n9999-12-31\n2018-01-31T02:00:15.5Z\n"),
    ("same names", b"a,a,,\n1,2,3,4\n2,3,4,6\n3,9,1,2\n"),
    ("controls", b"a\n\x01\x02\n\x7f\n\x1b[31m\n"),
    ("code page", b"stra\xdfe,h\xf6he\nx,1\ny,2\n"),
    ("utf-16", "größe;höhe\n1,5;2\n".encode("utf-16")),
    ("carriage returns", b"a\tb\r\n1\t2\r\n2\t4\r\n3\t1\r\n"),
]


# Math text: options, what is wrong with them.
BAD_MARKUP = [
    (["--text", "paths"], "'paths' is not text or outlines"),
    (["--title", r"{\b x"], "--title: Unbalanced"),
    (["--title", r"\bogus"], r"near '\bogus'"),
    (["--label", "a"], "COLUMN=TEXT"),
    (["--label", "=a"], "COLUMN=TEXT"),
    (["--label", r"a=\fs0"], r"near '\fs0'"),
]


class DataReport(ProgramTest):
    PROGRAM = "datareport"

    def run_table(self, content, *more):
        return self.run_program("--input", self.write("table.csv", content), "--out", self.out, *more)

    def assert_sound(self):
        """Every picture parses and is shown on the page, and the page is sound HTML."""
        page = pathlib.Path(self.out, "report.html").read_text(encoding="ascii")
        shown = set(re.findall(r'SRC="([^"]*)"', page))
        pictures = {name for name in os.listdir(self.out) if name != "report.html"}
        self.assertEqual(shown, pictures)
        for name in pictures:
            ElementTree.parse(os.path.join(self.out, name))
        if shutil.which("tidy"):
            tidy = subprocess.run(["tidy", "-q", "-e", os.path.join(self.out, "report.html")],
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            self.assertEqual((0, b""), (tidy.returncode, tidy.stdout))

    def test_labels_are_math_text(self):
        label = r"a={\i M}{\dn25\fs70 w}"
        for more in ([], ["--text", "outlines"]):
            status, _ = self.run_table(TABLE, "--title", r"{\b <T>} x", "--label", label, *more)
            self.assertEqual(0, status)
            self.assert_sound()
            page = pathlib.Path(self.out, "report.html").read_text(encoding="ascii")
            self.assertIn("<TITLE>&lt;T&gt; x</TITLE>", page)
            self.assertIn('<SPAN STYLE="font-weight:bold;">&lt;T&gt;</SPAN> x', page)
            self.assertIn('ALT="Histogram of Mw"', page)
            histogram = ElementTree.parse(os.path.join(self.out, "column-01-histogram.svg")).getroot()
            texts = {"".join(each.itertext()) for each in histogram.iter("{http://www.w3.org/2000/svg}text")}
            self.assertEqual(bool(more), not texts)
            self.assertIn("Histogram of Mw", [child.text for child in histogram])

    def test_bad_markup_is_refused_before_work(self):
        for options, part in BAD_MARKUP:
            with self.subTest(options=options):
                status, text = self.run_table(TABLE, *options)
                self.assertEqual(2, status)
                self.assertIn(part, text)
                self.assertFalse(os.path.exists(self.out))
        status, text = self.run_table(TABLE, "--label", "c=d")
        self.assertEqual(1, status)
        self.assertIn("table.csv:1: There is no column 'c'.", text)

    def test_bad_inputs_are_told_by_file_and_line(self):
        for name, content, options, part in BAD_INPUTS:
            with self.subTest(name=name):
                self.make(name, content)
                status, text = self.run_program("--input", self.path(name), "--out", self.out, *options)
                self.assertEqual(1, status, text)
                self.assert_one_line(text, part)
                self.assertFalse(os.path.exists(self.out))

    def test_odd_tables_make_sound_reports(self):
        for name, content in ODD_TABLES:
            with self.subTest(name=name):
                status, text = self.run_table(content)
                self.assertEqual(0, status, text)
                self.assert_sound()
                shutil.rmtree(self.out)

    def test_the_data_of_the_examples(self):
        for name, options in (("earthquakes.csv", ["--x", "longitude", "--y", "latitude", "--z", "depth"]),
                              ("cities-utf16le.csv", ["--x", "lon", "--y", "lat"]),
                              ("countries-attributes.csv", ["--sample", "50"])):
            with self.subTest(name=name):
                status, text = self.run_program("--input", os.path.join(DATA, name), "--out", self.out, *options)
                self.assertEqual(0, status, text)
                self.assertTrue(text.endswith("report.html\n"), text)
                self.assert_sound()
                shutil.rmtree(self.out)

    def test_broken_rows_are_counted_where_the_user_wants_that(self):
        status, text = self.run_table(TABLE + b"1\n7,8\n1,2,3\n", "--skip-broken")
        self.assertEqual(0, status, text)
        page = pathlib.Path(self.out, "report.html").read_text(encoding="ascii")
        self.assertIn("5 rows", page)
        self.assertIn("2 broken rows were passed over; the first in line 6", page)

    def test_decimal_commas_and_delimiters(self):
        status, text = self.run_table("größe|höhe\n1.234,5|2\n2,5|x\n".encode(), "--decimal-comma", "--delimiter", "|")
        self.assertEqual(0, status, text)
        page = pathlib.Path(self.out, "report.html").read_text(encoding="ascii")
        self.assertIn(">1234.5<", page)

    def test_a_failure_leaves_old_reports(self):
        os.mkdir(self.out)
        self.write("out/report.html", b"old")
        status, _ = self.run_table(TABLE + b"1\n")
        self.assertEqual(1, status)
        self.assertEqual(["report.html"], os.listdir(self.out))
        with open(self.path("out/report.html"), "rb") as file:
            self.assertEqual(b"old", file.read())

    def test_output_folder_that_cannot_be(self):
        self.write("file", b"")
        self.out = self.path("file/out")
        status, text = self.run_table(TABLE)
        self.assertEqual(1, status)
        self.assert_one_line(text, "out")

    def test_wrong_usage(self):
        for arguments in ([], ["--input", "x"], ["--nothing"],
                          ["--input", "x", "--out", "y", "--x", "a"],
                          ["--input", "x", "--out", "y", "--z", "a"],
                          ["--input", "x", "--out", "y", "--delimiter", "ab"],
                          ["--input", "x", "--out", "y", "--delimiter", ",", "--decimal-comma"],
                          ["--input", "x", "--out", "y", "--codepage", "77777"]):
            with self.subTest(arguments=arguments):
                status, text = self.run_program(*arguments)
                self.assertEqual(2, status, text)
                self.assert_one_line(text, "--help")

    def test_help_and_version(self):
        status, text = self.run_program("--help")
        self.assertEqual(0, status)
        for option in ("--input", "--out", "--x", "--y", "--z", "--delimiter", "--decimal-comma", "--skip-broken",
                       "--sample", "--frequent", "--codepage", "--title", "--quiet"):
            self.assertIn(option, text)
        status, text = self.run_program("--version")
        self.assertEqual(0, status)
        self.assertRegex(text, r"^datareport \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    main()
