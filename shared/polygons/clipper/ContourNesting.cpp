// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A vertical line sweeps over the edges of all contours from left to right and keeps those it meets
// in order from bottom to top (M. I. Shamos and D. Hoey, "Geometric Intersection Problems", 1976).
// When it reaches the leftmost vertex of a contour, the edge next below tells where the contour
// lies: when the inside of that edge's own contour is above it, this one lies in that contour; else
// it lies beside it, in the same parent. Edges that run through the vertex take part by their
// direction to the right of it, so that contours may touch there.
//
// Where edges of several contours lie upon each other, those that have their inside below come
// first, smaller contours before larger ones, then those with their inside above, larger before
// smaller: the order in which the contours would be met if each were a little thinner.
//
// All comparisons are exact. Vertical edges are not needed: the sweep never stands inside them.

#include "shared/polygons/clipper/ContourNesting.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <set>
#include <tuple>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr std::size_t NONE = static_cast<std::size_t>(-1);

bool IsLeftOf(const Vec2d& a, const Vec2d& b) {
  return a.x < b.x || (a.x == b.x && a.y < b.y);
}

/// Returns the index of the lowest leftmost vertex.
std::size_t LeftmostVertex(std::span<const Vec2d> contour) {
  return static_cast<std::size_t>(std::min_element(contour.begin(), contour.end(), IsLeftOf) -
                                  contour.begin());
}

/// The lowest of the edges at the leftmost vertex, which has the inside above it. A contour that
/// touches itself there comes by several times.
class LowestEdge {
public:
  explicit LowestEdge(const Vec2d& vertex) : vertex_(vertex) {}

  /// Takes an edge to `end`; `turn` is 1 when the contour runs from the vertex to there, else -1.
  void Take(const Vec2d& end, int turn) {
    const int side = end_ == nullptr ? -1 : OrientationSign(vertex_, *end_, end);
    if (side > 0) return;
    turn_ = side < 0 || turn == turn_ ? turn : 0;
    end_ = &end;
  }
  /// Returns the turn of the lowest edge, 0 when it is run along both ways.
  int Turn() const { return turn_; }

private:
  Vec2d vertex_;
  const Vec2d* end_ = nullptr;
  int turn_ = 0;
};

int TurnOfLowestEdge(std::span<const Vec2d> contour) {
  const Vec2d vertex = contour[LeftmostVertex(contour)];
  LowestEdge lowest(vertex);
  const Vec2d* from = &contour.back();
  for (const Vec2d& to : contour) {
    if (*from == vertex && to != vertex) lowest.Take(to, 1);
    if (to == vertex && *from != vertex) lowest.Take(*from, -1);
    from = &to;
  }
  return lowest.Turn();
}

/// Returns the sign of the area when rounding leaves it the same for either direction.
int TurnByArea(std::span<const Vec2d> contour) {
  const std::vector<Vec2d> reversed(contour.rbegin(), contour.rend());
  const double area = PolygonArea(contour);
  const double other = PolygonArea(reversed);
  if (area > 0.0 && other < 0.0) return 1;
  return area < 0.0 && other > 0.0 ? -1 : 0;
}

bool IsFinite(const Vec2d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

struct Outline {
  std::size_t contour;
  Vec2d leftmost;
  double area;
  int turn;
  std::size_t parent = NONE;
  bool isResolved = false;
  bool isOuter = true;
};

struct Edge {
  Vec2d left;
  Vec2d right;
  std::size_t outline;
  double area;
  bool hasInsideAbove;
};

/// Returns 1 when `above` is above `edge` to the right of the later of their left ends, -1 when it
/// is below and 0 when both lie on one line.
int CompareHeights(const Edge& edge, const Edge& above) {
  if (above.left.x < edge.left.x) return -CompareHeights(above, edge);
  if (above.left.x == edge.left.x && above.left.y != edge.left.y) {
    return above.left.y > edge.left.y ? 1 : -1;
  }
  const int side = OrientationSign(edge.left, edge.right, above.left);
  return side != 0 ? side : OrientationSign(edge.left, edge.right, above.right);
}

struct IsBelow {
  bool operator()(const Edge* a, const Edge* b) const {
    if (a == b) return false;
    if (const int side = CompareHeights(*a, *b); side != 0) return side > 0;
    if (a->hasInsideAbove != b->hasInsideAbove) return b->hasInsideAbove;
    if (a->area != b->area) return (a->area < b->area) != a->hasInsideAbove;
    return a < b;
  }
};

class Sweep {
public:
  explicit Sweep(std::span<const GpcContour> contours);
  void Run();
  const std::vector<Outline>& Outlines() const { return outlines_; }

private:
  using Status = std::set<const Edge*, IsBelow>;

  void AddEdges(std::size_t outline, std::span<const Vec2d> contour);
  void Insert(std::size_t edge);
  void Resolve(std::size_t outline);

  std::vector<Outline> outlines_;
  std::vector<Edge> edges_;
  Status status_;
  std::vector<Status::iterator> places_;      // of each edge in the status
  std::vector<Status::iterator> starts_;      // of each outline, its first lower edge
  std::vector<std::size_t> openingOutlines_;  // in the order in which the sweep meets them
};

Sweep::Sweep(std::span<const GpcContour> contours) {
  for (std::size_t i = 0; i < contours.size(); ++i) {
    const std::span<const Vec2d> contour = VerticesOf(contours[i]);
    const int turn = TurnOf(contour);
    if (turn == 0) continue;
    const double area = std::abs(PolygonArea(contour));
    outlines_.push_back(
        {i, contour[LeftmostVertex(contour)], std::isfinite(area) ? area : DBL_MAX, turn});
  }
  if (outlines_.size() < 2) return;
  for (std::size_t i = 0; i < outlines_.size(); ++i) {
    AddEdges(i, VerticesOf(contours[outlines_[i].contour]));
    openingOutlines_.push_back(i);
  }
  std::sort(edges_.begin(), edges_.end(),
            [](const Edge& a, const Edge& b) { return a.left.x < b.left.x; });
  std::sort(openingOutlines_.begin(), openingOutlines_.end(), [this](std::size_t a, std::size_t b) {
    const auto key = [this](std::size_t i) {
      return std::tuple(outlines_[i].leftmost.x, outlines_[i].leftmost.y, -outlines_[i].area, i);
    };
    return key(a) < key(b);
  });
  places_.resize(edges_.size(), status_.end());
  starts_.resize(outlines_.size(), status_.end());
}

void Sweep::AddEdges(std::size_t outline, std::span<const Vec2d> contour) {
  Vec2d from = contour.back();
  for (const Vec2d& to : contour) {
    const bool runsRight = from.x < to.x;
    const bool hasInsideAbove = runsRight == (outlines_[outline].turn > 0);
    const double area = outlines_[outline].area;
    if (runsRight) edges_.push_back({from, to, outline, area, hasInsideAbove});
    if (to.x < from.x) edges_.push_back({to, from, outline, area, hasInsideAbove});
    from = to;
  }
}

void Sweep::Insert(std::size_t edge) {
  const Edge& added = edges_[edge];
  places_[edge] = status_.insert(&added).first;
  const bool isStart = added.hasInsideAbove && added.left == outlines_[added.outline].leftmost;
  if (isStart) starts_[added.outline] = places_[edge];
}

/// Finds the parent of an outline whose leftmost vertex the sweep has reached.
void Sweep::Resolve(std::size_t index) {
  Outline& outline = outlines_[index];
  outline.isResolved = true;
  Status::iterator below = starts_[index];
  if (below == status_.end()) return;
  do {
    if (below == status_.begin()) return;
    --below;
  } while ((*below)->outline == index);
  const Outline& neighbour = outlines_[(*below)->outline];
  if (!neighbour.isResolved) return;  // only where contours cross
  outline.parent = (*below)->hasInsideAbove ? (*below)->outline : neighbour.parent;
  outline.isOuter = outline.parent == NONE || !outlines_[outline.parent].isOuter;
}

void Sweep::Run() {
  std::vector<std::size_t> closingEdges(edges_.size());
  for (std::size_t i = 0; i < edges_.size(); ++i) closingEdges[i] = i;
  std::sort(closingEdges.begin(), closingEdges.end(),
            [this](std::size_t a, std::size_t b) { return edges_[a].right.x < edges_[b].right.x; });
  std::size_t closed = 0;
  std::size_t opened = 0;
  for (std::size_t resolved = 0; resolved < openingOutlines_.size();) {
    const double x = edges_[opened].left.x;
    for (; edges_[closingEdges[closed]].right.x <= x; ++closed) {
      status_.erase(places_[closingEdges[closed]]);
    }
    for (; opened < edges_.size() && edges_[opened].left.x == x; ++opened) Insert(opened);
    for (; resolved < openingOutlines_.size() &&
           outlines_[openingOutlines_[resolved]].leftmost.x == x;
         ++resolved) {
      Resolve(openingOutlines_[resolved]);
    }
  }
}

}  // namespace

int TurnOf(std::span<const Vec2d> contour) {
  if (contour.size() < 3 || !std::all_of(contour.begin(), contour.end(), IsFinite)) return 0;
  const int turn = TurnOfLowestEdge(contour);
  return turn != 0 ? turn : TurnByArea(contour);
}

std::vector<ContourGroup> GroupContours(std::span<const GpcContour> contours) {
  Sweep sweep(contours);
  sweep.Run();
  const std::vector<Outline>& outlines = sweep.Outlines();
  std::vector<std::size_t> groupOf(outlines.size(), NONE);
  std::vector<ContourGroup> groups;
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    if (!outlines[i].isOuter) continue;
    groupOf[i] = groups.size();
    groups.push_back({outlines[i].contour, {}});
  }
  for (const Outline& outline : outlines) {
    if (!outline.isOuter) groups[groupOf[outline.parent]].holes.push_back(outline.contour);
  }
  return groups;
}

}  // namespace shr
