#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs the program mathtext as its users do: pictures, the gallery, exit status, one line on standard error."""

import os
import re
import sys
import xml.etree.ElementTree

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from program_test import ProgramTest, main  # noqa: E402

SVG = "{http://www.w3.org/2000/svg}"
NOW = ["--now", "2026-03-05T14:30"]

# markup, what the line on standard error holds
BAD_LABELS = [
    (r"\zz top", r"near '\zz top'"),
    (r"{\b x", "Unbalanced"),
    (r"\fs-5 x", r"near '\fs-5 x'"),
    (r"\color(rot)x", r"near '\color(rot)x'"),
    (r"\rp7", r"near '\rp7'"),
]

BAD_USAGES = [
    [], ["label"], ["--svg", "x.svg"], ["a", "b", "--svg", "x.svg"], ["a", "--svg", "x.svg", "--height", "0"],
    ["a", "--svg", "x.svg", "--color", "rot"], ["a", "--svg", "x.svg", "--rotate", "361"],
    ["a", "--svg", "x.svg", "--align", "top"], ["a", "--svg", "x.svg", "--now", "noon"], ["a", "--gallery", "x"],
    ["--nothing"],
]


class MathText(ProgramTest):
    PROGRAM = "mathtext"

    def draw(self, markup, *more):
        """Returns the root of the picture."""
        path = self.path("label.svg")
        status, text = self.run_program(markup, "--svg", path, *NOW, *more)
        self.assertEqual((0, ""), (status, text))
        return xml.etree.ElementTree.parse(path).getroot()

    def test_a_label_is_drawn_as_text(self):
        root = self.draw(r'{\b Oslo} \dt("d MMMM")', "--color", "SteelBlue", "--align", "right")
        texts = root.findall(f".//{SVG}text")
        self.assertEqual(["Oslo", "5 March"], [text.text.strip() for text in texts if text.text.strip()])
        self.assertEqual({"#4682b4"}, {text.get("fill") for text in texts})
        self.assertEqual("Oslo 5 March", root.find(f"{SVG}title").text)

    def test_a_label_is_drawn_as_outlines_alone(self):
        root = self.draw(r"x\up40\fs60 2", "--text", "outlines", "--background", "none")
        self.assertIsNone(root.find(f".//{SVG}text"))
        self.assertIsNone(root.find(f".//{SVG}rect"))
        self.assertEqual(2, len(root.findall(f".//{SVG}use")))
        self.assertEqual("x2", root.find(f"{SVG}g").get("aria-label"))

    def test_a_turned_label_fits_its_picture(self):
        flat, turned = self.draw("a long label"), self.draw("a long label", "--rotate", "90")
        self.assertEqual((flat.get("width"), flat.get("height")), (turned.get("height"), turned.get("width")))
        self.assertIn("rotate(-90)", turned.find(f".//{SVG}text").get("transform"))

    def test_the_height_counts(self):
        small, large = self.draw("x"), self.draw("x", "--height", "240")
        self.assertAlmostEqual(10 * float(small.get("width")), float(large.get("width")), delta=1)

    def test_the_gallery_shows_every_picture_it_writes(self):
        status, text = self.run_program("--gallery", self.out, *NOW)
        self.assertEqual((0, ""), (status, text))
        files = set(os.listdir(self.out))
        with open(os.path.join(self.out, "gallery.html"), encoding="ascii") as file:
            shown = set(re.findall(r'SRC="([^"]+)"', file.read()))
        self.assertEqual(files - {"gallery.html"}, shown)
        self.assertGreaterEqual(len(shown), 2 * (24 + 12))
        for name in shown:
            xml.etree.ElementTree.parse(os.path.join(self.out, name))

    def test_markup_that_does_not_parse_is_told_on_one_line(self):
        for markup, part in BAD_LABELS:
            with self.subTest(markup=markup):
                status, text = self.run_program(markup, "--svg", self.out)
                self.assertEqual(1, status, text)
                self.assert_one_line(text, part)
                self.assertFalse(os.path.exists(self.out))

    def test_a_picture_that_cannot_be_written(self):
        status, text = self.run_program("x", "--svg", self.path("missing/label.svg"))
        self.assertEqual(1, status)
        self.assert_one_line(text, "label.svg")

    def test_wrong_usage(self):
        for arguments in BAD_USAGES:
            with self.subTest(arguments=arguments):
                status, text = self.run_program(*arguments)
                self.assertEqual(2, status, text)
                self.assert_one_line(text, "--help")

    def test_help_and_version(self):
        status, text = self.run_program("--help")
        self.assertEqual(0, status)
        for option in ("--svg", "--text", "--gallery", "--height", "--face", "--color", "--rotate", "--align"):
            self.assertIn(option, text)
        status, text = self.run_program("--version")
        self.assertEqual(0, status)
        self.assertRegex(text, r"^mathtext \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    main()
