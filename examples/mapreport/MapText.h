// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Measures and writes the texts of a map, all of which are math text (docs/math-text.md); names
/// from data are escaped by `shr::EscapeMathText`.
///
///     MapText text(svg, view);
///     const MapText::Label label = text.Make(L"{\\i M} 5.3", {12});
///     if (const auto place = placer.Place({at, radius, text.ExtentOf(label)})) text.Draw(label,
///     *place);

#pragma once

#include <memory>

#include "examples/mapreport/Model.h"
#include "shared/color/Color4b.h"
#include "shared/mathtext/MultiLineElement.h"
#include "shared/plots/LabelPlacement.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

class PortableTextIF;

inline const Color4b TEXT_COLOR(0x2B, 0x2B, 0x2B);
inline const Color4b NOTE_COLOR(0x55, 0x55, 0x55);
inline constexpr double NOTE_SIZE = 10.5;
inline constexpr long BOLD = 700;

/// How a text begins; its markup may change that.
struct TextStyle {
  double size = 12;  ///< of the em, in pixels
  Color4b color = TEXT_COLOR;
  long weight = 400;
  shr::HAlignment side = shr::HAlignment::Left;  ///< where its place lies on the base line
  bool hasHalo = false;                          ///< stands out from what is below it
};

class MapText {
public:
  /// A text that was laid out.
  struct Label {
    std::shared_ptr<shr::CMTMultiLineElement> element;
    TextStyle style;
  };

  /// Writes into `svg`, which must live as long as this, by the mode and the face of the view.
  MapText(shr::SvgWriter& svg, const View& view);
  ~MapText();

  /// Lays markup out in one line. What does not parse stands as it is.
  Label Make(const GString& markup, const TextStyle& style);
  /// Returns how wide the pen goes.
  double WidthOf(const Label& label);
  /// Returns the room that a label takes: its ink, level with the point the middle of small
  /// letters.
  shr::LabelExtent ExtentOf(const Label& label);

  /// Draws a label at its place.
  void Draw(const Label& label, const Vec2d& at);
  void Draw(Label label, const shr::LabelPlace& place);
  /// Lays out and draws.
  void Write(const Vec2d& at, const GString& markup, const TextStyle& style);

private:
  class Output;

  std::unique_ptr<Output> output_;
  GString face_;
};

}  // namespace mapreport
