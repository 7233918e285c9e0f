// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/archive/TypeInfo.h"

#include <cstring>
#include <map>
#include <mutex>
#include <string>

namespace shr {
namespace {

struct Registry {
  std::mutex mutex;
  // The names are copies: a record may live in a module that is unloaded before the library.
  std::map<std::string, const CTypeInfo*, std::less<>> records;
};

/// Made by the first record that needs it and never destroyed, since records of other modules may
/// go after the library's own static objects.
Registry& GetRegistry() {
  static Registry& registry = *new Registry;
  return registry;
}

}  // namespace

CTypeInfo::CTypeInfo(const char* name, Creator creator, const CTypeInfo* parent)
    : name_(name), creator_(creator), parent_(parent) {
  if (name == nullptr) return;
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  registry.records.try_emplace(name, this);
}

CTypeInfo::~CTypeInfo() {
  Unregister();
}

CTypeInfo& CTypeInfo::operator=(const CTypeInfo& other) {
  const bool isRenamed =
      name_ == nullptr || other.name_ == nullptr || std::strcmp(name_, other.name_) != 0;
  if (isRenamed) Unregister();
  name_ = other.name_;
  creator_ = other.creator_;
  parent_ = other.parent_;
  return *this;
}

void CTypeInfo::Unregister() noexcept {
  if (name_ == nullptr) return;
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  const auto found = registry.records.find(name_);
  // The name may be that of another record: the first one of a name stays.
  if (found != registry.records.end() && found->second == this) registry.records.erase(found);
}

bool CTypeInfo::IsKindOf(const CTypeInfo* other) const noexcept {
  for (const CTypeInfo* info = this; info != nullptr; info = info->parent_) {
    if (info == other) return true;
  }
  return false;
}

const CTypeInfo* CTypeInfo::FromName(const char* name) {
  if (name == nullptr) return nullptr;
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  const auto found = registry.records.find(name);
  return found == registry.records.end() ? nullptr : found->second;
}

}  // namespace shr
