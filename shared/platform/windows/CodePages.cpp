// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Windows converts what it knows; the library's own tables and the pages below stand in for what it
// refuses, which depends on the version and on the languages installed. UTF-8 and the pages of
// shifts are the library's on every version, so that bad sequences are replaced, and texts closed,
// alike everywhere.

#include "shared/platform/CodePages.h"

#include <windows.h>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/LibraryCodePages.h"
#include "shared/platform/ShiftedCodePages.h"

namespace shr::platform {
namespace {

/// Name of the unit that conversion faults are reported under.
constexpr const wchar_t* UNIT = L"StringUtility";

/// The system counts in int; longer input is converted in parts.
constexpr std::size_t LONGEST_PART = std::size_t{1} << 29;

char16_t DecodePair(std::uint32_t codePage, unsigned lead, unsigned trail) {
  const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
  wchar_t units[2];
  const int count = MultiByteToWideChar(codePage, 0, bytes, 2, units, 2);
  return count == 1 ? static_cast<char16_t>(units[0]) : u'?';
}

std::uint16_t EncodePair(std::uint32_t codePage, char16_t unit) {
  const auto wide = static_cast<wchar_t>(unit);
  char bytes[2];
  const int count = WideCharToMultiByte(codePage, 0, &wide, 1, bytes, 2, nullptr, nullptr);
  const auto byte = [&bytes](int i) { return static_cast<unsigned char>(bytes[i]); };
  if (count <= 0) return '?';
  return count == 1 ? byte(0) : static_cast<std::uint16_t>(byte(0) << 8 | byte(1));
}

constexpr PairConverter PAIRS{DecodePair, EncodePair};

bool PlatformServes(std::uint32_t codePage) {
  return MultiByteToWideChar(codePage, 0, "A", 1, nullptr, 0) > 0;
}

/// Holds what was found out about the pages that the system may refuse. Asking it about such a page
/// costs a search on disk, so it is done once.
///
/// A plain mutex: with the readers-writer lock of MinGW-w64's thread library a reader was seen to
/// enter beside the writer.
class StandInCache {
public:
  /// Returns the table of a page, null where the system serves the page itself.
  const CodePageTable* Find(std::uint32_t codePage) {
    const std::lock_guard lock(mutex_);
    const auto [entry, isNew] = tables_.try_emplace(codePage, nullptr);
    if (isNew && !PlatformServes(codePage)) entry->second = Build(codePage);
    return entry->second;
  }

private:
  const CodePageTable* Build(std::uint32_t codePage) {
    if (const CodePageTable* table = LibraryCodePageTable(codePage)) return table;
    const EucPage& page = *FindEucPage(codePage);
    owned_.push_back(BuildEucTable(page, [&page](unsigned lead, unsigned trail) {
      return DecodePair(page.basePage, lead, trail);
    }));
    return owned_.back().get();
  }

  std::mutex mutex_;
  std::map<std::uint32_t, const CodePageTable*> tables_;
  std::vector<std::unique_ptr<const CodePageTable>> owned_;
};

/// Returns the table that converts a page in the system's place, or null.
const CodePageTable* StandInTable(std::uint32_t codePage) {
  static StandInCache& cache = *new StandInCache;
  const bool canStandIn = HasLibraryTable(codePage) || FindEucPage(codePage) != nullptr;
  return canStandIn ? cache.Find(codePage) : nullptr;
}

/// Returns where to cut `bytes`: whole when they fit, else behind a line, which no sequence spans.
std::size_t PartLength(std::string_view bytes) {
  if (bytes.size() <= LONGEST_PART) return bytes.size();
  const std::size_t lineEnd = bytes.rfind('\n', LONGEST_PART - 1);
  return lineEnd == std::string_view::npos ? LONGEST_PART : lineEnd + 1;
}

std::size_t PartLength(std::wstring_view text) {
  if (text.size() <= LONGEST_PART) return text.size();
  return IS_HIGH_SURROGATE(text[LONGEST_PART - 1]) ? LONGEST_PART - 1 : LONGEST_PART;
}

/// Returns the page that a locale names, `fallback` where it names none.
std::uint32_t PageOfLocale(LCID locale, LCTYPE kind, std::uint32_t fallback) {
  DWORD page = 0;
  const int units = sizeof(page) / sizeof(wchar_t);
  const int got =
      GetLocaleInfoW(locale, kind | LOCALE_RETURN_NUMBER, reinterpret_cast<wchar_t*>(&page), units);
  return got == units && page > CP_THREAD_ACP ? page : fallback;
}

/// Asks for the size, then converts. Returns false when the system refuses the page.
bool AppendPart(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  const int size = static_cast<int>(bytes.size());
  const int needed = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
  if (needed <= 0) return false;
  const std::size_t before = wide.size();
  wide.resize(before + static_cast<std::size_t>(needed));
  const int written =
      MultiByteToWideChar(codePage, 0, bytes.data(), size, wide.data() + before, needed);
  if (written != needed) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return true;
}

bool AppendPart(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  const int size = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  if (needed <= 0) return false;
  const std::size_t before = narrow.size();
  narrow.resize(before + static_cast<std::size_t>(needed));
  const int written = WideCharToMultiByte(codePage, 0, text.data(), size, narrow.data() + before,
                                          needed, nullptr, nullptr);
  if (written != needed) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  return true;
}

/// Converts by the system. Returns false, having appended nothing, when it refuses the page.
template <typename Source, typename Target>
bool AppendByPlatform(std::uint32_t codePage, Source source, Target& target) {
  const std::size_t before = target.size();
  while (!source.empty()) {
    const std::size_t length = PartLength(source);
    if (!AppendPart(codePage, source.substr(0, length), target)) {
      target.resize(before);
      return false;
    }
    source.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::uint32_t ActualCodePage(std::uint32_t codePage) {
  switch (codePage) {
    case CP_ACP:
      return GetACP();
    case CP_OEMCP:
      return GetOEMCP();
    case CP_MACCP:
      return PageOfLocale(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTMACCODEPAGE, codePage);
    case CP_THREAD_ACP:
      return PageOfLocale(GetThreadLocale(), LOCALE_IDEFAULTANSICODEPAGE, codePage);
    default:
      return codePage;
  }
}

bool SetActiveCodePage(std::uint32_t codePage) {
  return codePage == GetACP();
}

bool IsCodePageServed(std::uint32_t codePage) {
  return IsUtfPage(codePage) || IsShiftedPage(codePage) || StandInTable(codePage) != nullptr ||
         PlatformServes(codePage);
}

bool AppendWide(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  if (IsUtfPage(codePage)) {
    AppendWideFromUtf(codePage, bytes, wide);
    return true;
  }
  if (IsShiftedPage(codePage)) {
    AppendWideFromShifted(codePage, bytes, wide, PAIRS);
    return true;
  }
  if (const CodePageTable* table = StandInTable(codePage)) {
    table->AppendDecoded(bytes, wide);
    return true;
  }
  // The system also converts shift codes alone to nothing.
  return (!bytes.empty() && AppendByPlatform(codePage, bytes, wide)) || PlatformServes(codePage);
}

bool AppendNarrow(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  if (IsUtfPage(codePage)) {
    AppendNarrowToUtf(codePage, text, narrow);
    return true;
  }
  if (IsShiftedPage(codePage)) {
    AppendNarrowToShifted(codePage, text, narrow, PAIRS);
    return true;
  }
  if (const CodePageTable* table = StandInTable(codePage)) {
    table->AppendEncoded(text, narrow);
    return true;
  }
  return (!text.empty() && AppendByPlatform(codePage, text, narrow)) || PlatformServes(codePage);
}

}  // namespace shr::platform
