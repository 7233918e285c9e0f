// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Describes a table of any size and encoding as an HTML report.

#include "examples/datareport/Application.h"
#include "shared/platform/Console.h"

int main(int argc, char* argv[]) {
  return static_cast<int>(datareport::RunProgram(shr::platform::ProgramArguments(argc, argv)));
}
