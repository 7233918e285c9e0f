// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The configuration blocks and the crash report of the logger. The facts come from
// shared/platform/MachineReport.h; this file only words them.

#include <ctime>

#include "shared/diagnostics/Logger.h"
#include "shared/platform/Clock.h"
#include "shared/platform/MachineReport.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

struct ExceptionName {
  std::uint32_t code;
  const wchar_t* name;
};

/// The operating system's exception codes and the names that crash reports give them.
constexpr ExceptionName EXCEPTION_NAMES[] = {
    {0xC0000005, L"Access Violation"},
    {0x80000002, L"Misalignment"},
    {0x80000003, L"Breakpoint"},
    {0x80000004, L"SingleStep"},
    {0xC000008C, L"Bounds Exceeded"},
    {0xC000008D, L"Float: Denormal Operand"},
    {0xC000008E, L"Float: Division by Zero"},
    {0xC000008F, L"Float: Inexact Result"},
    {0xC0000090, L"Float: Invalid Operation"},
    {0xC0000091, L"Float: Overflow"},
    {0xC0000092, L"Float: StackCheck"},
    {0xC0000093, L"Float: Undeflow"},
    {0xC0000094, L"Integer Division by Zero"},
    {0xC0000095, L"Integer: Overflow"},
    {0xC0000096, L"Privileged Instruction Encountered"},
    {0xC0000006, L"Paging error"},
    {0xC000001D, L"Illegal Instruction Encountered"},
    {0xC0000025, L"Noncontinuable Exception"},
    {0xC00000FD, L"Stack Overflow"},
    {0xC0000026, L"Invalid Disposition"},
};

constexpr std::uint32_t ACCESS_VIOLATION_CODE = 0xC0000005;

const wchar_t* GetExceptionName(std::uint32_t code) {
  for (const ExceptionName& entry : EXCEPTION_NAMES) {
    if (entry.code == code) return entry.name;
  }
  return L"Unknown";
}

unsigned int ToMegabytes(std::uint64_t bytes) {
  return static_cast<unsigned int>(bytes >> 20);
}

GString FormatFileTime(std::time_t moment) {
  if (moment == 0) return L"-";
  const std::tm local = platform::ToLocalTime(moment);
  GString text;
  text.FormatString(L"%04d-%02d-%02d %02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                    local.tm_mday, local.tm_hour, local.tm_min);
  return text;
}

const void* ToAddress(std::uintptr_t value) {
  return reinterpret_cast<const void*>(value);
}

}  // namespace

void CLogger::Time() {
  const std::tm now = platform::ToLocalTime(std::time(nullptr));
  GString time;
  GString date;
  time.FormatString(L"%02d:%02d:%02d", now.tm_hour, now.tm_min, now.tm_sec);
  date.FormatString(L"%02d/%02d/%02d", now.tm_mon + 1, now.tm_mday, now.tm_year % 100);
  SendVA(LogInfo, L"Current time is %s on %s", time.c_str(), date.c_str());
}

void CLogger::OSVersion() {
  if (!IsEnabled()) return;
  const platform::OperatingSystemFacts facts = platform::GetOperatingSystemFacts();
  Separator(LogInfo, L"Operating System");
  SendVA(LogInfo, L"Operating system is %s", facts.name.empty() ? L"Unknown" : facts.name.c_str());
  SendVA(LogInfo, L"Windows directory = '%s'", facts.windowsFolder.c_str());
  SendVA(LogInfo, L"System directory = '%s'", facts.systemFolder.c_str());
  SendVA(LogInfo, L"Temp directory = '%s'", facts.temporaryFolder.c_str());
  SendVA(LogInfo, L"AppData directory = '%s'", facts.applicationDataFolder.c_str());
}

void CLogger::VideoInfo() {
  if (!IsEnabled()) return;
  const std::optional<platform::VideoFacts> facts = platform::GetVideoFacts();
  Separator(LogInfo, L"Video Configuration");
  if (!facts) {
    Send(LogInfo, L"*** No display device ***");
    return;
  }
  SendVA(LogInfo, L"Display name = %s", facts->displayName.c_str());
  SendVA(LogInfo, L"Number of monitors = %d", facts->monitorCount);
  SendVA(LogInfo, L"Screen resolution = %d x %d", facts->width, facts->height);
  SendVA(LogInfo, L"Virtual screen resolution = %d x %d", facts->virtualWidth,
         facts->virtualHeight);
  SendVA(LogInfo, L"Driver version = %d", facts->driverVersion);
  SendVA(LogInfo, L"Technology = %s", facts->technology.c_str());
  SendVA(LogInfo, L"LogPixelsX = %d", facts->logicalPixelsX);
  SendVA(LogInfo, L"LogPixelsY = %d", facts->logicalPixelsY);
  SendVA(LogInfo, L"Bits per pixel = %d", facts->bitsPerPixel);
  SendVA(LogInfo, L"Color planes = %d", facts->colorPlanes);
  SendVA(LogInfo, L"Number of colors = %d", facts->colorCount);
  SendVA(LogInfo, L"Palette size = %d", facts->paletteSize);
  SendVA(LogInfo, L"Number of reserved palette entries = %d", facts->reservedPaletteEntries);
  SendVA(LogInfo, L"ColorRes = %d", facts->colorResolution);
  for (const platform::CapabilityFacts& group : facts->capabilities) {
    GString line = group.label + L" =";
    for (const GString& name : group.names) line += L" " + name;
    Send(LogInfo, line);
  }
}

void CLogger::Processor() {
  if (!IsEnabled()) return;
  const platform::ProcessorFacts facts = platform::GetProcessorFacts();
  Separator(LogInfo, L"Processor Configuration");
  SendVA(LogInfo, L"Vendor identifier = %s", facts.vendor.c_str());
  SendVA(LogInfo, L"Processor name string = %s", facts.name.c_str());
  SendVA(LogInfo, L"Identifier = %s", facts.identifier.c_str());
  SendVA(LogInfo, L"OEM ID = %u", facts.oemId);
  SendVA(LogInfo, L"Number of processors = %u", facts.count);
  SendVA(LogInfo, L"Processor type = %u", facts.type);
  SendVA(LogInfo, L"Active processor mask = %08x", facts.activeMask);
}

void CLogger::Coprocessor() {
  if (!IsEnabled()) return;
  Separator(LogInfo, L"Coprocessor Configuration");
  SendVA(LogInfo, L"Floating point control word = %08x", platform::GetFloatingPointControlWord());
}

void CLogger::Memory() {
  if (!IsEnabled()) return;
  const std::optional<platform::MemoryFacts> facts = platform::GetMemoryFacts();
  Separator(LogInfo, L"Memory Configuration");
  if (!facts) {
    Send(LogInfo, L"*** Error reading memory status ***");
    return;
  }
  SendVA(LogInfo, L"Memory in use = %u%%", facts->percentInUse);
  SendVA(LogInfo, L"Physical memory = %u MB", ToMegabytes(facts->physical));
  SendVA(LogInfo, L"Free memory = %u MB", ToMegabytes(facts->physicalFree));
  SendVA(LogInfo, L"Paging file size = %u MB", ToMegabytes(facts->pagingFile));
  SendVA(LogInfo, L"Paging file free = %u MB", ToMegabytes(facts->pagingFileFree));
  SendVA(LogInfo, L"Virtual memory size = %u MB", ToMegabytes(facts->virtualSize));
  SendVA(LogInfo, L"Virtual memory free = %u MB", ToMegabytes(facts->virtualFree));
}

void CLogger::EnumModules() {
  if (!IsEnabled()) return;
  Separator(LogInfo, L"Loaded Modules (path, version, time, size)");
  for (const platform::ModuleFacts& module : platform::GetModuleFacts()) {
    SendVA(LogInfo, L"%-40s %-12s %-15s %I64d", module.path.c_str(), module.version.c_str(),
           FormatFileTime(module.fileTime).c_str(), static_cast<long long>(module.size));
  }
}

void CLogger::LogAllConfigInfo() {
  Time();
  OSVersion();
  VideoInfo();
  Processor();
  Coprocessor();
  Memory();
  EnumModules();
}

void CLogger::Exception(const _EXCEPTION_POINTERS* record) {
  if (!IsEnabled() || record == nullptr || record->ExceptionRecord == nullptr) return;
  const EXCEPTION_RECORD& exception = *record->ExceptionRecord;
  const auto code = static_cast<std::uint32_t>(exception.ExceptionCode);
  Separator(LogInfo, L"Exception Info");
  SendVA(LogError, L"Code = %08x (%s)", code, GetExceptionName(code));
  if (code == ACCESS_VIOLATION_CODE) {
    SendVA(LogError, L"Attempt to %s at address %p",
           exception.ExceptionInformation[0] != 0 ? L"write" : L"read",
           ToAddress(static_cast<std::uintptr_t>(exception.ExceptionInformation[1])));
  }
  SendVA(LogError, L"Flags = %08x", static_cast<std::uint32_t>(exception.ExceptionFlags));
  SendVA(LogError, L"Address = %p", static_cast<const void*>(exception.ExceptionAddress));
  Separator(LogInfo, GString());
}

}  // namespace shr
