// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Math text as HTML, for headings and cells of pages: what a browser sets in its own faces and
/// breaks into lines itself. Where text is to stand as it was laid out, draw it by
/// shared/plots/SvgTextIF.h.
///
///     report << "<H1>" + MathTextToHtml(L"CO{\\dn20\\fs70 2} by {\\i year}") + "</H1>\n";
///
/// Threads: any.

#pragma once

#include <string>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Returns `text` as narrow markup, in ASCII: each run of text in a `SPAN` whose style tells
/// weight, slant, lines, color, face, size and rise, text without any of them alone; a `BR` at each
/// line break. Sub-strings stand in the line, one `BR` between their lines; saved positions and
/// segments of lines have no counterpart and are left out. Text without markup, and markup that
/// does not parse, is escaped as it is. Dates are of now. Cost: O(length).
SHARED_API std::string MathTextToHtml(const GString& text);

}  // namespace shr
