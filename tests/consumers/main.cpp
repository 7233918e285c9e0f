// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// A small program of somebody else: it knows the library only by what is installed. It fails when a
// value that crosses the border of the library, or an exception thrown inside and caught here, is
// not what it should be.

#include <cstdio>
#include <string>

#include "shared/color/ColorTable.h"
#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/Path.h"
#include "shared/fonts/StrokedFace.h"
#include "shared/text/GString.h"

namespace {

std::string DescriptionOfThrown() {
  try {
    shr::ThrowErrorImpl(L"Consumer", __LINE__, L"Layer %d of '%s'", 3, L"map");
  } catch (const shr::InternalErrorException&) {
    return "wrong type";
  } catch (const shr::Exception& error) {
    return error.GetDescription().ToUtf8();
  }
}

/// The colors must be known, and the color file that is installed with the library must be found
/// from wherever that is.
bool KnowsTeal() {
#ifdef CONSUMER_OF_INSTALLED
  // The colors are compiled in, too, so that the file is found shows only by itself.
  if (!shr::IsFileReadable(shr::LocateFile(L"Colors.ini"))) return false;
#endif
  const shr::CColorTable& table = shr::CColorTable::Instance();
  std::size_t index = 0;
  return table.IndexFromColor(shr::GString(L"teal"), index) && table[index].Color() == 0x00808000;
}

#ifdef CONSUMER_OF_INSTALLED
/// The symbol sets that are installed with the library must be found, too.
bool KnowsTheVolcano() {
  const shr::CStrokedFace text(0);
  const shr::CStrokedFace markers(1);
  return text.FindGlyph(U'A') != nullptr && markers.FindGlyph(L"volcano") != nullptr;
}
#endif

}  // namespace

int main() {
  shr::GString text;
  text.FormatString(L"%s has %d points", L"\x00c5land", 12);
  const std::string utf8 = text.ToUtf8();
  const std::string caught = DescriptionOfThrown();
  std::printf("%s\n%s\n", utf8.c_str(), caught.c_str());
  if (!KnowsTeal()) return 2;
#ifdef CONSUMER_OF_INSTALLED
  if (!KnowsTheVolcano()) return 3;
#endif
  return utf8 == "\xc3\x85land has 12 points" && caught == "Layer 3 of 'map'" ? 0 : 1;
}
