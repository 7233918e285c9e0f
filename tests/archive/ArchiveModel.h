// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A small family of stored classes: nodes with a plain reference and shared handles, a leaf, and
/// values within values.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/TypedObject.h"
#include "shared/text/GString.h"

namespace shr::test {

/// A node of a graph. `next` owns nothing, `shared` does.
class Node : public CTypedObject {
public:
  explicit Node(int number = 0) : value(number) {}
  // Declares its record itself, as classes did before `TypedObject`.
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
class Leaf : public TypedObject<Leaf> {
public:
  void Serialize(Archive& archive) override { archive(text); }

  std::string text;
};

/// A value that holds values of its own class.
struct Nest {
  Nest() = default;
  /// Makes `depth` values, one within the other.
  explicit Nest(std::size_t depth) {
    for (std::size_t i = 0; i < depth; ++i) {
      std::vector<Nest> outer(1);
      outer[0].in.swap(in);
      in.swap(outer);
    }
  }
  Nest(Nest&&) = default;
  Nest& operator=(Nest&&) = default;
  /// Takes deep ones apart from outside, for recursion would not come to its end.
  ~Nest() {
    while (!in.empty()) {
      std::vector<Nest> next;
      next.swap(in.back().in);
      in.swap(next);
    }
  }
  void Serialize(Archive& archive) { archive(in); }

  std::vector<Nest> in;
};

/// Returns whether a text is the error for what is nested too deeply.
inline bool IsTooDeep(const GString& failure) {
  return failure.String().find(L" are nested more than ") != std::wstring::npos;
}

}  // namespace shr::test
