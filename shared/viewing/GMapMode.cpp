// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/viewing/GMapMode.h"

#include <cmath>
#include <cstddef>

#include "shared/geometry/RoundToLong.h"

namespace shr {
namespace {

enum Mode { TEXT = 1, LO_METRIC, HI_METRIC, LO_ENGLISH, HI_ENGLISH, TWIPS, ISOTROPIC };

constexpr double MILLIMETERS_PER_INCH = 25.4;

/// Returns the size in logical units of a mode that has physical ones.
Vec2d LogicalSize(int mode, const Vec2d& millimeters) {
  switch (mode) {
    case HI_METRIC:
      return millimeters * 100.0;
    case LO_ENGLISH:
      return millimeters * 100.0 / MILLIMETERS_PER_INCH;
    case HI_ENGLISH:
      return millimeters * 1000.0 / MILLIMETERS_PER_INCH;
    case TWIPS:
      return millimeters * 1440.0 / MILLIMETERS_PER_INCH;
    default:
      return millimeters * 10.0;
  }
}

bool Store(const Vec2d& value, POINT* point) {
  if (point != nullptr) *point = RoundToPoint(value);
  return true;
}

bool Store(const Vec2d& value, SIZE* size) {
  if (size != nullptr) *size = {RoundToLong(value.x), RoundToLong(value.y)};
  return true;
}

}  // namespace

int GMapMode::SetMapMode(int mode, double widthInMillimeters, double heightInMillimeters,
                         double widthInPixels, double heightInPixels) {
  const int previous = mapMode_;
  mapMode_ = mode;
  if (mode < TEXT || mode > ISOTROPIC) return previous;
  if (mode == TEXT) {
    window_.extent = viewport_.extent = Vec2d::ONE;
    return previous;
  }
  ChangeExtent(window_, LogicalSize(mode, Vec2d(widthInMillimeters, heightInMillimeters)));
  ChangeExtent(viewport_, Vec2d(widthInPixels, -heightInPixels));
  if (mode == ISOTROPIC) AdjustViewportExt();
  return previous;
}

bool GMapMode::SetWindowOrgEx(double x, double y, POINT* previous) {
  GetWindowOrgEx(previous);
  window_.origin.Set(x, y);
  return true;
}

bool GMapMode::GetWindowOrgEx(POINT* origin) const {
  return Store(window_.origin, origin);
}

bool GMapMode::SetWindowExtEx(double x, double y, SIZE* previous) {
  return SetExtent(window_, Vec2d(x, y), previous);
}

bool GMapMode::GetWindowExtEx(SIZE* extent) const {
  return Store(window_.extent, extent);
}

bool GMapMode::SetViewportOrgEx(double x, double y, POINT* previous) {
  GetViewportOrgEx(previous);
  viewport_.origin.Set(x, y);
  return true;
}

bool GMapMode::GetViewportOrgEx(POINT* origin) const {
  return Store(viewport_.origin, origin);
}

bool GMapMode::SetViewportExtEx(double x, double y, SIZE* previous) {
  return SetExtent(viewport_, Vec2d(x, y), previous);
}

bool GMapMode::GetViewportExtEx(SIZE* extent) const {
  return Store(viewport_.extent, extent);
}

bool GMapMode::SetExtent(System& system, const Vec2d& extent, SIZE* previous) {
  Store(system.extent, previous);
  ChangeExtent(system, extent);
  if (mapMode_ == ISOTROPIC) AdjustViewportExt();
  return true;
}

void GMapMode::AdjustViewportExt() {
  const Vec2d& window = window_.extent;
  Vec2d viewport = viewport_.extent;
  const double xRatio = std::abs(viewport.x / window.x);
  const double yRatio = std::abs(viewport.y / window.y);
  if (yRatio > xRatio) {
    viewport.y = std::copysign(std::abs(window.y) * xRatio, viewport.y);
  } else {
    viewport.x = std::copysign(std::abs(window.x) * yRatio, viewport.x);
  }
  ChangeExtent(viewport_, viewport);
}

void GMapMode::ChangeExtent(System& system, const Vec2d& extent) const {
  const Vec2d rounded(Rounded(extent.x), Rounded(extent.y));
  if (rounded.IsFinite() && rounded.x != 0.0 && rounded.y != 0.0) system.extent = rounded;
}

bool GMapMode::LPtoDP(POINT* points, int count) const {
  if (points == nullptr || count < 0) return false;
  LPtoDP(std::span(points, static_cast<std::size_t>(count)));
  return true;
}

bool GMapMode::DPtoLP(POINT* points, int count) const {
  if (points == nullptr || count < 0) return false;
  DPtoLP(std::span(points, static_cast<std::size_t>(count)));
  return true;
}

void GMapMode::LPtoDP(std::span<POINT> points) const {
  Convert(points, window_, viewport_);
}

void GMapMode::DPtoLP(std::span<POINT> points) const {
  Convert(points, viewport_, window_);
}

void GMapMode::Convert(std::span<POINT> points, const System& from, const System& to) {
  const Vec2d scale = to.extent / from.extent;
  for (POINT& point : points) {
    point = RoundToPoint((Vec2d(Vec2i(point)) - from.origin) * scale + to.origin);
  }
}

double GMapMode::Rounded(double extent) const {
  return roundToIntegers_ ? std::round(extent) : extent;
}

}  // namespace shr
