// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"
#include "shared/text/GString.h"

int main() {
  const shr::GString record(u8" Reykjav\u00edk ; 64.1466 ; \"capital; port\" ");
  shr::GString::size_type pos = 0;
  const shr::GString name = record.ParseToken(pos, L';');
  double latitude = 0;
  record.ParseToken(pos, L';').ToDouble(latitude);
  const shr::GString note = record.ParseToken(pos, L';');

  shr::GString line;
  line.FormatString(L"%s lies at %.2f degrees: %s\n", name, latitude, note);
  if (name.starts_with(L"Reyk")) line.replace(line.rfind(L"port"), 4, L"harbour");
  return shr::platform::WriteResult(L"hello", line);
}
