// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What the Windows runtime adds to the common behaviour.

#include <gtest/gtest.h>

#include <cstdio>

#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::platform {
namespace {

TEST(WindowsStreams, modeTextMayNameAnEncodingOrATemporaryFile) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.txt");
  std::FILE* const encoded = OpenStream(path, L"wt, ccs=UTF-8", FileSharing::All);
  ASSERT_NE(nullptr, encoded);
  EXPECT_EQ(0, std::fclose(encoded));
  EXPECT_EQ("\xEF\xBB\xBF", test::ReadBytes(path));
  EXPECT_EQ(nullptr, OpenStream(path, L"rt, ccs=UTF-7", FileSharing::All));
  EXPECT_EQ(nullptr, OpenStream(path, L"rt, ccx=UTF-8", FileSharing::All));
  EXPECT_EQ(nullptr, OpenStream(path, L"rt,", FileSharing::All));
  std::FILE* const temporary = OpenStream(path, L"rbD", FileSharing::All);
  ASSERT_NE(nullptr, temporary);
  EXPECT_EQ(0, std::fclose(temporary));
  EXPECT_FALSE(test::Exists(path));
}

TEST(WindowsSharing, anOpenFileIsNeitherDeletedNorReplaced) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  test::WriteBytes(path, "old");
  test::WriteBytes(folder.Path(L"b.dat"), "new");
  FileOpenOptions options;
  options.read = true;
  const int descriptor = OpenDescriptor(path, options);
  EXPECT_FALSE(RemoveFile(path));
  EXPECT_FALSE(ReplaceExistingFile(folder.Path(L"b.dat"), path));
  EXPECT_FALSE(LastErrorText().empty());
  EXPECT_TRUE(CloseDescriptor(descriptor));
  EXPECT_EQ("old", test::ReadBytes(path));
  EXPECT_TRUE(ReplaceExistingFile(folder.Path(L"b.dat"), path));
  EXPECT_EQ("new", test::ReadBytes(path));
}

TEST(WindowsPaths, rootsAreDrivesAndShares) {
  struct Row {
    const wchar_t* path;
    std::size_t root;
    bool isAbsolute;
  };
  const Row rows[] = {{L"", 0, false},
                      {L"a\\b", 0, false},
                      {L"C:", 2, false},
                      {L"C:a", 2, false},
                      {L"C:\\a", 3, true},
                      {L"c:/a", 3, true},
                      {L"\\a", 1, false},
                      {L"\\\\server\\share\\a", 15, true},
                      {L"//server/share", 14, true},
                      {L"1:\\a", 0, false}};
  for (const Row& row : rows) {
    const std::string name = GString(row.path).WtoAForDiagnostics();
    EXPECT_EQ(row.root, RootLength(row.path)) << name;
    EXPECT_EQ(row.isAbsolute, IsAbsolutePath(row.path)) << name;
  }
}

}  // namespace
}  // namespace shr::platform
