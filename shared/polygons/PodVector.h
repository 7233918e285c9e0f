// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CPodVector`: a vector of plain values that keeps the first few inside the object and allocates
/// only beyond them.
///
/// For buffers that are usually short, such as the contours a clipper hands on. For anything that
/// is kept or copied often use `std::vector`.
///
///     CPodVector<Vec2d, 32> piece;                 // no allocation up to 32 points
///     piece.push_back(Vec2d(1.0, 2.0));
///     piece.append(points);                        // a span
///     std::span<const Vec2d> view = piece;
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <span>
#include <type_traits>

#include "shared/Export.h"

namespace shr {

/// A vector with the names of `std::vector` and room for `INLINE_COUNT` elements of its own.
/// Elements are copied as bytes and new ones have no value until one is stored. References and
/// iterators are valid until the next change of size; they do not survive a move of the object.
/// Errors: `std::bad_alloc`, the object unchanged. Cost: appending is O(1) amortised.
template <class T, std::size_t INLINE_COUNT>
class CPodVector {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
  static_assert(INLINE_COUNT > 0 && alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

public:
  using value_type = T;
  using size_type = std::size_t;
  using iterator = T*;
  using const_iterator = const T*;

  CPodVector() noexcept {}
  explicit CPodVector(std::span<const T> values) { append(values); }
  CPodVector(const CPodVector& other) { append(other.Values()); }
  /// The source is empty afterwards.
  CPodVector(CPodVector&& other) noexcept { Take(other); }
  CPodVector& operator=(const CPodVector& other) {
    if (this == &other) return *this;
    reserve(other.size_);
    CopyBytes(data_, other.data_, other.size_);
    size_ = other.size_;
    return *this;
  }
  CPodVector& operator=(CPodVector&& other) noexcept {
    if (this == &other) return *this;
    Free();
    Take(other);
    return *this;
  }
  ~CPodVector() { Free(); }

  size_type size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }
  size_type capacity() const noexcept { return capacity_; }
  T* data() noexcept { return data_; }
  const T* data() const noexcept { return data_; }
  iterator begin() noexcept { return data_; }
  iterator end() noexcept { return data_ + size_; }
  const_iterator begin() const noexcept { return data_; }
  const_iterator end() const noexcept { return data_ + size_; }

  /// The index is below `size()`; `front` and `back` require an element.
  T& operator[](size_type index) {
    assert(index < size_);
    return data_[index];
  }
  const T& operator[](size_type index) const {
    assert(index < size_);
    return data_[index];
  }
  T& front() { return (*this)[0]; }
  const T& front() const { return (*this)[0]; }
  T& back() { return (*this)[size_ - 1]; }
  const T& back() const { return (*this)[size_ - 1]; }

  /// Keeps the memory.
  void clear() noexcept { size_ = 0; }
  void reserve(size_type capacity) {
    if (capacity > capacity_) Reallocate(capacity);
  }
  void push_back(const T& value) {
    const T copy = value;  // the value may be an element
    if (size_ == capacity_) Grow(1);
    data_[size_++] = copy;
  }
  void pop_back() {
    assert(size_ > 0);
    --size_;
  }

  /// Appends the values, which must not lie in this vector.
  void append(std::span<const T> values) {
    CopyBytes(extend(values.size()), values.data(), values.size());
  }
  /// Appends `count` elements without a value and returns the first of them.
  T* extend(size_type count) {
    if (count > capacity_ - size_) Grow(count);
    T* first = data_ + size_;
    size_ += count;
    return first;
  }
  /// Drops the elements from `size` on; there are at least so many.
  void truncate(size_type size) {
    assert(size <= size_);
    size_ = size;
  }

private:
  std::span<const T> Values() const { return {data_, size_}; }
  T* Inline() noexcept { return reinterpret_cast<T*>(inline_); }
  bool IsInline() const noexcept { return capacity_ == INLINE_COUNT; }

  static void CopyBytes(T* target, const T* source, size_type count) {
    if (count > 0) std::memcpy(static_cast<void*>(target), source, count * sizeof(T));
  }

  void Grow(size_type count) {
    constexpr size_type LIMIT = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T);
    if (count > LIMIT - size_) throw std::bad_alloc();
    const size_type needed = size_ + count;
    const size_type doubled = capacity_ <= LIMIT / 2 ? 2 * capacity_ : LIMIT;
    Reallocate(needed > doubled ? needed : doubled);
  }
  void Reallocate(size_type capacity) {
    if (capacity > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) throw std::bad_alloc();
    T* const memory = static_cast<T*>(::operator new(capacity * sizeof(T)));
    CopyBytes(memory, data_, size_);
    Free();
    data_ = memory;
    capacity_ = capacity;
  }
  void Free() noexcept {
    if (!IsInline()) ::operator delete(data_);
  }
  /// Takes over the values of `other`; this object owns no memory.
  void Take(CPodVector& other) noexcept {
    const bool isInline = other.IsInline();
    data_ = isInline ? Inline() : other.data_;
    size_ = other.size_;
    capacity_ = other.capacity_;
    if (isInline) CopyBytes(data_, other.data_, size_);
    other.data_ = other.Inline();
    other.size_ = 0;
    other.capacity_ = INLINE_COUNT;
  }

  T* data_ = Inline();
  size_type size_ = 0;
  size_type capacity_ = INLINE_COUNT;
  alignas(T) std::byte inline_[INLINE_COUNT * sizeof(T)];
};

}  // namespace shr
