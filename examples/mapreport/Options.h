// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The command line of the application, completed by what the last run left and by a settings file.

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "examples/common/CommandLine.h"
#include "examples/mapreport/Layers.h"
#include "examples/mapreport/RunLog.h"
#include "examples/mapreport/Settings.h"
#include "shared/text/GString.h"

namespace mapreport {

struct Options {
  Inputs inputs;      ///< unused when a saved map is loaded
  Settings settings;  ///< the choices of all places together
  GString load;       ///< saved map to begin with, or empty
  GString save;       ///< where to save the map, or empty
  GString geojson;    ///< where to write areas as GeoJSON, or empty
  bool csv = false;   ///< whether to write the tables of the report as CSV files
  std::size_t undo = 0;
  bool remember = false;
  GString log;
  std::optional<RemoteLog> remoteLog;
  GString outFolder;
  bool quiet = false;
};

/// What the command line asks for.
struct CommandLine : ParsedArguments {
  Options options;  ///< for `Run`
};

/// Reads the arguments, the program's name first. Inputs that are not named are looked for in the
/// data folders of the installation. What the user wrote wrong is a `UsageError`.
/// Errors: the library's exception and `ThrowInputError` for the settings file.
CommandLine ParseCommandLine(const std::vector<GString>& arguments);

}  // namespace mapreport
