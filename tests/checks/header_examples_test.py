# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""tests/compile/header_examples.py tells of examples that do not compile and takes what the reader is to have."""

import os
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "compile"))
import header_examples  # noqa: E402

HEADER = """/// @file
/// A unit.
///
{}
///
/// Threads: none.

#pragma once

///     this is no example of the file
struct Unit {{
  Unit() = default;
  explicit Unit(int size);
  int Size() const;
}};
void Take(int size);
"""

# name, the lines of the example, a part of the first error or None
CASES = [
    ("statements", ["Unit unit(3);", "int size = unit.Size();"], None),
    ("class", ["struct Own : Unit {", "  int Size() const { return 1; }", "  ...", "};"], None),
    ("function", ["int main() {", "  Take(1);", "}"], None),
    ("template with a pack", ["template <class... T>", "void All(const T&... t) {", "  (Take(t), ...);", "}"], None),
    ("code of the reader", ["if (Unit().Size() > 2) { ... }"], None),
    ("value of the reader", ["Take(count);", "const int twice = 2 * count;", "unit.Size();"], None),
    ("unknown function", ["Give(1);"], "'Give' was not declared"),
    ("unknown member", ["Unit unit;", "unit.Length();"], "no member named 'Length'"),
    ("wrong argument", ['Take("three");'], "invalid conversion"),
    ("comment broken over the line", ["Take(1);   // takes one", "size"], "'size' was not declared"),
    ("comment before a statement", ["Take(1);   // takes one", "size Take(2);"], "'size' was not declared"),
]


class Examples(unittest.TestCase):
    def test_every_example_is_judged(self):
        for name, lines, fault in CASES:
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                (root / "shared" / "text").mkdir(parents=True)
                (root / "tests" / "compile").mkdir(parents=True)
                (root / "tests" / "compile" / "ExampleNames.h").touch()
                (root / "shared" / "CMakeLists.txt").write_text("shared_units(text HEADERS Unit.h SOURCES)\n",
                                                                encoding="utf-8")
                example = "\n".join("///     " + line for line in lines)
                (root / "shared" / "text" / "Unit.h").write_text(HEADER.format(example), encoding="utf-8")
                errors, count = header_examples.check(root, ["g++", "-std=c++20", "-I."])
                self.assertEqual(count, 1)
                self.assertEqual(bool(errors), fault is not None, errors)
                if fault is not None:
                    self.assertIn(fault, errors[0])

    def test_drawings_are_no_examples(self):
        drawing = "/// ```text\n///     +--+\n///     |  |\n/// ```\n///"
        found = list(header_examples.examples(HEADER.format(drawing + "\n///     Take(1);")))
        self.assertEqual([(9, ["Take(1);", ""])], found)


if __name__ == "__main__":
    unittest.main()
