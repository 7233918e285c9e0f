// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CReplacementFile`, for writers that leave either the old file or the whole new one.
///
/// What is written goes to a temporary file in the folder of the target; `Commit` renames it over
/// the target in one step. Without `Commit` nothing remains.
///
///     CReplacementFile file(path);
///     file.Write(document);
///     file.Commit();
///
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// A new content for a file, invisible until it is complete.
///
/// An existing target keeps its permissions on Linux, and a link stays a link to the file that is
/// replaced. Errors: "Unable to open|write '%s'.\n%s" with the path of the target and the system's
/// text; the target is then as it was, and the temporary file is removed by the destructor.
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

  /// Waits until the content is on the disk and puts it in the place of the target. Nothing can be
  /// written afterwards; a second call is an internal error.
  void Commit();

  const GString& GetFilePath() const noexcept { return path_; }

private:
  void CheckTarget();
  void CreateTemporary();
  void WriteGathered();
  [[noreturn]] void ThrowSystemError(int line, const wchar_t* format) const;

  GString path_;
  GString target_;
  GString temporary_;
  int descriptor_;
  std::string gathered_;
};

}  // namespace shr
