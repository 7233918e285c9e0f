// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every mode and access on a missing and an existing file; every message; both sides, disk
// and memory; positions; adopted handles; moves.

#include "shared/files/File.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "shared/platform/RawFile.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::Failure;
using test::HasSystemText;
using test::ReadBytes;
using test::TemporaryFolder;
using test::WriteBytes;

GString Message(const wchar_t* what, const GString& path) {
  return GString(L"Unable to ") + what + L" '" + path + L"'.";
}

TEST(File, modesDecideAboutMissingAndExistingFiles) {
  struct Row {
    const char* name;
    CFile::Mode mode;
    bool opensMissing;
    bool opensExisting;
    const char* content;  // after writing "AB" into an existing "12345678"
  };
  const Row rows[] = {{"create new", CFile::ModeCreateNew, true, false, "12345678"},
                      {"create always", CFile::ModeCreateAlways, true, true, "AB"},
                      {"open existing", CFile::ModeOpenExisting, false, true, "AB345678"},
                      {"open always", CFile::ModeOpenAlways, true, true, "AB345678"},
                      {"truncate existing", CFile::ModeTruncateExisting, false, true, "AB"},
                      {"append", CFile::ModeAppend, true, true, "12345678AB"}};
  for (const Row& row : rows) {
    for (const CFile::Access access : {CFile::AccessWrite, CFile::AccessReadWrite}) {
      const TemporaryFolder folder;
      const GString path = folder.Path(L"a.dat");
      CFile file;
      EXPECT_EQ(row.opensMissing, file.OpenNoThrow(path, access, row.mode, CFile::ShareAll))
          << row.name;
      EXPECT_EQ(row.opensMissing, file.IsOpen()) << row.name;
      file.Close();
      EXPECT_EQ(row.opensMissing, test::Exists(path)) << row.name;
      WriteBytes(path, "12345678");
      const GString failure = Failure([&] {
        file.Open(path, access, row.mode, CFile::ShareNone);
        file.Write("AB", 2);
        file.Close();
      });
      EXPECT_EQ(row.opensExisting, failure == L"(nothing)") << row.name;
      EXPECT_EQ(!row.opensExisting, HasSystemText(failure, Message(L"open", path))) << row.name;
      EXPECT_EQ(row.content, ReadBytes(path)) << row.name;
    }
  }
}

TEST(File, accessDecidesAboutReadingAndWriting) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "1");
  struct Row {
    int access;
    bool reads;
    bool writes;
  };
  for (const Row& row : {Row{1, true, false},
                         {2, false, true},
                         {3, true, true},
                         {0, true, false},
                         {4, true, false}}) {
    CFile file(path, static_cast<CFile::Access>(row.access), CFile::ModeOpenExisting,
               CFile::ShareAll);
    char byte = 0;
    const GString reading = Failure([&] { file.Read(&byte, 1); });
    const GString writing = Failure([&] { file.Write("1", 1); });
    EXPECT_EQ(row.reads, reading == L"(nothing)") << row.access;
    EXPECT_EQ(row.writes, writing == L"(nothing)") << row.access;
    EXPECT_TRUE(row.reads || HasSystemText(reading, Message(L"read", path))) << reading;
    EXPECT_TRUE(row.writes || HasSystemText(writing, Message(L"write", path))) << writing;
  }
}

TEST(File, sharingModesBindTwoObjects) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "1");
  for (const int sharing : {0, 1, 2, 3}) {
    const CFile host(path, CFile::AccessRead, CFile::ModeOpenExisting,
                     static_cast<CFile::Sharing>(sharing));
    for (const CFile::Access access : {CFile::AccessRead, CFile::AccessWrite}) {
      CFile guest;
      EXPECT_EQ((sharing & access) != 0,
                guest.OpenNoThrow(path, access, CFile::ModeOpenExisting, CFile::ShareAll))
          << sharing << ' ' << access;
    }
  }
}

TEST(File, faultsOfTheCallerAreInternalErrors) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  const auto open = [](CFile& file, const GString& name, int mode, int sharing) {
    return Failure([&] {
      file.Open(name, CFile::AccessWrite, static_cast<CFile::Mode>(mode),
                static_cast<CFile::Sharing>(sharing));
    });
  };
  CFile file;
  EXPECT_EQ(L"[File]", open(file, GString(), 2, 3));
  EXPECT_EQ(L"[File]", open(file, path, 0, 3));
  EXPECT_EQ(L"[File]", open(file, path, 7, 3));
  EXPECT_EQ(L"[File]", open(file, path, 2, 4));
  EXPECT_EQ(L"[File]", open(file, path, 2, -1));
  EXPECT_EQ(L"[File]", Failure([&] { file.Write("1", 1); }));
  EXPECT_EQ(L"[File]", Failure([&] { file.Seek(0, CFile::OriginBegin); }));
  EXPECT_EQ(L"[File]", Failure([&] { file.Read(nullptr, 1); }));
  EXPECT_FALSE(file.OpenNoThrow(GString(), CFile::AccessWrite, CFile::ModeAppend, CFile::ShareAll));
  EXPECT_TRUE(folder.Names().empty());

  EXPECT_EQ(L"(nothing)", open(file, path, CFile::ModeCreateNew, CFile::ShareAll));
  EXPECT_EQ(L"[File]", open(file, path, CFile::ModeOpenExisting, CFile::ShareAll));
  EXPECT_EQ(L"[File]", Failure([&] { file.Open(); }));
  EXPECT_FALSE(file.OpenNoThrow(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareAll));
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(L"[File]", Failure([&] { file.Seek(0, static_cast<CFile::Origin>(3)); }));
  EXPECT_EQ(L"[File]", Failure([&] { file.Write(nullptr, 1); }));
}

TEST(File, aClosedFileIsEmpty) {
  CFile file;
  char byte = 0;
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(0u, file.Read(&byte, 1));
  EXPECT_EQ(L"Unexpected end of file.", Failure([&] { file.ReadN(&byte, 1); }));
  EXPECT_TRUE(file.EndOfFile());
  EXPECT_EQ(-1, file.GetLength());
  EXPECT_EQ(nullptr, file.GetBuffer());
  EXPECT_EQ(CFile::NO_HANDLE, file.GetHandle());
  file.Flush();
  file.Close();
  file.Abort(true);
}

/// What disk and memory have in common.
TEST(File, diskAndMemoryBehaveAlike) {
  const TemporaryFolder folder;
  for (const bool isMemory : {false, true}) {
    CFile file;
    if (isMemory) {
      file.Open();
    } else {
      file.Open(folder.Path(L"a.dat"), CFile::AccessReadWrite, CFile::ModeCreateNew,
                CFile::ShareNone);
    }
    EXPECT_EQ(isMemory, file.IsMemoryFile());
    EXPECT_EQ(isMemory, file.GetHandle() == CFile::NO_HANDLE);
    EXPECT_TRUE(file.EndOfFile());
    file.Write("12345678", 8);
    file.Flush();
    EXPECT_EQ(8, file.GetLength());
    EXPECT_EQ(8, file.GetPosition());
    EXPECT_EQ(6, file.Seek(-2, CFile::OriginCurrent));
    EXPECT_FALSE(file.EndOfFile());
    char bytes[5] = {};
    EXPECT_EQ(2u, file.Read(bytes, 4));
    EXPECT_STREQ("78", bytes);
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_EQ(0u, file.Read(bytes, 4));
    EXPECT_EQ(0, file.SeekToBegin());
    file.ReadN(bytes, 4);
    EXPECT_STREQ("1234", bytes);
    EXPECT_EQ(L"Unexpected end of file.", Failure([&] { file.ReadN(bytes, 5); }));
    EXPECT_EQ(8, file.SeekToEnd());
    EXPECT_EQ(10, file.Seek(2, CFile::OriginEnd));
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_EQ(0u, file.Read(bytes, 4));
    file.Write("x", 1);
    file.Seek(-3, CFile::OriginEnd);
    file.ReadN(bytes, 3);
    EXPECT_EQ(std::string("\0\0x", 3), std::string(bytes, 3));
    const GString name = isMemory ? GString(L"memory file") : file.GetFilePath();
    const GString before = Failure([&] { file.Seek(-1, CFile::OriginBegin); });
    EXPECT_TRUE(HasSystemText(before, Message(L"seek", name))) << before;
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.IsMemoryFile());
  }
}

TEST(File, positionsAre64BitOnDiskAnd32BitInMemory) {
  const TemporaryFolder folder;
  CFile disk(folder.Path(L"large.dat"), CFile::AccessReadWrite, CFile::ModeCreateNew,
             CFile::ShareNone);
  constexpr std::int64_t FAR_AWAY = 5'000'000'000;
  EXPECT_EQ(FAR_AWAY, disk.Seek(FAR_AWAY, CFile::OriginBegin));
  disk.Write("end", 3);
  EXPECT_EQ(FAR_AWAY + 3, disk.GetLength());
  EXPECT_EQ(FAR_AWAY + 3, disk.GetPosition());
  EXPECT_TRUE(disk.EndOfFile());
  disk.Seek(-3, CFile::OriginCurrent);
  EXPECT_FALSE(disk.EndOfFile());
  CFile memory;
  memory.Open();
  constexpr std::int64_t LIMIT = std::int64_t{1} << 31;
  EXPECT_EQ(LIMIT - 1, memory.Seek(LIMIT - 1, CFile::OriginBegin));
  EXPECT_EQ(L"Unable to seek 'memory file'.\nout of range",
            Failure([&] { memory.Seek(LIMIT, CFile::OriginBegin); }));
  EXPECT_EQ(L"Unable to seek 'memory file'.\nout of range",
            Failure([&] { memory.Seek(-LIMIT - 1, CFile::OriginCurrent); }));
}

TEST(File, aMemoryFileWorksOnTheCallersBuffer) {
  char buffer[] = "12345";
  CFile file;
  file.Open(buffer, 5);
  EXPECT_EQ(5, file.GetLength());
  file.Write("ab", 2);
  EXPECT_EQ(reinterpret_cast<unsigned char*>(buffer), file.GetBuffer());
  file.Close();
  EXPECT_STREQ("ab345", buffer);
}

TEST(File, abortRemovesOnlyOnRequest) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  for (const bool remove : {false, true}) {
    CFile file(path, CFile::AccessWrite, CFile::ModeCreateAlways, CFile::ShareNone);
    file.Abort(remove);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(!remove, test::Exists(path));
  }
}

TEST(File, adoptsHandlesAndHandsThemOnWithMoves) {
  const TemporaryFolder folder;
  platform::FileOpenOptions options;
  options.read = options.create = true;
  CFile adopted(platform::OpenDescriptor(folder.Path(L"a.dat"), options));
  EXPECT_TRUE(adopted.IsOpen());
  adopted.SetFilePath(L"another name");
  EXPECT_TRUE(
      HasSystemText(Failure([&] { adopted.Write("1", 1); }), Message(L"write", L"another name")));
  CFile moved = std::move(adopted);
  EXPECT_FALSE(adopted.IsOpen());
  EXPECT_EQ(0, moved.GetLength());
  CFile assigned(folder.Path(L"b.dat"), CFile::AccessWrite, CFile::ModeCreateNew, CFile::ShareNone);
  assigned = std::move(moved);
  EXPECT_EQ(GString(L"another name"), assigned.GetFilePath());
  EXPECT_TRUE(test::Exists(folder.Path(L"b.dat")));
  assigned.Close();
  EXPECT_FALSE(CFile(CFile::NO_HANDLE).IsOpen());
}

TEST(File, aBadHandleFailsWithEachMessage) {
  const TemporaryFolder folder;
  platform::FileOpenOptions options;
  options.read = options.write = options.create = true;
  const int handle = platform::OpenDescriptor(folder.Path(L"a.dat"), options);
  ASSERT_TRUE(platform::CloseDescriptor(handle));
  CFile file(handle);
  file.SetFilePath(L"gone");
  char byte = 0;
  EXPECT_EQ(L"EOF: Bad file handle", Failure([&] { file.EndOfFile(); }));
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Read(&byte, 1); }), Message(L"read", L"gone")));
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Write(&byte, 1); }), Message(L"write", L"gone")));
  EXPECT_TRUE(HasSystemText(Failure([&] { file.GetPosition(); }), Message(L"seek", L"gone")));
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Flush(); }), Message(L"write", L"gone")));
  EXPECT_TRUE(HasSystemText(Failure([&] { file.Close(); }), Message(L"close", L"gone")));
  EXPECT_FALSE(file.IsOpen());
}

}  // namespace
}  // namespace shr
