// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Loops over arrays of points of the plane, shared by the transform matrices.
///
///     TransformPlane(PlaneMap<double>{...}, source, destination, count);
///
/// Threads: no state.

#pragma once

#include <cstddef>

#include "shared/geometry/RoundToLong.h"
#include "shared/geometry/Vec3.h"

namespace shr {

// The functions are of each source that includes this. On Windows g++ takes the registers that its
// own copy of a common function uses for those of the copy that is linked (-fipa-ra), which crashes
// where the copies differ.

/// Makes a point of any of the types that matrices store; whole numbers by `RoundToLong`.
template <class Destination, class T>
static Destination MakePoint(T x, T y) {
  if constexpr (std::same_as<Destination, Vec2i> || std::same_as<Destination, POINT>) {
    return Destination{RoundToLong(x), RoundToLong(y)};
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
static void ForEachPoint(const Source* source, Destination* destination, std::size_t count,
                         Map map) {
  for (std::size_t i = 0; i < count; ++i) {
    destination[i] = map(static_cast<T>(source[i].x), static_cast<T>(source[i].y));
  }
}

template <class T, class Source, class Destination>
static void TransformPlane(const PlaneMap<T>& m, const Source* source, Destination* destination,
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
