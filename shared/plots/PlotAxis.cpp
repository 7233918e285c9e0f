// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/PlotAxis.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace shr {

namespace {

constexpr double NARROWEST_SHARE = 1e-12;
constexpr double NARROWEST = 1e-300;
constexpr double NARROWEST_LOGARITHM = 1e-9;
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double HALF_DAY = 43200;
constexpr double HALF_DECADE = 0.5;

/// Returns how far equal ends are moved from their middle.
double WideningOf(ScaleKind kind, double middle) {
  if (kind == ScaleKind::Time) return HALF_DAY;
  if (kind == ScaleKind::Log) return HALF_DECADE;
  return std::abs(middle) < NARROWEST ? 1.0 : std::abs(middle) / 10;
}

}  // namespace

PlotAxis::PlotAxis(ScaleKind kind, double lo, double hi) : kind_(kind) {
  if (CanShow(lo) && CanShow(hi)) SetEnds(Scaled(std::min(lo, hi)), Scaled(std::max(lo, hi)), 0);
}

PlotAxis PlotAxis::Around(ScaleKind kind, std::span<const double> values, double margin) {
  PlotAxis axis;
  axis.kind_ = kind;
  double lo = std::numeric_limits<double>::infinity();
  double hi = -lo;
  for (const double value : values) {
    if (!axis.CanShow(value)) continue;
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
  if (lo <= hi) axis.SetEnds(axis.Scaled(lo), axis.Scaled(hi), margin);
  return axis;
}

bool PlotAxis::CanShow(double value) const {
  return std::isfinite(value) && (kind_ != ScaleKind::Log || value > 0);
}

double PlotAxis::Scaled(double value) const {
  return kind_ == ScaleKind::Log ? Log10Of(value) : value;
}

void PlotAxis::SetEnds(double lo, double hi, double margin) {
  // Halves throughout: the distance of two doubles may be too large for one.
  const double largest = std::max(std::abs(lo), std::abs(hi));
  const double narrowest = kind_ == ScaleKind::Log ? NARROWEST_LOGARITHM : NARROWEST;
  if (hi / 2 - lo / 2 <= std::max(largest * NARROWEST_SHARE, narrowest)) {
    const double middle = lo / 2 + hi / 2;
    const double widening = WideningOf(kind_, middle);
    lo = std::max(middle - widening, -LARGEST);
    hi = std::min(middle + widening, LARGEST);
  }
  const double free = (hi / 2 - lo / 2) * margin * 2;
  lo_ = std::max(lo - free, -LARGEST);
  hi_ = std::min(hi + free, LARGEST);
}

double PlotAxis::Share(double value) const {
  return (Scaled(value) / 2 - lo_ / 2) / (hi_ / 2 - lo_ / 2);
}

TickSet PlotAxis::Ticks(std::size_t most) const {
  switch (kind_) {
    case ScaleKind::Log:
      return LogTicks(lo_, hi_, most);
    case ScaleKind::Time:
      return TimeTicks(lo_, hi_, most);
    default:
      return LinearTicks(lo_, hi_, most);
  }
}

}  // namespace shr
