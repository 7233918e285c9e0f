// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: objects of classes that hold no text, for every printf-like function, each with the twin
// that hands over a text object or a plain value.

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include "shared/diagnostics/Logger.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/BufferedFile.h"
#include "shared/text/CodePageConversion.h"
#include "shared/text/GString.h"
#include "shared/text/StringUtility.h"

namespace {

using namespace shr;

struct Point {
  double x, y;
};

union Number {
  int i;
  float f;
};

void aPlainStructureIsNotFormatted(GString& text, const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.FormatString(L"%g", point);
#else
  text.FormatString(L"%g", point.x);
#endif
}

void aUnionIsNotFormatted(GString& text, const Number& number) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.AppendFormatString(L"%d", number);
#else
  text.AppendFormatString(L"%d", number.i);
#endif
}

void aPathIsNotFormattedUnlessMadeText(GString& text, const std::filesystem::path& path) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.FormatString("%s", path);
#else
  text.FormatString("%s", GString(path));
#endif
}

void aConversionObjectIsNotFormatted(GString& text) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.AppendFormatString("%s", AtoW("a", CODE_PAGE_UTF8));
#else
  text.AppendFormatString("%s", static_cast<const wchar_t*>(AtoW("a", CODE_PAGE_UTF8)));
#endif
}

void anAtomicIsNotFormattedBesideText(GString& text, const std::atomic<int>& count) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.FormatString(L"%s %d", text, count);
#else
  text.FormatString(L"%s %d", text, count.load());
#endif
}

void anObjectIsNotFormattedBehindAnObjectThatConvertsToAFormat(GString& text, const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  text.FormatString(AtoW("%g", CODE_PAGE_UTF8), point);
#else
  text.FormatString(AtoW("%s", CODE_PAGE_UTF8), text);
#endif
}

void unitsOfAVectorAreNoText(std::wstring& text, const std::vector<wchar_t>& units) {
#ifdef MUST_NOT_COMPILE  // deleted
  FormatString(text, L"%s", units);
#else
  FormatString(text, L"%s", std::wstring(units.begin(), units.end()));
#endif
}

void utf8IsNoNarrowText(std::string& text, const std::u8string& utf8) {
#ifdef MUST_NOT_COMPILE  // deleted
  AppendFormatString(text, "%s", utf8);
#else
  AppendFormatString(text, "%ls", GString(utf8));
#endif
}

void errorsTakeNoStructure(const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  ThrowErrorImpl(L"Unit", 1, L"%g", point);
#else
  ThrowErrorImpl(L"Unit", 1, L"%g", point.x);
#endif
}

void errorsOfAModuleTakeNoStructure(const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  ThrowSharedError(L"Module", L"Unit", 1, L"%g", point);
#else
  ThrowSharedError(L"Module", L"Unit", 1, L"%g", point.x);
#endif
}

void linesOfALogTakeNoStructure(const Point& point) {
#ifdef MUST_NOT_COMPILE  // no matching (member )?function
  g_Logger.SendVA(LogInfo, L"%g", point);
#else
  g_Logger.SendVA(LogInfo, L"%g", point.x);
#endif
}

void remoteLinesTakeNoStructure(CRemoteLogger& logger, const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  logger.SendVA(L"%g", point);
#else
  logger.SendVA(L"%g", point.x);
#endif
}

void filesTakeNoStructure(CBufferedFile& file, const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  file.Printf("%g", point);
#else
  file.Printf("%g", point.x);
#endif
}

void formattedConversionsTakeNoStructure(const Point& point) {
#ifdef MUST_NOT_COMPILE  // deleted
  const AtoWV text("%g", point);
#else
  const AtoWV text("%g", point.x);
#endif
}

}  // namespace
