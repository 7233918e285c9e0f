// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Decodes arbitrary bytes in the page that the first byte chooses, encodes the text and decodes it
// again. What the page cannot hold is gone after the first round, so from then on nothing may
// change. Pages whose shift states ICU keeps are held to converting only: a bad sequence in one may
// become text that shifts.

#include <cstdlib>
#include <string>

#include "shared/platform/CodePages.h"
#include "shared/text/CodePageInfo.h"
#include "shared/text/Utf.h"

namespace {

bool HasShiftStates(std::uint32_t page) {
  return page == 50227 || (page >= 57002 && page <= 57011);
}

void Require(bool isTrue) {
  if (!isTrue) std::abort();
}

std::wstring Decode(std::uint32_t page, std::string_view bytes) {
  std::wstring wide;
  Require(shr::platform::AppendWide(page, bytes, wide));
  return wide;
}

std::string Encode(std::uint32_t page, std::wstring_view text) {
  std::string narrow;
  Require(shr::platform::AppendNarrow(page, text, narrow));
  return narrow;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const shr::CodePageInfo pages(shr::CodePageInfo::CPI_ORDER_BY_NUMBER);
  if (size == 0) return 0;
  const std::uint32_t page = pages.GetPageNumberByIndex(data[0] % pages.GetCount());
  if (!shr::platform::IsCodePageServed(page)) return 0;
  const std::string bytes(data + 1, data + size);
  const std::wstring first = Decode(page, bytes);
  const std::string encoded = Encode(page, first);
  const std::wstring second = Decode(page, encoded);
  if (HasShiftStates(page)) return 0;
  Require(Encode(page, second) == encoded);
  Require(Decode(page, Encode(page, second)) == second);
  return 0;
}
