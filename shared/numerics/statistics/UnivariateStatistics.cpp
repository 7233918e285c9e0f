// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Percentiles are selected one within the part that the one before left, so that all nine cost
// less than three selections. Between them the elements stand in parts (below the 1st, from the 1st
// to the 5th percentile, ...), and the sums of the parts, which are exact, give every kind of mean.
//
// The median absolute deviation needs no selection among all elements: half of them lie between
// the quartiles, so it is not below the distance of the nearer quartile from the median and not
// above that of the farther one. Only the deviations between the two have to be looked at.

#include "shared/numerics/statistics/UnivariateStatistics.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "shared/numerics/statistics/ErrorFree.h"
#include "shared/numerics/statistics/ExactSum.h"
#include "shared/numerics/statistics/OrderSelection.h"
#include "shared/numerics/statistics/TwoLanes.h"
#include "shared/numerics/statistics/UnivariateSums.h"

namespace shr {
namespace {

/// The mean difference is found up to this count, by sorting.
constexpr std::size_t MAXIMUM_PAIRED_COUNT = 25000;
constexpr std::size_t MINIMUM_TRIMMED_COUNT = 20;
constexpr std::size_t MINIMUM_BINNED_COUNT = 11;
constexpr std::size_t ELEMENTS_OF_A_BIN = 25;
constexpr std::size_t MINIMUM_BIN_COUNT = 20;
constexpr std::size_t MAXIMUM_BIN_COUNT = 100;

/// 0-based positions of the percentiles among n elements.
struct Positions {
  explicit Positions(std::size_t n) : last(n - 1) {}
  std::size_t operator()(std::size_t percent) const {
    // last * percent / 100 without leaving 64 bits.
    return last / 100 * percent + last % 100 * percent / 100;
  }
  std::size_t last;
};

bool ExceedsTiny(double value) {
  return value > TINY;
}

/// Computes the fields of one sample, which it reorders.
class Loader {
public:
  Loader(CUnivariateStatistics& statistics, std::span<double> values)
      : result_(statistics),
        values_(values),
        numbers_(MoveNanToEnd(values)),
        at_(values.size()),
        largest_(numbers_.size() == values.size() ? LargestMagnitude(values) : NOT_A_NUMBER),
        isFinite_(largest_ == largest_) {}

  void Load() {
    result_.count = values_.size();
    Order();
    TakePercentiles();
    TakeMedian();
    TakeExtremes();
    TakeMedianDeviation();
    TakeMeans();
    TakeAbsoluteSums();
    TakeMeansOfPositive();
    TakeCentralMoments();
    TakeMeanDifference();
    TakeRatios();
    TakeHistogram();
  }

private:
  std::size_t Count() const { return values_.size(); }
  bool IsSorted() const { return Count() <= MAXIMUM_PAIRED_COUNT; }

  /// Brings the percentiles to their places. NaN are there already.
  void Order() {
    if (IsSorted()) return std::sort(numbers_.begin(), numbers_.end());
    Select(0, at_(50), Count());
    Select(0, at_(25), at_(50));
    Select(at_(50) + 1, at_(75), Count());
    Select(0, at_(10), at_(25));
    Select(at_(75) + 1, at_(90), Count());
    Select(0, at_(5), at_(10));
    Select(at_(90) + 1, at_(95), Count());
    Select(0, at_(1), at_(5));
    Select(at_(95) + 1, at_(99), Count());
  }

  void Select(std::size_t first, std::size_t position, std::size_t end) {
    end = std::min(end, numbers_.size());
    if (position >= end) return;
    SelectInPlace(numbers_.subspan(first, end - first), position - first);
  }

  void TakePercentiles() {
    result_.percentile01 = values_[at_(1)];
    result_.percentile05 = values_[at_(5)];
    result_.percentile10 = values_[at_(10)];
    result_.percentile25 = values_[at_(25)];
    result_.percentile50 = values_[at_(50)];
    result_.percentile75 = values_[at_(75)];
    result_.percentile90 = values_[at_(90)];
    result_.percentile95 = values_[at_(95)];
    result_.percentile99 = values_[at_(99)];
  }

  void TakeMedian() {
    result_.median = result_.percentile50;
    if (Count() % 2 != 0) return;
    const std::size_t upper = at_(50) + 1;
    const double above = upper < numbers_.size()
                             ? *std::min_element(numbers_.begin() + Offset(upper), numbers_.end())
                             : NOT_A_NUMBER;
    result_.median = std::midpoint(result_.percentile50, above);
  }

  void TakeExtremes() {
    const auto first = values_.begin();
    const auto low = Offset(std::min(at_(1) + 1, numbers_.size()));
    result_.minimum = low == 0 ? NOT_A_NUMBER : *std::min_element(first, first + low);
    const bool hasNan = numbers_.size() < Count();
    result_.maximum =
        hasNan ? NOT_A_NUMBER : *std::max_element(first + Offset(at_(99)), values_.end());
    result_.midrange = std::midpoint(result_.minimum, result_.maximum);
    result_.range = result_.maximum - result_.minimum;
    result_.interQuartileRange = result_.percentile75 - result_.percentile25;
  }

  void TakeMedianDeviation() {
    const double median = result_.median;
    std::vector<double> deviations;
    std::size_t skipped = 0;
    if (isFinite_ && !IsSorted()) {
      const double below = median - result_.percentile25, above = result_.percentile75 - median;
      skipped = GatherDeviations(std::min(below, above), std::max(below, above), deviations);
    } else {
      deviations.resize(Count());
      std::transform(values_.begin(), values_.end(), deviations.begin(),
                     [median](double value) { return std::fabs(value - median); });
    }
    const std::span<double> numbers = MoveNanToEnd(deviations);
    const std::size_t rank = at_(50) - skipped;
    if (rank < numbers.size()) SelectInPlace(numbers, rank);
    result_.medianAbsDev = deviations[rank];
    if (Count() % 2 != 0) return;
    const double upper = rank + 1 < numbers.size()
                             ? *std::min_element(numbers.begin() + Offset(rank + 1), numbers.end())
                             : NOT_A_NUMBER;
    result_.medianAbsDev = std::midpoint(result_.medianAbsDev, upper);
  }

  /// Gathers the deviations from the median from `low` to `high` and the least one above, and
  /// returns how many are below. The deviations of the quartiles are not below `low` and not above
  /// `high`, and rounding keeps the order of deviations on either side.
  std::size_t GatherDeviations(double low, double high, std::vector<double>& deviations) {
    const double median = result_.median;
    std::size_t below = 0, gathered = 0;
    double above = std::numeric_limits<double>::infinity();
    constexpr std::size_t BLOCK = 1024;
    for (std::size_t start = 0; start < Count(); start += BLOCK) {
      const std::span<const double> block =
          values_.subspan(start, std::min(BLOCK, Count() - start));
      if (deviations.size() < gathered + block.size()) {
        deviations.resize(std::max(gathered + BLOCK, deviations.size() * 2));
      }
      for (const double value : block) {
        const double deviation = std::fabs(value - median);
        below += static_cast<std::size_t>(deviation < low);
        deviations[gathered] = deviation;
        gathered += static_cast<std::size_t>(deviation >= low && deviation <= high);
        above = deviation > high && deviation < above ? deviation : above;
      }
    }
    deviations.resize(gathered);
    deviations.push_back(above);
    return below;
  }

  void TakeMeans() {
    SumParts();
    sum_ = SumBetween(0, Count());
    result_.sum = sum_.Value().ToDouble();
    if (result_.sum == result_.sum) result_.mean = sum_.Mean(Count()).ToDouble();
    if (Count() >= MINIMUM_TRIMMED_COUNT) result_.trimMean = MeanBetween(at_(5), at_(95) + 1);
    result_.interQuartileMean = MeanBetween(at_(25), at_(75) + 1);
    ExactSum winsorized = SumBetween(at_(10), at_(90));
    winsorized.AddMultiple(result_.percentile10, at_(10));
    winsorized.AddMultiple(result_.percentile90, Count() - at_(90));
    result_.winsorizedMean = winsorized.Mean(Count()).ToDouble();
    ExactSum quartiles;
    quartiles.Add(std::array{result_.percentile25, result_.percentile50, result_.percentile50,
                             result_.percentile75});
    result_.triMean = quartiles.Mean(4).ToDouble();
  }

  /// Sums what lies between the borders of the means, so that no element is summed twice.
  void SumParts() {
    borders_ = {0, at_(5), at_(10), at_(25), at_(75) + 1, at_(90), at_(95) + 1, Count()};
    std::sort(borders_.begin(), borders_.end());
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      parts_[i].Add(values_.subspan(borders_[i], borders_[i + 1] - borders_[i]));
    }
  }
  ExactSum SumBetween(std::size_t first, std::size_t end) const {
    ExactSum sum;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (borders_[i] >= first && borders_[i + 1] <= end) sum.Add(parts_[i]);
    }
    return sum;
  }
  double MeanBetween(std::size_t first, std::size_t end) const {
    return SumBetween(first, end).Mean(end - first).ToDouble();
  }

  void TakeAbsoluteSums() {
    if (!isFinite_) {
      const double special = std::fabs(sum_.Value().ToDouble());
      const bool hasNan = numbers_.size() < Count();
      result_.sumAbs = hasNan ? NOT_A_NUMBER : std::numeric_limits<double>::infinity();
      result_.sumSquare = result_.meanSquare = result_.sumAbs;
      result_.avgAbsDev = std::fabs(special - result_.median);  // NaN, or an infinity
    } else {
      const AbsoluteSums sums = SumAbsolute(values_, ScaleExponent(largest_), result_.median);
      result_.sumAbs = sums.magnitudes.ToDouble();
      result_.sumSquare = sums.squares.ToDouble();
      result_.meanSquare = (sums.squares / WideCount()).ToDouble();
      result_.avgAbsDev = (sums.deviations / WideCount()).ToDouble();
    }
    if (result_.meanSquare > 0.0) result_.rootMeanSquare = std::sqrt(result_.meanSquare);
  }

  void TakeMeansOfPositive() {
    if (!ExceedsTiny(result_.minimum) || numbers_.size() < Count()) return;
    const auto isFinite = [](double value) { return std::isfinite(value); };
    if (isFinite_) {
      const PositiveMeans means = MeansOfPositive(values_, result_.minimum);
      result_.geometricMean = means.geometric;
      result_.harmonicMean = means.harmonic;
    } else {
      std::vector<double> finite;
      std::copy_if(values_.begin(), values_.end(), std::back_inserter(finite), isFinite);
      result_.geometricMean = result_.harmonicMean = std::numeric_limits<double>::infinity();
      if (finite.empty()) return;
      result_.harmonicMean = MeansOfPositive(finite, result_.minimum).harmonic *
                             (static_cast<double>(Count()) / static_cast<double>(finite.size()));
    }
    result_.quartileCoefDisp = (result_.percentile75 / 2.0 - result_.percentile25 / 2.0) /
                               (result_.percentile75 / 2.0 + result_.percentile25 / 2.0);
  }

  void TakeCentralMoments() {
    if (!isFinite_ || Count() < 2) return;
    const int exponent = ScaleExponent(largest_);
    const CentralSums sums = SumCentral(values_, exponent, CenterOf(sum_, Count(), exponent));
    const ScaledPair variance = sums.squares / (WideCount() - ScaledPair(1.0));
    result_.variance = variance.ToDouble();
    if (!(result_.variance > 0.0)) return;
    result_.stdDev = std::sqrt(result_.variance);
    const auto n = static_cast<double>(Count());
    result_.stdError = result_.stdDev / std::sqrt(n);
    if (ExceedsTiny(n * result_.stdDev * (result_.stdDev * result_.stdDev))) {
      result_.skewness = (sums.cubes / (WideCount() * variance * Sqrt(variance))).ToDouble();
    }
    if (ExceedsTiny(n * (result_.variance * result_.variance))) {
      result_.kurtosis = (sums.fourths / (WideCount() * variance * variance)).ToDouble();
    }
  }

  /// The pairs of the sorted elements together hold the element i as the larger one i times and as
  /// the smaller one n - 1 - i times.
  void TakeMeanDifference() {
    if (Count() < 2 || Count() > MAXIMUM_PAIRED_COUNT) return;
    if (!isFinite_) {
      result_.meanDiff = MeanDifferenceOfInfinities();
      return;
    }
    ExactSum sum;
    const auto last = static_cast<double>(Count() - 1);
    for (std::size_t i = 0; i < Count(); ++i) {
      sum.AddProduct(values_[i], 2.0 * static_cast<double>(i) - last);
    }
    result_.meanDiff = sum.Mean(Count() * (Count() - 1)).Times2To(1).ToDouble();
  }

  /// The difference of two equal infinities is NaN.
  double MeanDifferenceOfInfinities() const {
    const double infinity = std::numeric_limits<double>::infinity();
    const bool isAnyTwice = std::count(values_.begin(), values_.end(), infinity) > 1 ||
                            std::count(values_.begin(), values_.end(), -infinity) > 1;
    return isAnyTwice || numbers_.size() < Count() ? NOT_A_NUMBER : infinity;
  }

  void TakeRatios() {
    if (!(result_.minimum >= 0.0) || !ExceedsTiny(result_.mean)) return;
    result_.relativeMeanDiff = result_.meanDiff / result_.mean;
    result_.coefVariation = result_.stdDev / result_.mean;
  }

  void TakeHistogram() {
    if (!ExceedsTiny(result_.range) || Count() < MINIMUM_BINNED_COUNT) return;
    const std::size_t bins =
        std::clamp(Count() / ELEMENTS_OF_A_BIN, MINIMUM_BIN_COUNT, MAXIMUM_BIN_COUNT);
    result_.histogram = CountIntoBins(values_, bins, result_.minimum, result_.range);
  }

  static std::ptrdiff_t Offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }
  ScaledPair WideCount() const {
    const std::uint64_t n = Count();
    return {static_cast<double>(n >> 32) * 4294967296.0, static_cast<double>(n & 0xFFFFFFFF), 0};
  }

  CUnivariateStatistics& result_;
  std::span<double> values_;
  std::span<double> numbers_;  // those of the values that are not NaN
  Positions at_;
  double largest_;  // magnitude, NaN where not all are finite
  bool isFinite_;
  std::array<std::size_t, 8> borders_{};
  std::array<ExactSum, 7> parts_;
  ExactSum sum_;
};

struct Row {
  std::string_view label;
  double CUnivariateStatistics::*value;
};

/// In the order of the text output.
constexpr Row ROWS[] = {
    {"Minimum", &CUnivariateStatistics::minimum},
    {"Maximum", &CUnivariateStatistics::maximum},
    {"Mean", &CUnivariateStatistics::mean},
    {"Variance", &CUnivariateStatistics::variance},
    {"StdDev", &CUnivariateStatistics::stdDev},
    {"Percentile_01", &CUnivariateStatistics::percentile01},
    {"Percentile_05", &CUnivariateStatistics::percentile05},
    {"Percentile_10", &CUnivariateStatistics::percentile10},
    {"Percentile_25", &CUnivariateStatistics::percentile25},
    {"Percentile_50", &CUnivariateStatistics::percentile50},
    {"Percentile_75", &CUnivariateStatistics::percentile75},
    {"Percentile_90", &CUnivariateStatistics::percentile90},
    {"Percentile_95", &CUnivariateStatistics::percentile95},
    {"Percentile_99", &CUnivariateStatistics::percentile99},
    {"Minimum", &CUnivariateStatistics::minimum},
    {"Maximum", &CUnivariateStatistics::maximum},
    {"Mean", &CUnivariateStatistics::mean},
    {"Median", &CUnivariateStatistics::median},
    {"GeometricMean", &CUnivariateStatistics::geometricMean},
    {"HarmonicMean", &CUnivariateStatistics::harmonicMean},
    {"RootMeanSquare", &CUnivariateStatistics::rootMeanSquare},
    {"TrimMean", &CUnivariateStatistics::trimMean},
    {"InterQuartileMean", &CUnivariateStatistics::interQuartileMean},
    {"Midrange", &CUnivariateStatistics::midrange},
    {"WinsorizedMean", &CUnivariateStatistics::winsorizedMean},
    {"TriMean", &CUnivariateStatistics::triMean},
    {"Variance", &CUnivariateStatistics::variance},
    {"StdDev", &CUnivariateStatistics::stdDev},
    {"InterQuartileRange", &CUnivariateStatistics::interQuartileRange},
    {"Range", &CUnivariateStatistics::range},
    {"MeanDiff", &CUnivariateStatistics::meanDiff},
    {"MedianAbsDev", &CUnivariateStatistics::medianAbsDev},
    {"AvgAbsDev", &CUnivariateStatistics::avgAbsDev},
    {"QuartileCoefDisp", &CUnivariateStatistics::quartileCoefDisp},
    {"RelativeMeanDiff", &CUnivariateStatistics::relativeMeanDiff},
    {"StdError", &CUnivariateStatistics::stdError},
    {"CoefVariation", &CUnivariateStatistics::coefVariation},
    {"Skewness", &CUnivariateStatistics::skewness},
    {"Kurtosis", &CUnivariateStatistics::kurtosis},
    {"Sum", &CUnivariateStatistics::sum},
    {"SumAbs", &CUnivariateStatistics::sumAbs},
    {"SumSquare", &CUnivariateStatistics::sumSquare},
    {"MeanSquare", &CUnivariateStatistics::meanSquare},
};

void AppendLabel(std::string& text, std::string_view label) {
  constexpr std::size_t LABEL_WIDTH = 20;
  text.append(label);
  text.append(LABEL_WIDTH - label.size(), ' ');
}

template <class Number>
void AppendNumber(std::string& text, Number number) {
  std::array<char, 32> buffer;
  text.append(buffer.data(),
              std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr);
}

}  // namespace

void Load(CUnivariateStatistics& statistics, std::span<double> values) {
  statistics.Clear();
  if (!values.empty()) Loader(statistics, values).Load();
}

std::ostream& operator<<(std::ostream& stream, const CUnivariateStatistics& statistics) {
  std::string text;
  AppendLabel(text, "Count");
  AppendNumber(text, statistics.count);
  text += '\n';
  for (const Row& row : ROWS) {
    AppendLabel(text, row.label);
    const double value = statistics.*row.value;
    if (value == value) {
      AppendNumber(text, value);
    } else {
      text += "nan";
    }
    text += '\n';
  }
  if (!statistics.histogram.empty()) {
    AppendLabel(text, "Histogram");
    for (std::size_t i = 0; i < statistics.histogram.size(); ++i) {
      if (i > 0) text += ' ';
      AppendNumber(text, statistics.histogram[i]);
    }
    text += '\n';
  }
  return stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace shr
