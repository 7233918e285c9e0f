// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the extents of every mode, rounded and not; extents that are not taken; previous values;
// the isotropic correction with all signs; points there and back, rounded away from zero and
// stopped at the ends.

#include "shared/viewing/GMapMode.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "shared/geometry/MathUtility.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

using Four = std::array<LONG, 4>;

Four Extents(const GMapMode& mode) {
  SIZE window, viewport;
  EXPECT_TRUE(mode.GetWindowExtEx(&window) && mode.GetViewportExtEx(&viewport));
  return {window.cx, window.cy, viewport.cx, viewport.cy};
}

TEST(GMapMode, everyModeHasItsExtents) {
  const struct {
    int mode;
    Four extents;
  } rows[] = {
      {1, {1, 1, 1, 1}},
      {2, {2000, 1010, 800, -400}},
      {3, {20000, 10100, 800, -400}},
      {4, {787, 398, 800, -400}},
      {5, {7874, 3976, 800, -400}},
      {6, {11339, 5726, 800, -400}},
      {7, {2000, 1010, 792, -400}},
      {8, {1, 1, 1, 1}},
      {0, {1, 1, 1, 1}},
      {-3, {1, 1, 1, 1}},
  };
  for (const auto& row : rows) {
    GMapMode mode(true);
    EXPECT_EQ(mode.SetMapMode(row.mode, 200.0, 101.0, 800.0, 400.0), 1) << row.mode;
    EXPECT_EQ(mode.GetMapMode(), row.mode);
    EXPECT_EQ(Extents(mode), row.extents) << row.mode;
    EXPECT_EQ(mode.SetMapMode(8, 1.0, 1.0, 1.0, 1.0), row.mode);
    EXPECT_EQ(Extents(mode), row.extents) << row.mode;
  }
}

TEST(GMapMode, extentsAreRoundedWhenAsked) {
  for (const bool rounds : {false, true}) {
    GMapMode mode(rounds);
    mode.SetWindowExtEx(2.5, -2.5, nullptr);
    mode.SetViewportExtEx(30.0, 30.0, nullptr);
    EXPECT_EQ(Extents(mode), (Four{3, -3, 30, 30}));
    POINT point{1, 1};
    mode.LPtoDP(&point, 1);
    EXPECT_EQ(point.x, rounds ? 10 : 12);
    EXPECT_EQ(point.y, rounds ? -10 : -12);
  }
}

TEST(GMapMode, extentsOfNothingKeepTheOldOnes) {
  const Vec2d refused[] = {{0.0, 7.0},  {7.0, 0.0},      {0.0, 0.0}, {0.4, 7.0},
                           {7.0, -0.4}, {INFINITY, 7.0}, {7.0, NAN}};
  for (const Vec2d& extent : refused) {
    for (const int modeNumber : {8, 7}) {
      GMapMode mode(true);
      mode.SetMapMode(modeNumber, 0.0, 0.0, 0.0, 0.0);
      EXPECT_EQ(Extents(mode), (Four{1, 1, 1, 1})) << "a device of no size";
      mode.SetWindowExtEx(20.0, 20.0, nullptr);
      mode.SetViewportExtEx(40.0, -40.0, nullptr);
      SIZE previous{};
      EXPECT_TRUE(mode.SetWindowExtEx(extent.x, extent.y, &previous)) << extent;
      EXPECT_EQ(previous.cx, 20) << extent;
      EXPECT_TRUE(mode.SetViewportExtEx(extent.x, extent.y, &previous)) << extent;
      EXPECT_EQ(previous.cy, -40) << extent;
      EXPECT_EQ(Extents(mode), (Four{20, 20, 40, -40})) << extent;
      POINT there{6, -6};
      mode.LPtoDP(&there, 1);
      EXPECT_EQ(there.y, 12);
      mode.DPtoLP(&there, 1);
      EXPECT_EQ(there.x, 6);
    }
  }
  GMapMode mode(true);  // the correction would shrink the height to 0.1
  mode.SetWindowExtEx(100.0, 1.0, nullptr);
  mode.SetViewportExtEx(10.0, 10.0, nullptr);
  mode.AdjustViewportExt();
  EXPECT_EQ(Extents(mode), (Four{100, 1, 10, 10}));
}

TEST(GMapMode, previousValuesAreHandedOut) {
  GMapMode mode(false);
  POINT point;
  SIZE size;
  EXPECT_TRUE(mode.SetWindowOrgEx(1.5, -1.5, &point) && point.x == 0 && point.y == 0);
  EXPECT_TRUE(mode.SetWindowOrgEx(7.0, 8.0, &point) && point.x == 2 && point.y == -2);
  EXPECT_TRUE(mode.SetViewportOrgEx(3.0, 4.0, nullptr));
  EXPECT_TRUE(mode.SetViewportOrgEx(5.0, 6.0, &point) && point.x == 3 && point.y == 4);
  EXPECT_TRUE(mode.GetViewportOrgEx(&point) && point.x == 5 && point.y == 6);
  EXPECT_TRUE(mode.SetWindowExtEx(100.0, 200.0, &size) && size.cx == 1 && size.cy == 1);
  EXPECT_TRUE(mode.SetViewportExtEx(9.0, 9.0, nullptr) && mode.GetViewportExtEx(nullptr));
  EXPECT_TRUE(mode.SetViewportExtEx(1.0, 1.0, &size) && size.cx == 9 && size.cy == 9);
}

TEST(GMapMode, theIsotropicCorrectionShrinksOneAxis) {
  const struct {
    const char* name;
    Four before;
    LONG x, y;
  } rows[] = {
      {"y is shrunk", {100, 100, 200, 300}, 200, 200},
      {"y keeps its sign", {100, 100, 200, -300}, 200, -200},
      {"x is shrunk", {100, 50, -200, 75}, -150, 75},
      {"signs of the window do not count", {-100, 100, 300, 200}, 200, 200},
      {"rounded", {300, 100, 100, 100}, 100, 33},
      {"equal ratios stay", {10, 20, 30, -60}, 30, -60},
  };
  for (const auto& row : rows) {
    GMapMode mode(true);
    mode.SetWindowExtEx(row.before[0], row.before[1], nullptr);
    mode.SetViewportExtEx(row.before[2], row.before[3], nullptr);
    mode.AdjustViewportExt();
    EXPECT_EQ(Extents(mode), (Four{row.before[0], row.before[1], row.x, row.y})) << row.name;
  }
  GMapMode isotropic(true);
  isotropic.SetMapMode(7, 100.0, 100.0, 500.0, 500.0);
  isotropic.SetViewportExtEx(800.0, -200.0, nullptr);
  EXPECT_EQ(Extents(isotropic), (Four{1000, 1000, 200, -200}));
}

TEST(GMapMode, pointsGoThereAndBack) {
  GMapMode mode(false);
  mode.SetMapMode(2, 200.0, 100.0, 800.0, 400.0);
  mode.SetWindowOrgEx(-10.0, 20.0, nullptr);
  mode.SetViewportOrgEx(7.0, 400.0, nullptr);
  POINT points[] = {{-10, 20}, {990, 520}, {1, 20}, {-21, 20}, {-10, 35}};
  const POINT device[] = {{7, 400}, {407, 200}, {11, 400}, {3, 400}, {7, 394}};
  EXPECT_TRUE(mode.LPtoDP(points, 5));
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(points[i].x, device[i].x) << i;
    EXPECT_EQ(points[i].y, device[i].y) << i;
  }
  mode.DPtoLP(std::span(points));
  EXPECT_EQ(points[1].x, 990);
  EXPECT_EQ(points[1].y, 520);
  EXPECT_FALSE(mode.LPtoDP(nullptr, 1) || mode.DPtoLP(points, -1));
}

TEST(GMapMode, halvesGoAwayFromZeroAndRangesEnd) {
  GMapMode mode(false);
  mode.SetWindowExtEx(2.0, 1.0, nullptr);
  mode.SetViewportExtEx(1.0, 2.0, nullptr);
  POINT points[] = {{3, INT32_MAX}, {-3, INT32_MIN}};
  mode.LPtoDP(points, 2);
  EXPECT_EQ(points[0].x, 2);
  EXPECT_EQ(points[1].x, -2);
  EXPECT_EQ(points[0].y, INT32_MAX);
  EXPECT_EQ(points[1].y, INT32_MIN);
  mode.SetViewportOrgEx(NAN, INFINITY, nullptr);
  POINT lost{0, 1};
  mode.LPtoDP(&lost, 1);
  EXPECT_EQ(lost.x, 0) << "no number";
  EXPECT_EQ(lost.y, INT32_MAX) << "infinite";
}

}  // namespace
}  // namespace shr
