// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases, the same on both targets: paths (doubled and trailing separators, letter case, the root,
// leading separators, bad roots); values of every type and size with their bytes; names in any
// letter case, within and beyond ASCII; overwriting and removal; keys with subkeys; access; keys
// deleted while open; lengths; writers on several threads.

#include "shared/platform/Registry.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "shared/platform/WindowsTypes.h"
#include "tests/support/RegistrySandbox.h"

namespace shr::platform {
namespace {

using namespace std::string_literals;

class RegistryTest : public testing::Test {
protected:
  RegistryTest() {
    EXPECT_EQ(key.Create(HKEY_CURRENT_USER, sandbox.Key()), RegistryStatus::Success);
  }

  RegistryStatus Open(const GString& below, RegistryAccess access = RegistryAccess::Read) {
    return other.Open(HKEY_CURRENT_USER, sandbox.Key() + below, access);
  }
  static RegistryValue Text(const char* letters) {
    RegistryValue value{RegistryType::Text, {}};
    for (; *letters; ++letters) value.bytes += {*letters, '\0'};
    return value;
  }
  std::string Read(const GString& name) {
    RegistryValue value{RegistryType::None, "(missing)"};
    key.Query(name, value);
    return value.bytes;
  }

  test::RegistrySandbox sandbox;
  RegistryKey key, other;
};

TEST_F(RegistryTest, pathsLeadToTheSameKeyHoweverTheyAreSpelled) {
  ASSERT_EQ(other.Create(HKEY_CURRENT_USER, sandbox.Key() + L"\\One\\\\Tw\x00F6\\"),
            RegistryStatus::Success);
  struct Row {
    const char* name;
    const wchar_t* path;
    RegistryStatus status;
  };
  const Row rows[] = {
      {"as created", L"\\One\\Tw\x00F6", RegistryStatus::Success},
      {"key above", L"\\One", RegistryStatus::Success},
      {"other letter case", L"\\oNE\\tW\x00D6", RegistryStatus::Success},
      {"separators", L"\\\\\\One\\\\Tw\x00F6\\\\", RegistryStatus::Success},
      {"missing", L"\\One\\Two", RegistryStatus::NotFound},
      {"slash is a letter", L"\\One/Tw\x00F6", RegistryStatus::NotFound},
      {"too long a head", L"\\One\\Tw\x00F6\\x", RegistryStatus::NotFound},
  };
  for (const Row& row : rows) EXPECT_EQ(Open(row.path), row.status) << row.name;
  EXPECT_EQ(other.Open(HKEY_CURRENT_USER, L"", RegistryAccess::Read), RegistryStatus::Success);
  EXPECT_EQ(other.Open(HKEY_CURRENT_USER, L"\\Software", RegistryAccess::Read),
            RegistryStatus::BadPath);
  EXPECT_EQ(other.Create(HKEY_CURRENT_USER, L"\\"), RegistryStatus::BadPath);
  EXPECT_EQ(other.Open(nullptr, L"Software", RegistryAccess::Read), RegistryStatus::InvalidHandle);
  EXPECT_FALSE(RegistryErrorText().empty());
}

TEST_F(RegistryTest, valuesKeepTheirTypeAndEveryByte) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  std::string large;
  while (large.size() < 300'000) large += all;
  const RegistryValue rows[] = {
      {RegistryType::Text, ""},
      {RegistryType::Text, "a\0b\0"s},
      {RegistryType::Text, "a\0b\0\0\0"s},
      {RegistryType::Text, "a\0b"s},
      {RegistryType::Text, "\"\0%\0\\\0\n\0\x7F\0\x3D\xD8"s},
      {RegistryType::ExpandableText, "\x3D\xD8\x00\xDE"s},
      {RegistryType::TextList, "a\0\0\0b\0\0\0\0\0"s},
      {RegistryType::Binary, all},
      {RegistryType::Binary, large},
      {RegistryType::Number32, "\1\2"s},
      {RegistryType::Number64, "\1\2\3\4\5\6\7\10"s},
      {RegistryType::None, "x"},
      {static_cast<RegistryType>(99), "any"},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const GString name(std::to_wstring(i));
    EXPECT_EQ(key.Set(name, rows[i]), RegistryStatus::Success) << i;
    EXPECT_EQ(key.Set(L"overwritten", rows[i]), RegistryStatus::Success) << i;
    RegistryValue value;
    EXPECT_EQ(key.Query(L"overwritten", value), RegistryStatus::Success) << i;
    EXPECT_EQ(value, rows[i]) << i;
  }
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    RegistryValue value;
    EXPECT_EQ(key.Query(GString(std::to_wstring(i)), value), RegistryStatus::Success) << i;
    EXPECT_EQ(value, rows[i]) << i;
  }
}

TEST_F(RegistryTest, namesMatchInAnyLetterCase) {
  struct Row {
    const char* name;
    wchar_t one, two;
    bool equal;
  };
  const Row rows[] = {
      {"ASCII", L'q', L'Q', true},
      {"Latin", 0x00E4, 0x00C4, true},
      {"Latin beyond the page", 0x00FF, 0x0178, true},
      {"Cyrillic", 0x0430, 0x0410, true},
      {"Greek", 0x03C3, 0x03A3, true},
      {"full width", 0xFF41, 0xFF21, true},
      {"Roman numeral", 0x2170, 0x2160, true},
      {"circled letter", 0x24D0, 0x24B6, true},
      {"digraph", 0x01C6, 0x01C4, true},
      {"digraph in title case", 0x01C5, 0x01C4, false},
      {"Greek final sigma", 0x03C2, 0x03A3, false},
      {"dotless i", 0x0131, L'I', false},
      {"long s", 0x017F, L'S', false},
      {"Kelvin sign", 0x212A, L'k', false},
      {"micro sign", 0x00B5, 0x039C, false},
      {"sharp s", 0x00DF, 0x1E9E, false},
  };
  for (const Row& row : rows) {
    const GString one(1, row.one), two(1, row.two);
    EXPECT_EQ(key.Set(one, Text("one")), RegistryStatus::Success);
    EXPECT_EQ(key.Set(two, Text("two")), RegistryStatus::Success);
    EXPECT_EQ(Read(one), Text(row.equal ? "two" : "one").bytes) << row.name;
    EXPECT_EQ(key.RemoveValue(two), RegistryStatus::Success) << row.name;
    EXPECT_EQ(key.RemoveValue(one), row.equal ? RegistryStatus::NotFound : RegistryStatus::Success)
        << row.name;
  }
}

TEST_F(RegistryTest, theEmptyNameIsTheDefaultValue) {
  EXPECT_EQ(key.Set(L"", Text("default")), RegistryStatus::Success);
  EXPECT_EQ(key.Set(GString(L"a\0b", 3), Text("cut")), RegistryStatus::Success);
  EXPECT_EQ(Read(GString(L"\0x", 2)), Text("default").bytes);
  EXPECT_EQ(Read(L"a"), Text("cut").bytes);
}

TEST_F(RegistryTest, missingValuesLeaveTheResultUnchanged) {
  RegistryValue value = Text("before");
  EXPECT_EQ(key.Query(L"missing", value), RegistryStatus::NotFound);
  EXPECT_EQ(value, Text("before"));
  EXPECT_EQ(key.RemoveValue(L"missing"), RegistryStatus::NotFound);
  EXPECT_EQ(key.RemoveKey(L"missing"), RegistryStatus::NotFound);
}

TEST_F(RegistryTest, keysWithSubkeysAreNotDeleted) {
  other.Create(HKEY_CURRENT_USER, sandbox.Key(L"A\\B"));
  other.Create(HKEY_CURRENT_USER, sandbox.Key(L"A!"));
  EXPECT_EQ(key.RemoveKey(L"a"), RegistryStatus::AccessDenied);
  EXPECT_EQ(key.RemoveKey(L"\\A"), RegistryStatus::BadPath);
  EXPECT_EQ(key.RemoveKey(L"a\\b\\"), RegistryStatus::Success);
  EXPECT_EQ(key.RemoveKey(L"a"), RegistryStatus::Success);
  EXPECT_EQ(Open(L"\\A"), RegistryStatus::NotFound);
  EXPECT_EQ(Open(L"\\A!"), RegistryStatus::Success);
}

TEST_F(RegistryTest, rootsAreNotDeleted) {
  RegistryKey root;
  ASSERT_EQ(root.Open(HKEY_CURRENT_USER, L"", RegistryAccess::ReadWrite), RegistryStatus::Success);
  EXPECT_NE(root.RemoveKey(L""), RegistryStatus::Success);
  EXPECT_EQ(Open(L""), RegistryStatus::Success) << "and everything below is there";
  EXPECT_EQ(root.Open(HKEY_CURRENT_USER, L"", RegistryAccess::Read), RegistryStatus::Success);
}

TEST_F(RegistryTest, aKeyDeletedWhileOpenIsToldApart) {
  ASSERT_EQ(other.Create(HKEY_CURRENT_USER, sandbox.Key(L"Gone")), RegistryStatus::Success);
  EXPECT_EQ(other.RemoveKey(L""), RegistryStatus::Success);
  RegistryValue value;
  EXPECT_EQ(other.Set(L"x", Text("1")), RegistryStatus::KeyDeleted);
  EXPECT_EQ(other.Query(L"x", value), RegistryStatus::KeyDeleted);
  EXPECT_EQ(Open(L"\\Gone"), RegistryStatus::NotFound);
}

TEST_F(RegistryTest, readersCannotWrite) {
  key.Set(L"x", Text("1"));
  ASSERT_EQ(Open(L""), RegistryStatus::Success);
  EXPECT_EQ(other.Set(L"x", Text("2")), RegistryStatus::AccessDenied);
  EXPECT_EQ(other.RemoveValue(L"x"), RegistryStatus::AccessDenied);
  EXPECT_EQ(Read(L"x"), Text("1").bytes);
  other.Close();
  RegistryValue value;
  EXPECT_EQ(other.Query(L"x", value), RegistryStatus::InvalidHandle);
  EXPECT_EQ(other.Set(L"x", value), RegistryStatus::InvalidHandle);
}

TEST_F(RegistryTest, namesHaveAMaximumLength) {
  const GString longest(std::wstring(16383, L'v')), longer(std::wstring(16384, L'v'));
  EXPECT_EQ(key.Set(longest, Text("1")), RegistryStatus::Success);
  EXPECT_EQ(Read(longest), Text("1").bytes);
  EXPECT_EQ(key.Set(longer, Text("1")), RegistryStatus::InvalidParameter);
  const GString longestKey = GString(L"\\") + GString(std::wstring(255, L'k'));
  EXPECT_EQ(other.Create(HKEY_CURRENT_USER, sandbox.Key() + longestKey), RegistryStatus::Success);
  EXPECT_EQ(Open(longestKey), RegistryStatus::Success);
}

TEST_F(RegistryTest, writersOnSeveralThreadsLoseNothing) {
  constexpr int THREADS = 3, VALUES = 12;
  std::vector<std::thread> writers;
  for (int thread = 0; thread < THREADS; ++thread) {
    writers.emplace_back([this, thread] {
      RegistryKey own;
      own.Create(HKEY_CURRENT_USER, sandbox.Key());
      for (int i = 0; i < VALUES; ++i) {
        const std::string name = std::to_string(thread) + "-" + std::to_string(i);
        own.Set(GString(name), Text(name.c_str()));
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  for (int thread = 0; thread < THREADS; ++thread) {
    for (int i = 0; i < VALUES; ++i) {
      const std::string name = std::to_string(thread) + "-" + std::to_string(i);
      EXPECT_EQ(Read(GString(name)), Text(name.c_str()).bytes);
    }
  }
}

}  // namespace
}  // namespace shr::platform
