// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the small picture that tells where on the world the map lies: all countries in their
/// colors and the window.

#pragma once

#include <string>

#include "examples/mapreport/Model.h"

namespace mapreport {

inline constexpr const wchar_t* OVERVIEW_NAME = L"overview.svg";
inline constexpr int OVERVIEW_WIDTH = 320;  ///< pixels
inline constexpr int OVERVIEW_HEIGHT = 226;

/// Returns the picture, UTF-8. The outlines are simplified to what its pixels can show; countries
/// beside each other keep a common border. The same model gives the same bytes on every machine.
std::string DrawOverview(const Model& model);

}  // namespace mapreport
