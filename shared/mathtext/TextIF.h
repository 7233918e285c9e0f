// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTTextIF`, what math text is measured and drawn through: the current attributes, a stack of
/// them, a rotation, and the operations that a kind of output implements. Interfaces that measure
/// by the faces of the system derive from shared/mathtext/FaceTextIF.h.
///
///     MTAttributes attributes = output.GetAttributes();
///     attributes.face.name = L"Arial";
///     attributes.height = 14;
///     output.SetAttributes(attributes);
///     const double width = output.GetTextExtent(L"Depth, m");
///
/// Units: lengths are user units of the interface, x to the right and y upwards; angles are degrees
/// counter-clockwise. Threads: one thread an interface.

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/color/Color4b.h"
#include "shared/fonts/TextLayout.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/mathtext/MathTextScanner.h"

namespace shr {

/// All that says how a run of text looks.
struct MTAttributes {
  TextFace face;               ///< name, weight, italic, character set, pitch and family
  bool underline = false;      ///< a line below the text
  bool strikeThrough = false;  ///< a line through it
  Color4b color;
  double height = 12;  ///< of the em
  /// Where a drawn element lies about its anchor; of several lines also how they are justified.
  HAlignment hAlignment = HAlignment::Left;
  VAlignment vAlignment = VAlignment::Baseline;
};

/// What the current face says about lines of text at the current height.
///
///     ascent ------  ##     ##
///     strikeout ---  ##-##-##-
///     0 -----------  ##  #  ##   baseline
///     underline ---  ---------
///     -descent ----
struct MTLineMetrics {
  double ascent = 0;             ///< above the baseline
  double descent = 0;            ///< below it, positive
  double lineGap = 0;            ///< more between lines
  double underlinePosition = 0;  ///< y of the middle of the line below the text
  double underlineThickness = 0;
  double strikeoutPosition = 0;  ///< y of the middle of the line through the text
  double strikeoutThickness = 0;

  friend constexpr MTLineMetrics operator*(const MTLineMetrics& em, double height) {
    return {em.ascent * height,
            em.descent * height,
            em.lineGap * height,
            em.underlinePosition * height,
            em.underlineThickness * height,
            em.strikeoutPosition * height,
            em.strikeoutThickness * height};
  }
};

/// Measures and draws runs of text in attributes that are set before. Attributes are kept as shared
/// values that never change, so that elements take and give them at the cost of a pointer.
class SHARED_API CMTTextIF {
public:
  virtual ~CMTTextIF();
  CMTTextIF(const CMTTextIF&) = delete;
  CMTTextIF& operator=(const CMTTextIF&) = delete;

  const MTAttributes& GetAttributes() const noexcept { return *attributes_; }
  const std::shared_ptr<const MTAttributes>& ShareAttributes() const noexcept {
    return attributes_;
  }
  /// Errors: a height that is not a positive number, or null, is an invalid parameter; nothing is
  /// changed.
  void SetAttributes(const MTAttributes& attributes);
  void SetAttributes(std::shared_ptr<const MTAttributes> attributes);

  /// Put the attributes on a stack, and take the last ones back from it. Errors: nothing to take
  /// back is an internal error.
  void PreserveState();
  void RestoreState();
  std::size_t GetStateDepth() const noexcept { return states_.size(); }

  /// What is drawn is turned about the anchor; `CMTElement::DrawUsingTextIF` sets that to the one
  /// it is given. Boxes and extents are those of text that is not turned. Errors: what is not
  /// finite is an invalid parameter.
  void SetRotation(double degrees);
  double GetRotation() const noexcept { return rotation_; }
  void SetAnchor(const Vec2d& anchor) noexcept { anchor_ = anchor; }
  const Vec2d& GetAnchor() const noexcept { return anchor_; }
  /// Return where a point of the text lies when it is turned about the anchor, and where a vector
  /// points. Quarter turns are exact.
  Vec2d Turn(const Vec2d& point) const noexcept {
    return rotation_ == 0 ? point : anchor_ + TurnDirection(point - anchor_);
  }
  Vec2d TurnDirection(const Vec2d& vector) const noexcept;

  // What outputs implement, all in the current attributes.

  virtual MTLineMetrics GetLineMetrics() = 0;
  /// Returns the advance width.
  virtual double GetTextExtent(std::wstring_view text) = 0;
  /// Returns the box of the ink, the pen starting at the origin; the empty box when there is none.
  virtual Box2d GetTextBounds(std::wstring_view text) = 0;
  /// Returns the width by which tabs are set.
  virtual double GetAverageCharWidth() = 0;
  /// Draws text turned by the rotation about its own beginning, which is told as the page has it:
  /// turned already. Underlines are none of its business.
  virtual void DrawString(const Vec2d& baselineBegin, std::wstring_view text) = 0;
  /// Draws a line in the current color, both ends turned already.
  virtual void DrawLine(const Vec2d& from, const Vec2d& to, double thickness) = 0;

protected:
  CMTTextIF();

private:
  std::shared_ptr<const MTAttributes> attributes_;
  std::vector<std::shared_ptr<const MTAttributes>> states_;
  double rotation_ = 0;
  double cosine_ = 1, sine_ = 0;
  Vec2d anchor_;
};

/// Gives an interface the attributes back that it has now, and the depth of its stack, when the
/// scope is left.
class SHARED_API MTStateScope {
public:
  explicit MTStateScope(CMTTextIF& textIF);
  ~MTStateScope();
  MTStateScope(const MTStateScope&) = delete;
  MTStateScope& operator=(const MTStateScope&) = delete;

private:
  CMTTextIF& textIF_;
  std::shared_ptr<const MTAttributes> attributes_;
  std::size_t depth_;
};

}  // namespace shr
