// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Equal points of all rings become one vertex of a graph. A vertex that lies between the same two
// others in all its rings is on a chain between nodes; as it belongs to all of those rings, taking
// the vertex out of the graph takes it out of both sides of a border, and the results are the
// rings without the vertices that have gone. Chains are never stored: a vertex on one knows its
// two neighbours, and edges from node to node are kept in a set.
//
// The heap holds the vertices by effective area. A vertex whose triangle holds another one waits
// for just that one to go and is tried again then, so none is overlooked and the outcome does not
// depend on which of several the search found.

#include "shared/polygons/CoverageSimplifier.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/PointTree.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"CoverageSimplifier";
constexpr std::size_t NONE = static_cast<std::size_t>(-1);

/// A ring as vertices, no two neighbours equal.
struct Ring {
  bool isOuter = true;
  bool isFixed = false;  ///< whether it stays as it is
  bool isDropped = false;
  std::size_t size = 0;  ///< points, the closing one included
  std::vector<std::size_t> corners;
};

/// The vertices of all rings and their connections.
struct Graph {
  std::vector<Vec2d> points;
  std::vector<std::size_t> uses;                      ///< how often rings come by
  std::vector<std::array<std::size_t, 2>> neighbors;  ///< both NONE for a node
  std::vector<Ring> rings;

  bool IsNode(std::size_t vertex) const { return neighbors[vertex][0] == NONE; }
};

using Cells = std::vector<MultiPolygon2d>;

template <class Visit>
void ForEachRing(Cells& cells, Visit visit) {
  for (MultiPolygon2d& cell : cells) {
    for (Polygon2d& polygon : cell) {
      visit(polygon.outer(), true);
      for (Ring2d& inner : polygon.inners()) visit(inner, false);
    }
  }
}

bool HasThreePoints(const std::vector<std::size_t>& corners) {
  // Neighbours differ, so only a, b, a, b ... has but two.
  for (std::size_t i = 2; i < corners.size(); ++i) {
    if (corners[i] != corners[i - 2]) return true;
  }
  return false;
}

/// Finds the different points, in the order of their coordinates, and returns the index of each
/// stored point's; NONE for one that is no number.
std::vector<std::size_t> FindVertices(Cells& cells, std::vector<Vec2d>& vertices) {
  std::vector<std::pair<Vec2d, std::size_t>> all;
  std::size_t place = 0;
  ForEachRing(cells, [&](const Ring2d& ring, bool) {
    for (const Vec2d& point : ring) {
      if (point.IsFinite()) all.emplace_back(point, place);
      ++place;
    }
  });
  std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
    return std::tie(a.first.x, a.first.y, a.second) < std::tie(b.first.x, b.first.y, b.second);
  });
  std::vector<std::size_t> vertexAt(place, NONE);
  for (const auto& [point, index] : all) {
    if (vertices.empty() || !(vertices.back() == point)) vertices.push_back(point);
    vertexAt[index] = vertices.size() - 1;
  }
  return vertexAt;
}

void AddRings(Cells& cells, Graph& graph) {
  const std::vector<std::size_t> vertexAt = FindVertices(cells, graph.points);
  std::size_t place = 0;
  ForEachRing(cells, [&](const Ring2d& ring, bool isOuter) {
    Ring& found = graph.rings.emplace_back();
    std::vector<std::size_t>& corners = found.corners;
    found.isOuter = isOuter;
    for (std::size_t i = 0; i < ring.size(); ++i, ++place) {
      if (vertexAt[place] == NONE) {
        found.isFixed = true;
      } else if (corners.empty() || corners.back() != vertexAt[place]) {
        corners.push_back(vertexAt[place]);
      }
    }
    while (corners.size() > 1 && corners.back() == corners.front()) corners.pop_back();
    found.isFixed = found.isFixed || !HasThreePoints(corners);
    found.size = found.isFixed ? ring.size() : corners.size() + 1;
  });
}

double AreaOf(const Graph& graph, const Ring& ring) {
  std::vector<Vec2d> points;
  for (const std::size_t corner : ring.corners) points.push_back(graph.points[corner]);
  return std::abs(PolygonArea(points));
}

void CountUses(Graph& graph) {
  graph.uses.assign(graph.points.size(), 0);
  for (const Ring& ring : graph.rings) {
    for (const std::size_t corner : ring.corners) ++graph.uses[corner];
  }
}

/// Drops the small islands of one cell, whose rings are `rings`.
void DropIslands(Graph& graph, std::span<Ring> rings, double smallestIsland) {
  std::vector<double> areas;
  for (const Ring& ring : rings) areas.push_back(ring.isOuter ? AreaOf(graph, ring) : 0.0);
  const auto largest = std::max_element(areas.begin(), areas.end()) - areas.begin();
  for (std::size_t i = 0; i < rings.size(); ++i) {
    Ring& ring = rings[i];
    const bool hasHoles = i + 1 < rings.size() && !rings[i + 1].isOuter;
    const bool isIsland = ring.isOuter && !hasHoles && !ring.isFixed &&
                          i != static_cast<std::size_t>(largest) &&
                          std::all_of(ring.corners.begin(), ring.corners.end(),
                                      [&](std::size_t corner) { return graph.uses[corner] == 1; });
    if (!isIsland || !(areas[i] < smallestIsland)) continue;
    ring.isDropped = true;
    for (const std::size_t corner : ring.corners) graph.uses[corner] = 0;
  }
}

void DropIslands(const Cells& cells, double smallestIsland, Graph& graph) {
  std::size_t first = 0;
  for (const MultiPolygon2d& cell : cells) {
    std::size_t count = 0;
    for (const Polygon2d& polygon : cell) count += 1 + polygon.inners().size();
    if (count > 1) DropIslands(graph, std::span(graph.rings).subspan(first, count), smallestIsland);
    first += count;
  }
}

/// Tells nodes from the vertices of chains.
void FindNodes(Graph& graph) {
  constexpr std::size_t UNSEEN = NONE - 1;
  graph.neighbors.assign(graph.points.size(), {UNSEEN, UNSEEN});
  const auto fix = [&](std::size_t vertex) { graph.neighbors[vertex] = {NONE, NONE}; };
  for (const Ring& ring : graph.rings) {
    if (ring.isDropped) continue;
    const std::size_t size = ring.corners.size();
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t vertex = ring.corners[i];
      const auto [low, high] =
          std::minmax({ring.corners[(i + size - 1) % size], ring.corners[(i + 1) % size]});
      std::array<std::size_t, 2>& known = graph.neighbors[vertex];
      const std::array<std::size_t, 2> found = {low, high};
      if (ring.isFixed || low == high || (known[0] != UNSEEN && known != found)) {
        fix(vertex);
      } else if (known[0] == UNSEEN) {
        known = found;
      }
      if (low == high) fix(low);
    }
  }
  for (std::size_t i = 0; i < graph.points.size(); ++i) {
    if (graph.uses[i] == 0) fix(i);
  }
}

/// Takes vertices out of a graph.
class Elimination {
public:
  explicit Elimination(Graph& graph)
      : graph_(graph),
        tree_(graph.points),
        stamps_(graph.points.size(), 0),
        firstWaiting_(graph.points.size(), NONE) {
    for (const Ring& ring : graph.rings) {
      if (ring.isDropped) continue;
      pointsLeft_ += ring.size;
      AddNodeEdges(ring);
    }
    for (std::size_t i = 0; i < graph.points.size(); ++i) {
      if (graph.uses[i] == 0) tree_.Remove(i);
      if (!graph.IsNode(i)) Push(i);
    }
  }

  void Run(double tolerance, std::size_t mostPoints) {
    while (!heap_.empty() && heap_.front().area <= tolerance && pointsLeft_ > mostPoints) {
      const Candidate candidate = heap_.front();
      std::pop_heap(heap_.begin(), heap_.end());
      heap_.pop_back();
      if (candidate.stamp == stamps_[candidate.vertex]) Try(candidate);
    }
  }

  bool IsThere(std::size_t vertex) const { return tree_.Contains(vertex); }

private:
  struct Candidate {
    double area;
    std::size_t vertex;
    std::size_t stamp;

    /// The smallest area is on top of the heap, of equal ones the vertex of the lowest index.
    bool operator<(const Candidate& other) const {
      return std::tie(area, vertex) > std::tie(other.area, other.vertex);
    }
  };
  struct Waiting {
    std::size_t vertex;
    std::size_t stamp;
    std::size_t next;
  };
  struct HashOfEdge {
    std::size_t operator()(const std::pair<std::size_t, std::size_t>& edge) const {
      return edge.first * 0x9E3779B97F4A7C15U ^ edge.second;
    }
  };

  void AddNodeEdges(const Ring& ring) {
    for (std::size_t i = 0; i < ring.corners.size(); ++i) {
      const std::size_t next = ring.corners[i + 1 < ring.corners.size() ? i + 1 : 0];
      if (graph_.IsNode(ring.corners[i]) && graph_.IsNode(next)) AddEdge(ring.corners[i], next);
    }
  }

  void AddEdge(std::size_t a, std::size_t b) { nodeEdges_.insert(std::minmax(a, b)); }

  bool HasEdge(std::size_t a, std::size_t b) const {
    if (graph_.IsNode(a)) std::swap(a, b);
    if (graph_.IsNode(a)) return nodeEdges_.contains(std::minmax(a, b));
    return graph_.neighbors[a][0] == b || graph_.neighbors[a][1] == b;
  }

  /// 0 exactly when the three points lie on one line.
  double AreaAt(std::size_t vertex) const {
    const Vec2d& a = graph_.points[graph_.neighbors[vertex][0]];
    const Vec2d& b = graph_.points[vertex];
    const Vec2d& c = graph_.points[graph_.neighbors[vertex][1]];
    if (OrientationSign(a, b, c) == 0) return 0.0;
    const double area = std::abs((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2;
    if (std::isnan(area)) return HUGE_VAL;
    return std::max(area, std::numeric_limits<double>::denorm_min());
  }

  void Push(std::size_t vertex) {
    heap_.push_back({std::max(AreaAt(vertex), level_), vertex, ++stamps_[vertex]});
    std::push_heap(heap_.begin(), heap_.end());
  }

  void Try(const Candidate& candidate) {
    const auto [before, after] = graph_.neighbors[candidate.vertex];
    if (HasEdge(before, after)) return;  // and that edge will stay
    const std::size_t blocker = FindInTriangle(before, candidate.vertex, after);
    if (blocker != NONE) {
      waiting_.push_back({candidate.vertex, candidate.stamp, firstWaiting_[blocker]});
      firstWaiting_[blocker] = waiting_.size() - 1;
      return;
    }
    level_ = std::max(level_, candidate.area);
    Remove(candidate.vertex);
  }

  /// Returns a vertex in the triangle, border included, that is not one of its corners. There is
  /// nothing to find when the middle one lies between the others on their line.
  std::size_t FindInTriangle(std::size_t first, std::size_t middle, std::size_t last) const {
    const Vec2d& a = graph_.points[first];
    const Vec2d& b = graph_.points[middle];
    const Vec2d& c = graph_.points[last];
    Box2d box(std::min(a.x, c.x), std::min(a.y, c.y), std::max(a.x, c.x), std::max(a.y, c.y));
    const bool isBetween =
        box.xMin() <= b.x && b.x <= box.xMax() && box.yMin() <= b.y && b.y <= box.yMax();
    const int turn = OrientationSign(a, b, c);
    if (turn == 0 && isBetween) return NONE;
    box.ExtendBy(b);
    return tree_.FindIn(box, [&](std::size_t vertex) {
      if (vertex == first || vertex == middle || vertex == last) return false;
      const Vec2d& p = graph_.points[vertex];
      const int sides[] = {OrientationSign(a, b, p), OrientationSign(b, c, p),
                           OrientationSign(c, a, p)};
      const auto [lowest, highest] = std::minmax_element(sides, sides + 3);
      return *lowest >= 0 || *highest <= 0;
    });
  }

  void Remove(std::size_t vertex) {
    const auto [before, after] = graph_.neighbors[vertex];
    tree_.Remove(vertex);
    ++stamps_[vertex];
    pointsLeft_ -= graph_.uses[vertex];
    if (graph_.IsNode(before) && graph_.IsNode(after)) AddEdge(before, after);
    Reconnect(before, vertex, after);
    Reconnect(after, vertex, before);
    for (std::size_t i = firstWaiting_[vertex]; i != NONE; i = waiting_[i].next) {
      const Waiting& waiting = waiting_[i];
      if (waiting.stamp == stamps_[waiting.vertex]) Push(waiting.vertex);
    }
  }

  void Reconnect(std::size_t vertex, std::size_t from, std::size_t to) {
    if (graph_.IsNode(vertex)) return;
    std::array<std::size_t, 2>& neighbors = graph_.neighbors[vertex];
    neighbors[neighbors[0] == from ? 0 : 1] = to;
    Push(vertex);
  }

  Graph& graph_;
  PointTree tree_;
  std::vector<Candidate> heap_;
  std::vector<std::size_t> stamps_;  ///< of the latest candidate of each vertex
  std::vector<std::size_t> firstWaiting_;
  std::vector<Waiting> waiting_;
  std::unordered_set<std::pair<std::size_t, std::size_t>, HashOfEdge> nodeEdges_;
  std::size_t pointsLeft_ = 0;
  double level_ = 0.0;
};

/// Replaces the points of a ring by those that are left.
void StoreRing(const Graph& graph, const Elimination& elimination, const Ring& from, Ring2d& to) {
  if (from.isFixed || from.isDropped) return;
  to.clear();
  for (const std::size_t corner : from.corners) {
    if (elimination.IsThere(corner)) to.push_back(graph.points[corner]);
  }
  to.push_back(to.front());
}

std::vector<GPolygon2d> Simplify(std::span<const GPolygon2d> polygons, double tolerance,
                                 std::size_t mostPoints, double smallestIsland) {
  if (!(tolerance >= 0.0) || !(smallestIsland >= 0.0)) {
    ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  }
  Cells cells(polygons.size());
  for (std::size_t i = 0; i < polygons.size(); ++i) polygons[i].GetMultiPolygon(cells[i]);
  Graph graph;
  AddRings(cells, graph);
  CountUses(graph);
  if (smallestIsland > 0.0) DropIslands(cells, smallestIsland, graph);
  FindNodes(graph);
  Elimination elimination(graph);
  elimination.Run(tolerance, mostPoints);
  std::size_t next = 0;
  ForEachRing(
      cells, [&](Ring2d& ring, bool) { StoreRing(graph, elimination, graph.rings[next++], ring); });
  std::vector<GPolygon2d> results;
  results.reserve(cells.size());
  next = 0;
  for (MultiPolygon2d& cell : cells) {
    std::erase_if(cell, [&](const Polygon2d& polygon) {
      const std::size_t outer = std::exchange(next, next + 1 + polygon.inners().size());
      return graph.rings[outer].isDropped;
    });
    results.emplace_back(cell);
  }
  return results;
}

}  // namespace

std::vector<GPolygon2d> SimplifyCoverage(std::span<const GPolygon2d> cells, double tolerance,
                                         double smallestIsland) {
  return Simplify(cells, tolerance, 0, smallestIsland);
}

std::vector<GPolygon2d> SimplifyCoverageToCount(std::span<const GPolygon2d> cells,
                                                std::size_t mostPoints, double smallestIsland) {
  return Simplify(cells, HUGE_VAL, mostPoints, smallestIsland);
}

}  // namespace shr
