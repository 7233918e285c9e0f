// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: font files shown to this program alone, whole, cut short and with changed bytes: GDI
// leaves them out or they are measured, shaped and drawn without harm.

// clang-format off
#include <windows.h>
// clang-format on
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/platform/FontFallback.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

constexpr wchar_t INSTALLED[] = L"DejaVu Sans";
constexpr std::size_t TABLE_RECORD = 16, HEAD = 12;

/// Returns the file of an installed font, by its tables.
std::string ReadFontFile(const wchar_t* family) {
  const HDC device = CreateCompatibleDC(nullptr);
  LOGFONTW description = {};
  description.lfHeight = -100;
  std::wstring_view(family).copy(description.lfFaceName, LF_FACESIZE - 1);
  const HFONT font = CreateFontIndirectW(&description);
  const HGDIOBJ before = SelectObject(device, font);
  const DWORD size = GetFontData(device, 0, 0, nullptr, 0);
  std::string bytes(size == GDI_ERROR ? 0 : size, '\0');
  if (!bytes.empty()) GetFontData(device, 0, 0, bytes.data(), size);
  SelectObject(device, before);
  DeleteObject(font);
  DeleteDC(device);
  return bytes;
}

/// Gives the font another family of the same length, everywhere where it is told.
void Rename(std::string& bytes, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos;) {
    bytes.replace(at, to.size(), to);
  }
  std::string wideFrom, wideTo;  // UTF-16, the high byte first
  for (const char c : from) wideFrom += {'\0', c};
  for (const char c : to) wideTo += {'\0', c};
  for (std::size_t at = 0; (at = bytes.find(wideFrom, at)) != std::string::npos;) {
    bytes.replace(at, wideTo.size(), wideTo);
  }
}

/// Shows a font file to this program for the time of a block.
class PrivateFont {
public:
  PrivateFont(const GString& file, const std::string& bytes) : file_(file) {
    test::WriteBytes(file, bytes);
    count_ = AddFontResourceExW(file_.c_str(), FR_PRIVATE, nullptr);
  }
  ~PrivateFont() {
    if (count_ > 0) RemoveFontResourceExW(file_.c_str(), FR_PRIVATE, nullptr);
  }
  PrivateFont(const PrivateFont&) = delete;
  PrivateFont& operator=(const PrivateFont&) = delete;

  int GetCount() const { return count_; }

private:
  GString file_;
  int count_ = 0;
};

platform::FontDescription Described(const std::wstring& family) {
  platform::FontDescription font;
  font.family = GString(family);
  return font;
}

/// Asks a font for all that it may be asked for; returns how many glyphs it gave.
int AskForAll(const platform::FontDescription& font) {
  const CTrueTypeFaceInfo face(font, font.family);
  platform::ReadCoverage(font);
  int given = 0;
  GlyphVectors vectors;
  GlyphMetrics metrics;
  for (std::uint32_t glyph = 0; glyph < 300; ++glyph) {
    given += face.GetMetricsOfGlyph(glyph, metrics) && face.GetVectorsOfGlyph(glyph, vectors);
  }
  face.CalcEmBounds(L"Depth, m");
  std::vector<platform::TextItem> items;
  platform::ShapedText shaped;
  const std::wstring text = L"\x628\x64E\x628 \x5D1\x5B8 e\x301";
  platform::ItemizeText(text, true, items);
  for (const platform::TextItem& item : items) face.Shape(text, item, shaped);
  return given;
}

TEST(PrivateFonts, wholeFilesAreMeasuredAsTheInstalledFont) {
  const test::TemporaryFolder folder;
  std::string bytes = ReadFontFile(INSTALLED);
  ASSERT_FALSE(bytes.empty()) << "install fonts-dejavu-core (tools/setup.sh test)";
  Rename(bytes, "DejaVu Sans", "Whole Sansy");
  const PrivateFont shown(folder.Path(L"whole.ttf"), bytes);
  ASSERT_EQ(1, shown.GetCount());
  const CTrueTypeFaceInfo whole(Described(L"Whole Sansy"), L"Whole Sansy");
  const CTrueTypeFaceInfo installed(Described(INSTALLED), INSTALLED);
  EXPECT_EQ(installed.CalcEmBounds(L"Depth, m"), whole.CalcEmBounds(L"Depth, m"));
  EXPECT_EQ(300, AskForAll(Described(L"Whole Sansy")));
}

TEST(PrivateFonts, brokenFilesAreLeftOutOrMeasuredWithoutHarm) {
  const test::TemporaryFolder folder;
  std::string whole = ReadFontFile(INSTALLED);
  ASSERT_GT(whole.size(), HEAD + TABLE_RECORD);
  Rename(whole, "DejaVu Sans", "Broke Sansy");
  std::mt19937 random(7);
  for (int trial = 0; trial < 24; ++trial) {
    std::string bytes = whole;
    if (trial % 2 == 0) bytes.resize(random() % bytes.size());
    // The head of the file and its tables first, then anywhere.
    const std::size_t range =
        trial % 3 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 400);
    for (int i = 0; i < 40 && range > 0; ++i) bytes[random() % range] = static_cast<char>(random());
    const PrivateFont shown(folder.Path(GString(std::to_wstring(trial)) + L".ttf"), bytes);
    if (shown.GetCount() == 0) continue;  // left out
    AskForAll(Described(L"Broke Sansy"));
  }
  EXPECT_GT(AskForAll(Described(INSTALLED)), 0) << "good fonts are as before";
}

}  // namespace
}  // namespace shr
