// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Observations are taken in blocks. In each block the deviations of every variable are formed once,
// as pairs with the halves that products need, and then multiplied two variables at a time.

#include "shared/numerics/statistics/Comoments.h"

#include <algorithm>
#include <cmath>

#include "shared/numerics/statistics/ExactSum.h"
#include "shared/numerics/statistics/TwoLanes.h"
#include "shared/numerics/statistics/UnivariateSums.h"

namespace shr {
namespace {

constexpr std::size_t BLOCK = 256;

/// The deviations of one variable in a block, those past its end 0.
struct Deviations {
  double high[BLOCK];
  double low[BLOCK];
  double halfHigh[BLOCK];
  double halfLow[BLOCK];
};

ExactSum SumOfColumn(const double* column, std::size_t stride, std::size_t count) {
  ExactSum sum;
  double block[BLOCK];
  for (std::size_t start = 0; start < count; start += BLOCK) {
    const std::size_t size = std::min(BLOCK, count - start);
    for (std::size_t i = 0; i < size; ++i) block[i] = column[(start + i) * stride];
    sum.Add(std::span(block, size));
  }
  return sum;
}

double LargestOfColumn(const double* column, std::size_t stride, std::size_t count) {
  double largest = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const double magnitude = std::fabs(column[i * stride]);
    if (!(magnitude <= largest)) largest = magnitude;
    if (!std::isfinite(largest)) break;
  }
  return largest;
}

ScaledPair SumOfProducts(const Deviations& a, const Deviations& b, std::size_t count) {
  LaneSum sum;
  for (std::size_t i = 0; i < count; i += 2) {
    const LanePair x{TwoLanes::Load(a.high + i), TwoLanes::Load(a.low + i)};
    const LanePair y{TwoLanes::Load(b.high + i), TwoLanes::Load(b.low + i)};
    const LaneHalves xHalves{TwoLanes::Load(a.halfHigh + i), TwoLanes::Load(a.halfLow + i)};
    const LaneHalves yHalves{TwoLanes::Load(b.halfHigh + i), TwoLanes::Load(b.halfLow + i)};
    sum.Add(LaneProduct(x, xHalves, y, yHalves));
  }
  return sum.Total();
}

}  // namespace

/// The variables, each with the scale and the center of its deviations.
class Comoments::Columns {
public:
  Columns(std::span<const double* const> columns, std::size_t stride)
      : stride_(stride), deviations_(columns.size()) {
    for (const double* column : columns) variables_.push_back({column, 0, {}});
  }

  /// Takes the mean from the data.
  ScaledPair Center(std::size_t variable, std::size_t count) {
    Variable& v = variables_[variable];
    const ExactSum sum = SumOfColumn(v.column, stride_, count);
    v.exponent = ExponentOf(v, 0.0, count);
    v.center = CenterOf(sum, count, v.exponent);
    return sum.Mean(count);
  }
  void CenterAt(std::size_t variable, std::size_t count, double mean) {
    Variable& v = variables_[variable];
    v.exponent = ExponentOf(v, std::fabs(mean), count);
    v.center = {std::ldexp(mean, -v.exponent), {}};
  }

  int Exponent(std::size_t variable) const { return variables_[variable].exponent; }
  const Deviations& operator[](std::size_t variable) const { return deviations_[variable]; }

  /// Forms the deviations of observations from `start` on, `count` of them, with zeros up to an
  /// even number.
  void Take(std::size_t start, std::size_t count) {
    for (std::size_t i = 0; i < variables_.size(); ++i) {
      Take(variables_[i], start, count, deviations_[i]);
    }
  }

private:
  struct Variable {
    const double* column;
    int exponent;
    shr::Center center;
  };

  int ExponentOf(const Variable& v, double mean, std::size_t count) const {
    const double largest = std::max(LargestOfColumn(v.column, stride_, count), mean);
    return std::isfinite(largest) ? ScaleExponent(largest) : 0;
  }

  void Take(const Variable& v, std::size_t start, std::size_t count, Deviations& result) const {
    const double scale = std::ldexp(1.0, -v.exponent);
    const TwoLanes center(v.center.center);
    const LanePair rest{TwoLanes(v.center.rest.high), TwoLanes(v.center.rest.low)};
    double values[BLOCK];
    for (std::size_t i = 0; i < count; ++i) values[i] = v.column[(start + i) * stride_] * scale;
    if (count % 2 != 0) values[count] = 0.0;
    for (std::size_t i = 0; i < count; i += 2) {
      const LanePair deviation = LaneDeviation(TwoLanes::Load(values + i), center, rest);
      const LaneHalves halves(deviation.high);
      deviation.high.Store(result.high + i);
      deviation.low.Store(result.low + i);
      halves.high.Store(result.halfHigh + i);
      halves.low.Store(result.halfLow + i);
    }
    if (count % 2 == 0) return;
    result.high[count] = result.low[count] = 0.0;
    result.halfHigh[count] = result.halfLow[count] = 0.0;
  }

  std::size_t stride_;
  std::vector<Variable> variables_;
  std::vector<Deviations> deviations_;
};

Comoments::Comoments(std::span<const double* const> columns, std::size_t stride, std::size_t count)
    : means_(columns.size()), sums_(columns.size() * columns.size()) {
  Columns variables(columns, stride);
  for (std::size_t i = 0; i < means_.size(); ++i) means_[i] = variables.Center(i, count);
  AddProducts(variables, count);
}

Comoments::Comoments(std::span<const double* const> columns, std::size_t stride, std::size_t count,
                     std::span<const double> means)
    : means_(means.begin(), means.end()), sums_(columns.size() * columns.size()) {
  Columns variables(columns, stride);
  for (std::size_t i = 0; i < means_.size(); ++i) variables.CenterAt(i, count, means[i]);
  AddProducts(variables, count);
}

void Comoments::AddProducts(Columns& columns, std::size_t count) {
  for (std::size_t start = 0; start < count; start += BLOCK) {
    const std::size_t size = std::min(BLOCK, count - start);
    columns.Take(start, size);
    for (std::size_t a = 0; a < means_.size(); ++a) {
      for (std::size_t b = a; b < means_.size(); ++b) {
        ScaledPair& sum = sums_[Index(a, b)];
        sum = sum + SumOfProducts(columns[a], columns[b], size)
                        .Times2To(columns.Exponent(a) + columns.Exponent(b));
      }
    }
  }
}

ScaledPair MeanOfColumn(const double* column, std::size_t stride, std::size_t count) {
  return SumOfColumn(column, stride, count).Mean(count);
}

}  // namespace shr
