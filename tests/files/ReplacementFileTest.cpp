// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a missing and an existing target; nothing before the commit; no rest afterwards; content
// taken back; several writers at once; refused targets.

#include "shared/files/ReplacementFile.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

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

TEST(ReplacementFile, discardingKeepsTheOldFile) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  CReplacementFile file(path);
  file.Write("new");
  file.Discard();
  EXPECT_EQ(1u, folder.Names().size());
  EXPECT_EQ("old", ReadBytes(path));
  EXPECT_EQ(L"[ReplacementFile]", Failure([&] { file.Commit(); }));
}

TEST(ReplacementFile, whatWasTakenBackIsNotThere) {
  const std::size_t most = 200'000;
  for (const std::size_t length : {std::size_t{0}, std::size_t{70'000}, most}) {
    const TemporaryFolder folder;
    CReplacementFile file(folder.Path(L"a.html"));
    for (std::size_t i = 0; i < most; i += 100) file.Write(std::string(100, 'x'));
    EXPECT_EQ(most, file.GetLength());
    file.Truncate(length);
    file.Write("end");
    EXPECT_EQ(L"[ReplacementFile]", Failure([&] { file.Truncate(length + 4); }));
    file.Commit();
    EXPECT_TRUE(std::string(length, 'x') + "end" == ReadBytes(folder.Path(L"a.html"))) << length;
  }
}

TEST(ReplacementFile, ofSeveralWritersTheLastCommitStays) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  {
    CReplacementFile first(path);
    CReplacementFile second(path);
    first.Write("first");
    second.Write("second");
    second.Commit();
    EXPECT_EQ("second", ReadBytes(path));
    first.Commit();
    EXPECT_EQ("first", ReadBytes(path));
  }
  constexpr int THREADS = 6, ROUNDS = 20;
  std::vector<std::thread> threads;
  for (int id = 0; id < THREADS; ++id) {
    threads.emplace_back([&path, id] {
      for (int round = 0; round < ROUNDS; ++round) {
        const GString failure = Failure([&] {
          CReplacementFile file(path);
          file.Write(std::string(static_cast<std::size_t>(1000 + id), static_cast<char>('a' + id)));
          file.Commit();
        });
        EXPECT_EQ(L"(nothing)", failure) << failure;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::string content = ReadBytes(path);
  ASSERT_FALSE(content.empty());
  const auto id = static_cast<std::size_t>(content[0] - 'a');
  EXPECT_EQ(std::string(1000 + id, content[0]), content);
  EXPECT_EQ(std::vector<GString>{L"a.html"}, folder.Names());
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
