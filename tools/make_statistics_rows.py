#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Makes tests/data/numerics/{univariate,regression,covariance}-exact.txt: samples with statistics that are computed with rational
numbers and rounded once.

    tools/make_statistics_rows.py univariate > tests/data/numerics/univariate-exact.txt
    tools/make_statistics_rows.py regression > tests/data/numerics/regression-exact.txt
    tools/make_statistics_rows.py covariance > tests/data/numerics/covariance-exact.txt

A line is a sample: its name, its numbers, its statistics, separated by tabs. Numbers are the 16 hexadecimal digits
of doubles, separated by blanks; "lcg N SEED OFFSET SCALE" stands for N of them, OFFSET + SCALE k with the k of
`generated` below. Regressions have x, y and z of one point after another, or "sums" and the arguments of `Load`;
tables begin with their number of columns and have means and the rows of covariances as `mean=` and `covariance=`.
Statistics are `field=double`.
"""

import math
import struct
import sys
from fractions import Fraction
from decimal import Decimal, localcontext


def image(value):
    return struct.pack('>d', value).hex()


def generated(count, seed, offset, scale):
    state, result = seed, []
    for _ in range(count):
        state = (state * 6364136223846793005 + 1442695040888963407) % 2**64
        result.append(offset + scale * (state >> 44))
    return result


def nearest(value):
    try:
        return float(value)
    except OverflowError:
        return math.inf if value > 0 else -math.inf


def root(value):
    """The square root of a fraction, to 60 digits."""
    with localcontext() as context:
        context.prec = 80
        return Fraction((Decimal(value.numerator) / Decimal(value.denominator)).sqrt())


def statistics(sample):
    x = sorted(Fraction(v) for v in sample)
    n = len(x)
    at = lambda percent: (n - 1) * percent // 100
    mean = sum(x) / n
    median = Fraction(nearest((x[(n - 1) // 2] + x[n // 2]) / 2))
    result = {
        'sum': sum(x), 'mean': mean, 'sumAbs': sum(map(abs, x)), 'sumSquare': sum(v * v for v in x),
        'meanSquare': sum(v * v for v in x) / n, 'median': median, 'midrange': (x[0] + x[-1]) / 2,
        'interQuartileMean': sum(x[at(25):at(75) + 1]) / (at(75) + 1 - at(25)),
        'winsorizedMean': (at(10) * x[at(10)] + sum(x[at(10):at(90)]) + (n - at(90)) * x[at(90)]) / n,
        'triMean': (x[at(25)] + 2 * x[at(50)] + x[at(75)]) / 4,
        'avgAbsDev': sum(abs(v - median) for v in x) / n,
    }
    if n >= 20:
        result['trimMean'] = sum(x[at(5):at(95) + 1]) / (at(95) + 1 - at(5))
    if x[0] > 1.1754943508222875e-38:
        result['harmonicMean'] = n / sum(1 / v for v in x)
    if n >= 2:
        squares = sum((v - mean) ** 2 for v in x)
        variance = squares / (n - 1)
        result['variance'] = variance
        result['stdDev'] = math.sqrt(nearest(variance)) if nearest(variance) > 0 else None
        if n <= 25000:
            result['meanDiff'] = 2 * sum((2 * i + 1 - n) * v for i, v in enumerate(x)) / (n * (n - 1))
        s = math.sqrt(nearest(variance))
        if n * s * (s * s) > 1.1754943508222875e-38:
            result['skewness'] = sum((v - mean) ** 3 for v in x) / (n * variance * root(variance))
        if n * nearest(variance) ** 2 > 1.1754943508222875e-38:
            result['kurtosis'] = sum((v - mean) ** 4 for v in x) / (n * variance ** 2)
    return {name: math.nan if value is None else nearest(value) for name, value in result.items()}


ULP = 2.0 ** -52
LISTS = {
    'one to four': [1, 2, 3, 4],
    'one value': [5.5],
    'tenths': [0.1, 0.2, 0.3],
    'tenths far from zero': [1e7 + 0.1, 1e7 + 0.2, 1e7 + 0.3, 1e7 + 0.2],
    'last bits': [1 + k * ULP for k in (0, 1, 3, 2, 2, 5, 8)],
    'two neighbours': [1.0, 1 + ULP],
    'one of many off by a bit': [1.0] * 24 + [1 + ULP],
    'cancelling': [1e308, 1.0, -1e308, 1e-300],
    'large': [1.7e308, 1.6e308, 1.5e308],
    'large of both signs': [1.7e308, -1.7e308, 1.6e308, 1.0],
    'squares overflow': [1e200, 2e200, 4e200, -3e200, 5e200],
    'squares underflow': [1e-200, 2e-200, 4e-200, 7e-200],
    'subnormal': [5e-324, 1e-323, 1.5e-323, 3e-322, 1e-310],
    'smallest and largest': [5e-324, 1.7976931348623157e308, 1.0],
    'opposite': [-3.3, 3.3, -1.1, 1.1, 0.0],
    'an outlier': [1e-5] * 30 + [1e15],
    'harmonic': [1.0 / k for k in range(1, 40)],
    'positive up to the largest': [1e-37, 1.0, 1e300, 1.7e308],
    'equal': [0.1] * 25,
    'powers': [3.0 ** k for k in range(-20, 21)],
    'cubes nearly cancel': [-1.0, 1.0, -0.3, 0.3, 2.0 ** -40],
}
GENERATED = {
    'medium': (1000, 1, 0.0, 1.0),
    'medium, offset': (1001, 2, 1e9, 2.0 ** -20),
    'fractions': (777, 3, 0.1, 1e-7),
    'sorted last': (25000, 4, -1e6, 2.0),
    'selected': (25001, 5, 1.0, 1e-6),
    'selected, far from zero': (30002, 6, 1e12, 2.0 ** -12),
    'selected, even by four': (40000, 7, -524288.0, 1.0),
}


def regression(n, mx, my, mz, sxx, sxy, sxz, syz, syy, szz):
    det = sxx * syy - sxy * sxy
    a, b = (sxz * syy - sxy * syz) / det, (sxx * syz - sxy * sxz) / det
    ssr = a * sxz + b * syz
    result = {
        'a': a, 'b': b, 'c': mz - a * mx - b * my, 'regressionSumSquares': ssr, 'totalSumSquares': szz,
        'residualSumSquares': szz - ssr, 'regressionMeanSquare': ssr / 2, 'determination': ssr / szz,
        'correlationXY': sxy / root(sxx * syy), 'correlationXZ': sxz / root(sxx * szz),
        'correlationYZ': syz / root(syy * szz),
    }
    mse = (szz - ssr) / (n - 3) if n > 3 else 0
    if nearest(mse) > 1.1754943508222875e-38:
        errors = (mse * syy / det, mse * sxx / det,
                  mse * (Fraction(1, n) + (my * my * sxx + mx * mx * syy - 2 * mx * my * sxy) / det))
        ea, eb, ec = map(root, errors)
        result |= {
            'residualMeanSquare': mse, 'fRatio': ssr / 2 / mse, 'errorA': ea, 'errorB': eb, 'errorC': ec,
            'correlationAB': -sxy / det * mse / (ea * eb),
            'correlationAC': (my * sxy - mx * syy) / det * mse / (ec * ea),
            'correlationBC': (mx * sxy - my * sxx) / det * mse / (ec * eb),
        }
    return {name: nearest(value) for name, value in result.items()}


def of_points(points):
    n = len(points)
    x, y, z = (list(map(Fraction, column)) for column in zip(*points))
    mx, my, mz = sum(x) / n, sum(y) / n, sum(z) / n
    s = lambda u, mu, v, mv: sum((p - mu) * (q - mv) for p, q in zip(u, v))
    return regression(n, mx, my, mz, s(x, mx, x, mx), s(x, mx, y, my), s(x, mx, z, mz), s(y, my, z, mz),
                      s(y, my, y, my), s(z, mz, z, mz))


def plane(count, seed, offset, noise):
    k = generated(3 * count, seed, 0.0, 2.0 ** -20)
    return [(offset + x, offset - y, 3.25 * x - 1.75 * y + 10 + noise * e)
            for x, y, e in zip(k[::3], k[1::3], k[2::3])]


POINTS = {
    'unit square': [(0, 0, 1), (1, 0, 3), (0, 1, 2), (1, 1, 4.5)],
    'three points': [(0.1, 0.2, 1), (1, 0.3, 3), (0.7, 1, 2)],
    'noise': plane(50, 1, 0.0, 0.5),
    'far from zero': plane(77, 2, 1e7, 1e-3),
    'very far': plane(300, 3, 1e12, 1.0),
    'nearly on a line': [(i, i + 1e-9 * (i * i % 7), 2 * i + (i * 5 % 3) / 7) for i in range(20)],
    'nearly a plane': plane(40, 4, 100.0, 1e-12),
}
SUMS = {
    'plain': (10, 1.0, 2.0, 3.0, 9.0, 2.0, 4.0, 5.0, 7.0, 11.0),
    'determinant cancels': (10, 1.5, -2.5, 3.0, 1 + 2.0**-30, 1 - 2.0**-53, 0.5, 0.25, 1 - 2.0**-30 + 2.0**-52, 4.0),
    'products overflow': (8, 1e5, 1e6, 1e7, 3e200, 1e200, 2e200, 1e199, 5e200, 1e202),
    'large count': (2**53, 0.5, 0.5, 0.1, 1e10, 2e9, 3e9, -4e9, 7e10, 9e10),
}


def table(count, columns, seed, offset, scale):
    k = generated(count * columns, seed, 0.0, 1.0)
    return [[offset * (j + 1) + scale ** j * (k[i * columns + j] + j * k[i * columns]) for j in range(columns)]
            for i in range(count)]


TABLES = {
    'two rows': [[1, 2, 3], [4, 6, 1]],
    'tenths': [[0.1, 0.3], [0.2, 0.1], [0.3, 0.2], [0.7, 0.4]],
    'plain': table(50, 4, 1, 0.0, 1.0),
    'far from zero': table(301, 3, 2, 1e9, 2.0 ** -13),
    'very far from zero': table(600, 2, 3, 1e15, 1.0),
    'uneven scales': table(40, 5, 4, 1.0, 1e-30),
    'large': [[1e200, 1e100], [3e200, -2e100], [-4e200, 5e100]],
}


def covariance(rows):
    for name, values in rows.items():
        values = [[Fraction(v) for v in map(float, row)] for row in values]
        n, p = len(values), len(values[0])
        means = [sum(row[j] for row in values) / n for j in range(p)]
        fields = [('mean', mean) for mean in means]
        for i in range(p):
            for j in range(p):
                products = sum((row[i] - means[i]) * (row[j] - means[j]) for row in values)
                fields.append(('covariance', products / (n - 1)))
        numbers = ' '.join(image(float(v)) for row in values for v in row)
        print(name, f'{p} {numbers}', ' '.join(f'{field}={image(nearest(v))}' for field, v in fields), sep='\t')


def main():
    if sys.argv[1:] == ['univariate']:
        univariate()
    elif sys.argv[1:] == ['regression']:
        for name, points in POINTS.items():
            points = [tuple(map(float, point)) for point in points]
            write(name, ' '.join(image(v) for point in points for v in point), of_points(points))
        for name, sums in SUMS.items():
            numbers = ' '.join(image(float(v)) for v in sums[1:])
            write(name, f'sums {sums[0]} {numbers}', regression(sums[0], *map(Fraction, sums[1:])))
    elif sys.argv[1:] == ['covariance']:
        covariance(TABLES)
    else:
        sys.exit(__doc__)


def univariate():
    for name, values in LISTS.items():
        values = [float(v) for v in values]
        write(name, ' '.join(map(image, values)), statistics(values))
    for name, arguments in GENERATED.items():
        count, seed, offset, scale = arguments
        write(name, f'lcg {count} {seed} {image(offset)} {image(scale)}', statistics(generated(*arguments)))


def write(name, numbers, fields):
    print(name, numbers, ' '.join(f'{field}={image(value)}' for field, value in fields.items()), sep='\t')


main()
