// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The inner loops of the linear algebra, written once on four lanes. Everything is of the source
/// that includes it; nothing of another header but the lanes is called, see shared_avx2_units.
///
///     constexpr LinearKernels KERNELS = MakeKernels();
///
/// Threads: no state.

#pragma once

#include "shared/numerics/linear/FourLanes.h"
#include "shared/numerics/linear/Kernels.h"

namespace shr {
namespace {

#ifdef __AVX2__
inline constexpr int TILE_ROWS = 6;  // with two vectors a row, 12 of 16 registers hold sums
#else
inline constexpr int TILE_ROWS = 2;
#endif
static_assert(TILE_ROWS <= MULTIPLY_ROWS);

inline double Dot(const double* x, const double* y, std::size_t n) {
  Four a = Zero(), b = Zero(), c = Zero(), d = Zero();
  std::size_t i = 0;
  for (; i + 16 <= n; i += 16) {
    a = a + Load(x + i) * Load(y + i);
    b = b + Load(x + i + 4) * Load(y + i + 4);
    c = c + Load(x + i + 8) * Load(y + i + 8);
    d = d + Load(x + i + 12) * Load(y + i + 12);
  }
  for (; i + 4 <= n; i += 4) a = a + Load(x + i) * Load(y + i);
  double sum = Sum((a + b) + (c + d));
  for (; i < n; ++i) sum += x[i] * y[i];
  return sum;
}

inline void Axpy(double factor, const double* x, double* y, std::size_t n) {
  const Four factors = Same(factor);
  std::size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    const Four low = Load(y + i) + factors * Load(x + i);
    const Four high = Load(y + i + 4) + factors * Load(x + i + 4);
    Store(y + i, low);
    Store(y + i + 4, high);
  }
  for (; i + 4 <= n; i += 4) Store(y + i, Load(y + i) + factors * Load(x + i));
  for (; i < n; ++i) y[i] += factor * x[i];
}

inline void Scale(double factor, double* x, std::size_t n) {
  const Four factors = Same(factor);
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) Store(x + i, Load(x + i) * factors);
  for (; i < n; ++i) x[i] *= factor;
}

inline void DivideBy(double divisor, double* x, std::size_t n) {
  const Four divisors = Same(divisor);
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) Store(x + i, Load(x + i) / divisors);
  for (; i < n; ++i) x[i] /= divisor;
}

inline void Rotate(double c, double s, double* x, double* y, std::size_t n) {
  const Four cosines = Same(c), sines = Same(s);
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const Four a = Load(x + i), b = Load(y + i);
    Store(x + i, cosines * a - sines * b);
    Store(y + i, sines * a + cosines * b);
  }
  for (; i < n; ++i) {
    const double a = x[i], b = y[i];
    x[i] = c * a - s * b;
    y[i] = s * a + c * b;
  }
}

inline void RotateChain(const double* c, const double* s, std::size_t count, double* rows) {
  double* row = rows + count * 8;
  Four low = Load(row), high = Load(row + 4);
  for (std::size_t i = 0; i < count; ++i, row -= 8) {
    const Four cosines = Same(c[i]), sines = Same(s[i]);
    const Four nextLow = Load(row - 8), nextHigh = Load(row - 4);
    Store(row, sines * nextLow + cosines * low);
    Store(row + 4, sines * nextHigh + cosines * high);
    low = cosines * nextLow - sines * low;
    high = cosines * nextHigh - sines * high;
  }
  Store(row, low);
  Store(row + 4, high);
}

/// The numbers 0, 1, ... as a pack, for loops that the compiler must unroll.
template <int... INDEX>
struct Indices {};
template <int COUNT, int... INDEX>
struct MakeIndices : MakeIndices<COUNT - 1, COUNT - 1, INDEX...> {};
template <int... INDEX>
struct MakeIndices<0, INDEX...> {
  using Type = Indices<INDEX...>;
};

/// Does as many times four columns of a projection as there are numbers in COLUMN; their factors
/// and sums stay in registers.
template <int... COLUMN>
inline void ProjectColumns(const ProjectJob& job, std::size_t first, Indices<COLUMN...>) {
  Four factors[] = {Load(job.r + first + 4 * COLUMN)...};
  Four sums[] = {Load(job.sums + first + 4 * COLUMN)...};
  double* row = job.rows + first;
  for (std::size_t i = 0; i < job.count; ++i, row += job.step) {
    const Four q = Same(job.q[i]), v = Same(job.v[i]);
    const auto project = [&](int k) {
      const Four rest = Load(row + 4 * k) - q * factors[k];
      Store(row + 4 * k, rest);
      sums[k] = sums[k] + v * rest;
    };
    (project(COLUMN), ...);
  }
  (Store(job.sums + first + 4 * COLUMN, sums[COLUMN]), ...);
}

inline void Project(const ProjectJob& job) {
  std::size_t j = 0;
  for (; j + 20 <= job.columns; j += 20) ProjectColumns(job, j, MakeIndices<5>::Type());
  for (; j + 12 <= job.columns; j += 12) ProjectColumns(job, j, MakeIndices<3>::Type());
  for (; j + 8 <= job.columns; j += 8) ProjectColumns(job, j, MakeIndices<2>::Type());
  for (; j + 4 <= job.columns; j += 4) ProjectColumns(job, j, MakeIndices<1>::Type());
  for (; j < job.columns; ++j) {
    const double factor = job.r[j];
    double sum = job.sums[j];
    double* row = job.rows + j;
    for (std::size_t i = 0; i < job.count; ++i, row += job.step) {
      *row -= job.q[i] * factor;
      sum += job.v[i] * *row;
    }
    job.sums[j] = sum;
  }
}

/// Does rows [i, i + 4) of y = A x: what is right of their diagonal block counts for them and, as
/// columns, for the rows below.
inline void MultiplyFourRows(const double* a, std::size_t step, std::size_t n, const double* x,
                             double* y) {
  const double* const b = a + step;
  const double* const c = b + step;
  const double* const d = c + step;
  const Four xa = Same(x[0]), xb = Same(x[1]), xc = Same(x[2]), xd = Same(x[3]);
  Four sa = Zero(), sb = Zero(), sc = Zero(), sd = Zero();
  std::size_t j = 4;
  for (; j + 4 <= n; j += 4) {
    const Four right = Load(x + j);
    const Four ea = Load(a + j), eb = Load(b + j), ec = Load(c + j), ed = Load(d + j);
    Store(y + j, ((Load(y + j) + ea * xa) + eb * xb) + (ec * xc + ed * xd));
    sa = sa + ea * right;
    sb = sb + eb * right;
    sc = sc + ec * right;
    sd = sd + ed * right;
  }
  double sums[4] = {Sum(sa), Sum(sb), Sum(sc), Sum(sd)};
  for (; j < n; ++j) {
    y[j] = ((y[j] + a[j] * x[0]) + b[j] * x[1]) + (c[j] * x[2] + d[j] * x[3]);
    sums[0] += a[j] * x[j];
    sums[1] += b[j] * x[j];
    sums[2] += c[j] * x[j];
    sums[3] += d[j] * x[j];
  }
  y[0] += ((a[0] * x[0] + a[1] * x[1]) + (a[2] * x[2] + a[3] * x[3])) + sums[0];
  y[1] += ((a[1] * x[0] + b[1] * x[1]) + (b[2] * x[2] + b[3] * x[3])) + sums[1];
  y[2] += ((a[2] * x[0] + b[2] * x[1]) + (c[2] * x[2] + c[3] * x[3])) + sums[2];
  y[3] += ((a[3] * x[0] + b[3] * x[1]) + (c[3] * x[2] + d[3] * x[3])) + sums[3];
}

inline void MultiplySymmetric(const double* a, std::size_t step, std::size_t n, const double* x,
                              double* y) {
  for (std::size_t i = 0; i < n; ++i) y[i] = 0.0;
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) MultiplyFourRows(a + i * step + i, step, n - i, x + i, y + i);
  for (; i < n; ++i) {
    const double* row = a + i * step;
    y[i] += row[i] * x[i];
    for (std::size_t j = i + 1; j < n; ++j) {
      y[i] += row[j] * x[j];
      y[j] += row[j] * x[i];
    }
  }
}

/// Copies rows [0, depth) of B, columns [first, first + count), into strips of MULTIPLY_STRIP
/// columns that lie row after row; missing columns of the last strip are 0.
inline void PackStrips(const Strided& b, std::size_t depth, std::size_t first, std::size_t count,
                       double* packed) {
  for (std::size_t j = 0; j < count; j += MULTIPLY_STRIP, packed += depth * MULTIPLY_STRIP) {
    const std::size_t width = count - j < MULTIPLY_STRIP ? count - j : MULTIPLY_STRIP;
    const double* source = b.data + (first + j) * b.columnStep;
    if (width == MULTIPLY_STRIP && b.columnStep == 1) {
      for (std::size_t k = 0; k < depth; ++k) {
        Store(packed + k * MULTIPLY_STRIP, Load(source + k * b.rowStep));
        Store(packed + k * MULTIPLY_STRIP + 4, Load(source + k * b.rowStep + 4));
      }
      continue;
    }
    for (std::size_t c = 0; c < width; ++c) {
      for (std::size_t k = 0; k < depth; ++k) {
        packed[k * MULTIPLY_STRIP + c] = source[k * b.rowStep + c * b.columnStep];
      }
    }
    for (std::size_t c = width; c < MULTIPLY_STRIP; ++c) {
      for (std::size_t k = 0; k < depth; ++k) packed[k * MULTIPLY_STRIP + c] = 0.0;
    }
  }
}

/// A tile of a product: as many rows as there are numbers in ROW, one strip of columns. `strip` has
/// `stripStep` between its rows; of the result the first `width` columns are wanted.
struct TileJob {
  const double* a;
  std::size_t rowStep;
  std::size_t columnStep;
  const double* strip;
  std::size_t stripStep;
  std::size_t depth;
  double* c;
  std::size_t step;
  std::size_t width;
  bool isSubtracted;
};

inline void AddToRow(const TileJob& job, std::size_t row, Four low, Four high) {
  double* c = job.c + row * job.step;
  if (job.width == MULTIPLY_STRIP) {
    Store(c, job.isSubtracted ? Load(c) - low : Load(c) + low);
    Store(c + 4, job.isSubtracted ? Load(c + 4) - high : Load(c + 4) + high);
    return;
  }
  double sums[MULTIPLY_STRIP];
  Store(sums, low);
  Store(sums + 4, high);
  for (std::size_t j = 0; j < job.width; ++j) {
    c[j] = job.isSubtracted ? c[j] - sums[j] : c[j] + sums[j];
  }
}

template <int... ROW>
inline void MultiplyTile(const TileJob& job, Indices<ROW...>) {
  constexpr int ROWS = sizeof...(ROW);
  Four low[ROWS] = {((void)ROW, Zero())...};
  Four high[ROWS] = {((void)ROW, Zero())...};
  const double* rows[ROWS] = {(job.a + ROW * job.rowStep)...};
  const double* strip = job.strip;
  for (std::size_t k = 0, at = 0; k < job.depth; ++k, at += job.columnStep) {
    const Four left = Load(strip), right = Load(strip + 4);
    const auto add = [&](int row) {
      const Four factor = Same(rows[row][at]);
      low[row] = low[row] + factor * left;
      high[row] = high[row] + factor * right;
    };
    (add(ROW), ...);
    strip += job.stripStep;
  }
  (AddToRow(job, ROW, low[ROW], high[ROW]), ...);
}

inline void MultiplyRows(const TileJob& job, std::size_t rows) {
  switch (rows) {
    case 1:
      return MultiplyTile(job, MakeIndices<1>::Type());
    case 2:
      return MultiplyTile(job, MakeIndices<2>::Type());
#ifdef __AVX2__
    case 3:
      return MultiplyTile(job, MakeIndices<3>::Type());
    case 4:
      return MultiplyTile(job, MakeIndices<4>::Type());
    case 5:
      return MultiplyTile(job, MakeIndices<5>::Type());
    case 6:
      return MultiplyTile(job, MakeIndices<6>::Type());
#endif
    default:
      return;
  }
}

/// Adds the product of the columns [k, k + depth) of A and strips of B that hold columns
/// [first, first + count).
inline void MultiplyBlock(const MultiplyJob& job, std::size_t k, std::size_t depth,
                          std::size_t first, std::size_t count, const double* strips,
                          std::size_t stripStep, std::size_t nextStrip, double* rowsOfA) {
  TileJob tile{};
  tile.depth = depth;
  tile.step = job.step;
  tile.isSubtracted = job.isSubtracted;
  tile.stripStep = stripStep;
  for (std::size_t i = 0; i < job.rows; i += TILE_ROWS) {
    const std::size_t rows = job.rows - i < TILE_ROWS ? job.rows - i : TILE_ROWS;
    tile.a = job.a.data + i * job.a.rowStep + k * job.a.columnStep;
    tile.rowStep = job.a.rowStep;
    tile.columnStep = job.a.columnStep;
    if (job.a.columnStep != 1 && count > 2 * MULTIPLY_STRIP) {
      for (std::size_t m = 0; m < depth; ++m) {
        for (std::size_t r = 0; r < rows; ++r) {
          rowsOfA[m * TILE_ROWS + r] = tile.a[r * tile.rowStep + m * tile.columnStep];
        }
      }
      tile.a = rowsOfA;
      tile.rowStep = 1;
      tile.columnStep = TILE_ROWS;
    }
    for (std::size_t j = 0; j < count; j += MULTIPLY_STRIP) {
      tile.strip = strips + j / MULTIPLY_STRIP * nextStrip;
      tile.c = job.c + i * job.step + first + j;
      tile.width = count - j < MULTIPLY_STRIP ? count - j : MULTIPLY_STRIP;
      MultiplyRows(tile, rows);
    }
  }
}

/// Strips that are used by few tiles are read where they are.
inline bool IsReadInPlace(const MultiplyJob& job) {
  return job.b.columnStep == 1 && job.columns % MULTIPLY_STRIP == 0 && job.rows <= 8 * TILE_ROWS;
}

inline void Multiply(const MultiplyJob& job, double* workspace) {
  const std::size_t most = job.depth < MULTIPLY_DEPTH ? job.depth : MULTIPLY_DEPTH;
  double* packed = workspace + most * MULTIPLY_ROWS;
  const bool isInPlace = IsReadInPlace(job);
  for (std::size_t first = 0; first < job.columns; first += MULTIPLY_COLUMNS) {
    const std::size_t count =
        job.columns - first < MULTIPLY_COLUMNS ? job.columns - first : MULTIPLY_COLUMNS;
    for (std::size_t k = 0; k < job.depth; k += MULTIPLY_DEPTH) {
      const std::size_t depth = job.depth - k < MULTIPLY_DEPTH ? job.depth - k : MULTIPLY_DEPTH;
      const Strided b{job.b.data + k * job.b.rowStep, job.b.rowStep, job.b.columnStep};
      if (isInPlace) {
        MultiplyBlock(job, k, depth, first, count, b.data + first, b.rowStep, MULTIPLY_STRIP,
                      workspace);
      } else {
        PackStrips(b, depth, first, count, packed);
        MultiplyBlock(job, k, depth, first, count, packed, MULTIPLY_STRIP, depth * MULTIPLY_STRIP,
                      workspace);
      }
    }
  }
}

constexpr LinearKernels MakeKernels() {
  return {Dot, Axpy, Scale, DivideBy, Rotate, RotateChain, Project, MultiplySymmetric, Multiply};
}

}  // namespace
}  // namespace shr
