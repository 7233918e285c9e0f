// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Profile.h"

#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>

#include "shared/platform/FileReplacement.h"
#include "shared/platform/NameCase.h"
#include "shared/platform/ProfileChange.h"
#include "shared/platform/RawFile.h"

namespace shr::platform {
namespace {

/// Lets one writer of the library after the other change configuration files, in all processes of
/// the session.
class Turn {
public:
  Turn() : mutex_(CreateMutexW(nullptr, FALSE, L"Local\\Shared.Profile")) {
    constexpr DWORD PATIENCE = 3000;  // milliseconds
    const DWORD result = mutex_ == nullptr ? WAIT_FAILED : WaitForSingleObject(mutex_, PATIENCE);
    held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    if (result == WAIT_TIMEOUT) SetLastError(WAIT_TIMEOUT);
  }
  ~Turn() {
    const DWORD error = GetLastError();
    if (held_) ReleaseMutex(mutex_);
    if (mutex_ != nullptr) CloseHandle(mutex_);
    SetLastError(error);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  bool IsHeld() const { return held_; }

private:
  HANDLE mutex_;
  bool held_ = false;
};

/// Reads a whole file; a missing one is empty.
bool ReadWhole(const GString& path, std::string& bytes) {
  FileOpenOptions options;
  options.read = true;
  const int descriptor = OpenDescriptor(path, options);
  if (descriptor == NO_DESCRIPTOR) return errno == ENOENT && _doserrno == ERROR_FILE_NOT_FOUND;
  const std::int64_t length = GetDescriptorLength(descriptor);
  bytes.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::ptrdiff_t got = ReadDescriptor(descriptor, bytes.data(), bytes.size());
  CloseDescriptor(descriptor);
  bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return got >= 0;
}

using Change = std::function<ProfileResult(const ProfileText& text)>;

/// Makes a change that the active ANSI page cannot hold to a file without a mark, which the system
/// would store as question marks. Returns false when it is the system's to make.
bool ConvertAndChange(const GString& path, const Change& change, bool& done) {
  done = false;
  std::string bytes;
  if (!ReadWhole(path, bytes)) return true;
  const ProfileText text(std::move(bytes));
  if (text.CanHold(L"\u6771\U0001F600")) return false;
  const ProfileResult result = change(text);
  errno = EILSEQ;
  _doserrno = ERROR_NO_UNICODE_TRANSLATION;
  if (!result.possible) return true;
  FileReplacement replacement;
  done = !result.bytes || (replacement.Begin(path) &&
                           WriteDescriptor(replacement.GetDescriptor(), result.bytes->data(),
                                           result.bytes->size()) &&
                           replacement.Commit());
  return true;
}

/// Keeps the system's error for `LastErrorText`.
bool Report(BOOL succeeded) {
  if (succeeded) return true;
  const DWORD error = GetLastError();
  errno = EACCES;
  _doserrno = error;
  return false;
}

}  // namespace

std::size_t ReadProfileValue(const GString& path, const GString& section, const GString& key,
                             std::span<wchar_t> buffer) {
  return GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer.data(),
                                  static_cast<DWORD>(buffer.size()), path.c_str());
}

std::size_t ReadProfileSection(const GString& path, const GString& section,
                               std::span<wchar_t> buffer) {
  return GetPrivateProfileSectionW(section.c_str(), buffer.data(),
                                   static_cast<DWORD>(buffer.size()), path.c_str());
}

bool SetProfileValue(const GString& path, const GString& section, const GString& key,
                     const wchar_t* value) {
  const Turn turn;
  if (!turn.IsHeld()) return Report(FALSE);
  bool done = false;
  if (value != nullptr && !FitsAnsi(section.c_str(), key.c_str(), value) &&
      ConvertAndChange(
          path,
          [&](const ProfileText& text) {
            return ChangeProfileValue(text, section.c_str(), key.c_str(), value);
          },
          done)) {
    return done;
  }
  return Report(WritePrivateProfileStringW(section.c_str(), key.c_str(), value, path.c_str()));
}

bool SetProfileSection(const GString& path, const GString& section, const wchar_t* lines) {
  const Turn turn;
  if (!turn.IsHeld()) return Report(FALSE);
  // The system has its own call for a section that goes with its title.
  if (lines == nullptr) {
    return Report(WritePrivateProfileStringW(section.c_str(), nullptr, nullptr, path.c_str()));
  }
  bool done = false;
  if (!FitsAnsi(section.c_str(), lines) && ConvertAndChange(
                                               path,
                                               [&](const ProfileText& text) {
                                                 return ChangeProfileSection(text, section.c_str(),
                                                                             lines);
                                               },
                                               done)) {
    return done;
  }
  return Report(WritePrivateProfileSectionW(section.c_str(), lines, path.c_str()));
}

wchar_t UpperCaseOfWide(wchar_t unit) {
  wchar_t upper = unit;
  CharUpperBuffW(&upper, 1);
  wchar_t lower = upper;
  CharLowerBuffW(&lower, 1);
  return lower == unit ? upper : unit;
}

}  // namespace shr::platform
