# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Every rule of tools/check_includes.py finds a tree that breaks it, and lets a sound tree pass."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import check_includes  # noqa: E402

HEAD = "// SPDX-License-Identifier: MIT\n// Copyright (c) 2026 The Shared authors\n"
SOUND = {
    "shared/text/A.h": "#pragma once\n#include <string>\n",
    "shared/files/B.h": '#pragma once\n#include "shared/text/A.h"\n',
    "shared/files/B.cpp": '#include "shared/files/B.h"\n#include <boost/spirit/include/qi.hpp>\n',
    "shared/platform/windows/C.cpp": "#include <windows.h>\n#ifdef _WIN32\n#endif\n",
    "examples/map/Main.cpp": '#include "Map.h"\n#include "shared/files/B.h"\n',
    "examples/map/Map.h": "#pragma once\n",
    "tests/files/BTest.cpp": '#include "shared/files/B.h"\n#ifdef _WIN32\n#endif\n',
    "tests/checks/unit/shared/text/U.h": "#pragma once\n",
    "tests/checks/unit/tests/text/UTest.cpp": '#include "shared/files/B.h"\n#include "shared/text/U.h"\n',
}

# name, the files that differ from the sound tree, a part of the one fault that must be told
CASES = [
    ("upwards", {"shared/text/A.h": '#pragma once\n#include "shared/files/B.h"\n',
                 "shared/files/B.h": "#pragma once\n"}, "upwards"),
    ("cycle on one floor", {"shared/text/A.h": '#pragma once\n#include "shared/text/D.h"\n',
                            "shared/text/D.h": '#pragma once\n#include "shared/text/A.h"\n'}, "includes itself"),
    ("angle brackets", {"shared/files/B.h": "#pragma once\n#include <shared/text/A.h>\n"}, "with quotes"),
    ("relative path", {"shared/files/B.h": '#pragma once\n#include "../text/A.h"\n'}, "not a path from the root"),
    ("test beside a test", {"tests/files/BTest.cpp": '#include "Help.h"\n',
                           "tests/files/Help.h": "#pragma once\n"}, "not a path from the root"),
    ("library includes tests", {"shared/files/E.cpp": '#include "tests/files/BTest.cpp"\n'}, "may not include"),
    ("windows.h in a subsystem", {"shared/files/E.cpp": "#include <Windows.h>\n"}, "belongs into shared/platform"),
    ("windows.h in a platform header", {"shared/platform/D.h": "#pragma once\n#include <windows.h>\n"}, "belongs into"),
    ("posix header in a subsystem", {"shared/files/E.cpp": "#  include <sys/stat.h>\n"}, "belongs into"),
    ("target macro in a subsystem", {"shared/files/E.cpp": "#if defined(__linux__)\n#endif\n"}, "__linux__ is known"),
    ("heavy header", {"shared/files/B.h": "#pragma once\n#include <boost/geometry.hpp>\n"}, "too heavy"),
    ("no pragma once", {"shared/text/A.h": "#include <string>\n"}, "#pragma once is missing"),
    ("unknown folder", {"shared/attic/E.h": "#pragma once\n"}, "stands on no floor"),
    ("own header late", {"shared/files/B.cpp": '#include <string>\n#include "shared/files/B.h"\n'}, "first include"),
    ("neutral header late", {"shared/platform/C.h": "#pragma once\n"}, "first include"),
    ("not in CMakeLists.txt", {"shared/text/F.cpp": ""}, "is in no CMakeLists.txt"),
]


def faults_of(files, unlisted=()):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        names = {}
        for name, text in files.items():
            path = root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(HEAD + text, encoding="utf-8")
            if name not in unlisted:
                names.setdefault(path.parent, []).append(path.name)
        for parent, listed in names.items():
            (parent / "CMakeLists.txt").write_text(" ".join(listed), encoding="utf-8")
        return check_includes.Checker(root).run()


class CheckIncludes(unittest.TestCase):
    def test_a_sound_tree_passes(self):
        self.assertEqual(faults_of(SOUND), [])

    def test_each_broken_rule_is_told_once(self):
        for name, changed, expected in CASES:
            with self.subTest(name):
                unlisted = ["shared/text/F.cpp"]
                faults = faults_of({**SOUND, **changed}, unlisted)
                self.assertEqual(len(faults), 1, faults)
                self.assertIn(expected, faults[0])

    def test_a_missing_licence_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "tests" / "T.cpp"
            path.parent.mkdir()
            path.write_text("int a;\n", encoding="utf-8")
            self.assertEqual(len(check_includes.Checker(pathlib.Path(folder)).run()), 1)


if __name__ == "__main__":
    unittest.main()
