// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Which contours lie in which is read off the graph of the clipper: inside of a contour its own
// edge has, on one side, the contour and all that contain it. Edges of several contours that lie
// upon each other make no difference to that. Each set of contours is told by a number, the
// exclusive or of 64 pseudo-random bits for each member (A. L. Zobrist, "A New Hashing Method with
// Application for Game Playing", 1970): the set around a contour without the contour itself is the
// set around the innermost of those that contain it.

#include "shared/polygons/clipper/ContourNesting.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/clipper/GpcRun.h"

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

/// Returns what lies around each contour. What has no area has depth 0.
std::vector<gpc::Nest> NestsOf(std::span<const GpcContour> contours) {
  std::vector<GpcContour> sound;
  std::vector<gpc::Index> numbers;
  std::vector<double> sizes;
  for (const GpcContour& contour : contours) {
    const auto number = static_cast<gpc::Index>(sizes.size());
    sizes.push_back(std::abs(PolygonArea(VerticesOf(contour))));
    if (TurnOf(VerticesOf(contour)) == 0) continue;
    sound.push_back(contour);
    numbers.push_back(number);
  }
  std::vector<gpc::Nest> nests = gpc::FindNests({sound, numbers}, sizes);
  nests.resize(contours.size());
  for (const gpc::Index number : numbers) {
    // Beside coordinates that are larger by far a contour can be a point to the clipper.
    if (nests[number].depth == 0) nests[number] = {gpc::BitsOf(number), 1};
  }
  return nests;
}

}  // namespace

int TurnOf(std::span<const Vec2d> contour) {
  if (contour.size() < 3 || !std::all_of(contour.begin(), contour.end(),
                                         [](const Vec2d& point) { return point.IsFinite(); }))
    return 0;
  const int turn = TurnOfLowestEdge(contour);
  return turn != 0 ? turn : TurnByArea(contour);
}

std::vector<ContourGroup> GroupContours(std::span<const GpcContour> contours) {
  const std::vector<gpc::Nest> nests = NestsOf(contours);
  std::unordered_map<std::uint64_t, std::size_t> bySet;
  for (std::size_t i = 0; i < nests.size(); ++i) {
    if (nests[i].depth != 0) bySet.emplace(nests[i].set, i);
  }
  const auto parentOf = [&](std::size_t i) {
    const auto found = bySet.find(nests[i].set ^ gpc::BitsOf(static_cast<gpc::Index>(i)));
    return found == bySet.end() ? NONE : found->second;
  };
  std::vector<std::size_t> groupOf(nests.size(), NONE);
  std::vector<ContourGroup> groups;
  for (std::size_t i = 0; i < nests.size(); ++i) {
    const bool isOuter = nests[i].depth % 2 == 1 || (nests[i].depth != 0 && parentOf(i) == NONE);
    if (!isOuter) continue;
    groupOf[i] = groups.size();
    groups.push_back({i, {}});
  }
  for (std::size_t i = 0; i < nests.size(); ++i) {
    if (nests[i].depth == 0 || groupOf[i] != NONE) continue;
    // A parent is no outer contour where contours cross.
    const std::size_t group = groupOf[parentOf(i)];
    if (group == NONE) {
      groups.push_back({i, {}});
    } else {
      groups[group].holes.push_back(i);
    }
  }
  return groups;
}

}  // namespace shr
