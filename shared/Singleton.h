// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Singleton`, the one lazily made instance of a class.
///
/// It stands beside Export.h, below every folder, because classes of all folders use it.
///
///     class CPalette : public Singleton<CPalette> {
///       friend class Singleton<CPalette>;
///       CPalette();   // runs on the first call of Instance()
///     };
///     CPalette::Instance().Add(...);
///
/// A class that the library exports must be one object for the library and all its users. Its
/// header therefore declares `template <> SHARED_API CPalette& Singleton<CPalette>::GetInstance();`
/// behind the class, and its source defines that function around a local static.
///
/// Threads: the first call makes the instance, also when several threads race to be first; what the
/// instance itself allows is its own affair.

#pragma once

namespace shr {

/// Access to the one instance of `T`. `T` may derive from it, which makes `T` impossible to copy.
/// Requires: `T` can be constructed without arguments by `Singleton<T>` (a friend of `T` when its
/// constructor is private).
template <typename T>
class Singleton {
public:
  Singleton(const Singleton&) = delete;
  Singleton& operator=(const Singleton&) = delete;

  /// Return the instance, which is made by the first call and destroyed when the process exits.
  /// Errors: what the constructor of `T` throws; the next call tries again.
  static T& GetInstance();
  static T& Instance() { return GetInstance(); }

protected:
  Singleton() = default;
  ~Singleton() = default;
};

// Implementation details follow.

template <typename T>
T& Singleton<T>::GetInstance() {
  static T instance;
  return instance;
}

}  // namespace shr
