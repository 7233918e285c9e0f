// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/archive/TypeInfo.h"

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
  if (name_ == nullptr) return;
  Registry& registry = GetRegistry();
  const std::lock_guard lock(registry.mutex);
  const auto found = registry.records.find(name_);
  if (found != registry.records.end()) registry.records.erase(found);
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
