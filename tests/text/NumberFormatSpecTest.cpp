// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/NumberFormatSpec.h"

#include <gtest/gtest.h>

#include "shared/text/GString.h"

namespace shr {
namespace {

TEST(NumberFormatSpec, makesTheFormatOfEachType) {
  const auto unknown = static_cast<NumberFormatSpec::Type>(7);
  const struct {
    NumberFormatSpec spec;
    const wchar_t* format;
    const wchar_t* text;
  } rows[] = {
      {NumberFormatSpec(), L"%.4g", L"12.35"},
      {NumberFormatSpec(NumberFormatSpec::TypeExponential, 0), L"%.0e", L"1e+01"},
      {NumberFormatSpec(NumberFormatSpec::TypeFixed, 3), L"%.3f", L"12.346"},
      {NumberFormatSpec(NumberFormatSpec::TypeGeneral, 17), L"%.17g", L"12.345700000000001"},
      {NumberFormatSpec(unknown, 2), L"%.2g", L"12"}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.spec.GetFormat(), row.format);
    GString text;
    EXPECT_TRUE(text.FormatString(row.spec.GetFormat().c_str(), 12.3457));
    EXPECT_EQ(text, row.text);
  }
}

TEST(NumberFormatSpec, ignoresUnknownTypesSetLater) {
  NumberFormatSpec spec;
  spec.SetType(static_cast<NumberFormatSpec::Type>(5));
  EXPECT_EQ(spec.GetType(), NumberFormatSpec::TypeGeneral);
  spec.SetType(NumberFormatSpec::TypeFixed);
  spec.SetNumDigits(9);
  const NumberFormatSpec copy = spec;
  EXPECT_EQ(copy.GetFormat(), L"%.9f");
  EXPECT_EQ(copy.GetNumDigits(), 9u);
}

TEST(NumberFormatSpec, digitsThatNoFormatHoldsFailWhenUsed) {
  GString text(L"old");
  EXPECT_FALSE(text.FormatString(
      NumberFormatSpec(NumberFormatSpec::TypeFixed, 9000).GetFormat().c_str(), 1.0));
  EXPECT_FALSE(text.FormatString(
      NumberFormatSpec(NumberFormatSpec::TypeFixed, ~0u).GetFormat().c_str(), 1.0));
  EXPECT_EQ(text, L"old");
  EXPECT_EQ(NumberFormatSpec(NumberFormatSpec::TypeFixed, 4000000000).GetFormat(),
            L"%.4000000000f");
}

}  // namespace
}  // namespace shr
