#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Writes systems of equations with their exact solutions: make_exact_systems.py > tests/data/numerics/exact-systems.txt

All elements are integers below 2^53, so a double holds them exactly; solutions and condition numbers come from
rational arithmetic and are rounded once. A system is a line "name order condition isDefinite", with the condition in
the norm of the largest row sum, the rows of the matrix, the right-hand side and the solution.
"""

from fractions import Fraction
from math import comb, lcm


def solve(matrix, sides):
    """Gauss-Jordan elimination over the rationals; `sides` and the result are columns."""
    n = len(matrix)
    rows = [[Fraction(x) for x in row] + [Fraction(side[i]) for side in sides] for i, row in enumerate(matrix)]
    for k in range(n):
        pivot = next(i for i in range(k, n) if rows[i][k] != 0)
        rows[k], rows[pivot] = rows[pivot], rows[k]
        rows[k] = [x / rows[k][k] for x in rows[k]]
        for i in range(n):
            if i != k and rows[i][k] != 0:
                rows[i] = [x - rows[i][k] * y for x, y in zip(rows[i], rows[k])]
    return [[rows[i][n + j] for i in range(n)] for j in range(len(sides))]


def is_definite(matrix):
    """True for a symmetric matrix all of whose pivots are positive."""
    n = len(matrix)
    if any(matrix[i][j] != matrix[j][i] for i in range(n) for j in range(i)):
        return False
    rows = [[Fraction(x) for x in row] for row in matrix]
    for k in range(n):
        if rows[k][k] <= 0:
            return False
        for i in range(k + 1, n):
            factor = rows[i][k] / rows[k][k]
            rows[i] = [x - factor * y for x, y in zip(rows[i], rows[k])]
    return True


def row_sum(matrix):
    return max(sum(abs(x) for x in row) for row in matrix)


def hilbert(n):
    scale = lcm(*range(1, 2 * n))
    return [[scale // (i + j + 1) for j in range(n)] for i in range(n)]


def vandermonde(n):
    return [[(i + 1) ** j for j in range(n)] for i in range(n)]


def pascal(n):
    return [[comb(i + j, i) for j in range(n)] for i in range(n)]


def frank(n):
    return [[n - max(i, j) if j >= i - 1 else 0 for j in range(n)] for i in range(n)]


def indefinite(n):
    return [[(i * i + j * j + 5 * i * j) % 13 - 6 for j in range(n)] for i in range(n)]


def write(name, matrix):
    n = len(matrix)
    assert all(abs(x) < 2**53 for row in matrix for x in row)
    side = [(7 * i) % 5 - 2 or 1 for i in range(n)]
    columns = solve(matrix, [side] + [[int(i == j) for i in range(n)] for j in range(n)])
    inverse = [[columns[1 + j][i] for j in range(n)] for i in range(n)]
    condition = float(row_sum(matrix) * row_sum(inverse))
    print(f"{name}-{n} {n} {condition:.3e} {int(is_definite(matrix))}")
    for row in matrix:
        print(*row)
    print(*side)
    print(*(repr(float(x)) for x in columns[0]))


def main():
    print("# Made by tools/make_exact_systems.py.")
    for n in (2, 4, 6, 8, 10):
        write("hilbert", hilbert(n))
    for n in (3, 5, 7, 9):
        write("vandermonde", vandermonde(n))
    for n in (4, 8, 12):
        write("pascal", pascal(n))
    for n in (5, 10):
        write("frank", frank(n))
    for n in (4, 7):
        write("indefinite", indefinite(n))


main()
