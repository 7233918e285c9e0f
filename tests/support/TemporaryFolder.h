// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A folder of a test's own under the system's temporary folder, removed with its content
/// afterwards.
///
///     const test::TemporaryFolder folder;
///     const GString path = folder.Path(L"table.txt");
///     test::WriteBytes(path, "a,b\n");
///     EXPECT_EQ("a,b\n", test::ReadBytes(path));

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "shared/text/GString.h"
#include "shared/text/Utf.h"

namespace shr::test {

/// The standard's paths go through UTF-8, because their conversion of wide text depends on the
/// locale.
inline std::filesystem::path ToFilesystemPath(std::wstring_view path) {
  std::u8string utf8(path.size() * UTF8_BYTES_PER_UNIT, u8'\0');
  utf8.resize(WideToUtf8(path, reinterpret_cast<char*>(utf8.data())));
  return std::filesystem::path(utf8);
}

inline GString FromFilesystemPath(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  std::wstring wide(utf8.size(), L'\0');
  const std::string_view bytes(reinterpret_cast<const char*>(utf8.data()), utf8.size());
  wide.resize(Utf8ToWide(bytes, wide.data()));
  return GString(std::move(wide));
}

class TemporaryFolder {
public:
  TemporaryFolder() {
    std::random_device random;
    constexpr int ATTEMPTS = 100;
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
      folder_ = std::filesystem::temp_directory_path() / ("shared-" + std::to_string(random()));
      if (std::filesystem::create_directory(folder_)) return;
    }
    throw std::runtime_error("no temporary folder could be created");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Returns the folder without a separator behind it.
  GString Path() const { return FromFilesystemPath(folder_); }

  /// Returns the full path of `name` in the folder.
  GString Path(std::wstring_view name) const {
    return FromFilesystemPath(folder_ / ToFilesystemPath(name));
  }

  /// Returns the names in the folder, in no order.
  std::vector<GString> Names() const {
    std::vector<GString> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(FromFilesystemPath(entry.path().filename()));
    }
    return names;
  }

private:
  std::filesystem::path folder_;
};

/// Replaces a file's content without the library's own classes.
inline void WriteBytes(const GString& path, std::string_view bytes) {
  std::ofstream out(ToFilesystemPath(path), std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("a test file could not be written");
}

/// Returns a file's content; throws when it cannot be read.
inline std::string ReadBytes(const GString& path) {
  std::ifstream in(ToFilesystemPath(path), std::ios::binary);
  if (!in) throw std::runtime_error("a test file could not be read");
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline bool Exists(const GString& path) {
  return std::filesystem::exists(ToFilesystemPath(path));
}

}  // namespace shr::test
