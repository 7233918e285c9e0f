// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: order of the two points; destruction through the base class.

#include "shared/geometry/GLine.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace shr {
namespace {

static_assert(GLine2().GetBegin() == Vec2d::ZERO && GLine3().GetEnd() == Vec3d::ZERO);
static_assert(GLine3(Vec3d::UNIT_X, Vec3d::UNIT_Z).GetEnd() == Vec3d::UNIT_Z);
static_assert(std::has_virtual_destructor_v<GLine2> && std::has_virtual_destructor_v<GLine3>);

TEST(GLine, segmentDiffersFromItsReverse) {
  GLine2 line(Vec2d(1.0, 2.0), Vec2d(3.0, 4.5));
  const GLine2 before = line;
  line.Set(line.GetEnd(), line.GetBegin());
  EXPECT_EQ(line.GetBegin(), Vec2d(3.0, 4.5));
  EXPECT_NE(line, before);
  std::ostringstream text;
  text << before;
  EXPECT_EQ(text.str(), "(1, 2) - (3, 4.5)");
}

class CountedLine : public GLine3 {
public:
  explicit CountedLine(int& destroyed) : destroyed_(destroyed) {}
  ~CountedLine() override { ++destroyed_; }

private:
  int& destroyed_;
};

TEST(GLine, derivedLineIsDestroyedThroughItsBase) {
  int destroyed = 0;
  std::unique_ptr<GLine3> line = std::make_unique<CountedLine>(destroyed);
  line.reset();
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace shr
