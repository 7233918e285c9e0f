// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMemoryFile`, a growable byte buffer with a file position; also the in-memory side of `CFile`
/// and `CBufferedFile`.
///
///     CMemoryFile file;
///     file.Write("depth\n", 6);
///     file.Seek(0, CMemoryFile::OriginBegin);
///     char line[16];
///     while (file.ReadString(line, sizeof line) != nullptr) Use(line);
///
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>

#include "shared/Export.h"

namespace shr {

/// Bytes in memory behind the operations of a file. Positions and sizes are unsigned 32-bit.
///
/// The buffer comes from the runtime's `malloc` and `realloc`. An object either owns its buffer, or
/// works on one that was handed in; writing past the end of such a buffer reallocates it, after
/// which the caller still has to free what `GetBuffer` returns. Errors: a failed operation leaves
/// content and position as they were. Allocation failures are `std::bad_alloc`.
class SHARED_API CMemoryFile {
public:
  enum Origin : int { OriginBegin = 0, OriginCurrent = 1, OriginEnd = 2 };

  /// An empty file that owns its buffer.
  CMemoryFile() = default;
  /// Wraps a buffer as `Attach` does.
  CMemoryFile(unsigned char* buffer, std::uint32_t size);
  ~CMemoryFile();
  CMemoryFile(CMemoryFile&& other) noexcept;
  CMemoryFile& operator=(CMemoryFile&& other) noexcept;
  CMemoryFile(const CMemoryFile&) = delete;
  CMemoryFile& operator=(const CMemoryFile&) = delete;

  /// Closes the file and works on `buffer` from now on: its `size` bytes are the content, the
  /// position is 0. Requires: a buffer that will grow comes from `malloc`. Lifetime: until `Close`,
  /// `Detach` or destruction. Errors: internal error when `buffer` is null and `size` is not 0.
  void Attach(unsigned char* buffer, std::uint32_t size);

  /// Returns the buffer, which the caller now owns and releases with `free`, and starts over as an
  /// empty file that owns what it allocates.
  [[nodiscard]] unsigned char* Detach() noexcept;

  /// Returns the content, or null when nothing was ever written. Valid until the next change.
  unsigned char* GetBuffer() const noexcept { return buffer_; }
  std::uint32_t GetLength() const noexcept { return length_; }
  /// Returns the bytes allocated: 1024 doubled as often as was needed.
  std::uint32_t GetCapacity() const noexcept { return capacity_; }
  std::uint32_t GetPosition() const noexcept { return position_; }

  /// Cuts the content, or extends it with zeros; a position behind the end is moved to the end.
  void SetLength(std::uint32_t length);

  /// Reads at most `count` bytes and returns how many: 0 at the end.
  std::uint32_t Read(void* buffer, std::uint32_t count);

  /// Writes at the position; a gap between the length and the position is filled with zeros.
  /// Errors: "Unable to write" when the content would reach 4 GiB.
  void Write(const void* buffer, std::uint32_t count);

  /// Returns the next byte, or -1 at the end.
  int Getc();
  /// Steps back one byte and overwrites it with `c`. Returns `c`, or -1 at position 0 or when `c`
  /// is -1.
  int UnGetc(int c);
  /// Writes one byte and returns it.
  int Putc(int c);

  /// Reads bytes up to and including a line feed, at most `size` - 1, and a terminating zero.
  /// Returns `buffer`, or null at the end, for a null buffer or size 0. Size 1 gives the empty
  /// string.
  char* ReadString(char* buffer, std::uint32_t size);

  /// Moves the position, also behind the end, and returns it. An unknown origin leaves it where it
  /// is. Errors: "Unable to seek" when the result does not fit in unsigned 32 bits.
  std::uint32_t Seek(int offset, Origin origin);

  /// Returns true when the position is at the end or behind it.
  bool EndOfFile() const noexcept { return position_ >= length_; }

  /// Makes the file empty. The buffer is freed when it is owned and forgotten otherwise.
  void Close() noexcept;

private:
  enum class Room { Reused, FreshZeros };

  Room GrowFile(std::uint32_t needed);
  void Extend(std::uint32_t length);
  void Take(CMemoryFile& other) noexcept;

  std::uint32_t position_ = 0;
  std::uint32_t capacity_ = 0;
  std::uint32_t length_ = 0;
  unsigned char* buffer_ = nullptr;
  bool ownsBuffer_ = true;
};

}  // namespace shr
