// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The DLL tells Windows the version that its headers tell programs.

#include <windows.h>

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "shared/Version.h"

namespace {

TEST(VersionResource, holdsTheVersionOfTheHeaders) {
  static_assert(SHARED_VERSION ==
                SHARED_VERSION_MAJOR * 10000 + SHARED_VERSION_MINOR * 100 + SHARED_VERSION_PATCH);
  wchar_t path[MAX_PATH] = L"";
  ASSERT_NE(GetModuleFileNameW(GetModuleHandleW(L"shared.dll"), path, MAX_PATH), 0u);
  std::vector<std::uint8_t> block(GetFileVersionInfoSizeW(path, nullptr));
  ASSERT_TRUE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(block.size()), block.data()));
  void* found = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &found, &length));
  const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(found);
  EXPECT_EQ(HIWORD(fixed.dwFileVersionMS), SHARED_VERSION_MAJOR);
  EXPECT_EQ(LOWORD(fixed.dwFileVersionMS), SHARED_VERSION_MINOR);
  EXPECT_EQ(HIWORD(fixed.dwFileVersionLS), SHARED_VERSION_PATCH);
  ASSERT_TRUE(
      VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductVersion", &found, &length));
  const std::wstring text(static_cast<const wchar_t*>(found));
  EXPECT_EQ(text, L"" SHARED_VERSION_STRING);
}

}  // namespace
