// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/numerics/DoubleDoublePeerQd.h"

#include <qd/dd_real.h>

#include <cstring>
#include <string>

namespace shr::bench {
namespace {

template <class Operation>
void ForEach(const double* x, const double* y, std::size_t count, double* result,
             const Operation& operation) {
  for (std::size_t i = 0; i < 2 * count; i += 2) {
    const dd_real value = operation(dd_real(x[i], x[i + 1]), dd_real(y[i], y[i + 1]));
    result[i] = value.x[0];
    result[i + 1] = value.x[1];
  }
}

dd_real Function(char which, const dd_real& x) {
  switch (which) {
    case 'e':
      return exp(x);
    case 'l':
      return log(x);
    case 's':
      return sin(x);
    case 'c':
      return cos(x);
    default:
      return atan2(dd_real(1.0), x);
  }
}

}  // namespace

bool HasQd() {
  return true;
}

void QdAdd(const double* x, const double* y, std::size_t count, double* result) {
  ForEach(x, y, count, result,
          [](const dd_real& a, const dd_real& b) { return dd_real::ieee_add(a, b); });
}

void QdMultiply(const double* x, const double* y, std::size_t count, double* result) {
  ForEach(x, y, count, result, [](const dd_real& a, const dd_real& b) { return a * b; });
}

void QdDivide(const double* x, const double* y, std::size_t count, double* result) {
  ForEach(x, y, count, result,
          [](const dd_real& a, const dd_real& b) { return dd_real::accurate_div(a, b); });
}

void QdDotProduct(const double* x, const double* y, std::size_t count, double* result) {
  dd_real sum = 0.0;
  for (std::size_t i = 0; i < 2 * count; i += 2) {
    sum = dd_real::ieee_add(sum, dd_real(x[i], x[i + 1]) * dd_real(y[i], y[i + 1]));
  }
  result[0] = sum.x[0];
  result[1] = sum.x[1];
}

void QdRead(const char* text, double* result) {
  dd_real value;
  value.read(text, value);
  result[0] = value.x[0];
  result[1] = value.x[1];
}

std::size_t QdWrite(const double* x, char* text) {
  const std::string written =
      dd_real(x[0], x[1]).to_string(31, 0, std::ios_base::scientific, false, false);
  std::memcpy(text, written.data(), written.size());
  return written.size();
}

void QdFunction(char which, const double* x, std::size_t count, double* result) {
  for (std::size_t i = 0; i < 2 * count; i += 2) {
    const dd_real value = Function(which, dd_real(x[i], x[i + 1]));
    result[i] = value.x[0];
    result[i + 1] = value.x[1];
  }
}

}  // namespace shr::bench
