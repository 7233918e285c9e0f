// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Segments are clipped after D. Cohen and I. Sutherland, as told by W. Newman and R. Sproull in
// "Principles of Interactive Computer Graphics" (1979): a code of the sides beyond which each end
// lies decides most segments at once; the ends of the others are moved to one side after another.
//
// Of a polyline most segments lie in stretches that are inside or beyond one and the same side.
// The end of such a stretch is looked for with the few comparisons that define it, and the points
// of one inside are copied together.

#include "shared/polygons/lines/LineClip.h"

#include "shared/polygons/FlatContours.h"
#include "shared/polygons/PodVector.h"

namespace shr {
namespace {

enum Side : unsigned { INSIDE = 0, LEFT = 1, RIGHT = 2, ABOVE = 4, BELOW = 8 };

unsigned ClassifyY(double y, const Box2d& box) {
  if (y < box.yMin()) return BELOW;
  return y > box.yMax() ? ABOVE : INSIDE;
}

unsigned Classify(const Vec2d& point, const Box2d& box) {
  const unsigned code = ClassifyY(point.y, box);
  if (point.x < box.xMin()) return code | LEFT;
  return point.x > box.xMax() ? code | RIGHT : code;
}

/// Returns where a segment from (x0, y0) to (x1, y1) has reached x, which lies between its ends.
double Reach(double x, double x0, double y0, double x1, double y1) {
  const double y = y0 + (x - x0) * (y1 - y0) / (x1 - x0);
  if (IsFiniteNumber(y)) return y;
  // A product was too large. Of a segment from infinity only the other end can be seen.
  const double part = (x / 4.0 - x0 / 4.0) / (x1 / 4.0 - x0 / 4.0);
  return part < 1.0 ? y0 * (1.0 - part) + y1 * part : y1;
}

/// Moves `end` along the segment to the side on the left or right beyond which it lies.
void MoveToX(Vec2d& end, const Vec2d& other, unsigned code, const Box2d& box) {
  const double x = (code & LEFT) != 0 ? box.xMin() : box.xMax();
  end = {x, Reach(x, end.x, end.y, other.x, other.y)};
}

/// Moves `end` along the segment to the side above or below beyond which it lies.
void MoveToY(Vec2d& end, const Vec2d& other, unsigned code, const Box2d& box) {
  const double y = (code & ABOVE) != 0 ? box.yMax() : box.yMin();
  end = {Reach(y, end.y, end.x, other.y, other.x), y};
}

/// Moves a point that rounding has left outside of the box to its border.
void Confine(Vec2d& point, const Box2d& box) {
  if (point.x < box.xMin()) point.x = box.xMin();
  if (point.x > box.xMax()) point.x = box.xMax();
  if (point.y < box.yMin()) point.y = box.yMin();
  if (point.y > box.yMax()) point.y = box.yMax();
}

/// Clips a segment whose ends have these codes.
bool ClipSegment(Vec2d& a, Vec2d& b, unsigned codeA, unsigned codeB, const Box2d& box) {
  if ((codeA & codeB) != 0) return false;
  if ((codeA | codeB) == 0) return true;
  if ((codeA & (LEFT | RIGHT)) != 0) {
    MoveToX(a, b, codeA, box);
    codeA = ClassifyY(a.y, box);
    if ((codeA & codeB) != 0) return false;
    if ((codeA | codeB) == 0) return true;
  }
  if ((codeA & (ABOVE | BELOW)) != 0) {
    MoveToY(a, b, codeA, box);
    if (a.x < box.xMin() || a.x > box.xMax()) return false;
    if (codeB == 0) return true;
  }
  if ((codeB & (LEFT | RIGHT)) != 0) {
    MoveToX(b, a, codeB, box);
    codeB = ClassifyY(b.y, box);
  }
  if ((codeB & (ABOVE | BELOW)) != 0) MoveToY(b, a, codeB, box);
  Confine(b, box);
  return true;
}

/// Returns the first point from `point` on that fails the test. Four at a time, so that the tests
/// of several points overlap.
template <class Test>
const Vec2d* SkipWhile(const Vec2d* point, const Vec2d* end, Test test) {
  while (end - point >= 4) {
    if ((test(point[0]) & test(point[1]) & test(point[2]) & test(point[3])) == 0) break;
    point += 4;
  }
  while (point != end && test(*point) != 0) ++point;
  return point;
}

const Vec2d* SkipInside(const Vec2d* point, const Vec2d* end, const Box2d& box) {
  return SkipWhile(point, end, [low = box.Min(), high = box.Max()](const Vec2d& p) -> unsigned {
    return (p.x >= low.x) & (p.x <= high.x) & (p.y >= low.y) & (p.y <= high.y);
  });
}

/// Returns the first point that is not beyond one of the sides of the code.
const Vec2d* SkipBeyond(const Vec2d* point, const Vec2d* end, unsigned code, const Box2d& box) {
  const auto skip = [&](double side, auto isBeyond) {
    return SkipWhile(point, end, [=](const Vec2d& p) -> unsigned { return isBeyond(p, side); });
  };
  if ((code & LEFT) != 0) return skip(box.xMin(), [](const Vec2d& p, double x) { return p.x < x; });
  if ((code & RIGHT) != 0)
    return skip(box.xMax(), [](const Vec2d& p, double x) { return p.x > x; });
  if ((code & ABOVE) != 0)
    return skip(box.yMax(), [](const Vec2d& p, double y) { return p.y > y; });
  return skip(box.yMin(), [](const Vec2d& p, double y) { return p.y < y; });
}

/// Collects a piece in a buffer and hands it to a receiver when it ends.
template <class Receiver>
class BufferSink {
public:
  explicit BufferSink(const Receiver& receiver) : receiver_(receiver) {}
  bool EndsAt(const Vec2d& point) const { return !piece_.empty() && piece_.back() == point; }
  void Append(std::span<const Vec2d> points) { piece_.append(points); }
  void Flush() {
    if (piece_.empty()) return;
    receiver_.receive(receiver_.target, piece_.data(), piece_.size());
    piece_.clear();
  }

private:
  const Receiver& receiver_;
  CPodVector<Vec2d, 32> piece_;
};

/// Appends the points where they belong at once and their number when the piece ends.
class VectorSink {
public:
  VectorSink(std::vector<Vec2d>& points, std::vector<unsigned int>& counts)
      : points_(points), counts_(counts), first_(points.size()) {}
  bool EndsAt(const Vec2d& point) const {
    return points_.size() > first_ && points_.back() == point;
  }
  void Append(std::span<const Vec2d> points) {
    points_.insert(points_.end(), points.begin(), points.end());
  }
  void Flush() {
    if (points_.size() == first_) return;
    counts_.push_back(static_cast<unsigned int>(points_.size() - first_));
    first_ = points_.size();
  }

private:
  std::vector<Vec2d>& points_;
  std::vector<unsigned int>& counts_;
  std::size_t first_;
};

template <class Sink>
void AppendSegment(const Vec2d& a, const Vec2d& b, Sink& sink) {
  const Vec2d ends[] = {a, b};
  if (sink.EndsAt(a)) return sink.Append(std::span(ends).last(1));
  sink.Flush();
  sink.Append(ends);
}

}  // namespace

// A NaN is less than nothing: a box with one clips nothing.
void CLineClip::SetClipRect(const Box2d& box) {
  box_ = box;
  isEnabled_ = box.xMin() < box.xMax() && box.yMin() < box.yMax();
}

void CLineClip::IntersectClipRect(const Box2d& box) {
  Box2d common = box;
  if (isEnabled_) {
    common = box_;
    common.Intersect(box);
  }
  SetClipRect(common);
}

bool CLineClip::ClipLine(Vec2d& a, Vec2d& b) const {
  return !isEnabled_ || ClipSegment(a, b, Classify(a, box_), Classify(b, box_), box_);
}

template <class Sink>
void CLineClip::ClipInto(std::span<const Vec2d> points, Sink& sink) const {
  if (points.empty()) return;
  if (!isEnabled_ || (points.size() == 1 && box_.Contains(points[0]))) {
    sink.Append(points);
    return sink.Flush();
  }
  const Vec2d* const end = points.data() + points.size();
  const Vec2d* to = points.data() + 1;
  unsigned fromCode = Classify(points.front(), box_);
  while (to < end) {
    const unsigned toCode = Classify(*to, box_);
    if ((fromCode & toCode) != 0) {
      sink.Flush();
      to = SkipBeyond(to + 1, end, fromCode & toCode, box_);
      fromCode = Classify(to[-1], box_);
      continue;
    }
    Vec2d a = to[-1];
    Vec2d b = *to++;
    if (!ClipSegment(a, b, fromCode, toCode, box_)) {
      sink.Flush();
    } else {
      AppendSegment(a, b, sink);
      // From a point inside, the piece goes on with all that follow inside. A NaN is not inside.
      if (box_.Contains(to[-1])) {
        const Vec2d* const stretch = to;
        to = SkipInside(to, end, box_);
        sink.Append({stretch, to});
      }
    }
    fromCode = Classify(to[-1], box_);
  }
  sink.Flush();
}

void CLineClip::ClipTo(const Vec2d* points, std::size_t count, const Receiver& receiver) const {
  const std::span<const Vec2d> polyline = CheckedSpan(points, count, L"LineClip");
  if (!isEnabled_) {
    if (count > 0) receiver.receive(receiver.target, points, count);
    return;
  }
  BufferSink<Receiver> sink(receiver);
  ClipInto(polyline, sink);
}

void CLineClip::ClipPolyline(std::span<const Vec2d> points, std::vector<Vec2d>& pointsOut,
                             std::vector<unsigned int>& countsOut) const {
  VectorSink sink(pointsOut, countsOut);
  ClipInto(points, sink);
}

void CLineClip::ClipPolyline(const Vec2d* points, std::size_t count, std::vector<Vec2d>& pointsOut,
                             std::vector<unsigned int>& countsOut) const {
  ClipPolyline(CheckedSpan(points, count, L"LineClip"), pointsOut, countsOut);
}

}  // namespace shr
