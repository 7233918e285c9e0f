// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Containment is decided by the winding number of each ring around the point: edges that cross the
// horizontal line through the point upward count +1 when the point lies to their left, downward
// edges -1 when it lies to their right. Half-open edges make a vertex on the line count once. Edges
// that do not reach the line, nearly all, cost one comparison; the side of the others is decided
// exactly, so that a point on an edge is seen as such (M. Shimrat, "Algorithm 112: Position of
// Point Relative to Polygon", 1962; K. Hormann and A. Agathos, "The Point in Polygon Problem for
// Arbitrary Polygons", 2001).

#include "shared/polygons/GPolygon2d.h"

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/FlatOutput.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2dModel.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/PolygonMeasures.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon2d";
constexpr std::size_t MIN_RING_SIZE = 4;

enum class Location { Outside, Boundary, Inside };

GPolygon2dModel MakeModel(const Vec2d* points, const unsigned int* counts,
                          std::size_t numContours) {
  GPolygon2dModel model;
  const std::size_t total = SumOfCounts(CheckedSpan(counts, numContours, UNIT));
  model.points.reserve(total + numContours);
  model.ringEnds.reserve(numContours);
  model.polygons.reserve(numContours);
  ForEachContour(points, counts, numContours, UNIT,
                 [&](std::span<const Vec2d> contour) { model.AddOuterRing(contour); });
  return model;
}

GPolygon2dModel MakeModel(std::span<const Vec2d> contour) {
  GPolygon2dModel model;
  model.points.reserve(contour.size() + 1);
  model.AddOuterRing(contour);
  return model;
}

GPolygon2dModel MakeModel(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  return MakeModel(points.data(), counts.data(), counts.size());
}

bool IsBetween(double value, double a, double b) {
  return (a <= value && value <= b) || (b <= value && value <= a);
}

/// How an edge that reaches the height of a point passes it.
struct Passage {
  bool touches;
  int winding;
};

Passage PassEdge(const Vec2d& from, const Vec2d& to, const Vec2d& point) {
  if (from.y == to.y) return {IsBetween(point.x, from.x, to.x), 0};
  const int side = OrientationSign(from, to, point);
  if (side == 0) return {true, 0};
  const bool fromIsBelow = from.y <= point.y;
  const bool toIsBelow = to.y <= point.y;
  if (fromIsBelow && !toIsBelow) return {false, side > 0 ? 1 : 0};
  if (!fromIsBelow && toIsBelow) return {false, side < 0 ? -1 : 0};
  return {false, 0};
}

/// Returns the index of the first vertex after `first` that does not lie on the same side of the
/// line y, above or below it, as that one. A vertex on the line is a run of its own.
std::size_t EndOfRun(std::span<const Vec2d> ring, std::size_t first, double y) {
  std::size_t end = first + 1;
  if (ring[first].y > y) {
    while (end < ring.size() && ring[end].y > y) ++end;
  } else if (ring[first].y < y) {
    while (end < ring.size() && ring[end].y < y) ++end;
  }
  return end;
}

Location LocateInRing(std::span<const Vec2d> ring, const Vec2d& point) {
  if (ring.size() < MIN_RING_SIZE) return Location::Outside;
  int winding = 0;
  std::size_t from = ring.size() - 1;
  for (std::size_t to = 0; to < ring.size(); from = to - 1) {
    if (IsBetween(point.y, ring[from].y, ring[to].y)) {
      const Passage passage = PassEdge(ring[from], ring[to], point);
      if (passage.touches) return Location::Boundary;
      winding += passage.winding;
    }
    to = EndOfRun(ring, to, point.y);
  }
  return winding != 0 ? Location::Inside : Location::Outside;
}

Location LocateInPolygon(const GPolygon2dModel& model, std::size_t polygon, const Vec2d& point) {
  std::size_t ring = model.FirstRing(polygon);
  const Location inOuter = LocateInRing(model.Ring(ring), point);
  if (inOuter != Location::Inside) return inOuter;
  for (++ring; ring < model.polygons[polygon].endRing; ++ring) {
    switch (LocateInRing(model.Ring(ring), point)) {
      case Location::Inside:
        return Location::Outside;
      case Location::Boundary:
        return Location::Boundary;
      case Location::Outside:
        break;
    }
  }
  return Location::Inside;
}

bool IsCorner(const Vec2d& point, const Box2d& box) {
  return (point.x == box.xMin() || point.x == box.xMax()) &&
         (point.y == box.yMin() || point.y == box.yMax());
}

std::size_t CountEmitted(const GPolygon2dModel& model, bool closed) {
  if (closed) return model.points.size();
  std::size_t total = 0;
  for (std::size_t ring = 0; ring < model.ringEnds.size(); ++ring) {
    total += EmittedSize(model.Ring(ring).size(), closed);
  }
  return total;
}

template <class Point>
std::size_t StoreRings(const GPolygon2dModel& model, Point* points, unsigned int* counts,
                       bool closed) {
  if (points == nullptr) return CountEmitted(model, closed);
  Point* end = points;
  for (std::size_t ring = 0; ring < model.ringEnds.size(); ++ring) {
    const std::span<const Vec2d> source = model.Ring(ring);
    const std::size_t size = EmittedSize(source.size(), closed);
    end = CopyPoints(source.first(size), end);
    if (counts != nullptr) counts[ring] = static_cast<unsigned int>(size);
  }
  return static_cast<std::size_t>(end - points);
}

template <class Point>
std::size_t StoreJoined(const GPolygon2dModel& model, Point* points) {
  RingJoiner<Point> joiner(points);
  for (std::size_t ring = 0; ring < model.ringEnds.size(); ++ring) joiner.Add(model.Ring(ring));
  return joiner.Size();
}

Polygon2d PolygonOf(const GPolygon2dModel& model, std::size_t polygon) {
  const auto ringOf = [&model](std::size_t ring) {
    const std::span<const Vec2d> points = model.Ring(ring);
    return Ring2d(points.begin(), points.end());
  };
  Polygon2d result;
  std::size_t ring = model.FirstRing(polygon);
  result.outer() = ringOf(ring);
  for (++ring; ring < model.polygons[polygon].endRing; ++ring) {
    result.inners().push_back(ringOf(ring));
  }
  return result;
}

}  // namespace

GPolygon2d::GPolygon2d() noexcept = default;

GPolygon2d::GPolygon2d(GPolygon2dModel&& model) {
  if (!model.polygons.empty()) model_ = new GPolygon2dModel(std::move(model));
}

GPolygon2d::GPolygon2d(const Vec2d* points, std::size_t count)
    : GPolygon2d(MakeModel(CheckedSpan(points, count, UNIT))) {}

GPolygon2d::GPolygon2d(const POINT* points, std::size_t count)
    : GPolygon2d(MakeModel(ToVec2d(CheckedSpan(points, count, UNIT)))) {}

GPolygon2d::GPolygon2d(std::span<const Vec2d> points) : GPolygon2d(MakeModel(points)) {}

GPolygon2d::GPolygon2d(const Vec2d* points, const unsigned int* counts, std::size_t numContours)
    : GPolygon2d(MakeModel(points, counts, numContours)) {}

GPolygon2d::GPolygon2d(const POINT* points, const unsigned int* counts, std::size_t numContours) {
  const std::span<const unsigned int> sizes = CheckedSpan(counts, numContours, UNIT);
  *this = GPolygon2d(ToVec2d(CheckedSpan(points, SumOfCounts(sizes), UNIT)), sizes);
}

GPolygon2d::GPolygon2d(std::span<const Vec2d> points, std::span<const unsigned int> counts)
    : GPolygon2d(MakeModel(points, counts)) {}

GPolygon2d::GPolygon2d(double xMin, double yMin, double xMax, double yMax) {
  const Vec2d corners[] = {{xMin, yMin}, {xMin, yMax}, {xMax, yMax}, {xMax, yMin}};
  *this = GPolygon2d(MakeModel(corners));
}

GPolygon2d::GPolygon2d(const RECT& rectangle)
    : GPolygon2d(static_cast<double>(std::min(rectangle.left, rectangle.right)),
                 static_cast<double>(std::min(rectangle.top, rectangle.bottom)),
                 static_cast<double>(std::max(rectangle.left, rectangle.right)),
                 static_cast<double>(std::max(rectangle.top, rectangle.bottom))) {}

GPolygon2d::GPolygon2d(const MultiPolygon2d& polygons) {
  GPolygon2dModel model;
  for (const Polygon2d& polygon : polygons) {
    model.AddOuterRing(polygon.outer());
    for (const Ring2d& inner : polygon.inners()) model.AddInnerRing(inner);
  }
  *this = GPolygon2d(std::move(model));
}

GPolygon2d::GPolygon2d(const GPolygon& contours) {
  GPolygon2dModel model;
  for (const GpcContour& contour : ContoursOf(contours.GetRecord())) {
    model.AddOuterRing(VerticesOf(contour));
  }
  *this = GPolygon2d(std::move(model));
}

GPolygon2d::GPolygon2d(const GPolygon2d& other)
    : model_(other.model_ != nullptr ? new GPolygon2dModel(*other.model_) : nullptr) {}

GPolygon2d& GPolygon2d::operator=(const GPolygon2d& other) {
  return *this = GPolygon2d(other);
}

GPolygon2d::GPolygon2d(GPolygon2d&& other) noexcept
    : model_(std::exchange(other.model_, nullptr)) {}

GPolygon2d& GPolygon2d::operator=(GPolygon2d&& other) noexcept {
  GPolygon2d taken(std::move(other));
  std::swap(model_, taken.model_);
  return *this;
}

GPolygon2d::~GPolygon2d() {
  delete model_;
}

const GPolygon2dModel& GPolygon2d::Model() const noexcept {
  static const GPolygon2dModel EMPTY;
  return model_ != nullptr ? *model_ : EMPTY;
}

void GPolygon2d::MakeEmpty() noexcept {
  *this = GPolygon2d();
}

void GPolygon2d::AddContours(const Vec2d* points, const unsigned int* counts,
                             std::size_t numContours) {
  AddContours(GPolygon2d(points, counts, numContours));
}

void GPolygon2d::AddContours(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  AddContours(GPolygon2d(points, counts));
}

void GPolygon2d::AddContours(const GPolygon2d& other) {
  if (model_ == nullptr) {
    *this = other;
  } else if (&other == this) {
    model_->Append(GPolygon2dModel(*model_));
  } else {
    model_->Append(other.Model());
  }
}

std::size_t GPolygon2d::GetNumContours() const noexcept {
  return Model().polygons.size();
}

std::size_t GPolygon2d::GetNumRings() const noexcept {
  return Model().ringEnds.size();
}

std::size_t GPolygon2d::GetContourVertexCount(std::size_t index) const {
  if (index >= GetNumContours()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return Model().PointsOf(index).size();
}

std::size_t GPolygon2d::GetTotalVertexCount() const noexcept {
  return Model().points.size();
}

Box2d GPolygon2d::GetBBox() const noexcept {
  return Model().box;
}

bool GPolygon2d::IsRectangle(Box2d* bounds) const {
  const GPolygon2dModel& model = Model();
  if (model.polygons.size() != 1 || model.ringEnds.size() != 1 || model.points.size() != 5) {
    return false;
  }
  for (std::size_t i = 0; i < 5; ++i) {
    if (!IsCorner(model.points[i], model.box)) return false;
    if (i == 0) continue;
    const bool movesInX = model.points[i].x != model.points[i - 1].x;
    const bool movesInY = model.points[i].y != model.points[i - 1].y;
    if (movesInX == movesInY) return false;
  }
  if (model.points[0] == model.points[2]) return false;
  if (bounds != nullptr) *bounds = model.box;
  return true;
}

bool GPolygon2d::PointInside(const Vec2d& point) const {
  const GPolygon2dModel& model = Model();
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    const GPolygon2dModel::Polygon& candidate = model.polygons[polygon];
    if (!candidate.isFinite || !candidate.box.Contains(point)) continue;
    const Location location = LocateInPolygon(model, polygon, point);
    if (location != Location::Outside) return location == Location::Inside;
  }
  return false;
}

void GPolygon2d::GetMultiPolygon(MultiPolygon2d& polygons) const {
  MultiPolygon2d result;
  result.reserve(GetNumContours());
  for (std::size_t i = 0; i < GetNumContours(); ++i) result.push_back(PolygonOf(Model(), i));
  polygons = std::move(result);
}

std::size_t GPolygon2d::GetPolyPolygon(Vec2d* points, unsigned int* counts, bool closed) const {
  return StoreRings(Model(), points, counts, closed);
}

std::size_t GPolygon2d::GetPolyPolygon(POINT* points, unsigned int* counts, bool closed) const {
  return StoreRings(Model(), points, counts, closed);
}

std::size_t GPolygon2d::GetPolyPolygon(std::vector<Vec2d>& points,
                                       std::vector<unsigned int>& counts, bool closed) const {
  const GPolygon2dModel& model = Model();
  counts.resize(model.ringEnds.size());
  for (std::size_t ring = 0; ring < counts.size(); ++ring) {
    counts[ring] = static_cast<unsigned int>(EmittedSize(model.Ring(ring).size(), closed));
  }
  if (closed) {
    points = model.points;
    return points.size();
  }
  points.clear();
  points.reserve(model.points.size());
  for (std::size_t ring = 0; ring < counts.size(); ++ring) {
    const std::span<const Vec2d> emitted = model.Ring(ring).first(counts[ring]);
    points.insert(points.end(), emitted.begin(), emitted.end());
  }
  return points.size();
}

std::size_t GPolygon2d::GetPolyPolygon(std::vector<POINT>& points,
                                       std::vector<unsigned int>& counts, bool closed) const {
  points.resize(CountEmitted(Model(), closed));
  counts.resize(Model().ringEnds.size());
  POINT none;
  return StoreRings(Model(), points.empty() ? &none : points.data(), counts.data(), closed);
}

std::size_t GPolygon2d::GetPolygon(Vec2d* points) const {
  return StoreJoined(Model(), points);
}

std::size_t GPolygon2d::GetPolygon(POINT* points) const {
  return StoreJoined(Model(), points);
}

std::size_t GPolygon2d::GetPolygon(std::vector<Vec2d>& points) const {
  points.resize(GetPolygon(static_cast<Vec2d*>(nullptr)));
  return points.empty() ? 0 : GetPolygon(points.data());
}

std::size_t GPolygon2d::GetLegacyMultiPolygonAsSinglePolygon(Vec2d* points) const {
  return GetPolygon(points);
}

std::size_t GPolygon2d::GetLegacyMultiPolygonAsSinglePolygon(POINT* points) const {
  return GetPolygon(points);
}

void GPolygon2d::Intersection(const Box2d& box) {
  Intersection(box, *this);
}

void GPolygon2d::Intersection(const Box2d& box, GPolygon2d& result) const {
  const bool hasArea = box.xMin() < box.xMax() && box.yMin() < box.yMax();
  result = hasArea ? GPolygon2d(ClipToBox(Model(), box)) : GPolygon2d();
}

void GPolygon2d::Intersection(const GPolygon2d& other) {
  Intersection(other, *this);
}

void GPolygon2d::Intersection(const GPolygon2d& other, GPolygon2d& result) const {
  result = GPolygon2d(Combine(Model(), other.Model(), GPC_INTERSECTION));
}

void GPolygon2d::Union(const GPolygon2d& other) {
  Union(other, *this);
}

void GPolygon2d::Union(const GPolygon2d& other, GPolygon2d& result) const {
  result = GPolygon2d(Combine(Model(), other.Model(), GPC_UNION));
}

void GPolygon2d::Difference(const GPolygon2d& other) {
  Difference(other, *this);
}

void GPolygon2d::Difference(const GPolygon2d& other, GPolygon2d& result) const {
  result = GPolygon2d(Combine(Model(), other.Model(), GPC_DIFFERENCE));
}

void GPolygon2d::XOR(const GPolygon2d& other) {
  XOR(other, *this);
}

void GPolygon2d::XOR(const GPolygon2d& other, GPolygon2d& result) const {
  result = GPolygon2d(Combine(Model(), other.Model(), GPC_XOR));
}

void GPolygon2d::Offset(double distance, const OffsetOptions& options) {
  Offset(distance, options, *this);
}

void GPolygon2d::Offset(double distance, const OffsetOptions& options, GPolygon2d& result) const {
  result = GPolygon2d(OffsetModel(Model(), distance, options));
}

void GPolygon2d::RemoveZeroWidthReturnPaths() {
  Intersection(GetBBox());
}

GPolygon2d GPolygon2d::Unite(std::span<const GPolygon2d> polygons) {
  std::vector<const GPolygon2dModel*> models;
  models.reserve(polygons.size());
  for (const GPolygon2d& polygon : polygons) models.push_back(&polygon.Model());
  return GPolygon2d(UniteModels(models));
}

bool GPolygonContains(const GPolygon2d& a, const GPolygon2d& b) {
  GPolygon2d outside;
  b.Difference(a, outside);
  MultiPolygon2d polygons;
  outside.GetMultiPolygon(polygons);
  return HasOnlySlivers(polygons, a.GetBBox(), b.GetBBox());
}

bool GPolygonContains(const GPolygon2d& a, const Vec2d* points, const unsigned int* counts,
                      std::size_t numContours) {
  return GPolygonContains(a, GPolygon2d(points, counts, numContours));
}

bool GPolygonContains(const GPolygon2d& a, std::span<const Vec2d> points,
                      std::span<const unsigned int> counts) {
  return GPolygonContains(a, GPolygon2d(points, counts));
}

}  // namespace shr
