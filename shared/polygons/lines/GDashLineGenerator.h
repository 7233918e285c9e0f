// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GDashLineGenerator` and `GDashLine3Generator`, which cut polylines in the plane and in space
/// into the visible pieces of a dash pattern.
///
/// A generator keeps its phase between calls: a line that is handed over in consecutive parts, each
/// beginning exactly where the one before ended, is dashed as one.
///
///     const double pattern[] = {10.0, 5.0};   // drawn, gap, drawn ...
///     GDashLineGenerator dashes(pattern);
///     std::vector<GLine2> pieces;
///     dashes.Decompose(river, pieces);        // a GPolyline, a vector or an array of points
///
/// Threads: an object belongs to one thread at a time.

#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/GLine.h"
#include "shared/geometry/Vec2.h"
#include "shared/geometry/Vec3.h"
#include "shared/polygons/GPolyline.h"

namespace shr {

/// What both generators are: a pattern, and how far it has been used up.
///
/// The pattern alternates drawn lengths and gaps, beginning with a drawn one. After its last entry
/// it starts over with the pen in the other state, so a pattern of one entry has gaps of the length
/// of its dashes. Entries of length 0 only turn the pen; nothing of length 0 is delivered, and a
/// pattern of zeros alone draws nothing.
template <class Point, class Line>
class DashLineGenerator {
public:
  /// Receives a drawn straight part and what was handed to `Decompose` with the function.
  using Callback = void (*)(Point begin, Point end, void* user);

  /// The most entries of a pattern that one call walks through.
  static constexpr double MAXIMUM_ENTRIES = 1 << 26;

  /// As `SetDashes`.
  DashLineGenerator(const double* dashes, std::size_t count) { SetDashes(dashes, count); }
  explicit DashLineGenerator(std::span<const double> dashes) { SetDashes(dashes); }
  DashLineGenerator(const DashLineGenerator&) = default;
  DashLineGenerator& operator=(const DashLineGenerator&) = default;
  virtual ~DashLineGenerator() = default;

  /// Replaces the pattern, in the units of the points, and returns to its beginning. An empty one
  /// becomes the single entry 0. Errors, with everything unchanged: an internal error when the
  /// array is null and the count is not 0; an exception that names the first entry that is
  /// negative, infinite or no number.
  void SetDashes(const double* dashes, std::size_t count) {
    if (dashes == nullptr && count != 0) ThrowNullArray(__LINE__);
    SetDashes(std::span(dashes, count));
  }
  void SetDashes(std::span<const double> dashes);

  const std::vector<double>& GetDashes() const noexcept { return dashes_; }

  /// Hand the drawn straight parts of a polyline to a function, in order. A dash that runs around a
  /// vertex is delivered as parts that meet there. The pattern goes on where the previous call left
  /// it when the first point is exactly the last one of that call, else it starts over. With fewer
  /// than two points nothing is drawn and the next call starts over.
  ///
  /// Degenerate: a point that is infinite or no number interrupts the line; behind it the pattern
  /// starts over. Errors: an exception, before anything is delivered, when the line takes more than
  /// `MAXIMUM_ENTRIES` entries of the pattern; an internal error when the array is null and the
  /// count is not 0. When the function throws, the next call starts over. Cost: O(points +
  /// entries), no allocation.
  template <class Function>
  requires std::invocable<Function&, const Point&, const Point&>
  void Decompose(std::span<const Point> points, Function function);
  void Decompose(const Point* points, std::size_t count, Callback callback, void* user) {
    Decompose(Checked(points, count),
              [=](const Point& begin, const Point& end) { callback(begin, end, user); });
  }

  /// The same, appended to `lines`.
  void Decompose(std::span<const Point> points, std::vector<Line>& lines) {
    Decompose(points,
              [&lines](const Point& begin, const Point& end) { lines.emplace_back(begin, end); });
  }
  void Decompose(const Point* points, std::size_t count, std::vector<Line>& lines) {
    Decompose(Checked(points, count), lines);
  }

private:
  static constexpr const wchar_t* SOURCE = L"GDashLineGenerator";

  [[noreturn]] static void ThrowNullArray(int line) {
    ThrowInternalError(SHARED_MODULE, SOURCE, line);
  }
  static std::span<const Point> Checked(const Point* points, std::size_t count) {
    if (points == nullptr && count != 0) ThrowNullArray(__LINE__);
    return std::span(points, count);
  }

  static Point NoPoint() {
    Point none;
    Point::ForEach([](double& x) { x = DBL_MAX; }, none);
    return none;
  }
  static bool IsFinite(const Point& point) {
    bool finite = true;
    Point::ForEach([&finite](double x) { finite = finite && std::isfinite(x); }, point);
    return finite;
  }
  static double SegmentLength(const Point& begin, const Point& end);

  void InitState();
  void NextEntry();
  void RequireFewEntries(std::span<const Point> points) const;
  template <class Function>
  void WalkSegment(const Point& begin, const Point& end, Function& function);

  std::vector<double> dashes_;
  double patternLength_ = 0.0;
  Point lastPoint_ = NoPoint();
  std::size_t dashIndex_ = 0;
  bool penDown_ = true;
  double remaining_ = 0.0;  // of the entry in progress
};

/// Dashes in the plane.
class GDashLineGenerator : public DashLineGenerator<Vec2d, GLine2> {
public:
  using DashLineGenerator::DashLineGenerator;
};

/// Dashes in space.
class GDashLine3Generator : public DashLineGenerator<Vec3d, GLine3> {
public:
  using DashLineGenerator::DashLineGenerator;
};

// Implementation details follow.

template <class Point, class Line>
void DashLineGenerator<Point, Line>::SetDashes(std::span<const double> dashes) {
  for (std::size_t i = 0; i < dashes.size(); ++i) {
    if (dashes[i] >= 0.0 && dashes[i] <= DBL_MAX) continue;
    ThrowErrorImpl(SOURCE, __LINE__,
                   L"Entry %u of the dash pattern is %g. Lengths must be finite and not negative.",
                   static_cast<unsigned int>(i), dashes[i]);
  }
  std::vector<double> pattern(dashes.begin(), dashes.end());
  if (pattern.empty()) pattern.push_back(0.0);
  dashes_ = std::move(pattern);
  patternLength_ = std::accumulate(dashes_.begin(), dashes_.end(), 0.0);
  InitState();
}

template <class Point, class Line>
template <class Function>
requires std::invocable<Function&, const Point&, const Point&>
void DashLineGenerator<Point, Line>::Decompose(std::span<const Point> points, Function function) {
  if (points.size() < 2 || patternLength_ == 0.0) {
    InitState();
    return;
  }
  RequireFewEntries(points);
  if (!(points.front() == lastPoint_)) InitState();
  lastPoint_ = NoPoint();
  for (std::size_t i = 1; i < points.size(); ++i) {
    WalkSegment(points[i - 1], points[i], function);
  }
  lastPoint_ = points.back();
}

template <class Point, class Line>
void DashLineGenerator<Point, Line>::InitState() {
  lastPoint_ = NoPoint();
  dashIndex_ = 0;
  penDown_ = true;
  remaining_ = dashes_.front();
}

template <class Point, class Line>
void DashLineGenerator<Point, Line>::NextEntry() {
  dashIndex_ = dashIndex_ + 1 < dashes_.size() ? dashIndex_ + 1 : 0;
  penDown_ = !penDown_;
  remaining_ = dashes_[dashIndex_];
}

/// The squares of a length that is representable may not be; scaling keeps them in range.
template <class Point, class Line>
double DashLineGenerator<Point, Line>::SegmentLength(const Point& begin, const Point& end) {
  Point along = end - begin;
  const double length = along.Length();
  if (length <= DBL_MAX && length >= DBL_MIN) return length;
  double largest = 0.0;
  Point::ForEach([&largest](double x) { largest = std::max(largest, std::abs(x)); }, along);
  if (largest == 0.0 || !(largest <= DBL_MAX)) return largest;
  Point::ForEach([largest](double& x) { x /= largest; }, along);
  return along.Length() * largest;
}

template <class Point, class Line>
void DashLineGenerator<Point, Line>::RequireFewEntries(std::span<const Point> points) const {
  const double entriesPerUnit = static_cast<double>(dashes_.size()) / patternLength_;
  // The sum of the coordinates' differences is quickly found, and no line is longer.
  double bound = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    Point::ForEach([&bound](double a, double b) { bound += std::abs(b - a); }, points[i - 1],
                   points[i]);
  }
  if (bound * entriesPerUnit <= MAXIMUM_ENTRIES) return;
  double length = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (IsFinite(points[i - 1]) && IsFinite(points[i])) {
      length += SegmentLength(points[i - 1], points[i]);
    }
  }
  if (length == 0.0 || length * entriesPerUnit <= MAXIMUM_ENTRIES) return;
  ThrowErrorImpl(SOURCE, __LINE__,
                 L"A line of the length %g is too long for a dash pattern of the length %g.",
                 length, patternLength_);
}

/// Goes along one segment. Where each entry ends is summed up with the rounding error of every sum
/// carried along (T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision",
/// 1971), so that thousands of short dashes do not drift.
template <class Point, class Line>
template <class Function>
void DashLineGenerator<Point, Line>::WalkSegment(const Point& begin, const Point& end,
                                                 Function& function) {
  if (!IsFinite(begin) || !IsFinite(end)) {
    InitState();
    return;
  }
  const auto draw = [&function](const Point& from, const Point& to) {
    if (!(from == to)) function(from, to);
  };
  const double length = SegmentLength(begin, end);
  const Point along = end - begin;
  Point from = begin;
  double walked = 0.0;
  double error = 0.0;
  double left = length;
  while (remaining_ <= left) {
    const double step = remaining_ + error;
    const double sum = walked + step;
    error = std::abs(walked) >= std::abs(step) ? (walked - sum) + step : (step - sum) + walked;
    walked = sum;
    left = std::max(0.0, (length - walked) - error);
    const Point to = walked < length ? begin + along * (walked / length) : end;
    if (penDown_) draw(from, to);
    from = to;
    NextEntry();
  }
  remaining_ -= left;
  if (penDown_) draw(from, end);
}

}  // namespace shr
