// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTMultiLineElement`, a text of lines below each other: what a label is parsed to, and what a
/// sub-string is.
///
/// ```text
///     O  first line      |    O  frame: on the baseline of the first line, at the left of the
///        the widest line |       widest line or of the field, whichever is wider
///          third         |       (here the lines are justified about the middle)
/// ```
///
/// Baselines follow each other by the descent of the line above, the gap of the line below and its
/// ascent (`CMTLineElement::GetRoom`): of lines set in one face and height that is what the face
/// says. Raised text and sub-strings widen it, segments of lines do not.
///
///     std::shared_ptr<CMTMultiLineElement> label;
///     CMTContext context(output, 12);
///     if (context.Parse(L"{\\b Oslo}\nNorway", label) == CMTContext::MT_SUCCESS) {
///       label->DrawUsingTextIF(output, Vec2d(100, 100));
///     }
///
/// Threads: one thread a tree of elements.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/LineElement.h"

namespace shr {

class SHARED_API CMTMultiLineElement : public CMTElement {
public:
  /// Begins a text without lines. The attributes that the interface has tell its alignment.
  explicit CMTMultiLineElement(const CMTTextIF& textIF);
  ~CMTMultiLineElement() override;

  std::shared_ptr<CMTElement> Clone() const override;
  void clear() override;
  bool empty() const override { return lines_.empty(); }
  /// Returns the texts of the lines, line feeds between them.
  GString GetSimpleText() const override;
  /// Returns the width of the widest line or of the field, whichever is wider.
  double GetExtentUsingTextIF(CMTTextIF& textIF) override;
  /// Returns the box of all lines, as wide as the extent; the empty box when there is no line.
  Box2d GetGenericBBox(CMTTextIF& textIF) override;
  Box2d GetInternalBBox(CMTTextIF& textIF) override;
  void InternalDraw(CMTTextIF& textIF, const Vec2d& origin) override;

  /// Adds a line. An empty one takes the attributes of the interface, so that it is as high as text
  /// would be now. Errors: null and a part of another element are invalid parameters.
  void AppendLine(const CMTTextIF& textIF, std::shared_ptr<CMTLineElement> line);

  /// Sets the least width, in which lines are justified, and the height that a line aligns it by
  /// (`CMTLineElement::AssociateMLElement`). Errors: negative or not finite is an invalid
  /// parameter.
  void SetField(double width, double height);
  double GetFieldWidth() const noexcept { return fieldWidth_; }
  double GetFieldHeight() const noexcept { return fieldHeight_; }

  std::size_t GetCount() const noexcept { return lines_.size(); }
  /// Returns a line. Requires: `index` < `GetCount()`.
  const std::shared_ptr<CMTLineElement>& GetLine(std::size_t index) const { return lines_[index]; }

protected:
  CMTMultiLineElement(const CMTMultiLineElement& other);

private:
  template <typename Visit>
  void VisitLines(CMTTextIF& textIF, Visit visit);

  std::vector<std::shared_ptr<CMTLineElement>> lines_;
  double fieldWidth_ = 0;
  double fieldHeight_ = 0;
};

}  // namespace shr
