// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The texts of plots: titles, names and notes are math text of one line. For the library's own
/// use.
///
/// Text without markup is left to the style of the page where it is written as text: its width is
/// estimated, so that the bytes of a plot depend on no face. Text with markup, and all text in
/// outlines, is measured and drawn in the faces of this machine. Markup that does not parse stands
/// for itself. Threads: any.

#pragma once

#include <memory>

#include "shared/mathtext/MultiLineElement.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace shr {

/// Returns whether the text is drawn by faces, not left to the style of the page.
bool NeedsFaces(const GString& text, SvgTextMode mode);

/// Makes the elements of a text, `size` high, in the attributes of the interface.
std::shared_ptr<CMTMultiLineElement> ParsePlotText(CMTTextIF& textIF, const GString& text,
                                                   double size);

/// Returns the text without markup and line breaks, for titles and descriptions.
GString PlainPlotText(const GString& text);

/// Returns how wide the text is drawn.
double PlotTextWidth(const GString& text, double size, SvgTextMode mode);

/// Returns `text`; where it is wider than `width` without its markup, cut with an ellipsis.
GString Fitted(const GString& text, double size, double width, SvgTextMode mode);

}  // namespace shr
