// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `SelectedFont`, a font selected into a device context of its own at the height of its em square,
/// where a unit of the device is a design unit and hinting changes nothing.
///
///     const SelectedFont font(description);
///     if (font.IsOpen()) GetGlyphOutlineW(font.GetDevice(), ...);
///
/// Threads: one thread an object.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "shared/platform/Fonts.h"
#include "shared/platform/WindowsTypes.h"

namespace shr::platform {

/// A device context without a device, for asking.
class ReferenceDevice {
public:
  ReferenceDevice() : dc_(CreateCompatibleDC(nullptr)) {}
  ~ReferenceDevice() {
    if (dc_ != nullptr) DeleteDC(dc_);
  }
  ReferenceDevice(const ReferenceDevice&) = delete;
  ReferenceDevice& operator=(const ReferenceDevice&) = delete;

  HDC Get() const { return dc_; }

private:
  HDC dc_;
};

/// Returns the description of an outline font of that family, or of a listed one, for GDI.
LOGFONTW LogicalFont(std::wstring_view family, long height);
LOGFONTW LogicalFont(const FontDescription& description, long height);

/// Looks a function of a loaded library up; false when it has none of that name.
template <typename Function>
bool FindFunction(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  return function != nullptr;
}

class SelectedFont {
public:
  explicit SelectedFont(const FontDescription& description);
  ~SelectedFont();
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;

  /// Returns false when the system did not give the font; nothing else may then be called.
  bool IsOpen() const { return em_ > 0; }

  HDC GetDevice() const { return device_.Get(); }
  /// Returns the design units of an em, as many as the units of the device.
  double GetEm() const { return em_; }
  const OUTLINETEXTMETRICW& GetMetrics() const {
    return *reinterpret_cast<const OUTLINETEXTMETRICW*>(metrics_.data());
  }

private:
  bool Select(LOGFONTW font, long height);
  bool ReadMetrics();

  ReferenceDevice device_;
  HFONT font_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::vector<std::uint64_t> metrics_;  // aligned for OUTLINETEXTMETRICW
  double em_ = 0;
};

}  // namespace shr::platform
