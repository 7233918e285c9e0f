// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The names of temporary files. A writer takes the first free one of ~shared-HASH-0.tmp,
// ~shared-HASH-1.tmp ... and holds a lock (flock) on the file until it is in its place; the lock
// goes with the process, however that ends. A name that is taken and not locked was left over by a
// killed writer and is removed. Behind its own name a writer looks at a few more, so that all rests
// go although nobody lists the folder, which may hold a million files. Between making and locking a
// file another writer may take it for a rest; who made it sees then that it has no name any more
// and begins again. On file systems without locks nothing can be told, and rests stay.
//
// All names are used relative to an open folder, so neither a change of the current folder nor a
// folder that is renamed meanwhile leads the new content astray.

#include "shared/platform/FileReplacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "shared/platform/RawFile.h"
#include "shared/platform/posix/Descriptor.h"
#include "shared/platform/posix/NativePath.h"
#include "shared/platform/posix/ShareLocks.h"

namespace shr::platform {
namespace {

constexpr mode_t PRIVATE_PERMISSIONS = 0600;
constexpr mode_t USUAL_PERMISSIONS = 0666;
constexpr mode_t PERMISSION_BITS = 07777;

/// So many free names in a row end the search for rests.
constexpr int FREE_NAMES_IN_A_ROW = 4;
/// Nobody has so many writers of one file at once.
constexpr int MOST_NAMES = 10'000;

std::string TemporaryName(std::string_view target, int number) {
  // FNV-1a with 32 bits: G. Fowler, L. C. Noll, K.-P. Vo, D. Eastlake, "The FNV Non-Cryptographic
  // Hash Algorithm".
  std::uint32_t hash = 0x811C9DC5;
  for (const char byte : target) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x01000193;
  char name[40];
  std::snprintf(name, sizeof name, "~shared-%08x-%d.tmp", static_cast<unsigned>(hash), number);
  return name;
}

int OpenAt(int folder, const std::string& name, int flags, mode_t permissions = 0) {
  int descriptor = -1;
  do {
    descriptor =
        openat(folder, name.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW, permissions);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

/// Returns whether the open file is the one that has the name now.
bool HasName(int folder, const std::string& name, int descriptor) {
  struct stat open = {};
  struct stat named = {};
  return fstat(descriptor, &open) == 0 &&
         fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// Removes a file that a killed writer left over. Returns whether the name is free now.
bool IsFreeOrRest(int folder, const std::string& name) {
  const Descriptor rest(OpenAt(folder, name, O_RDONLY | O_NONBLOCK));
  if (!rest.IsOpen()) return errno == ENOENT;
  struct stat status = {};
  if (fstat(rest.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (flock(rest.Get(), LOCK_EX | LOCK_NB) != 0) return false;
  return HasName(folder, name, rest.Get()) && unlinkat(folder, name.c_str(), 0) == 0;
}

std::vector<char> AttributeNames(int descriptor) {
  const ssize_t size = flistxattr(descriptor, nullptr, 0);
  std::vector<char> names(size > 0 ? static_cast<std::size_t>(size) : 0);
  const ssize_t got = names.empty() ? 0 : flistxattr(descriptor, names.data(), names.size());
  names.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return names;
}

/// Gives `to` the extended attributes of `from`, access lists among them, as far as the system
/// allows.
void CopyAttributes(int from, int to) {
  // One that the folder gave the new file is none of the old file.
  fremovexattr(to, "system.posix_acl_access");
  const std::vector<char> names = AttributeNames(from);
  std::vector<char> value;
  for (std::size_t at = 0; at < names.size(); at += std::string_view(&names[at]).size() + 1) {
    const ssize_t size = fgetxattr(from, &names[at], nullptr, 0);
    if (size < 0) continue;
    value.resize(static_cast<std::size_t>(size));
    const ssize_t got = fgetxattr(from, &names[at], value.data(), value.size());
    if (got >= 0) fsetxattr(to, &names[at], value.data(), static_cast<std::size_t>(got), 0);
  }
}

/// Gives the file owner and group, or the group alone, and returns the mode that is right then.
mode_t TakeOver(int descriptor, const struct stat& old) {
  mode_t mode = old.st_mode & PERMISSION_BITS;
  struct stat now = {};
  if (fstat(descriptor, &now) != 0) return PRIVATE_PERMISSIONS;
  const bool same = now.st_uid == old.st_uid && now.st_gid == old.st_gid;
  if (same || fchown(descriptor, old.st_uid, old.st_gid) == 0) return mode;
  const bool groupKept =
      now.st_gid == old.st_gid || fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
  mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
  if (!groupKept) mode &= static_cast<mode_t>(~S_IRWXG) | (mode & S_IRWXO) << 3;
  return mode;
}

/// Closes a copy of the descriptor, which makes file systems that write late tell of failures while
/// the lock of the descriptor itself stays.
bool CloseCopy(int descriptor) {
  const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  return copy >= 0 && CloseDescriptor(copy);
}

}  // namespace

struct FileReplacement::State {
  State(int folderDescriptor, std::string targetName)
      : folder(folderDescriptor), name(std::move(targetName)), file(-1) {}
  ~State() {
    const int error = errno;
    if (file.IsOpen() && !temporary.empty()) unlinkat(folder.Get(), temporary.c_str(), 0);
    errno = error;
  }

  bool CheckTarget() const;
  bool CreateTemporary(NewFileRights rights);
  bool TakeName(const std::string& candidate, mode_t permissions);
  bool AdoptOldFile();
  bool Commit();

  Descriptor folder;
  std::string name;
  std::string temporary;
  Descriptor file;
  mode_t newFileMode = PRIVATE_PERMISSIONS;
};

/// Asks whether an existing target might be written in place: a rename alone would not mind a
/// read-only file. What is no file is not opened, since a pipe would keep the process waiting.
bool FileReplacement::State::CheckTarget() const {
  struct stat status = {};
  if (fstatat(folder.Get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENOENT;
  }
  // A link that is still one leads round in a circle.
  errno = S_ISLNK(status.st_mode) ? ELOOP : EISDIR;
  if (!S_ISREG(status.st_mode)) return !S_ISDIR(status.st_mode) && !S_ISLNK(status.st_mode);
  const Descriptor target(OpenAt(folder.Get(), name, O_WRONLY | O_NONBLOCK));
  return target.IsOpen() && IsFileUseAllowed(target.Get(), {false, true, FileSharing::All});
}

/// Makes the file and locks it. Returns whether it has the name.
bool FileReplacement::State::TakeName(const std::string& candidate, mode_t permissions) {
  Descriptor made(OpenAt(folder.Get(), candidate, O_RDWR | O_CREAT | O_EXCL, permissions));
  if (!made.IsOpen()) return false;
  struct stat status = {};
  fstat(made.Get(), &status);
  newFileMode = status.st_mode & PERMISSION_BITS;
  fchmod(made.Get(), PRIVATE_PERMISSIONS);
  // Another writer may be about to remove the file, or has done so.
  const bool taken = flock(made.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  const bool mine = !taken && HasName(folder.Get(), candidate, made.Get());
  errno = EEXIST;
  if (!mine) return false;
  file.Swap(made);
  temporary = candidate;
  return true;
}

bool FileReplacement::State::CreateTemporary(NewFileRights rights) {
  // With the usual rights the system itself says what they are: by umask or the folder's lists.
  const mode_t permissions =
      rights == NewFileRights::Usual ? USUAL_PERMISSIONS : PRIVATE_PERMISSIONS;
  int freeNames = 0;
  for (int number = 0; number < MOST_NAMES && freeNames < FREE_NAMES_IN_A_ROW; ++number) {
    const std::string candidate = TemporaryName(name, number);
    if (file.IsOpen()) {
      freeNames = IsFreeOrRest(folder.Get(), candidate) ? freeNames + 1 : 0;
      continue;
    }
    if (TakeName(candidate, permissions)) continue;
    if (errno != EEXIST) return false;
    if (IsFreeOrRest(folder.Get(), candidate) && !TakeName(candidate, permissions) &&
        errno != EEXIST) {
      return false;
    }
  }
  return file.IsOpen();
}

/// Gives the new file what stays of the old one.
bool FileReplacement::State::AdoptOldFile() {
  struct stat old = {};
  if (fstatat(folder.Get(), name.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENOENT && fchmod(file.Get(), newFileMode) == 0;
  }
  errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
  if (!S_ISREG(old.st_mode)) return false;
  const mode_t mode = TakeOver(file.Get(), old);
  const Descriptor source(OpenAt(folder.Get(), name, O_RDONLY | O_NONBLOCK));
  if (source.IsOpen()) CopyAttributes(source.Get(), file.Get());
  return fchmod(file.Get(), mode) == 0;
}

bool FileReplacement::State::Commit() {
  // The rights come before the last flush, so that the disk has them with the content.
  if (!AdoptOldFile() || !FlushDescriptor(file.Get()) || !CloseCopy(file.Get())) return false;
  if (renameat(folder.Get(), temporary.c_str(), folder.Get(), name.c_str()) != 0) return false;
  temporary.clear();
  // A child of fork holds the lock, too, as long as it is not given back.
  flock(file.Get(), LOCK_UN);
  // The new name is on the disk only when its folder is. Where folders cannot be opened or
  // synchronised the rename still stands.
  const Descriptor synchronised(OpenAt(folder.Get(), ".", O_RDONLY | O_DIRECTORY));
  if (synchronised.IsOpen()) fsync(synchronised.Get());
  return true;
}

FileReplacement::FileReplacement() noexcept = default;
FileReplacement::~FileReplacement() = default;
FileReplacement::FileReplacement(FileReplacement&& other) noexcept = default;
FileReplacement& FileReplacement::operator=(FileReplacement&& other) noexcept = default;

bool FileReplacement::Begin(const GString& path, NewFileRights rights) {
  Discard();
  if (!IsUsablePath(path)) {
    errno = path.empty() ? ENOENT : EINVAL;
    return false;
  }
  const std::string target = ResolveNativeLinks(ToNativePath(path));
  const std::size_t begin = target.rfind('/') + 1;
  const std::string folder = begin == 0 ? "." : target.substr(0, begin);
  auto state =
      std::make_unique<State>(OpenFile(folder, O_PATH | O_DIRECTORY), target.substr(begin));
  if (!state->folder.IsOpen()) return false;
  errno = EISDIR;
  if (state->name.empty() || state->name == "." || state->name == "..") return false;
  if (!state->CheckTarget() || !state->CreateTemporary(rights)) return false;
  state_ = std::move(state);
  return true;
}

int FileReplacement::GetDescriptor() const noexcept {
  return state_->file.Get();
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
