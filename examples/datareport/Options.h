// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The command line of the data report.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "examples/common/CommandLine.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace datareport {

using shr::GString;

/// How many values are kept for what needs them one by one, all columns together: 64 MB.
inline constexpr std::size_t MOST_CELLS = 4000000;
/// How many rows at most.
inline constexpr std::size_t MOST_ROWS = 200000;

/// What pictures and headings call a column, as math text.
struct ColumnLabel {
  GString column;
  GString text;
};

struct Options {
  GString input;
  GString outFolder;
  GString title;  ///< math text; empty for the name of the file
  std::vector<ColumnLabel> labels;
  shr::SvgTextMode textMode = shr::SvgTextMode::Text;  ///< of pictures
  std::optional<std::uint32_t> codePage;
  wchar_t separator = L'\0';  ///< 0 for the one that the first lines show
  bool decimalComma = false;
  bool skipBroken = false;
  GString x;  ///< column of places, with y; or empty
  GString y;
  GString z;
  std::size_t sample = MOST_ROWS;  ///< rows that are kept
  std::size_t frequent = 12;       ///< values of a text column that are told
  bool quiet = false;
};

struct CommandLine : examples::ParsedArguments {
  Options options;  ///< for `Run`
};

/// Reads the arguments, the program's name first.
CommandLine ParseCommandLine(const std::vector<GString>& arguments);

}  // namespace datareport
