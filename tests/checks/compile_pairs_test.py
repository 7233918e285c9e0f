# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""tests/compile/compile_pairs.py finds every way in which a pair may fail to prove something."""

import contextlib
import io
import os
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "compile"))
import compile_pairs  # noqa: E402

HEAD = """
template <class T> void Take(const T&) { static_assert(sizeof(T) == 4, "four bytes only"); }
struct Box { int size; bool operator==(const Box&) const = default; };
[[nodiscard]] int Size(const Box&);
"""


def pair(refused, twin, expected):
    return f"#ifdef MUST_NOT_COMPILE // {expected}\n{refused}\n#else\n{twin}\n#endif\n"


GOOD = [
    pair("bool r = a < b;", "bool r = a == b;", "no match for|invalid operands"),
    pair("Take('c');", "Take(1);", "four bytes only"),
    pair("Take('d');", "Take(2);", "four bytes only"),  # the same instantiation once more
    pair("Size(a);", "int s = Size(a);", "nodiscard|unused-result"),
    pair("Take(;", "Take(3);", "expected"),  # what follows may get lost
    pair("Box(1, 2, 3);", "Box{1};", "too many\n// initializers|no matching constructor"),
]

# name, a pair, a part of the one fault that must be told
BAD = [
    ("it compiles", pair("Take(4);", "Take(3);", "four bytes only"), "compiles: Take(4);"),
    ("another reason", pair("Take(nothing);", "Take(3);", "four bytes only"), "no error of this pair matches"),
    ("the twin is wrong", pair("Take('c');", "Take('d');", "four bytes only"), "the twins do not compile"),
    ("the twin warns", pair("Take('c');", "if (a.size = 2) Take(1);", "four bytes only"), "the twins do not compile"),
    ("no twin", "#ifdef MUST_NOT_COMPILE // four\nTake('c');\n#endif\n", "the twin that compiles is missing"),
    ("no reason", pair("Take('c');", "Take(3);", ""), "the expected error is missing"),
]


def faults_of(pairs):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "pairs.cpp"
        source.write_text(HEAD + "void F(Box a, Box b) {\n" + "".join(pairs) + "}\n", encoding="utf-8")
        with contextlib.redirect_stdout(io.StringIO()):
            return compile_pairs.check(str(source), [os.environ.get("CXX", "c++"), "-std=c++20"])


class CompilePairs(unittest.TestCase):
    def test_sound_pairs_pass(self):
        self.assertEqual(faults_of(GOOD), [])

    def test_a_pair_that_proves_nothing_is_told(self):
        for name, text, expected in BAD:
            with self.subTest(name):
                faults = faults_of([GOOD[0], text])
                self.assertEqual(len(faults), 1, faults)
                self.assertIn(expected, faults[0][1])

    def test_a_file_without_pairs_is_told(self):
        self.assertIn("holds no pair", faults_of([])[0][1])


if __name__ == "__main__":
    unittest.main()
