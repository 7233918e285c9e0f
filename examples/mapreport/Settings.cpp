// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string>

#include "shared/color/ColorTable.h"
#include "shared/commands/RegParamList.h"
#include "shared/platform/WindowsTypes.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double SMALLEST_SIDE = 0.01;
constexpr double LONGEST_DASH = 1000;
constexpr unsigned char OPAQUE_ALPHA = 255;
constexpr std::size_t MOST_DASHES = 32;
constexpr const wchar_t* SOLID = L"solid";

template <class T>
void Take(std::optional<T>& value, const std::optional<T>& other) {
  if (!value) value = other;
}

std::vector<GString> SplitAtCommas(const GString& text) {
  std::vector<GString> parts;
  GString::size_type begin = 0;
  for (auto comma = text.find(L','); comma != GString::npos; comma = text.find(L',', begin)) {
    parts.push_back(text.substr(begin, comma - begin).Trim());
    begin = comma + 1;
  }
  parts.push_back(text.substr(begin).Trim());
  return parts;
}

std::optional<std::vector<double>> ParseNumbers(const GString& text) {
  std::vector<double> numbers;
  for (const GString& part : SplitAtCommas(text)) {
    double value = 0;
    if (!part.ToDouble(value)) return std::nullopt;
    numbers.push_back(value);
  }
  return numbers;
}

/// Returns the shortest text that reads back as the same number.
GString NumberText(double value) {
  char digits[32];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
  return GString(std::string(digits, end).c_str());
}

int HexDigit(wchar_t ch) {
  if (ch >= L'0' && ch <= L'9') return ch - L'0';
  if (ch >= L'a' && ch <= L'f') return ch - L'a' + 10;
  if (ch >= L'A' && ch <= L'F') return ch - L'A' + 10;
  return -1;
}

std::optional<Color4b> ParseHexColor(const GString& text) {
  constexpr std::size_t LENGTH = 7;
  if (text.size() != LENGTH || text[0] != L'#') return std::nullopt;
  unsigned char channels[3];
  for (std::size_t i = 0; i < 3; ++i) {
    const int high = HexDigit(text[2 * i + 1]);
    const int low = HexDigit(text[2 * i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    channels[i] = static_cast<unsigned char>(high * 16 + low);
  }
  return Color4b(channels[0], channels[1], channels[2]);
}

}  // namespace

void Settings::Complete(const Settings& other) {
  Take(title, other.title);
  Take(window, other.window);
  Take(labels, other.labels);
  Take(strongest, other.strongest);
  Take(ramp, other.ramp);
  Take(none, other.none);
  Take(sea, other.sea);
  Take(river, other.river);
  Take(dashes, other.dashes);
  Take(text, other.text);
  Take(face, other.face);
  Take(clip, other.clip);
  Take(continent, other.continent);
}

void Settings::Apply(View& view) const {
  view.title = title.value_or(view.title);
  view.labels = labels.value_or(view.labels);
  view.strongest = strongest.value_or(view.strongest);
  view.dashes = dashes.value_or(view.dashes);
  view.text = text.value_or(view.text);
  view.face = face.value_or(view.face);
}

void Settings::Apply(Palette& palette) const {
  palette.ramp = ramp.value_or(palette.ramp);
  palette.none = none.value_or(palette.none);
  palette.sea = sea.value_or(palette.sea);
  palette.river = river.value_or(palette.river);
}

Settings ReadLast(const GString& key) {
  const CRegParamList list(HKEY_CURRENT_USER, key);
  Settings settings;
  settings.window = ParseWindow(list.GetDef(L"Window", L"", true));
  settings.ramp = ParseColors(list.GetDef(L"Colors", L"", true));
  return settings;
}

void Remember(const GString& key, const Box2d& window, const std::vector<Color4b>& ramp) {
  CRegParamList list(HKEY_CURRENT_USER, key);
  list.Set(L"Window", WindowText(window), true);
  list.Set(L"Colors", ColorsText(ramp), true);
}

std::optional<Box2d> ParseWindow(const GString& text) {
  const auto sides = ParseNumbers(text);
  if (!sides || sides->size() != 4) return std::nullopt;
  const double west = (*sides)[0];
  const double south = (*sides)[1];
  double east = (*sides)[2];
  const double north = (*sides)[3];
  if (!(west >= -180 && west <= 180 && east >= -180 && east <= 360)) return std::nullopt;
  if (east <= west) east += 360;
  const Box2d window =
      west == 180 ? Box2d(-180, south, east - 360, north) : Box2d(west, south, east, north);
  return IsWindow(window) ? std::optional<Box2d>(window) : std::nullopt;
}

GString FaultOfWindow(const GString& text) {
  if (ParseWindow(text)) return GString();
  const auto sides = ParseNumbers(text);
  if (sides && sides->size() == 4 && (*sides)[1] > (*sides)[3]) {
    return L"has its south above its north; a window is west,south,east,north in degrees";
  }
  return L"is no window; it takes west,south,east,north in degrees";
}

bool IsWindow(const Box2d& window) {
  // Written so that a number that is none fails.
  return window.xMin() >= -180 && window.xMin() < 180 && window.yMin() >= -90 &&
         window.yMax() <= 90 && window.yMax() - window.yMin() >= SMALLEST_SIDE &&
         window.xMax() - window.xMin() >= SMALLEST_SIDE && window.xMax() - window.xMin() <= 360;
}

GString WindowText(const Box2d& window) {
  GString text = NumberText(window.xMin());
  for (const double side : {window.yMin(), window.xMax(), window.yMax()}) {
    text += L"," + NumberText(side);
  }
  return text;
}

std::optional<std::vector<Color4b>> ParseColors(const GString& text) {
  std::vector<Color4b> colors;
  for (const GString& part : SplitAtCommas(text)) {
    const std::optional<Color4b> color = ParseColor(part);
    if (!color) return std::nullopt;
    colors.push_back(*color);
  }
  if (colors.size() < 2) return std::nullopt;
  return colors;
}

GString FaultOfColors(const GString& text) {
  if (ParseColors(text)) return GString();
  for (const GString& part : SplitAtCommas(text)) {
    if (!ParseColor(part)) return L"'" + part + L"' is no color; it takes names or #rrggbb";
  }
  return L"'" + text + L"' is one color; it takes two or more";
}

GString ColorsText(const std::vector<Color4b>& colors) {
  GString text;
  for (const Color4b& color : colors) {
    if (!text.empty()) text += L',';
    text += GString(HexColor(color).c_str());
  }
  return text;
}

std::optional<Color4b> ParseColor(const GString& text) {
  GString name = text;
  name.Trim();
  const CColorTable& table = CColorTable::Instance();
  std::size_t index = 0;
  if (!table.IndexFromColor(name, index)) return ParseHexColor(name);
  return Color4b(table[index].Color(), OPAQUE_ALPHA);
}

std::optional<TextMode> ParseTextMode(const GString& text) {
  constexpr const wchar_t* NAMES[] = {L"text", L"outlines", L"portable"};
  for (std::size_t i = 0; i < std::size(NAMES); ++i) {
    if (text == NAMES[i]) return static_cast<TextMode>(i);
  }
  return std::nullopt;
}

std::optional<std::vector<double>> ParseDashes(const GString& text) {
  GString list = text;
  list.Trim();
  if (list.ToLower() == SOLID) return std::vector<double>();
  std::vector<double> dashes;
  for (const GString& part : SplitAtCommas(list)) {
    for (GString::size_type pos = 0; pos < part.size();) {
      const GString token = part.ParseToken(pos, L' ');
      double length = 0;
      if (token.empty()) continue;
      if (!token.ToDouble(length)) return std::nullopt;
      dashes.push_back(length);
    }
  }
  if (dashes.empty() || !IsDashPattern(dashes)) return std::nullopt;
  return dashes;
}

bool IsDashPattern(const std::vector<double>& dashes) {
  double sum = 0;
  for (const double length : dashes) {
    if (!(length >= 0 && length <= LONGEST_DASH)) return false;
    sum += length;
  }
  return dashes.size() <= MOST_DASHES && (dashes.empty() || sum >= 1);
}

}  // namespace mapreport
