// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The command line of the application.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/text/GString.h"

namespace mapreport {

using shr::Box2d;
using shr::GString;

/// A text file and, where the user told it, its code page.
struct TextInput {
  GString path;
  std::optional<std::uint32_t> codePage;
};

struct Options {
  TextInput map;
  TextInput points;
  TextInput cities;
  Box2d window{-180, -90, 180,
               90};  ///< degrees; the east side is beyond 180 across the antimeridian
  GString outFolder;
  GString title{L"Earthquakes by country"};
  std::size_t labels = 150;    ///< most city names on the map
  std::size_t strongest = 20;  ///< rows of the table of strongest events
  bool quiet = false;
};

/// What the program ends with.
enum class ExitStatus : int { Success = 0, BadInput = 1, Usage = 2 };

/// What the command line asks for.
struct CommandLine {
  enum class Action { Run, ShowText, UsageError };

  Action action = Action::Run;
  Options options;  ///< for `Run`
  GString text;     ///< the help or version text, or one line that tells what is wrong
};

/// Reads the arguments, the program's name first. Inputs that are not named are looked for in the
/// data folders of the installation. Never throws for what the user wrote.
CommandLine ParseCommandLine(const std::vector<GString>& arguments);

/// Reads "W,S,E,N" in degrees. Returns nothing when it is no window: not four numbers, off the
/// globe, or without area. An east side that is not east of the west side lies beyond the
/// antimeridian.
std::optional<Box2d> ParseWindow(const GString& text);

}  // namespace mapreport
