// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Takes the place of the peers on a target that lacks their libraries: there are none.

#include "bench/polygons/BooleanContender.h"
#include "bench/polygons/ClipPeerGeos.h"
#include "bench/polygons/LineCutContender.h"

namespace shr::bench {

std::unique_ptr<BooleanContender> MakeBoostContender() {
  return nullptr;
}

std::unique_ptr<BooleanContender> MakeGeosContender() {
  return nullptr;
}

std::unique_ptr<BooleanContender> MakeClipperContender() {
  return nullptr;
}

std::unique_ptr<BooleanContender> MakeCgalContender() {
  return nullptr;
}

std::unique_ptr<LineCutter> MakeClipperLineCutter() {
  return nullptr;
}

std::unique_ptr<LineCutter> MakeGeosLineCutter() {
  return nullptr;
}

struct GeosShape::Geometry {};

std::unique_ptr<GeosShape> GeosShape::Make(std::span<const Vec2d>, Kind) {
  return nullptr;
}

GeosShape::~GeosShape() = default;

std::size_t GeosShape::ClipToBox(const Box2d&) const {
  return 0;
}

double GeosShape::MeasureInBox(const Box2d&) const {
  return 0;
}

GeosShape::Inside GeosShape::ClipSegments(std::span<const Vec2d>) const {
  return {};
}

std::size_t GeosShape::Simplify(double) const {
  return 0;
}

bool GeosShape::IsValid() const {
  return false;
}

double GeosShape::MakeValid() const {
  return 0;
}

std::size_t GeosShape::CountInside(std::span<const Vec2d>) const {
  return 0;
}

}  // namespace shr::bench
