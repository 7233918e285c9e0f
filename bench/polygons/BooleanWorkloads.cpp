// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/polygons/BooleanWorkloads.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "shared/geometry/Box2.h"
#include "shared/geometry/MathUtility.h"

namespace shr::bench {
namespace {

using Points = std::vector<Vec2d>;

Vec2d Direction(double angle) {
  return Vec2d(std::cos(angle), std::sin(angle));
}

double AngleOf(std::size_t i, std::size_t size) {
  return TWO_PI * static_cast<double>(i) / static_cast<double>(size);
}

Points RoughStar(std::size_t size, std::mt19937_64& random) {
  std::uniform_real_distribution<double> radius(250.0, 500.0);
  Points star;
  for (std::size_t i = 0; i < size; ++i) {
    star.push_back(Vec2d(500.0, 500.0) + Direction(AngleOf(i, size)) * radius(random));
  }
  return star;
}

Points SmoothStar(const Vec2d& center, std::size_t size, std::mt19937_64& random) {
  const double edge = TWO_PI * 350.0 / static_cast<double>(size);
  std::uniform_real_distribution<double> jitter(-0.25 * edge, 0.25 * edge);
  Points star;
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = AngleOf(i, size);
    const double radius =
        350.0 * (1.0 + 0.15 * std::sin(5.0 * angle) + 0.05 * std::sin(17.0 * angle));
    star.push_back(center + Direction(angle) * (radius + jitter(random)));
  }
  return star;
}

/// Returns squares with gaps of three tenths of the pitch, turned around the middle of the map.
std::vector<Contours> Grid(std::size_t count, double shift, double turn) {
  const double pitch = 600.0 / static_cast<double>(count);
  const double side = 0.7 * pitch;
  const Vec2d x = Direction(turn);
  const Vec2d y(-x.y, x.x);
  const auto place = [&](const Vec2d& point) {
    const Vec2d offset = point - Vec2d(500.0, 500.0);
    return turn == 0.0 ? point : Vec2d(500.0, 500.0) + x * offset.x + y * offset.y;
  };
  std::vector<Contours> squares;
  for (std::size_t i = 0; i < count * count; ++i) {
    const Vec2d low =
        Vec2d(static_cast<double>(i % count), static_cast<double>(i / count)) * pitch +
        Vec2d(200.0 + shift * pitch, 200.0 + shift * pitch);
    squares.push_back({{place(low), place(low + Vec2d(side, 0.0)), place(low + Vec2d(side, side)),
                        place(low + Vec2d(0.0, side))}});
  }
  return squares;
}

/// Returns a polygon whose edges nowhere cross, at most 100 wide.
Points SmallPolygon(const Vec2d& center, std::size_t size, std::mt19937_64& random) {
  std::uniform_real_distribution<double> radius(20.0, 50.0);
  std::uniform_real_distribution<double> turn(0.0, 0.8);
  Points polygon;
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = AngleOf(i, size) + turn(random) * TWO_PI / static_cast<double>(size);
    polygon.push_back(center + Direction(angle) * radius(random));
  }
  return polygon;
}

BooleanWork SmallPair(std::size_t size, std::mt19937_64& random) {
  std::uniform_real_distribution<double> offset(-30.0, 30.0);
  const Points first = SmallPolygon(Vec2d(500.0, 500.0), size, random);
  const Vec2d center(500.0 + offset(random), 500.0 + offset(random));
  return {{{first}}, {{SmallPolygon(center, size, random)}}};
}

/// Returns triangles with a corner in the middle of the map, the first at an angle.
std::vector<Contours> Spokes(std::size_t count, double first) {
  const Vec2d hub(500.0, 500.0);
  const double step = TWO_PI / static_cast<double>(count);
  std::vector<Contours> triangles;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle = first + step * static_cast<double>(i);
    triangles.push_back(
        {{hub, hub + Direction(angle) * 400.0, hub + Direction(angle + 0.75 * step) * 400.0}});
  }
  return triangles;
}

/// Returns a contour of long edges through a point, joined at their ends.
Points Pencil(std::size_t edges, const Vec2d& hub, std::mt19937_64& random) {
  std::uniform_real_distribution<double> within(0.0, 0.5);
  Points contour;
  for (std::size_t i = 0; i < edges; ++i) {
    const double place = static_cast<double>(i) + within(random);
    const Vec2d arm =
        Direction(0.1 + 2.8 * place / static_cast<double>(edges)) * (i % 2 == 0 ? 450.0 : -450.0);
    contour.push_back(hub + arm);
    contour.push_back(hub - arm);
  }
  return contour;
}

/// Returns quadrilaterals around the origin with their corners off by `jitter`, turned.
std::vector<Contours> NearbyQuads(std::size_t count, const Vec2d& half, double jitter) {
  std::mt19937_64 random(count);
  std::uniform_real_distribution<double> off(-jitter, jitter);
  const Vec2d along = Direction(0.3);
  const Vec2d across(-along.y, along.x);
  const auto corner = [&](double x, double y) {
    const Vec2d at = along * (x * half.x) + across * (y * half.y);
    return at + Vec2d(off(random), off(random));
  };
  std::vector<Contours> quads;
  for (std::size_t i = 0; i < count; ++i) {
    quads.push_back({{corner(-1, -1), corner(1, -1), corner(1, 1), corner(-1, 1)}});
  }
  return quads;
}

Points Square(double half) {
  return {Vec2d(-half, -half), Vec2d(half, -half), Vec2d(half, half), Vec2d(-half, half)};
}

Points Comb(std::size_t teeth) {
  const double pitch = 900.0 / static_cast<double>(teeth);
  Points comb;
  for (std::size_t i = 0; i < teeth; ++i) {
    const double x = 50.0 + pitch * static_cast<double>(i);
    comb.emplace_back(x, 20.0);
    comb.emplace_back(x + 0.5 * pitch, 980.0);
  }
  comb.emplace_back(950.0, 20.0);
  comb.emplace_back(950.0, 10.0);
  comb.emplace_back(50.0, 10.0);
  return comb;
}

/// Returns polygons by country from a file of records "name<TAB>role<TAB>count" and as many lines
/// of "longitude, latitude"; a ring whose role is `hole` belongs to the outer ring above it.
std::vector<BooleanWork> ReadCountries(const char* path) {
  std::ifstream in(path);
  std::string line;
  std::map<std::string, BooleanWork> countries;
  Points* ring = nullptr;
  while (std::getline(in, line)) {
    const std::size_t tab = line.find('\t');
    if (tab != line.npos) {
      auto& polygons = countries[line.substr(0, tab)].subject;
      const bool isHole = line.compare(tab + 1, 4, "hole") == 0;
      if (!isHole) polygons.emplace_back();
      ring = &polygons.back().emplace_back();
    } else {
      char* end = nullptr;
      const double longitude = std::strtod(line.c_str(), &end);
      ring->emplace_back(longitude, std::strtod(end + 1, nullptr));
    }
  }
  std::vector<BooleanWork> result;
  for (auto& [name, country] : countries) result.push_back(std::move(country));
  return result;
}

/// Ragged borders between the corners of a square grid that is warped.
class CountyBorders {
public:
  explicit CountyBorders(std::size_t side)
      : side_(side), pitch_(1000.0 / static_cast<double>(side)) {
    std::mt19937_64 random(side);
    std::uniform_real_distribution<double> off(-0.2, 0.2);
    for (std::size_t i = 0; i < (side + 1) * (side + 1); ++i) {
      const Vec2d corner(static_cast<double>(i % (side + 1)), static_cast<double>(i / (side + 1)));
      corners_.push_back((corner + Vec2d(off(random), off(random))) * pitch_);
    }
    for (std::size_t i = 0; i < corners_.size(); ++i) {
      rightward_.push_back(Border(i, i + 1, random));
      upward_.push_back(Border(i, i + side + 1, random));
    }
  }

  Points CellAt(std::size_t column, std::size_t row) const {
    const std::size_t low = row * (side_ + 1) + column;
    const std::size_t high = low + side_ + 1;
    Points cell = rightward_[low];
    cell.insert(cell.end(), upward_[low + 1].begin(), upward_[low + 1].end());
    AppendBack(rightward_[high], corners_[high + 1], cell);
    AppendBack(upward_[low], corners_[high], cell);
    return cell;
  }

private:
  /// Returns points from one corner to another without the last.
  Points Border(std::size_t from, std::size_t to, std::mt19937_64& random) const {
    if (to >= corners_.size()) return {};
    constexpr std::size_t EDGES = 16;
    std::uniform_real_distribution<double> off(-0.012, 0.012);
    const Vec2d way = corners_[to] - corners_[from];
    Points border = {corners_[from]};
    for (std::size_t i = 1; i < EDGES; ++i) {
      border.push_back(corners_[from] + way * (static_cast<double>(i) / EDGES) +
                       Vec2d(off(random), off(random)) * pitch_);
    }
    return border;
  }

  static void AppendBack(const Points& border, const Vec2d& end, Points& cell) {
    cell.push_back(end);
    cell.insert(cell.end(), border.rbegin(), border.rend() - 1);
  }

  std::size_t side_;
  double pitch_;
  Points corners_;
  std::vector<Points> rightward_;  ///< by the corner at which it begins
  std::vector<Points> upward_;
};

Box2d BoundsOf(const std::vector<Contours>& polygons) {
  Box2d box;
  for (const Contours& polygon : polygons) {
    for (const Vec2d& point : polygon.front()) box.ExtendBy(point);
  }
  return box;
}

/// Appends an operand with every square of a grid that its bounds touch.
void AppendCells(const std::vector<Contours>& operand, double cell,
                 std::vector<BooleanWork>& works) {
  const Box2d box = BoundsOf(operand);
  for (double x = std::floor(box.xMin() / cell) * cell; x < box.xMax(); x += cell) {
    for (double y = std::floor(box.yMin() / cell) * cell; y < box.yMax(); y += cell) {
      works.push_back(
          {operand,
           {{{Vec2d(x, y), Vec2d(x, y + cell), Vec2d(x + cell, y + cell), Vec2d(x + cell, y)}}}});
    }
  }
}

}  // namespace

BooleanWork MakeRoughStars(std::size_t size) {
  std::mt19937_64 random(size);
  const Points first = RoughStar(size, random);
  return {{{first}}, {{RoughStar(size, random)}}};
}

BooleanWork MakeSmoothStars(std::size_t size) {
  std::mt19937_64 random(size);
  const Points first = SmoothStar(Vec2d(480.0, 490.0), size, random);
  return {{{first}}, {{SmoothStar(Vec2d(530.0, 515.0), size, random)}}};
}

BooleanWork MakeGrids(std::size_t size) {
  return {Grid(size, 0.0, 0.0), Grid(size, 0.5, 0.0)};
}

BooleanWork MakeTurnedGrids(std::size_t size) {
  return {Grid(size, 0.0, 0.30), Grid(size, 0.0, -0.21)};
}

BooleanWork MakeCombs(std::size_t size) {
  const Points comb = Comb(size);
  Points other = comb;
  for (Vec2d& point : other) std::swap(point.x, point.y);
  std::reverse(other.begin(), other.end());
  return {{{comb}}, {{other}}};
}

BooleanWork MakePolygons(std::size_t size) {
  std::mt19937_64 random(size);
  return SmallPair(size, random);
}

std::vector<BooleanWork> MakeManyPolygons(std::size_t size) {
  std::mt19937_64 random(size);
  std::vector<BooleanWork> works;
  while (works.size() < 1000) works.push_back(SmallPair(size, random));
  return works;
}

BooleanWork MakeSpokes(std::size_t size) {
  return {Spokes(size, 0.0), Spokes(size, 0.5 * TWO_PI / static_cast<double>(size))};
}

BooleanWork MakePencils(std::size_t size) {
  std::mt19937_64 random(size);
  const Vec2d hub(500.3, 499.7);
  const Points first = Pencil(size / 2, hub, random);
  return {{{first}}, {{Pencil(size / 2, hub, random)}}};
}

BooleanWork MakeQuads(std::size_t size) {
  return {NearbyQuads(size, Vec2d(1.0, 0.5), 1e-6), {{Square(0.6)}}};
}

BooleanWork MakeNeedlesAndSquare(std::size_t size) {
  std::mt19937_64 random(size);
  std::uniform_real_distribution<double> off(-4e-12, 4e-12);
  const auto near = [&](double x, double y) { return Vec2d(x + off(random), y + off(random)); };
  std::vector<Contours> needles;
  for (std::size_t i = 0; i < size; ++i) {
    needles.push_back({{near(-1.0, -1.0), near(1.0, 0.875), near(1.0, 0.875)}});
  }
  return {needles, {{Square(0.25)}}};
}

BooleanWork MakeBundles(std::size_t size) {
  return {NearbyQuads(size, Vec2d(1.0, 0.01), 1e-6), {{Square(0.6)}}};
}

BooleanWork MakeCircles(std::size_t size) {
  constexpr std::size_t EDGES = 32;
  std::mt19937_64 random(size);
  std::uniform_real_distribution<double> coordinate(0.0, 1000.0);
  std::uniform_real_distribution<double> share(0.5, 1.5);
  const double middle = 1000.0 / std::sqrt(static_cast<double>(size));
  std::vector<Contours> circles;
  for (std::size_t i = 0; i < size; ++i) {
    const Vec2d center(coordinate(random), coordinate(random));
    const double radius = middle * share(random);
    Points& circle = circles.emplace_back().emplace_back();
    for (std::size_t j = 0; j < EDGES; ++j) {
      circle.push_back(center + Direction(AngleOf(j, EDGES)) * radius);
    }
  }
  return {circles, {}};
}

BooleanWork MakeCoastLine(std::size_t size) {
  std::mt19937_64 random(size);
  return {{{SmoothStar(Vec2d(500.0, 500.0), size, random)}}, {}};
}

BooleanWork MakeCounties(std::size_t size) {
  const auto side = static_cast<std::size_t>(std::sqrt(static_cast<double>(size)) + 0.5);
  const CountyBorders borders(side);
  BooleanWork counties;
  for (std::size_t i = 0; i < side * side; ++i) {
    counties.subject.push_back({borders.CellAt(i % side, i / side)});
  }
  return counties;
}

std::vector<BooleanWork> MakeCountiesByGrid(std::size_t size) {
  const BooleanWork counties = MakeCounties(size);
  const double cell = 900.0 / std::sqrt(static_cast<double>(size));
  std::vector<BooleanWork> works;
  for (const Contours& county : counties.subject) AppendCells({county}, cell, works);
  return works;
}

const std::vector<BooleanWork>& Countries() {
  static const std::vector<BooleanWork> COUNTRIES =
      ReadCountries(SHARED_EXAMPLE_DATA_DIR "/countries-50m.txt");
  if (COUNTRIES.empty()) {
    std::fputs("countries-50m.txt is missing\n", stderr);
    std::abort();
  }
  return COUNTRIES;
}

BooleanWork MakeWorld(std::size_t) {
  BooleanWork world;
  for (const BooleanWork& country : Countries()) {
    world.subject.insert(world.subject.end(), country.subject.begin(), country.subject.end());
  }
  return world;
}

std::vector<BooleanWork> MakeCountryCells(std::size_t) {
  constexpr double CELL = 10.0;  // degrees
  std::vector<BooleanWork> works;
  for (const BooleanWork& country : Countries()) {
    AppendCells(country.subject, CELL, works);
  }
  return works;
}

}  // namespace shr::bench
