// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The stages follow I. Sutherland and G. Hodgman, "Reentrant Polygon Clipping" (1974): each clips
// the stream of points against one side and hands the result to the next.
//
// Handing on single points costs four decisions for each of them. Here the stream flows in blocks
// of a few dozen points, small enough that everything between the stages stays in the nearest
// cache. A block is compared with all four sides at once. Then each stage
//
// - hands it on where it lies when all points are inside, behind one inside,
// - drops it when all are outside, behind one outside,
// - or else walks along the points and writes what it passes on to a buffer. That walk has no
//   branches, for whether the next point is inside may be anybody's guess: it finds the crossing
//   with the boundary for every pair of points, and keeps it only where there is one.
//
// A contour crosses few sides within one block, so that most stages hand on or drop it. What a
// stage keeps from one block for the next (its first and its previous point) is what it would keep
// from one point for the next; so the outcome is that of single points, to the bit.

#include "shared/polygons/lines/PolyClip.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shared/polygons/FlatContours.h"
#include "shared/polygons/lines/SideScan.h"

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

/// Writes what a stage passes on of a block to `out`, which has room for twice the block; returns
/// the end of it.
template <class Side>
Vec2d* PassMixed(std::span<const Vec2d> block, Vec2d previous, double boundary, Vec2d* out) {
  bool isPreviousInside = Side::Keeps(previous, boundary);
  for (const Vec2d& point : block) {
    const bool isInside = Side::Keeps(point, boundary);
    *out = Side::Cross(previous, point, boundary);  // is overwritten when there is no crossing
    out += isInside != isPreviousInside;
    *out = point;  // likewise when the point is outside
    out += isInside;
    previous = point;
    isPreviousInside = isInside;
  }
  return out;
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
  Pipeline(Stage (&stages)[NUM_STAGES], Output& out)
      : stages_(stages),
        out_(out),
        low_(stages[LEFT].boundary, stages[BOTTOM].boundary),
        high_(stages[RIGHT].boundary, stages[TOP].boundary) {
    for (Stage& stage : stages_) stage.isFirstPending = true;
  }

  /// Sends a block of at most BLOCK_SIZE points through the stages from `first` on.
  void Feed(std::span<const Vec2d> block, std::size_t first = 0) {
    SideBits sides = ScanSides(block, low_, high_);
    for (std::size_t i = first; i < NUM_STAGES; ++i) {
      Stage& stage = stages_[i];
      if (stage.isFirstPending) {
        if (block.empty()) return;
        stage.first = stage.previous = block.front();
        stage.isPreviousInside = Keeps(i, stage.first);
        stage.isFirstPending = false;
        block = block.subspan(1);
      }
      if (block.empty()) return;
      const bool wasInside = stage.isPreviousInside;
      if (wasInside ? (sides.all & BITS[i]) == 0 : (sides.any & BITS[i]) != 0) {
        const Vec2d last = block.back();
        block = Pass(i, block);
        stage.previous = last;
        stage.isPreviousInside = Keeps(i, last);
        if (i < TOP) sides = ScanSides(block, low_, high_);
      } else {
        stage.previous = block.back();
        if (!wasInside) return;
      }
    }
    out_.append(block);
  }

  /// Gives each stage in turn its first point as its last.
  void Close() {
    for (std::size_t i = 0; i < NUM_STAGES; ++i) {
      const Vec2d first = stages_[i].first;  // a copy: the stages change while they are fed
      if (!stages_[i].isFirstPending) Feed(std::span(&first, 1), i);
    }
  }

private:
  enum Index : std::size_t { RIGHT, BOTTOM, LEFT, TOP };
  static constexpr unsigned BITS[] = {SideBits::RIGHT, SideBits::BOTTOM, SideBits::LEFT,
                                      SideBits::TOP};

  bool Keeps(std::size_t index, const Vec2d& point) const {
    return (ScanSides(std::span(&point, 1), low_, high_).all & BITS[index]) != 0;
  }

  /// Returns what a stage passes on of a block that is not all on one side with the point before.
  std::span<const Vec2d> Pass(std::size_t index, std::span<const Vec2d> block) {
    const Stage& stage = stages_[index];
    const auto pass = [&](auto side, Vec2d* buffer) -> std::span<const Vec2d> {
      return {buffer, PassMixed<decltype(side)>(block, stage.previous, stage.boundary, buffer)};
    };
    switch (index) {
      case RIGHT:
        return pass(Right(), afterRight_.Data());
      case BOTTOM:
        return pass(Bottom(), afterBottom_.Data());
      case LEFT:
        return pass(Left(), afterLeft_.Data());
      default:
        return pass(Top(), afterTop_.Data());
    }
  }

  Stage (&stages_)[NUM_STAGES];
  Output& out_;
  Vec2d low_;
  Vec2d high_;
  // A stage passes on at most two points for one.
  Scratch<2 * BLOCK_SIZE> afterRight_;
  Scratch<4 * BLOCK_SIZE> afterBottom_;
  Scratch<8 * BLOCK_SIZE> afterLeft_;
  Scratch<16 * BLOCK_SIZE> afterTop_;
};

CPolyClip::CPolyClip() : CPolyClip(Box2d()) {}

CPolyClip::CPolyClip(const Box2d& box) {
  SetClipRect(box);
}

void CPolyClip::SetClipRect(const Box2d& box) {
  const bool hasNan = std::isnan(box.xMin()) || std::isnan(box.yMin()) || std::isnan(box.xMax()) ||
                      std::isnan(box.yMax());
  if (hasNan) {
    constexpr double FAR = std::numeric_limits<double>::infinity();
    return SetClipRect(Box2d(-FAR, -FAR, FAR, FAR));
  }
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
