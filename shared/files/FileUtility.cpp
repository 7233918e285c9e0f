// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/FileUtility.h"

#include <cstdint>
#include <string>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/File.h"
#include "shared/files/TextDetection.h"
#include "shared/platform/Paths.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT_NAME = L"FileUtility";
constexpr std::uint32_t LONGEST_MARK = 3;

/// Returns up to `count` bytes from the start of a file.
std::string ReadHead(const GString& path, std::uint32_t count) {
  CFile file(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareAll);
  std::string head(count, '\0');
  std::uint32_t size = 0;
  while (size < count) {
    const std::uint32_t got = file.Read(head.data() + size, count - size);
    if (got == 0) break;
    size += got;
  }
  head.resize(size);
  file.Close();
  return head;
}

/// Returns the sample of a file, empty when the file is missing.
std::string ReadSample(const GString& path, unsigned sampleSize) {
  if (sampleSize < 2 || sampleSize % 2 != 0) {
    ThrowErrorImpl(UNIT_NAME, __LINE__, INVALID_PARAMETER_TEXT);
  }
  return FileExists(path) ? ReadHead(path, sampleSize) : std::string();
}

}  // namespace

bool FileExists(const GString& path) {
  if (path.empty() || !platform::TestAccess(path, platform::PathAccess::Exists)) return false;
  // Only a folder can be named with a separator behind it.
  const GString asFolder = path + platform::PATH_SEPARATOR;
  return !platform::TestAccess(asFolder, platform::PathAccess::Exists);
}

void GetBOMInfo(const GString& path, std::size_t& markSize, TextEncoding& encoding) {
  markSize = 0;
  encoding = EncodingANSI;
  if (path.empty()) return;
  const ByteOrderMark mark = FindByteOrderMark(ReadHead(path, LONGEST_MARK));
  markSize = mark.size;
  encoding = mark.encoding;
}

ConfidenceLevel IsFileANSI(const GString& path, unsigned sampleSize) {
  return RateAnsi({ReadSample(path, sampleSize), sampleSize});
}

ConfidenceLevel IsFileUTF16LE(const GString& path, unsigned sampleSize) {
  return RateUtf16({ReadSample(path, sampleSize), sampleSize}, ByteOrder::LittleEndian);
}

ConfidenceLevel IsFileUTF16BE(const GString& path, unsigned sampleSize) {
  return RateUtf16({ReadSample(path, sampleSize), sampleSize}, ByteOrder::BigEndian);
}

}  // namespace shr
