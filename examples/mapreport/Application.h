// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The run from the command line to the written files.

#pragma once

#include <string>
#include <vector>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Options.h"

namespace mapreport {

class Progress;

/// What a run writes.
struct Outputs {
  std::string map;   ///< content of map.svg
  std::string page;  ///< content of report.html
};

/// Reads the inputs. Errors: the library's exception, or `ThrowInputError`.
Model ReadModel(const Options& options, Progress& progress);

/// Analyses the model and draws it.
Outputs MakeOutputs(Model& model, const Options& options, Progress& progress);

/// Writes both files into the folder, which is made when it is missing: aside first, so that a
/// failure leaves the folder as it was. Returns the path of the report. Errors: the library's
/// exception.
GString WriteOutputs(const Outputs& outputs, const GString& folder);

/// Runs the program and returns its exit status. Writes the path of the report to standard output,
/// and one line to standard error when something is wrong.
ExitStatus RunProgram(const std::vector<GString>& arguments);

}  // namespace mapreport
