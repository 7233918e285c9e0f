# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Every file that tells the version tells that of shared/Version.h; recipes and descriptions can be read."""

import ast
import json
import pathlib
import re
import unittest
import xml.dom.minidom

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEADER = (ROOT / "shared" / "Version.h").read_text(encoding="utf-8")
VERSION = re.search(r'#define SHARED_VERSION_STRING "(.+)"', HEADER)[1]

# the file, an expression whose group is the version
PLACES = [
    ("CHANGELOG.md", r"(?m)^## (\S+?),? "),
    ("CITATION.cff", r"(?m)^version: (\S+)"),
    ("packaging/debian/changelog", r"^shared \((\S+)\)"),
    ("packaging/vcpkg/vcpkg.json", r'"version": "(\S+)"'),
]


class Versions(unittest.TestCase):
    def test_the_parts_are_those_of_the_text(self):
        parts = [re.search(rf"#define SHARED_VERSION_{name} (\d+)", HEADER)[1] for name in ("MAJOR", "MINOR", "PATCH")]
        self.assertEqual(".".join(parts), VERSION)

    def test_every_file_tells_the_same(self):
        for name, pattern in PLACES:
            with self.subTest(name):
                self.assertEqual(re.search(pattern, (ROOT / name).read_text(encoding="utf-8"))[1], VERSION)

    def test_what_debuggers_show_exists(self):
        """Every field that the natvis file names is one of a header."""
        path = ROOT / "tools/debuggers/Shared.natvis"
        headers = "".join(file.read_text(encoding="utf-8") for file in (ROOT / "shared").rglob("*.h"))
        document = xml.dom.minidom.parse(str(path))
        types = document.getElementsByTagName("Type") + document.getElementsByTagName("AlternativeType")
        for name in {node.getAttribute("Name") for node in types}:
            plain = re.match(r"shr::(\w+)", name)[1]
            self.assertRegex(headers, rf"(class|struct) (SHARED_API )?{plain}\b")
        for field in set(re.findall(r"\b[a-z]\w*_\b", path.read_text(encoding="utf-8"))):
            self.assertRegex(headers, rf"\b{field}\b")

    def test_the_debian_packages_carry_the_licence_of_the_code_pages(self):
        licences = (ROOT / "tools/codepages/licences/unicode-icu-data-V3.txt").read_text(encoding="utf-8")
        notice = re.search(r"Copyright \S+ [\s\d-]+Unicode.*?(?=SPDX)", licences, re.DOTALL)[0].split()
        told = (ROOT / "packaging/debian/copyright").read_text(encoding="utf-8")
        stanza = re.search(r"(?m)^License: Unicode-3\.0\n((?: .*\n)+)", told)
        self.assertIsNotNone(stanza)
        self.assertIn(" ".join(notice), " ".join(re.sub(r"(?m)^ \.$", "", stanza[1]).split()))
        for pattern in re.search(r"Files: ([^:]+)\nCopyright: [^:]+\nLicense: Unicode", told)[1].split():
            self.assertTrue(list(ROOT.glob(pattern)), pattern)

    def test_recipes_can_be_read_and_name_files_that_exist(self):
        json.loads((ROOT / "packaging/vcpkg/vcpkg.json").read_text(encoding="utf-8"))
        ast.parse((ROOT / "packaging/conan/conanfile.py").read_text(encoding="utf-8"))
        port = (ROOT / "packaging/vcpkg/portfile.cmake").read_text(encoding="utf-8")
        for name in re.findall(r'\$\{SOURCE_PATH\}/([^"]+)"', port):
            self.assertTrue((ROOT / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
