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
///     const std::size_t used = decoder.Take(bytes, 0, TakenText::Line, line);
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
  bool isInWholeLines = false;  ///< a line of a multi-byte page is converted as one
};

/// What is taken of bytes in which no line ends.
enum class TakenText {
  Line,  ///< nothing
  Head,  ///< what is whole; the rest goes before what is read next
  Rest   ///< everything: the text ends here
};

/// What was taken.
struct Taken {
  std::size_t bytes = 0;
  bool isLine = false;       ///< a line end was reached
  bool isContinued = false;  ///< one that the text does not have: the next line belongs to this one
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

  /// Returns false when this target cannot convert the code page; nothing is decoded then.
  bool IsUsable() const noexcept { return isUsable_; }

  /// Returns true when a line must be handed over whole, whatever its length.
  bool TakesWholeLines() const noexcept { return IsInPieces() && format_.isInWholeLines; }

  /// Appends the first line of `bytes`, its line end included, to `text`; when no line ends in
  /// `bytes`, what `what` says.
  /// The first `searched` bytes are known to hold no line end. UTF-16: `bytes` starts at a unit.
  Taken Take(std::string_view bytes, std::size_t searched, TakenText what, std::wstring& text);

  /// The most bytes that `TakenText::Head` leaves.
  static constexpr std::size_t MAX_REST = 512;

private:
  bool IsInPieces() const noexcept { return format_.encoding == EncodingANSI && !table_; }
  Taken TakeShortLine(std::string_view bytes, std::wstring& text) const;
  std::size_t HeadLength(std::string_view bytes) const noexcept;
  void AppendInPieces(std::string_view bytes, std::wstring& text) const;

  TextFormat format_;
  std::shared_ptr<const SingleByteTable> table_;  ///< null for multi-byte pages and UTF
  bool isUsable_ = true;
};

/// Encodes text that arrives in pieces.
///
/// A high surrogate at the end of a piece is held back until the next one shows whether it belongs
/// to a pair. A surrogate without partner stays what it is in UTF-16, is U+FFFD in UTF-8 and the
/// default character in code pages.
class SHARED_API TextEncoder {
public:
  explicit TextEncoder(const TextFormat& format) : format_(format) {}

  /// Appends the bytes of `text`; none for a code page that this target cannot convert.
  void Append(std::wstring_view text, std::string& bytes);

  /// Appends what is held back.
  void Finish(std::string& bytes);

private:
  void Encode(std::wstring_view text, std::string& bytes) const;
  void EncodeUtf(std::wstring_view text, std::string& bytes) const;

  TextFormat format_;
  wchar_t held_ = 0;
};

}  // namespace shr
