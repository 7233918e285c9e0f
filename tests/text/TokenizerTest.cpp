// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: statuses over a table of texts, with and without quotes; what a failed read leaves behind;
// integers and real numbers at the head of a field, hexadecimal ones compared with printed doubles.

#include "shared/text/Tokenizer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "shared/text/GString.h"

namespace shr {
namespace {

/// Reads fields until the end or an error and writes them as "[field]", "_" for an empty one and
/// the last status as "end" or "error".
std::wstring Fields(const wchar_t* text, bool allowQuotes) {
  CTokenizer tokenizer(text);
  std::wstring result;
  for (int i = 0; i < 100; ++i) {
    GString token(L"old");
    const CTokenizer::Status status = tokenizer.Parse(token, allowQuotes);
    EXPECT_TRUE(status == CTokenizer::TokenOK || token.empty());
    if (status == CTokenizer::TokenOK) result += L"[" + token.String() + L"]";
    if (status == CTokenizer::TokenEmpty) result += L"_";
    if (status == CTokenizer::TokenEnd) return result + L"end";
    if (status == CTokenizer::TokenError) return result + L"error";
  }
  return L"does not end";
}

TEST(Tokenizer, fieldsEndAtCommasAndWhiteSpace) {
  const struct {
    const char* name;
    const wchar_t* text;
    const wchar_t* quoted;
    const wchar_t* plain;
  } rows[] = {
      {"quotes in quotes", L"a,\"b\"\"c\" , ,7", L"[a][b\"c]_[7]end", L"[a][\"b\"\"c\"]_[7]end"},
      {"no text", nullptr, L"end", L"end"},
      {"white space alone", L" \t\u3000", L"end", L"end"},
      {"white space between", L" a b\u00A0c ", L"[a][b][c]end", L"[a][b][c]end"},
      {"commas alone", L",,", L"__end", L"__end"},
      {"comma at the end", L"a,", L"[a]end", L"[a]end"},
      {"comma in quotes", L"\"a, b\",c", L"[a, b][c]end", L"[\"a][b\"][c]end"},
      {"empty quotes", L"\"\",\"\"\"\"", L"[][\"]end", L"[\"\"][\"\"\"\"]end"},
      {"open quote", L"a,\"b", L"[a]error", L"[a][\"b]end"},
      {"open quote behind a pair", L"\"b\"\"", L"error", L"[\"b\"\"]end"},
      {"text behind the quote", L"\"a\"b,c", L"[a][b][c]end", L"[\"a\"b][c]end"},
      {"quote inside a field", L"a\"b,c", L"[a\"b][c]end", L"[a\"b][c]end"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Fields(row.text, true), row.quoted) << row.name;
    EXPECT_EQ(Fields(row.text, false), row.plain) << row.name;
  }
}

TEST(Tokenizer, failedReadsLeaveCursorAndValue) {
  CTokenizer tokenizer(L" abc, \"d");
  int number = 42;
  EXPECT_EQ(tokenizer.Parse(number), CTokenizer::TokenError);
  double real = 42;
  EXPECT_EQ(tokenizer.Parse(real), CTokenizer::TokenError);
  bool flag = true;
  EXPECT_EQ(tokenizer.Parse(flag), CTokenizer::TokenError);
  EXPECT_TRUE(number == 42 && real == 42 && flag);
  GString token;
  EXPECT_EQ(tokenizer.Parse(token, true), CTokenizer::TokenOK);
  EXPECT_EQ(token, L"abc");
  EXPECT_EQ(tokenizer.Parse(token, true), CTokenizer::TokenError);
  EXPECT_EQ(tokenizer.Parse(token, false), CTokenizer::TokenOK);
  EXPECT_EQ(token, L"\"d");
  EXPECT_EQ(tokenizer.Parse(number), CTokenizer::TokenEnd);
  EXPECT_EQ(number, 42);
  tokenizer.SetSource(L",1");
  EXPECT_EQ(tokenizer.Parse(number), CTokenizer::TokenEmpty);
  EXPECT_EQ(tokenizer.Parse(flag), CTokenizer::TokenOK);
  EXPECT_EQ(CTokenizer().Parse(number), CTokenizer::TokenEnd);
}

TEST(Tokenizer, integersAreReadFromTheHeadOfAField) {
  const struct {
    const wchar_t* text;
    bool found;
    int value;
  } rows[] = {{L"12abc", true, 12},
              {L"-7.9", true, -7},
              {L"+5", true, 5},
              {L"0x10", true, 0},
              {L"2147483648", true, std::numeric_limits<int>::max()},
              {L"-99999999999999999999999", true, std::numeric_limits<int>::min()},
              {L"-2147483648", true, std::numeric_limits<int>::min()},
              {L"-", false, 0},
              {L"+-1", false, 0},
              {L".5", false, 0},
              {L"\u0661", false, 0}};
  for (const auto& row : rows) {
    int value = 0;
    const CTokenizer::Status expected = row.found ? CTokenizer::TokenOK : CTokenizer::TokenError;
    EXPECT_EQ(CTokenizer(row.text).Parse(value), expected)
        << GString(row.text).WtoAForDiagnostics();
    EXPECT_EQ(value, row.value) << GString(row.text).WtoAForDiagnostics();
    bool flag = !row.value;
    EXPECT_EQ(CTokenizer(row.text).Parse(flag), expected);
    EXPECT_EQ(flag, row.found ? row.value != 0 : !row.value);
  }
}

TEST(Tokenizer, realNumbersAreReadFromTheHeadOfAField) {
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    const wchar_t* text;
    bool found;
    double value;
  } rows[] = {{L"2.5abc", true, 2.5},
              {L"1e5x", true, 1e5},
              {L"1e", true, 1},
              {L"1e+x", true, 1},
              {L".5.5", true, 0.5},
              {L"-5.", true, -5},
              {L"1e400", true, infinity},
              {L"-1e400", true, -infinity},
              {L"1e-400", true, 0},
              {L"infinit", true, infinity},
              {L"-INF", true, -infinity},
              {L"0x1.8p3", true, 12},
              {L"-0X.8P+1z", true, -1},
              {L"0x1p", true, 1},
              {L"0xg", true, 0},
              {L"0x", true, 0},
              {L"0x.p1", true, 0},
              {L"0x1p1024", true, infinity},
              {L"0x1p-1074", true, 5e-324},
              {L"0x1p-1075", true, 0},
              {L"0x1.8p-1075", true, 5e-324},
              {L"0x3p-1075", true, 1e-323},
              {L"0x1p-99999999999999999999", true, 0},
              {L"0x0p99999999999999999999", true, 0},
              {L"0x1.fffffffffffff8p1023", true, infinity},
              {L"0x1.fffffffffffff7ffffffffffp1023", true, std::numeric_limits<double>::max()},
              {L"0x1.00000000000008p0", true, 1},
              {L"0x1.000000000000080000000000001p0", true, 1 + std::ldexp(1.0, -52)},
              {L"0x1.00000000000018p0", true, 1 + std::ldexp(1.0, -51)},
              {L".", false, 0},
              {L"e5", false, 0},
              {L"-", false, 0},
              {L"x1", false, 0}};
  for (const auto& row : rows) {
    double value = 0;
    EXPECT_EQ(CTokenizer(row.text).Parse(value),
              row.found ? CTokenizer::TokenOK : CTokenizer::TokenError)
        << GString(row.text).WtoAForDiagnostics();
    EXPECT_EQ(value, row.value) << GString(row.text).WtoAForDiagnostics();
  }
  double value = 0;
  EXPECT_EQ(CTokenizer(L"nan(1),2").Parse(value), CTokenizer::TokenOK);
  EXPECT_TRUE(std::isnan(value));
}

TEST(Tokenizer, hexadecimalTextReturnsTheValue) {
  std::mt19937_64 random(31);
  for (int i = 0; i < 5000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    GString text;
    ASSERT_TRUE(text.FormatString(L"%a", value));
    double back = 0;
    ASSERT_EQ(CTokenizer(text.c_str()).Parse(back), CTokenizer::TokenOK);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value))
        << text.WtoAForDiagnostics();
  }
}

}  // namespace
}  // namespace shr
