// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Pango as a peer that measures labels: one layout used again, FreeType's fonts without hints,
/// places not rounded, as for the labels of a picture that may be scaled.
///
///     bench::PangoLabels layout("Arial", 10);
///     const double width = layout.WidthOfText("Oslo");

#pragma once

#include <pango/pangoft2.h>

#include <string>

namespace bench {

class PangoLabels {
public:
  PangoLabels(const char* family, double height)
      : fonts_(pango_ft2_font_map_new()), context_(pango_font_map_create_context(fonts_)) {
    pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(fonts_), 96, 96);
    pango_context_set_round_glyph_positions(context_, FALSE);
    layout_ = pango_layout_new(context_);
    PangoFontDescription* const font = pango_font_description_from_string(family);
    pango_font_description_set_absolute_size(font, height * PANGO_SCALE);
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
  }
  ~PangoLabels() {
    g_object_unref(layout_);
    g_object_unref(context_);
    g_object_unref(fonts_);
  }
  PangoLabels(const PangoLabels&) = delete;
  PangoLabels& operator=(const PangoLabels&) = delete;

  /// Letters that stand side by side are not kerned from now on; markup says so itself.
  void LeaveOutKerning() {
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_font_features_new("kern=0"));
    pango_layout_set_attributes(layout_, attributes);
    pango_attr_list_unref(attributes);
  }

  double WidthOfText(const std::string& text) {
    pango_layout_set_text(layout_, text.data(), static_cast<int>(text.size()));
    return Width();
  }
  double WidthOfMarkup(const std::string& markup) {
    pango_layout_set_markup(layout_, markup.data(), static_cast<int>(markup.size()));
    return Width();
  }

private:
  /// Asked for its logical extents alone, it still shapes the line each time.
  double Width() {
    PangoRectangle box;
    pango_layout_get_extents(layout_, nullptr, &box);
    return static_cast<double>(box.width) / PANGO_SCALE;
  }

  PangoFontMap* fonts_;
  PangoContext* context_;
  PangoLayout* layout_ = nullptr;
};

}  // namespace bench
