// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the result of a boolean operation is held to.
///
///     BooleanJudge judge(EvenOdd(pair.subject), EvenOdd(pair.clip));
///     ResultReport report = judge.Judge(Operation::Union, result);
///     EXPECT_EQ(report.fault, "");

#pragma once

#include <array>
#include <string>
#include <vector>

#include "shared/polygons/Gpc.h"
#include "tests/polygons/AreaOracle.h"
#include "tests/polygons/DoubleDouble.h"

namespace shr::test {

/// In the order of the clipper's codes.
enum class Operation { Difference, Intersection, Xor, Union };
inline constexpr std::array OPERATIONS = {Operation::Difference, Operation::Intersection,
                                          Operation::Xor, Operation::Union};
const char* NameOf(Operation operation);

/// The result of an operation; a contour marked as a hole lies inside one that is not.
struct BooleanResult {
  Contours contours;
  std::vector<int> holeFlags;
};

struct ResultReport {
  std::string fault;       ///< empty when all is well
  double areaError = 0.0;  ///< of the area, relative to the sum of the areas of the operands
  double misplaced = 0.0;  ///< area that is in one of result and truth only, relative to the same
  double area = 0.0;       ///< of the result
  double misplacedArea = 0.0;
};

/// What is asked of the contours of a result beside their area.
enum class Form { Any, Clean };

class BooleanJudge {
public:
  /// How far areas may be off, relative to the sum of the areas of the operands.
  static constexpr double AREA_TOLERANCE = 1e-9;
  /// How much area a clean result may misplace, in snap distances times the length of all edges of
  /// the operands.
  static constexpr double MISPLACED_SNAPS = 2.0 * GPC_MOST_DRIFT;

  BooleanJudge(Region subject, Region clip);

  ResultReport Judge(Operation operation, const BooleanResult& result,
                     Form form = Form::Clean) const;
  /// Returns the sum of the areas of both operands.
  double InputArea() const { return inputArea_; }
  /// Returns the largest area that a result may misplace.
  double LargestMisplaced() const { return largestMisplaced_; }

private:
  std::string FormFault(const BooleanResult& result) const;
  void JudgeAreas(Operation operation, const BooleanResult& result, ResultReport& report) const;

  std::vector<Region> operands_;
  double inputArea_ = 0.0;
  double snapDistance_ = 0.0;
  double largestMisplaced_ = 0.0;
};

/// Returns the true area of the result of an operation, in which `areas` are those of the subject
/// alone, the clip alone and both, at places 1 to 3.
template <class Number>
Number AreaOf(Operation operation, const std::vector<Number>& areas) {
  switch (operation) {
    case Operation::Difference:
      return areas[1];
    case Operation::Intersection:
      return areas[3];
    case Operation::Xor:
      return Number(areas[1] + areas[2]);
    default:
      return Number(areas[1] + areas[2] + areas[3]);
  }
}

}  // namespace shr::test
