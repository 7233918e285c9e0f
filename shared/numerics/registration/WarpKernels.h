// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Loops of the warps over arrays, by the widest vectors of the processor. Internal.
///
///     MapBySpline(RadialKernel::ThinPlate, terms, source, destination, count);
///
/// Threads: no state.

#pragma once

#include <cstddef>

#include "shared/numerics/registration/WarpMath.h"

namespace shr {

// Points are two numbers each, x and y. Source and destination are the same array or do not
// overlap. The bits do not depend on the processor.

/// The radial function of one squared distance.
double RadialFunction(RadialKernel kernel, double squared);
/// The radial function of the distances from (u, v) to `count` points.
void RadialRow(RadialKernel kernel, double u, double v, const double* pointU, const double* pointV,
               std::size_t count, double* row);
void MapBySpline(RadialKernel kernel, const SplineTerms& terms, const double* source,
                 double* destination, std::size_t count);
void MapByDistance(const DistanceTerms& terms, const double* source, double* destination,
                   std::size_t count);

// For processors with AVX2. All return how much they did, a multiple of 8 that leaves at most 7.

std::size_t RadialRowAvx2(RadialKernel kernel, double u, double v, const double* pointU,
                          const double* pointV, std::size_t count, double* row);
std::size_t MapBySplineAvx2(RadialKernel kernel, const SplineTerms& terms, const double* source,
                            double* destination, std::size_t count);
std::size_t MapByDistanceAvx2(const DistanceTerms& terms, const double* source, double* destination,
                              std::size_t count);
/// Logarithms of positive normal numbers; of others any number.
std::size_t LogAvx2(const double* x, double* results, std::size_t count);
/// Powers for x from -708 to 709; of others any number.
std::size_t ExpAvx2(const double* x, double* results, std::size_t count);

}  // namespace shr
