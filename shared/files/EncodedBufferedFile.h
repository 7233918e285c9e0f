// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CEncodedBufferedFile` reads and writes text files in a code page, UTF-8 or UTF-16 as wide text.
///
/// An opened file is read in the encoding that it has: its byte-order mark and a sample of its
/// content overrule the encoding asked for (docs/encoded-text.md has the tables). Not for bytes:
/// that is shared/files/BufferedFile.h.
///
///     CEncodedBufferedFile file(path, L"rt", CEncodedBufferedFile::ShareRead, EncodingUTF8, 1252,
///                               false, false);
///     for (std::wstring line; file.ReadString(line); line.clear()) Use(line);
///     file.Close();
///
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "shared/Export.h"
#include "shared/files/FileUtility.h"
#include "shared/text/GString.h"

namespace shr {

class TextStream;

/// A text file. What the four encodings have in common:
///
/// - A mark is eaten when reading and written into every new or emptied file of a UTF encoding, and
///   into an empty file that is opened for appending. Appending to a UTF file goes on in the
///   encoding that its mark names. In a code page there are no marks.
/// - Windows: without "b" in the mode a line feed is CR LF in the file. Linux: never. A carriage
///   return that stands alone is kept on both, and 1A is a character like any other.
/// - A bad sequence of UTF-8 and half a unit at the end of UTF-16 give one U+FFFD each. Zeros are
///   kept. On Linux surrogate pairs of UTF-16 are joined; surrogates without partner survive
///   reading and writing UTF-16, and become U+FFFD in UTF-8.
/// - In multi-byte code pages a line is converted in pieces of up to 255 bytes, each by itself:
///   WARNING: in a longer line a character that two pieces share is lost, and so is the shift state
///   of pages like 50220. `SetWholeLines(true)` converts each line as one; programs that need no
///   compatibility with older readers should set it.
/// - What others append while the file is read is read, too: the end is where the file ends at the
///   time of the call.
/// - Any length goes: files are read in blocks, only the line at hand is in memory.
///
/// Errors: "Unable to open '%s'.\n%s", and likewise "read", "write", "seek" and "close", with the
/// path and the system's text. Text in a code page that this target cannot convert fails to be
/// read or written. Writing to an object that holds no file, and seeking in it, is an internal
/// error; reading from it finds nothing.
class SHARED_API CEncodedBufferedFile {
public:
  /// What other openers may do while the file is open.
  enum Sharing : int { ShareNone = 0, ShareRead = 1, ShareWrite = 2, ShareAll = 3 };

  /// What `Getc` gives at the end. U+FFFF in a file looks the same; `EndOfFile` tells them apart.
  enum EndMark : wchar_t { END_OF_TEXT = 65535 };

  CEncodedBufferedFile() noexcept;
  /// Opens; see `Open`.
  CEncodedBufferedFile(const GString& path, const GString& mode, Sharing sharing,
                       TextEncoding encoding, unsigned codePage, bool keepEncoding,
                       bool removeWhenAbandoned);
  /// A copy of a file holds no file, only the code page and the choice of whole lines: two objects
  /// never share a stream.
  CEncodedBufferedFile(const CEncodedBufferedFile& other);
  CEncodedBufferedFile(CEncodedBufferedFile&& other) noexcept;
  /// Closes the own file, with its errors, and takes the code page and the choice of whole lines.
  CEncodedBufferedFile& operator=(const CEncodedBufferedFile& other);
  /// Abandons the own file and takes the other one over.
  CEncodedBufferedFile& operator=(CEncodedBufferedFile&& other) noexcept;
  /// A file that is still open is abandoned: closed without checks, and deleted if it was opened
  /// with `removeWhenAbandoned`.
  ~CEncodedBufferedFile();

  /// Opens a file. `mode` is "r" (read), "w" (write anew) or "a" (append), then in any order "+"
  /// for both reading and writing and one of "t" and "b"; any other text fails.
  ///
  /// The content is looked at when the mode is exactly one of "r", "r+", "rt", "rt+", "rb", "rb+"
  /// and `keepEncoding` is false. With `keepEncoding` the file is read as `encoding` says; a mark
  /// is then skipped, whichever it is, unless `encoding` is `EncodingANSI`. UTF-8 without a mark
  /// is read in the code page unless `keepEncoding` is set.
  ///
  /// Errors: "Unable to open '%s'.\n%s"; an `encoding` out of range is "Invalid parameter passed to
  /// subroutine or function"; an empty path or mode, a `sharing` out of range and an object that
  /// holds a file are internal errors.
  void Open(const GString& path, const GString& mode, Sharing sharing, TextEncoding encoding,
            unsigned codePage, bool keepEncoding, bool removeWhenAbandoned);
  /// Opens like `Open`, but returns false when the file cannot be opened. Wrong arguments throw.
  bool OpenNoThrow(const GString& path, const GString& mode, Sharing sharing, TextEncoding encoding,
                   unsigned codePage, bool keepEncoding, bool removeWhenAbandoned);

  /// Writes what is pending, closes and forgets the path. Does nothing without a file.
  void Close();
  /// Closes without checks; with `remove` the file is deleted.
  void Abort(bool remove) noexcept;

  /// Returns the next unit or `END_OF_TEXT`.
  wchar_t Getc();
  /// Gives a unit back, to be read next, and returns it; any number may be given back. Giving back
  /// the `END_OF_TEXT` of the end, or anything without a file, does nothing and returns
  /// `END_OF_TEXT`. Seeking and writing forget what was given back.
  wchar_t UnGetc(wchar_t unit);
  /// Appends the rest of the current line, or else the next line, to `line`, without its line end:
  /// a line feed or a carriage return and line feed. Returns false when there was nothing to read;
  /// `line` is then unchanged. In page 52936 (HZ) a line that ends in a tilde goes on in the next.
  /// Cost: no allocation when `line` has room.
  bool ReadString(std::wstring& line);
  /// Returns true when nothing is left to read. In a file that is only written: true at its end.
  bool EndOfFile();

  /// Write one unit and return it. A surrogate pair may come in two calls.
  wchar_t Putc(unsigned short unit);
  wchar_t Putc(wchar_t unit);
  /// Writes all of `text`, zeros included; characters that a code page lacks become its default
  /// character.
  void WriteString(const std::wstring& text);
  /// Hands everything written to the system. Half a surrogate pair is kept until its partner comes.
  void Flush();

  /// Go behind the mark, and to the end of the file.
  void SeekToBegin();
  void SeekToEnd();
  /// Returns the offset in bytes behind the line that was fetched last, or behind everything
  /// written; -1 without a file. `Getc` fetches whole lines. Output that follows reading starts
  /// here (with "a" at the end of the file), and reading that follows output goes on here.
  std::int64_t GetPosition() const;
  /// Returns the length in bytes, the mark and pending output included; -1 without a file.
  std::int64_t GetLength() const;

  bool IsOpen() const noexcept { return stream_ != nullptr; }
  const GString& GetFilePath() const noexcept { return path_; }
  /// Returns the encoding in force, `EncodingANSI` before the first open.
  TextEncoding GetEncoding() const noexcept { return encoding_; }
  /// Returns the number of bytes of the mark at the start of the file.
  std::size_t GetMarkSize() const noexcept { return markSize_; }

  /// Sets the code page of ANSI text that is read and written from now on.
  void SetCodePage(unsigned codePage);
  unsigned GetCodePage() const noexcept { return codePage_; }

  /// Chooses how lines of a multi-byte code page are converted from now on: in pieces of 255 bytes
  /// (false, the default) or each as one. The choice outlives `Close` and is copied and moved with
  /// the object. Other encodings are not affected. Cost: a line longer than 128 KiB is copied once.
  void SetWholeLines(bool isInWholeLines);
  bool GetWholeLines() const noexcept { return isInWholeLines_; }

private:
  struct Mode;
  struct Request;

  bool TryOpen(const GString& path, const GString& mode, const Request& request, GString& reason);
  void Detect(const std::string& head, const Mode& mode, const Request& request, bool isNew);
  bool FillInputBuffer();
  void TakeBuffered(std::wstring& line);
  TextStream& CheckedStream();

  bool removeWhenAbandoned_ = false;
  bool isReadable_ = false;
  GString path_;
  GString fullPath_;  ///< what is deleted, wherever the current folder is then
  std::unique_ptr<TextStream> stream_;
  TextEncoding encoding_ = EncodingANSI;
  unsigned codePage_ = 0;
  bool isInWholeLines_ = false;
  std::size_t markSize_ = 0;
  GString lineBuffer_;  ///< a line of which a part was read
  std::size_t cursor_ = 0;
  bool isContinued_ = false;  ///< the buffered text is the start of the next line in the file
};

}  // namespace shr
