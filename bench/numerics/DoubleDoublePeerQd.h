// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// libqd's double-double by its accurate forms, as contenders. Numbers are given as their two parts
/// in turn. Where the library is absent nothing is written, and the rows are not run.

#pragma once

#include <cstddef>

namespace shr::bench {

bool HasQd();
void QdAdd(const double* x, const double* y, std::size_t count, double* result);
void QdMultiply(const double* x, const double* y, std::size_t count, double* result);
void QdDivide(const double* x, const double* y, std::size_t count, double* result);
void QdDotProduct(const double* x, const double* y, std::size_t count, double* result);
void QdRead(const char* text, double* result);
/// Writes 32 digits in scientific notation; returns the length. `text` has room for 64 characters.
std::size_t QdWrite(const double* x, char* text);
/// Functions of one number: 'e' exp, 'l' log, 's' sin, 'c' cos, 'a' the angle of (1, x).
void QdFunction(char which, const double* x, std::size_t count, double* result);

}  // namespace shr::bench
