// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Arrays of points in space through a matrix of each type, from one array into another and in
// place. The peer is the plain loop over the sums of the type; the limit is copying the array.
// Before anything is timed, all contenders' points are compared to the bit.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "shared/geometry/Mat4.h"

namespace {

using shr::Mat4d;
using shr::Vec3d;
using Points = std::vector<Vec3d>;

Mat4d MakeMatrix(int type) {
  Mat4d m = Mat4d::IDENTITY;
  if (type >= Mat4d::TYPE_2D) m.RotateZ(0.3, Mat4d::ORDER_POST);
  if (type >= Mat4d::TYPE_AFFINE) m.RotateX(0.4, Mat4d::ORDER_POST);
  if (type != Mat4d::TYPE_IDENTITY) m.Translate(Vec3d(10.0, 20.0, 0.0), Mat4d::ORDER_POST);
  if (type == Mat4d::TYPE_COMPLEX) m.SetCol(3, shr::Vec4d(1e-4, 2e-4, 3e-4, 1.0));
  m.ClassifyType();
  return m;
}

Points MakePoints(std::size_t count) {
  Points points(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = static_cast<double>(i);
    points[i].Set(x * 0.001, static_cast<double>(i * 7919 % 100003), 1.0 / (1.0 + x));
  }
  return points;
}

struct Ours {
  static void Run(const Mat4d& m, const Points& source, Points& destination) {
    m.Transform(source, destination);
  }
};

struct PlainLoop {
  static void Run(const Mat4d& matrix, const Points& source, Points& destination) {
    const Mat4d m = matrix;
    const std::size_t count = source.size();
    switch (m.GetType()) {
      case Mat4d::TYPE_2D:
        for (std::size_t i = 0; i < count; ++i) {
          const Vec3d p = source[i];
          destination[i].Set(p.x * m[0][0] + p.y * m[1][0] + m[3][0],
                             p.x * m[0][1] + p.y * m[1][1] + m[3][1], p.z);
        }
        break;
      case Mat4d::TYPE_AFFINE:
        for (std::size_t i = 0; i < count; ++i) destination[i] = Sums(m, source[i]);
        break;
      case Mat4d::TYPE_COMPLEX:
        for (std::size_t i = 0; i < count; ++i) {
          const Vec3d p = source[i];
          destination[i] = Sums(m, p) / (p.x * m[0][3] + p.y * m[1][3] + p.z * m[2][3] + m[3][3]);
        }
        break;
      default:
        for (std::size_t i = 0; i < count; ++i) destination[i] = source[i];
    }
  }

  static Vec3d Sums(const Mat4d& m, const Vec3d& p) {
    return Vec3d(p.x * m[0][0] + p.y * m[1][0] + p.z * m[2][0] + m[3][0],
                 p.x * m[0][1] + p.y * m[1][1] + p.z * m[2][1] + m[3][1],
                 p.x * m[0][2] + p.y * m[1][2] + p.z * m[2][2] + m[3][2]);
  }
};

struct Copy {
  static void Run(const Mat4d&, const Points& source, Points& destination) {
    std::memcpy(&destination.data()->x, &source.data()->x, source.size() * sizeof(Vec3d));
  }
};

void RequireSamePoints(const Mat4d& m, const Points& source) {
  Points ours(source.size());
  Points peers(source.size());
  Ours::Run(m, source, ours);
  PlainLoop::Run(m, source, peers);
  if (std::memcmp(&ours[0].x, &peers[0].x, source.size() * sizeof(Vec3d)) == 0) return;
  std::fprintf(stderr, "the contenders' points differ\n");
  std::abort();
}

template <class Contender>
void Transform(benchmark::State& state, int type) {
  const Mat4d m = MakeMatrix(type);
  const Points source = MakePoints(static_cast<std::size_t>(state.range(0)));
  RequireSamePoints(m, source);
  Points destination(source.size());
  for (auto _ : state) {
    Contender::Run(m, source, destination);
    benchmark::ClobberMemory();
  }
}

/// Rotations, so that the numbers stay in range however often they are transformed.
template <class Contender>
void TransformInPlace(benchmark::State& state, int type) {
  Mat4d m = MakeMatrix(type);
  m.SetRow(3, shr::Vec4d(0.0, 0.0, 0.0, 1.0));
  m.ClassifyType();
  Points points = MakePoints(static_cast<std::size_t>(state.range(0)));
  RequireSamePoints(m, points);
  for (auto _ : state) {
    Contender::Run(m, points, points);
    benchmark::ClobberMemory();
  }
}

template <class Contender>
void Register(const char* contender) {
  const struct {
    const char* name;
    int type;
  } rows[] = {{"identity", Mat4d::TYPE_IDENTITY},
              {"2d", Mat4d::TYPE_2D},
              {"affine", Mat4d::TYPE_AFFINE},
              {"complex", Mat4d::TYPE_COMPLEX}};
  for (const auto& row : rows) {
    const auto add = [&](const char* work, auto function) {
      const std::string name = std::string("geometry/") + work + row.name + "/" + contender;
      benchmark::RegisterBenchmark(name.c_str(), function, row.type)
          ->Arg(10000)
          ->Arg(100000)
          ->Arg(1000000)
          ->Unit(benchmark::kMicrosecond);
    };
    add("transform-", Transform<Contender>);
    const bool isRotation = row.type == Mat4d::TYPE_2D || row.type == Mat4d::TYPE_AFFINE;
    if (isRotation && contender[0] != '_') add("transform-in-place-", TransformInPlace<Contender>);
  }
}

const bool IS_REGISTERED = [] {
  Register<Ours>("ours");
  Register<PlainLoop>("loop");
  Register<Copy>("_memcpy");
  return true;
}();

}  // namespace
