// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Unbuffered files by descriptor and runtime streams by path, with share modes that bind every
/// opener that uses this library.
///
/// Failures are told by the result; `LastErrorText` then gives the system's words for them.
/// Threads: one thread a descriptor; the error text belongs to the calling thread's last failure.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// What other openers may do while a file is open. The values are those of `CFile::Sharing`.
enum class FileSharing { None = 0, Read = 1, Write = 2, All = 3 };

/// How a file is opened; always binary.
struct FileOpenOptions {
  bool read = false;
  bool write = false;
  bool append = false;     ///< every write goes to the end
  bool create = false;     ///< create when missing
  bool exclusive = false;  ///< with `create`: fail when it exists
  bool truncate = false;   ///< empty an existing file
  FileSharing sharing = FileSharing::All;
};

enum class FileOrigin { Begin = 0, Current = 1, End = 2 };

/// Returned instead of a descriptor when an open fails.
inline constexpr int NO_DESCRIPTOR = -1;

/// Opens a file and returns its descriptor, or `NO_DESCRIPTOR`. A folder is not a file: opening one
/// fails.
SHARED_API int OpenFile(const GString& path, const FileOpenOptions& options);
SHARED_API bool CloseFile(int descriptor);

/// Returns the number of bytes read, 0 at the end, -1 on failure. Interrupted calls are continued.
SHARED_API std::ptrdiff_t ReadFile(int descriptor, void* buffer, std::size_t count);
/// Returns true when all bytes were written.
SHARED_API bool WriteFile(int descriptor, const void* buffer, std::size_t count);
/// Returns the new position, or -1.
SHARED_API std::int64_t SeekFile(int descriptor, std::int64_t offset, FileOrigin origin);
/// Returns the length in bytes, or -1.
SHARED_API std::int64_t GetFileLength(int descriptor);
/// Cuts or extends the file with zeros; the position stays.
SHARED_API bool SetFileLength(int descriptor, std::int64_t length);
/// Hands what was written to the disk.
SHARED_API bool FlushFile(int descriptor);

/// Opens a runtime stream with the runtime's own mode text ("rb", "wt", ...), or returns null.
SHARED_API std::FILE* OpenStream(const GString& path, const GString& mode, FileSharing sharing);

/// Returns the system's text for the calling thread's last failed operation of this header, without
/// a line end; never empty.
SHARED_API GString LastErrorText();

/// Returns the system's text for an operating-system error code of this target, without a line end.
SHARED_API GString FormatSystemErrorMsg(std::uint32_t code);

}  // namespace shr::platform
