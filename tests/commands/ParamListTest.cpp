// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the stored text of every kind of value; a table of texts by kind of getter (white space,
// signs, rest behind the number, range ends, empty); doubles read back as the same bits; names and
// indices; copies; text arguments never taken for booleans.

#include "shared/commands/ParamList.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>

namespace shr {
namespace {

GString TextOf(const CParamList& list, const wchar_t* name) {
  GString text(L"(absent)");
  list.Get(name, text);
  return text;
}

TEST(ParamList, storesEveryKindAsText) {
  CParamList list;
  const auto stored = [&list](auto value) {
    list.Set(L"Value", value);
    return TextOf(list, L"Value");
  };
  EXPECT_EQ(stored(GString(L"as given ")), L"as given ");
  EXPECT_EQ(stored(L"wide"), L"wide");
  EXPECT_EQ(stored("narrow \xE9"), L"narrow \x00E9");
  EXPECT_EQ(stored(true), L"1");
  EXPECT_EQ(stored(false), L"0");
  EXPECT_EQ(stored(INT_MIN), L"-2147483648");
  EXPECT_EQ(stored(UINT_MAX), L"4294967295");
  EXPECT_EQ(stored(0.1), L"0.10000000000000001");
  EXPECT_EQ(stored(-1e300), L"-1.0000000000000001E+300");
  EXPECT_EQ(stored(2.0), L"2");
}

TEST(ParamList, gettersScanTheHeadOfTheText) {
  struct Row {
    const char* name;
    const wchar_t* text;
    std::optional<bool> asBool;
    std::optional<int> asInt;
    std::optional<unsigned int> asUnsigned;
    std::optional<double> asDouble;
  };
  const Row rows[] = {
      {"empty", L"", {}, {}, {}, {}},
      {"blank", L" \t", {}, {}, {}, {}},
      {"letters", L"abc", {}, {}, {}, {}},
      {"seven", L"7", true, 7, 7u, 7.0},
      {"zero", L"-0", false, 0, 0u, -0.0},
      {"space before and rest behind", L" \n+12abc", true, 12, 12u, 12.0},
      {"sign alone", L"-", {}, {}, {}, {}},
      {"two signs", L"+-1", {}, {}, {}, {}},
      {"fraction", L"0.75", false, 0, 0u, 0.75},
      {"point first", L".5", {}, {}, {}, 0.5},
      {"exponent", L"3E-2x", true, 3, 3u, 0.03},
      {"exponent without digits", L"3E+", true, 3, 3u, 3.0},
      {"comma", L"1,5", true, 1, 1u, 1.0},
      {"minus one", L"-1", true, -1, UINT_MAX, -1.0},
      {"largest int", L"2147483647", true, INT_MAX, 2147483647u, 2147483647.0},
      {"one more", L"2147483648", {}, {}, 2147483648u, 2147483648.0},
      {"smallest int", L"-2147483648", true, INT_MIN, 2147483648u, -2147483648.0},
      {"one less", L"-2147483649", {}, {}, 2147483647u, -2147483649.0},
      {"largest unsigned", L"4294967295", {}, {}, UINT_MAX, 4294967295.0},
      {"one more unsigned", L"4294967296", {}, {}, {}, 4294967296.0},
      {"far too many digits", L"99999999999999999999", {}, {}, {}, 1e20},
      {"beyond the largest double", L"1E999", true, 1, 1u, {}},
      {"leading zeros", L"000000000000000000005", true, 5, 5u, 5.0},
  };
  for (const Row& row : rows) {
    CParamList list;
    list.Set(L"Value", row.text);
    const auto read = [&list]<typename Value>(Value untouched) {
      Value value = untouched;
      const bool got = list.Get(L"Value", value);
      EXPECT_TRUE(got || value == untouched);
      return got ? std::optional<Value>(value) : std::nullopt;
    };
    EXPECT_EQ(read(false), row.asBool) << row.name;
    EXPECT_EQ(read(true), row.asBool) << row.name;
    EXPECT_EQ(read(-77), row.asInt) << row.name;
    EXPECT_EQ(read(77u), row.asUnsigned) << row.name;
    EXPECT_EQ(read(7.7), row.asDouble) << row.name;
  }
}

TEST(ParamList, doublesComeBackAsTheSameBits) {
  CParamList list;
  const auto expectRoundTrip = [&list](double value) {
    list.Set(L"Value", value);
    double back = 77;
    EXPECT_TRUE(list.Get(L"Value", back)) << value;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value)) << value;
  };
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, -0.0, 0.1, Limits::max(), Limits::lowest(), Limits::min(),
                             Limits::denorm_min(), Limits::infinity(), -Limits::infinity()}) {
    expectRoundTrip(value);
  }
  constexpr std::uint64_t SEED = 53;
  std::mt19937_64 random(SEED);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isnan(value)) expectRoundTrip(value);
  }
  list.Set(L"Value", Limits::quiet_NaN());
  double back = 0;
  EXPECT_TRUE(list.Get(L"Value", back));
  EXPECT_TRUE(std::isnan(back));
}

TEST(ParamList, aPresentEmptyTextIsFoundAsTextOnly) {
  CParamList list;
  GString text(L"before");
  EXPECT_FALSE(list.Get(L"Value", text));
  EXPECT_EQ(text, L"before");
  list.Set(L"Value", L"");
  EXPECT_TRUE(list.Get(L"Value", text));
  EXPECT_EQ(text, L"");
}

TEST(ParamList, indicesFollowTheNameDirectly) {
  CParamList list;
  list.SetN(L"Item", 12, 5);
  list.SetN(L"Color", 3, L"Red");
  list.Set(L"Color", 4, L"Green");
  list.SetN(L"Color", -1, true);
  list.SetN(L"Narrow", 0, "text");
  EXPECT_EQ(TextOf(list, L"Item12"), L"5");
  EXPECT_EQ(TextOf(list, L"Color3"), L"Red");
  EXPECT_EQ(TextOf(list, L"Color4"), L"Green");
  EXPECT_EQ(TextOf(list, L"Color-1"), L"1");
  EXPECT_EQ(TextOf(list, L"Narrow0"), L"text");
  int item = 0;
  EXPECT_TRUE(list.GetN(L"Item1", 2, item));
  EXPECT_EQ(item, 5);
}

TEST(ParamList, namesAreCaseSensitiveAndCopiesIndependent) {
  CParamList list;
  list.Set(L"Name", 1);
  list.Set(L"name", 2);
  CParamList copy(list);
  copy.Set(L"Name", 3);
  EXPECT_EQ(TextOf(list, L"Name"), L"1");
  list = copy;
  EXPECT_EQ(TextOf(list, L"Name"), L"3");
  EXPECT_EQ(TextOf(list, L"name"), L"2");
}

TEST(ParamList, isEnumeratedRemovedFromCopiedAndCleared) {
  CParamList list;
  list.Set(L"b", 2);
  list.Set(L"a", L"");
  list.SetN(L"Color", 3, L"Red");
  std::wstring seen;
  for (const auto& [name, text] : list) seen += name.String() + L"=" + text.String() + L";";
  EXPECT_EQ(L"Color3=Red;a=;b=2;", seen);
  EXPECT_EQ((std::vector<GString>{L"Color3", L"a", L"b"}), list.Names());
  EXPECT_TRUE(list.Contains(L"a"));
  EXPECT_FALSE(list.Contains(L"A"));

  CParamList other;
  other.Set(L"b", L"old");
  other.Set(L"z", true);
  other.CopyFrom(list);
  list.CopyFrom(list);
  EXPECT_EQ(4u, other.size());
  EXPECT_EQ(L"2", TextOf(other, L"b"));

  EXPECT_TRUE(list.Remove(L"a"));
  EXPECT_FALSE(list.Remove(L"a"));
  EXPECT_EQ(2u, list.size());
  list.Clear();
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(L"(absent)", TextOf(list, L"b"));
}

}  // namespace
}  // namespace shr
