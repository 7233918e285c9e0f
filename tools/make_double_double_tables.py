#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Makes the tables of the double-double functions: make_double_double_tables.py > DoubleDoubleTables.inc

Run in shared/numerics/doubledouble/. All constants are computed here from their series, in integers that stand for
multiples of 2^-BITS, and rounded to the nearest double and the nearest double of the rest.
"""

import math
from fractions import Fraction

BITS = 1700
ONE = 1 << BITS


def series(first, ratio, divisor):
    """Sums first * ratio^k / divisor(k) until the terms vanish; `ratio` is (numerator, denominator)."""
    total, power, k = 0, first, 0
    while power:
        total += power // divisor(k)
        power = power * ratio[0] // ratio[1]
        k += 1
    return total


def atanh_of(numerator, denominator):
    square = (numerator * numerator, denominator * denominator)
    return series(ONE * numerator // denominator, square, lambda k: 2 * k + 1)


def log_of(value):
    """The logarithm of a fraction near 1: 2 atanh((v - 1) / (v + 1))."""
    ratio = (value - 1) / (value + 1)
    sign = -1 if ratio < 0 else 1
    return sign * 2 * atanh_of(abs(ratio.numerator), ratio.denominator)


def exp_of(value):
    total, term, k = 0, ONE, 0
    while term:
        total += term
        k += 1
        term = abs(term) * abs(value.numerator) // (value.denominator * k) * (-1 if (value < 0 and k % 2) else 1)
    return total


def atan_of_fixed(x):
    """The arc tangent of x / 2^BITS, from 0 to 1, by halving the angle until the series is short."""
    halvings = 0
    while x > ONE >> 12:
        x = x * ONE // (ONE + math.isqrt(ONE * ONE + x * x))
        halvings += 1
    total, power, k, square = 0, x, 0, x * x // ONE
    while power:
        total += power // (2 * k + 1) * (-1 if k % 2 else 1)
        power = power * square // ONE
        k += 1
    return total << halvings


def nearest_double(fraction):
    # The quotient of two integers is correctly rounded.
    return fraction.numerator / fraction.denominator


def pair(fraction):
    head = nearest_double(fraction)
    tail = nearest_double(fraction - Fraction(head))
    return f"{{{head.hex()}, {tail.hex()}}}"


def fixed(value):
    return Fraction(value, ONE)


def print_array(comment, name, entries, kind="doubledouble"):
    print(f"// {comment}\nconstexpr {kind} {name}[] = {{")
    for entry in entries:
        print(f"    {entry},")
    print("};\n")


def main():
    pi = 4 * atan_of_fixed(ONE)
    ln2 = log_of(Fraction(2))
    print("// SPDX-License-Identifier: MIT\n// Copyright (c) 2026 The Shared authors\n")
    print("// Made by tools/make_double_double_tables.py.\n")
    print(f"constexpr doubledouble PI = {pair(fixed(pi))};")
    print(f"constexpr doubledouble HALF_PI = {pair(fixed(pi) / 2)};")
    print(f"constexpr doubledouble QUARTER_PI = {pair(fixed(pi) / 4)};\n")
    leading = Fraction(math.floor(fixed(ln2) * 2**42), 2**42)
    print("// The logarithm of 2: 42 bits, whose products with exponents are exact, and the rest.")
    print(f"constexpr double LN2_LEADING = {nearest_double(leading).hex()};")
    print(f"constexpr doubledouble LN2_REST = {pair(fixed(ln2) - leading)};\n")
    print_array("1 / n!", "INVERSE_FACTORIALS", [pair(Fraction(1, math.factorial(n))) for n in range(32)])
    print_array("1 / (2n + 1)", "INVERSE_ODDS", [pair(Fraction(1, 2 * n + 1)) for n in range(13)])
    print("constexpr int EXP_STEPS = 64;\nconstexpr int EXP_LAST = 23;")
    print_array("exp(j / 64), j from -23", "EXPONENTIALS",
                [pair(fixed(exp_of(Fraction(j, 64)))) for j in range(-23, 24)])
    print("constexpr int LOG_STEPS = 64;\nconstexpr int LOG_FIRST = 45;")
    factors = [Fraction(round(Fraction(256 * 64, i)), 256) for i in range(45, 92)]
    print_array("Factors of 9 bits near 64 / i, i from 45", "LOG_FACTORS",
                [nearest_double(factor).hex() for factor in factors], "double")
    print_array("The negative logarithms of the factors", "LOGARITHMS",
                [pair(fixed(-log_of(factor))) for factor in factors])
    print("constexpr int ATAN_STEPS = 32;")
    print_array("The arc tangents of j / 32", "ARC_TANGENTS",
                [pair(fixed(atan_of_fixed(ONE * j // 32))) for j in range(33)])
    bits = 1536
    two_over_pi = (ONE << bits + 1) // pi
    limbs = [two_over_pi >> (bits - 32 * (i + 1)) & 0xFFFFFFFF for i in range(bits // 32)]
    print("// The first 1,536 bits of 2 / pi behind the point, 32 a limb.")
    print("constexpr std::uint32_t TWO_OVER_PI[] = {")
    for i in range(0, len(limbs), 6):
        print("    " + ", ".join(f"0x{limb:08X}" for limb in limbs[i:i + 6]) + ",")
    print("};")


if __name__ == "__main__":
    main()
