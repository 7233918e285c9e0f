// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/statistics/MultivariateStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/statistics/Comoments.h"
#include "shared/numerics/statistics/TiedRanks.h"

namespace shr {
namespace {

void Require(bool holds) {
  if (!holds) ThrowInternalError(SHARED_MODULE, L"Statistics", __LINE__);
}

/// Where a column begins, null in a matrix without rows.
const double* ColumnOf(const RMatrix& data, std::uint64_t j) {
  return data.empty() ? nullptr : data.data() + j;
}

std::vector<const double*> ColumnsOf(const RMatrix& data) {
  std::vector<const double*> columns(data.Columns());
  for (std::size_t j = 0; j < columns.size(); ++j) columns[j] = ColumnOf(data, j);
  return columns;
}

RMatrix CovarianceOf(const Comoments& moments, std::uint64_t count, std::uint64_t size) {
  const ScaledPair divisor(count > 0 ? static_cast<double>(count) - 1.0 : NOT_A_NUMBER);
  RMatrix covariance(size, size);
  for (std::uint64_t i = 0; i < size; ++i) {
    for (std::uint64_t j = i; j < size; ++j) {
      covariance(i, j) = covariance(j, i) = (moments.Sum(i, j) / divisor).ToDouble();
    }
  }
  return covariance;
}

}  // namespace

void Load(CMultivariateStatistics& statistics, const RMatrix& data) {
  CMultivariateStatistics result;
  result.count = data.Rows();
  result.mean = ComputeMean(data);
  result.covariance = ComputeCovariance(data);
  result.correlation = ComputeCorrelation(data, result.covariance);
  result.rankCorrelation = ComputeRankCorrelation(data);
  result.principalComponents = ComputePrincipalComponents(result.covariance);
  statistics = std::move(result);
}

RVector ComputeMean(const RMatrix& data) {
  RVector mean(data.Columns());
  for (std::uint64_t j = 0; j < mean.size(); ++j) {
    mean(j) = MeanOfColumn(ColumnOf(data, j), data.Columns(), data.Rows()).ToDouble();
  }
  return mean;
}

RMatrix ComputeCovariance(const RMatrix& data, const RVector& mean) {
  Require(mean.size() == data.Columns());
  const Comoments moments(ColumnsOf(data), data.Columns(), data.Rows(), std::span(mean));
  return CovarianceOf(moments, data.Rows(), data.Columns());
}

RMatrix ComputeCovariance(const RMatrix& data) {
  const Comoments moments(ColumnsOf(data), data.Columns(), data.Rows());
  return CovarianceOf(moments, data.Rows(), data.Columns());
}

RMatrix ComputeCorrelation(const RMatrix& /*data*/, const RMatrix& covariance) {
  Require(covariance.Rows() == covariance.Columns());
  const std::uint64_t size = covariance.Rows();
  RVector deviations(size);
  for (std::uint64_t i = 0; i < size; ++i) deviations(i) = std::sqrt(covariance(i, i));
  RMatrix correlation(size, size);
  for (std::uint64_t i = 0; i < size; ++i) {
    for (std::uint64_t j = 0; j < size; ++j) {
      correlation(i, j) = covariance(i, j) / (deviations(i) * deviations(j));
    }
  }
  return correlation;
}

RMatrix ComputeCorrelation(const RMatrix& data) {
  return ComputeCorrelation(data, ComputeCovariance(data));
}

RVector ComputeTiedRank(const RVector& values) {
  RVector ranks(values.size());
  FindTiedRanks(values.data(), 1, values.size(), ranks.data());
  return ranks;
}

RMatrix ComputeTiedRank(const RMatrix& data) {
  RMatrix ranks(data.Rows(), data.Columns());
  if (data.empty()) return ranks;
  for (std::uint64_t j = 0; j < data.Columns(); ++j) {
    FindTiedRanks(data.data() + j, data.Columns(), data.Rows(), ranks.data() + j);
  }
  return ranks;
}

RMatrix ComputeRankCorrelation(const RMatrix& data) {
  return ComputeCorrelation(ComputeTiedRank(data));
}

RMatrix ComputePrincipalComponents(const RMatrix& covariance) {
  Require(covariance.Rows() == covariance.Columns());
  if (covariance.empty()) return {};
  const std::uint64_t size = covariance.Rows();
  RMatrix vectors = covariance, result(size, size + 1);
  RVector values;
  if (!CyclicJacobi(vectors, values)) {
    std::fill(result.begin(), result.end(), NOT_A_NUMBER);
    return result;
  }
  for (std::uint64_t i = 0; i < size; ++i) {
    for (std::uint64_t j = 0; j < size; ++j) result(i, j) = vectors(i, j);
    result(i, size) = values(i);
  }
  return result;
}

}  // namespace shr
