// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Files on this target: line ends and the end mark of the runtime's text mode, drives.

#include <gtest/gtest.h>

#include <string>

#include "shared/files/BufferedFile.h"
#include "shared/files/Path.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

TEST(WindowsFiles, textModeTranslatesLineEndsAndEndsAtTheEndMark) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.txt");
  CBufferedFile writer(path, L"wt", CBufferedFile::ShareAll, false);
  writer.WriteString("1\n2\n\x1A 3");
  writer.Close();
  EXPECT_EQ("1\r\n2\r\n\x1A 3", test::ReadBytes(path));
  CBufferedFile reader(path, L"rt", CBufferedFile::ShareAll, false);
  char bytes[16] = {};
  EXPECT_EQ(4u, reader.Read(bytes, sizeof bytes));
  EXPECT_STREQ("1\n2\n", bytes);
}

TEST(WindowsFiles, bothSlashesAndDrivesSplitPaths) {
  EXPECT_EQ(L"C:\\x", CPath(GString(L"C:\\x/a")).GetDriveAndFolder(false));
  EXPECT_EQ(L"C:\\", CPath(GString(L"C:\\a")).GetDriveAndFolder(false));
  EXPECT_EQ(L"C:", CPath(GString(L"C:a")).GetDriveAndFolder(true));
  EXPECT_EQ(L"a", CPath(GString(L"C:a")).GetFileName());
  EXPECT_EQ(L"C:\\x\\a", CPath(GString(L"C:\\x")).Join(L"a"));
}

}  // namespace
}  // namespace shr
