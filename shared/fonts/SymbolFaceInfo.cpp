// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/fonts/SymbolFaceInfo.h"

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/Logger.h"

namespace shr {
namespace {

FaceAttributes AttributesOf(const CSYMSetInfo& set) {
  FaceAttributes attributes;
  attributes.charsets = platform::CharsetBit(set.GetCharset());
  attributes.pitchAndFamily = set.GetPitchAndFamily();
  attributes.firstChar = U' ';
  return attributes;
}

}  // namespace

CSYMFaceInfo::CSYMFaceInfo(std::size_t setIndex)
    : CSYMFaceInfo(setIndex, CSYMSetInfo::GetEntry(setIndex)) {}

CSYMFaceInfo::CSYMFaceInfo(std::size_t setIndex, const CSYMSetInfo& set)
    : CFaceInfo(set.GetDisplayName(), AttributesOf(set)), setIndex_(setIndex), set_(set) {}

CSYMFaceInfo::~CSYMFaceInfo() = default;

std::shared_ptr<const CStrokedFace> CSYMFaceInfo::GetStrokedFace() const {
  const std::lock_guard<std::mutex> lock(faceMutex_);
  if (face_ == nullptr) {
    const GString path = LocateSymbolSet(set_.GetFileName());
    face_ = std::make_shared<const CStrokedFace>(CStrokedFace::FromFile(path));
  }
  return face_;
}

/// Returns the set, or null when it cannot be read.
const CStrokedFace* CSYMFaceInfo::Open() const {
  if (failed_) return nullptr;
  try {
    return GetStrokedFace().get();
  } catch (const Exception& error) {
    g_Logger.Send(LogWarning, error.GetDescription());
    failed_ = true;
    return nullptr;
  }
}

bool CSYMFaceInfo::FetchOTM(OutlineTextMetrics& metrics) const {
  const CStrokedFace* const face = Open();
  if (face == nullptr) return false;
  metrics = face->GetTextMeasures();
  return true;
}

bool CSYMFaceInfo::FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const {
  const CStrokedFace* const face = Open();
  const CStrokedFace::Glyph* const glyph = face == nullptr ? nullptr : face->FindGlyph(code);
  if (glyph == nullptr) return false;
  metrics = glyph->metrics;
  return true;
}

bool CSYMFaceInfo::FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const {
  const CStrokedFace* const face = Open();
  const CStrokedFace::Glyph* const glyph = face == nullptr ? nullptr : face->GetMissingGlyph();
  if (glyph == nullptr) return false;
  metrics = glyph->metrics;
  return true;
}

bool CSYMFaceInfo::FetchGlyphVectors(char32_t code, GlyphVectors& vectors) const {
  const CStrokedFace* const face = Open();
  const CStrokedFace::Glyph* const glyph = face == nullptr ? nullptr : face->FindGlyph(code);
  if (glyph == nullptr) return false;
  vectors = glyph->vectors;
  return true;
}

bool CSYMFaceInfo::FetchDefaultGlyphVectors(GlyphVectors& vectors) const {
  const CStrokedFace* const face = Open();
  const CStrokedFace::Glyph* const glyph = face == nullptr ? nullptr : face->GetMissingGlyph();
  if (glyph == nullptr) return false;
  vectors = glyph->vectors;
  return true;
}

void CSYMFaceInfo::Release() const {
  const std::lock_guard<std::mutex> lock(faceMutex_);
  face_.reset();
  failed_ = false;
}

}  // namespace shr
