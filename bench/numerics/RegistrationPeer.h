// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Warps of another library behind one interface.
///
///     const auto peer = MakeGdalSpline(from, to);   // null where there is no GDAL

#pragma once

#include <memory>
#include <vector>

#include "shared/geometry/Points.h"

namespace registration_bench {

class Peer {
public:
  virtual ~Peer() = default;
  /// Maps points in place.
  virtual void Transform(std::vector<double>& x, std::vector<double>& y) const = 0;
};

bool HasGdal();
std::unique_ptr<Peer> MakeGdalSpline(const shr::RPoints& from, const shr::RPoints& to);
/// Of order 1 or 2.
std::unique_ptr<Peer> MakeGdalPolynomial(const shr::RPoints& from, const shr::RPoints& to,
                                         int order);

}  // namespace registration_bench
