// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/posix/RegistryFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "shared/platform/FileReplacement.h"
#include "shared/platform/ForkSafeMutex.h"
#include "shared/platform/RawFile.h"
#include "shared/platform/posix/Descriptor.h"
#include "shared/platform/posix/FileLock.h"
#include "shared/platform/posix/NativePath.h"

namespace shr::platform {
namespace {

/// Settings concern nobody but their user.
constexpr mode_t FILE_PERMISSIONS = 0600;
constexpr mode_t FOLDER_PERMISSIONS = 0700;

/// Reports a failed call of the system on `path`.
RegistryStatus ReportSystem(const wchar_t* what, const std::string& path) {
  const int error = errno;
  GString text;
  const GString reason = FormatSystemErrorMsg(static_cast<std::uint32_t>(error));
  text = GString(what) + L" '" + FromNativePath(path) + L"'.\n" + reason;
  SetRegistryErrorText(std::move(text));
  return error == EACCES || error == EPERM || error == EROFS ? RegistryStatus::AccessDenied
                                                             : RegistryStatus::IoFailed;
}

RegistryStatus ReportFault(const std::string& path, RegistryStore::ReadResult result,
                           const RegistryStore::Fault& fault, const std::string& keptAs) {
  GString text = GString(L"The settings file '") + FromNativePath(path) + L"' cannot be used: ";
  if (fault.line > 0) text += GString(L"line " + std::to_wstring(fault.line) + L": ");
  text += GString(fault.reason);
  text += L'.';
  if (!keptAs.empty()) text += GString(L"\nIt was kept as '") + FromNativePath(keptAs) + L"'.";
  SetRegistryErrorText(std::move(text));
  return result == RegistryStore::ReadResult::Damaged ? RegistryStatus::Damaged
                                                      : RegistryStatus::UnknownVersion;
}

/// Returns the folder of the files without a separator behind it; empty when there is none.
std::string Folder() {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string_view(value ? value : "");
  };
  if (const auto own = variable("SHARED_REGISTRY_DIR"); !own.empty()) return std::string(own);
  const auto configuration = variable("XDG_CONFIG_HOME");
  // A relative path there is to be ignored.
  if (configuration.starts_with('/')) return std::string(configuration) + "/shared";
  if (const auto home = variable("HOME"); !home.empty())
    return std::string(home) + "/.config/shared";
  return std::string();
}

/// Makes the folder and those above it.
bool MakeFolder(const std::string& folder) {
  if (mkdir(folder.c_str(), FOLDER_PERMISSIONS) == 0 || errno == EEXIST) return true;
  const std::size_t separator = folder.rfind('/');
  if (errno != ENOENT || separator == std::string::npos || separator == 0) return false;
  return MakeFolder(folder.substr(0, separator)) &&
         (mkdir(folder.c_str(), FOLDER_PERMISSIONS) == 0 || errno == EEXIST);
}

/// Hands a finished rename to the disk. Not every file system can; the rename is valid either way.
void SyncFolder(const std::string& folder) {
  const Descriptor descriptor(OpenFile(folder, O_RDONLY | O_DIRECTORY));
  if (descriptor.IsOpen()) fsync(descriptor.Get());
}

bool IsRegular(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return true;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return false;
}

bool ReadFully(int descriptor, std::string& bytes) {
  const std::ptrdiff_t got = ReadDescriptor(descriptor, bytes.data(), bytes.size());
  if (got < 0) return false;
  bytes.resize(static_cast<std::size_t>(got));
  return true;
}

/// What tells one state of a file from another. The first line holds a number that grows with every
/// change and a checksum of the content, for file systems with coarse times.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;
  std::string firstLine;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

FileIdentity IdentityOf(const struct stat& status, std::string_view firstLine) {
  return {status.st_dev,         status.st_ino,          status.st_size,
          status.st_mtim.tv_sec, status.st_mtim.tv_nsec, std::string(firstLine)};
}

/// One root: its file, and the content that was last read or written.
class Hive {
public:
  explicit Hive(const std::string& folder, const char* name)
      : folder_(folder), path_(folder + '/' + name + ".registry") {}

  const RegistryStore& Store() const { return store_; }
  RegistryStore& Store() { return store_; }

  /// Brings the content in memory up to the file.
  RegistryStatus Load() {
    return LoadOr([](const RegistryStore::Fault&) { return std::string(); });
  }

  /// The same under the lock: a damaged file is renamed aside.
  RegistryStatus LoadForChange() {
    return LoadOr([this](const RegistryStore::Fault&) { return KeepAside(); });
  }

  RegistryStatus Save() {
    const RegistryStatus status = WriteFile(store_.Write(serial_ + 1));
    if (status == RegistryStatus::Success) {
      ++serial_;
    } else {
      Forget();
    }
    return status;
  }

  /// Drops the content in memory, for example when it was changed and could not be saved.
  void Forget() {
    store_ = RegistryStore();
    identity_ = FileIdentity();
    serial_ = 0;
  }

private:
  template <typename KeepAsideFunction>
  RegistryStatus LoadOr(KeepAsideFunction keepAside) {
    // A pipe of that name must not keep the process waiting.
    const Descriptor file(OpenFile(path_, O_RDONLY | O_NONBLOCK));
    if (!file.IsOpen() && errno == ENOENT) {
      Forget();
      return RegistryStatus::Success;
    }
    struct stat status = {};
    std::string firstLine(RegistryStore::HEADER_SIZE, '\0');
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !IsRegular(status) ||
        !ReadFully(file.Get(), firstLine)) {
      return Fail(ReportSystem(L"Unable to read", path_));
    }
    const FileIdentity identity = IdentityOf(status, firstLine);
    if (identity == identity_) return RegistryStatus::Success;
    RegistryStore::Fault fault;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    // The first line is checked before memory for the rest is taken.
    RegistryStore::ReadResult result = RegistryStore::CheckHeader(firstLine, size, fault);
    if (result == RegistryStore::ReadResult::Ok) {
      std::string bytes(size - firstLine.size(), '\0');
      if (!ReadFully(file.Get(), bytes)) return Fail(ReportSystem(L"Unable to read", path_));
      result = store_.Read(firstLine + bytes, serial_, fault);
    }
    if (result == RegistryStore::ReadResult::Ok) {
      identity_ = identity;
      return RegistryStatus::Success;
    }
    const bool damaged = result == RegistryStore::ReadResult::Damaged;
    return Fail(ReportFault(path_, result, fault, damaged ? keepAside(fault) : std::string()));
  }

  RegistryStatus Fail(RegistryStatus status) {
    Forget();
    return status;
  }

  /// Renames the file to the first free name and returns that; empty when it could not.
  std::string KeepAside() const {
    for (int number = 1;; ++number) {
      std::string aside = path_ + ".damaged-" + std::to_string(number);
      struct stat status = {};
      if (lstat(aside.c_str(), &status) == 0) continue;
      if (errno != ENOENT || rename(path_.c_str(), aside.c_str()) != 0) return std::string();
      SyncFolder(folder_);
      return aside;
    }
  }

  RegistryStatus WriteFile(const std::string& bytes) {
    FileReplacement replacement;
    struct stat status = {};
    const bool written = replacement.Begin(FromNativePath(path_), NewFileRights::OwnerOnly) &&
                         WriteDescriptor(replacement.GetDescriptor(), bytes.data(), bytes.size()) &&
                         fstat(replacement.GetDescriptor(), &status) == 0 && replacement.Commit();
    if (!written) return ReportSystem(L"Unable to write", path_);
    identity_ = IdentityOf(status, std::string_view(bytes).substr(0, RegistryStore::HEADER_SIZE));
    return RegistryStatus::Success;
  }

  std::string folder_;
  std::string path_;
  RegistryStore store_;
  FileIdentity identity_;
  std::uint64_t serial_ = 0;
};

struct HiveTag;

/// Guards the hives in memory.
std::mutex& HiveMutex() {
  static ForkSafeMutex<std::mutex, HiveTag> mutex;
  return mutex.Get();
}

/// Returns the hive called `name` in the folder of the moment.
Hive& GetHive(const std::string& folder, const char* name) {
  // Never destroyed: settings may be saved while the process ends.
  static std::map<std::string, Hive>& hives = *new std::map<std::string, Hive>;
  return hives.try_emplace(folder + '/' + name, folder, name).first->second;
}

RegistryStatus ReportNoFolder() {
  SetRegistryErrorText(
      L"There is no folder for settings: neither XDG_CONFIG_HOME nor HOME is set.");
  return RegistryStatus::IoFailed;
}

}  // namespace

RegistryStatus ReadHive(const char* hive,
                        const std::function<RegistryStatus(const RegistryStore&)>& read) {
  const std::string folder = Folder();
  if (folder.empty()) return ReportNoFolder();
  const std::lock_guard guard(HiveMutex());
  Hive& held = GetHive(folder, hive);
  const RegistryStatus status = held.Load();
  return status == RegistryStatus::Success ? read(std::as_const(held).Store()) : status;
}

RegistryStatus ChangeHive(
    const char* hive, const std::function<RegistryStatus(RegistryStore&, StoreChange&)>& change) {
  const std::string folder = Folder();
  if (folder.empty()) return ReportNoFolder();
  const std::lock_guard guard(HiveMutex());
  if (!MakeFolder(folder)) return ReportSystem(L"Unable to create the folder", folder);
  const std::string lockPath = folder + '/' + hive + ".lock";
  // Closing the descriptor releases the lock, also when the process is killed.
  const Descriptor lock(OpenFile(lockPath, O_RDWR | O_CREAT, FILE_PERMISSIONS));
  if (!lock.IsOpen() || TakeLock(lock.Get()) != LockResult::Held) {
    return ReportSystem(L"Unable to lock", lockPath);
  }
  Hive& held = GetHive(folder, hive);
  RegistryStatus status = held.LoadForChange();
  if (status != RegistryStatus::Success) return status;
  StoreChange made = StoreChange::None;
  try {
    status = change(held.Store(), made);
    return made == StoreChange::Made ? held.Save() : status;
  } catch (...) {
    held.Forget();
    throw;
  }
}

}  // namespace shr::platform
