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
///     dashes.Decompose(river, Box2d(0.0, 0.0, 1000.0, 800.0), draw);  // only what a view shows
///
/// Threads: an object belongs to one thread at a time.

#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <concepts>
#include <cstddef>
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

  /// The same for the parts that a box (`Box2d` or `Box3d`) may show: those that have a point in it
  /// are delivered, whole, with the ends they have without the box, and few others. Whatever lies
  /// elsewhere is passed over period by period, so that the limit of entries is one for the parts
  /// in the box, and the phase of a part anywhere on the line is right to a unit in the last place
  /// of the length so far. Degenerate: a box without points shows nothing. Cost: O(points * entries
  /// of the pattern + parts in the box).
  template <class Box, class Function>
  requires std::invocable<Function&, const Point&, const Point&>
  void Decompose(std::span<const Point> points, const Box& view, Function function);

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
  /// With more of them, a period is shorter than a unit in the last place of the line's length.
  static constexpr double MAXIMUM_PERIODS = 9007199254740992.0;

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
  static double SegmentLength(const Point& begin, const Point& end);

  /// A length as the sum of two numbers, the second within the rounding error of the first, so that
  /// millions of entries do not drift (T. J. Dekker, "A Floating-Point Technique for Extending the
  /// Available Precision", 1971).
  struct Length {
    double value = 0.0;
    double error = 0.0;

    void Add(double other, double otherError = 0.0) {
      const double sum = value + other;
      const double part = sum - value;
      const double rest = (value - (sum - part)) + (other - part) + (error + otherError);
      value = sum + rest;
      error = rest - (value - sum);
    }
    bool IsAtMost(double limit) const { return (value - limit) + error <= 0.0; }
  };

  /// A stretch of a segment, as distances from its begin.
  struct Stretch {
    double from;
    double to;
  };
  /// What shows every segment from its begin to its end.
  struct Everything {
    bool operator()(const Point&, const Point&, double length, Stretch& visible) const {
      visible = {0.0, length};
      return true;
    }
  };
  /// What shows the part of a segment in a box.
  template <class Box>
  struct View {
    bool operator()(const Point& begin, const Point& end, double length, Stretch& visible) const;
    const Box& box;
  };

  void InitState();
  void NextEntry();
  void SkipPeriods(double distance);
  template <class Visible>
  void RequireFewEntries(std::span<const Point> points, const Visible& visible) const;
  template <class Visible, class Function>
  void DecomposeVisible(std::span<const Point> points, const Visible& visible, Function& function);
  template <class Visible, class Function>
  void WalkSegment(const Point& begin, const Point& end, const Visible& visible,
                   Function& function);

  std::vector<double> dashes_;
  Length period_;  // until the pattern begins again with the pen down
  std::size_t entriesOfPeriod_ = 0;
  Point lastPoint_ = NoPoint();
  std::size_t dashIndex_ = 0;
  bool penDown_ = true;
  Length remaining_;  // of the entry in progress; along a segment, where it ends
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
  // With an odd number of entries the pen is up where it was down one pattern before.
  const int patterns = dashes_.size() % 2 == 0 ? 1 : 2;
  period_ = {};
  entriesOfPeriod_ = 0;
  for (int i = 0; i < patterns; ++i) {
    for (const double dash : dashes_) period_.Add(dash);
    entriesOfPeriod_ += dashes_.size();
  }
  InitState();
}

template <class Point, class Line>
template <class Function>
requires std::invocable<Function&, const Point&, const Point&>
void DashLineGenerator<Point, Line>::Decompose(std::span<const Point> points, Function function) {
  DecomposeVisible(points, Everything(), function);
}

template <class Point, class Line>
template <class Box, class Function>
requires std::invocable<Function&, const Point&, const Point&>
void DashLineGenerator<Point, Line>::Decompose(std::span<const Point> points, const Box& view,
                                               Function function) {
  DecomposeVisible(points, View<Box>{view}, function);
}

template <class Point, class Line>
template <class Visible, class Function>
void DashLineGenerator<Point, Line>::DecomposeVisible(std::span<const Point> points,
                                                      const Visible& visible, Function& function) {
  if (points.size() < 2 || period_.value == 0.0) {
    InitState();
    return;
  }
  RequireFewEntries(points, visible);
  if (!(points.front() == lastPoint_)) InitState();
  lastPoint_ = NoPoint();
  for (std::size_t i = 1; i < points.size(); ++i) {
    WalkSegment(points[i - 1], points[i], visible, function);
  }
  lastPoint_ = points.back();
}

template <class Point, class Line>
void DashLineGenerator<Point, Line>::InitState() {
  lastPoint_ = NoPoint();
  dashIndex_ = 0;
  penDown_ = true;
  remaining_ = {dashes_.front(), 0.0};
}

template <class Point, class Line>
void DashLineGenerator<Point, Line>::NextEntry() {
  dashIndex_ = dashIndex_ + 1 < dashes_.size() ? dashIndex_ + 1 : 0;
  penDown_ = !penDown_;
  remaining_.Add(dashes_[dashIndex_]);
}

/// Passes over whole periods until the entry in progress ends at most a period or two before a
/// distance. Their lengths are multiplied exactly: the factors are split into halves of 26 bits.
template <class Point, class Line>
void DashLineGenerator<Point, Line>::SkipPeriods(double distance) {
  const double count = std::floor((distance - remaining_.value) / period_.value) - 1.0;
  if (!(count >= 1.0)) return;
  if (count > MAXIMUM_PERIODS) {
    remaining_ = {distance, 0.0};
    return;
  }
  const auto half = [](double value) {
    const double scaled = 134217729.0 * value;  // 2^27 + 1
    return scaled - (scaled - value);
  };
  const double countHigh = half(count);
  const double countLow = count - countHigh;
  const double periodHigh = half(period_.value);
  const double periodLow = period_.value - periodHigh;
  const double product = count * period_.value;
  const double error =
      ((countHigh * periodHigh - product) + countHigh * periodLow + countLow * periodHigh) +
      countLow * periodLow;
  remaining_.Add(product, error + count * period_.error);
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

/// Finds where the segment is in the box, or so near it that rounding could tell otherwise.
template <class Point, class Line>
template <class Box>
bool DashLineGenerator<Point, Line>::View<Box>::operator()(const Point& begin, const Point& end,
                                                           double length, Stretch& visible) const {
  constexpr double TOLERANCE = 1e-14;
  double from = 0.0;
  double to = 1.0;
  Point::ForEach(
      [&](double a, double b, double low, double high) {
        const double slack = TOLERANCE * (std::abs(a) + std::abs(b));
        if (a == b) {
          if (a < low || a > high) from = 2.0;
          return;
        }
        const double atLow = (low - slack - a) / (b - a);
        const double atHigh = (high + slack - a) / (b - a);
        if (low > high) from = 2.0;
        from = std::max(from, std::min(atLow, atHigh));
        to = std::min(to, std::max(atLow, atHigh));
      },
      begin, end, box.Min(), box.Max());
  visible = {from * length, to * length};
  return from <= to;
}

template <class Point, class Line>
template <class Visible>
void DashLineGenerator<Point, Line>::RequireFewEntries(std::span<const Point> points,
                                                       const Visible& visible) const {
  const double entriesPerUnit = static_cast<double>(entriesOfPeriod_) / period_.value;
  // The sum of the coordinates' differences is quickly found, and no line is longer.
  double bound = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    Point::ForEach([&bound](double a, double b) { bound += std::abs(b - a); }, points[i - 1],
                   points[i]);
  }
  if (bound * entriesPerUnit <= MAXIMUM_ENTRIES) return;
  double length = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (!points[i - 1].IsFinite() || !points[i].IsFinite()) continue;
    const double whole = SegmentLength(points[i - 1], points[i]);
    Stretch stretch;
    if (!(whole <= DBL_MAX)) {
      length = whole;
    } else if (visible(points[i - 1], points[i], whole, stretch)) {
      length += stretch.to - stretch.from;
    }
  }
  if (length == 0.0 || length * entriesPerUnit <= MAXIMUM_ENTRIES) return;
  ThrowErrorImpl(SOURCE, __LINE__,
                 L"A line of the length %g is too long for a dash pattern of the length %g.",
                 length, period_.value);
}

/// Goes along one segment, with where the entry in progress ends as the distance from its begin.
template <class Point, class Line>
template <class Visible, class Function>
void DashLineGenerator<Point, Line>::WalkSegment(const Point& begin, const Point& end,
                                                 const Visible& visible, Function& function) {
  if (!begin.IsFinite() || !end.IsFinite()) {
    InitState();
    return;
  }
  const double length = SegmentLength(begin, end);
  const Point along = end - begin;
  const auto pointAt = [&](double distance) {
    return distance < length ? begin + along * (distance / length) : end;
  };
  Stretch stretch{DBL_MAX, -DBL_MAX};
  visible(begin, end, length, stretch);
  Point from = begin;
  double distance = 0.0;  // of `from`
  const auto drawTo = [&](double next, const Point& to) {
    const bool isVisible = next >= stretch.from && distance <= stretch.to;
    if (penDown_ && isVisible && !(from == to)) function(from, to);
  };
  const auto skipTo = [&](double target) {
    const double before = remaining_.value;
    SkipPeriods(std::min(target, length));
    if (remaining_.value == before) return;
    Length start = remaining_;
    start.Add(-dashes_[dashIndex_]);
    distance = start.value;
    from = pointAt(distance);
  };
  skipTo(stretch.from);
  while (remaining_.IsAtMost(length)) {
    const Point to = pointAt(remaining_.value);
    drawTo(remaining_.value, to);
    from = to;
    distance = remaining_.value;
    NextEntry();
    if (distance > stretch.to) skipTo(length);
  }
  drawTo(length, end);
  remaining_.Add(-length);
}

}  // namespace shr
