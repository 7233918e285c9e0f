// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/ReplacementFile.h"

#include <cstdio>
#include <random>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/Path.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ReplacementFile";
constexpr std::size_t GATHER_LIMIT = std::size_t{1} << 16;

/// Returns a name that is short, so that it fits wherever the target's name does, and very likely
/// unused.
GString MakeTemporaryName() {
  std::random_device random;
  GString name;
  name.FormatString(L"~%08x.tmp", static_cast<unsigned>(random()));
  return name;
}

}  // namespace

CReplacementFile::CReplacementFile(const GString& path)
    : path_(path), descriptor_(platform::NO_DESCRIPTOR) {
  if (path.empty()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  target_ = platform::ResolveLinks(path);
  CheckTarget();
  CreateTemporary();
}

CReplacementFile::~CReplacementFile() {
  if (descriptor_ != platform::NO_DESCRIPTOR) platform::CloseDescriptor(descriptor_);
  if (!temporary_.empty()) platform::RemoveFile(temporary_);
}

void CReplacementFile::ThrowSystemError(int line, const wchar_t* format) const {
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, line, format, path_.c_str(), reason.c_str());
}

/// Asks whether an existing target might be written in place: a rename alone would not mind a
/// read-only file.
void CReplacementFile::CheckTarget() {
  if (!platform::TestAccess(target_, platform::PathAccess::Exists)) return;
  platform::FileOpenOptions options;
  options.write = true;
  const int descriptor = platform::OpenDescriptor(target_, options);
  if (descriptor == platform::NO_DESCRIPTOR) {
    ThrowSystemError(__LINE__, L"Unable to open '%s'.\n%s");
  }
  platform::CloseDescriptor(descriptor);
}

void CReplacementFile::CreateTemporary() {
  const CPath folder(CPath(target_).GetDriveAndFolder(true));
  platform::FileOpenOptions options;
  options.write = options.create = options.exclusive = true;
  options.sharing = platform::FileSharing::None;
  constexpr int ATTEMPTS = 16;
  for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
    GString name = folder.Join(MakeTemporaryName());
    descriptor_ = platform::OpenDescriptor(name, options);
    if (descriptor_ != platform::NO_DESCRIPTOR) {
      temporary_.swap(name);
      return;
    }
  }
  ThrowSystemError(__LINE__, L"Unable to open '%s'.\n%s");
}

void CReplacementFile::WriteGathered() {
  if (!platform::WriteDescriptor(descriptor_, gathered_.data(), gathered_.size())) {
    ThrowSystemError(__LINE__, L"Unable to write '%s'.\n%s");
  }
  gathered_.clear();
}

void CReplacementFile::Write(std::string_view bytes) {
  if (descriptor_ == platform::NO_DESCRIPTOR) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  gathered_.append(bytes);
  if (gathered_.size() >= GATHER_LIMIT) WriteGathered();
}

void CReplacementFile::Commit() {
  if (descriptor_ == platform::NO_DESCRIPTOR) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  WriteGathered();
  const bool flushed = platform::FlushDescriptor(descriptor_);
  if (!flushed) ThrowSystemError(__LINE__, L"Unable to write '%s'.\n%s");
  const bool closed = platform::CloseDescriptor(descriptor_);
  descriptor_ = platform::NO_DESCRIPTOR;
  if (!closed || !platform::ReplaceExistingFile(temporary_, target_)) {
    ThrowSystemError(__LINE__, L"Unable to write '%s'.\n%s");
  }
  temporary_.clear();
}

}  // namespace shr
