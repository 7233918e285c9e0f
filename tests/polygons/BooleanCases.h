// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Families of pairs of polygons that are hard for boolean operations.
///
/// Only + - * / and square roots go into the coordinates, so that every machine gets the same
/// bits.
///
///     for (const CaseFamily& family : BooleanCaseFamilies()) {
///       BooleanCase pair = family.make(seed);
///     }

#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <random>
#include <span>
#include <string>

#include "tests/polygons/AreaOracle.h"

namespace shr::test {

struct BooleanCase {
  Contours subject;
  Contours clip;
};

struct CaseFamily {
  const char* name;
  BooleanCase (*make)(std::mt19937_64& random);

  friend std::ostream& operator<<(std::ostream& stream, const CaseFamily& family) {
    return stream << family.name;
  }
};

std::span<const CaseFamily> BooleanCaseFamilies();

/// Returns the contours as the text of a MULTIPOLYGON with one ring a polygon, to the last bit.
std::string ToText(const Contours& contours);

}  // namespace shr::test
