// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a missing and an existing target; nothing before the commit; no rest afterwards; refused
// targets.

#include "shared/files/ReplacementFile.h"

#include <gtest/gtest.h>

#include <string>

#include "shared/files/File.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;
using test::ReadBytes;
using test::TemporaryFolder;
using test::WriteBytes;

TEST(ReplacementFile, theTargetChangesAtTheCommit) {
  for (const bool exists : {false, true}) {
    for (const std::size_t rounds : {0u, 1u, 10000u}) {
      const TemporaryFolder folder;
      const GString path = folder.Path(L"\u6771\u4eac.html");
      if (exists) WriteBytes(path, "old content");
      CReplacementFile file(path);
      std::string expected;
      for (std::size_t round = 0; round < rounds; ++round) {
        file.Write(std::to_string(round));
        expected += std::to_string(round);
      }
      ASSERT_EQ(exists, test::Exists(path));
      EXPECT_EQ("old content", exists ? ReadBytes(path) : "old content");
      file.Commit();
      EXPECT_EQ(expected, ReadBytes(path));
      EXPECT_EQ(1u, folder.Names().size());
    }
  }
}

TEST(ReplacementFile, withoutCommitNothingRemains) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  {
    CReplacementFile file(path);
    file.Write(std::string(100000, 'x'));
    EXPECT_EQ(2u, folder.Names().size());
  }
  EXPECT_EQ(1u, folder.Names().size());
  EXPECT_EQ("old", ReadBytes(path));
}

TEST(ReplacementFile, refusedTargetsStayAsTheyAre) {
  const TemporaryFolder folder;
  const GString shared = folder.Path(L"shared.html");
  WriteBytes(shared, "old");
  const CFile reader(shared, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead);
  const GString paths[] = {folder.Path(), folder.Path(L"missing") + L"/a.html", shared};
  for (const GString& path : paths) {
    const GString failure = Failure([&] { CReplacementFile file(path); });
    EXPECT_TRUE(HasSystemText(failure, GString(L"Unable to open '") + path + L"'.")) << failure;
  }
  EXPECT_EQ(L"[ReplacementFile]", Failure([&] { CReplacementFile file{GString()}; }));
  EXPECT_EQ("old", ReadBytes(shared));
  EXPECT_EQ(1u, folder.Names().size());
}

TEST(ReplacementFile, nothingFollowsTheCommit) {
  const TemporaryFolder folder;
  CReplacementFile file(folder.Path(L"a.html"));
  file.Commit();
  EXPECT_EQ(L"[ReplacementFile]", Failure([&] { file.Write("x"); }));
  EXPECT_EQ(L"[ReplacementFile]", Failure([&] { file.Commit(); }));
}

}  // namespace
}  // namespace shr
