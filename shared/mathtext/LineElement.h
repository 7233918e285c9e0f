// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTLineElement`, one line of math text: runs of text, each at its offset from the beginning of
/// the line.
///
/// ```text
///              .--------.
///     +-----+  | raised |-------+
///     O run |--'--------'  run  |    O  frame of the line
///     +-----+           +-------+
/// ```
///
///     auto line = std::make_shared<CMTLineElement>(output);
///     line->AddAssocStringElement(std::make_shared<CMTAssocStringElement>(output, L"E = mc"), {});
///
/// Threads: one thread a tree of elements.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/AssocStringElement.h"

namespace shr {

class SHARED_API CMTLineElement : public CMTElement {
public:
  /// Begins an empty line in the attributes that the interface has.
  explicit CMTLineElement(const CMTTextIF& textIF);
  ~CMTLineElement() override;

  std::shared_ptr<CMTElement> Clone() const override;
  void clear() override;
  bool empty() const override { return items_.empty(); }
  /// Returns the texts of the runs in the order in which they were added.
  GString GetSimpleText() const override;
  /// Returns how far to the right the pen comes.
  double GetExtentUsingTextIF(CMTTextIF& textIF) override;
  /// Both boxes of an empty line are `CalcEmptyLineInternalBBox`.
  Box2d GetGenericBBox(CMTTextIF& textIF) override;
  Box2d GetInternalBBox(CMTTextIF& textIF) override;
  void InternalDraw(CMTTextIF& textIF, const Vec2d& origin) override;

  /// Adds a run, its frame at `offset`. Errors: null and a part of another element are invalid
  /// parameters.
  void AddAssocStringElement(std::shared_ptr<CMTAssocStringElement> element, const Vec2d& offset);

  /// Adds a segment to the last run, as `CMTAssocStringElement` does. Errors: a line without runs
  /// is an invalid parameter.
  void AssociateLineSegment(Side side, const Vec2d& vector,
                            std::shared_ptr<const MTAttributes> style = nullptr);

  /// Puts an element into the line, the left end of its field at `pen`, and returns its extent, by
  /// which the pen goes on. Its alignment tells how high:
  ///
  ///     Top           Baseline        Bottom
  ///     ####  . y     ####            ####
  ///     ####  :       _x x_ pen       ####
  ///     _____ pen     ####            ____ pen       y: height of its field
  ///
  /// top: its internal box reaches up to the height of the field above the pen; baseline: its first
  /// baseline goes through the pen; bottom: its box stands on the pen.
  double AssociateMLElement(CMTTextIF& textIF, std::shared_ptr<CMTMultiLineElement> element,
                            const Vec2d& pen);

  /// Returns the box of an empty line: no width, as high as the current attributes of the line.
  Box2d CalcEmptyLineInternalBBox(CMTTextIF& textIF) const;

  /// Returns how high the line is among others: how far its runs reach above and below the
  /// baseline, raised or not, and the largest gap. Raised text makes a line higher and never lower.
  struct Room {
    double ascent = 0, descent = 0, gap = 0;
  };
  Room GetRoom(CMTTextIF& textIF);

  std::size_t GetCount() const noexcept { return items_.size(); }
  /// Return a run and its offset. Requires: `index` < `GetCount()`.
  const std::shared_ptr<CMTAssocStringElement>& GetElement(std::size_t index) const {
    return items_[index].element;
  }
  const Vec2d& GetOffset(std::size_t index) const { return items_[index].offset; }

protected:
  CMTLineElement(const CMTLineElement& other);

private:
  struct Item {
    std::shared_ptr<CMTAssocStringElement> element;
    Vec2d offset;
  };

  std::vector<Item> items_;
};

}  // namespace shr
