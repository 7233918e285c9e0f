// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors
//
// Arbitrary bytes as a text file. The first byte chooses encoding, page, keepEncoding and mode.
// Reading must end, lines must be those of the text read unit by unit, and a file that is opened
// again, and peeked at before every line, must give the same lines.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "shared/files/EncodedBufferedFile.h"

using shr::CEncodedBufferedFile;
using Lines = std::vector<std::wstring>;

/// Reads unit by unit and cuts the text into lines.
static Lines ReadUnits(CEncodedBufferedFile& file) {
  Lines lines;
  for (std::wstring line; !file.EndOfFile();) {
    line.push_back(file.Getc());
    const bool isEnded = line.back() == L'\n';
    if (isEnded) line.pop_back();
    if (isEnded && line.ends_with(L'\r')) line.pop_back();
    if (isEnded || file.EndOfFile()) lines.push_back(std::exchange(line, std::wstring()));
  }
  return lines;
}

static Lines ReadLines(CEncodedBufferedFile& file, bool isPeeking) {
  Lines lines;
  for (std::wstring line; file.ReadString(line); line.clear()) {
    lines.push_back(line);
    if (isPeeking && !file.EndOfFile()) file.UnGetc(file.Getc());
  }
  return lines;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto path = std::filesystem::temp_directory_path() /
                           ("shared-fuzz-" + std::to_string(std::random_device()()));
  if (size == 0) return 0;
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data) + 1, static_cast<std::streamsize>(size - 1));
  constexpr unsigned PAGES[] = {1252, 65001, 1251, 932};
  const unsigned page = PAGES[data[0] >> 2 & 3];
  const CEncodedBufferedFile::Sharing sharing = CEncodedBufferedFile::ShareAll;
  const auto encoding = static_cast<shr::TextEncoding>(data[0] & 3);
  const wchar_t* const mode = (data[0] & 32) != 0 ? L"rt" : L"rb";
  const bool isKept = (data[0] & 16) != 0;
  CEncodedBufferedFile first(path.wstring(), mode, sharing, encoding, page, isKept, true);
  CEncodedBufferedFile second(path.wstring(), mode, sharing, encoding, page, isKept, false);
  const Lines lines = ReadLines(first, false);
  if (first.GetPosition() != first.GetLength() || ReadLines(second, true) != lines) std::abort();
  second.SeekToBegin();
  // In page 932 a bad pair may swallow a line feed, which then ends a line only in the file.
  const bool isComparable = page != 932 || second.GetEncoding() != shr::EncodingANSI;
  if (ReadUnits(second) != lines && isComparable) std::abort();
  return 0;
}
