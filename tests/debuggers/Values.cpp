// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// One value of each kind that the debugger's printers know; gdb_test.py stops it at the end and
// looks at them.

#include <cstdio>

#include "shared/color/Color4b.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Mat3d.h"
#include "shared/geometry/Vec3.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/GPolygon2dModel.h"
#include "shared/polygons/GPolyline.h"
#include "shared/polygons/PodVector.h"
#include "shared/text/GString.h"

void StopHere(const void* values) {
  std::printf("%d\n", values != nullptr);
}

int main() {
  const shr::GString text(L"Reykjav\u00edk \U0001F600 \"x\"");
  const shr::Vec3d vector(1.0, 2.5, -3.0);
  const shr::Box2d box(0.0, 1.0, 2.0, 3.0);
  const shr::Mat3d matrix = shr::Mat3d::MakeScale(shr::Vec2d(2.0, 4.0));
  const shr::Color4b color(255, 128, 0, 64);
  shr::CPodVector<shr::Vec2d, 4> piece;
  piece.push_back(shr::Vec2d(5.0, 6.0));
  shr::GPolyline river{{0.0, 0.0}, {3.0, 4.0}};
  const shr::Vec2d points[] = {{0.0, 0.0}, {4.0, 0.0}, {4.0, 3.0}};
  const unsigned int counts[] = {3};
  const shr::GPolygon land(points, counts);
  const shr::GPolygon2d country(points, counts);
  const shr::GPolygon2dModel inside{};  // tells the debugger what the library alone knows
  const void* const values[] = {&text,  &vector, &box,  &matrix,  &color,
                                &piece, &river,  &land, &country, &inside};
  StopHere(static_cast<const void*>(values));
}
