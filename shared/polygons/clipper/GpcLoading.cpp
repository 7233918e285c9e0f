// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Before the first stage: the operands' contours become one array of points.
//
// An intersection lies within the box of either operand, so whatever an operand does outside the
// box of the other one is of no interest, and the same holds for what a difference takes away. A
// way around two or more vertices that all lie beyond the same side of that box may therefore be
// replaced by its chord: the two enclose nothing but places beyond that side, so the contour winds
// around each place in the box as often as before. A country beside a cell of a map grid
// shrinks to the part of its border in the cell and some dozen vertices around it. The box gets a
// margin that exceeds the tolerance by far, so that chords meet nothing that matters.

#include <algorithm>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/clipper/GpcInput.h"

namespace shr::gpc {
namespace {

constexpr Index MAX_VERTICES = 1u << 29;
/// Coordinates between these have products that neither overflow nor lose bits.
constexpr int MAX_EXPONENT = 400;
/// Relative to the largest coordinate.
constexpr double MARGIN = 0x1p-36;

/// The box of an operand; `sum` is 0 unless a coordinate is infinite or NaN.
struct Extent {
  Box box{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  double sum = 0.0;

  void Add(const Vec2d& point) {
    box.xMin = std::min(box.xMin, point.x);
    box.yMin = std::min(box.yMin, point.y);
    box.xMax = std::max(box.xMax, point.x);
    box.yMax = std::max(box.yMax, point.y);
    sum += point.x * 0.0 + point.y * 0.0;
  }
  void Add(const Extent& other) {
    box.xMin = std::min(box.xMin, other.box.xMin);
    box.yMin = std::min(box.yMin, other.box.yMin);
    box.xMax = std::max(box.xMax, other.box.xMax);
    box.yMax = std::max(box.yMax, other.box.yMax);
    sum += other.sum;
  }
  double Largest() const { return std::max({-box.xMin, -box.yMin, box.xMax, box.yMax, 0.0}); }
};

constexpr int CONTOUR_SIZE = 3;  // at least
constexpr int LINE_SIZE = 2;

Extent Measure(std::span<const GpcContour> contours, int minSize) {
  Extent even;
  Extent odd;  // two, so that neither waits for the other
  for (const GpcContour& contour : contours) {
    if (contour.vertexCount < minSize) continue;
    int j = 0;
    for (; j + 1 < contour.vertexCount; j += 2) {
      even.Add(contour.vertices[j]);
      odd.Add(contour.vertices[j + 1]);
    }
    if (j < contour.vertexCount) even.Add(contour.vertices[j]);
  }
  even.Add(odd);
  return even;
}

/// Copies points that differ from the one before and returns their number. The target may be the
/// source. The first one goes unless it is equal to the last, or always with a line.
Index CopyDistinct(const Vec2d* from, Index size, Vec2d* to, bool isLine = false) {
  if (isLine) to[0] = from[0];
  Index count = isLine ? 1 : 0;
  Vec2d last = isLine ? from[0] : from[size - 1];
  for (Index i = count; i < size; ++i) {
    const Vec2d point = from[i];
    to[count] = point;
    count += !IsSame(point, last);
    last = point;
  }
  return count;
}

/// Returns the sides of a box that a point lies beyond, as bits.
unsigned int GetSidesBeyond(const Box& box, const Vec2d& point) {
  return static_cast<unsigned int>(point.x < box.xMin) |
         static_cast<unsigned int>(point.x > box.xMax) << 1 |
         static_cast<unsigned int>(point.y < box.yMin) << 2 |
         static_cast<unsigned int>(point.y > box.yMax) << 3;
}

/// Copies points less those that lie, with both neighbours left, beyond the same side of a box.
/// Returns their number.
Index CopyNear(const Vec2d* from, Index size, const Box& box, Vec2d* to) {
  Index count = 0;
  unsigned int before = 0;  // the sides that the last point but one lies beyond
  unsigned int last = 0;
  for (Index i = 0; i < size; ++i) {
    const Vec2d point = from[i];
    const unsigned int sides = GetSidesBeyond(box, point);
    if ((before & last & sides) != 0) {
      to[count - 1] = point;
    } else {
      to[count++] = point;
      before = last;
    }
    last = sides;
  }
  return count;
}

void CheckSize(Index size, Index sizeBefore) {
  if (size > MAX_VERTICES || sizeBefore > MAX_VERTICES) {
    ThrowErrorImpl(UNIT, __LINE__, L"The polygons have too many vertices to be clipped.");
  }
}

/// Appends the contours of an operand. Where `area` is not null, only their course in there counts.
void LoadPolygon(Input& input, const Operand& source, Operands operand, const Box* area) {
  const Index firstPolygon = input.polygonCount;
  for (std::size_t i = 0; i < source.contours.size(); ++i) {
    const GpcContour& contour = source.contours[i];
    if (contour.vertexCount < 3) continue;
    const auto size = static_cast<Index>(contour.vertexCount);
    const Index first = input.points.Size();
    CheckSize(size, first);
    Vec2d* to = input.points.Extend(size + 1);
    Index count;
    if (area == nullptr) {
      count = CopyDistinct(contour.vertices, size, to);
    } else {
      count = CopyDistinct(to, CopyNear(contour.vertices, size, *area, to), to);
    }
    input.points.Truncate(first + (count < 3 ? 0 : count + 1));
    if (count < 3) continue;
    to[count] = to[0];
    Index polygon = 0;
    if (input.rule == Rule::Polygons || input.rule == Rule::Nests) {
      polygon = firstPolygon + source.polygons[i];
      input.polygonCount = std::max(input.polygonCount, polygon + 1);
    }
    input.contours.Append({first, count, first, polygon, operand});
  }
}

void AppendLine(Input& input, const GpcContour& line, Index number) {
  const auto size = static_cast<Index>(line.vertexCount);
  const Index first = input.points.Size();
  CheckSize(size, first);
  const Index count = CopyDistinct(line.vertices, size, input.points.Extend(size), true);
  input.points.Truncate(first + (count < LINE_SIZE ? 0 : count));
  if (count >= LINE_SIZE) input.contours.Append({first, count - 1, first, number, LINE});
}

/// Leaves out points that repeat the one before, and contours of which too little is left.
void DropRepeatedPoints(Input& input) {
  Index to = 0;
  Index kept = 0;
  for (const Contour& contour : input.contours) {
    const bool isLine = contour.IsLine();
    Vec2d* first = input.points.Data() + to;
    const Index count = CopyDistinct(input.points.Data() + contour.first,
                                     contour.count + (isLine ? 1 : 0), first, isLine);
    if (count < static_cast<Index>(isLine ? LINE_SIZE : CONTOUR_SIZE)) continue;
    if (!isLine) first[count] = first[0];
    const Index edges = isLine ? count - 1 : count;
    input.contours[kept++] = {to, edges, to, contour.polygon, contour.operand};
    to += edges + 1;
  }
  input.points.Truncate(to);
  input.contours.Truncate(kept);
}

/// Brings coordinates near the ends of the range of numbers to the middle.
double Rescale(Input& input, double largest) {
  const int exponent = largest > 0.0 ? std::ilogb(largest) : 0;
  if (exponent <= MAX_EXPONENT && exponent >= -MAX_EXPONENT) return largest;
  for (Vec2d& point : input.points) {
    point.x = std::ldexp(point.x, -exponent);
    point.y = std::ldexp(point.y, -exponent);
  }
  input.unscale = std::ldexp(1.0, exponent);
  DropRepeatedPoints(input);  // tiny differences may have vanished
  return std::ldexp(largest, -exponent);
}

Box Widen(const Box& box, double margin) {
  return {box.xMin - margin, box.yMin - margin, box.xMax + margin, box.yMax + margin};
}

void Begin(Rule rule, Input& input) {
  input.rule = rule;
  input.polygonCount = 0;
  input.Clear();
  input.unscale = 1.0;
}

void CheckFinite(const Extent& extent, const wchar_t* fault) {
  if (!(extent.sum == 0.0)) ThrowErrorImpl(UNIT, __LINE__, fault);
}

void SetScale(Input& input, double largest) {
  input.largest = Rescale(input, largest);
  input.tolerance = GPC_SNAP * input.largest;
}

constexpr const wchar_t* BAD_POLYGON =
    L"A polygon with infinite or undefined coordinates cannot be clipped.";
constexpr const wchar_t* BAD_LINE =
    L"A line with infinite or undefined coordinates cannot be clipped.";

}  // namespace

void LoadPolygons(gpc_op operation, Rule rule, const Operand& subject, const Operand& clip,
                  Input& input) {
  Begin(rule, input);
  const Extent subjectExtent = Measure(subject.contours, CONTOUR_SIZE);
  const Extent clipExtent = Measure(clip.contours, CONTOUR_SIZE);
  CheckFinite(subjectExtent, BAD_POLYGON);
  CheckFinite(clipExtent, BAD_POLYGON);
  const double largest = std::max(subjectExtent.Largest(), clipExtent.Largest());
  const Box subjectArea = Widen(subjectExtent.box, MARGIN * largest);
  const Box clipArea = Widen(clipExtent.box, MARGIN * largest);
  const bool isIntersection = operation == GPC_INTERSECTION;
  const bool isDifference = operation == GPC_DIFFERENCE;
  LoadPolygon(input, subject, SUBJECT, isIntersection ? &clipArea : nullptr);
  LoadPolygon(input, clip, CLIP, isIntersection || isDifference ? &subjectArea : nullptr);
  SetScale(input, largest);
}

void LoadLines(Rule rule, const Operand& area, std::span<const GpcContour> lines, Input& input) {
  Begin(rule, input);
  const Extent areaExtent = Measure(area.contours, CONTOUR_SIZE);
  const Extent lineExtent = Measure(lines, LINE_SIZE);
  CheckFinite(areaExtent, BAD_POLYGON);
  CheckFinite(lineExtent, BAD_LINE);
  const double largest = std::max(areaExtent.Largest(), lineExtent.Largest());
  const Box near = Widen(lineExtent.box, MARGIN * largest);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].vertexCount >= LINE_SIZE) AppendLine(input, lines[i], static_cast<Index>(i));
  }
  LoadPolygon(input, area, SUBJECT, &near);
  SetScale(input, largest);
}

}  // namespace shr::gpc
