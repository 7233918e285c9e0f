// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The frame of an example's run: its exit status, and one line on standard error for what is
/// wrong.
///
///     return RunProgram(L"mapreport", [&] { return Run(arguments); });

#pragma once

#include <functional>

#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// What a program ends with.
enum class ExitStatus : int { Success = 0, BadInput = 1, Usage = 2 };

/// Writes "PROGRAM: MESSAGE" to standard error, on one line whatever the message holds. Returns the
/// message as it was written.
GString Complain(const GString& program, const GString& message);

/// Writes a text to standard output. A full or closed one is an error of the run.
ExitStatus Show(const GString& program, const GString& text);

/// Runs `body`. What it throws becomes `Complain` and `BadInput`; `onFailure`, when given, gets
/// the line. Never throws.
ExitStatus RunProgram(const GString& program, const std::function<ExitStatus()>& body,
                      const std::function<void(const GString&)>& onFailure = {});

}  // namespace examples
