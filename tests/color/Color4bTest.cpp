// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: byte order of every packed form there and back; names that are easily confused; HSL there
// and back on a grid of all colors and at its corners; every method of interpolation by value, at
// its ends and as a property; arrays of the Windows form.

#include "shared/color/Color4b.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>

#include "shared/diagnostics/Exception.h"
#include "shared/platform/WindowsTypes.h"
#include "shared/text/GString.h"

namespace shr {
namespace {

constexpr unsigned char BYTES[] = {1, 2, 3, 4};

static_assert(Color4b() == Color4b(0, 0, 0, 255));
static_assert(Color4b(BYTES) == Color4b(1, 2, 3, 4));
static_assert(Color4b(128, 7) == Color4b(128, 128, 128, 7));
static_assert(Color4b(0xFF030201u, 9) == Color4b(1, 2, 3, 9));
static_assert(Color4b::Green == Color4b(0, 128, 0) && Color4b::Lime == Color4b(0, 255, 0));
static_assert(Color4b::Firebrick == Color4b(178, 34, 34) &&
              Color4b::Goldenrod == Color4b(218, 165, 32));
static_assert(Color4b::Aqua == Color4b::Cyan && Color4b::Fuchsia == Color4b::Magenta);
static_assert(Color4b::TransparentWhite.alpha == 0 && Color4b::Dkgray.red == 64 &&
              Color4b::Ltgray.blue == 191);
static_assert(Color4b::White.Intensity() == 1.0 && Color4b(255, 0).Intensity() == 0.0);
static_assert(Color4b::ToBYTE(0.999) == 254 && Color4b::ToBYTE(1.0) == 255);
static_assert(Color4b::ToBYTE(-0.5) == 129 && Color4b::ToBYTE(2.0) == 254);
static_assert(Color4b::ToBYTE(-1e300) == 0 && Color4b::ToBYTE(1e300) == 0);

TEST(Color4b, packedFormsKeepTheirByteOrder) {
  const Color4b color(1, 2, 3, 4);
  EXPECT_EQ(color.GetARGB(), 0x04010203u);
  EXPECT_EQ(color.GetRGBA(), 0x01020304u);
  EXPECT_EQ(color.GetCOLORREF(), 0x00030201u);
  Color4b other;
  other.SetARGB(color.GetARGB());
  EXPECT_EQ(other, color);
  other.Set(0, 0);
  other.SetRGBA(color.GetRGBA());
  EXPECT_EQ(other, color);
  const COLORREF packed = RGB(1, 2, 3);
  EXPECT_EQ(Color4b(packed, 4), color);
  EXPECT_EQ(Color4b::ToBYTE(NAN), 0);
  const unsigned char* channels = color;
  EXPECT_EQ(channels[3], 4);
}

TEST(Color4b, comparesByValueAndNotByAddress) {
  static_assert(Color4b(1, 9, 9) < Color4b(2, 0, 0) && Color4b(1, 2, 3, 4) < Color4b(1, 2, 3, 5));
  const Color4b colors[] = {Color4b::White, Color4b::Black, Color4b::Red, Color4b::Black};
  const std::set<Color4b> ordered(std::begin(colors), std::end(colors));
  EXPECT_EQ((std::vector<Color4b>{Color4b::Black, Color4b::Red, Color4b::White}),
            std::vector<Color4b>(ordered.begin(), ordered.end()));
}

TEST(Color4b, readsAndWritesItsHexadecimalForms) {
  const struct {
    const wchar_t* text;
    bool isColor;
    Color4b color;
    const wchar_t* written;
  } rows[] = {
      {L"#010aff", true, Color4b(1, 10, 255), L"#010aff"},
      {L"#ABCDEF80", true, Color4b(0xAB, 0xCD, 0xEF, 0x80), L"#abcdef80"},
      {L"#abcdefFF", true, Color4b(0xAB, 0xCD, 0xEF), L"#abcdef"},
      {L"#00000000", true, Color4b(0, 0, 0, 0), L"#00000000"},
      {L"", false, {}, L""},
      {L"#", false, {}, L""},
      {L"010aff", false, {}, L""},
      {L"0010aff", false, {}, L""},
      {L"#010af", false, {}, L""},
      {L"#010aff8", false, {}, L""},
      {L"#010aff800", false, {}, L""},
      {L"#010afg", false, {}, L""},
      {L"#-10aff", false, {}, L""},
      {L"#01 aff", false, {}, L""},
      {L" #010aff", false, {}, L""},
      {L"#\xFF10\xFF11\xFF10\xFF11\xFF10\xFF11", false, {}, L""},
  };
  for (const auto& row : rows) {
    Color4b color(7, 7, 7, 7);
    EXPECT_EQ(row.isColor, color.SetHex(row.text)) << GString(row.text);
    EXPECT_EQ(row.isColor ? row.color : Color4b(0, 0, 0, 0), color) << GString(row.text);
    if (!row.isColor) continue;
    EXPECT_EQ(row.written, color.GetHex());
  }
}

TEST(Color4b, hslHasItsKnownCorners) {
  const struct {
    const char* name;
    Color4b color;
    double hue, saturation, lightness;
  } rows[] = {
      {"red", Color4b::Red, 0.0, 1.0, 0.5},
      {"yellow, tie of red and green", Color4b::Yellow, 1.0 / 6.0, 1.0, 0.5},
      {"cyan, tie of green and blue", Color4b::Cyan, 0.5, 1.0, 0.5},
      {"magenta, tie of red and blue", Color4b::Magenta, 5.0 / 6.0, 1.0, 0.5},
      {"gray", Color4b(51, 255), 0.0, 0.0, 0.2},
      {"dark blue", Color4b(0, 0, 51), 2.0 / 3.0, 1.0, 0.1},
      {"pale red", Color4b(255, 204, 204), 0.0, 1.0, 0.9},
  };
  for (const auto& row : rows) {
    double hue = -1.0, saturation = -1.0, lightness = -1.0;
    row.color.GetHSL(hue, saturation, lightness);
    EXPECT_NEAR(hue, row.hue, 1e-12) << row.name;
    EXPECT_NEAR(saturation, row.saturation, 1e-12) << row.name;
    EXPECT_NEAR(lightness, row.lightness, 1e-12) << row.name;
  }
}

TEST(Color4b, hslThereAndBackLosesAtMostTheTruncatedUnit) {
  for (int code = 0; code < 16 * 16 * 16; ++code) {
    const auto channel = [code](int shift) {
      return static_cast<unsigned char>((code >> shift & 15) * 17);
    };
    const Color4b color(channel(0), channel(4), channel(8), 77);
    double hue, saturation, lightness;
    color.GetHSL(hue, saturation, lightness);
    Color4b back;
    back.SetHSL(hue, saturation, lightness, 0.5);
    for (int i = 0; i < 3; ++i) {
      ASSERT_GE(color[i], back[i]) << color;
      ASSERT_LE(color[i] - back[i], 1) << color;
    }
    ASSERT_EQ(back.alpha, 127);
  }
}

TEST(Color4b, everyMethodMixesAsItsNameSays) {
  const Color4b a(0, 10, 200, 255);
  const Color4b b(100, 11, 0, 0);
  const struct {
    const char* name;
    Color4b a, b;
    double t;
    Color4b::InterpMethod method;
    Color4b expected;
  } rows[] = {
      {"linear", a, b, 0.25, Color4b::INTERP_LINEAR, {25, 10, 150, 191}},
      {"linear rounds half up", a, b, 0.5, Color4b::INTERP_LINEAR, {50, 11, 100, 128}},
      {"reverse", a, b, 0.75, Color4b::INTERP_REVERSE, {25, 10, 150, 191}},
      {"cosine", a, b, 1.0 / 3.0, Color4b::INTERP_COSINE, {25, 10, 150, 191}},
      {"start", a, b, 0.9, Color4b::INTERP_START, a},
      {"average ignores t", a, b, 0.3, Color4b::INTERP_AVERAGE, {50, 11, 100, 128}},
      {"average ignores t", a, b, 0.9, Color4b::INTERP_AVERAGE, {50, 11, 100, 128}},
      {"end", a, b, 0.1, Color4b::INTERP_END, b},
      {"decreasing hue", Color4b::Red, Color4b::Lime, 0.5, Color4b::INTERP_HSL_DECREASING,
       Color4b::Blue},
      {"increasing hue", Color4b::Red, Color4b::Lime, 0.5, Color4b::INTERP_HSL_INCREASING,
       Color4b::Yellow},
      {"increasing through 1", Color4b::Blue, Color4b::Red, 0.5, Color4b::INTERP_HSL_INCREASING,
       Color4b::Magenta},
      {"shortest through 1", Color4b::Red, Color4b::Blue, 0.5, Color4b::INTERP_HSL_SHORTEST,
       Color4b::Magenta},
      {"longest", Color4b::Red, Color4b::Lime, 0.5, Color4b::INTERP_HSL_LONGEST, Color4b::Blue},
      {"alpha of a hue mix",
       {255, 0, 0, 255},
       {255, 0, 0, 0},
       0.25,
       Color4b::INTERP_HSL_SHORTEST,
       {255, 0, 0, 191}},
      {"unknown method", a, b, 0.5, static_cast<Color4b::InterpMethod>(10), a},
      {"below the range", a, b, -1.0, Color4b::INTERP_HSL_LONGEST, a},
      {"above the range", a, b, 1.0, Color4b::INTERP_START, b},
      {"below the range reversed", a, b, 0.0, Color4b::INTERP_REVERSE, b},
      {"above the range reversed", a, b, 2.0, Color4b::INTERP_REVERSE, a},
      {"no number", a, b, NAN, Color4b::INTERP_COSINE, a},
  };
  for (const auto& row : rows) {
    const Color4b mixed = Color4b::Interp(row.a, row.b, row.t, row.method);
    for (int i = 0; i < 4; ++i) {
      // Hues pass through thirds, which truncation may lower by a unit.
      const int slack = row.method >= Color4b::INTERP_HSL_DECREASING ? 1 : 0;
      EXPECT_LE(std::abs(mixed[i] - row.expected[i]), slack) << row.name << ": " << mixed;
    }
    Color4b stored;
    stored.Interpolate(row.a, row.b, row.t, row.method);
    EXPECT_EQ(stored, mixed) << row.name;
  }
}

TEST(Color4b, equalColorsStayAndPackedColorsMixAlike) {
  std::mt19937 random(5);
  for (unsigned int i = 0; i < 3000; ++i) {
    Color4b a, b;
    a.SetARGB(static_cast<std::uint32_t>(random()) | 0xFF000000u);
    b.SetARGB(static_cast<std::uint32_t>(random()) | 0xFF000000u);
    const double t = static_cast<double>(random() % 1201) / 1000.0 - 0.1;
    const auto method = static_cast<Color4b::InterpMethod>(i % 12);
    ASSERT_EQ(Color4b::Interp(a, a, t, method), a);
    const Color4b expected = method <= 5 ? Color4b::Interp(a, b, t, method) : a;
    ASSERT_EQ(InterpColor(a.GetCOLORREF(), b.GetCOLORREF(), t, method), expected.GetCOLORREF())
        << a << b << t << method;
  }
}

TEST(Color4b, arraysAreCopiedBetweenTheChannelOrders) {
  const RGBQUAD quads[] = {{3, 2, 1, 4}, {30, 20, 10, 0}};
  Color4b colors[2];
  CopyRGBQUADToColor4b(colors, quads, 2, true);
  EXPECT_EQ(colors[0], Color4b(1, 2, 3, 4));
  EXPECT_EQ(Color4b(quads[1], 5), Color4b(10, 20, 30, 5));
  RGBQUAD back[2];
  CopyColor4bToRGBQUAD(back, colors, 2, true);
  EXPECT_EQ(back[0].rgbBlue, 3);
  EXPECT_EQ(back[0].rgbReserved, 4);
  CopyRGBQUADToColor4b(colors, quads, 2, false);
  CopyColor4bToRGBQUAD(back, colors, 2, false);
  EXPECT_EQ(colors[0].alpha, 255);
  EXPECT_EQ(back[0].rgbReserved, 0);
  EXPECT_THROW(CopyRGBQUADToColor4b(nullptr, quads, 2, true), InternalErrorException);
  EXPECT_THROW(CopyColor4bToRGBQUAD(back, nullptr, 2, true), InternalErrorException);
}

}  // namespace
}  // namespace shr
