// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/Path.h"

#include "shared/diagnostics/SystemInfo.h"
#include "shared/platform/Paths.h"

namespace shr {
namespace {

/// Returns where the file name begins.
std::size_t FileNameBegin(const GString& path) {
  const std::size_t root = platform::RootLength(path);
  std::size_t begin = path.size();
  while (begin > root && !platform::IsPathSeparator(path[begin - 1])) --begin;
  return begin;
}

}  // namespace

GString CPath::GetFullPath() const {
  return platform::GetFullPath(path_);
}

GString CPath::GetDriveAndFolder(bool trailingSeparator) const {
  std::size_t end = FileNameBegin(path_);
  if (trailingSeparator) return path_.substr(0, end);
  const std::size_t root = platform::RootLength(path_);
  while (end > root && platform::IsPathSeparator(path_[end - 1])) --end;
  return path_.substr(0, end);
}

GString CPath::GetFileName() const {
  return path_.substr(FileNameBegin(path_));
}

GString CPath::Join(const GString& name) const {
  GString joined = path_;
  if (!joined.empty() && !platform::IsPathSeparator(joined[joined.size() - 1])) {
    joined += platform::PATH_SEPARATOR;
  }
  return joined += name;
}

GString DeprecatedPath::GetFullPath(const wchar_t* path) {
  return path == nullptr ? GString("") : platform::GetFullPath(GString(path));
}

GString GetStartupPath(const void* module, bool trailingSeparator) {
  return CPath(platform::GetModulePath(module)).GetDriveAndFolder(trailingSeparator);
}

bool IsFileReadable(const GString& path) {
  using platform::PathAccess;
  if (path.empty() || !platform::TestAccess(path, PathAccess::Exists)) return false;
  return platform::TestAccess(path, PathAccess::Read) ||
         platform::TestAccess(path, PathAccess::ReadWrite);
}

GString LocateFile(const GString& name) {
  if (name.empty()) return GString();
  for (const GString& folder : CSystemInfo::GetSearchFolders()) {
    GString candidate = folder + name;
    if (platform::TestAccess(candidate, platform::PathAccess::Exists)) return candidate;
  }
  return platform::FindInSearchOrder(name);
}

}  // namespace shr
