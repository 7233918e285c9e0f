// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgPoints.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "examples/mapreport/Analysis.h"
#include "examples/mapreport/Format.h"

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

Vec2d EventPosition(const Model& model, std::size_t index, const Projection& projection) {
  return projection.ToPage(*PlaceInWindow(model.events[index].position, model.window));
}

const char* AnchorText(LabelPlace::Anchor anchor) {
  switch (anchor) {
    case LabelPlace::Anchor::Middle:
      return "middle";
    case LabelPlace::Anchor::End:
      return "end";
    default:
      return "start";
  }
}

void DrawLabel(SvgWriter& svg, const LabelPlace& place, const GString& text) {
  svg.Begin("text").Attribute("x", place.position.x).Attribute("y", place.position.y);
  if (place.anchor != LabelPlace::Anchor::Start) {
    svg.Attribute("text-anchor", AnchorText(place.anchor));
  }
  svg.Text(text).End();
}

const CitySize& SizeOf(const City& city) {
  return *std::find_if(std::begin(CITY_SIZES), std::end(CITY_SIZES) - 1, [&](const CitySize& size) {
    return city.population >= size.smallestPopulation;
  });
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

/// A city that leads its country counts as much as one several times its size elsewhere; else whole
/// parts of the world stay without a name.
std::vector<std::size_t> CitiesByImportance(const Model& model) {
  constexpr double LEADER_BONUS = 6;
  std::set<GString> seen;
  std::vector<std::pair<double, std::size_t>> ranked;
  for (std::size_t i = 0; i < model.cities.size(); ++i) {
    const City& city = model.cities[i];
    if (!city.visible) continue;
    const bool leads = !city.countryCode.empty() && seen.insert(city.countryCode).second;
    ranked.emplace_back(city.population * (leads ? LEADER_BONUS : 1), i);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<std::size_t> order;
  for (const auto& [weight, index] : ranked) order.push_back(index);
  return order;
}

void DrawCity(SvgWriter& svg, const City& city, const Vec2d& at, const LabelPlace& place) {
  const CitySize& size = SizeOf(city);
  svg.Begin("circle").Attribute("class", "dot").Attribute("cx", at.x).Attribute("cy", at.y);
  svg.Attribute("r", size.radius).End();
  svg.Begin("g").Attribute("class", "halo").Attribute("font-size", size.type);
  if (const char* const language = LanguageOf(city.countryCode)) {
    svg.Attribute("xml:lang", language);
  }
  DrawLabel(svg, place, city.name);
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

void DrawEvents(SvgWriter& svg, const Model& model, const Projection& projection) {
  const EventSizes sizes(model);
  svg.Begin("g").Attribute("class", "event");
  for (const std::size_t index : VisibleEventsBySize(model)) {
    const Vec2d at = EventPosition(model, index, projection);
    svg.Begin("circle").Attribute("cx", at.x).Attribute("cy", at.y);
    svg.Attribute("r", sizes.Radius(model.events[index].magnitude.value_or(0))).End();
  }
  svg.End();
}

/// The strongest events bear their magnitude.
void DrawEventNames(SvgWriter& svg, const Model& model, const Projection& projection,
                    LabelPlacer& placer) {
  constexpr double SIZE = 12;
  const EventSizes sizes(model);
  std::vector<Box2d> named;
  svg.Begin("g").Attribute("class", "strong halo");
  for (const std::size_t index : StrongestEvents(model, EVENT_LABELS)) {
    const double magnitude = *model.events[index].magnitude;
    const Vec2d at = EventPosition(model, index, projection);
    // An aftershock inside a circle that has its name would seem to be a second name of it.
    if (std::any_of(named.begin(), named.end(),
                    [&](const Box2d& box) { return box.Contains(at); })) {
      continue;
    }
    const double radius = sizes.Radius(magnitude);
    named.emplace_back(at.x - radius, at.y - radius, at.x + radius, at.y + radius);
    const GString text = L"M\u00A0" + FormatNumber(magnitude, 1);
    const double width = EstimateTextWidth(text, SIZE);
    const auto place = placer.PlaceName(at, radius, width, SIZE);
    if (place) DrawLabel(svg, *place, text);
  }
  svg.End();
}

std::vector<std::size_t> DrawCities(SvgWriter& svg, const Model& model,
                                    const Projection& projection, std::size_t most,
                                    LabelPlacer& placer) {
  std::vector<std::size_t> drawn;
  for (const std::size_t index : CitiesByImportance(model)) {
    if (drawn.size() >= most) break;
    const City& city = model.cities[index];
    const CitySize& size = SizeOf(city);
    const Vec2d at = projection.ToPage(*PlaceInWindow(city.position, model.window));
    const double width = EstimateTextWidth(city.name, size.type);
    const auto place = placer.Place(at, size.radius, width, size.type);
    if (!place) continue;
    DrawCity(svg, city, at, *place);
    drawn.push_back(index);
  }
  std::sort(drawn.begin(), drawn.end());
  return drawn;
}

}  // namespace mapreport
