// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every edge is moved to its left or right by the distance. Where the moved edges of a corner part,
// a join closes the gap; where they cross, the curve goes back over the vertex, which makes a loop
// that winds the other way around. So a place has the winding number of the contours, plus one
// inside each strip that an edge or a corner sweeps outward, less one inside each swept inward, and
// the offset polygon is what keeps the sign of the clean contours (X. Chen and S. McMains, "Polygon
// Offsetting by Computing Winding Numbers", 2005).
//
// Directions of arcs come from one circle whose arcs are halved until they are flat enough. That
// takes square roots only, so every target gets the same bits.

#include "shared/polygons/clipper/OffsetCurve.h"

#include <algorithm>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon";
constexpr double DEFAULT_TOLERANCE = 0.0025;  // of the distance
constexpr std::size_t MAX_DIRECTIONS = 65536;

/// Turns smaller than this, as sines, make no corner.
constexpr double STRAIGHT = 1e-12;

Vec2d Normalized(const Vec2d& v) {
  const double largest = std::max(std::abs(v.x), std::abs(v.y));
  const Vec2d scaled(v.x / largest, v.y / largest);
  return scaled / std::sqrt(scaled.Dot(scaled));
}

/// Returns the number of the quarter turn from the direction of x on that holds a vector.
int QuadrantOf(const Vec2d& v) {
  if (v.y >= 0.0 && v.x > 0.0) return 0;
  if (v.x <= 0.0 && v.y > 0.0) return 1;
  return v.x < 0.0 ? 2 : 3;
}

/// Counter-clockwise from the direction of x on.
bool ComesBefore(const Vec2d& a, const Vec2d& b) {
  const int one = QuadrantOf(a);
  const int two = QuadrantOf(b);
  return one != two ? one < two : a.Cross(b) > 0.0;
}

/// Returns directions all around so near to each other that the chord between two on a circle of
/// radius 1 is nowhere farther than the tolerance inside of it.
std::vector<Vec2d> MakeCircle(double tolerance) {
  std::vector<Vec2d> circle = {{1.0, 0.0}, {0.0, 1.0}, {-1.0, 0.0}, {0.0, -1.0}};
  double cosine = std::sqrt(0.5);  // of half the angle between two
  while (1.0 - cosine > tolerance && circle.size() < MAX_DIRECTIONS) {
    std::vector<Vec2d> finer;
    finer.reserve(2 * circle.size());
    for (std::size_t i = 0; i < circle.size(); ++i) {
      finer.push_back(circle[i]);
      finer.push_back(Normalized(circle[i] + circle[i + 1 == circle.size() ? 0 : i + 1]));
    }
    circle = std::move(finer);
    cosine = std::sqrt((1.0 + cosine) / 2.0);
  }
  return circle;
}

}  // namespace

OffsetCurve::OffsetCurve(double distance, const OffsetOptions& options)
    : distance_(distance), options_(options) {
  if (!std::isfinite(distance) || !std::isfinite(options.arcTolerance) ||
      !(options.miterLimit >= 1.0)) {
    ThrowErrorImpl(UNIT, __LINE__, L"Invalid parameter passed to subroutine or function");
  }
  if (options.join != JoinType::Round || distance == 0.0) return;
  const double tolerance =
      options.arcTolerance > 0.0 ? options.arcTolerance / std::abs(distance) : DEFAULT_TOLERANCE;
  circle_ = MakeCircle(tolerance);
}

void OffsetCurve::Add(std::span<const Vec2d> contour) {
  const std::size_t count = contour.size();
  std::vector<Vec2d> normals(count);  // to the left, which is outward
  for (std::size_t i = 0; i < count; ++i) {
    const Vec2d along = Normalized(contour[i + 1 == count ? 0 : i + 1] - contour[i]);
    normals[i] = Vec2d(-along.y, along.x);
  }
  for (std::size_t i = 0; i < count; ++i) {
    AddCorner(contour[i], normals[i == 0 ? count - 1 : i - 1], normals[i]);
  }
  ends_.push_back(points_.size());
}

/// Adds the way around a vertex, given the normals of the edges before and after it.
void OffsetCurve::AddCorner(const Vec2d& vertex, const Vec2d& before, const Vec2d& after) {
  AddPoint(vertex + before * distance_);
  if (distance_ == 0.0) return;
  const double turn = before.Cross(after);
  const bool isStraight = std::abs(turn) < STRAIGHT && before.Dot(after) > 0.0;
  if (!isStraight && turn * distance_ > 0.0) {
    AddPoint(vertex);
  } else if (!isStraight) {
    switch (options_.join) {
      case JoinType::Round:
        AddArc(vertex, before, after);
        break;
      case JoinType::Miter:
        AddMiter(vertex, before, after);
        break;
      case JoinType::Square:
        AddSquare(vertex, before, after);
        break;
    }
  }
  AddPoint(vertex + after * distance_);
}

void OffsetCurve::AddArc(const Vec2d& vertex, const Vec2d& before, const Vec2d& after) {
  const auto begin = circle_.begin();
  const auto size = static_cast<std::ptrdiff_t>(circle_.size());
  const double radius = std::abs(distance_);
  const auto countBefore = [&](const Vec2d& direction) {
    return std::lower_bound(begin, circle_.end(), direction, ComesBefore) - begin;
  };
  const auto countUpTo = [&](const Vec2d& direction) {
    return std::upper_bound(begin, circle_.end(), direction, ComesBefore) - begin;
  };
  if (distance_ > 0.0) {  // clockwise
    const std::ptrdiff_t end = countUpTo(after) % size;
    for (std::ptrdiff_t i = countBefore(before) % size; i != end;) {
      i = i == 0 ? size - 1 : i - 1;
      AddPoint(vertex + circle_[static_cast<std::size_t>(i)] * radius);
    }
  } else {
    const std::ptrdiff_t end = countBefore(after * -1.0) % size;
    for (std::ptrdiff_t i = countUpTo(before * -1.0) % size; i != end; i = (i + 1) % size) {
      AddPoint(vertex + circle_[static_cast<std::size_t>(i)] * radius);
    }
  }
}

void OffsetCurve::AddMiter(const Vec2d& vertex, const Vec2d& before, const Vec2d& after) {
  // The tip is the distance over the cosine of half the turn away.
  const double limit = options_.miterLimit * options_.miterLimit;
  const double cosine = before.Dot(after);
  if ((1.0 + cosine) * limit < 2.0) {
    AddSquare(vertex, before, after);
  } else {
    AddPoint(vertex + (before + after) * (distance_ / (1.0 + cosine)));
  }
}

void OffsetCurve::AddSquare(const Vec2d& vertex, const Vec2d& before, const Vec2d& after) {
  // Three tangents of the circle around the vertex: both edges and the one half way between.
  const double cosine = std::clamp(before.Dot(after), -1.0, 1.0);
  const double tangent = std::sqrt((1.0 - cosine) / 2.0) / (1.0 + std::sqrt((1.0 + cosine) / 2.0));
  const double length = std::abs(distance_) * tangent;
  AddPoint(vertex + before * distance_ + Vec2d(before.y, -before.x) * length);
  AddPoint(vertex + after * distance_ - Vec2d(after.y, -after.x) * length);
}

std::span<const GpcContour> OffsetCurve::Contours() {
  contours_.clear();
  std::size_t first = 0;
  for (const std::size_t end : ends_) {
    contours_.push_back({static_cast<int>(end - first), points_.data() + first});
    first = end;
  }
  return contours_;
}

}  // namespace shr
