// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <memory>

#include "shared/platform/posix/CodePageSources.h"
#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

/// Units or bytes converted at a time on their way through the stack.
constexpr std::size_t PART = 1024;

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Writes "?" for a bad sequence.
void U_CALLCONV ReplaceSequence(const void*, UConverterToUnicodeArgs* args, const char*,
                                std::int32_t, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, u"?", 1, 0, status);
}

/// Writes one "?" for each unit of a character that the page lacks.
void U_CALLCONV ReplaceCharacter(const void*, UConverterFromUnicodeArgs* args, const char16_t*,
                                 std::int32_t, UChar32 ch, UConverterCallbackReason reason,
                                 UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *status = U_ZERO_ERROR;
  const char16_t standIns[] = {u'?', u'?'};
  const char16_t* source = standIns;
  ucnv_cbFromUWriteUChars(args, &source, standIns + (ch > 0xFFFF ? 2 : 1), 0, status);
}

Converter OpenReplacing(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setFallback(converter.get(), true);
  ucnv_setToUCallBack(converter.get(), ReplaceSequence, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), ReplaceCharacter, nullptr, nullptr, nullptr, &status);
  return U_FAILURE(status) ? nullptr : std::move(converter);
}

void AppendUnits(const std::u16string& units, std::wstring& wide) {
  std::string bytes;
  bytes.reserve(units.size() * 2);
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  const std::size_t before = wide.size();
  wide.resize(before + units.size());
  wide.resize(before + Utf16ToWide(bytes, ByteOrder::LittleEndian, wide.data() + before));
}

std::u16string UnitsOf(std::wstring_view text) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(WideToUtf16(text, ByteOrder::LittleEndian, bytes.data()));
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                     static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
  }
  return units;
}

}  // namespace

bool AppendWideByStream(const char* icuName, std::string_view bytes, std::wstring& wide) {
  const Converter converter = OpenReplacing(icuName);
  if (!converter) return false;
  std::u16string units;
  char16_t part[PART];
  const char* source = bytes.data();
  const char* end = source + bytes.size();
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  while (status == U_BUFFER_OVERFLOW_ERROR) {
    status = U_ZERO_ERROR;
    char16_t* target = part;
    ucnv_toUnicode(converter.get(), &target, part + PART, &source, end, nullptr, true, &status);
    units.append(part, static_cast<std::size_t>(target - part));
  }
  AppendUnits(units, wide);
  return true;
}

bool AppendNarrowByStream(const char* icuName, std::wstring_view text, std::string& narrow) {
  const Converter converter = OpenReplacing(icuName);
  if (!converter) return false;
  const std::u16string units = UnitsOf(text);
  char part[PART];
  const char16_t* source = units.data();
  const char16_t* end = source + units.size();
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  while (status == U_BUFFER_OVERFLOW_ERROR) {
    status = U_ZERO_ERROR;
    char* target = part;
    ucnv_fromUnicode(converter.get(), &target, part + PART, &source, end, nullptr, true, &status);
    narrow.append(part, static_cast<std::size_t>(target - part));
  }
  return true;
}

}  // namespace shr::platform
