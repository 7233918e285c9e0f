// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The text of the library's exception that an expression throws.
///
///     EXPECT_EQ(L"Unexpected end of file.", test::Failure([&] { file.ReadN(bytes, 4); }));

#pragma once

#include <functional>

#include "shared/diagnostics/Exception.h"
#include "shared/text/GString.h"

namespace shr::test {

/// Returns the description of what `action` throws; "(nothing)" when it throws nothing, and the
/// unit in brackets instead of the long text for internal errors.
inline GString Failure(const std::function<void()>& action) {
  try {
    action();
  } catch (const InternalErrorException& error) {
    return GString(L"[") + error.GetSrcFile() + L"]";
  } catch (const Exception& error) {
    return error.GetDescription();
  }
  return GString(L"(nothing)");
}

/// Returns true when `text` is `head`, a line feed and at least one more unit: a message that names
/// its object first and then gives the words of the system, which differ between targets.
inline bool HasSystemText(const GString& text, const GString& head) {
  const std::wstring expected = head.String() + L"\n";
  return text.size() > expected.size() && text.String().compare(0, expected.size(), expected) == 0;
}

}  // namespace shr::test
