// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Paths.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shared/platform/posix/NativePath.h"

namespace shr::platform {
namespace {

std::string ReadLink(const char* link) {
  std::string target(256, '\0');
  for (;;) {
    const ssize_t length = readlink(link, target.data(), target.size());
    if (length < 0) return std::string();
    if (static_cast<std::size_t>(length) < target.size()) {
      target.resize(static_cast<std::size_t>(length));
      return target;
    }
    target.resize(target.size() * 2);
  }
}

std::string CurrentFolder() {
  std::string folder(256, '\0');
  while (getcwd(folder.data(), folder.size()) == nullptr) {
    if (errno != ERANGE) return std::string();
    folder.resize(folder.size() * 2);
  }
  folder.resize(folder.find('\0'));
  return folder;
}

std::string RealPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                             &std::free);
  return resolved == nullptr ? std::string() : std::string(resolved.get());
}

/// Resolves "." and ".." of an absolute path as the system does when it opens it: ".." leads to the
/// folder above what a link before it leads to. Links without ".." behind them stay, and so does a
/// trailing slash. Where nothing is there the text alone counts.
std::string Normalize(std::string_view path) {
  std::string normal;
  for (std::size_t begin = 0; begin < path.size();) {
    std::size_t end = path.find('/', begin);
    if (end == std::string_view::npos) end = path.size();
    const std::string_view part = path.substr(begin, end - begin);
    begin = end + 1;
    if (part.empty() || part == ".") continue;
    if (part != "..") {
      normal.append("/").append(part);
      continue;
    }
    const std::string real = RealPath(normal.empty() ? "/" : normal);
    if (!real.empty()) normal = real;
    normal.resize(normal.empty() ? 0 : normal.rfind('/'));
  }
  if (normal.empty() || path.back() == '/') normal += '/';
  return normal;
}

/// Returns the absolute form of a path that is not empty, or nothing when the current folder is
/// unknown.
std::string MakeAbsolute(const std::string& path) {
  if (path.front() == '/') return Normalize(path);
  const std::string folder = CurrentFolder();
  return folder.empty() ? folder : Normalize(folder + "/" + path);
}

std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

/// Returns the folder of the module that holds this code: of the shared library, or of the
/// executable that the archive was linked to.
std::string LibraryFolder() {
  static const char anchor = 0;
  Dl_info info = {};
  link_map* module = nullptr;
  const int found = dladdr1(&anchor, &info, reinterpret_cast<void**>(&module), RTLD_DL_LINKMAP);
  const bool isLibrary = found != 0 && module != nullptr && module->l_name[0] != '\0';
  return FolderOf(isLibrary ? MakeAbsolute(module->l_name) : ReadLink("/proc/self/exe"));
}

std::vector<std::string> SearchOrder() {
  std::vector<std::string> folders;
  folders.push_back(FolderOf(ReadLink("/proc/self/exe")));
  folders.push_back(CurrentFolder());
  const char* const variable = std::getenv("PATH");
  const std::string_view list = variable == nullptr ? "" : variable;
  for (std::size_t begin = 0; begin < list.size();) {
    std::size_t end = list.find(':', begin);
    if (end == std::string_view::npos) end = list.size();
    folders.emplace_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  folders.push_back(LibraryFolder());
  folders.push_back(folders.back() + SHARED_DATA_FROM_LIBRARY);
  return folders;
}

GString WithinLimit(const std::string& path, std::size_t units) {
  GString wide = FromNativePath(path);
  return wide.size() < units ? wide : GString();
}

/// Returns the file name of the module that holds `address` or whose dlopen handle it is.
std::string ModuleName(const void* address) {
  Dl_info info = {};
  if (dladdr(address, &info) != 0 && info.dli_fname != nullptr) return info.dli_fname;
  void* const self = dlopen(nullptr, RTLD_LAZY);
  const link_map* first = nullptr;
  if (self == nullptr || dlinfo(self, RTLD_DI_LINKMAP, &first) != 0) return std::string();
  std::string name;
  for (const link_map* entry = first; entry != nullptr; entry = entry->l_next) {
    if (entry != address) continue;
    name = entry->l_name[0] == '\0' ? ReadLink("/proc/self/exe") : entry->l_name;
  }
  dlclose(self);
  return name;
}

/// Refuses targets that are no files, and hands on the permissions of the one that will be
/// replaced.
bool PrepareReplacement(const std::string& source, const std::string& target) {
  struct stat status = {};
  if (lstat(target.c_str(), &status) != 0) return errno == ENOENT;
  if (S_ISLNK(status.st_mode)) return true;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  constexpr mode_t PERMISSION_BITS = 07777;
  return chmod(source.c_str(), status.st_mode & PERMISSION_BITS) == 0;
}

}  // namespace

std::string ResolveNativeLinks(const std::string& path) {
  if (const std::string whole = RealPath(path); !whole.empty()) return whole;
  // The last link may lead to a name that is not there yet.
  constexpr int MOST_LINKS = 40;
  std::string current = path;
  for (int links = 0; links < MOST_LINKS; ++links) {
    const std::size_t begin = current.rfind('/') + 1;
    const std::string folder = RealPath(begin == 0 ? "." : current.substr(0, begin));
    if (folder.empty()) return path;
    current = folder + (folder.back() == '/' ? "" : "/") + current.substr(begin);
    const std::string target = ReadLink(current.c_str());
    if (target.empty()) return current;
    current = target.front() == '/' ? target : FolderOf(current) + target;
  }
  return path;
}

const wchar_t PATH_SEPARATOR = L'/';

bool IsPathSeparator(wchar_t ch) {
  return ch == L'/';
}

std::size_t RootLength(const GString& path) {
  std::size_t length = 0;
  while (length < path.size() && path[length] == L'/') ++length;
  return length;
}

bool IsAbsolutePath(const GString& path) {
  return RootLength(path) > 0;
}

GString GetFullPath(const GString& path) {
  if (path.empty()) return WithinLimit(CurrentFolder(), FULL_PATH_UNITS);
  if (!IsUsablePath(path)) return GString();
  return WithinLimit(MakeAbsolute(ToNativePath(path)), FULL_PATH_UNITS);
}

GString AnchorPath(const GString& path) {
  if (!IsUsablePath(path) || IsAbsolutePath(path)) return path;
  const GString folder = FromNativePath(CurrentFolder());
  if (folder.empty()) return path;
  return folder + (folder[folder.size() - 1] == L'/' ? L"" : L"/") + path;
}

FileKind GetFileKind(const GString& path) {
  struct stat status = {};
  if (!IsUsablePath(path) || lstat(ToNativePath(path).c_str(), &status) != 0) {
    return errno == ENOENT || path.empty() ? FileKind::Missing : FileKind::Other;
  }
  if (S_ISREG(status.st_mode)) return FileKind::Regular;
  if (S_ISDIR(status.st_mode)) return FileKind::Folder;
  return S_ISLNK(status.st_mode) ? FileKind::Link : FileKind::Other;
}

GString FindInSearchOrder(const GString& name) {
  if (!IsUsablePath(name)) return GString();
  const std::string native = ToNativePath(name);
  if (native.front() == '/') {
    const bool exists = access(native.c_str(), F_OK) == 0;
    return exists ? WithinLimit(Normalize(native), FOUND_PATH_UNITS) : GString();
  }
  for (const std::string& folder : SearchOrder()) {
    if (folder.empty()) continue;
    const std::string candidate = folder + "/" + native;
    if (access(candidate.c_str(), F_OK) != 0) continue;
    return WithinLimit(MakeAbsolute(candidate), FOUND_PATH_UNITS);
  }
  return GString();
}

GString GetModulePath(const void* module) {
  if (module == nullptr) return FromNativePath(ReadLink("/proc/self/exe"));
  const std::string name = ModuleName(module);
  return name.empty() ? GString() : FromNativePath(MakeAbsolute(name));
}

GString GetLibraryPath() {
  static const char anchor = 0;
  return GetModulePath(&anchor);
}

GString GetEnvironment(const GString& name) {
  const char* const value = std::getenv(name.ToUtf8().c_str());
  return value == nullptr ? GString() : FromNativePath(value);
}

bool TestAccess(const GString& path, PathAccess access) {
  if (!IsUsablePath(path)) {
    errno = path.empty() ? ENOENT : EINVAL;
    return false;
  }
  // The numbers of the tests are the bits of the system: 4 reads, 2 writes. The rights asked about
  // are those with which the process would open the file.
  return faccessat(AT_FDCWD, ToNativePath(path).c_str(), static_cast<int>(access), AT_EACCESS) == 0;
}

bool IsDevice(const GString& path) {
  struct stat status {};
  if (!IsUsablePath(path) || stat(ToNativePath(path).c_str(), &status) != 0) return false;
  return !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

GString ResolveLinks(const GString& path) {
  return IsUsablePath(path) ? FromNativePath(ResolveNativeLinks(ToNativePath(path))) : path;
}

bool ReplaceExistingFile(const GString& from, const GString& to) {
  if (!IsUsablePath(from) || !IsUsablePath(to)) {
    errno = from.empty() || to.empty() ? ENOENT : EINVAL;
    return false;
  }
  const std::string source = ToNativePath(from);
  const std::string target = ToNativePath(to);
  if (!PrepareReplacement(source, target)) return false;
  if (std::rename(source.c_str(), target.c_str()) != 0) return false;
  // The new name is on the disk only when its folder is. Where folders cannot be opened or
  // synchronised the rename still stands.
  const std::string folder = target.substr(0, target.rfind('/') + 1);
  const int descriptor =
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor >= 0) {
    fsync(descriptor);
    close(descriptor);
  }
  return true;
}

bool RemoveFile(const GString& path) {
  if (!IsUsablePath(path)) {
    errno = path.empty() ? ENOENT : EINVAL;
    return false;
  }
  return unlink(ToNativePath(path).c_str()) == 0;
}

}  // namespace shr::platform
