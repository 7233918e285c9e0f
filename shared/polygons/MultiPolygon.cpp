// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/MultiPolygon.h"

#include <algorithm>

#include "shared/polygons/FlatOutput.h"
#include "shared/polygons/FlatPolygon.h"

namespace shr {
namespace {

template <class Function>
void ForEachRing(const MultiPolygon2d& polygons, Function function) {
  for (const Polygon2d& polygon : polygons) {
    function(polygon.outer());
    for (const Ring2d& inner : polygon.inners()) function(inner);
  }
}

template <class Point>
std::size_t StoreRing(std::span<const Vec2d> ring, Point* points, bool closed) {
  const std::size_t size = EmittedSize(ring.size(), closed);
  if (points != nullptr) CopyPoints(ring.first(size), points);
  return size;
}

template <class Point>
std::size_t StorePoints(const MultiPolygon2d& polygons, Point* points, bool closed) {
  std::size_t total = 0;
  ForEachRing(polygons, [&](const Ring2d& ring) {
    total += StoreRing(std::span<const Vec2d>(ring), points == nullptr ? nullptr : points + total,
                       closed);
  });
  return total;
}

template <class Count>
std::size_t StoreCounts(const MultiPolygon2d& polygons, Count* counts, bool closed) {
  std::size_t rings = 0;
  ForEachRing(polygons, [&](const Ring2d& ring) {
    if (counts != nullptr) counts[rings] = static_cast<Count>(EmittedSize(ring.size(), closed));
    ++rings;
  });
  return rings;
}

template <class Point>
std::size_t StoreJoined(const MultiPolygon2d& polygons, Point* points) {
  RingJoiner<Point> joiner(points);
  ForEachRing(polygons, [&](const Ring2d& ring) { joiner.Add(ring); });
  return joiner.Size();
}

}  // namespace

bool IsValidRing(std::span<const Vec2d> ring) {
  return ring.size() >= 2 && ring.front() == ring.back() && PolygonArea(ring) < 0.0;
}

bool IsValidPolygon(const Polygon2d& polygon) {
  return IsValidRing(polygon.outer()) &&
         std::all_of(polygon.inners().begin(), polygon.inners().end(),
                     [](const Ring2d& ring) { return IsValidRing(ring); });
}

bool IsValidMultiPolygon(const MultiPolygon2d& polygons) {
  return std::all_of(polygons.begin(), polygons.end(), IsValidPolygon);
}

std::size_t GetLegacyRingPoints(std::span<const Vec2d> ring, Vec2d* points, bool closed) {
  return StoreRing(ring, points, closed);
}

std::size_t GetLegacyRingPoints(std::span<const Vec2d> ring, POINT* points, bool closed) {
  return StoreRing(ring, points, closed);
}

std::size_t GetLegacyMultiPolygonPoints(const MultiPolygon2d& polygons, Vec2d* points,
                                        bool closed) {
  return StorePoints(polygons, points, closed);
}

std::size_t GetLegacyMultiPolygonPoints(const MultiPolygon2d& polygons, POINT* points,
                                        bool closed) {
  return StorePoints(polygons, points, closed);
}

std::size_t GetLegacyMultiPolygonCounts(const MultiPolygon2d& polygons, int* counts, bool closed) {
  return StoreCounts(polygons, counts, closed);
}

std::size_t GetLegacyMultiPolygonUINTCounts(const MultiPolygon2d& polygons, unsigned int* counts,
                                            bool closed) {
  return StoreCounts(polygons, counts, closed);
}

std::size_t GetLegacyMultiPolygonAsSinglePolygon(const MultiPolygon2d& polygons, Vec2d* points) {
  return StoreJoined(polygons, points);
}

std::size_t GetLegacyMultiPolygonAsSinglePolygon(const MultiPolygon2d& polygons, POINT* points) {
  return StoreJoined(polygons, points);
}

}  // namespace shr
