// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fits a scanned image to a map by control points and writes a report about it.

#include "examples/georeference/Application.h"
#include "shared/platform/Console.h"

int main(int argc, char* argv[]) {
  return static_cast<int>(georeference::RunProgram(shr::platform::ProgramArguments(argc, argv)));
}
