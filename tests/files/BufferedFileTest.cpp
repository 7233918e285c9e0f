// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: opening; characters, blocks, lines of every length around the piece size; formatted
// output; positions; changes between reading and writing; abandoning; messages.

#include "shared/files/BufferedFile.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

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

constexpr auto ALL = CBufferedFile::ShareAll;

GString Message(const wchar_t* what, const GString& path) {
  return GString(L"Unable to ") + what + L" '" + path + L"'.";
}

/// A file for reading and writing, on disk or in memory, that holds `content` and stands at its
/// begin.
class Both {
public:
  explicit Both(bool isMemory, const std::string& content = std::string()) {
    if (isMemory) {
      file.Open();
    } else {
      file.Open(folder_.Path(L"both.dat"), L"w+b", CBufferedFile::ShareNone, false);
    }
    file.Write(content.data(), static_cast<std::uint32_t>(content.size()));
    file.Rewind();
  }

  std::string Content() {
    file.Rewind();
    std::string content(static_cast<std::size_t>(file.GetLength()), '?');
    file.ReadN(content.data(), static_cast<std::uint32_t>(content.size()));
    return content;
  }

private:
  TemporaryFolder folder_;  // outlives the file in it

public:
  CBufferedFile file;
};

std::vector<std::string> Lines(CBufferedFile& file) {
  std::vector<std::string> lines;
  std::string line;
  while (file.ReadString(line)) lines.push_back(line);
  return lines;
}

TEST(BufferedFile, faultsOfTheCallerAreInternalErrors) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  CBufferedFile file;
  const auto open = [&](const GString& name, const wchar_t* mode, int sharing = 3) {
    const auto kind = static_cast<CBufferedFile::Sharing>(sharing);
    const GString failure = Failure([&] { file.Open(name, mode, kind, false); });
    EXPECT_EQ(failure, Failure([&] { file.OpenNoThrow(name, mode, kind, false); }));
    return failure;
  };
  EXPECT_EQ(L"[BufferedFile]", open(GString(), L"wb"));
  EXPECT_EQ(L"[BufferedFile]", open(path, L""));
  EXPECT_EQ(L"[BufferedFile]", open(path, L"wb", 4));
  EXPECT_EQ(L"[BufferedFile]", open(path, L"wb", -1));
  EXPECT_TRUE(folder.Names().empty());
  EXPECT_EQ(L"[BufferedFile]", Failure([&] { file.Write("1", 1); }));
  EXPECT_EQ(L"[BufferedFile]", Failure([&] { file.WriteString("1"); }));
  EXPECT_EQ(L"[BufferedFile]", Failure([&] { file.Read(nullptr, 0); }));
  file.Open();
  EXPECT_EQ(L"[BufferedFile]", open(path, L"wb"));
  EXPECT_EQ(L"[BufferedFile]", Failure([&] { file.Open(); }));
}

TEST(BufferedFile, aFailedOpenNamesThePath) {
  const TemporaryFolder folder;
  struct Row {
    const char* name;
    GString path;
    const wchar_t* mode;
  };
  const Row rows[] = {{"missing", folder.Path(L"missing.dat"), L"rb"},
                      {"folder", folder.Path(), L"rb"},
                      {"missing folder", folder.Path(L"no") + L"/a.dat", L"wb"},
                      {"no mode", folder.Path(L"a.dat"), L"zb"}};
  for (const Row& row : rows) {
    CBufferedFile file;
    EXPECT_FALSE(file.OpenNoThrow(row.path, row.mode, ALL, false)) << row.name;
    EXPECT_FALSE(file.IsOpen()) << row.name;
    const GString failure = Failure([&] { file.Open(row.path, row.mode, ALL, false); });
    EXPECT_TRUE(HasSystemText(failure, Message(L"open", row.path))) << row.name << failure;
  }
}

TEST(BufferedFile, sharingModesBindTwoObjects) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "1");
  for (const int sharing : {0, 1, 2, 3}) {
    const CBufferedFile host(path, L"rb", static_cast<CBufferedFile::Sharing>(sharing), false);
    CBufferedFile reader;
    CBufferedFile writer;
    EXPECT_EQ((sharing & 1) != 0, reader.OpenNoThrow(path, L"rb", ALL, false)) << sharing;
    EXPECT_EQ((sharing & 2) != 0, writer.OpenNoThrow(path, L"ab", ALL, false)) << sharing;
  }
}

TEST(BufferedFile, aClosedFileIsEmpty) {
  CBufferedFile file;
  std::string line = "old";
  char bytes[4] = {};
  EXPECT_EQ(-1, file.Getc());
  EXPECT_EQ(-1, file.UnGetc('a'));
  EXPECT_EQ(-1, file.Putc('a'));
  EXPECT_EQ(-1, file.Printf("a"));
  EXPECT_EQ(-1, file.Seek(0, CBufferedFile::OriginBegin));
  EXPECT_EQ(-1, file.GetPosition());
  EXPECT_EQ(-1, file.GetLength());
  EXPECT_EQ(0u, file.Read(bytes, 4));
  EXPECT_EQ(nullptr, file.ReadString(bytes, 4));
  EXPECT_FALSE(file.ReadString(line));
  EXPECT_TRUE(line.empty());
  EXPECT_TRUE(file.EndOfFile());
  EXPECT_EQ(nullptr, file.GetHandle());
  EXPECT_EQ(nullptr, file.GetBuffer());
  file.Flush();
  file.Close();
}

TEST(BufferedFile, charactersAndBlocksOnDiskAndInMemory) {
  for (const bool isMemory : {false, true}) {
    Both both(isMemory);
    CBufferedFile& file = both.file;
    EXPECT_EQ(isMemory, file.IsMemoryFile());
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_EQ('1', file.Putc('1'));
    EXPECT_EQ(0xFF, file.Putc(0xFF));
    file.WriteString("abc");
    file.WriteString("");
    file.Write("d\0", 2);
    EXPECT_EQ(7, file.GetLength());
    EXPECT_EQ(7, file.GetPosition());
    file.Rewind();
    EXPECT_FALSE(file.EndOfFile());
    EXPECT_EQ('1', file.Getc());
    EXPECT_EQ(0xFF, file.Getc());
    EXPECT_EQ('x', file.UnGetc('x'));
    EXPECT_EQ(1, file.GetPosition());
    EXPECT_EQ('x', file.Getc());
    char bytes[8] = {};
    EXPECT_EQ(5u, file.Read(bytes, sizeof bytes));
    EXPECT_EQ(std::string("abcd\0", 5), std::string(bytes, 5));
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_EQ(-1, file.Getc());
    EXPECT_EQ(5, file.Seek(-2, CBufferedFile::OriginEnd));
    const GString name = isMemory ? GString(L"memory file") : file.GetFilePath();
    EXPECT_EQ(GString(L"Unexpected end of file reading '") + name + L"'.",
              Failure([&] { file.ReadN(bytes, 3); }));
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(file.GetFilePath().empty());
  }
}

TEST(BufferedFile, linesOfEveryLengthAroundThePieces) {
  const std::string zeros("a\0b\0\0", 5);
  std::string content;
  std::vector<std::string> lines;
  for (const std::size_t length :
       {0u, 1u, 253u, 254u, 255u, 256u, 257u, 300u, 509u, 510u, 511u, 512u, 5000u}) {
    for (const char* const end : {"\n", "\r\n"}) {
      lines.emplace_back(length, static_cast<char>('a' + length % 26));
      content += lines.back() + end;
    }
  }
  for (const std::string& line : {zeros, std::string("x\r"), std::string(255, '\0')}) {
    lines.push_back(line);
    content += line + "\r\n";
  }
  const std::string lasts[] = {
      "", "last", "last\r", zeros, std::string(255, 'z'), std::string(256, 'z')};
  for (const bool isMemory : {false, true}) {
    for (const std::string& last : lasts) {
      Both both(isMemory, content + last);
      std::vector<std::string> expected = lines;
      if (!last.empty()) expected.push_back(last);
      EXPECT_EQ(expected, Lines(both.file)) << isMemory << ' ' << last.size();
      EXPECT_TRUE(both.file.EndOfFile());
    }
  }
}

TEST(BufferedFile, piecesOfStringsOnDiskAndInMemory) {
  for (const bool isMemory : {false, true}) {
    Both both(isMemory, "one\n\nthree");
    char buffer[8] = "?";
    EXPECT_EQ(nullptr, both.file.ReadString(nullptr, 5));
    EXPECT_EQ(nullptr, both.file.ReadString(buffer, 0));
    EXPECT_EQ(buffer, both.file.ReadString(buffer, 1));
    EXPECT_STREQ("", buffer);
    for (const char* const piece : {"one", "\n", "\n", "thr", "ee"}) {
      EXPECT_EQ(buffer, both.file.ReadString(buffer, 4));
      EXPECT_STREQ(piece, buffer);
    }
    EXPECT_EQ(nullptr, both.file.ReadString(buffer, 4));
  }
}

TEST(BufferedFile, formatsAlikeOnDiskAndInMemory) {
  for (const bool isMemory : {false, true}) {
    Both both(isMemory);
    CBufferedFile& file = both.file;
    const std::string expected = "text -5 2.25 4294967296|   ab|%";
    EXPECT_EQ(static_cast<int>(expected.size()), file.Printf("%s %d %.2f %I64d|%5s|%%", "text", -5,
                                                             2.25, std::int64_t{4294967296}, "ab"));
    EXPECT_EQ(0, file.Printf("%s", ""));
    const std::string limit(8191, 'x');
    EXPECT_EQ(8191, file.Printf("%s", limit.c_str()));
    EXPECT_EQ(expected + limit, both.Content());
  }
}

TEST(BufferedFile, longFormattedTextIsWrittenOnDiskOnly) {
  const std::string text(20000, 'x');
  Both disk(false);
  EXPECT_EQ(20002, disk.file.Printf("<%s>", text.c_str()));
  EXPECT_EQ("<" + text + ">", disk.Content());
  Both memory(true);
  EXPECT_EQ(L"Unable to write 'memory file'.\nout of range",
            Failure([&] { memory.file.Printf("<%s>", text.c_str()); }));
  EXPECT_EQ(0, memory.file.GetLength());
}

TEST(BufferedFile, readingAndWritingFollowEachOther) {
  for (const bool isMemory : {false, true}) {
    Both both(isMemory, "abcdef\nghijkl\n");
    CBufferedFile& file = both.file;
    EXPECT_EQ('a', file.Getc());
    EXPECT_EQ('B', file.Putc('B'));
    EXPECT_EQ('c', file.Getc());
    file.WriteString("DE");
    std::string line;
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ("f", line);
    file.Printf("%d", 12);
    char bytes[2] = {};
    file.ReadN(bytes, 2);
    EXPECT_EQ("ij", std::string(bytes, 2));
    EXPECT_EQ("aBcDEf\n12ijkl\n", both.Content()) << isMemory;
  }
}

TEST(BufferedFile, offsetsAre32BitAndPositions64Bit) {
  constexpr std::int64_t LIMIT = std::int64_t{1} << 31;
  for (const bool isMemory : {false, true}) {
    Both both(isMemory, "123");
    CBufferedFile& file = both.file;
    const GString name = isMemory ? GString(L"memory file") : file.GetFilePath();
    const GString message = Message(L"seek", name) + L"\nout of range";
    EXPECT_EQ(LIMIT - 1, file.Seek(LIMIT - 1, CBufferedFile::OriginBegin));
    EXPECT_EQ(message, Failure([&] { file.Seek(LIMIT, CBufferedFile::OriginBegin); }));
    EXPECT_EQ(message, Failure([&] { file.Seek(-LIMIT - 1, CBufferedFile::OriginEnd); }));
    EXPECT_EQ(LIMIT - 1, file.GetPosition());
    const GString before = Failure([&] { file.Seek(-1, CBufferedFile::OriginBegin); });
    EXPECT_TRUE(HasSystemText(before, Message(L"seek", name))) << before;
    EXPECT_EQ(3, file.GetLength());
    EXPECT_EQ(LIMIT - 1, file.GetPosition());
  }
  Both both(false);
  both.file.Seek(LIMIT - 1, CBufferedFile::OriginBegin);
  EXPECT_EQ(-1, both.file.Seek(LIMIT - 1, CBufferedFile::OriginCurrent));
  EXPECT_EQ(2 * LIMIT - 2, both.file.GetPosition());
  both.file.Putc('x');
  EXPECT_EQ(2 * LIMIT - 1, both.file.GetLength());
}

TEST(BufferedFile, theWrongDirectionFailsWithTheMessage) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  CBufferedFile writer(path, L"wb", ALL, false);
  char byte = 0;
  std::string line;
  for (int round = 0; round < 2; ++round) {  // a failure does not stick to the stream
    EXPECT_TRUE(HasSystemText(Failure([&] { writer.Getc(); }), Message(L"read", path)));
    EXPECT_TRUE(HasSystemText(Failure([&] { writer.Read(&byte, 1); }), Message(L"read", path)));
    EXPECT_TRUE(HasSystemText(Failure([&] { writer.ReadString(line); }), Message(L"read", path)));
    writer.WriteString("1");
  }
  writer.Close();
  CBufferedFile reader(path, L"rb", ALL, false);
  EXPECT_TRUE(HasSystemText(Failure([&] { reader.Putc('x'); }), Message(L"write", path)));
  EXPECT_TRUE(HasSystemText(Failure([&] { reader.WriteString("x"); }), Message(L"write", path)));
  EXPECT_TRUE(HasSystemText(Failure([&] { reader.Printf("x"); }), Message(L"write", path)));
  reader.Rewind();
  EXPECT_TRUE(reader.ReadString(line));
  EXPECT_EQ("11", line);
}

TEST(BufferedFile, anAbandonedFileIsRemovedOnRequest) {
  const TemporaryFolder folder;
  struct Row {
    const char* name;
    bool remove;
    void (*end)(CBufferedFile&);
    bool remains;
  };
  const Row rows[] = {
      {"abandoned", true, [](CBufferedFile&) {}, false},
      {"kept", false, [](CBufferedFile&) {}, true},
      {"closed", true, [](CBufferedFile& file) { file.Close(); }, true},
      {"aborted", false, [](CBufferedFile& file) { file.Abort(true); }, false},
      {"aborted, kept", true, [](CBufferedFile& file) { file.Abort(false); }, true},
      {"moved and closed", true,
       [](CBufferedFile& file) { CBufferedFile(std::move(file)).Close(); }, true},
      {"replaced", true, [](CBufferedFile& file) { file = CBufferedFile(); }, false}};
  for (const Row& row : rows) {
    const GString path = folder.Path(L"a.dat");
    {
      CBufferedFile file(path, L"wb", CBufferedFile::ShareNone, row.remove);
      file.WriteString("1");
      row.end(file);
    }
    EXPECT_EQ(row.remains, test::Exists(path)) << row.name;
  }
}

TEST(BufferedFile, adoptsStreams) {
  const TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  CBufferedFile file(platform::OpenStream(path, L"wb", platform::FileSharing::All));
  EXPECT_TRUE(file.IsOpen());
  EXPECT_NE(nullptr, file.GetHandle());
  file.WriteString("1");
  file.Close();
  EXPECT_EQ("1", ReadBytes(path));
  CBufferedFile reader(platform::OpenStream(path, L"rb", platform::FileSharing::All));
  reader.SetFilePath(L"another name");
  EXPECT_TRUE(
      HasSystemText(Failure([&] { reader.Putc('2'); }), Message(L"write", L"another name")));
  EXPECT_FALSE(CBufferedFile(nullptr).IsOpen());
}

TEST(BufferedFile, aMemoryFileWorksOnTheCallersBuffer) {
  char buffer[] = "ab\ncd";
  CBufferedFile file;
  file.Open(buffer, 5);
  EXPECT_EQ((std::vector<std::string>{"ab", "cd"}), Lines(file));
  file.Rewind();
  file.Putc('x');
  EXPECT_EQ('x', buffer[0]);
}

}  // namespace
}  // namespace shr
