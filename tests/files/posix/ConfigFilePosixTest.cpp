// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What only the library's own reading and writing of configuration files has: bytes that stay,
// letter case beyond ASCII, changes of others within a tick of the clock, what is no file, failing
// writes, links and permissions, writers in several processes.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "shared/files/ConfigFile.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/ChildProcess.h"

namespace shr {
namespace {

using namespace std::string_literals;

class ConfigFilePosix : public testing::Test {
protected:
  std::string Native() const { return test::ToFilesystemPath(file.GetFileName()).string(); }
  std::string Bytes() const { return test::ReadBytes(file.GetFileName()); }
  void SetBytes(std::string_view bytes) const { test::WriteBytes(file.GetFileName(), bytes); }
  GString Value(const GString& section, const GString& key) const {
    GString value;
    file.Read(section, key, value);
    return value;
  }
  /// Returns whether `action` says that the file cannot be written.
  bool IsRefused(const std::function<void()>& action) const {
    return test::HasSystemText(test::Failure(action),
                               L"Unable to write '" + file.GetFileName() + L"'.");
  }

  test::TemporaryFolder folder;
  CConfigFile file{folder.Path(L"settings.ini")};
};

TEST_F(ConfigFilePosix, linesThatAreNotConcernedKeepTheirBytes) {
  struct Row {
    const char* name;
    std::string before;
    void (*change)(const CConfigFile& file);
    std::string after;
  };
  const Row rows[] = {
      {"layout", "\n; c\n\n[ s ]\n  a = 1\n\tk =\t\"2\"  \n\n[t]\n",
       [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); },
       "\n; c\n\n[ s ]\n  a = 1\nk=v\n\n[t]\n"},
      {"new entry before blank lines", "[s]\na = 1\n\n\n[t]\n",
       [](const CConfigFile& f) { f.Write(L"s", L"k", L"v"); }, "[s]\na = 1\nk=v\n\n\n[t]\n"},
      {"lines end as the first one", "[s]\ra=1\n",
       [](const CConfigFile& f) { f.Write(L"t", L"k", 1); }, "[s]\ra=1\n[t]\rk=1\r"},
      {"bytes without a meaning", "\0\x81[s]\n\xFF=\x8D\0\n[s]\nk\x81 = 1\n"s,
       [](const CConfigFile& f) { f.Write(L"s", L"k\u0081", L"v"); },
       "\0\x81[s]\n\xFF=\x8D\0\n[s]\nk\x81=v\n"s},
      {"bad UTF-8", "\xEF\xBB\xBF[s]\n\xFF=\xD0\nk=1\n",
       [](const CConfigFile& f) { f.Write(L"s", L"k", L"\u0416"); },
       "\xEF\xBB\xBF[s]\n\xFF=\xD0\nk=\xD0\x96\n"},
      {"half a unit at the end", "\xFF\xFE[\0s\0]\0\n\0x"s,
       [](const CConfigFile& f) { f.Write(L"s", L"k", L""); }, "\xFF\xFE[\0s\0]\0\n\0k\0=\0\n\0x"s},
      {"section replaced between blank lines", "[s]\n\na=1\n; c\n\n[t]\n",
       [](const CConfigFile& f) { f.WriteSection(L"s", {L"k=v"}); }, "[s]\nk=v\n\n[t]\n"},
      {"header without a line end", "[s]",
       [](const CConfigFile& f) { f.WriteSection(L"s", {L"k=v"}); }, "[s]\r\nk=v\r\n"},
  };
  for (const Row& row : rows) {
    SetBytes(row.before);
    row.change(file);
    EXPECT_EQ(Bytes(), row.after) << row.name;
  }
}

TEST_F(ConfigFilePosix, namesMatchInTheCaseOfAllScripts) {
  SetBytes("\xEF\xBB\xBF[\xD0\x96]\n\xC3\xA9=1\n\xC4\xB1=2\n\xCF\x82=3\n\xF0\x90\x90\xA8=4\n");
  EXPECT_EQ(Value(L"\u0436", L"\u00C9"), L"1");
  EXPECT_EQ(Value(L"\u0436", L"I"), L"") << "dotless i is a letter of its own";
  EXPECT_EQ(Value(L"\u0436", L"\u03C3"), L"") << "and so is the final sigma";
  EXPECT_EQ(Value(L"\u0436", L"\U00010428"), L"4");
}

TEST_F(ConfigFilePosix, commentsAreNoEntries) {
  SetBytes("[s]\n;k=1\n");
  EXPECT_EQ(Value(L"s", L";k"), L"");
  file.RemoveEntry(L"s", L";k");
  EXPECT_EQ(Bytes(), "[s]\n;k=1\n");
}

TEST_F(ConfigFilePosix, changesWithinATickOfTheClockAreSeen) {
  // Changed through memory: only the first change moves the times of the file, as if all others
  // fell into the same tick.
  SetBytes("[s]\nk=0\n");
  const int descriptor = open(Native().c_str(), O_RDWR | O_CLOEXEC);
  const std::size_t size = Bytes().size();
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  ASSERT_NE(memory, MAP_FAILED);
  for (int round = 0; round < 100; ++round) {
    const wchar_t digit = static_cast<wchar_t>(L'0' + round % 10);
    static_cast<char*>(memory)[size - 2] = static_cast<char>(digit);
    ASSERT_EQ(Value(L"s", L"k"), GString(1, digit)) << round;
  }
  munmap(memory, size);
  close(descriptor);
}

TEST_F(ConfigFilePosix, changesInPlaceAreSeenAlsoWhenTheFileIsOld) {
  for (int i = 1000; i < 1003; ++i) {
    SetBytes("[s]\nk=" + std::to_string(i) + '\n');
    for (int read = 0; read < 3; ++read) {
      EXPECT_EQ(Value(L"s", L"k"), GString(std::to_wstring(i))) << read;
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
  }
}

TEST_F(ConfigFilePosix, filesThatAreReplacedOrGoAreNoticed) {
  const std::string other = Native() + ".other";
  for (const char* const value : {"1", "2", "3"}) {
    test::WriteBytes(folder.Path(L"settings.ini.other"), "[s]\nk="s + value + '\n');
    ASSERT_EQ(std::rename(other.c_str(), Native().c_str()), 0);
    EXPECT_EQ(Value(L"s", L"k"), GString(value));
  }
  std::filesystem::remove(Native());
  EXPECT_EQ(Value(L"s", L"k"), L"");
  file.Write(L"s", L"l", L"v");
  EXPECT_EQ(Bytes(), "[s]\r\nl=v\r\n") << "nothing of the file that is gone comes back";
}

TEST_F(ConfigFilePosix, moreFilesThanAreRememberedAreAllRight) {
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 20; ++i) {
      const CConfigFile one(folder.Path(std::to_wstring(i)));
      int value = 0;
      EXPECT_EQ(one.Read(L"s", L"k", value), round > 0);
      EXPECT_EQ(value, round * 100 + i * (round > 0 ? 1 : 0));
      one.Write(L"s", L"k", (round + 1) * 100 + i);
    }
  }
}

TEST_F(ConfigFilePosix, whatIsNoFileIsNeitherReadNorWritten) {
  const auto write = [this] { file.Write(L"s", L"k", L"v"); };
  ASSERT_EQ(mkfifo(Native().c_str(), 0600), 0);
  EXPECT_EQ(Value(L"s", L"k"), L"");
  EXPECT_TRUE(IsRefused(write));
  for (const wchar_t* const device : {L"/dev/full", L"/dev/zero"}) {
    const CConfigFile inDevice(device);
    GString value;
    EXPECT_FALSE(inDevice.Read(L"s", L"k", value));
    EXPECT_TRUE(test::HasSystemText(test::Failure([&] { inDevice.Write(L"s", L"k", L"v"); }),
                                    GString(L"Unable to write '") + device + L"'."));
  }
}

TEST_F(ConfigFilePosix, aFolderThatMayNotBeWrittenRefuses) {
  // Also the super user cannot create a file in there.
  const CConfigFile inProcess(L"/proc/self/settings.ini");
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { inProcess.Write(L"s", L"k", L"v"); }),
                                  L"Unable to write '/proc/self/settings.ini'."));
}

TEST_F(ConfigFilePosix, aFullDiskLeavesTheOldFile) {
  file.Write(L"s", L"k", L"v");
  const std::string before = Bytes();
  rlimit unlimited{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
  rlimit limited = unlimited;
  limited.rlim_cur = 1000;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &limited);
  EXPECT_TRUE(IsRefused([this] { file.Write(L"s", L"long", GString(5000, L'x')); }));
  setrlimit(RLIMIT_FSIZE, &unlimited);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(Bytes(), before);
  EXPECT_EQ(folder.Names().size(), 1u) << "nothing else remains";
  EXPECT_EQ(Value(L"s", L"k"), L"v");
  file.Write(L"s", L"long", L"w");
  EXPECT_EQ(Value(L"s", L"long"), L"w");
}

TEST_F(ConfigFilePosix, linksAndPermissionsStay) {
  file.Write(L"s", L"k", L"1");
  ASSERT_EQ(chmod(Native().c_str(), 0640), 0);
  const CConfigFile link(folder.Path(L"link.ini"));
  std::filesystem::create_symlink("settings.ini", test::ToFilesystemPath(link.GetFileName()));
  link.Write(L"s", L"k", L"2");
  EXPECT_EQ(Value(L"s", L"k"), L"2");
  EXPECT_TRUE(std::filesystem::is_symlink(test::ToFilesystemPath(link.GetFileName())));
  struct stat status = {};
  ASSERT_EQ(stat(Native().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_F(ConfigFilePosix, ownersStayAndLinksAreFollowedToWhatIsMissing) {
  const CConfigFile link(folder.Path(L"link.ini"));
  std::filesystem::create_symlink("settings.ini", test::ToFilesystemPath(link.GetFileName()));
  link.Write(L"s", L"k", L"1");
  EXPECT_EQ(Value(L"s", L"k"), L"1");
  EXPECT_TRUE(std::filesystem::is_symlink(test::ToFilesystemPath(link.GetFileName())));
  const uid_t owner = geteuid() == 0 ? 1234 : getuid();
  ASSERT_EQ(chown(Native().c_str(), owner, getgid()), 0);
  link.Write(L"s", L"k", L"\u6771\u4EAC");
  struct stat status = {};
  ASSERT_EQ(stat(Native().c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, owner);
}

TEST_F(ConfigFilePosix, theLongestNamesCanBeWritten) {
  for (const std::size_t letters : {125u, 127u}) {  // of two bytes each, beside one of one byte
    const CConfigFile longName(folder.Path(L"n" + std::wstring(letters, L'\u00E9')));
    EXPECT_EQ(test::Failure([&] { longName.Write(L"s", L"k", L"v"); }), L"(nothing)") << letters;
  }
}

TEST_F(ConfigFilePosix, aLockThatIsNotGivenBackIsWaitedForForABoundedTime) {
  file.Write(L"s", L"k", L"1");
  const std::string native = test::ToFilesystemPath(folder.Path()).string();
  const int stopped = open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(flock(stopped, LOCK_EX), 0);
  std::thread reader([this] { EXPECT_EQ(Value(L"s", L"k"), L"1") << "readers need no lock"; });
  const GString failure = test::Failure([this] { file.Write(L"s", L"k", L"2"); });
  reader.join();
  EXPECT_NE(failure.find(L"Another writer keeps the lock"), GString::npos) << failure;
  close(stopped);
  file.Write(L"s", L"k", L"3");
  EXPECT_EQ(Value(L"s", L"k"), L"3");
}

TEST_F(ConfigFilePosix, writersInSeveralProcessesLoseNothing) {
  constexpr int PROCESSES = 3, VALUES = 10;
  std::vector<pid_t> children;
  for (int process = 0; process < PROCESSES; ++process) {
    children.push_back(test::Start([this, process] {
      for (int i = 0; i < VALUES; ++i) file.Write(std::to_wstring(process), std::to_wstring(i), i);
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(test::Wait(child), 0);
  for (int process = 0; process < PROCESSES; ++process) {
    std::vector<GString> lines;
    file.ReadSection(std::to_wstring(process), lines);
    EXPECT_EQ(lines.size(), static_cast<std::size_t>(VALUES));
  }
}

TEST_F(ConfigFilePosix, aReaderBesideAWriterSeesWholeFiles) {
  const auto lines = [](int i) { return std::vector<GString>(500, L"k=" + std::to_wstring(i)); };
  file.WriteSection(L"s", lines(0));
  const pid_t child = test::Start([&] {
    for (int i = 0; i < 30; ++i) file.WriteSection(L"s", lines(i));
  });
  for (bool running = true; running;) {
    running = waitpid(child, nullptr, WNOHANG) == 0;
    std::vector<GString> read;
    file.ReadSection(L"s", read);
    ASSERT_EQ(read.size(), 500u);
    ASSERT_EQ(read.front(), read.back());
  }
  EXPECT_EQ(Value(L"s", L"k"), L"29");
}

}  // namespace
}  // namespace shr
