// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The round that holds on every input: snap rounding on a fixed grid.
//
// The plane first: which edges come within some pixels of another one? Those are active; all others
// keep out of what follows, with the bits of their vertices. Ends of active edges are rounded to
// points of the grid, whose pitch is a power of two and at most the snap distance, so their
// coordinates are whole numbers and every question about them has an exact answer (GpcGrid.h).
// Edges that have become equal become one. Then:
//
// 1. All crossings are found (GpcStripSearch.h). The pixels, unit squares around grid points, that
//    hold a crossing or an end are hot.
// 2. Every edge is led through the centres of all hot pixels that it passes (GpcPixelTree.h), in
//    the order in which it passes them. What crossed in a pixel now meets in its centre. An edge
//    moves by at most half a pixel, and no two edges cross anew: while everything moves from its
//    place to the centre of its pixel, the pixels shrink to their centres at the same pace, and an
//    edge that was outside a pixel stays outside of what is left of it (Guibas and Marimont).
// 3. A vertex that is alone for some pixels around and whose pixel holds no other vertex gets its
//    bits back. That moves the edges at it by up to half a pixel again. Wherever a hot pixel lies
//    so near to such an edge that this might matter, the side on which it lies is compared before
//    and after, exactly; where it changed, all involved stay on the grid.
// 4. The contours are written anew, with every pixel that they pass as a vertex. Those passed twice
//    are nodes.
//
// Nothing here depends on a tolerance and nothing is done twice: an end moves by half a pixel when
// it is rounded, an edge by half a pixel more when it is led through the centres or given back a
// vertex.
//
// Sources: D. H. Greene and F. F. Yao, "Finite-Resolution Computational Geometry", 1986; L. J.
// Guibas and D. H. Marimont, "Rounding Arrangements Dynamically", International Journal of
// Computational Geometry and Applications 8, 1998; J. D. Hobby, "Practical Segment Intersection
// with Finite Precision Output", 1999; M. de Berg, D. Halperin and M. Overmars, "An
// Intersection-Sensitive Algorithm for Snap Rounding", 2007.

#include "shared/polygons/clipper/GpcSnap.h"

#include <algorithm>
#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcCrossings.h"

namespace shr::gpc {
namespace {

/// The crossings that were found are made distinct when there are so many.
constexpr Index MANY_CROSSINGS = 1u << 16;

class Snapper {
public:
  Snapper(const Input& input, const Buffer<std::uint8_t>& isActive, SnapMemory& grid,
          ContourTable& snapped, Crossings& crossings)
      : input_(input), isActive_(isActive), grid_(grid), snapped_(snapped), crossings_(crossings) {}

  void Run() {
    const int exponent = std::ilogb(input_.largest);
    pitch_ = std::ldexp(1.0, exponent - (GRID_BITS - 1));
    perPitch_ = std::ldexp(1.0, (GRID_BITS - 1) - exponent);
    RoundEnds();
    JoinEqualEdges();
    FindHotPixels();
    LeadEdges();
    PlacePixels();
    WriteContours();
    MarkNodes();
  }

private:
  // Ends.

  std::int64_t Round(double value) const {
    const double scaled = value * perPitch_;  // exact
    const double whole = std::floor(scaled);
    return static_cast<std::int64_t>(whole) + (scaled - whole >= 0.5);
  }
  GridPoint Round(const Vec2d& point) const { return {Round(point.x), Round(point.y)}; }
  Vec2d Unround(const GridPoint& point) const {
    return {static_cast<double>(point.x) * pitch_, static_cast<double>(point.y) * pitch_};
  }

  /// Calls `handle` with each active edge and its two vertices.
  template <class Handle>
  void ForEachActive(const Handle& handle) const {
    for (const Contour& contour : input_.contours) {
      for (Index edge = contour.first; edge < contour.End(); ++edge) {
        if (isActive_[edge]) handle(edge, edge, contour.VertexAt(edge + 1));
      }
    }
  }

  void RoundEnds() {
    grid_.pixelOfVertex.Fill(input_.points.Size(), NONE);
    grid_.ends.Clear();
    const auto add = [this](Index vertex) {
      if (grid_.pixelOfVertex[vertex] != NONE) return;
      grid_.pixelOfVertex[vertex] = 0;
      grid_.ends.Append({Round(input_.points[vertex]), vertex});
    };
    ForEachActive([&](Index, Index from, Index to) {
      add(from);
      add(to);
    });
    std::sort(grid_.ends.begin(), grid_.ends.end(), [](const RoundedEnd& a, const RoundedEnd& b) {
      return a.point < b.point || (a.point == b.point && a.vertex < b.vertex);
    });
    grid_.pixels.Clear();
    grid_.places.Clear();
    grid_.isAlone.Clear();
    for (const RoundedEnd& end : grid_.ends) {
      const Vec2d& source = input_.points[end.vertex];
      if (grid_.pixels.IsEmpty() || !(grid_.pixels.Back() == end.point)) {
        grid_.pixels.Append(end.point);
        grid_.places.Append(source);
        grid_.isAlone.Append(1);
      } else if (!IsSame(grid_.places.Back(), source)) {
        grid_.isAlone.Back() = 0;
      }
      grid_.pixelOfVertex[end.vertex] = grid_.pixels.Size() - 1;
    }
    endCount_ = grid_.pixels.Size();
  }

  // Edges.

  void JoinEqualEdges() {
    grid_.edgeKeys.Clear();
    ForEachActive([&](Index edge, Index from, Index to) {
      const Index a = grid_.pixelOfVertex[from];
      const Index b = grid_.pixelOfVertex[to];
      if (a != b) grid_.edgeKeys.Append({std::min(a, b), std::max(a, b), edge});
    });
    std::sort(grid_.edgeKeys.begin(), grid_.edgeKeys.end(), [](const EdgeKey& a, const EdgeKey& b) {
      if (a.left != b.left) return a.left < b.left;
      return a.right < b.right || (a.right == b.right && a.edge < b.edge);
    });
    grid_.edges.Clear();
    grid_.gridEdgeOf.Fill(input_.points.Size(), NONE);
    for (const EdgeKey& key : grid_.edgeKeys) {
      if (grid_.edges.IsEmpty() || grid_.edges.Back().left != key.left ||
          grid_.edges.Back().right != key.right) {
        grid_.edges.Append({grid_.pixels[key.left], grid_.pixels[key.right], key.left, key.right});
      }
      grid_.gridEdgeOf[key.edge] = grid_.edges.Size() - 1;
    }
  }

  // Hot pixels: the ends come first, in order, then those of crossings.

  void FindHotPixels() {
    grid_.crossings.Clear();
    Index limit = MANY_CROSSINGS;
    const auto report = [&](Index a, Index b) {
      const GridPoint pixel = GetCrossingPixel(grid_.edges[a], grid_.edges[b]);
      if (!grid_.crossings.IsEmpty() && grid_.crossings.Back() == pixel) return;
      grid_.crossings.Append(pixel);
      if (grid_.crossings.Size() < limit) return;
      MakeDistinct();
      limit = std::max(MANY_CROSSINGS, 2 * grid_.crossings.Size());
    };
    StripSearch(grid_.pixels, grid_.edges, grid_.strips, report).Run();
    MakeDistinct();
    Index next = 0;
    for (const GridPoint& pixel : grid_.crossings) {
      while (next < endCount_ && grid_.pixels[next] < pixel) ++next;
      if (next < endCount_ && grid_.pixels[next] == pixel) continue;
      grid_.pixels.Append(pixel);
      grid_.places.Append(Unround(pixel));
      grid_.isAlone.Append(0);
    }
  }

  void MakeDistinct() {
    std::sort(grid_.crossings.begin(), grid_.crossings.end());
    const GridPoint* end = std::unique(grid_.crossings.begin(), grid_.crossings.end());
    grid_.crossings.Truncate(static_cast<Index>(end - grid_.crossings.Data()));
  }

  void LeadEdges() {
    grid_.tree.Build(grid_.pixels);
    grid_.stops.Clear();
    grid_.stopStarts.Clear();
    grid_.neighbors.Clear();
    for (Index i = 0; i < grid_.edges.Size(); ++i) {
      const GridEdge& edge = grid_.edges[i];
      const Index first = grid_.stops.Size();
      grid_.stopStarts.Append(first);
      grid_.tree.Find(edge, [&](Index pixel, Passage passage) {
        if (passage == Passage::Through) {
          grid_.stops.Append(pixel);
        } else {
          grid_.neighbors.Append({i, pixel});
        }
        MarkCrowded(edge.left, pixel);
        MarkCrowded(edge.right, pixel);
      });
      std::sort(grid_.stops.begin() + first, grid_.stops.end(),
                [&](Index a, Index b) { return IsBefore(edge, grid_.pixels[a], grid_.pixels[b]); });
    }
    grid_.stopStarts.Append(grid_.stops.Size());
  }

  /// An end with another pixel beside it stays on the grid.
  void MarkCrowded(Index end, Index pixel) {
    if (end == pixel) return;
    const GridPoint& a = grid_.pixels[end];
    const GridPoint& b = grid_.pixels[pixel];
    if (std::abs(a.x - b.x) > NEAR_PIXELS || std::abs(a.y - b.y) > NEAR_PIXELS) return;
    grid_.isAlone[end] = 0;
    grid_.isAlone[pixel] = 0;
  }

  static bool IsFlat(const GridEdge& edge) { return edge.dx >= std::abs(edge.dy); }

  /// Returns which of two pixels an edge passes first.
  static bool IsBefore(const GridEdge& edge, const GridPoint& a, const GridPoint& b) {
    const bool rises = edge.dy >= 0;
    if (IsFlat(edge)) return a.x != b.x ? a.x < b.x : rises ? a.y < b.y : a.y > b.y;
    return a.y != b.y ? (rises ? a.y < b.y : a.y > b.y) : a.x < b.x;
  }

  // Places.

  void PlacePixels() {
    for (Index i = 0; i < endCount_; ++i) {
      const Vec2d center = Unround(grid_.pixels[i]);
      if (!grid_.isAlone[i]) grid_.places[i] = center;
      if (IsSame(grid_.places[i], center)) grid_.isAlone[i] = 0;
    }
    CollectTriples();
    while (SettleTriples()) {
    }
  }

  bool IsOffGrid(Index pixel) const { return grid_.isAlone[pixel] != 0; }

  void Settle(Index pixel) {
    grid_.isAlone[pixel] = 0;
    grid_.places[pixel] = Unround(grid_.pixels[pixel]);
  }

  /// Collects the pixels near a piece of an edge where one of the three is off the grid.
  void CollectTriples() {
    grid_.triples.Clear();
    for (const EdgeNeighbor& neighbor : grid_.neighbors) {
      const GridEdge& edge = grid_.edges[neighbor.edge];
      const bool isFlat = IsFlat(edge);
      const bool rises = edge.dy >= 0;
      const auto along = [&](Index pixel) {
        const GridPoint& point = grid_.pixels[pixel];
        return isFlat ? point.x : rises ? point.y : -point.y;
      };
      const std::int64_t place = along(neighbor.pixel);
      const Index* begin = grid_.stops.Data() + grid_.stopStarts[neighbor.edge];
      const Index* end = grid_.stops.Data() + grid_.stopStarts[neighbor.edge + 1];
      const Index* stop =
          std::partition_point(begin + 1, end, [&](Index pixel) { return along(pixel) < place; });
      for (; stop != end && along(stop[-1]) <= place; ++stop) {
        const Triple triple{stop[-1], stop[0], neighbor.pixel};
        if (IsOffGrid(triple.from) || IsOffGrid(triple.to) || IsOffGrid(triple.pixel)) {
          grid_.triples.Append(triple);
        }
      }
    }
  }

  /// Puts those on the grid whose places would change a side. Returns whether there were any.
  bool SettleTriples() {
    bool isChanged = false;
    for (const Triple& triple : grid_.triples) {
      if (!IsOffGrid(triple.from) && !IsOffGrid(triple.to) && !IsOffGrid(triple.pixel)) continue;
      const int before =
          TurnOf(grid_.pixels[triple.from], grid_.pixels[triple.to], grid_.pixels[triple.pixel]);
      const int after = OrientationSign(grid_.places[triple.from], grid_.places[triple.to],
                                        grid_.places[triple.pixel]);
      if (before == after) continue;
      Settle(triple.from);
      Settle(triple.to);
      Settle(triple.pixel);
      isChanged = true;
    }
    return isChanged;
  }

  // Contours.

  void WriteContours() {
    snapped_.Clear();
    grid_.nextPixels.Clear();
    for (const Contour& contour : input_.contours) {
      const Index first = snapped_.points.Size();
      for (Index edge = contour.first; edge < contour.first + contour.count; ++edge) {
        AppendVertex(edge, first);
        AppendStops(edge, first);
      }
      if (contour.IsLine()) AppendVertex(contour.End(), first);
      EndContour(contour, first);
    }
  }

  void EndContour(const Contour& contour, Index first) {
    if (!contour.IsLine()) {
      while (snapped_.points.Size() > first + 1 && grid_.nextPixels.Back() != NONE &&
             grid_.nextPixels.Back() == grid_.nextPixels[first]) {
        Truncate(snapped_.points.Size() - 1);
      }
      if (snapped_.points.Size() < first + 3) return Truncate(first);
      Append(snapped_.points[first], NONE);
    }
    const Index count = snapped_.points.Size() - first - 1;
    if (count == 0) return Truncate(first);
    snapped_.contours.Append({first, count, first, contour.polygon, contour.operand});
  }

  void Append(const Vec2d& point, Index pixel) {
    snapped_.points.Append(point);
    grid_.nextPixels.Append(pixel);
  }

  void Truncate(Index size) {
    snapped_.points.Truncate(size);
    grid_.nextPixels.Truncate(size);
  }

  void AppendPixel(Index pixel, Index first) {
    if (snapped_.points.Size() > first && grid_.nextPixels.Back() == pixel) return;
    Append(grid_.places[pixel], pixel);
  }

  void AppendVertex(Index vertex, Index first) {
    const Index pixel = grid_.pixelOfVertex[vertex];
    if (pixel != NONE) return AppendPixel(pixel, first);
    Append(input_.points[vertex], NONE);
  }

  /// Appends the pixels that an edge passes.
  void AppendStops(Index edge, Index first) {
    const Index number = grid_.gridEdgeOf[edge];
    if (number == NONE) return;
    const Index begin = grid_.stopStarts[number];
    const Index end = grid_.stopStarts[number + 1];
    if (grid_.stops[begin] == grid_.pixelOfVertex[edge]) {
      for (Index i = begin + 1; i < end; ++i) AppendPixel(grid_.stops[i], first);
    } else {
      for (Index i = end - 1; i-- > begin;) AppendPixel(grid_.stops[i], first);
    }
  }

  /// Makes nodes of the pixels that are passed more than once, and of the tips of spikes.
  void MarkNodes() {
    crossings_.isNode.Fill(snapped_.points.Size(), 0);
    crossings_.parents.Resize(snapped_.points.Size());
    crossings_.nodeVertices.Clear();
    crossings_.points.Clear();
    crossings_.hasMerged = true;
    crossings_.occurrences.Clear();
    grid_.visits.Fill(grid_.pixels.Size(), 0);
    grid_.firstVertices.Fill(grid_.pixels.Size(), NONE);
    for (const Index pixel : grid_.nextPixels) {
      if (pixel != NONE) ++grid_.visits[pixel];
    }
    for (const Contour& contour : snapped_.contours) MarkNodesOf(contour);
  }

  void MarkNodesOf(const Contour& contour) {
    const bool isLine = contour.IsLine();
    const Index last = isLine ? contour.End() : contour.End() - 1;
    for (Index vertex = contour.first; vertex <= last; ++vertex) {
      const bool isEnd = isLine && (vertex == contour.first || vertex == last);
      const Index pixel = grid_.nextPixels[vertex];
      if (pixel == NONE && !isEnd) continue;
      const Index before = grid_.nextPixels[vertex == contour.first ? last : vertex - 1];
      const Index after = grid_.nextPixels[vertex == last ? contour.first : vertex + 1];
      const bool isTip = before == after && before != NONE;
      if (!isEnd && grid_.visits[pixel] < 2 && !isTip) continue;
      Index root = vertex;
      if (pixel != NONE) {
        Index& firstVertex = grid_.firstVertices[pixel];
        if (firstVertex == NONE) firstVertex = vertex;
        root = firstVertex;
      }
      crossings_.isNode[vertex] = 1;
      crossings_.parents[vertex] = root;
      crossings_.nodeVertices.Append(vertex);
      crossings_.occurrences.Append({vertex, vertex});
    }
  }

  const Input& input_;
  const Buffer<std::uint8_t>& isActive_;
  SnapMemory& grid_;
  ContourTable& snapped_;
  Crossings& crossings_;
  double pitch_ = 0.0;
  double perPitch_ = 0.0;
  Index endCount_ = 0;
};

}  // namespace

void SnapContours(const Input& input, const Buffer<std::uint8_t>& isActive, SnapMemory& memory,
                  ContourTable& snapped, Crossings& crossings) {
  Snapper(input, isActive, memory, snapped, crossings).Run();
}

}  // namespace shr::gpc
