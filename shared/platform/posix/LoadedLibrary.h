// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `LoadedLibrary`, a shared library that is loaded while the program runs and stays loaded.
///
///     LoadedLibrary library("libfreetype.so.6");
///     library.Find("FT_Done_Face", freeType.FT_Done_Face);
///     const bool isUsable = library.IsComplete();
///
/// Threads: one thread an object.

#pragma once

#include <dlfcn.h>

namespace shr::platform {

/// Looks functions up and remembers whether all were there.
class LoadedLibrary {
public:
  explicit LoadedLibrary(const char* file) : library_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

  /// Sets `function`, to null when the library or the function is missing.
  template <typename Function>
  void Find(const char* name, Function& function) {
    void* const symbol = library_ == nullptr ? nullptr : dlsym(library_, name);
    function = reinterpret_cast<Function>(symbol);
    complete_ = complete_ && symbol != nullptr;
  }

  bool IsComplete() const { return complete_; }

private:
  void* library_;
  bool complete_ = true;
};

/// Returns the functions of a library, which `load` fills in by the first call, or null where it
/// could not; the answer is that of the first call.
template <typename Library>
const Library* LoadOnce(bool (*load)(Library&)) {
  static Library library = {};
  static const bool loaded = load(library);
  return loaded ? &library : nullptr;
}

}  // namespace shr::platform
