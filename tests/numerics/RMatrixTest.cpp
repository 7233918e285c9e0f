// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: construction of both types, what resizing keeps, copies and moves, views, order of
// storage, shapes without elements and shapes that do not fit into memory, text output.

#include "shared/numerics/linear/RMatrix.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <new>
#include <numeric>
#include <sstream>
#include <type_traits>

#include "shared/numerics/linear/RVector.h"

namespace shr {
namespace {

static_assert(std::is_nothrow_move_constructible_v<RVector>);
static_assert(std::is_nothrow_move_assignable_v<RMatrix>);
static_assert(sizeof(RVector) == 16 && sizeof(RMatrix) == 24);

template <class Stored>
std::string TextOf(const Stored& stored) {
  std::ostringstream stream;
  stream << std::setw(7) << stored;
  return stream.str();
}

TEST(RVector, bracesHoldElementsAndParenthesesASize) {
  const RVector braces{3.0}, parentheses(3), nothing(std::uint64_t{0});
  EXPECT_EQ(braces.size(), 1u);
  EXPECT_EQ(braces(0), 3.0);
  EXPECT_EQ(parentheses.size(), 3u);
  EXPECT_TRUE(nothing.empty() && nothing.IsNull() && nothing.begin() == nullptr);
}

TEST(RVector, copiesAreDeepAndMovesLeaveNothingBehind) {
  RVector a{1.0, 2.0, 3.0};
  RVector copy(a);
  copy(0) = 9.0;
  EXPECT_EQ(a(0), 1.0);
  const double* const where = a.data();
  RVector moved(std::move(a));
  EXPECT_EQ(moved.data(), where);
  EXPECT_TRUE(a.empty());  // NOLINT: what a moved-from vector is, is told
  a = moved;
  RVector& self = a;
  a = self;
  a = std::move(self);
  EXPECT_EQ(std::vector<double>(a.begin(), a.end()), (std::vector<double>{1.0, 2.0, 3.0}));
  a = RVector{4.0};
  EXPECT_EQ(*a.Base(0), 4.0);
  EXPECT_EQ(a.Base(1), a.end());
}

TEST(RVector, resizingToTheSameSizeKeepsTheElements) {
  RVector v{1.0, 2.0};
  const double* const where = v.data();
  v.Resize(2);
  EXPECT_EQ(v.data(), where);
  EXPECT_EQ(v(1), 2.0);
  v.Resize(5);
  EXPECT_EQ(v.size(), 5u);
  v.Clear();
  EXPECT_TRUE(v.IsNull());
}

TEST(RVector, isARangeAndASpan) {
  RVector v{1.0, 2.0, 3.0};
  std::span<double> all = v;
  all[0] = 5.0;
  EXPECT_EQ(std::accumulate(v.begin(), v.end(), 0.0), 10.0);
  EXPECT_EQ(RVector(std::span<const double>(v).first(2)).size(), 2u);
}

TEST(RMatrix, isStoredRowByRow) {
  RMatrix m{{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}};
  EXPECT_EQ(m.Rows(), 2u);
  EXPECT_EQ(m.Columns(), 3u);
  for (std::uint64_t i = 0; i < 6; ++i) EXPECT_EQ(m.data()[i], static_cast<double>(i + 1));
  EXPECT_EQ(m.Base(1, 2), m.Base() + 5);
  EXPECT_EQ(m.end(), m.Base(2, 0));
  EXPECT_EQ(m.Row(1)[0], 4.0);
  const RMatrix ragged{{1.0}, {2.0, 3.0}};
  EXPECT_EQ(ragged(0, 1), 0.0);
}

TEST(RMatrix, resizingToTheSameCountKeepsTheElements) {
  RMatrix m{{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}};
  const double* const where = m.data();
  m.Resize(3, 2);
  EXPECT_EQ(m.data(), where);
  EXPECT_EQ(m(2, 1), 6.0);
  EXPECT_EQ(m(1, 0), 3.0);
}

TEST(RMatrix, copiesAreDeepAndMovesLeaveNothingBehind) {
  RMatrix m{{1.0, 2.0}};
  RMatrix copy = m;
  copy(0, 0) = 7.0;
  EXPECT_EQ(m(0, 0), 1.0);
  RMatrix moved;
  moved = std::move(m);
  EXPECT_EQ(moved.Columns(), 2u);
  EXPECT_TRUE(m.Rows() == 0 && m.Columns() == 0);  // NOLINT
  m = moved;
  RMatrix& self = m;
  m = self;
  EXPECT_EQ(m(0, 1), 2.0);
}

TEST(RMatrix, mayHaveColumnsWithoutRows) {
  const RMatrix m(0, 4);
  EXPECT_TRUE(m.empty() && m.IsNull());
  EXPECT_EQ(m.Columns(), 4u);
  EXPECT_EQ(RMatrix(m).Columns(), 4u);
}

TEST(RMatrix, aShapeThatDoesNotFitLeavesTheMatrixAsItWas) {
  constexpr std::uint64_t HUGE_COUNT = std::uint64_t{1} << 32;
  RMatrix m{{1.0, 2.0}};
  EXPECT_THROW(m.Resize(HUGE_COUNT, HUGE_COUNT), std::bad_alloc);
  EXPECT_THROW(m.Resize(HUGE_COUNT, HUGE_COUNT / 2), std::bad_alloc);
  EXPECT_THROW(RVector(std::numeric_limits<std::uint64_t>::max()), std::bad_alloc);
  EXPECT_EQ(m.Columns(), 2u);
  EXPECT_EQ(m(0, 1), 2.0);
}

TEST(RMatrix, isWrittenRowByRow) {
  EXPECT_EQ(TextOf(RVector{1.0, 2.5, -3.0}), "[1, 2.5, -3]");
  EXPECT_EQ(TextOf(RVector()), "[]");
  EXPECT_EQ(TextOf(RMatrix{{1.0, 2.0}, {3.0, 1e-9}}), "[1, 2]\n[3, 1e-09]\n");
  EXPECT_EQ(TextOf(RMatrix()), "");
}

}  // namespace
}  // namespace shr
