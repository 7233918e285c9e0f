// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/ParamList.h"

#include <string>

#include "shared/commands/ParamText.h"

namespace shr {

CParamList::CParamList() = default;
CParamList::CParamList(const CParamList& other) = default;
CParamList& CParamList::operator=(const CParamList& other) = default;
CParamList::~CParamList() = default;

void CParamList::Set(const GString& name, const GString& value) {
  DoSet(name, value);
}

void CParamList::Set(const GString& name, const wchar_t* value) {
  DoSet(name, value);
}

void CParamList::Set(const GString& name, const char* value) {
  DoSet(name, value);
}

void CParamList::Set(const GString& name, int value) {
  DoSet(name, ToParamText(value));
}

void CParamList::Set(const GString& name, unsigned int value) {
  DoSet(name, ToParamText(value));
}

void CParamList::Set(const GString& name, double value) {
  DoSet(name, ToParamText(value));
}

void CParamList::SetBool(const GString& name, bool value) {
  DoSet(name, ToParamText(value));
}

bool CParamList::Get(const GString& name, GString& value) const {
  return DoGet(name, value);
}

bool CParamList::Get(const GString& name, bool& value) const {
  return GetScanned(name, value);
}

bool CParamList::Get(const GString& name, int& value) const {
  return GetScanned(name, value);
}

bool CParamList::Get(const GString& name, unsigned int& value) const {
  return GetScanned(name, value);
}

bool CParamList::Get(const GString& name, double& value) const {
  return GetScanned(name, value);
}

void CParamList::Set(const GString& name, int index, const wchar_t* value) {
  Set(Concat(name, index), value);
}

std::vector<GString> CParamList::Names() const {
  std::vector<GString> names;
  names.reserve(values_.size());
  for (const auto& [name, text] : values_) names.push_back(name);
  return names;
}

bool CParamList::Contains(const GString& name) const {
  GString text;
  return DoGet(name, text);
}

bool CParamList::Remove(const GString& name) {
  return values_.erase(name) != 0;
}

void CParamList::CopyFrom(const CParamList& other) {
  if (this == &other) return;
  for (const auto& [name, text] : other.values_) DoSet(name, text);
}

void CParamList::DoSet(const GString& name, const GString& value) {
  values_.insert_or_assign(name, value);
}

bool CParamList::DoGet(const GString& name, GString& value) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return false;
  value = found->second;
  return true;
}

GString CParamList::Concat(const GString& name, int index) {
  return name + GString(std::to_wstring(index));
}

template <typename Value>
bool CParamList::GetScanned(const GString& name, Value& value) const {
  GString text;
  return DoGet(name, text) && FromParamText(text, value);
}

}  // namespace shr
