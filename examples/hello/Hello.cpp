// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"
#include "shared/text/GString.h"
#include "shared/text/StringUtility.h"

int main() {
  const std::wstring record = L" Reykjav\u00edk ; 64.1466 ; \"capital; port\" ";
  std::size_t pos = 0;
  const std::wstring name = shr::ParseToken(record, pos, L';');
  double latitude = 0;
  shr::StringToDouble(shr::ParseToken(record, pos, L';'), latitude);
  const std::wstring note = shr::ParseToken(record, pos, L';');

  shr::GString line(name);
  line.AppendFormatString(L" lies at %.2f degrees: %s\n", latitude, note.c_str());
  shr::platform::WriteText(stdout, line);
}
