// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// After the last stage, for who asks: which outer contour does each hole of the result lie in? The
// contours of one polygon border one face of the result, so the sides of chains are brought
// together by faces: neighbours around a node across the wedge between them, both sides of a chain
// that is no border, and for each connected part that lies within the result the sides that look
// outward with the side above the edge next below its lowest point. A face has one outer contour,
// as contours that touch themselves have been cut apart; all others are its holes.

#include <algorithm>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcResult.h"

namespace shr::gpc {
namespace {

/// A piece of an edge between two points of the graph, from left to right.
struct Piece {
  Vec2d left;
  Vec2d right;
  Index above;  ///< the side above it
};

/// True when a piece lies above another one; both span the same x.
bool IsAbove(const Piece& piece, const Piece& other) {
  if (piece.left.x < other.left.x) {
    const int side = OrientationSign(piece.left, piece.right, other.left);
    return (side != 0 ? side : OrientationSign(piece.left, piece.right, other.right)) < 0;
  }
  const int side = OrientationSign(other.left, other.right, piece.left);
  return (side != 0 ? side : OrientationSign(other.left, other.right, piece.right)) > 0;
}

/// Finds the piece of the graph next below a point.
class PieceSearch {
public:
  PieceSearch(const Input& input, const Crossings& crossings, const Graph& graph,
              const SlabIndex& slabs)
      : input_(input), crossings_(crossings), graph_(graph), slabs_(slabs) {}

  /// Returns the side above the piece next below a point, NONE when nothing is below.
  Index FindSideBelow(const Vec2d& point) {
    point_ = point;
    hasBest_ = false;
    slabs_.ForEachSection(input_, point, [this](const Section& section) {
      if (hasBest_ && section.box.yMax < LowestOf(best_)) return;
      for (Index i = 0; i < section.edgeCount; ++i) TakeEdge(section, section.firstEdge + i);
    });
    return hasBest_ ? best_.above : NONE;
  }

private:
  static double LowestOf(const Piece& piece) { return std::min(piece.left.y, piece.right.y); }

  void TakeEdge(const Section& section, Index edge) {
    const Vec2d& a = input_.points[edge];
    const Vec2d& b = input_.points[edge + 1];
    if (!SlabIndex::IsBelow(a, b, point_)) return;
    if (hasBest_ && std::max(a.y, b.y) < LowestOf(best_)) return;
    if (!graph_.hasNodes[section.contour]) {
      // Counter-clockwise, the inside is on the left.
      const bool isLeftInside = input_.TurnAtLowest(input_.contours[section.contour]) > 0;
      TakePiece(a, b, SideOfLoop(graph_, section.contour, isLeftInside),
                SideOfLoop(graph_, section.contour, !isLeftInside));
      return;
    }
    const Occurrence* first =
        std::lower_bound(crossings_.occurrences.begin(), crossings_.occurrences.end(), edge,
                         [](const Occurrence& o, Index e) { return o.edge < e; });
    const Occurrence* end =
        std::upper_bound(first, std::as_const(crossings_.occurrences).end(), edge,
                         [](Index e, const Occurrence& o) { return e < o.edge; });
    if (first == end || first->point != edge) {
      const Half half = 2 * FindChain(input_, graph_, section.contour, edge);
      TakePiece(a, first == end ? EndOf(section.contour, edge) : PointOf(*first), half, half ^ 1);
    }
    // Of many pieces only those near the point's x.
    const bool isForward = a.x < b.x;
    const Occurrence* near = std::partition_point(first, end, [&](const Occurrence& o) {
      const double x = PointOf(o).x;
      return isForward ? x <= point_.x : x > point_.x;
    });
    const Occurrence* low = near - first > SPAN ? near - SPAN : first;
    const Occurrence* high = end - near > SPAN ? near + SPAN : end;
    for (const Occurrence* i = low; i < high; ++i) {
      TakeChainAt(*i, i + 1 == end ? EndOf(section.contour, edge) : PointOf(i[1]));
    }
  }

  /// Pieces of a steep edge are in order along it; rounding can shuffle the x of few of them.
  static constexpr std::ptrdiff_t SPAN = 4;

  Vec2d PointOf(const Occurrence& occurrence) const {
    return graph_.nodePoints[graph_.nodeOfPoint[occurrence.point]];
  }
  /// Returns the end of an edge as the graph has it.
  Vec2d EndOf(Index contourIndex, Index edge) const {
    const Index vertex = input_.contours[contourIndex].VertexAt(edge + 1);
    if (!crossings_.isNode[vertex]) return input_.points[vertex];
    return graph_.nodePoints[graph_.nodeOfPoint[vertex]];
  }

  /// Takes the piece from a node to a point.
  void TakeChainAt(const Occurrence& occurrence, const Vec2d& to) {
    const Index node = graph_.nodeOfPoint[occurrence.point];
    const Vec2d from = graph_.nodePoints[node];
    if (!SlabIndex::IsBelow(from, to, point_)) return;
    for (Index slot = graph_.nodeStarts[node]; slot < graph_.nodeEnds[node]; ++slot) {
      const Half half = graph_.slots[slot];
      if (!IsSame(graph_.FarPoint(input_, half), to)) continue;
      TakePiece(from, to, half, half ^ 1);
      return;
    }
  }

  void TakePiece(const Vec2d& from, const Vec2d& to, Index left, Index right) {
    if (!SlabIndex::IsBelow(from, to, point_)) return;
    const Piece piece = from.x < to.x ? Piece{from, to, left} : Piece{to, from, right};
    if (hasBest_ && !IsAbove(piece, best_)) return;
    best_ = piece;
    hasBest_ = true;
  }

  const Input& input_;
  const Crossings& crossings_;
  const Graph& graph_;
  const SlabIndex& slabs_;
  Vec2d point_;
  Piece best_;
  bool hasBest_ = false;
};

class FaceFinder {
public:
  FaceFinder(gpc_op operation, const Input& input, const Crossings& crossings, const Graph& graph,
             const Labels& labels, Result& result)
      : isInResult_(operation),
        input_(input),
        crossings_(crossings),
        graph_(graph),
        labels_(labels),
        result_(result) {}

  void Run() {
    const Index sides = 2 * graph_.chains.Size() + 2 * input_.contours.Size();
    result_.faces.Resize(sides);
    for (Index i = 0; i < sides; ++i) result_.faces[i] = i;
    UniteWedges();
    UniteAcross();
    UniteParts();
    SetOwners();
  }

private:
  Index Find(Index side) {
    Buffer<Index>& faces = result_.faces;
    while (faces[side] != side) side = faces[side] = faces[faces[side]];
    return side;
  }
  void Unite(Index a, Index b) {
    a = Find(a);
    b = Find(b);
    result_.faces[std::max(a, b)] = std::min(a, b);
  }

  Operands LabelOf(Half half) const {
    const Sides sides = labels_.sides[half / 2];
    return half % 2 == 0 ? LeftOf(sides) : RightOf(sides);
  }

  void UniteWedges() {
    for (Index node = 0; node < graph_.nodePoints.Size(); ++node) {
      const Index start = graph_.nodeStarts[node];
      const Index end = graph_.nodeEnds[node];
      for (Index slot = start; slot < end; ++slot) {
        const Half half = graph_.slots[slot];
        if (!isInResult_[LabelOf(half)]) continue;
        Unite(half, graph_.slots[slot + 1 == end ? start : slot + 1] ^ 1);
      }
    }
  }

  /// Joins the sides of what lies inside the result.
  void UniteAcross() {
    for (Index i = 0; i < graph_.chains.Size(); ++i) {
      if (graph_.parities[i] == MERGED) continue;
      const Sides sides = labels_.sides[i];
      if (isInResult_[LeftOf(sides)] && isInResult_[RightOf(sides)]) Unite(2 * i, 2 * i + 1);
    }
    for (Index i = 0; i < input_.contours.Size(); ++i) {
      if (graph_.hasNodes[i]) continue;
      if (isInResult_[labels_.loopInsides[i]] && isInResult_[labels_.loopOutsides[i]]) {
        Unite(SideOfLoop(graph_, i, false), SideOfLoop(graph_, i, true));
      }
    }
  }

  void UniteParts() {
    PieceSearch search(input_, crossings_, graph_, labels_.slabs);
    for (const Place& part : labels_.parts) {
      const Operands around =
          graph_.hasNodes[part.contour] ? LabelOf(part.side) : labels_.loopOutsides[part.contour];
      if (!isInResult_[around]) continue;
      const Index below = search.FindSideBelow(input_.points[input_.contours[part.contour].lowest]);
      if (below != NONE) Unite(part.side, below);
    }
  }

  void SetOwners() {
    Buffer<Index>& outers = result_.outers;
    outers.Fill(result_.faces.Size(), NONE);
    for (Index i = 0; i < result_.contours.Size(); ++i) {
      const ResultContour& contour = result_.contours[i];
      if (!contour.isHole) outers[Find(contour.side)] = i;
    }
    for (ResultContour& contour : result_.contours) {
      if (!contour.isHole) continue;
      contour.owner = outers[Find(contour.side)];
      if (contour.owner == NONE) throw GPCException(UNIT, __LINE__);
    }
  }

  Membership isInResult_;
  const Input& input_;
  const Crossings& crossings_;
  const Graph& graph_;
  const Labels& labels_;
  Result& result_;
};

}  // namespace

void FindOwners(gpc_op operation, const Input& input, const Crossings& crossings,
                const Graph& graph, const Labels& labels, Result& result) {
  const bool hasHoles = std::any_of(result.contours.begin(), result.contours.end(),
                                    [](const ResultContour& contour) { return contour.isHole; });
  if (hasHoles) FaceFinder(operation, input, crossings, graph, labels, result).Run();
}

}  // namespace shr::gpc
