// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/StatisticalPlots.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/plots/Ticks.h"

namespace shr {

namespace {

constexpr std::size_t MOST_BINS = 100;
constexpr std::size_t BINS_OF_TIMES = 40;

std::vector<double> SortedPlaces(std::span<const double> values, ScaleKind scale) {
  const PlotAxis axis(scale, 1, 2);
  std::vector<double> sorted;
  sorted.reserve(values.size());
  std::copy_if(values.begin(), values.end(), std::back_inserter(sorted),
               [&](double value) { return axis.CanShow(value); });
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

/// Returns the largest whole number whose cube is not above `count`.
double CubeRoot(std::size_t count) {
  std::size_t root = 1;
  while ((root + 1) * (root + 1) * (root + 1) <= count) ++root;
  return static_cast<double>(root);
}

double SturgesBins(std::size_t count) {
  double bins = 1;
  for (std::size_t rest = count; rest > 1; rest /= 2) ++bins;
  return bins;
}

/// Returns how many bins a sorted sample of different ends gets. Differences are taken of halves.
std::size_t CountBins(const std::vector<double>& sorted) {
  const std::size_t last = sorted.size() - 1;
  const double range = sorted[last] / 2 - sorted[0] / 2;
  const double quartiles = sorted[3 * last / 4] / 2 - sorted[last / 4] / 2;
  const double width = 2 * quartiles / CubeRoot(sorted.size());
  double bins = width > 0 ? std::ceil(range / width) : SturgesBins(sorted.size());
  const bool isWhole = std::all_of(sorted.begin(), sorted.end(),
                                   [](double value) { return value == std::floor(value); });
  if (isWhole) bins = std::min(bins, std::max(1.0, 2 * range));
  return static_cast<std::size_t>(std::clamp(bins, 1.0, static_cast<double>(MOST_BINS)));
}

/// Returns edges at even steps of the scale, for scales whose round numbers are no even steps.
std::vector<double> EvenEdges(const std::vector<double>& sorted, ScaleKind scale) {
  const double lo = sorted.front();
  const double hi = sorted.back();
  const bool isLog = scale == ScaleKind::Log;
  const double from = isLog ? Log10Of(lo) : lo;
  const double to = isLog ? Log10Of(hi) : hi;
  const std::size_t bins =
      std::min(BINS_OF_TIMES, static_cast<std::size_t>(SturgesBins(sorted.size())) * 3);
  std::vector<double> edges{lo};
  for (std::size_t i = 1; i < bins; ++i) {
    const double place = from + (to - from) * (static_cast<double>(i) / static_cast<double>(bins));
    edges.push_back(isLog ? PowerOf10(place) : place);
  }
  edges.push_back(hi);
  return edges;
}

std::vector<double> EdgesOf(const std::vector<double>& sorted, ScaleKind scale) {
  const PlotAxis axis = PlotAxis::Around(scale, sorted, 0);
  const double low = scale == ScaleKind::Log ? Log10Of(sorted.front()) : sorted.front();
  if (axis.ScaledLow() < low) {
    // Equal, or so nearly that nothing lies between them.
    const bool isLog = scale == ScaleKind::Log;
    return {isLog ? PowerOf10(axis.ScaledLow()) : axis.ScaledLow(),
            isLog ? PowerOf10(axis.ScaledHigh()) : axis.ScaledHigh()};
  }
  if (scale != ScaleKind::Linear) return EvenEdges(sorted, scale);
  std::vector<double> edges = RoundEdges(sorted.front(), sorted.back(), CountBins(sorted) + 1);
  // Beyond the largest double there is no round number.
  if (edges.empty() || std::isinf(edges.front()) || std::isinf(edges.back()))
    return {sorted[0], sorted.back()};
  return edges;
}

}  // namespace

Bins MakeBins(std::span<const double> values, ScaleKind scale) {
  const std::vector<double> sorted = SortedPlaces(values, scale);
  Bins bins;
  bins.leftOut = values.size() - sorted.size();
  if (sorted.empty()) return bins;
  bins.edges = EdgesOf(sorted, scale);
  auto from = sorted.begin();
  for (std::size_t i = 1; i < bins.edges.size(); ++i) {
    const bool isLast = i + 1 == bins.edges.size();
    const auto to = isLast ? sorted.end() : std::lower_bound(from, sorted.end(), bins.edges[i]);
    bins.counts.push_back(static_cast<double>(to - from));
    from = to;
  }
  return bins;
}

std::string DrawHistogram(std::span<const double> values, PlotOptions options) {
  const Bins bins = MakeBins(values, options.xScale);
  if (options.yLabel.empty()) options.yLabel = L"Count";
  options.yFromZero = true;
  Plot plot(std::move(options));
  if (!bins.counts.empty()) plot.AddBars(bins.edges, bins.counts);
  plot.AddLeftOut(bins.leftOut);
  return plot.Draw();
}

std::string DrawDistribution(std::span<const double> values, PlotOptions options) {
  const std::vector<double> sorted = SortedPlaces(values, options.xScale);
  std::vector<double> x;
  std::vector<double> shares;
  const auto count = static_cast<double>(sorted.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i == 0) {
      x.push_back(sorted[0]);
      shares.push_back(0);
    }
    if (i + 1 < sorted.size() && sorted[i + 1] == sorted[i]) continue;
    x.push_back(sorted[i]);
    shares.push_back(static_cast<double>(i + 1) / count);
  }
  if (options.yLabel.empty()) options.yLabel = L"Share of values up to x";
  if (!options.yRange) options.yRange = {0, 1};
  const std::size_t leftOut = values.size() - sorted.size();
  Plot plot(std::move(options));
  plot.AddSteps(x, shares);
  plot.AddLeftOut(leftOut);
  return plot.Draw();
}

LineFit FitLine(std::span<const double> x, std::span<const double> y) {
  if (x.size() != y.size()) ThrowInternalError(SHARED_MODULE, L"StatisticalPlots", __LINE__);
  LineFit fit;
  double sumX = 0;
  double sumY = 0;
  const auto isPair = [&](std::size_t i) { return std::isfinite(x[i]) && std::isfinite(y[i]); };
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!isPair(i)) continue;
    ++fit.count;
    sumX += x[i];
    sumY += y[i];
  }
  if (fit.count < 2) return fit;
  const double meanX = sumX / static_cast<double>(fit.count);
  const double meanY = sumY / static_cast<double>(fit.count);
  double xx = 0;
  double xy = 0;
  double yy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!isPair(i)) continue;
    xx += (x[i] - meanX) * (x[i] - meanX);
    xy += (x[i] - meanX) * (y[i] - meanY);
    yy += (y[i] - meanY) * (y[i] - meanY);
  }
  if (xx > 0) {
    fit.slope = xy / xx;
    fit.intercept = meanY - fit.slope * meanX;
  }
  // The roots apart: the product may be too large for a double.
  if (xx > 0 && yy > 0) fit.correlation = xy / std::sqrt(xx) / std::sqrt(yy);
  return fit;
}

}  // namespace shr
