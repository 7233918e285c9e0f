// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How a narrow stream writes wide text: in UTF-8, unless the stream was told otherwise.
///
/// For makers of streams whose text is in another form, such as markup. The setting belongs to the
/// stream object, so that it holds wherever the stream is passed as a `std::ostream`.
///
///     constexpr WideTextWriter QUOTED = {[](std::ostream& out, std::wstring_view text) { ... }};
///     SetWideTextWriter(stream, &QUOTED);
///     stream << GString(L"text");      // calls it

#pragma once

#include <iosfwd>
#include <string_view>

#include "shared/Export.h"

namespace shr {

/// Writes wide text to a narrow stream.
struct WideTextWriter {
  void (*write)(std::ostream& out, std::wstring_view text);
};

/// Makes insertions of `GString` into the stream call the writer, which must outlive the stream;
/// null gives UTF-8 back.
SHARED_API void SetWideTextWriter(std::ios_base& stream, const WideTextWriter* writer);

}  // namespace shr
