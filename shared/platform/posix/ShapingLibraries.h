// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// HarfBuzz and FriBidi, loaded by the first call that needs them: programs that lay no text out
/// neither load nor need them.
///
/// The members have the names of the functions that they hold. Threads: any.

#pragma once

#include <fribidi.h>
#include <hb-ot.h>
#include <hb.h>

namespace shr::platform {

struct HarfBuzzLibrary {
  decltype(&::hb_blob_create_from_file_or_fail) hb_blob_create_from_file_or_fail;
  decltype(&::hb_blob_destroy) hb_blob_destroy;
  decltype(&::hb_face_create) hb_face_create;
  decltype(&::hb_face_destroy) hb_face_destroy;
  decltype(&::hb_face_get_upem) hb_face_get_upem;
  decltype(&::hb_font_create) hb_font_create;
  decltype(&::hb_font_destroy) hb_font_destroy;
  decltype(&::hb_font_set_var_named_instance) hb_font_set_var_named_instance;
  decltype(&::hb_ot_font_set_funcs) hb_ot_font_set_funcs;
  decltype(&::hb_buffer_create) hb_buffer_create;
  decltype(&::hb_buffer_destroy) hb_buffer_destroy;
  decltype(&::hb_buffer_clear_contents) hb_buffer_clear_contents;
  decltype(&::hb_buffer_add_codepoints) hb_buffer_add_codepoints;
  decltype(&::hb_buffer_set_direction) hb_buffer_set_direction;
  decltype(&::hb_buffer_set_script) hb_buffer_set_script;
  decltype(&::hb_buffer_set_flags) hb_buffer_set_flags;
  decltype(&::hb_buffer_get_glyph_infos) hb_buffer_get_glyph_infos;
  decltype(&::hb_buffer_get_glyph_positions) hb_buffer_get_glyph_positions;
  decltype(&::hb_shape) hb_shape;
  decltype(&::hb_unicode_funcs_get_default) hb_unicode_funcs_get_default;
  decltype(&::hb_unicode_script) hb_unicode_script;
};

struct FriBidiLibrary {
  decltype(&::fribidi_get_bidi_types) fribidi_get_bidi_types;
  decltype(&::fribidi_get_bracket_types) fribidi_get_bracket_types;
  decltype(&::fribidi_get_par_embedding_levels_ex) fribidi_get_par_embedding_levels_ex;
};

/// Return the library, or null where it is missing; the answer is that of the first call.
const HarfBuzzLibrary* LoadHarfBuzz();
const FriBidiLibrary* LoadFriBidi();

}  // namespace shr::platform
