// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/File.h"

#include <limits>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"File";
constexpr const wchar_t* MEMORY_FILE_NAME = L"memory file";
constexpr const wchar_t* OUT_OF_RANGE_TEXT = L"out of range";

bool IsKnown(CFile::Mode mode) {
  return mode >= CFile::ModeCreateNew && mode <= CFile::ModeAppend;
}

bool IsKnown(CFile::Sharing sharing) {
  return sharing >= CFile::ShareNone && sharing <= CFile::ShareAll;
}

bool IsKnown(CFile::Origin origin) {
  return origin >= CFile::OriginBegin && origin <= CFile::OriginEnd;
}

platform::FileOpenOptions MakeOptions(CFile::Access access, CFile::Mode mode,
                                      CFile::Sharing sharing) {
  platform::FileOpenOptions options;
  options.write = access == CFile::AccessWrite || access == CFile::AccessReadWrite;
  options.read = access != CFile::AccessWrite;
  options.create = mode != CFile::ModeOpenExisting && mode != CFile::ModeTruncateExisting;
  options.exclusive = mode == CFile::ModeCreateNew;
  options.truncate = mode == CFile::ModeCreateAlways || mode == CFile::ModeTruncateExisting;
  options.append = mode == CFile::ModeAppend;
  options.sharing = static_cast<platform::FileSharing>(sharing);
  return options;
}

/// Throws `format` with the path and the words of the system for the failure that just happened.
[[noreturn]] void ThrowSystemError(int line, const wchar_t* format, const GString& path) {
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, line, format, path.c_str(), reason.c_str());
}

}  // namespace

CFile::CFile(int handle) : open_(handle != NO_HANDLE), handle_(handle) {}

CFile::CFile(const GString& path, Access access, Mode mode, Sharing sharing) {
  Open(path, access, mode, sharing);
}

CFile::~CFile() {
  Abort(false);
}

CFile::CFile(CFile&& other) noexcept {
  Take(other);
}

CFile& CFile::operator=(CFile&& other) noexcept {
  if (this != &other) {
    Abort(false);
    Take(other);
  }
  return *this;
}

void CFile::Take(CFile& other) noexcept {
  open_ = other.open_;
  path_.swap(other.path_);
  fullPath_.swap(other.fullPath_);
  handle_ = std::exchange(other.handle_, NO_HANDLE);
  memory_ = std::move(other.memory_);
  other.Forget();
}

void CFile::Forget() noexcept {
  open_ = false;
  handle_ = NO_HANDLE;
  memory_.reset();
  path_.clear();
  fullPath_.clear();
}

bool CFile::TryOpen(const GString& path, Access access, Mode mode, Sharing sharing) {
  const int handle = platform::OpenDescriptor(path, MakeOptions(access, mode, sharing));
  if (handle == platform::NO_DESCRIPTOR) return false;
  handle_ = handle;
  path_ = path;
  fullPath_ = platform::AnchorPath(path);
  open_ = true;
  return true;
}

void CFile::Open(const GString& path, Access access, Mode mode, Sharing sharing) {
  if (path.empty() || !HoldsNothing() || !IsKnown(mode) || !IsKnown(sharing)) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  if (!TryOpen(path, access, mode, sharing)) {
    ThrowSystemError(__LINE__, L"Unable to open '%s'.\n%s", path);
  }
}

bool CFile::OpenNoThrow(const GString& path, Access access, Mode mode, Sharing sharing) {
  if (path.empty() || !HoldsNothing() || !IsKnown(mode) || !IsKnown(sharing)) return false;
  return TryOpen(path, access, mode, sharing);
}

void CFile::OpenMemory(std::unique_ptr<CMemoryFile> memory) {
  if (!HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  memory_ = std::move(memory);
  path_.clear();
  open_ = true;
}

void CFile::Open() {
  OpenMemory(std::make_unique<CMemoryFile>());
}

void CFile::Open(void* buffer, std::uint32_t size) {
  OpenMemory(std::make_unique<CMemoryFile>(static_cast<unsigned char*>(buffer), size));
}

void CFile::Close() {
  const int handle = handle_;
  const GString path = path_;
  Forget();
  if (handle != NO_HANDLE && !platform::CloseDescriptor(handle)) {
    ThrowSystemError(__LINE__, L"Unable to close '%s'.\n%s", path);
  }
}

void CFile::Abort(bool remove) noexcept {
  if (handle_ != NO_HANDLE) platform::CloseDescriptor(handle_);
  if (remove && !path_.empty()) platform::RemoveFile(fullPath_);
  Forget();
}

void CFile::Flush() {
  if (handle_ == NO_HANDLE) return;
  if (!platform::FlushDescriptor(handle_)) {
    ThrowSystemError(__LINE__, L"Unable to write '%s'.\n%s", path_);
  }
}

std::uint32_t CFile::Read(void* buffer, std::uint32_t count) {
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (count == 0) return 0;
  if (memory_) return memory_->Read(buffer, count);
  if (handle_ == NO_HANDLE) return 0;
  const std::ptrdiff_t got = platform::ReadDescriptor(handle_, buffer, count);
  if (got < 0) ThrowSystemError(__LINE__, L"Unable to read '%s'.\n%s", path_);
  return static_cast<std::uint32_t>(got);
}

void CFile::ReadN(void* buffer, std::uint32_t count) {
  unsigned char* next = static_cast<unsigned char*>(buffer);
  // A pipe gives what it has, so a short read is not yet the end.
  for (std::uint32_t left = count; left > 0;) {
    const std::uint32_t got = Read(next, left);
    if (got == 0) ThrowErrorImpl(UNIT, __LINE__, L"Unexpected end of file.");
    next += got;
    left -= got;
  }
}

void CFile::Write(const void* buffer, std::uint32_t count) {
  if (HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (count == 0) return;
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (memory_) {
    memory_->Write(buffer, count);
  } else if (!platform::WriteDescriptor(handle_, buffer, count)) {
    ThrowSystemError(__LINE__, L"Unable to write '%s'.\n%s", path_);
  }
}

std::int64_t CFile::Seek(std::int64_t offset, Origin origin) {
  if (HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (memory_) {
    if (offset < std::numeric_limits<std::int32_t>::min() ||
        offset > std::numeric_limits<std::int32_t>::max()) {
      ThrowErrorImpl(UNIT, __LINE__, L"Unable to seek '%s'.\n%s", MEMORY_FILE_NAME,
                     OUT_OF_RANGE_TEXT);
    }
    return memory_->Seek(static_cast<int>(offset), static_cast<CMemoryFile::Origin>(origin));
  }
  if (!IsKnown(origin)) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  const std::int64_t position =
      platform::SeekDescriptor(handle_, offset, static_cast<platform::FileOrigin>(origin));
  if (position < 0) ThrowSystemError(__LINE__, L"Unable to seek '%s'.\n%s", path_);
  return position;
}

std::int64_t CFile::GetPosition() const {
  if (HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (memory_) return memory_->GetPosition();
  const std::int64_t position = platform::SeekDescriptor(handle_, 0, platform::FileOrigin::Current);
  if (position < 0) ThrowSystemError(__LINE__, L"Unable to seek '%s'.\n%s", path_);
  return position;
}

std::int64_t CFile::GetLength() const {
  if (memory_) return memory_->GetLength();
  if (handle_ == NO_HANDLE) return -1;
  const std::int64_t length = platform::GetDescriptorLength(handle_);
  if (length < 0) ThrowSystemError(__LINE__, L"Unable to seek '%s'.\n%s", path_);
  return length;
}

bool CFile::EndOfFile() const {
  if (memory_) return memory_->EndOfFile();
  if (handle_ == NO_HANDLE) return true;
  const std::int64_t position = platform::SeekDescriptor(handle_, 0, platform::FileOrigin::Current);
  const std::int64_t length = platform::GetDescriptorLength(handle_);
  if (position < 0 || length < 0) ThrowErrorImpl(UNIT, __LINE__, L"EOF: Bad file handle");
  return position >= length;
}

unsigned char* CFile::GetBuffer() const noexcept {
  return memory_ ? memory_->GetBuffer() : nullptr;
}

void CFile::SetFilePath(const GString& path) {
  path_ = path;
  fullPath_ = platform::AnchorPath(path_);
}

}  // namespace shr
