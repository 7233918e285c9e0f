// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `IHelp`, the application's help system as library code and elements see it.
///
/// The application hands its implementation to whoever offers help:
///
///     if (help.HasTopic(L"clip")) help.ShowTopic(L"clip");
///
/// Threads: the thread of the user interface.

#pragma once

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Shows help by topic. The application defines the names of its topics.
class SHARED_API IHelp {
public:
  virtual ~IHelp();

  virtual bool HasTopic(const GString& topic) const = 0;
  /// Shows the topic and returns true, or returns false when it is unknown or cannot be shown.
  virtual bool ShowTopic(const GString& topic) = 0;
  /// Shows where all topics are listed.
  virtual void ShowContents() = 0;
};

}  // namespace shr
