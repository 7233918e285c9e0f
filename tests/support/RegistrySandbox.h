// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A place in the registry of a test's own, gone afterwards.
///
///     const test::RegistrySandbox sandbox;
///     CRegParamList list(HKEY_CURRENT_USER, sandbox.Key(L"Window"));
///
/// Outside Windows the whole registry of the process lies in a temporary folder while a sandbox
/// lives. Threads: one sandbox at a time.

#pragma once

#include <string>

#include "shared/text/GString.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::test {

class RegistrySandbox {
public:
  RegistrySandbox();
  ~RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;

  /// Returns the path below HKEY_CURRENT_USER of a key that does not exist yet.
  GString Key() const { return key_; }
  /// The same one level deeper.
  GString Key(const wchar_t* name) const { return key_ + L"\\" + name; }

  /// The folder of the registry's files outside Windows.
  const TemporaryFolder& Folder() const { return folder_; }

private:
  TemporaryFolder folder_;
  GString key_;
};

}  // namespace shr::test
