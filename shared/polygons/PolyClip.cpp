// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The stages follow I. Sutherland and G. Hodgman, "Reentrant Polygon Clipping" (1974): each clips
// the stream of points against one side and hands the result to the next.
//
// Handing on single points costs four decisions for each of them. Here the stream flows in blocks
// of a few dozen points, small enough that everything between the stages stays in the nearest
// cache:
//
// 1. A block whose points lie inside of all sides, behind a point that did, is copied to the
//    output: no stage would change it.
// 2. Otherwise each stage looks at the block as a whole. All points inside, behind one inside: the
//    block is handed on where it lies. All outside, behind one outside: nothing is handed on.
//    Mixed: the stage walks along the points and writes what it passes on to a buffer.
//
// A contour crosses few sides within one block, so that most stages hand on or drop it. What a
// stage keeps from one block for the next (its first and its previous point) is what it would keep
// from one point for the next; so the outcome is that of single points, to the bit.

#include "shared/polygons/PolyClip.h"

#include <algorithm>

#include "shared/polygons/FlatContours.h"

namespace shr {
namespace {

constexpr std::size_t BLOCK_SIZE = 64;

/// The half-plane that a side keeps and the point where a segment crosses its boundary.
struct Right {
  static bool Keeps(const Vec2d& point, double boundary) { return point.x <= boundary; }
  static Vec2d Cross(const Vec2d& a, const Vec2d& b, double x) {
    return {x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x)};
  }
};
struct Left : Right {
  static bool Keeps(const Vec2d& point, double boundary) { return point.x >= boundary; }
};
struct Bottom {
  static bool Keeps(const Vec2d& point, double boundary) { return point.y >= boundary; }
  static Vec2d Cross(const Vec2d& a, const Vec2d& b, double y) {
    return {a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), y};
  }
};
struct Top : Bottom {
  static bool Keeps(const Vec2d& point, double boundary) { return point.y <= boundary; }
};

template <class Side>
std::size_t CountKept(std::span<const Vec2d> points, double boundary) {
  std::size_t count = 0;
  for (const Vec2d& point : points) count += Side::Keeps(point, boundary);
  return count;
}

/// Room for points that have no value yet.
template <std::size_t SIZE>
struct Scratch {
  Vec2d* Data() { return reinterpret_cast<Vec2d*>(bytes); }
  alignas(Vec2d) std::byte bytes[SIZE * sizeof(Vec2d)];
};

}  // namespace

/// One run of the stages over one contour.
class CPolyClip::Pipeline {
public:
  Pipeline(Stage (&stages)[NUM_STAGES], Output& out) : stages_(stages), out_(out) {
    for (Stage& stage : stages_) stage.isFirstPending = true;
  }

  void Feed(std::span<const Vec2d> block) {
    if (IsInsideOfAll(block)) {
      out_.append(block);
      for (Stage& stage : stages_) stage.previous = block.back();
    } else {
      FeedRight(block);
    }
  }

  /// Gives each stage in turn its first point as its last.
  void Close() {
    // A copy each: the stages change while they are fed.
    const auto close = [&](std::size_t index, auto feed) {
      const Vec2d first = stages_[index].first;
      if (!stages_[index].isFirstPending) (this->*feed)(std::span(&first, 1));
    };
    close(0, &Pipeline::FeedRight);
    close(1, &Pipeline::FeedBottom);
    close(2, &Pipeline::FeedLeft);
    close(3, &Pipeline::FeedTop);
  }

private:
  /// True when no stage would change the block, all being inside and at the same point.
  bool IsInsideOfAll(std::span<const Vec2d> block) const {
    for (const Stage& stage : stages_) {
      if (stage.isFirstPending || !stage.isPreviousInside) return false;
    }
    const double right = stages_[0].boundary;
    const double bottom = stages_[1].boundary;
    const double left = stages_[2].boundary;
    const double top = stages_[3].boundary;
    bool isInside = true;
    for (const Vec2d& p : block) {
      isInside &= (p.x <= right) & (p.y >= bottom) & (p.x >= left) & (p.y <= top);
    }
    return isInside;
  }

  void FeedRight(std::span<const Vec2d> block) {
    FeedBottom(Pass<Right>(stages_[0], block, afterRight_.Data()));
  }
  void FeedBottom(std::span<const Vec2d> block) {
    FeedLeft(Pass<Bottom>(stages_[1], block, afterBottom_.Data()));
  }
  void FeedLeft(std::span<const Vec2d> block) {
    FeedTop(Pass<Left>(stages_[2], block, afterLeft_.Data()));
  }
  void FeedTop(std::span<const Vec2d> block) {
    const std::size_t size = out_.size();
    Vec2d* const end = out_.extend(2 * block.size());
    const std::span<const Vec2d> passed = Pass<Top>(stages_[3], block, end);
    out_.truncate(size);
    if (passed.data() == end) {
      out_.extend(passed.size());
    } else {
      out_.append(passed);
    }
  }

  /// Returns what a stage passes on of the block: part of the block itself or points written to
  /// `buffer`, which has room for twice the block.
  template <class Side>
  static std::span<const Vec2d> Pass(Stage& stage, std::span<const Vec2d> block, Vec2d* buffer) {
    if (block.empty()) return {};
    if (stage.isFirstPending) {
      stage.first = stage.previous = block.front();
      stage.isPreviousInside = Side::Keeps(block.front(), stage.boundary);
      stage.isFirstPending = false;
      block = block.subspan(1);
      if (block.empty()) return {};
    }
    const std::size_t kept = CountKept<Side>(block, stage.boundary);
    const std::size_t keptIfSame = stage.isPreviousInside ? block.size() : 0;
    if (kept != keptIfSame) return PassMixed<Side>(stage, block, buffer);
    stage.previous = block.back();
    return block.first(kept);
  }

  template <class Side>
  static std::span<const Vec2d> PassMixed(Stage& stage, std::span<const Vec2d> block,
                                          Vec2d* buffer) {
    Vec2d* end = buffer;
    const double boundary = stage.boundary;
    Vec2d previous = stage.previous;
    bool isPreviousInside = stage.isPreviousInside;
    for (const Vec2d& point : block) {
      const bool isInside = Side::Keeps(point, boundary);
      if (isInside != isPreviousInside) *end++ = Side::Cross(previous, point, boundary);
      *end = point;  // is overwritten when the point is outside
      end += isInside;
      previous = point;
      isPreviousInside = isInside;
    }
    stage.previous = previous;
    stage.isPreviousInside = isPreviousInside;
    return {buffer, end};
  }

  Stage (&stages_)[NUM_STAGES];
  Output& out_;
  // A stage passes on at most two points for one, and may write one more that does not count.
  Scratch<2 * BLOCK_SIZE + 1> afterRight_;
  Scratch<4 * BLOCK_SIZE + 1> afterBottom_;
  Scratch<8 * BLOCK_SIZE + 1> afterLeft_;
};

CPolyClip::CPolyClip() : CPolyClip(Box2d()) {}

CPolyClip::CPolyClip(const Box2d& box) {
  SetClipRect(box);
}

void CPolyClip::SetClipRect(const Box2d& box) {
  stages_[0].boundary = box.xMax();
  stages_[1].boundary = box.yMin();
  stages_[2].boundary = box.xMin();
  stages_[3].boundary = box.yMax();
}

void CPolyClip::SetClipRectBLT(const Box2d& box) {
  SetClipRect(Box2d(box.xMin(), box.yMax(), box.xMax(), box.yMin()));
}

std::size_t CPolyClip::Clip(std::span<const Vec2d> points, Output& out) {
  const std::size_t sizeBefore = out.size();
  Pipeline pipeline(stages_, out);
  while (!points.empty()) {
    const std::span<const Vec2d> block = points.first(std::min(BLOCK_SIZE, points.size()));
    pipeline.Feed(block);
    points = points.subspan(block.size());
  }
  pipeline.Close();
  return out.size() - sizeBefore;
}

std::size_t CPolyClip::Clip(const Vec2d* points, std::size_t count, Output& out) {
  return Clip(CheckedSpan(points, count, L"PolyClip"), out);
}

}  // namespace shr
