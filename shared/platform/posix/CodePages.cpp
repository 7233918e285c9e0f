// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CodePages.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

constexpr std::uint32_t UTF16_LITTLE_ENDIAN = 1200;
constexpr std::uint32_t UTF16_BIG_ENDIAN = 1201;
constexpr std::uint32_t UTF8 = 65001;

struct ConverterName {
  std::uint32_t codePage;
  const char* name;
};

/// ICU's converter of a page, in the Windows flavour where there is one; ascending by number.
constexpr ConverterName CONVERTER_NAMES[] = {
    {37, "ibm-37_P100-1995"},
    {437, "ibm-437_P100-1995"},
    {500, "ibm-500_P100-1995"},
    {720, "ibm-720_P100-1997"},
    {737, "ibm-737_P100-1997"},
    {775, "ibm-775_P100-1996"},
    {819, "ISO-8859-1"},
    {850, "ibm-850_P100-1995"},
    {852, "ibm-852_P100-1995"},
    {855, "ibm-855_P100-1995"},
    {857, "ibm-857_P100-1995"},
    {858, "ibm-858_P100-1997"},
    {860, "ibm-860_P100-1995"},
    {861, "ibm-861_P100-1995"},
    {862, "ibm-862_P100-1995"},
    {863, "ibm-863_P100-1995"},
    {864, "ibm-864_X110-1999"},
    {865, "ibm-865_P100-1995"},
    {866, "ibm-866_P100-1995"},
    {869, "ibm-869_P100-1995"},
    {870, "ibm-870_P100-1995"},
    {874, "windows-874-2000"},
    {875, "ibm-875_P100-1995"},
    {932, "ibm-943_P15A-2003"},
    {936, "windows-936-2000"},
    {949, "windows-949-2000"},
    {950, "windows-950-2000"},
    {1026, "ibm-1026_P100-1995"},
    {1047, "ibm-1047_P100-1995"},
    {1140, "ibm-1140_P100-1997"},
    {1141, "ibm-1141_P100-1997"},
    {1142, "ibm-1142_P100-1997"},
    {1143, "ibm-1143_P100-1997"},
    {1144, "ibm-1144_P100-1997"},
    {1145, "ibm-1145_P100-1997"},
    {1146, "ibm-1146_P100-1997"},
    {1147, "ibm-1147_P100-1997"},
    {1148, "ibm-1148_P100-1997"},
    {1149, "ibm-1149_P100-1997"},
    {1250, "ibm-5346_P100-1998"},
    {1251, "ibm-5347_P100-1998"},
    {1252, "ibm-5348_P100-1997"},
    {1253, "ibm-5349_P100-1998"},
    {1254, "ibm-5350_P100-1998"},
    {1255, "ibm-9447_P100-2002"},
    {1256, "ibm-9448_X100-2005"},
    {1257, "ibm-9449_P100-2002"},
    {1258, "ibm-5354_P100-1998"},
    {10000, "macos-0_2-10.2"},
    {10006, "macos-6_2-10.4"},
    {10007, "macos-7_3-10.2"},
    {10029, "macos-29-10.2"},
    {10081, "macos-35-10.2"},
    {20127, "US-ASCII"},
    {20273, "ibm-273_P100-1995"},
    {20277, "ibm-277_P100-1995"},
    {20278, "ibm-278_P100-1995"},
    {20280, "ibm-280_P100-1995"},
    {20284, "ibm-284_P100-1995"},
    {20285, "ibm-285_P100-1995"},
    {20290, "ibm-290_P100-1995"},
    {20297, "ibm-297_P100-1995"},
    {20420, "ibm-420_X120-1999"},
    {20424, "ibm-424_P100-1995"},
    {20838, "ibm-838_P100-1995"},
    {20866, "ibm-878_P100-1996"},
    {20871, "ibm-871_P100-1995"},
    {20932, "ibm-954_P101-2007"},
    {20936, "ibm-1383_P110-1999"},
    {20949, "ibm-970_P110_P110-2006_U2"},
    {21025, "ibm-1025_P100-1995"},
    {21866, "ibm-1168_P100-2002"},
    {28591, "ISO-8859-1"},
    {28592, "ibm-912_P100-1995"},
    {28594, "ibm-914_P100-1995"},
    {28596, "ibm-1089_P100-1995"},
    {28597, "ibm-9005_X110-2007"},
    {28598, "ibm-5012_P100-1999"},
    {28599, "ibm-920_P100-1995"},
    {28600, "iso-8859_10-1998"},
    {28603, "ibm-921_P100-1995"},
    {28605, "ibm-923_P100-1998"},
    {29593, "ibm-913_P100-2000"},
    {29595, "ibm-915_P100-1995"},
    {50220, "ISO_2022,locale=ja,version=0"},
    {50221, "ISO_2022,locale=ja,version=3"},
    {50222, "ISO_2022,locale=ja,version=4"},
    {50225, "ISO_2022,locale=ko,version=0"},
    {50227, "ISO_2022,locale=zh,version=0"},
    {51932, "euc-jp-2007"},
    {51936, "ibm-1383_P110-1999"},
    {51949, "ibm-970_P110_P110-2006_U2"},
    {52936, "HZ"},
    {54936, "gb18030"},
    {57002, "ISCII,version=0"},
    {57003, "ISCII,version=1"},
    {57004, "ISCII,version=5"},
    {57005, "ISCII,version=6"},
    {57006, "ISCII,version=1"},
    {57007, "ISCII,version=4"},
    {57008, "ISCII,version=7"},
    {57009, "ISCII,version=8"},
    {57010, "ISCII,version=3"},
    {57011, "ISCII,version=2"},
    {65000, "UTF-7"},
};

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

std::uint32_t ResolvePage(std::uint32_t codePage) {
  if (codePage == 0) return 1252;
  return codePage == 1 ? 437 : codePage;
}

bool IsUtf16(std::uint32_t codePage) {
  return codePage == UTF16_LITTLE_ENDIAN || codePage == UTF16_BIG_ENDIAN;
}

ByteOrder OrderOf(std::uint32_t codePage) {
  return codePage == UTF16_BIG_ENDIAN ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
}

Converter OpenConverter(std::uint32_t codePage) {
  const auto* found = std::lower_bound(
      std::begin(CONVERTER_NAMES), std::end(CONVERTER_NAMES), codePage,
      [](const ConverterName& row, std::uint32_t number) { return row.codePage < number; });
  if (found == std::end(CONVERTER_NAMES) || found->codePage != codePage) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(found->name, &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setFallback(converter.get(), true);
  UErrorCode refused = U_ZERO_ERROR;
  ucnv_setSubstChars(converter.get(), "?", 1, &refused);
  return converter;
}

void AppendUtf16(const std::u16string& units, std::wstring& wide) {
  const std::string_view bytes(reinterpret_cast<const char*>(units.data()), units.size() * 2);
  const std::size_t before = wide.size();
  wide.resize(before + units.size());
  wide.resize(before + Utf16ToWide(bytes, ByteOrder::LittleEndian, wide.data() + before));
}

}  // namespace

bool IsCodePageServed(std::uint32_t codePage) {
  const std::uint32_t page = ResolvePage(codePage);
  return page == UTF8 || IsUtf16(page) || OpenConverter(page) != nullptr;
}

bool AppendWide(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  const std::uint32_t page = ResolvePage(codePage);
  const std::size_t before = wide.size();
  if (page == UTF8) {
    wide.resize(before + bytes.size());
    wide.resize(before + Utf8ToWide(bytes, wide.data() + before));
    return true;
  }
  if (IsUtf16(page)) {
    wide.resize(before + (bytes.size() + 1) / 2);
    wide.resize(before + Utf16ToWide(bytes, OrderOf(page), wide.data() + before));
    return true;
  }
  const Converter converter = OpenConverter(page);
  if (!converter) return false;
  std::u16string units(bytes.size() * 4 + 16, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  const auto count = ucnv_toUChars(converter.get(), units.data(), static_cast<int>(units.size()),
                                   bytes.data(), static_cast<int>(bytes.size()), &status);
  if (U_FAILURE(status)) return false;
  units.resize(static_cast<std::size_t>(count));
  AppendUtf16(units, wide);
  return true;
}

bool AppendNarrow(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  const std::uint32_t page = ResolvePage(codePage);
  const std::size_t before = narrow.size();
  if (page == UTF8) {
    narrow.resize(before + text.size() * UTF8_BYTES_PER_UNIT);
    narrow.resize(before + WideToUtf8(text, narrow.data() + before));
    return true;
  }
  if (IsUtf16(page)) {
    narrow.resize(before + text.size() * sizeof(wchar_t));
    narrow.resize(before + WideToUtf16(text, OrderOf(page), narrow.data() + before));
    return true;
  }
  const Converter converter = OpenConverter(page);
  if (!converter) return false;
  std::u16string units(text.size() * 2, u'\0');
  const std::size_t size =
      WideToUtf16(text, ByteOrder::LittleEndian, reinterpret_cast<char*>(units.data()));
  std::string bytes(size * 4 + 16, '\0');
  UErrorCode status = U_ZERO_ERROR;
  const auto count = ucnv_fromUChars(converter.get(), bytes.data(), static_cast<int>(bytes.size()),
                                     units.data(), static_cast<int>(size / 2), &status);
  if (U_FAILURE(status)) return false;
  narrow.append(bytes, 0, static_cast<std::size_t>(count));
  return true;
}

}  // namespace shr::platform
