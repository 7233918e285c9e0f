// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: values of every kind through the registry and back; the bytes that are stored; what the
// cache answers before the registry is asked; values of other types; defaults; failing writes;
// removal; the change of the key.

#include "shared/commands/RegParamList.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>

#include "shared/platform/Registry.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/commands/ErrorOf.h"
#include "tests/support/RegistrySandbox.h"

namespace shr {
namespace {

using namespace std::string_literals;
using platform::RegistryStatus;
using platform::RegistryType;
using platform::RegistryValue;

class RegParamListTest : public testing::Test {
protected:
  /// Returns a list on the sandbox's key that knows nothing yet.
  CRegParamList Fresh() const { return CRegParamList(HKEY_CURRENT_USER, sandbox.Key()); }

  /// Reads and writes behind the lists' backs.
  RegistryValue Stored(const wchar_t* name) const {
    platform::RegistryKey key;
    RegistryValue value;
    key.Open(HKEY_CURRENT_USER, sandbox.Key(), platform::RegistryAccess::Read);
    key.Query(name, value);
    return value;
  }
  void Store(const wchar_t* name, RegistryType type, const std::string& bytes) const {
    platform::RegistryKey key;
    ASSERT_EQ(key.Create(HKEY_CURRENT_USER, sandbox.Key()), RegistryStatus::Success);
    ASSERT_EQ(key.Set(name, {type, bytes}), RegistryStatus::Success);
  }

  test::RegistrySandbox sandbox;
};

TEST_F(RegParamListTest, everyKindComesBackFromTheRegistry) {
  CRegParamList writer = Fresh();
  writer.Set(L"Text", L"\x4E2D\x00E9 text", true);
  writer.Set(L"Narrow", "narrow", true);
  writer.Set(L"Bool", true, true);
  writer.Set(L"Int", INT_MIN, true);
  writer.Set(L"Unsigned", UINT_MAX, true);
  writer.Set(L"Long", ULONG_MAX, true);
  writer.Set(L"Int64", INT64_MIN, true);
  writer.Set(L"Double", 0.1, true);
  const CRegParamList reader = Fresh();
  EXPECT_EQ(reader.GetDef(L"Text", L"", true), L"\x4E2D\x00E9 text");
  EXPECT_EQ(reader.GetDef(L"NARROW", GString(), true), L"narrow");
  EXPECT_EQ(reader.GetDef(L"Bool", false, true), true);
  EXPECT_EQ(reader.GetDef(L"Int", 0, true), INT_MIN);
  EXPECT_EQ(reader.GetDef(L"Unsigned", 0u, true), UINT_MAX);
  unsigned long number = 0;
  EXPECT_TRUE(reader.Get(L"Long", number, true));
  EXPECT_EQ(number, ULONG_MAX);
  EXPECT_EQ(reader.GetDef(L"Int64", std::int64_t{0}, true), INT64_MIN);
  EXPECT_EQ(reader.GetDef(L"Double", 0.0, true), 0.1);
  EXPECT_EQ(reader.GetDef(L"Missing", 17, true), 17);
  EXPECT_EQ(reader.GetDef(L"Text", 17, true), 17);
}

TEST_F(RegParamListTest, storesTextWithoutATerminatingZero) {
  CRegParamList list = Fresh();
  list.Set(L"Value", L"a\x4E2D", true);
  EXPECT_EQ(Stored(L"Value"), (RegistryValue{RegistryType::Text, "a\0\x2D\x4E"s}));
  list.Set(L"Value", L"", true);
  EXPECT_EQ(Stored(L"Value"), (RegistryValue{RegistryType::Text, ""}));
}

TEST_F(RegParamListTest, readsTextUpToItsFirstZeroAndNothingButText) {
  struct Row {
    const char* name;
    RegistryType type;
    std::string bytes;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"without terminator", RegistryType::Text, "a\0b\0"s, L"ab"},
      {"with terminator", RegistryType::Text, "a\0\0\0"s, L"a"},
      {"text behind a zero", RegistryType::Text, "a\0\0\0b\0"s, L"a"},
      {"odd size", RegistryType::Text, "a\0b"s, L"ab"},
      {"no bytes", RegistryType::Text, "", L"(absent)"},
      {"number", RegistryType::Number32, "\1\0\0\0"s, L"(absent)"},
      {"expandable text", RegistryType::ExpandableText, "a\0"s, L"(absent)"},
      {"binary", RegistryType::Binary, "a\0"s, L"(absent)"},
  };
  for (const Row& row : rows) {
    Store(L"Value", row.type, row.bytes);
    EXPECT_EQ(Fresh().GetDef(L"Value", L"(absent)", true), row.expected) << row.name;
  }
}

TEST_F(RegParamListTest, theCacheAnswersBeforeTheRegistry) {
  CRegParamList list = Fresh();
  EXPECT_EQ(list.GetDef(L"Late", 0, true), 0);
  EXPECT_EQ(list.GetDef(L"Unread", 0, false), 0);
  Store(L"Late", RegistryType::Text, "5\0"s);
  Store(L"Unread", RegistryType::Text, "6\0"s);
  EXPECT_EQ(list.GetDef(L"Late", 0, true), 0);
  EXPECT_EQ(list.GetDef(L"Unread", 0, true), 0);
  list.Remove(L"Unread", false);
  EXPECT_EQ(list.GetDef(L"Unread", 0, true), 6);
  list.SetRoot(HKEY_CURRENT_USER, sandbox.Key());
  EXPECT_EQ(list.GetDef(L"Late", 0, true), 5);
}

TEST_F(RegParamListTest, writesOnlyWhatIsNewAndOnlyWhenAsked) {
  CRegParamList list = Fresh();
  list.Set(L"Value", 1, false);
  EXPECT_EQ(list.GetDef(L"Value", 0, false), 1);
  EXPECT_EQ(Stored(L"Value").type, RegistryType::None);
  // The text is known already, so the registry is not touched.
  list.Set(L"Value", 1, true);
  EXPECT_EQ(Stored(L"Value").type, RegistryType::None);
  list.Set(L"Value", 2, true);
  EXPECT_EQ(Stored(L"Value").bytes, "2\0"s);
  Store(L"Value", RegistryType::Text, "9\0"s);
  list.Set(L"Value", 2, true);
  EXPECT_EQ(Stored(L"Value").bytes, "9\0"s);
}

TEST_F(RegParamListTest, removeDeletesTheKeyOfTheNameAndNoValue) {
  Store(L"Group", RegistryType::Text, "1\0"s);
  platform::RegistryKey key;
  key.Create(HKEY_CURRENT_USER, sandbox.Key(L"Group"));
  CRegParamList list = Fresh();
  list.Remove(L"Group", false);
  EXPECT_EQ(key.Open(HKEY_CURRENT_USER, sandbox.Key(L"Group"), platform::RegistryAccess::Read),
            RegistryStatus::Success);
  list.Remove(L"Group", true);
  EXPECT_EQ(key.Open(HKEY_CURRENT_USER, sandbox.Key(L"Group"), platform::RegistryAccess::Read),
            RegistryStatus::NotFound);
  EXPECT_EQ(list.GetDef(L"Group", 0, true), 1);
  list.Remove(L"", true);
  list.Remove(L"Missing", true);
  EXPECT_EQ(Fresh().GetDef(L"Group", 0, true), 1);
}

TEST_F(RegParamListTest, failingWritesThrowAndLeaveTheCache) {
  CRegParamList list(HKEY_CURRENT_USER, L"\\Leading");
  EXPECT_EQ(ErrorOf([&] { list.Set(L"Value", 1, true); }),
            "RegParamList:162:Unable to open registry key '\\Leading'.");
  EXPECT_EQ(list.GetDef(L"Value", 0, false), 0);
  list = Fresh();
  const GString tooLong(std::wstring(16384, L'v'));
  const std::string error = ErrorOf([&] { list.Set(tooLong, 1, true); });
  EXPECT_EQ(error.substr(0, 60), "RegParamList:166:Unable to write registry key '%s'.");
  EXPECT_EQ(list.GetDef(tooLong, 0, true), 0);
}

TEST_F(RegParamListTest, startsAtTheUsersRoot) {
  CRegParamList list;
  EXPECT_EQ(list.GetRootKey(), HKEY_CURRENT_USER);
  EXPECT_EQ(list.GetRootSubKey(), L"");
  list.SetRoot(HKEY_LOCAL_MACHINE, L"Software");
  EXPECT_EQ(list.GetRootKey(), HKEY_LOCAL_MACHINE);
  EXPECT_EQ(list.GetRootSubKey(), L"Software");
}

TEST_F(RegParamListTest, knownParametersAreListedForgottenAndReadAgain) {
  CRegParamList list = Fresh();
  list.Set(L"b", 1, true);
  list.Set(L"a", L"text", false);
  GString missing;
  EXPECT_FALSE(list.Get(L"missing", missing, true));
  EXPECT_EQ((std::vector<GString>{L"a", L"b"}), list.Names());
  const CRegParamList copy(list);
  list.Clear();
  EXPECT_TRUE(list.Names().empty());
  EXPECT_EQ(1, list.GetDef(L"b", 0, true));
  EXPECT_EQ(L"", list.GetDef(L"a", L"", true));
  EXPECT_EQ(2u, copy.Names().size());
}

}  // namespace
}  // namespace shr
