// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A vertical line sweeps the plane from left to right, points of one x from below to above, and
// stops at every vertex. The edges that meet it are kept in their order from below to above. As
// long as no two edges cross between their ends, that order changes at vertices only, and two edges
// that do cross are neighbours in it before (M. I. Shamos and D. Hoey, "Geometric Intersection
// Problems", 1976). So all that is compared are vertices of the input with edges of the input,
// exactly.
//
// Vertices may lie on edges and on each other. At a stop all edges through its point stand next to
// each other in the order. Their ends are brought into cyclic order round the point; each passage
// of a ring has two of them. Passages do not cross if they nest like brackets, edges overlap if two
// ends on the right have one direction, and a ring meets itself if it has two passages.
//
// What lies next below the leftmost vertex of a ring tells the ring around it. The first fault ends
// the sweep, so at most one edge goes through a stop, and the work is a few steps in the order for
// each vertex, however many edges lie close together.

#include "shared/polygons/RingSweep.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>

#include "shared/geometry/Orientation.h"

namespace shr {
namespace {

bool IsBefore(const Vec2d& a, const Vec2d& b) {
  return a.x < b.x || (a.x == b.x && a.y < b.y);
}

/// Returns a point times 2^exponent.
Vec2d Scaled(const Vec2d& point, int exponent) {
  return {std::ldexp(point.x, exponent), std::ldexp(point.y, exponent)};
}

/// Returns where the segments a to b and c to d cross, rounded, for coordinates of any size.
Vec2d CrossingPoint(const Vec2d& a, const Vec2d& b, const Vec2d& c, const Vec2d& d) {
  double largest = 0.0;
  for (const Vec2d& point : {a, b, c, d}) {
    largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
  }
  const int exponent = -std::ilogb(largest) - 2;
  const Vec2d origin = Scaled(c, exponent);
  const Vec2d direction = Scaled(d, exponent) - origin;
  const double before = std::abs(direction.Cross(Scaled(a, exponent) - origin));
  const double behind = std::abs(direction.Cross(Scaled(b, exponent) - origin));
  const double t = before + behind > 0.0 ? before / (before + behind) : 0.5;
  const Vec2d point = a * (1.0 - t) + b * t;
  const auto clamped = [](double value, double p, double q) {
    return std::clamp(value, std::min(p, q), std::max(p, q));
  };
  return {clamped(point.x, a.x, b.x), clamped(point.y, a.y, b.y)};
}

}  // namespace

bool RingSweep::Below::operator()(std::size_t a, std::size_t b) const {
  if (a == b) return false;
  const Edge& first = (*edges)[a];
  const Edge& second = (*edges)[b];
  if (IsBefore(second.left, first.left)) {
    const int side = OrientationSign(second.left, second.right, first.left);
    return (side != 0 ? side : OrientationSign(second.left, second.right, first.right)) < 0;
  }
  const int side = OrientationSign(first.left, first.right, second.left);
  return (side != 0 ? side : OrientationSign(first.left, first.right, second.right)) > 0;
}

bool RingSweep::Below::operator()(std::size_t edge, const Vec2d& point) const {
  return OrientationSign((*edges)[edge].left, (*edges)[edge].right, point) > 0;
}

bool RingSweep::Below::operator()(const Vec2d& point, std::size_t edge) const {
  return OrientationSign((*edges)[edge].left, (*edges)[edge].right, point) < 0;
}

void RingSweep::Add(std::span<const Vec2d> ring) {
  const std::size_t first = points_.size();
  points_.insert(points_.end(), ring.begin(), ring.end());
  for (std::size_t i = first; i < points_.size(); ++i) {
    const std::size_t next = i + 1 == points_.size() ? first : i + 1;
    const bool isRightward = IsBefore(points_[i], points_[next]);
    const std::size_t previous = i == first ? points_.size() - 1 : i - 1;
    edges_.push_back({points_[isRightward ? i : next], points_[isRightward ? next : i],
                      places_.size(), previous, next, isRightward});
  }
  places_.push_back({NO_RING, NO_RING, false, Vec2d()});
}

std::optional<RingMeeting> RingSweep::Run() {
  lastStopOfRing_.assign(places_.size(), 0);
  lastStopOfVisit_.assign(2 * points_.size(), 0);
  std::vector<std::size_t> order(points_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
    if (points_[a] == points_[b]) return a < b;
    return IsBefore(points_[a], points_[b]);
  });
  for (std::size_t first = 0, end = 0; first < order.size(); first = end) {
    const Vec2d point = points_[order[first]];
    while (end < order.size() && points_[order[end]] == point) ++end;
    ++stop_;
    if (const auto fault = Stop(point, std::span(order).subspan(first, end - first))) return fault;
  }
  return std::nullopt;
}

std::optional<RingMeeting> RingSweep::Stop(const Vec2d& point,
                                           std::span<const std::size_t> vertices) {
  CollectEnds(point, vertices);
  if (const auto fault = FindOverlap(point)) return fault;
  if (leftEnds_.size() + rightEnds_.size() > 2) {
    if (const auto fault = FindCrossing(point)) return fault;
    if (const auto fault = FindSelfTouch(point)) return fault;
  }
  ReplaceEnds();
  BeginRings();
  return FindCrossingAhead();
}

void RingSweep::CollectEnds(const Vec2d& point, std::span<const std::size_t> vertices) {
  leftEnds_.clear();
  rightEnds_.clear();
  first_ = status_.lower_bound(point);
  for (end_ = first_; end_ != status_.end() && !Below{&edges_}(point, *end_); ++end_) {
    const Edge& edge = edges_[*end_];
    const std::size_t rightVertex = edge.isRightward ? edge.next : *end_;
    const End end = {*end_, edge.right == point ? rightVertex : points_.size() + *end_};
    leftEnds_.push_back(end);
    if (IsThrough(end)) rightEnds_.push_back(end);
  }
  for (const std::size_t vertex : vertices) {
    const std::size_t arriving = edges_[vertex].previous;
    if (edges_[vertex].isRightward) rightEnds_.push_back({vertex, vertex});
    if (!edges_[arriving].isRightward) rightEnds_.push_back({arriving, vertex});
  }
  std::sort(rightEnds_.begin(), rightEnds_.end(), [&](const End& a, const End& b) {
    const int side = OrientationSign(point, edges_[a.edge].right, edges_[b.edge].right);
    return side != 0 ? side > 0 : a.edge < b.edge;
  });
}

/// Finds two ends on the right that have one direction. Overlaps begin somewhere on the left, so
/// none is missed.
std::optional<RingMeeting> RingSweep::FindOverlap(const Vec2d& point) const {
  for (std::size_t i = 1; i < rightEnds_.size(); ++i) {
    const std::size_t a = rightEnds_[i - 1].edge;
    const std::size_t b = rightEnds_[i].edge;
    if (OrientationSign(point, edges_[a].right, edges_[b].right) != 0) continue;
    using Kind = PolygonFault::Kind;
    if (edges_[a].next == b) return RingMeeting{Kind::Spike, points_[b], edges_[a].ring};
    if (edges_[b].next == a) return RingMeeting{Kind::Spike, points_[a], edges_[a].ring};
    return MeetingOf(a, b, Kind::SelfOverlap, Kind::RingsOverlap, point);
  }
  return std::nullopt;
}

/// Finds two passages that do not nest, going round the point once from above by the left.
std::optional<RingMeeting> RingSweep::FindCrossing(const Vec2d& point) {
  open_.clear();
  const auto closesWrongly = [this](const End& end) {
    std::size_t& lastStop = lastStopOfVisit_[end.visit];
    if (lastStop != stop_) {
      lastStop = stop_;
      open_.push_back(end);
      return false;
    }
    if (open_.back().visit != end.visit) return true;
    open_.pop_back();
    return false;
  };
  const auto meeting = [&](const End& end) {
    return MeetingOf(open_.back().edge, end.edge, PolygonFault::Kind::SelfCrossing,
                     PolygonFault::Kind::RingsCross, point);
  };
  const auto left = std::find_if(leftEnds_.rbegin(), leftEnds_.rend(), closesWrongly);
  if (left != leftEnds_.rend()) return meeting(*left);
  const auto right = std::find_if(rightEnds_.begin(), rightEnds_.end(), closesWrongly);
  if (right != rightEnds_.end()) return meeting(*right);
  return std::nullopt;
}

std::optional<RingMeeting> RingSweep::FindSelfTouch(const Vec2d& point) {
  for (const std::vector<End>* ends : {&leftEnds_, &rightEnds_}) {
    for (const End& end : *ends) {
      // The first end has been marked with the stop, the second one takes the mark away.
      std::size_t& lastStop = lastStopOfVisit_[end.visit];
      if (lastStop != stop_) continue;
      lastStop = 0;
      const std::size_t ring = edges_[end.edge].ring;
      if (lastStopOfRing_[ring] == stop_) {
        return RingMeeting{PolygonFault::Kind::SelfTouch, point, ring};
      }
      lastStopOfRing_[ring] = stop_;
      touches_.push_back({stop_, ring, point});
    }
  }
  return std::nullopt;
}

/// Puts the edges that begin at the point in the place of those that end there.
void RingSweep::ReplaceEnds() {
  Status::iterator place = end_;
  Status::iterator it = first_;
  for (const End& end : leftEnds_) {
    if (IsThrough(end)) {
      place = it++;
    } else {
      it = status_.erase(it);
    }
  }
  first_ = end_;
  for (const End& end : rightEnds_) {
    const Status::iterator added = IsThrough(end) ? place : status_.emplace_hint(place, end.edge);
    if (IsThrough(end)) place = end_;
    if (first_ == end_) first_ = added;
  }
}

/// Finds out what lies around the rings whose leftmost vertex the point is, from below to above, so
/// that what lies below has been found before.
void RingSweep::BeginRings() {
  for (auto it = first_; it != end_; ++it) {
    const Edge& edge = edges_[*it];
    RingPlace& ring = places_[edge.ring];
    if (ring.depth != NO_RING) continue;
    // Of both edges at its leftmost vertex this is the lower one: the ring's inside is above it.
    ring.isCounterClockwise = edge.isRightward;
    ring.leftmost = edge.left;
    ring.depth = 0;
    if (it == status_.begin()) continue;
    const Edge& below = edges_[*std::prev(it)];
    const RingPlace& other = places_[below.ring];
    ring.parent = below.isRightward == other.isCounterClockwise ? below.ring : other.parent;
    if (ring.parent != NO_RING) ring.depth = places_[ring.parent].depth + 1;
  }
}

std::optional<RingMeeting> RingSweep::FindCrossingAhead() const {
  if (first_ != status_.begin() && first_ != status_.end()) {
    if (const auto fault = CrossingOf(*std::prev(first_), *first_)) return fault;
  }
  if (first_ != end_ && end_ != status_.end()) return CrossingOf(*std::prev(end_), *end_);
  return std::nullopt;
}

/// Two edges that do not cross left of the sweep line do so on its right when the one that ends
/// first does so beyond the other.
std::optional<RingMeeting> RingSweep::CrossingOf(std::size_t below, std::size_t above) const {
  const Edge& a = edges_[below];
  const Edge& b = edges_[above];
  const bool cross = IsBefore(a.right, b.right) ? OrientationSign(b.left, b.right, a.right) > 0
                                                : OrientationSign(a.left, a.right, b.right) < 0;
  if (!cross) return std::nullopt;
  return MeetingOf(below, above, PolygonFault::Kind::SelfCrossing, PolygonFault::Kind::RingsCross,
                   CrossingPoint(a.left, a.right, b.left, b.right));
}

RingMeeting RingSweep::MeetingOf(std::size_t a, std::size_t b, PolygonFault::Kind ofOne,
                                 PolygonFault::Kind ofTwo, const Vec2d& place) const {
  const std::size_t ring = edges_[a].ring;
  const std::size_t other = edges_[b].ring;
  return {ring == other ? ofOne : ofTwo, place, std::max(ring, other)};
}

}  // namespace shr
