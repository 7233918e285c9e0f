// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How the columns of numbers hang together: correlations and principal components of the rows that
/// have all of them.
///
///     const Relations relations = FindRelations(table);
///     if (relations.columns.size() > 1) Draw(relations.pearson);

#pragma once

#include <cstddef>
#include <vector>

#include "examples/datareport/DataTable.h"

namespace datareport {

/// Square matrices are row by row.
struct Relations {
  std::vector<std::size_t> columns;         ///< of the table; at least two, or none
  std::vector<std::vector<double>> values;  ///< of each column, in the complete rows
  std::size_t rows = 0;                     ///< complete ones of the sample
  std::size_t leftOut = 0;                  ///< columns of numbers that are not among them
  std::vector<double> pearson;
  std::vector<double> spearman;

  std::vector<std::size_t> components;  ///< of the columns: those that vary
  std::vector<double> eigenvalues;      ///< of their correlation matrix, decreasing; empty if none
  std::vector<double> loadings;         ///< row: column, column: component; the largest is positive
};

/// Finds the relations of the columns of numbers of which at most a fifth of the sample is missing,
/// at most 20 of them.
Relations FindRelations(const DataTable& table);

}  // namespace datareport
