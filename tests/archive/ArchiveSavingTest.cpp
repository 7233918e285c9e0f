// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what becomes of the old file when a save fails at its beginning, in its middle or at its
// end, by an exception, a refusal or a caller who did not look, and when it is given up; two
// archives at one file; values and objects nested deeper than the stack.

#include <gtest/gtest.h>

#include <filesystem>

#include "shared/diagnostics/ThrowError.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::Nest;
using test::Node;

/// A value that cannot be stored as a whole.
struct Broken {
  void Serialize(Archive& archive) {
    int number = 1;
    archive(number);
    ThrowErrorImpl(L"Test", 1, L"broken");
  }
};

/// A folder with an old file in it.
class ArchiveSaving : public testing::Test {
protected:
  void SetUp() override { test::WriteBytes(path, "old"); }
  std::size_t FilesInFolder() const {
    const std::filesystem::directory_iterator files(
        test::ToFilesystemPath(folder.Path(L"").String()));
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  int number = 7;
};

TEST_F(ArchiveSaving, theOldFileSurvivesEverySaveThatFails) {
  const GString incomplete =
      GString(L"Unable to write '") + path + L"'.\nNot everything could be stored.";
  std::string large(300000, 'x');
  const struct {
    const char* name;
    std::function<void()> save;
  } rows[] = {
      {"an exception passes by",
       [&] {
         Failure([&] {
           Archive archive(path, Archive::Store);
           archive(large, number);
           ThrowErrorImpl(L"Test", 1, L"other");
         });
       }},
      {"a value fails and nobody looks",
       [&] {
         Archive archive(path, Archive::Store);
         Broken broken;
         Failure([&] { archive(large, broken); });
       }},
      {"a value fails and the file is closed",
       [&] {
         Archive archive(path, Archive::Store);
         Broken broken;
         Failure([&] { archive(broken); });
         archive(number);
         EXPECT_EQ(incomplete, Failure([&] { archive.Close(); }));
         EXPECT_EQ(L"[Archive]", Failure([&] { archive.Close(); }));
       }},
      {"a number does not fit",
       [&] {
         Archive archive(path, Archive::Store);
         std::size_t count = std::size_t{1} << 33;
         Failure([&] { archive.TransferCount(count); });
         EXPECT_EQ(incomplete, Failure([&] { archive.Close(); }));
       }},
      {"it is given up",
       [&] {
         Archive archive(path, Archive::Store);
         archive(large);
         archive.Abandon();
         archive.Abandon();
         EXPECT_EQ(L"", archive.GetFilename());
       }},
  };
  for (const auto& row : rows) {
    row.save();
    EXPECT_EQ("old", test::ReadBytes(path)) << row.name;
    EXPECT_EQ(1u, FilesInFolder()) << row.name;
  }
}

TEST_F(ArchiveSaving, theNewFileIsThereWhenItIsClosedAndNotBefore) {
  Archive archive(path, Archive::Store);
  archive(number);
  EXPECT_EQ(path.String(), archive.GetFilename());
  EXPECT_EQ(4u, archive.GetSize());
  EXPECT_EQ("old", test::ReadBytes(path));
  archive.Close();
  EXPECT_EQ(std::string("\7\0\0\0", 4), test::ReadBytes(path));
  EXPECT_EQ(1u, FilesInFolder());
}

TEST_F(ArchiveSaving, whatIsLoadedIsNotReplacedAndOfTwoWritersTheLaterStays) {
  {
    const Archive loading(path, Archive::Load);
    Archive other;
    EXPECT_NE(L"(nothing)", Failure([&] { other.OpenFile(path, Archive::Store); }));
    EXPECT_EQ(L"(nothing)", Failure([&] { other.OpenFile(path, Archive::Load); }));
  }
  Archive first(path, Archive::Store);
  Archive second(path, Archive::Store);
  first.Write("first", 5);
  second.Write("second", 6);
  second.Close();
  EXPECT_EQ("second", test::ReadBytes(path));
  first.Close();
  EXPECT_EQ("first", test::ReadBytes(path));
  EXPECT_EQ(1u, FilesInFolder());
}

TEST_F(ArchiveSaving, valuesNestedDeeperThanTheStackAreRefusedInBothDirections) {
  Nest deep(200000);
  EXPECT_TRUE(test::IsTooDeep(Failure([&] {
    Archive archive(path, Archive::Store);
    archive(deep);
    archive.Close();
  })));
  EXPECT_EQ("old", test::ReadBytes(path));
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += std::string("\1\0\0\0", 4);
  Nest loaded;
  EXPECT_TRUE(test::IsTooDeep(Failure(
      [&] { test::LoadFrom(bytes, [&](Archive& archive) { Transfer(archive, loaded); }); })));

  Nest fair(300);
  const std::string fairBytes = test::Stored([&](Archive& archive) { archive(fair); });
  EXPECT_EQ(301u * 4, fairBytes.size());
  test::LoadFrom(fairBytes, [&](Archive& archive) { archive(loaded); });
  EXPECT_TRUE(fairBytes == test::Stored([&](Archive& archive) { archive(loaded); }));
}

/// A value that transfers those within it by hand.
struct OwnLoop {
  void Serialize(Archive& archive) {
    std::size_t count = 1;
    archive.TransferCount(count);
    for (; count > 0; --count) OwnLoop().Serialize(archive);
  }
};

TEST_F(ArchiveSaving, classesThatLoopThemselvesAreStoppedByTheirCounts) {
  EXPECT_TRUE(test::IsTooDeep(Failure([&] {
    OwnLoop endless;
    test::Stored([&](Archive& archive) { archive(endless); });
  })));
}

/// A node of a grid, which knows its neighbours by plain pointers.
class GridNode : public TypedObject<GridNode> {
public:
  void Serialize(Archive& archive) override { archive(neighbours); }
  GridNode* neighbours[4] = {};
};

TEST_F(ArchiveSaving, aGridOfPlainPointersIsStoredOrRefusedBeforeTheOldFileIsTouched) {
  constexpr std::size_t SIDE = 200;
  std::vector<GridNode> nodes(SIDE * SIDE);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (i % SIDE + 1 < SIDE) nodes[i].neighbours[0] = &nodes[i + 1];
    if (i + SIDE < nodes.size()) nodes[i].neighbours[1] = &nodes[i + SIDE];
    if (i % SIDE > 0) nodes[i].neighbours[2] = &nodes[i - 1];
    if (i >= SIDE) nodes[i].neighbours[3] = &nodes[i - SIDE];
  }
  const GString failure = Failure([&] {
    Archive archive(path, Archive::Store);
    GridNode* first = &nodes[0];
    archive(first);
    archive.Close();
  });
  if (failure != L"(nothing)") {
    EXPECT_TRUE(test::IsTooDeep(failure)) << failure;
    EXPECT_EQ("old", test::ReadBytes(path));
    return;
  }
  Archive archive(path, Archive::Load);
  GridNode* first = nullptr;
  archive(first);
  EXPECT_EQ(nodes.size(), archive.GetLoadedObjects().size());
  archive.DiscardLoaded();
}

}  // namespace
}  // namespace shr
