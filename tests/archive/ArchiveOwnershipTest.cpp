// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: nothing that handles own is lost or destroyed twice, whatever the bytes are; what plain
// pointers loaded is discarded, with owning destructors, beside handles and within living objects;
// objects that share themselves; owners of one object; weak handles; classes without a record of
// their own. Sanitizers see what leaks.

#include <gtest/gtest.h>

#include "tests/archive/ArchiveModel.h"
#include "tests/archive/ArchiveTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Failure;
using test::Leaf;
using test::LoadFrom;
using test::Node;
using test::Stored;

int living = 0;

/// An object of a graph of handles only, counted.
class Group : public TypedObject<Group>, public std::enable_shared_from_this<Group> {
public:
  Group() { ++living; }
  ~Group() override { --living; }
  void Serialize(Archive& archive) override {
    archive(name, children, only, parent, mood, extra);
    // A handle that is gone before the object is complete.
    std::shared_ptr<CTypedObject> passing = last.lock();
    archive(passing);
    last = passing;
    if (archive.IsLoading()) wasShared = weak_from_this().lock().get() == this;
  }

  std::wstring name;
  std::vector<std::shared_ptr<CTypedObject>> children;
  std::unique_ptr<Group> only;
  std::weak_ptr<Group> parent;
  std::optional<bool> mood;
  std::map<int, std::shared_ptr<Group>> extra;
  std::weak_ptr<CTypedObject> last;
  bool wasShared = false;
};

struct Map {
  std::shared_ptr<Group> root;
  std::vector<std::shared_ptr<Group>> others;
  void Serialize(Archive& archive) {
    archive(root, others);
    archive.SyncCheck();
  }
};

std::string MapBytes() {
  Map map;
  map.root = std::make_shared<Group>();
  map.root->name = L"root";
  for (int i = 0; i < 3; ++i) {
    auto child = std::make_shared<Group>();
    child->parent = map.root;
    child->last = map.root;
    child->only = std::make_unique<Group>();
    if (i > 0) child->children = {map.root->children[0]};
    map.root->children.push_back(child);
    map.root->extra[i] = child;
    map.others.push_back(child);
  }
  return Stored([&](Archive& archive) { archive(map); });
}

TEST(ArchiveOwnership, noTruncationOrFlippedBitLeaksOrEndsAHandleTwice) {
  const std::string bytes = MapBytes();
  ASSERT_EQ(0, living);
  const auto load = [](std::string_view damaged) {
    Map map;
    GString failure;
    {
      Archive archive;
      archive.OpenMem(test::Bytes(damaged), damaged.size());
      failure = Failure([&] { archive(map); });
    }
    // What the program has stays usable until it lets go, after the archive.
    if (map.root != nullptr) map.root->name += L"!";
    return failure;
  };
  EXPECT_EQ(L"(nothing)", load(bytes));
  EXPECT_EQ(0, living);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_NE(L"(nothing)", load(std::string_view(bytes).substr(0, size))) << size;
    EXPECT_EQ(0, living) << size;
  }
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    std::string damaged = bytes;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    EXPECT_NE(L"(nothing)", load(damaged)) << bit;
    // Cycles that the program held when the archive ended go with the next archive.
    const Archive next;
    load("");
    EXPECT_EQ(0, living) << bit;
  }
}

TEST(ArchiveOwnership, cyclesOfAWholeFileAreTheProgramsOwn) {
  auto first = std::make_shared<Node>(1);
  auto second = std::make_shared<Node>(2);
  first->shared = {second};
  second->shared = {first, first};
  const std::string bytes = Stored([&](Archive& archive) { archive(first); });
  second->shared.clear();
  std::shared_ptr<Node> loaded;
  LoadFrom(bytes, [&](Archive& archive) { archive(loaded); });
  EXPECT_EQ(3, loaded.use_count());
  Node& other = dynamic_cast<Node&>(*loaded->shared[0]);
  EXPECT_EQ(loaded, other.shared[1]);
  EXPECT_FALSE(loaded.owner_before(other.shared[0]) || other.shared[0].owner_before(loaded));
  other.shared.clear();
}

/// Keeps a handle to a node that is held in no other way than by the program and by its child.
class Child : public TypedObject<Child> {
public:
  void Serialize(Archive& archive) override {
    std::shared_ptr<CTypedObject> owner;
    archive(owner);
    parent = owner.get();
    kept.push_back(owner);
    kept.clear();
  }
  CTypedObject* parent = nullptr;
  std::vector<std::shared_ptr<CTypedObject>> kept;
};

TEST(ArchiveOwnership, whatTheProgramHoldsStaysAfterAFailure) {
  const std::string bytes = test::FromHex(
      "01 00 00 00 00 00 00 00 04 00 00 00 4E 6F 64 65 07 00 00 00 00 00 00 00 01 00 00 00 "
      "02 00 00 00 01 00 00 00 05 00 00 00 43 68 69 6C 64 01 00 00 00");
  std::shared_ptr<Node> held;
  {
    Archive archive;
    archive.OpenMem(test::Bytes(bytes), bytes.size());
    archive(held);
    EXPECT_EQ(test::SHORT_READ, test::FailureAt([&] { archive.SyncCheck(); }));
    archive.DiscardLoaded();
  }
  ASSERT_NE(nullptr, held);
  EXPECT_EQ(1, held.use_count());
  EXPECT_EQ(7, held->value);
  EXPECT_EQ(held.get(), dynamic_cast<Child&>(*held->shared.at(0)).parent);
}

/// Owns by a plain pointer.
class Owner : public TypedObject<Owner> {
public:
  Owner() { ++living; }
  ~Owner() override {
    --living;
    delete next;
  }
  void Serialize(Archive& archive) override { archive(next, handle); }
  Owner* next = nullptr;
  std::shared_ptr<Leaf> handle;
};

TEST(ArchiveOwnership, plainPointersAreDiscardedOnceAlsoWhenTheyOwn) {
  Owner chain;
  chain.handle = std::make_shared<Leaf>();
  Owner* last = &chain;
  for (int i = 0; i < 5; ++i) last = last->next = new Owner;
  const std::string bytes = Stored([&](Archive& archive) {
    Owner* first = &chain;
    archive(first);
  });
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    Owner* first = nullptr;
    LoadFrom(std::string_view(bytes).substr(0, size), [&](Archive& archive) {
      EXPECT_EQ(size == bytes.size(), Failure([&] { archive(first); }) == L"(nothing)");
      archive.DiscardLoaded();
      archive.DiscardLoaded();
      first = nullptr;
      EXPECT_EQ(6, living) << size;
    });
    LoadFrom(std::string_view(bytes).substr(0, size), [&](Archive& archive) {
      Failure([&] { archive(first); });
      delete first;  // by the program, and with all behind it, before
      archive.DiscardLoaded();
      EXPECT_EQ(6, living) << size;
    });
    LoadFrom(std::string_view(bytes).substr(0, size), [&](Archive& archive) {
      std::shared_ptr<Owner> handle;
      Failure([&] { archive(handle); });
      handle.reset();
      archive.DiscardLoaded();
      EXPECT_EQ(6, living) << size;
    });
  }
}

TEST(ArchiveOwnership, objectsShareThemselvesWhateverHandleLoadedThem) {
  const auto stored = std::make_shared<Group>();
  stored->children = {std::make_shared<Group>()};
  const std::string bytes = Stored([&](Archive& archive) { archive(*stored, stored->children); });
  LoadFrom(bytes, [](Archive& archive) {
    Group value;
    std::vector<std::shared_ptr<CTypedObject>> handles;
    archive(value, handles);
    Group& group = dynamic_cast<Group&>(*handles.at(0));
    EXPECT_EQ(handles[0], group.shared_from_this());
    EXPECT_TRUE(group.wasShared);
  });
}

TEST(ArchiveOwnership, anObjectHasOneOwnerOfItsKind) {
  const std::string one = "01 00 00 00 00 00 00 00 04 00 00 00 4C 65 61 66 00 00 00 00";
  const std::string twice = test::FromHex(one + " 01 00 00 00");
  const GString refused(L"An object of class Leaf in 'memory file' has more than one owner.");
  LoadFrom(twice, [&](Archive& archive) {
    std::unique_ptr<Leaf> first;
    std::unique_ptr<Leaf> second;
    EXPECT_EQ(refused, Failure([&] { archive(first, second); }));
    EXPECT_NE(nullptr, first);
  });
  LoadFrom(twice, [&](Archive& archive) {
    std::unique_ptr<Leaf> first;
    std::shared_ptr<Leaf> second;
    EXPECT_EQ(refused, Failure([&] { archive(first, second); }));
  });
  LoadFrom(twice, [&](Archive& archive) {
    std::unique_ptr<Leaf> owner;
    Leaf* other = nullptr;
    archive(owner, other);
    EXPECT_EQ(owner.get(), other);
  });
  LoadFrom(twice, [&](Archive& archive) {
    std::unique_ptr<Node> wrong;
    EXPECT_NE(L"(nothing)", Failure([&] { archive(wrong); }));
  });
}

class Forgetful : public Leaf {};

namespace elsewhere {
class Leaf : public TypedObject<Leaf> {};
}  // namespace elsewhere

TEST(ArchiveOwnership, aClassWithoutARecordOfItsOwnIsRefusedWhenItIsStored) {
  Leaf leaf;
  Forgetful forgetful;
  elsewhere::Leaf namesake;
  const auto refusal = [&](std::vector<CTypedObject*> objects) {
    std::string stored;
    const GString failure = Failure([&] { Stored([&](Archive& archive) { archive(objects); }); });
    return failure.String().find(L" cannot be stored as class Leaf.") != std::wstring::npos;
  };
  EXPECT_FALSE(refusal({&leaf, &leaf}));
  EXPECT_TRUE(refusal({&forgetful}));
  EXPECT_TRUE(refusal({&leaf, &forgetful}));
  EXPECT_TRUE(refusal({&namesake}));
}

TEST(ArchiveOwnership, longClassNamesAreCutInMessages) {
  const std::string name(50000, 'x');
  std::string bytes = test::FromHex("01 00 00 00 00 00 00 00 50 C3 00 00") + name;
  LoadFrom(bytes, [&](Archive& archive) {
    CTypedObject* object = nullptr;
    EXPECT_EQ(GString(L"Unable to create object of class ") + GString(name.substr(0, 200)) + L"...",
              Failure([&] { archive.TransferObject(object); }));
  });
}

}  // namespace
}  // namespace shr
