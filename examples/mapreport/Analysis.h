// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The steps between reading and drawing. Each takes the model and changes one thing about it.
///
///     ClipToWindow(model, window);
///     CountEvents(model);
///     ColorByCount(model);

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// Sets the window, marks the events that lie in it (edges included) and cuts the countries to it.
void ClipToWindow(Model& model, const Box2d& window);

/// Finds the country of each visible event, and counts and largest event of each country.
/// Cost: O(events x countries) box tests and the points of the outlines whose box holds an event.
void CountEvents(Model& model);

/// Makes classes of counts and gives each country the color of its class: from light to dark, and a
/// gray of its own where nothing was counted.
void ColorByCount(Model& model);

/// Returns the classes that hold at least one of `counts`, without colors. Their limits are 1, 2,
/// 5, 10, 20
/// ...; where that makes more than seven, 1, 3, 10, 30 ..., and then the decades. Zeros belong to
/// no class.
std::vector<ColorClass> MakeClasses(const std::vector<std::size_t>& counts);

/// Returns the color at `t` from 0 to 1 on the ramp from light to dark.
Color4b RampColor(double t);

/// The fill of countries without events.
Color4b EmptyColor();

/// Returns the point's place in window coordinates: its longitude, or that plus 360 where the
/// window reaches beyond 180. Nothing when it lies outside; the edges are inside.
std::optional<Vec2d> PlaceInWindow(const Vec2d& position, const Box2d& window);

/// Returns the visible part of the rings of a country; also pieces of it that return beyond 180.
Contours ClipCountry(const Country& country, const Box2d& window);

/// Returns the indices of the countries with events: most events first, then the larger magnitude,
/// then the order of the file.
std::vector<std::size_t> CountriesByCount(const Model& model);

/// Returns the indices of the strongest visible events, strongest first, at most `count`.
std::vector<std::size_t> StrongestEvents(const Model& model, std::size_t count);

/// Returns the number of visible events.
std::size_t CountVisible(const Model& model);

}  // namespace mapreport
