// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/polygons/BooleanCases.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace shr::test {
namespace {

using Random = std::mt19937_64;
using Points = std::vector<Vec2d>;

/// From `low` up to `high`, the same on every machine, as that of the standard library is not.
double Uniform(Random& random, double low, double high) {
  return low + (high - low) * (static_cast<double>(random() >> 11) * 0x1p-53);
}

/// From `low` to `high`, both included.
int Integer(Random& random, int low, int high) {
  return low + static_cast<int>(random() % static_cast<std::uint64_t>(high - low + 1));
}

/// A power of ten between the two exponents.
double Decade(Random& random, int low, int high) {
  double value = 1.0;
  const int exponent = Integer(random, low, high);
  for (int i = 0; i < exponent; ++i) value *= 10.0;
  for (int i = 0; i > exponent; --i) value /= 10.0;
  return value;
}

/// Returns the point of the unit circle at `turn` of a full turn, unevenly paced: the rational
/// parameters of each quarter.
Vec2d OnCircle(double turn) {
  const double quarter = std::floor(turn * 4.0);
  const double u = turn * 4.0 - quarter;
  const Vec2d point((1.0 - u * u) / (1.0 + u * u), 2.0 * u / (1.0 + u * u));
  switch (static_cast<int>(quarter) & 3) {
    case 0:
      return point;
    case 1:
      return Vec2d(-point.y, point.x);
    case 2:
      return Vec2d(-point.x, -point.y);
    default:
      return Vec2d(point.y, -point.x);
  }
}

Points Star(Random& random, const Vec2d& center, double radius, int size) {
  Points star;
  for (int i = 0; i < size; ++i) {
    star.push_back(center +
                   OnCircle(static_cast<double>(i) / size) * (radius * Uniform(random, 0.3, 1.0)));
  }
  return star;
}

Points Star(Random& random, double radius = 1.0) {
  const Vec2d center(Uniform(random, -0.4, 0.4), Uniform(random, -0.4, 0.4));
  return Star(random, center * radius, radius, Integer(random, 3, 20));
}

Points Square(const Vec2d& corner, double size) {
  return {corner, corner + Vec2d(size, 0.0), corner + Vec2d(size, size), corner + Vec2d(0.0, size)};
}

/// Moves a number by up to `most` units in the last place.
double Nudge(Random& random, double value, int most) {
  const int steps = Integer(random, -most, most);
  if (value == 0.0) return value;  // the number beside it is too small for the oracle
  const double target = steps < 0 ? -std::numeric_limits<double>::infinity()
                                  : std::numeric_limits<double>::infinity();
  for (int i = 0; i < std::abs(steps); ++i) value = std::nextafter(value, target);
  return value;
}

Vec2d Nudge(Random& random, const Vec2d& point, int most) {
  return Vec2d(Nudge(random, point.x, most), Nudge(random, point.y, most));
}

/// Returns a point on an edge of the contour but for rounding, and up to some units beside it.
Vec2d NearEdge(Random& random, const Points& contour, int most) {
  const std::size_t i = random() % contour.size();
  const Vec2d& a = contour[i];
  const Vec2d& b = contour[(i + 1) % contour.size()];
  return Nudge(random, a + (b - a) * Uniform(random, 0.0, 1.0), most);
}

BooleanCase Stars(Random& random) {
  return {{Star(random)}, {Star(random)}};
}

BooleanCase SelfCrossingStars(Random& random) {
  const auto make = [&random] {
    Points points;
    const int count = Integer(random, 5, 12);
    for (int i = 0; i < count; ++i) {
      points.emplace_back(Uniform(random, -1.0, 1.0), Uniform(random, -1.0, 1.0));
    }
    return points;
  };
  // Every second star visits the points of a circle with a stride: a pentagram and its like.
  const auto strided = [&random] {
    const int count = 2 * Integer(random, 2, 6) + 1;
    const Vec2d center(Uniform(random, -0.3, 0.3), Uniform(random, -0.3, 0.3));
    Points points;
    for (int i = 0; i < count; ++i) {
      points.push_back(center + OnCircle(static_cast<double>(i * 2 % count) / count));
    }
    return points;
  };
  if (random() % 2 == 0) return {{make()}, {make()}};
  return {{strided()}, {strided()}};
}

/// Squares side by side, their common edges stored twice.
BooleanCase GridsSharingEdges(Random& random) {
  const int count = Integer(random, 2, 4);
  const double size = random() % 2 == 0 ? 1.0 : 0.1;
  const auto grid = [&](const Vec2d& corner) {
    Contours squares;
    for (int i = 0; i < count * count; ++i) {
      if (random() % 8 == 0) continue;
      const Vec2d place(static_cast<double>(i % count), static_cast<double>(i / count));
      squares.push_back(Square(corner + place * size, size));
      if (random() % 2 == 0) std::reverse(squares.back().begin(), squares.back().end());
    }
    return squares;
  };
  const double shifts[] = {0.0, 0.5, 1.0, 0.3};
  const Vec2d shift(shifts[random() % 4], shifts[random() % 4]);
  return {grid(Vec2d(0.0, 0.0)), grid(shift * size)};
}

/// Teeth that point up, and the same teeth on their side.
BooleanCase Combs(Random& random) {
  const int teeth = Integer(random, 2, 7);
  const double depth = random() % 2 == 0 ? static_cast<double>(teeth) : Uniform(random, 0.5, 9.0);
  Points comb = {{0.0, -0.5}};
  for (int i = 0; i < teeth; ++i) {
    comb.emplace_back(static_cast<double>(i), 0.0);
    comb.emplace_back(static_cast<double>(i) + 0.5, depth);
  }
  comb.emplace_back(static_cast<double>(teeth), 0.0);
  comb.emplace_back(static_cast<double>(teeth), -0.5);
  Points other = comb;
  for (Vec2d& point : other) std::swap(point.x, point.y);
  return {{comb}, {other}};
}

/// A star, and the same moved by a few units in the last place: as a whole, or each point its way.
BooleanCase ShiftedByUlps(Random& random) {
  const Points star = Star(random, Decade(random, -3, 3));
  Points moved = star;
  const bool isTogether = random() % 2 == 0;
  const Vec2d shift = (Nudge(random, star[0], 4) - star[0]) * (isTogether ? 1.0 : 0.0);
  for (Vec2d& point : moved) point = isTogether ? point + shift : Nudge(random, point, 3);
  return {{star}, {moved}};
}

/// Triangles of next to no width across a square and a star.
BooleanCase Slivers(Random& random) {
  Contours slivers;
  const int count = Integer(random, 1, 4);
  for (int i = 0; i < count; ++i) {
    const Vec2d a(Uniform(random, -2.0, 2.0), Uniform(random, -2.0, 2.0));
    const Vec2d b(Uniform(random, -2.0, 2.0), Uniform(random, -2.0, 2.0));
    const Vec2d side = Vec2d(a.y - b.y, b.x - a.x) * Decade(random, -17, -3);
    slivers.push_back({a, b, b + side});
  }
  return {{Star(random), Square(Vec2d(-0.5, -0.5), 1.5)}, slivers};
}

BooleanCase PointsNearlyOnEdges(Random& random) {
  const Points star = Star(random);
  Points other;
  const int count = Integer(random, 3, 8);
  for (int i = 0; i < count; ++i) other.push_back(NearEdge(random, star, 2));
  Points refined;
  for (std::size_t i = 0; i < star.size(); ++i) {
    refined.push_back(star[i]);
    const Vec2d& next = star[(i + 1) % star.size()];
    refined.push_back(Nudge(random, star[i] + (next - star[i]) * Uniform(random, 0.0, 1.0), 1));
  }
  return {{star}, {random() % 2 == 0 ? other : refined}};
}

/// Outlines far from the origin with steps of a millionth.
BooleanCase LargeOffsets(Random& random) {
  const double far = Decade(random, 6, 9);
  const double radius = far * Decade(random, -4, -1);
  const Vec2d offset(far, far * Uniform(random, -1.0, 1.0));
  const auto make = [&] {
    Points outline;
    for (const Vec2d& point : Star(random, radius)) {
      outline.push_back(offset + point);
      const int details = Integer(random, 0, 2);
      for (int i = 0; i < details; ++i) {
        outline.push_back(outline.back() +
                          Vec2d(1e-6 * Integer(random, -3, 3), 1e-6 * Integer(random, -3, 3)));
      }
    }
    return outline;
  };
  const Points first = make();
  if (random() % 2 == 0) return {{first}, {make()}};
  Points second = first;
  for (Vec2d& point : second) point += Vec2d(1e-6 * Integer(random, -2, 2), 1e-6);
  return {{first}, {second}};
}

BooleanCase IntegerGrid(Random& random) {
  const int side = Integer(random, 2, 8);
  const auto make = [&] {
    Contours contours(static_cast<std::size_t>(Integer(random, 1, 3)));
    for (Points& contour : contours) {
      const int count = Integer(random, 3, 10);
      for (int i = 0; i < count; ++i) {
        contour.emplace_back(Integer(random, 0, side), Integer(random, 0, side));
      }
    }
    return contours;
  };
  return {make(), make()};
}

Points WithDuplicates(Random& random, const Points& contour) {
  Points result;
  for (const Vec2d& point : contour) {
    result.insert(result.end(), static_cast<std::size_t>(Integer(random, 1, 3)), point);
  }
  if (random() % 2 == 0) result.push_back(contour.front());
  return result;
}

BooleanCase DuplicatedPoints(Random& random) {
  const Points star = Star(random);
  const Points other = random() % 4 == 0 ? star : Star(random);
  return {{WithDuplicates(random, star)}, {WithDuplicates(random, other)}};
}

/// Edges that go out and come back along the same line, all the way or past the start.
Points WithSpikes(Random& random, const Points& contour) {
  Points result;
  for (const Vec2d& point : contour) {
    result.push_back(point);
    if (random() % 3 != 0) continue;
    const Vec2d tip(Uniform(random, -1.5, 1.5), Uniform(random, -1.5, 1.5));
    result.push_back(tip);
    if (random() % 3 == 0) result.push_back(point - (tip - point) * 0.5);
    result.push_back(point);
  }
  return result;
}

BooleanCase Spikes(Random& random) {
  return {{WithSpikes(random, Star(random))}, {WithSpikes(random, Star(random))}};
}

/// Among a star: single points, lines there and back, contours that are given twice.
BooleanCase ZeroAreaContours(Random& random) {
  const auto make = [&random](const Points& other) {
    Contours contours = {Star(random)};
    const Points& star = contours.front();
    const Vec2d a = NearEdge(random, other, 0), b = NearEdge(random, star, 0);
    contours.push_back({a});
    contours.push_back({a, b});
    contours.push_back({a, a + (b - a) * 0.5, b});
    contours.push_back({other[0], other[1], other[0], other[1]});
    contours.push_back({});
    const Points twice = Star(random);
    contours.push_back(twice);
    contours.push_back(twice);
    return contours;
  };
  const Points first = Star(random);
  const Contours subject = make(first);
  return {subject, make(subject.front())};
}

BooleanCase NestedHoles(Random& random) {
  const auto make = [&random] {
    const Vec2d center(Uniform(random, -0.5, 0.5), Uniform(random, -0.5, 0.5));
    const int rings = Integer(random, 2, 5);
    const bool isSquare = random() % 2 == 0;
    const Points star = Star(random, Vec2d(0.0, 0.0), 1.0, Integer(random, 4, 9));
    Contours contours;
    for (int i = rings; i > 0; --i) {
      const double scale = static_cast<double>(i) / rings;
      contours.push_back(isSquare ? Square(center - Vec2d(scale, scale), 2.0 * scale) : star);
      if (isSquare) continue;
      for (Vec2d& point : contours.back()) point = center + point * scale;
    }
    return contours;
  };
  return {make(), make()};
}

/// Fans of edges that meet in one point but for rounding.
BooleanCase NeedleFans(Random& random) {
  const Vec2d hub(Uniform(random, -1.0, 1.0), Uniform(random, -1.0, 1.0));
  const auto make = [&] {
    Points fan;
    const int count = Integer(random, 3, 9);
    for (int i = 0; i < count; ++i) {
      const double turn = static_cast<double>(i) / count;
      const Vec2d arm = OnCircle(turn);
      fan.push_back(Nudge(random, hub, 2));
      fan.push_back(hub + arm);
      const double width = i == 0 ? 0.5 : Decade(random, -15, -1);
      fan.push_back(hub + arm * Uniform(random, 0.5, 1.5) + Vec2d(-arm.y, arm.x) * width);
    }
    return fan;
  };
  return {{make()}, {make()}};
}

/// Splits contours at random between the two operands.
BooleanCase Deal(Random& random, const Contours& contours) {
  BooleanCase pair;
  for (const Points& contour : contours) {
    (random() % 2 == 0 ? pair.subject : pair.clip).push_back(contour);
  }
  return pair;
}

/// Returns a quadrilateral whose corners lie near given ones: off by `jitter`, by some units in the
/// last place or, where `jitter` is 0, not at all.
Points NearbyQuad(Random& random, const Points& corners, double jitter, int ulps) {
  Points quad;
  for (const Vec2d& corner : corners) {
    const Vec2d offset(Uniform(random, -jitter, jitter), Uniform(random, -jitter, jitter));
    quad.push_back(Nudge(random, corner + offset, ulps));
  }
  if (random() % 2 == 0) std::reverse(quad.begin(), quad.end());
  return quad;
}

/// Quadrilaterals in one place, as data of roads and parcels have them, all edges nearly
/// coincident.
BooleanCase Bundles(Random& random) {
  const Vec2d along = OnCircle(Uniform(random, 0.0, 1.0));
  const Vec2d across =
      Vec2d(-along.y, along.x) * (random() % 2 == 0 ? 0.5 : Decade(random, -9, -1));
  const Points corners = {along + across, along * -1.0 + across, along * -1.0 - across,
                          along - across};
  const double jitter = random() % 4 == 0 ? 0.0 : Decade(random, -16, -3);
  const int ulps = random() % 2 == 0 ? 0 : Integer(random, 1, 3);
  Contours contours;
  const int count = random() % 8 == 0 ? 24 : Integer(random, 3, 14);
  for (int i = 0; i < count; ++i) contours.push_back(NearbyQuad(random, corners, jitter, ulps));
  const auto kind = random() % 4;
  if (kind == 0) {
    // All edges nearly through one point, at angles as small as the jitter.
    for (Points& contour : contours) {
      const Vec2d a = along + across * Uniform(random, -jitter, jitter);
      const Vec2d b = along + across * Uniform(random, -jitter, jitter);
      contour = {a * -1.0, a, b, b * -1.0};
    }
  } else if (kind == 1) {
    // All edges on one line but for the jitter.
    for (Points& contour : contours) {
      for (Vec2d& point : contour) {
        const double place = Uniform(random, -1.0, 1.0);
        point = along * place + across * (place * jitter + Uniform(random, -jitter, jitter));
      }
    }
  }
  return Deal(random, contours);
}

/// Needles of next to no width side by side, across each other or with a common tip, and a square
/// that they cross.
BooleanCase Needles(Random& random) {
  const double width = Decade(random, -16, -8);
  const bool hasCommonTip = random() % 3 == 0;
  Contours contours = {Square(Vec2d(-0.25, -0.25), 0.5)};
  const int count = random() % 8 == 0 ? 30 : Integer(random, 3, 16);
  for (int i = 0; i < count; ++i) {
    const auto near = [&](double x, double y) {
      return Vec2d(x + Uniform(random, -4.0, 4.0) * width, y + Uniform(random, -4.0, 4.0) * width);
    };
    const Vec2d tip = hasCommonTip ? Vec2d(-1.0, -1.0) : near(-1.0, -1.0);
    contours.push_back({tip, near(1.0, 0.875), near(1.0, 0.875)});
  }
  return Deal(random, contours);
}

/// Contours of long edges through one point, exactly or but for rounding.
BooleanCase Pencils(Random& random) {
  const bool isExact = random() % 2 == 0;
  const Vec2d hub = isExact ? Vec2d(Integer(random, -2, 2), Integer(random, -2, 2))
                            : Vec2d(Uniform(random, -1.0, 1.0), Uniform(random, -1.0, 1.0));
  const auto bowTie = [&] {
    Points points;
    const int count = Integer(random, 2, 12);
    for (int i = 0; i < count; ++i) {
      Vec2d arm = OnCircle((i + Uniform(random, 0.0, 0.5)) / (2.0 * count));
      if (isExact) arm = Vec2d(Integer(random, -9, 9), Integer(random, 1, 9));
      points.push_back(hub + arm * (i % 2 == 0 ? 1.0 : -1.0));
      points.push_back(hub - arm * (i % 2 == 0 ? 1.0 : -1.0));
    }
    return points;
  };
  if (random() % 2 == 0) return {{bowTie()}, {bowTie()}};
  return Deal(random, {bowTie(), bowTie(), bowTie()});
}

/// Triangles around a point, each with a corner in it or a few units in the last place beside it.
BooleanCase Spokes(Random& random) {
  const Vec2d hub(Integer(random, -1, 1), Uniform(random, -1.0, 1.0));
  const int ulps = random() % 2 == 0 ? 0 : Integer(random, 1, 4);
  const int count = Integer(random, 4, 24);
  Contours contours;
  for (int i = 0; i < count; ++i) {
    const double turn = static_cast<double>(i) / count;
    const double width = random() % 4 == 0 ? Decade(random, -16, -2) : 0.75 / count;
    contours.push_back({Nudge(random, hub, ulps), hub + OnCircle(turn) * Uniform(random, 0.5, 1.0),
                        hub + OnCircle(turn + width) * Uniform(random, 0.5, 1.0)});
    if (random() % 8 == 0) contours.push_back(contours.back());
  }
  return Deal(random, contours);
}

/// Contours on a lattice so small that coincidence is the rule.
BooleanCase IntegerLattices(Random& random) {
  const int side = 1 << Integer(random, 2, 4);
  const auto make = [&] {
    Contours contours(static_cast<std::size_t>(Integer(random, 1, 4)));
    for (Points& contour : contours) {
      const int count = Integer(random, 3, 20);
      for (int i = 0; i < count; ++i) {
        contour.emplace_back(Integer(random, 0, side), Integer(random, 0, side));
      }
    }
    return contours;
  };
  return {make(), make()};
}

/// Contours of other families, and the same again with every coordinate moved by one unit in the
/// last place or left alone.
BooleanCase OneUlpTwins(Random& random) {
  const auto pick = [&]() -> BooleanCase {
    switch (random() % 4) {
      case 0:
        return SelfCrossingStars(random);
      case 1:
        return GridsSharingEdges(random);
      case 2:
        return IntegerLattices(random);
      default:
        return Spokes(random);
    }
  };
  BooleanCase pair = pick();
  pair.clip = pair.subject;
  for (Points& contour : pair.clip) {
    for (Vec2d& point : contour) point = Nudge(random, point, 1);
  }
  if (random() % 2 == 0)
    pair.subject.insert(pair.subject.end(), pair.clip.begin(), pair.clip.end());
  return pair;
}

/// Edges that cross at angles so small that the place is uncertain by more than their distance.
BooleanCase ShallowCrossings(Random& random) {
  const double angle = Decade(random, -15, -4);
  Contours contours;
  const int count = random() % 8 == 0 ? 24 : Integer(random, 3, 10);
  for (int i = 0; i < count; ++i) {
    const double low = Uniform(random, -4.0, 4.0) * angle;
    const double high = Uniform(random, -4.0, 4.0) * angle;
    contours.push_back({{-1.0, low}, {1.0, high}, {1.0, high + 0.5}, {-1.0, low + 0.5}});
    if (random() % 2 == 0) {
      for (Vec2d& point : contours.back()) point = Vec2d(point.x + point.y, point.y - point.x);
    }
  }
  return Deal(random, contours);
}

constexpr std::array FAMILIES = {
    CaseFamily{"stars", Stars},
    CaseFamily{"selfCrossingStars", SelfCrossingStars},
    CaseFamily{"gridsSharingEdges", GridsSharingEdges},
    CaseFamily{"combs", Combs},
    CaseFamily{"shiftedByUlps", ShiftedByUlps},
    CaseFamily{"slivers", Slivers},
    CaseFamily{"pointsNearlyOnEdges", PointsNearlyOnEdges},
    CaseFamily{"largeOffsets", LargeOffsets},
    CaseFamily{"integerGrid", IntegerGrid},
    CaseFamily{"duplicatedPoints", DuplicatedPoints},
    CaseFamily{"spikes", Spikes},
    CaseFamily{"zeroAreaContours", ZeroAreaContours},
    CaseFamily{"nestedHoles", NestedHoles},
    CaseFamily{"needleFans", NeedleFans},
    CaseFamily{"bundles", Bundles},
    CaseFamily{"needles", Needles},
    CaseFamily{"pencils", Pencils},
    CaseFamily{"spokes", Spokes},
    CaseFamily{"integerLattices", IntegerLattices},
    CaseFamily{"oneUlpTwins", OneUlpTwins},
    CaseFamily{"shallowCrossings", ShallowCrossings},
};

void AppendNumber(double value, std::string& text) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  text.append(buffer, end);
}

}  // namespace

std::span<const CaseFamily> BooleanCaseFamilies() {
  return FAMILIES;
}

std::string ToText(const Contours& contours) {
  std::string text = "MULTIPOLYGON (";
  const char* separator = "";
  for (const auto& contour : contours) {
    text.append(separator).append("((");
    for (std::size_t i = 0; i <= contour.size() && !contour.empty(); ++i) {
      if (i > 0) text += ", ";
      AppendNumber(contour[i % contour.size()].x, text);
      text += ' ';
      AppendNumber(contour[i % contour.size()].y, text);
    }
    text += "))";
    separator = ", ";
  }
  return text + ")";
}

}  // namespace shr::test
