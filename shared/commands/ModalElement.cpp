// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/ModalElement.h"

namespace shr {

ModalElement::~ModalElement() = default;

StatusCode ModalElement::Execute() {
  return ExecuteImpl();
}

template <>
ModalElementFactoryBase::RegistryType& ModalElementFactoryBase::GetRegistry() {
  static RegistryType registry;
  return registry;
}

ModalElementFactory::ModalElementFactory(const GString& key, ModalElementFactory* creator)
    : ModalElementFactoryBase(key, creator) {}

ModalElementFactory::~ModalElementFactory() = default;

}  // namespace shr
