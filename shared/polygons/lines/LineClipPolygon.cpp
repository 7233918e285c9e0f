// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A segment is cut at every crossing with the contours, and the midpoint of each part decides
// whether it is inside; so a vertex that is touched or passed needs no rule of its own, and a
// rounding error in one crossing cannot turn the inside of all that follows.
//
// The grid of ContourGrid.h says which edges a segment can meet. Where it passes only cells without
// edges their state decides at once. Otherwise the edges of the cells are candidates; one that is
// listed in several cells yields the same crossing several times, which makes parts without length
// that are dropped.

#include "shared/polygons/lines/LineClipPolygon.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "shared/polygons/ContourGrid.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"LineClipPolygon";

/// Segments longer than this meet every edge; beyond, the arithmetic of the grid could overflow.
constexpr double LONGEST_WALK = 1e100;

/// Returns twice the signed area of a triangle, positive when it turns left.
double Turn(const Vec2d& a, const Vec2d& b, const Vec2d& c) {
  return (b - a).Cross(c - a);
}

bool CanTouch(const ContourEdge& edge, const Box2d& box) {
  return (edge.from.x >= box.xMin() || edge.to.x >= box.xMin()) &&
         (edge.from.x <= box.xMax() || edge.to.x <= box.xMax()) &&
         (edge.from.y >= box.yMin() || edge.to.y >= box.yMin()) &&
         (edge.from.y <= box.yMax() || edge.to.y <= box.yMax());
}

/// Returns the state of all cells around a box of up to two rows and columns when those have no
/// edges; of larger boxes nothing is known. Most short segments are done with that.
ContourGrid::CellState StateAround(const ContourGrid& grid, const Box2d& box) {
  const auto [rows, columns] = grid.CellsAround(box);
  if (rows.last - rows.first > 1 || columns.last - columns.first > 1) {
    return ContourGrid::CellState::HAS_EDGES;
  }
  return std::max({grid.State(rows.first, columns.first), grid.State(rows.first, columns.last),
                   grid.State(rows.last, columns.first), grid.State(rows.last, columns.last)});
}

bool IsOn(const ContourEdge& edge, const Vec2d& point) {
  return CanTouch(edge, Box2d(point, point)) && Turn(edge.from, edge.to, point) == 0.0;
}

}  // namespace

GLineClipPolygon::GLineClipPolygon() {
  contours_bbox();
}

GLineClipPolygon::GLineClipPolygon(std::span<const Vec2d> points,
                                   std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  for (const unsigned int count : counts) {
    def_contour(points.first(count));
    points = points.subspan(count);
  }
  contours_bbox();
}

GLineClipPolygon::GLineClipPolygon(const Vec2d* points, const unsigned int* counts,
                                   std::size_t numContours)
    : GLineClipPolygon(
          CheckedSpan(points, SumOfCounts(CheckedSpan(counts, numContours, UNIT)), UNIT),
          std::span(counts, numContours)) {}

GLineClipPolygon::GLineClipPolygon(const GPolygon& polygon) {
  for (std::size_t i = 0; i < polygon.GetNumContours(); ++i) def_contour(polygon.GetContour(i));
  contours_bbox();
}

GLineClipPolygon::GLineClipPolygon(const GLineClipPolygon& other) = default;
GLineClipPolygon& GLineClipPolygon::operator=(const GLineClipPolygon& other) = default;
GLineClipPolygon::~GLineClipPolygon() = default;

std::size_t GLineClipPolygon::GetContourVertexCount(std::size_t index) const {
  if (index >= contours_.size()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return contours_[index].vertices.size();
}

std::size_t GLineClipPolygon::GetTotalVertexCount() const {
  std::size_t count = 0;
  for (const CONTOUR& contour : contours_) count += contour.vertices.size();
  return count;
}

void GLineClipPolygon::GetPolygon(std::vector<Vec2d>& points) const {
  points.clear();
  for (const CONTOUR& contour : contours_) {
    for (const VERTEX& vertex : contour.vertices) points.emplace_back(vertex.x, vertex.y);
  }
}

bool GLineClipPolygon::IsRectangle(Box2d* box) const {
  if (contours_.size() != 1 || contours_[0].vertices.size() != 4) return false;
  const std::vector<VERTEX>& v = contours_[0].vertices;
  const bool isRectangle =
      v[1].y == v[0].y && v[3].y == v[2].y && v[2].x == v[1].x && v[3].x == v[0].x;
  if (isRectangle && box != nullptr) *box = bbox_;
  return isRectangle;
}

bool GLineClipPolygon::PointInside(const Vec2d& point) const {
  if (!bbox_.Contains(point)) return false;
  struct Search {
    double x;
    bool isFound;
  } search{point.x, false};
  const SEGMENT line(Vec2d(bbox_.xMin() - 1.0, point.y), point);
  clip_to_contours(
      line,
      [](const Vec2d& begin, const Vec2d& end, void* user) {
        Search& s = *static_cast<Search*>(user);
        s.isFound |= begin.x == s.x || end.x == s.x;
      },
      &search);
  return search.isFound;
}

std::size_t GLineClipPolygon::Clip(const GLine2& line, std::vector<GLine2>& pieces) const {
  const Vec2d points[] = {line.GetBegin(), line.GetEnd()};
  return Clip(points, 2, pieces);
}

std::size_t GLineClipPolygon::Clip(const GPolyline& polyline, std::vector<GLine2>& pieces) const {
  return Clip(polyline.data(), polyline.size(), pieces);
}

std::size_t GLineClipPolygon::Clip(const Vec2d* points, std::size_t count,
                                   std::vector<GLine2>& pieces) const {
  const std::size_t sizeBefore = pieces.size();
  ClipSegments(CheckedSpan(points, count, UNIT),
               [&](const Vec2d& begin, const Vec2d& end) { pieces.emplace_back(begin, end); });
  return pieces.size() - sizeBefore;
}

std::size_t GLineClipPolygon::Clip(std::span<const Vec2d> points, std::vector<Vec2d>& pointsOut,
                                   std::vector<unsigned int>& countsOut) const {
  const std::size_t sizeBefore = countsOut.size();
  const auto addPiece = [&](std::span<const Vec2d> piece) {
    pointsOut.insert(pointsOut.end(), piece.begin(), piece.end());
    countsOut.push_back(static_cast<unsigned int>(piece.size()));
  };
  if (points.size() == 1 && p_inside(points[0])) addPiece(points);
  ClipSegments(points, [&](const Vec2d& begin, const Vec2d& end) {
    if (countsOut.size() > sizeBefore && pointsOut.back() == begin) {
      pointsOut.push_back(end);
      ++countsOut.back();
    } else {
      const Vec2d piece[] = {begin, end};
      addPiece(piece);
    }
  });
  return countsOut.size() - sizeBefore;
}

std::size_t GLineClipPolygon::Clip(const Vec2d* points, std::size_t count,
                                   std::vector<Vec2d>& pointsOut,
                                   std::vector<unsigned int>& countsOut) const {
  return Clip(CheckedSpan(points, count, UNIT), pointsOut, countsOut);
}

/// Calls the function with every piece of every segment.
template <class Function>
void GLineClipPolygon::ClipSegments(std::span<const Vec2d> points, Function function) const {
  const PIECE_CALLBACK callback = [](const Vec2d& begin, const Vec2d& end, void* user) {
    (*static_cast<Function*>(user))(begin, end);
  };
  for (std::size_t i = 1; i < points.size(); ++i) {
    clip_to_contours(SEGMENT(points[i - 1], points[i]), callback, &function);
  }
}

void GLineClipPolygon::def_contour(std::span<const Vec2d> points) {
  if (points.size() > 1 && points.front() == points.back())
    points = points.first(points.size() - 1);
  CONTOUR contour;
  contour.vertices.reserve(points.size());
  for (const Vec2d& point : points) {
    contour.vertices.push_back({point.x, point.y, contour.vertices.size() + 1});
  }
  if (!contour.vertices.empty()) contour.vertices.back().next = 0;
  contours_.push_back(std::move(contour));
}

void GLineClipPolygon::del_contours() {
  contours_.clear();
  contours_bbox();
}

void GLineClipPolygon::contours_bbox() {
  std::vector<ContourEdge> edges;
  edges.reserve(GetTotalVertexCount());
  for (const CONTOUR& contour : contours_) {
    for (const VERTEX& from : contour.vertices) {
      const VERTEX& to = contour.vertices[from.next];
      edges.push_back({Vec2d(from.x, from.y), Vec2d(to.x, to.y)});
    }
  }
  grid_ =
      std::make_shared<const ContourGrid>(std::move(edges), ContourGrid::Lists::OF_ROWS_AND_CELLS);
  bbox_ = grid_->Bounds();
}

int GLineClipPolygon::p_where(const SEGMENT& segment, const Vec2d& point) {
  const double turn = Turn(segment.begin, segment.end, point);
  return (turn > 0.0) - (turn < 0.0);
}

void GLineClipPolygon::cross_calc(const SEGMENT& segment, const Vec2d& from, const Vec2d& to,
                                  CROSSINGS& crossings) {
  const Vec2d direction = segment.end - segment.begin;
  const int toSide = p_where(segment, to);
  if (toSide == 0) {
    const double t = direction.Dot(to - segment.begin) / direction.Dot(direction);
    if (t >= 0.0 && t <= 1.0) crossings.push_back({t, to, KIND::TOUCH});
    return;
  }
  if (p_where(segment, from) != -toSide) return;
  const double begin = Turn(from, to, segment.begin);
  const double end = Turn(from, to, segment.end);
  const double t = begin / (begin - end);  // NaN where the segment lies on the edge
  if (!(t >= 0.0 && t <= 1.0)) return;
  crossings.push_back({t, segment.begin + direction * t, KIND::CROSSING});
}

bool GLineClipPolygon::on_contour(const Vec2d& point) const {
  const std::span<const ContourEdge> edges = grid_->Edges();
  if (!grid_->HasCells()) {
    return std::any_of(edges.begin(), edges.end(),
                       [&](const ContourEdge& edge) { return IsOn(edge, point); });
  }
  const auto nearby = grid_->EdgesIn(grid_->RowOf(point.y), grid_->ColumnOf(point.x));
  return std::any_of(nearby.begin(), nearby.end(),
                     [&](std::uint32_t edge) { return IsOn(edges[edge], point); });
}

bool GLineClipPolygon::p_inside(const Vec2d& point) const {
  return grid_->IsInside(point) && !on_contour(point);
}

void GLineClipPolygon::clip_to_contours(const SEGMENT& segment, PIECE_CALLBACK callback,
                                        void* user) const {
  if (disjunct(segment.box, bbox_)) return;
  if (!segment.begin.IsFinite() || !segment.end.IsFinite()) return;
  CROSSINGS crossings;
  const Surroundings surroundings = FindCrossings(segment, crossings);
  if (surroundings == Surroundings::OUTSIDE) return;
  if (surroundings == Surroundings::INSIDE) return callback(segment.begin, segment.end, user);
  std::sort(crossings.begin(), crossings.end(), [](const CLIST& a, const CLIST& b) {
    return std::tie(a.parameter, a.point.x, a.point.y) <
           std::tie(b.parameter, b.point.x, b.point.y);
  });
  CutAt(crossings, segment, callback, user);
}

/// Adds the crossings with all edges near the segment; says where it is when there are none.
GLineClipPolygon::Surroundings GLineClipPolygon::FindCrossings(const SEGMENT& segment,
                                                               CROSSINGS& crossings) const {
  const std::span<const ContourEdge> edges = grid_->Edges();
  const auto meet = [&](const ContourEdge& edge) {
    if (CanTouch(edge, segment.box)) cross_calc(segment, edge.from, edge.to, crossings);
  };
  if (!grid_->HasCells() || segment.box.xRange() > LONGEST_WALK ||
      segment.box.yRange() > LONGEST_WALK) {
    for (const ContourEdge& edge : edges) meet(edge);
    return Surroundings::WITH_EDGES;
  }
  using State = ContourGrid::CellState;
  State state = StateAround(*grid_, segment.box);
  bool hasEdges = false;
  if (state != State::HAS_EDGES) {
    return state == State::INSIDE ? Surroundings::INSIDE : Surroundings::OUTSIDE;
  }
  const ContourGrid::Walk walk = grid_->WalkAlong(segment.begin, segment.end);
  for (std::uint32_t row = walk.rows.first; row <= walk.rows.last; ++row) {
    const ContourGrid::Range columns = grid_->ColumnsOf(walk, row);
    for (std::uint32_t column = columns.first; column <= columns.last; ++column) {
      state = grid_->State(row, column);
      if (state != State::HAS_EDGES) continue;
      hasEdges = true;
      for (const std::uint32_t edge : grid_->EdgesIn(row, column)) meet(edges[edge]);
    }
  }
  if (hasEdges) return Surroundings::WITH_EDGES;
  return state == State::INSIDE ? Surroundings::INSIDE : Surroundings::OUTSIDE;
}

/// Passes on the parts between sorted crossings whose midpoint is inside. Parts that meet are one
/// piece; so are those between which rounding leaves no room.
void GLineClipPolygon::CutAt(const CROSSINGS& crossings, const SEGMENT& segment,
                             PIECE_CALLBACK callback, void* user) const {
  const Vec2d direction = segment.end - segment.begin;
  CLIST from{0.0, segment.begin, KIND::TOUCH};
  Vec2d begin;
  CLIST end{-1.0, segment.begin, KIND::TOUCH};  // of the piece that is open, if not negative
  const auto goTo = [&](const CLIST& to) {
    const Vec2d middle = segment.begin + direction * ((from.parameter + to.parameter) / 2.0);
    if (to.parameter > from.parameter && p_inside(middle)) {
      const bool isOpen = end.parameter >= 0.0;
      if (!isOpen || (end.parameter < from.parameter && !(end.point == from.point))) {
        if (isOpen) callback(begin, end.point, user);
        begin = from.point;
      }
      end = to;
    }
    from = to;
  };
  for (const CLIST& crossing : crossings) goTo(crossing);
  goTo({1.0, segment.end, KIND::TOUCH});
  if (end.parameter >= 0.0) callback(begin, end.parameter < 1.0 ? end.point : segment.end, user);
}

}  // namespace shr
