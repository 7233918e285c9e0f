// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/FaceTextIF.h"

#include <algorithm>

#include "shared/fonts/FaceInfo.h"
#include "shared/fonts/FaceSet.h"
#include "shared/fonts/SystemFaceInfo.h"

namespace shr {
namespace {

/// As many faces as labels of one map alternate between.
constexpr std::size_t MAX_KNOWN_FACES = 8;

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

}  // namespace

struct CMTFaceTextIF::KnownFace {
  TextFace request;
  MTLineMetrics metrics;
  double averageWidth;
};

CMTFaceTextIF::CMTFaceTextIF() = default;
CMTFaceTextIF::~CMTFaceTextIF() = default;

const CMTFaceTextIF::KnownFace& CMTFaceTextIF::Face() {
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
      KnownFace{request, EmMetrics(*face), face->GetOTM().averageWidth});
  if (known_.size() == MAX_KNOWN_FACES) known_.pop_back();
  return **known_.insert(known_.begin(), std::move(known));
}

MTLineMetrics CMTFaceTextIF::GetLineMetrics() {
  return Face().metrics * GetAttributes().height;
}

double CMTFaceTextIF::GetTextExtent(std::wstring_view text) {
  return MeasureText(text, GetAttributes().face) * GetAttributes().height;
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
