// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The sum is a fixed-point number so long that every double, and every product of two, lies within
// it. A double touches two digits of 32 bits that are held in 64, so that carries wait until there
// have been 512 additions.

#include "shared/numerics/statistics/ExactSum.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace shr {
namespace {

constexpr int MANTISSA_BITS = 52;
constexpr std::uint64_t MANTISSA_MASK = (std::uint64_t{1} << MANTISSA_BITS) - 1;
constexpr std::uint64_t EXPONENT_MASK = 0x7FF;
constexpr int EXPONENT_BIAS = 1075;  // of the last bit of the mantissa
constexpr int DIGIT_BITS = 32;
constexpr std::uint64_t DIGIT_MASK = 0xFFFFFFFF;

/// A finite double as an integer times a power of two.
struct Parts {
  std::uint64_t bits;
  int exponent;
  bool isNegative;
};

Parts Split(double value) {
  const auto image = std::bit_cast<std::uint64_t>(value);
  const auto biased = static_cast<int>(image >> MANTISSA_BITS & EXPONENT_MASK);
  const std::uint64_t leading = biased == 0 ? 0 : MANTISSA_MASK + 1;
  return {(image & MANTISSA_MASK) | leading, std::max(biased, 1) - EXPONENT_BIAS,
          (image >> 63) != 0};
}

}  // namespace

void ExactSum::AddBits(std::uint64_t bits, int exponent, bool isNegative) {
  const auto position = static_cast<unsigned int>(exponent - LOWEST_EXPONENT);
  const std::size_t index = position / DIGIT_BITS;
  const unsigned int shift = position % DIGIT_BITS;
  const auto sign = -static_cast<std::int64_t>(isNegative);  // all bits or none
  const auto low = static_cast<std::int64_t>(bits << shift & DIGIT_MASK);
  const auto high = static_cast<std::int64_t>(bits >> (DIGIT_BITS - shift));
  digits_[index] += (low ^ sign) - sign;
  digits_[index + 1] += (high ^ sign) - sign;
}

void ExactSum::AddFinite(double value) {
  const Parts parts = Split(value);
  AddBits(parts.bits, parts.exponent, parts.isNegative);
}

void ExactSum::AddSpecial(double value) {
  special_ += value;
}

void ExactSum::Carry() {
  for (std::size_t i = 0; i + 1 < DIGIT_COUNT; ++i) {
    const std::int64_t carry = digits_[i] >> DIGIT_BITS;
    digits_[i] -= carry * (std::int64_t{1} << DIGIT_BITS);
    digits_[i + 1] += carry;
  }
  room_ = ADDITIONS_WITHOUT_CARRY;
}

void ExactSum::Add(double value) {
  Add(std::span(&value, 1));
}

void ExactSum::Add(std::span<const double> values) {
  while (!values.empty()) {
    if (room_ == 0) Carry();
    const auto block = values.first(std::min(values.size(), static_cast<std::size_t>(room_)));
    for (const double value : block) {
      if (std::isfinite(value)) {
        AddFinite(value);
      } else {
        AddSpecial(value);
      }
    }
    room_ -= static_cast<int>(block.size());
    values = values.subspan(block.size());
  }
}

void ExactSum::Add(const ExactSum& other) {
  ExactSum carried = other;
  carried.Carry();
  Carry();
  for (std::size_t i = 0; i < DIGIT_COUNT; ++i) digits_[i] += carried.digits_[i];
  --room_;
  special_ += other.special_;
}

void ExactSum::AddProduct(double a, double b) {
  if (!std::isfinite(a) || !std::isfinite(b)) return AddSpecial(a * b);
  constexpr int HALF_BITS = 27;
  constexpr std::uint64_t HALF_MASK = (std::uint64_t{1} << HALF_BITS) - 1;
  constexpr int ADDITIONS = 8;  // four, of twice the size of a mantissa at most
  if (room_ < ADDITIONS) Carry();
  room_ -= ADDITIONS;
  const Parts x = Split(a), y = Split(b);
  const bool isNegative = x.isNegative != y.isNegative;
  const int exponent = x.exponent + y.exponent;
  const std::uint64_t xHigh = x.bits >> HALF_BITS, xLow = x.bits & HALF_MASK;
  const std::uint64_t yHigh = y.bits >> HALF_BITS, yLow = y.bits & HALF_MASK;
  AddBits(xLow * yLow, exponent, isNegative);
  AddBits(xHigh * yLow, exponent + HALF_BITS, isNegative);
  AddBits(xLow * yHigh, exponent + HALF_BITS, isNegative);
  AddBits(xHigh * yHigh, exponent + 2 * HALF_BITS, isNegative);
}

void ExactSum::AddMultiple(double value, std::uint64_t times) {
  if (times == 0) return;
  if (!std::isfinite(value)) return AddSpecial(value);
  const Parts parts = Split(value);
  Carry();
  for (int bit = 0; bit < 64; ++bit) {
    if ((times >> bit & 1) != 0) AddBits(parts.bits, parts.exponent + bit, parts.isNegative);
  }
  room_ -= 64;
}

ScaledPair ExactSum::Value() const {
  if (!std::isfinite(special_)) return special_;
  ExactSum sum = *this;
  sum.Carry();
  const bool isNegative = sum.digits_.back() < 0;
  if (isNegative) {
    for (std::int64_t& digit : sum.digits_) digit = -digit;
    sum.Carry();
  }
  std::size_t top = DIGIT_COUNT;
  while (top > 0 && sum.digits_[top - 1] == 0) --top;
  if (top == 0) return 0.0;
  ScaledPair value;
  for (std::size_t i = top - std::min<std::size_t>(top, 5); i < top; ++i) {  // 129 bits or more
    value = value + ScaledPair(static_cast<double>(sum.digits_[i]), 0.0,
                               static_cast<int>(i) * DIGIT_BITS + LOWEST_EXPONENT);
  }
  return isNegative ? -value : value;
}

ScaledPair ExactSum::Mean(std::uint64_t count) const {
  const ExactPair divisor{static_cast<double>(count >> DIGIT_BITS) * 4294967296.0,
                          static_cast<double>(count & DIGIT_MASK)};
  return Value() / ScaledPair(divisor.high, divisor.low, 0);
}

}  // namespace shr
