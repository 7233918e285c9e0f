// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Writes an SVG picture to standard output: a row for each pair of polygons, a column for each
// boolean operation of GPolygon. The result is filled; the operands are outlined. Beside them, the
// outlines of one as lines that the other one cuts: inside, outside and along its border.
//
//     booleans > booleans.svg

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/MathUtility.h"
#include "shared/platform/Console.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/lines/PolylineCut.h"

namespace {

using shr::GPolygon;
using shr::Vec2d;
using Points = std::vector<Vec2d>;

constexpr double CELL = 240.0;  // of the picture; polygons lie in 0 ... 200

void Add(GPolygon& polygon, const Points& contour) {
  polygon.AddContours(GPolygon(contour));
}

/// Returns a star drawn in one stroke that visits every `stride`-th of `size` points of a circle.
Points Star(const Vec2d& center, double radius, std::size_t size, std::size_t stride) {
  Points points;
  for (std::size_t i = 0; i < size; ++i) {
    const double angle =
        shr::TWO_PI * static_cast<double>(i * stride % size) / static_cast<double>(size);
    points.push_back(center + Vec2d(std::sin(angle), -std::cos(angle)) * radius);
  }
  return points;
}

/// Returns squares side by side, whose common edges are stored twice, without one in the middle.
GPolygon Grid(std::size_t count, const Vec2d& corner, double size) {
  GPolygon grid;
  for (std::size_t i = 0; i < count * count; ++i) {
    if (i == count * count / 2) continue;
    const Vec2d low =
        corner + Vec2d(static_cast<double>(i % count), static_cast<double>(i / count)) * size;
    grid.AddContours(GPolygon(low.x, low.y, low.x + size, low.y + size));
  }
  return grid;
}

GPolygon Rings(const Vec2d& center, double radius, std::size_t count) {
  GPolygon rings;
  for (std::size_t i = count; i > 0; --i) {
    Add(rings, Star(center, radius * static_cast<double>(i) / static_cast<double>(count), 48, 1));
  }
  return rings;
}

GPolygon Comb(std::size_t teeth, bool isOnItsSide) {
  Points comb = {{10.0, 190.0}};
  const double pitch = 180.0 / static_cast<double>(teeth);
  for (std::size_t i = 0; i < teeth; ++i) {
    comb.emplace_back(10.0 + pitch * static_cast<double>(i), 170.0);
    comb.emplace_back(10.0 + pitch * (static_cast<double>(i) + 0.5), 15.0);
  }
  comb.emplace_back(190.0, 170.0);
  comb.emplace_back(190.0, 190.0);
  for (Vec2d& point : comb) point = isOnItsSide ? Vec2d(point.y, point.x) : point;
  return GPolygon(comb);
}

/// A star of needles whose tips touch the edges of a square, and the square with spikes.
GPolygon Needles() {
  Points points;
  for (std::size_t i = 0; i < 16; ++i) {
    const double angle = shr::TWO_PI * static_cast<double>(i) / 16.0;
    const Vec2d direction(std::cos(angle), std::sin(angle));
    const double reach = 70.0 / std::max(std::abs(direction.x), std::abs(direction.y));
    points.push_back(Vec2d(100.0, 100.0) + direction * reach);
    points.push_back(Vec2d(100.0, 100.0) +
                     Vec2d(std::cos(angle + 0.2), std::sin(angle + 0.2)) * 15.0);
  }
  return GPolygon(points);
}

GPolygon SpikedSquare() {
  return GPolygon(Points{{30, 30},
                         {100, 30},
                         {100, 5},
                         {100, 30},
                         {170, 30},
                         {170, 170},
                         {195, 195},
                         {170, 170},
                         {80, 170},
                         {80, 120},
                         {80, 170},
                         {30, 170}});
}

std::string PathOf(const GPolygon& polygon) {
  std::string path;
  for (std::size_t i = 0; i < polygon.GetNumContours(); ++i) {
    char command = 'M';
    for (const Vec2d& point : polygon.GetContour(i)) {
      char text[64];
      std::snprintf(text, sizeof text, "%c%.2f %.2f", command, point.x, point.y);
      path += text;
      command = 'L';
    }
    path += 'Z';
  }
  return path;
}

struct Operation {
  const char* name;
  GPolygon::SET_OPERATION code;
};

struct Pair {
  GPolygon a, b;
};

void WriteCell(const Pair& pair, const Operation& operation, double x, double y) {
  GPolygon result;
  pair.a.Combine(pair.b, operation.code, result);
  std::printf("<g transform=\"translate(%.0f %.0f)\">\n", x + 20.0, y + 20.0);
  std::printf("<path d=\"%s\" fill=\"#5b8fc7\" fill-rule=\"evenodd\"/>\n", PathOf(result).c_str());
  std::printf("<path d=\"%s\" fill=\"none\" stroke=\"#b5452c\"/>\n", PathOf(pair.a).c_str());
  std::printf("<path d=\"%s\" fill=\"none\" stroke=\"#2f6b3a\"/>\n", PathOf(pair.b).c_str());
  std::printf("<text x=\"100\" y=\"212\" text-anchor=\"middle\">%s, contours: %zu</text>\n</g>\n",
              operation.name, result.GetNumContours());
}

// [lines]
/// Writes what lies inside thick, what lies along the border dashed, what lies outside thin.
void WriteLines(const shr::GPolygon& area, const std::vector<shr::GPolyline>& lines) {
  for (const shr::PolylinePiece& piece : shr::CutPolylines(lines, area)) {
    const bool isInside = piece.place == shr::PolylinePlace::Inside;
    const bool isBorder = piece.place == shr::PolylinePlace::Border;
    std::printf("<polyline fill=\"none\" stroke=\"#2f6b3a\" stroke-width=\"%d\"%s points=\"",
                isInside ? 3 : 1, isBorder ? " stroke-dasharray=\"4 3\"" : "");
    for (const shr::Vec2d& point : piece.points) std::printf("%.2f,%.2f ", point.x, point.y);
    std::printf("\"/>\n");
  }
}
// [end]

void WriteCutCell(const Pair& pair, double x, double y) {
  std::vector<shr::GPolyline> lines;
  for (std::size_t i = 0; i < pair.b.GetNumContours(); ++i) {
    lines.emplace_back(pair.b.GetContour(i));
    lines.back().push_back(lines.back().front());
  }
  std::printf("<g transform=\"translate(%.0f %.0f)\">\n", x + 20.0, y + 20.0);
  std::printf("<path d=\"%s\" fill=\"#e8d9c0\" fill-rule=\"evenodd\"/>\n", PathOf(pair.a).c_str());
  WriteLines(pair.a, lines);
  std::printf("<text x=\"100\" y=\"212\" text-anchor=\"middle\">outlines, cut</text>\n</g>\n");
}

void WritePicture() {
  const Operation operations[] = {{"intersection", GPolygon::SET_INTERSECTION},
                                  {"union", GPolygon::SET_UNION},
                                  {"difference", GPolygon::SET_DIFFERENCE},
                                  {"xor", GPolygon::SET_XOR}};
  const Pair pairs[] = {
      {GPolygon(Star(Vec2d(90.0, 100.0), 85.0, 5, 2)),
       GPolygon(Star(Vec2d(120.0, 105.0), 80.0, 7, 3))},
      {Grid(3, Vec2d(10.0, 10.0), 40.0), Grid(4, Vec2d(50.0, 50.0), 35.0)},
      {Rings(Vec2d(80.0, 100.0), 75.0, 5), Rings(Vec2d(120.0, 100.0), 75.0, 4)},
      {Comb(8, false), Comb(8, true)},
      {SpikedSquare(), Needles()},
  };
  std::printf(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.0f\" height=\"%.0f\" "
      "font-family=\"sans-serif\" font-size=\"12\">\n"
      "<rect width=\"100%%\" height=\"100%%\" fill=\"white\"/>\n",
      CELL * (std::size(operations) + 1), CELL * std::size(pairs));
  double y = 0.0;
  for (const Pair& pair : pairs) {
    double x = 0.0;
    for (const Operation& operation : operations) {
      WriteCell(pair, operation, x, y);
      x += CELL;
    }
    WriteCutCell(pair, x, y);
    y += CELL;
  }
  std::printf("</svg>\n");
}

}  // namespace

int main() {
  try {
    WritePicture();
  } catch (const shr::Exception& error) {
    shr::platform::WriteText(stderr, L"booleans: " + error.GetDescription() + L"\n");
    return 1;
  }
  // What was printed may have been lost before: the flush alone does not tell.
  const bool lost = std::ferror(stdout) != 0;
  const int status = shr::platform::WriteResult(L"booleans", L"");
  if (lost && status == 0) {
    shr::platform::WriteText(stderr, L"booleans: Unable to write the standard output.\n");
  }
  return lost ? 1 : status;
}
