// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Unbuffered files by descriptor and runtime streams by path, with share modes that bind every
/// opener that uses this library.
///
/// Two openers get along when each allows what the other does: the second open fails while the
/// first one denies reading or writing that the second asks for, or the other way round. This holds
/// between descriptors and streams, within a process and between processes. On Windows the system
/// enforces it against every program. On Linux it binds the openers of this library only, and of
/// whoever holds record locks over the whole file a shared one denies writing and an exclusive one
/// both; there, deleting and renaming an open file is
/// never refused, and file systems without record locks, devices and pipes do not take part.
///
/// Failures are told by the result; `LastErrorText` then gives the system's words for them. Paths
/// that are empty or hold a zero unit are refused. Threads: one thread a descriptor; the error text
/// belongs to the calling thread's last failure.

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
/// fails. A named pipe whose other end nobody opens is waited for three seconds, then opening
/// fails. A file whose share mode refuses the open keeps its content, also when `truncate` is set.
SHARED_API int OpenDescriptor(const GString& path, const FileOpenOptions& options);
SHARED_API bool CloseDescriptor(int descriptor);

/// Returns the number of bytes read, 0 at the end, -1 on failure. Interrupted calls are continued;
/// a pipe or terminal may give fewer bytes than asked before its end.
SHARED_API std::ptrdiff_t ReadDescriptor(int descriptor, void* buffer, std::size_t count);
/// Returns true when all bytes were written.
SHARED_API bool WriteDescriptor(int descriptor, const void* buffer, std::size_t count);
/// Returns the new position, or -1.
SHARED_API std::int64_t SeekDescriptor(int descriptor, std::int64_t offset, FileOrigin origin);
/// Returns the length in bytes, or -1.
SHARED_API std::int64_t GetDescriptorLength(int descriptor);
/// Cuts or extends the file with zeros; the position stays.
SHARED_API bool SetDescriptorLength(int descriptor, std::int64_t length);
/// Hands what was written to the disk. True for descriptors that have no disk or were opened for
/// reading.
SHARED_API bool FlushDescriptor(int descriptor);

/// Opens a runtime stream with the runtime's own mode text ("rb", "wt", ...), or returns null. Mode
/// text that the runtime does not know fails with the system's text for an invalid argument. Linux:
/// "r", "w" or "a", then any of "+", "b", "t", "x", "c", "n", "N", "S", "R", "T", each at most
/// once. Windows: in addition "D", and an encoding behind ", ccs=".
SHARED_API std::FILE* OpenStream(const GString& path, const GString& mode, FileSharing sharing);

/// Seeks a stream with a 64-bit offset; returns true on success.
SHARED_API bool SeekStream(std::FILE* stream, std::int64_t offset, FileOrigin origin);
/// Returns the stream's position, or -1.
SHARED_API std::int64_t TellStream(std::FILE* stream);

/// Returns the system's text for the calling thread's last failed operation of this header, or of a
/// standard stream function, without a line end; never empty.
SHARED_API GString LastErrorText();

/// Makes the last failure that of reading what was opened for writing only. Not every runtime
/// reports it for streams.
SHARED_API void SetAccessError();

/// Forgets the last failure, so that `LastErrorText` speaks of the next one.
SHARED_API void ClearLastError();

/// Returns the system's text for an operating-system error code of this target, without a line end;
/// never empty.
SHARED_API GString FormatSystemErrorMsg(std::uint32_t code);

}  // namespace shr::platform
