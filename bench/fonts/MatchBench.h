// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the contenders of MatchBench.cpp are asked: faces by number, four styles a family.

#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace bench {

constexpr std::size_t STYLES = 4;

/// Returns the name of a family; they are in no order.
inline std::string FamilyName(std::size_t number) {
  char name[32];
  std::snprintf(name, sizeof name, "Family %05zu", number * 7919 % 100003);
  return name;
}

}  // namespace bench
