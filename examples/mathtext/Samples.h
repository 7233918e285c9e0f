// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the gallery shows: a sample of every command, and names of places in twelve scripts.

#pragma once

#include <span>

namespace mathtext {

/// A label with its name in file names, what is to be seen in it, and what it stands on.
struct Sample {
  const char* name;
  const wchar_t* markup;
  const wchar_t* explanation;
  bool isOnGray = false;
};

std::span<const Sample> CommandSamples();
std::span<const Sample> ScriptSamples();

}  // namespace mathtext
