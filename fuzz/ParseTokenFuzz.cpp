// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cuts the input into tokens in both widths. The position must grow until the end, and unquoted
// tokens must stand in the text without a delimiter.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/text/StringUtility.h"
#include "shared/text/WhiteSpace.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const char delimiter = static_cast<char>(data[0] & 0x7F);
  std::string text;
  for (size_t i = 1; i < size; ++i) text += static_cast<char>(data[i] & 0x7F);
  const std::wstring wide(text.begin(), text.end());
  size_t pos = 0;
  size_t widePos = 0;
  while (pos < text.size()) {
    const size_t before = pos;
    const std::string token = shr::ParseToken(text, pos, delimiter);
    const std::wstring wideToken =
        shr::ParseToken(wide, widePos, static_cast<wchar_t>(static_cast<unsigned char>(delimiter)));
    if (pos <= before || pos > text.size() || widePos != pos) std::abort();
    if (wideToken != std::wstring(token.begin(), token.end())) std::abort();
    size_t first = before;
    while (first < text.size() && shr::IsWhiteSpace(text[first])) ++first;
    const bool quoted = first < text.size() && text[first] == '"';
    if (quoted) ++first;
    const bool inPlace =
        first + token.size() <= pos && text.compare(first, token.size(), token) == 0;
    if (!inPlace && !token.empty()) std::abort();
    if (!quoted && token.find(delimiter) != std::string::npos) std::abort();
  }
  if (!shr::ParseToken(text, pos, delimiter).empty() || pos < text.size()) std::abort();
  return 0;
}
