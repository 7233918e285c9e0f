// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The cache. A text is kept with the identity of the file it came from: device, number, size and
// both times of change. That alone would go stale: times move in ticks, so a file may be changed
// again within the tick in which it was read, keep its size, and look the same. So an identity
// is believed only when the content was compared a while after the identity was first seen: what
// changes later than that falls into a later tick and has another time. Until then the file is read
// and compared at each use, which is cheap beside parsing it. Only the monotonic clock of this
// process is asked, so the clock of a file server may differ.
//
// The lock is that of the folder (flock). The file itself cannot carry it, since it is replaced,
// and a lock file would litter the folders of users. It goes with the process, however that ends.

#include "shared/platform/posix/ProfileFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <utility>

#include "shared/platform/FileReplacement.h"
#include "shared/platform/ForkSafeMutex.h"
#include "shared/platform/RawFile.h"
#include "shared/platform/posix/Descriptor.h"
#include "shared/platform/posix/FileLock.h"
#include "shared/platform/posix/NativePath.h"
#include "shared/platform/posix/ShareLocks.h"

namespace shr::platform {
namespace {

using MonotonicClock = std::chrono::steady_clock;

/// Longer than the tick of any system whose file times have fractions of a millisecond.
constexpr auto FINE_TICK = std::chrono::milliseconds(50);
/// Longer than the tick of any file system: the coarsest one counts two seconds.
constexpr auto COARSE_TICK = std::chrono::milliseconds(2500);
constexpr std::size_t CACHED_FILES = 8;

bool IsRegular(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return true;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return false;
}

struct FileIdentity {
  explicit FileIdentity(const struct stat& status)
      : device(status.st_dev),
        number(status.st_ino),
        size(status.st_size),
        modified{status.st_mtim.tv_sec, status.st_mtim.tv_nsec},
        changed{status.st_ctim.tv_sec, status.st_ctim.tv_nsec} {}

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;

  /// How long the file may change without showing it.
  MonotonicClock::duration Tick() const {
    constexpr std::int64_t FINE = 1'000'000;
    return changed.second % FINE != 0 ? FINE_TICK : COARSE_TICK;
  }

  dev_t device;
  ino_t number;
  off_t size;
  std::pair<std::int64_t, std::int64_t> modified;
  std::pair<std::int64_t, std::int64_t> changed;
};

struct CachedProfile {
  CachedProfile(std::string profilePath, const FileIdentity& fileIdentity, std::string bytes)
      : path(std::move(profilePath)), identity(fileIdentity), text(std::move(bytes)) {}

  std::string path;
  FileIdentity identity;
  MonotonicClock::time_point firstSeen = MonotonicClock::now();
  bool settled = false;  ///< the identity tells every change from now on
  ProfileText text;
};

/// The files used last, the last one first. Guarded by `ProfileMutex`.
std::list<CachedProfile>& Cache() {
  // Never destroyed: settings may be saved while the process ends.
  static auto* const cache = new std::list<CachedProfile>;
  return *cache;
}

struct ProfileTag;

std::mutex& ProfileMutex() {
  static ForkSafeMutex<std::mutex, ProfileTag> mutex;
  return mutex.Get();
}

/// Moves the text of a file to the front of the cache and returns it, or null.
CachedProfile* FindCached(const std::string& path) {
  std::list<CachedProfile>& cache = Cache();
  for (auto cached = cache.begin(); cached != cache.end(); ++cached) {
    if (cached->path != path) continue;
    cache.splice(cache.begin(), cache, cached);
    return &cache.front();
  }
  return nullptr;
}

void Forget(const std::string& path) {
  if (FindCached(path) != nullptr) Cache().pop_front();
}

/// Reads a whole file and its identity. A file that is written in place meanwhile is read again.
bool ReadWhole(int descriptor, std::string& bytes, struct stat& status) {
  constexpr int ATTEMPTS = 3;
  for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
    const FileIdentity before(status);
    bytes.resize(static_cast<std::size_t>(status.st_size));
    if (SeekDescriptor(descriptor, 0, FileOrigin::Begin) != 0) return false;
    const std::ptrdiff_t got = ReadDescriptor(descriptor, bytes.data(), bytes.size());
    if (got < 0 || fstat(descriptor, &status) != 0) return false;
    bytes.resize(static_cast<std::size_t>(got));
    if (FileIdentity(status) == before) break;
  }
  return true;
}

/// Returns the text of an open file, from the cache if it is certain; null on failure.
ProfileText* Load(const std::string& path, int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || !IsRegular(status)) return nullptr;
  CachedProfile* cached = FindCached(path);
  const bool known = cached != nullptr && cached->identity == FileIdentity(status);
  if (known && cached->settled) return &cached->text;
  const auto begin = MonotonicClock::now();
  std::string bytes;
  if (!ReadWhole(descriptor, bytes, status)) return nullptr;
  const FileIdentity identity(status);
  if (cached != nullptr && cached->identity == identity && cached->text.Bytes() == bytes) {
    cached->settled = begin - cached->firstSeen > identity.Tick();
    return &cached->text;
  }
  Forget(path);
  Cache().emplace_front(path, identity, std::move(bytes));
  if (Cache().size() > CACHED_FILES) Cache().pop_back();
  return &Cache().front().text;
}

/// Puts the new content in the place of the file.
bool Replace(const GString& path, const std::string& bytes) {
  FileReplacement replacement;
  return replacement.Begin(path) &&
         WriteDescriptor(replacement.GetDescriptor(), bytes.data(), bytes.size()) &&
         replacement.Commit();
}

/// Opens the target as one that would write it in place, since a rename alone would not mind a
/// read-only file or another opener's share mode. A missing target is not opened.
bool OpenForChange(int descriptor) {
  if (descriptor < 0) return errno == ENOENT;
  return IsFileUseAllowed(descriptor, {true, true, FileSharing::All});
}

bool IsUsable(const GString& path) {
  errno = EINVAL;
  return IsUsablePath(path);
}

}  // namespace

bool ReadProfile(const GString& path, const std::function<void(ProfileText&)>& read) {
  if (!IsUsable(path)) return false;
  const std::string native = ToNativePath(path);
  const std::lock_guard guard(ProfileMutex());
  // A pipe of that name must not keep the process waiting.
  const Descriptor file(OpenFile(native, O_RDONLY | O_NONBLOCK));
  if (!file.IsOpen()) {
    Forget(native);
    return errno == ENOENT;
  }
  if (!IsFileUseAllowed(file.Get(), {true, false, FileSharing::All})) return false;
  ProfileText* const text = Load(native, file.Get());
  if (text == nullptr) return false;
  read(*text);
  return true;
}

bool ChangeProfile(const GString& path,
                   const std::function<ProfileResult(const ProfileText&)>& change) {
  if (!IsUsable(path)) return false;
  const std::string target = ResolveNativeLinks(ToNativePath(path));
  const std::size_t name = target.rfind('/') + 1;
  const Descriptor folder(
      OpenFile(name == 0 ? "." : target.substr(0, name), O_RDONLY | O_DIRECTORY));
  // Waited for outside the mutex, so that other threads can read meanwhile.
  if (!folder.IsOpen() || TakeLock(folder.Get()) == LockResult::TimedOut) return false;
  const std::lock_guard guard(ProfileMutex());
  const Descriptor file(OpenFile(target, O_RDWR | O_NONBLOCK));
  if (!OpenForChange(file.Get())) return false;
  ProfileResult result;
  if (file.IsOpen()) {
    const ProfileText* const text = Load(target, file.Get());
    if (text == nullptr) return false;
    result = change(*text);
  } else {
    result = change(ProfileText(std::string()));
  }
  if (!result.possible) errno = EILSEQ;
  return result.possible && (!result.bytes || Replace(path, *result.bytes));
}

}  // namespace shr::platform
