// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The text forms of the values in parameter lists: writing them, and scanning them back.
///
/// Scanning reads a value at the head of a text, as the scanf family does: white space before it is
/// skipped and what stands behind it ignored. Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>

#include "shared/text/GString.h"

namespace shr {

GString ToParamText(bool value);
GString ToParamText(int value);
GString ToParamText(unsigned int value);
GString ToParamText(unsigned long value);
GString ToParamText(std::int64_t value);
GString ToParamText(double value);

/// Return false, leaving `value` unchanged, when the text does not begin with a value of the kind,
/// or with one that is out of its range. An unsigned value may carry a sign; "-" takes it from
/// 2^bits. A bool is a number other than 0.
bool FromParamText(const GString& text, bool& value);
bool FromParamText(const GString& text, int& value);
bool FromParamText(const GString& text, unsigned int& value);
bool FromParamText(const GString& text, unsigned long& value);
bool FromParamText(const GString& text, std::int64_t& value);
bool FromParamText(const GString& text, double& value);

}  // namespace shr
