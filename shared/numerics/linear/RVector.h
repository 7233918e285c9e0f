// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `RVector`, a vector of doubles whose length is chosen at run time. For matrices see
/// shared/numerics/linear/RMatrix.h, for what is done with both the other headers of this folder;
/// vectors of the plane and of space are in shared/geometry/.
///
///     RVector v{3.0, 4.0};
///     v(1) = 5.0;
///     for (double& element : v) element *= 2.0;
///     std::span<const double> all = v;             // also a view for the standard's algorithms
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <span>
#include <utility>

#include "shared/Export.h"

namespace shr {

/// A value: copies are deep, a moved-from vector is empty. Elements are not bounds-checked.
class RVector {
public:
  using value_type = double;
  using iterator = double*;
  using const_iterator = const double*;

  RVector() = default;
  /// Makes `size` elements that are not initialised. Errors: `std::bad_alloc`.
  explicit RVector(std::uint64_t size) : size_(size), elements_(Allocate(size)) {}
  /// Braces hold elements: `RVector{3.0}` has one, `RVector(3)` three.
  RVector(std::initializer_list<double> elements)
      : RVector(std::span<const double>(elements.begin(), elements.size())) {}
  explicit RVector(std::span<const double> elements) : RVector(elements.size()) {
    std::copy(elements.begin(), elements.end(), begin());
  }
  RVector(const RVector& other) : RVector(std::span<const double>(other)) {}
  RVector(RVector&& other) noexcept
      : size_(std::exchange(other.size_, 0)), elements_(std::move(other.elements_)) {}
  ~RVector() = default;

  /// Errors: `std::bad_alloc`, the vector is as before.
  RVector& operator=(const RVector& other) {
    if (this == &other) return *this;
    Resize(other.size_);
    std::copy(other.begin(), other.end(), begin());
    return *this;
  }
  RVector& operator=(RVector&& other) noexcept {
    size_ = std::exchange(other.size_, 0);
    elements_ = std::move(other.elements_);
    return *this;
  }

  /// Gives the vector `size` elements. Where that is a change, they are not initialised and the old
  /// ones are lost; otherwise nothing happens. Errors: `std::bad_alloc`, the vector is as before.
  void Resize(std::uint64_t size) {
    if (size == size_) return;
    elements_ = Allocate(size);
    size_ = size;
  }
  /// Frees all elements.
  void Clear() noexcept {
    size_ = 0;
    elements_.reset();
  }

  std::uint64_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }
  bool IsNull() const noexcept { return empty(); }

  /// Return element `i`. Requires: i < size().
  double& operator()(std::uint64_t i) noexcept { return elements_[i]; }
  double operator()(std::uint64_t i) const noexcept { return elements_[i]; }
  /// Return where element `i` is. Requires: i <= size().
  double* Base(std::uint64_t i = 0) noexcept { return elements_.get() + i; }
  const double* Base(std::uint64_t i = 0) const noexcept { return elements_.get() + i; }

  /// Return the first element's address, null for an empty vector. Valid until the size changes.
  double* data() noexcept { return elements_.get(); }
  const double* data() const noexcept { return elements_.get(); }
  double* begin() noexcept { return data(); }
  const double* begin() const noexcept { return data(); }
  double* end() noexcept { return data() + size_; }
  const double* end() const noexcept { return data() + size_; }

  // A std::span<double> or std::span<const double> is made of a vector as of any other range.

private:
  static std::unique_ptr<double[]> Allocate(std::uint64_t size) {
    return std::unique_ptr<double[]>(size == 0 ? nullptr : new double[size]);
  }

  std::uint64_t size_ = 0;
  std::unique_ptr<double[]> elements_;
};

/// Writes "[1, 2.5, 3]" with the stream's precision and format; the width is ignored.
SHARED_API std::ostream& operator<<(std::ostream& stream, const RVector& vector);

}  // namespace shr
