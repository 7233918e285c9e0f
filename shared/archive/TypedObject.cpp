// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/archive/TypedObject.h"

namespace shr {

const CTypeInfo CTypedObject::ClassTypeId("CTypedObject", nullptr, nullptr);

CTypedObject::~CTypedObject() = default;

const CTypeInfo* CTypedObject::GetTypeId() const {
  return &ClassTypeId;
}

void CTypedObject::Serialize(Archive&) {}

}  // namespace shr
