#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Makes tests/data/numerics/double-double.tsv: make_double_double_golden.py > double-double.tsv

A row is the name of an operation, its operands and its result, tab-separated; numbers are the bits of their parts as 16
hexadecimal digits, operands of "read" are text. The rows of arithmetic hold what the steps of the formulas give on IEEE
doubles, bit by bit; those of "read" and of the functions the nearest double of the exact result and the nearest double
of the rest, from integers, fractions and decimals of 450 digits.
"""

import decimal
import math
import random
import struct
from decimal import Decimal
from fractions import Fraction

decimal.getcontext().prec = 450
decimal.getcontext().Emax = decimal.MAX_EMAX
decimal.getcontext().Emin = decimal.MIN_EMIN
RANDOM = random.Random(84)


def bits(value):
    return struct.pack(">d", value).hex().upper()


def fields(number):
    return f"{bits(number[0])}\t{bits(number[1])}"


def nearest(fraction):
    return fraction.numerator / fraction.denominator


def pair_of(fraction):
    head = nearest(fraction)
    tail = nearest(fraction - Fraction(head))
    total = head + tail
    return total, (head - total) + tail


# The formulas, step by step.

def split(a):
    t = a * 134217729.0
    high = t - (t - a)
    return high, a - high


def exact_product(a, b):
    p = a * b
    (ah, al), (bh, bl) = split(a), split(b)
    return p, (ah * bh - p + al * bh + ah * bl) + al * bl


def add(x, y):
    s, t = x[0] + y[0], x[1] + y[1]
    e = y[0] - (s - x[0])
    f = y[1] - (t - x[1])
    small = (x[0] - (s - (s - x[0]))) + e + t
    h = small + s
    rest = (x[1] - (t - (t - x[1]))) + f + (s - h + small)
    head = rest + h
    return head, (h - head) + rest


def multiply(x, y):
    p, e = exact_product(x[0], y[0])
    c = e + (x[0] * y[1] + x[1] * y[0])
    return p + c, (p - (p + c)) + c


def divide(x, y):
    q = x[0] / y[0]
    u = exact_product(y[0], q)
    c = ((x[0] - u[0]) - u[1] + x[1] - q * y[1]) / y[0]
    return c + q, (q - (c + q)) + c


def root(x, _):
    s = math.sqrt(x[0])
    u = exact_product(s, s)
    c = (x[0] - u[0] - u[1] + x[1]) / (2 * s)
    return s + c, (s - (s + c)) + c


# The functions, to hundreds of digits.

def decimal_of(x):
    return Decimal(x[0]) + Decimal(x[1])


def pi_of():
    def arctan_inverse(n):
        total, power, k = Decimal(0), Decimal(1) / n, 0
        while abs(power) > Decimal(10) ** -460:
            total += power / (2 * k + 1) * (-1) ** k
            power /= n * n
            k += 1
        return total
    return 4 * (4 * arctan_inverse(5) - arctan_inverse(239))


PI = pi_of()


def sine(x):
    x = x.remainder_near(2 * PI)
    total, term, k = Decimal(0), x, 1
    while abs(term) > Decimal(10) ** -440:
        total += term
        term *= -x * x / ((k + 1) * (k + 2))
        k += 2
    return total


def cosine(x):
    return sine(x + PI / 2)


def arctangent(x):
    halvings = 0
    while abs(x) > Decimal("0.001"):
        x = x / (1 + (1 + x * x).sqrt())
        halvings += 1
    total, power, k = Decimal(0), x, 0
    while abs(power) > Decimal(10) ** -440 * abs(x):
        total += power / (2 * k + 1) * (-1) ** k
        power *= x * x
        k += 1
    return total * 2**halvings


def angle(y, x):
    if abs(x) >= abs(y):
        result = arctangent(y / x)
        return result if x > 0 else result + (PI if y > 0 else -PI)
    return (PI / 2 if y > 0 else -PI / 2) - arctangent(x / y)


def number(low, high):
    head = math.ldexp(RANDOM.uniform(1, 2), RANDOM.randint(low, high)) * RANDOM.choice([-1, 1])
    tail = head * math.ldexp(RANDOM.uniform(-1, 1), -53)
    total = head + tail
    return total, (head - total) + tail


def print_arithmetic():
    for name, function in (("add", add), ("multiply", multiply), ("divide", divide), ("sqrt", root)):
        for i in range(60):
            x, y = number(-30, 30), number(-30, 30)
            if name == "add" and i % 3 == 0:  # heads that cancel
                y = (-x[0] * (1 + (i % 4) * 2**-52), -x[1] * RANDOM.choice([1, 0.5, -1]))
            if i % 10 == 9:
                x, y = number(-400, 400), number(-400, 400)
            if name == "sqrt":
                x = (-x[0], -x[1]) if x[0] < 0 else x
            print(f"{name}\t{fields(x)}\t{fields(y)}\t{fields(function(x, y))}")


def print_texts():
    texts = ["3.14159265358979323846264338327950288", "2.5e-310", "1e300", "123456789012345678901234567890.5"]
    for _ in range(120):
        digits = "".join(RANDOM.choice("0123456789") for _ in range(RANDOM.choice([5, 17, 32, 38, 39, 60, 200])))
        point = RANDOM.randint(0, len(digits))
        texts.append(f"{digits[:point]}.{digits[point:]}e{RANDOM.randint(-120, 100)}")
    for _ in range(30):  # a hair beside the middle of two tails
        head = math.ldexp(RANDOM.randrange(2**52, 2**53), RANDOM.randint(-90, 20))
        tail = math.ldexp(head, -54) * RANDOM.random()
        middle = Decimal(head) + Decimal(tail) + Decimal(math.ulp(tail)) / 2
        hair = RANDOM.choice([Decimal(0), Decimal(10) ** -400, -Decimal(10) ** -400])
        texts.append(str(middle + hair))
    for text in texts:
        print(f"read\t{text}\t{fields(pair_of(Fraction(text)))}")


def print_functions():
    pi = pair_of(Fraction(PI))
    rows = []
    for _ in range(25):
        rows.append(("exp", number(-20, 8)))
        rows.append(("log", tuple(map(abs, (number(-900, 900)[0], 0.0)))))
        rows.append(("log", pair_of(1 + Fraction(number(-70, -5)[0]))))
        for name in ("sin", "cos"):
            rows.append((name, number(-10, 30)))
            rows.append((name, number(30, 1000)))
            turns = RANDOM.randint(1, 10**6)
            rows.append((name, pair_of(Fraction(PI) * turns / 2)))
            rows.append((name, (pi[0] * turns, 0.0)))
    functions = {"exp": Decimal.exp, "log": Decimal.ln, "sin": sine, "cos": cosine}
    for name, x in rows:
        print(f"{name}\t{fields(x)}\t{fields(pair_of(Fraction(functions[name](decimal_of(x)))))}")
    for _ in range(60):
        y, x = number(-8, 8), number(-8, 8)
        print(f"atan2\t{fields(y)}\t{fields(x)}\t{fields(pair_of(Fraction(angle(decimal_of(y), decimal_of(x)))))}")


def main():
    print_arithmetic()
    print_texts()
    print_functions()


if __name__ == "__main__":
    main()
