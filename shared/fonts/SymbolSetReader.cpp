// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A recursive-descent reader of lines of words. An arc becomes cubic Béziers of at most a quarter
// turn each, whose handles are 4/3 tan(angle/4) long: within 0.03 % of the radius (Goldapp,
// Approximation of circular arcs by cubic polynomials, Computer Aided Geometric Design 8, 1991).

#include "shared/fonts/SymbolSetReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <system_error>

#include "shared/diagnostics/ThrowError.h"
#include "shared/text/CodePage.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"StrokedFace";
constexpr std::string_view SIGNATURE = "shared-symbols";
constexpr std::string_view VERSION = "1";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

constexpr double LARGEST_LENGTH = 1e6;  // design units
constexpr double LARGEST_TURN = 360;    // degrees
constexpr char32_t LAST_CODE = 0x10FFFF;
// "glyph 0 advance 0" and two line ends: no glyph takes fewer bytes.
constexpr std::size_t FEWEST_GLYPH_BYTES = 18;

bool IsBlank(char ch) {
  return ch == ' ' || ch == '\t' || ch == '\r';
}

/// Returns the length of the line up to a comment: "#" outside quotes.
std::size_t LengthWithoutComment(std::string_view line) {
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == '#' && !quoted) return i;
  }
  return line.size();
}

void Scale(GlyphOutline& outline, double em) {
  for (OutlinePoint& point : outline.points) {
    point.x /= em;
    point.y /= em;
  }
}

/// Extends `box` by the box of an outline whose lines reach `margin` beyond it.
void ExtendBy(GlyphMetrics& box, const GlyphOutline& outline, double margin) {
  const GlyphMetrics added = platform::BoxOf(outline);
  if (!added.HasInk()) return;
  if (!box.HasInk()) {
    box.xMin = box.yMin = LARGEST_LENGTH;
    box.xMax = box.yMax = -LARGEST_LENGTH;
  }
  box.xMin = std::min(box.xMin, added.xMin - margin);
  box.yMin = std::min(box.yMin, added.yMin - margin);
  box.xMax = std::max(box.xMax, added.xMax + margin);
  box.yMax = std::max(box.yMax, added.yMax + margin);
}

}  // namespace

SymbolSetReader::SymbolSetReader(std::string_view text, const GString& path)
    : rest_(text), path_(path) {
  if (rest_.starts_with(BYTE_ORDER_MARK)) rest_.remove_prefix(BYTE_ORDER_MARK.size());
}

void SymbolSetReader::Fail(const wchar_t* what) const {
  ThrowErrorImpl(UNIT, __LINE__, L"Symbol set file: %s\nLine %d: %s.", path_, lineNumber_,
                 GString(what));
}

/// Goes to the next line that holds a word; false at the end of the text.
bool SymbolSetReader::NextLine() {
  while (!rest_.empty()) {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line_ = rest_.substr(0, LengthWithoutComment(rest_.substr(0, end)));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++lineNumber_;
    if (!AtLineEnd()) return true;
  }
  return false;
}

bool SymbolSetReader::AtLineEnd() {
  while (!line_.empty() && IsBlank(line_.front())) line_.remove_prefix(1);
  return line_.empty();
}

/// Returns the next word, empty at the end of the line.
std::string_view SymbolSetReader::Word() {
  AtLineEnd();
  std::size_t end = 0;
  while (end < line_.size() && !IsBlank(line_[end])) ++end;
  const std::string_view word = line_.substr(0, end);
  line_.remove_prefix(end);
  return word;
}

void SymbolSetReader::EndLine() {
  if (!AtLineEnd()) Fail(L"there is more on the line than belongs there");
}

double SymbolSetReader::Number(double lowest, double highest) {
  const std::string_view word = Word();
  if (word.empty()) Fail(L"a number is missing");
  double value = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) Fail(L"this is not a number");
  if (value < lowest || value > highest) Fail(L"a number is out of range");
  return value;
}

double SymbolSetReader::Length() {
  return Number(-LARGEST_LENGTH, LARGEST_LENGTH);
}

GString SymbolSetReader::Quoted() {
  AtLineEnd();
  const std::size_t end = line_.size() > 1 && line_[0] == '"' ? line_.find('"', 1) : line_.npos;
  if (end == line_.npos) Fail(L"a text between quotes is missing");
  const GString text = GString::FromUtf8(line_.substr(1, end - 1));
  line_.remove_prefix(end + 1);
  return text;
}

char32_t SymbolSetReader::Code() {
  std::string_view word = Word();
  const bool isHexadecimal = word.starts_with("U+");
  if (isHexadecimal) word.remove_prefix(2);
  std::uint32_t code = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, code, isHexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) Fail(L"a character code is missing");
  if (code > LAST_CODE || (code >= 0xD800 && code < 0xE000)) Fail(L"there is no such character");
  return code;
}

void SymbolSetReader::ReadInto(CStrokedFace& face) {
  if (!NextLine() || Word() != SIGNATURE) Fail(L"this is not a symbol set");
  if (Word() != VERSION) Fail(L"the version of the format is not known");
  EndLine();
  ReadHead(face);
  while (!line_.empty()) ReadGlyph(face);
  Finish(face);
}

/// Reads the lines up to the first glyph. The keyword of that line is taken off, its code is not.
void SymbolSetReader::ReadHead(CStrokedFace& face) {
  while (NextLine()) {
    const std::string_view keyword = Word();
    if (keyword == "glyph") break;
    if (!ReadHeadLine(keyword, face)) Fail(L"this line does not belong to the head of a set");
    EndLine();
  }
  if (face.faceName_.empty()) Fail(L"the line 'name' is missing");
  if (!hasEm_) Fail(L"the line 'em' is missing");
  if (announced_ == 0) Fail(L"the line 'glyphs' is missing");
}

bool SymbolSetReader::ReadHeadLine(std::string_view keyword, CStrokedFace& face) {
  OutlineTextMetrics& otm = face.otm_;
  if (keyword == "name") {
    face.faceName_ = Quoted();
  } else if (keyword == "em") {
    em_ = Number(1, LARGEST_LENGTH);
    hasEm_ = true;
    otm.emSquare = em_;
  } else if (keyword == "glyphs") {
    const double count = Number(1, LAST_CODE);
    if (count != std::floor(count)) Fail(L"this is not a number of glyphs");
    announced_ = static_cast<std::size_t>(count);
    if (announced_ > rest_.size() / FEWEST_GLYPH_BYTES)
      Fail(L"the file is too short for its glyphs");
    face.glyphs_.reserve(announced_);
  } else if (keyword == "ascent") {
    otm.ascent = otm.typoAscent = Length();
  } else if (keyword == "descent") {
    otm.descent = Length();
    otm.typoDescent = -otm.descent;
  } else if (keyword == "linegap") {
    otm.lineGap = Length();
  } else if (keyword == "capheight") {
    otm.capHeight = Length();
  } else if (keyword == "xheight") {
    otm.xHeight = Length();
  } else if (keyword == "underline") {
    otm.underlinePosition = Length();
    otm.underlineThickness = Number(0, LARGEST_LENGTH);
  } else if (keyword == "strikeout") {
    otm.strikeoutPosition = Length();
    otm.strikeoutThickness = Number(0, LARGEST_LENGTH);
  } else if (keyword == "pen") {
    face.penWidth_ = Number(0, LARGEST_LENGTH);
  } else if (keyword == "missing") {
    face.missing_ = Code();
    missingLine_ = static_cast<std::size_t>(lineNumber_);
  } else {
    return false;
  }
  return true;
}

/// Reads from the code of a glyph to the keyword of the next one, or to the end of the set.
void SymbolSetReader::ReadGlyph(CStrokedFace& face) {
  CStrokedFace::Glyph glyph;
  glyph.code = Code();
  if (!AtLineEnd()) glyph.name = Quoted();
  EndLine();
  inFill_ = isOpen_ = hasBounds_ = hasAdvance_ = false;
  if (face.glyphs_.size() >= announced_) Fail(L"there are more glyphs than 'glyphs' says");
  bool isLast = false;
  while (!isLast) {
    if (!NextLine()) Fail(L"the file ends before the line 'end'");
    const std::string_view before = line_;
    const std::string_view keyword = Word();
    if (keyword == "glyph") break;
    isLast = keyword == "end";
    if (isLast) {
      EndLine();
    } else if (!ReadGlyphLine(keyword, glyph)) {
      line_ = before;
      ReadPath(glyph);
    }
  }
  if (!hasAdvance_) Fail(L"the line 'advance' of the glyph before is missing");
  FinishGlyph(glyph, face.penWidth_);
  face.glyphs_.push_back(std::move(glyph));
  if (!isLast) return;
  if (NextLine()) Fail(L"there is more behind the line 'end'");
  line_ = {};
}

bool SymbolSetReader::ReadGlyphLine(std::string_view keyword, CStrokedFace::Glyph& glyph) {
  if (keyword == "advance") {
    glyph.metrics.advance = Length();
    hasAdvance_ = true;
  } else if (keyword == "bounds") {
    glyph.metrics.xMin = Length();
    glyph.metrics.yMin = Length();
    glyph.metrics.xMax = Length();
    glyph.metrics.yMax = Length();
    hasBounds_ = true;
    if (glyph.metrics.xMin > glyph.metrics.xMax || glyph.metrics.yMin > glyph.metrics.yMax) {
      Fail(L"the bounds are the wrong way round");
    }
  } else if (keyword == "fill" || keyword == "stroke") {
    inFill_ = keyword == "fill";
    isOpen_ = false;
  } else {
    return false;
  }
  EndLine();
  return true;
}

/// Reads a line of steps: letters with their numbers, which may be repeated behind one letter.
void SymbolSetReader::ReadPath(CStrokedFace::Glyph& glyph) {
  GlyphOutline& outline = inFill_ ? glyph.vectors.fill : glyph.vectors.stroke;
  while (!AtLineEnd()) {
    const std::string_view letter = Word();
    if (letter.size() != 1) Fail(L"this is neither a keyword nor a step of a path");
    do {
      ReadStep(letter.front(), outline);
      if (letter == "Z") break;
    } while (!AtLineEnd() && (line_.front() < 'A' || line_.front() > 'Z'));
  }
}

void SymbolSetReader::ReadStep(char letter, GlyphOutline& outline) {
  const auto point = [this] {
    const double x = Length();
    return OutlinePoint{x, Length()};
  };
  const bool begins = letter == 'M' || letter == 'A';
  if (!begins && !isOpen_) Fail(L"a path begins with M or A");
  switch (letter) {
    case 'M': {
      const OutlinePoint start = point();
      outline.Move(start.x, start.y);
      break;
    }
    case 'L': {
      const OutlinePoint end = point();
      outline.Line(end.x, end.y);
      break;
    }
    case 'Q': {
      const OutlinePoint control = point();
      outline.Quadratic(control, point());
      break;
    }
    case 'C': {
      const OutlinePoint first = point();
      const OutlinePoint second = point();
      outline.Cubic(first, second, point());
      break;
    }
    case 'A':
      AddArc(outline);
      break;
    case 'Z':
      outline.Close();
      break;
    default:
      Fail(L"there is no such step of a path");
  }
  isOpen_ = letter != 'Z';
}

/// Reads centre, radius, first angle and turn; draws a line to where the arc begins.
void SymbolSetReader::AddArc(GlyphOutline& outline) {
  const double x = Length();
  const double y = Length();
  const double radius = Number(0, LARGEST_LENGTH);
  constexpr double DEGREE = std::numbers::pi / 180;
  const double start = Number(-LARGEST_TURN, LARGEST_TURN) * DEGREE;
  const double turn = Number(-LARGEST_TURN, LARGEST_TURN) * DEGREE;
  const auto at = [&](double angle) {
    return OutlinePoint{x + radius * std::cos(angle), y + radius * std::sin(angle)};
  };
  OutlinePoint from = at(start);
  if (isOpen_) {
    outline.Line(from.x, from.y);
  } else {
    outline.Move(from.x, from.y);
  }
  const int parts = std::max(1, static_cast<int>(std::ceil(std::abs(turn) / (90 * DEGREE) - 1e-9)));
  const double step = turn / parts;
  const double handle = 4.0 / 3.0 * std::tan(step / 4);
  for (int i = 1; i <= parts; ++i) {
    const OutlinePoint to = at(start + i * step);
    // The tangent is the radius turned by a right angle.
    outline.Cubic({from.x - handle * (from.y - y), from.y + handle * (from.x - x)},
                  {to.x + handle * (to.y - y), to.y - handle * (to.x - x)}, to);
    from = to;
  }
}

/// Scales to the em and measures what the file does not tell.
void SymbolSetReader::FinishGlyph(CStrokedFace::Glyph& glyph, double penWidth) const {
  Scale(glyph.vectors.fill, em_);
  Scale(glyph.vectors.stroke, em_);
  glyph.vectors.penWidth = penWidth / em_;
  glyph.metrics.advance /= em_;
  if (hasBounds_) {
    for (double* side :
         {&glyph.metrics.xMin, &glyph.metrics.yMin, &glyph.metrics.xMax, &glyph.metrics.yMax}) {
      *side /= em_;
    }
    return;
  }
  ExtendBy(glyph.metrics, glyph.vectors.fill, 0);
  ExtendBy(glyph.metrics, glyph.vectors.stroke, glyph.vectors.penWidth / 2);
}

/// Puts everything in order when all glyphs are there.
void SymbolSetReader::Finish(CStrokedFace& face) {
  std::vector<CStrokedFace::Glyph>& glyphs = face.glyphs_;
  if (glyphs.size() != announced_) Fail(L"there are fewer glyphs than 'glyphs' says");
  const auto byCode = [](const CStrokedFace::Glyph& a, const CStrokedFace::Glyph& b) {
    return a.code < b.code;
  };
  std::stable_sort(glyphs.begin(), glyphs.end(), byCode);
  OutlineTextMetrics& otm = face.otm_;
  GlyphMetrics box;
  double advances = 0;
  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    if (i > 0 && glyphs[i - 1].code == glyphs[i].code) Fail(L"a character has two glyphs");
    const GlyphMetrics& glyph = glyphs[i].metrics;
    advances += glyph.advance;
    if (!glyph.HasInk()) continue;
    box.xMin = box.HasInk() ? std::min(box.xMin, glyph.xMin) : glyph.xMin;
    box.yMin = box.HasInk() ? std::min(box.yMin, glyph.yMin) : glyph.yMin;
    box.xMax = std::max(box.xMax, glyph.xMax);
    box.yMax = std::max(box.yMax, glyph.yMax);
  }
  for (double* length :
       {&otm.ascent, &otm.descent, &otm.typoAscent, &otm.typoDescent, &otm.lineGap, &otm.capHeight,
        &otm.xHeight, &otm.underlinePosition, &otm.underlineThickness, &otm.strikeoutPosition,
        &otm.strikeoutThickness, &face.penWidth_}) {
    *length /= em_;
  }
  otm.averageWidth = advances / static_cast<double>(glyphs.size());
  if (box.HasInk()) {
    otm.xMin = box.xMin;
    otm.yMin = box.yMin;
    otm.xMax = box.xMax;
    otm.yMax = box.yMax;
  }
  if (missingLine_ != 0 && face.GetMissingGlyph() == nullptr) {
    Fail(L"there is no glyph of the character that 'missing' names");
  }
}

}  // namespace shr
