// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/MemoryFile.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"MemoryFile";
constexpr const wchar_t* MEMORY_FILE_NAME = L"memory file";
constexpr const wchar_t* OUT_OF_RANGE_TEXT = L"out of range";
constexpr std::uint32_t FIRST_CAPACITY = 1024;
constexpr std::uint32_t MAX_SIZE = std::numeric_limits<std::uint32_t>::max();

std::uint32_t NextCapacity(std::uint32_t capacity, std::uint32_t needed) {
  std::uint64_t next = capacity == 0 ? FIRST_CAPACITY : std::uint64_t{capacity} * 2;
  while (next < needed) next *= 2;
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(next, MAX_SIZE));
}

}  // namespace

CMemoryFile::CMemoryFile(unsigned char* buffer, std::uint32_t size) {
  Attach(buffer, size);
}

CMemoryFile::~CMemoryFile() {
  Close();
}

CMemoryFile::CMemoryFile(CMemoryFile&& other) noexcept {
  Take(other);
}

CMemoryFile& CMemoryFile::operator=(CMemoryFile&& other) noexcept {
  if (this != &other) {
    Close();
    Take(other);
  }
  return *this;
}

void CMemoryFile::Take(CMemoryFile& other) noexcept {
  position_ = std::exchange(other.position_, 0);
  capacity_ = std::exchange(other.capacity_, 0);
  length_ = std::exchange(other.length_, 0);
  buffer_ = std::exchange(other.buffer_, nullptr);
  ownsBuffer_ = std::exchange(other.ownsBuffer_, true);
}

void CMemoryFile::Attach(unsigned char* buffer, std::uint32_t size) {
  if (buffer == nullptr && size != 0) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  Close();
  buffer_ = buffer;
  capacity_ = length_ = size;
  ownsBuffer_ = buffer == nullptr;
}

unsigned char* CMemoryFile::Detach() noexcept {
  unsigned char* const buffer = std::exchange(buffer_, nullptr);
  ownsBuffer_ = true;
  Close();
  return buffer;
}

CMemoryFile::Room CMemoryFile::GrowFile(std::uint32_t needed) {
  const std::uint32_t capacity = NextCapacity(capacity_, needed);
  const bool isFirst = buffer_ == nullptr;
  // A first buffer comes zeroed from the system, which spares touching a large one.
  void* const grown = isFirst ? std::calloc(capacity, 1) : std::realloc(buffer_, capacity);
  if (grown == nullptr) throw std::bad_alloc();
  buffer_ = static_cast<unsigned char*>(grown);
  capacity_ = capacity;
  return isFirst ? Room::FreshZeros : Room::Reused;
}

/// Makes the content at least `length` bytes long; what is new reads as zeros.
void CMemoryFile::Extend(std::uint32_t length) {
  if (length <= length_) return;
  const Room room = length > capacity_ ? GrowFile(length) : Room::Reused;
  if (room == Room::Reused) std::memset(buffer_ + length_, 0, length - length_);
  length_ = length;
}

void CMemoryFile::SetLength(std::uint32_t length) {
  Extend(length);
  length_ = length;
  position_ = std::min(position_, length);
}

std::uint32_t CMemoryFile::Read(void* buffer, std::uint32_t count) {
  if (count == 0 || position_ >= length_) return 0;
  const std::uint32_t size = std::min(count, length_ - position_);
  std::memcpy(buffer, buffer_ + position_, size);
  position_ += size;
  return size;
}

void CMemoryFile::Write(const void* buffer, std::uint32_t count) {
  if (count == 0) return;
  if (count > MAX_SIZE - position_) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to write '%s'.\n%s", MEMORY_FILE_NAME,
                   OUT_OF_RANGE_TEXT);
  }
  const std::uint32_t end = position_ + count;
  if (end > capacity_) {
    const Room room = GrowFile(end);
    if (room == Room::FreshZeros) length_ = std::max(length_, position_);
  }
  Extend(position_);
  std::memcpy(buffer_ + position_, buffer, count);
  position_ = end;
  length_ = std::max(length_, end);
}

int CMemoryFile::Getc() {
  return position_ < length_ ? buffer_[position_++] : -1;
}

int CMemoryFile::UnGetc(int c) {
  if (position_ == 0 || c == -1) return -1;
  const std::uint32_t position = position_ - 1;
  Extend(position_);
  buffer_[position] = static_cast<unsigned char>(c);
  position_ = position;
  return c;
}

int CMemoryFile::Putc(int c) {
  const unsigned char byte = static_cast<unsigned char>(c);
  Write(&byte, 1);
  return byte;
}

char* CMemoryFile::ReadString(char* buffer, std::uint32_t size) {
  if (buffer == nullptr || size == 0) return nullptr;
  buffer[0] = '\0';
  if (size == 1) return buffer;
  if (position_ >= length_) return nullptr;
  const unsigned char* const begin = buffer_ + position_;
  std::uint32_t count = std::min(size - 1, length_ - position_);
  if (const void* const feed = std::memchr(begin, '\n', count)) {
    count = static_cast<std::uint32_t>(static_cast<const unsigned char*>(feed) - begin) + 1;
  }
  Read(buffer, count);
  buffer[count] = '\0';
  return buffer;
}

std::uint32_t CMemoryFile::Seek(int offset, Origin origin) {
  std::int64_t base = 0;
  switch (origin) {
    case OriginBegin:
      break;
    case OriginCurrent:
      base = position_;
      break;
    case OriginEnd:
      base = length_;
      break;
    default:
      return position_;
  }
  const std::int64_t target = base + offset;
  if (target < 0 || target > std::int64_t{MAX_SIZE}) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to seek '%s'.\n%s", MEMORY_FILE_NAME,
                   OUT_OF_RANGE_TEXT);
  }
  position_ = static_cast<std::uint32_t>(target);
  return position_;
}

void CMemoryFile::Close() noexcept {
  if (ownsBuffer_) std::free(buffer_);
  buffer_ = nullptr;
  ownsBuffer_ = true;
  position_ = capacity_ = length_ = 0;
}

}  // namespace shr
