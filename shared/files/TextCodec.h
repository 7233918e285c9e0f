// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Turns the bytes of a text file into wide lines and wide text into the bytes of a file.
///
/// Internal to shared/files/EncodedBufferedFile.h. Neither class touches a file: the decoder is
/// handed lines that are complete in memory, or the head of one that is too long for that; the
/// encoder appends to a string of bytes.
///
///     TextDecoder decoder({EncodingUTF8, 0, LineEnds::AsStored});
///     const std::size_t end = decoder.FindLineEnd(bytes, 0);
///     decoder.AppendLine(bytes.substr(0, end), line);
///
/// Threads: one thread an object.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "shared/Export.h"
#include "shared/files/FileUtility.h"
#include "shared/text/Utf.h"

namespace shr {

/// Whether a line feed of the program is CR LF in the file.
enum class LineEnds { AsStored, CarriageReturnLineFeed };

/// All that decides what the bytes of a text file mean.
struct TextFormat {
  TextEncoding encoding = EncodingANSI;
  std::uint32_t codePage = 0;  ///< for `EncodingANSI`
  LineEnds lineEnds = LineEnds::AsStored;
};

/// What each byte of a code page stands for, where every byte stands for one unit of its own.
using SingleByteTable = std::array<wchar_t, 256>;

/// Decodes lines.
///
/// Each bad sequence of UTF-8 becomes one U+FFFD, as does an odd last byte of UTF-16. Zeros and
/// control characters are text like any other.
class SHARED_API TextDecoder {
public:
  explicit TextDecoder(const TextFormat& format);

  /// Returns the offset behind the first line feed at or behind `from`, or npos when there is none.
  /// UTF-16: `bytes` starts at a unit; an odd `from` means the unit that it lies in.
  std::size_t FindLineEnd(std::string_view bytes, std::size_t from) const noexcept;

  /// Appends a line with its line end, or the end of a text that has none, to `text`.
  /// Returns false, leaving `text` as it was, when the code page cannot be used on this target.
  bool AppendLine(std::string_view bytes, std::wstring& text);

  /// Appends the head of a line whose end is not in `bytes`; sets `used` to the number of bytes
  /// that this took. The rest, `MAX_REST` bytes at most, goes before what is read next.
  bool AppendHead(std::string_view bytes, std::wstring& text, std::size_t& used);

  static constexpr std::size_t MAX_REST = 512;

private:
  bool IsUtf16() const noexcept;
  ByteOrder Order() const noexcept;
  std::size_t CompleteLength(std::string_view bytes) const noexcept;
  std::size_t DecodePiece(std::string_view bytes) noexcept;
  void AppendDecoded(std::string_view bytes, std::wstring& text);
  bool AppendPieces(std::string_view bytes, std::wstring& text);

  /// Units decoded at a time; few enough to stay in the fastest cache.
  static constexpr std::size_t SCRATCH_UNITS = 2048;

  TextFormat format_;
  std::shared_ptr<const SingleByteTable> table_;  ///< null for multi-byte pages and UTF
  std::unique_ptr<wchar_t[]> scratch_;
};

/// Encodes text that arrives in pieces.
///
/// A high surrogate at the end of a piece is held back until the next one shows whether it belongs
/// to a pair. A surrogate without partner stays what it is in UTF-16, is U+FFFD in UTF-8 and the
/// default character in code pages.
class SHARED_API TextEncoder {
public:
  explicit TextEncoder(const TextFormat& format) : format_(format) {}

  /// Appends the bytes of `text`. Returns false when the code page cannot be used on this target.
  bool Append(std::wstring_view text, std::string& bytes);

  /// Appends what is held back.
  bool Finish(std::string& bytes);

private:
  bool Encode(std::wstring_view text, std::string& bytes);
  void EncodeUtf(std::wstring_view text, std::string& bytes) const;

  TextFormat format_;
  wchar_t held_ = 0;
};

}  // namespace shr
