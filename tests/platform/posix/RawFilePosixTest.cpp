// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Devices, pipes and a second process, which only this target offers.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::platform {
namespace {

FileOpenOptions Options(bool read, bool write, FileSharing sharing) {
  FileOpenOptions options;
  options.read = read;
  options.write = write;
  options.sharing = sharing;
  return options;
}

TEST(PosixDevices, aFullDiskFailsTheWrite) {
  const int full = OpenDescriptor(L"/dev/full", Options(false, true, FileSharing::None));
  ASSERT_NE(NO_DESCRIPTOR, full);
  EXPECT_FALSE(WriteDescriptor(full, "x", 1));
  EXPECT_EQ(FormatSystemErrorMsg(ENOSPC), LastErrorText());
  EXPECT_TRUE(CloseDescriptor(full));
}

TEST(PosixDevices, shareModesDoNotReachThem) {
  const FileOpenOptions alone = Options(true, true, FileSharing::None);
  const int first = OpenDescriptor(L"/dev/null", alone);
  const int second = OpenDescriptor(L"/dev/null", alone);
  EXPECT_NE(NO_DESCRIPTOR, first);
  EXPECT_NE(NO_DESCRIPTOR, second);
  EXPECT_TRUE(FlushDescriptor(first));
  EXPECT_TRUE(CloseDescriptor(first));
  EXPECT_TRUE(CloseDescriptor(second));
}

TEST(PosixDevices, aPipeIsReadAndHasNoPosition) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"pipe");
  ASSERT_EQ(0, mkfifo(test::ToFilesystemPath(path).c_str(), 0600));
  std::thread writer([&path] {
    const int end = OpenDescriptor(path, Options(false, true, FileSharing::All));
    EXPECT_TRUE(WriteDescriptor(end, "123", 3));
    EXPECT_TRUE(CloseDescriptor(end));
  });
  const int end = OpenDescriptor(path, Options(true, false, FileSharing::None));
  char bytes[8] = {};
  EXPECT_EQ(3, ReadDescriptor(end, bytes, sizeof bytes));
  EXPECT_EQ(-1, SeekDescriptor(end, 0, FileOrigin::Current));
  writer.join();
  EXPECT_EQ(0, ReadDescriptor(end, bytes, sizeof bytes));
  EXPECT_TRUE(CloseDescriptor(end));
}

TEST(PosixDevices, aPipeThatNobodyOpensIsWaitedForForABoundedTime) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"pipe");
  ASSERT_EQ(0, mkfifo(test::ToFilesystemPath(path).c_str(), 0600));
  const auto refused = [&path](bool read) {
    const int end = OpenDescriptor(path, Options(read, !read, FileSharing::All));
    const bool told = !LastErrorText().empty();
    return end == NO_DESCRIPTOR && told;
  };
  EXPECT_TRUE(refused(true));
  EXPECT_TRUE(refused(false));
}

TEST(PosixSharing, locksOfOtherProgramsCountForWhatTheyMean) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  test::WriteBytes(path, "1");
  const auto opens = [&path](bool read, bool write, FileSharing sharing) {
    const int descriptor = OpenDescriptor(path, Options(read, write, sharing));
    if (descriptor != NO_DESCRIPTOR) CloseDescriptor(descriptor);
    return descriptor != NO_DESCRIPTOR;
  };
  for (const bool shared : {true, false}) {
    const int foreign = open(test::ToFilesystemPath(path).c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = shared ? F_RDLCK : F_WRLCK;
    ASSERT_EQ(0, fcntl(foreign, F_OFD_SETLK, &lock));
    EXPECT_EQ(shared, opens(true, false, FileSharing::All));
    EXPECT_EQ(shared, opens(true, false, FileSharing::Read));
    EXPECT_FALSE(opens(true, false, FileSharing::None)) << "the other one reads";
    EXPECT_FALSE(opens(true, true, FileSharing::All));
    EXPECT_FALSE(opens(false, true, FileSharing::All));
    close(foreign);
  }
}

TEST(PosixSharing, bindsOtherProcessesAndEndsWithThem) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  test::WriteBytes(path, "1");
  const FileOpenOptions guest = Options(true, false, FileSharing::All);
  for (const FileSharing sharing : {FileSharing::None, FileSharing::Write, FileSharing::All}) {
    int ready[2];
    int done[2];
    ASSERT_EQ(0, pipe(ready));
    ASSERT_EQ(0, pipe(done));
    const pid_t child = fork();
    if (child == 0) {
      char byte = OpenDescriptor(path, Options(true, false, sharing)) != NO_DESCRIPTOR ? 'y' : 'n';
      if (write(ready[1], &byte, 1) == 1 && read(done[0], &byte, 1) == 1) _exit(0);
      _exit(1);
    }
    char answer = 0;
    ASSERT_EQ(1, read(ready[0], &answer, 1));
    EXPECT_EQ('y', answer);
    const int descriptor = OpenDescriptor(path, guest);
    EXPECT_EQ(sharing == FileSharing::All, descriptor != NO_DESCRIPTOR);
    if (descriptor != NO_DESCRIPTOR) CloseDescriptor(descriptor);
    ASSERT_EQ(1, write(done[1], "d", 1));
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    const int after = OpenDescriptor(path, guest);
    EXPECT_NE(NO_DESCRIPTOR, after);
    CloseDescriptor(after);
    for (const int end : {ready[0], ready[1], done[0], done[1]}) close(end);
  }
}

/// Many threads open the same file alone; at no moment may two of them have it.
TEST(PosixSharing, ofRacingOpenersOneGetsThrough) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  test::WriteBytes(path, "1");
  std::atomic<int> holders = 0;
  std::atomic<int> opened = 0;
  std::atomic<bool> overlapped = false;
  const auto race = [&](bool write) {
    for (int i = 0; i < 300; ++i) {
      const int descriptor = OpenDescriptor(path, Options(!write, write, FileSharing::None));
      if (descriptor == NO_DESCRIPTOR) continue;
      if (++holders > 1) overlapped = true;
      ++opened;
      --holders;
      CloseDescriptor(descriptor);
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(race, i % 2 == 0);
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(overlapped);
  EXPECT_GT(opened, 0);
}

TEST(PosixDescriptors, areNotInherited) {
  const test::TemporaryFolder folder;
  FileOpenOptions options = Options(true, true, FileSharing::All);
  options.create = true;
  const int descriptor = OpenDescriptor(folder.Path(L"a"), options);
  EXPECT_NE(0, fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
  CloseDescriptor(descriptor);
}

}  // namespace
}  // namespace shr::platform
