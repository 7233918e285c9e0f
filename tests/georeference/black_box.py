#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs the georeference as its users do: exit status, one line on standard error, an untouched output folder."""

import csv
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from program_test import DATA, ProgramTest, main  # noqa: E402

HEAD = b"id,image_x,image_y,map_x,map_y\n"
ROWS = HEAD + b"a,0,0,100,200\nb,10,0,120,200\nc,0,10,100,180\nd,10,10,120,180\ne,5,3,110,194\n"
QGIS = b"mapX,mapY,sourceX,sourceY,enable,dX,dY,residual\n"

# name, content (None: no file, a folder where the name ends in "/"), what the line holds
BAD_POINTS = [
    ("missing.csv", None, "missing.csv"),
    ("folder/", None, "folder"),
    ("empty.csv", b"", "empty.csv:1:"),
    ("head.csv", HEAD, "head.csv: There are no control points"),
    ("comment.csv", b"#CRS: here\n", "comment.csv:1:"),
    ("word.csv", ROWS + b"f,1,2,east,3\n", "word.csv:7: 'east' in column 'map_x'"),
    ("nan.csv", ROWS + b"f,1,nan,2,3\n", "nan.csv:7:"),
    ("huge.csv", ROWS + b"f,1,2,1e200,3\n", "huge.csv:7:"),
    ("gap.csv", ROWS + b"f,1,2,,3\n", "gap.csv:7:"),
    ("short.csv", ROWS + b"f,1,2,3\n", "short.csv:7: 4 fields"),
    ("quote.csv", ROWS + b'"f,1,2,3,4\n', "quote.csv:7:"),
    ("zeros.csv", ROWS + b"f,1,\x002,3,4\n", "zeros.csv:7:"),
    ("column.csv", b"id,image_x,image_y,map_x\n1,2,3,4\n", "column.csv:1: The column 'map_y'"),
    ("crs.points", b"#CRS: X\nmapX,mapY,sourceX\n1,2,3\n", "crs.points:2:"),
    ("enable.points", QGIS + b"1,2,3,4,maybe,0,0,0\n", "enable.points:2: 'maybe'"),
    ("disabled.points", QGIS + b"1,2,3,4,0,0,0,0\n", "disabled.points: All control points are disabled"),
    ("Ünï地.csv", ROWS + b"f,1,x,2,3\n", "Ünï地.csv:7:"),
]


class Georeference(ProgramTest):
    PROGRAM = "georeference"

    def setUp(self):
        super().setUp()
        self.good = self.write("good.csv", ROWS)

    def run_points(self, points, *options):
        return self.run_program("--points", points, "--out", self.out, *options)

    def page(self):
        with open(os.path.join(self.out, "report.html"), encoding="ascii") as file:
            return file.read()

    def table(self, name):
        with open(os.path.join(self.out, name), encoding="utf-8-sig", newline="") as file:
            return list(csv.DictReader(file))

    def assert_fails(self, result, status, part):
        code, text = result
        self.assertEqual(status, code, text)
        self.assert_one_line(text, part)
        self.assertFalse(os.path.exists(self.out), text)

    def test_bad_control_points_are_told_and_nothing_is_written(self):
        for name, content, part in BAD_POINTS:
            with self.subTest(name=name):
                self.assert_fails(self.run_points(self.make(name, content)), 1, part)

    def test_bad_points_to_transform_are_told_and_nothing_is_written(self):
        for name, content, part in (("none.csv", None, "none.csv"), ("rows.csv", b"x,y\n", "rows.csv"),
                                    ("x.csv", b"x,y\n1,2\n3,four\n", "x.csv:3: 'four'")):
            with self.subTest(name=name):
                path = self.make(name, content)
                self.assert_fails(self.run_points(self.good, "--warp-points", path), 1, part)

    def test_wrong_usage_has_status_2(self):
        for arguments, part in (((), "--"), (("--points", self.good), "--out"),
                                (("--points", self.good, "--out", self.out, "--method", "best"), "'best'"),
                                (("--points", self.good, "--out", self.out, "--grid", "1"), "--grid"),
                                (("--points", self.good, "--out", self.out, "--grid", "x"), "--grid"),
                                (("--points", self.good, "--out", ""), "--out"),
                                (("--nothing", "--points", self.good, "--out", self.out), "--nothing")):
            with self.subTest(arguments=arguments):
                self.assert_fails(self.run_program(*arguments), 2, part)
        status, text = self.run_program("--help")
        self.assertEqual(0, status)
        self.assertIn("thin-plate-spline", text)
        self.assertEqual(0, self.run_program("--version")[0])

    def test_an_output_folder_that_cannot_be_made_is_told(self):
        self.assert_fails(self.run_program("--points", self.good, "--out", os.path.join(self.good, "x")), 1, "good.csv")

    def test_methods_in_force_and_fallbacks_are_told(self):
        three = self.write("three.csv", b"\n".join(ROWS.split(b"\n")[:4]) + b"\n")
        one = self.write("one.csv", HEAD + b"a,0,0,100,200\n")
        for points, method, force, chain in (
                (self.good, "tps", "thin-plate spline", ""),
                (self.good, "AFFINE", "general linear", ""),
                (self.good, "quadratic", "general linear", "fell back to general linear."),
                (three, "tps", "linear conformal", "fell back to inverse distance squared, then to linear conformal."),
                (one, "mixed-scale", "identity map", "fell back to translate, then to identity map.")):
            with self.subTest(method=method, points=points):
                status, text = self.run_points(points, "--method", method)
                self.assertEqual(0, status, text)
                self.assertIn(f"In force: {force}.", self.page())
                self.assertIn(chain or "Asked for:", self.page())
                self.assertEqual(chain == "", "fell back" not in self.page())

    def test_an_affine_map_is_found_and_points_are_transformed(self):
        points = self.write("points.tsv", "name\tcolumn\trow\nSørvær\t2.5\t4\n\t7\t1\n".encode("utf-16"))
        status, text = self.run_points(self.good, "--method", "affine", "--warp-points", points)
        self.assertEqual(0, status, text)
        self.assertTrue(text.strip().endswith("report.html"))
        rows = self.table("points.csv")
        self.assertEqual([("Sørvær", 105, 192), ("2", 114, 198)],
                         [(row["id"], float(row["map_x"]), float(row["map_y"])) for row in rows])
        self.assertEqual({"0"}, {row["residual"] for row in self.table("residuals.csv")})

    def test_the_worst_point_comes_first(self):
        points = self.write("bad.csv", ROWS + b"f,4,9,108,183\ng,8,2,116,96\n")
        for method, column in (("affine", "residual"), ("tps", "left_out")):
            status, text = self.run_points(points, "--method", method)
            self.assertEqual(0, status, text)
            lengths = [float(row[column]) for row in self.table("residuals.csv")]
            self.assertEqual(sorted(lengths, reverse=True), lengths)
            self.assertGreater(lengths[0], 50)

    def test_a_points_file_of_qgis_is_read(self):
        status, text = self.run_points(os.path.join(DATA, "control-points-europe-laea.points"))
        self.assertEqual(0, status, text)
        self.assertIn("ETRS89-extended / LAEA Europe", self.page())
        rows = self.write("off.points", QGIS + b"1,2,3,4,1,0,0,0\n5,6,7,8,0,0,0,0\n9,9,2,2,1,0,0,0\n")
        status, text = self.run_points(rows)
        self.assertEqual(0, status, text)
        self.assertIn("2 control points of off.points (1 more are disabled)", self.page())

    def test_names_are_text(self):
        points = self.write("tags.csv", ROWS.replace(b"\na,", b"\n<b>&,"))
        status, text = self.run_points(points, "--title", "<i>東京</i>")
        self.assertEqual(0, status, text)
        self.assertIn("&lt;b&gt;&amp;", self.page())
        self.assertIn("&lt;i&gt;&#26481;&#20140;&lt;/i&gt;", self.page())

    def test_many_points_take_no_hours(self):
        rows = [b"image_x,image_y,map_x,map_y"]
        for i in range(700):
            x, y = (i * 7919) % 5003, (i * 104729) % 4999
            rows.append(f"{x},{y},{3 * x + i % 7},{-2 * y + i % 5}".encode())
        status, text = self.run_points(self.write("many.csv", b"\n".join(rows)), "--quiet")
        self.assertEqual((0, ""), (status, text))
        self.assertEqual(700, len(self.table("residuals.csv")))


if __name__ == "__main__":
    main()
