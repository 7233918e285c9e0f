// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `NumberFormatSpec` records how a floating-point number is to be printed and makes the format for
/// it.
///
///     const NumberFormatSpec spec(NumberFormatSpec::TypeFixed, 3);
///     GString text;
///     text.FormatString(spec.GetFormat().c_str(), 2.5);     // 2.500
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstdint>

#include "shared/Export.h"

namespace shr {

class GString;

/// A notation and a number of digits: behind the point, or significant ones with `TypeGeneral`.
class SHARED_API NumberFormatSpec {
public:
  enum Type : std::uint32_t {
    TypeExponential = 0,  ///< 1.2346e+01
    TypeFixed = 1,        ///< 12.3457
    TypeGeneral = 2       ///< the shorter of the two
  };

  NumberFormatSpec() = default;
  /// Stores both as given; a type that is none of the three prints as `TypeGeneral`.
  NumberFormatSpec(Type type, std::uint32_t digits) : type_(type), digits_(digits) {}

  Type GetType() const { return type_; }
  /// A type that is none of the three is ignored.
  void SetType(Type type);

  std::uint32_t GetNumDigits() const { return digits_; }
  /// Stores any number; formatting refuses those that do not fit its buffer.
  void SetNumDigits(std::uint32_t digits) { digits_ = digits; }

  /// Returns the printf format for one `double`, for example "%.4g".
  GString GetFormat() const;

private:
  Type type_ = TypeGeneral;
  std::uint32_t digits_ = 4;
};

}  // namespace shr
