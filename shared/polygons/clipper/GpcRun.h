// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One boolean operation of the clipper, whatever its operands are made of and wherever its result
/// goes. For the library's own use; the public face is shared/polygons/Gpc.h.
///
///     const gpc::Run run(GPC_UNION, gpc::Rule::Polygons, subject, clip, gpc::Want::Owners);
///     for (const gpc::ResultContour& contour : run.Contours()) run.Copy(contour, points);
///
/// Threads: a run has the workspace of its thread to itself, so a thread has one run at a time.

#pragma once

#include <vector>

#include "shared/polygons/clipper/GpcResult.h"

namespace shr::gpc {

struct Workspace;

/// Whether the outer contours of holes are asked for.
enum class Want { Contours, Owners };

class Run {
public:
  /// Errors: as `gpc_polygon_clip`.
  Run(gpc_op operation, Rule rule, const Operand& subject, const Operand& clip, Want want);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  std::span<const ResultContour> Contours() const;
  /// Copies the points of a contour, the highest first, to `count` places and returns the end.
  Vec2d* Copy(const ResultContour& contour, Vec2d* points) const;
  /// Stores all contours in a record, whose former content is ignored. Errors: as `GpcAlloc`; the
  /// record is then unchanged.
  void MakeRecord(GpcPolygon& result) const;

private:
  Workspace& work_;
};

/// Lines cut by an area.
class LineRun {
public:
  /// Errors: as `CutPolylines`.
  LineRun(Rule rule, const Operand& area, std::span<const GpcContour> lines);
  ~LineRun();
  LineRun(const LineRun&) = delete;
  LineRun& operator=(const LineRun&) = delete;

  std::span<const LinePart> Parts() const;
  /// Copies the points of a part to `count` places.
  void Copy(const LinePart& part, Vec2d* points) const;

private:
  Workspace& work_;
};

Rule RuleOf(FillRule rule);

/// Returns what lies around each contour of an operand, in which each is a polygon of its own, by
/// the number of the polygon. Where edges of several contours lie upon each other, those of greater
/// size lie around the others, of several of one size those of lesser number. The depth is 0 for
/// contours that enclose nothing and for numbers without a contour. Of contours that cross,
/// anything may come.
std::vector<Nest> FindNests(const Operand& contours, std::span<const double> sizes);

/// Returns the contours of a record as an operand of any rule but that of polygons.
inline Operand OperandOf(const GpcPolygon& polygon) {
  return {{polygon.contours, static_cast<std::size_t>(polygon.contourCount)}, {}};
}

}  // namespace shr::gpc
