// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The names of temporary files are ~shared-HASH-PROCESS-NUMBER.tmp. A file that is open cannot be
// deleted, since it is not shared, so a writer at work is safe. Between its last close and the
// replacement the number of its process keeps it safe: a rest is removed only when no process has
// that number, or one that was started after the file was made.

#include "shared/platform/FileReplacement.h"

#include <io.h>
#include <windows.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"

namespace shr::platform {
namespace {

/// Attributes that a replaced file hands on.
constexpr DWORD KEPT_ATTRIBUTES = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                  FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
/// How much later than a file of its own a process may seem to have begun: the clocks of files and
/// processes have ticks of their own.
constexpr std::uint64_t CLOCK_SLACK = 20'000'000;  // two seconds in units of 100 ns
constexpr std::wstring_view NAME_BEGIN = L"~shared-";
constexpr const wchar_t* OLD_FILE_END = L".old.tmp";

bool FailWithLastError() {
  const DWORD error = GetLastError();
  errno = EACCES;
  _doserrno = error;
  return false;
}

bool FailWith(int error, DWORD systemError) {
  errno = error;
  _doserrno = systemError;
  return false;
}

/// Owns a handle of the system.
class Handle {
public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (IsOpen()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool IsOpen() const { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }

private:
  HANDLE handle_;
};

/// Returns what all temporary names for a target begin with.
std::wstring NameBegin(std::wstring_view target) {
  // FNV-1a with 32 bits over UTF-16 units in lower case: G. Fowler, L. C. Noll, K.-P. Vo,
  // D. Eastlake, "The FNV Non-Cryptographic Hash Algorithm".
  std::wstring lower(target);
  CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
  std::uint32_t hash = 0x811C9DC5;
  for (const wchar_t unit : lower) hash = (hash ^ static_cast<std::uint16_t>(unit)) * 0x01000193;
  wchar_t digits[16];
  swprintf(digits, std::size(digits), L"%08x-", static_cast<unsigned>(hash));
  return std::wstring(NAME_BEGIN) + digits;
}

std::uint64_t Ticks(const FILETIME& time) {
  return static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

/// Returns whether the process with the number may be the one that made a file at that time.
bool MayBeMaker(DWORD process, const FILETIME& made) {
  const Handle handle(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
  if (!handle.IsOpen()) return GetLastError() != ERROR_INVALID_PARAMETER;
  if (WaitForSingleObject(handle.Get(), 0) == WAIT_OBJECT_0) return false;
  FILETIME begin = {}, end = {}, kernel = {}, user = {};
  if (!GetProcessTimes(handle.Get(), &begin, &end, &kernel, &user)) return true;
  return Ticks(begin) <= Ticks(made) + CLOCK_SLACK;
}

/// Removes what killed writers left over, but not the old file of a target that is missing now.
void RemoveRests(const std::wstring& folder, const std::wstring& nameBegin, bool keepOldFiles) {
  WIN32_FIND_DATAW found = {};
  const HANDLE search = FindFirstFileW((folder + nameBegin + L"*.tmp").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = found.cFileName;
    if (name.size() <= nameBegin.size()) continue;
    if (keepOldFiles && name.ends_with(OLD_FILE_END)) continue;
    const auto process =
        static_cast<DWORD>(std::wcstoul(name.c_str() + nameBegin.size(), nullptr, 16));
    if (process == GetCurrentProcessId() || MayBeMaker(process, found.ftCreationTime)) continue;
    DeleteFileW((folder + name).c_str());
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

bool IsMissing(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

/// Asks whether a file can be opened with the rights. Who looks at a file for a moment, as scanners
/// and other writers do, is waited for.
bool CanOpen(const std::wstring& path, DWORD rights) {
  constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr int ATTEMPTS = 20;
  constexpr DWORD PAUSE = 10;  // milliseconds
  for (int attempt = 1;; ++attempt) {
    const Handle file(
        CreateFileW(path.c_str(), rights, SHARE_ALL, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file.IsOpen()) return true;
    if (GetLastError() != ERROR_SHARING_VIOLATION || attempt == ATTEMPTS) return false;
    Sleep(PAUSE);
  }
}

/// Lets one writer after the other replace files. Without it two of them could meet within
/// `ReplaceFileW`, which then fails and on some systems leaves a file behind.
class Turn {
public:
  Turn() : mutex_(CreateMutexW(nullptr, FALSE, L"Local\\Shared.FileReplacement")) {
    constexpr DWORD PATIENCE = 3000;  // milliseconds
    const DWORD result =
        mutex_.IsOpen() ? WaitForSingleObject(mutex_.Get(), PATIENCE) : WAIT_FAILED;
    held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }
  ~Turn() {
    const DWORD error = GetLastError();
    if (held_) ReleaseMutex(mutex_.Get());
    SetLastError(error);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

private:
  Handle mutex_;
  bool held_ = false;
};

/// Puts the closed file in the place of an existing target, as gently as the system can. The old
/// file gets a name of ours meanwhile, since the system's own choice may be left behind.
bool Replace(const std::wstring& target, const std::wstring& temporary) {
  const std::wstring backup = temporary + OLD_FILE_END;
  bool replaced = false;
  for (const DWORD flags : {DWORD{0}, DWORD{REPLACEFILE_IGNORE_MERGE_ERRORS}}) {
    replaced = replaced || ReplaceFileW(target.c_str(), temporary.c_str(), backup.c_str(), flags,
                                        nullptr, nullptr);
  }
  // A call that failed halfway has moved the old file away.
  if (!replaced && IsMissing(target)) MoveFileExW(backup.c_str(), target.c_str(), 0);
  replaced = replaced || MoveFileExW(temporary.c_str(), target.c_str(),
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  const DWORD error = GetLastError();
  if (!IsMissing(target)) DeleteFileW(backup.c_str());
  SetLastError(error);
  return replaced;
}

}  // namespace

struct FileReplacement::State {
  ~State() {
    if (descriptor != NO_DESCRIPTOR) CloseDescriptor(descriptor);
    if (!temporary.empty()) DeleteFileW(temporary.c_str());
  }

  bool CheckTarget() const;
  bool CreateTemporary();
  bool Commit();

  std::wstring target;
  std::wstring temporary;
  int descriptor = NO_DESCRIPTOR;
};

/// Asks whether an existing target might be written in place.
bool FileReplacement::State::CheckTarget() const {
  const Turn turn;
  if (IsMissing(target) || CanOpen(target, GENERIC_WRITE)) return true;
  return GetLastError() == ERROR_FILE_NOT_FOUND || FailWithLastError();
}

bool FileReplacement::State::CreateTemporary() {
  static std::atomic<unsigned> lastNumber = 0;
  std::size_t nameAt = target.size();
  while (nameAt > 0 && !IsPathSeparator(target[nameAt - 1])) --nameAt;
  const std::wstring folder = target.substr(0, nameAt);
  const std::wstring nameBegin = NameBegin(std::wstring_view(target).substr(nameAt));
  RemoveRests(folder, nameBegin, IsMissing(target));
  FileOpenOptions options;
  options.read = options.write = options.create = options.exclusive = true;
  options.sharing = FileSharing::None;
  constexpr int ATTEMPTS = 1000;  // names of an earlier process with this number may be there
  for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
    wchar_t ending[40];
    swprintf(ending, std::size(ending), L"%x-%x.tmp", static_cast<unsigned>(GetCurrentProcessId()),
             ++lastNumber);
    const std::wstring path = folder + nameBegin + ending;
    descriptor = OpenDescriptor(GString(path), options);
    if (descriptor != NO_DESCRIPTOR) {
      temporary = path;
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

bool FileReplacement::State::Commit() {
  SetLastError(ERROR_SUCCESS);
  if (_commit(descriptor) != 0) return false;
  if (!CloseDescriptor(std::exchange(descriptor, NO_DESCRIPTOR))) return false;
  const Turn turn;
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    if (!MoveFileExW(temporary.c_str(), target.c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      return FailWithLastError();
    }
    temporary.clear();
    return true;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FailWith(EACCES, ERROR_ACCESS_DENIED);
  // Asked first: some systems leave files behind when `ReplaceFileW` finds out itself.
  if (!CanOpen(target, GENERIC_READ | GENERIC_WRITE | DELETE)) return FailWithLastError();
  const DWORD kept = attributes & KEPT_ATTRIBUTES;
  if (kept != 0) SetFileAttributesW(temporary.c_str(), kept);
  if (!Replace(target, temporary)) {
    FailWithLastError();
    // When the old file is gone and the new one could not take its place, the new one stays.
    if (IsMissing(target)) temporary.clear();
    return false;
  }
  temporary.clear();
  if (kept != 0) SetFileAttributesW(target.c_str(), kept);
  return true;
}

FileReplacement::FileReplacement() noexcept = default;
FileReplacement::~FileReplacement() = default;
FileReplacement::FileReplacement(FileReplacement&& other) noexcept = default;
FileReplacement& FileReplacement::operator=(FileReplacement&& other) noexcept = default;

bool FileReplacement::Begin(const GString& path, NewFileRights) {
  Discard();
  if (path.empty() || path.find(L'\0') != GString::npos) {
    return FailWith(ENOENT, ERROR_PATH_NOT_FOUND);
  }
  auto state = std::make_unique<State>();
  state->target = ResolveLinks(path).String();
  if (!state->CheckTarget() || !state->CreateTemporary()) return false;
  state_ = std::move(state);
  return true;
}

int FileReplacement::GetDescriptor() const noexcept {
  return state_->descriptor;
}

bool FileReplacement::Commit() {
  if (!state_ || !state_->Commit()) return false;
  state_.reset();
  return true;
}

void FileReplacement::Discard() noexcept {
  state_.reset();
}

}  // namespace shr::platform
