# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""tools/check_readme.py finds every block of C++ that is not what the build compiles, and takes the others."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import check_readme  # noqa: E402

SOURCE = """// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: none.
int Twice(int x) {
  // [body]
  if (x < 0) {
    return 0;
  }
  // [end]
  return 2 * x;
}
"""
BODY = "if (x < 0) {\n  return 0;\n}\n"

# name, the page, a part of the one fault that must be told or None
CASES = [
    ("whole file", f"<!-- source: a.cpp -->\n```cpp\n{SOURCE}```\n", None),
    ("whole file without the licence", "<!-- source: a.cpp -->\n```cpp\n" + SOURCE.split("\n\n", 1)[1] + "```\n", None),
    ("region moved to the left", f"text\n\n<!-- source: a.cpp#body -->\n```cpp\n{BODY}```\n", None),
    ("code of others", "<!-- not ours: cereal -->\n```cpp\nint other;\n```\n", None),
    ("other languages", "```text\nint\n```\n\n```cmake\nset(a)\n```\n", None),
    ("no mark", "text\n```cpp\nint x;\n```\n", "page.md:2: which source"),
    ("mark of a picture", "<!-- drawn -->\n```cpp\nint x;\n```\n", "which source"),
    ("mark away from the block", f"<!-- source: a.cpp#body -->\n\n```cpp\n{BODY}```\n", "which source"),
    ("changed line", "<!-- source: a.cpp#body -->\n```cpp\n" + BODY.replace("0;", "1;") + "```\n", "does not quote"),
    ("part of a region", "<!-- source: a.cpp#body -->\n```cpp\nif (x < 0) {\n```\n", "does not quote"),
    ("no such source", f"<!-- source: b.cpp -->\n```cpp\n{SOURCE}```\n", "does not quote b.cpp"),
    ("no such region", f"<!-- source: a.cpp#head -->\n```cpp\n{BODY}```\n", "does not quote a.cpp#head"),
    ("second of two blocks", f"<!-- source: a.cpp#body -->\n```cpp\n{BODY}```\n```c++\nint x;\n```\n", "page.md:7: which"),
]


class QuotedSources(unittest.TestCase):
    def test_every_block_is_judged(self):
        for name, page, fault in CASES:
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                (root / "docs").mkdir()
                (root / "a.cpp").write_text(SOURCE, encoding="utf-8")
                (root / "docs" / "page.md").write_text(page, encoding="utf-8")
                faults = list(check_readme.quote_faults(root))
                self.assertEqual(len(faults), 0 if fault is None else 1, faults)
                if fault is not None:
                    self.assertIn(fault, faults[0])


if __name__ == "__main__":
    unittest.main()
