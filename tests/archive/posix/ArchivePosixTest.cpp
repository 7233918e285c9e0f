// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a full disk, met late and early; a write that stops in the middle and is tried again; a
// folder that may not be written; a pipe, which tells no length; files that vanish or are replaced
// while open.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "shared/text/GString.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;

TEST(ArchivePosix, aFullDiskIsReportedByTheWriteThatMeetsItAndByClose) {
  const GString path(L"/dev/full");
  const GString refused(L"Unable to write '/dev/full'.");
  int value = 1;
  Archive late(path, Archive::Store);
  late.Transfer(value);
  EXPECT_TRUE(HasSystemText(Failure([&] { late.Close(); }), refused));
  EXPECT_EQ(L"[Archive]", Failure([&] { late.Close(); }));

  Archive early(path, Archive::Store);
  EXPECT_TRUE(HasSystemText(Failure([&] {
                              for (int i = 0; i < 20000; ++i) early.Transfer(value);
                            }),
                            refused));
  EXPECT_TRUE(HasSystemText(Failure([&] { early.Close(); }), refused));
  Archive abandoned(path, Archive::Store);
  abandoned.Transfer(value);
}

TEST(ArchivePosix, aWriteThatStoppedInTheMiddleIsDoneAgain) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  rlimit before{};
  ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &before));
  rlimit tight = before;
  tight.rlim_cur = 1000;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  for (const unsigned size : {4u, 100u, 150000u}) {
    Archive archive(path, Archive::Store);
    std::string expected;
    int failures = 0;
    setrlimit(RLIMIT_FSIZE, &tight);
    for (unsigned i = 0; expected.size() < 400000; ++i) {
      std::string piece(size, static_cast<char>(i));
      try {
        archive.Write(piece.data(), size);
      } catch (const Exception&) {
        ++failures;
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(1000u, test::ReadBytes(path).size()) << size;
        archive.Write(piece.data(), size);
      }
      expected += piece;
    }
    archive.Close();
    EXPECT_EQ(1, failures) << size;
    EXPECT_TRUE(expected == test::ReadBytes(path)) << size;
  }
  std::signal(SIGXFSZ, handler);
}

TEST(ArchivePosix, aFolderThatMayNotBeWrittenIsReportedOnOpening) {
  const test::TemporaryFolder folder;
  // Also the super user cannot create a file in there.
  const GString path(L"/proc/self/a.bin");
  Archive archive;
  EXPECT_TRUE(HasSystemText(Failure([&] { archive.OpenFile(path, Archive::Store); }),
                            GString(L"Unable to open '") + path + L"'."));
  archive.OpenFile(folder.Path(L"a.bin"), Archive::Store);
  archive.Close();
}

TEST(ArchivePosix, aPipeIsLoadedThoughItTellsNoLength) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"pipe");
  const std::string native = test::ToFilesystemPath(path.String()).string();
  ASSERT_EQ(0, mkfifo(native.c_str(), 0600));
  std::string sent(3000000, 'p');
  std::thread writer([&] {
    Archive archive(path, Archive::Store);
    archive.Transfer(sent);
    archive.SyncCheck();
    unsigned hostile = 0xFFFFFFFF;
    archive.Transfer(hostile);
  });
  Archive archive(path, Archive::Load);
  std::string received;
  archive.Transfer(received);
  archive.SyncCheck();
  EXPECT_TRUE(sent == received);
  std::string more;
  EXPECT_EQ(GString(L"Unable to read '") + path + L"'.\nUnexpected end of file",
            Failure([&] { archive.Transfer(more); }));
  EXPECT_LT(more.capacity(), std::size_t{1} << 26);
  writer.join();
}

TEST(ArchivePosix, openFilesStayWhatTheyWereWhenTheirNameGoes) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  test::WriteBytes(path, "old!");
  Archive archive(path, Archive::Load);
  const std::filesystem::path native = test::ToFilesystemPath(path.String());
  std::filesystem::remove(native);
  test::WriteBytes(path, "new content");
  char bytes[5] = {};
  archive.Read(bytes, 4);
  EXPECT_STREQ("old!", bytes);
  EXPECT_EQ(GString(L"Unable to read '") + path + L"'.\nUnexpected end of file",
            Failure([&] { archive.Read(bytes, 1); }));
  archive.Close();

  archive.OpenFile(path, Archive::Store);
  archive.Write("gone", 4);
  std::filesystem::remove(native);
  archive.Close();
  EXPECT_FALSE(test::Exists(path));
}

}  // namespace
}  // namespace shr
