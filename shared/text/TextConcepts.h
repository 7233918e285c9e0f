// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The kinds of text that the library's templates take, told apart without including what they are
/// declared in.
///
///     template <WideText Text> void Draw(const Text& text);   // literals, wstring, view, GString

#pragma once

#include <string_view>
#include <type_traits>

namespace shr {

/// Everything a wide view is made of: wide literals and pointers, `std::wstring`,
/// `std::wstring_view`, `GString`. Not a null pointer.
template <typename T>
concept WideText = !std::is_null_pointer_v<T> && std::is_convertible_v<const T&, std::wstring_view>;

/// Classes among them.
template <typename T>
concept WideTextClass = std::is_class_v<T> && WideText<T>;

/// Classes that hold narrow text: `std::string`, `std::string_view`.
template <typename T>
concept NarrowTextClass =
    std::is_class_v<T> && !WideTextClass<T> && std::is_convertible_v<const T&, std::string_view>;

/// `std::filesystem::path`, known by its members so that only its users pay for its header.
template <typename T>
concept FilesystemPath = std::is_class_v<T> && requires(const T& path) {
  typename T::string_type;
  path.native();
  path.lexically_normal();
  path.root_directory();
};

}  // namespace shr
