// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/ReplacementFile.h"

#include <cstddef>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/RawFile.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ReplacementFile";
constexpr const wchar_t* OPEN_ERROR = L"Unable to open '%s'.\n%s";
constexpr const wchar_t* WRITE_ERROR = L"Unable to write '%s'.\n%s";
constexpr std::size_t GATHER_LIMIT = std::size_t{1} << 16;

}  // namespace

CReplacementFile::CReplacementFile(const GString& path) : path_(path) {
  if (path.empty()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (!replacement_.Begin(path)) ThrowSystemError(__LINE__, OPEN_ERROR);
}

CReplacementFile::~CReplacementFile() = default;

void CReplacementFile::ThrowSystemError(int line, const wchar_t* format) const {
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, line, format, path_.c_str(), reason.c_str());
}

/// Writes what was gathered, at its place even when a try before got through in part.
void CReplacementFile::WriteGathered() {
  if (gathered_.empty()) return;
  const int descriptor = replacement_.GetDescriptor();
  const auto place = static_cast<std::int64_t>(written_);
  if (platform::SeekDescriptor(descriptor, place, platform::FileOrigin::Begin) != place ||
      !platform::WriteDescriptor(descriptor, gathered_.data(), gathered_.size())) {
    ThrowSystemError(__LINE__, WRITE_ERROR);
  }
  written_ += gathered_.size();
  gathered_.clear();
}

void CReplacementFile::Write(std::string_view bytes) {
  if (!replacement_.IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  gathered_.append(bytes);
  if (gathered_.size() >= GATHER_LIMIT) WriteGathered();
}

void CReplacementFile::Truncate(std::uint64_t length) {
  if (!replacement_.IsOpen() || length > GetLength()) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  if (length >= written_) {
    gathered_.resize(static_cast<std::size_t>(length - written_));
    return;
  }
  if (!platform::SetDescriptorLength(replacement_.GetDescriptor(),
                                     static_cast<std::int64_t>(length))) {
    ThrowSystemError(__LINE__, WRITE_ERROR);
  }
  gathered_.clear();
  written_ = length;
}

void CReplacementFile::Commit() {
  if (!replacement_.IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  WriteGathered();
  if (!replacement_.Commit()) ThrowSystemError(__LINE__, WRITE_ERROR);
}

void CReplacementFile::Discard() noexcept {
  replacement_.Discard();
  gathered_.clear();
}

}  // namespace shr
