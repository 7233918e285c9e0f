// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The run from the command line to the written files.

#pragma once

#include <vector>

#include "examples/common/Program.h"
#include "examples/datareport/Options.h"

namespace datareport {

/// Reads the table and writes the report; a failure leaves all files as they were. Returns the path
/// of the page. Errors: the library's exception, or `ThrowInputError`.
GString Run(const Options& options);

/// Runs the program and returns its exit status. Writes the path of the report to standard output,
/// and one line to standard error when something is wrong.
examples::ExitStatus RunProgram(const std::vector<GString>& arguments);

}  // namespace datareport
