// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One root of the registry in memory, and its file format (docs/registry-store.md).
///
/// Knows nothing of files; that is shared/platform/posix/RegistryFile.h. Threads: const calls may
/// run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "shared/Export.h"
#include "shared/platform/Registry.h"

namespace shr::platform {

/// The keys of a root by their whole paths, and their values. Names are UTF-16.
class SHARED_API RegistryStore {
public:
  /// Length of the first line of a file, the line end included.
  static constexpr std::size_t HEADER_SIZE = 61;

  enum class ReadResult { Ok, Damaged, UnknownVersion };

  /// Where and why a file could not be read.
  struct Fault {
    std::size_t line = 0;  ///< from 1; 0 when the file as a whole is concerned
    const char* reason = "";
  };

  /// Brings a path into the form that the other functions take: no doubled or trailing separators.
  /// Errors: `BadPath` when it begins with one, `InvalidParameter` when a key's name is too long or
  /// the path has too many keys.
  static RegistryStatus NormalizePath(const GString& path, std::u16string& normalized);
  /// Returns a name up to its first zero unit.
  static std::u16string ToName(const GString& name);

  bool HasKey(std::u16string_view path) const;
  /// Makes the key and those above it; returns false when it was there.
  bool CreateKey(std::u16string_view path);
  /// Errors: `NotFound`; `AccessDenied` when it has subkeys or is the root.
  RegistryStatus RemoveKey(std::u16string_view path);

  /// Returns the value, or null. Valid until the next change. `KeyDeleted` and `NotFound` tell a
  /// missing key from a missing value.
  RegistryStatus Find(std::u16string_view path, std::u16string_view name,
                      const RegistryValue*& value) const;
  /// Errors: `KeyDeleted`; `InvalidParameter` when the name is too long.
  RegistryStatus Set(std::u16string_view path, const std::u16string& name,
                     const RegistryValue& value);
  /// Errors: `KeyDeleted`, `NotFound`.
  RegistryStatus RemoveValue(std::u16string_view path, std::u16string_view name);

  /// Returns the file's bytes. The same content and serial give the same bytes.
  std::string Write(std::uint64_t serial) const;

  /// Checks the first line of a file of `fileSize` bytes. `header` may be shorter than that line.
  static ReadResult CheckHeader(std::string_view header, std::uint64_t fileSize, Fault& fault);

  /// Replaces the content by that of a file. On failure the store is empty and `fault` set.
  /// Cost: linear in the file; nothing is allocated beyond its size times a constant.
  ReadResult Read(std::string_view file, std::uint64_t& serial, Fault& fault);

  /// Replaces the content by what stands behind the first line of a file; as `Read` otherwise.
  ReadResult ReadBody(std::string_view body, Fault& fault);

private:
  struct NamedValue {
    std::u16string name;
    RegistryValue value;
  };
  struct Key {
    std::u16string path;  ///< as spelled first
    std::map<std::u16string, NamedValue, std::less<>> values;
  };

  const Key* FindKey(std::u16string_view path) const;
  Key* FindKey(std::u16string_view path);

  /// By the folded path. The root itself is always there and has the empty path.
  std::map<std::u16string, Key, std::less<>> keys_ = {{std::u16string(), Key()}};

  friend class RegistryStoreReader;
};

}  // namespace shr::platform
