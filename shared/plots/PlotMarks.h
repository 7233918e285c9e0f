// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The marks that plots are made of: dots and lines in a frame. For the library's own use.

#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "shared/plots/PlotCanvas.h"

namespace shr {

/// Writes a dot for each pair that the frame can show, those of one pixel once where there are
/// many. Returns how many pairs it cannot show.
std::size_t DrawDots(PlotCanvas& canvas, const PlotFrame& frame, std::span<const double> x,
                     std::span<const double> y, const std::string& cssClass);

/// Writes a line through the pairs, interrupted where one cannot be shown. Returns how many.
std::size_t DrawLine(PlotCanvas& canvas, const PlotFrame& frame, std::span<const double> x,
                     std::span<const double> y, const std::string& cssClass);

/// Writes the part inside the frame of y = slope x + intercept.
void DrawSlope(PlotCanvas& canvas, const PlotFrame& frame, double slope, double intercept,
               const std::string& cssClass);

}  // namespace shr
