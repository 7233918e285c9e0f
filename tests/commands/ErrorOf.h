// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Errors as text, for comparison with expected ones.

#pragma once

#include <exception>
#include <string>

#include "shared/diagnostics/Exception.h"

namespace shr {

/// Returns what `action` throws: "Unit:line:text" for the library's exceptions, the text alone for
/// a standard exception, "nothing" when it returns.
template <typename Action>
std::string ErrorOf(Action action) {
  try {
    action();
  } catch (const Exception& error) {
    return error.GetSrcFile().ToUtf8() + ":" + std::to_string(error.GetSrcLine()) + ":" +
           error.GetDescription().ToUtf8();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing";
}

}  // namespace shr
