// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/FileUtility.h"

#include <string>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/TextDetection.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT_NAME = L"FileUtility";
constexpr std::size_t LONGEST_MARK = 3;

/// Closes a descriptor at the end of its scope.
class OpenedFile {
public:
  explicit OpenedFile(const GString& path) : path_(path) {
    platform::FileOpenOptions options;
    options.read = true;
    descriptor_ = platform::OpenDescriptor(path, options);
    if (descriptor_ != platform::NO_DESCRIPTOR) return;
    ThrowErrorImpl(UNIT_NAME, __LINE__, L"Unable to open '%s'.\n%s", path.c_str(),
                   platform::LastErrorText().c_str());
  }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;
  ~OpenedFile() { platform::CloseDescriptor(descriptor_); }

  /// Returns up to `count` bytes from the start of the file.
  std::string ReadHead(std::size_t count) {
    std::string head(count, '\0');
    std::size_t size = 0;
    while (size < count) {
      const auto got = platform::ReadDescriptor(descriptor_, head.data() + size, count - size);
      if (got < 0) {
        ThrowErrorImpl(UNIT_NAME, __LINE__, L"Unable to read '%s'.\n%s", path_.c_str(),
                       platform::LastErrorText().c_str());
      }
      if (got == 0) break;
      size += static_cast<std::size_t>(got);
    }
    head.resize(size);
    return head;
  }

private:
  const GString& path_;
  int descriptor_;
};

/// Returns the sample of a file, empty when the file is missing.
std::string ReadSample(const GString& path, unsigned sampleSize) {
  if (sampleSize < 2 || sampleSize % 2 != 0) {
    ThrowErrorImpl(UNIT_NAME, __LINE__, INVALID_PARAMETER_TEXT);
  }
  return FileExists(path) ? OpenedFile(path).ReadHead(sampleSize) : std::string();
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
  const ByteOrderMark mark = FindByteOrderMark(OpenedFile(path).ReadHead(LONGEST_MARK));
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
