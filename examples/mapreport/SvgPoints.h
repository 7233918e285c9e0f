// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws events as circles, and cities and the strongest events with their names.

#pragma once

#include <cstddef>
#include <vector>

#include "examples/mapreport/MapCanvas.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// The size of circles: area grows with about the fourth power of the magnitude, and where a map
/// shows weak events only, all are drawn larger.
class EventSizes {
public:
  explicit EventSizes(const Model& model);

  double Radius(double magnitude) const;

private:
  double factor_ = 1;
};

/// How a city of some size is drawn.
struct CitySize {
  double smallestPopulation;
  double type;  ///< size of its name
  const wchar_t* marker;
};

/// The sizes, largest first; the last one holds all the rest.
inline constexpr CitySize CITY_SIZES[] = {
    {5e6, 12, L"large city"}, {1e6, 11, L"city"}, {0, 10, L"town"}};

/// Return the marker of cities of a size, and of capitals; on maps of large parts of the world they
/// are smaller.
Marker CityMarker(const CitySize& size, const Projection& projection);
Marker CapitalMarker(const Projection& projection);

/// The marker of the strongest events.
inline const Marker EPICENTRE_MARKER{L"epicentre", 16};

/// Up to this many events are drawn one by one.
inline constexpr std::size_t MOST_CIRCLES = 20000;
/// Of more events, this many of the strongest are drawn one by one and the others are counted in
/// square cells, so that a million of them make a picture that opens.
inline constexpr std::size_t STRONGEST_OF_MANY = 5000;

/// Returns how many of the visible events are drawn in cells; 0 where each is a circle.
std::size_t CountCounted(const Model& model);

/// Draws the visible events, large ones first, so that small ones stay visible. Each circle tells
/// what it is when it is pointed at.
void DrawEvents(SvgWriter& svg, const Model& model, const Projection& projection);

/// Marks the strongest events and writes their magnitudes beside them.
void DrawEventNames(MapCanvas& canvas, const Model& model);

/// Draws cities whose names find room.
class CityPainter {
public:
  /// Keeps names off the markers of the cities that are a quarter of the `most` that may be drawn,
  /// the most important ones, so that the name of one does not drive the next out. The canvas and
  /// the model must live as long as this.
  CityPainter(MapCanvas& canvas, const Model& model, std::size_t most);

  /// Draws them and returns them in the order of the model.
  std::vector<std::size_t> Draw();

private:
  struct Ranked {
    std::size_t index;
    bool hasMarker;  ///< its marker has its place already
  };

  Vec2d PositionOf(std::size_t index) const;
  Box2d MarkerBox(std::size_t index) const;

  MapCanvas& canvas_;
  const Model& model_;
  std::size_t most_;
  std::vector<Ranked> cities_;  ///< the most important ones first
};

}  // namespace mapreport
