// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/CommandFactory.h"

namespace shr {

template <>
CommandFactoryBase::RegistryType& CommandFactoryBase::GetRegistry() {
  static RegistryType registry;
  return registry;
}

CommandFactory::CommandFactory(const GString& key, CommandFactory* creator)
    : CommandFactoryBase(key, creator) {}

CommandFactory::~CommandFactory() = default;

}  // namespace shr
