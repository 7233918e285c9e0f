// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/TextStream.h"

#include <algorithm>
#include <cstring>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/RawFile.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT_NAME = L"EncodedBufferedFile";
constexpr const wchar_t* READ_FAILED = L"Unable to read '%s'.\n%s";
constexpr const wchar_t* WRITE_FAILED = L"Unable to write '%s'.\n%s";
constexpr const wchar_t* SEEK_FAILED = L"Unable to seek '%s'.\n%s";
constexpr const wchar_t* CLOSE_FAILED = L"Unable to close '%s'.\n%s";

/// Large enough to make the system's calls cheap, small enough for the second cache.
constexpr std::size_t BLOCK_BYTES = 128 * 1024;
/// Output is handed to the system from this size on.
constexpr std::size_t PENDING_LIMIT = 64 * 1024;
/// UTF text is encoded in pieces of so many units, so that a long one needs no second copy in
/// memory. Text in code pages is not cut: some pages have shift states.
constexpr std::size_t WRITTEN_UNITS = 32 * 1024;

}  // namespace

TextStream::TextStream(int descriptor, const GString& path, const TextFormat& format,
                       WritePlace place)
    : descriptor_(descriptor),
      path_(path),
      format_(format),
      place_(place),
      encodedTogether_(format.encoding == EncodingANSI ? std::wstring_view::npos : WRITTEN_UNITS),
      decoder_(format),
      encoder_(format) {}

TextStream::~TextStream() {
  if (descriptor_ == platform::NO_DESCRIPTOR) return;
  encoder_.Finish(pending_);
  WritePending();
  platform::CloseDescriptor(descriptor_);
}

void TextStream::Fail(const wchar_t* format, int line) const {
  ThrowErrorImpl(UNIT_NAME, line, format, path_.c_str(), platform::LastErrorText().c_str());
}

void TextStream::CheckCodePage(const wchar_t* format) const {
  if (decoder_.IsUsable()) return;
  ThrowErrorImpl(UNIT_NAME, __LINE__, format, path_.c_str(), INVALID_PARAMETER_TEXT);
}

// Reading.

void TextStream::Preload(std::string_view head, std::size_t skipped) {
  if (head.empty()) return;
  block_ = std::make_unique_for_overwrite<char[]>(BLOCK_BYTES);
  std::memcpy(block_.get(), head.data(), head.size());
  end_ = head.size();
  Consume(skipped);
}

bool TextStream::Refill() {
  CheckCodePage(READ_FAILED);
  if (!block_) block_ = std::make_unique_for_overwrite<char[]>(BLOCK_BYTES);
  if (next_ != 0) {
    std::memmove(block_.get(), block_.get() + next_, end_ - next_);
    end_ -= next_;
    next_ = 0;
  }
  const auto got = platform::ReadDescriptor(descriptor_, block_.get() + end_, BLOCK_BYTES - end_);
  if (got < 0) Fail(READ_FAILED, __LINE__);
  end_ += static_cast<std::size_t>(got);
  return got > 0;
}

/// Goes on with a line of which `taken` was appended.
bool TextStream::AppendLongLine(std::wstring& text, Taken taken) {
  FinishWriting();
  bool isAny = taken.bytes != 0;
  while (true) {
    std::size_t searched = 0;
    if (!taken.isContinued) {
      searched = end_ - next_;
      if (!Refill()) break;
    }
    const bool isFull = end_ - next_ == BLOCK_BYTES;
    if (isFull && decoder_.TakesWholeLines()) {
      taken = TakeWholeLine(text, searched);
      if (!taken.isContinued) return true;
      isAny = true;
      continue;
    }
    taken = decoder_.Take(Unread(), searched, isFull ? TakenText::Head : TakenText::Line, text);
    Consume(taken.bytes);
    if (taken.isLine) return true;
    isAny = isAny || taken.bytes != 0;
  }
  const Taken rest = decoder_.Take(Unread(), end_ - next_, TakenText::Rest, text);
  Consume(rest.bytes);
  return isAny || rest.bytes != 0;
}

/// Takes a line that does not fit into the block and must be decoded as one.
Taken TextStream::TakeWholeLine(std::wstring& text, std::size_t searched) {
  std::string line;
  std::size_t feed = std::string_view::npos;
  do {
    const std::string_view unread = Unread();
    feed = unread.find('\n', searched);
    const std::size_t size = feed == std::string_view::npos ? unread.size() : feed + 1;
    line.append(unread.substr(0, size));
    Consume(size);
    searched = 0;
  } while (feed == std::string_view::npos && Refill());
  return decoder_.Take(line, 0, TakenText::Rest, text);
}

bool TextStream::IsAtEnd() {
  FinishWriting();
  return next_ == end_ && !Refill();
}

// Writing.

void TextStream::StartWriting() {
  if (next_ != end_ && place_ == WritePlace::AtPosition &&
      platform::SeekDescriptor(descriptor_, position_, platform::FileOrigin::Begin) < 0) {
    Fail(SEEK_FAILED, __LINE__);
  }
  next_ = end_ = 0;
  if (place_ == WritePlace::AtEnd && pending_.empty()) position_ = GetLength();
}

void TextStream::Write(std::wstring_view text) {
  CheckCodePage(WRITE_FAILED);
  StartWriting();
  while (!text.empty()) {
    const std::wstring_view piece = text.substr(0, encodedTogether_);
    const std::size_t before = pending_.size();
    encoder_.Append(piece, pending_);
    position_ += static_cast<std::int64_t>(pending_.size() - before);
    FlushIfLarge();
    text.remove_prefix(piece.size());
  }
}

void TextStream::WriteBytes(std::string_view bytes) {
  StartWriting();
  pending_.append(bytes);
  position_ += static_cast<std::int64_t>(bytes.size());
  FlushIfLarge();
}

void TextStream::FlushIfLarge() {
  if (pending_.size() >= PENDING_LIMIT) Flush();
}

void TextStream::Flush() {
  if (!WritePending()) Fail(WRITE_FAILED, __LINE__);
}

bool TextStream::WritePending() {
  const bool isDone =
      pending_.empty() || platform::WriteDescriptor(descriptor_, pending_.data(), pending_.size());
  // What could not be written is not tried again: the caller is told once.
  pending_.clear();
  return isDone;
}

void TextStream::FinishWriting() {
  const std::size_t before = pending_.size();
  encoder_.Finish(pending_);
  position_ += static_cast<std::int64_t>(pending_.size() - before);
  Flush();
}

// Position and format.

void TextStream::SetCodePage(std::uint32_t codePage) {
  FinishWriting();
  format_.codePage = codePage;
  decoder_ = TextDecoder(format_);
  encoder_ = TextEncoder(format_);
}

void TextStream::SetWholeLines(bool isInWholeLines) {
  format_.isInWholeLines = isInWholeLines;
  decoder_ = TextDecoder(format_);
}

void TextStream::Seek(std::int64_t position) {
  FinishWriting();
  if (platform::SeekDescriptor(descriptor_, position, platform::FileOrigin::Begin) < 0) {
    Fail(SEEK_FAILED, __LINE__);
  }
  next_ = end_ = 0;
  position_ = position;
}

std::int64_t TextStream::GetLength() const {
  const std::int64_t length = platform::GetDescriptorLength(descriptor_);
  return pending_.empty() ? length : std::max(length, position_);
}

void TextStream::Close() {
  encoder_.Finish(pending_);
  const bool isWritten = WritePending();
  const GString reason = isWritten ? GString() : platform::LastErrorText();
  const bool isClosed = platform::CloseDescriptor(descriptor_);
  descriptor_ = platform::NO_DESCRIPTOR;
  if (!isClosed) Fail(CLOSE_FAILED, __LINE__);
  if (!isWritten) ThrowErrorImpl(UNIT_NAME, __LINE__, CLOSE_FAILED, path_.c_str(), reason.c_str());
}

}  // namespace shr
