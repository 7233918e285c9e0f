// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Last stage: a chain borders the result when the operation has different answers for its two
// sides. Such chains are followed with the result on the right. At a node the walk goes on along
// the border of the same piece of the result, so that pieces that touch in a point become contours
// of their own; where a walk comes back to a node it has passed, the part between is cut off as a
// contour of its own too, so that a hole that touches its outer contour stays a hole. A node on a
// straight way is left out.

#include <algorithm>
#include <iterator>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {
namespace {

/// Whether a place is in the result, by operation and by the operands it is inside.
constexpr bool IN_RESULT[4][4] = {
    {false, true, false, false},  // difference
    {false, false, false, true},  // intersection
    {false, true, true, false},   // exclusive or
    {false, true, true, true},    // union
};

class Tracer {
public:
  Tracer(Workspace& work, gpc_op operation) : work_(work), isInResult_(operation) {}

  void Run() {
    work_.resultContours.Clear();
    work_.gathered.Clear();
    MarkBorders();
    for (Index contour = 0; contour < work_.contours.Size(); ++contour) {
      if (!work_.hasNodes[contour]) TraceLoop(contour);
    }
    for (Index chain = 0; chain < work_.chains.Size(); ++chain) {
      while (work_.isBorder[chain]) Trace(2 * chain + (IsForward(chain) ? 0 : 1));
    }
  }

private:
  void MarkBorders() {
    work_.isBorder.Resize(work_.chains.Size());
    for (Index i = 0; i < work_.chains.Size(); ++i) {
      const Sides sides = work_.sides[i];
      work_.isBorder[i] = work_.parities[i] != MERGED &&
                          isInResult_[LeftOf(sides)] != isInResult_[RightOf(sides) & 3];
    }
    work_.nodeMarks.Fill(work_.nodePoints.Size(), 0);
  }

  /// A chain is followed with the result on its right.
  bool IsForward(Index chain) const { return !isInResult_[LeftOf(work_.sides[chain])]; }

  void TraceLoop(Index contourIndex) {
    const Contour& contour = work_.contours[contourIndex];
    const bool isInside = isInResult_[work_.loopInsides[contourIndex]];
    if (isInside == isInResult_[work_.loopOutsides[contourIndex]]) return;
    const Index lowest = contour.lowest;
    const Index before = lowest == contour.first ? contour.first + contour.count - 1 : lowest - 1;
    const int turn =
        OrientationSign(work_.points[before], work_.points[lowest], work_.points[lowest + 1]);
    const Index first = work_.gathered.Size();
    const Vec2d* points = work_.points.Data() + contour.first;
    Vec2d* gathered = work_.gathered.Extend(contour.count);
    if ((turn < 0) == isInside) {
      std::copy(points, points + contour.count, gathered);
    } else {
      std::reverse_copy(points, points + contour.count, gathered);
    }
    Emit(first, SideOfLoop(work_, contourIndex, isInside));
  }

  void Trace(Half half) {
    work_.path.Clear();
    for (;;) {
      work_.nodeMarks[GetNode(half)] = work_.path.Size() + 1;
      work_.path.Append(half);
      work_.isBorder[half / 2] = 0;
      const Index node = GetNode(half ^ 1);
      const Index mark = work_.nodeMarks[node];
      if (mark != 0) {
        CutOff(mark - 1);
        if (work_.path.IsEmpty()) return;
      }
      half = GetNext(node, half ^ 1);
    }
  }

  Index GetNode(Half half) const {
    const Chain& chain = work_.chains[half / 2];
    return half % 2 == 0 ? chain.from : chain.to;
  }

  /// Returns the border that follows counter-clockwise upon the way back.
  Half GetNext(Index node, Half back) const {
    const Index start = work_.nodeStarts[node];
    const Index end = work_.nodeEnds[node];
    const Index backSlot = work_.slotOfHalf[back];
    for (Index slot = backSlot + 1;; ++slot) {
      if (slot == end) slot = start;
      if (slot == backSlot) throw GPCException(UNIT, __LINE__);
      const Half half = work_.slots[slot];
      if (work_.isBorder[half / 2] && (half % 2 == 0) == IsForward(half / 2)) return half;
    }
  }

  /// Makes a contour of the end of the path.
  void CutOff(Index start) {
    const Index first = work_.gathered.Size();
    const Index size = work_.path.Size();
    const Half any = work_.path[start];
    for (Index i = start; i < size; ++i) {
      const Half half = work_.path[i];
      const Half before = work_.path[i == start ? size - 1 : i - 1];
      GatherNode(before, half);
      GatherInterior(half);
      work_.nodeMarks[GetNode(half)] = 0;
    }
    work_.path.Truncate(start);
    Emit(first, any ^ 1);
  }

  void GatherNode(Half before, Half half) {
    const Vec2d& point = work_.nodePoints[GetNode(half)];
    if (OrientationSign(work_.GetFarPoint(before ^ 1), point, work_.GetFarPoint(half)) != 0) {
      work_.gathered.Append(point);
    }
  }

  void GatherInterior(Half half) {
    const Chain& chain = work_.chains[half / 2];
    if (chain.interiorCount == 0) return;
    const Contour& contour = work_.contours[chain.contour];
    const Vec2d* points = work_.points.Data();
    const Vec2d* first = points + chain.firstInterior;
    const Index head =
        std::min(chain.interiorCount, contour.first + contour.count - chain.firstInterior);
    const Vec2d* wrapped = points + contour.first;
    const Index tail = chain.interiorCount - head;
    Vec2d* to = work_.gathered.Extend(chain.interiorCount);
    if (half % 2 == 0) {
      std::copy(wrapped, wrapped + tail, std::copy(first, first + head, to));
    } else {
      std::reverse_copy(first, first + head, std::reverse_copy(wrapped, wrapped + tail, to));
    }
  }

  /// Makes a contour of the result of the points gathered from `first` on, given the side on which
  /// the result is.
  void Emit(Index first, Index side) {
    const Index count = work_.gathered.Size() - first;
    const Vec2d* points = work_.gathered.Data() + first;
    Index top = 0;
    for (Index i = 1; i < count; ++i) {
      if (points[i].y > points[top].y ||
          (points[i].y == points[top].y && points[i].x < points[top].x)) {
        top = i;
      }
    }
    const int turn = count < 3
                         ? 0
                         : OrientationSign(points[top == 0 ? count - 1 : top - 1], points[top],
                                           points[top + 1 == count ? 0 : top + 1]);
    if (turn == 0) {  // encloses nothing
      work_.gathered.Truncate(first);
      return;
    }
    const Index number = work_.resultContours.Size();
    work_.resultContours.Append({first, count, top, side, number, turn > 0});
  }

  Workspace& work_;
  Membership isInResult_;
};

}  // namespace

Membership::Membership(gpc_op operation) {
  const auto row = static_cast<unsigned int>(operation);
  if (row >= 4) throw GPCException(UNIT, __LINE__);
  std::copy(std::begin(IN_RESULT[row]), std::end(IN_RESULT[row]), isIn);
}

void TraceContours(Workspace& work, gpc_op operation) {
  Tracer(work, operation).Run();
}

}  // namespace shr::gpc
