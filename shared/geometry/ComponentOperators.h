// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Arithmetic in place, which points and vectors of every dimension and precision have in common.
/// Not for direct use; include shared/geometry/Vec2.h or shared/geometry/Points.h.
///
/// A type derives from `ComponentOperators<itself, component type>` and supplies one function,
/// `ForEach`, which calls a callable once per component with that component of each value handed
/// in:
///
///     template <class Function, class... Vectors>
///     static constexpr void ForEach(Function function, Vectors&... vectors) {
///       function(vectors.x...);
///       function(vectors.y...);
///     }
///
/// Threads: no state.

#pragma once

#include <iosfwd>

#include "shared/Export.h"

namespace shr {

template <class V, class T>
struct ComponentOperators {
  constexpr V& operator+=(const V& b) {
    return Combine([](T& x, T y) { x += y; }, b);
  }
  constexpr V& operator-=(const V& b) {
    return Combine([](T& x, T y) { x -= y; }, b);
  }
  constexpr V& operator*=(const V& b) {
    return Combine([](T& x, T y) { x *= y; }, b);
  }
  constexpr V& operator/=(const V& b) {
    return Combine([](T& x, T y) { x /= y; }, b);
  }
  constexpr V& operator+=(T b) {
    return Combine([b](T& x) { x += b; });
  }
  constexpr V& operator-=(T b) {
    return Combine([b](T& x) { x -= b; });
  }
  constexpr V& operator*=(T b) {
    return Combine([b](T& x) { x *= b; });
  }
  constexpr V& operator/=(T b) {
    return Combine([b](T& x) { x /= b; });
  }

  /// Writes "(x, y ...)"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const V& vector) {
    const char* separator = "(";
    V::ForEach(
        [&](const T& x) {
          out << separator << x;
          separator = ", ";
        },
        vector);
    return out << ')';
  }

protected:
  constexpr V& Self() { return static_cast<V&>(*this); }
  constexpr const V& Self() const { return static_cast<const V&>(*this); }

  constexpr bool HasComponentsOf(const V& other) const {
    bool equal = true;
    V::ForEach([&equal](const T& x, const T& y) { equal = equal && x == y; }, Self(), other);
    return equal;
  }

private:
  template <class Function, class... Vectors>
  constexpr V& Combine(Function function, const Vectors&... others) {
    V::ForEach(function, Self(), others...);
    return Self();
  }
};

}  // namespace shr
