// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Second stage: where do edges meet? Sections that come near each other (GpcTiles.h) are compared
// edge by edge.
//
// Two edges meet in a proper crossing, whose point is computed and becomes a node of both, or one's
// end is nearer to the other than the tolerance: then that end becomes a node of both. The
// tolerance is larger than the rounding errors of the orientation tests, so these need no exact
// arithmetic. Nodes of both kinds that moved something by more than rounding are remembered, since
// edges between them have to be looked at again.
//
// Source: J. D. Hobby, "Practical Segment Intersection with Finite Precision Output", 1999 (ends
// near an edge become nodes of it).

#include "shared/polygons/clipper/GpcCrossings.h"

#include <algorithm>
#include <cmath>

#include "shared/geometry/Orientation.h"

namespace shr::gpc {
namespace {

/// Edges within this many snap distances of each other go to the grid. More than what rounding may
/// move both by, and more than the pixels that an edge is compared with.
constexpr double ACTIVE_DISTANCE = 8.0;

/// An edge at hand; `points` are its start and its end.
struct Edge {
  Index number;
  Index section;
  const Vec2d* points;

  const Vec2d& Start() const { return points[0]; }
  const Vec2d& End() const { return points[1]; }
};

void MakeNode(Crossings& crossings, Index vertex) {
  if (crossings.isNode[vertex]) return;
  crossings.isNode[vertex] = 1;
  crossings.parents[vertex] = vertex;
  crossings.reaches[vertex] = 0.0;
  crossings.nodeVertices.Append(vertex);
}

/// Compares parts of contours and keeps what it finds: crossings and ends near edges, or the edges
/// that come near others where `isActive` is not null.
class EdgePairs {
public:
  EdgePairs(const Input& input, Crossings& crossings, Buffer<std::uint8_t>* isActive,
            double tolerance)
      : input_(input), crossings_(crossings), isActive_(isActive), tolerance_(tolerance) {}

  /// Returns the number of crossings so far.
  Index Found() const { return found_; }

  /// Compares all elements of a tile with each other.
  void CompareAll(std::span<const Element> elements) {
    if (isActive_ == nullptr && CompareEdgesOf(elements)) return;
    for (std::size_t i = 0; i < elements.size(); ++i) {
      for (std::size_t j = i + 1; j < elements.size(); ++j) {
        if (Overlap(elements[i].box, elements[j].box)) Compare(elements[i], elements[j]);
      }
    }
  }

  void Compare(const Element& one, const Element& two) {
    const bool isOrdered = one.section < two.section;
    const Element& a = isOrdered ? one : two;
    const Element& b = isOrdered ? two : one;
    one_ = &a;
    two_ = &b;
    if (a.edgeCount == 1 && b.edgeCount == 1) {
      return CompareEdges(GetEdge(a.firstEdge, a.section), GetEdge(b.firstEdge, b.section));
    }
    if (AreSimpleNeighbours(a.section, b.section)) return;
    const Box common = GetCommon(a.box, b.box);
    for (Index i = a.firstEdge; i < a.firstEdge + a.edgeCount; ++i) {
      const Edge edge = GetEdge(i, a.section);
      if (!Overlap(GetBox(edge), common)) continue;
      for (Index j = b.firstEdge; j < b.firstEdge + b.edgeCount; ++j) {
        const Edge other = GetEdge(j, b.section);
        if (Overlap(GetBox(other), common)) CompareEdges(edge, other);
      }
    }
  }

  /// Leaves elements to the grid.
  void GiveUp(std::span<const Element> elements) {
    if (isActive_ == nullptr) {
      crossings_.isMoved = true;
      return;
    }
    for (const Element& element : elements) {
      std::fill_n(isActive_->begin() + element.firstEdge, element.edgeCount, std::uint8_t{1});
    }
  }

private:
  /// An edge of a tile and the part of its box that lies there.
  struct EdgeOfTile {
    Box box;
    Edge edge;
    Index element;
  };

  /// Compares elements edge by edge. Which boxes overlap cannot be foretold, so the pairs that do
  /// are listed without a branch. Returns false, with nothing done, where there are many edges.
  bool CompareEdgesOf(std::span<const Element> elements) {
    Index count = 0;
    for (const Element& element : elements) count += element.edgeCount;
    if (count > Tuning::FEW_EDGES) return false;
    EdgeOfTile edges[Tuning::FEW_EDGES];
    EdgeOfTile* next = edges;
    for (Index i = 0; i < elements.size(); ++i) {
      const Element& element = elements[i];
      for (Index j = element.firstEdge; j < element.firstEdge + element.edgeCount; ++j) {
        next->edge = GetEdge(j, element.section);
        next->box = GetCommon(GetBox(next->edge), element.box);
        next++->element = i;
      }
    }
    struct Pair {
      std::uint16_t a, b;
    } pairs[Tuning::FEW_EDGES * (Tuning::FEW_EDGES - 1) / 2];
    Pair* end = pairs;
    for (Index i = 0; i < count; ++i) {
      const Box box = edges[i].box;
      const Index element = edges[i].element;
      for (Index j = i + 1; j < count; ++j) {
        *end = {static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(j)};
        end += static_cast<Index>(Overlap(box, edges[j].box)) &
               static_cast<Index>(element != edges[j].element);
      }
    }
    for (const Pair* pair = pairs; pair != end; ++pair) {
      ComparePair(elements, edges[pair->a], edges[pair->b]);
    }
    return true;
  }

  void ComparePair(std::span<const Element> elements, const EdgeOfTile& a, const EdgeOfTile& b) {
    one_ = &elements[a.element];
    two_ = &elements[b.element];
    const bool isOrdered = a.edge.number < b.edge.number;
    if (one_->edgeCount + two_->edgeCount > 2 &&
        AreSimpleNeighbours((isOrdered ? a : b).edge.section, (isOrdered ? b : a).edge.section)) {
      return;
    }
    CompareEdges((isOrdered ? a : b).edge, (isOrdered ? b : a).edge);
  }

  /// Returns true for sections that follow each other and go the same way.
  bool AreSimpleNeighbours(Index aIndex, Index bIndex) const {
    const Section& a = input_.sections[aIndex];
    const Section& b = input_.sections[bIndex];
    if (a.contour != b.contour || (a.directions & b.directions) == 0) return false;
    if (bIndex == aIndex + 1) return a.turnsSmoothly != 0;
    const Contour& contour = input_.contours[a.contour];
    return a.firstEdge == contour.first && b.firstEdge + b.edgeCount == contour.End() &&
           b.turnsSmoothly != 0;  // never so for lines
  }

  Edge GetEdge(Index number, Index section) const {
    return {number, section, input_.points.Data() + number};
  }

  Box GetBox(const Edge& edge) const {
    return {std::min(edge.Start().x, edge.End().x) - tolerance_,
            std::min(edge.Start().y, edge.End().y) - tolerance_,
            std::max(edge.Start().x, edge.End().x) + tolerance_,
            std::max(edge.Start().y, edge.End().y) + tolerance_};
  }

  // Pairs of edges. The first has the smaller number.

  void CompareEdges(const Edge& a, const Edge& b) {
    if ((isActive_ != nullptr) && (*isActive_)[a.number] && (*isActive_)[b.number]) return;
    if (a.number + 1 == b.number) return CompareNeighbours(a, b);
    const Vec2d along = a.End() - a.Start();
    const double limitA = tolerance_ * Length1(along);
    const double startB = along.Cross(b.Start() - a.Start());
    const double endB = along.Cross(b.End() - a.Start());
    const Vec2d alongB = b.End() - b.Start();
    const double limitB = tolerance_ * Length1(alongB);
    const double startA = alongB.Cross(a.Start() - b.Start());
    const double endA = alongB.Cross(a.End() - b.Start());
    if ((AreOnOneSide(startB, endB, limitA) | AreOnOneSide(startA, endA, limitB)) != 0) return;
    if (AreNeighbours(b, a)) return CompareNeighbours(b, a);
    if ((isActive_ != nullptr)) return Activate(a, b);
    const auto isFar = [](double value, double limit) { return value > limit || value < -limit; };
    if (isFar(startB, limitA) && isFar(endB, limitA) && isFar(startA, limitB) &&
        isFar(endA, limitB)) {
      return AddCrossing(a, b, startB / (startB - endB));
    }
    bool touches = false;
    if (!isFar(startB, limitA)) touches |= JoinIfNear(b, 0, a);
    if (!isFar(endB, limitA)) touches |= JoinIfNear(b, 1, a);
    if (!isFar(startA, limitB)) touches |= JoinIfNear(a, 0, b);
    if (!isFar(endA, limitB)) touches |= JoinIfNear(a, 1, b);
    if (!touches && CrossProperly(a, b)) AddCrossing(a, b, startB / (startB - endB));
  }

  /// Returns 1 for distances of both ends of an edge that are beyond the limit on one side.
  static int AreOnOneSide(double start, double end, double limit) {
    return (static_cast<int>(start > limit) & static_cast<int>(end > limit)) |
           (static_cast<int>(start < -limit) & static_cast<int>(end < -limit));
  }

  /// Returns true when b follows a on a contour.
  bool AreNeighbours(const Edge& a, const Edge& b) const {
    if (!IsSame(a.End(), b.Start())) return false;
    const Index contour = input_.sections[a.section].contour;
    return contour == input_.sections[b.section].contour && GetVertex(a, 1) == b.number;
  }

  static bool CrossProperly(const Edge& a, const Edge& b) {
    return OrientationSign(a.Start(), a.End(), b.Start()) *
                   OrientationSign(a.Start(), a.End(), b.End()) <
               0 &&
           OrientationSign(b.Start(), b.End(), a.Start()) *
                   OrientationSign(b.Start(), b.End(), a.End()) <
               0;
  }

  /// Adds the crossing at the given fraction of b.
  void AddCrossing(const Edge& a, const Edge& b, double fraction) {
    ++found_;
    if (crossings_.isMoved) return;  // the grid finds it
    Vec2d point;
    if (fraction <= 0.5) {
      point = b.Start() + (b.End() - b.Start()) * fraction;
    } else {
      point = b.End() + (b.Start() - b.End()) * (1.0 - fraction);
    }
    point.x = Limit(point.x, a.Start().x, a.End().x, b.Start().x, b.End().x);
    point.y = Limit(point.y, a.Start().y, a.End().y, b.Start().y, b.End().y);
    // Tiles that share a part of both edges find the crossing more than once.
    if (!IsIn(one_->box, point) || !IsIn(two_->box, point)) return;
    const Index number = input_.points.Size() + crossings_.points.Size();
    crossings_.points.Append(point);
    crossings_.parents.Append(number);
    crossings_.occurrences.Append({a.number, number});
    crossings_.occurrences.Append({b.number, number});
  }

  static bool IsIn(const Box& box, const Vec2d& point) {
    return point.x >= box.xMin && point.x <= box.xMax && point.y >= box.yMin && point.y <= box.yMax;
  }

  /// Limits a coordinate to the ranges of both edges.
  static double Limit(double value, double a0, double a1, double b0, double b1) {
    const double low = std::max(std::min(a0, a1), std::min(b0, b1));
    const double high = std::min(std::max(a0, a1), std::max(b0, b1));
    return value < low ? low : value > high ? high : value;
  }

  /// Joins an end of `from`, near the line of `to`, with `to` unless it lies beyond its ends.
  bool JoinIfNear(const Edge& from, Index which, const Edge& to) {
    const Vec2d point = which == 0 ? from.Start() : from.End();
    const Box box = GetBox(to);
    if (point.x < box.xMin || point.x > box.xMax || point.y < box.yMin || point.y > box.yMax) {
      return false;
    }
    const Index vertex = GetVertex(from, which);
    if (IsNear(point, to.Start())) {
      Merge(vertex, point, GetVertex(to, 0), to.Start());
    } else if (IsNear(point, to.End())) {
      Merge(vertex, point, GetVertex(to, 1), to.End());
    } else {
      MakeNode(crossings_, vertex);
      crossings_.occurrences.Append({to.number, vertex});
      if (OrientationSign(to.Start(), to.End(), point) != 0) crossings_.isMoved = true;
    }
    return true;
  }

  /// Two edges that follow each other can meet only by turning back.
  void CompareNeighbours(const Edge& a, const Edge& b) {
    const Vec2d back = a.Start() - a.End();
    const Vec2d forth = b.End() - b.Start();
    if (!(back.Dot(forth) > 0.0)) return;
    const double limit = tolerance_ * std::max(Length1(back), Length1(forth));
    if (std::abs(back.Cross(forth)) > limit) return;
    if ((isActive_ != nullptr)) return Activate(a, b);
    MakeNode(crossings_, GetVertex(a, 1));
    if (Length1(back) <= Length1(forth)) {
      JoinIfNear(a, 0, b);
    } else {
      JoinIfNear(b, 1, a);
    }
  }

  void Activate(const Edge& a, const Edge& b) {
    (*isActive_)[a.number] = (*isActive_)[b.number] = 1;
  }

  bool IsNear(const Vec2d& a, const Vec2d& b) const {
    return std::abs(a.x - b.x) <= tolerance_ && std::abs(a.y - b.y) <= tolerance_;
  }

  /// Returns the number of an end of an edge.
  Index GetVertex(const Edge& edge, Index which) const {
    return input_.contours[input_.sections[edge.section].contour].VertexAt(edge.number + which);
  }

  /// Makes one of two vertices unless that would move something too far.
  void Merge(Index a, const Vec2d& aPoint, Index b, const Vec2d& bPoint) {
    MakeNode(crossings_, a);
    MakeNode(crossings_, b);
    const Index aRoot = crossings_.Root(a);
    const Index bRoot = crossings_.Root(b);
    if (!IsSame(aPoint, bPoint)) crossings_.isMoved = true;
    if (aRoot == bRoot) return;
    const Index root = std::min(aRoot, bRoot);
    const Index other = std::max(aRoot, bRoot);
    const Vec2d way = input_.points[root] - input_.points[other];
    const double reach = std::max(std::abs(way.x), std::abs(way.y)) + crossings_.reaches[other];
    if (reach > JOIN_DISTANCE * tolerance_) return;
    crossings_.parents[other] = root;
    crossings_.hasMerged = true;
    crossings_.reaches[root] = std::max(crossings_.reaches[root], reach);
  }

  const Input& input_;
  Crossings& crossings_;
  Buffer<std::uint8_t>* const isActive_;
  const double tolerance_;
  const Element* one_ = nullptr;  ///< the elements at hand
  const Element* two_ = nullptr;
  Index found_ = 0;  ///< crossings
};

/// Makes short edges active, and those beside them.
void ActivateShortEdges(const Input& input, const Contour& contour, double length,
                        Buffer<std::uint8_t>& isActive) {
  for (Index edge = contour.first; edge < contour.End(); ++edge) {
    if (Length1(input.points[edge + 1] - input.points[edge]) > length) continue;
    isActive[edge] = 1;
    isActive[contour.VertexBefore(edge)] = 1;
    isActive[contour.VertexAt(edge + 1)] = 1;
  }
}

}  // namespace

void FindCrossings(const Input& input, Crossings& crossings) {
  crossings.points.Clear();
  crossings.occurrences.Clear();
  crossings.nodeVertices.Clear();
  crossings.hasMerged = false;
  crossings.isMoved = false;
  crossings.isAbandoned = false;
  crossings.isNode.Fill(input.points.Size(), 0);
  crossings.parents.Resize(input.points.Size());
  crossings.reaches.Resize(input.points.Size());
  if (input.sections.IsEmpty()) return;
  for (const Contour& contour : input.contours) {
    if (!contour.IsLine()) continue;
    MakeNode(crossings, contour.first);
    MakeNode(crossings, contour.End());
  }
  EdgePairs pairs(input, crossings, nullptr, input.tolerance);
  TileSearch search(input, input.tolerance, crossings.tiles, pairs);
  search.Run();
  crossings.isAbandoned = search.IsAbandoned();
  if (!crossings.isMoved) OrderNodes(input, crossings);
}

void FindActiveEdges(const Input& input, Crossings& crossings, Buffer<std::uint8_t>& isActive) {
  if (crossings.isAbandoned) return isActive.Fill(input.points.Size(), 1);
  isActive.Fill(input.points.Size(), 0);
  const double tolerance = ACTIVE_DISTANCE * input.tolerance;
  EdgePairs pairs(input, crossings, &isActive, tolerance);
  TileSearch search(input, tolerance, crossings.tiles, pairs);
  search.Run();
  if (search.IsAbandoned()) return isActive.Fill(input.points.Size(), 1);
  for (const Contour& contour : input.contours) {
    ActivateShortEdges(input, contour, 2.0 * tolerance, isActive);
  }
}

}  // namespace shr::gpc
