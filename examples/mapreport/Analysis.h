// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The steps between reading and drawing. Each takes the model and changes one thing about it.
///
///     ClipToWindow(model, window, progress);
///     CountEvents(model, progress);
///     ColorByCount(model, DefaultPalette());
///
/// Run by the commands of MapCommands.h they can be taken back.

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// Sets the window, marks the events, cities and waypoints that lie in it (edges included) and cuts
/// the countries, rivers and tracks to it. An earlier clip to an area and a union are gone. Returns
/// false when the user stopped it; the model is then half done.
bool ClipToWindow(Model& model, const Box2d& window, IProgress& progress);

/// Finds the country of each visible event, and counts and largest event of each country.
/// Returns false when the user stopped it; the model is then half done.
/// Cost: O(events x countries) box tests and the points of the outlines whose box holds an event.
bool CountEvents(Model& model, IProgress& progress);

/// Makes classes of counts and gives each country the color of its class: from light to dark, and a
/// color of its own where nothing was counted.
void ColorByCount(Model& model, const Palette& palette);

/// Returns the classes that hold at least one of `counts`, without colors. Their limits are 1, 2,
/// 5, 10, 20
/// ...; where that makes more than seven, 1, 3, 10, 30 ..., and then the decades. Zeros belong to
/// no class.
std::vector<ColorClass> MakeClasses(const std::vector<std::size_t>& counts);

/// Returns the point's place in window coordinates: its longitude, or that plus 360 where the
/// window reaches beyond 180. Nothing when it lies outside; the edges are inside.
std::optional<Vec2d> PlaceInWindow(const Vec2d& position, const Box2d& window);

/// Returns the visible part of the rings of a country; also pieces of it that return beyond 180.
Contours ClipCountry(const Country& country, const Box2d& window);

/// Returns the visible pieces of a river; also those that return beyond 180.
Contours ClipRiver(const River& river, const Box2d& window);

/// Returns the visible pieces of a track, which may cross the antimeridian.
Contours ClipTrack(const Track& track, const Box2d& window);

/// Returns the indices of the countries with events: most events first, then the larger magnitude,
/// then the order of the file.
std::vector<std::size_t> CountriesByCount(const Model& model);

/// Returns the indices of the strongest visible events, strongest first, at most `count`.
std::vector<std::size_t> StrongestEvents(const Model& model, std::size_t count);

/// Returns the number of visible events.
std::size_t CountVisible(const Model& model);

/// Returns the number of visible events that lie in a country.
std::size_t CountInCountries(const Model& model);

}  // namespace mapreport
