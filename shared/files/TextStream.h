// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// An open text file behind a descriptor: lines in, text out, one position for both.
///
/// Internal to shared/files/EncodedBufferedFile.h, which decides what the file is and opens it.
/// The stream reads and writes in large blocks and keeps no more of the file in memory than one.
///
///     TextStream stream(descriptor, path, format, WritePlace::AtPosition);
///     while (stream.AppendLine(line)) ...
///
/// Errors: "Unable to read '%s'.\n%s", "Unable to write '%s'.\n%s", "Unable to seek '%s'.\n%s",
/// "Unable to close '%s'.\n%s" with the path and the system's text.
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "shared/Export.h"
#include "shared/files/TextCodec.h"
#include "shared/text/GString.h"

namespace shr {

/// Where output goes.
enum class WritePlace { AtPosition, AtEnd };

/// Reads lines from a descriptor and writes text to it.
///
/// The position is an offset in bytes: behind the last line that was fetched, or behind everything
/// written. Reading and writing may alternate at will; each goes on at the position, writing with
/// `WritePlace::AtEnd` at the end of the file.
class SHARED_API TextStream {
public:
  /// Takes the descriptor over.
  TextStream(int descriptor, const GString& path, const TextFormat& format, WritePlace place);
  /// Writes what is pending and closes, both without checks.
  ~TextStream();
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;

  /// Takes over the first bytes of the file, which were read from the descriptor already, but for
  /// the first `skipped` of them. Requires: nothing was read or written by the stream yet, and
  /// there are at most 64 KiB.
  void Preload(std::string_view head, std::size_t skipped);

  /// Appends the next line, its line feed included, or what the file has left. Returns false when
  /// nothing is left.
  bool AppendLine(std::wstring& text);
  /// Returns true when nothing is left to read.
  bool IsAtEnd();

  void Write(std::wstring_view text);
  /// Writes bytes as they are.
  void WriteBytes(std::string_view bytes);
  /// Hands everything written to the system.
  void Flush();

  /// Reads and writes in another code page from the position on.
  void SetCodePage(std::uint32_t codePage);
  /// Converts lines of a multi-byte page as one, or in pieces, from the position on.
  void SetWholeLines(bool isInWholeLines);

  /// Goes to an offset; from there on reading and writing start anew.
  void Seek(std::int64_t position);
  std::int64_t GetPosition() const noexcept { return position_; }
  std::int64_t GetLength() const;

  /// Writes what is pending and closes. The descriptor is closed in any case.
  void Close();

private:
  std::string_view Unread() const noexcept { return {block_.get() + next_, end_ - next_}; }
  void Consume(std::size_t count) noexcept {
    next_ += count;
    position_ += static_cast<std::int64_t>(count);
  }
  bool Refill();
  bool AppendLongLine(std::wstring& text, Taken taken);
  Taken TakeWholeLine(std::wstring& text, std::size_t searched);
  void CheckCodePage(const wchar_t* format) const;
  void StartWriting();
  void FinishWriting();
  bool WritePending();
  void FlushIfLarge();
  [[noreturn]] void Fail(const wchar_t* format, int line) const;

  int descriptor_;
  GString path_;
  TextFormat format_;
  WritePlace place_;
  std::size_t encodedTogether_;  ///< the most units that are encoded at once
  TextDecoder decoder_;
  TextEncoder encoder_;
  std::int64_t position_ = 0;
  std::unique_ptr<char[]> block_;
  std::size_t next_ = 0;  ///< the unread part of the block
  std::size_t end_ = 0;
  std::string pending_;  ///< encoded, not yet handed to the system
};

// Implementation details follow.

inline bool TextStream::AppendLine(std::wstring& text) {
  // While output is pending the block is empty, so that this leads to the slow way.
  const Taken taken = decoder_.Take(Unread(), 0, TakenText::Line, text);
  Consume(taken.bytes);
  return taken.isLine || AppendLongLine(text, taken);
}

}  // namespace shr
