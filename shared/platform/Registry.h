// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Keys and values of the registry: the system's own on Windows, elsewhere a file per root under
/// the user's configuration folder that behaves alike.
///
/// For settings as text use shared/commands/RegParamList.h. The files are described in
/// docs/registry-store.md. They are in the folder that the environment variable
/// SHARED_REGISTRY_DIR names, else in $XDG_CONFIG_HOME/shared or ~/.config/shared.
///
///     platform::RegistryKey key;
///     if (key.Open(HKEY_CURRENT_USER, L"Software\\Demo", platform::RegistryAccess::Read) ==
///         platform::RegistryStatus::Success) {
///       platform::RegistryValue value;
///       key.Query(L"Depth", value);
///     }
///
/// Threads: one thread an object; objects on the same key may be used on several threads and in
/// several processes, where each operation happens whole or not at all and none is lost.

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "shared/Export.h"
#include "shared/text/GString.h"

struct HKEY__;

namespace shr::platform {

/// How an operation ended: the system's error codes of Windows, of which any may occur there.
enum class RegistryStatus : std::uint32_t {
  Success = 0,
  NotFound = 2,           ///< no such key or value
  AccessDenied = 5,       ///< opened for reading only, has subkeys, or not permitted
  InvalidHandle = 6,      ///< not open, or the root is none
  InvalidParameter = 87,  ///< a name is too long
  BadPath = 161,          ///< the path begins with a backslash
  Damaged = 1015,         ///< the file of the root is damaged
  IoFailed = 1016,        ///< the file of the root could not be read or written
  KeyDeleted = 1018,      ///< the key is gone since it was opened
  UnknownVersion = 1306,  ///< the file of the root is of another version of the library
};

enum class RegistryAccess { Read, ReadWrite };

/// Type of a value; any other number may be stored too.
enum class RegistryType : std::uint32_t {
  None = 0,
  Text = 1,            ///< UTF-16LE, with or without a terminating zero
  ExpandableText = 2,  ///< the same with names of environment variables in it
  Binary = 3,
  Number32 = 4,   ///< little endian
  TextList = 7,   ///< UTF-16LE texts, each with its terminating zero, and one more zero
  Number64 = 11,  ///< little endian
};

/// Content of a value: its bytes are stored and returned exactly as they are.
struct RegistryValue {
  RegistryType type = RegistryType::None;
  std::string bytes;

  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

/// An open key.
///
/// Paths separate keys by backslashes; a trailing one and doubled ones are ignored, and the empty
/// path is the root itself. Names of keys (at most 255 units each) and values (at most 16,383)
/// match in any letter case and keep their first spelling; they end at their first zero unit. The
/// empty name is the key's default value.
class SHARED_API RegistryKey {
public:
  RegistryKey();
  RegistryKey(RegistryKey&& other) noexcept;
  RegistryKey& operator=(RegistryKey&& other) noexcept;
  ~RegistryKey();

  /// Opens the key at `path` below `root`, one of the HKEY_ constants of
  /// shared/platform/WindowsTypes.h; on Windows any open key will do. An open key is closed first.
  RegistryStatus Open(HKEY__* root, const GString& path, RegistryAccess access);

  /// Opens the key for reading and writing, making it and the keys above it where they are missing.
  RegistryStatus Create(HKEY__* root, const GString& path);

  void Close();

  /// Reads a value. On failure `value` is unchanged.
  RegistryStatus Query(const GString& name, RegistryValue& value) const;

  /// Stores a value, replacing one of any type.
  RegistryStatus Set(const GString& name, const RegistryValue& value);

  RegistryStatus RemoveValue(const GString& name);

  /// Deletes the key at `path` below this one; one that has subkeys itself is refused. The empty
  /// path means this key.
  RegistryStatus RemoveKey(const GString& path);

private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Returns a sentence on the calling thread's last operation that failed: the system's text on
/// Windows, elsewhere one that names the file and, when it was damaged, what became of it.
SHARED_API GString RegistryErrorText();

}  // namespace shr::platform
