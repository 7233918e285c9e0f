// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The part of `Archive` that stores and creates objects.

#include "shared/archive/ArchiveObjects.h"

#include <cstring>
#include <map>

#include "shared/archive/Archive.h"
#include "shared/archive/TypedObject.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/File.h"
#include "shared/text/GString.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Archive";
constexpr int LINE_CANNOT_CREATE = 426;

/// Returns the record of a class whose objects can be created, or null. Records of classes outside
/// the family of `CTypedObject` may be registered too; a file must not reach them.
const CTypeInfo* FindCreatable(const std::string& name) {
  if (std::strlen(name.c_str()) != name.size()) return nullptr;
  const CTypeInfo* const info = CTypeInfo::FromName(name.c_str());
  const bool isUsable = info != nullptr && info->CanCreateInstance() &&
                        info->IsKindOf(CTypedObject::GetClassTypeId());
  return isUsable ? info : nullptr;
}

}  // namespace

namespace ArchivePrivate {

struct ManagedLoadStorage::Handles {
  std::map<CTypedObject*, std::shared_ptr<CTypedObject>> byAddress;
};

ManagedLoadStorage::ManagedLoadStorage() : handles_(std::make_unique<Handles>()) {}

ManagedLoadStorage::~ManagedLoadStorage() = default;

std::shared_ptr<CTypedObject> ManagedLoadStorage::UnmanagedToManaged(CTypedObject* object) {
  if (object == nullptr) return nullptr;
  const auto [found, isNew] = handles_->byAddress.try_emplace(object);
  if (isNew) found->second.reset(object);
  return found->second;
}

void ManagedLoadStorage::Reset() noexcept {
  // Destructors that run now may ask for handles again; they find an empty storage.
  std::map<CTypedObject*, std::shared_ptr<CTypedObject>> released;
  released.swap(handles_->byAddress);
}

}  // namespace ArchivePrivate

void Archive::TransferObject(CTypedObject*& object) {
  if (mode_ == Store) {
    StoreObject(object);
  } else {
    object = LoadObject();
  }
}

void Archive::StoreObject(CTypedObject* object) {
  auto [number, isNew] = objects_->NumberOf(object);
  TransferValue(number);
  if (!isNew) return;
  const CTypeInfo* const info = object->GetTypeId();
  if (info == nullptr || info->GetName() == nullptr) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  bool isNewName = false;
  std::uint32_t index = ClassToIndex(info->GetName(), isNewName);
  TransferValue(index);
  if (isNewName) StoreText(info->GetName(), std::strlen(info->GetName()));
  SerializeDeeper(*object);
}

CTypedObject* Archive::LoadObject() {
  const std::uint32_t number = LoadCount();
  const auto [known, isKnown] = objects_->ObjectOf(number);
  if (isKnown) return known;
  objects_->Reserve();
  CTypedObject* const object = CreateObject();
  objects_->Add(number, object);
  SerializeDeeper(*object);
  return object;
}

/// Loads the class of a new object and creates it.
CTypedObject* Archive::CreateObject() {
  const std::uint32_t index = LoadCount();
  std::string newName;
  const bool isKnown = index < classNames_.size();
  if (!isKnown) Transfer(newName);
  const std::string& name = isKnown ? classNames_[index] : newName;
  const CTypeInfo* const info = FindCreatable(name);
  CTypedObject* const object =
      info != nullptr ? static_cast<CTypedObject*>(info->CreateInstance()) : nullptr;
  if (object == nullptr) {
    ThrowErrorImpl(UNIT, LINE_CANNOT_CREATE, L"Unable to create object of class %s",
                   GString(name).c_str());
  }
  if (!isKnown) classNames_.push_back(std::move(newName));
  return object;
}

void Archive::SerializeDeeper(CTypedObject& object) {
  struct Level {
    unsigned& depth;
    explicit Level(unsigned& levels) : depth(levels) { ++depth; }
    ~Level() { --depth; }
  };
  if (depth_ >= depthLimit_) {
    ThrowErrorImpl(UNIT, __LINE__, L"Objects in '%s' are nested more than %u levels deep.",
                   GetDisplayName().c_str(), depthLimit_);
  }
  const Level level(depth_);
  object.Serialize(*this);
}

std::uint32_t Archive::ClassToIndex(const char* name, bool& isNew) {
  std::uint32_t index = 0;
  while (index < classNames_.size() && classNames_[index] != name) ++index;
  isNew = index == classNames_.size();
  if (isNew) classNames_.emplace_back(name);
  return index;
}

std::vector<CTypedObject*> Archive::GetLoadedObjects() const {
  return objects_->Created();
}

void Archive::ThrowUnexpectedClass(const CTypedObject& object) const {
  const char* const name = object.GetTypeId()->GetName();
  ThrowErrorImpl(UNIT, __LINE__, L"An object of class %s in '%s' stands where another is expected.",
                 GString(name != nullptr ? name : "").c_str(), GetDisplayName().c_str());
}

}  // namespace shr
