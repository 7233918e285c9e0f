// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/ImageRegistration.h"

#include <array>
#include <cstddef>
#include <utility>

#include "shared/numerics/registration/InverseDistanceSquared.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/numerics/registration/RadialBasisFunction.h"
#include "shared/numerics/registration/SimpleWarps.h"

namespace shr {
namespace {

template <class Warp>
std::unique_ptr<CImageWarp> Make() {
  return std::make_unique<Warp>();
}

struct Method {
  std::unique_ptr<CImageWarp> (*make)();
  WarpingMethod fallback;
  const wchar_t* name;
};

/// In the order of the enumeration.
constexpr std::array<Method, WARPING_METHOD_COUNT> METHODS{{
    {Make<CThinPlateSpline>, WarpInverseDistanceSquared, L"thin-plate spline"},
    {Make<CNaturalCubicSpline>, WarpInverseDistanceSquared, L"natural cubic spline"},
    {Make<CMarcovSpline>, WarpInverseDistanceSquared, L"Marcov spline"},
    {Make<CExponentialSpline>, WarpInverseDistanceSquared, L"exponential spline"},
    {Make<CRationalQuadraticSpline>, WarpInverseDistanceSquared, L"rational quadratic spline"},
    {Make<CInverseDistanceSquared>, WarpLinearConformal, L"inverse distance squared"},
    {Make<CQuadraticPolynomial>, WarpGeneralLinear, L"quadratic polynomial"},
    {Make<CGeneralLinear>, WarpLinearConformal, L"general linear"},
    {Make<CLinearConformal>, WarpUniformScale, L"linear conformal"},
    {Make<CMixedScale>, WarpUniformScale, L"mixed scale"},
    {Make<CUniformScale>, WarpTranslate, L"uniform scale"},
    {Make<CTranslate>, WarpIdentityMap, L"translate"},
    {Make<CIdentityMap>, WarpIdentityMap, L"identity map"},
}};

/// Null for a value that is no method.
const Method* Find(WarpingMethod method) {
  const auto index = static_cast<std::size_t>(static_cast<int>(method));
  return index < METHODS.size() ? &METHODS[index] : nullptr;
}

/// What few control points leave of a request.
WarpingMethod FirstMethod(std::size_t count, WarpingMethod requested) {
  if (count == 0) return WarpIdentityMap;
  if (count == 1 && requested != WarpIdentityMap) return WarpTranslate;
  return requested;
}

}  // namespace

CImageRegistration::CImageRegistration() : warp_(std::make_unique<CIdentityMap>()) {}

CImageRegistration::CImageRegistration(const CImageRegistration& other)
    : warp_(other.warp_->Clone()) {}

CImageRegistration& CImageRegistration::operator=(const CImageRegistration& other) {
  if (this != &other) warp_.reset(other.warp_->Clone());
  return *this;
}

CImageRegistration::CImageRegistration(CImageRegistration&& other) : CImageRegistration() {
  warp_.swap(other.warp_);
}

CImageRegistration& CImageRegistration::operator=(CImageRegistration&& other) noexcept {
  warp_.swap(other.warp_);
  return *this;
}

CImageRegistration::~CImageRegistration() = default;

WarpingMethod CImageRegistration::Calibrate(const RPoints& from, const RPoints& to,
                                            WarpingMethod requested) {
  if (Find(requested) == nullptr) return requested;
  WarpingMethod method = FirstMethod(from.size(), requested);
  warp_ = std::make_unique<CIdentityMap>();
  for (;;) {
    std::unique_ptr<CImageWarp> warp = MakeWarp(method);
    if (warp->Calibrate(from, to)) {
      warp_ = std::move(warp);
      return method;
    }
    method = FallbackOf(method);
  }
}

std::unique_ptr<CImageWarp> MakeWarp(WarpingMethod method) {
  const Method* found = Find(method);
  return found != nullptr ? found->make() : nullptr;
}

WarpingMethod FallbackOf(WarpingMethod method) {
  const Method* found = Find(method);
  return found != nullptr ? found->fallback : method;
}

const wchar_t* NameOf(WarpingMethod method) {
  const Method* found = Find(method);
  return found != nullptr ? found->name : L"";
}

}  // namespace shr
