// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pieces of lines inside, outside and along the border of polygons: exact rows first (touching,
// along the border, through vertices, lines that cross each other, rules), then the families of
// hard pairs of the boolean operations, whose clip contours are cut as lines by the subject and
// judged point by point.

#include "shared/polygons/lines/PolylineCut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/Orientation.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/polygons/BooleanCases.h"

namespace {

using namespace shr;
using namespace shr::test;

GPolygon PolygonOf(const Contours& contours) {
  GPolygon polygon;
  for (const auto& contour : contours) polygon.AddContours(GPolygon(contour));
  return polygon;
}

/// Writes pieces as "0 inside 1,2 3,4; 1 border ...".
std::string ToText(const std::vector<PolylinePiece>& pieces) {
  static constexpr const char* PLACES[] = {"inside", "outside", "border"};
  std::string text;
  const auto number = [](double value) {
    std::string digits = std::to_string(value);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
  };
  for (const PolylinePiece& piece : pieces) {
    if (!text.empty()) text += "; ";
    text += std::to_string(piece.line) + " " + PLACES[static_cast<int>(piece.place)];
    for (const Vec2d& point : piece.points) text += " " + number(point.x) + "," + number(point.y);
  }
  return text;
}

struct Row {
  const char* name;
  Contours polygon;
  std::vector<GPolyline> lines;
  const char* pieces;
};

const std::vector<Vec2d> SQUARE = {{0, 0}, {8, 0}, {8, 8}, {0, 8}};

const Row ROWS[] = {
    {"across",
     {SQUARE},
     {{{-2, 4}, {10, 4}}},
     "0 outside -2,4 0,4; 0 inside 0,4 8,4; 0 outside 8,4 10,4"},
    {"inside", {SQUARE}, {{{1, 1}, {4, 7}, {7, 1}}}, "0 inside 1,1 4,7 7,1"},
    {"far outside", {SQUARE}, {{{20, 0}, {30, 5}}}, "0 outside 20,0 30,5"},
    {"ends on the border from inside", {SQUARE}, {{{4, 4}, {8, 4}}}, "0 inside 4,4 8,4"},
    {"ends on the border from outside", {SQUARE}, {{{12, 4}, {8, 4}}}, "0 outside 12,4 8,4"},
    {"touches an edge from inside", {SQUARE}, {{{2, 4}, {8, 5}, {2, 6}}}, "0 inside 2,4 8,5 2,6"},
    {"touches a corner from outside", {SQUARE}, {{{6, 10}, {10, 6}}}, "0 outside 6,10 10,6"},
    {"through two corners",
     {SQUARE},
     {{{-1, -1}, {9, 9}}},
     "0 outside -1,-1 0,0; 0 inside 0,0 8,8; 0 outside 8,8 9,9"},
    {"along an edge",
     {SQUARE},
     {{{-2, 0}, {10, 0}}},
     "0 outside -2,0 0,0; 0 border 0,0 8,0; 0 outside 8,0 10,0"},
    {"along a part of an edge and in",
     {SQUARE},
     {{{6, 8}, {3, 8}, {3, 4}}},
     "0 border 6,8 3,8; 0 inside 3,8 3,4"},
    {"round the border",
     {SQUARE},
     {{{8, 8}, {0, 8}, {0, 0}, {8, 0}, {8, 8}}},
     "0 border 8,8 0,8 0,0 8,0 8,8"},
    {"there and back",
     {SQUARE},
     {{{4, 4}, {12, 4}, {4, 4}}},
     "0 inside 4,4 8,4; 0 outside 8,4 12,4 8,4; 0 inside 8,4 4,4"},
    {"crosses itself", {SQUARE}, {{{1, 1}, {7, 7}, {7, 1}, {1, 7}}}, "0 inside 1,1 7,7 7,1 1,7"},
    {"two lines that cross and one twice",
     {SQUARE},
     {{{1, 1}, {7, 7}}, {{1, 7}, {7, 1}}, {{1, 1}, {7, 7}}},
     "0 inside 1,1 7,7; 1 inside 1,7 7,1; 2 inside 1,1 7,7"},
    {"a hole and its border",
     {SQUARE, {{2, 2}, {6, 2}, {6, 6}, {2, 6}}},
     {{{0, 2}, {8, 2}}, {{4, 4}, {4, 1}}},
     "0 inside 0,2 2,2; 0 border 2,2 6,2; 0 inside 6,2 8,2; 1 outside 4,4 4,2; 1 inside 4,2 4,1"},
    {"edges that cancel each other",
     {SQUARE, {{8, 0}, {12, 0}, {12, 8}, {8, 8}}},
     {{{8, -1}, {8, 9}}},
     "0 outside 8,-1 8,0; 0 inside 8,0 8,8; 0 outside 8,8 8,9"},
    {"repeated points, points, nothing",
     {SQUARE},
     {{{1, 1}, {1, 1}, {2, 2}, {2, 2}}, {{3, 3}}, {{4, 4}, {4, 4}}, {}, {{5, 5}, {6, 6}}},
     "0 inside 1,1 2,2; 4 inside 5,5 6,6"},
    {"no polygon", {}, {{{1, 1}, {2, 2}}}, "0 outside 1,1 2,2"},
    {"a contour without area",
     {{{0, 0}, {8, 0}, {4, 0}}},
     {{{-1, 0}, {9, 0}}},
     "0 outside -1,0 9,0"},
    {"no lines", {SQUARE}, {}, ""},
};

TEST(PolylineCut, rowsGiveTheirPieces) {
  for (const Row& row : ROWS) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ToText(CutPolylines(row.lines, PolygonOf(row.polygon))), row.pieces);
  }
}

TEST(PolylineCut, fillRulesDecideWhatIsInside) {
  const GPolygon nested = PolygonOf({SQUARE, {{2, 2}, {6, 2}, {6, 6}, {2, 6}}});
  const GPolyline lines[] = {{{-1, 4}, {9, 4}}, {{2, 0}, {2, 8}}};
  EXPECT_EQ(ToText(CutPolylines(lines, nested, FillRule::NonZero)),
            "0 outside -1,4 0,4; 0 inside 0,4 8,4; 0 outside 8,4 9,4; 1 inside 2,0 2,8");
  EXPECT_EQ(ToText(CutPolylines(lines, nested, FillRule::Negative)),
            "0 outside -1,4 9,4; 1 outside 2,0 2,8");
}

TEST(PolylineCut, polygonsThatShareAnEdgeOrOverlapAreOneArea) {
  GPolygon2d pair;
  pair.AddContours(GPolygon2d(SQUARE));
  pair.AddContours(GPolygon2d(std::vector<Vec2d>{{8, 0}, {12, 0}, {12, 8}, {8, 8}}));
  pair.AddContours(GPolygon2d(std::vector<Vec2d>{{6, 2}, {10, 2}, {10, 6}, {6, 6}}));
  const GPolyline lines[] = {{{-1, 4}, {13, 4}}, {{8, -1}, {8, 9}}, {{6, 0}, {6, 8}}};
  EXPECT_EQ(ToText(CutPolylines(lines, pair)),
            "0 outside -1,4 0,4; 0 inside 0,4 12,4; 0 outside 12,4 13,4; "
            "1 outside 8,-1 8,0; 1 inside 8,0 8,8; 1 outside 8,8 8,9; 2 inside 6,0 6,8");
}

TEST(PolylineCut, anUlpBesideTheBorderIsAlongIt) {
  const double up = std::nextafter(8.0, 9.0);
  const GPolyline lines[] = {
      {{1, up}, {7, up}}, {{1, 8.001}, {7, 8.001}}, {{1, 7.999}, {7, 7.999}}};
  const auto pieces = CutPolylines(lines, PolygonOf({SQUARE}));
  ASSERT_EQ(pieces.size(), 3u);
  EXPECT_EQ(pieces[0].place, PolylinePlace::Border);
  EXPECT_EQ(pieces[1].place, PolylinePlace::Outside);
  EXPECT_EQ(pieces[2].place, PolylinePlace::Inside);
}

TEST(PolylineCut, coordinatesAtTheEndsOfTheRangeAreCut) {
  for (const double scale : {1e-300, 1e300}) {
    GPolyline line = {{-2 * scale, 4 * scale}, {10 * scale, 4 * scale}};
    const GPolygon square(0.0, 0.0, 8 * scale, 8 * scale);
    const auto pieces = CutPolylines({&line, 1}, square);
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_DOUBLE_EQ(pieces[1].points.front().x / scale, 0.0);
    EXPECT_DOUBLE_EQ(pieces[1].points.back().x / scale, 8.0);
  }
}

TEST(PolylineCut, coordinatesThatAreNoNumbersRaise) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const GPolyline bad[] = {{{0, 0}, {1, nan}}};
  const GPolyline good[] = {{{0, 0}, {1, 1}}};
  EXPECT_THROW(CutPolylines(bad, GPolygon(0.0, 0.0, 8.0, 8.0)), Exception);
  EXPECT_THROW(CutPolylines(good, GPolygon(0.0, 0.0, 8.0, nan)), Exception);
}

/// What pieces are held to. Distances are in snap distances; the clipper may move polygon and line
/// by 2 each along both axes, and the rounding of the judge comes on top.
class CutJudge {
public:
  CutJudge(const Contours& polygon, const std::vector<GPolyline>& lines) : lines_(lines) {
    double largest = 0.0;
    const auto measure = [&](const Vec2d& point) {
      largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
    };
    for (const auto& contour : polygon) {
      for (std::size_t i = 0; i < contour.size(); ++i) {
        edges_.push_back({contour[i], contour[(i + 1) % contour.size()]});
        measure(contour[i]);
      }
    }
    for (const GPolyline& line : lines) std::for_each(line.begin(), line.end(), measure);
    near_ = MOST_SNAPS * GPC_SNAP * largest;
  }

  /// Returns what is wrong, nothing when all is well.
  std::string FaultOf(const std::vector<PolylinePiece>& pieces) const {
    std::size_t next = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      const std::size_t first = next;
      while (next < pieces.size() && pieces[next].line == i) ++next;
      std::string fault = FaultOfLine(lines_[i], std::span(pieces).subspan(first, next - first));
      if (!fault.empty()) return "line " + std::to_string(i) + ": " + fault;
    }
    return next == pieces.size() ? "" : "pieces in the wrong order";
  }

private:
  static constexpr double MOST_SNAPS = 8.0;
  struct Edge {
    Vec2d a, b;
  };

  std::string FaultOfLine(const GPolyline& line, std::span<const PolylinePiece> pieces) const {
    if (pieces.empty()) {
      return line.empty() || line.GetBounds().xRange() + line.GetBounds().yRange() <= near_
                 ? ""
                 : "no pieces";
    }
    if (pieces.front().points.front().Distance(line.front()) > near_) return "wrong begin";
    if (pieces.back().points.back().Distance(line.back()) > near_) return "wrong end";
    double length = 0.0;
    std::size_t points = line.size();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (pieces[i].points.size() < 2) return "a piece of one point";
      if (i > 0 && pieces[i].points.front() != pieces[i - 1].points.back()) return "a gap";
      if (i > 0 && pieces[i].place == pieces[i - 1].place) return "a needless cut";
      length += pieces[i].points.GetLength();
      points += pieces[i].points.size();
      std::string fault = FaultOfPiece(line, pieces[i]);
      if (!fault.empty()) return fault;
    }
    const double error = std::abs(length - line.GetLength());
    return error <= 1e-12 * length + static_cast<double>(points) * near_ ? "" : "wrong length";
  }

  std::string FaultOfPiece(const GPolyline& line, const PolylinePiece& piece) const {
    for (std::size_t i = 0; i + 1 < piece.points.size(); ++i) {
      const Edge segment{piece.points[i], piece.points[i + 1]};
      for (const double t : PlacesBetweenCuts(segment)) {
        const Vec2d point = segment.a + (segment.b - segment.a) * t;
        if (DistanceToLine(line, point) > near_) return "a point beside the line";
        const double distance = DistanceToBorder(point);
        if (piece.place == PolylinePlace::Border) {
          if (distance > near_) return "a point beside the border";
        } else if (distance > near_ && IsInside(point) != (piece.place == PolylinePlace::Inside)) {
          return "a point in the wrong place";
        }
      }
    }
    return "";
  }

  /// Returns a place in the middle of each part of a segment between crossings with edges.
  std::vector<double> PlacesBetweenCuts(const Edge& segment) const {
    std::vector<double> cuts = {0.0, 1.0};
    const Vec2d along = segment.b - segment.a;
    for (const Edge& edge : edges_) {
      const double scale = along.Cross(edge.b - edge.a);
      const double t = (edge.a - segment.a).Cross(edge.b - edge.a) / scale;
      if (t > 0.0 && t < 1.0) cuts.push_back(t);
    }
    std::sort(cuts.begin(), cuts.end());
    std::vector<double> places;
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) places.push_back((cuts[i] + cuts[i + 1]) / 2);
    return places;
  }

  static double DistanceTo(const Edge& edge, const Vec2d& point) {
    const Vec2d along = edge.b - edge.a;
    const double square = along.Dot(along);
    const double t =
        square > 0.0 ? std::clamp((point - edge.a).Dot(along) / square, 0.0, 1.0) : 0.0;
    // From the nearer end, so that the foot is not rounded more than need be.
    const Vec2d foot = t <= 0.5 ? edge.a + along * t : edge.b - along * (1.0 - t);
    return std::min({point.Distance(foot), point.Distance(edge.a), point.Distance(edge.b)});
  }
  double DistanceToBorder(const Vec2d& point) const {
    double least = std::numeric_limits<double>::infinity();
    for (const Edge& edge : edges_) least = std::min(least, DistanceTo(edge, point));
    return least;
  }
  static double DistanceToLine(const GPolyline& line, const Vec2d& point) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      least = std::min(least, DistanceTo({line[i], line[i + 1]}, point));
    }
    return least;
  }
  bool IsInside(const Vec2d& point) const {
    bool isInside = false;
    for (const Edge& edge : edges_) {
      if ((edge.a.y <= point.y) == (edge.b.y <= point.y)) continue;
      const int side = OrientationSign(edge.a, edge.b, point);
      if (edge.a.y < edge.b.y ? side > 0 : side < 0) isInside = !isInside;
    }
    return isInside;
  }

  const std::vector<GPolyline>& lines_;
  std::vector<Edge> edges_;
  double near_ = 0.0;
};

class PolylineCutFamilies : public testing::TestWithParam<CaseFamily> {};

TEST_P(PolylineCutFamilies, piecesLieWhereTheySay) {
  for (std::uint64_t seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    const BooleanCase pair = GetParam().make(random);
    std::vector<GPolyline> lines;
    for (std::size_t i = 0; i < pair.clip.size(); ++i) {
      GPolyline& line = lines.emplace_back(pair.clip[i]);
      if (i % 2 == seed % 2 && !line.empty()) line.push_back(line.front());
    }
    const auto pieces = CutPolylines(lines, PolygonOf(pair.subject));
    EXPECT_EQ(CutJudge(pair.subject, lines).FaultOf(pieces), "");
    // The border of the polygon itself, and what was cut, cut again.
    std::vector<GPolyline> parts;
    for (const PolylinePiece& piece : pieces) parts.push_back(piece.points);
    for (const auto& contour : pair.subject) parts.emplace_back(contour);
    EXPECT_EQ(CutJudge(pair.subject, parts).FaultOf(CutPolylines(parts, PolygonOf(pair.subject))),
              "");
  }
}

INSTANTIATE_TEST_SUITE_P(Families, PolylineCutFamilies, testing::ValuesIn(BooleanCaseFamilies()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
