// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTypedObject`, the base of all classes that archives store by reference and create by name.
///
///     class CLayer : public CTypedObject {
///     public:
///       const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
///       void Serialize(Archive& archive) override;   // transfers the fields
///       static const CTypeInfo ClassTypeId;
///     };
///     const CTypeInfo CLayer::ClassTypeId("CLayer", &CreateTypedObject<CLayer>,
///                                         &CTypedObject::ClassTypeId);
///
/// Threads: const calls may run together.

#pragma once

#include "shared/Export.h"
#include "shared/archive/TypeInfo.h"

namespace shr {

class Archive;

/// A polymorphic object that knows its class. It holds no data of its own.
class SHARED_API CTypedObject {
public:
  CTypedObject() = default;
  CTypedObject(const CTypedObject&) = default;
  CTypedObject& operator=(const CTypedObject&) = default;
  virtual ~CTypedObject();

  /// Returns the record of the object's own class.
  virtual const CTypeInfo* GetTypeId() const;

  /// Stores or loads the fields; an override first calls that of its parent class. The base does
  /// nothing.
  virtual void Serialize(Archive& archive);

  /// Returns true when the object's class is that of `info` or derived from it.
  bool IsKindOf(const CTypeInfo* info) const { return GetTypeId()->IsKindOf(info); }

  static const CTypeInfo* GetClassTypeId() { return &ClassTypeId; }

  /// Named "CTypedObject"; a root that creates nothing.
  static const CTypeInfo ClassTypeId;
};

/// Makes a `T`, as the creator of its record does.
template <class T>
void* CreateTypedObject() {
  return static_cast<CTypedObject*>(new T);
}

}  // namespace shr
