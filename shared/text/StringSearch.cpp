// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Tokens, wildcards and sub-texts.
//
// Wildcards. Pattern and text are walked together. A "*" is remembered with the text position it
// stands at; a later mismatch goes back to the last "*" and lets it take one unit more. Only the
// last "*" ever needs to grow: whatever an earlier one would take more, the last can take instead.
// So nothing is searched twice for the same "*", and the cost is bounded by pattern length times
// text length.
//
// Streams. `Contains` runs the automaton of D. E. Knuth, J. H. Morris and V. R. Pratt, "Fast
// pattern matching in strings" (1977), over the units as they come, so that nothing read has to be
// kept and the stream stops right behind the match.

#include <algorithm>
#include <istream>
#include <streambuf>

#include "shared/text/StringUtility.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

template <typename Char>
Char FoldAscii(Char ch) {
  return ch >= 'A' && ch <= 'Z' ? static_cast<Char>(ch - 'A' + 'a') : ch;
}

template <typename Char>
bool MatchesUnit(Char pattern, Char unit, bool caseSensitive) {
  if (pattern == '?' || pattern == unit) return true;
  return !caseSensitive && FoldAscii(pattern) == FoldAscii(unit);
}

template <typename Char>
bool WildCmpImpl(std::basic_string_view<Char> patternText, std::basic_string_view<Char> wholeText,
                 bool caseSensitive) {
  const Char* pattern = patternText.data();
  const Char* const patternEnd = pattern + patternText.size();
  const Char* text = wholeText.data();
  const Char* const textEnd = text + wholeText.size();
  const Char* afterStar = nullptr;
  const Char* starText = nullptr;
  while (text != textEnd) {
    if (pattern != patternEnd && *pattern == '*') {
      afterStar = ++pattern;
      starText = text;
    } else if (pattern != patternEnd && MatchesUnit(*pattern, *text, caseSensitive)) {
      ++pattern;
      ++text;
    } else if (afterStar != nullptr) {
      pattern = afterStar;
      text = ++starText;
    } else {
      return false;
    }
  }
  while (pattern != patternEnd && *pattern == '*') ++pattern;
  return pattern == patternEnd;
}

template <typename Char>
std::basic_string<Char> ParseTokenImpl(std::basic_string_view<Char> text, std::size_t& pos,
                                       Char delimiter) {
  if (pos >= text.size()) return {};
  const auto orEnd = [text](std::size_t found) { return std::min(found, text.size()); };
  const auto skipDelimiter = [&](std::size_t at) { return at < text.size() ? at + 1 : at; };

  std::size_t first = pos;
  while (first < text.size() && IsWhiteSpace(text[first])) ++first;
  if (first < text.size() && text[first] == '"') {
    const std::size_t last = orEnd(text.find(static_cast<Char>('"'), first + 1));
    pos = skipDelimiter(orEnd(text.find(delimiter, skipDelimiter(last))));
    return std::basic_string<Char>(text.substr(first + 1, last - first - 1));
  }
  std::size_t last = orEnd(text.find(delimiter, first));
  pos = skipDelimiter(last);
  while (last > first && IsWhiteSpace(text[last - 1])) --last;
  return std::basic_string<Char>(text.substr(first, last - first));
}

template <typename Char>
bool ContainsImpl(std::basic_string_view<Char> text, std::basic_string_view<Char> part) {
  return !part.empty() && text.find(part) != std::basic_string_view<Char>::npos;
}

/// For every length of a matched head of `part`, the length of the longest shorter head that also
/// ends there.
template <typename Char>
std::vector<std::size_t> BorderLengths(const std::basic_string<Char>& part) {
  std::vector<std::size_t> borders(part.size() + 1, 0);
  std::size_t border = 0;
  for (std::size_t i = 1; i < part.size(); ++i) {
    while (border > 0 && part[i] != part[border]) border = borders[border];
    if (part[i] == part[border]) ++border;
    borders[i + 1] = border;
  }
  return borders;
}

template <typename Char>
bool StreamContains(std::basic_istream<Char>& in, const std::basic_string<Char>& part) {
  using Traits = std::char_traits<Char>;
  if (part.empty()) return false;
  const typename std::basic_istream<Char>::sentry ready(in, true);
  if (!ready) return false;
  const std::vector<std::size_t> borders = BorderLengths(part);
  std::basic_streambuf<Char>& buffer = *in.rdbuf();
  std::size_t matched = 0;
  for (;;) {
    const auto unit = buffer.sbumpc();
    if (Traits::eq_int_type(unit, Traits::eof())) break;
    const Char ch = Traits::to_char_type(unit);
    while (matched > 0 && ch != part[matched]) matched = borders[matched];
    if (ch == part[matched] && ++matched == part.size()) return true;
  }
  in.setstate(std::ios_base::eofbit);
  return false;
}

template <typename Char>
std::size_t BreakImpl(const Char* text, std::vector<std::basic_string<Char>>& lines) {
  lines.clear();
  if (text == nullptr) return 0;
  while (*text != Char()) {
    const Char* last = text;
    while (*last != Char() && *last != '\r' && *last != '\n') ++last;
    lines.emplace_back(text, last);
    if (*last == '\r' && last[1] == '\n') ++last;
    text = *last == Char() ? last : last + 1;
  }
  return lines.size();
}

}  // namespace

bool WildCmp(const char* pattern, const char* text, bool caseSensitive) {
  return pattern != nullptr && text != nullptr &&
         WildCmp(std::string_view(pattern), std::string_view(text), caseSensitive);
}

bool WildCmp(const wchar_t* pattern, const wchar_t* text, bool caseSensitive) {
  return pattern != nullptr && text != nullptr &&
         WildCmp(std::wstring_view(pattern), std::wstring_view(text), caseSensitive);
}

bool WildCmp(std::string_view pattern, std::string_view text, bool caseSensitive) {
  return WildCmpImpl(pattern, text, caseSensitive);
}

bool WildCmp(std::wstring_view pattern, std::wstring_view text, bool caseSensitive) {
  return WildCmpImpl(pattern, text, caseSensitive);
}

std::string ParseToken(std::string_view text, std::size_t& pos, char delimiter) {
  return ParseTokenImpl(text, pos, delimiter);
}

std::wstring ParseToken(std::wstring_view text, std::size_t& pos, wchar_t delimiter) {
  return ParseTokenImpl(text, pos, delimiter);
}

bool Contains(std::string_view text, std::string_view part) {
  return ContainsImpl(text, part);
}
bool Contains(std::wstring_view text, std::wstring_view part) {
  return ContainsImpl(text, part);
}

bool Contains(std::istream& in, const std::string& part) {
  return StreamContains(in, part);
}
bool Contains(std::wistream& in, const std::wstring& part) {
  return StreamContains(in, part);
}

std::size_t BreakIntoSubstrings(const char* text, std::vector<std::string>& lines) {
  return BreakImpl(text, lines);
}

std::size_t BreakIntoSubstrings(const wchar_t* text, std::vector<std::wstring>& lines) {
  return BreakImpl(text, lines);
}

}  // namespace shr
