// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTFaceTextIF`, a text interface that measures by the faces of the system, so that all outputs
/// derived from it lay text out alike. By itself it draws nothing: it is for measuring alone.
///
///     CMTFaceTextIF measure;
///     CMTContext context(measure, 12);
///     std::shared_ptr<CMTMultiLineElement> label;
///     context.Parse(L"Depth, m\\up40\\fs60 2", label);
///     const Box2d box = label->GetInternalBBox(measure);
///
/// Text is measured by `MeasureText` of shared/fonts/TextLayout.h, which remembers what it shaped.
/// Where there are no fonts the stroked text face serves. The metrics of the faces used last are
/// kept here until the faces are collected anew (`CSystemFaceInfo::Refresh`), so that labels of one
/// map look no face up.
///
/// Threads: one thread an interface.

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/TextIF.h"

namespace shr {

class SHARED_API CMTFaceTextIF : public CMTTextIF {
public:
  CMTFaceTextIF();
  ~CMTFaceTextIF() override;

  // Errors: "CFaceInfo: Could not get text metrics for typeface '%s'" of a face that cannot be
  // opened.

  /// Returns ascent, descent and gap as the fields of these names in `OutlineTextMetrics`, and the
  /// lines of `CFaceInfo::CalcEmUnderscoreLine` and `CalcEmStrikeoutLine`, times the height.
  MTLineMetrics GetLineMetrics() override;
  double GetTextExtent(std::wstring_view text) override;
  Box2d GetTextBounds(std::wstring_view text) override;
  double GetAverageCharWidth() override;
  void DrawString(const Vec2d& baselineBegin, std::wstring_view text) override;
  void DrawLine(const Vec2d& from, const Vec2d& to, double thickness) override;

private:
  struct KnownFace;

  const KnownFace& Face();

  std::vector<std::unique_ptr<KnownFace>> known_;  // the last used first
  unsigned int generation_ = 0;                    // of the faces, when they were looked up
};

}  // namespace shr
