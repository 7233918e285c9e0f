// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the platform tells about the machine and the process, for the configuration blocks of the
/// log. What a platform does not have is the text "not available", 0 or an absent value.
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Text of a fact that the platform does not have.
inline constexpr const wchar_t* NOT_AVAILABLE = L"not available";

struct OperatingSystemFacts {
  GString name;  ///< empty when it cannot be named
  GString windowsFolder;
  GString systemFolder;
  GString temporaryFolder;
  GString applicationDataFolder;
};

/// A group of capability flags of the screen and the names of those that are set.
struct CapabilityFacts {
  GString label;
  std::vector<GString> names;
};

struct VideoFacts {
  GString displayName;
  int monitorCount = 0;
  int width = 0;
  int height = 0;
  int virtualWidth = 0;
  int virtualHeight = 0;
  int driverVersion = 0;
  GString technology;
  int logicalPixelsX = 0;
  int logicalPixelsY = 0;
  int bitsPerPixel = 0;
  int colorPlanes = 0;
  int colorCount = 0;
  int paletteSize = 0;
  int reservedPaletteEntries = 0;
  int colorResolution = 0;
  std::vector<CapabilityFacts> capabilities;
};

struct ProcessorFacts {
  GString vendor;
  GString name;
  GString identifier;
  std::uint32_t oemId = 0;
  std::uint32_t count = 0;
  std::uint32_t type = 0;
  std::uint32_t activeMask = 0;
};

/// Sizes in bytes, and the share in use in percent.
struct MemoryFacts {
  std::uint32_t percentInUse = 0;
  std::uint64_t physical = 0;
  std::uint64_t physicalFree = 0;
  std::uint64_t pagingFile = 0;
  std::uint64_t pagingFileFree = 0;
  std::uint64_t virtualSize = 0;
  std::uint64_t virtualFree = 0;
};

struct ModuleFacts {
  GString path;
  GString version;           ///< four numbers with points between, or "-"
  std::time_t fileTime = 0;  ///< of the last change, 0 when unknown
  std::int64_t size = 0;
};

SHARED_API OperatingSystemFacts GetOperatingSystemFacts();
/// Absent when the process has no screen.
SHARED_API std::optional<VideoFacts> GetVideoFacts();
SHARED_API ProcessorFacts GetProcessorFacts();
SHARED_API std::uint32_t GetFloatingPointControlWord();
/// Absent when the query fails.
SHARED_API std::optional<MemoryFacts> GetMemoryFacts();
SHARED_API std::vector<ModuleFacts> GetModuleFacts();

}  // namespace shr::platform
