// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// FreeType and Fontconfig, loaded by the first call that needs them: programs that ask for no font
/// neither load nor need them.
///
/// The members have the names of the functions that they hold. Threads: any.

#pragma once

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_TABLES_H

namespace shr::platform {

struct FreeTypeLibrary {
  FT_Library handle = nullptr;
  decltype(&::FT_Init_FreeType) FT_Init_FreeType;
  decltype(&::FT_New_Face) FT_New_Face;
  decltype(&::FT_Done_Face) FT_Done_Face;
  decltype(&::FT_Get_Char_Index) FT_Get_Char_Index;
  decltype(&::FT_Get_Sfnt_Table) FT_Get_Sfnt_Table;
  decltype(&::FT_Get_Sfnt_Name) FT_Get_Sfnt_Name;
  decltype(&::FT_Get_Sfnt_Name_Count) FT_Get_Sfnt_Name_Count;
  decltype(&::FT_Load_Glyph) FT_Load_Glyph;
  decltype(&::FT_Outline_Decompose) FT_Outline_Decompose;
  decltype(&::FT_Select_Charmap) FT_Select_Charmap;
};

struct FontconfigLibrary {
  decltype(&::FcInitLoadConfigAndFonts) FcInitLoadConfigAndFonts;
  decltype(&::FcConfigDestroy) FcConfigDestroy;
  decltype(&::FcConfigGetFonts) FcConfigGetFonts;
  decltype(&::FcConfigSubstitute) FcConfigSubstitute;
  decltype(&::FcDefaultSubstitute) FcDefaultSubstitute;
  decltype(&::FcFontMatch) FcFontMatch;
  decltype(&::FcFontSort) FcFontSort;
  decltype(&::FcFontSetSortDestroy) FcFontSetSortDestroy;
  decltype(&::FcCharSetFirstPage) FcCharSetFirstPage;
  decltype(&::FcCharSetNextPage) FcCharSetNextPage;
  decltype(&::FcPatternCreate) FcPatternCreate;
  decltype(&::FcPatternDestroy) FcPatternDestroy;
  decltype(&::FcPatternAddInteger) FcPatternAddInteger;
  decltype(&::FcPatternAddString) FcPatternAddString;
  decltype(&::FcPatternGetCharSet) FcPatternGetCharSet;
  decltype(&::FcPatternGetString) FcPatternGetString;
  decltype(&::FcPatternGetInteger) FcPatternGetInteger;
  decltype(&::FcPatternGetDouble) FcPatternGetDouble;
  decltype(&::FcPatternGetBool) FcPatternGetBool;
  decltype(&::FcWeightFromOpenType) FcWeightFromOpenType;
  decltype(&::FcWeightToOpenType) FcWeightToOpenType;
};

/// Return the library, or null where it is missing; the answer is that of the first call.
const FreeTypeLibrary* LoadFreeType();
const FontconfigLibrary* LoadFontconfig();

/// Opens a font; null on failure. Faces are opened and closed one at a time, each is used by one
/// thread at a time.
FT_Face OpenFreeTypeFace(const char* file, FT_Long index);
void CloseFreeTypeFace(FT_Face face);

}  // namespace shr::platform
