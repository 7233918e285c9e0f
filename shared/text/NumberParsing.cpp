// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Real numbers are converted in three ways, the cheapest that is certain to be correctly rounded:
//
// 1. At most 2^53 times a power of ten up to 10^22: both are doubles, so one multiplication or
//    division rounds correctly (W. D. Clinger, "How to Read Floating Point Numbers Accurately",
//    1990).
// 2. The first 19 significant digits as an integer w and the decimal exponent q: w * 5^q is
//    approximated by one or two 64-bit products with a table of 128-bit powers, and the leading 54
//    bits are rounded when the error cannot reach them (D. Lemire, "Number Parsing at a Gigabyte
//    per Second", 2021; N. Mushtak and D. Lemire, "Fast Number Parsing Without Fallback", 2023).
//    With more than 19 digits the number lies between w and w + 1; when both round alike, that is
//    the result.
// 3. Else the number is very near the middle of two doubles. Its significant digits are written to
//    a buffer and given to std::from_chars. A middle of two doubles has at most 767 significant
//    digits; any non-zero digit behind MAX_DIGITS only says "a little more", and is replaced by one
//    sticky digit.

#include "shared/text/NumberParsing.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "shared/text/DigitChunk.h"
#include "shared/text/PowersOfFive.h"
#include "shared/text/StringUtility.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

// Facts of the double format and of the table.

constexpr int MANTISSA_BITS = 52;
constexpr int INFINITE_POWER = 0x7FF;
constexpr int EXPONENT_BIAS = 1023;

/// Decimal digits that always fit 64 bits.
constexpr std::ptrdiff_t SHORT_DIGITS = 19;

/// Significant digits kept for the exact conversion.
constexpr std::ptrdiff_t MAX_DIGITS = 780;

/// Exponents are held to this while they are read; no text is long enough to make up for it.
constexpr std::int64_t EXPONENT_LIMIT = 1'000'000'000'000'000;

constexpr double EXACT_POWERS_OF_TEN[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                          1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t LARGEST_EXACT_POWER = 22;

constexpr std::uint64_t INFINITY_BITS = std::uint64_t{INFINITE_POWER} << MANTISSA_BITS;

/// In place of the bits of a positive double: the approximation is not good enough. (One word is
/// returned in a register on both targets.)
constexpr std::uint64_t UNCERTAIN = ~std::uint64_t{0};

/// The leading 128 bits of w * 5^q, w having its highest bit set.
Product128 MultiplyByPowerOfFive(std::uint64_t w, int q) {
  const Product128& power = PowerOfFive(q);
  // The bits below the 54 that are rounded and the leading one that may be zero.
  constexpr std::uint64_t SPARE_BITS = ~std::uint64_t{0} >> (MANTISSA_BITS + 3);
  Product128 product = Multiply128(w, power.high);
  if ((product.high & SPARE_BITS) == SPARE_BITS) {
    const Product128 lower = Multiply128(w, power.low);
    product.low += lower.high;
    if (product.low < lower.high) ++product.high;
  }
  return product;
}

/// Rounds 55 bits that stand `1 - power` places too high to a subnormal number.
std::uint64_t RoundSubnormal(std::uint64_t mantissa, int power) {
  if (1 - power >= 64) return 0;
  mantissa >>= 1 - power;
  mantissa += mantissa & 1;
  // A carry into bit 52 makes the smallest normal number, whose bits are these.
  return mantissa >> 1;
}

/// Rounds w * 10^q to the nearest double; returns its bits, or UNCERTAIN.
std::uint64_t RoundProduct(std::uint64_t w, std::int64_t exponent) {
  if (w == 0 || exponent < SMALLEST_POWER_OF_TEN) return 0;
  if (exponent > LARGEST_POWER_OF_TEN) return INFINITY_BITS;
  const int q = static_cast<int>(exponent);
  const int leadingZeros = std::countl_zero(w);
  const Product128 product = MultiplyByPowerOfFive(w << leadingZeros, q);
  // The cut-off part of the power could still carry through a low half of ones. Powers that are
  // exact in the table have no such part.
  if (product.low == ~std::uint64_t{0} && (q < -27 || q > 55)) return UNCERTAIN;

  const int topBit = static_cast<int>(product.high >> 63);
  const int shift = topBit + 64 - MANTISSA_BITS - 3;
  std::uint64_t mantissa = product.high >> shift;
  int power = BinaryExponent(q) + 63 + topBit - leadingZeros + EXPONENT_BIAS;
  if (power <= 0) return RoundSubnormal(mantissa, power);

  // Exactly in the middle of two doubles, which only small powers reach: down to an even mantissa.
  const bool middle = product.low <= 1 && q >= -4 && q <= 23 && (mantissa & 3) == 1 &&
                      mantissa << shift == product.high;
  if (middle) mantissa &= ~std::uint64_t{1};
  mantissa = (mantissa + (mantissa & 1)) >> 1;
  if (mantissa >> (MANTISSA_BITS + 1) != 0) {
    mantissa >>= 1;
    ++power;
  }
  if (power >= INFINITE_POWER) return INFINITY_BITS;
  constexpr std::uint64_t STORED_BITS = (std::uint64_t{1} << MANTISSA_BITS) - 1;
  return (mantissa & STORED_BITS) | static_cast<std::uint64_t>(power) << MANTISSA_BITS;
}

/// The digits of a number as they stand in the text.
template <typename Char>
struct Numeral {
  const Char* first = nullptr;  ///< First digit or the point.
  const Char* last = nullptr;   ///< Behind the last digit or the point.
  const Char* point = nullptr;  ///< The point; `last` when there is none.
  std::ptrdiff_t digits = 0;    ///< Number of digits.
  std::int64_t exponent = 0;    ///< Power of ten of the last digit.
};

/// The value of a digit; above 9 for every other unit.
template <typename Char>
constexpr std::uint32_t DigitValue(Char ch) {
  return static_cast<std::uint32_t>(ch) - '0';
}

template <typename Char>
constexpr bool IsDigit(Char ch) {
  return DigitValue(ch) < 10;
}

/// Significant digits in the order of the text.
template <typename Char>
struct Significant {
  const Char* first = nullptr;
  std::ptrdiff_t count = 0;
  std::int64_t exponent = 0;  ///< Power of ten of the last digit.
};

template <typename Char>
Significant<Char> FindSignificant(const Numeral<Char>& numeral) {
  const Char* first = numeral.first;
  std::ptrdiff_t count = numeral.digits;
  while (first != numeral.last && (*first == '0' || first == numeral.point)) {
    if (first != numeral.point) --count;
    ++first;
  }
  return {first, count, numeral.exponent};
}

/// Rounds a number by its digits; the slow way that is always certain.
template <typename Char>
std::uint64_t RoundExactly(const Numeral<Char>& numeral, const Significant<Char>& digits) {
  // The number is 0.d1d2d3... times ten to this power.
  const std::int64_t scale = digits.exponent + digits.count;
  if (scale > LARGEST_POWER_OF_TEN + 1) return INFINITY_BITS;
  if (scale < SMALLEST_POWER_OF_TEN) return 0;

  char buffer[MAX_DIGITS + 32];
  char* out = buffer;
  *out++ = '.';
  const Char* next = digits.first;
  for (; next != numeral.last && out - buffer <= MAX_DIGITS; ++next) {
    if (next != numeral.point) *out++ = static_cast<char>(*next);
  }
  const auto counts = [](Char ch) { return ch != '0' && ch != '.'; };
  if (std::find_if(next, numeral.last, counts) != numeral.last) *out++ = '1';
  *out++ = 'e';
  out = std::to_chars(out, buffer + sizeof buffer, scale).ptr;

  double value = 0;
  const auto result = std::from_chars(buffer, out, value);
  if (result.ec == std::errc::result_out_of_range && scale > 0) return INFINITY_BITS;
  return std::bit_cast<std::uint64_t>(value);
}

/// Rounds a number of more digits than fit 64 bits, or whose quick conversion was not certain.
///
/// Takes its argument by value, so that the caller may keep the parts in registers.
template <typename Char>
std::uint64_t RoundLong(Numeral<Char> numeral) {
  const Significant<Char> digits = FindSignificant(numeral);
  std::uint64_t mantissa = 0;
  std::ptrdiff_t taken = 0;
  for (const Char* next = digits.first; next != numeral.last && taken < SHORT_DIGITS; ++next) {
    if (next == numeral.point) continue;
    mantissa = mantissa * 10 + DigitValue(*next);
    ++taken;
  }
  const std::int64_t exponent = digits.exponent + (digits.count - taken);
  const std::uint64_t below = RoundProduct(mantissa, exponent);
  if (below != UNCERTAIN &&
      (taken == digits.count || below == RoundProduct(mantissa + 1, exponent))) {
    return below;
  }
  return RoundExactly(numeral, digits);
}

/// An exponent is as good as random in data that has them: plain decimals only go the way that
/// asks for its size.
enum class Notation { Plain, Scientific };

/// Converts up to SHORT_DIGITS digits; returns UNCERTAIN when it cannot.
inline std::uint64_t RoundShort(std::uint64_t mantissa, std::int64_t exponent, Notation notation) {
  constexpr std::uint64_t LARGEST_EXACT_MANTISSA = std::uint64_t{1} << (MANTISSA_BITS + 1);
  if (notation == Notation::Plain && exponent >= -LARGEST_EXACT_POWER &&
      mantissa <= LARGEST_EXACT_MANTISSA) {
    const auto value = static_cast<double>(static_cast<std::int64_t>(mantissa));
    return std::bit_cast<std::uint64_t>(value / EXACT_POWERS_OF_TEN[-exponent]);
  }
  return RoundProduct(mantissa, exponent);
}

// Scanning.

/// A position behind digits and what they amount to, modulo 2^64.
template <typename Char>
struct Digits {
  const Char* next;
  std::uint64_t value;
};

/// Steps over digits, which continue those of `digits`.
template <typename Char>
inline Digits<Char> ScanDigits(Digits<Char> digits, const Char* last) {
  for (; digits.next != last; ++digits.next) {
    const std::uint32_t digit = DigitValue(*digits.next);
    if (digit > 9) break;
    digits.value = digits.value * 10 + digit;
  }
  return digits;
}

/// The same for runs that are often long.
template <typename Char>
inline Digits<Char> ScanManyDigits(Digits<Char> digits, const Char* last) {
  while (last - digits.next >= 8) {
    const DigitChunk chunk = LoadDigitChunk(digits.next);
    if (!AreDigits(chunk)) break;
    digits.value = digits.value * 100'000'000 + DigitsValue(chunk);
    digits.next += 8;
  }
  return ScanDigits(digits, last);
}

/// A sign that may be missing.
struct Sign {
  bool negative = false;
  int length = 0;
};

template <typename Char>
Sign ScanSign(const Char* first, const Char* last) {
  if (first == last) return {};
  // Signs of data are as good as random: no branch hangs on them.
  const bool negative = *first == '-';
  return {negative, static_cast<int>(negative) + static_cast<int>(*first == '+')};
}

double WithSign(double magnitude, Sign sign) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(magnitude);
  return std::bit_cast<double>(bits | static_cast<std::uint64_t>(sign.negative) << 63);
}

/// Reads "e", an optional sign and digits into `exponent`; returns `next` when there are no digits.
template <typename Char>
const Char* ScanExponent(const Char* next, const Char* last, std::int64_t& exponent) {
  if (next == last || (*next != 'e' && *next != 'E')) return next;
  const Sign sign = ScanSign(next + 1, last);
  const Char* digit = next + 1 + sign.length;
  if (digit == last || !IsDigit(*digit)) return next;
  std::int64_t value = 0;
  do {
    if (value < EXPONENT_LIMIT) value = value * 10 + static_cast<std::int64_t>(DigitValue(*digit));
    ++digit;
  } while (digit != last && IsDigit(*digit));
  // No branch for this sign either.
  const std::int64_t flip = -static_cast<std::int64_t>(sign.negative);
  exponent = (value ^ flip) - flip;
  return digit;
}

/// Length of `lowerWord` when the text begins with it in any case, else 0.
template <typename Char>
std::ptrdiff_t WordLength(const Char* first, const Char* last, std::string_view lowerWord) {
  const auto length = static_cast<std::ptrdiff_t>(lowerWord.size());
  if (last - first < length) return 0;
  const auto same = [](char a, Char b) { return static_cast<Char>(a) == b || Char(a - 0x20) == b; };
  return std::equal(lowerWord.begin(), lowerWord.end(), first, same) ? length : 0;
}

/// A number at the head of a text; `end` is null when there is none.
template <typename Char>
struct Decimal {
  const Char* end;
  double value;
};

/// Reads "nan", with an optional remark in parentheses, "inf" or "infinity".
template <typename Char>
Decimal<Char> ScanWord(const Char* first, const Char* last) {
  if (const auto length = WordLength(first, last, "nan"); length > 0) {
    const Char* end = first + length;
    if (end != last && *end == '(') {
      const Char* const close = std::find(end, last, static_cast<Char>(')'));
      if (close != last) end = close + 1;
    }
    return {end, std::numeric_limits<double>::quiet_NaN()};
  }
  auto length = WordLength(first, last, "infinity");
  if (length == 0) length = WordLength(first, last, "inf");
  if (length == 0) return {nullptr, 0};
  return {first + length, std::numeric_limits<double>::infinity()};
}

template <typename Char>
inline Decimal<Char> ScanDecimal(const Char* first, const Char* last) {
  Digits<Char> digits = ScanDigits<Char>({first, 0}, last);
  const Char* const point = digits.next;
  std::ptrdiff_t count = point - first;
  std::ptrdiff_t decimals = 0;
  if (point != last && *point == '.') {
    digits = ScanManyDigits<Char>({point + 1, digits.value}, last);
    decimals = digits.next - point - 1;
    count += decimals;
  }
  if (count == 0) return {nullptr, 0};
  std::int64_t exponent = 0;
  const Char* const end = ScanExponent(digits.next, last, exponent);
  exponent -= decimals;
  std::uint64_t bits = UNCERTAIN;
  if (count <= SHORT_DIGITS) {
    bits = RoundShort(digits.value, exponent,
                      end == digits.next ? Notation::Plain : Notation::Scientific);
  }
  if (bits == UNCERTAIN) {
    bits = RoundLong(Numeral<Char>{first, digits.next, point, count, exponent});
  }
  return {end, std::bit_cast<double>(bits)};
}

template <typename Char>
const Char* SkipSpaces(const Char* next, const Char* last) {
  while (next != last && IsAsciiSpace(static_cast<std::uint32_t>(*next))) ++next;
  return next;
}

template <typename Char>
bool ParseDouble(const Char* begin, const Char* last, double& value) {
  const Char* const first = SkipSpaces(begin, last);
  const Sign sign = ScanSign(first, last);
  Decimal<Char> number = ScanDecimal(first + sign.length, last);
  bool valid = std::isfinite(number.value);
  if (number.end == nullptr) {
    number = ScanWord(first + sign.length, last);
    valid = number.end != nullptr;
  }
  valid = valid && SkipSpaces(number.end, last) == last;
  value = valid ? WithSign(number.value, sign) : 0.0;
  return valid;
}

/// Returns the end of the number without sign that begins at `first`; `first` when there is none.
template <typename Char>
const Char* SkipMagnitude(const Char* first, const Char* last) {
  const auto skipDigits = [last](const Char* next) {
    return std::find_if_not(next, last, IsDigit<Char>);
  };
  const Char* next = skipDigits(first);
  std::ptrdiff_t digits = next - first;
  if (next != last && *next == '.') {
    const Char* const decimals = next + 1;
    next = skipDigits(decimals);
    digits += next - decimals;
  }
  if (digits == 0) {
    const Decimal<Char> word = ScanWord(first, last);
    return word.end == nullptr ? first : word.end;
  }
  if (next == last || (*next != 'e' && *next != 'E')) return next;
  const Char* const exponent = next + 1 + ScanSign(next + 1, last).length;
  const Char* const end = skipDigits(exponent);
  return end == exponent ? next : end;
}

// Integers.

template <std::integral Integer, typename Char>
bool ParseInteger(std::basic_string_view<Char> text, Integer& value) {
  using Magnitude = std::make_unsigned_t<Integer>;
  value = 0;
  const Char* const last = text.data() + text.size();
  const Char* next = SkipSpaces(text.data(), last);
  bool negative = false;
  if (std::signed_integral<Integer> && next != last && (*next == '-' || *next == '+')) {
    negative = *next++ == '-';
  }
  if (next == last || !IsDigit(*next)) return false;
  const Magnitude limit =
      static_cast<Magnitude>(std::numeric_limits<Integer>::max()) + Magnitude(negative ? 1 : 0);
  Magnitude magnitude = 0;
  for (; next != last && IsDigit(*next); ++next) {
    const auto digit = static_cast<Magnitude>(DigitValue(*next));
    if (magnitude > (limit - digit) / 10) return false;
    magnitude = magnitude * 10 + digit;
  }
  if (SkipSpaces(next, last) != last) return false;
  value = static_cast<Integer>(negative ? Magnitude(0) - magnitude : magnitude);
  return true;
}

}  // namespace

template <typename Char>
RealPrefix<Char> ParseRealPrefix(const Char* first, const Char* last) noexcept {
  // Finds the end first and then parses what is before it as a whole text, so that the conversion
  // of whole texts has one caller only, into which the compiler merges it.
  const Sign sign = ScanSign(first, last);
  const Char* const end = SkipMagnitude(first + sign.length, last);
  if (end == first + sign.length) return {first, 0, RealStatus::None};
  RealPrefix<Char> number{end, 0, RealStatus::Ok};
  if (!ParseDouble(first, end, number.value)) {
    number.value = WithSign(std::numeric_limits<double>::infinity(), sign);
    number.status = RealStatus::Overflow;
  }
  return number;
}

template RealPrefix<char> ParseRealPrefix(const char*, const char*) noexcept;
template RealPrefix<wchar_t> ParseRealPrefix(const wchar_t*, const wchar_t*) noexcept;

bool StringToInt(std::string_view text, int& value) {
  return ParseInteger(text, value);
}

bool StringToInt(std::wstring_view text, int& value) {
  return ParseInteger(text, value);
}

bool StringToInt64(std::string_view text, std::int64_t& value) {
  return ParseInteger(text, value);
}

bool StringToInt64(std::wstring_view text, std::int64_t& value) {
  return ParseInteger(text, value);
}

bool StringToUnsigned(std::string_view text, unsigned int& value) {
  return ParseInteger(text, value);
}

bool StringToUnsigned(std::wstring_view text, unsigned int& value) {
  return ParseInteger(text, value);
}

bool StringToDouble(std::string_view text, double& value) {
  return ParseDouble(text.data(), text.data() + text.size(), value);
}

bool StringToDouble(std::wstring_view text, double& value) {
  return ParseDouble(text.data(), text.data() + text.size(), value);
}

}  // namespace shr
