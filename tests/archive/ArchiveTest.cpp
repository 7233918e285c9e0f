// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes of every value and text, and loading them back; what loading leaves alone; sync
// checks and their message; faults of the caller; the life of an archive; blocks against the plain
// sequence of bytes, on disk and in memory.

#include "shared/archive/Archive.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "shared/color/Color4b.h"
#include "shared/geometry/Box3.h"
#include "shared/geometry/Mat4.h"
#include "shared/text/GString.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::FailureAt;
using test::FromHex;
using test::LoadFrom;
using test::Stored;
using test::ToHex;

/// Stores `value`, checks its bytes, and loads them over `other`.
template <class T>
void CheckBytes(const char* name, const char* hex, T value, T other) {
  const std::string bytes = Stored([&](Archive& archive) { archive.Transfer(value); });
  EXPECT_EQ(hex, ToHex(bytes)) << name;
  LoadFrom(bytes, [&](Archive& archive) { archive.Transfer(other); });
  EXPECT_TRUE(value == other) << name;
}

TEST(Archive, valuesAreTheirLittleEndianBytes) {
  CheckBytes<bool>("bool", "01", true, false);
  CheckBytes<char>("char", "41", 'A', 0);
  CheckBytes<unsigned char>("unsigned char", "FE", 254, 0);
  CheckBytes<short>("short", "FE FF", -2, 0);
  CheckBytes<unsigned short>("unsigned short", "34 12", 0x1234, 0);
  CheckBytes<int>("int", "FE FF FF FF", -2, 0);
  CheckBytes<unsigned int>("unsigned int", "78 56 34 12", 0x12345678, 0);
  CheckBytes<long>("long", "00 00 00 80", -2147483647L - 1, 0);
  CheckBytes<unsigned long>("unsigned long", "FF FF FF FF", 4294967295UL, 0);
  CheckBytes<float>("float", "00 00 80 BF", -1.0f, 0);
  CheckBytes<double>("double", "00 00 00 00 00 00 F8 3F", 1.5, 0);
  CheckBytes<Color4b>("color", "01 02 03 04", Color4b(1, 2, 3, 4), Color4b());
  CheckBytes<Vec2f>("Vec2f", "00 00 80 3F 00 00 00 40", Vec2f(1, 2), Vec2f());
  CheckBytes<Vec2d>("Vec2d", "00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 00 40", Vec2d(1, 2),
                    Vec2d());
  CheckBytes<Box2f>("Box2f", "00 00 80 3F 00 00 00 40 00 00 40 40 00 00 80 40", Box2f(1, 2, 3, 4),
                    Box2f());
  CheckBytes<Box2d>("Box2d",
                    "00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 00 40 "
                    "00 00 00 00 00 00 08 40 00 00 00 00 00 00 10 40",
                    Box2d(1, 2, 3, 4), Box2d());
  bool flag = false;
  LoadFrom("\x02", [&](Archive& archive) { archive.Transfer(flag); });
  EXPECT_TRUE(flag);
}

/// Returns the bytes of doubles from 1 on, in hexadecimal.
std::string DoublesFromOne(int count) {
  std::string bytes;
  for (int i = 1; i <= count; ++i) {
    const double value = i;
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  return ToHex(bytes);
}

TEST(Archive, valuesInSpaceAreTheirNumbersInOrder) {
  CheckBytes<Vec3i>("Vec3i", "01 00 00 00 FE FF FF FF 03 00 00 00", Vec3i(1, -2, 3), Vec3i());
  CheckBytes<Vec3d>("Vec3d",
                    "00 00 00 00 00 00 F0 3F 00 00 00 00 00 00 00 40 00 00 00 00 00 00 08 40",
                    Vec3d(1, 2, 3), Vec3d());
  CheckBytes<Quat4d>("Quat4d", DoublesFromOne(4).c_str(), Quat4d(1, 2, 3, 4), Quat4d());
  CheckBytes<Box3d>("Box3d", DoublesFromOne(6).c_str(), Box3d(1, 2, 3, 4, 5, 6), Box3d());
  const Mat4d matrix(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, Mat4d::TYPE_2D);
  CheckBytes<Mat4d>("Mat4d", DoublesFromOne(16).c_str(), matrix, Mat4d::IDENTITY);
}

TEST(Archive, matrixForgetsItsTypeInBothDirections) {
  Mat4d matrix(2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, Mat4d::TYPE_COMPLEX);
  const std::string bytes = Stored([&](Archive& archive) { archive.Transfer(matrix); });
  EXPECT_EQ(matrix.GetType(), Mat4d::TYPE_2D);
  Mat4d loaded = Mat4d::IDENTITY;
  LoadFrom(bytes, [&](Archive& archive) { archive.Transfer(loaded); });
  EXPECT_EQ(loaded.GetType(), Mat4d::TYPE_2D);
}

TEST(Archive, aLongThatNeedsMoreThan32BitsIsRefused) {
  if constexpr (sizeof(long) == 4) {
    SUCCEED() << "every long fits";
  } else {
    for (const long long value : {1LL << 31, -(1LL << 31) - 1, 1LL << 40}) {
      EXPECT_EQ(L"Unable to write 'memory file'.\nout of range", test::Failure([&] {
                  long number = static_cast<long>(value);
                  Stored([&](Archive& archive) { archive.Transfer(number); });
                }));
    }
  }
}

TEST(Archive, textIsACountAndUnits) {
  std::string narrow("ab\0c", 4);
  EXPECT_EQ("02 00 00 00 61 62", ToHex(Stored([&](Archive& a) { a.Transfer(narrow); })));
  char buffer[8] = "xyz";
  EXPECT_EQ("03 00 00 00 78 79 7A", ToHex(Stored([&](Archive& a) { a.Transfer(buffer, 1); })));
  EXPECT_EQ("00 00 00 00",
            ToHex(Stored([](Archive& a) { a.Transfer(static_cast<char*>(nullptr), 9); })));
  EXPECT_EQ("00 00 00 00",
            ToHex(Stored([](Archive& a) { a.Transfer(static_cast<wchar_t*>(nullptr), 9); })));

  struct Row {
    const char* name;
    std::wstring text;
    const char* hex;
  };
  const Row rows[] = {
      {"empty", L"", "00 00 00 00"},
      {"Latin", L"a\u00e9", "02 00 00 00 61 00 E9 00"},
      {"two units for one character", L"\U0001F600", "02 00 00 00 3D D8 00 DE"},
      {"unpaired halves", {L'\xDC00', L'-', L'\xD83D'}, "03 00 00 00 00 DC 2D 00 3D D8"},
      {"cut at a zero", {L'a', L'\0', L'b'}, "01 00 00 00 61 00"},
  };
  for (const Row& row : rows) {
    GString text(row.text);
    const std::string bytes = Stored([&](Archive& archive) { archive.Transfer(text); });
    EXPECT_EQ(row.hex, ToHex(bytes)) << row.name;
    wchar_t units[16] = L"old";
    wcscpy(units, row.text.c_str());
    EXPECT_EQ(bytes, Stored([&](Archive& archive) { archive.Transfer(units, 0); })) << row.name;
    GString loaded;
    LoadFrom(bytes, [&](Archive& archive) { archive.Transfer(loaded); });
    EXPECT_EQ(std::wstring(row.text.c_str()), loaded.String()) << row.name;
    wchar_t loadedUnits[16] = L"old";
    LoadFrom(bytes, [&](Archive& archive) { archive.Transfer(loadedUnits, 16); });
    EXPECT_EQ(std::wstring(row.text.c_str()), loadedUnits) << row.name;
  }
}

TEST(Archive, aCountOfZeroLeavesStringsAlone) {
  std::string narrow = "old";
  GString wide(L"old");
  char buffer[4] = "old";
  LoadFrom(std::string(12, '\0'), [&](Archive& archive) {
    archive.Transfer(narrow);
    archive.Transfer(wide);
    archive.Transfer(buffer, 4);
  });
  EXPECT_EQ("old", narrow);
  EXPECT_EQ(L"old", wide);
  EXPECT_STREQ("", buffer);
}

TEST(Archive, textMustFitTheBufferWithItsTerminator) {
  const std::string bytes = Stored([](Archive& archive) {
    std::string narrow = "four";
    std::wstring wide = L"four";
    archive.Transfer(narrow);
    archive.Transfer(wide);
  });
  const wchar_t* const refused = L"Unrecoverable error reading archive. @671";
  for (const std::uint64_t capacity : {0u, 3u, 4u, 5u, 8u}) {
    const GString expected(capacity > 4 ? L"(nothing)" : refused);
    char narrow[8] = "";
    wchar_t wide[8] = L"";
    EXPECT_EQ(expected, FailureAt([&] {
                LoadFrom(bytes, [&](Archive& archive) { archive.Transfer(narrow, capacity); });
              }));
    EXPECT_EQ(expected, FailureAt([&] {
                LoadFrom(std::string_view(bytes).substr(8),
                         [&](Archive& archive) { archive.Transfer(wide, capacity); });
              }));
    EXPECT_STREQ(capacity > 4 ? "four" : "", narrow);
    EXPECT_STREQ(capacity > 4 ? L"four" : L"", wide);
  }
}

TEST(Archive, aSyncCheckCoversAllBytesBeforeIt) {
  const std::string bytes = Stored([](Archive& archive) {
    archive.SyncCheck();
    unsigned char value = 0xF0;
    for (int i = 0; i < 300; ++i) archive.Transfer(value);
    archive.SyncCheck();
  });
  EXPECT_EQ("44 53 97 00", ToHex(bytes.substr(0, 4)));
  // 0x97 twice, 300 times 0xF0, and the marker again: 72453, modulo 65536.
  EXPECT_EQ("44 53 05 1B", ToHex(bytes.substr(304)));
  const auto load = [](Archive& archive) {
    unsigned char skipped[300];
    archive.SyncCheck();
    archive.Transfer(skipped, 300u);
    archive.SyncCheck();
  };
  struct Row {
    const char* name;
    std::size_t offset;
    const wchar_t* failure;
  };
  const Row rows[] = {
      {"nothing", bytes.size(), L"(nothing)"},
      {"first marker", 1, L"00000002.  Computed CRC=0x0096, File CRC=0x0097\n @231"},
      {"first sum", 2, L"00000002.  Computed CRC=0x0097, File CRC=0x0096\n @231"},
      {"a value", 100, L"00000132.  Computed CRC=0x1b06, File CRC=0x1b05\n @231"},
      {"last byte", 307, L"00000132.  Computed CRC=0x1b05, File CRC=0x1a05\n @231"},
  };
  const GString head(
      L"File 'memory file' cannot be read because the file is damaged near offset 0x");
  for (const Row& row : rows) {
    std::string damaged = bytes;
    if (row.offset < damaged.size()) damaged[row.offset] ^= 1;
    GString expected(row.failure);
    if (row.offset < damaged.size()) expected = head + row.failure;
    EXPECT_EQ(expected, FailureAt([&] { LoadFrom(damaged, load); })) << row.name;
  }
}

TEST(Archive, faultsOfTheCallerAreInternalErrors) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  test::WriteBytes(path, "1234");
  Archive open(path, Archive::Load);
  Archive closed;
  Archive storing;
  storing.OpenMem();
  char bytes[8] = {};
  int number = 0;
  EXPECT_EQ(L"internal @135", FailureAt([&] { closed.OpenFile(L"", Archive::Load); }));
  EXPECT_EQ(L"internal @138", FailureAt([&] { open.OpenFile(path, Archive::Load); }));
  EXPECT_EQ(L"internal @138", FailureAt([&] { storing.OpenMem(); }));
  EXPECT_EQ(L"internal @155", FailureAt([&] { closed.Close(); }));
  EXPECT_EQ(L"internal @241", FailureAt([&] { closed.Read(bytes, 4); }));
  EXPECT_EQ(L"internal @241", FailureAt([&] { closed.Transfer(number); }));
  EXPECT_EQ(L"internal @257", FailureAt([&] { closed.Write(bytes, 4); }));
  EXPECT_EQ(L"[Archive]", test::Failure([&] { open.Read(nullptr, 4); }));
  EXPECT_EQ(L"[Archive]", test::Failure([&] { storing.Write(nullptr, 4); }));
  EXPECT_EQ(test::SHORT_READ, FailureAt([&] { storing.Read(bytes, 4); }));
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { open.Write(bytes, 4); }),
                                  GString(L"Unable to write '") + path + L"'."));
  const GString missing = folder.Path(L"missing.bin");
  EXPECT_TRUE(test::HasSystemText(test::Failure([&] { closed.OpenFile(missing, Archive::Load); }),
                                  GString(L"Unable to open '") + missing + L"'."));
  EXPECT_EQ(L"Unable to open 'memory file'.\nout of range",
            test::Failure([&] { closed.OpenMem(test::Bytes("x"), std::uint64_t{1} << 32); }));
  EXPECT_EQ("1234", test::ReadBytes(path));
}

TEST(Archive, closingStartsOverButKeepsVersionAndData) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  Archive archive;
  EXPECT_TRUE(archive.IsLoading());
  EXPECT_EQ(1, archive.GetVersion());
  EXPECT_EQ(nullptr, archive.GetData());
  EXPECT_EQ(0u, archive.GetSize());
  EXPECT_EQ(nullptr, archive.GetBuffer());
  archive.SetVersion(7);
  archive.SetData(&archive);
  for (int round = 0; round < 2; ++round) {
    archive.OpenFile(path, Archive::Store);
    EXPECT_TRUE(archive.IsStoring());
    EXPECT_EQ(path.String(), archive.GetFilename());
    archive.SyncCheck();
    EXPECT_EQ(nullptr, archive.GetBuffer());
    EXPECT_EQ(4u, archive.GetSize());
    archive.Close();
    EXPECT_EQ("44 53 97 00", ToHex(test::ReadBytes(path)));
    EXPECT_EQ(L"", archive.GetFilename());
  }
  archive.OpenFile(path, Archive::Load);
  EXPECT_EQ(4u, archive.GetSize());
  archive.SyncCheck();
  archive.Close();
  EXPECT_EQ(7, archive.GetVersion());
  EXPECT_EQ(&archive, archive.GetData());
}

TEST(Archive, theDestructorWritesWhatIsLeft) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  {
    Archive archive(path, Archive::Store);
    archive.Write("late", 4);
  }
  EXPECT_EQ("late", test::ReadBytes(path));
}

/// Transfers pieces of random sizes, among them some above and some at the size of a block.
void TransferPieces(Archive& archive, std::string& bytes, unsigned seed) {
  std::mt19937 random(seed);
  for (std::size_t done = 0; done < bytes.size();) {
    std::size_t size = random() % 40;
    if (random() % 200 == 0) size = std::size_t{1} << (12 + random() % 8);
    if (random() % 400 == 0) size = std::size_t{65536};
    size = std::min(size, bytes.size() - done);
    archive.Transfer(static_cast<void*>(bytes.data() + done), static_cast<unsigned>(size));
    done += size;
    if (random() % 500 == 0) archive.SyncCheck();
  }
  archive.SyncCheck();
}

TEST(Archive, blocksAreInvisibleInTheStream) {
  const test::TemporaryFolder folder;
  for (const unsigned seed : {1u, 2u}) {
    std::mt19937 random(seed);
    std::string bytes(1500000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const std::string inMemory =
        Stored([&](Archive& archive) { TransferPieces(archive, bytes, seed); });
    const GString path = folder.Path(L"blocks.bin");
    Archive file(path, Archive::Store);
    TransferPieces(file, bytes, seed);
    EXPECT_EQ(inMemory.size(), file.GetSize());
    file.Close();
    EXPECT_TRUE(inMemory == test::ReadBytes(path)) << seed;
    for (const bool isMemory : {false, true}) {
      std::string loaded(bytes.size(), '\0');
      Archive archive;
      if (isMemory) {
        archive.OpenMem(test::Bytes(inMemory), inMemory.size());
      } else {
        archive.OpenFile(path, Archive::Load);
      }
      TransferPieces(archive, loaded, seed);
      EXPECT_TRUE(bytes == loaded) << seed << isMemory;
      EXPECT_THROW(archive.SyncCheck(), Exception);
    }
  }
}

TEST(Archive, longTextCrossesBlocks) {
  std::string narrow(200000, 'n');
  std::wstring wide(100000, L'w');
  wide += L"\U0001F600";
  const auto transfer = [](Archive& archive, std::string& a, std::wstring& b) {
    archive.Transfer(a);
    archive.Transfer(b);
    archive.SyncCheck();
  };
  const std::string bytes = Stored([&](Archive& archive) { transfer(archive, narrow, wide); });
  EXPECT_EQ(4u + 200000 + 4 + 200004 + 4, bytes.size());
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"text.bin");
  test::WriteBytes(path, bytes);
  Archive archive(path, Archive::Load);
  std::string loadedNarrow;
  std::wstring loadedWide;
  transfer(archive, loadedNarrow, loadedWide);
  EXPECT_EQ(narrow, loadedNarrow);
  EXPECT_EQ(wide, loadedWide);
}

}  // namespace
}  // namespace shr
