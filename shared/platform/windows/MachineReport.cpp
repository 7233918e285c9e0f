// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/MachineReport.h"

#include <windows.h>

// psapi.h and the registry need the types of windows.h before them.
#include <float.h>
#include <psapi.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <string>

#include "shared/platform/Paths.h"

namespace shr::platform {
namespace {

constexpr const wchar_t* PROCESSOR_KEY = L"Hardware\\Description\\System\\CentralProcessor\\0";

/// Seconds between the epochs of file times and of the standard clock, in steps of 100 ns.
constexpr std::uint64_t EPOCH_DISTANCE = 116'444'736'000'000'000;
constexpr std::uint64_t STEPS_PER_SECOND = 10'000'000;

struct Flag {
  int value;
  const wchar_t* name;
};

constexpr Flag RASTER_FLAGS[] = {{RC_BITBLT, L"BITBLT"},
                                 {RC_BANDING, L"BANDING"},
                                 {RC_SCALING, L"SCALING"},
                                 {RC_BITMAP64, L"BITMAP64"},
                                 {RC_GDI20_OUTPUT, L"GDI20_OUTPUT"},
                                 {RC_DI_BITMAP, L"DI_BITMAP"},
                                 {RC_PALETTE, L"PALETTE"},
                                 {RC_DIBTODEV, L"DIBTODEV"},
                                 {RC_BIGFONT, L"BIGFONT"},
                                 {RC_STRETCHBLT, L"STRETCHBLT"},
                                 {RC_FLOODFILL, L"FLOODFILL"},
                                 {RC_STRETCHDIB, L"STRETCHDIB"},
                                 {RC_OP_DX_OUTPUT, L"OP_DX_OUTPUT"},
                                 {RC_DEVBITS, L"DEVBITS"}};
constexpr Flag SHADING_FLAGS[] = {{SB_CONST_ALPHA, L"CONST_ALPHA"},
                                  {SB_PIXEL_ALPHA, L"PIXEL_ALPHA"},
                                  {SB_PREMULT_ALPHA, L"PREMULT_ALPHA"},
                                  {SB_GRAD_RECT, L"GRAD_RECT"},
                                  {SB_GRAD_TRI, L"GRAD_TRI"}};
constexpr Flag CURVE_FLAGS[] = {{CC_CIRCLES, L"CIRCLES"},
                                {CC_PIE, L"PIE"},
                                {CC_CHORD, L"CHORD"},
                                {CC_ELLIPSES, L"ELLIPSES"},
                                {CC_WIDE, L"WIDE"},
                                {CC_STYLED, L"STYLED"},
                                {CC_WIDESTYLED, L"WIDESTYLED"},
                                {CC_INTERIORS, L"INTERIORS"},
                                {CC_ROUNDRECT, L"ROUNDRECT"}};
constexpr Flag LINE_FLAGS[] = {{LC_POLYLINE, L"POLYLINE"},     {LC_MARKER, L"MARKER"},
                               {LC_POLYMARKER, L"POLYMARKER"}, {LC_WIDE, L"WIDE"},
                               {LC_STYLED, L"STYLED"},         {LC_WIDESTYLED, L"WIDESTYLED"},
                               {LC_INTERIORS, L"INTERIORS"}};
constexpr Flag POLYGON_FLAGS[] = {{PC_POLYGON, L"POLYGON"},
                                  {PC_RECTANGLE, L"RECTANGLE"},
                                  {PC_WINDPOLYGON, L"WINDPOLYGON"},
                                  {PC_SCANLINE, L"SCANLINE"},
                                  {PC_WIDE, L"WIDE"},
                                  {PC_STYLED, L"STYLED"},
                                  {PC_WIDESTYLED, L"WIDESTYLED"},
                                  {PC_INTERIORS, L"INTERIORS"},
                                  {PC_POLYPOLYGON, L"POLYPOLYGON"},
                                  {PC_PATHS, L"PATHS"}};
constexpr Flag TEXT_FLAGS[] = {{TC_OP_CHARACTER, L"OP_CHARACTER"},
                               {TC_OP_STROKE, L"OP_STROKE"},
                               {TC_CP_STROKE, L"CP_STROKE"},
                               {TC_CR_90, L"CR_90"},
                               {TC_CR_ANY, L"CR_ANY"},
                               {TC_SF_X_YINDEP, L"SF_X_YINDEP"},
                               {TC_SA_DOUBLE, L"SA_DOUBLE"},
                               {TC_SA_INTEGER, L"SA_INTEGER"},
                               {TC_SA_CONTIN, L"SA_CONTIN"},
                               {TC_EA_DOUBLE, L"EA_DOUBLE"},
                               {TC_IA_ABLE, L"IA_ABLE"},
                               {TC_UA_ABLE, L"UA_ABLE"},
                               {TC_SO_ABLE, L"SO_ABLE"},
                               {TC_RA_ABLE, L"RA_ABLE"},
                               {TC_VA_ABLE, L"VA_ABLE"},
                               {TC_SCROLLBLT, L"SCROLLBLT"}};
constexpr Flag COLOR_FLAGS[] = {
    {CM_DEVICE_ICM, L"DEVICE_ICM"}, {CM_GAMMA_RAMP, L"GAMMA_RAMP"}, {CM_CMYK_COLOR, L"CMYK_COLOR"}};

struct FlagGroup {
  const wchar_t* label;
  int index;
  const Flag* first;
  const Flag* last;
};

const FlagGroup FLAG_GROUPS[] = {
    {L"Raster caps", RASTERCAPS, std::begin(RASTER_FLAGS), std::end(RASTER_FLAGS)},
    {L"Shading and Blending caps", SHADEBLENDCAPS, std::begin(SHADING_FLAGS),
     std::end(SHADING_FLAGS)},
    {L"Curve caps", CURVECAPS, std::begin(CURVE_FLAGS), std::end(CURVE_FLAGS)},
    {L"Line caps", LINECAPS, std::begin(LINE_FLAGS), std::end(LINE_FLAGS)},
    {L"Polygonal caps", POLYGONALCAPS, std::begin(POLYGON_FLAGS), std::end(POLYGON_FLAGS)},
    {L"Text caps", TEXTCAPS, std::begin(TEXT_FLAGS), std::end(TEXT_FLAGS)},
    {L"Color management caps", COLORMGMTCAPS, std::begin(COLOR_FLAGS), std::end(COLOR_FLAGS)}};

const wchar_t* GetTechnologyName(int technology) {
  switch (technology) {
    case DT_PLOTTER:
      return L"Vector plotter";
    case DT_RASDISPLAY:
      return L"Raster display";
    case DT_RASPRINTER:
      return L"Raster printer";
    case DT_RASCAMERA:
      return L"Raster camera";
    case DT_CHARSTREAM:
      return L"Character stream";
    case DT_METAFILE:
      return L"Metafile";
    case DT_DISPFILE:
      return L"Display file";
    default:
      return L"Unknown";
  }
}

std::vector<CapabilityFacts> GetCapabilities(HDC screen) {
  std::vector<CapabilityFacts> groups;
  for (const FlagGroup& group : FLAG_GROUPS) {
    const int set = GetDeviceCaps(screen, group.index);
    CapabilityFacts facts{group.label, {}};
    for (const Flag* flag = group.first; flag != group.last; ++flag) {
      if ((set & flag->value) != 0) facts.names.emplace_back(flag->name);
    }
    groups.push_back(std::move(facts));
  }
  return groups;
}

/// Calls one of the folder functions of the system, which take a buffer and return a length.
template <typename Query>
GString GetFolder(Query query) {
  std::array<wchar_t, MAX_PATH + 1> buffer = {};
  const UINT length = query(buffer.data(), static_cast<UINT>(buffer.size()));
  return length > 0 && length < buffer.size() ? GString(buffer.data()) : GString(NOT_AVAILABLE);
}

GString ReadProcessorText(const wchar_t* name) {
  std::array<wchar_t, 256> buffer = {};
  DWORD size = static_cast<DWORD>((buffer.size() - 1) * sizeof(wchar_t));
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, PROCESSOR_KEY, 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return NOT_AVAILABLE;
  }
  DWORD type = 0;
  const LONG result =
      RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &size);
  RegCloseKey(key);
  return result == ERROR_SUCCESS && type == REG_SZ ? GString(buffer.data())
                                                   : GString(NOT_AVAILABLE);
}

std::time_t ToTime(const FILETIME& time) {
  const std::uint64_t steps =
      static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  return static_cast<std::time_t>((steps - EPOCH_DISTANCE) / STEPS_PER_SECOND);
}

GString ReadFileVersion(const GString& path) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
  if (size == 0) return L"-";
  std::vector<unsigned char> block(size);
  void* value = nullptr;
  UINT length = 0;
  if (!GetFileVersionInfoW(path.c_str(), 0, size, block.data()) ||
      !VerQueryValueW(block.data(), L"\\", &value, &length) || length < sizeof(VS_FIXEDFILEINFO)) {
    return L"-";
  }
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(value);
  GString text;
  text.FormatString(L"%d.%d.%d.%d", HIWORD(info->dwFileVersionMS), LOWORD(info->dwFileVersionMS),
                    HIWORD(info->dwFileVersionLS), LOWORD(info->dwFileVersionLS));
  return text;
}

ModuleFacts DescribeModule(HMODULE module) {
  ModuleFacts facts;
  facts.path = GetModulePath(module);
  facts.version = ReadFileVersion(facts.path);
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (GetFileAttributesExW(facts.path.c_str(), GetFileExInfoStandard, &data)) {
    facts.fileTime = ToTime(data.ftLastWriteTime);
    facts.size = static_cast<std::int64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
  }
  return facts;
}

}  // namespace

OperatingSystemFacts GetOperatingSystemFacts() {
  OperatingSystemFacts facts;
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  if (GetVersionExW(&version)) {
    facts.name.FormatString(L"Windows %u.%u build %u %s",
                            static_cast<unsigned int>(version.dwMajorVersion),
                            static_cast<unsigned int>(version.dwMinorVersion),
                            static_cast<unsigned int>(version.dwBuildNumber), version.szCSDVersion);
    facts.name.Trim();
  }
  facts.windowsFolder = GetFolder(GetWindowsDirectoryW);
  facts.systemFolder = GetFolder(GetSystemDirectoryW);
  facts.temporaryFolder =
      GetFolder([](wchar_t* buffer, UINT size) { return GetTempPathW(size, buffer); });
  facts.applicationDataFolder = GetFolder(
      [](wchar_t* buffer, UINT size) { return GetEnvironmentVariableW(L"APPDATA", buffer, size); });
  return facts;
}

std::optional<VideoFacts> GetVideoFacts() {
  const HDC screen = GetDC(nullptr);
  if (screen == nullptr) return std::nullopt;
  VideoFacts facts;
  DISPLAY_DEVICEW device = {};
  device.cb = sizeof device;
  facts.displayName = EnumDisplayDevicesW(nullptr, 0, &device, 0) ? GString(device.DeviceString)
                                                                  : GString(NOT_AVAILABLE);
  facts.monitorCount = GetSystemMetrics(SM_CMONITORS);
  facts.width = GetSystemMetrics(SM_CXSCREEN);
  facts.height = GetSystemMetrics(SM_CYSCREEN);
  facts.virtualWidth = GetSystemMetrics(SM_CXVIRTUALSCREEN);
  facts.virtualHeight = GetSystemMetrics(SM_CYVIRTUALSCREEN);
  facts.driverVersion = GetDeviceCaps(screen, DRIVERVERSION);
  facts.technology = GetTechnologyName(GetDeviceCaps(screen, TECHNOLOGY));
  facts.logicalPixelsX = GetDeviceCaps(screen, LOGPIXELSX);
  facts.logicalPixelsY = GetDeviceCaps(screen, LOGPIXELSY);
  facts.bitsPerPixel = GetDeviceCaps(screen, BITSPIXEL);
  facts.colorPlanes = GetDeviceCaps(screen, PLANES);
  facts.colorCount = GetDeviceCaps(screen, NUMCOLORS);
  facts.paletteSize = GetDeviceCaps(screen, SIZEPALETTE);
  facts.reservedPaletteEntries = GetDeviceCaps(screen, NUMRESERVED);
  facts.colorResolution = GetDeviceCaps(screen, COLORRES);
  facts.capabilities = GetCapabilities(screen);
  ReleaseDC(nullptr, screen);
  return facts;
}

ProcessorFacts GetProcessorFacts() {
  SYSTEM_INFO info = {};
  GetSystemInfo(&info);
  ProcessorFacts facts;
  facts.vendor = ReadProcessorText(L"VendorIdentifier");
  facts.name = ReadProcessorText(L"ProcessorNameString");
  facts.identifier = ReadProcessorText(L"Identifier");
  facts.oemId = info.dwOemId;
  facts.count = info.dwNumberOfProcessors;
  facts.type = info.dwProcessorType;
  facts.activeMask = static_cast<std::uint32_t>(info.dwActiveProcessorMask);
  return facts;
}

std::uint32_t GetFloatingPointControlWord() {
  return _controlfp(0, 0);
}

std::optional<MemoryFacts> GetMemoryFacts() {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof status;
  if (!GlobalMemoryStatusEx(&status)) return std::nullopt;
  MemoryFacts facts;
  facts.percentInUse = status.dwMemoryLoad;
  facts.physical = status.ullTotalPhys;
  facts.physicalFree = status.ullAvailPhys;
  facts.pagingFile = status.ullTotalPageFile;
  facts.pagingFileFree = status.ullAvailPageFile;
  facts.virtualSize = status.ullTotalVirtual;
  facts.virtualFree = status.ullAvailVirtual;
  return facts;
}

std::vector<ModuleFacts> GetModuleFacts() {
  std::vector<HMODULE> handles(256);
  DWORD needed = 0;
  const auto bytes = [&handles] { return static_cast<DWORD>(handles.size() * sizeof(HMODULE)); };
  while (EnumProcessModules(GetCurrentProcess(), handles.data(), bytes(), &needed) &&
         needed > bytes()) {
    handles.resize(handles.size() * 2);
  }
  handles.resize(std::min<std::size_t>(needed / sizeof(HMODULE), handles.size()));
  std::vector<ModuleFacts> modules;
  modules.reserve(handles.size());
  for (const HMODULE module : handles) modules.push_back(DescribeModule(module));
  return modules;
}

}  // namespace shr::platform
