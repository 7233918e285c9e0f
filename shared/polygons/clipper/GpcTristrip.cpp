// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Triangle strips are cut from clean contours, which cross nowhere, by a scan line that stops at
// every vertex and keeps the edges it meets from left to right (M. I. Shamos and D. Hoey,
// "Geometric Intersection Problems", 1976). Vertices come in the order of y, those of one height in
// the order of x, as if the scan line were turned a little: so a level edge rises like any other,
// from its left end to its right one, and no two vertices come at once.
//
// Every second gap between edges is inside: a span, which has a strip. At a vertex the edges that
// end there, or pass through it where contours touch, make way for those that go on from there. The
// spans between them shrink to the vertex and end, others begin in it. A span beside them goes on
// when it has the vertex for an end before and after; its strip gets two points more, one on either
// side. All other spans are left alone however many vertices go by. The sides of a strip are
// straight between its points, so its triangles cover the span and nothing else.
//
// Level edges make spans without height. So a strip keeps one level for each height: one that has
// just begun takes the last of several, as that is what lies above; one that has come from below
// ends with the first, and another begins.
//
// The order of edges is exact. They are kept in a search tree that is balanced by fixed pseudo-
// random priorities (R. Seidel and C. R. Aragon, "Randomized Search Trees", 1996), so the cost is
// O(n log n).

#include <algorithm>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcBuffer.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

using gpc::Buffer;
using gpc::Index;
using gpc::IsSame;
using gpc::NONE;
using gpc::UNIT;

bool IsBefore(const Vec2d& a, const Vec2d& b) {
  return a.y < b.y || (a.y == b.y && a.x < b.x);
}

/// An edge from the end that the scan line meets first, with its place in the search tree.
struct RisingEdge {
  Vec2d bottom;
  Vec2d top;
  Index strip = NONE;  ///< of the span on its right; NONE when that is outside
  Index left = NONE;   ///< children and parent in the tree
  Index right = NONE;
  Index parent = NONE;
  Index before = NONE;  ///< neighbours on the scan line
  Index after = NONE;
};

/// The edges that the scan line meets, from left to right.
class ActiveEdges {
public:
  explicit ActiveEdges(Buffer<RisingEdge>& edges) : edges_(edges) {}

  /// Returns the first edge that does not pass on the left of a point.
  Index FindNotLeftOf(const Vec2d& point) const {
    Index found = NONE;
    for (Index i = root_; i != NONE;) {
      const RisingEdge& edge = edges_[i];
      if (OrientationSign(edge.bottom, edge.top, point) < 0) {
        i = edge.right;
      } else {
        found = i;
        i = edge.left;
      }
    }
    return found;
  }
  Index Last() const { return last_; }

  /// Inserts an edge behind another one, or as the first.
  void InsertAfter(Index before, Index added) {
    RisingEdge& edge = edges_[added];
    const Index after = before == NONE ? first_ : edges_[before].after;
    edge.left = edge.right = edge.parent = NONE;
    edge.before = before;
    edge.after = after;
    (before == NONE ? first_ : edges_[before].after) = added;
    (after == NONE ? last_ : edges_[after].before) = added;
    if (before != NONE && edges_[before].right == NONE) {
      edges_[before].right = added;
      edge.parent = before;
    } else if (after != NONE) {
      edges_[after].left = added;
      edge.parent = after;
    } else {
      root_ = added;
    }
    while (edge.parent != NONE && Priority(added) > Priority(edge.parent)) RotateUp(added);
  }

  void Remove(Index removed) {
    RisingEdge& edge = edges_[removed];
    while (edge.left != NONE || edge.right != NONE) {
      const bool takesLeft =
          edge.right == NONE || (edge.left != NONE && Priority(edge.left) > Priority(edge.right));
      RotateUp(takesLeft ? edge.left : edge.right);
    }
    LinkFor(removed) = NONE;
    (edge.before == NONE ? first_ : edges_[edge.before].after) = edge.after;
    (edge.after == NONE ? last_ : edges_[edge.after].before) = edge.before;
  }

private:
  static Index Priority(Index edge) {
    std::uint64_t bits = (edge + 1) * 0x9E3779B97F4A7C15u;
    bits ^= bits >> 32;
    return static_cast<Index>(bits * 0xD6E8FEB86659FD93u >> 32);
  }

  /// Returns what leads to an edge from above.
  Index& LinkFor(Index i) {
    const Index parent = edges_[i].parent;
    if (parent == NONE) return root_;
    return edges_[parent].left == i ? edges_[parent].left : edges_[parent].right;
  }

  /// Exchanges an edge with its parent.
  void RotateUp(Index i) {
    const Index parent = edges_[i].parent;
    LinkFor(parent) = i;
    const bool isLeft = edges_[parent].left == i;
    Index& inner = isLeft ? edges_[i].right : edges_[i].left;
    (isLeft ? edges_[parent].left : edges_[parent].right) = inner;
    if (inner != NONE) edges_[inner].parent = parent;
    inner = parent;
    edges_[i].parent = edges_[parent].parent;
    edges_[parent].parent = i;
  }

  Buffer<RisingEdge>& edges_;
  Index root_ = NONE;
  Index first_ = NONE;
  Index last_ = NONE;
};

/// The ends of a span at one height.
struct Level {
  double y;
  double left;
  double right;
  Index next;  ///< of the same strip
};

struct Strip {
  Index first;
  Index last;
};

class StripCutter {
public:
  explicit StripCutter(const GpcPolygon& polygon) {
    CollectEdges(polygon);
    std::sort(edges_.begin(), edges_.end(), [](const RisingEdge& a, const RisingEdge& b) {
      if (!IsSame(a.bottom, b.bottom)) return IsBefore(a.bottom, b.bottom);
      return OrientationSign(a.bottom, a.top, b.top) < 0;
    });
    byTop_.Resize(edges_.Size());
    for (Index i = 0; i < edges_.Size(); ++i) byTop_[i] = i;
    std::sort(byTop_.begin(), byTop_.end(),
              [this](Index a, Index b) { return IsBefore(edges_[a].top, edges_[b].top); });
  }

  void Run() {
    Index begun = 0;
    Index ended = 0;
    const Index count = edges_.Size();
    while (ended < count) {
      Vec2d point = edges_[byTop_[ended]].top;
      if (begun < count && IsBefore(edges_[begun].bottom, point)) point = edges_[begun].bottom;
      const Index firstBegun = begun;
      while (begun < count && IsSame(edges_[begun].bottom, point)) ++begun;
      while (ended < count && IsSame(edges_[byTop_[ended]].top, point)) ++ended;
      HandleVertex(point, firstBegun, begun);
    }
  }

  GpcTristrip Take() const {
    Index count = 0;
    for (const Strip& strip : strips_) count += strip.first != strip.last;
    GpcTristripHolder result;
    if (count == 0) return {};
    result.record.strips = static_cast<GpcContour*>(
        GpcAlloc(count * sizeof(GpcContour), UNIT, __LINE__, L"tristrip list creation"));
    for (const Strip& strip : strips_) {
      if (strip.first != strip.last) AppendStrip(strip, result.record);
    }
    return std::exchange(result.record, {});
  }

private:
  void CollectEdges(const GpcPolygon& polygon) {
    for (int i = 0; i < polygon.contourCount; ++i) {
      const GpcContour& contour = polygon.contours[i];
      for (int j = 0; j < contour.vertexCount; ++j) {
        const Vec2d& a = contour.vertices[j];
        const Vec2d& b = contour.vertices[j + 1 == contour.vertexCount ? 0 : j + 1];
        RisingEdge edge;
        edge.bottom = IsBefore(a, b) ? a : b;
        edge.top = IsBefore(a, b) ? b : a;
        edges_.Append(edge);
      }
    }
  }

  static double GetX(const RisingEdge& edge, double y) {
    const double t = (y - edge.bottom.y) / (edge.top.y - edge.bottom.y);
    const double x = edge.bottom.x + t * (edge.top.x - edge.bottom.x);
    const auto [low, high] = std::minmax(edge.bottom.x, edge.top.x);
    return std::clamp(x, low, high);
  }

  /// Exchanges the edges that end at a vertex or pass through it for those that go on from there.
  void HandleVertex(const Vec2d& vertex, Index firstBegun, Index endBegun) {
    const Index first = active_.FindNotLeftOf(vertex);
    const Index left = first == NONE ? active_.Last() : edges_[first].before;
    const Index right = FindThrough(vertex, first);
    const double leftX = left == NONE ? vertex.x : std::min(GetX(edges_[left], vertex.y), vertex.x);
    const double rightX =
        right == NONE ? vertex.x : std::max(GetX(edges_[right], vertex.y), vertex.x);
    const Index leftStrip = left == NONE ? NONE : edges_[left].strip;
    const Index rightStrip = through_.IsEmpty() ? leftStrip : edges_[through_.Back()].strip;
    FindGoing(vertex, firstBegun, endBegun);
    const bool isOdd = going_.Size() % 2 != 0;
    if (((leftStrip != NONE) != isOdd) != (rightStrip != NONE)) throw GPCException(UNIT, __LINE__);

    for (Index i = 0; i + 1 < through_.Size(); ++i) {
      Close(edges_[through_[i]].strip, {vertex.y, vertex.x, vertex.x, NONE});
    }
    for (const Index edge : through_) active_.Remove(edge);
    const Level leftLevel = {vertex.y, leftX, vertex.x, NONE};
    const Level rightLevel = {vertex.y, vertex.x, rightX, NONE};
    const Level wholeLevel = {vertex.y, leftX, rightX, NONE};
    if (going_.IsEmpty()) {
      Close(leftStrip, leftLevel);
      Close(rightStrip, rightLevel);
      if (leftStrip != NONE) edges_[left].strip = Begin(wholeLevel);
      return;
    }
    if (through_.IsEmpty()) Close(leftStrip, wholeLevel);
    if (leftStrip != NONE) {
      edges_[left].strip = through_.IsEmpty() ? Begin(leftLevel) : GoOn(leftStrip, leftLevel);
    }
    bool isInside = leftStrip != NONE;
    Index before = left;
    for (const Index edge : going_) {
      isInside = !isInside;
      active_.InsertAfter(before, edge);
      const bool beginsHere = isInside && edge != going_.Back();
      edges_[edge].strip = beginsHere ? Begin({vertex.y, vertex.x, vertex.x, NONE}) : NONE;
      before = edge;
    }
    if (!isInside) return;
    edges_[before].strip = through_.IsEmpty() ? Begin(rightLevel) : GoOn(rightStrip, rightLevel);
  }

  /// Collects the edges through a vertex from the first on and returns the one behind them.
  Index FindThrough(const Vec2d& vertex, Index first) {
    through_.Clear();
    Index i = first;
    for (; i != NONE; i = edges_[i].after) {
      const RisingEdge& edge = edges_[i];
      if (OrientationSign(edge.bottom, edge.top, vertex) != 0) break;
      through_.Append(i);
    }
    return i;
  }

  /// Collects the edges that go on from a vertex, from left to right.
  void FindGoing(const Vec2d& vertex, Index firstBegun, Index endBegun) {
    going_.Clear();
    for (Index i = firstBegun; i < endBegun; ++i) going_.Append(i);
    for (const Index i : through_) {
      if (!IsSame(edges_[i].top, vertex)) going_.Append(i);
    }
    if (going_.Size() == endBegun - firstBegun) return;
    std::sort(going_.begin(), going_.end(), [&](Index a, Index b) {
      return OrientationSign(vertex, edges_[a].top, edges_[b].top) < 0;
    });
  }

  // Strips.

  Index Begin(const Level& level) {
    const Index number = levels_.Size();
    levels_.Append(level);
    strips_.Append({number, number});
    return strips_.Size() - 1;
  }

  void AddLevel(Strip& strip, const Level& level) {
    levels_[strip.last].next = levels_.Size();
    strip.last = levels_.Size();
    levels_.Append(level);
  }

  /// Returns the strip of a span beyond a level: its own, or a new one if that has ended here.
  Index GoOn(Index number, const Level& level) {
    Strip& strip = strips_[number];
    Level& last = levels_[strip.last];
    if (last.y != level.y) {
      AddLevel(strip, level);
      return number;
    }
    if (last.left == level.left && last.right == level.right) return number;
    if (strip.first != strip.last) return Begin(level);
    last = level;
    return number;
  }

  /// Ends the strip of a span; NONE has none.
  void Close(Index number, const Level& level) {
    if (number == NONE) return;
    Strip& strip = strips_[number];
    if (levels_[strip.last].y != level.y) AddLevel(strip, level);
  }

  void AppendStrip(const Strip& strip, GpcTristrip& result) const {
    Index count = 0;
    for (Index i = strip.first; i != NONE; i = levels_[i].next) count += CountPoints(strip, i);
    auto* vertices =
        static_cast<Vec2d*>(GpcAlloc(count * sizeof(Vec2d), UNIT, __LINE__, L"tristrip creation"));
    result.strips[result.stripCount++] = {static_cast<int>(count), vertices};
    for (Index i = strip.first; i != NONE; i = levels_[i].next) {
      const Level& level = levels_[i];
      *vertices++ = {level.left, level.y};
      if (CountPoints(strip, i) == 2) *vertices++ = {level.right, level.y};
    }
  }

  /// Points between the ends of a strip lie on the left and the right side by turns.
  Index CountPoints(const Strip& strip, Index i) const {
    const bool isEnd = i == strip.first || i == strip.last;
    return isEnd && levels_[i].left == levels_[i].right ? 1 : 2;
  }

  Buffer<RisingEdge> edges_{L"edge table creation"};  // in the order of their bottoms
  Buffer<Index> byTop_{L"edge table creation"};
  ActiveEdges active_{edges_};
  Buffer<Index> through_{L"active edge creation"};
  Buffer<Index> going_{L"active edge creation"};
  Buffer<Strip> strips_{L"tristrip node creation"};
  Buffer<Level> levels_{L"tristrip vertex creation"};
};

}  // namespace

void gpc_tristrip_clip(gpc_op operation, const GpcPolygon& subject, const GpcPolygon& clip,
                       GpcTristrip& result) {
  GpcPolygonHolder polygon;
  gpc_polygon_clip(operation, subject, clip, polygon.record);
  StripCutter cutter(polygon.record);
  cutter.Run();
  result = cutter.Take();
}

void gpc_polygon_to_tristrip(const GpcPolygon& polygon, GpcTristrip& result) {
  gpc_tristrip_clip(GPC_UNION, polygon, GpcPolygon(), result);
}

}  // namespace shr
