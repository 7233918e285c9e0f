// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `FontConfiguration`, what Fontconfig knew of the installed fonts when they were last listed.
///
/// The library holds a configuration of its own, so that it sees what was installed since and does
/// not meddle with the one of the program. Threads: `FontConfiguration::GetMutex` is held around
/// every use.

#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "shared/platform/posix/FontLibraries.h"

namespace shr::platform {

class FontConfiguration {
public:
  static std::mutex& GetMutex();
  /// Returns the configuration of the process. It goes at the end of the process at last:
  /// Fontconfig's pointers are offsets, which leak checkers do not follow.
  static FontConfiguration& Get();

  ~FontConfiguration() { Replace(nullptr); }
  FontConfiguration(const FontConfiguration&) = delete;
  FontConfiguration& operator=(const FontConfiguration&) = delete;

  /// Returns the configuration, null before the first listing.
  FcConfig* GetConfig() const { return held_; }
  /// Takes another configuration over and gives the one before back.
  void Replace(FcConfig* next);

  /// Returns what Fontconfig says of the font at `index` of a file; null when it knows none.
  const FcPattern* FindPattern(const std::string& file, int index);

private:
  FontConfiguration() = default;
  void CollectPatterns();

  FcConfig* held_ = nullptr;
  std::map<std::pair<std::string, int>, const FcPattern*> patterns_;
};

/// Return what a pattern says; null or 0 where it says nothing.
const char* TextOf(const FcPattern* pattern, const char* object);
int NumberOf(const FcPattern* pattern, const char* object);

}  // namespace shr::platform
