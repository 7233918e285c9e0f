// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Places: each of the eight positions, in their order of preference, priority, obstacles, frame.
// Laws: random labels of every mixture of sizes agree with a plain placer that compares all boxes,
// and no two overlap. Degenerate: equal points, one line, labels wider than the frame, numbers that
// are none.

#include "shared/plots/LabelPlacement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace shr;

namespace {

const Box2d FRAME(0, 0, 400, 300);
constexpr double INF = std::numeric_limits<double>::infinity();

PointLabel LabelAt(double x, double y, double width = 40, double radius = 2) {
  return {Vec2d(x, y), radius, {width, 8, 2, 2.5}, 0, true};
}

bool Overlap(const Box2d& a, const Box2d& b) {
  return a.xMin() < b.xMax() && b.xMin() < a.xMax() && a.yMin() < b.yMax() && b.yMin() < a.yMax();
}

/// The rules without haste: every box is compared with all others.
class PlainPlacer {
public:
  explicit PlainPlacer(const Box2d& frame) : frame_(frame) {}

  std::optional<LabelPlace> Place(const PointLabel& label) {
    const Vec2d reach(label.radius, label.radius);
    const Box2d marker(label.point - reach, label.point + reach);
    if (label.needsOwnMarker && !IsFree(marker)) return std::nullopt;
    for (const LabelPosition position : EIGHT_LABEL_POSITIONS) {
      // A placer without boxes tells where the position is.
      LabelPlacer alone(Box2d(-1e6, -1e6, 1e6, 1e6), {std::span(&position, 1)});
      const auto place = alone.Place(label);
      if (!place || !IsFree(place->box)) continue;
      boxes.push_back(place->box);
      if (label.needsOwnMarker) boxes.push_back(marker);
      return place;
    }
    return std::nullopt;
  }

  std::vector<Box2d> boxes;

private:
  bool IsFree(const Box2d& box) const {
    return frame_.Contains(box) &&
           std::none_of(boxes.begin(), boxes.end(),
                        [&](const Box2d& other) { return Overlap(box, other); });
  }

  Box2d frame_;
};

TEST(LabelPlacement, eachPositionIsBesideItsPoint) {
  struct Row {
    const char* name;
    LabelPosition position;
    LabelAnchor anchor;
    Vec2d point;
    Box2d box;
  };
  // Radius 2 and gap 2: 4 away along an axis, 2.4 along both.
  const Row rows[] = {
      {"right", LabelPosition::Right, LabelAnchor::Start, {104, 102.5}, {104, 94.5, 144, 104.5}},
      {"above right",
       LabelPosition::AboveRight,
       LabelAnchor::Start,
       {102.4, 97.6},
       {102.4, 89.6, 142.4, 99.6}},
      {"below right",
       LabelPosition::BelowRight,
       LabelAnchor::Start,
       {102.4, 107.4},
       {102.4, 99.4, 142.4, 109.4}},
      {"left", LabelPosition::Left, LabelAnchor::End, {96, 102.5}, {56, 94.5, 96, 104.5}},
      {"above left",
       LabelPosition::AboveLeft,
       LabelAnchor::End,
       {97.6, 97.6},
       {57.6, 89.6, 97.6, 99.6}},
      {"below left",
       LabelPosition::BelowLeft,
       LabelAnchor::End,
       {97.6, 107.4},
       {57.6, 99.4, 97.6, 109.4}},
      {"above", LabelPosition::Above, LabelAnchor::Middle, {100, 95}, {80, 87, 120, 97}},
      {"below", LabelPosition::Below, LabelAnchor::Middle, {100, 112}, {80, 104, 120, 114}},
  };
  for (const Row& row : rows) {
    LabelPlacer placer(FRAME, {std::span(&row.position, 1), 2});
    const auto place = placer.Place(LabelAt(100, 100));
    ASSERT_TRUE(place) << row.name;
    EXPECT_EQ(row.position, place->position) << row.name;
    EXPECT_EQ(row.anchor, place->anchor) << row.name;
    EXPECT_NEAR(0, (row.point - place->anchorPoint).Length(), 1e-12) << row.name;
    EXPECT_NEAR(0, (row.box.Min() - place->box.Min()).Length(), 1e-12) << row.name;
    EXPECT_NEAR(0, (row.box.Max() - place->box.Max()).Length(), 1e-12) << row.name;
  }
}

TEST(LabelPlacement, theBestFreePositionWins) {
  LabelPlacer placer(FRAME);
  placer.Block(Box2d(106, 0, 150, 300));  // right of the point
  EXPECT_EQ(LabelPosition::Left, placer.Place(LabelAt(100, 100))->position);
  placer.Block(Box2d(0, 0, 96, 258));
  EXPECT_FALSE(placer.Place(LabelAt(100, 200)));
  // Nothing was blocked by the one that found no place.
  EXPECT_TRUE(placer.IsFree(Box2d(98, 198, 102, 202)));
  EXPECT_EQ(LabelPosition::BelowLeft, placer.Place(LabelAt(100, 260))->position);
}

TEST(LabelPlacement, markersAreKeptFree) {
  LabelPlacer placer(FRAME);
  ASSERT_TRUE(placer.Place(LabelAt(100, 100)));
  EXPECT_FALSE(placer.Place(LabelAt(110, 100))) << "a marker under the label";
  PointLabel covered = LabelAt(110, 100);
  covered.needsOwnMarker = false;
  EXPECT_TRUE(placer.Place(covered)) << "one that may be covered";
  EXPECT_FALSE(placer.Place(LabelAt(1, 100))) << "a marker over the edge";
}

TEST(LabelPlacement, priorityDecidesAndTiesGoByOrder) {
  std::vector<PointLabel> labels(4, LabelAt(100, 100));
  labels[0].priority = std::nan("");
  labels[2].priority = labels[3].priority = 5;
  const auto places = PlaceLabels(labels, FRAME, std::vector<Box2d>{{0, 0, 400, 90}});
  EXPECT_FALSE(places[0]);
  EXPECT_FALSE(places[1]);
  ASSERT_TRUE(places[2]);
  EXPECT_EQ(LabelPosition::Right, places[2]->position);
  EXPECT_FALSE(places[3]) << "its marker is that of another";
}

TEST(LabelPlacement, oddLabelsFindSanePlaces) {
  const double nan = std::nan("");
  const double sizes[] = {nan, INF, -1, 401};
  for (const double size : sizes) {
    LabelPlacer placer(FRAME);
    EXPECT_FALSE(placer.Place(LabelAt(100, 100, size))) << size;
    EXPECT_FALSE(placer.Place(LabelAt(100, 100, 40, size))) << size;
    EXPECT_FALSE(placer.Place(LabelAt(size == 401 ? -INF : size, 100))) << size;
    placer.Block(Box2d(nan, 0, 400, 300));
    placer.Block(Box2d(300, 0, 100, 300));
    EXPECT_TRUE(placer.Place(LabelAt(100, 100, 0))) << "an empty label";
    placer.Block(Box2d(-INF, -INF, INF, INF));
    EXPECT_FALSE(placer.Place(LabelAt(200, 100)));
  }
  for (const Box2d& frame :
       {Box2d(), Box2d(0, 0, nan, 9), Box2d(-INF, 0, INF, 9), Box2d(0, 0, 0, 9)}) {
    LabelPlacer placer(frame);
    placer.Block(FRAME);
    EXPECT_FALSE(placer.Place(LabelAt(0, 4, 0, 0)));
  }
}

TEST(LabelPlacement, crowdsGetAsManyAsFit) {
  struct Row {
    const char* name;
    Vec2d step;
    double height;
    std::size_t fewest, most;
  };
  // A label is 40 by 10, and the points take 300 of the frame beside and 250 below one another.
  const Row rows[] = {{"equal points", {0, 0}, 10, 2, 8},
                      {"on one level", {0.003, 0}, 10, 9, 30},
                      {"on one vertical", {0, 0.003}, 10, 25, 90},
                      {"empty texts at one point", {0, 0}, 0, 100000, 100000}};
  for (const Row& row : rows) {
    std::vector<PointLabel> labels;
    for (int i = 0; i < 100000; ++i) {
      PointLabel label{Vec2d(50, 50) + row.step * i,
                       0,
                       {row.height * 4, row.height * .8, row.height * .2, row.height / 4},
                       0,
                       false};
      labels.push_back(label);
    }
    const auto places = PlaceLabels(labels, FRAME);
    const auto placed = static_cast<std::size_t>(std::count_if(
        places.begin(), places.end(), [](const auto& place) { return place.has_value(); }));
    EXPECT_GE(placed, row.fewest) << row.name;
    EXPECT_LE(placed, row.most) << row.name;
  }
}

TEST(LabelPlacement, agreesWithThePlainPlacer) {
  constexpr unsigned int SEED = 20240;
  std::mt19937 random(SEED);
  std::uniform_real_distribution<double> unit(0, 1);
  const double spreads[] = {0, 1, 6, 14};  // powers of two between the sizes of labels
  std::size_t placed = 0;
  for (int round = 0; round < 40; ++round) {
    const double spread = spreads[round % 4];
    LabelPlacer ours(FRAME);
    PlainPlacer plain(FRAME);
    for (int i = 0; i < 300; ++i) {
      const double size = 30 * std::exp2(-spread * unit(random));
      PointLabel label = LabelAt(420 * unit(random) - 10, 320 * unit(random) - 10, size);
      if (round % 3 == 0) label.point = Vec2d(std::floor(label.point.x / 40) * 40, 100);
      label.extent.ascent = size / (1 + 8 * unit(random));
      label.radius = unit(random) * 3;
      label.needsOwnMarker = unit(random) < 0.7;
      const auto expected = plain.Place(label);
      const auto place = ours.Place(label);
      ASSERT_EQ(expected.has_value(), place.has_value())
          << "seed " << SEED << ", " << round << ", " << i;
      if (!place) continue;
      ++placed;
      ASSERT_EQ(expected->position, place->position);
      ASSERT_EQ(expected->box.Min(), place->box.Min());
    }
    for (std::size_t a = 0; a < plain.boxes.size(); ++a) {
      for (std::size_t b = 0; b < a; ++b) {
        // A large marker may reach under a corner of its own label, which is the box before it.
        ASSERT_TRUE(a == b + 1 || !Overlap(plain.boxes[a], plain.boxes[b]));
      }
    }
  }
  EXPECT_GT(placed, 2000u);
}

}  // namespace
