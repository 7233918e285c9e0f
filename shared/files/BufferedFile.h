// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CBufferedFile`, a buffered file of bytes, characters and narrow lines on disk or in memory.
///
/// The bytes are handed on as they are; text in an encoding is read by `CEncodedBufferedFile`
/// (shared/files/EncodedBufferedFile.h).
///
///     CBufferedFile file(path, L"rt", CBufferedFile::ShareRead, false);
///     std::string line;
///     while (file.ReadString(line)) Use(line);
///     file.Close();
///
/// Threads: one thread an object.

#pragma once

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>

#include "shared/Export.h"
#include "shared/files/MemoryFile.h"
#include "shared/text/GString.h"
#include "shared/text/PrintfArguments.h"

namespace shr {

/// A file by runtime stream, or an owned `CMemoryFile` behind the same operations.
///
/// Reading and writing may follow each other in any order on a stream opened for both.
/// Errors: "Unable to open|read|write|seek|close '%s'.\n%s" with the path (or "memory file") and
/// the system's text (or "out of range"). Faults of the caller are internal errors: an empty path
/// or mode, an object already open, a null buffer, an unknown sharing or origin, writing with
/// nothing open.
class SHARED_API CBufferedFile {
public:
  /// What other openers may do meanwhile. shared/platform/RawFile.h tells whom it binds.
  enum Sharing : int {
    ShareNone = 0,   ///< deny reading and writing
    ShareRead = 1,   ///< deny writing
    ShareWrite = 2,  ///< deny reading
    ShareAll = 3,    ///< deny nothing
  };

  enum Origin : int { OriginBegin = 0, OriginCurrent = 1, OriginEnd = 2 };

  CBufferedFile() = default;
  /// Takes over an open stream; null leaves the object closed. The path is empty until
  /// `SetFilePath`.
  explicit CBufferedFile(std::FILE* stream);
  CBufferedFile(const GString& path, const GString& mode, Sharing sharing,
                bool removeWhenAbandoned);
  /// Abandons a file that is still open: closes it without checks, and deletes it from disk when it
  /// was opened with `removeWhenAbandoned`.
  ~CBufferedFile();
  CBufferedFile(CBufferedFile&& other) noexcept;
  CBufferedFile& operator=(CBufferedFile&& other) noexcept;
  CBufferedFile(const CBufferedFile&) = delete;
  CBufferedFile& operator=(const CBufferedFile&) = delete;

  /// Opens a stream. `mode` is the runtime's mode text ("rb", "wt", ...); line ends are translated
  /// by the Windows runtime in text mode only.
  void Open(const GString& path, const GString& mode, Sharing sharing, bool removeWhenAbandoned);
  /// Like `Open`, but returns false when the system refuses. Faults of the caller still are
  /// internal errors.
  bool OpenNoThrow(const GString& path, const GString& mode, Sharing sharing,
                   bool removeWhenAbandoned);
  /// Opens a new empty memory file.
  void Open();
  /// Opens a memory file on `buffer`, which is not owned (see `CMemoryFile::Attach`).
  void Open(void* buffer, std::uint32_t size);

  /// Closes the file; the object is closed afterwards even when this throws, which it does when
  /// what was buffered cannot be written. Nothing to do when closed.
  void Close();
  /// Closes without checks; with `remove` the file is then deleted from disk.
  void Abort(bool remove) noexcept;
  /// Hands what is buffered to the system.
  void Flush();

  /// Returns the next byte, or -1 at the end and with nothing open.
  int Getc();
  /// Pushes `c` back, one byte guaranteed on streams; a memory file is overwritten with it. Returns
  /// `c`, or -1 when that is not possible.
  int UnGetc(int c);
  /// Writes one byte and returns it; -1 with nothing open.
  int Putc(int c);

  /// Reads at most `count` bytes and returns how many: 0 at the end and with nothing open.
  std::uint32_t Read(void* buffer, std::uint32_t count);
  /// Reads exactly `count` bytes. Errors: "Unexpected end of file reading '%s'."
  void ReadN(void* buffer, std::uint32_t count);
  /// Writes all `count` bytes.
  void Write(const void* buffer, std::uint32_t count);

  /// Reads bytes up to and including a line feed, at most `size` - 1, and a terminating zero.
  /// Returns `buffer`, or null at the end, for a null buffer or size 0. Size 1 gives the empty
  /// string.
  char* ReadString(char* buffer, std::uint32_t size);
  /// Reads a whole line of any length without its line end, LF or CR LF. Zero bytes are bytes of
  /// the line. Returns true when anything was read, if only a line end.
  bool ReadString(std::string& line);
  /// Writes terminated text without its zero.
  void WriteString(const char* text);
  /// Writes formatted text and returns the number of bytes; -1 with nothing open. The format means
  /// what it means to `FormatString` (shared/text/StringUtility.h). A longer result than
  /// `FormatString` can hold is left to the runtime's printf on streams, and is an error in memory.
  int Printf(const char* format, ...);
  /// The same with text objects. Errors: "Invalid parameter passed to subroutine or function" when
  /// the format does not take them.
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  int Printf(const char* format, const Arguments&... arguments) {
    CheckFormat(format, {FormatKindOf<Arguments>...});
    return Printf(format, CArgument(ToFormatArgument(arguments))...);
  }
  template <typename Format, typename... Arguments>
  requires NoFormatObjects<Arguments...>
  int Printf(const Format& format, const Arguments&... arguments) = delete;

  /// Moves the position and returns it; -1 when it does not fit in signed 32 bits, and with nothing
  /// open. Errors: "out of range" when `offset` does not fit in signed 32 bits.
  std::int64_t Seek(std::int64_t offset, Origin origin);
  std::int64_t SeekToBegin() { return Seek(0, OriginBegin); }
  std::int64_t SeekToEnd() { return Seek(0, OriginEnd); }
  void Rewind() { SeekToBegin(); }
  /// Returns the position in 64 bits; -1 with nothing open.
  std::int64_t GetPosition() const;
  /// Returns the length in bytes, what is buffered included; -1 with nothing open. The position
  /// stays.
  std::int64_t GetLength();
  /// Returns true when no byte can be read: at the end, behind it, and with nothing open.
  /// Errors: "Unable to read" when the stream cannot be read at all.
  bool EndOfFile();

  bool IsOpen() const noexcept { return open_; }
  bool IsMemoryFile() const noexcept { return memory_ != nullptr; }
  /// Returns the runtime's stream, or null.
  std::FILE* GetHandle() const noexcept { return stream_; }
  /// Returns the bytes of the memory file, or null for a disk file. Valid until the next change.
  unsigned char* GetBuffer() const noexcept;
  /// Returns the path opened; empty for memory files.
  const GString& GetFilePath() const noexcept { return path_; }
  /// Sets the path that messages name and `Abort` deletes, for a stream that was opened elsewhere.
  void SetFilePath(const wchar_t* path);

private:
  /// Raises the error of a format that does not take the text objects among its arguments.
  static void CheckFormat(const char* format, std::initializer_list<FormatKind> arguments);
  enum class Direction { None, Reading, Writing };

  bool HoldsNothing() const noexcept { return stream_ == nullptr && memory_ == nullptr; }
  void CheckOpenArguments(const GString& path, const GString& mode, Sharing sharing,
                          int line) const;
  bool TryOpen(const GString& path, const GString& mode, Sharing sharing, bool removeWhenAbandoned);
  void OpenMemory(std::unique_ptr<CMemoryFile> memory);
  void TurnTo(Direction direction);
  void CheckRead(int line);
  [[noreturn]] void ThrowStreamError(int line, const wchar_t* format);
  bool AppendPiece(std::string& line);
  void RemoveLineEnd(std::string& line) const;
  void Forget() noexcept;
  void Take(CBufferedFile& other) noexcept;

  bool open_ = false;
  bool removeWhenAbandoned_ = false;
  bool isReadable_ = true;
  Direction direction_ = Direction::None;
  GString path_;
  GString fullPath_;  ///< what is deleted, wherever the current folder is then
  std::FILE* stream_ = nullptr;
  std::unique_ptr<CMemoryFile> memory_;
};

}  // namespace shr
