// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Faults of a log file that only this target can make: a disk that is full when the file is begun
// and in the middle of a line, a file that goes while it is written; what is no plain file;
// children of fork.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "shared/diagnostics/Logger.h"
#include "shared/text/Utf.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/ChildProcess.h"

namespace shr {
namespace {

/// The size to which files may grow, until the end of the scope.
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limited = before_;
    limited.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
  void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before_{};
};

std::string Utf16(std::wstring_view text) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(WideToUtf16(text, ByteOrder::LittleEndian, bytes.data()));
  return bytes;
}

TEST(LoggerPosix, aDiskThatIsFullFromTheStartDisables) {
  CLogger logger;
  logger.SetOutputFile(L"/dev/full", true);
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { logger.Send(LogInfo, L"lost"); }),
                                  L"Unable to open '/dev/full'."));
  EXPECT_FALSE(logger.IsEnabled());
}

TEST(LoggerPosix, aDiskThatFillsUpCutsALineAndLetsTheLogGoOn) {
  const std::string head = "\xFF\xFE" + Utf16(L"\nfirst\n");
  // Room for nothing, half a unit, and some units of the next line.
  for (const std::size_t room : {0u, 1u, 4u, 5u}) {
    const test::TemporaryFolder folder;
    const GString path = folder.Path(L"run.log");
    CLogger logger(path);
    logger.Send(LogInfo, L"first");
    {
      const FileSizeLimit limit(head.size() + room);
      EXPECT_TRUE(test::HasSystemText(test::Failure([&] { logger.Send(LogInfo, L"second"); }),
                                      L"Unable to write '" + path + L"'."));
    }
    EXPECT_FALSE(logger.IsEnabled());
    logger.Send(LogInfo, L"ignored");
    logger.Enable(true);
    logger.Send(LogInfo, L"third");
    const std::wstring cut = std::wstring(L"second").substr(0, room / 2);
    EXPECT_EQ(test::ReadBytes(path), head + Utf16(cut + L"third\n")) << room;
  }
}

TEST(LoggerPosix, aFileThatIsDeletedIsWrittenOnWithoutAName) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  CLogger logger(path);
  logger.Send(LogInfo, L"first");
  std::filesystem::remove(test::ToFilesystemPath(path));
  logger.Send(LogInfo, L"second");
  EXPECT_TRUE(logger.IsEnabled());
  EXPECT_FALSE(test::Exists(path));
  logger.SetOutputFile(path, true);
  logger.Send(LogInfo, L"third");
  EXPECT_EQ(test::ReadBytes(path), "\xFF\xFE" + Utf16(L"third\n"));
}

TEST(LoggerPosix, linksAndPipesAreOpenedAsTheyAre) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  const auto link = test::ToFilesystemPath(folder.Path(L"link.log"));
  test::WriteBytes(path, "old content");
  std::filesystem::create_symlink("run.log", link);
  {
    CLogger logger(folder.Path(L"link.log"));
    logger.Send(LogInfo, L"line");
  }
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(test::ReadBytes(path), "\xFF\xFE" + Utf16(L"\nline\n"));
  const auto pipe = test::ToFilesystemPath(folder.Path(L"pipe"));
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  CLogger logger(folder.Path(L"pipe"));
  logger.Send(LogInfo, L"line");
  char bytes[64] = {};
  const ssize_t got = read(reader, bytes, sizeof bytes);
  EXPECT_EQ(std::string(bytes, got > 0 ? static_cast<std::size_t>(got) : 0),
            "\xFF\xFE" + Utf16(L"\nline\n"));
  close(reader);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST(LoggerPosix, aDeviceIsNotDeleted) {
  const test::TemporaryFolder folder;
  const auto device = test::ToFilesystemPath(folder.Path(L"null"));
  if (mknod(device.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) return;  // needs a super user
  CLogger logger(folder.Path(L"null"));
  EXPECT_EQ(test::Failure([&] { logger.Send(LogInfo, L"line"); }), L"(nothing)");
  EXPECT_TRUE(std::filesystem::is_character_file(device));
}

TEST(LoggerPosix, aChildOfForkMayLogWhateverTheThreadsOfItsParentDo) {
  constexpr int CHILDREN = 30;
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  CLogger logger(path);
  logger.Send(LogInfo, L"from the parent, which begins the file");
  std::atomic<bool> done = false;
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      while (!done) logger.Send(LogInfo, L"from a thread of the parent");
    });
  }
  for (int i = 0; i < CHILDREN; ++i) {
    const pid_t child = test::Start([&] {
      alarm(10);  // ends a child that waits for ever
      logger.Send(LogInfo, L"from a child");
    });
    EXPECT_EQ(test::Wait(child), 0);
  }
  done = true;
  for (std::thread& thread : threads) thread.join();
  const std::string text = test::ReadBytes(path);
  const std::string line = Utf16(L"\nfrom a child\n");
  int found = 0;
  for (std::size_t at = 0; (at = text.find(line, at)) != std::string::npos; at += line.size() - 2) {
    ++found;
  }
  EXPECT_EQ(found, CHILDREN) << "each line is whole";
}

}  // namespace
}  // namespace shr
