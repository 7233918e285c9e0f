// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Registry.h"

#include <windows.h>

#include <cstddef>
#include <utility>

#include "shared/platform/RawFile.h"

namespace shr::platform {
namespace {

/// Room behind the data of a value, so that text without a terminating zero finds one.
constexpr std::size_t QUERY_SLACK = 10 * sizeof(wchar_t);

/// The system adds the two bytes behind unterminated text to it when they are zero; these are not.
constexpr std::size_t GUARD_SIZE = sizeof(wchar_t);
constexpr char GUARD_BYTE = '\xFF';

thread_local std::uint32_t lastFailure = ERROR_SUCCESS;

RegistryStatus Report(LSTATUS status) {
  if (status != ERROR_SUCCESS) lastFailure = static_cast<std::uint32_t>(status);
  return static_cast<RegistryStatus>(status);
}

}  // namespace

struct RegistryKey::State {
  explicit State(HKEY opened) : key(opened) {}
  ~State() { RegCloseKey(key); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  HKEY key;
};

RegistryKey::RegistryKey() = default;
RegistryKey::RegistryKey(RegistryKey&& other) noexcept = default;
RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept = default;
RegistryKey::~RegistryKey() = default;

RegistryStatus RegistryKey::Open(HKEY__* root, const GString& path, RegistryAccess access) {
  Close();
  const REGSAM rights = access == RegistryAccess::Read ? KEY_READ : KEY_READ | KEY_WRITE;
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, rights, &key);
  if (status == ERROR_SUCCESS) state_ = std::make_unique<State>(key);
  return Report(status);
}

RegistryStatus RegistryKey::Create(HKEY__* root, const GString& path) {
  Close();
  HKEY key = nullptr;
  const LSTATUS status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                         KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) state_ = std::make_unique<State>(key);
  return Report(status);
}

void RegistryKey::Close() {
  state_.reset();
}

RegistryStatus RegistryKey::Query(const GString& name, RegistryValue& value) const {
  if (!state_) return Report(ERROR_INVALID_HANDLE);
  LSTATUS status = ERROR_MORE_DATA;
  // Another writer may make the value longer between the two calls.
  while (status == ERROR_MORE_DATA) {
    DWORD size = 0;
    status = RegQueryValueExW(state_->key, name.c_str(), nullptr, nullptr, nullptr, &size);
    if (status != ERROR_SUCCESS) break;
    std::string bytes(size + QUERY_SLACK, '\0');
    DWORD type = REG_NONE;
    size = static_cast<DWORD>(bytes.size());
    status = RegQueryValueExW(state_->key, name.c_str(), nullptr, &type,
                              reinterpret_cast<BYTE*>(bytes.data()), &size);
    if (status != ERROR_SUCCESS) continue;
    bytes.resize(size);
    value = {static_cast<RegistryType>(type), std::move(bytes)};
  }
  return Report(status);
}

RegistryStatus RegistryKey::Set(const GString& name, const RegistryValue& value) {
  if (!state_) return Report(ERROR_INVALID_HANDLE);
  const std::string guarded = value.bytes + std::string(GUARD_SIZE, GUARD_BYTE);
  return Report(RegSetValueExW(state_->key, name.c_str(), 0, static_cast<DWORD>(value.type),
                               reinterpret_cast<const BYTE*>(guarded.data()),
                               static_cast<DWORD>(value.bytes.size())));
}

RegistryStatus RegistryKey::RemoveValue(const GString& name) {
  if (!state_) return Report(ERROR_INVALID_HANDLE);
  return Report(RegDeleteValueW(state_->key, name.c_str()));
}

RegistryStatus RegistryKey::RemoveKey(const GString& path) {
  if (!state_) return Report(ERROR_INVALID_HANDLE);
  return Report(RegDeleteKeyW(state_->key, path.c_str()));
}

GString RegistryErrorText() {
  return FormatSystemErrorMsg(lastFailure);
}

}  // namespace shr::platform
