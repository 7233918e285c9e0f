#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks who includes whom in the tree: check_includes.py [ROOT]

The folders of shared/ stand on floors. A file may include files of its own floor and of those below, never of one
above, and no chain of includes leads back to where it began. Only shared/platform knows the operating system.
The library's own headers are included with quotes, by their path from the root. Heavy template libraries stay out
of headers. Every source of the library is named in the CMakeLists.txt of its folder and includes its own header before
anything else, which shows that the header compiles alone.

Prints one line a fault, "file:line: text", and exits with 1 if there is any.
"""

import pathlib
import re
import sys

# From the ground up; the folders of one line share a floor.
FLOORS = [
    ["platform", "text", "diagnostics"],
    ["files"],
    ["geometry"],
    ["color"],
    ["archive", "commands", "xml", "html"],
    ["polygons", "viewing", "numerics"],
    ["fonts"],
    ["mathtext"],
    ["plots"],
]
FLOOR_OF = {folder: level for level, folders in enumerate(FLOORS) for folder in folders}

# Folders outside the library stand above all floors; the library includes none of them.
OUTSIDE = ["tests", "bench", "fuzz", "examples"]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]')
OS_HEADER = re.compile(
    r"^(windows\.h|win[a-z0-9]*\.h|wtypes\.h|tchar\.h|shlobj\.h|shlwapi\.h|share\.h|process\.h|io\.h|direct\.h"
    r"|unistd\.h|fcntl\.h|dirent\.h|dlfcn\.h|pthread\.h|langinfo\.h|iconv\.h|sys/.*|netinet/.*|arpa/.*"
    r"|unicode/.*)$",
    re.IGNORECASE,
)
OS_MACRO = re.compile(
    r"^\s*#\s*(?:el)?if.*\b(_WIN32|_WIN64|WIN32|__linux__|__unix__|__APPLE__|_MSC_VER|__MINGW32__|__MINGW64__)\b"
)
HEAVY_HEADER = re.compile(r"^boost/(geometry|spirit|phoenix|proto)\b")
# Headers that a user includes to have just that.
MAY_BE_HEAVY = {"shared/polygons/BoostGeometry.h"}


def sources(root):
    """Yields the paths of all C++ files, relative to the root."""
    for top in ["shared", *OUTSIDE]:
        for path in sorted((root / top).rglob("*")):
            relative = path.relative_to(root)
            if path.suffix in (".h", ".cpp") and "data" not in relative.parts[1:2]:
                yield relative


def includes(text):
    """Yields (line number, is quoted, name) of every include."""
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1] == '"', match[2]


def folder_of(relative):
    return relative.parts[1] if relative.parts[0] == "shared" and len(relative.parts) > 2 else ""


class Checker:
    def __init__(self, root):
        self.root = root
        self.faults = []
        self.graph = {}

    def fault(self, relative, line, text):
        self.faults.append(f"{relative.as_posix()}:{line}: {text}")

    def run(self):
        for relative in sources(self.root):
            text = (self.root / relative).read_text(encoding="utf-8")
            self.check_head(relative, text)
            self.check_fence(relative, text)
            self.check_includes(relative, text)
            self.check_listed(relative)
            self.check_own_header(relative, text)
        self.check_cycles()
        return self.faults

    def check_head(self, relative, text):
        lines = text.splitlines()
        if lines[:1] != ["// SPDX-License-Identifier: MIT"] or not (
            len(lines) > 1 and lines[1].startswith("// Copyright (c) ")
        ):
            self.fault(relative, 1, "the two lines of the licence are missing")
        if relative.suffix == ".h" and "#pragma once" not in lines:
            self.fault(relative, 1, "#pragma once is missing")

    def check_fence(self, relative, text):
        inside = relative.parts[:2] == ("shared", "platform") or relative.as_posix() == "shared/Export.h"
        # Where the two targets must differ, the tests state both sides.
        if inside or relative.parts[0] == "tests":
            return
        for number, line in enumerate(text.splitlines(), 1):
            match = OS_MACRO.match(line)
            if match:
                self.fault(relative, number, f"{match[1]} is known to shared/platform only")

    def check_includes(self, relative, text):
        targets = self.graph.setdefault(relative, [])
        folder = folder_of(relative)
        if relative.parts[0] == "shared" and folder and folder not in FLOOR_OF:
            self.fault(relative, 1, f"shared/{folder} stands on no floor: add it to tools/check_includes.py")
        for number, quoted, name in includes(text):
            if quoted or name.startswith(("shared/", "tests/", "bench/", "fuzz/", "examples/")):
                self.check_own(relative, number, quoted, name, targets)
            else:
                self.check_system(relative, number, name)

    def check_own(self, relative, number, quoted, name, targets):
        if not quoted:
            self.fault(relative, number, f"<{name}> is our own: include it with quotes")
        target = pathlib.PurePosixPath(name)
        for place in self.projects_of(relative, target):
            if (self.root / place / name).is_file():
                targets.append((number, place / name))
                return
        if not (self.root / name).is_file():
            self.fault(relative, number, f'"{name}" is not a path from the root of the tree')
            return
        targets.append((number, pathlib.Path(target)))
        if relative.parts[0] != "shared":
            return
        if target.parts[0] != "shared":
            self.fault(relative, number, f'the library may not include "{name}"')
            return
        own, other = folder_of(relative), folder_of(target)
        if other and other in FLOOR_OF and FLOOR_OF[other] > FLOOR_OF.get(own, -1):
            self.fault(relative, number, f'shared/{own or "."} stands below shared/{other}: "{name}" is upwards')

    @staticmethod
    def projects_of(relative, target):
        """The folders around a file that stand for a project of their own, with themselves among its include paths."""
        if relative.parts[0] == "examples":
            yield relative.parent
        if relative.parts[0] == "tests" and target.parts[0] == "shared":
            yield from relative.parents[:-1]

    def check_system(self, relative, number, name):
        if OS_HEADER.match(name) and relative.parts[0] != "bench":
            where = relative.as_posix()
            if name.lower() == "windows.h":
                allowed = where.startswith("shared/platform/windows/") and relative.suffix == ".cpp"
                allowed = allowed or where == "shared/platform/WindowsTypes.h" or where.startswith("tests/")
            else:
                allowed = where.startswith(("shared/platform/windows/", "shared/platform/posix/", "tests/"))
            if not allowed:
                self.fault(relative, number, f"<{name}> belongs into shared/platform")
        is_header = relative.suffix == ".h" and relative.parts[0] == "shared"
        if HEAVY_HEADER.match(name) and is_header and relative.as_posix() not in MAY_BE_HEAVY:
            self.fault(relative, number, f"<{name}> is too heavy for a header: put it behind one source")

    def check_listed(self, relative):
        if relative.parts[0] != "shared":
            return
        lists = [self.root / parent / "CMakeLists.txt" for parent in relative.parents]
        listed = any(
            re.search(rf"(^|[\s/\"(]){re.escape(relative.name)}($|[\s\")])", path.read_text(encoding="utf-8"))
            for path in lists
            if path.is_file()
        )
        if not listed:
            self.fault(relative, 1, "is in no CMakeLists.txt: name it in SOURCES, a public header in HEADERS")

    def check_own_header(self, relative, text):
        if relative.parts[0] != "shared" or relative.suffix != ".cpp":
            return
        folder = relative.parent
        folders = [folder, folder.parent] if folder.parent.as_posix() == "shared/platform" else [folder]
        for header in (place / f"{relative.stem}.h" for place in folders):
            first = next(includes(text), (1, True, None))
            if (self.root / header).is_file() and first[2] != header.as_posix():
                self.fault(relative, first[0], f'the first include is not "{header.as_posix()}"')
            if (self.root / header).is_file():
                break

    def check_cycles(self):
        """Depth-first search; a file met again while still open closes a cycle."""
        done, open_files = set(), []

        def visit(path):
            if path in done:
                return
            if path in open_files:
                chain = open_files[open_files.index(path):] + [path]
                self.fault(path, 1, "includes itself by " + " -> ".join(p.as_posix() for p in chain))
                return
            open_files.append(path)
            for _, target in self.graph.get(path, []):
                visit(target)
            open_files.pop()
            done.add(path)

        for path in sorted(self.graph):
            visit(path)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent).resolve()
    faults = Checker(root).run()
    print("\n".join(faults) if faults else "No fault found.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
