// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The facts come from the kernel's text files below /proc, from uname and from the dynamic linker.

#include "shared/platform/MachineReport.h"

#include <fenv.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "shared/platform/Paths.h"
#include "shared/platform/posix/NativePath.h"

namespace shr::platform {
namespace {

constexpr std::uint64_t BYTES_PER_KILOBYTE = 1024;

/// The numbers that Windows gives to this kind of processor.
#if defined(__x86_64__)
constexpr std::uint32_t PROCESSOR_ARCHITECTURE_NUMBER = 9;
constexpr std::uint32_t PROCESSOR_TYPE_NUMBER = 8664;
#else
constexpr std::uint32_t PROCESSOR_ARCHITECTURE_NUMBER = 0xFFFF;
constexpr std::uint32_t PROCESSOR_TYPE_NUMBER = 0;
#endif

std::string TrimBlanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\"") - first + 1);
}

/// Reads the first "key separator value" line of each key.
std::map<std::string, std::string> ReadFacts(const char* path, char separator) {
  std::map<std::string, std::string> facts;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t mark = line.find(separator);
    if (mark == std::string::npos) continue;
    std::string value = TrimBlanks(line.substr(mark + 1));
    if (!value.empty() && value.front() == '"') value.erase(0, 1);
    facts.emplace(TrimBlanks(line.substr(0, mark)), value);
  }
  return facts;
}

GString EnvironmentOr(const char* name, const GString& fallback) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? FromNativePath(value) : fallback;
}

std::uint64_t ReadKilobytes(const std::map<std::string, std::string>& facts, const char* key) {
  const auto found = facts.find(key);
  if (found == facts.end()) return 0;
  return std::strtoull(found->second.c_str(), nullptr, 10) * BYTES_PER_KILOBYTE;
}

int AppendModule(dl_phdr_info* info, std::size_t /*size*/, void* modules) {
  ModuleFacts facts;
  const std::string name = info->dlpi_name;
  facts.path = name.empty() ? GetModulePath(nullptr) : FromNativePath(name);
  facts.version = L"-";
  struct stat status = {};
  if (stat(ToNativePath(facts.path).c_str(), &status) == 0) {
    facts.fileTime = status.st_mtime;
    facts.size = status.st_size;
  }
  static_cast<std::vector<ModuleFacts>*>(modules)->push_back(std::move(facts));
  return 0;
}

}  // namespace

OperatingSystemFacts GetOperatingSystemFacts() {
  OperatingSystemFacts facts;
  const auto release = ReadFacts("/etc/os-release", '=');
  const auto pretty = release.find("PRETTY_NAME");
  utsname kernel = {};
  if (uname(&kernel) == 0) {
    facts.name = FromNativePath(std::string(kernel.sysname) + " " + kernel.release);
    if (pretty != release.end()) facts.name = FromNativePath(pretty->second) + L", " + facts.name;
  }
  facts.windowsFolder = NOT_AVAILABLE;
  facts.systemFolder = NOT_AVAILABLE;
  facts.temporaryFolder = EnvironmentOr("TMPDIR", L"/tmp");
  const GString home = EnvironmentOr("HOME", L"");
  facts.applicationDataFolder =
      EnvironmentOr("XDG_CONFIG_HOME", home.empty() ? GString(NOT_AVAILABLE) : home + L"/.config");
  return facts;
}

std::optional<VideoFacts> GetVideoFacts() {
  return std::nullopt;
}

ProcessorFacts GetProcessorFacts() {
  const auto facts = ReadFacts("/proc/cpuinfo", ':');
  const auto get = [&facts](const char* key) {
    const auto found = facts.find(key);
    return found == facts.end() ? GString(NOT_AVAILABLE) : FromNativePath(found->second);
  };
  ProcessorFacts result;
  result.vendor = get("vendor_id");
  result.name = get("model name");
  result.identifier =
      L"Family " + get("cpu family") + L" Model " + get("model") + L" Stepping " + get("stepping");
  result.oemId = PROCESSOR_ARCHITECTURE_NUMBER;
  const long online = sysconf(_SC_NPROCESSORS_ONLN);
  result.count = online > 0 ? static_cast<std::uint32_t>(online) : 1;
  result.type = PROCESSOR_TYPE_NUMBER;
  result.activeMask = result.count >= 32 ? 0xFFFFFFFFu : (1u << result.count) - 1;
  return result;
}

std::uint32_t GetFloatingPointControlWord() {
#if defined(__x86_64__)
  fenv_t environment = {};
  fegetenv(&environment);
  return environment.__control_word;
#else
  return 0;
#endif
}

std::optional<MemoryFacts> GetMemoryFacts() {
  const auto facts = ReadFacts("/proc/meminfo", ':');
  MemoryFacts result;
  result.physical = ReadKilobytes(facts, "MemTotal");
  if (result.physical == 0) return std::nullopt;
  result.physicalFree = std::min(ReadKilobytes(facts, "MemAvailable"), result.physical);
  result.percentInUse =
      static_cast<std::uint32_t>(100 * (result.physical - result.physicalFree) / result.physical);
  result.pagingFile = result.physical + ReadKilobytes(facts, "SwapTotal");
  result.pagingFileFree = result.physicalFree + ReadKilobytes(facts, "SwapFree");
  result.virtualSize = ReadKilobytes(facts, "VmallocTotal");
  const std::uint64_t used = ReadKilobytes(ReadFacts("/proc/self/status", ':'), "VmSize");
  result.virtualFree = result.virtualSize - std::min(used, result.virtualSize);
  return result;
}

std::vector<ModuleFacts> GetModuleFacts() {
  std::vector<ModuleFacts> modules;
  dl_iterate_phdr(AppendModule, &modules);
  return modules;
}

}  // namespace shr::platform
