// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/formats/PolygonTextWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/FlatOutput.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/clipper/ContourNesting.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr std::size_t NUMBER_SIZE = 32;

enum Turn { CLOCKWISE = -1, COUNTER_CLOCKWISE = 1 };

void CheckFinite(std::span<const Vec2d> points) {
  const auto isFinite = [](const Vec2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); };
  if (std::all_of(points.begin(), points.end(), isFinite)) return;
  ThrowErrorImpl(L"PolygonText", __LINE__,
                 L"Unable to write a polygon as text.\nA coordinate is not finite.");
}

/// Returns the ring without its closing point, which may differ from the first by rounding, and
/// without points around it that repeat the first: turned around, they would look like closing
/// points.
std::span<const Vec2d> OpenRing(std::span<const Vec2d> ring) {
  if (ring.size() > 1 && IsNear(ring.front(), ring.back())) ring = ring.first(ring.size() - 1);
  while (ring.size() > 1 && ring.back() == ring.front()) ring = ring.first(ring.size() - 1);
  while (ring.size() > 1 && ring[1] == ring[0]) ring = ring.subspan(1);
  return ring;
}

/// Returns true when the ring has three different points.
bool HasInside(std::span<const Vec2d> ring) {
  const auto second = std::find_if(ring.begin(), ring.end(),
                                   [&](const Vec2d& point) { return point != ring.front(); });
  return std::any_of(second, ring.end(),
                     [&](const Vec2d& point) { return point != ring.front() && point != *second; });
}

class Writer {
public:
  explicit Writer(const PolygonTextStyle& style) : style_(style) {}

  std::string Write(const MultiPolygon2d& polygons) {
    std::vector<const Polygon2d*> written;
    for (const Polygon2d& polygon : polygons) {
      CheckFinite(polygon.outer());
      for (const Ring2d& inner : polygon.inners()) CheckFinite(inner);
      if (HasInside(OpenRing(polygon.outer()))) written.push_back(&polygon);
    }
    if (written.empty()) return style_.empty;
    text_ = written.size() == 1 ? style_.polygon : style_.multiPolygon;
    if (written.size() > 1) text_ += style_.open;
    for (const Polygon2d* polygon : written) {
      if (polygon != written.front()) text_ += style_.separator;
      AddPolygon(*polygon);
    }
    if (written.size() > 1) text_ += style_.close;
    return text_ += style_.end;
  }

private:
  void AddPolygon(const Polygon2d& polygon) {
    text_ += style_.open;
    AddRing(OpenRing(polygon.outer()), COUNTER_CLOCKWISE);
    for (const Ring2d& inner : polygon.inners()) {
      if (!HasInside(OpenRing(inner))) continue;
      text_ += style_.separator;
      AddRing(OpenRing(inner), CLOCKWISE);
    }
    text_ += style_.close;
  }

  void AddRing(std::span<const Vec2d> ring, Turn turn) {
    const bool isReversed = TurnOf(ring) == -turn;
    text_ += style_.open;
    AddPoint(ring.front());
    for (std::size_t i = 1; i < ring.size(); ++i) {
      text_ += style_.separator;
      AddPoint(ring[isReversed ? ring.size() - i : i]);
    }
    text_ += style_.separator;
    AddPoint(ring.front());
    text_ += style_.close;
  }

  void AddPoint(const Vec2d& point) {
    text_ += style_.openPoint;
    AddNumber(point.x);
    text_ += style_.betweenNumbers;
    AddNumber(point.y);
    text_ += style_.closePoint;
  }

  void AddNumber(double value) {
    char buffer[NUMBER_SIZE];
    text_.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
  }

  const PolygonTextStyle& style_;
  std::string text_;
};

}  // namespace

std::string WritePolygons(const MultiPolygon2d& polygons, const PolygonTextStyle& style) {
  return Writer(style).Write(polygons);
}

MultiPolygon2d FinitePolygons(const GPolygon& polygon) {
  for (const GpcContour& contour : ContoursOf(polygon.GetRecord()))
    CheckFinite(VerticesOf(contour));
  MultiPolygon2d result;
  polygon.GetMultiPolygon(result);
  return result;
}

}  // namespace shr
