// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/clipper/GpcSlabs.h"

namespace shr::gpc {
namespace {

/// How many slabs a section meets on average, at most.
constexpr double SLABS_A_SECTION = 3.0;

}  // namespace

void SlabIndex::Build(const Input& input) {
  double sum = 0.0;
  double high = -HUGE_VAL;
  low_ = HUGE_VAL;
  for (const Section& section : input.sections) {
    sum += section.box.xMax - section.box.xMin;
    low_ = std::min(low_, section.box.xMin);
    high = std::max(high, section.box.xMax);
  }
  const double width = high - low_;
  const double sections = input.sections.Size();
  const double slabs =
      std::min(sections / 2.0, sum > 0.0 ? SLABS_A_SECTION * sections * width / sum : 1.0);
  slabCount_ = std::max(1u, static_cast<Index>(slabs));
  scale_ = width > 0.0 ? slabCount_ / width : 0.0;
  Distribute(input);
}

void SlabIndex::Distribute(const Input& input) {
  starts_.Fill(slabCount_ + 1, 0);
  for (const Section& section : input.sections) {
    const Index last = GetSlab(section.box.xMax);
    for (Index i = GetSlab(section.box.xMin); i <= last; ++i) ++starts_[i];
  }
  Index sum = 0;
  for (Index& start : starts_) {
    sum += start;
    start = sum;
  }
  sections_.Resize(sum);
  for (Index i = input.sections.Size(); i-- > 0;) {
    const Box& box = input.sections[i].box;
    const Index last = GetSlab(box.xMax);
    for (Index j = GetSlab(box.xMin); j <= last; ++j) {
      sections_[--starts_[j]] = i;
    }
  }
}

int SlabIndex::CountBelow(const Input& input, const Section& section, const Vec2d& point) {
  const Vec2d* points = input.points.Data() + section.firstEdge;
  if (section.box.yMax < point.y) {
    return static_cast<int>(points[0].x <= point.x) -
           static_cast<int>(points[section.edgeCount].x <= point.x);
  }
  int turns = 0;
  for (Index i = 0; i < section.edgeCount; ++i) {
    const Vec2d& a = points[i];
    const Vec2d& b = points[i + 1];
    if (IsBelow(a, b, point)) turns += a.x < b.x ? 1 : -1;
  }
  return turns;
}

}  // namespace shr::gpc
