// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Places labels beside points so that no two of them overlap.
///
/// Each point offers up to eight places around it, best first (E. Imhof, "Positioning Names on
/// Maps", The American Cartographer 2, 1975: beside the point on its right is best). Points come in
/// order of importance; the first place that is free wins, and a point whose places are all taken
/// stays without a label (the greedy method that J. Christensen, J. Marks and S. Shieber, "An
/// Empirical Study of Algorithms for Point-Feature Label Placement", ACM Transactions on Graphics
/// 14, 1995, compare others with). Who draws the labels measures them, too.
///
///     LabelPlacer placer(Box2d(0, 0, 800, 600));
///     placer.Block(Box2d(600, 0, 800, 80));                   // the legend
///     PointLabel label{Vec2d(100, 100), 2.5, {48, 9, 3, 2.5}};
///     if (const auto place = placer.Place(label)) Draw(place->anchorPoint, place->anchor);
///
/// Units: those of the picture, x to the right and y downwards. Threads: one thread a placer.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Where a label stands, seen from its point.
enum class LabelPosition : unsigned char {
  Right,
  AboveRight,
  BelowRight,
  Left,
  AboveLeft,
  BelowLeft,
  Above,
  Below
};

/// Positions, best first.
inline constexpr LabelPosition EIGHT_LABEL_POSITIONS[] = {
    LabelPosition::Right, LabelPosition::AboveRight, LabelPosition::BelowRight,
    LabelPosition::Left,  LabelPosition::AboveLeft,  LabelPosition::BelowLeft,
    LabelPosition::Above, LabelPosition::Below};
inline constexpr LabelPosition FOUR_LABEL_POSITIONS[] = {
    LabelPosition::Right, LabelPosition::Left, LabelPosition::Above, LabelPosition::Below};

/// The room that a label takes around the left end of its base line.
struct LabelExtent {
  double width = 0;
  double ascent = 0;   ///< above the base line
  double descent = 0;  ///< below it
  double middle = 0;   ///< height above the base line of what stands level with the point
};

/// A point that wants a label.
struct PointLabel {
  Vec2d point;
  double radius = 0;  ///< of the marker: half the side of the square that it takes
  LabelExtent extent;
  double priority = 0;         ///< for `PlaceLabels`: larger ones first
  bool needsOwnMarker = true;  ///< the marker must be free and is blocked with its label
};

/// The point of a label's base line that is given: its left end, its middle or its right end.
enum class LabelAnchor : unsigned char { Start, Middle, End };

/// Where a label goes. `anchorPoint` is on its base line; who sets the text anchored there keeps it
/// beside its point even where the text turns out wider than it was measured.
struct LabelPlace {
  LabelPosition position = LabelPosition::Right;
  LabelAnchor anchor = LabelAnchor::Start;
  Vec2d anchorPoint;
  Box2d box;  ///< what the label takes
};

struct LabelOptions {
  /// Those that are tried, best first. Lifetime: the memory must outlive the placer.
  std::span<const LabelPosition> positions = EIGHT_LABEL_POSITIONS;
  double gap = 2.5;  ///< between a marker and the label beside it
  /// For how many labels memory is taken at once; more find room, too.
  std::size_t expectedLabels = 0;
};

/// Places labels one after the other.
///
/// Laws: (1) the box of a place lies in the frame and overlaps no box that was blocked or placed
/// before; boxes that only touch do not overlap, and boxes without an area take no room. (2) With
/// `needsOwnMarker` the same holds for the marker, but for its own label. (3) The same calls give
/// the same places on every machine. Degenerate: a label with a number that is none or infinite, or
/// of negative size, and one larger than the frame, finds no place, and so does every label where
/// the frame is empty or not finite. Of equal points as many get labels as there are places around
/// them that do not overlap. Cost: `Place` O(1) on average, whatever sizes are mixed; a label much
/// larger than the boxes that are there costs O(their number) at most. Memory: about 100 bytes a
/// box.
class SHARED_API LabelPlacer {
public:
  /// Markers and labels stay inside `frame`.
  explicit LabelPlacer(const Box2d& frame, const LabelOptions& options = {});
  ~LabelPlacer();
  LabelPlacer(LabelPlacer&&) noexcept;
  LabelPlacer& operator=(LabelPlacer&&) noexcept;

  /// Keeps labels off `box`. What of it lies outside of the frame, and a box with a number that is
  /// none, has no effect.
  void Block(const Box2d& box);

  /// Finds a place and blocks it, and the marker with `needsOwnMarker`. Returns nothing, and blocks
  /// nothing, when there is none or the marker is not free.
  std::optional<LabelPlace> Place(const PointLabel& label);

  /// Returns true when `box` lies in the frame and overlaps nothing there.
  bool IsFree(const Box2d& box) const;

private:
  class TakenBoxes;

  std::optional<LabelPlace> FindPlace(const PointLabel& label) const;

  Box2d frame_;
  LabelOptions options_;
  std::unique_ptr<TakenBoxes> taken_;
};

/// Places labels in order of their priority, equal ones and those that are no number (last) as they
/// come, and returns the place of each label, in the order of `labels`. `obstacles` are blocked
/// first. Cost: O(n log n) on average.
SHARED_API std::vector<std::optional<LabelPlace>> PlaceLabels(std::span<const PointLabel> labels,
                                                              const Box2d& frame,
                                                              std::span<const Box2d> obstacles = {},
                                                              const LabelOptions& options = {});

}  // namespace shr
