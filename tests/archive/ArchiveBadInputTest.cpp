// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every truncation and every single-bit flip of a sample; counts that the file cannot hold;
// classes that do not exist, create nothing or are of another family; numbers never stored.

#include <gtest/gtest.h>

#include "shared/text/GString.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/archive/SurveyFormat.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

using test::CSurvey;
using test::FailureAt;
using test::FromHex;
using test::Leaf;
using test::LoadFrom;
using test::Node;
using test::Stored;

/// Everything an archive stores of itself: text, containers, objects, handles, a cycle, a check.
struct Document {
  std::string title;
  std::vector<double> depths;
  std::map<int, GString> names;
  std::shared_ptr<CTypedObject> root;

  void Serialize(Archive& archive) {
    archive.Transfer(title);
    Transfer(archive, depths);
    Transfer(archive, names);
    Transfer(archive, root);
    archive.SyncCheck();
  }
};

std::string SampleBytes() {
  const auto leaf = std::make_shared<Leaf>();
  leaf->text = "leaf";
  const auto node = std::make_shared<Node>(1);
  const auto other = std::make_shared<Node>(2);
  node->next = other.get();
  other->next = node.get();
  node->shared = {leaf, other, leaf};
  Document document{"Sample", {1.5, -2.5}, {{1, L"one"}, {2, L"\U0001F600"}}, node};
  return Stored([&](Archive& archive) { document.Serialize(archive); });
}

/// Loads a document and destroys what it created. Returns the failure.
GString LoadFailure(std::string_view bytes) {
  Document document;
  Archive archive;
  archive.OpenMem(test::Bytes(bytes), bytes.size());
  const GString failure = FailureAt([&] { document.Serialize(archive); });
  archive.DiscardLoaded();
  return failure;
}

TEST(ArchiveBadInput, everyTruncationIsAShortRead) {
  const std::string bytes = SampleBytes();
  EXPECT_EQ(L"(nothing)", LoadFailure(bytes));
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    // A copy of its own, so that reading behind it is seen.
    const std::vector<char> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(test::SHORT_READ, LoadFailure({cut.data(), size})) << size;
  }
}

TEST(ArchiveBadInput, everyFlippedBitIsAnError) {
  const std::string bytes = SampleBytes();
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    std::string damaged = bytes;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    const GString failure = LoadFailure(damaged);
    EXPECT_NE(L"(nothing)", failure) << bit;
    EXPECT_EQ(GString::npos, failure.String().find(L"internal")) << bit;
  }
}

TEST(ArchiveBadInput, countsBeyondTheFileFailBeforeMemoryIsTaken) {
  const std::string bytes = FromHex("FF FF FF FF") + std::string(16, 'x');
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"a.bin");
  test::WriteBytes(path, bytes);
  const auto check = [&](const char* name, auto value) {
    LoadFrom(bytes, [&](Archive& archive) {
      EXPECT_EQ(test::SHORT_READ, FailureAt([&] { Transfer(archive, value); })) << name;
    });
    Archive archive(path, Archive::Load);
    EXPECT_EQ(GString(L"Unable to read '") + path + L"'.\nUnexpected end of file @245",
              FailureAt([&] { Transfer(archive, value); }))
        << name;
    if constexpr (requires { value.capacity(); }) {
      EXPECT_LT(value.capacity(), 100u) << name;
    }
  };
  check("narrow", std::string());
  check("wide", std::wstring());
  check("block", std::vector<double>());
  check("strings", std::vector<std::string>());
  check("objects without content", std::vector<std::shared_ptr<CTypedObject>>());
  check("map", std::map<int, int>());
}

TEST(ArchiveBadInput, elementsAreReadBeforeMemoryForAllIsTaken) {
  // The count could be true, but the elements are strings that end the file at once.
  std::string bytes = FromHex("00 00 10 00 FF 00 00 00");
  bytes.resize(1 << 20 | 0xFF);
  std::vector<std::string> values;
  LoadFrom(bytes, [&](Archive& archive) {
    EXPECT_EQ(test::SHORT_READ, FailureAt([&] { Transfer(archive, values); }));
  });
  EXPECT_LE(values.capacity(), 300000u);
}

void* MakeForeign() {
  return new int(1);
}

TEST(ArchiveBadInput, classesThatCannotBeCreatedAreNamed) {
  const CTypeInfo abstract("Abstract", nullptr, &CTypedObject::ClassTypeId);
  const CTypeInfo foreign("Foreign", &MakeForeign, nullptr);
  struct Row {
    const char* name;
    std::string bytes;
    const wchar_t* failure;
  };
  const Row rows[] = {
      {"unknown", FromHex("01 00 00 00 00 00 00 00 03 00 00 00 41 42 43"),
       L"Unable to create object of class ABC @426"},
      {"unnamed", FromHex("01 00 00 00 00 00 00 00 00 00 00 00"),
       L"Unable to create object of class  @426"},
      {"abstract", FromHex("01 00 00 00 00 00 00 00 08 00 00 00") + "Abstract",
       L"Unable to create object of class Abstract @426"},
      {"of another family", FromHex("01 00 00 00 00 00 00 00 07 00 00 00") + "Foreign",
       L"Unable to create object of class Foreign @426"},
      {"root", FromHex("01 00 00 00 00 00 00 00 0C 00 00 00") + "CTypedObject",
       L"Unable to create object of class CTypedObject @426"},
      {"name cut by a zero",
       FromHex("01 00 00 00 00 00 00 00 06 00 00 00") + std::string("Leaf\0x", 6),
       L"Unable to create object of class Leaf @426"},
      {"another case", FromHex("01 00 00 00 00 00 00 00 04 00 00 00") + "leaf",
       L"Unable to create object of class leaf @426"},
      {"name cut short", FromHex("01 00 00 00 00 00 00 00 FF FF 00 00") + "Leaf", test::SHORT_READ},
  };
  for (const Row& row : rows) {
    CTypedObject* object = nullptr;
    EXPECT_EQ(row.failure, FailureAt([&] {
                LoadFrom(row.bytes, [&](Archive& archive) { archive.TransferObject(object); });
              }))
        << row.name;
    EXPECT_EQ(nullptr, object) << row.name;
  }
}

TEST(ArchiveBadInput, anyNumberAndClassIndexCountsAsTheNextNewOne) {
  const std::string bytes = FromHex("FE FF FF FF FF FF FF FF 04 00 00 00") + "Leaf" +
                            FromHex("00 00 00 00 FE FF FF FF 07 00 00 00 00 00 00 00 00 00 00 00");
  LoadFrom(bytes, [](Archive& archive) {
    CTypedObject* objects[3] = {};
    for (CTypedObject*& object : objects) archive.TransferObject(object);
    EXPECT_NE(nullptr, objects[0]);
    EXPECT_EQ(objects[0], objects[1]);
    EXPECT_NE(objects[0], objects[2]);
    archive.DiscardLoaded();
  });
}

}  // namespace
}  // namespace shr
