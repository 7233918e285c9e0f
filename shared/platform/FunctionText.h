// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `SHARED_FUNCTION_TEXT`, the compiler's own text for the function it stands in, template
/// arguments included, as a constant. The standard's `source_location` would do, but not every
/// compiler of the library has it. Threads: any.

#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#define SHARED_FUNCTION_TEXT __FUNCSIG__
#else
#define SHARED_FUNCTION_TEXT __PRETTY_FUNCTION__
#endif
