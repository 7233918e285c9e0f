// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// All formats round the exact decimal digits of the number. The shortest text that reads back is
// found from the distance of the tail's neighbours: the numbers that read back as this one are an
// interval of about that length, so that a decimal of n digits lies in it, and at most a few of
// n - 1, as soon as the n-th place is smaller. From two digits less on, the first that reads back
// is taken; a shorter one that lies in the interval is then the nearest one of those digits, too,
// and appears as zeros at the end.

#include <algorithm>
#include <charconv>
#include <ostream>

#include "shared/numerics/doubledouble/DecimalExpansion.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"

namespace shr {
namespace {

constexpr int LEAST_PLAIN_EXPONENT = -4;
constexpr int LEAST_LARGE_EXPONENT = 32;
constexpr std::streamsize INITIAL_PRECISION = 6;

/// Decimal digits as characters: d.ddd * 10^exponent, "0" for 0.
struct Digits {
  std::string text;
  int exponent = 0;
};

/// Rounds to `count` digits, halves to even; 0 digits or fewer can still become one unit of the
/// place before, or nothing.
Digits RoundTo(const DecimalExpansion& number, int count) {
  if (number.count == 0) return {"0", 0};
  Digits digits{"", number.exponent - 1};
  if (count < 0) return digits;
  const int kept = std::min(count, number.count);
  digits.text.reserve(static_cast<std::size_t>(kept) + 1);
  for (int i = 0; i < kept; ++i) {
    digits.text.push_back(static_cast<char>('0' + number.digits[static_cast<std::size_t>(i)]));
  }
  if (kept == number.count) return digits;
  const char next = number.digits[static_cast<std::size_t>(kept)];
  const bool isMore = kept + 1 < number.count || !number.isExact;
  const bool isOdd = kept > 0 && (digits.text.back() - '0') % 2 != 0;
  if (next < 5 || (next == 5 && !isMore && !isOdd)) return digits;
  std::size_t place = digits.text.size();
  while (place > 0 && digits.text[place - 1] == '9') digits.text[--place] = '0';
  if (place > 0) {
    ++digits.text[place - 1];
    return digits;
  }
  // All nines: one more digit before them; the last zero goes, unless none is wanted at all.
  digits.text.insert(digits.text.begin(), '1');
  if (count > 0) digits.text.pop_back();
  ++digits.exponent;
  return digits;
}

/// Cuts zeros at the end, or adds them, to `count` digits.
void PadTo(std::string& text, std::int64_t count) {
  text.resize(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)), '0');
}

void TrimZeros(std::string& text) {
  const std::size_t last = text.find_last_not_of('0');
  text.resize(last == std::string::npos ? 1 : last + 1);
}

std::string ScientificText(const Digits& digits, bool isPointKept, char letter) {
  constexpr std::size_t REST = 8;  // sign, point and exponent
  std::string text;
  text.reserve(digits.text.size() + REST);
  text += digits.text[0];
  if (digits.text.size() > 1 || isPointKept) text += '.';
  text.append(digits.text, 1, std::string::npos);
  text += letter;
  text += digits.exponent < 0 ? '-' : '+';
  const std::string exponent = std::to_string(std::abs(digits.exponent));
  if (exponent.size() < 2) text += '0';
  text += exponent;
  return text;
}

/// Writes all digits around the point.
std::string PlainText(const Digits& digits, bool isPointKept) {
  std::string text = digits.text;
  const int beforePoint = digits.exponent + 1;
  if (beforePoint <= 0) text.insert(0, static_cast<std::size_t>(1 - beforePoint), '0');
  const auto point = static_cast<std::size_t>(std::max(beforePoint, 1));
  if (text.size() < point) text.resize(point, '0');
  if (text.size() > point || isPointKept) text.insert(point, 1, '.');
  return text;
}

std::string TextOfSpecial(const doubledouble& x) {
  if (isnan(x)) return "NaN ";
  return x.head < 0 ? "-inf" : "inf";
}

/// The number that a pair stands for, its parts as far apart as they go.
doubledouble Normalized(const doubledouble& x) {
  const bool isSwapped = std::fabs(x.head) < std::fabs(x.tail);
  return normalize(isSwapped ? doubledouble(x.tail, x.head) : x);
}

bool ReadsBackAs(const Digits& digits, const doubledouble& magnitude) {
  std::string text = digits.text;
  text += 'e';
  text += std::to_string(digits.exponent + 1 - static_cast<int>(digits.text.size()));
  doubledouble value;
  return StringToDoubleDouble(std::string_view(text), value) && value == magnitude;
}

constexpr double DIGITS_PER_BIT = 0.30103;

/// The exponent of the unit in the last place of the tail; the least one for 0.
int LastBit(const doubledouble& magnitude) {
  int exponent = 0;
  std::frexp(magnitude.tail, &exponent);
  return magnitude.tail == 0 ? -1074 : std::max(exponent - 53, -1074);
}

/// Returns the number of digits that surely tell a number whose first digit has the place
/// `exponent` from its neighbours.
int DistinctDigits(int lastBit, int exponent) {
  return static_cast<int>(std::ceil(exponent + 1 - lastBit * DIGITS_PER_BIT)) + 1;
}

/// Tells whether the number rounded to `count` digits reads back, mostly without reading it.
class ReadBack {
public:
  ReadBack(const doubledouble& magnitude, const DecimalExpansion& number)
      : magnitude_(magnitude), number_(number) {
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(magnitude.tail), &exponent);
    const double headUnit = std::ldexp(1.0, std::ilogb(magnitude.head) - 52);
    // Where rounding could reach another head, or the neighbour below is nearer, it is read.
    isPlain_ = magnitude.tail != 0 && fraction != 0.5 && exponent > -1000 &&
               std::fabs(magnitude.tail) < 0.499 * headUnit;
    halfGap_ = std::ldexp(0.5, exponent - 53);
  }

  bool Succeeds(const Digits& digits, int count) const {
    if (!isPlain_) return ReadsBackAs(digits, magnitude_);
    // What rounding changes, in units of the last digit.
    double change = 0;
    for (int i = std::min(number_.count, count + 17); i-- > count;) {
      change = (change + number_.digits[static_cast<std::size_t>(i)]) / 10;
    }
    change = std::min(change, 1 - change);
    const double changes = change * std::pow(10.0, number_.exponent - count) / halfGap_;
    constexpr double DOUBT = 1e-6;
    if (changes > 1 + DOUBT) return false;
    return changes < 1 - DOUBT || ReadsBackAs(digits, magnitude_);
  }

private:
  const doubledouble& magnitude_;
  const DecimalExpansion& number_;
  bool isPlain_ = false;
  double halfGap_ = 0;
};

Digits ShortestDigits(const doubledouble& magnitude) {
  constexpr int MARGIN = 3;  // digits that are enough less MARGIN are too few, but for luck
  if (magnitude.head == 0) return {"0", 0};
  const int lastBit = LastBit(magnitude);
  const int guess = static_cast<int>(std::ilogb(magnitude.head) * DIGITS_PER_BIT) + 1;
  DecimalExpansion number = ExpandDecimal(magnitude, DistinctDigits(lastBit, guess) + MARGIN);
  const ReadBack readBack(magnitude, number);
  int count = std::max(1, DistinctDigits(lastBit, number.exponent - 1) - MARGIN);
  for (;; ++count) {
    if (!number.isExact && count + 1 >= number.count) {
      number = ExpandDecimal(magnitude, DecimalExpansion::CAPACITY);
    }
    Digits digits = RoundTo(number, count);
    const bool isWhole = number.isExact && count >= number.count;
    if (isWhole || readBack.Succeeds(digits, count)) {
      TrimZeros(digits.text);
      return digits;
    }
  }
}

std::string ShortestText(const doubledouble& magnitude, bool isPointKept, char letter) {
  const Digits digits = ShortestDigits(magnitude);
  const bool isPlain =
      digits.exponent >= LEAST_PLAIN_EXPONENT && digits.exponent < LEAST_LARGE_EXPONENT;
  return isPlain ? PlainText(digits, isPointKept) : ScientificText(digits, isPointKept, letter);
}

/// How many digits to expand for a precision: all there are, where it wants more.
int Wanted(std::int64_t count) {
  return static_cast<int>(
      std::clamp<std::int64_t>(count + 1, 1, std::int64_t{DecimalExpansion::CAPACITY}));
}

std::string FixedText(const doubledouble& magnitude, std::int64_t precision, bool isPointKept) {
  const DecimalExpansion number = ExpandDecimal(magnitude, DecimalExpansion::CAPACITY);
  const std::int64_t count = number.exponent + precision;
  Digits digits = RoundTo(number, static_cast<int>(std::min<std::int64_t>(count, 1 << 20)));
  if (digits.text.empty() || number.count == 0) digits = {"0", 0};
  PadTo(digits.text, digits.exponent + 1 + precision);
  return PlainText(digits, isPointKept);
}

std::string ScientificText(const doubledouble& magnitude, std::int64_t precision, bool isPointKept,
                           char letter) {
  const DecimalExpansion number = ExpandDecimal(magnitude, Wanted(precision + 1));
  Digits digits = RoundTo(number, Wanted(precision));
  PadTo(digits.text, precision + 1);
  return ScientificText(digits, isPointKept, letter);
}

/// The format of "%g": `precision` digits, plain or with an exponent, without zeros at the end
/// unless `isPointKept`.
std::string GeneralText(const doubledouble& magnitude, std::int64_t precision, bool isPointKept,
                        char letter) {
  const std::int64_t count = std::max<std::int64_t>(precision, 1);
  const DecimalExpansion number = ExpandDecimal(magnitude, Wanted(count));
  Digits digits = RoundTo(number, Wanted(count - 1));
  if (isPointKept) {
    PadTo(digits.text, count);
  } else {
    TrimZeros(digits.text);
  }
  const bool isPlain = digits.exponent >= LEAST_PLAIN_EXPONENT && digits.exponent < count;
  return isPlain ? PlainText(digits, isPointKept) : ScientificText(digits, isPointKept, letter);
}

std::string TextOf(const std::ostream& stream, const doubledouble& magnitude) {
  const auto flags = stream.flags();
  const auto format = flags & std::ios_base::floatfield;
  const bool isPointKept = (flags & std::ios_base::showpoint) != 0;
  const char letter = (flags & std::ios_base::uppercase) != 0 ? 'E' : 'e';
  const std::int64_t precision = std::max<std::int64_t>(stream.precision(), 0);
  if (format == std::ios_base::fixed) return FixedText(magnitude, precision, isPointKept);
  if (format == std::ios_base::scientific) {
    return ScientificText(magnitude, precision, isPointKept, letter);
  }
  if (stream.precision() == INITIAL_PRECISION) return ShortestText(magnitude, isPointKept, letter);
  return GeneralText(magnitude, precision, isPointKept, letter);
}

void Pad(std::ostream& stream, std::string& text, std::size_t signLength) {
  const auto width = static_cast<std::size_t>(std::max<std::streamsize>(stream.width(0), 0));
  if (text.size() >= width) return;
  const auto adjustment = stream.flags() & std::ios_base::adjustfield;
  std::size_t place = 0;
  if (adjustment == std::ios_base::left) place = text.size();
  if (adjustment == std::ios_base::internal) place = signLength;
  text.insert(place, width - text.size(), stream.fill());
}

}  // namespace

std::string DoubleDoubleToString(const doubledouble& x) {
  if (!isfinite(x)) return TextOfSpecial(x);
  const doubledouble number = Normalized(x);
  const std::string text = ShortestText(fabs(number), false, 'e');
  return number.head < 0 ? '-' + text : text;
}

std::ostream& operator<<(std::ostream& stream, const doubledouble& x) {
  std::string text;
  std::size_t signLength = 0;
  if (!isfinite(x)) {
    text = TextOfSpecial(x);
    signLength = text[0] == '-' ? 1 : 0;
  } else {
    const doubledouble number = Normalized(x);
    text = TextOf(stream, fabs(number));
    const bool isShown = (stream.flags() & std::ios_base::showpos) != 0;
    signLength = number.head < 0 || isShown ? 1 : 0;
    if (signLength > 0) text.insert(0, 1, number.head < 0 ? '-' : '+');
  }
  Pad(stream, text, signLength);
  // As one string, for which the stream takes the width that it has no more.
  return stream << text;
}

}  // namespace shr
