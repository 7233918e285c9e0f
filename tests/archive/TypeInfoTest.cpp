// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the root record; looking up by exact names; families; unnamed, unregistered, abstract and
// doubled records; the end of a record; copies; many threads.

#include "shared/archive/TypeInfo.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "shared/archive/TypedObject.h"

namespace shr {
namespace {

class Beacon : public CTypedObject {
public:
  const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
  static const CTypeInfo ClassTypeId;
};
const CTypeInfo Beacon::ClassTypeId("Beacon", &CreateTypedObject<Beacon>,
                                    &CTypedObject::ClassTypeId);

class NameOnly : public CTypeInfo {
public:
  explicit NameOnly(const char* name) : CTypeInfo(name) {}
};

TEST(TypeInfo, theRootIsRegisteredAndCreatesNothing) {
  const CTypeInfo* const root = CTypeInfo::FromName("CTypedObject");
  ASSERT_EQ(CTypedObject::GetClassTypeId(), root);
  EXPECT_STREQ("CTypedObject", root->GetName());
  EXPECT_EQ(nullptr, root->GetParent());
  EXPECT_FALSE(root->CanCreateInstance());
  EXPECT_EQ(nullptr, root->CreateInstance());
  EXPECT_EQ(root, CTypedObject().GetTypeId());
}

TEST(TypeInfo, classesAreFoundByTheirExactNameAndCreated) {
  for (const char* const name : {"beacon", "Beaco", "Beacons", "", "ctypedobject"}) {
    EXPECT_EQ(nullptr, CTypeInfo::FromName(name)) << name;
  }
  EXPECT_EQ(nullptr, CTypeInfo::FromName(nullptr));
  const CTypeInfo* const info = CTypeInfo::FromName("Beacon");
  ASSERT_EQ(&Beacon::ClassTypeId, info);
  ASSERT_TRUE(info->CanCreateInstance());
  const std::unique_ptr<CTypedObject> made(static_cast<CTypedObject*>(info->CreateInstance()));
  EXPECT_NE(nullptr, dynamic_cast<Beacon*>(made.get()));
}

TEST(TypeInfo, familiesFollowParentsAndCompareRecords) {
  const CTypeInfo unrelated("Unrelated", nullptr, nullptr);
  const CTypeInfo sameName(nullptr, nullptr, nullptr);
  const Beacon beacon;
  EXPECT_TRUE(Beacon::ClassTypeId.IsKindOf(&Beacon::ClassTypeId));
  EXPECT_TRUE(beacon.IsKindOf(CTypedObject::GetClassTypeId()));
  EXPECT_FALSE(CTypedObject().IsKindOf(&Beacon::ClassTypeId));
  EXPECT_FALSE(beacon.IsKindOf(&unrelated));
  EXPECT_FALSE(beacon.IsKindOf(&sameName));
  EXPECT_FALSE(beacon.IsKindOf(nullptr));
}

TEST(TypeInfo, recordsComeAndGoByName) {
  {
    const CTypeInfo first("Passing", nullptr, nullptr);
    const CTypeInfo second("Passing", &CreateTypedObject<Beacon>, nullptr);
    EXPECT_EQ(&first, CTypeInfo::FromName("Passing"));
  }
  EXPECT_EQ(nullptr, CTypeInfo::FromName("Passing"));
  const NameOnly bare("Bare");
  EXPECT_STREQ("Bare", bare.GetName());
  EXPECT_FALSE(bare.CanCreateInstance());
  EXPECT_EQ(nullptr, CTypeInfo::FromName("Bare"));
}

TEST(TypeInfo, copiesLeaveTheRegistryAlone) {
  const CTypeInfo original("Original", &CreateTypedObject<Beacon>, &CTypedObject::ClassTypeId);
  {
    const CTypeInfo copy(original);
    EXPECT_STREQ("Original", copy.GetName());
    EXPECT_EQ(&original, CTypeInfo::FromName("Original"));
    CTypeInfo assigned("Assigned", nullptr, nullptr);
    assigned = original;
    EXPECT_TRUE(assigned.CanCreateInstance());
    EXPECT_EQ(nullptr, CTypeInfo::FromName("Assigned"));
    const CTypeInfo rival("Original", nullptr, nullptr);
  }
  EXPECT_EQ(&original, CTypeInfo::FromName("Original"));
}

TEST(TypeInfo, manyThreadsRegisterAtOnce) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([number] {
      const std::string name = "Thread" + std::to_string(number);
      for (int i = 0; i < 200; ++i) {
        const CTypeInfo info(name.c_str(), nullptr, nullptr);
        EXPECT_EQ(&info, CTypeInfo::FromName(name.c_str()));
        EXPECT_NE(nullptr, CTypeInfo::FromName("CTypedObject"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace shr
