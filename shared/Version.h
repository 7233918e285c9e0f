// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The version of these headers, for programs that are built against several versions of the
/// library.
///
///     #if SHARED_VERSION >= 20300   // 2.3.0 or later
///     #endif
///
/// Until 1.0 a change of the second number may break users; afterwards one of the first. The build
/// reads the version of the project from here.

#pragma once

#define SHARED_VERSION_MAJOR 0
#define SHARED_VERSION_MINOR 1
#define SHARED_VERSION_PATCH 0

/// One number that grows with the version: major * 10000 + minor * 100 + patch.
#define SHARED_VERSION \
  (SHARED_VERSION_MAJOR * 10000 + SHARED_VERSION_MINOR * 100 + SHARED_VERSION_PATCH)

#define SHARED_VERSION_STRING "0.1.0"
