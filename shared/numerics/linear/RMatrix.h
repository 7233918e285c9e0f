// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `RMatrix`, a dense matrix of doubles whose shape is chosen at run time, stored row by row. For
/// the matrices of transforms see shared/geometry/Mat4.h; for what is done with matrices the other
/// headers of this folder.
///
///     RMatrix m{{1.0, 2.0}, {3.0, 4.0}};
///     m(1, 0) = 5.0;
///     std::span<double> second = m.Row(1);         // 5, 4
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "shared/Export.h"

namespace shr {

/// A value: copies are deep, a moved-from matrix is 0 x 0. Element (i, j) is stored at position
/// i x columns + j. A matrix of no rows may still have columns and the other way round. Elements
/// are not bounds-checked.
class RMatrix {
public:
  using value_type = double;
  using iterator = double*;
  using const_iterator = const double*;

  RMatrix() = default;
  /// Makes rows x columns elements that are not initialised. Errors: `std::bad_alloc`.
  RMatrix(std::uint64_t rows, std::uint64_t columns)
      : rows_(rows), columns_(columns), elements_(Allocate(Count(rows, columns))) {}
  /// A list for each row. A row that is shorter than the longest ends with zeros.
  RMatrix(std::initializer_list<std::initializer_list<double>> rows)
      : RMatrix(rows.size(), Longest(rows)) {
    double* next = data();
    for (const auto& row : rows) {
      next = std::fill_n(std::copy(row.begin(), row.end(), next), columns_ - row.size(), 0.0);
    }
  }
  RMatrix(const RMatrix& other) : RMatrix(other.rows_, other.columns_) {
    std::copy(other.begin(), other.end(), begin());
  }
  RMatrix(RMatrix&& other) noexcept
      : rows_(std::exchange(other.rows_, 0)),
        columns_(std::exchange(other.columns_, 0)),
        elements_(std::move(other.elements_)) {}
  ~RMatrix() = default;

  /// Errors: `std::bad_alloc`, the matrix is as before.
  RMatrix& operator=(const RMatrix& other) {
    if (this == &other) return *this;
    Resize(other.rows_, other.columns_);
    std::copy(other.begin(), other.end(), begin());
    return *this;
  }
  RMatrix& operator=(RMatrix&& other) noexcept {
    rows_ = std::exchange(other.rows_, 0);
    columns_ = std::exchange(other.columns_, 0);
    elements_ = std::move(other.elements_);
    return *this;
  }

  /// Gives the matrix a shape. Where the number of elements changes, they are not initialised and
  /// the old ones are lost; otherwise they stay where they are in storage. Errors:
  /// `std::bad_alloc`, the matrix is as before.
  void Resize(std::uint64_t rows, std::uint64_t columns) {
    const std::uint64_t count = Count(rows, columns);
    if (count != size()) elements_ = Allocate(count);
    rows_ = rows;
    columns_ = columns;
  }
  /// Frees all elements; the matrix is 0 x 0.
  void Clear() noexcept {
    rows_ = columns_ = 0;
    elements_.reset();
  }

  std::uint64_t Rows() const noexcept { return rows_; }
  std::uint64_t Columns() const noexcept { return columns_; }
  /// Returns rows x columns.
  std::uint64_t size() const noexcept { return rows_ * columns_; }
  bool empty() const noexcept { return size() == 0; }
  bool IsNull() const noexcept { return empty(); }

  /// Return element (i, j). Requires: i < Rows(), j < Columns().
  double& operator()(std::uint64_t i, std::uint64_t j) noexcept {
    return elements_[i * columns_ + j];
  }
  double operator()(std::uint64_t i, std::uint64_t j) const noexcept {
    return elements_[i * columns_ + j];
  }
  /// Return where element (i, j) is.
  double* Base(std::uint64_t i, std::uint64_t j) noexcept { return data() + i * columns_ + j; }
  const double* Base(std::uint64_t i, std::uint64_t j) const noexcept {
    return data() + i * columns_ + j;
  }
  /// Return where the first element is, null for an empty matrix.
  double* Base() noexcept { return data(); }
  const double* Base() const noexcept { return data(); }
  /// Return a view of row `i`. Requires: i < Rows().
  std::span<double> Row(std::uint64_t i) noexcept { return {Base(i, 0), columns_}; }
  std::span<const double> Row(std::uint64_t i) const noexcept { return {Base(i, 0), columns_}; }

  /// All elements, row by row. Valid until the number of elements changes.
  double* data() noexcept { return elements_.get(); }
  const double* data() const noexcept { return elements_.get(); }
  double* begin() noexcept { return data(); }
  const double* begin() const noexcept { return data(); }
  double* end() noexcept { return data() + size(); }
  const double* end() const noexcept { return data() + size(); }

private:
  static std::uint64_t Count(std::uint64_t rows, std::uint64_t columns) {
    if (columns != 0 && rows > std::numeric_limits<std::uint64_t>::max() / columns) {
      throw std::bad_array_new_length();
    }
    return rows * columns;
  }
  static std::uint64_t Longest(std::initializer_list<std::initializer_list<double>> rows) {
    std::uint64_t longest = 0;
    for (const auto& row : rows) longest = std::max<std::uint64_t>(longest, row.size());
    return longest;
  }
  static std::unique_ptr<double[]> Allocate(std::uint64_t count) {
    return std::unique_ptr<double[]>(count == 0 ? nullptr : new double[count]);
  }

  std::uint64_t rows_ = 0;
  std::uint64_t columns_ = 0;
  std::unique_ptr<double[]> elements_;
};

/// Writes a line for each row, "[1, 2]\n[3, 4]\n", with the stream's precision and format; the
/// width is ignored.
SHARED_API std::ostream& operator<<(std::ostream& stream, const RMatrix& matrix);

}  // namespace shr
