// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/Ticks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "shared/text/StringUtility.h"

namespace shr {

// A step is a mantissa of 1, 2 or 5 and a power of ten, a tick a whole multiple of it: integers all
// the way. The double of a tick is read from its decimal text, which the library does correctly
// rounded, and the label is that text with the point moved. So neither shows the noise of repeated
// addition (0.30000000000000004) nor of a logarithm that is off by one at a power of ten.

namespace {

constexpr int MANTISSAS[] = {1, 2, 5};

/// Labels with more digits before the point, or zeros behind it, share a power of ten.
constexpr int LARGEST_PLAIN_EXPONENT = 5;
constexpr int SMALLEST_PLAIN_EXPONENT = -4;

constexpr wchar_t MINUS = L'\x2212';

/// mantissa * 10^exponent
struct Decimal {
  std::int64_t mantissa = 0;
  int exponent = 0;

  /// Returns infinity beyond the largest double.
  double Value() const {
    double value = 0;
    const std::string text = std::to_string(mantissa) + "e" + std::to_string(exponent);
    if (StringToDouble(text, value)) return value;
    return std::copysign(std::numeric_limits<double>::infinity(), static_cast<double>(mantissa));
  }
};

/// Returns floor(log10 |value|) exactly.
int ExponentOf(double value) {
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                    std::chars_format::scientific);
  const std::string text(buffer.data(), result.ptr);
  return std::stoi(text.substr(text.find('e') + 1));
}

/// A step of an axis, from which the next larger one follows.
struct Step {
  int index = 0;  ///< into MANTISSAS
  int exponent = 0;

  Decimal Times(std::int64_t count) const { return {count * MANTISSAS[index], exponent}; }
  Step Next() const { return index == 2 ? Step{0, exponent + 1} : Step{index + 1, exponent}; }
};

/// Ticks first, first + 1 ... times the step lie inside.
struct Multiples {
  std::int64_t first = 0;
  std::int64_t count = 0;
};

/// Returns whether the range has steps that can be counted.
bool CanBeDivided(double lo, double hi) {
  constexpr double NARROWEST_SHARE = 1e-15;
  constexpr double NARROWEST = 1e-305;
  const double largest = std::max(std::abs(lo), std::abs(hi));
  const double half = hi / 2 - lo / 2;
  return std::isfinite(half) && half > std::max(NARROWEST, largest * NARROWEST_SHARE);
}

/// Returns the smallest step of which no more than `most` are as long as the range.
Step StepOf(double lo, double hi, std::size_t most) {
  // Halves, because the difference of the ends may be too large for a double.
  const double half = hi / 2 - lo / 2;
  const double wanted = half / static_cast<double>(most) * 2;
  Step step{0, ExponentOf(half) - ExponentOf(static_cast<double>(most)) - 1};
  while (step.Times(1).Value() < wanted) step = step.Next();
  return step;
}

Multiples MultiplesInside(const Step& step, double lo, double hi) {
  const double size = step.Times(1).Value();
  // The quotients may be off by one; the ends are settled by the values themselves.
  auto first = static_cast<std::int64_t>(std::ceil(lo / size)) - 1;
  while (step.Times(first).Value() < lo) ++first;
  auto last = static_cast<std::int64_t>(std::floor(hi / size)) + 1;
  while (last >= first && step.Times(last).Value() > hi) --last;
  return {first, last - first + 1};
}

/// Returns the digits of |mantissa| * 10^exponent with `decimals` of them behind the point.
std::string PlainDigits(const Decimal& number, int exponent, int decimals) {
  std::string digits = std::to_string(std::abs(number.mantissa));
  digits.append(static_cast<std::size_t>(std::max(0, exponent + decimals)), '0');
  if (decimals == 0) return digits;
  const auto behind = static_cast<std::size_t>(decimals);
  if (digits.size() <= behind) digits.insert(0, behind + 1 - digits.size(), '0');
  digits.insert(digits.size() - behind, 1, '.');
  return digits;
}

GString LabelOf(const Decimal& number, int exponent, int decimals) {
  GString label;
  if (number.mantissa < 0) label += MINUS;
  if (number.mantissa == 0) exponent = -decimals;
  label += GString(PlainDigits(number, exponent, decimals).c_str());
  return label;
}

/// Returns the power of ten that labels up to `largest` leave out, a multiple of three.
int SharedExponent(double largest) {
  const int exponent = ExponentOf(largest);
  if (exponent >= SMALLEST_PLAIN_EXPONENT && exponent <= LARGEST_PLAIN_EXPONENT) return 0;
  return 3 * (exponent >= 0 ? exponent / 3 : -((2 - exponent) / 3));
}

TickSet MakeLinear(const Step& step, const Multiples& multiples, double largest) {
  const int shared = SharedExponent(largest);
  const int exponent = step.exponent - shared;
  const int decimals = std::max(0, -exponent);
  TickSet set;
  for (std::int64_t i = 0; i < multiples.count; ++i) {
    const Decimal number = step.Times(multiples.first + i);
    set.ticks.push_back({number.Value(), LabelOf(number, exponent, decimals)});
  }
  if (shared != 0) set.context = L"\u00D7 " + PowerOfTenText(shared);
  return set;
}

/// Returns mantissa * 10^exponent as a text for itself: "0.02", "500", "2 × 10⁻⁹".
GString SingleLabel(int mantissa, int exponent, bool isPlain) {
  if (isPlain) return LabelOf({mantissa, exponent}, exponent, std::max(0, -exponent));
  if (mantissa == 1) return PowerOfTenText(exponent);
  return GString(std::to_wstring(mantissa)) + L" \u00D7 " + PowerOfTenText(exponent);
}

/// The powers of ten from `first` to `last`.
struct Decades {
  Decades(double log10Lo, double log10Hi)
      : first(static_cast<int>(std::ceil(log10Lo))), last(static_cast<int>(std::floor(log10Hi))) {}

  int Count() const { return last - first + 1; }
  bool ArePlain() const {
    return first - 1 >= SMALLEST_PLAIN_EXPONENT && last <= LARGEST_PLAIN_EXPONENT;
  }

  int first;
  int last;
};

/// Adds mantissa * 10^exponent when it lies inside.
void AddLogTick(int mantissa, int exponent, double log10Lo, double log10Hi, const GString& label,
                TickSet& set) {
  const double logarithm = exponent + (mantissa == 1 ? 0.0 : Log10Of(mantissa));
  if (logarithm < log10Lo || logarithm > log10Hi) return;
  set.ticks.push_back({Decimal{mantissa, exponent}.Value(), label});
}

/// Returns every how manieth power is labelled: 1, 2, 5, 10, 20, 50 or 100.
int PowerStride(const Decades& decades, int most) {
  for (int scale = 1; scale <= 100; scale *= 10) {
    for (const int mantissa : MANTISSAS) {
      if (decades.Count() <= most * mantissa * scale) return mantissa * scale;
    }
  }
  return 1000;
}

TickSet PowerTicks(const Decades& decades, double log10Lo, double log10Hi, std::size_t most) {
  constexpr int MOST_WITH_SMALL_MARKS = 8;
  const int stride = PowerStride(decades, static_cast<int>(most));
  TickSet set;
  for (int exponent = decades.first - 1; exponent <= decades.last; ++exponent) {
    // Labelled powers are multiples of the stride, so that they stay when the range grows.
    const bool isLabelled = exponent % stride == 0;
    const GString label = isLabelled ? SingleLabel(1, exponent, decades.ArePlain()) : GString();
    AddLogTick(1, exponent, log10Lo, log10Hi, label, set);
    if (decades.Count() > MOST_WITH_SMALL_MARKS) continue;
    for (int digit = 2; digit <= 9; ++digit) {
      AddLogTick(digit, exponent, log10Lo, log10Hi, GString(), set);
    }
  }
  return set;
}

TickSet DigitTicks(const Decades& decades, double log10Lo, double log10Hi) {
  TickSet set;
  for (int exponent = decades.first - 1; exponent <= decades.last; ++exponent) {
    for (const int digit : MANTISSAS) {
      AddLogTick(digit, exponent, log10Lo, log10Hi,
                 SingleLabel(digit, exponent, decades.ArePlain()), set);
    }
  }
  return set;
}

}  // namespace

TickSet LinearTicks(double lo, double hi, std::size_t most) {
  if (!CanBeDivided(lo, hi)) return TickSet();
  Step step = StepOf(lo, hi, most);
  Multiples multiples = MultiplesInside(step, lo, hi);
  while (multiples.count > static_cast<std::int64_t>(most)) {
    step = step.Next();
    multiples = MultiplesInside(step, lo, hi);
  }
  return MakeLinear(step, multiples, std::max(std::abs(lo), std::abs(hi)));
}

std::vector<double> RoundEdges(double lo, double hi, std::size_t most) {
  if (!CanBeDivided(lo, hi)) return {};
  for (Step step = StepOf(lo, hi, most);; step = step.Next()) {
    const Multiples inside = MultiplesInside(step, lo, hi);
    const bool beginsInside = inside.count > 0 && step.Times(inside.first).Value() == lo;
    const std::int64_t first = beginsInside ? inside.first : inside.first - 1;
    std::int64_t last = inside.first + inside.count - 1;
    if (inside.count == 0 || step.Times(last).Value() < hi) ++last;
    if (last - first > static_cast<std::int64_t>(most)) continue;
    std::vector<double> edges;
    for (std::int64_t i = first; i <= last; ++i) edges.push_back(step.Times(i).Value());
    return edges;
  }
}

TickSet LogTicks(double log10Lo, double log10Hi, std::size_t most) {
  const Decades decades(log10Lo, log10Hi);
  if (decades.Count() >= 2) return PowerTicks(decades, log10Lo, log10Hi, most);
  const TickSet digits = DigitTicks(decades, log10Lo, log10Hi);
  if (digits.ticks.size() >= 3 && digits.ticks.size() <= most) return digits;
  TickSet linear = LinearTicks(PowerOf10(log10Lo), PowerOf10(log10Hi), most);
  std::erase_if(linear.ticks, [&](const Tick& tick) {
    return tick.value <= 0 || Log10Of(tick.value) < log10Lo || Log10Of(tick.value) > log10Hi;
  });
  return linear;
}

double Log10Of(double value) {
  constexpr double LOG10_E = 0.434294481903251827651129;
  constexpr double LOG10_2 = 0.301029995663981195213739;
  constexpr double SQRT_HALF = 0.707106781186547524400844;
  constexpr int TERMS = 13;  // |t| < 0.172, so that the next one is below 2^-60 of the first
  constexpr double NEAR_WHOLE = 1e-12;
  int exponent = 0;
  double fraction = std::frexp(value, &exponent);
  if (fraction < SQRT_HALF) {
    fraction *= 2;
    --exponent;
  }
  // ln x = 2 artanh t
  const double t = (fraction - 1) / (fraction + 1);
  double sum = 0;
  for (int i = TERMS; i >= 0; --i) sum = sum * t * t + 1.0 / (2 * i + 1);
  const double logarithm = exponent * LOG10_2 + 2 * t * sum * LOG10_E;
  // The last bit must not decide on which side of its own mark a power of ten lies.
  const double whole = std::nearbyint(logarithm);
  if (std::abs(logarithm - whole) < NEAR_WHOLE &&
      Decimal{1, static_cast<int>(whole)}.Value() == value) {
    return whole;
  }
  return logarithm;
}

double PowerOf10(double logarithm) {
  const int exponent = static_cast<int>(std::floor(logarithm));
  double lower = 1;
  double upper = 10;
  constexpr int HALVINGS = 60;
  for (int i = 0; i < HALVINGS; ++i) {
    const double middle = (lower + upper) / 2;
    (Log10Of(middle) < logarithm - exponent ? lower : upper) = middle;
  }
  return upper * Decimal{1, exponent}.Value();
}

GString PowerOfTenText(int exponent) {
  constexpr const wchar_t DIGITS[] =
      L"\u2070\u00B9\u00B2\u00B3\u2074\u2075\u2076\u2077\u2078\u2079";
  GString text(exponent < 0 ? L"10\u207B" : L"10");
  for (const char digit : std::to_string(std::abs(exponent))) text += DIGITS[digit - '0'];
  return text;
}

}  // namespace shr
