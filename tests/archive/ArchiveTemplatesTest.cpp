// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes of every type and loading them over other content, nested ones too; objects held
// by value; integers of 64 bits; the ways to write a transfer; elements without bytes; typed
// pointers and handles to the wrong class, variants of no alternative.

#include "shared/archive/ArchiveTemplates.h"

#include <gtest/gtest.h>

#include "shared/geometry/Vec2.h"
#include "shared/text/GString.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Leaf;
using test::LoadFrom;
using test::Node;
using test::Stored;
using test::ToHex;

/// A class that is no typed object.
struct Range {
  short first = 0;
  short last = 0;
  void Serialize(Archive& archive) {
    archive.Transfer(first);
    archive.Transfer(last);
  }
  bool operator==(const Range&) const = default;
};

template <class T>
void CheckBytes(const char* hex, T value, T other) {
  const std::string bytes = Stored([&](Archive& archive) { Transfer(archive, value); });
  EXPECT_EQ(hex, ToHex(bytes));
  LoadFrom(bytes, [&](Archive& archive) { Transfer(archive, other); });
  EXPECT_TRUE(value == other) << hex;
}

TEST(ArchiveTemplates, containersAreACountAndTheirElements) {
  using Shorts = std::vector<short>;
  CheckBytes<Shorts>("02 00 00 00 01 00 02 00", {1, 2}, {9, 9, 9});
  CheckBytes<Shorts>("00 00 00 00", {}, {9});
  CheckBytes<std::vector<bool>>("03 00 00 00 01 00 01", {true, false, true}, {});
  CheckBytes<std::vector<long>>("01 00 00 00 FF FF FF FF", {-1}, {5, 6});
  CheckBytes<std::vector<Vec2f>>("01 00 00 00 00 00 80 3F 00 00 00 40", {Vec2f(1, 2)}, {});
  CheckBytes<std::vector<Range>>("01 00 00 00 03 00 04 00", {{3, 4}}, {{1, 1}, {2, 2}});
  CheckBytes<std::vector<GString>>("02 00 00 00 01 00 00 00 61 00 00 00 00 00", {L"a", L""},
                                   {L"old"});
  CheckBytes<std::vector<Shorts>>("02 00 00 00 01 00 00 00 07 00 00 00 00 00", {{7}, {}}, {{1}});
  using Names = std::map<int, std::string>;
  CheckBytes<Names>("02 00 00 00 FF FF FF FF 01 00 00 00 61 02 00 00 00 01 00 00 00 62",
                    {{2, "b"}, {-1, "a"}}, {{2, "old"}, {5, "old"}});
}

TEST(ArchiveTemplates, ofEqualKeysTheFirstIsKept) {
  std::map<unsigned char, unsigned char> values;
  LoadFrom(test::FromHex("03 00 00 00 05 01 05 02 04 03"),
           [&](Archive& archive) { Transfer(archive, values); });
  EXPECT_EQ((std::map<unsigned char, unsigned char>{{4, 3}, {5, 1}}), values);
}

TEST(ArchiveTemplates, aBlockIsStoredAsIfElementByElement) {
  std::vector<double> values(100001);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = 1.0 / static_cast<double>(i + 1);
  const auto singly = [&](Archive& archive) {
    std::size_t count = values.size();
    archive.TransferCount(count);
    for (double& value : values) archive.Transfer(value);
    archive.SyncCheck();
  };
  const std::string bytes = Stored(singly);
  EXPECT_TRUE(bytes == Stored([&](Archive& archive) {
                Transfer(archive, values);
                archive.SyncCheck();
              }));
  std::vector<double> loaded(7, 1.0);
  LoadFrom(bytes, [&](Archive& archive) {
    Transfer(archive, loaded);
    archive.SyncCheck();
  });
  EXPECT_TRUE(values == loaded);
}

TEST(ArchiveTemplates, objectsOfAnotherClassAreRefused) {
  Node node(4);
  const std::string bytes = Stored([&](Archive& archive) {
    Node* object = &node;
    Transfer(archive, object);
  });
  const GString refused(
      L"An object of class Node in 'memory file' stands where another is expected.");
  LoadFrom(bytes, [&](Archive& archive) {
    Leaf kept;
    Leaf* leaf = &kept;
    EXPECT_EQ(refused, test::Failure([&] { Transfer(archive, leaf); }));
    EXPECT_EQ(&kept, leaf);
    archive.DiscardLoaded();
  });
  LoadFrom(bytes, [&](Archive& archive) {
    std::shared_ptr<Leaf> leaf;
    EXPECT_EQ(refused, test::Failure([&] { Transfer(archive, leaf); }));
    EXPECT_EQ(nullptr, leaf);
    archive.DiscardLoaded();
  });
}

enum class Kind : unsigned char { Road = 1, River = 2 };
enum class Wide : std::int64_t { Far = -2 };
enum Plain { PLAIN_ZERO, PLAIN_ONE };

TEST(ArchiveTemplates, everyOtherTypeOfTheLanguageHasItsBytes) {
  CheckBytes<Kind>("02", Kind::River, Kind::Road);
  CheckBytes<Wide>("FE FF FF FF FF FF FF FF", Wide::Far, Wide());
  CheckBytes<Plain>("01 00 00 00", PLAIN_ONE, PLAIN_ZERO);
  CheckBytes<std::optional<short>>("01 07 00", 7, {});
  CheckBytes<std::optional<short>>("00", {}, 7);
  CheckBytes<std::array<short, 2>>("01 00 02 00", {1, 2}, {});
  CheckBytes<std::array<GString, 2>>("01 00 00 00 61 00 00 00 00 00", {L"a", L""}, {});
  CheckBytes<std::pair<bool, Kind>>("01 01", {true, Kind::Road}, {});
  CheckBytes<std::tuple<char, short, bool>>("41 02 00 01", {'A', 2, true}, {});
  CheckBytes<std::set<short>>("02 00 00 00 FF FF 05 00", {5, -1}, {7});
  CheckBytes<std::unordered_set<short>>("03 00 00 00 01 00 02 00 03 00", {3, 1, 2}, {9});
  CheckBytes<std::unordered_map<std::string, bool>>(
      "02 00 00 00 01 00 00 00 61 01 01 00 00 00 62 00", {{"b", false}, {"a", true}},
      {{"c", true}});
  using Variant = std::variant<short, std::string, Range>;
  CheckBytes<Variant>("00 00 00 00 07 00", short{7}, "old");
  CheckBytes<Variant>("01 00 00 00 01 00 00 00 61", "a", short{7});
  CheckBytes<Variant>("02 00 00 00 03 00 04 00", Range{3, 4}, "old");
  CheckBytes<std::vector<std::optional<std::pair<short, bool>>>>("02 00 00 00 01 05 00 01 00",
                                                                 {{{5, true}}, {}}, {});
  std::unique_ptr<Range> owner = std::make_unique<Range>(Range{3, 4});
  EXPECT_EQ("01 03 00 04 00", ToHex(Stored([&](Archive& archive) { archive(owner); })));
  LoadFrom(std::string(1, '\0'), [&](Archive& archive) { archive(owner); });
  EXPECT_EQ(nullptr, owner);
  char text[4] = "ab";
  short numbers[2] = {1, 2};
  EXPECT_EQ("02 00 00 00 61 62 01 00 02 00",
            ToHex(Stored([&](Archive& archive) { archive(text, numbers); })));
}

TEST(ArchiveTemplates, wideIntegersHaveEightBytesOnEveryTarget) {
  std::size_t size = 0x123456789A;
  std::int64_t number = -2;
  std::vector<std::uint64_t> numbers = {1};
  const auto transfer = [&](Archive& archive) {
    archive.Transfer64(size);
    archive.Transfer64(number);
    Transfer64(archive, numbers);
  };
  const std::string bytes = Stored(transfer);
  EXPECT_EQ("9A 78 56 34 12 00 00 00 FE FF FF FF FF FF FF FF 01 00 00 00 01 00 00 00 00 00 00 00",
            ToHex(bytes));
  size = 0;
  number = 0;
  numbers.clear();
  LoadFrom(bytes, transfer);
  EXPECT_EQ(std::size_t{0x123456789A}, size);
  EXPECT_EQ(-2, number);
  EXPECT_EQ(1u, numbers.at(0));
}

TEST(ArchiveTemplates, everySpellingStoresTheSame) {
  std::vector<GString> names = {L"a"};
  const std::string bytes = Stored([&](Archive& archive) { Transfer(archive, names); });
  EXPECT_EQ(bytes, Stored([&](Archive& archive) { archive.Transfer(names); }));
  EXPECT_EQ(bytes + bytes, Stored([&](Archive& archive) { archive(names)(names); }));
}

/// An element without bytes.
struct Nothing {
  void Serialize(Archive&) {}
  auto operator<=>(const Nothing&) const = default;
};

TEST(ArchiveTemplates, elementsWithoutBytesLoadAgainButNoCountIsTrusted) {
  CheckBytes<std::vector<Nothing>>("03 00 00 00", std::vector<Nothing>(3), {});
  CheckBytes<std::vector<std::array<int, 0>>>("05 00 00 00", std::vector<std::array<int, 0>>(5),
                                              {});
  CheckBytes<std::set<Nothing>>("01 00 00 00", {Nothing()}, {});
  std::vector<Nothing> many(Archive::MOST_WITHOUT_BYTES);
  LoadFrom(Stored([&](Archive& archive) { archive(many); }), [&](Archive& archive) {
    many.clear();
    archive(many);
    EXPECT_EQ(std::size_t{Archive::MOST_WITHOUT_BYTES}, many.size());
  });
  many.emplace_back();
  EXPECT_EQ(L"Unable to write 'memory file'.\nout of range",
            test::Failure([&] { Stored([&](Archive& archive) { archive(many); }); }));
  LoadFrom(test::FromHex("FF FF FF FF"), [&](Archive& archive) {
    EXPECT_EQ(test::SHORT_READ, test::FailureAt([&] { archive(many); }));
  });
}

TEST(ArchiveTemplates, alternativesThatDoNotExistAreRefused) {
  std::variant<short, bool> value = true;
  LoadFrom(test::FromHex("02 00 00 00 01 00"), [&](Archive& archive) {
    EXPECT_EQ(L"Unrecoverable error reading archive. @671",
              test::FailureAt([&] { archive(value); }));
  });
}

}  // namespace
}  // namespace shr
