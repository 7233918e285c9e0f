// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/InputError.h"

#include <string>

#include "shared/diagnostics/Exception.h"

namespace examples {

void ThrowInputError(const GString& path, std::size_t line, const GString& what) {
  ThrowInputError(path + L":" + std::to_wstring(line).c_str(), what);
}

void ThrowInputError(const GString& path, const GString& what) {
  throw shr::Exception(L"examples", L"InputError", __LINE__, path + L": " + what);
}

GString Quoted(const GString& text) {
  constexpr std::size_t LONGEST = 40;
  if (text.size() <= LONGEST) return L"'" + text + L"'";
  return L"'" + text.substr(0, LONGEST) + L"...'";
}

}  // namespace examples
