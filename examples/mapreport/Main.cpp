// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Draws events and their countries as a map and writes a report about them.

#include "examples/mapreport/Application.h"
#include "shared/platform/Console.h"

int main(int argc, char* argv[]) {
  return static_cast<int>(mapreport::RunProgram(shr::platform::ProgramArguments(argc, argv)));
}
