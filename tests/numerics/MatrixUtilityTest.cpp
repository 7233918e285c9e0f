// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: predicates at their tolerance, with NaN, infinity and nothing; rows, columns and blocks;
// norms at the ends of the range; arguments that are also results; shapes that do not fit.

#include "shared/numerics/linear/MatrixUtility.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

TEST(MatrixUtility, predicatesIncludeTheirTolerance) {
  const RMatrix nearIdentity{{1.5, -0.5}, {0.5, 0.5}};
  EXPECT_TRUE(IsIdentity(nearIdentity, 0.5));
  EXPECT_FALSE(IsIdentity(nearIdentity, 0.49));
  EXPECT_TRUE(IsSymmetric(nearIdentity, 1.0));
  EXPECT_FALSE(IsSymmetric(nearIdentity, 0.99));
  EXPECT_TRUE(IsZero(nearIdentity, 1.5));
  EXPECT_TRUE(IsDiagonal(nearIdentity, 0.5));
  EXPECT_FALSE(IsDiagonal(nearIdentity, 0.0));
  RMatrix banded = RandomMatrix(4, 4, 1);
  EXPECT_FALSE(IsTriDiagonal(banded, 1e-9));
  banded(0, 2) = banded(0, 3) = banded(1, 3) = banded(2, 0) = banded(3, 0) = banded(3, 1) = 1e-9;
  EXPECT_TRUE(IsTriDiagonal(banded, 1e-9));
  EXPECT_TRUE(IsEqual(RVector{1.0, 2.0}, RVector{1.0, 2.5}, 0.5));
  EXPECT_FALSE(IsEqual(RVector{1.0, 2.0}, RVector{1.0, 2.0, 3.0}, 9.0));
  EXPECT_FALSE(IsEqual(RMatrix(2, 3), RMatrix(3, 2), INFINITE));
}

TEST(MatrixUtility, predicatesOfNothingHoldAndOfNotSquareFail) {
  const RMatrix nothing, row{{1.0, 0.0}};
  EXPECT_TRUE(IsSquare(nothing) && IsSymmetric(nothing, 0) && IsIdentity(nothing, 0));
  EXPECT_TRUE(IsZero(RVector(), 0) && IsZero(nothing, 0) && IsEqual(nothing, RMatrix(), 0));
  EXPECT_FALSE(IsSquare(row) || IsSymmetric(row, 9) || IsDiagonal(row, 9));
  EXPECT_FALSE(IsTriDiagonal(row, 9) || IsIdentity(row, 9));
}

TEST(MatrixUtility, predicatesKnowNotANumberAndInfinity) {
  const RVector bad{NOT_A_NUMBER}, wide{INFINITE};
  EXPECT_FALSE(IsZero(bad, INFINITE) || IsEqual(bad, bad, INFINITE));
  EXPECT_TRUE(IsEqual(wide, wide, 0.0));
  EXPECT_FALSE(IsEqual(wide, RVector{-INFINITE}, 1e300));
  EXPECT_FALSE(IsDiagonal(RMatrix{{1.0, NOT_A_NUMBER}, {0.0, 1.0}}, 1e9));
}

TEST(MatrixUtility, rowsColumnsAndDiagonalsAreCopied) {
  RMatrix m{{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}};
  RVector v;
  ExtractRow(m, 1, v);
  EXPECT_TRUE(IsEqual(v, RVector{4.0, 5.0, 6.0}, 0));
  ExtractCol(m, 2, v);
  EXPECT_TRUE(IsEqual(v, RVector{3.0, 6.0}, 0));
  ExtractDiagonal(m, v);
  EXPECT_TRUE(IsEqual(v, RVector{1.0, 5.0}, 0));
  AssignRow(RVector{7.0, 8.0, 9.0}, 0, m);
  AssignCol(RVector{-1.0, -2.0}, 1, m);
  AssignDiagonal(RVector{0.0, 0.5}, m);
  EXPECT_TRUE(IsEqual(m, RMatrix{{0.0, -1.0, 9.0}, {4.0, 0.5, 6.0}}, 0));
}

TEST(MatrixUtility, blocksAreJoined) {
  RVector v{1.0};
  Concatenate(v, v);
  EXPECT_TRUE(IsEqual(v, RVector{1.0, 1.0}, 0));
  RMatrix m{{1.0, 2.0}, {3.0, 4.0}}, r;
  ConcatenateCols(m, RVector{5.0, 6.0}, r);
  EXPECT_TRUE(IsEqual(r, RMatrix{{1.0, 2.0, 5.0}, {3.0, 4.0, 6.0}}, 0));
  ConcatenateRows(m, m);
  EXPECT_TRUE(IsEqual(m, RMatrix{{1.0, 2.0}, {3.0, 4.0}, {1.0, 2.0}, {3.0, 4.0}}, 0));
  ConcatenateRows(RVector{1.0, 2.0}, RVector{3.0, 4.0}, r);
  EXPECT_TRUE(IsEqual(r, RMatrix{{1.0, 2.0}, {3.0, 4.0}}, 0));
  ConcatenateCols(RVector{1.0, 2.0}, RVector{3.0, 4.0}, r);
  EXPECT_TRUE(IsEqual(r, RMatrix{{1.0, 3.0}, {2.0, 4.0}}, 0));
  RMatrix grown;
  ConcatenateRows(grown, RVector{1.0, 2.0});
  ConcatenateRows(grown, RMatrix{{3.0, 4.0}});
  EXPECT_TRUE(IsEqual(grown, RMatrix{{1.0, 2.0}, {3.0, 4.0}}, 0));
  ComposeMatrix(RMatrix{{1.0}}, RMatrix{{2.0, 3.0}}, RMatrix{{4.0}, {5.0}},
                RMatrix{{6.0, 7.0}, {8.0, 9.0}}, r);
  EXPECT_TRUE(IsEqual(r, RMatrix{{1.0, 2.0, 3.0}, {4.0, 6.0, 7.0}, {5.0, 8.0, 9.0}}, 0));
  ComposeMatrix(RMatrix{{1.0, 2.0}, {2.0, 3.0}}, RMatrix{{4.0, 5.0}}, RMatrix{{6.0}}, r);
  EXPECT_TRUE(IsEqual(r, RMatrix{{1.0, 2.0, 4.0}, {2.0, 3.0, 5.0}, {4.0, 5.0, 6.0}}, 0));
}

TEST(MatrixUtility, transposeTurnsShapesOfAllSizes) {
  for (const std::uint64_t rows : {0u, 1u, 15u, 16u, 17u, 40u}) {
    const RMatrix m = RandomMatrix(rows, 33, static_cast<unsigned int>(rows));
    RMatrix t = Transpose(m);
    EXPECT_EQ(t.Rows(), 33u);
    for (std::uint64_t i = 0; i < rows; ++i) EXPECT_EQ(t(32, i), m(i, 32));
    Transpose(t, t);
    EXPECT_TRUE(IsEqual(t, m, 0));
  }
}

TEST(MatrixUtility, normsAreTheUsualOnes) {
  const RMatrix m{{1.0, -2.0}, {-3.0, 4.0}, {0.0, 5.0}};
  EXPECT_EQ(L1Norm(m), 11.0);
  EXPECT_EQ(LInfNorm(m), 7.0);
  EXPECT_DOUBLE_EQ(FNorm(m), std::sqrt(55.0));
  EXPECT_EQ(Trace(m), 5.0);
  EXPECT_EQ(Off(m), 10.0);
  EXPECT_EQ(SymOff(RMatrix{{1.0, -2.0, 3.0}, {9.0, 9.0, 4.0}, {9.0, 9.0, 9.0}}), 18.0);
  EXPECT_EQ(SymOff(RMatrix{{7.0}}), 0.0);
  EXPECT_EQ(L1Norm(RVector{3.0, -4.0}), 7.0);
  EXPECT_EQ(L2Norm(RVector{3.0, -4.0}), 5.0);
  EXPECT_EQ(LInfNorm(RVector{3.0, -4.0}), 4.0);
  EXPECT_EQ(L1Norm(RMatrix()) + LInfNorm(RMatrix(0, 3)) + FNorm(RMatrix()) + L2Norm(RVector()),
            0.0);
  RVector sums;
  HSum(m, sums);
  EXPECT_TRUE(IsEqual(sums, RVector{-1.0, 1.0, 5.0}, 0));
  VSum(m, sums);
  EXPECT_TRUE(IsEqual(sums, RVector{-2.0, 7.0}, 0));
}

TEST(MatrixUtility, euclideanNormsNeitherOverflowNorVanish) {
  for (const double scale : {1e-320, 1e-300, 1e-160, 1e-150, 1e150, 1e160, 1e307}) {
    const RVector v{3.0 * scale, 4.0 * scale};
    EXPECT_NEAR(L2Norm(v) / LInfNorm(v), 1.25, scale < 1e-310 ? 1e-3 : 1e-15) << scale;
  }
  EXPECT_EQ(L2Norm(RVector{1.0, INFINITE}), INFINITE);
  EXPECT_TRUE(std::isnan(L2Norm(RVector{NOT_A_NUMBER, 1e300})));
  EXPECT_TRUE(std::isnan(LInfNorm(RVector{1.0, NOT_A_NUMBER, 2.0})));
  EXPECT_TRUE(std::isnan(LInfNorm(RMatrix{{NOT_A_NUMBER}, {2.0}})));
}

TEST(MatrixUtility, fillingTakesTheShapeThatIsTold) {
  RVector v;
  Ones(v, 2);
  EXPECT_TRUE(IsEqual(v, RVector{1.0, 1.0}, 0));
  Unit(v, 3, 2);
  EXPECT_TRUE(IsEqual(v, RVector{0.0, 0.0, 1.0}, 0));
  RMatrix m;
  Eye(m, 2, 3);
  EXPECT_TRUE(IsEqual(m, RMatrix{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}}, 0));
  Ones(m);
  Zeros(m, 1, 2);
  EXPECT_TRUE(IsEqual(m, RMatrix{{0.0, 0.0}}, 0));
  Fill(m, 2.0);
  Initialize(m, 2, 1, m.data());  // from its own elements
  EXPECT_TRUE(IsEqual(m, RMatrix{{2.0}, {2.0}}, 0));
}

TEST(MatrixUtility, arithmeticIsElementwise) {
  RVector a{1.0, 2.0}, r;
  Add(a, RVector{10.0, 20.0}, r);
  Subtract(r, a);
  Negate(r);
  EXPECT_TRUE(IsEqual(r, RVector{-10.0, -20.0}, 0));
  Divide(r, -10.0);
  EXPECT_TRUE(IsEqual(r, a, 0));
  Add(r, 1.0);
  Divide(r, a);
  EXPECT_TRUE(IsEqual(r, RVector{2.0, 1.5}, 0));
  Update_axpy(2.0, r, a);  // r = 2 r + a
  EXPECT_TRUE(IsEqual(r, RVector{5.0, 5.0}, 0));
  Update_xpay(r, 2.0, a);  // r = r + 2 a
  EXPECT_TRUE(IsEqual(r, RVector{7.0, 9.0}, 0));
  Subtract(r, r, r);
  EXPECT_TRUE(IsZero(r, 0));
  RMatrix m{{1.0, 2.0}};
  Update_xpay(m, 3.0, m);
  Subtract(m, 1.0);
  EXPECT_TRUE(IsEqual(m, RMatrix{{3.0, 7.0}}, 0));
}

TEST(MatrixUtility, whatDoesNotFitIsRefusedAndChangesNothing) {
  RVector v{1.0, 2.0};
  RMatrix m{{1.0, 2.0}}, r{{5.0}};
  EXPECT_THROW(ExtractRow(m, 1, v), InternalErrorException);
  EXPECT_THROW(ExtractCol(m, 2, v), InternalErrorException);
  EXPECT_THROW(AssignRow(RVector{1.0}, 0, m), InternalErrorException);
  EXPECT_THROW(AssignCol(v, 0, m), InternalErrorException);
  EXPECT_THROW(AssignDiagonal(v, m), InternalErrorException);
  EXPECT_THROW(Unit(v, 2, 2), InternalErrorException);
  EXPECT_THROW(Add(v, RVector{1.0}), InternalErrorException);
  EXPECT_THROW(Add(m, Transpose(m), r), InternalErrorException);
  EXPECT_THROW(ConcatenateRows(m, RVector{1.0}), InternalErrorException);
  EXPECT_THROW(ConcatenateCols(m, v), InternalErrorException);
  EXPECT_THROW(ComposeMatrix(m, m, m, r, r), InternalErrorException);
  EXPECT_TRUE(IsEqual(v, RVector{1.0, 2.0}, 0) && IsEqual(m, RMatrix{{1.0, 2.0}}, 0));
  EXPECT_TRUE(IsEqual(r, RMatrix{{5.0}}, 0));
}

}  // namespace
}  // namespace shr
