// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is drawn into a bitmap beside the outlines of the same layout, by how far their ink
// overlaps, in both modes: scripts, fallback, shaping, heights that are no whole pixels, styles,
// rotation, raised text; symbols, halos and lines; transparent colors; the state of the device
// context; bad arguments. With the environment variable SHARED_TEST_PICTURES the bitmaps are
// written into the folder it names.

#include "shared/mathtext/GdiTextIF.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "shared/diagnostics/ThrowError.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/TextLayout.h"
#include "shared/geometry/MathUtility.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/RecordingTextIF.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/support/Failures.h"
#include "tests/support/InkMap.h"

namespace shr {
namespace {

using test::InkMap;

/// A bitmap in memory, white at first, with a device context to draw on it.
class Bitmap {
public:
  Bitmap(int width, int height) : width_(width), height_(height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row is the upper one
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    header_ = info.bmiHeader;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<std::uint32_t*>(bits);
    std::fill_n(pixels_, width * height, 0xFFFFFFu);
    device_ = CreateCompatibleDC(nullptr);
    before_ = SelectObject(device_, bitmap_);
  }
  ~Bitmap() {
    SelectObject(device_, before_);
    DeleteDC(device_);
    DeleteObject(bitmap_);
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  HDC Device() const { return device_; }
  /// Returns 0xRRGGBB. Requires: `Finish` after drawing.
  std::uint32_t At(int x, int y) const { return pixels_[y * width_ + x] & 0xFFFFFF; }

  void Finish() const { GdiFlush(); }

  InkMap Ink() const {
    Finish();
    InkMap ink(width_, height_);
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) {
        const std::uint32_t color = At(x, y);
        const std::uint32_t sum = (color >> 16) + (color >> 8 & 0xFF) + (color & 0xFF);
        ink.At(x, y) = 1 - sum / (3 * 255.0);
      }
    }
    return ink;
  }

  void Save(const std::string& name) const {
    const char* const folder = std::getenv("SHARED_TEST_PICTURES");
    if (folder == nullptr) return;
    Finish();
    const std::uint32_t bytes = 4u * static_cast<std::uint32_t>(width_ * height_);
    const std::uint32_t offset = 14 + sizeof header_;
    const std::uint32_t head[] = {offset + bytes, 0, offset};
    std::ofstream file(std::string(folder) + "/gdi-" + name + ".bmp", std::ios::binary);
    file.write("BM", 2);
    file.write(reinterpret_cast<const char*>(head), sizeof head);
    file.write(reinterpret_cast<const char*>(&header_), sizeof header_);
    file.write(reinterpret_cast<const char*>(pixels_), bytes);
  }

private:
  int width_, height_;
  BITMAPINFOHEADER header_ = {};
  HBITMAP bitmap_ = nullptr;
  HDC device_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
};

constexpr int WIDTH = 700, HEIGHT = 300;
const Vec2d ORIGIN(20, 280);  // pixel of the origin of user units

Vec2d ToPixel(const Vec2d& point) {
  return Vec2d(ORIGIN.x + point.x, ORIGIN.y - point.y);
}

void FillText(const MTDrawCall& call, InkMap& ink) {
  const double angle = call.rotation * PI / 180;
  const double height = call.attributes.height;
  for (const TextRun& run : LayoutText(call.text, call.attributes.face).runs) {
    for (const PlacedGlyph& placed : run.glyphs) {
      ink.Fill(GetGlyphVectors(run, placed).fill, [&](const OutlinePoint& point) {
        const double x = height * (placed.x + point.x), y = height * (placed.y + point.y);
        return ToPixel(call.from + Vec2d(x * std::cos(angle) - y * std::sin(angle),
                                         x * std::sin(angle) + y * std::cos(angle)));
      });
    }
  }
}

void FillLine(const MTDrawCall& call, InkMap& ink) {
  Vec2d half = call.to - call.from;
  half.Normalize();
  half = Vec2d(-half.y, half.x) * (call.thickness / 2);
  GlyphOutline outline;
  outline.Move(call.from.x + half.x, call.from.y + half.y);
  for (const Vec2d& corner : {call.to + half, call.to - half, call.from - half}) {
    outline.Line(corner.x, corner.y);
  }
  outline.Close();
  ink.Fill(outline, [](const OutlinePoint& point) { return ToPixel(Vec2d(point.x, point.y)); });
}

/// Fills what a recorder was told to draw by the outlines of the layout.
InkMap InkOf(const CMTRecordingTextIF& record) {
  InkMap ink(WIDTH, HEIGHT);
  for (const MTDrawCall& call : record.GetCalls()) {
    call.kind == MTDrawCall::Kind::Text ? FillText(call, ink) : FillLine(call, ink);
  }
  return ink;
}

constexpr const char* EVERY_COMMAND =
    "plain {\\b bold} {\\i slanted} {\\ul underlined} {\\strike struck out}\n"
    "{\\f\"Times New Roman\"serif} {\\fs150 larger} {\\fs60 smaller} E = mc{\\up40\\fs60 2} "
    "H{\\dn20\\fs60 2}O\n"
    "x\\sp1{\\up40\\fs60 2}\\rp1{\\dn20\\fs60 i} {\\red red} {\\color(#4682b4)steel} {\\rgbb255 "
    "blue}\tat a tab\n"
    "left\\line(0,60,left) top\\line(150,0,top) "
    "bottom\\line(200,-20,bottom)right\\line(60,60,right)\n"
    "from \\ssbeg(300,0,right,baseline)1\n250\nmany\\ssend  by "
    "\\ssbeg(0,0,center,bottom)top\n\\line(300,0,left)below\\ssend \\a0x3B1 \\{\\}";

void DrawLabel(CMTTextIF& output, const GString& text, double height, double rotation,
               std::uint16_t options = MT_IGNORE_COLORS, const Vec2d& anchor = Vec2d(0, 100)) {
  CMTContext context(output, height);
  context.SetOptions(options);
  std::shared_ptr<CMTMultiLineElement> element;
  ASSERT_EQ(CMTContext::MT_SUCCESS, context.Parse(text, element)) << context.GetError();
  output.SetRotation(rotation);
  element->DrawUsingTextIF(output, anchor);
}

TEST(GdiTextIF, drawsWhatWasLaidOut) {
  // The system sets its text to whole pixels and fits stems to them, so less of it overlaps.
  constexpr double OVERLAP = 0.98, OVERLAP_OF_TEXT = 0.75;
  const struct {
    const char* name;
    const char* text;  // UTF-8
    double height, rotation;
  } rows[] = {
      {"latin",
       "Earthquakes, \xC3\x85rhus & Wroc\xC5\x82"
       "aw",
       40, 0},
      {"latin-fraction", "Earthquakes, quarries", 37.3, 0},
      {"greek-cyrillic",
       "\xCE\x91\xCE\xB8\xCE\xAE\xCE\xBD\xCE\xB1 "
       "\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0",
       40, 0},
      {"styles", "{\\b bold} {\\i slanted} \\f\"Times New Roman\"serif", 40, 0},
      {"raised", "E = mc\\up40\\fs60 2\n\\fs150 second line", 40, 0},
      {"turned", "Earthquakes", 40, 30},
      {"upright", "Oslo", 40, 90},
      {"arabic", "\xD8\xA7\xD9\x84\xD9\x82\xD8\xA7\xD9\x87\xD8\xB1\xD8\xA9 Cairo", 40, 0},
      {"devanagari",
       "\xE0\xA4\xB9\xE0\xA4\xBF\xE0\xA4\xA8\xE0\xA5\x8D\xE0\xA4\xA6\xE0\xA5\x80 "
       "\xE0\xA4\x95\xE0\xA5\x8D\xE0\xA4\xB7",
       40, 0},
      {"chinese", "\xE4\xB8\x8A\xE6\xB5\xB7 \xE6\x9D\xB1\xE4\xBA\xAC", 40, 0},
      {"korean", "\xEC\x84\x9C\xEC\x9A\xB8", 40, 0},
      {"arabic-turned", "\xD8\xA7\xD9\x84\xD9\x82\xD8\xA7\xD9\x87\xD8\xB1\xD8\xA9", 40, 20},
  };
  for (const auto& row : rows) {
    const GString text = GString::FromUtf8(row.text);
    CMTRecordingTextIF record;
    DrawLabel(record, text, row.height, row.rotation);
    const InkMap expected = InkOf(record);
    ASSERT_GT(expected.Sum(), 500) << row.name;
    for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
      const bool isText = mode == GdiTextMode::Text;
      Bitmap bitmap(WIDTH, HEIGHT);
      CMTGdiTextIF output(bitmap.Device(), ORIGIN, 1, mode);
      DrawLabel(output, text, row.height, row.rotation);
      bitmap.Save(row.name + std::string(isText ? "-text" : ""));
      const double overlap = expected.Overlap(bitmap.Ink());
      RecordProperty(row.name + std::string(isText ? "-text" : ""), std::to_string(overlap));
      EXPECT_GE(overlap, isText ? OVERLAP_OF_TEXT : OVERLAP) << row.name;
    }
  }
}

TEST(GdiTextIF, drawsEveryCommand) {
  const GString text = GString::FromUtf8(EVERY_COMMAND);
  for (const double rotation : {0.0, -10.0}) {
    const Vec2d anchor(40, 240);
    CMTRecordingTextIF record;
    DrawLabel(record, text, 18, rotation, MT_IGNORE_COLORS, anchor);
    Bitmap bitmap(WIDTH, HEIGHT);
    CMTGdiTextIF output(bitmap.Device(), ORIGIN, 1);
    DrawLabel(output, text, 18, rotation, MT_IGNORE_COLORS, anchor);
    EXPECT_GE(InkOf(record).Overlap(bitmap.Ink()), 0.98) << rotation;
  }
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    Bitmap bitmap(WIDTH, HEIGHT);
    CMTGdiTextIF output(bitmap.Device(), ORIGIN, 1, mode);
    DrawLabel(output, text, 22, 0, 0, Vec2d(40, 250));
    bitmap.Save(mode == GdiTextMode::Text ? "commands-text" : "commands");
    EXPECT_GT(bitmap.Ink().Sum(), 1000);
  }
}

TEST(GdiTextIF, drawsColors) {
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    Bitmap bitmap(WIDTH, HEIGHT);
    CMTGdiTextIF output(bitmap.Device(), ORIGIN, 1, mode);
    DrawLabel(output, L"\\fs300\\red II\\color(#4682b4)II", 40, 0, 0);
    bitmap.Save(mode == GdiTextMode::Text ? "colors-text" : "colors");
    bitmap.Finish();
    std::map<std::uint32_t, int> counts;
    for (int y = 0; y < HEIGHT; ++y) {
      for (int x = 0; x < WIDTH; ++x) ++counts[bitmap.At(x, y)];
    }
    EXPECT_GT(counts[0xFF0000], 500);
    EXPECT_GT(counts[0x4682B4], 500);
  }
}

TEST(GdiTextIF, drawsSymbolsInBothModes) {
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    Bitmap bitmap(WIDTH, HEIGHT);
    CMTGdiTextIF output(bitmap.Device(), ORIGIN, 2, mode);
    MTAttributes attributes;
    attributes.face.name = STROKED_TEXT_FACE;
    attributes.color = Color4b::Red;
    attributes.height = 50;
    output.SetAttributes(attributes);
    output.DrawString(Vec2d(10, 20), L"AB");
    bitmap.Save("symbols");
    const Box2d box = output.GetTextBounds(L"AB");
    const InkMap ink = bitmap.Ink();
    double outside = 0, opaque = 0;
    for (int y = 0; y < HEIGHT; ++y) {
      for (int x = 0; x < WIDTH; ++x) {
        const Vec2d user((x + 0.5 - ORIGIN.x) / 2 - 10, (ORIGIN.y - y - 0.5) / 2 - 20);
        Box2d around = box;
        around.Inflate(1, 1);
        if (!around.Contains(user)) outside += ink.At(x, y);
        opaque += bitmap.At(x, y) == 0xFF0000u;
      }
    }
    EXPECT_EQ(0, outside);
    EXPECT_GT(opaque, 200);
  }
}

TEST(GdiTextIF, blendsTransparentColors) {
  Bitmap bitmap(200, 100);
  CMTGdiTextIF output(bitmap.Device(), Vec2d(10, 90), 1);
  MTAttributes attributes;
  attributes.color = Color4b(0, 0, 255, 51);
  attributes.height = 80;
  output.SetAttributes(attributes);
  output.DrawLine(Vec2d(0, 40), Vec2d(100, 40), 20);
  bitmap.Finish();
  EXPECT_EQ(0xCCCCFFu, bitmap.At(50, 50));
  EXPECT_EQ(0xFFFFFFu, bitmap.At(50, 70));
  output.DrawLine(Vec2d(0, 40), Vec2d(100, 40), 20);
  bitmap.Finish();
  EXPECT_EQ(0xA3A3FFu, bitmap.At(50, 50));
}

TEST(GdiTextIF, drawsHalosAroundText) {
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    Bitmap bitmap(WIDTH, HEIGHT);
    CMTGdiTextIF output(bitmap.Device(), ORIGIN, 2, mode);
    const auto count = [&bitmap](std::uint32_t color) {
      bitmap.Finish();
      int pixels = 0;
      for (int i = 0; i < WIDTH * HEIGHT; ++i) pixels += bitmap.At(i % WIDTH, i / WIDTH) == color;
      return pixels;
    };
    output.SetHalo(Color4b::Yellow, 3);
    DrawLabel(output, L"Oslo", 40, 0);
    bitmap.Save(mode == GdiTextMode::Text ? "halo-text" : "halo");
    const int black = count(0), yellow = count(0xFFFF00);
    EXPECT_GT(black, 500);
    EXPECT_GT(yellow, black);
    output.SetHalo(Color4b::Yellow, 0);
    DrawLabel(output, L"Oslo", 40, 0);
    EXPECT_LE(yellow - 100, count(0xFFFF00));
    for (const double width : {-1.0, std::nan(""), HUGE_VAL}) {
      EXPECT_EQ(INVALID_PARAMETER_TEXT,
                test::Failure([&] { output.SetHalo(Color4b::Yellow, width); }));
    }
  }
}

TEST(GdiTextIF, drawsLines) {
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    Bitmap bitmap(100, 100);
    CMTGdiTextIF output(bitmap.Device(), Vec2d(0, 100), 2, mode);
    MTAttributes attributes;
    attributes.color = Color4b(10, 20, 200);
    output.SetAttributes(attributes);
    output.DrawLine(Vec2d(5, 30), Vec2d(25, 30), 2);    // x 10 to 50, y 38 to 42
    output.DrawLine(Vec2d(40, 5), Vec2d(40, 25), 0.5);  // a pixel wide at x 80, y 50 to 90
    attributes.color.alpha = 0;
    output.SetAttributes(attributes);
    output.DrawLine(Vec2d(0, 0), Vec2d(50, 50), 10);
    output.DrawString(Vec2d(0, 0), L"nothing");
    bitmap.Save("lines");
    bitmap.Finish();
    EXPECT_EQ(0x0A14C8u, bitmap.At(30, 40));
    EXPECT_NEAR(40 * 4 + 40, bitmap.Ink().Sum() / (1 - 230 / 765.0), 6);
  }
}

TEST(GdiTextIF, leavesTheDeviceAsItWas) {
  Bitmap bitmap(200, 100);
  HDC device = bitmap.Device();
  SetMapMode(device, MM_LOMETRIC);
  SetViewportOrgEx(device, 7, 9, nullptr);
  SetTextColor(device, RGB(1, 2, 3));
  SetTextAlign(device, TA_RIGHT);
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    CMTGdiTextIF output(device, Vec2d(10, 80), 1, mode);
    MTAttributes attributes;
    attributes.height = 40;
    output.SetAttributes(attributes);
    output.DrawString(Vec2d(0, 0), L"Oslo");
    output.DrawLine(Vec2d(0, -5), Vec2d(50, -5), 1);
  }
  EXPECT_EQ(MM_LOMETRIC, GetMapMode(device));
  POINT origin = {};
  GetViewportOrgEx(device, &origin);
  EXPECT_EQ(7, origin.x);
  EXPECT_EQ(9, origin.y);
  EXPECT_EQ(RGB(1, 2, 3), GetTextColor(device));
  EXPECT_EQ(static_cast<UINT>(TA_RIGHT), GetTextAlign(device));
  EXPECT_EQ(GM_COMPATIBLE, GetGraphicsMode(device));
  // The mapping of the device moved nothing.
  const InkMap ink = bitmap.Ink();
  double above = 0;
  for (int y = 45; y < 82; ++y) {
    for (int x = 10; x < 100; ++x) above += ink.At(x, y);
  }
  EXPECT_GT(above, 300);
}

TEST(GdiTextIF, refusesBadArguments) {
  Bitmap bitmap(10, 10);
  const std::function<void()> refused[] = {
      [] { CMTGdiTextIF(nullptr, Vec2d(0, 0), 1); },
      [&] { CMTGdiTextIF(bitmap.Device(), Vec2d(NAN, 0), 1); },
      [&] { CMTGdiTextIF(bitmap.Device(), Vec2d(0, 0), 0); },
      [&] { CMTGdiTextIF(bitmap.Device(), Vec2d(0, 0), HUGE_VAL); },
  };
  for (const auto& action : refused) EXPECT_EQ(INVALID_PARAMETER_TEXT, test::Failure(action));
  for (const GdiTextMode mode : {GdiTextMode::Outlines, GdiTextMode::Text}) {
    CMTGdiTextIF output(bitmap.Device(), Vec2d(0, 0), 1, mode);
    output.DrawLine(Vec2d(-1e300, 0), Vec2d(1e300, 1e300), 1e300);
    output.DrawString(Vec2d(1e300, -1e300), L"far away");
    output.DrawString(Vec2d(0, 0), L"");
  }
}

}  // namespace
}  // namespace shr
