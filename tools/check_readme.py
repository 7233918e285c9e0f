#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that README.md shows what is true: check_readme.py ROOT PROGRAM...

The README quotes a source behind the mark `<!-- source: PATH -->` and the output of that program behind
`<!-- output -->`, each as the next fenced block. The block must be the source without its licence lines, and PROGRAM
(with what it needs to run, the emulator of another system say) must print exactly the other. The folder map must
name every folder of shared/, and every path in backquotes that begins with a folder of the tree must exist.
docs/README.md must list every page of docs/.
"""

import pathlib
import re
import subprocess
import sys

FENCED = r"```\w*\n(.*?)```"


def block_behind(readme, mark):
    match = re.search(mark + r"\s*\n" + FENCED, readme, re.DOTALL)
    if not match:
        raise SystemExit(f"README.md has no block behind {mark}")
    return match


def source_faults(root, readme):
    match = block_behind(readme, r"<!-- source: (\S+) -->")
    lines = (root / match[1]).read_text(encoding="utf-8").splitlines(keepends=True)
    while lines and (lines[0].startswith("// ") or not lines[0].strip()):
        del lines[0]
    if "".join(lines) != match[2]:
        yield f"README.md does not quote {match[1]} as it is"


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
    faults = [*source_faults(root, readme), *output_faults(readme, sys.argv[2:]), *path_faults(root, readme),
              *index_faults(root)]
    print("\n".join(faults) or "No fault found.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
