// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `doubledouble`, a number of about 32 decimal digits: the unevaluated sum of two doubles.
///
/// For what a double loses too much of: long sums, differences of nearly equal values, exact
/// conversions of decimal text. Spans of numbers go through
/// shared/numerics/doubledouble/DoubleDoubleSpans.h, `exp`, `log`, `sin`, `cos` and `atan2` are in
/// shared/numerics/doubledouble/DoubleDoubleMath.h, Eigen takes the type as a scalar with
/// shared/numerics/doubledouble/DoubleDoubleEigen.h. Threads: no state.
///
///     doubledouble sum = 1.0;
///     sum += 1e-20;                                   // kept, in the tail
///     double lost = double(sum - 1.0);                // 1e-20
///     doubledouble third = doubledouble(1) / 3;       // 0.333... to 32 digits
///     doubledouble tenth("0.1");                      // nearer to 1/10 than the double 0.1 is

#pragma once

#include <bit>
#include <cmath>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "shared/Export.h"
#include "shared/numerics/doubledouble/DoubleDoubleFormulas.h"

namespace shr {

/// The number `head + tail`.
///
/// It is normalised when |tail| is at most half a unit in the last place of the head, so that
/// head = fl(head + tail). Operators give normalised numbers from normalised ones. Those made of
/// two doubles hold them as they are; `normalize` mends them.
///
/// Error bound: measured for each operation in docs/double-double.md, in units of 2^-106 of the
/// result. Parts below 2^-1074 do not exist: a product whose magnitude is under 2^-968, and what a
/// quotient or root under that bound is made of, lose the last bits of their tails.
///
/// Beyond the range in which the plain steps work: operands above 2^996, which overflow while they
/// are split, give results as accurate as others; an infinite result has the tail 0, and
/// infinities, zero divisors and NaN give the heads that doubles give. A zero result may have
/// either sign; the zeros are equal. A number that is a NaN is equal to none.
///
/// `constexpr`: all operators, where the results are finite and operands at most 2^996.
class doubledouble {
public:
  /// 0.
  constexpr doubledouble() = default;
  /// The two parts, unchanged.
  constexpr doubledouble(double headPart, double tailPart) : head(headPart), tail(tailPart) {}
  constexpr doubledouble(double value) : head(value) {}
  constexpr doubledouble(int value) : head(value) {}
  /// The exact value of an integer of up to 64 bits.
  template <std::integral Integer>
  requires(sizeof(Integer) >= sizeof(int) &&
           !std::same_as<Integer, int>) constexpr doubledouble(Integer value);
  /// What `atodd` returns.
  SHARED_API explicit doubledouble(const char* text);
  doubledouble(std::nullptr_t) = delete;

  /// Returns the head: the nearest double of a normalised number.
  constexpr explicit operator double() const { return head; }
  /// Returns the value without its fraction: 4 for 5 - 1e-20. Degenerate: the nearest int for
  /// values beyond them, 0 for a NaN.
  constexpr explicit operator int() const;

  constexpr doubledouble& operator+=(const doubledouble& y) { return *this = *this + y; }
  constexpr doubledouble& operator-=(const doubledouble& y) { return *this = *this - y; }
  constexpr doubledouble& operator*=(const doubledouble& y) { return *this = *this * y; }
  constexpr doubledouble& operator/=(const doubledouble& y) { return *this = *this / y; }

  friend constexpr doubledouble operator+(const doubledouble& x) { return x; }
  friend constexpr doubledouble operator-(const doubledouble& x) { return {-x.head, -x.tail}; }
  friend constexpr doubledouble operator+(const doubledouble& x, const doubledouble& y);
  friend constexpr doubledouble operator-(const doubledouble& x, const doubledouble& y);
  friend constexpr doubledouble operator*(const doubledouble& x, const doubledouble& y);
  friend constexpr doubledouble operator/(const doubledouble& x, const doubledouble& y);

  /// Compare the heads, then the tails; right for normalised numbers.
  friend constexpr bool operator==(const doubledouble& x, const doubledouble& y) {
    return x.head == y.head && x.tail == y.tail;
  }
  friend constexpr bool operator!=(const doubledouble& x, const doubledouble& y) {
    return !(x == y);
  }
  friend constexpr bool operator<(const doubledouble& x, const doubledouble& y) {
    return x.head < y.head || (x.head == y.head && x.tail < y.tail);
  }
  friend constexpr bool operator<=(const doubledouble& x, const doubledouble& y) {
    return x.head < y.head || (x.head == y.head && x.tail <= y.tail);
  }
  friend constexpr bool operator>(const doubledouble& x, const doubledouble& y) { return y < x; }
  friend constexpr bool operator>=(const doubledouble& x, const doubledouble& y) { return y <= x; }

  /// Returns true when the x87 unit of the processor rounds to 53 bits: its control word has 53-bit
  /// precision, 0x10000 under the mask 0x30000 of the C runtimes. Arithmetic on that unit would be
  /// exact only then. The library is built for SSE2 registers, which always round to 53 bits, so
  /// that its results do not depend on this; ask where code of your own uses the x87 unit.
  SHARED_API static bool CheckPrecision();

  double head = 0;
  double tail = 0;
};

/// Returns the pair with the same sum whose head is that sum rounded. Requires: |head| >= |tail| or
/// so, as in every result of an operator.
constexpr doubledouble normalize(const doubledouble& x);

/// Returns the exact product of two doubles. Degenerate: rounded where it is beyond the range of
/// doubles or its tail under 2^-1074.
constexpr doubledouble Multiply(double a, double b);

constexpr doubledouble fabs(const doubledouble& x) {
  return x.head < 0 || (x.head == 0 && x.tail < 0) ? -x : x;
}
constexpr doubledouble abs(const doubledouble& x) {
  return fabs(x);
}
constexpr doubledouble sqr(const doubledouble& x) {
  return x * x;
}
/// Returns 1 / x.
constexpr doubledouble recip(const doubledouble& x) {
  return doubledouble(1) / x;
}

constexpr bool isnan(const doubledouble& x) {
  return x.head != x.head || x.tail != x.tail;
}
constexpr bool isinf(const doubledouble& x);
constexpr bool isfinite(const doubledouble& x);

/// Returns the square root. Degenerate: 0 for 0, NaN for negative numbers, infinity for infinity.
inline doubledouble sqrt(const doubledouble& x);

/// Return the nearest integer below or equal, above or equal. Infinities and NaN stay.
SHARED_API doubledouble floor(const doubledouble& x);
SHARED_API doubledouble ceil(const doubledouble& x);

/// Returns x to the power of n, 1 for n = 0 whatever x is. Negative powers are the reciprocals of
/// positive ones. Error bound: grows with |n|. Cost: O(log |n|) products.
SHARED_API doubledouble pow(const doubledouble& x, int n);

/// Returns x times 2^n, exact where neither part leaves the range of normal doubles.
SHARED_API doubledouble scalb(const doubledouble& x, long n);

/// Returns the square root of x^2 + y^2, without overflow or underflow on the way. Degenerate:
/// infinity when one of the two is infinite, even if the other one is a NaN.
SHARED_API doubledouble hypot(const doubledouble& x, const doubledouble& y);

/// Returns m and e with x = m * 2^e, where the head of m is in [0.5, 1) or (-1, -0.5] as from
/// `frexp`. Degenerate: x and 0 for 0, infinities and NaN.
SHARED_API std::pair<doubledouble, long> partition(const doubledouble& x);

/// Converts a text: the syntax and the white space of `StringToDouble`
/// (shared/text/StringUtility.h), any number of digits. The result is normalised: the nearest
/// double of the number written and the nearest double of what that lacks, ties to even each.
/// Errors: the library's internal error (source "DoubleDouble") for null, for text that is no
/// number, and for numbers beyond the largest double. Cost: O(digits), nothing is allocated.
[[nodiscard]] SHARED_API doubledouble atodd(const char* text);

/// Converts like `atodd`; returns false and sets `value` to 0 where that raises an error.
SHARED_API bool StringToDoubleDouble(std::string_view text, doubledouble& value);
SHARED_API bool StringToDoubleDouble(std::wstring_view text, doubledouble& value);

/// Returns the shortest decimal text that `atodd` converts to the same number, normalised: "0.1"
/// for atodd("0.1"), all 55 digits for the double 0.1, which is another number. "NaN ", "inf" and
/// "-inf" for the others. Exponents are written for numbers under 1e-4 and from 1e32.
[[nodiscard]] SHARED_API std::string DoubleDoubleToString(const doubledouble& x);

/// Writes a number in the format of the stream, correctly rounded to any precision (halves to
/// even): `std::fixed`, `std::scientific`, `std::setprecision`, `std::showpos`, `std::showpoint`,
/// `std::uppercase`, width, fill and adjustment mean what they mean for doubles; other bases of
/// the format write as the default one. The point is "." in every locale. Only the initial format
/// differs from that of doubles: with the precision 6, neither fixed nor scientific, it writes
/// `DoubleDoubleToString`, so that what was written is what is read. A NaN is "NaN ".
SHARED_API std::ostream& operator<<(std::ostream& stream, const doubledouble& x);

/// Reads the longest run of characters that may belong to a number, behind white space if the
/// stream skips it. Errors: `failbit` and 0 where that run is no number or is beyond the largest
/// double; characters of the run are gone then.
SHARED_API std::istream& operator>>(std::istream& stream, doubledouble& x);

// Implementation details follow.

/// @cond
namespace doubledouble_formulas {

constexpr bool IsFinite(double a) {
  constexpr std::uint64_t INFINITE_EXPONENT = 0x7FF0000000000000u;
  return (std::bit_cast<std::uint64_t>(a) & INFINITE_EXPONENT) != INFINITE_EXPONENT;
}

constexpr Pair<double> PairOf(const doubledouble& x) {
  return {x.head, x.tail};
}

/// What the plain steps cannot give: infinities, NaN, and operands that overflow when split.
constexpr doubledouble ExtremeSum(const doubledouble& x, const doubledouble& y) {
  const double heads = x.head + y.head;
  const double sum = heads + (x.tail + y.tail);
  // All finite, then only the last rounding went beyond the largest double.
  if (IsFinite(sum))
    return sum < 0 ? -std::numeric_limits<double>::infinity()
                   : std::numeric_limits<double>::infinity();
  return sum;
}
SHARED_API doubledouble ExtremeProduct(const doubledouble& x, const doubledouble& y);
SHARED_API doubledouble ExtremeQuotient(const doubledouble& x, const doubledouble& y);

}  // namespace doubledouble_formulas
/// @endcond

template <std::integral Integer>
requires(sizeof(Integer) >= sizeof(int) &&
         !std::same_as<Integer, int>) constexpr doubledouble::doubledouble(Integer value) {
  static_assert(sizeof(Integer) <= 8);
  const double high = static_cast<double>(value >> 16 >> 16) * 4294967296.0;
  const double low = static_cast<double>(static_cast<std::uint32_t>(value));
  head = high + low;
  tail = (high - head) + low;
}

constexpr doubledouble::operator int() const {
  constexpr int LEAST = std::numeric_limits<int>::min();
  constexpr int LARGEST = std::numeric_limits<int>::max();
  if (isnan(*this)) return 0;
  if (head >= LARGEST + 1.0) return LARGEST;
  if (head <= LEAST - 1.0) return LEAST;
  const int whole = static_cast<int>(head);
  if (whole != head) return whole;
  return whole - static_cast<int>(whole > 0 && tail < 0) + static_cast<int>(whole < 0 && tail > 0);
}

// A tail that is not finite tells of all trouble on the way. No operator calls another one on the
// way that is taken, and nothing is stored before all is known, so that loops become vectors.

constexpr doubledouble operator+(const doubledouble& x, const doubledouble& y) {
  using namespace doubledouble_formulas;
  const Pair<double> sum = SumOf(PairOf(x), PairOf(y));
  if (!IsFinite(sum.tail)) [[unlikely]]
    return ExtremeSum(x, y);
  return {sum.head, sum.tail};
}

constexpr doubledouble operator-(const doubledouble& x, const doubledouble& y) {
  return x + doubledouble(-y.head, -y.tail);
}

constexpr doubledouble operator*(const doubledouble& x, const doubledouble& y) {
  using namespace doubledouble_formulas;
  const Pair<double> product = ProductOf(PairOf(x), PairOf(y));
  if (!IsFinite(product.tail)) [[unlikely]]
    return ExtremeProduct(x, y);
  return {product.head, product.tail};
}

constexpr doubledouble operator/(const doubledouble& x, const doubledouble& y) {
  using namespace doubledouble_formulas;
  const Pair<double> quotient = QuotientOf(PairOf(x), PairOf(y));
  if (!IsFinite(quotient.tail)) [[unlikely]]
    return ExtremeQuotient(x, y);
  return {quotient.head, quotient.tail};
}

constexpr doubledouble normalize(const doubledouble& x) {
  const double sum = x.head + x.tail;
  const double rest = (x.head - sum) + x.tail;
  const double head = rest + sum;
  const double tail = (sum - head) + rest;
  if (!doubledouble_formulas::IsFinite(tail)) [[unlikely]]
    return sum;
  return {head, tail};
}

constexpr doubledouble Multiply(double a, double b) {
  using namespace doubledouble_formulas;
  const Pair<double> product = ExactProduct(a, b);
  if (!IsFinite(product.tail)) [[unlikely]]
    return ExtremeProduct(a, b);
  return {product.head, product.tail};
}

constexpr bool isfinite(const doubledouble& x) {
  return doubledouble_formulas::IsFinite(x.head) && doubledouble_formulas::IsFinite(x.tail);
}

constexpr bool isinf(const doubledouble& x) {
  return !isfinite(x) && !isnan(x);
}

inline doubledouble sqrt(const doubledouble& x) {
  using namespace doubledouble_formulas;
  if (x.head == 0) return 0.0;
  const double root = std::sqrt(x.head);
  if (!IsFinite(root)) [[unlikely]]
    return root;
  const Pair<double> square = ExactProduct(root, root);
  const double rest = (x.head - square.head - square.tail + x.tail) / (2 * root);
  const Pair<double> result = Renormalized(root, rest);
  if (IsFinite(result.tail)) [[likely]]
    return {result.head, result.tail};
  // The root of the largest numbers rounds up to 2^512, whose square overflows.
  const doubledouble half = sqrt({x.head * 0.25, x.tail * 0.25});
  return {2 * half.head, 2 * half.tail};
}

}  // namespace shr

/// What holds for numbers both of whose parts are normal doubles, whatever the distance between
/// them; a number may well have more digits than are told here.
template <>
class std::numeric_limits<shr::doubledouble> {
public:
  static constexpr bool is_specialized = true;
  static constexpr bool is_signed = true;
  static constexpr bool is_integer = false;
  static constexpr bool is_exact = false;
  static constexpr bool has_infinity = true;
  static constexpr bool has_quiet_NaN = true;
  static constexpr bool has_signaling_NaN = false;
  static constexpr std::float_denorm_style has_denorm = std::denorm_present;
  static constexpr bool has_denorm_loss = false;
  static constexpr std::float_round_style round_style = std::round_indeterminate;
  static constexpr bool is_iec559 = false;
  static constexpr bool is_bounded = true;
  static constexpr bool is_modulo = false;
  static constexpr int digits = 106;
  static constexpr int digits10 = 31;
  static constexpr int max_digits10 = 33;
  static constexpr int radix = 2;
  static constexpr int min_exponent = -968;
  static constexpr int min_exponent10 = -291;
  static constexpr int max_exponent = 1024;
  static constexpr int max_exponent10 = 308;
  static constexpr bool traps = false;
  static constexpr bool tinyness_before = false;

  /// 2^-969, the least whose tails of 53 bits are normal.
  static constexpr shr::doubledouble min() noexcept { return 0x1p-969; }
  static constexpr shr::doubledouble max() noexcept {
    return {0x1.fffffffffffffp1023, 0x1.fffffffffffffp969};
  }
  static constexpr shr::doubledouble lowest() noexcept {
    return {-0x1.fffffffffffffp1023, -0x1.fffffffffffffp969};
  }
  /// 2^-105.
  static constexpr shr::doubledouble epsilon() noexcept { return 0x1p-105; }
  static constexpr shr::doubledouble round_error() noexcept { return 1.0; }
  static constexpr shr::doubledouble infinity() noexcept {
    return numeric_limits<double>::infinity();
  }
  static constexpr shr::doubledouble quiet_NaN() noexcept {
    return numeric_limits<double>::quiet_NaN();
  }
  static constexpr shr::doubledouble signaling_NaN() noexcept { return quiet_NaN(); }
  static constexpr shr::doubledouble denorm_min() noexcept {
    return numeric_limits<double>::denorm_min();
  }
};

/// Equal numbers have equal hashes, the zeros of both signs too.
template <>
struct std::hash<shr::doubledouble> {
  std::size_t operator()(const shr::doubledouble& x) const noexcept {
    const std::hash<double> part;
    const std::size_t first = part(x.head);
    return first ^ (part(x.tail) + 0x9E3779B9u + (first << 6) + (first >> 2));
  }
};
