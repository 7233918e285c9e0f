// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Paths as text: full paths, the folder of a module, and the search for support files.
///
/// Nothing here throws for a missing file or a refusing system: failures give an empty string or
/// false.
///
///     const GString table = LocateFile(L"Colors.ini");
///     if (!IsFileReadable(table)) UseBuiltInColors();
///
/// Threads: all functions may be called on any thread; relative paths depend on the current folder
/// of the moment.

#pragma once

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// The text of a path, split by the rules of the platform. The file need not exist.
class SHARED_API CPath {
public:
  CPath() = default;
  explicit CPath(const GString& path) : path_(path) {}

  const GString& GetPath() const noexcept { return path_; }

  /// Returns the path made absolute against the current folder, "." and ".." resolved as
  /// the system does when it opens the path (on Linux `link/..` is the folder above the target of
  /// the link); empty when it takes 260 units or more, its terminator included.
  GString GetFullPath() const;

  /// Returns what stands before the file name, empty when nothing does. The separator behind it is
  /// left out unless `trailingSeparator` asks for it or the folder is a root.
  GString GetDriveAndFolder(bool trailingSeparator) const;

  /// Returns what stands behind the last separator.
  GString GetFileName() const;

  /// Returns the path of `name` inside this folder, with one separator between them.
  GString Join(const GString& name) const;

private:
  GString path_;
};

/// The full path for code that holds bare wide paths.
class SHARED_API DeprecatedPath {
public:
  DeprecatedPath() = delete;

  /// As `CPath::GetFullPath`. A null path gives the empty string.
  static GString GetFullPath(const wchar_t* path);
};

/// Returns the folder from which a module was loaded, the executable's for null; empty on failure.
/// `module` is what `platform::GetModulePath` takes, `trailingSeparator` what
/// `CPath::GetDriveAndFolder` takes.
SHARED_API GString GetStartupPath(const void* module, bool trailingSeparator);

/// Returns true when the file exists and may be read.
SHARED_API bool IsFileReadable(const GString& path);

/// Returns the path of the first file called `name`: in the folders of
/// `CSystemInfo::GetSearchFolders`, in their order, then in the platform's default search order
/// (`platform::FindInSearchOrder`). Empty when there is none.
SHARED_API GString LocateFile(const GString& name);

}  // namespace shr
