// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Triangle strips are cut from clean contours, which cross nowhere, by a scan line that goes upward
// and keeps the edges it meets from left to right. Every second gap between them is inside: a span.
// At each level where edges end or begin, the spans that these touch are closed by a point on
// either side; other spans are left alone however many levels go by. A span whose sides both go on
// from there keeps its strip, any other begins a new one. The sides of a strip are straight between
// its points, so its triangles cover the span and nothing else.
//
// The order of edges is decided by exact orientation of their end points. Source of the scan line:
// B. R. Vatti, "A Generic Solution to Polygon Clipping", 1992.

#include <algorithm>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr {
namespace {

using gpc::Buffer;
using gpc::Index;
using gpc::IsSame;
using gpc::NONE;
using gpc::UNIT;

/// An edge that is not level, upward.
struct RisingEdge {
  Vec2d bottom;
  Vec2d top;
  Index strip;  ///< of the span on its right, if it is the left side of one
};

struct StripPoint {
  Vec2d point;
  Index next;
};

struct Strip {
  Index first = NONE;
  Index last = NONE;
  Index count = 0;
};

class StripCutter {
public:
  explicit StripCutter(const GpcPolygon& polygon) {
    CollectEdges(polygon);
    SortEdges();
  }

  void Run() {
    Index begun = 0;
    Index ended = 0;
    const Index count = edges_.Size();
    while (ended < count) {
      double y = edges_[byTop_[ended]].top.y;
      if (begun < count) y = std::min(y, edges_[byBottom_[begun]].bottom.y);
      const Index firstBegun = begun;
      const Index firstEnded = ended;
      while (begun < count && edges_[byBottom_[begun]].bottom.y == y) ++begun;
      while (ended < count && edges_[byTop_[ended]].top.y == y) ++ended;
      HandleLevel(y, {firstBegun, begun}, {firstEnded, ended});
    }
  }

  GpcTristrip Take() const {
    Index count = 0;
    for (const Strip& strip : strips_) count += strip.count >= 3;
    GpcTristripHolder result;
    if (count == 0) return {};
    result.record.strips = static_cast<GpcContour*>(
        GpcAlloc(count * sizeof(GpcContour), UNIT, __LINE__, L"tristrip list creation"));
    for (const Strip& strip : strips_) {
      if (strip.count >= 3) AppendStrip(strip, result.record);
    }
    return std::exchange(result.record, {});
  }

private:
  struct Part {
    Index begin;
    Index end;
  };

  void CollectEdges(const GpcPolygon& polygon) {
    for (int i = 0; i < polygon.contourCount; ++i) {
      const GpcContour& contour = polygon.contours[i];
      for (int j = 0; j < contour.vertexCount; ++j) {
        const Vec2d& a = contour.vertices[j];
        const Vec2d& b = contour.vertices[j + 1 == contour.vertexCount ? 0 : j + 1];
        if (a.y < b.y) edges_.Append({a, b, NONE});
        if (b.y < a.y) edges_.Append({b, a, NONE});
      }
    }
  }

  /// Orders the edges by their bottoms, of several at one point from left to right, and by their
  /// tops.
  void SortEdges() {
    byBottom_.Resize(edges_.Size());
    byTop_.Resize(edges_.Size());
    for (Index i = 0; i < edges_.Size(); ++i) byBottom_[i] = byTop_[i] = i;
    std::sort(byBottom_.begin(), byBottom_.end(), [this](Index a, Index b) {
      const RisingEdge& one = edges_[a];
      const RisingEdge& two = edges_[b];
      if (one.bottom.y != two.bottom.y) return one.bottom.y < two.bottom.y;
      if (one.bottom.x != two.bottom.x) return one.bottom.x < two.bottom.x;
      const int turn = OrientationSign(one.bottom, one.top, two.top);
      return turn != 0 ? turn < 0 : a < b;
    });
    std::sort(byTop_.begin(), byTop_.end(), [this](Index a, Index b) {
      const Vec2d& one = edges_[a].top;
      const Vec2d& two = edges_[b].top;
      return one.y != two.y ? one.y < two.y : a < b;
    });
  }

  /// Exchanges the edges that end at a level for those that begin there.
  void HandleLevel(double y, const Part& begins, const Part& ends) {
    places_.Clear();
    Index low = active_.Size();
    Index high = 0;
    for (Index i = ends.begin; i < ends.end; ++i) {
      const Index place = FindActive(byTop_[i]);
      places_.Append(place);
      low = std::min(low, place);
      high = std::max(high, place + 1);
    }
    for (Index i = begins.begin; i < begins.end; ++i) {
      const Index place = CountLeftOf(edges_[byBottom_[i]].bottom);
      low = std::min(low, place);
      high = std::max(high, place);
    }
    // Whole spans.
    low -= low % 2;
    high = std::min(high + high % 2, active_.Size());
    CloseSpans(y, low, high);
    Exchange(begins, low, high);
    OpenSpans(y, low);
  }

  /// Returns how many active edges are passed on the way from the left to a point. One through the
  /// point itself is not.
  Index CountLeftOf(const Vec2d& point) const {
    Index low = 0;
    Index high = active_.Size();
    while (low < high) {
      const Index middle = low + (high - low) / 2;
      const RisingEdge& edge = edges_[active_[middle]];
      if (OrientationSign(edge.bottom, edge.top, point) < 0) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  Index FindActive(Index edge) const {
    const Index size = active_.Size();
    const Index start = std::min(CountLeftOf(edges_[edge].top), size);
    for (Index i = start; i < size; ++i) {
      if (active_[i] == edge) return i;
      if (!IsSame(edges_[active_[i]].top, edges_[edge].top)) break;
    }
    // Edges that touch by rounding can be out of order.
    for (Index i = 0; i < size; ++i) {
      if (active_[i] == edge) return i;
    }
    throw GPCException(UNIT, __LINE__);
  }

  static double GetX(const RisingEdge& edge, double y) {
    if (y <= edge.bottom.y) return edge.bottom.x;
    if (y >= edge.top.y) return edge.top.x;
    const double t = (y - edge.bottom.y) / (edge.top.y - edge.bottom.y);
    const double x = edge.bottom.x + t * (edge.top.x - edge.bottom.x);
    return std::clamp(x, std::min(edge.bottom.x, edge.top.x), std::max(edge.bottom.x, edge.top.x));
  }

  /// Adds the ends of a span at a level to a strip, one point if they are the same.
  void AddLevel(Index strip, const RisingEdge& left, const RisingEdge& right, double y) {
    const double x = GetX(left, y);
    const double otherX = std::max(GetX(right, y), x);
    AddPoint(strips_[strip], {x, y});
    if (x != otherX) AddPoint(strips_[strip], {otherX, y});
  }

  void AddPoint(Strip& strip, const Vec2d& point) {
    const Index number = points_.Size();
    points_.Append({point, NONE});
    if (strip.count++ == 0) {
      strip.first = number;
    } else {
      points_[strip.last].next = number;
    }
    strip.last = number;
  }

  void CloseSpans(double y, Index low, Index high) {
    closed_.Clear();
    for (Index i = low; i + 1 < high; i += 2) {
      const RisingEdge& left = edges_[active_[i]];
      const RisingEdge& right = edges_[active_[i + 1]];
      AddLevel(left.strip, left, right, y);
      closed_.Append({{GetX(left, y), GetX(right, y)}, left.strip});
    }
  }

  /// Replaces the active edges from low to high.
  void Exchange(const Part& begins, Index low, Index high) {
    std::sort(places_.begin(), places_.end());
    changed_.Clear();
    Index nextPlace = 0;
    Index next = begins.begin;
    for (Index i = low; i < high; ++i) {
      if (nextPlace < places_.Size() && places_[nextPlace] == i) {
        ++nextPlace;
        continue;
      }
      const RisingEdge& edge = edges_[active_[i]];
      while (next < begins.end &&
             OrientationSign(edge.bottom, edge.top, edges_[byBottom_[next]].bottom) > 0) {
        changed_.Append(byBottom_[next++]);
      }
      changed_.Append(active_[i]);
    }
    while (next < begins.end) changed_.Append(byBottom_[next++]);
    const Index oldSize = active_.Size();
    const Index tail = oldSize - high;
    const Index newHigh = low + changed_.Size();
    active_.Resize(std::max(oldSize, newHigh + tail));
    std::memmove(active_.Data() + newHigh, active_.Data() + high, tail * sizeof(Index));
    std::copy(changed_.begin(), changed_.end(), active_.Data() + low);
    active_.Truncate(newHigh + tail);
  }

  /// Gives each span among the changed edges its strip.
  void OpenSpans(double y, Index low) {
    Index next = 0;
    for (Index i = low; i + 1 < low + changed_.Size(); i += 2) {
      RisingEdge& left = edges_[active_[i]];
      const RisingEdge& right = edges_[active_[i + 1]];
      const double x = GetX(left, y);
      while (next < closed_.Size() && closed_[next].ends.x < x) ++next;
      if (next < closed_.Size() && IsSame(closed_[next].ends, {x, GetX(right, y)})) {
        left.strip = closed_[next++].strip;
        continue;
      }
      left.strip = strips_.Size();
      strips_.Append({});
      AddLevel(left.strip, left, right, y);
    }
  }

  void AppendStrip(const Strip& strip, GpcTristrip& result) const {
    auto* vertices = static_cast<Vec2d*>(
        GpcAlloc(strip.count * sizeof(Vec2d), UNIT, __LINE__, L"tristrip creation"));
    result.strips[result.stripCount++] = {static_cast<int>(strip.count), vertices};
    for (Index i = strip.first; i != NONE; i = points_[i].next) *vertices++ = points_[i].point;
  }

  /// A span at the level at hand: the places of its ends and its strip.
  struct ClosedSpan {
    Vec2d ends;
    Index strip;
  };

  Buffer<RisingEdge> edges_{L"edge table creation"};
  Buffer<Index> byBottom_{L"edge table creation"};
  Buffer<Index> byTop_{L"edge table creation"};
  Buffer<Index> active_{L"active edge creation"};
  Buffer<Index> changed_{L"active edge creation"};
  Buffer<Index> places_{L"active edge creation"};
  Buffer<ClosedSpan> closed_{L"active edge creation"};
  Buffer<Strip> strips_{L"tristrip node creation"};
  Buffer<StripPoint> points_{L"tristrip vertex creation"};
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
