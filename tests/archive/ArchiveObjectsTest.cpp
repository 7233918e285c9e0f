// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the bytes of references; identity, null and cycles; shared handles and their one group of
// owners; numbers and names of one stream only; what can be known after a failure; how deep objects
// may be nested, and a million of them without nesting.

#include <gtest/gtest.h>

#include "shared/text/GString.h"
#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::FailureAt;
using test::Leaf;
using test::LoadFrom;
using test::Node;
using test::Stored;
using test::ToHex;

TEST(ArchiveObjects, anObjectIsStoredOnceAndItsClassNamedOnce) {
  Leaf first;
  Leaf second;
  first.text = "a";
  const std::string bytes = Stored([&](Archive& archive) {
    for (CTypedObject* object :
         {static_cast<CTypedObject*>(&first), static_cast<CTypedObject*>(&first),
          static_cast<CTypedObject*>(nullptr), static_cast<CTypedObject*>(&second)}) {
      archive.TransferObject(object);
    }
  });
  EXPECT_EQ(
      "01 00 00 00 00 00 00 00 04 00 00 00 4C 65 61 66 01 00 00 00 61 "  // number, class, name,
                                                                         // text
      "01 00 00 00 "                                                     // the same again
      "00 00 00 00 "                                                     // null
      "02 00 00 00 00 00 00 00 00 00 00 00",                             // number, class, text
      ToHex(bytes));
  LoadFrom(bytes, [](Archive& archive) {
    Leaf replaced;
    CTypedObject* objects[4] = {nullptr, nullptr, &replaced, nullptr};
    for (CTypedObject*& object : objects) archive.TransferObject(object);
    const std::unique_ptr<CTypedObject> one(objects[0]);
    const std::unique_ptr<CTypedObject> two(objects[3]);
    ASSERT_NE(nullptr, dynamic_cast<Leaf*>(one.get()));
    EXPECT_EQ("a", dynamic_cast<Leaf&>(*one).text);
    EXPECT_EQ(objects[0], objects[1]);
    EXPECT_EQ(nullptr, objects[2]);
    EXPECT_NE(objects[0], objects[3]);
  });
}

TEST(ArchiveObjects, cyclesLoadAsCycles) {
  Node nodes[3] = {Node(1), Node(2), Node(3)};
  for (int i = 0; i < 3; ++i) nodes[i].next = &nodes[(i + 1) % 3];
  const std::string bytes = Stored([&](Archive& archive) {
    CTypedObject* object = &nodes[0];
    archive.TransferObject(object);
  });
  LoadFrom(bytes, [](Archive& archive) {
    Node* first = nullptr;
    Transfer(archive, first);
    ASSERT_NE(nullptr, first);
    const Node* node = first;
    for (const int value : {1, 2, 3}) {
      EXPECT_EQ(value, node->value);
      node = dynamic_cast<const Node*>(node->next);
      ASSERT_NE(nullptr, node);
    }
    EXPECT_EQ(first, node);
    EXPECT_EQ(3u, archive.GetLoadedObjects().size());
    archive.DiscardLoaded();
  });
}

TEST(ArchiveObjects, sharedHandlesOfOneObjectShareItAgain) {
  std::vector<std::shared_ptr<Leaf>> leaves = {std::make_shared<Leaf>(), std::make_shared<Leaf>()};
  leaves.push_back(leaves[0]);
  leaves.push_back(nullptr);
  leaves[0]->text = "shared";
  const std::string bytes = Stored([&](Archive& archive) { Transfer(archive, leaves); });
  std::vector<std::shared_ptr<Leaf>> loaded;
  Archive archive;
  archive.OpenMem(test::Bytes(bytes), bytes.size());
  Transfer(archive, loaded);
  ASSERT_EQ(4u, loaded.size());
  EXPECT_EQ(loaded[0], loaded[2]);
  EXPECT_NE(loaded[0], loaded[1]);
  EXPECT_EQ(nullptr, loaded[3]);
  EXPECT_EQ("shared", loaded[2]->text);
  EXPECT_EQ(3, loaded[0].use_count());
  archive.Close();
  EXPECT_EQ(2, loaded[0].use_count());
  EXPECT_EQ(1, loaded[1].use_count());
}

TEST(ArchiveObjects, managedStorageKeepsOneHandleAnAddress) {
  ArchivePrivate::ManagedLoadStorage storage;
  EXPECT_EQ(nullptr, storage.UnmanagedToManaged(nullptr));
  std::vector<CTypedObject*> objects;
  std::vector<std::shared_ptr<CTypedObject>> handles;
  for (int i = 0; i < 50; ++i) objects.push_back(new Leaf);
  for (CTypedObject* const object : objects) handles.push_back(storage.UnmanagedToManaged(object));
  for (std::size_t i = 0; i < objects.size(); ++i) {
    EXPECT_EQ(objects[i], handles[i].get());
    EXPECT_FALSE(handles[i].owner_before(storage.UnmanagedToManaged(objects[i])));
    EXPECT_EQ(2, handles[i].use_count());
  }
  storage.Reset();
  EXPECT_EQ(1, handles[0].use_count());
}

TEST(ArchiveObjects, streamsShareNoNumbersAndNames) {
  Leaf leaf;
  Archive archive;
  std::string streams[2];
  for (std::string& stream : streams) {
    archive.OpenMem();
    CTypedObject* object = &leaf;
    archive.TransferObject(object);
    const auto size = static_cast<std::size_t>(archive.GetSize());
    stream.assign(reinterpret_cast<const char*>(archive.GetBuffer()), size);
    archive.Close();
  }
  EXPECT_EQ(streams[0], streams[1]);
}

TEST(ArchiveObjects, aFailedLoadTellsWhatItCreated) {
  Node second(2);
  Node first(1);
  first.next = &second;
  std::string bytes = Stored([&](Archive& archive) {
    CTypedObject* object = &first;
    archive.TransferObject(object);
  });
  bytes.resize(bytes.size() - 10);
  LoadFrom(bytes, [](Archive& archive) {
    CTypedObject* object = nullptr;
    EXPECT_EQ(test::SHORT_READ, FailureAt([&] { archive.TransferObject(object); }));
    EXPECT_EQ(nullptr, object);
    ASSERT_EQ(2u, archive.GetLoadedObjects().size());
    EXPECT_EQ(1, dynamic_cast<Node&>(*archive.GetLoadedObjects()[0]).value);
    archive.DiscardLoaded();
  });
}

std::vector<Node> Chain(std::size_t length) {
  std::vector<Node> nodes(length);
  for (std::size_t i = 0; i + 1 < length; ++i) nodes[i].next = &nodes[i + 1];
  return nodes;
}

TEST(ArchiveObjects, chainsAreFollowedToTheLimitAndRefusedBeyondIt) {
  std::vector<Node> nodes = Chain(1000000);
  const GString refused(L"Objects in 'memory file' are nested more than 1000 levels deep.");
  const auto store = [&](std::size_t first) {
    return Stored([&](Archive& archive) {
      archive.SetDepthLimit(1000);
      CTypedObject* object = &nodes[first];
      archive.TransferObject(object);
    });
  };
  EXPECT_EQ(refused, test::Failure([&] { store(0); }));
  EXPECT_EQ(refused, test::Failure([&] { store(nodes.size() - 1001); }));
  const std::string bytes = store(nodes.size() - 1000);
  LoadFrom(bytes, [&](Archive& archive) {
    CTypedObject* object = nullptr;
    archive.TransferObject(object);
    EXPECT_EQ(1000u, archive.GetLoadedObjects().size());
    archive.DiscardLoaded();
  });
  LoadFrom(bytes, [&](Archive& archive) {
    CTypedObject* object = nullptr;
    archive.SetDepthLimit(999);
    EXPECT_EQ(L"Objects in 'memory file' are nested more than 999 levels deep.",
              test::Failure([&] { archive.TransferObject(object); }));
    archive.DiscardLoaded();
  });
}

/// A link of a chain whose owner transfers the links after all objects.
class Link : public CTypedObject {
public:
  const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
  void TransferLinks(Archive& archive) { Transfer(archive, next); }
  inline static const CTypeInfo ClassTypeId{"Link", &CreateTypedObject<Link>,
                                            &CTypedObject::ClassTypeId};
  Link* next = nullptr;
};

void TransferChain(Archive& archive, std::vector<Link*>& links) {
  Transfer(archive, links);
  for (Link* const link : links) link->TransferLinks(archive);
  archive.SyncCheck();
}

TEST(ArchiveObjects, aMillionObjectsLinkedAfterwardsNeedNoDepth) {
  constexpr std::size_t COUNT = 1000000;
  std::vector<Link> chain(COUNT);
  std::vector<Link*> links;
  for (std::size_t i = 0; i < COUNT; ++i) {
    chain[i].next = &chain[(i + 1) % COUNT];
    links.push_back(&chain[i]);
  }
  const std::string bytes = Stored([&](Archive& archive) { TransferChain(archive, links); });
  EXPECT_EQ(4 + COUNT * 8 + 8 + COUNT * 4 + 4, bytes.size());
  LoadFrom(bytes, [&](Archive& archive) {
    std::vector<Link*> loaded;
    TransferChain(archive, loaded);
    ASSERT_EQ(COUNT, loaded.size());
    bool isChained = true;
    for (std::size_t i = 0; i < COUNT; ++i) isChained &= loaded[i]->next == loaded[(i + 1) % COUNT];
    EXPECT_TRUE(isChained);
    for (Link* const link : loaded) delete link;
  });
}

}  // namespace
}  // namespace shr
