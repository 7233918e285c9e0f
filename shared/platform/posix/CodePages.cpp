// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CodePages.h"

#include <atomic>
#include <charconv>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "shared/platform/LibraryCodePages.h"
#include "shared/platform/ShiftedCodePages.h"
#include "shared/platform/posix/CodePageSources.h"
#include "shared/platform/posix/Utf7.h"

namespace shr::platform {
namespace {

constexpr std::uint32_t ANSI_PAGE = 0;
constexpr std::uint32_t OEM_PAGE = 1;
constexpr std::uint32_t DEFAULT_ANSI_PAGE = 1252;
constexpr std::uint32_t DEFAULT_OEM_PAGE = 437;
constexpr std::uint32_t UTF7_PAGE = 65000;

/// The tables made so far. Readers never wait for each other.
class TableCache {
public:
  /// Returns the table of a page; `make` makes it at the first call and may give null.
  template <typename Make>
  const CodePageTable* Find(std::uint32_t codePage, Make make) {
    {
      const std::shared_lock lock(mutex_);
      const auto found = tables_.find(codePage);
      if (found != tables_.end()) return found->second.get();
    }
    const std::unique_lock lock(mutex_);
    const auto [entry, isNew] = tables_.try_emplace(codePage);
    if (isNew) entry->second = make();
    return entry->second.get();
  }

private:
  std::shared_mutex mutex_;
  std::map<std::uint32_t, std::unique_ptr<const CodePageTable>> tables_;
};

const CodePageTable* ConverterTable(const CodePageConverter& converter) {
  static TableCache& cache = *new TableCache;
  return cache.Find(converter.codePage, [&converter] { return ReadCodePageTable(converter); });
}

/// Gives "?" where ICU does not have the page, too.
char16_t DecodePair(std::uint32_t codePage, unsigned lead, unsigned trail) {
  const CodePageTable* table = ConverterTable(FindConverter(codePage));
  if (table == nullptr) return u'?';
  const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
  wchar_t units[2];
  const CodePageTable::Progress progress =
      table->Decode(std::string_view(bytes, 2), Input::Complete, units);
  return progress.written == 1 ? static_cast<char16_t>(units[0]) : u'?';
}

std::uint16_t EncodePair(std::uint32_t codePage, char16_t unit) {
  const CodePageTable* table = ConverterTable(FindConverter(codePage));
  return table == nullptr ? std::uint16_t{'?'} : table->Encoding(unit);
}

constexpr PairConverter PAIRS{DecodePair, EncodePair};

std::unique_ptr<const CodePageTable> MakeEucTable(const EucPage& page) {
  if (ConverterTable(FindConverter(page.basePage)) == nullptr) return nullptr;
  return BuildEucTable(page, [&page](unsigned lead, unsigned trail) {
    return DecodePair(page.basePage, lead, trail);
  });
}

const CodePageTable* EucTable(const EucPage& page) {
  static TableCache& cache = *new TableCache;
  return cache.Find(page.codePage, [&page] { return MakeEucTable(page); });
}

/// Who converts a page; at most one member is set.
struct Server {
  const CodePageTable* table = nullptr;
  const char* stream = nullptr;

  bool Serves() const { return table != nullptr || stream != nullptr; }
};

Server ServerOf(std::uint32_t codePage) {
  if (const CodePageTable* table = LibraryCodePageTable(codePage)) return {table, nullptr};
  if (const EucPage* page = FindEucPage(codePage)) return {EucTable(*page), nullptr};
  const CodePageConverter converter = FindConverter(codePage);
  if (converter.source == CodePageSource::None) return {};
  if (converter.source == CodePageSource::IcuStream) return {nullptr, converter.name};
  return {ConverterTable(converter), nullptr};
}

/// Returns true when a page can stand behind the numbers of the active pages.
bool CanBeActive(std::uint32_t page) {
  return page == UTF8_PAGE || (!IsUtfPage(page) && ServerOf(page).Serves());
}

/// Returns the page that the environment variable names, `fallback` when it names none that can be
/// active.
std::uint32_t PageFromEnvironment(const char* variable, std::uint32_t fallback) {
  const char* text = std::getenv(variable);
  if (text == nullptr) return fallback;
  const std::string_view number(text);
  std::uint32_t page = 0;
  const char* end = number.data() + number.size();
  const auto parsed = std::from_chars(number.data(), end, page);
  if (parsed.ec != std::errc() || parsed.ptr != end) return fallback;
  return CanBeActive(page) ? page : fallback;
}

/// The page behind the number 0. The environment is read once.
std::atomic<std::uint32_t>& AnsiPage() {
  static std::atomic<std::uint32_t> page = PageFromEnvironment("SHARED_ACP", DEFAULT_ANSI_PAGE);
  return page;
}

/// Returns the page behind the numbers of the active pages.
std::uint32_t ResolvePage(std::uint32_t codePage) {
  if (codePage > OEM_PAGE) return codePage;
  if (codePage == ANSI_PAGE) return AnsiPage().load(std::memory_order_relaxed);
  static const std::uint32_t oem = PageFromEnvironment("SHARED_OEMCP", DEFAULT_OEM_PAGE);
  return oem;
}

}  // namespace

std::uint32_t ActualCodePage(std::uint32_t codePage) {
  return ResolvePage(codePage);
}

bool SetActiveCodePage(std::uint32_t codePage) {
  if (!CanBeActive(codePage)) return false;
  AnsiPage().store(codePage, std::memory_order_relaxed);
  return true;
}

bool IsCodePageServed(std::uint32_t codePage) {
  const std::uint32_t page = ResolvePage(codePage);
  return IsUtfPage(page) || page == UTF7_PAGE || IsShiftedPage(page) || ServerOf(page).Serves();
}

bool AppendWide(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  const std::uint32_t page = ResolvePage(codePage);
  if (IsUtfPage(page)) {
    AppendWideFromUtf(page, bytes, wide);
    return true;
  }
  if (page == UTF7_PAGE) {
    AppendWideFromUtf7(bytes, wide);
    return true;
  }
  if (IsShiftedPage(page)) {
    AppendWideFromShifted(page, bytes, wide, PAIRS);
    return true;
  }
  const Server server = ServerOf(page);
  if (server.stream != nullptr) return AppendWideByStream(server.stream, bytes, wide);
  if (server.table == nullptr) return false;
  server.table->AppendDecoded(bytes, wide);
  return true;
}

bool AppendNarrow(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  const std::uint32_t page = ResolvePage(codePage);
  if (IsUtfPage(page)) {
    AppendNarrowToUtf(page, text, narrow);
    return true;
  }
  if (page == UTF7_PAGE) {
    AppendNarrowToUtf7(text, narrow);
    return true;
  }
  if (IsShiftedPage(page)) {
    AppendNarrowToShifted(page, text, narrow, PAIRS);
    return true;
  }
  const Server server = ServerOf(page);
  if (server.stream != nullptr) return AppendNarrowByStream(server.stream, text, narrow);
  if (server.table == nullptr) return false;
  server.table->AppendEncoded(text, narrow);
  return true;
}

}  // namespace shr::platform
