// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Analysis.h"

#include <algorithm>
#include <array>
#include <span>

#include "examples/mapreport/Tracks.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/lines/LineClip.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr double FULL_CIRCLE = 360;
constexpr std::size_t MOST_CLASSES = 7;

void Append(const Contours& from, double shift, Contours& to) {
  for (const Vec2d& point : from.points) to.points.emplace_back(point.x + shift, point.y);
  to.counts.insert(to.counts.end(), from.counts.begin(), from.counts.end());
}

/// Appends the part of `polygon` inside `window`, moved east by `shift`.
void AppendClipped(const GPolygon2d& polygon, const Box2d& window, double shift, Contours& to) {
  const Box2d bounds = polygon.GetBBox();
  if (bounds.IsEmpty() || !window.Intersects(bounds)) return;
  Contours flat;
  if (window.Contains(bounds)) {
    polygon.GetPolyPolygon(flat.points, flat.counts, false);
  } else {
    GPolygon2d clipped;
    polygon.Intersection(window, clipped);
    clipped.GetPolyPolygon(flat.points, flat.counts, false);
  }
  Append(flat, shift, to);
}

/// Appends the pieces of a line inside `window`, and those that return beyond 180.
void AppendClippedLine(std::span<const Vec2d> line, const Box2d& window, Contours& visible) {
  for (const double shift : {0.0, FULL_CIRCLE}) {
    const Box2d moved(window.xMin() - shift, window.yMin(), window.xMax() - shift, window.yMax());
    Contours pieces;
    CLineClip(moved).ClipPolyline(line, pieces.points, pieces.counts);
    Append(pieces, shift, visible);
  }
}

bool IsInside(const Vec2d& point, const Country& country) {
  if (!country.land.GetBBox().Contains(point)) return false;
  return PointInPolygon(point, country.rings.points, country.rings.counts);
}

/// Returns true when `a` has a magnitude and no event so far has a larger one.
bool IsLarger(const Event& a, const Model& model, std::size_t soFar) {
  if (!a.magnitude) return false;
  return soFar == NONE || *a.magnitude > *model.events[soFar].magnitude;
}

double LargestMagnitude(const Model& model, const Country& country) {
  constexpr double BELOW_ALL = -1000;
  return country.largestEvent == NONE ? BELOW_ALL : *model.events[country.largestEvent].magnitude;
}

/// Class starts in each decade, finest first; the coarsest fits into the classes whatever the
/// counts are.
constexpr std::array<std::array<std::size_t, 3>, 3> SERIES = {{{1, 2, 5}, {1, 3, 0}, {1, 0, 0}}};

std::vector<ColorClass> AllClasses(std::size_t largest, const std::array<std::size_t, 3>& series) {
  std::vector<ColorClass> classes;
  for (std::size_t decade = 1; decade <= largest; decade *= 10) {
    for (const std::size_t factor : series) {
      if (factor == 0) continue;
      if (!classes.empty()) classes.back().to = factor * decade - 1;
      ColorClass next;
      next.from = factor * decade;
      next.to = 10 * decade - 1;
      classes.push_back(next);
    }
  }
  return classes;
}

void CountCountries(const std::vector<std::size_t>& counts, std::vector<ColorClass>& classes) {
  for (ColorClass& c : classes) {
    c.countries = static_cast<std::size_t>(std::count_if(
        counts.begin(), counts.end(), [&](std::size_t n) { return n >= c.from && n <= c.to; }));
  }
  std::erase_if(classes, [](const ColorClass& c) { return c.countries == 0; });
}

const ColorClass* FindClass(const std::vector<ColorClass>& classes, std::size_t count) {
  for (const ColorClass& c : classes) {
    if (count >= c.from && count <= c.to) return &c;
  }
  return nullptr;
}

}  // namespace

bool ClipToWindow(Model& model, const Box2d& window, IProgress& progress) {
  Operation operation(progress, L"Clipping to the window",
                      model.countries.size() + model.rivers.size() + model.tracks.size());
  model.window = window;
  model.clip = Area();
  model.continent = Area();
  for (Event& event : model.events) {
    event.visible = PlaceInWindow(event.position, window).has_value();
  }
  for (City& city : model.cities) {
    city.visible = PlaceInWindow(city.position, window).has_value();
  }
  for (Waypoint& waypoint : model.waypoints) {
    waypoint.visible = PlaceInWindow(waypoint.position, window).has_value();
  }
  for (Country& country : model.countries) {
    country.visible = ClipCountry(country, window);
    if (!operation.Step()) return false;
  }
  for (River& river : model.rivers) {
    river.visible = ClipRiver(river, window);
    if (!operation.Step()) return false;
  }
  for (Track& track : model.tracks) {
    track.visible = ClipTrack(track, window);
    if (!operation.Step()) return false;
  }
  return true;
}

Contours ClipCountry(const Country& country, const Box2d& window) {
  Contours visible;
  for (const double shift : {0.0, FULL_CIRCLE}) {
    const Box2d moved(window.xMin() - shift, window.yMin(), window.xMax() - shift, window.yMax());
    AppendClipped(country.land, moved, shift, visible);
    AppendClipped(country.holes, moved, shift, visible);
  }
  return visible;
}

Contours ClipRiver(const River& river, const Box2d& window) {
  Contours visible;
  AppendClippedLine(river.points, window, visible);
  return visible;
}

Contours ClipTrack(const Track& track, const Box2d& window) {
  const Contours lines = SplitAtAntimeridian(track.lines);
  Contours visible;
  std::span<const Vec2d> rest(lines.points);
  for (const unsigned int count : lines.counts) {
    AppendClippedLine(rest.first(count), window, visible);
    rest = rest.subspan(count);
  }
  return visible;
}

std::optional<Vec2d> PlaceInWindow(const Vec2d& position, const Box2d& window) {
  for (const double shift : {0.0, FULL_CIRCLE}) {
    const Vec2d moved(position.x + shift, position.y);
    if (window.Contains(moved)) return moved;
  }
  return std::nullopt;
}

bool CountEvents(Model& model, IProgress& progress) {
  Operation operation(progress, L"Counting", model.events.size());
  for (Country& country : model.countries) {
    country.eventCount = 0;
    country.largestEvent = NONE;
  }
  for (std::size_t i = 0; i < model.events.size(); ++i) {
    Event& event = model.events[i];
    event.country = NONE;
    if (!operation.Step()) return false;
    if (!event.visible) continue;
    const auto found =
        std::find_if(model.countries.begin(), model.countries.end(),
                     [&](const Country& country) { return IsInside(event.position, country); });
    if (found == model.countries.end()) continue;
    event.country = static_cast<std::size_t>(found - model.countries.begin());
    ++found->eventCount;
    if (IsLarger(event, model, found->largestEvent)) found->largestEvent = i;
  }
  return true;
}

void ColorByCount(Model& model, const Palette& palette) {
  model.palette = palette;
  std::vector<std::size_t> counts;
  for (const Country& country : model.countries) counts.push_back(country.eventCount);
  model.classes = MakeClasses(counts);
  const double steps = static_cast<double>(std::max<std::size_t>(model.classes.size(), 2) - 1);
  for (std::size_t i = 0; i < model.classes.size(); ++i) {
    model.classes[i].color = palette.At(static_cast<double>(i) / steps);
  }
  for (Country& country : model.countries) {
    const ColorClass* const found = FindClass(model.classes, country.eventCount);
    country.fill = found != nullptr ? found->color : palette.none;
  }
}

std::vector<ColorClass> MakeClasses(const std::vector<std::size_t>& counts) {
  if (counts.empty()) return {};
  const std::size_t largest = *std::max_element(counts.begin(), counts.end());
  std::vector<ColorClass> classes;
  for (const auto& series : SERIES) {
    classes = AllClasses(largest, series);
    CountCountries(counts, classes);
    if (classes.size() <= MOST_CLASSES) break;
  }
  return classes;
}

std::vector<std::size_t> CountriesByCount(const Model& model) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < model.countries.size(); ++i) {
    if (model.countries[i].eventCount > 0) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const Country& first = model.countries[a];
    const Country& second = model.countries[b];
    if (first.eventCount != second.eventCount) return first.eventCount > second.eventCount;
    return LargestMagnitude(model, first) > LargestMagnitude(model, second);
  });
  return order;
}

std::vector<std::size_t> StrongestEvents(const Model& model, std::size_t count) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < model.events.size(); ++i) {
    if (model.events[i].visible && model.events[i].magnitude) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return *model.events[a].magnitude > *model.events[b].magnitude;
  });
  if (order.size() > count) order.resize(count);
  return order;
}

std::size_t CountVisible(const Model& model) {
  return static_cast<std::size_t>(std::count_if(model.events.begin(), model.events.end(),
                                                [](const Event& event) { return event.visible; }));
}

std::size_t CountInCountries(const Model& model) {
  std::size_t count = 0;
  for (const Country& country : model.countries) count += country.eventCount;
  return count;
}

}  // namespace mapreport
