// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Replaced files on this target: what stays of the old file, with and without the rights of an
// administrator; links; rests of killed writers; names of any length; folders that change; a flush
// that fails; what is no file.

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "shared/files/ReplacementFile.h"
#include "tests/files/Replacing.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/ChildProcess.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;
using test::ReadBytes;
using test::Replace;
using test::TemporaryFolder;
using test::TemporaryIn;
using test::WriteBytes;

struct stat StatusOf(const GString& path) {
  struct stat status = {};
  EXPECT_EQ(0, lstat(test::ToFilesystemPath(path).c_str(), &status)) << path;
  return status;
}

unsigned ModeOf(const GString& path) {
  return StatusOf(path).st_mode & 07777u;
}

TEST(PosixReplacement, whatIsNotContentStays) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  const std::string native = test::ToFilesystemPath(path).string();
  WriteBytes(path, "old");
  const bool root = geteuid() == 0;
  const uid_t owner = root ? 1234 : getuid();
  const gid_t group = root ? 5678 : getgid();
  ASSERT_EQ(0, chown(native.c_str(), owner, group));
  ASSERT_EQ(0, chmod(native.c_str(), 0640));
  const bool attributes = setxattr(native.c_str(), "user.note", "kept", 4, 0) == 0;
  CReplacementFile file(path);
  file.Write(std::string(100'000, 'x'));
  EXPECT_EQ(0600u, ModeOf(folder.Path(TemporaryIn(folder))))
      << "nobody else reads what is not complete";
  file.Commit();
  EXPECT_EQ(owner, StatusOf(path).st_uid);
  EXPECT_EQ(group, StatusOf(path).st_gid);
  EXPECT_EQ(0640u, ModeOf(path));
  char note[8] = {};
  EXPECT_EQ(attributes ? 4 : -1, getxattr(native.c_str(), "user.note", note, sizeof note));
}

TEST(PosixReplacement, newFilesHaveTheUsualRights) {
  const TemporaryFolder folder;
  const mode_t before = umask(027);
  {
    CReplacementFile file(folder.Path(L"a.html"));
    EXPECT_EQ(0600u, ModeOf(folder.Path(TemporaryIn(folder))));
    file.Commit();
  }
  umask(before);
  EXPECT_EQ(0640u, ModeOf(folder.Path(L"a.html")));
}

TEST(PosixReplacement, whoMayNotGiveAFileAwayOpensItToNobody) {
  if (geteuid() != 0) return;
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(path).c_str(), 06676));
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(folder.Path()).c_str(), 0777));
  constexpr uid_t NOBODY = 65534;
  const pid_t child = test::Start([&] {
    if (setgroups(0, nullptr) != 0 || setegid(NOBODY) != 0 || seteuid(NOBODY) != 0) _exit(100);
    Replace(path, "new");
  });
  EXPECT_EQ(0, test::Wait(child));
  EXPECT_EQ("new", ReadBytes(path));
  EXPECT_EQ(NOBODY, StatusOf(path).st_uid);
  EXPECT_EQ(0666u, ModeOf(path)) << "the group is another one, and nobody runs as the owner";
}

TEST(PosixReplacement, linksAreFollowedAlsoToWhatIsMissing) {
  const TemporaryFolder folder;
  const auto link = [&folder](const wchar_t* name, const char* target) {
    std::filesystem::create_symlink(target, test::ToFilesystemPath(folder.Path(name)));
  };
  std::filesystem::create_directory(test::ToFilesystemPath(folder.Path(L"real")));
  link(L"first", "second");
  link(L"second", "there/../missing.txt");
  link(L"there", "real");
  Replace(folder.Path(L"first"), "1");
  EXPECT_EQ("1", ReadBytes(folder.Path(L"missing.txt")));
  Replace(folder.Path(L"first"), "2");
  EXPECT_EQ("2", ReadBytes(folder.Path(L"missing.txt")));
  EXPECT_TRUE(S_ISLNK(StatusOf(folder.Path(L"first")).st_mode));
  EXPECT_EQ(5u, folder.Names().size());
  link(L"circle", "round");
  link(L"round", "circle");
  const GString failure = Failure([&] { Replace(folder.Path(L"circle"), "x"); });
  EXPECT_TRUE(HasSystemText(failure, L"Unable to open '" + folder.Path(L"circle") + L"'."));
}

TEST(PosixReplacement, theOtherFileSystemBehindALinkIsWrittenThere) {
  const TemporaryFolder folder;
  const std::filesystem::path other = "/dev/shm/shared-replaced-" + std::to_string(getpid());
  std::filesystem::create_symlink(other, test::ToFilesystemPath(folder.Path(L"link")));
  for (const char* const content : {"1", "2"}) {
    Replace(folder.Path(L"link"), content);
    EXPECT_EQ(content, ReadBytes(test::FromFilesystemPath(other)));
  }
  std::filesystem::remove(other);
}

TEST(PosixReplacement, theNextWriterRemovesWhatKilledOnesLeft) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  CReplacementFile living(path);
  living.Write("living");
  int started[2];
  ASSERT_EQ(0, pipe(started));
  std::vector<pid_t> children;
  for (int i = 0; i < 5; ++i) {
    children.push_back(test::Start([&] {
      CReplacementFile file(path);
      file.Write(std::string(100'000, 'x'));
      if (write(started[1], "", 1) == 1) pause();
    }));
  }
  for (std::size_t i = 0; i < children.size(); ++i) {
    char byte = 0;
    ASSERT_EQ(1, read(started[0], &byte, 1));
  }
  Replace(path, "beside living ones");
  EXPECT_EQ(2u + children.size(), folder.Names().size()) << "nothing of the living ones goes";
  for (const pid_t child : children) {
    kill(child, SIGKILL);
    test::Wait(child);
  }
  Replace(path, "behind killed ones");
  EXPECT_EQ(2u, folder.Names().size()) << "the file and that of the living writer";
  living.Commit();
  EXPECT_EQ("living", ReadBytes(path));
  EXPECT_EQ(1u, folder.Names().size());
  close(started[0]);
  close(started[1]);
}

TEST(PosixReplacement, theLongestNamesAreReplaced) {
  const TemporaryFolder folder;
  for (const std::size_t length : {1u, 251u, 255u}) {
    const GString path = folder.Path(std::wstring(length, L'n'));
    for (const char* const content : {"1", "2"}) {
      EXPECT_EQ(L"(nothing)", Failure([&] { Replace(path, content); })) << length;
      EXPECT_EQ(content, ReadBytes(path));
    }
  }
}

TEST(PosixReplacement, theFolderOfTheBeginningCounts) {
  const TemporaryFolder folder;
  const TemporaryFolder other;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(test::ToFilesystemPath(folder.Path()));
  CReplacementFile file(L"a.html");
  std::filesystem::current_path(test::ToFilesystemPath(other.Path()));
  file.Commit();
  std::filesystem::current_path(before);
  EXPECT_TRUE(test::Exists(folder.Path(L"a.html")));
  EXPECT_TRUE(other.Names().empty());
}

/// Makes every flush of this process to the disk fail from now on.
bool FailAllFlushes() {
  sock_filter rules[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_fsync, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {std::size(rules), rules};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST(PosixReplacement, aFailedFlushLeavesTheOldFile) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  const pid_t child = test::Start([&] {
    if (!FailAllFlushes()) _exit(100);
    const GString failure = Failure([&] { Replace(path, "new"); });
    if (!HasSystemText(failure, GString(L"Unable to write '") + path + L"'.")) _exit(1);
  });
  EXPECT_EQ(0, test::Wait(child));
  EXPECT_EQ("old", ReadBytes(path));
  EXPECT_EQ(1u, folder.Names().size());
}

TEST(PosixReplacement, whatIsNoFileIsRefusedWithoutWaiting) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"pipe");
  ASSERT_EQ(0, mkfifo(test::ToFilesystemPath(path).c_str(), 0600));
  EXPECT_TRUE(HasSystemText(Failure([&] { Replace(path, "x"); }),
                            GString(L"Unable to write '") + path + L"'."));
  EXPECT_TRUE(S_ISFIFO(StatusOf(path).st_mode));
  EXPECT_EQ(1u, folder.Names().size());
}

}  // namespace
}  // namespace shr
