// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One sweep over rings that tells the first place where they meet in more than single points, or
/// else how they lie in and at each other. Not installed; the public face is
/// shared/polygons/PolygonValidity.h.
///
///     RingSweep sweep;
///     sweep.Add(ring);
///     if (const std::optional<RingMeeting> fault = sweep.Run()) return *fault;
///     const RingPlace& place = sweep.Places()[0];
///
/// Threads: an object is used by one thread at a time.

#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include "shared/geometry/Vec2.h"
#include "shared/polygons/PolygonValidity.h"

namespace shr {

/// How two rings, or a ring and itself, meet where they should not.
struct RingMeeting {
  PolygonFault::Kind kind;
  Vec2d place;
  std::size_t ring;  ///< of two the later one
};

/// How a ring lies among the others.
struct RingPlace {
  std::size_t parent;  ///< the ring next around it, `RingSweep::NO_RING` if there is none
  std::size_t depth;   ///< the number of rings around it
  bool isCounterClockwise;
  Vec2d leftmost;
};

/// A ring at a point where it touches another one; those of one point follow each other.
struct RingTouch {
  std::size_t point;  ///< a number of the point
  std::size_t ring;
  Vec2d place;
};

class RingSweep {
public:
  static constexpr std::size_t NO_RING = static_cast<std::size_t>(-1);

  RingSweep() : status_(Below{&edges_}) {}

  /// Adds a ring of finite points, none equal to the one before or, at the end, to the first.
  /// Requires: at least three points. Rings are numbered from 0.
  void Add(std::span<const Vec2d> ring);

  /// Finds a place where rings meet in more than single points, or one meets itself; nothing when
  /// there is none. To be called once. Cost: O(n log n).
  std::optional<RingMeeting> Run();

  /// What a run without a find has seen.
  std::span<const RingPlace> Places() const { return places_; }
  std::span<const RingTouch> Touches() const { return touches_; }

private:
  /// Edge i leaves vertex i of all rings in order. Left and right are in the order of the sweep.
  struct Edge {
    Vec2d left;
    Vec2d right;
    std::size_t ring;
    std::size_t previous;  ///< the edge before it on the ring
    std::size_t next;
    bool isRightward;
  };
  /// The order of edges that both meet the sweep line just right of where the later one begins, and
  /// of edges and points on it.
  struct Below {
    using is_transparent = void;
    const std::vector<Edge>* edges;

    bool operator()(std::size_t a, std::size_t b) const;
    bool operator()(std::size_t edge, const Vec2d& point) const;
    bool operator()(const Vec2d& point, std::size_t edge) const;
  };
  using Status = std::set<std::size_t, Below>;
  /// The end of an edge at the current point, or one half of an edge that goes through it. A visit
  /// is one passage of a ring through the point: two ends.
  struct End {
    std::size_t edge;
    std::size_t visit;  ///< the vertex, or the number of vertices plus the edge that goes through
  };

  bool IsThrough(const End& end) const { return end.visit >= points_.size(); }
  std::optional<RingMeeting> Stop(const Vec2d& point, std::span<const std::size_t> vertices);
  void CollectEnds(const Vec2d& point, std::span<const std::size_t> vertices);
  std::optional<RingMeeting> FindOverlap(const Vec2d& point) const;
  std::optional<RingMeeting> FindCrossing(const Vec2d& point);
  std::optional<RingMeeting> FindSelfTouch(const Vec2d& point);
  void ReplaceEnds();
  void BeginRings();
  std::optional<RingMeeting> FindCrossingAhead() const;
  std::optional<RingMeeting> CrossingOf(std::size_t below, std::size_t above) const;
  RingMeeting MeetingOf(std::size_t a, std::size_t b, PolygonFault::Kind ofOne,
                        PolygonFault::Kind ofTwo, const Vec2d& place) const;

  std::vector<Vec2d> points_;
  std::vector<Edge> edges_;
  Status status_;  ///< the edges that meet the sweep line, from below to above
  std::vector<RingPlace> places_;
  std::vector<RingTouch> touches_;

  std::size_t stop_ = 0;  ///< the number of the current stop, from 1
  /// The edges in the status that hold the point, then those that leave it to the right.
  Status::iterator first_;
  Status::iterator end_;
  std::vector<End> leftEnds_;   ///< from below to above
  std::vector<End> rightEnds_;  ///< likewise
  std::vector<End> open_;
  std::vector<std::size_t> lastStopOfRing_;
  std::vector<std::size_t> lastStopOfVisit_;
};

}  // namespace shr
