// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/RMatrix.h"

#include <ostream>

#include "shared/numerics/linear/RVector.h"

namespace shr {
namespace {

void WriteElements(std::ostream& stream, std::span<const double> elements) {
  stream << '[';
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (i != 0) stream << ", ";
    stream << elements[i];
  }
  stream << ']';
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const RVector& vector) {
  stream.width(0);
  WriteElements(stream, vector);
  return stream;
}

std::ostream& operator<<(std::ostream& stream, const RMatrix& matrix) {
  stream.width(0);
  for (std::uint64_t i = 0; i < matrix.Rows(); ++i) {
    WriteElements(stream, matrix.Row(i));
    stream << '\n';
  }
  return stream;
}

}  // namespace shr
