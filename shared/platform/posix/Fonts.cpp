// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fontconfig says which files there are, FreeType what is in those that the cache does not know.

#include "shared/platform/Fonts.h"

#include <sys/stat.h>

#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "shared/platform/posix/FontCache.h"
#include "shared/platform/posix/FontConfiguration.h"
#include "shared/platform/posix/FontLibraries.h"
#include "shared/platform/posix/FreeTypeFont.h"
#include "shared/platform/posix/NativePath.h"
#include "shared/text/StringCompare.h"

namespace shr::platform {
namespace {

constexpr std::int64_t NANOSECONDS = 1000000000;
constexpr int INSTANCE_SHIFT = 16;  // above it an index names an instance of a variable font

/// The families of the last listing, some of them several times.
std::vector<GString>& Families() {
  static std::vector<GString> families;
  return families;
}

bool TruthOf(const FontconfigLibrary& fontconfig, const FcPattern* pattern, const char* object) {
  FcBool truth = FcFalse;
  return fontconfig.FcPatternGetBool(pattern, object, 0, &truth) == FcResultMatch && truth;
}

/// Lists the patterns of a set into `list`.
class Lister {
public:
  Lister(const FontconfigLibrary& fontconfig, FontList& list)
      : fontconfig_(fontconfig), list_(list) {}

  void Add(const FcFontSet& fonts) {
    for (int i = 0; i < fonts.nfont; ++i) AddPattern(fonts.fonts[i]);
  }
  void Finish() { cache_.Save(); }

private:
  void AddPattern(const FcPattern* pattern);
  void AddFont(const std::string& path, int index, const FcPattern* pattern);

  const FontconfigLibrary& fontconfig_;
  FontList& list_;
  FontCache cache_;
  std::set<std::pair<std::string, int>> seen_;
};

void Lister::AddPattern(const FcPattern* pattern) {
  // Of a variable font the named instances are listed, not the font that could be any of them.
  if (TruthOf(fontconfig_, pattern, FC_VARIABLE) || !TruthOf(fontconfig_, pattern, FC_OUTLINE)) {
    return;
  }
  const char* const format = TextOf(pattern, FC_FONTFORMAT);
  const char* const file = TextOf(pattern, FC_FILE);
  if (file == nullptr || format == nullptr) return;
  if (std::string_view(format) != "TrueType" && std::string_view(format) != "CFF") return;
  const int index = NumberOf(pattern, FC_INDEX);
  if (seen_.emplace(file, index).second) AddFont(file, index, pattern);
}

void Lister::AddFont(const std::string& path, int index, const FcPattern* pattern) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) return;
  const FontFileStamp stamp = {status.st_mtim.tv_sec * NANOSECONDS + status.st_mtim.tv_nsec,
                               status.st_size};
  FontDescription font;
  FontCache::Answer answer = cache_.Find(path, index, stamp, font);
  if (answer == FontCache::Answer::Unknown) {
    const bool described = DescribeFont(path.c_str(), index, font);
    if (described && index >> INSTANCE_SHIFT != 0) {
      double weight = 0;
      if (fontconfig_.FcPatternGetDouble(pattern, FC_WEIGHT, 0, &weight) == FcResultMatch) {
        font.weight = fontconfig_.FcWeightToOpenType(static_cast<int>(weight));
      }
    }
    cache_.Add(path, index, stamp, described ? &font : nullptr);
    if (!described) list_.unreadable.push_back(FromNativePath(path));
    answer = described ? FontCache::Answer::Known : FontCache::Answer::Broken;
  }
  if (answer != FontCache::Answer::Known) return;
  font.file = FromNativePath(path);
  list_.fonts.push_back(std::move(font));
}

/// Returns the first of the families that the rules of Fontconfig put into the pattern, the best
/// first, that is installed; empty when none is. This costs less than a match by a hundred times.
GString FirstInstalled(const FontconfigLibrary& fontconfig, const FcPattern* pattern) {
  FcChar8* text = nullptr;
  for (int i = 0; fontconfig.FcPatternGetString(pattern, FC_FAMILY, i, &text) == FcResultMatch;
       ++i) {
    const GString family = GString::FromUtf8(reinterpret_cast<const char*>(text));
    for (const GString& installed : Families()) {
      if (StringEquivalent()(installed, family)) return installed;
    }
  }
  return GString();
}

/// Returns the family that Fontconfig finds most like the pattern.
GString BestMatch(const FontconfigLibrary& fontconfig, FcPattern* pattern) {
  FcResult result = FcResultNoMatch;
  FcPattern* const match =
      fontconfig.FcFontMatch(FontConfiguration::Get().GetConfig(), pattern, &result);
  if (match == nullptr) return GString();
  FontDescription font;
  if (const char* const file = TextOf(match, FC_FILE)) {
    DescribeFont(file, NumberOf(match, FC_INDEX), font);
  }
  fontconfig.FcPatternDestroy(match);
  return font.family;
}

}  // namespace

FontList ListFonts() {
  FontList list;
  const FontconfigLibrary* const fontconfig = LoadFontconfig();
  if (fontconfig == nullptr || LoadFreeType() == nullptr) return list;
  const std::lock_guard<std::mutex> lock(FontConfiguration::GetMutex());
  FcConfig* const configuration = fontconfig->FcInitLoadConfigAndFonts();
  if (configuration == nullptr) return list;
  Lister lister(*fontconfig, list);
  for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
    if (const FcFontSet* const fonts = fontconfig->FcConfigGetFonts(configuration, name)) {
      lister.Add(*fonts);
    }
  }
  lister.Finish();
  Families().clear();
  for (const FontDescription& font : list.fonts) Families().push_back(font.family);
  FontConfiguration::Get().Replace(configuration);
  return list;
}

GString FindStandIn(const GString& family, unsigned char) {
  const FontconfigLibrary* const fontconfig = LoadFontconfig();
  if (fontconfig == nullptr || LoadFreeType() == nullptr) return GString();
  const std::lock_guard<std::mutex> lock(FontConfiguration::GetMutex());
  if (FontConfiguration::Get().GetConfig() == nullptr) return GString();
  FcPattern* const pattern = fontconfig->FcPatternCreate();
  const std::string name = family.ToUtf8();
  fontconfig->FcPatternAddString(pattern, FC_FAMILY,
                                 reinterpret_cast<const FcChar8*>(name.c_str()));
  fontconfig->FcConfigSubstitute(FontConfiguration::Get().GetConfig(), pattern, FcMatchPattern);
  fontconfig->FcDefaultSubstitute(pattern);
  GString found = FirstInstalled(*fontconfig, pattern);
  if (found.empty()) found = BestMatch(*fontconfig, pattern);
  fontconfig->FcPatternDestroy(pattern);
  return found;
}

std::unique_ptr<Font> OpenFont(const FontDescription& description) {
  if (!IsUsablePath(description.file)) return nullptr;
  return OpenFreeTypeFont(ToNativePath(description.file).c_str(), description.index);
}

}  // namespace shr::platform
