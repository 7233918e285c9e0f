// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: full paths against the current folder, their limit; splitting and joining; readability;
// the search order.

#include "shared/files/Path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "shared/diagnostics/SystemInfo.h"
#include "shared/platform/Paths.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::TemporaryFolder;
using test::WriteBytes;

/// Writes the platform's separator for each slash.
GString Native(GString path) {
  for (wchar_t& ch : path.String()) {
    if (ch == L'/') ch = platform::PATH_SEPARATOR;
  }
  return path;
}

/// Makes a folder the current one for its lifetime.
class CurrentFolder {
public:
  explicit CurrentFolder(const GString& folder) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(test::ToFilesystemPath(folder));
  }
  ~CurrentFolder() { std::filesystem::current_path(before_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
  std::filesystem::path before_;
};

TEST(Path, fullPathsStandOnTheCurrentFolder) {
  const TemporaryFolder folder;
  const CurrentFolder current(folder.Path());
  const GString here = CPath(GString(L".")).GetFullPath();
  ASSERT_FALSE(here.empty());
  WriteBytes(here + L"/probe", "");
  EXPECT_TRUE(test::Exists(folder.Path(L"probe")));
  struct Row {
    const wchar_t* path;
    const wchar_t* full;  // behind the current folder
  };
  const Row rows[] = {{L"", L""},
                      {L"a.dat", L"/a.dat"},
                      {L"./a.dat", L"/a.dat"},
                      {L"x/../a.dat", L"/a.dat"},
                      {L"x//y/./a.dat", L"/x/y/a.dat"},
                      {L"x/y/../../a", L"/a"},
                      {L"x/", L"/x/"},
                      {L"\u6771\u4eac/\u0391", L"/\u6771\u4eac/\u0391"}};
  for (const Row& row : rows) {
    const GString expected = here + Native(row.full);
    const std::string name = GString(row.path).WtoAForDiagnostics();
    EXPECT_EQ(expected, CPath(GString(row.path)).GetFullPath()) << name;
    EXPECT_EQ(expected, DeprecatedPath::GetFullPath(row.path)) << name;
    EXPECT_EQ(expected, CPath(expected).GetFullPath()) << name;
    EXPECT_TRUE(platform::IsAbsolutePath(expected)) << name;
  }
  const GString upAndDown = GString(L"../") + CPath(here).GetFileName() + L"/a";
  EXPECT_EQ(here + Native(L"/a"), CPath(upAndDown).GetFullPath());
  EXPECT_TRUE(DeprecatedPath::GetFullPath(nullptr).empty());
}

TEST(Path, fullPathsHaveRoomFor260Units) {
  const GString root = CPath(Native(L"/")).GetFullPath();
  ASSERT_FALSE(root.empty());
  const GString fits = root + GString(259 - root.size(), L'a');
  EXPECT_EQ(fits, CPath(fits).GetFullPath());
  EXPECT_TRUE(CPath(fits + L"a").GetFullPath().empty());
  EXPECT_TRUE(DeprecatedPath::GetFullPath(GString(1000, L'a').c_str()).empty());
}

TEST(Path, foldersAndNamesAreSplitAndJoined) {
  struct Row {
    const wchar_t* path;
    const wchar_t* folder;
    const wchar_t* folderWithSeparator;
    const wchar_t* name;
  };
  const Row rows[] = {{L"", L"", L"", L""},
                      {L"a.dat", L"", L"", L"a.dat"},
                      {L"x/a.dat", L"x", L"x/", L"a.dat"},
                      {L"/a.dat", L"/", L"/", L"a.dat"},
                      {L"/x/y/a.b.c", L"/x/y", L"/x/y/", L"a.b.c"},
                      {L"x/", L"x", L"x/", L""},
                      {L"x//a", L"x", L"x//", L"a"},
                      {L"/", L"/", L"/", L""}};
  for (const Row& row : rows) {
    const CPath path(Native(row.path));
    const std::string name = GString(row.path).WtoAForDiagnostics();
    EXPECT_EQ(Native(row.folder), path.GetDriveAndFolder(false)) << name;
    EXPECT_EQ(Native(row.folderWithSeparator), path.GetDriveAndFolder(true)) << name;
    EXPECT_EQ(GString(row.name), path.GetFileName()) << name;
    EXPECT_EQ(path.GetPath(), CPath(path.GetDriveAndFolder(true)).Join(path.GetFileName())) << name;
  }
  EXPECT_EQ(Native(L"x/a"), CPath(GString(L"x")).Join(L"a"));
}

TEST(Path, theStartupFolderHoldsTheExecutable) {
  const GString folder = GetStartupPath(nullptr, false);
  const GString executable = platform::GetModulePath(nullptr);
  EXPECT_TRUE(platform::IsAbsolutePath(folder));
  EXPECT_EQ(executable, CPath(folder).Join(CPath(executable).GetFileName()));
  EXPECT_EQ(GetStartupPath(nullptr, true), folder + Native(L"/"));
  EXPECT_TRUE(test::Exists(executable));
  int local = 0;
  EXPECT_TRUE(GetStartupPath(&local, true).empty());
}

TEST(IsFileReadable, needsAnExistingFile) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path(L"\u0391"), "1");
  EXPECT_TRUE(IsFileReadable(folder.Path(L"\u0391")));
  EXPECT_FALSE(IsFileReadable(folder.Path(L"missing")));
  EXPECT_FALSE(IsFileReadable(GString()));
  GString cut = folder.Path(L"\u0391");
  cut.push_back(L'\0');
  cut += L"x";
  EXPECT_FALSE(IsFileReadable(cut));
}

TEST(LocateFile, searchFoldersComeFirstInTheirOrder) {
  const TemporaryFolder first;
  const TemporaryFolder second;
  const TemporaryFolder here;
  const CurrentFolder current(here.Path());
  CSystemInfo::SetSearchFolders({here.Path(L"missing"), first.Path(), second.Path()});
  const GString name = L"shared-test-colors.ini";
  EXPECT_TRUE(LocateFile(name).empty());
  WriteBytes(here.Path(name), "");
  EXPECT_EQ(CPath(name).GetFullPath(), LocateFile(name));
  WriteBytes(second.Path(name), "");
  EXPECT_EQ(second.Path() + Native(L"/") + name, LocateFile(name));
  WriteBytes(first.Path(name), "");
  EXPECT_EQ(first.Path() + Native(L"/") + name, LocateFile(name));
  EXPECT_TRUE(LocateFile(GString()).empty());
  CSystemInfo::ResetToDefaults();
}

TEST(LocateFile, theDefaultOrderKnowsTheExecutablesFolderAndFullPaths) {
  const TemporaryFolder here;
  const CurrentFolder current(here.Path());
  const GString executable = platform::GetModulePath(nullptr);
  EXPECT_EQ(executable, LocateFile(CPath(executable).GetFileName()));
  WriteBytes(here.Path(L"a.dat"), "");
  EXPECT_EQ(here.Path(L"a.dat"), LocateFile(here.Path(L"a.dat")));
  EXPECT_TRUE(LocateFile(here.Path(L"missing.dat")).empty());
  EXPECT_TRUE(LocateFile(L"shared-test-missing.dat").empty());
}

}  // namespace
}  // namespace shr
