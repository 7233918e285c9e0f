// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CSYMFaceInfo`, a symbol set as a face: its file is read when it is first measured.
///
///     const CSYMFaceInfo markers(1);                   // the second set of the table
///     const double width = markers.CalcEmExtent(L"!");
///
/// Threads: as shared/fonts/FaceInfo.h.

#pragma once

#include <cstddef>
#include <memory>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/fonts/StrokedFace.h"

namespace shr {

/// A face whose glyphs are strokes of a symbol set. Its name is the display name of the table.
class SHARED_API CSYMFaceInfo : public CFaceInfo {
public:
  /// Errors: an index behind the table (`CSYMSetInfo::GetTable`) is an invalid parameter.
  explicit CSYMFaceInfo(std::size_t setIndex);
  ~CSYMFaceInfo() override;

  unsigned int GetFaceType() const override { return FACE_SYMBOL; }

  std::size_t GetSetIndex() const noexcept { return setIndex_; }

  /// Returns the set, for glyphs by name. Errors: those of `CStrokedFace`; measuring a set that
  /// cannot be read logs them once and finds no glyphs. Lifetime: what the pointer holds.
  std::shared_ptr<const CStrokedFace> GetStrokedFace() const;

protected:
  bool FetchOTM(OutlineTextMetrics& metrics) const override;
  bool FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const override;
  bool FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const override;
  bool FetchGlyphVectors(char32_t code, GlyphVectors& vectors) const override;
  bool FetchDefaultGlyphVectors(GlyphVectors& vectors) const override;
  void Release() const override;

private:
  CSYMFaceInfo(std::size_t setIndex, const CSYMSetInfo& set);
  const CStrokedFace* Open() const;

  std::size_t setIndex_;
  CSYMSetInfo set_;
  mutable std::mutex faceMutex_;
  mutable std::shared_ptr<const CStrokedFace> face_;
  mutable bool failed_ = false;
};

}  // namespace shr
