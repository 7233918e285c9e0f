// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/TextDetection.h"

#include <cstdint>

#include "shared/platform/TextTests.h"

namespace shr {
namespace {

using std::string_view;

bool Fires(string_view bytes, std::uint32_t test) noexcept {
  return (platform::TestText(bytes, test) & test) != 0;
}

/// The tests that speak for UTF-16 in one byte order.
struct Utf16Tests {
  std::uint32_t ascii;
  std::uint32_t statistics;
  std::uint32_t controls;
  std::uint32_t signature;
};

constexpr Utf16Tests LITTLE_ENDIAN_TESTS = {
    platform::TEXT_TEST_ASCII16, platform::TEXT_TEST_STATISTICS, platform::TEXT_TEST_CONTROLS,
    platform::TEXT_TEST_SIGNATURE};
constexpr Utf16Tests BIG_ENDIAN_TESTS = {
    platform::TEXT_TEST_REVERSE_ASCII16, platform::TEXT_TEST_REVERSE_STATISTICS,
    platform::TEXT_TEST_REVERSE_CONTROLS, platform::TEXT_TEST_REVERSE_SIGNATURE};

ConfidenceLevel RateSingleByte(char byte) noexcept {
  const auto value = static_cast<unsigned char>(byte);
  if (value == 0) return ConfidenceNo;
  return value < 32 ? ConfidenceUnlikely : ConfidenceLikely;
}

/// A full sample may end within a two-byte unit; then only zeros before its last byte count.
bool HoldsNullBytes(const TextSample& sample) noexcept {
  if (!Fires(sample.bytes, platform::TEXT_TEST_NULL_BYTES)) return false;
  if (!sample.IsFull() || sample.bytes.back() != '\0') return true;
  const string_view head = sample.bytes.substr(0, sample.bytes.size() - 1);
  return Fires(head, platform::TEXT_TEST_NULL_BYTES);
}

bool Fits(ConfidenceLevel level) noexcept {
  return level == ConfidenceCertain || level == ConfidenceLikely;
}

bool FitsUtf16(const TextSample& sample, ByteOrder order) noexcept {
  return Fits(RateUtf16(sample, order));
}

bool ExcludesUtf16(const TextSample& sample, ByteOrder order) noexcept {
  return RateUtf16(sample, order) == ConfidenceNo;
}

TextEncoding EncodingOf(ByteOrder order) noexcept {
  return order == ByteOrder::LittleEndian ? EncodingUTF16LE : EncodingUTF16BE;
}

TextEncoding CheckAnsi(const TextSample& sample, const ByteOrderMark& mark) noexcept {
  const ConfidenceLevel ansi = RateAnsi(sample);
  if (ansi == ConfidenceNo) {
    if (!ExcludesUtf16(sample, ByteOrder::LittleEndian)) return EncodingUTF16LE;
    if (!ExcludesUtf16(sample, ByteOrder::BigEndian)) return EncodingUTF16BE;
  }
  if (ansi == ConfidenceUnlikely) {
    if (FitsUtf16(sample, ByteOrder::LittleEndian)) return EncodingUTF16LE;
    if (FitsUtf16(sample, ByteOrder::BigEndian)) return EncodingUTF16BE;
  }
  return mark.encoding == EncodingUTF8 ? EncodingUTF8 : EncodingANSI;
}

TextEncoding CheckUtf8(const TextSample& sample, const ByteOrderMark& mark) noexcept {
  if (mark.encoding == EncodingUTF8) return EncodingUTF8;
  if (FitsUtf16(sample, ByteOrder::LittleEndian)) return EncodingUTF16LE;
  if (FitsUtf16(sample, ByteOrder::BigEndian)) return EncodingUTF16BE;
  return EncodingANSI;
}

TextEncoding CheckUtf16(const TextSample& sample, const ByteOrderMark& mark,
                        ByteOrder requested) noexcept {
  const ByteOrder other =
      requested == ByteOrder::LittleEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
  if (FitsUtf16(sample, requested)) return EncodingOf(requested);
  if (FitsUtf16(sample, other)) return EncodingOf(other);
  if (mark.encoding == EncodingUTF8) return EncodingUTF8;
  return Fits(RateAnsi(sample)) ? EncodingANSI : EncodingOf(requested);
}

TextEncoding CheckContent(TextEncoding requested, const TextSample& sample,
                          const ByteOrderMark& mark) noexcept {
  switch (requested) {
    case EncodingUTF8:
      return CheckUtf8(sample, mark);
    case EncodingUTF16LE:
      return CheckUtf16(sample, mark, ByteOrder::LittleEndian);
    case EncodingUTF16BE:
      return CheckUtf16(sample, mark, ByteOrder::BigEndian);
    case EncodingANSI:
      break;
  }
  return CheckAnsi(sample, mark);
}

}  // namespace

string_view MarkOf(TextEncoding encoding) noexcept {
  switch (encoding) {
    case EncodingUTF8:
      return "\xEF\xBB\xBF";
    case EncodingUTF16LE:
      return "\xFF\xFE";
    case EncodingUTF16BE:
      return "\xFE\xFF";
    case EncodingANSI:
      break;
  }
  return {};
}

ByteOrderMark FindByteOrderMark(string_view head) noexcept {
  for (const TextEncoding encoding : {EncodingUTF16LE, EncodingUTF16BE, EncodingUTF8}) {
    const string_view mark = MarkOf(encoding);
    if (head.starts_with(mark)) return {mark.size(), encoding};
  }
  return {};
}

ConfidenceLevel RateAnsi(const TextSample& sample) noexcept {
  if (sample.bytes.empty()) return ConfidenceCertain;
  if (sample.bytes.size() == 1) return RateSingleByte(sample.bytes.front());
  if (HoldsNullBytes(sample)) return ConfidenceNo;
  for (const std::uint32_t test :
       {platform::TEXT_TEST_SIGNATURE, platform::TEXT_TEST_REVERSE_SIGNATURE,
        platform::TEXT_TEST_STATISTICS, platform::TEXT_TEST_REVERSE_STATISTICS}) {
    if (Fires(sample.bytes, test)) return ConfidenceUnlikely;
  }
  return ConfidenceLikely;
}

ConfidenceLevel RateUtf16(const TextSample& sample, ByteOrder order) noexcept {
  if (sample.bytes.empty()) return ConfidenceCertain;
  if (sample.bytes.size() < 2) return ConfidenceNo;
  if (Fires(sample.bytes, platform::TEXT_TEST_ODD_LENGTH)) return ConfidenceNo;
  if (Fires(sample.bytes, platform::TEXT_TEST_ILLEGAL_CHARS)) return ConfidenceNo;
  const Utf16Tests& tests =
      order == ByteOrder::LittleEndian ? LITTLE_ENDIAN_TESTS : BIG_ENDIAN_TESTS;
  if (Fires(sample.bytes, tests.ascii)) return ConfidenceCertain;
  const bool isSupported =
      Fires(sample.bytes, tests.controls) || Fires(sample.bytes, tests.signature);
  return Fires(sample.bytes, tests.statistics) && isSupported ? ConfidenceLikely
                                                              : ConfidenceUnlikely;
}

TextEncoding ChooseEncoding(TextEncoding requested, const TextSample& sample,
                            const ByteOrderMark& mark) noexcept {
  const TextEncoding encoding = CheckContent(requested, sample, mark);
  return encoding != EncodingANSI && mark.size != 0 ? mark.encoding : encoding;
}

}  // namespace shr
