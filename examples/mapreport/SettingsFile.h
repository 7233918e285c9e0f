// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the choices and the inputs of a map from an INI file (docs/mapreport.md lists its keys).
///
///     const SettingsFile file = ReadSettingsFile(L"map.ini");
///     settings.Complete(file.settings);

#pragma once

#include <vector>

#include "examples/mapreport/Settings.h"

namespace mapreport {

/// What a settings file says; paths of files are absolute or as the current folder sees them, empty
/// when the file does not name them.
struct SettingsFile {
  Settings settings;
  GString map;
  GString points;
  GString cities;
  GString rivers;
  GString attributes;
  std::vector<GString> tracks;
};

/// Returns the content of the file. Paths in it are relative to its own folder.
/// Errors: `ThrowInputError` with section and key for a file that cannot be read, a key that is not
/// known and a value that is not of its form.
SettingsFile ReadSettingsFile(const GString& path);

}  // namespace mapreport
