// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/lines/PolylineCut.h"

#include <utility>

#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/clipper/GpcRun.h"

namespace shr {
namespace {

static_assert(static_cast<int>(PolylinePlace::Inside) == static_cast<int>(gpc::LinePlace::Inside));
static_assert(static_cast<int>(PolylinePlace::Outside) ==
              static_cast<int>(gpc::LinePlace::Outside));
static_assert(static_cast<int>(PolylinePlace::Border) == static_cast<int>(gpc::LinePlace::Border));

std::vector<PolylinePiece> Cut(std::span<const GPolyline> lines, gpc::Rule rule,
                               const gpc::Operand& area) {
  std::vector<GpcContour> contours;
  contours.reserve(lines.size());
  for (const GPolyline& line : lines) {
    // The clipper reads operands only.
    contours.push_back({static_cast<int>(line.size()), const_cast<Vec2d*>(line.data())});
  }
  const gpc::LineRun run(rule, area, contours);
  std::vector<PolylinePiece> pieces;
  pieces.reserve(run.Parts().size());
  for (const gpc::LinePart& part : run.Parts()) {
    GPolyline points(part.count);
    run.Copy(part, points.data());
    pieces.push_back({part.line, static_cast<PolylinePlace>(part.place), std::move(points)});
  }
  return pieces;
}

}  // namespace

std::vector<PolylinePiece> CutPolylines(std::span<const GPolyline> lines, const GPolygon& polygon,
                                        FillRule rule) {
  return Cut(lines, gpc::RuleOf(rule), gpc::OperandOf(polygon.GetRecord()));
}

std::vector<PolylinePiece> CutPolylines(std::span<const GPolyline> lines,
                                        const GPolygon2d& polygon) {
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  std::vector<GpcContour> contours;
  std::vector<gpc::Index> polygons;
  const auto add = [&](Ring2d& ring, std::size_t number) {
    contours.push_back({static_cast<int>(ring.size()), ring.data()});
    polygons.push_back(static_cast<gpc::Index>(number));
  };
  for (std::size_t i = 0; i < model.size(); ++i) {
    add(model[i].outer(), i);
    for (Ring2d& hole : model[i].inners()) add(hole, i);
  }
  return Cut(lines, gpc::Rule::Polygons, {contours, polygons});
}

}  // namespace shr
