// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Where the readers of polygon files get their bytes from and the writers put them. Not installed.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "shared/files/BufferedFile.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"

namespace shr {

/// A file that is read from its position on.
class ByteSource {
public:
  virtual ~ByteSource() = default;

  /// Finds out how many bytes are left, so that `CanHold` knows.
  void Measure() { remaining_ = FindRemaining(); }
  /// Returns false when `count` items of at least `size` bytes each cannot be left. Without a
  /// measure, and for files without a length, everything can.
  bool CanHold(std::uint64_t count, std::uint64_t size) const {
    return remaining_ < 0 || count <= static_cast<std::uint64_t>(remaining_) / size;
  }

  /// Reads exactly `count` bytes; returns false when there are fewer.
  bool Read(void* bytes, std::size_t count);
  /// Appends `count` points. Memory is taken as the bytes arrive, whatever the count says.
  bool ReadPoints(std::uint64_t count, std::vector<Vec2d>& points);
  /// Reads the next word between white space, and leaves the space behind it; false at the
  /// end and for words too long for a number.
  bool ReadWord(std::string& word);

protected:
  virtual int GetByte() = 0;
  virtual void UngetByte(int c) = 0;
  virtual std::size_t GetBytes(void* bytes, std::size_t count) = 0;
  virtual std::int64_t FindRemaining() = 0;

private:
  std::int64_t remaining_ = -1;
};

class StreamSource final : public ByteSource {
public:
  explicit StreamSource(std::FILE* stream) : stream_(stream) {}

private:
  int GetByte() override;
  void UngetByte(int c) override;
  std::size_t GetBytes(void* bytes, std::size_t count) override;
  std::int64_t FindRemaining() override;

  std::FILE* stream_;
};

class BufferedSource final : public ByteSource {
public:
  explicit BufferedSource(CBufferedFile& file) : file_(file) {}

private:
  int GetByte() override;
  void UngetByte(int c) override;
  std::size_t GetBytes(void* bytes, std::size_t count) override;
  std::int64_t FindRemaining() override;

  CBufferedFile& file_;
};

/// Bytes on their way to a file, handed on in large pieces.
class ByteSink {
public:
  virtual ~ByteSink() = default;

  void Write(const void* bytes, std::size_t count);
  void Write(std::string_view text) { Write(text.data(), text.size()); }
  /// Hands on the rest; returns false when any piece could not be written.
  bool Finish();

protected:
  virtual bool PutBytes(const char* bytes, std::size_t count) = 0;

private:
  void HandOn();

  std::string pending_;
  bool isGood_ = true;
};

class StreamSink final : public ByteSink {
public:
  explicit StreamSink(std::FILE* stream) : stream_(stream) {}

private:
  bool PutBytes(const char* bytes, std::size_t count) override;

  std::FILE* stream_;
};

/// The file's own errors pass through.
class BufferedSink final : public ByteSink {
public:
  explicit BufferedSink(CBufferedFile& file) : file_(file) {}

private:
  bool PutBytes(const char* bytes, std::size_t count) override;

  CBufferedFile& file_;
};

/// Returns the path for messages.
GString NameOf(const CBufferedFile& file);

/// The forms of a clipper record. Reading returns false when the bytes are wrong; errors of the
/// source and of memory pass through. `polygon` is then unchanged; its content is not freed.
bool ReadGpcText(ByteSource& source, bool holeFlags, GpcPolygon& polygon);
bool ReadGpcBinary(ByteSource& source, bool holeFlags, GpcPolygon& polygon);
void WriteGpcText(ByteSink& sink, bool holeFlags, const GpcPolygon& polygon);
void WriteGpcBinary(ByteSink& sink, bool holeFlags, const GpcPolygon& polygon);

}  // namespace shr
