// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/PlotText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "shared/mathtext/Context.h"
#include "shared/mathtext/FaceTextIF.h"
#include "shared/plots/TextWidth.h"

namespace shr {

namespace {

constexpr std::size_t LONGEST_TEXT = 300;

/// Returns the longest beginning of at most so many units that does not end within a pair.
GString Beginning(const GString& text, std::size_t length) {
  const bool endsInPair = length > 0 && length < text.size() &&
                          static_cast<std::uint32_t>(text[length - 1]) - 0xD800u < 0x400u;
  return text.substr(0, endsInPair ? length - 1 : length);
}

}  // namespace

bool NeedsFaces(const GString& text, SvgTextMode mode) {
  return mode == SvgTextMode::Outlines || ContainsMathText(text.c_str());
}

std::shared_ptr<CMTMultiLineElement> ParsePlotText(CMTTextIF& textIF, const GString& text,
                                                   double size) {
  CMTContext context(textIF, size);
  context.SetOptions(MT_SINGLE_LINE);
  std::shared_ptr<CMTMultiLineElement> element;
  if (context.Parse(text, element) != CMTContext::MT_SUCCESS) {
    context.ParseMultiLine(EscapeMathText(text), element);
  }
  return element;
}

GString PlainPlotText(const GString& text) {
  if (!ContainsMathText(text.c_str()) || !FindMathTextFault(text).empty()) return text;
  GString plain = MathTextToSimpleText(text);
  std::replace(plain.begin(), plain.end(), L'\n', L' ');
  return plain;
}

double PlotTextWidth(const GString& text, double size, SvgTextMode mode) {
  if (!NeedsFaces(text, mode)) return EstimateTextWidth(text, size);
  CMTFaceTextIF measure;
  return ParsePlotText(measure, text, size)->GetExtentUsingTextIF(measure);
}

GString Fitted(const GString& text, double size, double width, SvgTextMode mode) {
  const GString plain = PlainPlotText(text);
  if (plain.size() <= LONGEST_TEXT && PlotTextWidth(text, size, mode) <= width) return text;
  // The longest beginning that fits: widths grow with the length.
  std::size_t fits = 0;
  std::size_t tooLong = std::min(plain.size(), LONGEST_TEXT) + 1;
  const auto cut = [&plain](std::size_t length) {
    const GString beginning = Beginning(plain, length);
    const bool isMarkup = ContainsMathText(beginning.c_str());
    return (isMarkup ? EscapeMathText(beginning) : beginning) + L"\u2026";
  };
  while (tooLong - fits > 1) {
    const std::size_t middle = (fits + tooLong) / 2;
    (PlotTextWidth(cut(middle), size, mode) <= width ? fits : tooLong) = middle;
  }
  return cut(fits);
}

}  // namespace shr
