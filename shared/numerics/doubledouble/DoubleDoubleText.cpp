// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The number reader of shared/text finds where a number ends and gives the head, the nearest
// double. What is left is the tail: the nearest double of the number less the head. It is found in
// three ways, the cheapest that is certain:
//
// 1. Few digits over a small power of ten: both are doubles, and the remainder of a rounded
//    quotient is a double, too, so one more division gives the tail.
// 2. The first 38 digits as an integer of 128 bits times a power of five of 192 bits. The head is
//    taken away from the product, and what is left is rounded once as it is and once with all that
//    the product may lack; when both round alike, that is the tail.
// 3. The decimal digits of the head, which end, taken from those of the text. That is exact, and
//    the number reader rounds the difference.

#include <algorithm>
#include <bit>
#include <charconv>
#include <istream>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/doubledouble/DecimalExpansion.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"
#include "shared/numerics/doubledouble/LongPowersOfFive.h"
#include "shared/text/Multiply128.h"
#include "shared/text/NumberParsing.h"
#include "shared/text/PowersOfTen.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"DoubleDouble";

/// Digits that always fit 64 bits.
constexpr int HALF_DIGITS = 19;

/// The digits of a finite number as they stand in the text, without a sign.
template <typename Char>
struct Numeral {
  const Char* first = nullptr;  ///< The first digit that is not zero.
  const Char* last = nullptr;   ///< Behind the last digit or the point.
  std::int64_t count = 0;       ///< Digits from `first` on.
  std::int64_t exponent = 0;    ///< Power of ten of the last digit.
  std::uint64_t upper = 0;      ///< The first 19 digits.
  std::uint64_t lower = 0;      ///< The 19 digits behind them.
};

template <typename Char>
std::uint32_t DigitValue(Char ch) {
  return static_cast<std::uint32_t>(ch) - '0';
}

/// Reads the exponent at [next, last), "e" included; nothing is 0. Held to what no digits make up.
template <typename Char>
std::int64_t ExponentOf(const Char* next, const Char* last) {
  constexpr std::int64_t LIMIT = 1'000'000'000'000'000;
  if (next == last) return 0;
  ++next;
  const bool isNegative = *next == '-';
  if (isNegative || *next == '+') ++next;
  std::int64_t value = 0;
  for (; next != last && value < LIMIT; ++next) value = value * 10 + DigitValue(*next);
  return isNegative ? -value : value;
}

/// Takes apart what the number reader has read and found not to be zero.
template <typename Char>
Numeral<Char> TakeApart(const Char* next, const Char* last) {
  Numeral<Char> numeral;
  const Char* point = nullptr;
  for (; *next == '0' || *next == '.'; ++next) {
    if (*next == '.') point = next;
  }
  numeral.first = next;
  for (; next != last; ++next) {
    const std::uint32_t digit = DigitValue(*next);
    if (digit > 9) {
      if (*next != '.') break;
      point = next;
      continue;
    }
    if (numeral.count < HALF_DIGITS) {
      numeral.upper = numeral.upper * 10 + digit;
    } else if (numeral.count < 2 * HALF_DIGITS) {
      numeral.lower = numeral.lower * 10 + digit;
    }
    ++numeral.count;
  }
  numeral.last = next;
  numeral.exponent = ExponentOf(next, last);
  if (point != nullptr) numeral.exponent -= next - point - 1;
  return numeral;
}

// The second way.

/// An integer of 320 bits in two's complement; limb 0 is the lowest.
struct Wide {
  std::uint64_t limbs[5];
};

void AddAt(Wide& a, std::size_t index, std::uint64_t value) {
  for (; value != 0 && index < 5; ++index) {
    a.limbs[index] += value;
    value = a.limbs[index] < value ? 1 : 0;
  }
}

Wide ProductOf(std::uint64_t high, std::uint64_t low, const LongPower& power) {
  Wide product{};
  const std::uint64_t factor[2] = {low, high};
  for (std::size_t i = 0; i < 2; ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      Product128 part = Multiply128(factor[i], power.limbs[j]);
      part.low += carry;
      part.high += part.low < carry ? 1 : 0;
      product.limbs[i + j] += part.low;
      carry = part.high + (product.limbs[i + j] < part.low ? 1 : 0);
    }
    product.limbs[i + 3] = carry;
  }
  return product;
}

/// Rounds number * 2^exponent to the nearest double, ties to even. `isKnown` becomes false where
/// that is a subnormal one.
double RoundWide(Wide number, int exponent, bool& isKnown) {
  const bool isNegative = number.limbs[4] >> 63 != 0;
  if (isNegative) {
    for (std::uint64_t& limb : number.limbs) limb = ~limb;
    AddAt(number, 0, 1);
  }
  std::size_t top = 5;
  while (top > 0 && number.limbs[top - 1] == 0) --top;
  if (top == 0) return 0;
  const int shift = std::countl_zero(number.limbs[top - 1]);
  std::uint64_t leading = number.limbs[top - 1] << shift;
  bool rest = false;
  if (top > 1) {
    if (shift > 0) leading |= number.limbs[top - 2] >> (64 - shift);
    rest = number.limbs[top - 2] << shift != 0;
    for (std::size_t i = 0; i + 2 < top; ++i) rest = rest || number.limbs[i] != 0;
  }
  constexpr int SPARE_BITS = 11;
  constexpr std::uint64_t HALF = std::uint64_t{1} << (SPARE_BITS - 1);
  const std::uint64_t spare = leading & (2 * HALF - 1);
  std::uint64_t mantissa = leading >> SPARE_BITS;
  const bool isUp = spare > HALF || (spare == HALF && (rest || (mantissa & 1) != 0));
  // A carry out of the mantissa raises the exponent, and leaves the bits of a power of two.
  const int power = exponent + static_cast<int>(top) * 64 - 1 - shift + 1023;
  if (power < 1) {
    isKnown = false;
    return 0;
  }
  mantissa = (mantissa & ~(std::uint64_t{1} << 52)) + (isUp ? 1 : 0);
  const std::uint64_t bits = mantissa + (static_cast<std::uint64_t>(power) << 52);
  return std::bit_cast<double>(bits | static_cast<std::uint64_t>(isNegative) << 63);
}

/// Finds the tail of most numbers; returns false where it is not certain.
template <typename Char>
bool FindTailByProduct(const Numeral<Char>& numeral, double head, double& tail) {
  const std::int64_t taken = std::min<std::int64_t>(numeral.count, 2 * HALF_DIGITS);
  const std::int64_t exponent = numeral.exponent + (numeral.count - taken);
  if (exponent < LEAST_LONG_POWER || exponent > LARGEST_LONG_POWER) return false;
  const int q = static_cast<int>(exponent);
  Product128 digits{0, numeral.upper};
  if (taken > HALF_DIGITS) {
    digits = Multiply128(numeral.upper, POWERS_OF_TEN[taken - HALF_DIGITS]);
    digits.low += numeral.lower;
    digits.high += digits.low < numeral.lower ? 1 : 0;
  }
  int shift = std::countl_zero(digits.high);
  if (shift == 64) {
    digits = {digits.low, 0};
    shift = std::countl_zero(digits.high);
    digits.high <<= shift;
    shift += 64;
  } else if (shift > 0) {
    digits.high = digits.high << shift | digits.low >> (64 - shift);
    digits.low <<= shift;
  }
  const LongPower& power = LongPowerOfFive(q);
  Wide rest = ProductOf(digits.high, digits.low, power);
  const int unit = power.exponent + q - shift;  // of the product, as a power of two

  const std::uint64_t bits = std::bit_cast<std::uint64_t>(head);
  const int headPower = static_cast<int>(bits >> 52) - 1075;
  const std::uint64_t mantissa = (bits & 0xFFFFFFFFFFFFFu) | std::uint64_t{1} << 52;
  const int position = headPower - unit;
  // The head has the leading bits of the product, or is the power of two above them, which is 0 in
  // these limbs. Subnormal heads have fewer bits.
  if (bits >> 52 == 0 || position < 256 || position > 268) return false;
  rest.limbs[4] -= mantissa << (position - 256);

  bool isKnown = true;
  tail = RoundWide(rest, unit, isKnown);
  const bool isTableExact = q >= 0 && q <= EXACT_LONG_POWER;
  if (!isTableExact) AddAt(rest, 2, 2);
  if (taken < numeral.count) AddAt(rest, 3, std::uint64_t{1} << shift);
  if (!isTableExact || taken < numeral.count) {
    isKnown = isKnown && tail == RoundWide(rest, unit, isKnown);
  }
  return isKnown;
}

// The third way.

/// Decimal places from 10^310 down to 10^-1100, below which no double nor the middle of two has
/// digits: what a text has there is as good as one digit.
constexpr std::int64_t PLACES_BEFORE_POINT = 311;
constexpr std::size_t PLACES = 1412;
using Places = std::array<signed char, PLACES>;

template <typename Char>
Places PlacesOf(const Numeral<Char>& numeral) {
  Places places{};
  std::int64_t place = PLACES_BEFORE_POINT - (numeral.exponent + numeral.count);
  for (const Char* next = numeral.first; next != numeral.last; ++next) {
    if (*next == '.') continue;
    const auto digit = static_cast<signed char>(DigitValue(*next));
    if (place < static_cast<std::int64_t>(PLACES) - 1) {
      places[static_cast<std::size_t>(place)] = digit;
    } else if (digit != 0) {
      places[PLACES - 1] = 1;
      break;
    }
    ++place;
  }
  return places;
}

void Subtract(Places& places, const DecimalExpansion& number) {
  auto place = static_cast<std::size_t>(PLACES_BEFORE_POINT - number.exponent);
  for (int i = 0; i < number.count; ++i, ++place) {
    const int difference = places[place] - number.digits[static_cast<std::size_t>(i)];
    places[place] = static_cast<signed char>(difference);
  }
}

/// Makes all places digits of one sign, and returns whether that is a minus.
bool NormalizePlaces(Places& places) {
  const auto first = std::find_if(places.begin(), places.end(), [](int d) { return d != 0; });
  const bool isNegative = first != places.end() && *first < 0;
  int carry = 0;
  for (std::size_t i = PLACES; i-- > 0;) {
    int digit = (isNegative ? -places[i] : places[i]) + carry;
    carry = digit < 0 ? -1 : 0;
    if (digit < 0) digit += 10;
    places[i] = static_cast<signed char>(digit);
  }
  return isNegative;
}

template <typename Char>
double FindTailExactly(const Numeral<Char>& numeral, double head) {
  Places places = PlacesOf(numeral);
  Subtract(places, ExpandDecimal(head, DecimalExpansion::CAPACITY));
  const bool isNegative = NormalizePlaces(places);
  char text[PLACES + 16];
  char* out = text;
  for (const signed char digit : places) *out++ = static_cast<char>('0' + digit);
  *out++ = 'e';
  constexpr std::int64_t LAST_PLACE = PLACES_BEFORE_POINT - static_cast<std::int64_t>(PLACES);
  out = std::to_chars(out, text + sizeof text, LAST_PLACE).ptr;
  const double tail = ParseRealPrefix<char>(text, out).value;
  return isNegative ? -tail : tail;
}

/// Finds the tail of a number of up to 15 digits over a power of ten up to 10^22.
template <typename Char>
bool FindTailByDivision(const Numeral<Char>& numeral, double head, double& tail) {
  constexpr int EXACT_DIGITS = 15;
  constexpr double DOUBLE_POWERS[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  if (numeral.count > EXACT_DIGITS || numeral.exponent > 0 || numeral.exponent < -22) return false;
  const double divisor = DOUBLE_POWERS[-numeral.exponent];
  const auto dividend = static_cast<double>(numeral.upper);
  const auto back = doubledouble_formulas::ExactProduct(head, divisor);
  tail = (dividend - back.head - back.tail) / divisor;
  return true;
}

/// The tail may be half a unit of the head, which then is not the nearest double of the sum.
doubledouble Joined(double head, double tail) {
  const double sum = head + tail;
  if (!doubledouble_formulas::IsFinite(sum)) return {head, std::nextafter(tail, 0.0)};
  return {sum, (head - sum) + tail};
}

template <typename Char>
doubledouble Convert(const Char* first, const Char* last, double value) {
  if (value == 0 || !doubledouble_formulas::IsFinite(value)) return value;
  if (*first == '-' || *first == '+') ++first;
  const double head = std::fabs(value);
  const Numeral<Char> numeral = TakeApart(first, last);
  double tail = 0;
  if (!FindTailByDivision(numeral, head, tail) && !FindTailByProduct(numeral, head, tail)) {
    tail = FindTailExactly(numeral, head);
  }
  return value < 0 ? -Joined(head, tail) : Joined(head, tail);
}

template <typename Char>
const Char* SkipSpaces(const Char* next, const Char* last) {
  while (next != last && IsAsciiSpace(static_cast<std::uint32_t>(*next))) ++next;
  return next;
}

template <typename Char>
bool Parse(std::basic_string_view<Char> text, doubledouble& value) {
  const Char* const last = text.data() + text.size();
  const Char* const first = SkipSpaces(text.data(), last);
  const RealPrefix<Char> number = ParseRealPrefix(first, last);
  const bool isValid = number.status == RealStatus::Ok && SkipSpaces(number.end, last) == last;
  value = isValid ? Convert(first, number.end, number.value) : doubledouble();
  return isValid;
}

/// Takes characters from a stream as long as they may belong to a number.
class NumberReader {
public:
  explicit NumberReader(std::streambuf& buffer) : buffer_(buffer), next_(buffer.sgetc()) {}

  /// Returns the characters taken; empty where the stream does not go on with a number.
  const std::string& Read() {
    TakeOne("+-");
    if (!TakeMany(DIGITS) && next_ != '.') {
      TakeMany("aAfFiInNtTyY");  // the words "nan", "inf" and "infinity"
      return text_;
    }
    if (TakeOne(".")) TakeMany(DIGITS);
    if (TakeOne("eE")) {
      TakeOne("+-");
      TakeMany(DIGITS);
    }
    return text_;
  }
  bool IsAtEnd() const { return next_ == END; }

private:
  static constexpr int END = std::char_traits<char>::eof();
  static constexpr std::string_view DIGITS = "0123456789";

  bool TakeOne(std::string_view characters) {
    if (next_ == END) return false;
    const char ch = std::char_traits<char>::to_char_type(next_);
    if (characters.find(ch) == std::string_view::npos) return false;
    text_.push_back(ch);
    next_ = buffer_.snextc();
    return true;
  }
  bool TakeMany(std::string_view characters) {
    bool isAny = false;
    while (TakeOne(characters)) isAny = true;
    return isAny;
  }

  std::streambuf& buffer_;
  int next_;
  std::string text_;
};

}  // namespace

bool StringToDoubleDouble(std::string_view text, doubledouble& value) {
  return Parse(text, value);
}

bool StringToDoubleDouble(std::wstring_view text, doubledouble& value) {
  return Parse(text, value);
}

doubledouble atodd(const char* text) {
  doubledouble value;
  if (text == nullptr || !StringToDoubleDouble(std::string_view(text), value)) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  return value;
}

doubledouble::doubledouble(const char* text) : doubledouble(atodd(text)) {}

std::istream& operator>>(std::istream& stream, doubledouble& x) {
  const std::istream::sentry isReady(stream);
  if (!isReady) return stream;
  NumberReader reader(*stream.rdbuf());
  std::ios_base::iostate state = std::ios_base::goodbit;
  if (!StringToDoubleDouble(reader.Read(), x)) state |= std::ios_base::failbit;
  if (reader.IsAtEnd()) state |= std::ios_base::eofbit;
  stream.setstate(state);
  return stream;
}

}  // namespace shr
