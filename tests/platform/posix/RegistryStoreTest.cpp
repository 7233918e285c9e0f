// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes of a file; every truncation and every changed bit of it; bodies that are wrong
// in one line under a right checksum; damaged, newer and foreign files as callers meet them; where
// the files lie; failing writes; writers in several processes, also killed ones.

#include "shared/platform/posix/RegistryStore.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "shared/platform/WindowsTypes.h"
#include "tests/support/RegistrySandbox.h"
#include "tests/support/posix/ChildProcess.h"

namespace shr::platform {
namespace {

using namespace std::string_literals;
using ReadResult = RegistryStore::ReadResult;

RegistryStore SampleStore() {
  RegistryStore store;
  store.CreateKey(u"Software\\Demo");
  store.Set(u"Software\\Demo", u"Name", {RegistryType::Text, "a\0\"\0\xE9\0\0\0"s});
  store.Set(u"Software\\Demo", u"name \x4E2D", {RegistryType::ExpandableText, ""});
  store.Set(u"Software\\Demo", u"", {RegistryType::Binary, "\0\xFF"s});
  store.Set(u"", u"Count", {RegistryType::Number32, "\x10\0\0\0"s});
  return store;
}

const std::string SAMPLE_FILE =
    "shared-registry 1 000000000000000a 0000000000000071 b119dc8d\n"
    "[\"\"]\n"
    "\"Count\" 4 x10000000\n"
    "[\"Software\"]\n"
    "[\"Software\\Demo\"]\n"
    "\"\" 3 x00ff\n"
    "\"Name\" 1 \"a%0022%00e9%0000\"\n"
    "\"name %4e2d\" 2 \"\"\n";

constexpr std::uint64_t SAMPLE_SERIAL = 10;

ReadResult ReadFile(const std::string& file, RegistryStore& store) {
  std::uint64_t serial = 0;
  RegistryStore::Fault fault;
  return store.Read(file, serial, fault);
}

TEST(RegistryStore, writesTheDocumentedBytesAndReadsThemBack) {
  EXPECT_EQ(SampleStore().Write(SAMPLE_SERIAL), SAMPLE_FILE);
  RegistryStore store;
  std::uint64_t serial = 0;
  RegistryStore::Fault fault;
  ASSERT_EQ(store.Read(SAMPLE_FILE, serial, fault), ReadResult::Ok) << fault.reason;
  EXPECT_EQ(serial, SAMPLE_SERIAL);
  EXPECT_EQ(store.Write(serial), SAMPLE_FILE);
}

TEST(RegistryStore, keepsItsRoot) {
  RegistryStore store;
  EXPECT_EQ(store.RemoveKey(u""), RegistryStatus::AccessDenied);
  EXPECT_TRUE(store.HasKey(u""));
  store.CreateKey(u"a");
  EXPECT_EQ(store.RemoveKey(u""), RegistryStatus::AccessDenied);
  EXPECT_EQ(store.RemoveKey(u"a"), RegistryStatus::Success);
  EXPECT_EQ(store.Set(u"", u"x", {RegistryType::Text, ""}), RegistryStatus::Success);
}

TEST(RegistryStore, refusesEveryTruncationAndExtension) {
  RegistryStore store;
  for (std::size_t length = 0; length < SAMPLE_FILE.size(); ++length) {
    EXPECT_NE(ReadFile(SAMPLE_FILE.substr(0, length), store), ReadResult::Ok) << length;
    EXPECT_FALSE(store.HasKey(u"Software"));
  }
  EXPECT_EQ(ReadFile(SAMPLE_FILE + "\n", store), ReadResult::Damaged);
}

TEST(RegistryStore, refusesEveryChangedBit) {
  RegistryStore store;
  for (std::size_t bit = 0; bit < 8 * SAMPLE_FILE.size(); ++bit) {
    std::string file = SAMPLE_FILE;
    file[bit / 8] = static_cast<char>(file[bit / 8] ^ 1 << bit % 8);
    EXPECT_NE(ReadFile(file, store), ReadResult::Ok) << "bit " << bit;
  }
}

TEST(RegistryStore, namesTheLineOfABodyThatIsWrong) {
  struct Row {
    const char* name;
    std::string body;
    std::size_t line;  // 0 for a body that is right
  };
  const Row rows[] = {
      {"empty", "", 0},
      {"root alone", "[\"\"]\n", 0},
      {"a key twice", "[\"a\"]\n[\"A\"]\n\"v\" 4 x\n", 0},
      {"largest type", "[\"\"]\n\"v\" 4294967295 x\n", 0},
      {"type too large", "[\"\"]\n\"v\" 4294967296 x\n", 3},
      {"type missing", "[\"\"]\n\"v\" x\n", 3},
      {"negative type", "[\"\"]\n\"v\" -1 x\n", 3},
      {"value first", "\"v\" 4 x\n", 2},
      {"key without the one above", "[\"a\\b\"]\n", 2},
      {"no line end", "[\"\"]", 2},
      {"carriage return", "[\"\"]\r\n", 2},
      {"empty line", "[\"\"]\n\n", 3},
      {"open quote", "[\"\"]\n[\"a]\n", 3},
      {"plain control character", "[\"\"]\n\"a\tb\" 4 x\n", 3},
      {"plain byte beyond ASCII", "[\"\"]\n\"\xE9\" 4 x\n", 3},
      {"short escape", "[\"\"]\n\"%00e\" 4 x\n", 3},
      {"escape at the end", "[\"\"]\n\"%00", 3},
      {"half a byte", "[\"\"]\n\"v\" 4 x0\n", 3},
      {"not hexadecimal", "[\"\"]\n\"v\" 4 x0g\n", 3},
      {"sign in hexadecimal", "[\"\"]\n\"v\" 4 x-1\n", 3},
      {"data missing", "[\"\"]\n\"v\" 4 \n", 3},
      {"rest behind a text", "[\"\"]\n\"v\" 1 \"a\"b\n", 3},
  };
  for (const Row& row : rows) {
    RegistryStore store;
    RegistryStore::Fault fault;
    const ReadResult result = store.ReadBody(row.body, fault);
    EXPECT_EQ(result, row.line == 0 ? ReadResult::Ok : ReadResult::Damaged) << row.name;
    EXPECT_EQ(fault.line, row.line) << row.name;
  }
}

TEST(RegistryStore, normalizesPaths) {
  std::u16string path;
  EXPECT_EQ(RegistryStore::NormalizePath(L"a\\\\b\\", path), RegistryStatus::Success);
  EXPECT_EQ(path, u"a\\b");
  EXPECT_EQ(RegistryStore::NormalizePath(GString(std::wstring(256, L'k')), path),
            RegistryStatus::InvalidParameter);
  std::wstring deep = L"k";
  for (int depth = 1; depth < 512; ++depth) deep += L"\\k";
  EXPECT_EQ(RegistryStore::NormalizePath(deep, path), RegistryStatus::Success);
  EXPECT_EQ(RegistryStore::NormalizePath(deep + L"\\k", path), RegistryStatus::InvalidParameter);
}

// The files as callers meet them.

class RegistryFileTest : public testing::Test {
protected:
  GString File(const wchar_t* suffix = L"") const {
    return sandbox.Folder().Path(L"HKEY_CURRENT_USER.registry") + suffix;
  }
  static RegistryStatus Set(const GString& name, const std::string& bytes) {
    RegistryKey key;
    const RegistryStatus status = key.Create(HKEY_CURRENT_USER, L"Software\\Demo");
    if (status != RegistryStatus::Success) return status;
    return key.Set(name, {RegistryType::Binary, bytes});
  }
  static std::string Get(const GString& name) {
    RegistryKey key;
    RegistryValue value{RegistryType::None, "(missing)"};
    key.Open(HKEY_CURRENT_USER, L"Software\\Demo", RegistryAccess::Read);
    key.Query(name, value);
    return value.bytes;
  }
  static RegistryStatus OpenStatus() {
    RegistryKey key;
    return key.Open(HKEY_CURRENT_USER, L"Software", RegistryAccess::Read);
  }

  test::RegistrySandbox sandbox;
};

TEST_F(RegistryFileTest, damagedFilesAreReportedAndKeptAside) {
  for (const auto& [damage, aside] :
       {std::pair("", L".damaged-1"), std::pair("x", L".damaged-2")}) {
    test::WriteBytes(File(), damage);
    EXPECT_EQ(OpenStatus(), RegistryStatus::Damaged);
    EXPECT_EQ(test::ReadBytes(File()), damage) << "reading leaves the file alone";
    EXPECT_EQ(Set(L"x", "1"), RegistryStatus::Damaged);
    EXPECT_NE(RegistryErrorText().find(File(aside)), GString::npos);
    EXPECT_EQ(test::ReadBytes(File(aside)), damage);
    EXPECT_EQ(Set(L"x", "2"), RegistryStatus::Success);
    EXPECT_EQ(Get(L"x"), "2");
  }
}

TEST_F(RegistryFileTest, damageToAKnownFileIsNoticed) {
  Set(L"x", "1");
  std::string file = test::ReadBytes(File());
  file[file.size() - 3] ^= 1;
  test::WriteBytes(File(), file);
  EXPECT_EQ(OpenStatus(), RegistryStatus::Damaged);
  EXPECT_EQ(Set(L"x", "2"), RegistryStatus::Damaged);
  EXPECT_EQ(test::ReadBytes(File(L".damaged-1")), file);
}

TEST_F(RegistryFileTest, filesOfAnotherVersionAreLeftAlone) {
  std::string file = SAMPLE_FILE;
  file[std::string("shared-registry ").size()] = '2';
  test::WriteBytes(File(), file);
  EXPECT_EQ(OpenStatus(), RegistryStatus::UnknownVersion);
  EXPECT_EQ(Set(L"x", "1"), RegistryStatus::UnknownVersion);
  EXPECT_EQ(test::ReadBytes(File()), file);
}

TEST_F(RegistryFileTest, changesOfOtherProcessesAreSeenAtOnce) {
  Set(L"x", "1");
  for (const char* bytes : {"2", "3", "4"}) {
    EXPECT_EQ(Get(L"x").size(), 1u);
    test::Wait(test::Start([&] { Set(L"x", bytes); }));
    EXPECT_EQ(Get(L"x"), bytes);
  }
  test::WriteBytes(File(), SAMPLE_FILE);
  EXPECT_EQ(Get(L""), "\0\xFF"s);
}

TEST_F(RegistryFileTest, theFolderIsChosenByTheEnvironment) {
  const auto path = [this](const char* name) { return sandbox.Folder().Path().ToUtf8() + name; };
  unsetenv("SHARED_REGISTRY_DIR");
  const char* const home = std::getenv("HOME");
  const std::string oldHome = home ? home : "";
  const char* const configuration = std::getenv("XDG_CONFIG_HOME");
  const std::string oldConfiguration = configuration ? configuration : "";
  setenv("HOME", path("/home").c_str(), 1);
  setenv("XDG_CONFIG_HOME", path("/config").c_str(), 1);
  EXPECT_EQ(Set(L"x", "1"), RegistryStatus::Success);
  EXPECT_TRUE(test::Exists(sandbox.Folder().Path(L"config/shared/HKEY_CURRENT_USER.registry")));
  setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(Set(L"x", "1"), RegistryStatus::Success);
  EXPECT_TRUE(
      test::Exists(sandbox.Folder().Path(L"home/.config/shared/HKEY_CURRENT_USER.registry")));
  unsetenv("XDG_CONFIG_HOME");
  unsetenv("HOME");
  EXPECT_EQ(Set(L"x", "1"), RegistryStatus::IoFailed);
  if (home) setenv("HOME", oldHome.c_str(), 1);
  if (configuration) setenv("XDG_CONFIG_HOME", oldConfiguration.c_str(), 1);
}

TEST_F(RegistryFileTest, aFailedWriteLeavesTheOldFile) {
  ASSERT_EQ(Set(L"x", "1"), RegistryStatus::Success);
  const std::string before = test::ReadBytes(File());
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit unlimited{};
  getrlimit(RLIMIT_FSIZE, &unlimited);
  rlimit limited = unlimited;
  limited.rlim_cur = 1000;
  setrlimit(RLIMIT_FSIZE, &limited);
  EXPECT_EQ(Set(L"y", std::string(5000, 'y')), RegistryStatus::IoFailed);
  EXPECT_NE(RegistryErrorText().find(L"HKEY_CURRENT_USER"), GString::npos);
  setrlimit(RLIMIT_FSIZE, &unlimited);
  std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(test::ReadBytes(File()), before);
  EXPECT_EQ(Get(L"y"), "(missing)") << "what was not saved is not remembered";
  EXPECT_EQ(Set(L"y", "2"), RegistryStatus::Success);
}

TEST_F(RegistryFileTest, foldersAndPipesAreNoFiles) {
  std::filesystem::create_directory(test::ToFilesystemPath(File()));
  EXPECT_EQ(OpenStatus(), RegistryStatus::IoFailed);
  EXPECT_EQ(Set(L"x", "1"), RegistryStatus::IoFailed);
  EXPECT_TRUE(test::Exists(File()));
  std::filesystem::remove(test::ToFilesystemPath(File()));
  ASSERT_EQ(mkfifo(File().ToUtf8().c_str(), 0600), 0);
  EXPECT_EQ(OpenStatus(), RegistryStatus::IoFailed);
}

TEST_F(RegistryFileTest, writersInSeveralProcessesLoseNothing) {
  constexpr int PROCESSES = 3, VALUES = 10;
  std::vector<pid_t> children;
  for (int process = 0; process < PROCESSES; ++process) {
    children.push_back(test::Start([process] {
      for (int i = 0; i < VALUES; ++i) {
        Set(GString(std::to_wstring(process) + L"-" + std::to_wstring(i)), "kept");
      }
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(test::Wait(child), 0);
  for (int process = 0; process < PROCESSES; ++process) {
    for (int i = 0; i < VALUES; ++i) {
      EXPECT_EQ(Get(GString(std::to_wstring(process) + L"-" + std::to_wstring(i))), "kept");
    }
  }
}

TEST_F(RegistryFileTest, killedWritersLeaveAWholeFile) {
  ASSERT_EQ(Set(L"kept", "1"), RegistryStatus::Success);
  for (useconds_t delay = 0; delay < 10; ++delay) {
    const pid_t child = test::Start([] {
      for (int i = 0;; ++i) Set(L"x", std::string(20'000, static_cast<char>(i)));
    });
    usleep(1000 + 300 * delay);
    kill(child, SIGKILL);
    test::Wait(child);
    ASSERT_EQ(OpenStatus(), RegistryStatus::Success) << RegistryErrorText();
    ASSERT_EQ(Get(L"kept"), "1");
  }
  EXPECT_EQ(Set(L"after", "1"), RegistryStatus::Success);
}

}  // namespace
}  // namespace shr::platform
