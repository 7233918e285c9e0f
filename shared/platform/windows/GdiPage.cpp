// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Glyphs are selected at a height of many logical units an em, and a world transform takes these to
// pixels. So places are fractions of pixels, heights need not be whole numbers, and rotation comes
// for nothing.

#include "shared/platform/windows/GdiPage.h"

#include <algorithm>
#include <cmath>

#include "shared/platform/WindowsTypes.h"
#include "shared/platform/windows/SelectedFont.h"

namespace shr::platform {
namespace {

constexpr int UNITS_PER_EM = 2048;
constexpr double PARTS_PER_PIXEL = 16;
/// Longer runs are drawn piece by piece, so that no logical coordinate overflows.
constexpr std::size_t LONGEST_PIECE = 1000;
constexpr std::size_t MOST_FONTS = 32;
/// What lies farther out is on no device, and GDI's coordinates have 28 bits.
constexpr double FARTHEST = 1e8;

/// Gives the device context its state back.
class StateScope {
public:
  explicit StateScope(HDC device) : device_(device), state_(SaveDC(device)) {}
  ~StateScope() {
    if (state_ != 0) RestoreDC(device_, state_);
  }
  StateScope(const StateScope&) = delete;
  StateScope& operator=(const StateScope&) = delete;

private:
  HDC device_;
  int state_;
};

/// A pen or a brush that goes when the scope does, which must be outside that of the state.
class ObjectScope {
public:
  explicit ObjectScope(HGDIOBJ object) : object_(object) {}
  ~ObjectScope() {
    if (object_ != nullptr) DeleteObject(object_);
  }
  ObjectScope(const ObjectScope&) = delete;
  ObjectScope& operator=(const ObjectScope&) = delete;

  HGDIOBJ Get() const { return object_; }

private:
  HGDIOBJ object_;
};

/// Sets a world transform, whatever mapping the application has set.
void UseTransform(HDC device, const XFORM& transform) {
  SetGraphicsMode(device, GM_ADVANCED);
  SetMapMode(device, MM_TEXT);
  SetViewportOrgEx(device, 0, 0, nullptr);
  SetWindowOrgEx(device, 0, 0, nullptr);
  SetWorldTransform(device, &transform);
}

/// Makes a logical unit a part of a pixel: the ends of lines know such parts, where the system
/// does.
void UseParts(HDC device) {
  constexpr auto SCALE = static_cast<FLOAT>(1 / PARTS_PER_PIXEL);
  UseTransform(device, {SCALE, 0, 0, SCALE, 0, 0});
}

LONG ToParts(double pixels) {
  return static_cast<LONG>(std::lround(std::clamp(pixels * PARTS_PER_PIXEL, -FARTHEST, FARTHEST)));
}

POINT ToParts(const OutlinePoint& pixel) {
  return {ToParts(pixel.x), ToParts(pixel.y)};
}

int ToUnits(double em) {
  return static_cast<int>(std::lround(std::clamp(em * UNITS_PER_EM, -FARTHEST, FARTHEST)));
}

/// Returns the transform of logical units of an em, y downwards, whose origin is at a place in em.
XFORM TransformAt(const GdiBaseline& baseline, const OutlinePoint& origin) {
  const OutlinePoint& em = baseline.em;
  const double x = baseline.begin.x + em.x * origin.x + em.y * origin.y;
  const double y = baseline.begin.y + em.y * origin.x - em.x * origin.y;
  const auto scaled = [](double value) { return static_cast<FLOAT>(value / UNITS_PER_EM); };
  return {scaled(em.x), scaled(em.y),          scaled(-em.y),
          scaled(em.x), static_cast<FLOAT>(x), static_cast<FLOAT>(y)};
}

/// Returns how many glyphs at the head stand on one line across and may be drawn at once.
std::size_t PieceLength(std::span<const GdiGlyph> glyphs) {
  std::size_t length = 1;
  while (length < std::min(glyphs.size(), LONGEST_PIECE) &&
         glyphs[length].origin.y == glyphs[0].origin.y) {
    ++length;
  }
  return length;
}

void DrawPiece(HDC device, std::span<const GdiGlyph> glyphs, const GdiBaseline& baseline) {
  UseTransform(device, TransformAt(baseline, glyphs[0].origin));
  std::vector<WORD> numbers;
  std::vector<INT> steps;
  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    numbers.push_back(static_cast<WORD>(glyphs[i].glyph));
    const auto place = [&](std::size_t at) {
      return ToUnits(glyphs[at].origin.x - glyphs[0].origin.x);
    };
    steps.push_back(i + 1 < glyphs.size() ? place(i + 1) - place(i) : 0);
  }
  ExtTextOutW(device, 0, 0, ETO_GLYPH_INDEX, nullptr,
              reinterpret_cast<const wchar_t*>(numbers.data()), static_cast<UINT>(numbers.size()),
              steps.data());
}

HGDIOBJ MakePen(double width, std::uint32_t color) {
  const LOGBRUSH brush = {BS_SOLID, color, 0};
  return ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_FLAT | PS_JOIN_MITER,
                      static_cast<DWORD>(ToParts(std::max(width, 1.0))), &brush, 0, nullptr);
}

/// Pixels of 32 bits in memory, the first row on top, with a device context to blend them from.
class PixelMap {
public:
  PixelMap(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<std::uint32_t*>(bits);
    if (bitmap_ != nullptr) before_ = SelectObject(device_.Get(), bitmap_);
  }
  ~PixelMap() {
    if (before_ != nullptr) SelectObject(device_.Get(), before_);
    if (bitmap_ != nullptr) DeleteObject(bitmap_);
  }
  PixelMap(const PixelMap&) = delete;
  PixelMap& operator=(const PixelMap&) = delete;

  bool IsOpen() const { return before_ != nullptr; }
  HDC GetDevice() const { return device_.Get(); }

  /// Writes a color as often as there are pixels, multiplied by what they are covered.
  void Fill(std::span<const unsigned char> coverage, std::uint32_t color, unsigned char alpha) {
    for (std::size_t i = 0; i < coverage.size(); ++i) {
      const std::uint32_t opacity = (coverage[i] * std::uint32_t{alpha} + 127) / 255;
      const auto channel = [&](int shift) {
        return ((color >> shift & 0xFF) * opacity + 127) / 255;
      };
      pixels_[i] = opacity << 24 | channel(0) << 16 | channel(8) << 8 | channel(16);
    }
  }

private:
  ReferenceDevice device_;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
};

}  // namespace

/// A font that was asked for, and what the system gave.
class GdiPage::KnownFont {
public:
  explicit KnownFont(const FontDescription& description) : description_(description) {
    LOGFONTW font = LogicalFont(description, -UNITS_PER_EM);
    font.lfQuality = ANTIALIASED_QUALITY;
    handle_ = CreateFontIndirectW(&font);
  }
  ~KnownFont() {
    if (handle_ != nullptr) DeleteObject(handle_);
  }
  KnownFont(const KnownFont&) = delete;
  KnownFont& operator=(const KnownFont&) = delete;

  HFONT GetHandle() const { return handle_; }
  bool Is(const FontDescription& other) const {
    return description_.weight == other.weight && description_.italic == other.italic &&
           description_.family == other.family && description_.charsets == other.charsets;
  }

private:
  FontDescription description_;
  HFONT handle_ = nullptr;
};

GdiPage::GdiPage(HDC__* device) : device_(device) {}
GdiPage::~GdiPage() = default;

/// Returns the font, opened at its first use; it is then the first of those known.
const GdiPage::KnownFont* GdiPage::Find(const FontDescription& description) {
  const auto found = std::find_if(fonts_.begin(), fonts_.end(),
                                  [&](const auto& font) { return font->Is(description); });
  if (found != fonts_.end()) {
    std::rotate(fonts_.begin(), found, found + 1);
  } else {
    if (fonts_.size() == MOST_FONTS) fonts_.pop_back();
    fonts_.insert(fonts_.begin(), std::make_unique<KnownFont>(description));
  }
  return fonts_.front().get();
}

bool GdiPage::DrawGlyphs(const FontDescription& font, std::span<const GdiGlyph> glyphs,
                         const GdiBaseline& baseline, std::uint32_t color) {
  const KnownFont* const known = Find(font);
  if (known->GetHandle() == nullptr) return false;
  const StateScope state(device_);
  SelectObject(device_, known->GetHandle());
  SetBkMode(device_, TRANSPARENT);
  SetTextAlign(device_, TA_LEFT | TA_BASELINE | TA_NOUPDATECP);
  SetTextCharacterExtra(device_, 0);
  SetTextColor(device_, color);
  while (!glyphs.empty()) {
    const std::size_t length = PieceLength(glyphs);
    DrawPiece(device_, glyphs.first(length), baseline);
    glyphs = glyphs.subspan(length);
  }
  return true;
}

void GdiPage::DrawLine(const OutlinePoint& from, const OutlinePoint& to, double width,
                       std::uint32_t color) {
  const ObjectScope pen(MakePen(width, color));
  const StateScope state(device_);
  UseParts(device_);
  SelectObject(device_, pen.Get());
  const POINT ends[] = {ToParts(from), ToParts(to)};
  MoveToEx(device_, ends[0].x, ends[0].y, nullptr);
  LineTo(device_, ends[1].x, ends[1].y);
}

GdiRectangle GdiPage::GetClip() const {
  const StateScope state(device_);
  UseTransform(device_, {1, 0, 0, 1, 0, 0});
  RECT box = {};
  if (GetClipBox(device_, &box) == ERROR || box.left >= box.right || box.top >= box.bottom) {
    return {};
  }
  return {box.left, box.top, box.right - box.left, box.bottom - box.top};
}

bool GdiPage::Blend(const GdiRectangle& rectangle, std::span<const unsigned char> coverage,
                    std::uint32_t color, unsigned char alpha) {
  PixelMap pixels(rectangle.width, rectangle.height);
  if (!pixels.IsOpen()) return false;
  pixels.Fill(coverage, color, alpha);
  const StateScope state(device_);
  UseTransform(device_, {1, 0, 0, 1, 0, 0});
  constexpr BLENDFUNCTION OVER = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  return GdiAlphaBlend(device_, rectangle.left, rectangle.top, rectangle.width, rectangle.height,
                       pixels.GetDevice(), 0, 0, rectangle.width, rectangle.height, OVER) != 0;
}

}  // namespace shr::platform
