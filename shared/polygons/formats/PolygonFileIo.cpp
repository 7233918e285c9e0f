// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/formats/PolygonFileIo.h"

#include <algorithm>
#include <bit>

#include "shared/platform/RawFile.h"

namespace shr {
namespace {

static_assert(std::endian::native == std::endian::little, "the files are little-endian");

constexpr std::size_t PIECE_SIZE = std::size_t{1} << 16;
constexpr std::size_t PIECE_POINTS = PIECE_SIZE / sizeof(Vec2d);
/// Longer words are no numbers: a double needs no more than about a thousand digits.
constexpr std::size_t MAX_WORD_SIZE = 4096;

bool IsSpace(int c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Returns -1 for streams that have no length.
std::int64_t RemainingOf(std::FILE* stream) {
  const std::int64_t position = platform::TellStream(stream);
  if (position < 0 || !platform::SeekStream(stream, 0, platform::FileOrigin::End)) return -1;
  const std::int64_t length = platform::TellStream(stream);
  const bool isBack = platform::SeekStream(stream, position, platform::FileOrigin::Begin);
  return isBack && length >= position ? length - position : 0;
}

}  // namespace

bool ByteSource::Read(void* bytes, std::size_t count) {
  if (GetBytes(bytes, count) != count) return false;
  if (remaining_ >= 0) remaining_ -= static_cast<std::int64_t>(count);
  return true;
}

bool ByteSource::ReadPoints(std::uint64_t count, std::vector<Vec2d>& points) {
  while (count > 0) {
    const std::size_t piece =
        static_cast<std::size_t>(std::min<std::uint64_t>(count, PIECE_POINTS));
    const std::size_t before = points.size();
    points.resize(before + piece);
    if (!Read(points.data() + before, piece * sizeof(Vec2d))) return false;
    count -= piece;
  }
  return true;
}

bool ByteSource::ReadWord(std::string& word) {
  word.clear();
  int c = GetByte();
  while (IsSpace(c)) c = GetByte();
  for (; c != EOF && !IsSpace(c) && word.size() < MAX_WORD_SIZE; c = GetByte()) {
    word += static_cast<char>(c);
  }
  if (c != EOF) UngetByte(c);
  return !word.empty() && word.size() < MAX_WORD_SIZE;
}

int StreamSource::GetByte() {
  return std::getc(stream_);
}

void StreamSource::UngetByte(int c) {
  std::ungetc(c, stream_);
}

std::size_t StreamSource::GetBytes(void* bytes, std::size_t count) {
  return std::fread(bytes, 1, count, stream_);
}

std::int64_t StreamSource::FindRemaining() {
  return RemainingOf(stream_);
}

int BufferedSource::GetByte() {
  return file_.Getc();
}

void BufferedSource::UngetByte(int c) {
  file_.UnGetc(c);
}

std::size_t BufferedSource::GetBytes(void* bytes, std::size_t count) {
  return file_.Read(bytes, static_cast<std::uint32_t>(count));
}

std::int64_t BufferedSource::FindRemaining() {
  if (file_.GetHandle() != nullptr) return RemainingOf(file_.GetHandle());
  return std::max<std::int64_t>(file_.GetLength() - file_.GetPosition(), 0);
}

void ByteSink::Write(const void* bytes, std::size_t count) {
  if (count == 0) return;
  if (count >= PIECE_SIZE) {
    HandOn();
    const char* next = static_cast<const char*>(bytes);
    for (; count > PIECE_SIZE; next += PIECE_SIZE, count -= PIECE_SIZE) {
      isGood_ = isGood_ && PutBytes(next, PIECE_SIZE);
    }
    pending_.assign(next, count);
    return;
  }
  pending_.append(static_cast<const char*>(bytes), count);
  if (pending_.size() >= PIECE_SIZE) HandOn();
}

void ByteSink::HandOn() {
  if (!pending_.empty()) isGood_ = isGood_ && PutBytes(pending_.data(), pending_.size());
  pending_.clear();
}

bool ByteSink::Finish() {
  HandOn();
  return isGood_;
}

bool StreamSink::PutBytes(const char* bytes, std::size_t count) {
  return std::fwrite(bytes, 1, count, stream_) == count;
}

bool BufferedSink::PutBytes(const char* bytes, std::size_t count) {
  file_.Write(bytes, static_cast<std::uint32_t>(count));
  return true;
}

GString NameOf(const CBufferedFile& file) {
  return file.IsMemoryFile() ? GString(L"memory file") : file.GetFilePath();
}

}  // namespace shr
