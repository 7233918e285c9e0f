// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgGraticule.h"

#include <algorithm>
#include <cmath>

#include "examples/mapreport/Format.h"

namespace mapreport {

using namespace shr;

namespace {

const Color4b DEGREE_COLOR(0x55, 0x62, 0x6B);

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

/// At the corners of the frame a meridian's label gives way to the one of the parallel.
HAlignment SideAlong(double x, const Box2d& frame) {
  constexpr double CLOSE = 14;
  if (x - frame.xMin() < CLOSE) return HAlignment::Left;
  return frame.xMax() - x < CLOSE ? HAlignment::Right : HAlignment::Center;
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

void DrawFrame(MapCanvas& canvas, const Graticule& graticule) {
  const Projection& projection = canvas.projection;
  const Box2d& frame = projection.Frame();
  const std::size_t decimals = DecimalsOf(graticule.step);
  const auto write = [&](double x, double y, HAlignment side, const GString& text) {
    canvas.text.Write(Vec2d(x, y), text, {NOTE_SIZE, DEGREE_COLOR, 400, side});
  };
  canvas.svg.BeginRectangle(frame).Attribute("fill", "none").Attribute("stroke", "#3d4a52").End();
  canvas.svg.Begin("g").Attribute("class", "degree");
  for (const double longitude : graticule.meridians) {
    const double x = projection.ToPage(Vec2d(longitude, 0)).x;
    const GString text = FormatLongitude(longitude, decimals);
    const HAlignment side = SideAlong(x, frame);
    write(x, frame.yMin() - 5, side, text);
    write(x, frame.yMax() + 13, side, text);
  }
  for (const double latitude : graticule.parallels) {
    const double y = projection.ToPage(Vec2d(projection.Window().xMin(), latitude)).y + 3.5;
    const GString text = FormatLatitude(latitude, decimals);
    write(frame.xMin() - 5, y, HAlignment::Right, text);
    write(frame.xMax() + 5, y, HAlignment::Left, text);
  }
  canvas.svg.End();
}

}  // namespace mapreport
