// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/NumberText.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "shared/text/StringUtility.h"

namespace examples {

using namespace shr;

namespace {

constexpr const wchar_t* MINUS = L"\u2212";

}  // namespace

GString FormatCount(std::size_t count) {
  std::wstring text = std::to_wstring(count);
  for (std::size_t pos = text.size(); pos > 3; pos -= 3) text.insert(pos - 3, 1, L',');
  return text;
}

GString FormatCount(std::size_t count, const wchar_t* one, const wchar_t* many) {
  return FormatCount(count) + L" " + (count == 1 ? one : many);
}

GString FormatNumber(double value, std::size_t decimals) {
  GString text(DoubleToStringW(std::abs(value), decimals));
  const bool isZero =
      std::all_of(text.begin(), text.end(), [](wchar_t ch) { return ch == L'0' || ch == L'.'; });
  return value < 0 && !isZero ? MINUS + text : text;
}

GString FormatShort(double value, std::size_t decimals) {
  GString text = FormatNumber(value, decimals);
  if (text.find(L'.') == GString::npos) return text;
  while (text[text.size() - 1] == L'0') text.resize(text.size() - 1);
  if (text[text.size() - 1] == L'.') text.resize(text.size() - 1);
  return text;
}

}  // namespace examples
