// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/RegParamList.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "shared/commands/ParamText.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Registry.h"
#include "shared/platform/WindowsTypes.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

using platform::RegistryAccess;
using platform::RegistryKey;
using platform::RegistryStatus;
using platform::RegistryType;
using platform::RegistryValue;

constexpr int OPEN_FAILED_LINE = 162;
constexpr int WRITE_FAILED_LINE = 166;

/// Returns the text as UTF-16LE without a terminating zero.
std::string ToBytes(const GString& text) {
  std::string bytes(text.size() * sizeof(wchar_t), '\0');
  bytes.resize(WideToUtf16(text, ByteOrder::LittleEndian, bytes.data()));
  return bytes;
}

/// Returns the text of a value up to its first zero unit. A last odd byte is the low half of a
/// unit.
GString FromBytes(std::string bytes) {
  if (bytes.size() % 2 != 0) bytes += '\0';
  std::wstring text(bytes.size() / 2, L'\0');
  text.resize(Utf16ToWide(bytes, ByteOrder::LittleEndian, text.data()));
  text.resize(std::min(text.find(L'\0'), text.size()));
  return GString(std::move(text));
}

}  // namespace

CRegParamList::CRegParamList() : rootKey_(HKEY_CURRENT_USER) {}
CRegParamList::CRegParamList(HKEY__* rootKey, const GString& subKey)
    : rootKey_(rootKey), subKey_(subKey) {}
CRegParamList::CRegParamList(const CRegParamList& other) = default;
CRegParamList& CRegParamList::operator=(const CRegParamList& other) = default;
CRegParamList::~CRegParamList() = default;

void CRegParamList::SetRoot(HKEY__* rootKey, const GString& subKey) {
  rootKey_ = rootKey;
  subKey_ = subKey;
  cache_.clear();
}

void CRegParamList::Set(const GString& name, const GString& value, bool write) {
  DoSet(name, value, write);
}

void CRegParamList::Set(const GString& name, const wchar_t* value, bool write) {
  DoSet(name, value, write);
}

void CRegParamList::Set(const GString& name, const char* value, bool write) {
  DoSet(name, value, write);
}

void CRegParamList::Set(const GString& name, int value, bool write) {
  DoSet(name, ToParamText(value), write);
}

void CRegParamList::Set(const GString& name, unsigned int value, bool write) {
  DoSet(name, ToParamText(value), write);
}

void CRegParamList::Set(const GString& name, unsigned long value, bool write) {
  DoSet(name, ToParamText(value), write);
}

void CRegParamList::Set(const GString& name, std::int64_t value, bool write) {
  DoSet(name, ToParamText(value), write);
}

void CRegParamList::Set(const GString& name, double value, bool write) {
  DoSet(name, ToParamText(value), write);
}

void CRegParamList::SetBool(const GString& name, bool value, bool write) {
  DoSet(name, ToParamText(value), write);
}

bool CRegParamList::Get(const GString& name, GString& value, bool read) const {
  return DoGet(name, value, read);
}

bool CRegParamList::Get(const GString& name, bool& value, bool read) const {
  return GetScanned(name, value, read);
}

bool CRegParamList::Get(const GString& name, int& value, bool read) const {
  return GetScanned(name, value, read);
}

bool CRegParamList::Get(const GString& name, unsigned int& value, bool read) const {
  return GetScanned(name, value, read);
}

bool CRegParamList::Get(const GString& name, unsigned long& value, bool read) const {
  return GetScanned(name, value, read);
}

bool CRegParamList::Get(const GString& name, std::int64_t& value, bool read) const {
  return GetScanned(name, value, read);
}

bool CRegParamList::Get(const GString& name, double& value, bool read) const {
  return GetScanned(name, value, read);
}

GString CRegParamList::GetDef(const GString& name, const GString& defaultValue, bool read) const {
  GString value;
  return Get(name, value, read) ? value : defaultValue;
}

GString CRegParamList::GetDef(const GString& name, const wchar_t* defaultValue, bool read) const {
  return GetDef(name, GString(defaultValue), read);
}

int CRegParamList::GetDef(const GString& name, int defaultValue, bool read) const {
  Get(name, defaultValue, read);
  return defaultValue;
}

unsigned int CRegParamList::GetDef(const GString& name, unsigned int defaultValue,
                                   bool read) const {
  Get(name, defaultValue, read);
  return defaultValue;
}

std::int64_t CRegParamList::GetDef(const GString& name, std::int64_t defaultValue,
                                   bool read) const {
  Get(name, defaultValue, read);
  return defaultValue;
}

double CRegParamList::GetDef(const GString& name, double defaultValue, bool read) const {
  Get(name, defaultValue, read);
  return defaultValue;
}

std::vector<GString> CRegParamList::Names() const {
  std::vector<GString> names;
  for (const auto& [name, text] : cache_) {
    if (!text.empty()) names.push_back(name);
  }
  return names;
}

void CRegParamList::Remove(const GString& name, bool fromRegistry) {
  cache_.erase(name);
  // An empty name would mean the list's own key.
  if (!fromRegistry || name.empty()) return;
  RegistryKey key;
  if (key.Open(rootKey_, subKey_, RegistryAccess::ReadWrite) == RegistryStatus::Success) {
    key.RemoveKey(name);
  }
}

void CRegParamList::DoSet(const GString& name, const GString& value, bool write) {
  const auto known = cache_.find(name);
  if (known != cache_.end() && known->second == value) return;
  if (write) WriteValue(name, value);
  cache_.insert_or_assign(name, value);
}

bool CRegParamList::DoGet(const GString& name, GString& value, bool read) const {
  auto known = cache_.find(name);
  if (known == cache_.end()) {
    known = cache_.emplace(name, read ? ReadValue(name) : GString()).first;
  }
  if (known->second.empty()) return false;
  value = known->second;
  return true;
}

template <typename Value>
bool CRegParamList::GetScanned(const GString& name, Value& value, bool read) const {
  GString text;
  return DoGet(name, text, read) && FromParamText(text, value);
}

void CRegParamList::WriteValue(const GString& name, const GString& value) const {
  RegistryKey key;
  if (key.Create(rootKey_, subKey_) != RegistryStatus::Success) {
    ThrowErrorImpl(L"RegParamList", OPEN_FAILED_LINE, L"Unable to open registry key '%s'.",
                   subKey_.c_str());
  }
  if (key.Set(name, {RegistryType::Text, ToBytes(value)}) != RegistryStatus::Success) {
    ThrowErrorImpl(L"RegParamList", WRITE_FAILED_LINE, L"Unable to write registry key '%s'.",
                   name.c_str());
  }
}

GString CRegParamList::ReadValue(const GString& name) const {
  RegistryKey key;
  RegistryValue value;
  if (key.Open(rootKey_, subKey_, RegistryAccess::Read) != RegistryStatus::Success ||
      key.Query(name, value) != RegistryStatus::Success || value.type != RegistryType::Text) {
    return GString();
  }
  return FromBytes(std::move(value.bytes));
}

}  // namespace shr
