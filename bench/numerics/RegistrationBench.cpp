// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Thin-plate splines: calibration on 10 to 1,000 control points and transforms of 10 thousand to 1
// million points by 100 of them, beside GDAL's; and logarithms of arrays beside those of the C
// library. Before anything is timed, splines and polynomials of first and second order must agree
// with GDAL's on points in and around the control points.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <vector>

#include "bench/numerics/RegistrationPeer.h"
#include "shared/numerics/registration/ImageRegistration.h"
#include "shared/numerics/registration/PortableMath.h"

namespace {

using registration_bench::Peer;
using shr::RPoint;
using shr::RPoints;
using shr::WarpingMethod;

constexpr std::size_t CONTROL_POINTS = 100;
/// What contenders may differ by, in parts of the extent of the map.
constexpr double TOLERANCE = 1e-7;
constexpr double MAP_EXTENT = 15000.0;

struct Pairs {
  RPoints from;
  RPoints to;
};

RPoints RandomPoints(std::size_t count, unsigned int seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> coordinate(0.0, 5000.0);
  RPoints points(count);
  for (RPoint& point : points) point = RPoint(coordinate(random), coordinate(random));
  return points;
}

/// A scanned map: a turned and stretched image, distorted by some dozens of metres.
Pairs ControlPoints(std::size_t count) {
  Pairs pairs{RandomPoints(count, 1), {}};
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> error(-25.0, 25.0);
  for (const RPoint& p : pairs.from) {
    pairs.to.emplace_back(4e5 + 3.0 * p.x - 0.2 * p.y + error(random),
                          3e5 - 0.1 * p.x - 2.0 * p.y + error(random));
  }
  return pairs;
}

void RequireAgreement(const char* what, const Peer* peer, const shr::CImageRegistration& ours) {
  const RPoints points = RandomPoints(1000, 3);
  std::vector<double> x, y;
  for (const RPoint& point : points) {
    x.push_back(point.x);
    y.push_back(point.y);
  }
  double largest = HUGE_VAL;
  if (peer != nullptr) {
    peer->Transform(x, y);
    largest = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const RPoint p = ours.Transform(points[i]);
      largest = std::max(largest, std::hypot(p.x - x[i], p.y - y[i]));
    }
  }
  if (largest <= TOLERANCE * MAP_EXTENT) return;
  std::fprintf(stderr, "%s: the contenders differ by %g\n", what, largest);
  std::abort();
}

void RequireAgreementWithGdal(std::size_t count) {
  if (!registration_bench::HasGdal()) return;
  const Pairs pairs = ControlPoints(count);
  const auto check = [&](const char* what, WarpingMethod method, const auto& peer) {
    shr::CImageRegistration ours;
    if (ours.Calibrate(pairs.from, pairs.to, method) != method) std::abort();
    RequireAgreement(what, peer.get(), ours);
  };
  check("spline", shr::WarpThinPlateSpline,
        registration_bench::MakeGdalSpline(pairs.from, pairs.to));
  check("first order", shr::WarpGeneralLinear,
        registration_bench::MakeGdalPolynomial(pairs.from, pairs.to, 1));
  check("second order", shr::WarpQuadraticPolynomial,
        registration_bench::MakeGdalPolynomial(pairs.from, pairs.to, 2));
}

void CalibrateOurs(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  RequireAgreementWithGdal(count);
  const Pairs pairs = ControlPoints(count);
  for (auto _ : state) {
    shr::CImageRegistration registration;
    benchmark::DoNotOptimize(
        registration.Calibrate(pairs.from, pairs.to, shr::WarpThinPlateSpline));
  }
}

void CalibrateGdal(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const Pairs pairs = ControlPoints(count);
  for (auto _ : state) {
    benchmark::DoNotOptimize(registration_bench::MakeGdalSpline(pairs.from, pairs.to).get());
  }
}

void TransformOurs(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  RequireAgreementWithGdal(CONTROL_POINTS);
  const Pairs pairs = ControlPoints(CONTROL_POINTS);
  shr::CImageRegistration registration;
  registration.Calibrate(pairs.from, pairs.to, shr::WarpThinPlateSpline);
  const RPoints points = RandomPoints(count, 4);
  RPoints results(count);
  for (auto _ : state) {
    registration.Transform(points, results);
    benchmark::DoNotOptimize(results.data());
  }
}

void TransformGdal(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const Pairs pairs = ControlPoints(CONTROL_POINTS);
  const auto peer = registration_bench::MakeGdalSpline(pairs.from, pairs.to);
  std::vector<double> pointX, pointY, x, y;
  for (const RPoint& point : RandomPoints(count, 4)) {
    pointX.push_back(point.x);
    pointY.push_back(point.y);
  }
  for (auto _ : state) {
    x = pointX;
    y = pointY;
    peer->Transform(x, y);
    benchmark::DoNotOptimize(x.data());
  }
}

std::vector<double> Logarithms(const std::vector<double>& x, bool isOurs) {
  std::vector<double> results(x.size());
  if (isOurs) {
    shr::PortableLog(x, results);
  } else {
    std::transform(x.begin(), x.end(), results.begin(), [](double v) { return std::log(v); });
  }
  return results;
}

void LogOf(benchmark::State& state, bool isOurs) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> unit(1e-9, 4.0);
  std::vector<double> x(static_cast<std::size_t>(state.range(0)));
  for (double& value : x) value = unit(random);
  const std::vector<double> ours = Logarithms(x, true), peer = Logarithms(x, false);
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!(std::abs(ours[i] - peer[i]) <= 1e-15 * std::max(1e-3, std::abs(peer[i])))) std::abort();
  }
  for (auto _ : state) benchmark::DoNotOptimize(Logarithms(x, isOurs).data());
}

[[maybe_unused]] const bool REGISTERED = [] {
  const auto add = [](const char* name, const std::function<void(benchmark::State&)>& run,
                      long long first, long long last) {
    benchmark::RegisterBenchmark(name, run)
        ->RangeMultiplier(10)
        ->Range(first, last)
        ->Unit(benchmark::kMicrosecond);
  };
  add("numerics/thin-plate-calibrate/ours", CalibrateOurs, 10, 1000);
  add("numerics/thin-plate-transform/ours", TransformOurs, 10000, 1000000);
  if (registration_bench::HasGdal()) {
    add("numerics/thin-plate-calibrate/gdal", CalibrateGdal, 10, 1000);
    add("numerics/thin-plate-transform/gdal", TransformGdal, 10000, 1000000);
  }
  const auto addLog = [&](const char* name, bool isOurs) {
    add(
        name, [isOurs](benchmark::State& state) { LogOf(state, isOurs); }, 10000, 1000000);
  };
  addLog("numerics/log-of-array/ours", true);
  addLog("numerics/log-of-array/libm", false);
  return true;
}();

}  // namespace
