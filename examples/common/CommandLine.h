// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Command lines of the examples: options by CLI11, one line for what is wrong, help and version.
///
///     CLI::App app("Draws ...", "mapreport");
///     app.add_option("--out", raw.out, "Folder for the report")->required();
///     const ParsedArguments parsed = ParseArguments(app, arguments);
///     if (parsed.action != ParsedArguments::Action::Run) return parsed;

#pragma once

#include <string>
#include <vector>

#include "shared/text/GString.h"

namespace CLI {
class App;
}

namespace examples {

using shr::GString;

/// What a command line asks for.
struct ParsedArguments {
  enum class Action { Run, ShowText, UsageError };

  Action action = Action::Run;
  GString text;  ///< the help or version text, or one line that tells what is wrong
};

/// Lets `app` read the arguments, the program's name first, into what its options are bound to.
ParsedArguments ParseArguments(CLI::App& app, const std::vector<GString>& arguments);

/// Returns a usage error of `program` that names its help.
ParsedArguments UsageError(const GString& program, const GString& what);

/// A check for options of CLI11: returns what is wrong with the number of a code page, or nothing.
std::string CheckCodePage(const std::string& text);

}  // namespace examples
