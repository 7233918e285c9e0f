#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Writes shared/text/PowersOfFive.inc, the 128-bit powers of five of the parser and the formatter of numbers.

Every power 5**q is scaled by a power of two into [2**127, 2**128). Powers that do not fit exactly are cut off,
except for the negative exponents whose power 5**-q fits 64 bits: their reciprocal is rounded up, so that a
quotient which is exact in decimal shows as one in binary (D. Lemire, "Number Parsing at a Gigabyte per
Second", 2021, section 5).

    make_powers_of_five.py            writes the file
    make_powers_of_five.py --check    exit status 1 when the file differs
"""

import pathlib
import sys

SMALLEST = -342  # 10**-343 times any 64-bit integer rounds to zero
LARGEST = 308  # 10**309 is beyond every double
EXACT_DIVISORS = -27  # 5**27 is the largest power of five below 2**64
TARGET = pathlib.Path(__file__).resolve().parent.parent / "shared" / "text" / "PowersOfFive.inc"


def scaled_power(q: int) -> int:
    if q >= 0:
        power = 5**q
        shift = power.bit_length() - 128
        return power >> shift if shift > 0 else power << -shift
    divisor = 5**-q
    quotient = (1 << (divisor.bit_length() + 127)) // divisor
    return quotient + 1 if q >= EXACT_DIVISORS else quotient


def table_text() -> str:
    lines = [
        "// SPDX-License-Identifier: MIT",
        "// Copyright (c) 2026 The Shared authors",
        "",
        "// Made by tools/make_powers_of_five.py; do not edit.",
        f"// High and low half of the scaled powers of five from {SMALLEST} to {LARGEST}.",
    ]
    for q in range(SMALLEST, LARGEST + 1):
        power = scaled_power(q)
        assert power >> 127 == 1, q
        lines.append(f"{{0x{power >> 64:016X}, 0x{power & (2**64 - 1):016X}}},  // {q}")
    return "\n".join(lines) + "\n"


def main() -> int:
    text = table_text()
    if sys.argv[1:] == ["--check"]:
        if TARGET.read_text(encoding="ascii") == text:
            return 0
        print(f"{TARGET.name} is out of date: run {pathlib.Path(__file__).name}", file=sys.stderr)
        return 1
    TARGET.write_text(text, encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
