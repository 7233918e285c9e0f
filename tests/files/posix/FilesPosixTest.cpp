// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Files on this target: devices, pipes, links, permissions, untranslated line ends.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "shared/files/BufferedFile.h"
#include "shared/files/ConfigFile.h"
#include "shared/files/EncodedBufferedFile.h"
#include "shared/files/File.h"
#include "shared/files/Path.h"
#include "shared/files/ReplacementFile.h"
#include "shared/platform/Paths.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;
using test::ReadBytes;
using test::TemporaryFolder;
using test::WriteBytes;

TEST(PosixFiles, aFullDiskFailsTheWriteTheFlushOrTheClose) {
  const GString path = L"/dev/full";
  const GString write = L"Unable to write '/dev/full'.";
  CFile raw(path, CFile::AccessWrite, CFile::ModeOpenExisting, CFile::ShareAll);
  EXPECT_TRUE(HasSystemText(Failure([&] { raw.Write("1", 1); }), write));
  CBufferedFile file(path, L"wb", CBufferedFile::ShareAll, false);
  file.Putc('1');
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Flush(); }), write));
  const std::string large(1 << 20, 'x');
  EXPECT_TRUE(HasSystemText(Failure([&] { file.WriteString(large.c_str()); }), write));
  CBufferedFile closed(path, L"wb", CBufferedFile::ShareAll, false);
  closed.Putc('1');
  EXPECT_TRUE(HasSystemText(Failure([&] { closed.Close(); }), L"Unable to close '/dev/full'."));
  EXPECT_FALSE(closed.IsOpen());
}

TEST(PosixFiles, aFullDiskFailsEncodedTextInTheWriteTheFlushOrTheClose) {
  const GString path = L"/dev/full";
  const GString write = L"Unable to write '/dev/full'.";
  const auto open = [&path] {
    return CEncodedBufferedFile(path, L"w", CEncodedBufferedFile::ShareAll, EncodingUTF8, 0, false,
                                false);
  };
  CEncodedBufferedFile file = open();
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Flush(); }), write)) << "the mark is pending";
  file.WriteString(L"text");
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Close(); }), L"Unable to close '/dev/full'."));
  EXPECT_FALSE(file.IsOpen());
  file = open();
  const std::wstring large(200000, L'x');
  EXPECT_TRUE(HasSystemText(Failure([&] { file.WriteString(large); }), write));
}

TEST(PosixFiles, aPipeIsReadExactlyButHasNoEndOrLength) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  CFile reader(ends[0]);
  CFile writer(ends[1]);
  writer.Write("12", 2);
  char bytes[4] = {};
  EXPECT_EQ(2u, reader.Read(bytes, 4));
  EXPECT_EQ(L"EOF: Bad file handle", Failure([&] { reader.EndOfFile(); }));
  writer.Write("34", 2);
  writer.Close();
  EXPECT_EQ(L"Unexpected end of file.", Failure([&] { reader.ReadN(bytes, 3); }));
  EXPECT_EQ("34", std::string(bytes, 2));
}

TEST(PosixFiles, textModeTranslatesNothing) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.txt");
  const std::string text = "1\n2\r\n\x1A 3";
  CBufferedFile writer(path, L"wt", CBufferedFile::ShareAll, false);
  writer.WriteString(text.c_str());
  writer.Close();
  EXPECT_EQ(text, ReadBytes(path));
  CBufferedFile reader(path, L"rt", CBufferedFile::ShareAll, false);
  char bytes[16] = {};
  EXPECT_EQ(text.size(), reader.Read(bytes, sizeof bytes));
}

TEST(PosixFiles, anExecutableInUseIsNotReplaced) {
  const GString path = platform::GetModulePath(nullptr);
  EXPECT_TRUE(HasSystemText(Failure([&] { CReplacementFile file(path); }),
                            GString(L"Unable to open '") + path + L"'."));
}

TEST(PosixFiles, replacementKeepsPermissionsAndLinks) {
  const TemporaryFolder folder;
  const TemporaryFolder links;
  const GString path = folder.Path(L"a.html");
  const auto native = test::ToFilesystemPath(path);
  const auto link = test::ToFilesystemPath(links.Path(L"link.html"));
  WriteBytes(path, "old");
  ASSERT_EQ(0, chmod(native.c_str(), 0640));
  std::filesystem::create_symlink(native, link);
  CReplacementFile file(links.Path(L"link.html"));
  file.Write("new");
  file.Commit();
  EXPECT_EQ("new", ReadBytes(path));
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  struct stat status = {};
  ASSERT_EQ(0, stat(native.c_str(), &status));
  EXPECT_EQ(0640u, status.st_mode & 07777);
}

/// Runs `checks` in a child process without the rights of an administrator; returns the number of
/// the first check that failed, or 0.
int FirstFailureWithoutPrivileges(const std::vector<std::function<bool()>>& checks) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t NOBODY = 65534;
    if (geteuid() == 0 && seteuid(NOBODY) != 0) _exit(100);
    for (std::size_t i = 0; i < checks.size(); ++i) {
      if (!checks[i]()) _exit(static_cast<int>(i) + 1);
    }
    _exit(0);
  }
  int status = -1;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(PosixFiles, missingRightsAreRespected) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  const GString locked = folder.Path(L"locked.dat");
  WriteBytes(path, "1");
  WriteBytes(locked, "1");
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(path).c_str(), 0444));
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(locked).c_str(), 0));
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(folder.Path()).c_str(), 0555));
  CFile file;
  const auto opens = [&file](const GString& name, CFile::Access access, CFile::Mode mode) {
    const bool opened = file.OpenNoThrow(name, access, mode, CFile::ShareAll);
    file.Close();
    return opened;
  };
  const auto replaces = [](const GString& name) {
    return Failure([&] { CReplacementFile replacement(name); }) == L"(nothing)";
  };
  using F = CFile;
  EXPECT_EQ(0, FirstFailureWithoutPrivileges(
                   {[&] { return IsFileReadable(path); }, [&] { return !IsFileReadable(locked); },
                    [&] { return opens(path, F::AccessRead, F::ModeOpenExisting); },
                    [&] { return !opens(path, F::AccessReadWrite, F::ModeOpenExisting); },
                    [&] { return !opens(path, F::AccessRead, F::ModeCreateAlways); },
                    [&] { return !opens(locked, F::AccessRead, F::ModeOpenExisting); },
                    [&] { return !opens(folder.Path(L"new"), F::AccessWrite, F::ModeOpenAlways); },
                    [&] { return !replaces(path) && !replaces(folder.Path(L"new")); }}));
  EXPECT_EQ("1", ReadBytes(path));
  ASSERT_EQ(0, chmod(test::ToFilesystemPath(folder.Path()).c_str(), 0755));
}

/// Lets no file of the process grow beyond a size, which stands for a disk that fills up.
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
  void (*handler_)(int);
  rlimit before_ = {};
};

TEST(PosixFiles, aDiskThatFillsUpLeavesTheOldFile) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.html");
  WriteBytes(path, "old");
  {
    CReplacementFile file(path);
    const FileSizeLimit limit(100'000);
    const GString failure = Failure([&file] {
      for (int i = 0; i < 10; ++i) file.Write(std::string(20'000, 'x'));
      file.Commit();
    });
    EXPECT_TRUE(HasSystemText(failure, GString(L"Unable to write '") + path + L"'.")) << failure;
  }
  EXPECT_EQ("old", ReadBytes(path));
  EXPECT_EQ(1u, folder.Names().size());
}

TEST(PosixFiles, theFileThatWasOpenedIsRemovedWhereverTheCurrentFolderIs) {
  const TemporaryFolder folder;
  const TemporaryFolder other;
  const std::filesystem::path before = std::filesystem::current_path();
  for (int kind = 0; kind < 3; ++kind) {
    WriteBytes(other.Path(L"a.txt"), "somebody else's");
    std::filesystem::current_path(test::ToFilesystemPath(folder.Path()));
    {
      CFile raw;
      CBufferedFile buffered;
      CEncodedBufferedFile encoded;
      if (kind == 0) raw.Open(L"a.txt", CFile::AccessWrite, CFile::ModeCreateNew, CFile::ShareAll);
      if (kind == 1) buffered.Open(L"a.txt", L"wb", CBufferedFile::ShareAll, true);
      if (kind == 2) {
        encoded.Open(L"a.txt", L"w", CEncodedBufferedFile::ShareAll, EncodingUTF8, 0, false, true);
      }
      std::filesystem::current_path(test::ToFilesystemPath(other.Path()));
      raw.Abort(true);
    }
    EXPECT_TRUE(folder.Names().empty()) << kind;
    EXPECT_EQ("somebody else's", ReadBytes(other.Path(L"a.txt"))) << kind;
  }
  std::filesystem::current_path(before);
}

TEST(PosixFiles, anOpenFileMayBeReplacedAndRemoved) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "old");
  WriteBytes(folder.Path(L"b.dat"), "new");
  CFile file(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareNone);
  EXPECT_TRUE(platform::ReplaceExistingFile(folder.Path(L"b.dat"), path));
  EXPECT_EQ("new", ReadBytes(path));
  EXPECT_TRUE(platform::RemoveFile(path));
  char bytes[4] = {};
  file.ReadN(bytes, 3);
  EXPECT_STREQ("old", bytes);
}

TEST(PosixFiles, devicesAreNotReplaced) {
  CReplacementFile file(L"/dev/null");
  file.Write("x");
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Commit(); }), L"Unable to write '/dev/null'."));
  struct stat status = {};
  ASSERT_EQ(0, stat("/dev/null", &status));
  EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST(PosixFiles, fullPathsNameWhatTheSystemOpens) {
  const TemporaryFolder folder;
  const auto at = [&folder](const char* name) {
    return test::ToFilesystemPath(folder.Path()) / name;
  };
  std::filesystem::create_directories(at("deep/down"));
  std::filesystem::create_directory_symlink("deep/down", at("link"));
  WriteBytes(folder.Path(L"deep/x.ini"), "[s]\r\nk=right\r\n");
  WriteBytes(folder.Path(L"x.ini"), "[s]\r\nk=wrong\r\n");
  const GString path = folder.Path() + L"/link/../x.ini";
  EXPECT_EQ(ReadBytes(path), ReadBytes(CPath(path).GetFullPath()));
  GString value;
  CConfigFile(path).Read(L"s", L"k", value);
  EXPECT_EQ(L"right", value);
  EXPECT_EQ(folder.Path(L"deep/x.ini"), LocateFile(path));
  EXPECT_EQ(folder.Path(L"link/y"), CPath(folder.Path(L"link/./y")).GetFullPath());
  EXPECT_EQ(folder.Path(L"y"), CPath(folder.Path(L"missing") + L"/../y").GetFullPath());
}

TEST(PosixFiles, modulesAreKnownByAnAddressInThem) {
  const GString library = platform::GetModulePath(reinterpret_cast<const void*>(&LocateFile));
  EXPECT_NE(GString::npos, library.String().find(L"libshared")) << library;
}

}  // namespace
}  // namespace shr
