// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/support/RegistrySandbox.h"

#include <cstdlib>

namespace shr::test {
namespace {

constexpr const char* FOLDER_VARIABLE = "SHARED_REGISTRY_DIR";

}  // namespace

RegistrySandbox::RegistrySandbox() : key_(L"Software\\Shared tests\\Sandbox") {
  setenv(FOLDER_VARIABLE, folder_.Path().ToUtf8().c_str(), 1);
}

RegistrySandbox::~RegistrySandbox() {
  unsetenv(FOLDER_VARIABLE);
}

}  // namespace shr::test
