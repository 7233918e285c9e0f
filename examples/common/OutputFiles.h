// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes the files of a run together: all of them aside first, and only when each is complete are
/// they put in their places.
///
///     OutputFiles files(folder);
///     files.Add(folder + L"/map.svg", svg);
///     files.Commit();

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "shared/files/ReplacementFile.h"
#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// Files that replace their targets at once when `Commit` is called. Without it, and when something
/// fails before the first target was replaced, all is as it was.
class OutputFiles {
public:
  /// Makes the folder when it is missing. Errors: `ThrowInputError` when it cannot be made.
  explicit OutputFiles(const GString& folder);
  ~OutputFiles();
  OutputFiles(const OutputFiles&) = delete;
  OutputFiles& operator=(const OutputFiles&) = delete;

  /// Writes a file aside. Errors: the library's exception.
  void Add(const GString& path, std::string_view content);

  /// Puts the files in their places, in the order of `Add`. Errors: the library's exception.
  void Commit();

private:
  GString newFolder_;  ///< empty when it was there already
  std::vector<std::unique_ptr<shr::CReplacementFile>> files_;
};

}  // namespace examples
