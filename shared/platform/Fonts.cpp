// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What both targets share. A Bézier is highest where its derivative vanishes or at its ends. The
// bits of ulCodePageRange1 are those of the OpenType specification, "OS/2 and Windows Metrics
// Table".

#include "shared/platform/Fonts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace shr::platform {
namespace {

constexpr int NO_CODE_PAGE_BIT = -1;

/// A character set and its bit in ulCodePageRange1. The place in the table is its `CharsetBits`.
struct CharsetRow {
  unsigned char charset;
  int codePageBit;
};

constexpr CharsetRow CHARSETS[] = {
    {ANSI_CHARACTERS, 0},
    {238, 1},   // Eastern Europe
    {204, 2},   // Cyrillic
    {161, 3},   // Greek
    {162, 4},   // Turkish
    {177, 5},   // Hebrew
    {178, 6},   // Arabic
    {186, 7},   // Baltic
    {163, 8},   // Vietnamese
    {222, 16},  // Thai
    {128, 17},  // Japanese
    {134, 18},  // Chinese, simplified
    {129, 19},  // Korean, Wansung
    {136, 20},  // Chinese, traditional
    {130, 21},  // Korean, Johab
    {77, 29},   // Macintosh
    {OEM_CHARACTERS, 30},
    {SYMBOL_CHARACTERS, 31},
    {DEFAULT_CHARACTERS, NO_CODE_PAGE_BIT},
};
static_assert(std::size(CHARSETS) <= 32);

void ExtendBy(GlyphMetrics& box, OutlinePoint point) {
  if (!box.HasInk()) {
    box.xMin = box.xMax = point.x;
    box.yMin = box.yMax = point.y;
    return;
  }
  box.xMin = std::min(box.xMin, point.x);
  box.xMax = std::max(box.xMax, point.x);
  box.yMin = std::min(box.yMin, point.y);
  box.yMax = std::max(box.yMax, point.y);
}

/// Returns the place at parameter t of the cubic Bézier of four points.
OutlinePoint PlaceOf(const OutlinePoint (&p)[4], double t) {
  const double s = 1 - t;
  const double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
  return {b0 * p[0].x + b1 * p[1].x + b2 * p[2].x + b3 * p[3].x,
          b0 * p[0].y + b1 * p[1].y + b2 * p[2].y + b3 * p[3].y};
}

/// Extends the box by the places inside the curve where the coordinate with these values at the
/// four points is extreme: the zeros of a t^2 + 2 b t + c.
void ExtendByExtremes(GlyphMetrics& box, const OutlinePoint (&p)[4], const double (&v)[4]) {
  const double a = v[3] - 3 * v[2] + 3 * v[1] - v[0];
  const double b = v[2] - 2 * v[1] + v[0];
  const double c = v[1] - v[0];
  const double discriminant = b * b - a * c;
  if (!(discriminant >= 0)) return;
  // The form that subtracts nothing from something of its own size.
  const double q = -(b + std::copysign(std::sqrt(discriminant), b));
  for (const double t : {a != 0 ? q / a : -1.0, q != 0 ? c / q : -1.0}) {
    if (t > 0 && t < 1) ExtendBy(box, PlaceOf(p, t));
  }
}

void ExtendByCubic(GlyphMetrics& box, const OutlinePoint (&p)[4]) {
  ExtendBy(box, p[3]);
  ExtendByExtremes(box, p, {p[0].x, p[1].x, p[2].x, p[3].x});
  ExtendByExtremes(box, p, {p[0].y, p[1].y, p[2].y, p[3].y});
}

/// Returns the place a third of the way from `b` to `a`.
OutlinePoint TwoThirds(OutlinePoint a, OutlinePoint b) {
  return {(a.x + 2 * b.x) / 3, (a.y + 2 * b.y) / 3};
}

}  // namespace

GlyphMetrics BoxOf(const GlyphOutline& outline) {
  GlyphMetrics box;
  OutlinePoint current;
  const OutlinePoint* next = outline.points.data();
  for (const OutlineVerb verb : outline.verbs) {
    if (verb == OutlineVerb::Close) continue;
    if (verb == OutlineVerb::Quadratic) {
      ExtendByCubic(box,
                    {current, TwoThirds(current, next[0]), TwoThirds(next[1], next[0]), next[1]});
      next += 1;
    } else if (verb == OutlineVerb::Cubic) {
      ExtendByCubic(box, {current, next[0], next[1], next[2]});
      next += 2;
    } else {
      ExtendBy(box, *next);
    }
    current = *next++;
  }
  return box;
}

Font::Font() = default;
Font::~Font() = default;

CharsetBits CharsetBit(unsigned char charset) noexcept {
  for (std::size_t i = 0; i < std::size(CHARSETS); ++i) {
    if (CHARSETS[i].charset == charset) return CharsetBits{1} << i;
  }
  return 0;
}

CharsetBits CharsetsOfCodePages(std::uint32_t range1, std::uint32_t range2) noexcept {
  CharsetBits bits = CharsetBit(DEFAULT_CHARACTERS);
  for (std::size_t i = 0; i < std::size(CHARSETS); ++i) {
    const int bit = CHARSETS[i].codePageBit;
    if (bit != NO_CODE_PAGE_BIT && (range1 >> bit & 1u) != 0) bits |= CharsetBits{1} << i;
  }
  // The pages of the second word are those of DOS.
  if (range2 != 0) bits |= CharsetBit(OEM_CHARACTERS);
  return bits;
}

}  // namespace shr::platform
