// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/FaceTextIF.h"

#include <algorithm>
#include <functional>
#include <string>
#include <unordered_map>

#include "shared/fonts/FaceInfo.h"
#include "shared/fonts/FaceSet.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TextCharacters.h"

namespace shr {
namespace {

/// As many faces as labels of one map alternate between.
constexpr std::size_t MAX_KNOWN_FACES = 8;
/// What is remembered of texts that are shaped: labels are not longer.
constexpr std::size_t MAX_KNOWN_TEXTS = 4096;
constexpr std::size_t MAX_KNOWN_LENGTH = 64;

bool IsSame(const TextFace& a, const TextFace& b) {
  return a.weight == b.weight && a.italic == b.italic && a.charset == b.charset &&
         a.pitchAndFamily == b.pitchAndFamily && a.name == b.name;
}

/// Returns the metrics of lines in em.
MTLineMetrics EmMetrics(const CFaceInfo& face) {
  const OutlineTextMetrics& outline = face.GetOTM();
  const EmLine underline = face.CalcEmUnderscoreLine({});
  const EmLine strikeout = face.CalcEmStrikeoutLine({});
  return {outline.ascent,      outline.descent,   outline.lineGap,    underline.begin.y,
          underline.thickness, strikeout.begin.y, strikeout.thickness};
}

bool IsPlain(std::wstring_view text) {
  while (!text.empty()) {
    if (!IsSimple(NextCharacter(text))) return false;
  }
  return true;
}

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::wstring_view text) const {
    return std::hash<std::wstring_view>()(text);
  }
};

}  // namespace

struct CMTFaceTextIF::KnownFace {
  double GetEmExtent(std::wstring_view text);

  TextFace request;
  std::shared_ptr<CFaceInfo> face;
  MTLineMetrics metrics;
  double averageWidth;
  std::unordered_map<std::wstring, double, TextHash, std::equal_to<>> extents;  // of shaped texts
};

/// Returns what `MeasureText` does.
double CMTFaceTextIF::KnownFace::GetEmExtent(std::wstring_view text) {
  double extent = 0;
  if (IsPlain(text) && face->CalcEmExtentOfKnown(text, extent) == text.size()) return extent;
  const auto known = extents.find(text);
  if (known != extents.end()) return known->second;
  extent = MeasureText(text, request);
  if (text.size() > MAX_KNOWN_LENGTH) return extent;
  if (extents.size() >= MAX_KNOWN_TEXTS) extents.clear();
  extents.emplace(text, extent);
  return extent;
}

CMTFaceTextIF::CMTFaceTextIF() = default;
CMTFaceTextIF::~CMTFaceTextIF() = default;

CMTFaceTextIF::KnownFace& CMTFaceTextIF::Face() {
  const unsigned int generation = CSystemFaceInfo::Instance().GetGeneration();
  if (generation != generation_) known_.clear();
  generation_ = generation;
  const TextFace& request = GetAttributes().face;
  const auto found = std::find_if(known_.begin(), known_.end(), [&](const auto& known) {
    return IsSame(known->request, request);
  });
  if (found != known_.end()) {
    std::rotate(known_.begin(), found, found + 1);
    return *known_.front();
  }
  const std::shared_ptr<CFaceInfo> face = FaceSet::Get(request)->GetPrimary();
  auto known = std::make_unique<KnownFace>(
      KnownFace{request, face, EmMetrics(*face), face->GetOTM().averageWidth, {}});
  if (known_.size() == MAX_KNOWN_FACES) known_.pop_back();
  return **known_.insert(known_.begin(), std::move(known));
}

MTLineMetrics CMTFaceTextIF::GetLineMetrics() {
  return Face().metrics * GetAttributes().height;
}

double CMTFaceTextIF::GetTextExtent(std::wstring_view text) {
  return Face().GetEmExtent(text) * GetAttributes().height;
}

Box2d CMTFaceTextIF::GetTextBounds(std::wstring_view text) {
  const Box2d box = MeasureTextBounds(text, GetAttributes().face);
  return box.IsDegenerate() ? box : box * GetAttributes().height;
}

double CMTFaceTextIF::GetAverageCharWidth() {
  return Face().averageWidth * GetAttributes().height;
}

void CMTFaceTextIF::DrawString(const Vec2d&, std::wstring_view) {}
void CMTFaceTextIF::DrawLine(const Vec2d&, const Vec2d&, double) {}

}  // namespace shr
