// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/ShapingLibraries.h"

#include "shared/platform/posix/LoadedLibrary.h"

namespace shr::platform {
namespace {

// The versions of the interfaces that the headers describe.
constexpr char HARFBUZZ_FILE[] = "libharfbuzz.so.0";
constexpr char FRIBIDI_FILE[] = "libfribidi.so.0";

bool Load(HarfBuzzLibrary& harfBuzz) {
  LoadedLibrary symbols(HARFBUZZ_FILE);
  symbols.Find("hb_blob_create_from_file_or_fail", harfBuzz.hb_blob_create_from_file_or_fail);
  symbols.Find("hb_blob_destroy", harfBuzz.hb_blob_destroy);
  symbols.Find("hb_face_create", harfBuzz.hb_face_create);
  symbols.Find("hb_face_destroy", harfBuzz.hb_face_destroy);
  symbols.Find("hb_face_get_upem", harfBuzz.hb_face_get_upem);
  symbols.Find("hb_font_create", harfBuzz.hb_font_create);
  symbols.Find("hb_font_destroy", harfBuzz.hb_font_destroy);
  symbols.Find("hb_font_set_var_named_instance", harfBuzz.hb_font_set_var_named_instance);
  symbols.Find("hb_ot_font_set_funcs", harfBuzz.hb_ot_font_set_funcs);
  symbols.Find("hb_buffer_create", harfBuzz.hb_buffer_create);
  symbols.Find("hb_buffer_destroy", harfBuzz.hb_buffer_destroy);
  symbols.Find("hb_buffer_clear_contents", harfBuzz.hb_buffer_clear_contents);
  symbols.Find("hb_buffer_add_codepoints", harfBuzz.hb_buffer_add_codepoints);
  symbols.Find("hb_buffer_set_direction", harfBuzz.hb_buffer_set_direction);
  symbols.Find("hb_buffer_set_script", harfBuzz.hb_buffer_set_script);
  symbols.Find("hb_buffer_set_flags", harfBuzz.hb_buffer_set_flags);
  symbols.Find("hb_buffer_get_glyph_infos", harfBuzz.hb_buffer_get_glyph_infos);
  symbols.Find("hb_buffer_get_glyph_positions", harfBuzz.hb_buffer_get_glyph_positions);
  symbols.Find("hb_shape", harfBuzz.hb_shape);
  symbols.Find("hb_unicode_funcs_get_default", harfBuzz.hb_unicode_funcs_get_default);
  symbols.Find("hb_unicode_script", harfBuzz.hb_unicode_script);
  return symbols.IsComplete();
}

bool Load(FriBidiLibrary& friBidi) {
  LoadedLibrary symbols(FRIBIDI_FILE);
  symbols.Find("fribidi_get_bidi_types", friBidi.fribidi_get_bidi_types);
  symbols.Find("fribidi_get_bracket_types", friBidi.fribidi_get_bracket_types);
  symbols.Find("fribidi_get_par_embedding_levels_ex", friBidi.fribidi_get_par_embedding_levels_ex);
  return symbols.IsComplete();
}

}  // namespace

const HarfBuzzLibrary* LoadHarfBuzz() {
  return LoadOnce<HarfBuzzLibrary>(Load);
}

const FriBidiLibrary* LoadFriBidi() {
  return LoadOnce<FriBidiLibrary>(Load);
}

}  // namespace shr::platform
