// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Wide paths as the bytes that the system's calls take: UTF-8, whatever the locale.

#pragma once

#include <string>
#include <string_view>

#include "shared/text/GString.h"
#include "shared/text/Utf.h"

namespace shr::platform {

/// Returns the UTF-8 form of `path`.
inline std::string ToNativePath(std::wstring_view path) {
  std::string native(path.size() * UTF8_BYTES_PER_UNIT, '\0');
  native.resize(WideToUtf8(path, native.data()));
  return native;
}

/// Returns the wide form of a path of the system. Bytes that are not UTF-8 become U+FFFD.
inline GString FromNativePath(std::string_view native) {
  return GString::FromUtf8(native);
}

/// Returns true when `path` can be handed to the system as it stands: not empty, no zero unit in
/// it.
inline bool IsUsablePath(const GString& path) {
  return !path.empty() && path.find(L'\0') == GString::npos;
}

/// Returns the path to which opening `path` leads: all links resolved, also one whose target is
/// missing, for which a file would then be made. A path that leads nowhere is returned as it is.
std::string ResolveNativeLinks(const std::string& path);

}  // namespace shr::platform
