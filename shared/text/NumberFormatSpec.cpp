// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/NumberFormatSpec.h"

#include "shared/text/GString.h"

namespace shr {
namespace {

constexpr const wchar_t* TEMPLATES[] = {L"%%.%ue", L"%%.%uf", L"%%.%ug"};

}  // namespace

void NumberFormatSpec::SetType(Type type) {
  if (type <= TypeGeneral) type_ = type;
}

GString NumberFormatSpec::GetFormat() const {
  const Type type = type_ <= TypeGeneral ? type_ : TypeGeneral;
  GString format;
  format.FormatString(TEMPLATES[type], digits_);
  return format;
}

}  // namespace shr
