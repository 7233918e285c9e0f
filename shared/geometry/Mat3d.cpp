// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/Mat3d.h"

#include <cmath>

#include "shared/geometry/MatrixDecomposition.h"
#include "shared/geometry/TransformKernels.h"

namespace shr {
namespace {

PlaneMap<double> ToPlaneMap(const Mat3d& m) {
  return {m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]};
}

}  // namespace

Mat3d Mat3d::MakeRotation(double angle) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  return Mat3d(cosine, sine, 0.0, -sine, cosine, 0.0, 0.0, 0.0, 1.0);
}

void Mat3d::SetTransform(const Vec2d& translation, double rotation, const Vec2d& scale,
                         double scaleOrientation, const Vec2d& center) {
  Mat3d result = MakeTranslation(-center);
  if (scaleOrientation != 0.0) result.Rotate(-scaleOrientation, ORDER_POST);
  result.Scale(scale, ORDER_POST);
  result.Rotate(scaleOrientation + rotation, ORDER_POST);
  result.Translate(center + translation, ORDER_POST);
  *this = result;
}

void Mat3d::GetTransform(Vec2d& translation, double& rotation, Vec2d& scale,
                         double& scaleOrientation, const Vec2d& center) const {
  const ScaleAndRotation<2> parts =
      DecomposeLinear<2>({{elements_[0], elements_[1]}, {elements_[3], elements_[4]}});
  translation = DirMult(center) + Vec2d(elements_[6], elements_[7]) - center;
  rotation = std::atan2(parts.rotation[0][1], parts.rotation[0][0]);
  scale.Set(parts.scales);
  // The columns of the axes are the directions to scale: the first one lies at this angle.
  scaleOrientation = std::atan2(parts.axes[1][0], parts.axes[0][0]);
}

bool Mat3d::IsSheared2(double tolerance) const {
  const Vec2d xImage(elements_);
  const Vec2d yImage(elements_ + 3);
  return std::abs(xImage.Dot(yImage)) > tolerance * xImage.Length() * yImage.Length();
}

double Mat3d::GetRotation2() const {
  return std::atan2(elements_[1], elements_[0]);
}

double Mat3d::GetAspect2() const {
  return Vec2d(elements_).Length() / Vec2d(elements_ + 3).Length();
}

void Mat3d::Transform(const Vec2d* source, Vec2d* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

void Mat3d::Transform(const Vec2d* source, Vec2i* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

void Mat3d::Transform(const Vec2d* source, POINT* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

void Mat3d::Transform(const POINT* source, Vec2d* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

void Mat3d::Transform(const Box2d& source, Box2d& destination) const {
  const Vec2d corners[2] = {source.Min(), source.Max()};
  Vec2d images[2];
  Transform(corners, images);
  destination.Set(images[0], images[1]);
}

void Mat3d::Transform(const Box2d& source, RECT& destination) const {
  const Vec2d corners[2] = {source.Min(), source.Max()};
  POINT images[2];
  Transform(corners, images);
  destination = RECT{images[0].x, images[0].y, images[1].x, images[1].y};
}

}  // namespace shr
