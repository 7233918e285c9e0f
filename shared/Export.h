// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Marks what the shared library exports. Everything else stays hidden on both targets.
///
/// `SHARED_EXPORTS` is defined while the library itself is compiled, `SHARED_STATIC` by whoever
/// links the static archive.

#pragma once

// One line for whoever compiles as an older language: an include that fails ends the compilation at
// once, where an #error would let pages of errors follow.
#if defined(_MSVC_LANG) ? _MSVC_LANG < 202002L : __cplusplus < 202002L
#include <Shared_needs_C++20_or_later,_compile_with_-std=c++20>
#endif

#if defined(SHARED_STATIC)
#define SHARED_API
#elif defined(_WIN32)
#if defined(SHARED_EXPORTS)
#define SHARED_API __declspec(dllexport)
#else
#define SHARED_API __declspec(dllimport)
#endif
#else
#define SHARED_API __attribute__((visibility("default")))
#endif
