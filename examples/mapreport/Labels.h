// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Places names beside points so that no two of them touch.
///
/// Each point offers eight places around it, best first (E. Imhof, "Positioning Names on Maps",
/// 1975: to the right and a little above is best). The first place that is free wins; a point whose
/// places are all taken stays without a name. Points are to come in order of importance.

#pragma once

#include <optional>
#include <vector>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// Where a name goes: `position` is the left, middle or right end of its base line, as `anchor`
/// says.
struct LabelPlace {
  enum class Anchor { Start, Middle, End };

  Vec2d position;
  Anchor anchor = Anchor::Start;
  Box2d box;
};

class LabelPlacer {
public:
  /// Markers and names stay inside `frame` (y down).
  explicit LabelPlacer(const Box2d& frame) : frame_(frame) {}

  /// Keeps names off `box`.
  void Block(const Box2d& box) { taken_.push_back(box); }

  /// Finds a place for a name of `width` in type of `size` beside a marker of `radius`, and blocks
  /// it and the marker. Nothing when there is none or the marker itself is covered; nothing is
  /// blocked then.
  std::optional<LabelPlace> Place(const Vec2d& point, double radius, double width, double size);

  /// The same for a marker that others may cover.
  std::optional<LabelPlace> PlaceName(const Vec2d& point, double radius, double width, double size);

private:
  bool IsFree(const Box2d& box) const;

  Box2d frame_;
  std::vector<Box2d> taken_;
};

}  // namespace mapreport
