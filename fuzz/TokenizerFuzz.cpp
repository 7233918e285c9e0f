// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reads fields of all kinds as the first bytes say until the end of the text. Every call must move
// on or report an error that leaves the next field readable as text.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "shared/text/GString.h"
#include "shared/text/Tokenizer.h"

namespace {

using Status = shr::CTokenizer::Status;

Status ParseOneOf(shr::CTokenizer& fields, unsigned kind, shr::GString& token) {
  int number = 0;
  double real = 0;
  bool flag = false;
  switch (kind % 5) {
    case 0:
      return fields.Parse(number);
    case 1:
      return fields.Parse(real);
    case 2:
      return fields.Parse(flag);
    default:
      return fields.Parse(token, kind % 5 == 3);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  std::wstring text;
  for (size_t i = 1; i < size; ++i) text += static_cast<wchar_t>(data[i] < 250 ? data[i] : 0x3000);
  shr::CTokenizer fields(text.c_str());
  shr::GString token;
  for (size_t calls = 0; calls <= 2 * size; ++calls) {
    Status status = ParseOneOf(fields, data[calls % size], token);
    if (status == shr::CTokenizer::TokenError) {
      status = fields.Parse(token, false);
      if (status != shr::CTokenizer::TokenOK || token.empty()) std::abort();
    }
    if (status == shr::CTokenizer::TokenEnd) return 0;
    if (token.size() > text.size()) std::abort();
  }
  std::abort();  // there cannot be so many fields
}
