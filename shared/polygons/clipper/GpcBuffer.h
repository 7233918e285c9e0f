// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The arrays that the polygon clipper works on, and the arithmetic that its stages share. For the
/// library's own use.
///
/// Threads: a buffer serves one thread at a time.

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"

namespace shr::gpc {

using Index = std::uint32_t;
inline constexpr Index NONE = 0xFFFFFFFFu;

/// The unit that the clipper's errors name.
inline constexpr const wchar_t* UNIT = L"Gpc";

/// The size of all buffers of the calling thread.
std::size_t& HeldBytes();

/// A growing array of plain values from the clipper's allocation routine. It keeps its memory when
/// it is cleared, so that the next call touches no fresh pages.
template <class T>
class Buffer {
  static_assert(std::is_trivially_copyable_v<T>);

public:
  explicit Buffer(const wchar_t* label) : label_(label) {}
  ~Buffer() {
    HeldBytes() -= Bytes();
    GpcFree(data_);
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  T* Data() { return data_; }
  const T* Data() const { return data_; }
  Index Size() const { return size_; }
  bool IsEmpty() const { return size_ == 0; }
  T& operator[](Index index) { return data_[index]; }
  const T& operator[](Index index) const { return data_[index]; }
  T& Back() { return data_[size_ - 1]; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }

  void Clear() { size_ = 0; }
  void Truncate(Index size) { size_ = size; }
  void Append(const T& value) {
    if (size_ == capacity_) {
      const T copy = value;  // may lie in this buffer
      Grow(size_ + 1);
      data_[size_++] = copy;
      return;
    }
    data_[size_++] = value;
  }
  /// Sets the size. New elements are not initialised.
  void Resize(Index size) {
    Reserve(size);
    size_ = size;
  }
  /// Appends elements that are not initialised and returns the first.
  T* Extend(Index count) {
    Reserve(size_ + count);
    T* first = data_ + size_;
    size_ += count;
    return first;
  }
  void Reserve(Index capacity) {
    if (capacity > capacity_) Grow(capacity);
  }
  void Fill(Index size, const T& value) {
    Resize(size);
    for (Index i = 0; i < size; ++i) data_[i] = value;
  }
  std::size_t Bytes() const { return capacity_ * sizeof(T); }
  void Swap(Buffer& other) {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

private:
  void Grow(Index needed) {
    const Index doubled = capacity_ + capacity_ / 2 + 16;
    const Index capacity = needed > doubled ? needed : doubled;
    T* data = static_cast<T*>(GpcAlloc(capacity * sizeof(T), UNIT, __LINE__, label_));
    if (size_ != 0) std::memcpy(static_cast<void*>(data), data_, size_ * sizeof(T));
    GpcFree(data_);
    HeldBytes() += (capacity - capacity_) * sizeof(T);
    data_ = data;
    capacity_ = capacity;
  }

  T* data_ = nullptr;
  Index size_ = 0;
  Index capacity_ = 0;
  const wchar_t* label_;
};

struct Box {
  double xMin, yMin, xMax, yMax;
};

inline double Length1(const Vec2d& a) {
  return std::abs(a.x) + std::abs(a.y);
}
inline bool IsSame(const Vec2d& a, const Vec2d& b) {
  return a.x == b.x && a.y == b.y;
}

}  // namespace shr::gpc
