// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTAssocStringElement`, a run of text with what goes with it: segments of lines, and a text of
/// several lines inside it. A line of shared/mathtext/LineElement.h consists of them.
///
///     auto root = std::make_shared<CMTAssocStringElement>(output, L"2 + x");
///     root->AssociateLineSegment(Side::Top, Vec2d(30, 0));   // a bar over it
///
/// Threads: one thread a tree of elements.

#pragma once

#include <memory>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/Element.h"

namespace shr {

class CMTMultiLineElement;

class SHARED_API CMTAssocStringElement : public CMTElement {
public:
  /// Takes a string, whose attributes become its own. Errors: null and a string that is part of
  /// another element are invalid parameters.
  explicit CMTAssocStringElement(std::shared_ptr<CMTStringElement> element);
  /// Makes the string of the text and the attributes that the interface has.
  explicit CMTAssocStringElement(const CMTTextIF& textIF, const GString& text = GString());
  ~CMTAssocStringElement() override;

  std::shared_ptr<CMTElement> Clone() const override;
  void clear() override;
  bool empty() const override;
  /// Returns the text of the string and of the element inside, one after the other.
  GString GetSimpleText() const override;
  /// Returns how far the pen comes: to the end of the string or of the element inside, whichever is
  /// farther.
  double GetExtentUsingTextIF(CMTTextIF& textIF) override;
  Box2d GetGenericBBox(CMTTextIF& textIF) override;
  Box2d GetInternalBBox(CMTTextIF& textIF) override;
  void InternalDraw(CMTTextIF& textIF, const Vec2d& origin) override;

  /// Adds a segment from the side of the string by the vector: as thick as the line below text of
  /// `style`, and in its color; null stands for the style of the string. It moves no pen.
  ///
  ///      T---------+      T  Top: left end of the upper edge of the generic box
  ///      | x  +  y |
  ///      L---------R      L  Left, R  Right: both ends of the baseline
  ///      B---------+      B  Bottom: left end of the lower edge
  void AssociateLineSegment(Side side, const Vec2d& vector,
                            std::shared_ptr<const MTAttributes> style = nullptr);

  /// Puts an element inside, its frame at `offset`; the one of before is given back. Requires: no
  /// more than some hundred elements inside each other. Errors: null and a part of another element
  /// are invalid parameters; nothing is changed.
  void AssociateMLElement(std::shared_ptr<CMTMultiLineElement> element, const Vec2d& offset);

  const std::shared_ptr<CMTStringElement>& GetStringElement() const noexcept { return string_; }
  /// Returns the element inside, null when there is none.
  const std::shared_ptr<CMTMultiLineElement>& GetMLElement() const noexcept { return inner_; }

protected:
  CMTAssocStringElement(const CMTAssocStringElement& other);

private:
  struct Segment {
    Side side;
    Vec2d vector;
    std::shared_ptr<const MTAttributes> style;
  };

  Vec2d BeginOf(const Segment& segment, CMTTextIF& textIF);
  double ThicknessOf(const Segment& segment, CMTTextIF& textIF) const;

  std::shared_ptr<CMTStringElement> string_;
  std::vector<Segment> segments_;
  std::shared_ptr<CMTMultiLineElement> inner_;
  Vec2d innerOffset_;
};

}  // namespace shr
