// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The loops for AVX2 and those for any processor give the same bits, at all lengths around their
// lanes and tiles, also for numbers whose sums overflow, cancel and underflow.

#include "shared/numerics/linear/Kernels.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

bool HaveSameBits(const RVector& a, const RVector& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

/// Numbers of very different sizes.
RVector Numbers(std::uint64_t n, unsigned int seed) {
  RVector v = RandomVector(n, seed);
  const RVector sizes = RandomVector(n, seed + 1000);
  for (std::uint64_t i = 0; i < n; ++i) v(i) *= std::ldexp(1.0, static_cast<int>(sizes(i) * 600.0));
  return v;
}

class LinearKernelsTest : public testing::Test {
protected:
  const LinearKernels& plain_ = BaselineKernels();
  const LinearKernels& wide_ = HasWide() ? Avx2Kernels() : BaselineKernels();

  /// What runs here is what the library chose.
  static bool HasWide() { return &Kernels() != &BaselineKernels(); }
};

TEST_F(LinearKernelsTest, vectorLoopsGiveTheSameBits) {
  for (std::uint64_t n = 0; n <= 70; ++n) {
    const RVector x = Numbers(n, 1), y = Numbers(n, 2);
    const double a = plain_.dot(x.data(), y.data(), n), b = wide_.dot(x.data(), y.data(), n);
    EXPECT_EQ(std::memcmp(&a, &b, sizeof(a)), 0) << n;
    RVector x1 = x, x2 = x, y1 = y, y2 = y;
    plain_.axpy(1.7, x1.data(), y1.data(), n);
    wide_.axpy(1.7, x2.data(), y2.data(), n);
    EXPECT_TRUE(HaveSameBits(y1, y2)) << n;
    plain_.rotate(0.6, 0.8, x1.data(), y1.data(), n);
    wide_.rotate(0.6, 0.8, x2.data(), y2.data(), n);
    EXPECT_TRUE(HaveSameBits(x1, x2) && HaveSameBits(y1, y2)) << n;
    plain_.scale(0.3, x1.data(), n);
    wide_.scale(0.3, x2.data(), n);
    plain_.divide(0.7, x1.data(), n);
    wide_.divide(0.7, x2.data(), n);
    EXPECT_TRUE(HaveSameBits(x1, x2)) << n;
  }
}

TEST_F(LinearKernelsTest, matrixLoopsGiveTheSameBits) {
  for (std::uint64_t n = 1; n <= 40; ++n) {
    const std::uint64_t step = n + 3;
    const RVector a = Numbers(n * step, 1), x = Numbers(n, 2);
    RVector y1(n), y2(n);
    plain_.multiplySymmetric(a.data(), step, n, x.data(), y1.data());
    wide_.multiplySymmetric(a.data(), step, n, x.data(), y2.data());
    EXPECT_TRUE(HaveSameBits(y1, y2)) << n;

    RVector rows1 = a, rows2 = a, sums1 = x, sums2 = x;
    const RVector q = Numbers(n, 3), v = Numbers(n, 4);
    plain_.project({rows1.data(), step, n, n, x.data(), q.data(), v.data(), sums1.data()});
    wide_.project({rows2.data(), step, n, n, x.data(), q.data(), v.data(), sums2.data()});
    EXPECT_TRUE(HaveSameBits(rows1, rows2) && HaveSameBits(sums1, sums2)) << n;

    RVector chain1 = Numbers(8 * (n + 1), 5), chain2 = chain1;
    plain_.rotateChain(q.data(), v.data(), n, chain1.data());
    wide_.rotateChain(q.data(), v.data(), n, chain2.data());
    EXPECT_TRUE(HaveSameBits(chain1, chain2)) << n;
  }
}

TEST_F(LinearKernelsTest, chainsAreRotationsOneAfterTheOther) {
  constexpr std::uint64_t COUNT = 5;
  const RVector c = RandomVector(COUNT, 1), s = RandomVector(COUNT, 2);
  RVector chain = RandomVector(8 * (COUNT + 1), 3), expected = chain;
  plain_.rotateChain(c.data(), s.data(), COUNT, chain.data());
  for (std::uint64_t i = 0; i < COUNT; ++i) {
    const std::uint64_t row = COUNT - 1 - i;
    plain_.rotate(c(i), s(i), expected.Base(8 * row), expected.Base(8 * (row + 1)), 8);
  }
  EXPECT_TRUE(HaveSameBits(chain, expected));
}

struct Shape {
  std::size_t rows, depth, columns;
};

TEST_F(LinearKernelsTest, productsGiveTheSameBits) {
  for (const Shape& s :
       {Shape{1, 1, 1}, {5, 7, 9}, {6, 8, 8}, {7, 300, 17}, {61, 20, 33}, {49, 257, 16}}) {
    for (const bool isTransposed : {false, true}) {
      for (const bool isSubtracted : {false, true}) {
        const RVector a = Numbers(s.rows * s.depth, 1), b = Numbers(s.depth * s.columns, 2);
        RVector c1 = RandomVector(s.rows * s.columns, 3), c2 = c1;
        RVector workspace(300 * 6 + 300 * 512);
        MultiplyJob job{
            s.rows,    s.columns, s.depth,     {a.data(), s.depth, 1}, {b.data(), s.columns, 1},
            c1.data(), s.columns, isSubtracted};
        if (isTransposed) {
          job.a = {a.data(), 1, s.rows};
          job.b = {b.data(), 1, s.depth};
        }
        plain_.multiply(job, workspace.data());
        job.c = c2.data();
        wide_.multiply(job, workspace.data());
        EXPECT_TRUE(HaveSameBits(c1, c2)) << s.rows << ' ' << s.depth << ' ' << s.columns;
      }
    }
  }
}

}  // namespace
}  // namespace shr
