// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the layers of a map, whatever their encoding, and notes what each file held.

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// A text file and, where the user told it, its code page.
struct TextInput {
  GString path;
  std::optional<std::uint32_t> codePage;
};

/// The files of a map.
struct Inputs {
  TextInput map;
  TextInput points;
  TextInput cities;
  TextInput rivers;      ///< none when its path is empty
  TextInput attributes;  ///< of the countries; none when its path is empty
  std::vector<TextInput> tracks;
};

/// Reads the inputs. Errors: the library's exception, or `ThrowInputError`.
Model ReadModel(const Inputs& inputs, IProgress& progress);

}  // namespace mapreport
