// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fontconfig has read the characters of all fonts and sorts fonts for a request by the rules of the
// system.

#include "shared/platform/FontFallback.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "shared/platform/posix/FontConfiguration.h"
#include "shared/platform/posix/NativePath.h"

namespace shr::platform {
namespace {

/// Adds the characters of one page of a set, whose bits are those from `first` on.
void AddPage(const FcChar32 (&bits)[FC_CHARSET_MAP_SIZE], char32_t first,
             std::vector<CharacterRange>& ranges) {
  constexpr char32_t WORD_BITS = 32;
  for (char32_t i = 0; i < FC_CHARSET_MAP_SIZE * WORD_BITS; ++i) {
    if ((bits[i / WORD_BITS] >> (i % WORD_BITS) & 1) == 0) continue;
    const char32_t character = first + i;
    if (!ranges.empty() && ranges.back().last + 1 == character) {
      ranges.back().last = character;
    } else {
      ranges.push_back({character, character});
    }
  }
}

const char* GenericFamily(unsigned char pitchAndFamily) {
  switch (pitchAndFamily & FAMILY_MASK) {
    case FAMILY_ROMAN:
      return "serif";
    case FAMILY_MODERN:
      return "monospace";
    case FAMILY_SCRIPT:
      return "cursive";
    case FAMILY_DECORATIVE:
      return "fantasy";
    default:
      return "sans-serif";
  }
}

/// Owns a request to Fontconfig.
class Request {
public:
  explicit Request(const FontDescription& like) : pattern_(library_.FcPatternCreate()) {
    Add(like.family.ToUtf8());
    Add(GenericFamily(like.pitchAndFamily));
    library_.FcPatternAddInteger(pattern_, FC_WEIGHT,
                                 library_.FcWeightFromOpenType(static_cast<int>(like.weight)));
    library_.FcPatternAddInteger(pattern_, FC_SLANT,
                                 like.italic != 0 ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    library_.FcConfigSubstitute(FontConfiguration::Get().GetConfig(), pattern_, FcMatchPattern);
    library_.FcDefaultSubstitute(pattern_);
  }
  ~Request() { library_.FcPatternDestroy(pattern_); }
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  FcPattern* Get() const { return pattern_; }

private:
  void Add(const std::string& family) {
    library_.FcPatternAddString(pattern_, FC_FAMILY,
                                reinterpret_cast<const FcChar8*>(family.c_str()));
  }

  const FontconfigLibrary& library_ = *LoadFontconfig();
  FcPattern* pattern_;
};

}  // namespace

std::vector<CharacterRange> ReadCoverage(const FontDescription& font) {
  std::vector<CharacterRange> ranges;
  const FontconfigLibrary* const fontconfig = LoadFontconfig();
  if (fontconfig == nullptr || !IsUsablePath(font.file)) return ranges;
  const std::lock_guard<std::mutex> lock(FontConfiguration::GetMutex());
  const FcPattern* const pattern =
      FontConfiguration::Get().FindPattern(ToNativePath(font.file), font.index);
  FcCharSet* set = nullptr;
  if (pattern == nullptr ||
      fontconfig->FcPatternGetCharSet(pattern, FC_CHARSET, 0, &set) != FcResultMatch) {
    return ranges;
  }
  FcChar32 bits[FC_CHARSET_MAP_SIZE];
  FcChar32 next = 0;
  FcChar32 first = fontconfig->FcCharSetFirstPage(set, bits, &next);
  while (first != FC_CHARSET_DONE) {
    AddPage(bits, first, ranges);
    first = fontconfig->FcCharSetNextPage(set, bits, &next);
  }
  return ranges;
}

std::vector<std::size_t> RankFonts(const FontDescription& missing,
                                   const std::vector<const FontDescription*>& fonts) {
  std::map<std::pair<std::string, int>, std::size_t> places;
  for (std::size_t i = 0; i < fonts.size(); ++i) {
    places.emplace(std::pair(ToNativePath(fonts[i]->file), fonts[i]->index), i);
  }
  std::vector<std::size_t> order;
  const FontconfigLibrary* const fontconfig = LoadFontconfig();
  const std::lock_guard<std::mutex> lock(FontConfiguration::GetMutex());
  FcFontSet* sorted = nullptr;
  if (fontconfig != nullptr && FontConfiguration::Get().GetConfig() != nullptr) {
    FcResult result = FcResultNoMatch;
    const Request request(missing);
    sorted = fontconfig->FcFontSort(FontConfiguration::Get().GetConfig(), request.Get(), FcFalse,
                                    nullptr, &result);
  }
  for (int i = 0; sorted != nullptr && i < sorted->nfont; ++i) {
    const char* const file = TextOf(sorted->fonts[i], FC_FILE);
    if (file == nullptr) continue;
    const auto found = places.find({file, NumberOf(sorted->fonts[i], FC_INDEX)});
    if (found == places.end()) continue;
    order.push_back(found->second);
    places.erase(found);
  }
  if (sorted != nullptr) fontconfig->FcFontSetSortDestroy(sorted);
  std::vector<std::size_t> rest;
  for (const auto& [key, place] : places) rest.push_back(place);
  std::sort(rest.begin(), rest.end());
  order.insert(order.end(), rest.begin(), rest.end());
  return order;
}

}  // namespace shr::platform
