// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/polygons/ValidityOracle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>

namespace shr::test {
namespace {

using Points = std::vector<Vec2d>;

double Area(const Vec2d& a, const Vec2d& b, const Vec2d& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double Dot(const Vec2d& a, const Vec2d& b) {
  return a.x * b.x + a.y * b.y;
}

struct Edge {
  Vec2d a;
  Vec2d b;

  bool Holds(const Vec2d& point) const {
    return Area(a, b, point) == 0.0 && Dot(a - point, b - point) <= 0.0;
  }
  bool Crosses(const Edge& other) const {
    return Area(a, b, other.a) * Area(a, b, other.b) < 0.0 &&
           Area(other.a, other.b, a) * Area(other.a, other.b, b) < 0.0;
  }
  /// Collinear with a stretch in common.
  bool Overlaps(const Edge& other) const {
    if (Area(a, b, other.a) != 0.0 || Area(a, b, other.b) != 0.0) return false;
    const Vec2d along = b - a;
    const double from = Dot(other.a - a, along);
    const double to = Dot(other.b - a, along);
    return std::max(from, to) > 0.0 && std::min(from, to) < Dot(along, along);
  }
  bool Meets(const Edge& other) const {
    return Crosses(other) || Holds(other.a) || Holds(other.b) || other.Holds(a) || other.Holds(b);
  }
};

struct Ring {
  Points points;  ///< open, without repetitions

  explicit Ring(const Ring2d& ring) : points(ring.begin(), ring.end()) {
    points.erase(std::unique(points.begin(), points.end()), points.end());
    while (points.size() > 1 && points.back() == points.front()) points.pop_back();
  }
  std::size_t Size() const { return points.size(); }
  Edge EdgeAt(std::size_t i) const { return {points[i], points[(i + 1) % points.size()]}; }
  double SignedArea() const {
    double sum = 0.0;
    for (std::size_t i = 0; i < Size(); ++i) sum += Area(Vec2d(), EdgeAt(i).a, EdgeAt(i).b);
    return sum;
  }
  bool IsSimple() const {
    if (Size() < 3) return false;
    for (std::size_t i = 0; i < Size(); ++i) {
      for (std::size_t j = i + 1; j < Size(); ++j) {
        const bool areNeighbours = j == i + 1 || (i == 0 && j + 1 == Size());
        if (EdgeAt(i).Overlaps(EdgeAt(j))) return false;
        if (!areNeighbours && EdgeAt(i).Meets(EdgeAt(j))) return false;
      }
    }
    return true;
  }
  /// For points that are on no edge.
  bool Surrounds(const Vec2d& point) const {
    bool isInside = false;
    for (std::size_t i = 0; i < Size(); ++i) {
      const Edge edge = EdgeAt(i);
      const bool isUpward = edge.a.y < edge.b.y;
      if ((edge.a.y <= point.y) == (edge.b.y <= point.y)) continue;
      if ((Area(edge.a, edge.b, point) > 0.0) == isUpward) isInside = !isInside;
    }
    return isInside;
  }
  /// Returns the edges cut at the points of other rings that lie on them.
  std::vector<Edge> Pieces(const std::vector<const Ring*>& others) const {
    std::vector<Edge> pieces;
    for (std::size_t i = 0; i < Size(); ++i) {
      const Edge edge = EdgeAt(i);
      Points cuts = {edge.a, edge.b};
      for (const Ring* other : others) {
        for (const Vec2d& point : other->points) {
          if (edge.Holds(point)) cuts.push_back(point);
        }
      }
      std::sort(cuts.begin(), cuts.end(), [&](const Vec2d& p, const Vec2d& q) {
        return Dot(p - edge.a, edge.b - edge.a) < Dot(q - edge.a, edge.b - edge.a);
      });
      cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
      for (std::size_t j = 1; j < cuts.size(); ++j) pieces.push_back({cuts[j - 1], cuts[j]});
    }
    return pieces;
  }
};

enum class Relation { Inside, Outside, Bad };

/// Returns where a ring lies as seen from another one.
Relation RelationOf(const Ring& ring, const Ring& other) {
  for (std::size_t i = 0; i < ring.Size(); ++i) {
    for (std::size_t j = 0; j < other.Size(); ++j) {
      const Edge edge = ring.EdgeAt(i);
      if (edge.Crosses(other.EdgeAt(j)) || edge.Overlaps(other.EdgeAt(j))) return Relation::Bad;
    }
  }
  std::size_t inside = 0;
  const std::vector<Edge> pieces = ring.Pieces({&other});
  for (const Edge& piece : pieces) inside += other.Surrounds((piece.a + piece.b) * 0.5) ? 1 : 0;
  if (inside == 0) return Relation::Outside;
  return inside == pieces.size() ? Relation::Inside : Relation::Bad;
}

/// The rings touch each other in so few points that they cut the plane into one face each and the
/// one around: vertices - edges + faces = 1 + connected parts.
bool IsInOnePiece(const std::vector<const Ring*>& rings) {
  std::map<std::pair<double, double>, std::size_t> numbers;
  std::vector<std::size_t> parents;
  const auto find = [&](const Vec2d& point) {
    const auto [it, isNew] = numbers.try_emplace({point.x, point.y}, parents.size());
    if (isNew) parents.push_back(it->second);
    std::size_t i = it->second;
    while (parents[i] != i) i = parents[i];
    return i;
  };
  std::size_t edges = 0;
  for (const Ring* ring : rings) {
    for (const Edge& piece : ring->Pieces(rings)) {
      const std::size_t from = find(piece.a);
      parents[find(piece.b)] = from;
      ++edges;
    }
  }
  std::size_t parts = 0;
  for (std::size_t i = 0; i < parents.size(); ++i) parts += parents[i] == i ? 1 : 0;
  return 1 + parts + edges - parents.size() == rings.size() + 1;
}

/// All rings of some polygons and how each lies to each.
struct Relations {
  explicit Relations(const MultiPolygon2d& polygons) {
    for (std::size_t i = 0; i < polygons.size(); ++i) {
      Add(polygons[i].outer(), i, false);
      for (const Ring2d& hole : polygons[i].inners()) Add(hole, i, true);
    }
  }
  void Add(const Ring2d& ring, std::size_t polygon, bool hole) {
    rings.emplace_back(ring);
    polygonOf.push_back(polygon);
    isHole.push_back(hole);
  }
  /// Returns false when rings meet where they should not.
  bool Find() {
    inside.assign(rings.size(), std::vector<bool>(rings.size()));
    for (const Ring& ring : rings) {
      if (!ring.IsSimple()) return false;
    }
    for (std::size_t i = 0; i < rings.size(); ++i) {
      for (std::size_t j = 0; j < rings.size(); ++j) {
        if (i == j) continue;
        const Relation relation = RelationOf(rings[i], rings[j]);
        if (relation == Relation::Bad) return false;
        inside[i][j] = relation == Relation::Inside;
      }
    }
    return true;
  }

  std::vector<Ring> rings;
  std::vector<std::size_t> polygonOf;
  std::vector<bool> isHole;
  std::vector<std::vector<bool>> inside;
};

bool IsInHoleOf(const Relations& all, std::size_t ring, std::size_t polygon) {
  for (std::size_t i = 0; i < all.rings.size(); ++i) {
    if (all.polygonOf[i] == polygon && all.isHole[i] && all.inside[ring][i]) return true;
  }
  return false;
}

bool IsPairValid(const Relations& all, std::size_t ring, std::size_t other) {
  const bool isInside = all.inside[ring][other];
  const bool areOfOne = all.polygonOf[ring] == all.polygonOf[other];
  if (areOfOne && all.isHole[ring]) return isInside != all.isHole[other];
  if (areOfOne || all.isHole[ring] || all.isHole[other] || !isInside) return true;
  return IsInHoleOf(all, ring, all.polygonOf[other]);
}

}  // namespace

bool IsValidByBruteForce(const MultiPolygon2d& polygons) {
  Relations all(polygons);
  if (!all.Find()) return false;
  for (std::size_t i = 0; i < all.rings.size(); ++i) {
    if ((all.rings[i].SignedArea() > 0.0) != all.isHole[i]) return false;
    for (std::size_t j = 0; j < all.rings.size(); ++j) {
      if (i != j && !IsPairValid(all, i, j)) return false;
    }
  }
  for (std::size_t polygon = 0; polygon < polygons.size(); ++polygon) {
    std::vector<const Ring*> rings;
    for (std::size_t i = 0; i < all.rings.size(); ++i) {
      if (all.polygonOf[i] == polygon) rings.push_back(&all.rings[i]);
    }
    if (!IsInOnePiece(rings)) return false;
  }
  return true;
}

bool AreContoursValidByBruteForce(const MultiPolygon2d& polygons) {
  Relations all(polygons);
  if (!all.Find()) return false;
  const auto depth = [&all](std::size_t ring) {
    return std::count(all.inside[ring].begin(), all.inside[ring].end(), true);
  };
  for (std::size_t outer = 0; outer < all.rings.size(); ++outer) {
    if (depth(outer) % 2 != 0) continue;
    std::vector<const Ring*> rings = {&all.rings[outer]};
    for (std::size_t i = 0; i < all.rings.size(); ++i) {
      if (all.inside[i][outer] && depth(i) == depth(outer) + 1) rings.push_back(&all.rings[i]);
    }
    if (!IsInOnePiece(rings)) return false;
  }
  return true;
}

double DistanceToRing(const Ring2d& ring, const Vec2d& point) {
  double nearest = HUGE_VAL;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    const Vec2d along = ring[i] - ring[i - 1];
    const double square = Dot(along, along);
    const double t =
        square > 0.0 ? std::clamp(Dot(point - ring[i - 1], along) / square, 0.0, 1.0) : 0.0;
    const Vec2d away = point - ring[i - 1] - along * t;
    nearest = std::min(nearest, std::hypot(away.x, away.y));
  }
  return nearest;
}

}  // namespace shr::test
