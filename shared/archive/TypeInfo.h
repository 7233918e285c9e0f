// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTypeInfo`, the record by which a class is found by its name, created and asked for its family.
///
/// Every class that takes part owns one static record; shared/archive/TypedObject.h shows how a
/// class that archives store by reference declares its own.
///
///     const CTypeInfo* info = CTypeInfo::FromName("CLayer");
///     if (info != nullptr && info->CanCreateInstance()) UseLayer(info->CreateInstance());
///
/// Threads: records may be made, destroyed and looked up on any thread.

#pragma once

#include "shared/Export.h"

namespace shr {

/// The name of a class, how an instance is made, and the record of its parent class.
///
/// A process-wide registry leads from names to records. Names are compared byte by byte, records by
/// their address. Lifetime: a record stays where it is while others may look it up or name it as
/// their parent, so records are static objects. A copy says the same but is not registered, so its
/// end changes nothing; families know the original only, so hold records by pointer.
class SHARED_API CTypeInfo {
public:
  /// Returns a new default-constructed instance. For a class derived from `CTypedObject` this is
  /// the address of that base (`CreateTypedObject` in shared/archive/TypedObject.h).
  using Creator = void* (*)();

  /// Registers the record under `name` unless the name is taken or null. `creator` is null for an
  /// abstract class, `parent` for a root. Lifetime: the text of `name` outlives the record.
  CTypeInfo(const char* name, Creator creator, const CTypeInfo* parent);
  /// Removes this record from the registry.
  ~CTypeInfo();
  CTypeInfo(const CTypeInfo&) = default;
  /// A registered record that gets another name is removed from the registry.
  CTypeInfo& operator=(const CTypeInfo& other);

  /// Returns the name that archives carry; null for an unnamed record.
  const char* GetName() const noexcept { return name_; }
  const CTypeInfo* GetParent() const noexcept { return parent_; }

  bool CanCreateInstance() const noexcept { return creator_ != nullptr; }
  /// Returns a new instance, which the caller owns, or null for an abstract class.
  [[nodiscard]] void* CreateInstance() const { return creator_ != nullptr ? creator_() : nullptr; }

  /// Returns true when `other` is this record or one of its ancestors.
  bool IsKindOf(const CTypeInfo* other) const noexcept;

  /// Returns the record registered under exactly this name, or null. Cost: O(log n) comparisons.
  static const CTypeInfo* FromName(const char* name);

protected:
  /// A record with a name only, which is not registered.
  explicit CTypeInfo(const char* name) noexcept : name_(name) {}

private:
  void Unregister() noexcept;

  const char* name_;
  Creator creator_ = nullptr;
  const CTypeInfo* parent_ = nullptr;
};

}  // namespace shr
