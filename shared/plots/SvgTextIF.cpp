// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A text is laid out in runs. Outlines: the run's glyphs stand in a group whose transform leads
// from the place, the angle and the height to hundredths of the em, in which the paths of the
// glyphs are. Text: runs in one direction that follow each other in the text, too, become one
// element, which keeps words whole; text from right to left hangs by its right end, so that what
// has no direction (blanks, points) stays where it was laid out.

#include "shared/plots/SvgTextIF.h"

#include <algorithm>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/plots/GlyphPath.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

constexpr double EM = 100;  // units of the paths of glyphs
constexpr double FARTHEST = 1e9;
/// Text is measured without kerning.
constexpr const char* NO_KERNING = "font-kerning:none";

/// Appends a number with at most so many decimals.
void AppendNumber(std::string& text, double value, int decimals = 2) {
  long long power = 1;
  for (int i = 0; i < decimals; ++i) power *= 10;
  const double bounded = std::isnan(value) ? 0 : std::clamp(value, -FARTHEST, FARTHEST);
  const long long scaled = std::llround(bounded * static_cast<double>(power));
  if (scaled < 0) text += '-';
  const long long magnitude = scaled < 0 ? -scaled : scaled;
  text += std::to_string(magnitude / power);
  long long fraction = magnitude % power;
  if (fraction == 0) return;
  text += '.';
  for (; fraction != 0; fraction %= power) {
    power /= 10;
    text += static_cast<char>('0' + fraction / power);
  }
}

std::string NumberText(double value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

bool IsBlank(std::wstring_view text) {
  return text.find_first_not_of(L" \t\u00a0\u3000") == std::wstring_view::npos;
}

bool IsSymbol(const TextRun& run) {
  return run.face->GetFaceType() == FACE_SYMBOL;
}

/// Whether `next` can be written in one element with `last`, which stands left of it.
bool Continues(const TextRun& last, const TextRun& next) {
  if (last.isRightToLeft != next.isRightToLeft || IsSymbol(last) || IsSymbol(next)) return false;
  return last.isRightToLeft ? next.begin + next.length == last.begin
                            : last.begin + last.length == next.begin;
}

std::wstring_view TextOf(std::span<const TextRun> piece, std::wstring_view text) {
  std::size_t length = 0;
  for (const TextRun& run : piece) length += run.length;
  return text.substr(std::min(piece.front().begin, piece.back().begin), length);
}

double AdvanceOf(std::span<const TextRun> piece) {
  double advance = 0;
  for (const TextRun& run : piece) advance += run.advance;
  return advance;
}

/// Appends a string of CSS between apostrophes.
void AppendCssString(std::wstring& list, const GString& name) {
  list += L'\'';
  for (const wchar_t unit : name) {
    if (unit == L'\'') {
      list += L"\\27 ";
    } else if (unit == L'\\') {
      list += L"\\5c ";
    } else {
      list += unit;
    }
  }
  list += L'\'';
}

const wchar_t* GenericFamily(unsigned char pitchAndFamily) {
  switch (pitchAndFamily & platform::FAMILY_MASK) {
    case platform::FAMILY_ROMAN:
      return L"serif";
    case platform::FAMILY_MODERN:
      return L"monospace";
    case platform::FAMILY_SCRIPT:
      return L"cursive";
    default:
      return L"sans-serif";
  }
}

/// Returns the value of `font-family`: what was asked for, what serves it here, and what any
/// machine has.
std::wstring FamiliesOf(const TextRun& run, const TextFace& asked) {
  const GString& own = run.face->GetFaceName();
  std::wstring list;
  for (const GString& name : {asked.name, own}) {
    if (name.empty() || (!list.empty() && CompareNoCase(name, asked.name) == 0)) continue;
    AppendCssString(list, name);
    list += L", ";
  }
  const bool isAsked = (asked.pitchAndFamily & platform::FAMILY_MASK) != 0;
  const CFaceInfo& face = *run.face;
  return list + GenericFamily(isAsked ? asked.pitchAndFamily : face.GetAttributes().pitchAndFamily);
}

/// Returns the content of a text in the order of reading. Runs in other families than `families`
/// get spans of their own.
std::string SpansOf(std::span<const TextRun> piece, std::wstring_view text, const TextFace& asked,
                    const std::wstring& families) {
  std::vector<const TextRun*> runs;
  for (const TextRun& run : piece) runs.push_back(&run);
  if (piece.front().isRightToLeft) std::reverse(runs.begin(), runs.end());
  std::string content;
  for (const TextRun* const run : runs) {
    const std::string words = SvgEscape(text.substr(run->begin, run->length));
    const std::wstring own = FamiliesOf(*run, asked);
    const std::string span = "<tspan font-family=\"" + SvgEscape(own) + "\">";
    content += own == families ? words : span + words + "</tspan>";
  }
  return content;
}

/// Sets a flag until the scope is left.
class FlagScope {
public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~FlagScope() { flag_ = before_; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

private:
  bool& flag_;
  bool before_;
};

}  // namespace

CMTSvgTextIF::CMTSvgTextIF(SvgWriter& svg, SvgTextMode mode, std::string idPrefix)
    : svg_(svg), mode_(mode), idPrefix_(std::move(idPrefix)) {}

CMTSvgTextIF::~CMTSvgTextIF() = default;

void CMTSvgTextIF::SetHalo(const Color4b& color, double width) {
  if (!(width >= 0) || !std::isfinite(width)) {
    ThrowErrorImpl(L"SvgTextIF", __LINE__, INVALID_PARAMETER_TEXT);
  }
  haloColor_ = color;
  haloWidth_ = width;
}

void CMTSvgTextIF::DrawLabel(CMTElement& element, const Vec2d& anchor) {
  svg_.Begin("g");
  if (mode_ == SvgTextMode::Outlines) {
    WriteSummary(element.GetSimpleText());
  } else {
    svg_.Attribute("style", NO_KERNING);
  }
  {
    const FlagScope scope(isInLabel_);
    element.DrawUsingTextIF(*this, anchor);
  }
  svg_.End();
}

void CMTSvgTextIF::DrawString(const Vec2d& baselineBegin, std::wstring_view text) {
  if (GetAttributes().color.alpha == ALPHA_MIN) return;
  const TextLayout layout = LayoutText(text, GetAttributes().face);
  const Piece runs(layout.runs);
  if (mode_ == SvgTextMode::Outlines) return WriteOutlines(baselineBegin, text, runs);
  for (std::size_t first = 0, end = 0; first < runs.size(); first = end) {
    end = first + 1;
    while (end < runs.size() && Continues(runs[end - 1], runs[end])) ++end;
    const Piece piece = runs.subspan(first, end - first);
    if (IsSymbol(piece.front())) {
      WriteOutlines(baselineBegin, text, piece);
    } else {
      WriteText(baselineBegin, text, piece);
    }
  }
}

void CMTSvgTextIF::DrawLine(const Vec2d& from, const Vec2d& to, double thickness) {
  if (GetAttributes().color.alpha == ALPHA_MIN) return;
  svg_.Begin("line").Attribute("x1", NumberText(from.x)).Attribute("y1", NumberText(-from.y));
  svg_.Attribute("x2", NumberText(to.x)).Attribute("y2", NumberText(-to.y));
  WriteColor("stroke");
  svg_.Attribute("stroke-width", NumberText(thickness)).End();
}

void CMTSvgTextIF::WriteText(const Vec2d& begin, std::wstring_view text, const Piece& piece) {
  const std::wstring_view words = TextOf(piece, text);
  if (IsBlank(words)) return;
  const MTAttributes& attributes = GetAttributes();
  const double width = AdvanceOf(piece) * attributes.height;
  const bool isTurned = GetRotation() != 0;
  double x = piece.front().x * attributes.height;
  svg_.Begin("text");
  if (isTurned) {
    svg_.Attribute("transform", TransformOf(begin));
  } else {
    svg_.Attribute("y", NumberText(-begin.y));
    x += begin.x;
  }
  if (piece.front().isRightToLeft) {
    // The end of a text from right to left is at its left.
    svg_.Attribute("direction", "rtl").Attribute("text-anchor", "end");
  }
  svg_.Attribute("x", NumberText(x));
  const std::wstring families = FamiliesOf(piece.front(), attributes.face);
  if (!inheritsStyle_ || !attributes.face.name.empty()) {
    svg_.TextAttribute("font-family", families);
  }
  svg_.Attribute("font-size", NumberText(attributes.height));
  if (attributes.face.weight != 400) {
    svg_.Attribute("font-weight", std::to_string(attributes.face.weight));
  }
  if (attributes.face.italic != 0) svg_.Attribute("font-style", "italic");
  WriteColor("fill");
  WriteHalo(1);
  if (width > 0) {
    svg_.Attribute("textLength", NumberText(width)).Attribute("lengthAdjust", "spacingAndGlyphs");
  }
  if (!isInLabel_) svg_.Attribute("style", NO_KERNING);
  // Otherwise blanks at the ends and repeated ones would be dropped.
  if (words.find(L' ') != std::wstring_view::npos) svg_.Attribute("xml:space", "preserve");
  svg_.Raw(SpansOf(piece, text, attributes.face, families)).End();
}

void CMTSvgTextIF::WriteOutlines(const Vec2d& begin, std::wstring_view text, const Piece& piece) {
  if (!DefineGlyphs(piece)) return;
  std::string transform = TransformOf(begin) + "scale(";
  AppendNumber(transform, GetAttributes().height / EM, 6);
  svg_.Begin("g").Attribute("transform", transform + ")");
  WriteColor("fill");
  WriteHalo(EM / GetAttributes().height);
  if (!isInLabel_) WriteSummary(TextOf(piece, text));
  for (const TextRun& run : piece) {
    if (haloWidth_ > 0) WritePenHalos(run);
    WriteUses(run);
  }
  svg_.End();
}

void CMTSvgTextIF::WriteUses(const TextRun& run) {
  for (const PlacedGlyph& placed : run.glyphs) {
    const Glyph& glyph = glyphs_.at({run.face, placed.glyph});
    if (glyph.id == 0) continue;
    BeginUse(placed, glyph.id);
    if (glyph.penWidth > 0) {
      WriteColor("stroke");
      svg_.Attribute("stroke-width", NumberText(glyph.penWidth * EM));
    }
    svg_.End();
  }
}

/// Writes the edges of what is drawn with a pen, which is the same with a broader one.
void CMTSvgTextIF::WritePenHalos(const TextRun& run) {
  const double edges = 2 * haloWidth_ / GetAttributes().height;
  for (const PlacedGlyph& placed : run.glyphs) {
    const Glyph& glyph = glyphs_.at({run.face, placed.glyph});
    if (glyph.id == 0 || !(glyph.penWidth > 0)) continue;
    BeginUse(placed, glyph.id);
    svg_.Attribute("stroke", HexColor(haloColor_));
    svg_.Attribute("stroke-width", NumberText((glyph.penWidth + edges) * EM)).End();
  }
}

void CMTSvgTextIF::BeginUse(const PlacedGlyph& placed, std::size_t id) {
  svg_.Begin("use").Attribute("href", "#" + idPrefix_ + std::to_string(id));
  const std::string x = NumberText(placed.x * EM), y = NumberText(-placed.y * EM);
  if (x != "0") svg_.Attribute("x", x);
  if (y != "0") svg_.Attribute("y", y);
}

void CMTSvgTextIF::WriteColor(std::string_view attribute) {
  const Color4b& color = GetAttributes().color;
  if (inheritsStyle_ && color == MTAttributes().color) {
    if (attribute == "stroke") svg_.Attribute(attribute, "currentColor");
    return;
  }
  svg_.Attribute(attribute, HexColor(color));
  if (color.alpha == ALPHA_MAX) return;
  svg_.Attribute(std::string(attribute) + "-opacity", NumberText(color.alpha / 255.0));
}

/// Writes the edge around what is filled, which lies below the filling.
void CMTSvgTextIF::WriteHalo(double scale) {
  if (!(haloWidth_ > 0)) return;
  svg_.Attribute("stroke", HexColor(haloColor_));
  svg_.Attribute("stroke-width", NumberText(2 * haloWidth_ * scale));
  svg_.Attribute("stroke-linejoin", "round").Attribute("paint-order", "stroke");
}

void CMTSvgTextIF::WriteSummary(std::wstring_view text) {
  std::wstring line(text);
  std::replace(line.begin(), line.end(), L'\n', L' ');
  svg_.Attribute("role", "img").TextAttribute("aria-label", line);
}

/// Returns whether any glyph has curves.
bool CMTSvgTextIF::DefineGlyphs(const Piece& piece) {
  const std::size_t before = glyphCount_;
  bool hasCurves = false;
  for (const TextRun& run : piece) {
    for (const PlacedGlyph& placed : run.glyphs) {
      const auto [glyph, isNew] = glyphs_.try_emplace({run.face, placed.glyph});
      if (isNew) {
        const GlyphVectors vectors = GetGlyphVectors(run, placed);
        if (!vectors.fill.verbs.empty() || !vectors.stroke.verbs.empty()) {
          if (glyphCount_ == before) svg_.Begin("defs");
          glyph->second.id = ++glyphCount_;
          if (!vectors.stroke.verbs.empty()) glyph->second.penWidth = vectors.penWidth;
          DefineGlyph(vectors, glyphCount_);
        }
      }
      hasCurves = hasCurves || glyph->second.id != 0;
    }
  }
  if (glyphCount_ != before) svg_.End();
  return hasCurves;
}

void CMTSvgTextIF::DefineGlyph(const GlyphVectors& vectors, std::size_t id) {
  const bool isGroup = !vectors.fill.verbs.empty() && !vectors.stroke.verbs.empty();
  const std::string name = idPrefix_ + std::to_string(id);
  if (isGroup) svg_.Begin("g").Attribute("id", name);
  const auto write = [&](const GlyphOutline& outline) {
    std::string data;
    AppendGlyphPath(data, outline, 0, 0, EM);
    svg_.Begin("path");
    if (!isGroup) svg_.Attribute("id", name);
    svg_.Attribute("d", data);
  };
  if (!vectors.fill.verbs.empty()) {
    write(vectors.fill);
    if (isGroup) svg_.Attribute("stroke", "none");
    svg_.End();
  }
  if (!vectors.stroke.verbs.empty()) {
    write(vectors.stroke);
    // Color and width come from where it is used.
    svg_.Attribute("fill", "none").Attribute("stroke-linecap", "round");
    svg_.Attribute("stroke-linejoin", "round").End();
  }
  if (isGroup) svg_.End();
}

std::string CMTSvgTextIF::TransformOf(const Vec2d& begin) const {
  std::string transform = "translate(" + NumberText(begin.x) + " " + NumberText(-begin.y) + ")";
  if (GetRotation() == 0) return transform;
  transform += "rotate(";
  AppendNumber(transform, -GetRotation(), 6);
  return transform + ")";
}

}  // namespace shr
