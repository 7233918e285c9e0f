// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Four points are twelve numbers in a row, three vectors of four:
//
//   a = x0 y0 z0 x1    b = y1 z1 x2 y2    c = z2 x3 y3 z3
//
// They are not sorted into x, y and z. Instead every result vector is computed where it is stored:
// for x0' y0' z0' x1' the source coordinates are spread to x0 x0 x0 x1, y0 y0 y0 y1 and
// z0 z0 z0 z1, and the matrix is laid out once to match, m00 m01 m02 m00 and so on. Spreading takes
// a permutation, where the two points lie in different vectors a blend before it, and nothing has
// to be put back in order at the end.
//
// Each number is the same sum of the same products in the same order as in the baseline code, so
// the bits are the same. Nothing of a header but the intrinsics may be called here, see
// shared_avx2_units.

#include "shared/geometry/TransformAvx2.h"

#include <immintrin.h>

#include <cstdint>

namespace shr {
namespace {

using Vector = __m256d;

/// Points from which on, 2 MB, the results are stored past the caches, which do not hold source and
/// result then: a plain store reads its cache line from memory before it overwrites it.
constexpr std::size_t LEAST_STREAMED = 80000;

struct FourPoints {
  Vector a;
  Vector b;
  Vector c;
};

FourPoints Load(const double* source) {
  return {_mm256_loadu_pd(source), _mm256_loadu_pd(source + 4), _mm256_loadu_pd(source + 8)};
}

void Store(const FourPoints& points, double* destination) {
  _mm256_storeu_pd(destination, points.a);
  _mm256_storeu_pd(destination + 4, points.b);
  _mm256_storeu_pd(destination + 8, points.c);
}

/// Four lanes of a vector, from the first to the last. The instruction takes a constant, also where
/// nothing is optimised.
template <int FIRST, int SECOND, int THIRD, int FOURTH>
Vector Take(Vector lanes) {
  return _mm256_permute4x64_pd(lanes, FIRST | SECOND << 2 | THIRD << 4 | FOURTH << 6);
}

FourPoints SpreadX(const FourPoints& p) {
  return {Take<0, 0, 0, 3>(p.a), Take<3, 3, 2, 2>(_mm256_blend_pd(p.b, p.a, 8)),
          Take<2, 1, 1, 1>(_mm256_blend_pd(p.c, p.b, 4))};
}

FourPoints SpreadY(const FourPoints& p) {
  return {Take<1, 1, 1, 0>(_mm256_blend_pd(p.a, p.b, 1)), Take<0, 0, 3, 3>(p.b),
          Take<3, 2, 2, 2>(_mm256_blend_pd(p.c, p.b, 8))};
}

FourPoints SpreadZ(const FourPoints& p) {
  return {Take<2, 2, 2, 1>(_mm256_blend_pd(p.a, p.b, 2)),
          Take<1, 1, 0, 0>(_mm256_blend_pd(p.b, p.c, 1)), Take<0, 3, 3, 3>(p.c)};
}

/// A row of the matrix as the three result vectors need it.
FourPoints LayOut(double x, double y, double z) {
  return {_mm256_setr_pd(x, y, z, x), _mm256_setr_pd(y, z, x, y), _mm256_setr_pd(z, x, y, z)};
}

FourPoints Multiply(const FourPoints& p, const FourPoints& q) {
  return {_mm256_mul_pd(p.a, q.a), _mm256_mul_pd(p.b, q.b), _mm256_mul_pd(p.c, q.c)};
}

FourPoints Add(const FourPoints& p, const FourPoints& q) {
  return {_mm256_add_pd(p.a, q.a), _mm256_add_pd(p.b, q.b), _mm256_add_pd(p.c, q.c)};
}

FourPoints Divide(const FourPoints& p, const FourPoints& q) {
  return {_mm256_div_pd(p.a, q.a), _mm256_div_pd(p.b, q.b), _mm256_div_pd(p.c, q.c)};
}

/// Takes z from `q` and the rest from `p`.
FourPoints KeepZ(const FourPoints& p, const FourPoints& q) {
  return {_mm256_blend_pd(p.a, q.a, 4), _mm256_blend_pd(p.b, q.b, 2), _mm256_blend_pd(p.c, q.c, 9)};
}

/// Stores past the caches. Requires: `destination` lies at a multiple of 32 bytes.
void Stream(const FourPoints& points, double* destination) {
  _mm256_stream_pd(destination, points.a);
  _mm256_stream_pd(destination + 4, points.b);
  _mm256_stream_pd(destination + 8, points.c);
}

bool IsStreamed(const double* source, const double* destination, std::size_t count) {
  return source != destination && count >= LEAST_STREAMED &&
         reinterpret_cast<std::uintptr_t>(destination) % sizeof(Vector) == 0;
}

template <class Map>
std::size_t ForEachFour(const double* source, double* destination, std::size_t count, Map map) {
  const std::size_t end = count / 4 * 12;
  if (IsStreamed(source, destination, count)) {
    for (std::size_t i = 0; i < end; i += 12) Stream(map(Load(source + i)), destination + i);
    _mm_sfence();
  } else {
    for (std::size_t i = 0; i < end; i += 12) Store(map(Load(source + i)), destination + i);
  }
  return end / 3;
}

}  // namespace

std::size_t Transform2dAvx2(const double* m, const double* source, double* destination,
                            std::size_t count) {
  const FourPoints x = LayOut(m[0], m[1], 0.0);
  const FourPoints y = LayOut(m[4], m[5], 0.0);
  const FourPoints t = LayOut(m[12], m[13], 0.0);
  return ForEachFour(source, destination, count, [&](const FourPoints& p) {
    return KeepZ(Add(Add(Multiply(SpreadX(p), x), Multiply(SpreadY(p), y)), t), p);
  });
}

std::size_t TransformAffineAvx2(const double* m, const double* source, double* destination,
                                std::size_t count) {
  const FourPoints x = LayOut(m[0], m[1], m[2]);
  const FourPoints y = LayOut(m[4], m[5], m[6]);
  const FourPoints z = LayOut(m[8], m[9], m[10]);
  const FourPoints t = LayOut(m[12], m[13], m[14]);
  return ForEachFour(source, destination, count, [&](const FourPoints& p) {
    const FourPoints inPlane = Add(Multiply(SpreadX(p), x), Multiply(SpreadY(p), y));
    return Add(Add(inPlane, Multiply(SpreadZ(p), z)), t);
  });
}

std::size_t TransformComplexAvx2(const double* m, const double* source, double* destination,
                                 std::size_t count) {
  const FourPoints x = LayOut(m[0], m[1], m[2]);
  const FourPoints y = LayOut(m[4], m[5], m[6]);
  const FourPoints z = LayOut(m[8], m[9], m[10]);
  const FourPoints t = LayOut(m[12], m[13], m[14]);
  const FourPoints xw = LayOut(m[3], m[3], m[3]);
  const FourPoints yw = LayOut(m[7], m[7], m[7]);
  const FourPoints zw = LayOut(m[11], m[11], m[11]);
  const FourPoints tw = LayOut(m[15], m[15], m[15]);
  return ForEachFour(source, destination, count, [&](const FourPoints& p) {
    const FourPoints px = SpreadX(p);
    const FourPoints py = SpreadY(p);
    const FourPoints pz = SpreadZ(p);
    const FourPoints sum = Add(Add(Add(Multiply(px, x), Multiply(py, y)), Multiply(pz, z)), t);
    const FourPoints w = Add(Add(Add(Multiply(px, xw), Multiply(py, yw)), Multiply(pz, zw)), tw);
    return Divide(sum, w);
  });
}

}  // namespace shr
