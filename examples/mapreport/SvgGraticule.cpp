// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgGraticule.h"

#include <algorithm>
#include <cmath>

#include "examples/mapreport/Format.h"

namespace mapreport {

using namespace shr;

namespace {

std::size_t DecimalsOf(double step) {
  if (step >= 1) return 0;
  if (step >= 0.1) return 1;
  return step >= 0.01 ? 2 : 3;
}

/// Returns the multiples of `step` from `low` to `high`. Each is one product, so none carries a sum
/// of errors.
std::vector<double> Multiples(double low, double high, double step) {
  std::vector<double> values;
  const double slack = step * 1e-9;
  for (double n = std::ceil((low - slack) / step); n * step <= high + slack; ++n) {
    values.push_back(n * step);
  }
  return values;
}

void DrawLine(SvgWriter& svg, const Vec2d& from, const Vec2d& to) {
  SvgPathBuilder path;
  path.MoveTo(from);
  path.LineTo(to);
  svg.Begin("path").Attribute("d", path.Data()).End();
}

void DrawDegree(SvgWriter& svg, const Vec2d& at, const char* anchor, const GString& text) {
  svg.Begin("text").Attribute("x", at.x).Attribute("y", at.y).Attribute("text-anchor", anchor);
  svg.Text(text).End();
}

/// At the corners of the frame a meridian's label gives way to the one of the parallel.
const char* AnchorAlong(double x, const Box2d& frame) {
  constexpr double NEAR = 14;
  if (x - frame.xMin() < NEAR) return "start";
  return frame.xMax() - x < NEAR ? "end" : "middle";
}

}  // namespace

Graticule MakeGraticule(const Box2d& window) {
  const double step = GraticuleStep(std::max(window.xRange(), window.yRange()));
  return {step, Multiples(window.xMin(), window.xMax(), step),
          Multiples(window.yMin(), window.yMax(), step)};
}

void DrawGraticule(SvgWriter& svg, const Projection& projection, const Graticule& graticule) {
  const Box2d& frame = projection.Frame();
  svg.Begin("g").Attribute("class", "graticule");
  for (const double longitude : graticule.meridians) {
    const double x = projection.ToPage(Vec2d(longitude, 0)).x;
    DrawLine(svg, Vec2d(x, frame.yMin()), Vec2d(x, frame.yMax()));
  }
  for (const double latitude : graticule.parallels) {
    const double y = projection.ToPage(Vec2d(projection.Window().xMin(), latitude)).y;
    DrawLine(svg, Vec2d(frame.xMin(), y), Vec2d(frame.xMax(), y));
  }
  svg.End();
}

void DrawFrame(SvgWriter& svg, const Projection& projection, const Graticule& graticule) {
  const Box2d& frame = projection.Frame();
  const std::size_t decimals = DecimalsOf(graticule.step);
  svg.BeginRectangle(frame).Attribute("fill", "none").Attribute("stroke", "#3d4a52").End();
  svg.Begin("g").Attribute("class", "degree");
  for (const double longitude : graticule.meridians) {
    const double x = projection.ToPage(Vec2d(longitude, 0)).x;
    const GString text = FormatLongitude(longitude, decimals);
    const char* const anchor = AnchorAlong(x, frame);
    DrawDegree(svg, Vec2d(x, frame.yMin() - 5), anchor, text);
    DrawDegree(svg, Vec2d(x, frame.yMax() + 13), anchor, text);
  }
  for (const double latitude : graticule.parallels) {
    const double y = projection.ToPage(Vec2d(projection.Window().xMin(), latitude)).y + 3.5;
    const GString text = FormatLatitude(latitude, decimals);
    DrawDegree(svg, Vec2d(frame.xMin() - 5, y), "end", text);
    DrawDegree(svg, Vec2d(frame.xMax() + 5, y), "start", text);
  }
  svg.End();
}

}  // namespace mapreport
