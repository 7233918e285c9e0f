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
#include "shared/polygons/clipper/GpcResult.h"

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
  Tracer(gpc_op operation, const Input& input, const Graph& graph, const Labels& labels,
         Result& result)
      : isInResult_(operation), input_(input), graph_(graph), labels_(labels), result_(result) {}

  void Run() {
    result_.points.Clear();
    result_.contours.Clear();
    MarkBorders();
    for (Index contour = 0; contour < input_.contours.Size(); ++contour) {
      if (!graph_.hasNodes[contour]) TraceLoop(contour);
    }
    for (Index chain = 0; chain < graph_.chains.Size(); ++chain) {
      while (result_.isBorder[chain]) Trace(2 * chain + (IsForward(chain) ? 0 : 1));
    }
  }

private:
  void MarkBorders() {
    result_.isBorder.Resize(graph_.chains.Size());
    for (Index i = 0; i < graph_.chains.Size(); ++i) {
      const Sides sides = labels_.sides[i];
      result_.isBorder[i] = graph_.parities[i] != MERGED &&
                            isInResult_[LeftOf(sides)] != isInResult_[RightOf(sides) & 3];
    }
    result_.nodeMarks.Fill(graph_.nodePoints.Size(), 0);
  }

  /// A chain is followed with the result on its right.
  bool IsForward(Index chain) const { return !isInResult_[LeftOf(labels_.sides[chain])]; }

  void TraceLoop(Index contourIndex) {
    const Contour& contour = input_.contours[contourIndex];
    const bool isInside = isInResult_[labels_.loopInsides[contourIndex]];
    if (isInside == isInResult_[labels_.loopOutsides[contourIndex]]) return;
    const Index first = result_.points.Size();
    const Vec2d* points = input_.points.Data() + contour.first;
    Vec2d* gathered = result_.points.Extend(contour.count);
    if ((input_.TurnAtLowest(contour) < 0) == isInside) {
      std::copy(points, points + contour.count, gathered);
    } else {
      std::reverse_copy(points, points + contour.count, gathered);
    }
    Emit(first, SideOfLoop(graph_, contourIndex, isInside));
  }

  void Trace(Half half) {
    result_.path.Clear();
    for (;;) {
      result_.nodeMarks[graph_.NodeOf(half)] = result_.path.Size() + 1;
      result_.path.Append(half);
      result_.isBorder[half / 2] = 0;
      const Index node = graph_.NodeOf(half ^ 1);
      const Index mark = result_.nodeMarks[node];
      if (mark != 0) {
        CutOff(mark - 1);
        if (result_.path.IsEmpty()) return;
      }
      half = GetNext(node, half ^ 1);
    }
  }

  /// Returns the border that follows counter-clockwise upon the way back.
  Half GetNext(Index node, Half back) const {
    const Index start = graph_.nodeStarts[node];
    const Index end = graph_.nodeEnds[node];
    const Index backSlot = graph_.slotOfHalf[back];
    for (Index slot = backSlot + 1;; ++slot) {
      if (slot == end) slot = start;
      if (slot == backSlot) throw GPCException(UNIT, __LINE__);
      const Half half = graph_.slots[slot];
      if (result_.isBorder[half / 2] && (half % 2 == 0) == IsForward(half / 2)) return half;
    }
  }

  /// Makes a contour of the end of the path.
  void CutOff(Index start) {
    const Index first = result_.points.Size();
    const Index size = result_.path.Size();
    const Half any = result_.path[start];
    for (Index i = start; i < size; ++i) {
      const Half half = result_.path[i];
      const Half before = result_.path[i == start ? size - 1 : i - 1];
      GatherNode(before, half);
      GatherInterior(half);
      result_.nodeMarks[graph_.NodeOf(half)] = 0;
    }
    result_.path.Truncate(start);
    Emit(first, any ^ 1);
  }

  void GatherNode(Half before, Half half) {
    const Vec2d& point = graph_.nodePoints[graph_.NodeOf(half)];
    if (OrientationSign(graph_.FarPoint(input_, before ^ 1), point,
                        graph_.FarPoint(input_, half)) != 0) {
      result_.points.Append(point);
    }
  }

  void GatherInterior(Half half) {
    const Chain& chain = graph_.chains[half / 2];
    if (chain.interiorCount == 0) return;
    const Contour& contour = input_.contours[chain.contour];
    const Vec2d* points = input_.points.Data();
    const Vec2d* first = points + chain.firstInterior;
    const Index head = std::min(chain.interiorCount, contour.End() - chain.firstInterior);
    const Vec2d* wrapped = points + contour.first;
    const Index tail = chain.interiorCount - head;
    Vec2d* to = result_.points.Extend(chain.interiorCount);
    if (half % 2 == 0) {
      std::copy(wrapped, wrapped + tail, std::copy(first, first + head, to));
    } else {
      std::reverse_copy(first, first + head, std::reverse_copy(wrapped, wrapped + tail, to));
    }
  }

  /// Makes a contour of the result of the points gathered from `first` on, given the side on which
  /// the result is.
  void Emit(Index first, Index side) {
    const Index count = result_.points.Size() - first;
    const Vec2d* points = result_.points.Data() + first;
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
      result_.points.Truncate(first);
      return;
    }
    const Index number = result_.contours.Size();
    result_.contours.Append({first, count, top, side, number, turn > 0});
  }

  Membership isInResult_;
  const Input& input_;
  const Graph& graph_;
  const Labels& labels_;
  Result& result_;
};

}  // namespace

Membership::Membership(gpc_op operation) {
  const auto row = static_cast<unsigned int>(operation);
  if (row >= 4) throw GPCException(UNIT, __LINE__);
  std::copy(std::begin(IN_RESULT[row]), std::end(IN_RESULT[row]), isIn);
}

void TraceContours(gpc_op operation, const Input& input, const Graph& graph, const Labels& labels,
                   Result& result) {
  Tracer(operation, input, graph, labels, result).Run();
}

}  // namespace shr::gpc
