// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/viewing/RectTransformer.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "shared/geometry/RoundToLong.h"

namespace shr {
namespace {

bool IsDegenerate(double extent) {
  return std::abs(extent) < DBL_EPSILON;
}

Vec2d ScaleOf(const Box2d& source, const Box2d& destination) {
  const bool noWidth = IsDegenerate(source.xRange());
  const bool noHeight = IsDegenerate(source.yRange());
  if (noWidth && noHeight) return Vec2d::ONE;
  const Vec2d scale(destination.xRange() / source.xRange(), destination.yRange() / source.yRange());
  if (noWidth) return Vec2d(scale.y, scale.y);
  if (noHeight) return Vec2d(scale.x, scale.x);
  return scale;
}

void Assign(const Vec2d& point, Vec2d& result) {
  result = point;
}

void Assign(const Vec2d& point, POINT& result) {
  result = RoundToPoint(point);
}

void Assign(const Vec2d& minimum, const Vec2d& maximum, Box2d& result) {
  result = Box2d(minimum, maximum);
}

void Assign(const Vec2d& minimum, const Vec2d& maximum, RECT& result) {
  result = {RoundToLong(minimum.x), RoundToLong(minimum.y), RoundToLong(maximum.x),
            RoundToLong(maximum.y)};
}

template <class Function, class Result>
void ForAll(std::span<const Vec2d> points, std::span<Result> results, Function transform) {
  const std::size_t count = std::min(points.size(), results.size());
  for (std::size_t i = 0; i < count; ++i) Assign(transform(points[i]), results[i]);
}

}  // namespace

CRectTransformer::CRectTransformer(const Box2d& source, const Box2d& destination, bool keepAspect)
    : sourceCenter_(source.Center()),
      destinationCenter_(destination.Center()),
      scale_(ScaleOf(source, destination)) {
  if (!keepAspect) return;
  const double smaller = std::min(std::abs(scale_.x), std::abs(scale_.y));
  scale_.Set(std::copysign(smaller, scale_.x), std::copysign(smaller, scale_.y));
}

Vec2d CRectTransformer::ReverseTransform(const Vec2d& point) const {
  const Vec2d offset = point - destinationCenter_;
  return sourceCenter_ + Vec2d(scale_.x == 0.0 ? 0.0 : offset.x / scale_.x,
                               scale_.y == 0.0 ? 0.0 : offset.y / scale_.y);
}

void CRectTransformer::Transform(const Vec2d& point, POINT& result) const {
  Assign(Transform(point), result);
}

void CRectTransformer::Transform(const Box2d& box, Box2d& result) const {
  Assign(Transform(box.Min()), Transform(box.Max()), result);
}

void CRectTransformer::Transform(const Box2d& box, RECT& result) const {
  Assign(Transform(box.Min()), Transform(box.Max()), result);
}

void CRectTransformer::ReverseTransform(const Vec2d& point, POINT& result) const {
  Assign(ReverseTransform(point), result);
}

void CRectTransformer::ReverseTransform(const Box2d& box, Box2d& result) const {
  Assign(ReverseTransform(box.Min()), ReverseTransform(box.Max()), result);
}

void CRectTransformer::ReverseTransform(const Box2d& box, RECT& result) const {
  Assign(ReverseTransform(box.Min()), ReverseTransform(box.Max()), result);
}

void CRectTransformer::Transform(const Vec2d* points, Vec2d* results, std::size_t count) const {
  Transform(std::span(points, count), std::span(results, count));
}

void CRectTransformer::Transform(const Vec2d* points, POINT* results, std::size_t count) const {
  Transform(std::span(points, count), std::span(results, count));
}

void CRectTransformer::Transform(std::span<const Vec2d> points, std::span<Vec2d> results) const {
  ForAll(points, results, [this](const Vec2d& point) { return Transform(point); });
}

void CRectTransformer::Transform(std::span<const Vec2d> points, std::span<POINT> results) const {
  ForAll(points, results, [this](const Vec2d& point) { return Transform(point); });
}

void CRectTransformer::ReverseTransform(const Vec2d* points, Vec2d* results,
                                        std::size_t count) const {
  ReverseTransform(std::span(points, count), std::span(results, count));
}

void CRectTransformer::ReverseTransform(const Vec2d* points, POINT* results,
                                        std::size_t count) const {
  ReverseTransform(std::span(points, count), std::span(results, count));
}

void CRectTransformer::ReverseTransform(std::span<const Vec2d> points,
                                        std::span<Vec2d> results) const {
  ForAll(points, results, [this](const Vec2d& point) { return ReverseTransform(point); });
}

void CRectTransformer::ReverseTransform(std::span<const Vec2d> points,
                                        std::span<POINT> results) const {
  ForAll(points, results, [this](const Vec2d& point) { return ReverseTransform(point); });
}

CRectTransformer::operator Mat3d() const {
  const Vec2d moved = destinationCenter_ - sourceCenter_ * scale_;
  return Mat3d(scale_.x, 0.0, 0.0, 0.0, scale_.y, 0.0, moved.x, moved.y, 1.0);
}

}  // namespace shr
