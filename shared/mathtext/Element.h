// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The elements of math text: `CMTElement`, what all share, and `CMTStringElement`, a run of text
/// in one set of attributes. Runs with decorations, lines and texts of several lines stand in the
/// headers AssocStringElement.h, LineElement.h and MultiLineElement.h beside this one; they are
/// made of markup by shared/mathtext/Context.h.
///
/// Every element has a frame of its own: its pen starts at the origin, on the baseline, x to the
/// right and y upwards.
///
/// ```text
///      +-------------+  ascent     generic box: the text, as its face has its lines, whatever
///      | #  #  ## ## |             its ink
///      | # ##  #  #  |             internal box: that and all that belongs to it: underlines,
///      O-------------+-> extent    segments of lines, sub-strings
///      +-------------+  -descent
/// ```
///
/// What is measured is kept until something changes here or in a part. It is valid for every
/// interface that measures alike, as all do that derive from `CMTFaceTextIF`; for one that measures
/// differently the text is to be parsed anew.
///
///     const auto label = std::make_shared<CMTStringElement>(output, L"Oslo");
///     label->SetAlignment(HAlignment::Center, VAlignment::Bottom);
///     label->DrawUsingTextIF(output, Vec2d(10.75, 59.91));
///
/// An element is part of one other at most. Errors: one that is part of another already, or would
/// become a part of itself, is an invalid parameter. Threads: one thread a tree of elements.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/mathtext/TextIF.h"
#include "shared/text/GString.h"

namespace shr {

/// A part of a text with the attributes of the moment in which it was made.
class SHARED_API CMTElement {
public:
  virtual ~CMTElement();
  CMTElement& operator=(const CMTElement&) = delete;

  /// Returns a copy with copies of all parts, which is part of nothing.
  virtual std::shared_ptr<CMTElement> Clone() const = 0;
  /// Removes text and parts; attributes stay.
  virtual void clear() = 0;
  /// Returns whether there is neither text nor a part.
  virtual bool empty() const = 0;
  /// Returns the text without markup.
  virtual GString GetSimpleText() const = 0;

  // Measurement. Afterwards the interface has the attributes of before. Errors: those of the
  // interface, such as a face without metrics.

  /// Returns the advance width.
  virtual double GetExtentUsingTextIF(CMTTextIF& textIF) = 0;
  /// Returns the box of the text itself; sub-strings count, underlines and segments do not.
  virtual Box2d GetGenericBBox(CMTTextIF& textIF) = 0;
  /// Returns the box of all that belongs to the element.
  virtual Box2d GetInternalBBox(CMTTextIF& textIF) = 0;
  /// Draws the element with the origin of its frame at `origin`, turned by the interface.
  virtual void InternalDraw(CMTTextIF& textIF, const Vec2d& origin) = 0;
  /// Draws the internal box about `anchor` by the alignment of the element, turned about the anchor
  /// by the rotation of the interface, which is as before afterwards.
  ///
  ///     Left    Center    Right      Top      Baseline     Bottom
  ///     X####    ##X##    ####X     X####      ####        ####
  ///                                  ####     X####       X####
  virtual void DrawUsingTextIF(CMTTextIF& textIF, const Vec2d& anchor);

  const MTAttributes& GetAttributes() const noexcept { return *attributes_; }
  const std::shared_ptr<const MTAttributes>& ShareAttributes() const noexcept {
    return attributes_;
  }
  /// Takes the attributes from the interface.
  void GetAttributes(const CMTTextIF& textIF);
  /// Gives the attributes to the interface.
  void SetAttributes(CMTTextIF& textIF) const;
  void SetAlignment(HAlignment horizontal, VAlignment vertical);
  double GetHeight() const noexcept { return attributes_->height; }

  // What is kept of measuring. The values are valid only where the test before says so.

  bool IsExtentValid() const noexcept { return isExtentValid_; }
  void SetExtent(double extent) noexcept;
  double GetExtent() const noexcept { return extent_; }
  bool IsGBBoxValid() const noexcept { return isGBBoxValid_; }
  void SetGBBox(const Box2d& box) noexcept;
  const Box2d& GetGBBox() const noexcept { return gbBox_; }
  /// Forgets what was measured of this element and of those that it is part of.
  void InvalidateTextMetrics() noexcept;

protected:
  explicit CMTElement(const CMTTextIF& textIF);
  explicit CMTElement(std::shared_ptr<const MTAttributes> attributes);
  /// Copies attributes and what was measured, not what the element is part of.
  CMTElement(const CMTElement& other);

  bool IsInternalBBoxValid() const noexcept { return isInternalBBoxValid_; }
  const Box2d& InternalBBox() const noexcept { return internalBBox_; }
  void SetInternalBBox(const Box2d& box) noexcept;

  /// Make an element a part of this one, and no more so.
  void Hold(CMTElement* part);
  static void Release(CMTElement* part) noexcept;

private:
  std::shared_ptr<const MTAttributes> attributes_;
  CMTElement* holder_ = nullptr;
  double extent_ = 0;
  Box2d gbBox_;
  Box2d internalBBox_;
  bool isExtentValid_ = false;
  bool isGBBoxValid_ = false;
  bool isInternalBBoxValid_ = false;
};

/// One run of text in one set of attributes.
class SHARED_API CMTStringElement : public CMTElement {
public:
  /// Takes the attributes that the interface has.
  explicit CMTStringElement(const CMTTextIF& textIF, GString text = GString());
  ~CMTStringElement() override;

  std::shared_ptr<CMTElement> Clone() const override;
  void clear() override;
  bool empty() const override { return text_.empty(); }
  GString GetSimpleText() const override { return text_; }
  double GetExtentUsingTextIF(CMTTextIF& textIF) override;
  Box2d GetGenericBBox(CMTTextIF& textIF) override;
  Box2d GetInternalBBox(CMTTextIF& textIF) override;
  /// Draws the text with the lines below and through it. Tabs alone draw nothing: they stand at
  /// their stop.
  void InternalDraw(CMTTextIF& textIF, const Vec2d& origin) override;

  void SetText(const GString& text);
  const GString& GetText() const noexcept { return text_; }
  /// Returns what the face says about lines at the height of the text.
  const MTLineMetrics& GetLineMetrics(CMTTextIF& textIF);

protected:
  CMTStringElement(const CMTStringElement& other);

private:
  void Measure(CMTTextIF& textIF);

  GString text_;
  MTLineMetrics metrics_;
};

}  // namespace shr
