// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: conversions among the color types, scaled and not; packed forms; arithmetic and clamping
// of numbers that are none; hue, saturation and lightness there and back; every method of
// interpolation against the byte color, which is tested by value.

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>

#include "shared/color/Color3f.h"
#include "shared/color/Color4b.h"
#include "shared/color/Color4f.h"

namespace shr {
namespace {

static_assert(sizeof(Color3f) == 3 * sizeof(float) && sizeof(Color4f) == 4 * sizeof(float));
static_assert(Color4f() == Color4f::Black && Color3f() == Color3f::Black);
static_assert(Color4f(Color4b(255, 0, 200, 3)) == Color4f(255.0f, 0.0f, 200.0f, 3.0f));
static_assert(Color3f(Color4b(1, 2, 3, 4)) == Color3f(1.0f, 2.0f, 3.0f));
static_assert(Color3f(Color4f(1.0f, 2.0f, 3.0f, 4.0f)) == Color3f(1.0f, 2.0f, 3.0f));
static_assert(Color4f(Color3f::Orange, 0.5f) == Color4f(1.0f, 0.65f, 0.0f, 0.5f));
static_assert(Color4b(Color4f(1.0f, 0.5f, 0.0f, 0.999f)) == Color4b(255, 127, 0, 254));
static_assert(Color4b(Color3f(0.0f, 0.25f, 1.0f), 9) == Color4b(0, 63, 255, 9));
static_assert(Color3f::Green == Color3f(0.0f, 1.0f, 0.0f) && Color4f::Ltgray.alpha == 1.0f);
static_assert(Color4f::INTERP_HSL_LONGEST == 9 && Color3f::INTERP_REVERSE == 1);

TEST(FloatColors, packedFormsHoldTruncatedChannels) {
  const Color4f color(17.0f / 255.0f, 34.5f / 255.0f, 51.9f / 255.0f, 68.5f / 255.0f);
  EXPECT_EQ(color.GetARGB(), 0x44112233u);
  EXPECT_EQ(color.GetRGBA(), 0x11223344u);
  EXPECT_EQ(color.GetABGR(), 0x44332211u);
  EXPECT_EQ(color.GetCOLORREF(), 0x00332211u);
  EXPECT_EQ(Color3f(color).GetCOLORREF(), 0x00332211u);
}

TEST(FloatColors, channelsAreCombinedOneByOneAndClamped) {
  const Color4f a(0.5f, 0.25f, 2.0f, 1.0f);
  const Color4f b(1.0f, -0.5f, 0.5f, 0.5f);
  EXPECT_EQ(a + b, Color4f(1.5f, -0.25f, 2.5f, 1.5f));
  EXPECT_EQ(a - b, Color4f(-0.5f, 0.75f, 1.5f, 0.5f));
  EXPECT_EQ(2.0f * a, a / 0.5f);
  Color4f clamped(a.red, -1.0f, a.blue, NAN);
  clamped.Clamp();
  EXPECT_EQ(clamped, Color4f(0.5f, 0.0f, 1.0f, 0.0f));
  EXPECT_NE(Color3f(0.0f, 0.0f, static_cast<float>(NAN)), Color3f::Black);
  EXPECT_NEAR(Color3f::White.Intensity(), 1.0, 1e-15);
  EXPECT_NEAR(b.Intensity(), (0.3 - 0.295 + 0.055) * 0.5, 1e-15);
  std::ostringstream text;
  text << Color3f::Orange << Color4f(0.5f, 0.0f, 1.0f);
  EXPECT_EQ(text.str(), "(1, 0.65, 0)(0.5, 0, 1, 1)");
}

TEST(FloatColors, hslThereAndBackGivesTheSameColor) {
  for (int code = 0; code < 9 * 9 * 9; ++code) {
    const auto channel = [code](int divisor) {
      return static_cast<float>(code / divisor % 9) / 8.0f;
    };
    const Color4f color(channel(1), channel(9), channel(81), 0.25f);
    double hue, saturation, lightness;
    color.GetHSL(hue, saturation, lightness);
    Color4f back;
    back.SetHSL(hue, saturation, lightness, 0.25);
    Color4f::ForEach([&](float x, float y) { EXPECT_NEAR(x, y, 1e-6f) << color; }, color, back);
  }
}

TEST(FloatColors, everyMethodMixesAsTheByteColorDoes) {
  std::mt19937 random(8);
  for (unsigned int i = 0; i < 3000; ++i) {
    Color4b a, b;
    a.SetARGB(static_cast<std::uint32_t>(random()));
    b.SetARGB(static_cast<std::uint32_t>(random()));
    const double t = static_cast<double>(random() % 1201) / 1000.0 - 0.1;
    const auto method = static_cast<Color4b::InterpMethod>(i % 11);
    const Color4f expected(Color4b::Interp(a, b, t, method));
    const Color4f mixed = Color4f::Interp(Color4f(a) / 255.0f, Color4f(b) / 255.0f, t, method);
    Color4f::ForEach(
        [&](float x, float y) { ASSERT_NEAR(x * 255.0f, y, 1.01f) << a << b << t << method; },
        mixed, expected);
    Color3f opaque;
    opaque.Interpolate(Color3f(a) / 255.0f, Color3f(b) / 255.0f, t, method);
    // Equal colors stay as they are; these two types differ in whether alpha counts for that.
    if (Color3f(a) != Color3f(b)) {
      ASSERT_EQ(opaque, Color3f(mixed)) << a << b << t << method;
    }
    ASSERT_EQ(Color4f::Interp(mixed, mixed, t, method), mixed);
  }
}

TEST(FloatColors, averagesAreExactAndEndsAreKept) {
  const Color3f a(0.0f, 1.0f, 0.5f);
  const Color3f b(1.0f, 0.5f, 0.25f);
  EXPECT_EQ(Color3f::Interp(a, b, 0.9, Color3f::INTERP_AVERAGE), Color3f(0.5f, 0.75f, 0.375f));
  EXPECT_EQ(Color3f::Interp(a, b, NAN, Color3f::INTERP_COSINE), a);
  EXPECT_EQ(Color3f::Interp(a, b, 0.0, Color3f::INTERP_REVERSE), b);
  const Color4f clear(1.0f, 0.0f, 0.0f, 0.0f);
  const Color4f mixed = Color4f::Interp(clear, Color4f::Red, 0.25, Color4f::INTERP_HSL_SHORTEST);
  EXPECT_EQ(mixed.alpha, 0.25f);
}

}  // namespace
}  // namespace shr
