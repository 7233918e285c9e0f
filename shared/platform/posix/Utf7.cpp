// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/Utf7.h"

#include <cstdint>

#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

constexpr std::string_view BASE64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Punctuation and controls that stand for themselves beside letters and digits.
constexpr std::string_view DIRECT = {"'(),-./:? \t\r\n\0", 14};

constexpr char RUN_START = '+';
constexpr char RUN_END = '-';

bool IsLetterOrDigit(char ch) {
  return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') || (ch >= '0' && ch <= '9');
}

bool IsDirect(std::uint32_t unit) {
  const auto ch = static_cast<char>(unit);
  return unit < 0x80 && (IsLetterOrDigit(ch) || DIRECT.find(ch) != std::string_view::npos);
}

/// Returns true for a unit that a run of digits carries; "+" has a form of its own outside a run.
bool IsCarried(std::uint32_t unit) {
  return unit != '+' && !IsDirect(unit);
}

/// Bits on their way between units of 16 and digits of 6.
class BitQueue {
public:
  void Push(std::uint32_t value, int count) {
    bits_ = bits_ << count | value;
    count_ += count;
  }
  bool Has(int count) const { return count_ >= count; }
  bool IsEmpty() const { return count_ == 0; }
  std::uint32_t Pop(int count) {
    count_ -= count;
    const std::uint32_t value = bits_ >> count_;
    bits_ &= (1u << count_) - 1;
    return value;
  }
  /// Fills up with zeros so that a last value of `count` bits can be taken.
  void PadTo(int count) {
    if (count_ < count) Push(0, count - count_);
  }

private:
  std::uint32_t bits_ = 0;
  int count_ = 0;
};

/// UTF-16 big endian, two bytes a unit, whatever the width of wide text.
std::string Utf16Of(std::wstring_view text) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(WideToUtf16(text, ByteOrder::BigEndian, bytes.data()));
  return bytes;
}

std::uint32_t UnitAt(const std::string& utf16, std::size_t index) {
  return static_cast<std::uint32_t>(static_cast<unsigned char>(utf16[2 * index]) << 8 |
                                    static_cast<unsigned char>(utf16[2 * index + 1]));
}

/// Decodes the run behind a "+" at the head of `bytes` into UTF-16 and returns how many bytes it
/// takes.
std::size_t DecodeRun(std::string_view bytes, std::string& utf16) {
  BitQueue bits;
  std::size_t read = 0;
  for (; read < bytes.size(); ++read) {
    const std::size_t digit = BASE64.find(bytes[read]);
    if (digit == std::string_view::npos) break;
    bits.Push(static_cast<std::uint32_t>(digit), 6);
    if (!bits.Has(16)) continue;
    utf16 += static_cast<char>(bits.Pop(8));
    utf16 += static_cast<char>(bits.Pop(8));
  }
  return read < bytes.size() && bytes[read] == RUN_END ? read + 1 : read;
}

}  // namespace

void AppendWideFromUtf7(std::string_view bytes, std::wstring& wide) {
  std::string utf16;
  for (std::size_t i = 0; i < bytes.size();) {
    const char ch = bytes[i++];
    if (ch == RUN_START && (i == bytes.size() || bytes[i] != RUN_END)) {
      i += DecodeRun(bytes.substr(i), utf16);
      continue;
    }
    if (ch == RUN_START) ++i;
    utf16 += '\0';
    utf16 += ch;
  }
  const std::size_t before = wide.size();
  wide.resize(before + utf16.size() / 2);
  wide.resize(before + Utf16ToWide(utf16, ByteOrder::BigEndian, wide.data() + before));
}

void AppendNarrowToUtf7(std::wstring_view text, std::string& narrow) {
  const std::string utf16 = Utf16Of(text);
  const std::size_t count = utf16.size() / 2;
  for (std::size_t i = 0; i < count;) {
    const std::uint32_t first = UnitAt(utf16, i);
    if (IsDirect(first)) {
      narrow += static_cast<char>(first);
      ++i;
      continue;
    }
    narrow += RUN_START;
    if (first == '+') {
      narrow += RUN_END;
      ++i;
      continue;
    }
    BitQueue bits;
    for (; i < count && IsCarried(UnitAt(utf16, i)); ++i) {
      bits.Push(UnitAt(utf16, i), 16);
      while (bits.Has(6)) narrow += BASE64[bits.Pop(6)];
    }
    bits.PadTo(bits.IsEmpty() ? 0 : 6);
    while (bits.Has(6)) narrow += BASE64[bits.Pop(6)];
    narrow += RUN_END;
  }
}

}  // namespace shr::platform
