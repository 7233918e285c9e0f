// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/FontLibraries.h"

#include <mutex>

#include "shared/platform/ForkSafeMutex.h"
#include "shared/platform/posix/LoadedLibrary.h"

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

bool Load(FreeTypeLibrary& freeType) {
  LoadedLibrary symbols(FREETYPE_FILE);
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
  return symbols.IsComplete() && freeType.FT_Init_FreeType(&freeType.handle) == 0;
}

bool Load(FontconfigLibrary& fontconfig) {
  LoadedLibrary symbols(FONTCONFIG_FILE);
  symbols.Find("FcInitLoadConfigAndFonts", fontconfig.FcInitLoadConfigAndFonts);
  symbols.Find("FcConfigDestroy", fontconfig.FcConfigDestroy);
  symbols.Find("FcConfigGetFonts", fontconfig.FcConfigGetFonts);
  symbols.Find("FcConfigSubstitute", fontconfig.FcConfigSubstitute);
  symbols.Find("FcDefaultSubstitute", fontconfig.FcDefaultSubstitute);
  symbols.Find("FcFontMatch", fontconfig.FcFontMatch);
  symbols.Find("FcFontSort", fontconfig.FcFontSort);
  symbols.Find("FcFontSetSortDestroy", fontconfig.FcFontSetSortDestroy);
  symbols.Find("FcCharSetFirstPage", fontconfig.FcCharSetFirstPage);
  symbols.Find("FcCharSetNextPage", fontconfig.FcCharSetNextPage);
  symbols.Find("FcPatternAddInteger", fontconfig.FcPatternAddInteger);
  symbols.Find("FcPatternGetCharSet", fontconfig.FcPatternGetCharSet);
  symbols.Find("FcWeightFromOpenType", fontconfig.FcWeightFromOpenType);
  symbols.Find("FcPatternCreate", fontconfig.FcPatternCreate);
  symbols.Find("FcPatternDestroy", fontconfig.FcPatternDestroy);
  symbols.Find("FcPatternAddString", fontconfig.FcPatternAddString);
  symbols.Find("FcPatternGetString", fontconfig.FcPatternGetString);
  symbols.Find("FcPatternGetInteger", fontconfig.FcPatternGetInteger);
  symbols.Find("FcPatternGetDouble", fontconfig.FcPatternGetDouble);
  symbols.Find("FcPatternGetBool", fontconfig.FcPatternGetBool);
  symbols.Find("FcWeightToOpenType", fontconfig.FcWeightToOpenType);
  return symbols.IsComplete();
}

}  // namespace

const FreeTypeLibrary* LoadFreeType() {
  return LoadOnce<FreeTypeLibrary>(Load);
}

const FontconfigLibrary* LoadFontconfig() {
  return LoadOnce<FontconfigLibrary>(Load);
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
