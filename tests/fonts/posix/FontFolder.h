// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A machine with the fonts of one folder alone, for tests that install fonts.

#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "shared/fonts/SystemFaceInfo.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::test {

inline const char* const SANS = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
inline const char* const MONO = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";

/// Sets an environment variable for the time of a block.
class Variable {
public:
  Variable(const char* name, const std::string& value) : name_(name) {
    const char* const before = getenv(name);
    had_ = before != nullptr;
    if (had_) before_ = before;
    setenv(name, value.c_str(), 1);
  }
  ~Variable() { had_ ? setenv(name_, before_.c_str(), 1) : unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

private:
  const char* name_;
  std::string before_;
  bool had_ = false;
};

/// A machine with the fonts of one folder alone, and a home of its own.
class FontFolder : public testing::Test {
protected:
  FontFolder()
      : configuration_("FONTCONFIG_FILE", WriteConfiguration("")),
        cacheHome_("XDG_CACHE_HOME", folder_.Path(L"cache").ToUtf8()) {
    if (!std::filesystem::exists(SANS)) throw std::runtime_error("install fonts-dejavu-core");
  }

  std::string WriteConfiguration(const std::string& rules) {
    const GString file = folder_.Path(L"fonts.conf");
    std::filesystem::create_directory(test::ToFilesystemPath(folder_.Path(L"fonts")));
    test::WriteBytes(file, "<fontconfig><dir>" + folder_.Path(L"fonts").ToUtf8() +
                               "</dir><cachedir>" + folder_.Path(L"fc").ToUtf8() + "</cachedir>" +
                               rules + "</fontconfig>");
    return file.ToUtf8();
  }
  GString FontPath(const std::string& name) const {
    return folder_.Path(L"fonts") + L"/" + GString::FromUtf8(name);
  }
  void Install(const char* file, const std::string& name) {
    test::WriteBytes(FontPath(name), test::ReadBytes(GString::FromUtf8(file)));
  }
  static std::vector<GString> Families() {
    std::vector<GString> names;
    for (const platform::FontDescription& font : platform::ListFonts().fonts) {
      names.push_back(font.family);
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  GString CacheFile() const { return folder_.Path(L"cache") + L"/shared/faces-1"; }

  /// Collects the faces of the machine itself again, when its environment is back.
  struct Restorer {
    ~Restorer() { CSystemFaceInfo::Instance().Refresh(); }
  };

  Restorer restorer_;
  test::TemporaryFolder folder_;
  Variable configuration_;
  Variable cacheHome_;
};

}  // namespace shr::test
