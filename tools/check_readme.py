#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that README.md and the other pages show what is true: check_readme.py ROOT PROGRAM...

Every block of C++ on a page is quoted from a source that the build compiles. The line before the block names it:
`<!-- source: PATH -->` for a whole file, with or without its licence lines, `<!-- source: PATH#NAME -->` for the lines
between `// [NAME]` and the next `// [end]` of it, moved to the left. Only code of others, which the build cannot
compile, stands behind `<!-- not ours: NAME -->`.

PROGRAM (with what it needs to run, the emulator of another system say) must print exactly the block of README.md
behind `<!-- output -->`. Its folder map must name every folder of shared/, and every path in backquotes that begins
with a folder of the tree must exist. docs/README.md must list every page of docs/.
"""

import pathlib
import re
import subprocess
import sys
import textwrap

FENCED = r"```\w*\n(.*?)```"
CODE = re.compile(r"(?:^<!-- (?P<mark>[^\n]*) -->\n)?^```(?:cpp|c\+\+)\n(?P<code>.*?)^```", re.DOTALL | re.MULTILINE)
LICENCE = re.compile(r"\A// SPDX[^\n]*\n// Copyright[^\n]*\n\n*")


def block_behind(readme, mark):
    match = re.search(mark + r"\s*\n" + FENCED, readme, re.DOTALL)
    if not match:
        raise SystemExit(f"README.md has no block behind {mark}")
    return match


def region(text, name):
    """The lines of a source between `// [name]` and `// [end]`, or None where there are none."""
    match = re.search(rf"^ *// \[{re.escape(name)}\]\n(.*?)^ *// \[end\]$", text, re.DOTALL | re.MULTILINE)
    return textwrap.dedent(match[1]) if match else None


def quotes_of(root, source):
    """Returns what a block that names `source` may hold; nothing when there is no such source."""
    path, _, name = source.partition("#")
    if not (root / path).is_file():
        return []
    text = (root / path).read_text(encoding="utf-8")
    if not name:
        return [text, LICENCE.sub("", text)]
    lines = region(text, name)
    return [] if lines is None else [lines]


def quote_faults(root):
    for page in sorted(root.rglob("*.md")):
        place = page.relative_to(root)
        if place.parts[0] == "build":
            continue
        text = page.read_text(encoding="utf-8")
        for block in CODE.finditer(text):
            where = f"{place.as_posix()}:{text.count(chr(10), 0, block.start()) + 1}"
            kind, _, name = (block["mark"] or "").partition(": ")
            if kind == "not ours" and name:
                continue
            if kind != "source" or not name:
                yield f"{where}: which source is quoted? <!-- source: PATH --> is missing before the block"
            elif block["code"] not in quotes_of(root, name):
                yield f"{where}: does not quote {name} as it is"


def output_faults(readme, command):
    printed = subprocess.run(command, stdout=subprocess.PIPE, check=True, timeout=100).stdout.decode("utf-8")
    expected = block_behind(readme, "<!-- output -->")[1]
    if printed != expected:
        yield f"README.md promises the output {expected!r}, the program prints {printed!r}"


def path_faults(root, readme):
    for folder in sorted(path.name for path in (root / "shared").iterdir() if path.is_dir()):
        if f"{folder}/" not in readme:
            yield f"README.md does not name shared/{folder}/"
    tops = "|".join(re.escape(path.name) for path in root.iterdir() if path.is_dir() and path.name != "build")
    for name in re.findall(rf"`((?:{tops})/[\w./-]*)`", readme):
        if not (root / name).exists():
            yield f"README.md names {name}, which does not exist"
    for name in re.findall(r"\]\(([\w./-]+)\)", readme):
        if not (root / name).exists():
            yield f"README.md links to {name}, which does not exist"


def index_faults(root):
    index = (root / "docs" / "README.md").read_text(encoding="utf-8")
    for page in sorted((root / "docs").glob("*.md")):
        if page.name != "README.md" and f"]({page.name})" not in index:
            yield f"docs/README.md does not list {page.name}"


def main():
    root = pathlib.Path(sys.argv[1])
    readme = (root / "README.md").read_text(encoding="utf-8")
    faults = [*quote_faults(root), *output_faults(readme, sys.argv[2:]), *path_faults(root, readme),
              *index_faults(root)]
    print("\n".join(faults) or "No fault found.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
