// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A picture is turned into a format of strftime first; what the formatter below reads is such a
// format, so that both doors give the same text.

#include "shared/mathtext/MathTextDateTime.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace shr {
namespace {

/// A part of a picture and what strftime calls it. Longer parts of a letter come first.
struct PicturePart {
  std::wstring_view part;
  std::wstring_view conversion;
};
constexpr PicturePart PARTS[] = {
    {L"dddd", L"%A"}, {L"ddd", L"%a"}, {L"dd", L"%d"}, {L"d", L"%#d"},   {L"MMMM", L"%B"},
    {L"MMM", L"%b"},  {L"MM", L"%m"},  {L"M", L"%#m"}, {L"yyyy", L"%Y"}, {L"yy", L"%y"},
    {L"hh", L"%I"},   {L"h", L"%#I"},  {L"HH", L"%H"}, {L"H", L"%#H"},   {L"mm", L"%M"},
    {L"m", L"%#M"},   {L"ss", L"%S"},  {L"s", L"%#S"}, {L"tt", L"%p"},   {L"t", L"%#p"},
};

constexpr const wchar_t* DAYS[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                                   L"Thursday", L"Friday", L"Saturday"};
constexpr const wchar_t* MONTHS[] = {L"January",   L"February", L"March",    L"April",
                                     L"May",       L"June",     L"July",     L"August",
                                     L"September", L"October",  L"November", L"December"};
constexpr std::size_t SHORT_NAME = 3;

const PicturePart* FindPart(std::wstring_view rest) {
  const auto part = std::find_if(std::begin(PARTS), std::end(PARTS), [rest](const PicturePart& p) {
    return rest.substr(0, p.part.size()) == p.part;
  });
  return part == std::end(PARTS) ? nullptr : &*part;
}

void AppendLiteral(std::wstring& format, wchar_t unit) {
  format += unit;
  if (unit == L'%') format += unit;
}

/// Appends the literal whose apostrophe stands before `at`; returns the place behind it.
std::size_t AppendQuoted(std::wstring& format, std::wstring_view picture, std::size_t at) {
  for (; at < picture.size(); ++at) {
    if (picture[at] == L'\'') {
      if (at + 1 == picture.size() || picture[at + 1] != L'\'') return at + 1;
      ++at;
    }
    AppendLiteral(format, picture[at]);
  }
  return at;
}

template <std::size_t N>
std::wstring_view NameOf(const wchar_t* const (&names)[N], int index) {
  if (index < 0 || index >= static_cast<int>(N)) return L"?";
  return names[index];
}

void AppendNumber(std::wstring& text, long long value, std::size_t digits) {
  const std::wstring number = std::to_wstring(value < 0 ? -value : value);
  if (value < 0) text += L'-';
  if (number.size() < digits) text.append(digits - number.size(), L'0');
  text += number;
}

/// Appends what "%letter" or, with `isShort`, "%#letter" stands for.
void AppendConversion(std::wstring& text, wchar_t letter, bool isShort, const std::tm& time) {
  const std::size_t digits = isShort ? 1 : 2;
  const long long year = time.tm_year + 1900LL;
  switch (letter) {
    case L'A':
      text += NameOf(DAYS, time.tm_wday);
      break;
    case L'a':
      text += NameOf(DAYS, time.tm_wday).substr(0, SHORT_NAME);
      break;
    case L'B':
      text += NameOf(MONTHS, time.tm_mon);
      break;
    case L'b':
      text += NameOf(MONTHS, time.tm_mon).substr(0, SHORT_NAME);
      break;
    case L'd':
      AppendNumber(text, time.tm_mday, digits);
      break;
    case L'm':
      AppendNumber(text, time.tm_mon + 1LL, digits);
      break;
    case L'Y':
      AppendNumber(text, year, 4);
      break;
    case L'y':
      AppendNumber(text, (year % 100 + 100) % 100, digits);
      break;
    case L'H':
      AppendNumber(text, time.tm_hour, digits);
      break;
    case L'I':
      AppendNumber(text, (time.tm_hour % 12 + 11) % 12 + 1, digits);
      break;
    case L'M':
      AppendNumber(text, time.tm_min, digits);
      break;
    case L'S':
      AppendNumber(text, time.tm_sec, digits);
      break;
    case L'p':
      text += std::wstring_view(time.tm_hour < 12 ? L"AM" : L"PM").substr(0, digits);
      break;
    default:  // "%%"
      text += letter;
  }
}

}  // namespace

GString MathTextDTToPrintfFormat(const GString& picture) {
  const std::wstring_view text = picture;
  std::wstring format;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == L'\'') {
      at = AppendQuoted(format, text, at + 1);
    } else if (const PicturePart* const part = FindPart(text.substr(at))) {
      format += part->conversion;
      at += part->part.size();
    } else {
      AppendLiteral(format, text[at++]);
    }
  }
  return format;
}

GString FormatMathTextDateTime(const GString& picture, const std::tm& time) {
  const GString format = MathTextDTToPrintfFormat(picture);
  std::wstring text;
  for (auto at = format.begin(); at != format.end(); ++at) {
    if (*at != L'%') {
      text += *at;
      continue;
    }
    const bool isShort = *++at == L'#';
    if (isShort) ++at;
    AppendConversion(text, *at, isShort, time);
  }
  return text;
}

}  // namespace shr
