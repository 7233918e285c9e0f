// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A program's command line and its standard streams as wide text.
///
/// The narrow arguments of `main` are in the active ANSI code page on Windows, where most paths of
/// other scripts cannot be written; this header takes the arguments from where they are complete.
///
///     int main(int argc, char* argv[]) {
///       const std::vector<GString> arguments = platform::ProgramArguments(argc, argv);
///       if (arguments.size() < 2) platform::WriteText(stderr, L"usage: show FILE\n");
///     }
///
/// Threads: `ProgramArguments` and `IsTerminal` may be called on any thread, `WriteText` as the
/// stream may.

#pragma once

#include <cstdio>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Returns the arguments of the process, the program's name first, from what `main` was given: read
/// as UTF-8 on Linux; on Windows `argc` and `argv` are ignored and the wide command line is split.
/// On Linux it also sees to it that no file takes the place of a standard stream that the caller
/// closed: writing to that stream goes on to fail.
SHARED_API std::vector<GString> ProgramArguments(int argc, const char* const* argv);

/// Returns true when what is written to `stream` appears on a terminal.
SHARED_API bool IsTerminal(std::FILE* stream);

/// Writes `text` to a standard stream and flushes it: to a Windows console as wide text, anywhere
/// else as UTF-8 with line ends as they stand. Returns false when not all of it could be written.
SHARED_API bool WriteText(std::FILE* stream, const GString& text);

/// Writes the result of a program to standard output. Returns the exit status: 0, or 1 behind a
/// line on standard error, "PROGRAM: Unable to write the standard output." and the system's text,
/// when that is full or closed.
SHARED_API int WriteResult(const GString& program, const GString& text);

}  // namespace shr::platform
