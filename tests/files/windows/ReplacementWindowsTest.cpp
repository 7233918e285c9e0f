// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Replaced files on this target: attributes, what keeps others out, rests of killed writers.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "shared/files/ReplacementFile.h"
#include "tests/files/Replacing.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;
using test::ReadBytes;
using test::Replace;
using test::TemporaryFolder;
using test::TemporaryIn;
using test::WriteBytes;

TEST(WindowsReplacement, attributesStay) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  constexpr DWORD KEPT = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), KEPT));
  Replace(path, "new");
  EXPECT_EQ("new", ReadBytes(path));
  EXPECT_EQ(KEPT, GetFileAttributesW(path.c_str()) & KEPT);
}

TEST(WindowsReplacement, nobodyReadsWhatIsNotComplete) {
  const TemporaryFolder folder;
  CReplacementFile file(folder.Path(L"a.html"));
  file.Write(std::string(100'000, 'x'));
  const GString temporary = folder.Path(TemporaryIn(folder));
  const HANDLE opened = CreateFileW(temporary.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(INVALID_HANDLE_VALUE, opened);
  EXPECT_FALSE(DeleteFileW(temporary.c_str()));
}

TEST(WindowsReplacement, theNextWriterRemovesWhatKilledOnesLeft) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  CReplacementFile living(path);
  living.Write("living");
  // The name that a process would have given which is gone now.
  std::wstring name = TemporaryIn(folder).String();
  const std::size_t process = name.find(L'-', std::wstring(L"~shared-").size()) + 1;
  name.replace(process, name.find(L'-', process) - process, L"7ffffff0");
  WriteBytes(folder.Path(name), "rest");
  WriteBytes(folder.Path(L"~shared-other.tmp"), "not a rest of this file");
  Replace(path, "new");
  EXPECT_FALSE(test::Exists(folder.Path(name)));
  EXPECT_EQ(3u, folder.Names().size()) << "the file, that of the living writer and the other one";
  living.Commit();
  EXPECT_EQ("living", ReadBytes(path));
}

TEST(WindowsReplacement, aFileThatIsOpenElsewhereStaysAndNothingElseRemains) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  CReplacementFile file(path);
  file.Write("new");
  const HANDLE opened = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, opened);
  EXPECT_TRUE(HasSystemText(Failure([&file] { file.Commit(); }),
                            GString(L"Unable to write '") + path + L"'."));
  CloseHandle(opened);
  file.Discard();
  EXPECT_EQ("old", ReadBytes(path));
  EXPECT_EQ(1u, folder.Names().size());
}

}  // namespace
}  // namespace shr
