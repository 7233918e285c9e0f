// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/Mat4.h"

#include <algorithm>

#include "shared/geometry/MatrixDecomposition.h"
#include "shared/geometry/TransformAvx2.h"
#include "shared/geometry/TransformKernels.h"
#include "shared/platform/CpuFeatures.h"

namespace shr {
namespace {

/// The matrix that has the numbers as rows and columns 0 to 2.
Mat4d ToMatrix(const double (&m)[3][3]) {
  return Mat4d(m[0][0], m[0][1], m[0][2], 0.0, m[1][0], m[1][1], m[1][2], 0.0, m[2][0], m[2][1],
               m[2][2], 0.0, 0.0, 0.0, 0.0, 1.0);
}

template <class Destination, class T>
Destination MakePointInSpace(T x, T y, T z) {
  if constexpr (std::same_as<Destination, Vec3<T>>) {
    return Destination(x, y, z);
  } else {
    return MakePoint<Destination>(x, y);
  }
}

/// Transforms the first points of an array by wider vectors, where there are some, and returns how
/// many they were.
template <class T, class Destination>
std::size_t TransformWide(int type, const T* m, const Vec3<T>* source, Destination* destination,
                          std::size_t count) {
  if constexpr (std::same_as<T, double> && std::same_as<Destination, Vec3d>) {
    if (count >= 4 && HasAvx2()) {
      switch (type) {
        case Mat4d::TYPE_2D:
          return Transform2dAvx2(m, &source->x, &destination->x, count);
        case Mat4d::TYPE_AFFINE:
          return TransformAffineAvx2(m, &source->x, &destination->x, count);
        case Mat4d::TYPE_COMPLEX:
          return TransformComplexAvx2(m, &source->x, &destination->x, count);
      }
    }
  }
  return 0;
}

/// Returns how many points of three doubles lie before the first one at a multiple of 32 bytes: a
/// step of 24 bytes goes back by 8.
std::size_t PointsToAlignment(const void* destination) {
  return reinterpret_cast<std::uintptr_t>(destination) % 32 / 8;
}

template <class T, class Destination>
void TransformSpace(const Mat4<T>& matrix, const Vec3<T>* source, Destination* destination,
                    std::size_t count) {
  const Mat4<T> copy = matrix;  // which no store to the destination can change
  const T* m = copy.Elements().data();
  const int type = copy.GetType();
  const auto forEach = [=](auto map) {
    const auto mapUpTo = [=](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) {
        const Vec3<T> p = source[i];
        destination[i] = map(p.x, p.y, p.z);
      }
    };
    const std::size_t lead = std::min(count, PointsToAlignment(destination));
    mapUpTo(0, lead);
    mapUpTo(lead + TransformWide(type, m, source + lead, destination + lead, count - lead), count);
  };
  constexpr auto MAKE = MakePointInSpace<Destination, T>;
  if (type == Mat4<T>::TYPE_IDENTITY) {
    if constexpr (std::same_as<Vec3<T>, Destination>) {
      if (source != destination) std::copy_n(source, count, destination);
    } else {
      forEach(MAKE);
    }
  } else if (type == Mat4<T>::TYPE_2D) {
    forEach([=](T x, T y, T z) {
      return MAKE(x * m[0] + y * m[4] + m[12], x * m[1] + y * m[5] + m[13], z);
    });
  } else if (type == Mat4<T>::TYPE_AFFINE) {
    forEach([=](T x, T y, T z) {
      return MAKE(x * m[0] + y * m[4] + z * m[8] + m[12], x * m[1] + y * m[5] + z * m[9] + m[13],
                  x * m[2] + y * m[6] + z * m[10] + m[14]);
    });
  } else {
    forEach([=](T x, T y, T z) {
      const T w = x * m[3] + y * m[7] + z * m[11] + m[15];
      return MAKE((x * m[0] + y * m[4] + z * m[8] + m[12]) / w,
                  (x * m[1] + y * m[5] + z * m[9] + m[13]) / w,
                  (x * m[2] + y * m[6] + z * m[10] + m[14]) / w);
    });
  }
}

template <class T>
PlaneMap<T> ToPlaneMap(const Mat4<T>& m) {
  return {m[0][0], m[0][1], m[0][3], m[1][0], m[1][1], m[1][3], m[3][0], m[3][1], m[3][3]};
}

}  // namespace

template <class T>
void Mat4<T>::SetTransform(const Vec& translation, const Quat4<T>& rotation, const Vec& scale,
                           const Quat4<T>& scaleOrientation, const Vec& center) {
  const Quat4d orientation(scaleOrientation);
  const Vec3d fixed(center);
  Mat4d result = Mat4d::MakeTranslation(-fixed);
  result.Rotate(orientation.Inverse(), Mat4d::ORDER_POST);
  result.Scale(Vec3d(scale), Mat4d::ORDER_POST);
  result.Rotate(orientation, Mat4d::ORDER_POST);
  result.Rotate(Quat4d(rotation), Mat4d::ORDER_POST);
  result.Translate(fixed + Vec3d(translation), Mat4d::ORDER_POST);
  *this = Mat4(result);
}

template <class T>
void Mat4<T>::GetTransform(Vec& translation, Quat4<T>& rotation, Vec& scale,
                           Quat4<T>& scaleOrientation, const Vec& center) const {
  double linear[3][3];
  for (int i = 0; i < 9; ++i) linear[i / 3][i % 3] = static_cast<double>((*this)[i / 3][i % 3]);
  const ScaleAndRotation<3> parts = DecomposeLinear(linear);
  const Mat4d exact(*this);
  const Vec3d fixed(center);
  translation = Vec(exact.DirMult(fixed) + Vec3d(elements_ + 12) - fixed);
  rotation = Quat4<T>(Quat4d(ToMatrix(parts.rotation)));
  scale.Set(parts.scales);
  scaleOrientation = Quat4<T>(Quat4d(ToMatrix(parts.axes)).UnitInverse());
}

template <class T>
void Mat4<T>::Transform(const Vec* source, Vec* destination, std::size_t count) const {
  TransformSpace(*this, source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec* source, Vec2d* destination, std::size_t count) const {
  TransformSpace(*this, source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec* source, Vec2f* destination, std::size_t count) const {
  TransformSpace(*this, source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec* source, Vec2i* destination, std::size_t count) const {
  TransformSpace(*this, source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec* source, POINT* destination, std::size_t count) const {
  TransformSpace(*this, source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec2<T>* source, Vec2<T>* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec2<T>* source, Vec2i* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Vec2<T>* source, POINT* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const POINT* source, Vec2<T>* destination, std::size_t count) const {
  TransformPlane(ToPlaneMap(*this), source, destination, count);
}

template <class T>
void Mat4<T>::Transform(const Box2<T>& source, RECT& destination) const {
  const Vec2<T> corners[2] = {source.Min(), source.Max()};
  POINT images[2];
  Transform(corners, images);
  destination = RECT{images[0].x, images[0].y, images[1].x, images[1].y};
}

template class Mat4<double>;
template class Mat4<float>;

}  // namespace shr
