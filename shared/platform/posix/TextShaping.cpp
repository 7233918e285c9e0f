// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// FriBidi gives the levels, HarfBuzz the scripts and the glyphs. Both work on code points; wide
// text may have pairs of surrogates here, too, so the place of each point in the text is kept.

#include "shared/platform/TextShaping.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "shared/platform/posix/NativePath.h"
#include "shared/platform/posix/ShapingLibraries.h"

namespace shr::platform {
namespace {

constexpr int INSTANCE_SHIFT = 16;  // above it an index names an instance of a variable font
constexpr unsigned int INDEX_MASK = 0xFFFF;

/// The code points of a text and where each begins.
struct CodePoints {
  std::u32string text;
  std::vector<std::size_t> places;
};

CodePoints CodePointsOf(std::wstring_view text) {
  CodePoints points;
  points.text.reserve(text.size());
  points.places.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto point = static_cast<char32_t>(text[i]);
    points.places.push_back(i);
    if (point >= 0xD800 && point < 0xDC00 && i + 1 < text.size()) {
      const auto second = static_cast<char32_t>(text[i + 1]);
      if (second >= 0xDC00 && second < 0xE000) {
        point = 0x10000 + ((point - 0xD800) << 10) + (second - 0xDC00);
        ++i;
      }
    }
    points.text.push_back(point);
  }
  return points;
}

/// Returns the bidirectional levels of a line; none on failure.
std::vector<FriBidiLevel> LevelsOf(const std::u32string& line, bool isRightToLeft) {
  const FriBidiLibrary* const friBidi = LoadFriBidi();
  if (friBidi == nullptr) return {};
  const auto length = static_cast<FriBidiStrIndex>(line.size());
  const auto* const text = reinterpret_cast<const FriBidiChar*>(line.data());
  std::vector<FriBidiCharType> types(line.size());
  std::vector<FriBidiBracketType> brackets(line.size());
  std::vector<FriBidiLevel> levels(line.size());
  friBidi->fribidi_get_bidi_types(text, length, types.data());
  friBidi->fribidi_get_bracket_types(text, length, types.data(), brackets.data());
  FriBidiParType direction = isRightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
  if (friBidi->fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length,
                                                   &direction, levels.data()) == 0) {
    return {};
  }
  return levels;
}

/// Returns the script of each character; blanks, signs and marks take that of the letter before
/// them, those at the beginning that of the first letter.
std::vector<hb_script_t> ScriptsOf(const std::u32string& line) {
  std::vector<hb_script_t> scripts(line.size(), HB_SCRIPT_COMMON);
  const HarfBuzzLibrary* const harfBuzz = LoadHarfBuzz();
  if (harfBuzz == nullptr) return scripts;
  hb_unicode_funcs_t* const unicode = harfBuzz->hb_unicode_funcs_get_default();
  hb_script_t current = HB_SCRIPT_COMMON;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const hb_script_t own = harfBuzz->hb_unicode_script(unicode, line[i]);
    if (own != HB_SCRIPT_COMMON && own != HB_SCRIPT_INHERITED && own != HB_SCRIPT_UNKNOWN) {
      if (current == HB_SCRIPT_COMMON) std::fill_n(scripts.begin(), i, own);
      current = own;
    }
    scripts[i] = current;
  }
  return scripts;
}

/// Returns true for alphabets whose letters stand side by side, where neither kerning nor ligatures
/// are wanted.
bool IsPlainScript(hb_script_t script) {
  return script == HB_SCRIPT_LATIN || script == HB_SCRIPT_GREEK || script == HB_SCRIPT_CYRILLIC ||
         script == HB_SCRIPT_ARMENIAN || script == HB_SCRIPT_GEORGIAN;
}

constexpr hb_feature_t Off(hb_tag_t tag) {
  return {tag, 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END};
}

constexpr hb_feature_t PLAIN_FEATURES[] = {Off(HB_TAG('k', 'e', 'r', 'n')),
                                           Off(HB_TAG('l', 'i', 'g', 'a')),
                                           Off(HB_TAG('c', 'l', 'i', 'g'))};

/// Gives an object of HarfBuzz back at the end of its life.
struct HarfBuzzRelease {
  void operator()(hb_font_t* font) const { LoadHarfBuzz()->hb_font_destroy(font); }
  void operator()(hb_buffer_t* buffer) const { LoadHarfBuzz()->hb_buffer_destroy(buffer); }
};

class HarfBuzzShaper final : public Shaper {
public:
  HarfBuzzShaper(hb_font_t* font, double em)
      : library_(*LoadHarfBuzz()), font_(font), buffer_(library_.hb_buffer_create()), em_(em) {}

  bool Shape(std::wstring_view line, const TextItem& item, ShapedText& shaped) override;

private:
  void Fill(const CodePoints& around, std::size_t first, std::size_t last, const TextItem& item);

  const HarfBuzzLibrary& library_;
  std::unique_ptr<hb_font_t, HarfBuzzRelease> font_;
  std::unique_ptr<hb_buffer_t, HarfBuzzRelease> buffer_;
  double em_;
};

/// Puts the item, the points from `first` to before `last`, into the buffer, with what is around
/// it.
void HarfBuzzShaper::Fill(const CodePoints& around, std::size_t first, std::size_t last,
                          const TextItem& item) {
  static_assert(sizeof(hb_codepoint_t) == sizeof(char32_t));
  library_.hb_buffer_clear_contents(buffer_.get());
  library_.hb_buffer_add_codepoints(
      buffer_.get(), reinterpret_cast<const hb_codepoint_t*>(around.text.data()),
      static_cast<int>(around.text.size()), static_cast<unsigned int>(first),
      static_cast<int>(last - first));
  library_.hb_buffer_set_direction(buffer_.get(),
                                   item.IsRightToLeft() ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  library_.hb_buffer_set_script(buffer_.get(), static_cast<hb_script_t>(item.script));
  library_.hb_buffer_set_flags(buffer_.get(), HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
}

bool HarfBuzzShaper::Shape(std::wstring_view line, const TextItem& item, ShapedText& shaped) {
  constexpr std::size_t CONTEXT = 5;  // letters join with those before and behind
  const std::size_t start = item.begin - std::min(item.begin, CONTEXT);
  const std::size_t end = item.begin + item.length;
  const CodePoints around = CodePointsOf(line.substr(start, end + CONTEXT - start));
  const auto indexOf = [&](std::size_t place) {
    const auto found = std::lower_bound(around.places.begin(), around.places.end(), place - start);
    return static_cast<std::size_t>(found - around.places.begin());
  };
  Fill(around, indexOf(item.begin), indexOf(end), item);
  const bool isPlain = IsPlainScript(static_cast<hb_script_t>(item.script));
  library_.hb_shape(font_.get(), buffer_.get(), isPlain ? PLAIN_FEATURES : nullptr,
                    isPlain ? static_cast<unsigned int>(std::size(PLAIN_FEATURES)) : 0);
  unsigned int count = 0;
  const hb_glyph_info_t* const infos = library_.hb_buffer_get_glyph_infos(buffer_.get(), &count);
  const hb_glyph_position_t* const places =
      library_.hb_buffer_get_glyph_positions(buffer_.get(), nullptr);
  shaped.glyphs.resize(count);
  std::int64_t pen = 0;  // design units, so that sums are exact
  for (unsigned int i = 0; i < count; ++i) {
    shaped.glyphs[i] = {infos[i].codepoint, start + around.places[infos[i].cluster],
                        static_cast<double>(pen + places[i].x_offset) / em_,
                        places[i].y_offset / em_};
    pen += places[i].x_advance;
  }
  shaped.advance = static_cast<double>(pen) / em_;
  return true;
}

}  // namespace

Shaper::Shaper() = default;
Shaper::~Shaper() = default;

bool ItemizeText(std::wstring_view line, bool isRightToLeft, std::vector<TextItem>& items) {
  items.clear();
  const CodePoints points = CodePointsOf(line);
  const std::vector<FriBidiLevel> levels = LevelsOf(points.text, isRightToLeft);
  if (levels.size() != points.text.size()) return false;
  const std::vector<hb_script_t> scripts = ScriptsOf(points.text);
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const auto level = static_cast<unsigned char>(levels[i]);
    const auto script = static_cast<std::uint32_t>(scripts[i]);
    const bool isNew =
        items.empty() || items.back().level != level || items.back().script != script;
    if (isNew) items.push_back({points.places[i], 0, level, script});
    const std::size_t next = i + 1 < levels.size() ? points.places[i + 1] : line.size();
    items.back().length = next - items.back().begin;
  }
  return true;
}

std::unique_ptr<Shaper> OpenShaper(const FontDescription& description) {
  const HarfBuzzLibrary* const harfBuzz = LoadHarfBuzz();
  if (harfBuzz == nullptr || !IsUsablePath(description.file)) return nullptr;
  hb_blob_t* const blob =
      harfBuzz->hb_blob_create_from_file_or_fail(ToNativePath(description.file).c_str());
  if (blob == nullptr) return nullptr;
  const auto index = static_cast<unsigned int>(description.index);
  hb_face_t* const face = harfBuzz->hb_face_create(blob, index & INDEX_MASK);
  harfBuzz->hb_blob_destroy(blob);
  hb_font_t* const font = harfBuzz->hb_font_create(face);
  harfBuzz->hb_ot_font_set_funcs(font);
  if (index >> INSTANCE_SHIFT != 0) {
    harfBuzz->hb_font_set_var_named_instance(font, (index >> INSTANCE_SHIFT) - 1);
  }
  const double em = harfBuzz->hb_face_get_upem(face);
  harfBuzz->hb_face_destroy(face);
  return std::make_unique<HarfBuzzShaper>(font, em);
}

}  // namespace shr::platform
