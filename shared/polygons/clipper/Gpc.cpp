// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The clipper follows the idea of a scan of the plane that pairs the edges of both operands and
// keeps, for each piece of border, what lies on either side (Vatti). A scan that stops at every
// vertex costs a sorted table of all vertices, and on double coordinates every stop is a chance to
// find the edges in another order than before. So the work is done in stages over whole arrays
// instead, each of which only ever handles what the stage before left over. A stage reads what
// those before it have made, and changes nothing but its own:
//
// 0. `Input` (GpcLoading.cpp): the contours, less what lies where the operation has no result.
// 1. Sections of it (GpcSections.cpp): runs of edges that cannot meet each other, with their boxes.
// 2. `Crossings` (GpcCrossings.cpp): pairs of edges that meet, found by halving the plane into
//    tiles (GpcTiles.h), and the nodes of each edge in order (GpcEdgeNodes.cpp).
// 3. `Graph` (GpcGraph.cpp): nodes where edges meet, chains of edges between them.
// 4. `Labels` (GpcLabels.cpp): for each chain, which operands are on its left and on its right.
// 5. `Result` (GpcContours.cpp): chains whose sides differ for the operation, linked up.
// 6. Faces (GpcFaces.cpp): the outer contours that holes lie in, for who asks. Where open lines are
//    cut, their parts (GpcLines.cpp) take the place of 5 and 6.
//
// Robustness: stages 1 to 3 run on doubles first. Crossings are rounded, which bends edges by about
// one unit in the last place; as long as everything else is either equal to the bit or farther
// apart than the snap distance, no bent edge can cross where the straight one did not, and that is
// the end of it. Where it is not so, vertices that differ by their last bits only are joined once
// (`JoinVertices`), and the contours are written anew by exact snap rounding on a fixed grid
// (GpcSnap.cpp), which takes no more than one round whatever the input is. Only edges that come
// near others take part in it. Contours stay closed walks through all of this.
//
// Sources: B. R. Vatti, "A Generic Solution to Polygon Clipping", Communications of the ACM 35,
// 1992; J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric
// Predicates", 1997; those of snap rounding are named in GpcSnap.cpp.

#include "shared/polygons/Gpc.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/clipper/GpcRun.h"
#include "shared/polygons/clipper/GpcSnap.h"

namespace shr {

std::size_t& gpc::HeldBytes() {
  thread_local std::size_t bytes = 0;
  return bytes;
}

/// What the stages own, kept from call to call.
struct gpc::Workspace {
  Input input;
  Crossings crossings;
  Graph graph;
  Labels labels;
  Result result;

  // Where contours have to be moved.
  ContourTable moved;
  Buffer<std::uint8_t> isActive{L"edge table creation"};  ///< by edge: goes to the grid
  SnapMemory snap;
};

namespace {

using gpc::Workspace;

/// A thread keeps the memory of its workspace for the next call unless it is more than this.
constexpr std::size_t KEPT_BYTES = std::size_t{64} << 20;

/// Frees the contours of an unfinished record.
struct RecordGuard {
  GpcPolygon record;
  ~RecordGuard() { gpc_free_polygon(record); }
};

/// The workspace of the calling thread.
Workspace& GetWorkspace() {
  thread_local Workspace work;
  return work;
}

void Trim(Workspace& work) {
  if (gpc::HeldBytes() <= KEPT_BYTES) return;
  std::destroy_at(&work);
  std::construct_at(&work);
}

/// Brings points back to the scale of the operands.
void Unscale(const gpc::Input& input, Vec2d* points, gpc::Index count) {
  if (input.unscale == 1.0) return;
  for (Vec2d* point = points; point != points + count; ++point) *point = *point * input.unscale;
}

/// Takes moved contours in place of the present ones.
void TakeMoved(Workspace& work) {
  work.input.Swap(work.moved);
  gpc::BuildSections(work.input);
}

/// Makes graph and labels. Returns false when they are not sound.
bool Label(Workspace& work, gpc::Meeting meeting, std::span<const double> nestSizes) {
  return gpc::BuildGraph(work.input, work.crossings, meeting, work.graph) &&
         gpc::FindLabels(work.input, work.crossings, work.graph, nestSizes, work.labels);
}

/// Runs the stages up to the labels.
void Arrange(Workspace& work, std::span<const double> nestSizes) {
  using gpc::Meeting;
  auto& [input, crossings, graph, labels, result, moved, isActive, snap] = work;
  gpc::BuildSections(input);
  gpc::FindCrossings(input, crossings);
  if (!crossings.isMoved && Label(work, Meeting::Rounded, nestSizes)) return;
  if (crossings.isMoved && !crossings.isAbandoned) {
    gpc::JoinVertices(input, crossings, moved);
    TakeMoved(work);
  }
  gpc::FindActiveEdges(input, crossings, isActive);
  gpc::SnapContours(input, isActive, snap, moved, crossings);
  TakeMoved(work);
  if (!Label(work, Meeting::Exact, nestSizes)) throw GPCException(gpc::UNIT, __LINE__);
}

}  // namespace

namespace gpc {

Rule RuleOf(FillRule rule) {
  switch (rule) {
    case FillRule::EvenOdd:
      return Rule::EvenOdd;
    case FillRule::NonZero:
      return Rule::NonZero;
    case FillRule::Positive:
      return Rule::Positive;
    case FillRule::Negative:
      return Rule::Negative;
  }
  throw GPCException(UNIT, __LINE__);
}

Run::Run(gpc_op operation, Rule rule, const Operand& subject, const Operand& clip, Want want)
    : work_(GetWorkspace()) {
  try {
    auto& [input, crossings, graph, labels, result, moved, isActive, snap] = work_;
    LoadPolygons(operation, rule, subject, clip, input);
    Arrange(work_, {});
    TraceContours(operation, input, graph, labels, result);
    if (want == Want::Owners) FindOwners(operation, input, crossings, graph, labels, result);
  } catch (...) {
    Trim(work_);
    throw;
  }
}

std::vector<Nest> FindNests(const Operand& contours, std::span<const double> sizes) {
  Workspace& work = GetWorkspace();
  LoadPolygons(GPC_UNION, Rule::Nests, contours, {}, work.input);
  Arrange(work, sizes);
  return {work.labels.nests.begin(), work.labels.nests.end()};
}

Run::~Run() {
  Trim(work_);
}

std::span<const ResultContour> Run::Contours() const {
  return {work_.result.contours.begin(), work_.result.contours.end()};
}

Vec2d* Run::Copy(const ResultContour& contour, Vec2d* points) const {
  const Vec2d* from = work_.result.points.Data() + contour.first;
  const Vec2d* top = from + contour.top;
  Vec2d* const end = std::copy(from, top, std::copy(top, from + contour.count, points));
  Unscale(work_.input, points, contour.count);
  return end;
}

void Run::MakeRecord(GpcPolygon& result) const {
  RecordGuard guard;
  GpcPolygon& record = guard.record;
  const std::size_t count = Contours().size();
  if (count != 0) {
    record.holeFlags = static_cast<int*>(
        GpcAlloc(count * sizeof(int), UNIT, __LINE__, L"hole flag array creation"));
    record.contours = static_cast<GpcContour*>(
        GpcAlloc(count * sizeof(GpcContour), UNIT, __LINE__, L"contour array creation"));
  }
  for (const ResultContour& contour : Contours()) {
    auto* vertices = static_cast<Vec2d*>(
        GpcAlloc(contour.count * sizeof(Vec2d), UNIT, __LINE__, L"contour creation"));
    Copy(contour, vertices);
    record.holeFlags[record.contourCount] = contour.isHole ? 1 : 0;
    record.contours[record.contourCount++] = {static_cast<int>(contour.count), vertices};
  }
  result = std::exchange(record, GpcPolygon());
}

LineRun::LineRun(Rule rule, const Operand& area, std::span<const GpcContour> lines)
    : work_(GetWorkspace()) {
  try {
    LoadLines(rule, area, lines, work_.input);
    Arrange(work_, {});
    CutLines(work_.input, work_.crossings, work_.graph, work_.labels, work_.result);
  } catch (...) {
    Trim(work_);
    throw;
  }
}

LineRun::~LineRun() {
  Trim(work_);
}

std::span<const LinePart> LineRun::Parts() const {
  return {work_.result.lineParts.begin(), work_.result.lineParts.end()};
}

void LineRun::Copy(const LinePart& part, Vec2d* points) const {
  const Vec2d* from = work_.result.points.Data() + part.first;
  std::copy(from, from + part.count, points);
  Unscale(work_.input, points, part.count);
}

}  // namespace gpc

void gpc_polygon_clip(gpc_op operation, const GpcPolygon& subject, const GpcPolygon& clip,
                      GpcPolygon& result, FillRule rule) {
  gpc::Run(operation, gpc::RuleOf(rule), gpc::OperandOf(subject), gpc::OperandOf(clip),
           gpc::Want::Contours)
      .MakeRecord(result);
}

}  // namespace shr
