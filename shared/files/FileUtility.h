// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Finds out what a file is: whether it exists, which byte-order mark it has, how well its content
/// fits an encoding.
///
/// The answers are hints from a sample at the start of the file; shared/files/EncodedBufferedFile.h
/// combines them into a decision (docs/encoded-text.md).
///
///     std::size_t markSize = 0;
///     TextEncoding encoding = EncodingANSI;
///     GetBOMInfo(path, markSize, encoding);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// How the bytes of a text file stand for characters.
enum TextEncoding : int {
  EncodingANSI = 0,  ///< narrow text in a numbered code page
  EncodingUTF8 = 1,
  EncodingUTF16LE = 2,
  EncodingUTF16BE = 3
};

/// How well a sample fits an encoding.
enum ConfidenceLevel : int {
  ConfidenceCertain = 0,  ///< the file is empty, or the sample proves the encoding
  ConfidenceNo = 1,       ///< the sample rules the encoding out
  ConfidenceLikely = 2,   ///< the sample fits
  ConfidenceUnlikely = 3  ///< the sample speaks against the encoding without ruling it out
};

/// Returns true when `path` names something that can be opened as a file; a folder is none.
SHARED_API bool FileExists(const GString& path);

/// Looks for a byte-order mark in the first three bytes of a file.
/// FF FE gives 2 and `EncodingUTF16LE`, FE FF gives 2 and `EncodingUTF16BE`, EF BB BF gives 3 and
/// `EncodingUTF8`; anything else, and an empty path, gives 0 and `EncodingANSI`. UTF-32 marks are
/// not known: the little-endian one begins like UTF-16.
/// Errors: "Unable to open '%s'.\n%s" when the file cannot be opened; the results are then 0 and
/// `EncodingANSI`.
SHARED_API void GetBOMInfo(const GString& path, std::size_t& markSize, TextEncoding& encoding);

/// Rate how well the first `sampleSize` bytes of a file fit the encoding.
/// An empty file, and one whose size cannot be read (missing, a folder), is `ConfidenceCertain`.
/// Requires: `sampleSize` is even and at least 2, else "Invalid parameter passed to subroutine or
/// function".
/// Errors: "Unable to open '%s'.\n%s" and "Unable to read '%s'.\n%s".
SHARED_API ConfidenceLevel IsFileANSI(const GString& path, unsigned sampleSize);
SHARED_API ConfidenceLevel IsFileUTF16LE(const GString& path, unsigned sampleSize);
SHARED_API ConfidenceLevel IsFileUTF16BE(const GString& path, unsigned sampleSize);

}  // namespace shr
