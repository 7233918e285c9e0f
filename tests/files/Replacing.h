// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the tests of replaced files share.

#pragma once

#include <string_view>

#include "shared/files/ReplacementFile.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::test {

inline void Replace(const GString& path, std::string_view content) {
  CReplacementFile file(path);
  file.Write(content);
  file.Commit();
}

/// Returns the name of the first temporary file in a folder, or nothing.
inline GString TemporaryIn(const TemporaryFolder& folder) {
  for (const GString& name : folder.Names()) {
    if (name.starts_with(L"~shared-")) return name;
  }
  return GString();
}

}  // namespace shr::test
