// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/support/RegistrySandbox.h"

#include <windows.h>

namespace shr::test {

RegistrySandbox::RegistrySandbox() {
  key_.FormatString(L"Software\\Shared tests\\Sandbox %u",
                    static_cast<unsigned int>(GetCurrentProcessId()));
  RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
}

RegistrySandbox::~RegistrySandbox() {
  RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
  RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Shared tests");  // when no other test uses it
}

}  // namespace shr::test
