// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The one way in which the application rejects an input: an exception that names the file and the
/// line.
///
///     ThrowInputError(path, 12, L"'abc' is no number.");   // "earthquakes.csv:12: 'abc' is no
///     number."

#pragma once

#include <cstddef>

#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// Throws a `shr::Exception` of module "examples" that reads "path:line: what". Lines count
/// from 1.
[[noreturn]] void ThrowInputError(const GString& path, std::size_t line, const GString& what);

/// Throws a `shr::Exception` of module "examples" that reads "path: what".
[[noreturn]] void ThrowInputError(const GString& path, const GString& what);

/// Returns `text` in single quotes, cut after 40 units, for use in a message.
GString Quoted(const GString& text);

}  // namespace examples
