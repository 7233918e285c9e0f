// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: growth; every operation at, before and behind the end; strings; attached and detached
// buffers; ranges; random operations against a string.

#include "shared/files/MemoryFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Failure;

std::string Content(const CMemoryFile& file) {
  return std::string(reinterpret_cast<const char*>(file.GetBuffer()), file.GetLength());
}

void Fill(CMemoryFile& file, const std::string& content) {
  file.Write(content.data(), static_cast<std::uint32_t>(content.size()));
  file.Seek(0, CMemoryFile::OriginBegin);
}

TEST(MemoryFile, capacityDoublesFrom1024) {
  struct Row {
    std::uint32_t written;
    std::uint32_t capacity;
  };
  for (const Row& row : {Row{0, 0}, {1, 1024}, {1024, 1024}, {1025, 2048}, {4097, 8192}}) {
    CMemoryFile file;
    Fill(file, std::string(row.written, 'x'));
    EXPECT_EQ(row.capacity, file.GetCapacity()) << row.written;
  }
  unsigned char* const buffer = static_cast<unsigned char*>(std::malloc(10));
  CMemoryFile file(buffer, 10);
  file.Seek(0, CMemoryFile::OriginEnd);
  EXPECT_EQ('x', file.Putc('x'));
  EXPECT_EQ(20u, file.GetCapacity());
  std::free(file.GetBuffer());
}

TEST(MemoryFile, readingEndsAtTheLength) {
  CMemoryFile file;
  char buffer[8] = {};
  EXPECT_EQ(0u, file.Read(buffer, sizeof buffer));
  EXPECT_EQ(-1, file.Getc());
  EXPECT_TRUE(file.EndOfFile());
  Fill(file, "123\xFF");
  EXPECT_FALSE(file.EndOfFile());
  EXPECT_EQ(3u, file.Read(buffer, 3));
  EXPECT_EQ(0xFF, file.Getc());
  EXPECT_EQ(-1, file.Getc());
  EXPECT_EQ(100u, file.Seek(100, CMemoryFile::OriginBegin));
  EXPECT_TRUE(file.EndOfFile());
  EXPECT_EQ(0u, file.Read(buffer, sizeof buffer));
}

TEST(MemoryFile, gapsAndExtensionsAreZeros) {
  CMemoryFile fresh;
  fresh.Seek(3, CMemoryFile::OriginBegin);
  fresh.Write("x", 1);
  EXPECT_EQ(std::string("\0\0\0x", 4), Content(fresh));
  CMemoryFile used;
  Fill(used, "1234567");
  used.SetLength(2);
  used.SetLength(4);
  used.Seek(2, CMemoryFile::OriginEnd);
  used.Putc('y');
  EXPECT_EQ(std::string("12\0\0\0\0y", 7), Content(used));
}

TEST(MemoryFile, cuttingPullsThePositionBack) {
  CMemoryFile file;
  Fill(file, "12345");
  file.Seek(4, CMemoryFile::OriginBegin);
  file.SetLength(10);
  EXPECT_EQ(4u, file.GetPosition());
  file.SetLength(3);
  EXPECT_EQ(3u, file.GetPosition());
}

TEST(MemoryFile, ungettingOverwritesTheByteBefore) {
  CMemoryFile file;
  Fill(file, "123");
  EXPECT_EQ(-1, file.UnGetc('a'));
  file.Getc();
  EXPECT_EQ(-1, file.UnGetc(-1));
  EXPECT_EQ('a', file.UnGetc('a'));
  EXPECT_EQ(0u, file.GetPosition());
  EXPECT_EQ("a23", Content(file));
  file.Seek(5000, CMemoryFile::OriginBegin);
  EXPECT_EQ('b', file.UnGetc('b'));
  EXPECT_EQ('b', file.Getc());
}

TEST(MemoryFile, stringsEndBehindALineFeedOrAtTheSize) {
  struct Row {
    const char* name;
    std::uint32_t size;
    std::vector<std::string> pieces;
  };
  const Row rows[] = {{"whole lines", 100, {"one\n", "\n", "three"}},
                      {"exactly one line", 5, {"one\n", "\n", "thre", "e"}},
                      {"cut before the feed", 4, {"one", "\n", "\n", "thr", "ee"}},
                      {"one byte", 2, {"o", "n", "e", "\n", "\n", "t", "h", "r", "e", "e"}}};
  for (const Row& row : rows) {
    CMemoryFile file;
    Fill(file, "one\n\nthree");
    std::vector<std::string> pieces;
    char buffer[100];
    while (file.ReadString(buffer, row.size) != nullptr) pieces.emplace_back(buffer);
    EXPECT_EQ(row.pieces, pieces) << row.name;
  }
  CMemoryFile file;
  char byte = 'x';
  EXPECT_EQ(nullptr, file.ReadString(nullptr, 5));
  EXPECT_EQ(nullptr, file.ReadString(&byte, 0));
  EXPECT_EQ('x', byte);
  EXPECT_EQ(&byte, file.ReadString(&byte, 1));
  EXPECT_EQ('\0', byte);
}

TEST(MemoryFile, seekingChecksTheRange) {
  using File = CMemoryFile;
  constexpr int MIN = std::numeric_limits<int>::min();
  constexpr int MAX = std::numeric_limits<int>::max();
  constexpr auto UNKNOWN = static_cast<File::Origin>(3);
  struct Row {
    std::uint32_t start;
    int offset;
    File::Origin origin;
    std::uint32_t position;
    bool throws;
  };
  const Row rows[] = {
      {0, 3, File::OriginBegin, 3, false},
      {1, 100, File::OriginCurrent, 101, false},
      {0, -5, File::OriginEnd, 0, false},
      {0, -6, File::OriginEnd, 0, true},
      {4, -1, File::OriginBegin, 4, true},
      {2, MIN, File::OriginCurrent, 2, true},
      {0x80000000, MAX, File::OriginCurrent, 0xFFFFFFFF, false},
      {0x80000001, MAX, File::OriginCurrent, 0x80000001, true},
      {2, 1, UNKNOWN, 2, false},
  };
  for (const Row& row : rows) {
    File file;
    Fill(file, "12345");
    for (std::uint32_t left = row.start; left > 0;) {
      const std::uint32_t step = std::min<std::uint32_t>(left, MAX);
      file.Seek(static_cast<int>(step), File::OriginCurrent);
      left -= step;
    }
    const GString failure =
        Failure([&] { EXPECT_EQ(row.position, file.Seek(row.offset, row.origin)); });
    EXPECT_EQ(row.throws ? L"Unable to seek 'memory file'.\nout of range" : L"(nothing)", failure);
    EXPECT_EQ(row.position, file.GetPosition());
  }
}

TEST(MemoryFile, writingBeyond4GiBFailsAndChangesNothing) {
  CMemoryFile file;
  Fill(file, "123");
  file.Seek(0x7FFFFFFF, CMemoryFile::OriginBegin);
  file.Seek(0x7FFFFFFF, CMemoryFile::OriginCurrent);
  EXPECT_EQ(L"Unable to write 'memory file'.\nout of range", Failure([&] { file.Write("12", 2); }));
  EXPECT_EQ(0xFFFFFFFEu, file.GetPosition());
  EXPECT_EQ("123", Content(file));
}

TEST(MemoryFile, handedInBuffersStayTheCallers) {
  unsigned char buffer[] = {'1', '2', '3'};
  CMemoryFile file;
  Fill(file, "content that is freed");
  file.Attach(buffer, sizeof buffer);
  EXPECT_EQ(0u, file.GetPosition());
  EXPECT_EQ("123", Content(file));
  file.Write("ab", 2);
  EXPECT_EQ('b', buffer[1]);
  file.Close();
  EXPECT_EQ(nullptr, file.GetBuffer());
  EXPECT_EQ(0u, file.GetLength());
  EXPECT_EQ(L"[MemoryFile]", Failure([&] { file.Attach(nullptr, 1); }));
  // From here on the file owns what it allocates, which the leak check of the sanitizer sees.
  Fill(file, "own");
  EXPECT_EQ("own", Content(file));
}

TEST(MemoryFile, detachedBuffersBelongToTheCaller) {
  CMemoryFile file;
  Fill(file, "123");
  unsigned char* const buffer = file.Detach();
  EXPECT_EQ(0, std::memcmp(buffer, "123", 3));
  std::free(buffer);
  EXPECT_EQ(0u, file.GetLength());
  EXPECT_EQ(0u, file.GetCapacity());
  Fill(file, "4");
  CMemoryFile moved = std::move(file);
  EXPECT_EQ("4", Content(moved));
  file = std::move(moved);
  EXPECT_EQ("4", Content(file));
}

/// The same random steps on a file and on a string with a position.
TEST(MemoryFile, behavesAsAStringWithAPosition) {
  std::mt19937 random(20260301);
  CMemoryFile file;
  std::string model;
  std::size_t position = 0;
  for (int step = 0; step < 20000; ++step) {
    const std::size_t size = random() % 40;
    switch (random() % 5) {
      case 0: {
        const std::string text(size, static_cast<char>('a' + random() % 26));
        file.Write(text.data(), static_cast<std::uint32_t>(size));
        if (size == 0) break;
        model.resize(std::max(model.size(), position + size));
        model.replace(position, size, text);
        position += size;
        break;
      }
      case 1: {
        std::string text(size, '?');
        text.resize(file.Read(text.data(), static_cast<std::uint32_t>(size)));
        ASSERT_EQ(model.substr(std::min(position, model.size()), size), text) << step;
        position += text.size();
        break;
      }
      case 2:
        position = random() % 3000;
        file.Seek(static_cast<int>(position), CMemoryFile::OriginBegin);
        break;
      case 3:
        model.resize(random() % 2000);
        file.SetLength(static_cast<std::uint32_t>(model.size()));
        position = std::min(position, model.size());
        break;
      default:
        ASSERT_EQ(position < model.size() ? static_cast<unsigned char>(model[position]) : -1,
                  file.Getc());
        if (position < model.size()) ++position;
    }
    ASSERT_EQ(position, file.GetPosition()) << step;
    ASSERT_EQ(model.size(), file.GetLength()) << step;
  }
  EXPECT_EQ(model, Content(file));
}

}  // namespace
}  // namespace shr
