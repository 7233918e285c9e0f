// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/Program.h"

#include <cstdio>
#include <exception>
#include <new>

#include "shared/diagnostics/Exception.h"
#include "shared/platform/Console.h"

namespace examples {

using namespace shr;

namespace {

/// Puts a message of several lines, or with characters that move the cursor, on one line.
GString OneLine(const GString& message) {
  GString line;
  for (const wchar_t unit : message) {
    const bool isControl = unit < 0x20 || unit == 0x7F;
    if (!isControl) {
      line += unit;
    } else if (!line.empty() && line[line.size() - 1] != L' ') {
      line += L' ';
    }
  }
  return line.TrimRight();
}

}  // namespace

GString Complain(const GString& program, const GString& message) {
  const GString line = OneLine(message);
  platform::WriteText(stderr, program + L": " + line + L"\n");
  return line;
}

ExitStatus Show(const GString& program, const GString& text) {
  const int status = platform::WriteResult(program, text);
  return status == 0 ? ExitStatus::Success : ExitStatus::BadInput;
}

ExitStatus RunProgram(const GString& program, const std::function<ExitStatus()>& body,
                      const std::function<void(const GString&)>& onFailure) {
  const auto complain = [&](const GString& message) {
    const GString line = Complain(program, message);
    if (onFailure) onFailure(line);
  };
  try {
    return body();
  } catch (const Exception& error) {
    complain(error.GetDescription());
  } catch (const std::bad_alloc&) {
    complain(L"Out of memory");
  } catch (const std::exception& error) {
    complain(GString(error.what()));
  }
  return ExitStatus::BadInput;
}

}  // namespace examples
