// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The application as a whole: from the command line to the files.
///
///     return static_cast<int>(RunProgram(arguments));

#pragma once

#include <vector>

#include "examples/common/Program.h"
#include "shared/text/GString.h"

namespace georeference {

using examples::ExitStatus;
using shr::GString;

/// Runs the program and returns its exit status. Writes the path of the report to standard output,
/// and one line to standard error when something is wrong; nothing is written then.
ExitStatus RunProgram(const std::vector<GString>& arguments);

}  // namespace georeference
