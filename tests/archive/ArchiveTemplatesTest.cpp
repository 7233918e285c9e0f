// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes of containers and loading them over other content, nested ones too; objects held
// by value; typed pointers and handles to the wrong class.

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
    test::DestroyLoaded(archive);
  });
  LoadFrom(bytes, [&](Archive& archive) {
    std::shared_ptr<Leaf> leaf;
    EXPECT_EQ(refused, test::Failure([&] { Transfer(archive, leaf); }));
    EXPECT_EQ(nullptr, leaf);
    test::DestroyLoaded(archive);
  });
}

}  // namespace
}  // namespace shr
