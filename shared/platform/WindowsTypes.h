// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The plain Windows types that public interfaces exchange: points, sizes, rectangles, packed
/// colors and records of exceptions.
///
/// On Windows this is <windows.h>, lean and without its min and max macros; elsewhere the same
/// names are declared with the same layout. Headers that only pass such a type by pointer or
/// reference forward-declare its tag (`struct tagRECT;`) instead of including this one.
///
///     POINT corner{10, 20};
///     COLORREF red = RGB(255, 0, 0);
///
/// Threads: no state.

#pragma once

#if defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

#include <cstdint>

using BYTE = unsigned char;
using LONG = std::int32_t;
using DWORD = std::uint32_t;

/// A packed color: 0, blue, green and red from the most significant byte down.
using COLORREF = DWORD;

struct tagPOINT {
  LONG x;
  LONG y;
};
using POINT = tagPOINT;

struct tagSIZE {
  LONG cx;
  LONG cy;
};
using SIZE = tagSIZE;

struct tagRECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
using RECT = tagRECT;

struct tagRGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};
using RGBQUAD = tagRGBQUAD;

/// The operating system's record of an exception.
struct _EXCEPTION_RECORD {
  DWORD ExceptionCode;
  DWORD ExceptionFlags;
  _EXCEPTION_RECORD* ExceptionRecord;
  void* ExceptionAddress;
  DWORD NumberParameters;
  std::uintptr_t ExceptionInformation[15];
};
using EXCEPTION_RECORD = _EXCEPTION_RECORD;

struct _EXCEPTION_POINTERS {
  EXCEPTION_RECORD* ExceptionRecord;
  void* ContextRecord;
};
using EXCEPTION_POINTERS = _EXCEPTION_POINTERS;

constexpr COLORREF RGB(BYTE red, BYTE green, BYTE blue) {
  return red | static_cast<COLORREF>(green) << 8 | static_cast<COLORREF>(blue) << 16;
}

/// A key of the registry. Only the predefined roots exist outside Windows.
struct HKEY__;
using HKEY = HKEY__*;

inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::uintptr_t{0x80000000u});
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001u});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002u});
inline const HKEY HKEY_USERS = reinterpret_cast<HKEY>(std::uintptr_t{0x80000003u});
inline const HKEY HKEY_CURRENT_CONFIG = reinterpret_cast<HKEY>(std::uintptr_t{0x80000005u});

#endif
