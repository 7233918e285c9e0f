// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One code page of single bytes and byte pairs as lookup tables. Internal to the platform layer.
///
/// A page is filled once by whoever knows its mapping and is constant from then on. Pages with
/// longer sequences or shift states are not for this class. Threads: const calls may run together.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace shr::platform {

/// Whether more input follows the bytes at hand.
enum class Input { Complete, Continues };

class CodePageTable {
public:
  /// What stands for bytes and for characters that the page lacks.
  struct StandIns {
    char16_t unit;
    unsigned char byte;
  };

  struct Progress {
    std::size_t read;
    std::size_t written;
  };

  /// Starts as a page that lacks everything.
  explicit CodePageTable(StandIns standIns);

  // Filling. A key is a byte or, from 0x100 on, a pair with its first byte in the high half.

  /// Makes `byte` the first of a pair. Alone, or before a zero byte, it is a bad sequence.
  void SetLead(unsigned char byte);
  /// Makes `byte` a character of its own.
  void SetSingle(unsigned char byte, char16_t unit);
  /// Requires: the high half of `pair` is a lead byte.
  void SetPair(std::uint16_t pair, char16_t unit);
  void SetEncoding(char16_t unit, std::uint16_t key);

  bool IsLead(unsigned char byte) const noexcept { return units_[byte] == LEAD; }
  bool HasEncoding(char16_t unit) const noexcept;
  /// The key that `unit` is encoded to, the stand-in where the page lacks it.
  std::uint16_t Encoding(char16_t unit) const noexcept;
  const StandIns& Replacements() const noexcept { return standIns_; }

  // Conversion.

  /// Decodes into `out` and returns what was read and written. A lead byte at the end is left
  /// unread while the input continues. Requires: `out` has room for `bytes.size()` units.
  Progress Decode(std::string_view bytes, Input input, wchar_t* out) const noexcept;

  /// Encodes into `out` and returns the number of bytes written. A character outside the page
  /// becomes one stand-in for each of its UTF-16 units. Requires: `out` has room for `2 *
  /// text.size()` bytes.
  std::size_t Encode(std::wstring_view text, char* out) const noexcept;

  /// Append the conversion of the whole input.
  void AppendDecoded(std::string_view bytes, std::wstring& wide) const;
  void AppendEncoded(std::wstring_view text, std::string& narrow) const;

private:
  /// Marks a lead byte among the units; U+FFFF is a character of no page.
  static constexpr wchar_t LEAD = static_cast<wchar_t>(0xFFFF);
  static constexpr std::size_t BLOCK = 256;

  void DecodeSingles(const unsigned char* in, std::size_t count, wchar_t* out) const noexcept;
  char* EncodeUnit(char32_t ch, char* out) const noexcept;

  StandIns standIns_;
  bool hasPairs_ = false;
  std::array<wchar_t, 256> units_;
  /// 256 units for each lead byte; `rows_` says where they begin.
  std::array<std::uint32_t, 256> rows_{};
  std::vector<char16_t> pairs_;
  /// Keys by blocks of 256 units. Block 0 lacks everything.
  std::array<std::uint16_t, 256> blocks_{};
  std::vector<std::uint16_t> keys_;
  std::vector<bool> encoded_;
};

}  // namespace shr::platform
