// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Faults of a log file that only this target can make: a disk that is full when the file is begun
// and in the middle of a line, a file that goes while it is written.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "shared/diagnostics/Logger.h"
#include "shared/text/Utf.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

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

}  // namespace
}  // namespace shr
