// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// ICU as a contender of the conversion from narrow to wide text. Where it is absent the functions
/// convert nothing, and their rows are not run.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace shr::bench {

/// UTF-8 to wide text by way of UTF-16. They return the number of units written to `out`, which has
/// room for one a byte. The first serves texts without supplementary characters only.
std::size_t IcuAndWidening(std::string_view bytes, wchar_t* out);
std::size_t IcuAndUtf32(std::string_view bytes, wchar_t* out);

/// A converter of a code page.
class IcuPage {
public:
  explicit IcuPage(const char* name);
  ~IcuPage();
  IcuPage(const IcuPage&) = delete;
  IcuPage& operator=(const IcuPage&) = delete;

  /// Converts into `units`, which has room for all; returns their number.
  std::size_t Convert(std::string_view bytes, std::u16string& units);

private:
  void* converter_;
};

}  // namespace shr::bench
