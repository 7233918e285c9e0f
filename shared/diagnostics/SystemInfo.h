// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Process-wide settings of the library: the internal-error hook and the folders of support files.
///
/// The singleton behind `CSystemInfo` is created on first use.
/// Threads: nothing here is locked. Set the handler and the folders at start-up.

#pragma once

#include <functional>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

class InternalErrorException;

/// Access to the process-wide settings. All members are static.
class SHARED_API CSystemInfo {
public:
  /// Called with every internal error before it is thrown. It may throw an exception of its own,
  /// end the process, or return, in which case the library throws the `InternalErrorException`.
  using InternalErrorHandlerType = std::function<void(const InternalErrorException&)>;

  CSystemInfo() = delete;

  /// Returns the handler in force, never empty: the default one throws a copy of its argument.
  static const InternalErrorHandlerType& InternalErrorHandler();

  /// Installs `handler`; an empty callable restores the default.
  static void InternalErrorHandler(InternalErrorHandlerType handler);

  /// Returns the folders in which `LocateFile` looks first, in order, each ending with a separator.
  static const std::vector<GString>& GetSearchFolders();

  /// Replaces the search folders. A folder without a trailing separator is given one; empty folders
  /// are left out.
  static void SetSearchFolders(const std::vector<GString>& folders);

  /// Restores the default handler and empties the list of search folders.
  static void ResetToDefaults();
};

}  // namespace shr
