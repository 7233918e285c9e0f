#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Checks that what must not compile does not, for the reason told: compile_pairs.py SOURCE -- COMPILER ARGUMENT...

A case of the source is a pair, the refused code with a regular expression for the compiler's error and its twin:

    #ifdef MUST_NOT_COMPILE // deleted function|no match for
      a < b;
    #else
      a == b;
    #endif

The source must compile without a warning as it is. With MUST_NOT_COMPILE defined, every pair must raise an error that
its expression finds, in its lines or in a template that they instantiate. All pairs are compiled at once; a pair
without an error of its own (it came after a fatal one, or another pair instantiated the same template) is compiled
again alone. Prints one line a fault and exits with 1 if there is any.
"""

import dataclasses
import os
import re
import subprocess
import sys

BEGIN = re.compile(r"^\s*#\s*ifdef\s+MUST_NOT_COMPILE\b\s*(?://\s*(.*\S))?")
COMMENT = re.compile(r"^\s*//\s*(.*\S)")
IF = re.compile(r"^\s*#\s*if")
ELSE = re.compile(r"^\s*#\s*(?:else|elif)\b")
END = re.compile(r"^\s*#\s*endif\b")
PLACE = re.compile(r"^(?P<file>[^\s:][^:]*):(?P<line>\d+)(?::\d+)?:\s*(?P<kind>fatal error|error|warning|note)?")
FLAGS = ["-fsyntax-only", "-x", "c++", "-fdiagnostics-color=never", "-Wall", "-Wextra", "-Werror",
         "-Wno-unused-variable", "-Wno-unused-but-set-variable", "-Wno-unused-function", "-Wno-unused-parameter",
         "-Wno-unused-value", "-Wunused-result"]  # clang counts the last to the one before


@dataclasses.dataclass
class Pair:
    line: int  # of the #ifdef
    pattern: str
    other: int = 0  # of the #else
    end: int = 0  # of the #endif
    refused: str = ""
    twin: str = ""


def expression(lines, number, first):
    """The expected error behind an #ifdef and on the lines of comment that follow, where the formatter broke it."""
    parts = [first or ""]
    for line in lines[number:]:
        comment = COMMENT.match(line)
        if not comment:
            break
        parts.append(comment[1])
    return " ".join(parts)


def read_pairs(lines):
    """Returns the pairs of a source and the faults in how they are written."""
    pairs, faults, stack = [], [], []
    for number, line in enumerate(lines, 1):
        begin = BEGIN.match(line)
        if begin:
            stack.append(Pair(number, expression(lines, number, begin[1])))
            if not begin[1]:
                faults.append((number, "the expected error is missing: #ifdef MUST_NOT_COMPILE // expression"))
        elif IF.match(line):
            stack.append(None)
        elif stack and ELSE.match(line) and stack[-1]:
            stack[-1].other = number
        elif stack and END.match(line):
            pair = stack.pop()
            if pair:
                pair.end = number
                pairs.append(pair)
                if not pair.other:
                    pair.other = number
                pair.refused = " ".join(text.strip() for text in lines[pair.line:pair.other - 1])
                pair.twin = " ".join(text.strip() for text in lines[pair.other:number - 1])
                if not pair.twin:
                    faults.append((pair.line, "the twin that compiles is missing: #else"))
    if not pairs:
        faults.append((1, "holds no pair"))
    return pairs, faults


def compile_text(command, source, text):
    """Compiles a text as if it were the source; returns what the compiler says, nothing when it is content."""
    process = subprocess.run([*command, *FLAGS, "-"], input=f'#line 1 "{source}"\n{text}', text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                             env={**os.environ, "LC_ALL": "C"})
    return process.stdout if process.returncode else ""


def errors_by_line(source, output):
    """Yields (lines of the source, message) of every error: where it is or what led to it, with the notes behind."""
    context, error = [], None
    for text in output.splitlines():
        place = PLACE.match(text)
        kind = place["kind"] if place else None
        here = int(place["line"]) if place and place["file"] == source else None
        if kind in ("error", "fatal error"):
            if error:
                yield error
            error = (context + ([here] if here else []), [text])
            context = []
        elif kind == "note" and error:
            error[1].append(text)
            if here:
                error[0].append(here)
        elif kind is None and here:
            context.append(here)  # "required from here" stands above the error
    if error:
        yield error


def is_told(pair, errors):
    return any(any(pair.line < line < pair.other for line in lines) and
               any(re.search(pair.pattern, text) for text in messages) for lines, messages in errors)


def alone(lines, pair):
    """The source with one pair refused and the twins of all others."""
    result = []
    for number, line in enumerate(lines, 1):
        result.append(f"#if {int(number == pair.line)}" if BEGIN.match(line) else line)
    return "\n".join(result) + "\n"


def check(source, command):
    with open(source, encoding="utf-8") as file:
        text = file.read()
    lines = text.splitlines()
    pairs, faults = read_pairs(lines)
    if faults:
        return faults
    output = compile_text(command, source, text)
    if output:
        return [(1, "the twins do not compile:\n" + output)]
    together = list(errors_by_line(source, compile_text([*command, "-DMUST_NOT_COMPILE"], source, text)))
    for pair in pairs:
        if is_told(pair, together):
            continue
        output = compile_text(command, source, alone(lines, pair))
        if not output:
            faults.append((pair.line + 1, f"compiles: {pair.refused}"))
        elif not is_told(pair, errors_by_line(source, output)):
            faults.append((pair.line + 1, f"no error of this pair matches '{pair.pattern}':\n{output}"))
    print(f"{len(pairs)} pairs")
    return faults


def main():
    if len(sys.argv) < 4 or sys.argv[2] != "--":
        sys.exit(__doc__)
    source = sys.argv[1]
    faults = check(source, sys.argv[3:])
    for line, fault in faults:
        print(f"{source}:{line}: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
