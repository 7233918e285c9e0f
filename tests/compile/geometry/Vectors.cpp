// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: vectors convert to pointers to their components, which must not give them an order of
// addresses nor a difference of addresses.

#include <set>

#include "shared/geometry/Vec2.h"
#include "shared/geometry/Vec3.h"
#include "shared/geometry/Vec4.h"

namespace {

const shr::Vec2d PLANE;
const shr::Vec3d SPACE;

void vectorsOfNumbersHaveNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = PLANE < PLANE;
#else
  const bool isLess = PLANE.x < PLANE.x;
#endif
}

void vectorsInSpaceHaveNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = SPACE >= SPACE;
#else
  const bool isLess = SPACE != SPACE;
#endif
}

void homogeneousVectorsHaveNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = shr::Vec4f() > shr::Vec4f();
#else
  const bool isLess = shr::Vec4f() == shr::Vec4f();
#endif
}

void vectorsOfSingleNumbersHaveNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = shr::Vec2f() <= shr::Vec2f();
#else
  const bool isLess = shr::Vec2i() <= shr::Vec2i();
#endif
}

void mixedPrecisionHasNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = shr::Vec2i() < PLANE;
#else
  const bool isLess = shr::Vec2i() == PLANE;
#endif
}

void dimensionsHaveNoOrder() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isLess = PLANE < SPACE;
#else
  const bool isLess = shr::Vec3i() < shr::Vec3i();
#endif
}

void dimensionsAreNotSubtracted() {
#ifdef MUST_NOT_COMPILE  // deleted
  const auto difference = PLANE - SPACE;
#else
  const auto difference = shr::Vec3d(PLANE, 0.0) - SPACE;
#endif
}

void dimensionsOfIntegersAreNotSubtracted() {
#ifdef MUST_NOT_COMPILE  // deleted
  const auto difference = shr::Vec3i() - shr::Vec2i();
#else
  const auto difference = shr::Vec3i() - shr::Vec3i();
#endif
}

void dimensionsAreNotCompared() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isEqual = PLANE == SPACE;
#else
  const bool isEqual = shr::Vec3d(PLANE, 0.0) == SPACE;
#endif
}

void dimensionsAreNotToldApart() {
#ifdef MUST_NOT_COMPILE  // deleted
  const bool isOther = shr::Vec4d() != SPACE;
#else
  const bool isOther = shr::Vec4d() != shr::Vec4d(SPACE, 1.0);
#endif
}

void vectorsOfNumbersAreNoKeysOfASet() {
#ifdef MUST_NOT_COMPILE  // deleted
  const std::set<shr::Vec2d> points = {PLANE};
#else
  const std::set<shr::Vec2i> points = {shr::Vec2i()};
#endif
}

}  // namespace
