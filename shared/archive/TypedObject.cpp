// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/archive/TypedObject.h"

#include "shared/archive/Archive.h"
#include "shared/archive/ArchiveObjects.h"

namespace shr {

const CTypeInfo CTypedObject::ClassTypeId("CTypedObject", nullptr, nullptr);

CTypedObject::~CTypedObject() {
  ArchivePrivate::DeathWatch::Note(this);
}

const CTypeInfo* CTypedObject::GetTypeId() const {
  return &ClassTypeId;
}

void CTypedObject::Serialize(Archive&) {}

}  // namespace shr
