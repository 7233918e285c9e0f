// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The part of `Archive` that stores and creates objects; LoadedObjects.cpp has their end.

#include "shared/archive/ArchiveObjects.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

#include "shared/archive/Archive.h"
#include "shared/archive/TypedObject.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Threads.h"
#include "shared/text/GString.h"

namespace shr {
namespace {

using ArchivePrivate::LoadedObject;
using ArchivePrivate::Owner;
using ArchivePrivate::Sharer;

constexpr const wchar_t* UNIT = L"Archive";
constexpr int LINE_CANNOT_CREATE = 426;

/// The stack that is kept for what runs within the innermost level, and for the way back: this
/// share of it, and at most so many bytes.
constexpr std::size_t STACK_RESERVE_SHARE = 4;
constexpr std::size_t MOST_STACK_RESERVE = 256 * 1024;
/// What is used of a stack whose end is not known.
constexpr std::size_t UNKNOWN_STACK_USE = 32 * 1024;

/// How to share the object that this thread created last; null unless its class says so.
thread_local Sharer lastSharer = nullptr;

/// Returns the record of a class whose objects can be created, or null. Records of classes outside
/// the family of `CTypedObject` may be registered too; a file must not reach them.
const CTypeInfo* FindCreatable(const std::string& name) {
  if (std::strlen(name.c_str()) != name.size()) return nullptr;
  const CTypeInfo* const info = CTypeInfo::FromName(name.c_str());
  const bool isUsable = info != nullptr && info->CanCreateInstance() &&
                        info->IsKindOf(CTypedObject::GetClassTypeId());
  return isUsable ? info : nullptr;
}

/// Returns a name for a message, of which a very long one is cut.
GString ShownName(const char* name) {
  constexpr std::size_t MOST = 200;
  std::string shown(name != nullptr ? name : "");
  if (shown.size() > MOST) shown = shown.substr(0, MOST) + "...";
  return GString(shown);
}

std::uintptr_t FloorOfStack() noexcept {
  const std::uintptr_t position = platform::StackPosition();
  const auto bounds = platform::ThreadStackBounds();
  if (!bounds || position < bounds->low || position >= bounds->high) {
    return position > UNKNOWN_STACK_USE ? position - UNKNOWN_STACK_USE : 0;
  }
  const std::size_t share = (bounds->high - bounds->low) / STACK_RESERVE_SHARE;
  return bounds->low + std::min(share, MOST_STACK_RESERVE);
}

}  // namespace

void ArchivePrivate::NoteSharer(Sharer sharer) noexcept {
  lastSharer = sharer;
}

// Depth.

void Archive::EnterLevel() {
  if (levels_ == 0) stackFloor_ = FloorOfStack();
  if (platform::StackPosition() < stackFloor_) ThrowTooDeep(depth_ != 0 ? depth_ : levels_);
  ++levels_;
}

void Archive::ThrowTooDeep(unsigned levels) {
  isCut_ = true;
  ThrowErrorImpl(UNIT, __LINE__, L"Objects in '%s' are nested more than %u levels deep.",
                 GetDisplayName().c_str(), levels);
}

void Archive::SerializeDeeper(CTypedObject& object) {
  struct Depth {
    unsigned& depth;
    explicit Depth(unsigned& levels) : depth(levels) { ++depth; }
    ~Depth() { --depth; }
  };
  ArchivePrivate::Level level(*this);
  if (depth_ >= depthLimit_) ThrowTooDeep(depthLimit_);
  const Depth depth(depth_);
  object.Serialize(*this);
  level.Done();
}

// References.

void Archive::TransferObject(CTypedObject*& object) {
  if (mode_ == Store) {
    StoreObject(object);
  } else {
    object = LoadObject(false, false, nullptr);
  }
}

void Archive::StoreObject(CTypedObject* object) {
  ArchivePrivate::Level level(*this);
  auto [number, isNew] = objects_->NumberOf(object);
  if (!isNew) {
    TransferValue(number);
    level.Done();
    return;
  }
  const CTypeInfo* const info = object->GetTypeId();
  if (info == nullptr || info->GetName() == nullptr) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  bool isNewName = false;
  std::uint32_t index = ClassToIndex(info->GetName(), isNewName);
  if (isNewName) CheckClass(*object, info->GetName());
  const std::type_info* const expected = classTypes_[index];
  if (expected != nullptr && *expected != typeid(*object)) {
    ThrowErrorImpl(UNIT, __LINE__, L"An object of type %s cannot be stored as class %s.",
                   ShownName(typeid(*object).name()).c_str(), ShownName(info->GetName()).c_str());
  }
  TransferValue(number);
  TransferValue(index);
  if (isNewName) StoreText(info->GetName(), std::strlen(info->GetName()));
  SerializeDeeper(*object);
  level.Done();
}

/// Finds out of which type the objects are that loading a class will make. Of classes that cannot
/// be created or are not registered nothing is known: loading tells then.
void Archive::CheckClass(const CTypedObject& object, const char* name) {
  const CTypeInfo* const info = FindCreatable(name);
  if (info == nullptr) return;
  const std::unique_ptr<CTypedObject> made(static_cast<CTypedObject*>(info->CreateInstance()));
  if (made == nullptr) return;
  // The type of the object is as good where they are equal, and stays when a module goes.
  const CTypedObject& other = *made;
  classTypes_.back() = typeid(other) == typeid(object) ? &typeid(object) : &typeid(other);
}

CTypedObject* Archive::LoadObject(bool isHandle, bool isOwner, Sharer sharer) {
  const std::uint32_t number = LoadCount();
  if (number == 0) return nullptr;
  std::uint32_t index = objects_->IndexOf(number);
  const bool isNew = index == LoadedObject::NONE;
  if (isNew) {
    objects_->Reserve();
    CTypedObject* const object = CreateObject(sharer);
    index = objects_->Add(number, object);
    if (sharer != nullptr) managed_->Expect(object, sharer);
    if (!isHandle && !isOwner) objects_->Watch();
  }
  CTypedObject* const object = objects_->At(index).object;
  Owner& owner = objects_->At(index).owner;
  const bool hasOneOwner = owner == Owner::Archive || owner == Owner::Program;
  if ((isOwner && !isNew) || (isHandle && hasOneOwner)) ThrowOwnedTwice(*object);
  if (isOwner) owner = Owner::Archive;
  if (isHandle) {
    managed_->UnmanagedToManaged(object);
    owner = Owner::Handles;
  }
  if (isNew) {
    const ArchivePrivate::ObjectTable::Loading loading(*objects_, *managed_, index);
    SerializeDeeper(*object);
    objects_->At(index).isLoading = false;
  }
  if (isHandle) objects_->NoteHandle(index, managed_->UseCount(object));
  return object;
}

/// Loads the class of a new object and creates it. `sharer` becomes that of the class, if it has
/// one.
CTypedObject* Archive::CreateObject(Sharer& sharer) {
  const std::uint32_t index = LoadCount();
  std::string newName;
  const bool isKnown = index < classNames_.size();
  if (!isKnown) Transfer(newName);
  const std::string& name = isKnown ? classNames_[index] : newName;
  const CTypeInfo* const info = FindCreatable(name);
  lastSharer = nullptr;
  CTypedObject* const object =
      info != nullptr ? static_cast<CTypedObject*>(info->CreateInstance()) : nullptr;
  if (object == nullptr) {
    ThrowErrorImpl(UNIT, LINE_CANNOT_CREATE, L"Unable to create object of class %s",
                   ShownName(name.c_str()).c_str());
  }
  if (lastSharer != nullptr) sharer = lastSharer;
  if (!isKnown) {
    // A table that cannot grow must not lose the object.
    std::unique_ptr<CTypedObject> made(object);
    classNames_.push_back(std::move(newName));
    static_cast<void>(made.release());
  }
  return object;
}

std::uint32_t Archive::ClassToIndex(const char* name, bool& isNew) {
  std::uint32_t index = 0;
  while (index < classNames_.size() && classNames_[index] != name) ++index;
  isNew = index == classNames_.size();
  if (isNew) {
    classTypes_.push_back(nullptr);
    classNames_.emplace_back(name);
  }
  return index;
}

CTypedObject* ArchivePrivate::LoadAccess::LoadShared(Archive& archive, Sharer sharer) {
  return archive.LoadObject(true, false, sharer);
}

CTypedObject* ArchivePrivate::LoadAccess::LoadOwned(Archive& archive) {
  return archive.LoadObject(false, true, nullptr);
}

void ArchivePrivate::LoadAccess::Release(Archive& archive, const CTypedObject* object) noexcept {
  auto& loaded = archive.objects_->Loaded();
  for (auto entry = loaded.rbegin(); entry != loaded.rend(); ++entry) {
    if (entry->object != object || entry->owner != Owner::Archive) continue;
    entry->owner = Owner::Program;
    return;
  }
}

void Archive::ThrowUnexpectedClass(const CTypedObject& object) const {
  ThrowErrorImpl(UNIT, __LINE__, L"An object of class %s in '%s' stands where another is expected.",
                 ShownName(object.GetTypeId()->GetName()).c_str(), GetDisplayName().c_str());
}

void Archive::ThrowOwnedTwice(const CTypedObject& object) const {
  ThrowErrorImpl(UNIT, __LINE__, L"An object of class %s in '%s' has more than one owner.",
                 ShownName(object.GetTypeId()->GetName()).c_str(), GetDisplayName().c_str());
}

}  // namespace shr
