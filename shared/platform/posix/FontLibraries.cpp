// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/FontLibraries.h"

#include <dlfcn.h>

#include <mutex>

#include "shared/platform/ForkSafeMutex.h"

namespace shr::platform {
namespace {

// The versions of the interfaces that the headers describe.
constexpr char FREETYPE_FILE[] = "libfreetype.so.6";
constexpr char FONTCONFIG_FILE[] = "libfontconfig.so.1";

struct FreeTypeTag;

/// FreeType wants its faces opened and closed by one thread at a time.
std::mutex& FreeTypeMutex() {
  static ForkSafeMutex<std::mutex, FreeTypeTag> mutex;
  return mutex.Get();
}

/// Looks functions up and remembers whether all were there. The library stays loaded.
class Symbols {
public:
  explicit Symbols(const char* file) : library_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

  template <typename Function>
  void Find(const char* name, Function& function) {
    void* const symbol = library_ == nullptr ? nullptr : dlsym(library_, name);
    function = reinterpret_cast<Function>(symbol);
    complete_ = complete_ && symbol != nullptr;
  }

  bool AreComplete() const { return complete_; }

private:
  void* library_;
  bool complete_ = true;
};

bool Load(FreeTypeLibrary& freeType) {
  Symbols symbols(FREETYPE_FILE);
  symbols.Find("FT_Init_FreeType", freeType.FT_Init_FreeType);
  symbols.Find("FT_New_Face", freeType.FT_New_Face);
  symbols.Find("FT_Done_Face", freeType.FT_Done_Face);
  symbols.Find("FT_Get_Char_Index", freeType.FT_Get_Char_Index);
  symbols.Find("FT_Get_Sfnt_Table", freeType.FT_Get_Sfnt_Table);
  symbols.Find("FT_Get_Sfnt_Name", freeType.FT_Get_Sfnt_Name);
  symbols.Find("FT_Get_Sfnt_Name_Count", freeType.FT_Get_Sfnt_Name_Count);
  symbols.Find("FT_Load_Glyph", freeType.FT_Load_Glyph);
  symbols.Find("FT_Outline_Decompose", freeType.FT_Outline_Decompose);
  symbols.Find("FT_Select_Charmap", freeType.FT_Select_Charmap);
  return symbols.AreComplete() && freeType.FT_Init_FreeType(&freeType.handle) == 0;
}

bool Load(FontconfigLibrary& fontconfig) {
  Symbols symbols(FONTCONFIG_FILE);
  symbols.Find("FcInitLoadConfigAndFonts", fontconfig.FcInitLoadConfigAndFonts);
  symbols.Find("FcConfigDestroy", fontconfig.FcConfigDestroy);
  symbols.Find("FcConfigGetFonts", fontconfig.FcConfigGetFonts);
  symbols.Find("FcConfigSubstitute", fontconfig.FcConfigSubstitute);
  symbols.Find("FcDefaultSubstitute", fontconfig.FcDefaultSubstitute);
  symbols.Find("FcFontMatch", fontconfig.FcFontMatch);
  symbols.Find("FcPatternCreate", fontconfig.FcPatternCreate);
  symbols.Find("FcPatternDestroy", fontconfig.FcPatternDestroy);
  symbols.Find("FcPatternAddString", fontconfig.FcPatternAddString);
  symbols.Find("FcPatternGetString", fontconfig.FcPatternGetString);
  symbols.Find("FcPatternGetInteger", fontconfig.FcPatternGetInteger);
  symbols.Find("FcPatternGetDouble", fontconfig.FcPatternGetDouble);
  symbols.Find("FcPatternGetBool", fontconfig.FcPatternGetBool);
  symbols.Find("FcWeightToOpenType", fontconfig.FcWeightToOpenType);
  return symbols.AreComplete();
}

template <typename Library>
const Library* LoadOnce() {
  static Library library = {};
  static const bool loaded = Load(library);
  return loaded ? &library : nullptr;
}

}  // namespace

const FreeTypeLibrary* LoadFreeType() {
  return LoadOnce<FreeTypeLibrary>();
}

const FontconfigLibrary* LoadFontconfig() {
  return LoadOnce<FontconfigLibrary>();
}

FT_Face OpenFreeTypeFace(const char* file, FT_Long index) {
  const FreeTypeLibrary* const freeType = LoadFreeType();
  if (freeType == nullptr) return nullptr;
  const std::lock_guard<std::mutex> lock(FreeTypeMutex());
  FT_Face face = nullptr;
  return freeType->FT_New_Face(freeType->handle, file, index, &face) == 0 ? face : nullptr;
}

void CloseFreeTypeFace(FT_Face face) {
  const std::lock_guard<std::mutex> lock(FreeTypeMutex());
  LoadFreeType()->FT_Done_Face(face);
}

}  // namespace shr::platform
