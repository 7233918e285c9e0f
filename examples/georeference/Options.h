// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the command line asks for.
///
///     const CommandLine commandLine = ParseCommandLine(arguments);

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "examples/common/CommandLine.h"
#include "shared/numerics/registration/ImageWarp.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace georeference {

using shr::GString;

inline constexpr const wchar_t* PROGRAM = L"georeference";

struct Options {
  GString points;
  GString warpPoints;                        ///< empty when no points are to be transformed
  std::optional<shr::WarpingMethod> method;  ///< nothing for the best one
  std::size_t grid = 12;                     ///< cells along the longer side
  std::optional<std::uint32_t> codePage;
  GString outFolder;
  GString title;              ///< math text; empty for the name of the file
  GString xLabel = L"Map x";  ///< of the axes of the picture, math text
  GString yLabel = L"Map y";
  shr::SvgTextMode textMode = shr::SvgTextMode::Text;
  bool quiet = false;
};

struct CommandLine : examples::ParsedArguments {
  Options options;
};

CommandLine ParseCommandLine(const std::vector<GString>& arguments);

/// Returns the method of a word of the command line, such as "thin-plate-spline" or "tps"; letter
/// case does not matter.
std::optional<shr::WarpingMethod> ParseMethod(const GString& word);

}  // namespace georeference
