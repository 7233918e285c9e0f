// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/algorithms/difference.hpp>
#include <boost/geometry/algorithms/intersection.hpp>
#include <boost/geometry/algorithms/sym_difference.hpp>
#include <boost/geometry/algorithms/union.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/geometries/register/point.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

#include "bench/polygons/BooleanContender.h"

BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2d, double, boost::geometry::cs::cartesian, x, y)

namespace shr::bench {
namespace {

namespace bg = boost::geometry;
using BoostPolygon = bg::model::polygon<Vec2d>;
using BoostMultiPolygon = bg::model::multi_polygon<BoostPolygon>;

BoostMultiPolygon ToBoost(const std::vector<Contours>& polygons) {
  BoostMultiPolygon result;
  for (const Contours& polygon : polygons) {
    BoostPolygon& added = result.emplace_back();
    added.outer().assign(polygon[0].begin(), polygon[0].end());
    for (std::size_t i = 1; i < polygon.size(); ++i) {
      added.inners().emplace_back(polygon[i].begin(), polygon[i].end());
    }
  }
  bg::correct(result);
  return result;
}

std::vector<Vec2d> WithoutClosing(const BoostPolygon::ring_type& ring) {
  return {ring.begin(), ring.end() - (ring.empty() ? 0 : 1)};
}

class BoostContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    subject_ = ToBoost(work.subject);
    clip_ = ToBoost(work.clip);
  }
  bool Operate(Operation operation) override {
    result_.clear();
    try {
      switch (operation) {
        case Operation::Difference:
          bg::difference(subject_, clip_, result_);
          break;
        case Operation::Intersection:
          bg::intersection(subject_, clip_, result_);
          break;
        case Operation::Xor:
          bg::sym_difference(subject_, clip_, result_);
          break;
        default:
          bg::union_(subject_, clip_, result_);
      }
    } catch (const bg::exception&) {
      return false;
    }
    return true;
  }
  /// There is no such function, so neighbours in the list are united, then their unions, and so on.
  bool UniteSubject() override {
    std::vector<BoostMultiPolygon> parts;
    for (const BoostPolygon& polygon : subject_) parts.push_back({polygon});
    try {
      while (parts.size() > 1) parts = UnitePairs(parts);
    } catch (const bg::exception&) {
      return false;
    }
    result_ = parts.empty() ? BoostMultiPolygon() : std::move(parts.front());
    return true;
  }
  BooleanResult Result() const override {
    std::vector<Contours> polygons;
    for (const BoostPolygon& polygon : result_) {
      Contours& contours = polygons.emplace_back();
      contours.push_back(WithoutClosing(polygon.outer()));
      for (const auto& hole : polygon.inners()) contours.push_back(WithoutClosing(hole));
    }
    return Flatten(polygons);
  }

private:
  static std::vector<BoostMultiPolygon> UnitePairs(std::vector<BoostMultiPolygon>& parts) {
    std::vector<BoostMultiPolygon> unions;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
      bg::union_(parts[i], parts[i + 1], unions.emplace_back());
    }
    if (parts.size() % 2 != 0) unions.push_back(std::move(parts.back()));
    return unions;
  }

  BoostMultiPolygon subject_, clip_, result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeBoostContender() {
  return std::make_unique<BoostContender>();
}

}  // namespace shr::bench
