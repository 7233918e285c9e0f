// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the floating-point colors have in common: arithmetic, clamping, comparison and the methods
/// of interpolation. Not for direct use; include shared/color/Color3f.h or shared/color/Color4f.h.
///
/// A color type derives from `FloatColorOperators<itself>` and supplies `ForEach`, which calls a
/// callable once per channel with that channel of each color handed in, as the vectors do
/// (shared/geometry/VectorOperators.h):
///
///     Color3f sum = Color3f::Red * 0.5f + Color3f::Blue * 0.5f;
///     sum.Clamp();
///
/// Threads: no state.

#pragma once

#include <iosfwd>

#include "shared/color/Color4b.h"

namespace shr {

template <class C>
struct FloatColorOperators {
  /// The codes of all color types are the same, so that one stored setting serves them all.
  using InterpMethod = Color4b::InterpMethod;
  using enum Color4b::InterpMethod;

  constexpr C& operator+=(const C& b) {
    return Apply([](float& x, float y) { x += y; }, b);
  }
  constexpr C& operator-=(const C& b) {
    return Apply([](float& x, float y) { x -= y; }, b);
  }
  constexpr C& operator*=(float b) {
    return Apply([b](float& x) { x *= b; });
  }
  constexpr C& operator/=(float b) {
    return Apply([b](float& x) { x /= b; });
  }

  /// Channel by channel, alpha included; nothing is clamped.
  friend constexpr C operator+(C a, const C& b) { return a += b; }
  friend constexpr C operator-(C a, const C& b) { return a -= b; }
  friend constexpr C operator*(C a, float b) { return a *= b; }
  friend constexpr C operator*(float a, C b) { return b *= a; }
  friend constexpr C operator/(C a, float b) { return a /= b; }

  /// Exact, in all channels.
  friend constexpr bool operator==(const C& a, const C& b) {
    bool equal = true;
    C::ForEach([&equal](float x, float y) { equal = equal && x == y; }, a, b);
    return equal;
  }

  /// Brings every channel into 0 to 1; a NaN becomes 0.
  constexpr void Clamp() {
    Apply([](float& x) { x = x > 0.0f ? (x < 1.0f ? x : 1.0f) : 0.0f; });
  }

  /// Stores what `Interp` returns.
  void Interpolate(const C& a, const C& b, double t, InterpMethod method) {
    Self() = C::Interp(a, b, t, method);
  }

  /// Writes "(red, green, blue ...)"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const C& color) {
    const char* separator = "(";
    C::ForEach(
        [&](float x) {
          out << separator << x;
          separator = ", ";
        },
        color);
    return out << ')';
  }

private:
  constexpr C& Self() { return static_cast<C&>(*this); }

  template <class Function, class... Colors>
  constexpr C& Apply(Function function, const Colors&... others) {
    C::ForEach(function, Self(), others...);
    return Self();
  }
};

}  // namespace shr
