// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: growth across the border between the object's own room and the heap, copies and moves on
// both sides of it, the example of the header, requests no memory can hold.

#include "shared/polygons/PodVector.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "shared/geometry/Vec2.h"

namespace shr {
namespace {

using Vector = CPodVector<int, 4>;

Vector MakeVector(int size) {
  Vector vector;
  for (int i = 0; i < size; ++i) vector.push_back(i);
  return vector;
}

std::vector<int> ToStd(const Vector& vector) {
  return {vector.begin(), vector.end()};
}

std::vector<int> Counting(int size) {
  std::vector<int> values(static_cast<std::size_t>(size));
  std::iota(values.begin(), values.end(), 0);
  return values;
}

TEST(PodVector, keepsItsValuesInAndBeyondTheObject) {
  for (const int size : {0, 1, 3, 4, 5, 8, 9, 100}) {
    Vector vector = MakeVector(size);
    EXPECT_EQ(ToStd(vector), Counting(size)) << size;
    const bool isInside = static_cast<void*>(vector.data()) >= &vector &&
                          static_cast<void*>(vector.data()) < &vector + 1;
    EXPECT_EQ(isInside, size <= 4) << size;
    const Vector copy = vector;
    Vector moved = std::move(vector);
    EXPECT_EQ(ToStd(copy), Counting(size)) << size;
    EXPECT_EQ(ToStd(moved), Counting(size)) << size;
    EXPECT_TRUE(vector.empty()) << size;
    vector.push_back(7);  // a moved-from vector is as good as new
    EXPECT_EQ(ToStd(vector), std::vector<int>{7}) << size;
    for (const int otherSize : {0, 2, 50}) {
      Vector target = MakeVector(otherSize);
      target = copy;
      EXPECT_EQ(ToStd(target), Counting(size)) << size << " over " << otherSize;
      target = MakeVector(otherSize);
      EXPECT_EQ(ToStd(target), Counting(otherSize)) << otherSize << " over " << size;
    }
  }
}

TEST(PodVector, takesItsOwnElements) {
  Vector vector = MakeVector(4);
  vector.push_back(vector.front() + 9);
  vector.push_back(vector[4]);
  const Vector& self = vector;
  vector = self;
  EXPECT_EQ(ToStd(vector), (std::vector<int>{0, 1, 2, 3, 9, 9}));
  vector.pop_back();
  vector.truncate(3);
  EXPECT_EQ(vector.back(), 2);
  vector.clear();
  EXPECT_TRUE(vector.empty());
}

TEST(PodVector, refusesMoreThanMemoryCanHold) {
  Vector vector = MakeVector(3);
  EXPECT_THROW(vector.extend(std::numeric_limits<std::size_t>::max() - 1), std::bad_alloc);
  EXPECT_THROW(vector.reserve(std::numeric_limits<std::size_t>::max() / 2), std::bad_alloc);
  EXPECT_EQ(ToStd(vector), Counting(3));
}

TEST(PodVector, isUsedAsTheHeaderShows) {
  const std::vector<Vec2d> points(40, Vec2d(3.0, 4.0));
  CPodVector<Vec2d, 32> piece;
  piece.push_back(Vec2d(1.0, 2.0));
  piece.append(points);
  std::span<const Vec2d> view = piece;
  EXPECT_EQ(view.size(), 41u);
  EXPECT_EQ(view.back(), Vec2d(3.0, 4.0));
}

}  // namespace
}  // namespace shr
