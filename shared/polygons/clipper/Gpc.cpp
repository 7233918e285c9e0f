// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The clipper follows the idea of a scan of the plane that pairs the edges of both operands and
// keeps, for each piece of border, what lies on either side (Vatti). A scan that stops at every
// vertex costs a sorted table of all vertices, and on double coordinates every stop is a chance to
// find the edges in another order than before. So the work is done in stages over whole arrays
// instead, each of which only ever handles what the stage before left over:
//
// 0. Loading (GpcLoading.cpp): the contours, less what lies where the operation has no result.
// 1. Sections (GpcSections.cpp): runs of edges that cannot meet each other, with their boxes.
// 2. Crossings (GpcCrossings.cpp): pairs of edges that meet, found by halving the plane into tiles.
// 3. Graph (GpcGraph.cpp): nodes where edges meet, chains of edges between them.
// 4. Labels (GpcLabels.cpp): for each chain, which operands are on its left and on its right.
// 5. Contours (GpcContours.cpp): chains whose sides differ for the operation, linked up.
//
// Robustness: crossings are rounded to doubles, which bends edges by about one unit in the last
// place, and bent edges may cross where straight ones did not. Everything nearer to each other than
// the tolerance, which is a few such units, is therefore joined. Each joining may bend edges again;
// stages 1 to 3 are repeated on the joined contours until nothing had to be joined that was not
// equal to the bit already. Contours stay closed walks through all of this, so whatever happens
// at the scale of the tolerance cannot open the result. The tolerance grows with the rounds so that
// they end.
//
// Sources: B. R. Vatti, "A Generic Solution to Polygon Clipping", Communications of the ACM 35,
// 1992; J. D. Hobby, "Practical Segment Intersection with Finite Precision Output", Computational
// Geometry 13, 1999; D. Halperin and E. Packer, "Iterated Snap Rounding", Computational Geometry
// 23, 2002; J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric
// Predicates", 1997.

#include "shared/polygons/Gpc.h"

#include <algorithm>
#include <memory>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr {
namespace {

using gpc::Workspace;

/// A thread keeps the memory of its workspace for the next call unless it is more than this.
constexpr std::size_t KEPT_BYTES = std::size_t{64} << 20;
constexpr int STEADY_ROUNDS = 3;
constexpr int MAX_ROUNDS = 48;

/// The workspace of the calling thread for one call.
class WorkspaceLease {
public:
  WorkspaceLease() = default;
  ~WorkspaceLease() {
    if (gpc::CountBytes(work_) <= KEPT_BYTES) return;
    std::destroy_at(&work_);
    std::construct_at(&work_);
  }
  WorkspaceLease(const WorkspaceLease&) = delete;
  WorkspaceLease& operator=(const WorkspaceLease&) = delete;

  Workspace& Get() const { return work_; }

private:
  static Workspace& GetWorkspace() {
    thread_local Workspace work;
    return work;
  }

  Workspace& work_ = GetWorkspace();
};

/// Frees the contours of an unfinished result.
class ResultGuard {
public:
  explicit ResultGuard(Workspace& work) : work_(work) {
    work_.resultContours.Clear();
    work_.resultHoles.Clear();
  }
  ~ResultGuard() {
    for (const GpcContour& contour : work_.resultContours) GpcFree(contour.vertices);
    work_.resultContours.Clear();
  }
  ResultGuard(const ResultGuard&) = delete;
  ResultGuard& operator=(const ResultGuard&) = delete;

  /// Hands the contours over.
  GpcPolygon Take() {
    GpcPolygon polygon;
    const gpc::Index count = work_.resultContours.Size();
    if (count == 0) return polygon;
    auto* holes = static_cast<int*>(
        GpcAlloc(count * sizeof(int), gpc::UNIT, __LINE__, L"hole flag array creation"));
    try {
      polygon.contours = static_cast<GpcContour*>(
          GpcAlloc(count * sizeof(GpcContour), gpc::UNIT, __LINE__, L"contour array creation"));
    } catch (...) {
      GpcFree(holes);
      throw;
    }
    polygon.holeFlags = holes;
    polygon.contourCount = static_cast<int>(count);
    std::copy(work_.resultHoles.begin(), work_.resultHoles.end(), holes);
    std::copy(work_.resultContours.begin(), work_.resultContours.end(), polygon.contours);
    work_.resultContours.Clear();
    return polygon;
  }

private:
  Workspace& work_;
};

/// Runs the stages up to the labels.
void Arrange(Workspace& work) {
  for (int round = 0; round < MAX_ROUNDS; ++round) {
    if (round >= STEADY_ROUNDS) work.tolerance *= 2.0;
    gpc::BuildSections(work);
    gpc::FindCrossings(work);
    if (gpc::BuildGraph(work) && gpc::FindLabels(work)) return;
    gpc::RefineContours(work);
  }
  throw GPCException(gpc::UNIT, __LINE__);
}

}  // namespace

void gpc_polygon_clip(gpc_op operation, const GpcPolygon& subject, const GpcPolygon& clip,
                      GpcPolygon& result) {
  const WorkspaceLease lease;
  Workspace& work = lease.Get();
  gpc::LoadPolygons(work, operation, subject, clip);
  Arrange(work);
  ResultGuard guard(work);
  gpc::TraceContours(work, operation);
  result = guard.Take();
}

}  // namespace shr
