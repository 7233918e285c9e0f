// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/FontConfiguration.h"

#include "shared/platform/ForkSafeMutex.h"

namespace shr::platform {
namespace {

struct ConfigurationTag;

}  // namespace

std::mutex& FontConfiguration::GetMutex() {
  static ForkSafeMutex<std::mutex, ConfigurationTag> mutex;
  return mutex.Get();
}

FontConfiguration& FontConfiguration::Get() {
  static FontConfiguration configuration;
  return configuration;
}

void FontConfiguration::Replace(FcConfig* next) {
  patterns_.clear();
  if (held_ != nullptr) LoadFontconfig()->FcConfigDestroy(held_);
  held_ = next;
}

const FcPattern* FontConfiguration::FindPattern(const std::string& file, int index) {
  if (patterns_.empty() && held_ != nullptr) CollectPatterns();
  const auto found = patterns_.find({file, index});
  return found != patterns_.end() ? found->second : nullptr;
}

void FontConfiguration::CollectPatterns() {
  for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
    const FcFontSet* const fonts = LoadFontconfig()->FcConfigGetFonts(held_, name);
    for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
      const FcPattern* const pattern = fonts->fonts[i];
      const char* const file = TextOf(pattern, FC_FILE);
      if (file != nullptr) patterns_.emplace(std::pair(file, NumberOf(pattern, FC_INDEX)), pattern);
    }
  }
}

const char* TextOf(const FcPattern* pattern, const char* object) {
  FcChar8* text = nullptr;
  if (LoadFontconfig()->FcPatternGetString(pattern, object, 0, &text) != FcResultMatch) {
    return nullptr;
  }
  return reinterpret_cast<const char*>(text);
}

int NumberOf(const FcPattern* pattern, const char* object) {
  int number = 0;
  LoadFontconfig()->FcPatternGetInteger(pattern, object, 0, &number);
  return number;
}

}  // namespace shr::platform
