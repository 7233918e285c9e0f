// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A label of math text as a picture of its own.
///
///     LabelStyle style;
///     style.mode = SvgTextMode::Outlines;
///     const std::string svg = DrawLabelPicture(L"E = mc\\up40\\fs60 2", style);

#pragma once

#include <ctime>
#include <functional>
#include <string>

#include "shared/color/Color4b.h"
#include "shared/mathtext/MathTextScanner.h"
#include "shared/plots/SvgTextIF.h"
#include "shared/text/GString.h"

namespace mathtext {

using namespace shr;

/// How a picture is drawn; lengths are pixels.
struct LabelStyle {
  SvgTextMode mode = SvgTextMode::Text;
  double height = 24;  ///< of the text
  GString face;        ///< empty: the default face
  Color4b color = Color4b(29, 39, 51);
  Color4b background = Color4b::White;  ///< opaque, or none where alpha is 0
  double rotation = 0;                  ///< degrees counter-clockwise
  HAlignment alignment = HAlignment::Left;
  std::function<std::tm()> clock;  ///< empty: the local time
};

/// Returns the document, as large as the label and a margin. Errors: a `shr::Exception` tells what
/// the markup breaks.
std::string DrawLabelPicture(const GString& markup, const LabelStyle& style);

}  // namespace mathtext
