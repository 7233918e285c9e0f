// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/SimpleWarps.h"

#include <cstddef>

#include "shared/numerics/registration/ControlPoints.h"

namespace shr {
namespace {

constexpr std::size_t FEWEST_FOR_TRANSLATE = 2;

}  // namespace

RPoint CTranslate::Transform(const RPoint& point) const {
  return RPoint(point.x + offsetX_, point.y + offsetY_);
}

bool CTranslate::Calibrate(const RPoints& from, const RPoints& to) {
  if (!AreUsable(from, to, FEWEST_FOR_TRANSLATE)) return false;
  RPoint offset(offsetX_, offsetY_);
  for (std::size_t i = 0; i < from.size(); ++i) {
    offset.x += to[i].x - from[i].x;
    offset.y += to[i].y - from[i].y;
  }
  const auto count = static_cast<double>(from.size());
  if (!IsFinitePoint(offset)) return false;
  offsetX_ = offset.x / count;
  offsetY_ = offset.y / count;
  return true;
}

CTranslate* CTranslate::Clone() const {
  return new CTranslate(*this);
}

RPoint CIdentityMap::Transform(const RPoint& point) const {
  return point;
}

bool CIdentityMap::Calibrate(const RPoints&, const RPoints&) {
  return true;
}

CIdentityMap* CIdentityMap::Clone() const {
  return new CIdentityMap(*this);
}

}  // namespace shr
