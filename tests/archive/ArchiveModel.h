// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A small family of stored classes: nodes with a plain reference and shared handles, and a leaf.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/TypedObject.h"

namespace shr::test {

/// A node of a graph. `next` owns nothing, `shared` does.
class Node : public CTypedObject {
public:
  explicit Node(int number = 0) : value(number) {}
  const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
  void Serialize(Archive& archive) override {
    CTypedObject::Serialize(archive);
    archive.Transfer(value);
    Transfer(archive, next);
    Transfer(archive, shared);
  }
  inline static const CTypeInfo ClassTypeId{"Node", &CreateTypedObject<Node>,
                                            &CTypedObject::ClassTypeId};

  int value = 0;
  CTypedObject* next = nullptr;
  std::vector<std::shared_ptr<CTypedObject>> shared;
};

/// A class without references.
class Leaf : public CTypedObject {
public:
  const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
  void Serialize(Archive& archive) override {
    CTypedObject::Serialize(archive);
    archive.Transfer(text);
  }
  inline static const CTypeInfo ClassTypeId{"Leaf", &CreateTypedObject<Leaf>,
                                            &CTypedObject::ClassTypeId};

  std::string text;
};

/// Destroys whatever graph of nodes and leaves a load created, finished or not.
inline void DestroyLoaded(Archive& archive) {
  std::vector<std::shared_ptr<CTypedObject>> handles;
  for (CTypedObject* const object : archive.GetLoadedObjects()) {
    handles.push_back(archive.GetManagedLoadStorage().UnmanagedToManaged(object));
  }
  for (const auto& handle : handles) {
    // Handles of nodes may form cycles.
    if (auto* const node = dynamic_cast<Node*>(handle.get())) node->shared.clear();
  }
}

}  // namespace shr::test
