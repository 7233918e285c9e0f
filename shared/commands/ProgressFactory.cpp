// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/ProgressFactory.h"

namespace shr {

template <>
ProgressRegistry::RegistryType& ProgressRegistry::GetRegistry() {
  static RegistryType registry;
  return registry;
}

template <>
ProgressFactory*& ProgressFactoryBase::DefaultCreator() {
  static ProgressFactory* creator = nullptr;
  return creator;
}

ProgressFactory::ProgressFactory(const GString& key, ProgressFactory* creator)
    : ProgressFactoryBase(key, creator) {}

ProgressFactory::~ProgressFactory() = default;

}  // namespace shr
