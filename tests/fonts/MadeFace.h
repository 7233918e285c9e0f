// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A face made up for tests: an 'a' of half an em, an 'm' of one, nothing else.

#pragma once

#include "shared/fonts/FaceInfo.h"

namespace shr::test {

class MadeFace : public CFaceInfo {
public:
  explicit MadeFace(const GString& name, const FaceAttributes& attributes = {})
      : CFaceInfo(name, attributes) {}

  unsigned int GetFaceType() const override { return FACE_TRUE_TYPE; }

  OutlineTextMetrics otm;
  bool hasMetrics = true;
  mutable int fetched = 0;  ///< how often a glyph was asked for

protected:
  bool FetchOTM(OutlineTextMetrics& metrics) const override {
    metrics = otm;
    return hasMetrics;
  }
  bool FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const override {
    ++fetched;
    if (code == U'a') metrics = {0.5, 0.0625, 0, 0.4375, 0.5};
    if (code == U'm') metrics = {1, 0.125, -0.25, 0.875, 0.5};
    if (code == U' ') metrics = {0.25, 1, 1, -1, -1};
    if (code == 0x1F30D) metrics = {2, 0, 0, 2, 1};
    if (code == 0xF041) metrics = {0.75, 0, 0, 0.75, 0.75};
    return code == U'a' || code == U'm' || code == U' ' || code == 0x1F30D || code == 0xF041;
  }
  bool FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const override {
    metrics = {0.625, 0, 0, 0.5, 1};
    return true;
  }
  bool FetchGlyphVectors(char32_t, GlyphVectors&) const override { return false; }
  bool FetchDefaultGlyphVectors(GlyphVectors&) const override { return false; }
  void Release() const override {}
};

}  // namespace shr::test
