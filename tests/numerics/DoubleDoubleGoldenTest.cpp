// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the rows of double-double.tsv, which tools/make_double_double_golden.py makes without this
// library. Arithmetic and reading give the same bits, functions lie within their bound.

#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <map>
#include <sstream>

#include "shared/numerics/doubledouble/DoubleDouble.h"
#include "shared/numerics/doubledouble/DoubleDoubleMath.h"

namespace shr {
namespace {

constexpr double FUNCTION_BOUND = 1e-30;

std::vector<std::string> FieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, '\t');) fields.push_back(field);
  return fields;
}

doubledouble NumberAt(const std::vector<std::string>& fields, std::size_t index) {
  const auto part = [](const std::string& text) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(text, nullptr, 16)));
  };
  return {part(fields.at(index)), part(fields.at(index + 1))};
}

/// Returns what a row's operation gives; `isExact` tells whether its bits must be those of the row.
doubledouble ResultOf(const std::vector<std::string>& row, bool& isExact) {
  const std::string& name = row.at(0);
  isExact = true;
  if (name == "read") return atodd(row.at(1).c_str());
  const doubledouble x = NumberAt(row, 1);
  if (name == "add") return x + NumberAt(row, 3);
  if (name == "multiply") return x * NumberAt(row, 3);
  if (name == "divide") return x / NumberAt(row, 3);
  if (name == "sqrt") return sqrt(x);
  isExact = false;
  if (name == "exp") return exp(x);
  if (name == "log") return log(x);
  if (name == "sin") return sin(x);
  if (name == "cos") return cos(x);
  if (name == "atan2") return atan2(x, NumberAt(row, 3));
  ADD_FAILURE() << "unknown operation " << name;
  return 0;
}

TEST(DoubleDoubleGolden, agreesWithEveryRow) {
  std::ifstream file(std::filesystem::path(SHARED_TEST_DATA_DIR) / "numerics/double-double.tsv");
  std::map<std::string, int> counts;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::vector<std::string> row = FieldsOf(line);
    const doubledouble expected = NumberAt(row, row.size() - 2);
    bool isExact = false;
    const doubledouble result = ResultOf(row, isExact);
    ++counts[row[0]];
    if (isExact) {
      EXPECT_EQ(result, expected) << line;
    } else {
      EXPECT_LE(fabs(result - expected), fabs(expected) * FUNCTION_BOUND) << line;
    }
  }
  const std::map<std::string, int> expectedCounts = {
      {"add", 60}, {"multiply", 60}, {"divide", 60}, {"sqrt", 60}, {"read", 154},
      {"exp", 25}, {"log", 50},      {"sin", 100},   {"cos", 100}, {"atan2", 60}};
  EXPECT_EQ(counts, expectedCounts);
}

}  // namespace
}  // namespace shr
