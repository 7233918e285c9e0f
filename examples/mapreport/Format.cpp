// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Format.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "shared/text/StringUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::size_t DAY_LENGTH = 10;      // 2018-01-31
constexpr std::size_t MINUTES_LENGTH = 16;  // 2018-01-31T02:00

bool IsDigit(wchar_t ch) {
  return ch >= L'0' && ch <= L'9';
}

/// Returns true when `text` begins like `pattern`, in which 0 stands for any digit.
bool HasForm(const GString& text, const std::wstring_view pattern) {
  if (text.size() < pattern.size()) return false;
  return std::equal(pattern.begin(), pattern.end(), text.begin(),
                    [](wchar_t p, wchar_t ch) { return p == L'0' ? IsDigit(ch) : p == ch; });
}

GString WithDegrees(double absolute, std::size_t decimals, const wchar_t* side) {
  return FormatShort(absolute, decimals) + L"\u00B0" + side;
}

/// A side of the window; the antimeridian is named by the hemisphere that it ends.
GString FormatSide(double longitude) {
  const GString text = FormatLongitude(longitude, 2);
  if (longitude == -180) return text + L"W";
  return longitude == 180 ? text + L"E" : text;
}

}  // namespace

GString FormatMagnitude(const std::optional<double>& magnitude) {
  return magnitude ? FormatNumber(*magnitude, 1) : GString(L"\u2013");
}

GString FormatLongitude(double degrees, std::size_t decimals) {
  const double wrapped = degrees > 180 ? degrees - 360 : degrees;
  if (wrapped == 0 || std::abs(wrapped) == 180) {
    return WithDegrees(std::abs(wrapped), decimals, L"");
  }
  return WithDegrees(std::abs(wrapped), decimals, wrapped < 0 ? L"W" : L"E");
}

GString FormatLatitude(double degrees, std::size_t decimals) {
  if (degrees == 0) return WithDegrees(0, decimals, L"");
  return WithDegrees(std::abs(degrees), decimals, degrees < 0 ? L"S" : L"N");
}

GString FormatPosition(const Vec2d& position) {
  const GString degree = L"\u00B0";
  return FormatNumber(std::abs(position.y), 2) + degree + (position.y < 0 ? L"S " : L"N ") +
         FormatNumber(std::abs(position.x), 2) + degree + (position.x < 0 ? L"W" : L"E");
}

GString FormatTime(const GString& time) {
  if (!HasForm(time, L"0000-00-00T00:00")) return time;
  return time.substr(0, DAY_LENGTH) + L" " +
         time.substr(DAY_LENGTH + 1, MINUTES_LENGTH - DAY_LENGTH - 1);
}

GString FormatPeriod(const Model& model) {
  GString first;
  GString last;
  for (const Event& event : model.events) {
    if (!event.visible) continue;
    if (!HasForm(event.time, L"0000-00-00")) return GString();
    const GString day = event.time.substr(0, DAY_LENGTH);
    if (first.empty() || day < first) first = day;
    if (last.empty() || day > last) last = day;
  }
  return first == last ? first : first + L" to " + last;
}

GString FormatWindow(const Box2d& window) {
  return L"longitude " + FormatSide(window.xMin()) + L" to " + FormatSide(window.xMax()) +
         L", latitude " + FormatLatitude(window.yMin(), 2) + L" to " +
         FormatLatitude(window.yMax(), 2);
}

}  // namespace mapreport
