// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a full disk, met late and early; a write that stops in the middle and is tried again; a
// folder that may not be written; a pipe, which tells no length; files that vanish or are replaced
// while open; depth on small stacks and on one that the system does not know.

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <ucontext.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "shared/platform/Threads.h"
#include "shared/text/GString.h"
#include "tests/archive/ArchiveModel.h"
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
  EXPECT_EQ("gone", test::ReadBytes(path));
}

/// Runs `action` on a stack of its own and returns what it threw.
GString FailureOnStack(std::size_t size, const std::function<void()>& action) {
  struct Call {
    const std::function<void()>& action;
    GString failure;
  } call{action, L""};
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  EXPECT_EQ(0, pthread_attr_setstacksize(&attributes, size));
  pthread_t thread{};
  const auto run = [](void* data) -> void* {
    Call& own = *static_cast<Call*>(data);
    own.failure = Failure(own.action);
    return nullptr;
  };
  EXPECT_EQ(0, pthread_create(&thread, &attributes, run, &call));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  return call.failure;
}

TEST(ArchivePosix, smallStacksLimitTheDepthBeforeTheyEnd) {
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += std::string("\1\0\0\0", 4);
  const auto load = [&] {
    test::Nest nest;
    test::LoadFrom(bytes, [&](Archive& archive) { archive(nest); });
  };
  for (const std::size_t size : {std::size_t{256} << 10, std::size_t{1} << 20}) {
    EXPECT_TRUE(test::IsTooDeep(FailureOnStack(size, load))) << size;
  }
}

ucontext_t outside;
ucontext_t inside;
std::string storedInside;

TEST(ArchivePosix, aStackThatTheSystemDoesNotKnowServesForWhatIsNotDeep) {
  std::vector<char> stack(std::size_t{1} << 20);
  ASSERT_EQ(0, getcontext(&inside));
  inside.uc_stack.ss_sp = stack.data();
  inside.uc_stack.ss_size = stack.size();
  inside.uc_link = &outside;
  // Nothing is thrown here, for sanitizers do not know the stack either.
  const auto run = [] {
    const std::uintptr_t position = platform::StackPosition();
    const auto bounds = platform::ThreadStackBounds();
    if (bounds && position >= bounds->low && position < bounds->high) return;
    test::Nest nest(5);
    storedInside = test::Stored([&](Archive& archive) { archive(nest); });
  };
  makecontext(&inside, run, 0);
  ASSERT_EQ(0, swapcontext(&outside, &inside));
  EXPECT_EQ(24u, storedInside.size());
}

}  // namespace
}  // namespace shr
