// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every open option on a missing and an existing file and a folder; every pair of access and
// share mode, by descriptors and streams; long positions; names beyond ASCII; stream mode texts;
// error texts.

#include "shared/platform/RawFile.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "shared/platform/Paths.h"
#include "tests/support/TemporaryFolder.h"

namespace shr::platform {
namespace {

using test::ReadBytes;
using test::WriteBytes;

/// Closes what a test opened, on every way out of it.
class Opened {
public:
  Opened(const GString& path, const FileOpenOptions& options)
      : descriptor_(OpenDescriptor(path, options)) {}
  ~Opened() {
    if (IsOpen()) CloseDescriptor(descriptor_);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  bool IsOpen() const { return descriptor_ != NO_DESCRIPTOR; }
  int Get() const { return descriptor_; }

private:
  int descriptor_;
};

FileOpenOptions ReadWrite() {
  FileOpenOptions options;
  options.read = options.write = options.create = true;
  return options;
}

TEST(OpenDescriptor, optionsDecideAboutMissingAndExistingFiles) {
  struct Row {
    const char* name;
    FileOpenOptions options;
    bool opensMissing;
    bool opensExisting;
    const char* content;  // of an existing file after the open
  };
  constexpr auto ALL = FileSharing::All;
  const Row rows[] = {
      {"read", {true, false, false, false, false, false, ALL}, false, true, "12345678"},
      {"write", {false, true, false, false, false, false, ALL}, false, true, "12345678"},
      {"read write", {true, true, false, false, false, false, ALL}, false, true, "12345678"},
      {"create", {true, true, false, true, false, false, ALL}, true, true, "12345678"},
      {"create read only", {true, false, false, true, false, false, ALL}, true, true, "12345678"},
      {"create new", {true, true, false, true, true, false, ALL}, true, false, "12345678"},
      {"create empty", {false, true, false, true, false, true, ALL}, true, true, ""},
      {"create empty read only", {true, false, false, true, false, true, ALL}, true, true, ""},
      {"empty", {false, true, false, false, false, true, ALL}, false, true, ""},
      {"append", {false, true, true, true, false, false, ALL}, true, true, "12345678"},
  };
  for (const Row& row : rows) {
    const test::TemporaryFolder folder;
    const GString path = folder.Path(L"a.dat");
    EXPECT_EQ(row.opensMissing, Opened(path, row.options).IsOpen()) << row.name;
    EXPECT_EQ(row.opensMissing, test::Exists(path)) << row.name;
    WriteBytes(path, "12345678");
    EXPECT_EQ(row.opensExisting, Opened(path, row.options).IsOpen()) << row.name;
    EXPECT_EQ(row.content, ReadBytes(path)) << row.name;
    EXPECT_FALSE(Opened(folder.Path(), row.options).IsOpen()) << row.name << " of a folder";
  }
}

TEST(OpenDescriptor, refusesPathsThatTheSystemWouldCutOrMisread) {
  const test::TemporaryFolder folder;
  GString cut = folder.Path(L"a");
  cut.push_back(L'\0');
  cut += L"b";
  for (const GString& path : {GString(), cut, folder.Path(L"missing") + L"/a"}) {
    EXPECT_FALSE(Opened(path, ReadWrite()).IsOpen());
    EXPECT_FALSE(LastErrorText().empty());
    EXPECT_EQ(nullptr, OpenStream(path, L"wb", FileSharing::All));
  }
  EXPECT_TRUE(folder.Names().empty());
}

// Sharing.

struct Use {
  bool reads;
  bool writes;
  FileSharing sharing;
};

constexpr bool Allows(FileSharing sharing, FileSharing what) {
  return (static_cast<int>(sharing) & static_cast<int>(what)) != 0;
}

/// Two uses get along when each allows what the other does.
bool GetAlong(const Use& a, const Use& b) {
  const auto allows = [](const Use& host, const Use& guest) {
    return (!guest.reads || Allows(host.sharing, FileSharing::Read)) &&
           (!guest.writes || Allows(host.sharing, FileSharing::Write));
  };
  return allows(a, b) && allows(b, a);
}

std::vector<Use> AllUses() {
  std::vector<Use> uses;
  for (const int access : {1, 2, 3}) {
    for (const int sharing : {0, 1, 2, 3}) {
      uses.push_back({(access & 1) != 0, (access & 2) != 0, static_cast<FileSharing>(sharing)});
    }
  }
  return uses;
}

std::string Describe(const Use& use) {
  return std::string(use.reads ? "R" : "") + (use.writes ? "W" : "") + " sharing " +
         std::to_string(static_cast<int>(use.sharing));
}

FileOpenOptions MakeOptions(const Use& use) {
  FileOpenOptions options;
  options.read = use.reads;
  options.write = use.writes;
  options.sharing = use.sharing;
  return options;
}

const wchar_t* StreamMode(const Use& use) {
  if (use.reads) return use.writes ? L"r+b" : L"rb";
  return L"ab";
}

TEST(FileSharing, bindsEveryPairOfDescriptors) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  WriteBytes(path, "content");
  for (const Use& first : AllUses()) {
    for (const Use& second : AllUses()) {
      const Opened host(path, MakeOptions(first));
      ASSERT_TRUE(host.IsOpen()) << Describe(first);
      const Opened guest(path, MakeOptions(second));
      EXPECT_EQ(GetAlong(first, second), guest.IsOpen())
          << Describe(first) << ", then " << Describe(second);
    }
  }
}

TEST(FileSharing, bindsEveryPairOfStreamAndDescriptor) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  WriteBytes(path, "content");
  for (const Use& first : AllUses()) {
    for (const Use& second : AllUses()) {
      const Opened host(path, MakeOptions(first));
      std::FILE* const guest = OpenStream(path, StreamMode(second), second.sharing);
      EXPECT_EQ(GetAlong(first, second), guest != nullptr)
          << Describe(first) << ", then stream " << Describe(second);
      if (guest != nullptr) std::fclose(guest);
    }
  }
}

TEST(FileSharing, countsAllOpenersAndEndsWithTheLast) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  WriteBytes(path, "content");
  const FileOpenOptions write = MakeOptions({false, true, FileSharing::All});
  const FileOpenOptions alone = MakeOptions({false, true, FileSharing::None});
  auto first = std::make_unique<Opened>(path, write);
  auto second = std::make_unique<Opened>(path, write);
  const FileOpenOptions read = MakeOptions({true, false, FileSharing::All});
  auto third = std::make_unique<Opened>(path, read);
  for (auto* opener : {&first, &second, &third}) {
    ASSERT_TRUE((*opener)->IsOpen());
    EXPECT_FALSE(Opened(path, alone).IsOpen());
    opener->reset();
  }
  EXPECT_TRUE(Opened(path, alone).IsOpen());
  EXPECT_TRUE(Opened(path, alone).IsOpen());
}

TEST(FileSharing, aRefusedOpenDoesNotEmptyTheFile) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"shared.dat");
  WriteBytes(path, "content");
  const Opened host(path, MakeOptions({true, false, FileSharing::Read}));
  FileOpenOptions empty = ReadWrite();
  empty.truncate = true;
  EXPECT_FALSE(Opened(path, empty).IsOpen());
  EXPECT_FALSE(LastErrorText().empty());
  EXPECT_EQ(nullptr, OpenStream(path, L"wb", FileSharing::All));
  char content[8] = {};
  EXPECT_EQ(7, ReadDescriptor(host.Get(), content, sizeof content));
  EXPECT_STREQ("content", content);
}

// Content and positions.

TEST(Descriptor, positionsBeyond32BitsWork) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"large.dat");
  constexpr std::int64_t FAR_AWAY = 5'000'000'000;
  const Opened file(path, ReadWrite());
  ASSERT_TRUE(file.IsOpen());
  EXPECT_EQ(FAR_AWAY, SeekDescriptor(file.Get(), FAR_AWAY, FileOrigin::Begin));
  EXPECT_TRUE(WriteDescriptor(file.Get(), "end", 3));
  EXPECT_EQ(FAR_AWAY + 3, GetDescriptorLength(file.Get()));
  EXPECT_EQ(FAR_AWAY + 1, SeekDescriptor(file.Get(), -2, FileOrigin::End));
  char tail[4] = {};
  EXPECT_EQ(2, ReadDescriptor(file.Get(), tail, sizeof tail));
  EXPECT_STREQ("nd", tail);
  EXPECT_EQ(0, ReadDescriptor(file.Get(), tail, sizeof tail));
  EXPECT_TRUE(SetDescriptorLength(file.Get(), FAR_AWAY - 1));
  EXPECT_EQ(FAR_AWAY + 3, SeekDescriptor(file.Get(), 0, FileOrigin::Current));
  EXPECT_EQ(-1, SeekDescriptor(file.Get(), -1, FileOrigin::Begin));
  EXPECT_FALSE(LastErrorText().empty());
}

TEST(Descriptor, lengthChangesReadAsZeros) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "12345678");
  {
    const Opened file(path, ReadWrite());
    EXPECT_TRUE(SetDescriptorLength(file.Get(), 3));
    EXPECT_TRUE(SetDescriptorLength(file.Get(), 5));
    EXPECT_TRUE(FlushDescriptor(file.Get()));
  }
  EXPECT_EQ(std::string("123\0\0", 5), ReadBytes(path));
}

TEST(Descriptor, appendingWritesAtTheEndWhereverThePositionIs) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "123");
  FileOpenOptions options = ReadWrite();
  options.append = true;
  {
    const Opened file(path, options);
    EXPECT_EQ(0, SeekDescriptor(file.Get(), 0, FileOrigin::Begin));
    EXPECT_TRUE(WriteDescriptor(file.Get(), "4", 1));
    EXPECT_EQ(4, SeekDescriptor(file.Get(), 0, FileOrigin::Current));
  }
  EXPECT_EQ("1234", ReadBytes(path));
}

TEST(Descriptor, accessIsKept) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.dat");
  WriteBytes(path, "123");
  char byte = 'x';
  const Opened reader(path, MakeOptions({true, false, FileSharing::All}));
  EXPECT_FALSE(WriteDescriptor(reader.Get(), &byte, 1));
  EXPECT_FALSE(LastErrorText().empty());
  EXPECT_TRUE(FlushDescriptor(reader.Get()));
  const Opened writer(path, MakeOptions({false, true, FileSharing::All}));
  EXPECT_EQ(-1, ReadDescriptor(writer.Get(), &byte, 1));
  EXPECT_EQ('x', byte);
}

TEST(Descriptor, namesBeyondAsciiAreKeptByTheFolder) {
  const wchar_t* const names[] = {L"\u0391\u03b8\u03ae\u03bd\u03b1.txt",
                                  L"\u6771\u4eac \u5317\u4eac", L"map \U0001F5FA.dat", L"e\u0301"};
  for (const wchar_t* const name : names) {
    const test::TemporaryFolder folder;
    {
      const Opened file(folder.Path() + L"/" + name, ReadWrite());
      ASSERT_TRUE(file.IsOpen()) << LastErrorText();
      ASSERT_TRUE(WriteDescriptor(file.Get(), "x", 1));
    }
    ASSERT_EQ(1u, folder.Names().size());
    EXPECT_EQ(GString(name), folder.Names()[0]);
    EXPECT_TRUE(RemoveFile(folder.Path(name)));
  }
}

// Streams.

TEST(OpenStream, modeTextDecides) {
  struct Row {
    const wchar_t* mode;
    bool isValid;
    bool opensMissing;
    bool opensExisting;
  };
  const Row rows[] = {
      {L"r", true, false, true},     {L"rb", true, false, true},
      {L"rt", true, false, true},    {L"r+b", true, false, true},
      {L"rb+", true, false, true},   {L"w", true, true, true},
      {L"wb", true, true, true},     {L"w+t", true, true, true},
      {L"a", true, true, true},      {L"a+b", true, true, true},
      {L"wbc", true, true, true},    {L"rbS", true, false, true},
      {L"wbx", true, true, false},   {L"a+bx", true, true, false},
      {L"b", false, false, false},   {L"q", false, false, false},
      {L"rw", false, false, false},  {L"rbt", false, false, false},
      {L"rbb", false, false, false}, {L"r++", false, false, false},
      {L"rbq", false, false, false}, {L" rb", false, false, false},
      {L"rx", false, false, false},  {L"\u0433b", false, false, false},
  };
  for (const Row& row : rows) {
    const test::TemporaryFolder folder;
    const GString path = folder.Path(L"a.dat");
    const std::string name = GString(row.mode).WtoAForDiagnostics();
    for (const bool exists : {false, true}) {
      if (exists) WriteBytes(path, "1");
      std::FILE* const stream = OpenStream(path, row.mode, FileSharing::All);
      EXPECT_EQ(exists ? row.opensExisting : row.opensMissing, stream != nullptr) << name;
      if (stream != nullptr) std::fclose(stream);
      if (!exists) {
        EXPECT_EQ(row.opensMissing, test::Exists(path)) << name;
      }
    }
    if (!row.isValid) {
      EXPECT_EQ("1", ReadBytes(path)) << name;
    }
  }
  EXPECT_EQ(nullptr, OpenStream(GString(L"a"), GString(), FileSharing::All));
}

TEST(OpenStream, seeksBeyond32Bits) {
  const test::TemporaryFolder folder;
  std::FILE* const stream = OpenStream(folder.Path(L"a.dat"), L"w+b", FileSharing::None);
  ASSERT_NE(nullptr, stream);
  EXPECT_TRUE(SeekStream(stream, 5'000'000'000, FileOrigin::Begin));
  EXPECT_EQ(5'000'000'000, TellStream(stream));
  EXPECT_FALSE(SeekStream(stream, -5'000'000'001, FileOrigin::Current));
  EXPECT_EQ(0, std::fclose(stream));
}

// Error texts.

TEST(ErrorText, isNeverEmptyAndHasNoLineEnd) {
  for (const std::uint32_t code : {0u, 1u, 2u, 5u, 13u, 32u, 999999u, 0xFFFFFFFFu}) {
    const GString text = FormatSystemErrorMsg(code);
    ASSERT_FALSE(text.empty()) << code;
    EXPECT_GT(text[text.size() - 1], L' ') << code;
  }
  EXPECT_NE(FormatSystemErrorMsg(2), FormatSystemErrorMsg(5));
}

TEST(ErrorText, tellsFailuresApart) {
  const test::TemporaryFolder folder;
  FileOpenOptions options;
  options.read = true;
  EXPECT_FALSE(Opened(folder.Path(L"missing"), options).IsOpen());
  const GString missing = LastErrorText();
  EXPECT_FALSE(Opened(folder.Path(), options).IsOpen());
  const GString isFolder = LastErrorText();
  WriteBytes(folder.Path(L"a"), "");
  const Opened host(folder.Path(L"a"), MakeOptions({true, false, FileSharing::None}));
  EXPECT_FALSE(Opened(folder.Path(L"a"), options).IsOpen());
  const GString refused = LastErrorText();
  EXPECT_NE(missing, isFolder);
  EXPECT_NE(missing, refused);
  EXPECT_NE(isFolder, refused);
}

}  // namespace
}  // namespace shr::platform
