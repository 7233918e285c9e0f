// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CReplacementFile`, for writers that leave either the old file or the whole new one.
///
/// What is written goes to a temporary file in the folder of the target; `Commit` puts it in the
/// place of the target in one step. Without `Commit` nothing remains.
/// shared/platform/FileReplacement.h tells what stays of the old file and how rests are removed.
///
///     CReplacementFile file(path);
///     file.Write(document);
///     file.Commit();
///
/// Threads: one thread an object.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shared/Export.h"
#include "shared/platform/FileReplacement.h"
#include "shared/text/GString.h"

namespace shr {

/// A new content for a file, invisible until it is complete.
///
/// An existing target keeps owner, group, permissions, access list and attributes; a link stays a
/// link to the file that is replaced, or made. Errors: "Unable to open|write '%s'.\n%s" with the
/// path of the target and the system's text; the target is then as it was, and the temporary file
/// is removed by the destructor.
class SHARED_API CReplacementFile {
public:
  /// Begins to replace `path`, or to create it.
  /// Errors: "Unable to open" when the target is a folder, may not be written or is kept by another
  /// opener's share mode, or when no file can be created beside it. Internal error when `path` is
  /// empty.
  explicit CReplacementFile(const GString& path);
  /// Removes the temporary file unless it was committed.
  ~CReplacementFile();
  CReplacementFile(const CReplacementFile&) = delete;
  CReplacementFile& operator=(const CReplacementFile&) = delete;

  /// Appends bytes. They are gathered in pieces, so small ones are cheap.
  void Write(std::string_view bytes);

  /// Returns how many bytes were written.
  std::uint64_t GetLength() const noexcept { return written_ + gathered_.size(); }

  /// Takes back what was written behind `length` bytes, so that the next ones follow there: for
  /// writers that repeat or mend their end. Requires: `length` is at most `GetLength()`.
  void Truncate(std::uint64_t length);

  /// Waits until the content is on the disk and puts it in the place of the target. Nothing can be
  /// written afterwards; a second call is an internal error. A commit that failed may be tried
  /// again.
  void Commit();

  /// Gives up: the temporary file is removed and the target stays as it is. Nothing can be written
  /// afterwards.
  void Discard() noexcept;

  const GString& GetFilePath() const noexcept { return path_; }

private:
  void WriteGathered();
  [[noreturn]] void ThrowSystemError(int line, const wchar_t* format) const;

  GString path_;
  platform::FileReplacement replacement_;
  std::string gathered_;
  std::uint64_t written_ = 0;
};

}  // namespace shr
