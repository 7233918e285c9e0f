// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Paths as the platform understands them: full paths, the search for files, modules, access tests,
/// and the replacement and removal of files.
///
/// Not for splitting and joining paths: that is shared/files/Path.h. Failures give an empty string
/// or false; behind false, `LastErrorText` (shared/platform/RawFile.h) has the system's words.
/// Threads: all functions may be called on any thread; those that use the current folder see the
/// one of the moment.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// What the platform puts between the parts of a path: a backslash on Windows, a slash on Linux.
SHARED_API extern const wchar_t PATH_SEPARATOR;

/// Returns true for the characters that separate parts of a path: both slashes on Windows, "/" on
/// Linux.
SHARED_API bool IsPathSeparator(wchar_t ch);

/// Returns the length of the head of `path` that names its root: a drive with or without its
/// separator, or server and share, on Windows; the leading slashes on Linux. 0 for a relative path.
SHARED_API std::size_t RootLength(const GString& path);

/// Returns true when `path` does not depend on a current folder.
SHARED_API bool IsAbsolutePath(const GString& path);

/// The most units of a full path, the terminator included.
inline constexpr std::size_t FULL_PATH_UNITS = 260;
/// The most units of a found path, the terminator included.
inline constexpr std::size_t FOUND_PATH_UNITS = 263;

/// Returns `path` independent of the current folder, of any length and otherwise as it is: it leads
/// where it leads now when the current folder is another one. Returns it unchanged on failure.
SHARED_API GString AnchorPath(const GString& path);

/// What a path names, links not followed.
enum class FileKind { Missing, Regular, Folder, Link, Other };

/// Returns the kind of what is at `path`; `Other` is a device, a pipe and the like, and whatever
/// cannot be looked at.
SHARED_API FileKind GetFileKind(const GString& path);

/// Returns `path` made absolute against the current folder, "." and ".." resolved as the system
/// does when it opens the path, so both name the same file: by their text on Windows, on Linux
/// behind the links before them. Returns the empty string when that fails or takes more than
/// `FULL_PATH_UNITS`. An empty path gives the current folder.
SHARED_API GString GetFullPath(const GString& path);

/// Returns the full path of the first file called `name` in the platform's default search order, or
/// the empty string. On Linux: the executable's folder, the current folder, the folders of the
/// environment variable PATH, the folder of this library and the one in which its data files are
/// installed. An absolute name is only tested for existence.
SHARED_API GString FindInSearchOrder(const GString& name);

/// Returns the file name of a loaded module, or of the executable for null; empty on failure.
/// Windows: `module` is the HMODULE. Linux: a handle of dlopen, or any address inside the module.
SHARED_API GString GetModulePath(const void* module);

/// Returns the file name of the module that this function is part of: the library, or the program
/// that it is linked into; empty on failure.
SHARED_API GString GetLibraryPath();

/// Returns the value of an environment variable, empty when it is not set.
SHARED_API GString GetEnvironment(const GString& name);

/// What an access test asks for. The values are those of the runtime's access function.
enum class PathAccess { Exists = 0, Read = 4, ReadWrite = 6 };

/// Returns true when the file or folder at `path` can be accessed in that way.
SHARED_API bool TestAccess(const GString& path, PathAccess access);

/// Returns true when `path` leads to something that is neither a file nor a folder: a device, a
/// pipe, a socket.
SHARED_API bool IsDevice(const GString& path);

/// Returns the path to which opening `path` leads, all symbolic links resolved; also behind a link
/// whose target is missing, for which a file would then be made. A path that leads nowhere is
/// returned as it is.
SHARED_API GString ResolveLinks(const GString& path);

/// Renames `from` to `to`, replacing a file there in one step: other processes see the old file or
/// the whole new one. Both must be on the same volume. Folders and devices are refused. On Linux
/// the new file takes the permissions of the replaced one. Writers of new content use
/// shared/platform/FileReplacement.h.
SHARED_API bool ReplaceExistingFile(const GString& from, const GString& to);

/// Deletes a file; folders are refused.
SHARED_API bool RemoveFile(const GString& path);

}  // namespace shr::platform
