// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A page is read from its converter once: each byte, each pair behind a lead byte, each unit.
// Asking for all of them in one call with offsets costs less than a millisecond where single calls
// cost ten. The converters are those whose tables come nearest to Windows; what still differs is
// applied from the compiled-in list.

#include "shared/platform/posix/CodePageSources.h"

#include <iconv.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <optional>
#include <vector>

#include "shared/platform/CodePageRuns.h"

namespace shr::platform {
namespace {

#include "shared/platform/posix/CodePageDelta.inc"

constexpr CodePageRuns WINDOWS_DELTA{DELTA_PAGES, DELTA_SETS, DELTA_DECODE, DELTA_ENCODE};

/// Ascending by page. The names are ICU's canonical ones: its aliases lead to other makers' tables.
constexpr CodePageConverter CONVERTERS[] = {
    {37, CodePageSource::IcuTable, "ibm-37_P100-1995"},
    {437, CodePageSource::IcuTable, "ibm-437_P100-1995"},
    {500, CodePageSource::IcuTable, "ibm-500_P100-1995"},
    {720, CodePageSource::IcuTable, "ibm-720_P100-1997"},
    {737, CodePageSource::IcuTable, "ibm-737_P100-1997"},
    {775, CodePageSource::IcuTable, "ibm-775_P100-1996"},
    {850, CodePageSource::IcuTable, "ibm-850_P100-1995"},
    {852, CodePageSource::IcuTable, "ibm-852_P100-1995"},
    {855, CodePageSource::IcuTable, "ibm-855_P100-1995"},
    {857, CodePageSource::IcuTable, "ibm-857_P100-1995"},
    {860, CodePageSource::IcuTable, "ibm-860_P100-1995"},
    {861, CodePageSource::IcuTable, "ibm-861_P100-1995"},
    {862, CodePageSource::IcuTable, "ibm-862_P100-1995"},
    {863, CodePageSource::IcuTable, "ibm-863_P100-1995"},
    {864, CodePageSource::IcuTable, "ibm-864_X110-1999"},
    {865, CodePageSource::IcuTable, "ibm-865_P100-1995"},
    {866, CodePageSource::IcuTable, "ibm-866_P100-1995"},
    {869, CodePageSource::IcuTable, "ibm-869_P100-1995"},
    {874, CodePageSource::IcuTable, "windows-874-2000"},
    {875, CodePageSource::IcuTable, "ibm-875_P100-1995"},
    {932, CodePageSource::IcuTable, "ibm-943_P15A-2003"},
    {936, CodePageSource::IcuTable, "windows-936-2000"},
    {949, CodePageSource::IcuTable, "windows-949-2000"},
    {950, CodePageSource::IcuTable, "windows-950-2000"},
    {1026, CodePageSource::IcuTable, "ibm-1026_P100-1995"},
    {1250, CodePageSource::IcuTable, "ibm-5346_P100-1998"},
    {1251, CodePageSource::IcuTable, "ibm-5347_P100-1998"},
    {1252, CodePageSource::IcuTable, "ibm-5348_P100-1997"},
    {1253, CodePageSource::IcuTable, "ibm-5349_P100-1998"},
    {1254, CodePageSource::IcuTable, "ibm-5350_P100-1998"},
    {1255, CodePageSource::IcuTable, "ibm-9447_P100-2002"},
    {1256, CodePageSource::IcuTable, "ibm-9448_X100-2005"},
    {1257, CodePageSource::IcuTable, "ibm-9449_P100-2002"},
    {1258, CodePageSource::IcuTable, "ibm-5354_P100-1998"},
    {1361, CodePageSource::IconvTable, "JOHAB"},
    {10000, CodePageSource::IcuTable, "macos-0_2-10.2"},
    {10006, CodePageSource::IcuTable, "macos-6_2-10.4"},
    {10007, CodePageSource::IcuTable, "macos-7_3-10.2"},
    {10017, CodePageSource::IcuTable, "macos-7_3-10.2"},
    {10029, CodePageSource::IcuTable, "macos-29-10.2"},
    {10081, CodePageSource::IcuTable, "macos-35-10.2"},
    {20127, CodePageSource::IcuTable, "US-ASCII"},
    {20866, CodePageSource::IcuTable, "ibm-878_P100-1996"},
    {20932, CodePageSource::IcuTable, "ibm-954_P101-2007"},
    {20949, CodePageSource::IcuTable, "ibm-970_P110_P110-2006_U2"},
    {21866, CodePageSource::IcuTable, "ibm-1168_P100-2002"},
    {28591, CodePageSource::IcuTable, "ISO-8859-1"},
    {28592, CodePageSource::IcuTable, "ibm-912_P100-1995"},
    {28594, CodePageSource::IcuTable, "ibm-914_P100-1995"},
    {28596, CodePageSource::IcuTable, "ibm-1089_P100-1995"},
    {28597, CodePageSource::IcuTable, "ibm-9005_X110-2007"},
    {28598, CodePageSource::IcuTable, "ibm-5012_P100-1999"},
    {28599, CodePageSource::IcuTable, "ibm-920_P100-1995"},
    {28603, CodePageSource::IcuTable, "ibm-921_P100-1995"},
    {28605, CodePageSource::IcuTable, "ibm-923_P100-1998"},
    {50227, CodePageSource::IcuStream, "ISO_2022,locale=zh,version=0"},
    {51932, CodePageSource::IcuStream, "euc-jp-2007"},
    {54936, CodePageSource::IcuStream, "gb18030"},
    {57002, CodePageSource::IcuStream, "ISCII,version=0"},
    {57003, CodePageSource::IcuStream, "ISCII,version=1"},
    {57004, CodePageSource::IcuStream, "ISCII,version=5"},
    {57005, CodePageSource::IcuStream, "ISCII,version=6"},
    {57006, CodePageSource::IcuStream, "ISCII,version=1"},
    {57007, CodePageSource::IcuStream, "ISCII,version=4"},
    {57008, CodePageSource::IcuStream, "ISCII,version=7"},
    {57009, CodePageSource::IcuStream, "ISCII,version=8"},
    {57010, CodePageSource::IcuStream, "ISCII,version=3"},
    {57011, CodePageSource::IcuStream, "ISCII,version=2"},
};

constexpr std::uint32_t EUC_JP_PAGE = 20932;

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

Converter OpenSkipping(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setFallback(converter.get(), true);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr,
                        &status);
  return U_FAILURE(status) ? nullptr : std::move(converter);
}

struct Decoded {
  std::vector<char16_t> units;
  /// For each unit where its bytes begin.
  std::vector<std::int32_t> offsets;
};

Decoded DecodeWithOffsets(UConverter* converter, std::string_view bytes) {
  Decoded result{std::vector<char16_t>(bytes.size() + 1),
                 std::vector<std::int32_t>(bytes.size() + 1)};
  char16_t* target = result.units.data();
  const char* source = bytes.data();
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter, &target, target + bytes.size(), &source, source + bytes.size(),
                 result.offsets.data(), true, &status);
  const auto count = U_FAILURE(status) ? 0 : target - result.units.data();
  result.units.resize(static_cast<std::size_t>(count));
  result.offsets.resize(result.units.size());
  ucnv_reset(converter);
  return result;
}

/// Returns true when `byte` alone is the beginning of a longer sequence.
bool IsLeadOf(UConverter* converter, unsigned char byte) {
  const char text = static_cast<char>(byte);
  const char* source = &text;
  char16_t unit[4];
  char16_t* target = unit;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter, &target, target + 4, &source, source + 1, nullptr, false, &status);
  const bool isLead =
      U_SUCCESS(status) && target == unit && ucnv_toUCountPending(converter, &status) == 1;
  ucnv_reset(converter);
  return isLead;
}

/// Reads sequences that all have the length of `prefix` and one more byte, which runs from 1 to
/// 255. Two line ends behind each bring the converter back into step after a bad one. Calls
/// `visit(last byte, unit)`.
template <typename Visit>
void ReadRow(UConverter* converter, std::string_view prefix, Visit visit) {
  std::string bytes;
  for (int last = 0; last < 256; ++last) {
    bytes.append(prefix).append({static_cast<char>(last), '\n', '\n'});
  }
  const Decoded decoded = DecodeWithOffsets(converter, bytes);
  const auto length = static_cast<std::int32_t>(prefix.size() + 1);
  const std::int32_t step = length + 2;
  for (std::size_t i = 0; i + 1 < decoded.units.size(); ++i) {
    const std::int32_t offset = decoded.offsets[i];
    const bool isWhole = offset % step == 0 && decoded.offsets[i + 1] == offset + length;
    if (isWhole && offset / step > 0) visit(offset / step, decoded.units[i]);
  }
}

void ReadDecodings(UConverter* converter, CodePageTable& table) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    const auto first = static_cast<char>(byte);
    if (IsLeadOf(converter, static_cast<unsigned char>(byte))) {
      table.SetLead(static_cast<unsigned char>(byte));
      ReadRow(converter, std::string_view(&first, 1), [&](std::int32_t trail, char16_t unit) {
        table.SetPair(static_cast<std::uint16_t>(byte << 8 | static_cast<unsigned>(trail)), unit);
      });
      continue;
    }
    const Decoded decoded = DecodeWithOffsets(converter, std::string_view(&first, 1));
    if (decoded.units.size() == 1) {
      table.SetSingle(static_cast<unsigned char>(byte), decoded.units[0]);
    }
  }
}

std::u16string AllUnits() {
  std::u16string units;
  for (std::uint32_t unit = 0; unit < 0xFFFE; ++unit) {
    if (unit < 0xD800 || unit > 0xDFFF) units += static_cast<char16_t>(unit);
  }
  return units;
}

void ReadEncodings(UConverter* converter, CodePageTable& table) {
  const std::u16string units = AllUnits();
  std::string bytes(units.size() * 4, '\0');
  std::vector<std::int32_t> offsets(bytes.size());
  char* target = bytes.data();
  const char16_t* source = units.data();
  UErrorCode status = U_ZERO_ERROR;
  ucnv_fromUnicode(converter, &target, target + bytes.size(), &source, source + units.size(),
                   offsets.data(), true, &status);
  if (U_FAILURE(status)) return;
  const auto count = static_cast<std::size_t>(target - bytes.data());
  for (std::size_t i = 0; i < count;) {
    std::size_t end = i + 1;
    while (end < count && offsets[end] == offsets[i]) ++end;
    std::uint32_t key = static_cast<unsigned char>(bytes[i]);
    if (end - i == 2) key = key << 8 | static_cast<unsigned char>(bytes[i + 1]);
    const char16_t unit = units[static_cast<std::size_t>(offsets[i])];
    if (end - i <= 2) table.SetEncoding(unit, static_cast<std::uint16_t>(key));
    i = end;
  }
}

void SetBothWays(CodePageTable& table, std::uint32_t pair, char16_t unit) {
  const auto key = static_cast<std::uint16_t>(pair);
  SetDecoding(table, key, unit);
  if (!table.HasEncoding(unit)) table.SetEncoding(unit, key);
}

/// Page 20932 writes JIS X 0212, three bytes 8F xx yy in EUC-JP, as the pair xx yy without the high
/// bit of yy, and has the user-defined rows F5 to FE of both sets in the private use area.
void AddSecondSetOfEucJp(UConverter* converter, CodePageTable& table) {
  for (std::uint32_t lead = 0xA1; lead <= 0xFE; ++lead) {
    const char prefix[] = {'\x8F', static_cast<char>(lead)};
    ReadRow(converter, std::string_view(prefix, 2), [&](std::int32_t trail, char16_t unit) {
      SetBothWays(table, lead << 8 | (static_cast<std::uint32_t>(trail) & 0x7F), unit);
    });
  }
  constexpr std::uint32_t columns = 94;
  for (std::uint32_t i = 0; i < 10 * columns; ++i) {
    const std::uint32_t pair = (0xF5 + i / columns) << 8 | (0xA1 + i % columns);
    SetBothWays(table, pair, static_cast<char16_t>(0xE000 + i));
    SetBothWays(table, pair & 0xFF7F, static_cast<char16_t>(0xE000 + 10 * columns + i));
  }
}

void ReadByIcu(const CodePageConverter& row, UConverter* converter, CodePageTable& table) {
  ReadDecodings(converter, table);
  ReadEncodings(converter, table);
  if (row.codePage == EUC_JP_PAGE) AddSecondSetOfEucJp(converter, table);
}

/// An iconv descriptor.
class Iconv {
public:
  Iconv(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Iconv() {
    if (IsOpen()) iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  /// Returns the conversion of `bytes`, nothing when it is refused or not exact.
  std::optional<std::string> Convert(std::string_view bytes) {
    std::string input(bytes);
    std::array<char, 16> output{};
    char* source = input.data();
    char* target = output.data();
    std::size_t sourceLeft = input.size();
    std::size_t targetLeft = output.size();
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    errno = 0;
    if (iconv(handle_, &source, &sourceLeft, &target, &targetLeft) != 0) return std::nullopt;
    return std::string(output.data(), output.size() - targetLeft);
  }

private:
  iconv_t handle_;
};

void ReadByIconv(Iconv& toWide, Iconv& toBytes, CodePageTable& table) {
  const auto decode = [&toWide](std::string_view bytes) -> std::optional<std::uint16_t> {
    const std::optional<std::string> unit = toWide.Convert(bytes);
    if (!unit || unit->size() != 2) return std::nullopt;
    return static_cast<std::uint16_t>(static_cast<unsigned char>((*unit)[0]) |
                                      static_cast<unsigned char>((*unit)[1]) << 8);
  };
  for (unsigned first = 0; first < 256; ++first) {
    const char bytes[] = {static_cast<char>(first), 0};
    if (const auto unit = decode(std::string_view(bytes, 1))) {
      table.SetSingle(static_cast<unsigned char>(first), *unit);
      continue;
    }
    if (errno != EINVAL) continue;
    for (unsigned last = 1; last < 256; ++last) {
      const char pair[] = {static_cast<char>(first), static_cast<char>(last)};
      const auto unit = decode(std::string_view(pair, 2));
      if (unit) SetDecoding(table, static_cast<std::uint16_t>(first << 8 | last), *unit);
    }
  }
  for (const char16_t unit : AllUnits()) {
    const char source[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    const std::optional<std::string> bytes = toBytes.Convert(std::string_view(source, 2));
    if (!bytes || bytes->empty() || bytes->size() > 2) continue;
    std::uint32_t key = static_cast<unsigned char>((*bytes)[0]);
    if (bytes->size() == 2) key = key << 8 | static_cast<unsigned char>((*bytes)[1]);
    table.SetEncoding(unit, static_cast<std::uint16_t>(key));
  }
}

CodePageTable::StandIns StandInsOf(std::uint32_t codePage) {
  switch (codePage) {
    case 37:
    case 500:
    case 875:
    case 1026:
      return {0x1A, 0x6F};
    case 932:
    case EUC_JP_PAGE:
      return {0x30FB, '?'};
    default:
      return {u'?', '?'};
  }
}

}  // namespace

CodePageConverter FindConverter(std::uint32_t codePage) noexcept {
  const auto* found = std::lower_bound(
      std::begin(CONVERTERS), std::end(CONVERTERS), codePage,
      [](const CodePageConverter& row, std::uint32_t number) { return row.codePage < number; });
  const bool isThere = found != std::end(CONVERTERS) && found->codePage == codePage;
  return isThere ? *found : CodePageConverter{};
}

std::unique_ptr<const CodePageTable> ReadCodePageTable(const CodePageConverter& row) {
  auto table = std::make_unique<CodePageTable>(StandInsOf(row.codePage));
  if (row.source == CodePageSource::IconvTable) {
    Iconv toWide("UTF-16LE", row.name);
    Iconv toBytes(row.name, "UTF-16LE");
    if (!toWide.IsOpen() || !toBytes.IsOpen()) return nullptr;
    ReadByIconv(toWide, toBytes, *table);
  } else {
    const Converter converter = OpenSkipping(row.name);
    if (!converter) return nullptr;
    ReadByIcu(row, converter.get(), *table);
  }
  ForEachMapping(WINDOWS_DELTA, WINDOWS_DELTA.decode, row.codePage,
                 [&](std::uint16_t key, std::uint16_t value) { SetDecoding(*table, key, value); });
  ForEachMapping(WINDOWS_DELTA, WINDOWS_DELTA.encode, row.codePage,
                 [&](std::uint16_t key, std::uint16_t value) { table->SetEncoding(key, value); });
  return table;
}

}  // namespace shr::platform
