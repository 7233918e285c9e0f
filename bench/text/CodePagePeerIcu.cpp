// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/text/CodePagePeerIcu.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <cstdint>

namespace shr::bench {
namespace {

static_assert(sizeof(wchar_t) == sizeof(UChar32), "a wide unit is a code point");

std::u16string& Units() {
  static std::u16string units;
  return units;
}

std::size_t IcuUtf16(std::string_view bytes) {
  std::u16string& units = Units();
  if (units.size() < bytes.size() + 1) units.resize(bytes.size() + 1);
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = 0;
  u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                static_cast<std::int32_t>(bytes.size()), &status);
  return U_FAILURE(status) ? 0 : static_cast<std::size_t>(length);
}

}  // namespace

std::size_t IcuAndWidening(std::string_view bytes, wchar_t* out) {
  const std::size_t length = IcuUtf16(bytes);
  const char16_t* units = Units().data();
  for (std::size_t i = 0; i < length; ++i) out[i] = static_cast<wchar_t>(units[i]);
  return length;
}

std::size_t IcuAndUtf32(std::string_view bytes, wchar_t* out) {
  const std::size_t length = IcuUtf16(bytes);
  std::int32_t count = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF32(reinterpret_cast<UChar32*>(out), static_cast<std::int32_t>(bytes.size()), &count,
               Units().data(), static_cast<std::int32_t>(length), &status);
  return static_cast<std::size_t>(count);
}

IcuPage::IcuPage(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  converter_ = ucnv_open(name, &status);
}

IcuPage::~IcuPage() {
  ucnv_close(static_cast<UConverter*>(converter_));
}

std::size_t IcuPage::Convert(std::string_view bytes, std::u16string& units) {
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = ucnv_toUChars(static_cast<UConverter*>(converter_), units.data(),
                                            static_cast<std::int32_t>(units.size()), bytes.data(),
                                            static_cast<std::int32_t>(bytes.size()), &status);
  return static_cast<std::size_t>(length);
}

}  // namespace shr::bench
