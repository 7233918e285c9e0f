// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgPoints.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"
#include "shared/mathtext/MathTextScanner.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::size_t EVENT_LABELS = 5;

double BaseRadius(double magnitude) {
  const double m = std::clamp(magnitude, 0.0, 10.0);
  return 0.8 + 0.15 * m + 0.22 * m * m;
}

std::vector<std::size_t> VisibleEventsBySize(const Model& model) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < model.events.size(); ++i) {
    if (model.events[i].visible) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return model.events[a].magnitude.value_or(0) > model.events[b].magnitude.value_or(0);
  });
  return order;
}

/// "M 5.3, 2018-01-31 02:00, Tokyo, depth 10 km", as much of it as is known.
GString Tooltip(const Event& event) {
  GString text = L"M " + FormatMagnitude(event.magnitude);
  if (!event.time.empty()) text += L", " + FormatTime(event.time);
  if (!event.place.empty()) text += L", " + event.place;
  if (event.depth) text += L", depth " + FormatNumber(*event.depth, 0) + L" km";
  return text;
}

Vec2d EventPosition(const Model& model, std::size_t index, const Projection& projection) {
  return projection.ToPage(*PlaceInWindow(model.events[index].position, model.window));
}

/// Counts events in square cells and draws each cell, the darker the more events are in it: a class
/// for each power of four.
void DrawCells(SvgWriter& svg, const Model& model, const Projection& projection,
               std::span<const std::size_t> events) {
  constexpr double SIZE = 4;
  constexpr int CLASSES = 5;
  const Box2d& frame = projection.Frame();
  const auto columns = static_cast<std::size_t>(frame.xRange() / SIZE) + 1;
  const auto rows = static_cast<std::size_t>(frame.yRange() / SIZE) + 1;
  std::vector<std::size_t> counts(columns * rows);
  for (const std::size_t index : events) {
    const Vec2d cell = (EventPosition(model, index, projection) - frame.Min()) / SIZE;
    const std::size_t column = std::min(static_cast<std::size_t>(cell.x), columns - 1);
    ++counts[std::min(static_cast<std::size_t>(cell.y), rows - 1) * columns + column];
  }
  std::string paths[CLASSES];
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] == 0) continue;
    const int power = (static_cast<int>(std::bit_width(counts[i])) - 1) / 2;
    std::string& path = paths[std::min(power, CLASSES - 1)];
    path += 'M';
    AppendSvgTenths(path, SvgTenths(frame.xMin() + SIZE * static_cast<double>(i % columns)));
    path += ' ';
    AppendSvgTenths(path, SvgTenths(frame.yMin() + SIZE * static_cast<double>(i / columns)));
    path += "h4v4h-4z";
  }
  svg.Begin("g").Attribute("class", "many");
  svg.Begin("title").Text(FormatCount(events.size()) + L" events, counted in squares").End();
  for (int i = 0; i < CLASSES; ++i) {
    if (paths[i].empty()) continue;
    svg.Begin("path").Attribute("fill-opacity", 0.2 * (i + 1)).Attribute("d", paths[i]).End();
  }
  svg.End();
}

const CitySize& SizeOf(const City& city) {
  return *std::find_if(std::begin(CITY_SIZES), std::end(CITY_SIZES) - 1, [&](const CitySize& size) {
    return city.population >= size.smallestPopulation;
  });
}

bool IsWide(const Projection& projection) {
  constexpr double WIDE = 90;  // degrees
  return projection.Window().xRange() > WIDE;
}

Marker MarkerOf(const City& city, const Projection& projection) {
  return city.isCapital ? CapitalMarker(projection) : CityMarker(SizeOf(city), projection);
}

/// The language picks the shapes that East Asian characters have in the country.
const char* LanguageOf(const GString& countryCode) {
  static constexpr std::pair<const wchar_t*, const char*> LANGUAGES[] = {
      {L"CN", "zh-Hans"}, {L"SG", "zh-Hans"}, {L"TW", "zh-Hant"}, {L"HK", "zh-Hant"},
      {L"MO", "zh-Hant"}, {L"JP", "ja"},      {L"KR", "ko"},      {L"KP", "ko"}};
  for (const auto& [code, language] : LANGUAGES) {
    if (countryCode == code) return language;
  }
  return nullptr;
}

/// A capital and the largest city of a country count as much as one several times their size
/// elsewhere; else whole parts of the world stay without a name.
std::vector<std::size_t> CitiesByImportance(const Model& model) {
  constexpr double LEADER_BONUS = 6;
  std::set<GString> seen;
  std::vector<std::pair<double, std::size_t>> ranked;
  for (std::size_t i = 0; i < model.cities.size(); ++i) {
    const City& city = model.cities[i];
    if (!city.visible) continue;
    const bool leads = !city.countryCode.empty() && seen.insert(city.countryCode).second;
    ranked.emplace_back(city.population * (leads || city.isCapital ? LEADER_BONUS : 1), i);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<std::size_t> order;
  for (const auto& [weight, index] : ranked) order.push_back(index);
  return order;
}

void DrawCity(MapCanvas& canvas, const City& city, const Vec2d& at, const MapText::Label& label,
              const LabelPlace& place) {
  SvgWriter& svg = canvas.svg;
  canvas.markers.Use(svg, MarkerOf(city, canvas.projection), at);
  svg.Begin("g");
  if (const char* const language = LanguageOf(city.countryCode)) {
    svg.Attribute("xml:lang", language);
  }
  canvas.text.Draw(label, place);
  svg.End();
}

}  // namespace

EventSizes::EventSizes(const Model& model) {
  constexpr double LARGEST_SHOULD_BE = 8;
  constexpr double MOST = 3;
  const std::vector<std::size_t> strongest = StrongestEvents(model, 1);
  if (strongest.empty()) return;
  const double largest = BaseRadius(*model.events[strongest.front()].magnitude);
  factor_ = std::clamp(LARGEST_SHOULD_BE / largest, 1.0, MOST);
}

double EventSizes::Radius(double magnitude) const {
  return factor_ * BaseRadius(magnitude);
}

Marker CityMarker(const CitySize& size, const Projection& projection) {
  return Marker{size.marker, IsWide(projection) ? 8 : 11};
}

Marker CapitalMarker(const Projection& projection) {
  return Marker{L"capital", IsWide(projection) ? 11 : 14};
}

std::size_t CountCounted(const Model& model) {
  const std::size_t visible = CountVisible(model);
  return visible <= MOST_CIRCLES ? 0 : visible - STRONGEST_OF_MANY;
}

void DrawEvents(SvgWriter& svg, const Model& model, const Projection& projection) {
  const EventSizes sizes(model);
  const std::vector<std::size_t> order = VisibleEventsBySize(model);
  std::span<const std::size_t> circles(order);
  if (order.size() > MOST_CIRCLES) {
    circles = circles.first(STRONGEST_OF_MANY);
    DrawCells(svg, model, projection, std::span(order).subspan(STRONGEST_OF_MANY));
  }
  svg.Begin("g").Attribute("class", "event");
  for (const std::size_t index : circles) {
    const Event& event = model.events[index];
    const Vec2d at = EventPosition(model, index, projection);
    svg.Begin("circle").Attribute("cx", at.x).Attribute("cy", at.y);
    svg.Attribute("r", sizes.Radius(event.magnitude.value_or(0)));
    svg.Begin("title").Text(Tooltip(event)).End().End();
  }
  svg.End();
}

/// The strongest events bear their magnitude.
void DrawEventNames(MapCanvas& canvas, const Model& model) {
  const TextStyle style{12, Color4b(0x1E, 0x2A, 0x6B), BOLD, HAlignment::Left, true};
  const EventSizes sizes(model);
  std::vector<Box2d> named;
  canvas.svg.Begin("g").Attribute("class", "strong");
  for (const std::size_t index : StrongestEvents(model, EVENT_LABELS)) {
    const double magnitude = *model.events[index].magnitude;
    const Vec2d at = EventPosition(model, index, canvas.projection);
    // An aftershock inside a circle that has its name would seem to be a second name of it.
    if (std::any_of(named.begin(), named.end(),
                    [&](const Box2d& box) { return box.Contains(at); })) {
      continue;
    }
    const double radius = sizes.Radius(magnitude);
    named.emplace_back(at.x - radius, at.y - radius, at.x + radius, at.y + radius);
    canvas.markers.Use(canvas.svg, EPICENTRE_MARKER, at);
    const MapText::Label label = canvas.text.Make(L"M\u00A0" + FormatNumber(magnitude, 1), style);
    const auto place = canvas.placer.Place({at, radius, canvas.text.ExtentOf(label), 0, false});
    if (place) canvas.text.Draw(label, *place);
  }
  canvas.svg.End();
}

CityPainter::CityPainter(MapCanvas& canvas, const Model& model, std::size_t most)
    : canvas_(canvas), model_(model), most_(most) {
  constexpr std::size_t LEADERS_OF = 4;
  std::size_t reserved = 0;
  for (const std::size_t index : CitiesByImportance(model)) {
    const Box2d marker = MarkerBox(index);
    const bool isLeader = reserved < most / LEADERS_OF && canvas.placer.IsFree(marker);
    if (isLeader) canvas.placer.Block(marker);
    if (isLeader) ++reserved;
    cities_.push_back({index, isLeader});
  }
}

Vec2d CityPainter::PositionOf(std::size_t index) const {
  const City& city = model_.cities[index];
  return canvas_.projection.ToPage(*PlaceInWindow(city.position, model_.window));
}

Box2d CityPainter::MarkerBox(std::size_t index) const {
  const Marker marker = MarkerOf(model_.cities[index], canvas_.projection);
  const double radius = canvas_.markers.Radius(marker);
  const Vec2d at = PositionOf(index);
  return Box2d(at.x - radius, at.y - radius, at.x + radius, at.y + radius);
}

std::vector<std::size_t> CityPainter::Draw() {
  std::vector<std::size_t> drawn;
  canvas_.svg.Begin("g").Attribute("class", "city");
  for (const auto& [index, hasMarker] : cities_) {
    if (drawn.size() >= most_) break;
    const City& city = model_.cities[index];
    const TextStyle style{SizeOf(city).type, TEXT_COLOR, 400, HAlignment::Left, true};
    const MapText::Label label = canvas_.text.Make(EscapeMathText(city.name), style);
    const Vec2d at = PositionOf(index);
    const double radius = MarkerBox(index).xRange() / 2;
    const auto place =
        canvas_.placer.Place({at, radius, canvas_.text.ExtentOf(label), 0, !hasMarker});
    if (!place) continue;
    DrawCity(canvas_, city, at, label, *place);
    drawn.push_back(index);
  }
  canvas_.svg.End();
  std::sort(drawn.begin(), drawn.end());
  return drawn;
}

}  // namespace mapreport
