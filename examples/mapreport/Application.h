// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The run from the command line to the written files.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "examples/common/Program.h"
#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"
#include "examples/mapreport/Options.h"

namespace mapreport {

/// What a run writes.
struct Outputs {
  std::string map;        ///< content of map.svg
  std::string page;       ///< content of report.html
  std::string saved{};    ///< content of the saved map, empty when none is asked for
  std::string geojson{};  ///< content of the GeoJSON file, empty when none is asked for
  std::vector<std::pair<GString, std::string>> tables{};  ///< name and content of the CSV files
  std::string overview{};                                 ///< content of overview.svg
};

/// Reads the inputs or the saved map, and runs the steps on it that the options ask for. Errors:
/// the library's exception, or `ThrowInputError`.
Model MakeModel(const Options& options, IProgress& progress);

/// Draws the model.
Outputs MakeOutputs(Model& model, const Options& options, IProgress& progress);

/// Writes the files; a failure leaves all of them as they were. Returns the path of the report.
/// Errors: the library's exception, or `ThrowInputError` for the folder.
GString WriteOutputs(const Outputs& outputs, const Options& options);

/// Runs the program and returns its exit status. Writes the path of the report to standard output,
/// and one line to standard error when something is wrong.
ExitStatus RunProgram(const std::vector<GString>& arguments);

}  // namespace mapreport
