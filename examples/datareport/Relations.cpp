// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/Relations.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "shared/numerics/statistics/MultivariateStatistics.h"

namespace datareport {

using namespace shr;

namespace {

constexpr std::size_t MOST_RELATED = 20;
constexpr std::size_t MISSING_PART = 5;  // one of so many
constexpr std::size_t FEWEST_ROWS = 3;

std::size_t CountMissing(const std::vector<double>& values) {
  return static_cast<std::size_t>(
      std::count_if(values.begin(), values.end(), [](double value) { return std::isnan(value); }));
}

/// Keeps the rows in which no value is missing.
void KeepCompleteRows(Relations& relations) {
  const std::size_t rows = relations.values.empty() ? 0 : relations.values[0].size();
  for (std::size_t row = 0; row < rows; ++row) {
    const bool isComplete =
        std::none_of(relations.values.begin(), relations.values.end(),
                     [&](const std::vector<double>& column) { return std::isnan(column[row]); });
    if (!isComplete) continue;
    for (std::vector<double>& column : relations.values) column[relations.rows] = column[row];
    ++relations.rows;
  }
  for (std::vector<double>& column : relations.values) column.resize(relations.rows);
}

/// Returns the values as the library takes them: rows are observations.
RMatrix MatrixOf(const Relations& relations) {
  RMatrix data(relations.rows, relations.columns.size());
  for (std::size_t i = 0; i < relations.rows; ++i) {
    for (std::size_t j = 0; j < relations.columns.size(); ++j) data(i, j) = relations.values[j][i];
  }
  return data;
}

/// Turns each component so that its largest element is positive: its sign says nothing.
void ChooseSigns(RMatrix& components) {
  for (std::uint64_t j = 0; j < components.Rows(); ++j) {
    double largest = 0;
    for (std::uint64_t i = 0; i < components.Rows(); ++i) {
      if (std::abs(components(i, j)) > std::abs(largest)) largest = components(i, j);
    }
    if (largest >= 0) continue;
    for (std::uint64_t i = 0; i < components.Rows(); ++i) components(i, j) = -components(i, j);
  }
}

/// Principal components of the standardised columns. Units differ, so that covariances would
/// compare what cannot be compared.
void FindComponents(Relations& relations, const RMatrix& correlation) {
  for (std::size_t i = 0; i < relations.columns.size(); ++i) {
    // The correlation of what does not vary is no number.
    if (std::isfinite(correlation(i, i))) relations.components.push_back(i);
  }
  const std::size_t size = relations.components.size();
  if (size < 2) return;
  RMatrix varying(size, size);
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j < size; ++j) {
      varying(i, j) = correlation(relations.components[i], relations.components[j]);
    }
  }
  if (!std::all_of(varying.begin(), varying.end(), [](double r) { return std::isfinite(r); })) {
    return;
  }
  // The components as columns, and behind them a column of the eigenvalues.
  RMatrix components = ComputePrincipalComponents(varying);
  ChooseSigns(components);
  for (std::size_t i = 0; i < size; ++i) {
    // Rounding may leave a trace below zero.
    relations.eigenvalues.push_back(std::max(0.0, components(i, size)));
    for (std::size_t j = 0; j < size; ++j) relations.loadings.push_back(components(i, j));
  }
}

}  // namespace

Relations FindRelations(const DataTable& table) {
  Relations relations;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    if (table.columns[i].Kind() != ColumnKind::Numbers) continue;
    std::vector<double> values = table.Sample(i);
    const bool isMostlyThere = CountMissing(values) * MISSING_PART <= values.size();
    if (!isMostlyThere || relations.columns.size() == MOST_RELATED) {
      ++relations.leftOut;
      continue;
    }
    relations.columns.push_back(i);
    relations.values.push_back(std::move(values));
  }
  KeepCompleteRows(relations);
  if (relations.columns.size() < 2 || relations.rows < FEWEST_ROWS) {
    relations.columns.clear();
    relations.values.clear();
    return relations;
  }
  const RMatrix data = MatrixOf(relations);
  const RMatrix correlation = ComputeCorrelation(data);
  const RMatrix ranks = ComputeRankCorrelation(data);
  relations.pearson.assign(correlation.begin(), correlation.end());
  relations.spearman.assign(ranks.begin(), ranks.end());
  FindComponents(relations, correlation);
  return relations;
}

}  // namespace datareport
