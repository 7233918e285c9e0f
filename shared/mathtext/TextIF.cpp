// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/TextIF.h"

#include <cmath>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

[[noreturn]] void ThrowInvalid(int line) {
  ThrowErrorImpl(L"TextIF", line, INVALID_PARAMETER_TEXT);
}

}  // namespace

CMTTextIF::CMTTextIF() : attributes_(std::make_shared<const MTAttributes>()) {}
CMTTextIF::~CMTTextIF() = default;

void CMTTextIF::SetAttributes(const MTAttributes& attributes) {
  SetAttributes(std::make_shared<const MTAttributes>(attributes));
}

void CMTTextIF::SetAttributes(std::shared_ptr<const MTAttributes> attributes) {
  if (attributes == nullptr) ThrowInvalid(__LINE__);
  if (!(attributes->height > 0) || !std::isfinite(attributes->height)) ThrowInvalid(__LINE__);
  attributes_ = std::move(attributes);
}

void CMTTextIF::PreserveState() {
  states_.push_back(attributes_);
}

void CMTTextIF::RestoreState() {
  if (states_.empty()) ThrowInternalError(SHARED_MODULE, L"TextIF", __LINE__);
  attributes_ = std::move(states_.back());
  states_.pop_back();
}

void CMTTextIF::SetRotation(double degrees) {
  if (!std::isfinite(degrees)) ThrowInvalid(__LINE__);
  static constexpr double QUARTER_COSINES[] = {1, 0, -1, 0};
  const double quarters = degrees / 90;
  if (quarters == std::floor(quarters)) {
    const int turns = static_cast<int>(std::fmod(std::fmod(quarters, 4) + 4, 4));
    cosine_ = QUARTER_COSINES[turns];
    sine_ = QUARTER_COSINES[(turns + 3) % 4];
  } else {
    const double radians = degrees * (PI / 180);
    cosine_ = std::cos(radians);
    sine_ = std::sin(radians);
  }
  rotation_ = degrees;
}

Vec2d CMTTextIF::TurnDirection(const Vec2d& vector) const noexcept {
  return Vec2d(vector.x * cosine_ - vector.y * sine_, vector.x * sine_ + vector.y * cosine_);
}

MTStateScope::MTStateScope(CMTTextIF& textIF)
    : textIF_(textIF), attributes_(textIF.ShareAttributes()), depth_(textIF.GetStateDepth()) {}

MTStateScope::~MTStateScope() {
  while (textIF_.GetStateDepth() > depth_) textIF_.RestoreState();
  textIF_.SetAttributes(std::move(attributes_));
}

}  // namespace shr
