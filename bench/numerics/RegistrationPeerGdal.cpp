// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/numerics/RegistrationPeer.h"

#include <gdal_alg.h>

#include <cstddef>
#include <vector>

namespace registration_bench {
namespace {

std::vector<GDAL_GCP> ControlPoints(const shr::RPoints& from, const shr::RPoints& to) {
  std::vector<GDAL_GCP> points(from.size());
  GDALInitGCPs(static_cast<int>(points.size()), points.data());
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].dfGCPPixel = from[i].x;
    points[i].dfGCPLine = from[i].y;
    points[i].dfGCPX = to[i].x;
    points[i].dfGCPY = to[i].y;
  }
  return points;
}

using TransformFunction = int (*)(void*, int, int, double*, double*, double*, int*);
using DestroyFunction = void (*)(void*);

class GdalPeer : public Peer {
public:
  GdalPeer(void* transformer, TransformFunction transform, DestroyFunction destroy)
      : transformer_(transformer), transform_(transform), destroy_(destroy) {}
  ~GdalPeer() override { destroy_(transformer_); }
  GdalPeer(const GdalPeer&) = delete;
  GdalPeer& operator=(const GdalPeer&) = delete;

  void Transform(std::vector<double>& x, std::vector<double>& y) const override {
    z_.resize(x.size());
    isDone_.resize(x.size());
    transform_(transformer_, 0, static_cast<int>(x.size()), x.data(), y.data(), z_.data(),
               isDone_.data());
  }

private:
  void* transformer_;
  TransformFunction transform_;
  DestroyFunction destroy_;
  mutable std::vector<double> z_;
  mutable std::vector<int> isDone_;
};

}  // namespace

bool HasGdal() {
  return true;
}

std::unique_ptr<Peer> MakeGdalSpline(const shr::RPoints& from, const shr::RPoints& to) {
  std::vector<GDAL_GCP> points = ControlPoints(from, to);
  void* transformer =
      GDALCreateTPSTransformer(static_cast<int>(points.size()), points.data(), FALSE);
  if (transformer == nullptr) return nullptr;
  return std::make_unique<GdalPeer>(transformer, GDALTPSTransform, GDALDestroyTPSTransformer);
}

std::unique_ptr<Peer> MakeGdalPolynomial(const shr::RPoints& from, const shr::RPoints& to,
                                         int order) {
  std::vector<GDAL_GCP> points = ControlPoints(from, to);
  void* transformer =
      GDALCreateGCPTransformer(static_cast<int>(points.size()), points.data(), order, FALSE);
  if (transformer == nullptr) return nullptr;
  return std::make_unique<GdalPeer>(transformer, GDALGCPTransform, GDALDestroyGCPTransformer);
}

}  // namespace registration_bench
