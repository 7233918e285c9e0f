// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/ModelessElement.h"

namespace shr {

ModelessElement::~ModelessElement() = default;

void ModelessElement::Create(bool show) {
  if (!AssertCreated()) CreateImpl();
  if (show) Show();
}

StatusCode ModelessElement::Destroy() {
  return AssertCreated() ? DestroyImpl() : Cancelled;
}

void ModelessElement::Show() {
  if (AssertCreated()) ShowImpl();
}

void ModelessElement::Hide() {
  if (AssertCreated()) HideImpl();
}

template <>
ModelessElementFactoryBase::RegistryType& ModelessElementFactoryBase::GetRegistry() {
  static RegistryType registry;
  return registry;
}

ModelessElementFactory::ModelessElementFactory(const GString& key, ModelessElementFactory* creator)
    : ModelessElementFactoryBase(key, creator) {}

ModelessElementFactory::~ModelessElementFactory() = default;

}  // namespace shr
