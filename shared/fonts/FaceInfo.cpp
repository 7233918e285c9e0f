// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Metrics of glyphs are kept in pages of 256 characters, which a run of text looks up once.

#include "shared/fonts/FaceInfo.h"

#include <array>
#include <bitset>

#include "shared/diagnostics/ThrowError.h"
#include "shared/fonts/TextCharacters.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"FaceInfo";

constexpr int PAGE_SHIFT = 8;
constexpr char32_t PAGE_SIZE = 1 << PAGE_SHIFT;

// Lines of faces that do not say where theirs are.
constexpr double DEFAULT_THICKNESS = 0.05;
constexpr double DEFAULT_UNDERSCORE = -0.1;
constexpr double DEFAULT_STRIKEOUT = 0.25;

}  // namespace

/// The glyphs of 256 characters, those that were asked for.
struct CFaceInfo::Page {
  std::array<GlyphMetrics, PAGE_SIZE> metrics;
  std::bitset<PAGE_SIZE> known;
  std::bitset<PAGE_SIZE> has;
};

CFaceInfo::CFaceInfo(const GString& faceName, const FaceAttributes& attributes)
    : faceName_(faceName), attributes_(attributes) {
  attributes_.charsets |= platform::CharsetBit(platform::DEFAULT_CHARACTERS);
}

CFaceInfo::~CFaceInfo() = default;

const OutlineTextMetrics& CFaceInfo::GetOTM() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (otm_ == nullptr) {
    OutlineTextMetrics metrics;
    if (!FetchOTM(metrics)) {
      ThrowErrorImpl(UNIT, __LINE__, L"CFaceInfo: Could not get text metrics for typeface '%s'",
                     faceName_);
    }
    otm_ = std::make_unique<OutlineTextMetrics>(metrics);
  }
  return *otm_;
}

char32_t CFaceInfo::MapLocked(char32_t character, GlyphMetrics& metrics, bool& has) const {
  has = FetchGlyphMetrics(character, metrics);
  if (has || character >= SYMBOL_COUNT || !ServesCharset(platform::SYMBOL_CHARACTERS)) {
    return character;
  }
  has = FetchGlyphMetrics(SYMBOL_BASE + character, metrics);
  return has ? SYMBOL_BASE + character : character;
}

const GlyphMetrics& CFaceInfo::Lookup(char32_t character, PageCursor& cursor, bool& has) const {
  const char32_t number = character >> PAGE_SHIFT;
  if (cursor.number != number) {
    std::unique_ptr<Page>& page = pages_[number];
    if (page == nullptr) page = std::make_unique<Page>();
    cursor = {number, page.get()};
  }
  Page& page = const_cast<Page&>(*cursor.page);
  const std::size_t place = character % PAGE_SIZE;
  GlyphMetrics& metrics = page.metrics[place];
  if (!page.known[place]) {
    bool found = false;
    MapLocked(character, metrics, found);
    if (IsControl(character) || (!found && IsFormatMark(character))) {
      metrics = GlyphMetrics();
    } else if (!found) {
      FetchDefaultGlyphMetrics(metrics);
    }
    page.has[place] = found;
    page.known[place] = true;
  }
  has = page.has[place];
  return metrics;
}

GlyphMetrics CFaceInfo::GetGlyphMetrics(char32_t character) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  PageCursor cursor;
  bool has = false;
  return Lookup(character, cursor, has);
}

bool CFaceInfo::HasGlyph(char32_t character) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  PageCursor cursor;
  bool has = false;
  Lookup(character, cursor, has);
  return has;
}

char32_t CFaceInfo::MapCharCode(char32_t character) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  GlyphMetrics metrics;
  bool has = false;
  return MapLocked(character, metrics, has);
}

GlyphVectors CFaceInfo::GetGlyphVectors(char32_t character) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  GlyphVectors vectors;
  if (IsControl(character)) return vectors;
  GlyphMetrics metrics;
  bool has = false;
  const char32_t code = MapLocked(character, metrics, has);
  if (has) {
    FetchGlyphVectors(code, vectors);
  } else if (!IsFormatMark(character)) {
    FetchDefaultGlyphVectors(vectors);
  }
  return vectors;
}

template <typename Visit>
void CFaceInfo::VisitGlyphs(std::wstring_view text, Visit visit) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  PageCursor cursor;
  bool has = false;
  while (!text.empty()) visit(Lookup(NextCharacter(text), cursor, has));
}

double CFaceInfo::CalcEmExtent(std::wstring_view text) const {
  double extent = 0;
  VisitGlyphs(text, [&extent](const GlyphMetrics& glyph) { extent += glyph.advance; });
  return extent;
}

std::size_t CFaceInfo::CalcEmExtentOfKnown(std::wstring_view text, double& extent) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  PageCursor cursor;
  bool has = false;
  std::wstring_view rest = text;
  extent = 0;
  while (!rest.empty()) {
    std::wstring_view behind = rest;
    const char32_t character = NextCharacter(behind);
    const GlyphMetrics& glyph = Lookup(character, cursor, has);
    if (!has && !NeedsNoFace(character)) break;
    extent += glyph.advance;
    rest = behind;
  }
  return text.size() - rest.size();
}

Box2d CFaceInfo::CalcEmBounds(std::wstring_view text) const {
  Box2d box;
  double pen = 0;
  VisitGlyphs(text, [&box, &pen](const GlyphMetrics& glyph) {
    if (glyph.HasInk()) {
      box.ExtendBy(Vec2d(pen + glyph.xMin, glyph.yMin));
      box.ExtendBy(Vec2d(pen + glyph.xMax, glyph.yMax));
    }
    pen += glyph.advance;
  });
  return box;
}

EmLine CFaceInfo::LineOf(std::wstring_view text, double upperEdge, double thickness,
                         double otherwise) const {
  EmLine line;
  line.thickness = thickness > 0 ? thickness : DEFAULT_THICKNESS;
  const double y = thickness > 0 ? upperEdge - thickness / 2 : otherwise;
  line.begin = Vec2d(0, y);
  line.end = Vec2d(CalcEmExtent(text), y);
  return line;
}

EmLine CFaceInfo::CalcEmUnderscoreLine(std::wstring_view text) const {
  const OutlineTextMetrics& otm = GetOTM();
  return LineOf(text, otm.underlinePosition, otm.underlineThickness, DEFAULT_UNDERSCORE);
}

EmLine CFaceInfo::CalcEmStrikeoutLine(std::wstring_view text) const {
  const OutlineTextMetrics& otm = GetOTM();
  return LineOf(text, otm.strikeoutPosition, otm.strikeoutThickness, DEFAULT_STRIKEOUT);
}

void CFaceInfo::Free() {
  const std::lock_guard<std::mutex> lock(mutex_);
  otm_.reset();
  pages_.clear();
  Release();
}

bool FaceNameLess(const CFaceInfo& a, const CFaceInfo& b) {
  return StringLess()(a.GetFaceName(), b.GetFaceName());
}

}  // namespace shr
