// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/FileUtility.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "tests/files/TextFiles.h"

namespace shr {
namespace {

using test::ScratchFile;
using test::Utf16Bytes;

constexpr unsigned SAMPLE = 512;

TEST(FileUtility, marksAreRecognised) {
  const struct {
    const char* name;
    std::string bytes;
    std::size_t size;
    TextEncoding encoding;
  } rows[] = {
      {"empty", "", 0, EncodingANSI},
      {"one byte", "\xFF", 0, EncodingANSI},
      {"little endian", "\xFF\xFE", 2, EncodingUTF16LE},
      {"big endian", "\xFE\xFFxy", 2, EncodingUTF16BE},
      {"UTF-8", "\xEF\xBB\xBF", 3, EncodingUTF8},
      {"UTF-8, cut", "\xEF\xBB", 0, EncodingANSI},
      {"UTF-32LE looks like UTF-16", std::string("\xFF\xFE\0\0", 4), 2, EncodingUTF16LE},
      {"UTF-32BE", std::string("\0\0\xFE\xFF", 4), 0, EncodingANSI},
      {"mark behind text", "a\xEF\xBB\xBF", 0, EncodingANSI},
  };
  for (const auto& row : rows) {
    const ScratchFile file(row.bytes);
    std::size_t size = 99;
    TextEncoding encoding = EncodingUTF16BE;
    GetBOMInfo(file.Path(), size, encoding);
    EXPECT_EQ(size, row.size) << row.name;
    EXPECT_EQ(encoding, row.encoding) << row.name;
  }
}

TEST(FileUtility, markOfNothingIsNoneAndOfAMissingFileAnError) {
  std::size_t size = 99;
  TextEncoding encoding = EncodingUTF8;
  GetBOMInfo(GString(), size, encoding);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(encoding, EncodingANSI);
  EXPECT_THROW(GetBOMInfo(ScratchFile().Path(), size, encoding), Exception);
}

TEST(FileUtility, existsMeansAFileNotAFolder) {
  const ScratchFile file("");
  EXPECT_TRUE(FileExists(file.Path()));
  EXPECT_FALSE(FileExists(file.Folder()));
  EXPECT_FALSE(FileExists(ScratchFile().Path()));
  EXPECT_FALSE(FileExists(GString()));
}

TEST(FileUtility, contentIsRated) {
  const std::wstring prose = L"A line of plain text.\r\nAnother one.";
  const std::string little = Utf16Bytes(prose, ByteOrder::LittleEndian);
  const std::string big = Utf16Bytes(prose, ByteOrder::BigEndian);
  std::string cutAtZero(SAMPLE + 2, 'x');
  cutAtZero[SAMPLE - 1] = '\0';
  std::string zeroInside = cutAtZero;
  zeroInside[100] = '\0';
  const std::wstring chinese(300, L'\x4E2D');
  const struct {
    const char* name;
    std::string bytes;
    ConfidenceLevel ansi, little, big;
  } rows[] = {
      {"empty", "", ConfidenceCertain, ConfidenceCertain, ConfidenceCertain},
      {"zero", std::string(1, '\0'), ConfidenceNo, ConfidenceNo, ConfidenceNo},
      {"control", "\x1F", ConfidenceUnlikely, ConfidenceNo, ConfidenceNo},
      {"blank", " ", ConfidenceLikely, ConfidenceNo, ConfidenceNo},
      {"even text", "some text.", ConfidenceLikely, ConfidenceUnlikely, ConfidenceUnlikely},
      {"odd text", "some text", ConfidenceLikely, ConfidenceNo, ConfidenceNo},
      {"LE", little, ConfidenceNo, ConfidenceLikely, ConfidenceUnlikely},
      {"LE, odd", little + 'x', ConfidenceNo, ConfidenceNo, ConfidenceNo},
      {"LE mark", "\xFF\xFE", ConfidenceUnlikely, ConfidenceUnlikely, ConfidenceUnlikely},
      {"LE mark and text", "\xFF\xFE" + little, ConfidenceNo, ConfidenceLikely, ConfidenceUnlikely},
      {"BE mark", "\xFE\xFF", ConfidenceUnlikely, ConfidenceUnlikely, ConfidenceUnlikely},
      {"BE", big, ConfidenceNo, ConfidenceUnlikely, ConfidenceUnlikely},
      {"LE Chinese", Utf16Bytes(chinese, ByteOrder::LittleEndian), ConfidenceLikely,
       ConfidenceUnlikely, ConfidenceUnlikely},
      {"sample cut behind a zero", cutAtZero, ConfidenceLikely, ConfidenceUnlikely,
       ConfidenceUnlikely},
      {"and a zero inside", zeroInside, ConfidenceNo, ConfidenceUnlikely, ConfidenceUnlikely},
  };
  for (const auto& row : rows) {
    const ScratchFile file(row.bytes);
    EXPECT_EQ(IsFileANSI(file.Path(), SAMPLE), row.ansi) << row.name;
    EXPECT_EQ(IsFileUTF16LE(file.Path(), SAMPLE), row.little) << row.name;
    EXPECT_EQ(IsFileUTF16BE(file.Path(), SAMPLE), row.big) << row.name;
  }
}

TEST(FileUtility, sizeThatCannotBeReadIsCertain) {
  const ScratchFile file;
  for (const GString& path : {file.Path(), file.Folder()}) {
    EXPECT_EQ(IsFileANSI(path, SAMPLE), ConfidenceCertain);
    EXPECT_EQ(IsFileUTF16LE(path, SAMPLE), ConfidenceCertain);
    EXPECT_EQ(IsFileUTF16BE(path, SAMPLE), ConfidenceCertain);
  }
}

TEST(FileUtility, oddSampleSizesAreRefused) {
  const ScratchFile file("text");
  for (const auto rate : {IsFileANSI, IsFileUTF16LE, IsFileUTF16BE}) {
    EXPECT_EQ(rate(file.Path(), 2) == ConfidenceCertain, false);
    for (const unsigned size : {0u, 1u, 3u, 511u}) {
      try {
        rate(file.Path(), size);
        ADD_FAILURE() << size;
      } catch (const Exception& error) {
        EXPECT_EQ(error.GetDescription(), INVALID_PARAMETER_TEXT);
        EXPECT_EQ(error.GetSrcFile(), L"FileUtility");
      }
    }
  }
}

}  // namespace
}  // namespace shr
