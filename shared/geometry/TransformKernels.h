// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Loops over arrays of points of the plane and the rounding of transformed points, shared by the
/// transform matrices.
///
///     TransformPlane(PlaneMap<double>{...}, source, destination, count);
///
/// Threads: no state.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "shared/geometry/Vec3.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {

/// Rounds to the nearest integer, halves up, and stops at the ends of the range; NaN gives 0.
inline int RoundToInt(double value) {
  constexpr double LOWEST = std::numeric_limits<int>::min();
  constexpr double HIGHEST = std::numeric_limits<int>::max();
  if (value != value) return 0;
  const double limited = std::clamp(value, LOWEST, HIGHEST);
  const double floor = std::floor(limited);
  return static_cast<int>(limited - floor >= 0.5 ? floor + 1.0 : floor);
}

/// Makes a point of any of the types that matrices store.
template <class Destination, class T>
Destination MakePoint(T x, T y) {
  if constexpr (std::same_as<Destination, Vec2i> || std::same_as<Destination, POINT>) {
    return Destination{RoundToInt(x), RoundToInt(y)};
  } else {
    using U = decltype(Destination::x);
    return Destination(static_cast<U>(x), static_cast<U>(y));
  }
}

/// The nine numbers that map a point (x, y, 1) to (x', y', w').
template <class T>
struct PlaneMap {
  T xx, xy, xw;
  T yx, yy, yw;
  T tx, ty, tw;

  bool IsIdentity() const {
    return IsAffine() && xx == 1 && xy == 0 && yx == 0 && yy == 1 && tx == 0 && ty == 0;
  }
  bool IsAffine() const { return xw == 0 && yw == 0 && tw == 1; }
};

/// Calls `map` with x and y of each source point as `T`; it returns the destination point.
template <class T, class Source, class Destination, class Map>
void ForEachPoint(const Source* source, Destination* destination, std::size_t count, Map map) {
  for (std::size_t i = 0; i < count; ++i) {
    destination[i] = map(static_cast<T>(source[i].x), static_cast<T>(source[i].y));
  }
}

template <class T, class Source, class Destination>
void TransformPlane(const PlaneMap<T>& m, const Source* source, Destination* destination,
                    std::size_t count) {
  const PlaneMap<T> map = m;  // a copy that no store to the destination can change
  if (map.IsIdentity()) {
    if (static_cast<const void*>(source) == destination) return;
    ForEachPoint<T>(source, destination, count, MakePoint<Destination, T>);
  } else if (map.IsAffine()) {
    ForEachPoint<T>(source, destination, count, [map](T x, T y) {
      return MakePoint<Destination>(x * map.xx + y * map.yx + map.tx,
                                    x * map.xy + y * map.yy + map.ty);
    });
  } else {
    ForEachPoint<T>(source, destination, count, [map](T x, T y) {
      const T w = x * map.xw + y * map.yw + map.tw;
      return MakePoint<Destination>((x * map.xx + y * map.yx + map.tx) / w,
                                    (x * map.xy + y * map.yy + map.ty) / w);
    });
  }
}

}  // namespace shr
