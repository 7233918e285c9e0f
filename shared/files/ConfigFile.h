// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CConfigFile`, for named values in sections of an initialisation file.
///
/// The file's syntax and encodings are the platform's (docs/configuration-files.md). Settings of a
/// user's own are better kept in shared/commands/RegParamList.h.
///
///     const CConfigFile settings(L"map.ini");
///     double scale = 1;
///     if (!settings.Read(L"Map", L"Scale", scale)) scale = 1;
///     settings.Write(L"Map", L"Scale", 0.5);
///
/// Threads: an object may be used on several threads, and a file in several processes; each change
/// happens whole, and on Linux none is lost.

#pragma once

#include <cstdint>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// A configuration file by its full path. It holds nothing else: every call goes to the file.
///
/// A section or key is found in any letter case and without the blanks around it; of several of one
/// name the first one counts. Text ends at its first zero unit.
///
/// Text that the active ANSI page cannot hold makes an unmarked file UTF-16 as a whole, so nothing
/// is stored as question marks. A writer that finds the lock of the folder (Linux) or of the
/// session (Windows) taken waits for it at most three seconds.
///
/// A file that is missing or cannot be read has no entries. Errors of everything that changes the
/// file: an `Exception` "Unable to write '%s'.\n%s" of unit "ConfigFile" with the full path and the
/// system's text; the file is then as it was.
class SHARED_API CConfigFile {
public:
  /// Errors: an internal error for an empty name; an `Exception` "Unable to open '%s'.\n%s" for one
  /// that has no full path.
  explicit CConfigFile(const GString& fileName);

  const GString& GetFileName() const noexcept { return path_; }

  // Reading. The result is false for a missing or empty value, and the value then empty or 0.

  /// Errors: an internal error when the value has 1023 units or more.
  bool Read(const GString& section, const GString& key, GString& value) const;

  // Numbers: false and 0 also for text that is not one number. Errors: as for text.

  /// Reads as `GString::ToInt` does.
  bool Read(const GString& section, const GString& key, int& value) const;
  /// Reads decimal digits, perhaps behind a plus sign.
  bool Read(const GString& section, const GString& key, std::uint64_t& value) const;
  /// Reads as `GString::ToDouble` does.
  bool Read(const GString& section, const GString& key, double& value) const;

  // Writing: replaces the entry's value, or adds the entry and its section. A null text removes the
  // entry.

  void Write(const GString& section, const GString& key, const GString& value) const;
  /// The text is in the active ANSI page.
  void Write(const GString& section, const GString& key, const char* value) const;
  void Write(const GString& section, const GString& key, const wchar_t* value) const;
  void Write(const GString& section, const GString& key, int value) const;
  void Write(const GString& section, const GString& key, std::uint64_t value) const;
  /// Stores fourteen significant digits.
  void Write(const GString& section, const GString& key, double value) const;

  /// Removes an entry, if there is one.
  void RemoveEntry(const GString& section, const GString& key) const;
  /// Removes a section with its title, if there is one.
  void RemoveSection(const GString& section) const;

  // Whole sections, as lines "key=value" with their quotation marks.

  /// Appends the lines of a section in their order, comments and empty ones left out. Returns true.
  bool ReadSection(const GString& section, std::vector<GString>& entries) const;
  /// Replaces the content of a section. The lines end at the first one that is empty; lines without
  /// "=" are dropped, and so are comments that the section had.
  void WriteSection(const GString& section, const std::vector<GString>& entries) const;

private:
  void Require(bool written) const;

  GString path_;
};

}  // namespace shr
