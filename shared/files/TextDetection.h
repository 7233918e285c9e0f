// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Decides the encoding of a text from its first bytes, without touching a file.
///
/// Internal: programs use shared/files/FileUtility.h and shared/files/EncodedBufferedFile.h, which
/// read the sample.
///
///     const ByteOrderMark mark = FindByteOrderMark(head);
///     const TextEncoding encoding = ChooseEncoding(EncodingANSI, {head, 512}, mark);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstddef>
#include <string_view>

#include "shared/Export.h"
#include "shared/files/FileUtility.h"
#include "shared/text/Utf.h"

namespace shr {

/// The first bytes of a file.
struct TextSample {
  std::string_view bytes;
  /// How many bytes were asked for; fewer are there when the file is shorter.
  std::size_t asked = 0;

  bool IsFull() const noexcept { return bytes.size() == asked; }
};

/// A mark found at the start of a file; size 0 and `EncodingANSI` when there is none.
struct ByteOrderMark {
  std::size_t size = 0;
  TextEncoding encoding = EncodingANSI;
};

/// The bytes that mark an encoding; none for `EncodingANSI`.
SHARED_API std::string_view MarkOf(TextEncoding encoding) noexcept;

SHARED_API ByteOrderMark FindByteOrderMark(std::string_view head) noexcept;

/// Rate how well a sample fits an encoding. An empty sample fits each with certainty.
SHARED_API ConfidenceLevel RateAnsi(const TextSample& sample) noexcept;
SHARED_API ConfidenceLevel RateUtf16(const TextSample& sample, ByteOrder order) noexcept;

/// Returns the encoding in which a file is read whose opener asked for `requested`: what the
/// content says where it contradicts the request. A mark that was found beats the content wherever
/// the content says UTF. UTF-8 is recognised by its mark only.
SHARED_API TextEncoding ChooseEncoding(TextEncoding requested, const TextSample& sample,
                                       const ByteOrderMark& mark) noexcept;

}  // namespace shr
