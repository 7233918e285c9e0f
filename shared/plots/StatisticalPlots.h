// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws plots of samples as SVG: histogram, empirical distribution, scatter plot with its line of
/// regression, matrix of scatter plots.
///
///     std::string bars = DrawHistogram(depths, {.title = L"Depth", .xLabel = L"km"});
///     std::string curve = DrawDistribution(depths, {.title = L"Depth", .xLabel = L"km"});
///     LineFit fit = FitLine(magnitudes, depths);          // fit.slope, fit.correlation
///
/// Missing values (NaN) and infinities are left out and counted. For box plots see
/// shared/plots/CategoryPlots.h. Bytes: the same on both targets. Threads: any.

#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "shared/Export.h"
#include "shared/plots/Plot.h"
#include "shared/text/GString.h"

namespace shr {

/// Bins side by side and how many values lie in each.
struct Bins {
  std::vector<double> edges;  ///< ascending, one more than counts
  std::vector<double> counts;
  std::size_t leftOut = 0;  ///< values without a place on the scale
};

/// Puts values into bins of equal width on `scale`, at most 100; each holds its low edge, the last
/// one both. On a linear scale the edges are round numbers and the width of a bin follows from the
/// sample: 2 IQR / n^(1/3), or, without an interquartile range, so that there are log2 n + 1.
/// Whole numbers never get bins narrower than 1. Degenerate: no bins without a value, one bin
/// around equal values. Cost: O(n log n). Source: D. Freedman, P. Diaconis, "On the histogram as a
/// density estimator: L2 theory", Zeitschrift für Wahrscheinlichkeitstheorie 57, 1981.
SHARED_API Bins MakeBins(std::span<const double> values, ScaleKind scale = ScaleKind::Linear);

/// Returns a histogram with the bins of `MakeBins` on the scale `options.xScale`.
SHARED_API std::string DrawHistogram(std::span<const double> values, PlotOptions options);

/// Returns the empirical distribution: for each x the share of the values that are not above it.
SHARED_API std::string DrawDistribution(std::span<const double> values, PlotOptions options);

/// The line y = slope x + intercept of least squares, and how well it fits.
struct LineFit {
  std::size_t count = 0;  ///< pairs of finite numbers
  double slope = std::numeric_limits<double>::quiet_NaN();
  double intercept = slope;
  double correlation = slope;  ///< Pearson's
};

/// Fits a line to the pairs of finite numbers. Degenerate: NaN for what they do not determine: all
/// with fewer than two pairs or equal x, the correlation also with equal y. Errors: spans of unlike
/// size are an internal error. Cost: O(n).
SHARED_API LineFit FitLine(std::span<const double> x, std::span<const double> y);

/// A variable of a scatter-plot matrix.
struct NamedSample {
  GString name;
  std::span<const double> values;
};

/// Returns a square of plots, one for each pair of variables: scatter plots with their lines of
/// regression below the diagonal, histograms on it, Pearson's correlation above it. All samples
/// belong to the same observations in the same order; pairs with a missing value are left out. Of
/// more than 4000 observations every n-th is drawn; lines and correlations are of all.
/// Only title, description, width and the mode of texts of `options` are used. Degenerate: without
/// a value "No data". Errors: samples of unlike size are an internal error. Source: J. A. Hartigan,
/// "Printer graphics for clustering", Journal of Statistical Computation and Simulation 4, 1975.
SHARED_API std::string DrawScatterMatrix(std::span<const NamedSample> samples,
                                         const PlotOptions& options);

}  // namespace shr
