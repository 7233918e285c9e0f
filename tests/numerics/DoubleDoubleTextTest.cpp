// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: forms that are read and refused; ties of head and tail; texts longer than all digits that
// count; every format of a stream, against that of doubles; the shortest text reads back; reading
// from streams.

#include <gtest/gtest.h>

#include <iomanip>
#include <random>
#include <sstream>

#include "shared/diagnostics/Exception.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

TEST(DoubleDoubleText, isReadToTheNearestPair) {
  struct Row {
    const char* text;
    doubledouble expected;
  };
  const std::string zeros(400, '0');
  const std::string sticky = "1" + zeros.substr(0, 16) + "e0";
  const Row rows[] = {
      {"0", 0.0},
      {"0.1", {0.1, -0x1.999999999999ap-58}},
      {"-0.1", {-0.1, 0x1.999999999999ap-58}},
      {" \t+.5\r\n", 0.5},
      {"5.", 5.0},
      {"1E3", 1000.0},
      {"1e+003", 1000.0},
      {"0.0000000000000000000000000000000000000000000000000000000000001e61", 1.0},
      {"100000000000000000000000000000000000000000000000000000000000000e-62", 1.0},
      {"1.00000000000000000000000000000000000000000000000000000000000000000000000000000000001",
       {1.0, 1e-83}},
      {"0.1000000000000000055511151231257827021181583404541015625", 0.1},
      {"9007199254740993", {9007199254740992.0, 1.0}},
      {"36893488147419103232.5", {0x1p65, 0.5}},
      // A head and half its unit: the tail is half a unit of the even one.
      {"1.00000000000000011102230246251565404236316680908203125", {1.0, 0x1p-53}},
      {"1.00000000000000033306690738754696212708950042724609375", {1 + 0x1p-51, -0x1p-53}},
      {"5e-324", 0x1p-1074},
      {"2.4703282292062328e-324", 0x1p-1074},
      {"2.4703282292062327e-324", 0.0},
      {"1e-400", 0.0},
      {"1e-99999999999999999999", 0.0},
      {"1.797693134862315807937289714053e308", std::numeric_limits<doubledouble>::max()},
      {"nan", std::numeric_limits<double>::quiet_NaN()},
      {"NaN ", std::numeric_limits<double>::quiet_NaN()},
      {"-Infinity", -INFINITE},
      {"inf", INFINITE},
  };
  for (const Row& row : rows) {
    const doubledouble value = atodd(row.text);
    if (std::string(row.text).find("1.7976") == 0) {
      EXPECT_EQ(value.head, row.expected.head);
      continue;
    }
    EXPECT_TRUE(value == row.expected || (isnan(value) && isnan(row.expected)))
        << row.text << " gives " << value.head << " and " << value.tail;
    doubledouble wide;
    const std::string narrow = row.text;
    EXPECT_TRUE(StringToDoubleDouble(std::wstring(narrow.begin(), narrow.end()), wide));
    EXPECT_TRUE(wide == value || isnan(value)) << row.text;
  }
}

TEST(DoubleDoubleText, isReadToItsLastDigit) {
  // The middle of two tails, 1 + 2^-60 (1 + 2^-53), and one more or less than all its digits.
  std::ostringstream stream;
  stream << std::fixed << std::setprecision(113) << doubledouble(0x1p-60, 0x1p-113);
  const std::string middle = "1" + stream.str().substr(1);
  const doubledouble even(1.0, 0x1p-60), odd(1.0, 0x1p-60 + 0x1p-112);
  EXPECT_EQ(atodd(middle.c_str()), even);
  const std::string zeros(100000, '0');
  EXPECT_EQ(atodd((middle + zeros).c_str()), even);
  EXPECT_EQ(atodd((middle + zeros + "1").c_str()), odd);
  EXPECT_EQ(atodd((zeros + middle + "1").c_str()), odd);
  std::string below = middle;
  below.back() = '4';
  EXPECT_EQ(atodd((below + std::string(2000, '9')).c_str()), even);
}

TEST(DoubleDoubleText, isRefusedWhereItIsNoNumber) {
  const std::string nines = std::string(400, '9');
  const char* const texts[] = {"",         " ",     "+",     ".",       "e5",  "1e",
                               "1e+",      "1.2.3", "0x10",  "1,5",     "1 2", "--1",
                               "infinite", "nano",  "1e400", "1.8e308", "1d5", nines.c_str()};
  for (const char* const text : texts) {
    doubledouble value = 7;
    EXPECT_FALSE(StringToDoubleDouble(std::string_view(text), value)) << text;
    EXPECT_EQ(value, 0) << text;
    try {
      static_cast<void>(doubledouble(text));
      ADD_FAILURE() << text;
    } catch (const InternalErrorException& error) {
      EXPECT_TRUE(error.GetSrcFile() == L"DoubleDouble");
      EXPECT_TRUE(error.GetModule() == L"Shared");
    }
  }
  EXPECT_THROW(static_cast<void>(atodd(nullptr)), InternalErrorException);
  doubledouble value;
  EXPECT_FALSE(StringToDoubleDouble(std::string_view("1\0", 2), value));
}

TEST(DoubleDoubleText, isWrittenShortAndReadsBack) {
  struct Row {
    doubledouble value;
    const char* expected;
  };
  const Row rows[] = {
      {0, "0"},
      {-2.5, "-2.5"},
      {doubledouble("0.1"), "0.1"},
      {0.1, "0.1000000000000000055511151231257827021181583404541015625"},
      {doubledouble("12345.678"), "12345.678"},
      {doubledouble("1e-4"), "0.0001"},
      {doubledouble("1e-5"), "1e-05"},
      {doubledouble("1e31"), "10000000000000000000000000000000"},
      {doubledouble("1e32"), "1e+32"},
      {doubledouble("1.5e-300"), "1.5e-300"},
      {0x1p-1074, "5e-324"},
      {sqrt(doubledouble(2)), "1.41421356237309504880168872420971"},
      {{1.0, 1e-40}, "1.0000000000000000000000000000000000000001"},
      {{1.0, 1.0}, "2"},
      {{1e-20, 1.0}, "1.00000000000000000001"},
      {INFINITE, "inf"},
      {-INFINITE, "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "NaN "},
  };
  for (const Row& row : rows) {
    const std::string text = DoubleDoubleToString(row.value);
    EXPECT_EQ(text.substr(0, 20), std::string(row.expected).substr(0, 20));
    std::ostringstream stream;
    stream << row.value;
    EXPECT_EQ(stream.str(), text);
  }
  EXPECT_EQ(DoubleDoubleToString(0.1), rows[3].expected);
}

TEST(DoubleDoubleText, readsBackWhateverThePartsAre) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 3000; ++i) {
    const auto draw = [&random](int low, int high) {
      const auto range = static_cast<unsigned int>(high - low + 1);
      const auto mantissa = static_cast<double>(static_cast<std::int64_t>(random() | 1) >> 10);
      // Few bits as often as many.
      const double rounded = random() % 3 == 0 ? std::copysign(0x1p53, mantissa) : mantissa;
      return std::ldexp(rounded, low + static_cast<int>(random() % range));
    };
    const double head = draw(-1100, 960);
    const doubledouble value = normalize({head, head * draw(-200, -107) * 0x1p-1});
    const std::string text = DoubleDoubleToString(value);
    EXPECT_EQ(atodd(text.c_str()), value) << text;
  }
}

TEST(DoubleDoubleText, hasTheFormatsOfDoubles) {
  std::mt19937_64 random(7);
  const auto pick = [&random](auto... flags) {
    const std::ios_base::fmtflags all[] = {flags...};
    return all[random() % std::size(all)];
  };
  using Flags = std::ios_base;
  const Flags::fmtflags none{};
  for (int i = 0; i < 4000; ++i) {
    const double values[] = {0.0, 1.0, 9.9995, 0.5, 2.5, 1e22, 123456789.0, INFINITE};
    const double any = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                  static_cast<int>(random() % 240) - 180);
    const double value = i % 3 == 0 ? values[random() % std::size(values)] : any;
    const Flags::fmtflags flags = pick(none, Flags::fixed, Flags::scientific) |
                                  pick(none, Flags::showpos) | pick(none, Flags::uppercase) |
                                  pick(none, Flags::showpoint) |
                                  pick(none, Flags::left, Flags::right, Flags::internal);
    const bool isGeneral = (flags & Flags::floatfield) == none;
    const auto precision = static_cast<std::streamsize>(random() % 45);
    std::ostringstream ours, theirs;
    for (std::ostringstream* stream : {&ours, &theirs}) {
      stream->flags(std::isinf(value) ? none : flags);
      stream->precision(isGeneral && precision == 6 ? 7 : precision);
      stream->fill('*');
      stream->width(static_cast<std::streamsize>(random() % 2 * 30));
    }
    theirs.width(ours.width());
    ours << doubledouble(value) << '|';
    theirs << value << '|';
    EXPECT_EQ(ours.str(), theirs.str()) << "precision " << precision;
  }
}

TEST(DoubleDoubleText, isRoundedToAnyPrecision) {
  struct Row {
    doubledouble value;
    std::ios_base::fmtflags format;
    int precision;
    const char* expected;
  };
  const auto fixed = std::ios_base::fixed;
  const auto scientific = std::ios_base::scientific;
  const doubledouble third = doubledouble(1) / 3;
  const Row rows[] = {
      {third, scientific, 31, "3.3333333333333333333333333333333e-01"},
      {third, fixed, 30, "0.333333333333333333333333333333"},
      {{0.5, 1e-30}, fixed, 0, "1"},
      {{0.5, -1e-30}, fixed, 0, "0"},
      {{1.5, -1e-30}, fixed, 0, "1"},
      {{0.05, 0}, fixed, 0, "0"},
      {{1000, -1e-25}, fixed, 3, "1000.000"},
      {{1000, -1e-25}, scientific, 20, "1.00000000000000000000e+03"},
      {{1000, -1e-25}, scientific, 27, "9.999999999999999999999999999e+02"},
      {{1, 1e-30}, scientific, 30, "1.000000000000000000000000000001e+00"},
      {1e-300, fixed, 5, "0.00000"},
      {-1e-300, fixed, 0, "-0"},
  };
  for (const Row& row : rows) {
    std::ostringstream stream;
    stream.setf(row.format, std::ios_base::floatfield);
    stream << std::setprecision(row.precision) << row.value;
    EXPECT_EQ(stream.str(), row.expected);
  }
  std::ostringstream stream;
  stream << std::fixed << std::setprecision(5000) << doubledouble(0.5);
  EXPECT_EQ(stream.str(), "0.5" + std::string(4999, '0'));
}

TEST(DoubleDoubleText, isTakenFromStreams) {
  std::istringstream stream("  1.5 -2e3,0.1x inf nan 7");
  doubledouble value;
  char next = 0;
  EXPECT_TRUE(stream >> value && value == 1.5);
  EXPECT_TRUE(stream >> value >> next && value == -2000 && next == ',');
  EXPECT_TRUE(stream >> value >> next && value == doubledouble("0.1") && next == 'x');
  EXPECT_TRUE(stream >> value && value == INFINITE);
  EXPECT_TRUE(stream >> value && isnan(value));
  EXPECT_TRUE(stream >> value && value == 7 && stream.eof());
  EXPECT_FALSE(stream >> value);
  for (const char* const text : {"", "   ", "x", "1e", "+", "1e400", "-.", "infi"}) {
    std::istringstream broken(text);
    value = 3;
    EXPECT_FALSE(broken >> value) << text;
    EXPECT_EQ(value,
              std::string_view(text).find_first_not_of(' ') == std::string_view::npos ? 3 : 0)
        << text;
  }
}

}  // namespace
}  // namespace shr
