// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the tests of text files share: files of given bytes and whole texts read in one call.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "shared/files/EncodedBufferedFile.h"
#include "shared/text/Utf.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::test {

/// A file name in a folder of its own; the file is there once it is given bytes.
class ScratchFile {
public:
  ScratchFile() = default;
  explicit ScratchFile(std::string_view bytes) { SetBytes(bytes); }

  void SetBytes(std::string_view bytes) const { WriteBytes(Path(), bytes); }
  std::string GetBytes() const { return ReadBytes(Path()); }
  bool Exists() const { return std::filesystem::exists(ToFilesystemPath(Path())); }
  GString Path() const { return folder_.Path(L"text.txt"); }
  /// Returns the folder that holds the file.
  GString Folder() const { return folder_.Path(); }

private:
  TemporaryFolder folder_;
};

/// How a file is opened in a test; the rest of the arguments matters seldom.
struct Opening {
  GString mode = L"rb";
  TextEncoding encoding = EncodingANSI;
  bool keepEncoding = false;
  unsigned codePage = 1252;
};

inline CEncodedBufferedFile OpenText(const GString& path, const Opening& opening) {
  return {path,
          opening.mode,
          CEncodedBufferedFile::ShareAll,
          opening.encoding,
          opening.codePage,
          opening.keepEncoding,
          false};
}

inline std::vector<std::wstring> ReadLines(CEncodedBufferedFile& file) {
  std::vector<std::wstring> lines;
  for (std::wstring line; file.ReadString(line); line.clear()) lines.push_back(line);
  return lines;
}

inline std::vector<std::wstring> ReadLines(const GString& path, const Opening& opening) {
  CEncodedBufferedFile file = OpenText(path, opening);
  return ReadLines(file);
}

/// Returns every unit of a text, line ends included.
inline std::wstring ReadUnits(const GString& path, const Opening& opening) {
  CEncodedBufferedFile file = OpenText(path, opening);
  std::wstring text;
  while (!file.EndOfFile()) text.push_back(file.Getc());
  return text;
}

inline std::string Utf16Bytes(std::wstring_view text, ByteOrder order) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(WideToUtf16(text, order, bytes.data()));
  return bytes;
}

inline std::string Utf8Bytes(std::wstring_view text) {
  return GString(text).ToUtf8();
}

}  // namespace shr::test
