// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CFile`, an unbuffered binary file on disk or in memory.
///
/// Failures throw `Exception` with the path and the system's text; `CBufferedFile` has characters,
/// lines and printf output.
///
///     CFile file(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead);
///     std::vector<unsigned char> bytes(static_cast<std::size_t>(file.GetLength()));
///     file.ReadN(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
///     file.Close();
///
/// Threads: one thread an object.

#pragma once

#include <cstdint>
#include <memory>

#include "shared/Export.h"
#include "shared/files/MemoryFile.h"
#include "shared/text/GString.h"

namespace shr {

/// A file by runtime handle, or an owned `CMemoryFile` behind the same operations.
///
/// Positions are 64-bit on disk; in memory, offsets are signed 32-bit.
/// Errors: "Unable to open|read|write|seek|close '%s'.\n%s" with the path (or "memory file") and
/// the system's text (or "out of range"). Faults of the caller are internal errors: an empty path,
/// an object already open, a null buffer, an unknown mode, sharing or origin, writing or seeking
/// with nothing open.
class SHARED_API CFile {
public:
  /// Any other value opens read only.
  enum Access : int { AccessRead = 1, AccessWrite = 2, AccessReadWrite = 3 };

  /// What to do about an existing or a missing file.
  enum Mode : int {
    ModeCreateNew = 1,         ///< create; fail if it exists
    ModeCreateAlways = 2,      ///< create or empty
    ModeOpenExisting = 3,      ///< fail if missing
    ModeOpenAlways = 4,        ///< create if missing
    ModeTruncateExisting = 5,  ///< empty; fail if missing
    ModeAppend = 6,            ///< create if missing; every write goes to the end
  };

  /// What other openers may do meanwhile. shared/platform/RawFile.h tells whom it binds.
  enum Sharing : int {
    ShareNone = 0,   ///< deny reading and writing
    ShareRead = 1,   ///< deny writing
    ShareWrite = 2,  ///< deny reading
    ShareAll = 3,    ///< deny nothing
  };

  enum Origin : int { OriginBegin = 0, OriginCurrent = 1, OriginEnd = 2 };

  /// What `GetHandle` returns when there is none.
  enum HandleValue : int { NO_HANDLE = -1 };

  CFile() = default;
  /// Takes over an open handle of the runtime; -1 leaves the object closed. The path is empty until
  /// `SetFilePath`.
  explicit CFile(int handle);
  CFile(const GString& path, Access access, Mode mode, Sharing sharing);
  /// Closes what is still open, without checks: a program that must know calls `Close`.
  ~CFile();
  CFile(CFile&& other) noexcept;
  CFile& operator=(CFile&& other) noexcept;
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  void Open(const GString& path, Access access, Mode mode, Sharing sharing);
  /// Like `Open`, but returns false instead of throwing, for faults of the caller too.
  bool OpenNoThrow(const GString& path, Access access, Mode mode, Sharing sharing);
  /// Opens a new empty memory file.
  void Open();
  /// Opens a memory file on `buffer`, which is not owned (see `CMemoryFile::Attach`).
  void Open(void* buffer, std::uint32_t size);

  /// Closes the file; the object is closed afterwards even when this throws. Nothing to do when
  /// closed.
  void Close();
  /// Closes without checks; with `remove` the file is then deleted from disk.
  void Abort(bool remove) noexcept;
  /// Waits until what was written is on the disk.
  void Flush();

  /// Reads at most `count` bytes and returns how many: 0 at the end and with nothing open.
  std::uint32_t Read(void* buffer, std::uint32_t count);
  /// Reads exactly `count` bytes. Errors: "Unexpected end of file."
  void ReadN(void* buffer, std::uint32_t count);
  /// Writes all `count` bytes.
  void Write(const void* buffer, std::uint32_t count);

  /// Moves the position, also behind the end, and returns it.
  std::int64_t Seek(std::int64_t offset, Origin origin);
  std::int64_t SeekToBegin() { return Seek(0, OriginBegin); }
  std::int64_t SeekToEnd() { return Seek(0, OriginEnd); }
  std::int64_t GetPosition() const;
  /// Returns the length in bytes, or -1 with nothing open.
  std::int64_t GetLength() const;
  /// Returns true at the end, behind it, and with nothing open.
  /// Errors: "EOF: Bad file handle" when the handle is bad or has no position, as a pipe.
  bool EndOfFile() const;

  bool IsOpen() const noexcept { return open_; }
  bool IsMemoryFile() const noexcept { return memory_ != nullptr; }
  /// Returns the runtime's handle, or `NO_HANDLE`.
  int GetHandle() const noexcept { return handle_; }
  /// Returns the bytes of the memory file, or null for a disk file. Valid until the next change.
  unsigned char* GetBuffer() const noexcept;
  /// Returns the path opened; empty for memory files.
  const GString& GetFilePath() const noexcept { return path_; }
  /// Sets the path that messages name and `Abort` deletes, for a file that was opened by its
  /// handle.
  void SetFilePath(const GString& path);

private:
  bool TryOpen(const GString& path, Access access, Mode mode, Sharing sharing);
  bool HoldsNothing() const noexcept { return handle_ == NO_HANDLE && memory_ == nullptr; }
  void OpenMemory(std::unique_ptr<CMemoryFile> memory);
  void Forget() noexcept;
  void Take(CFile& other) noexcept;

  bool open_ = false;
  GString path_;
  GString fullPath_;  ///< what is deleted, wherever the current folder is then
  int handle_ = NO_HANDLE;
  std::unique_ptr<CMemoryFile> memory_;
};

}  // namespace shr
