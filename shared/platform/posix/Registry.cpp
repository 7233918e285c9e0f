// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Registry.h"

#include <string>
#include <utility>

#include "shared/platform/WindowsTypes.h"
#include "shared/platform/posix/RegistryFile.h"
#include "shared/platform/posix/RegistryStore.h"

namespace shr::platform {
namespace {

/// Returns the name of a root's files, or null for anything but a root.
const char* HiveName(HKEY root) {
  if (root == HKEY_CLASSES_ROOT) return "HKEY_CLASSES_ROOT";
  if (root == HKEY_CURRENT_USER) return "HKEY_CURRENT_USER";
  if (root == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
  if (root == HKEY_USERS) return "HKEY_USERS";
  if (root == HKEY_CURRENT_CONFIG) return "HKEY_CURRENT_CONFIG";
  return nullptr;
}

GString& ErrorText() {
  thread_local GString text;
  return text;
}

/// Returns what to say of a failure that no file is to blame for.
const wchar_t* TextOf(RegistryStatus status) {
  switch (status) {
    case RegistryStatus::NotFound:
      return L"There is no such key or value.";
    case RegistryStatus::AccessDenied:
      return L"The key was opened for reading only, has subkeys, or is a root.";
    case RegistryStatus::InvalidHandle:
      return L"The key is not open, or its root is not one.";
    case RegistryStatus::InvalidParameter:
      return L"The name is too long.";
    case RegistryStatus::BadPath:
      return L"The path begins with a backslash.";
    case RegistryStatus::KeyDeleted:
      return L"The key has been deleted.";
    default:
      return L"The operation failed.";
  }
}

RegistryStatus Report(RegistryStatus status) {
  if (status != RegistryStatus::Success) SetRegistryErrorText(TextOf(status));
  return status;
}

}  // namespace

struct RegistryKey::State {
  const char* hive;
  std::u16string path;
  RegistryAccess access;
};

RegistryKey::RegistryKey() = default;
RegistryKey::RegistryKey(RegistryKey&& other) noexcept = default;
RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept = default;
RegistryKey::~RegistryKey() = default;

RegistryStatus RegistryKey::Open(HKEY__* root, const GString& path, RegistryAccess access) {
  Close();
  State opened{HiveName(root), {}, access};
  if (!opened.hive) return Report(RegistryStatus::InvalidHandle);
  RegistryStatus status = RegistryStore::NormalizePath(path, opened.path);
  if (status != RegistryStatus::Success) return Report(status);
  status = ReadHive(opened.hive, [&](const RegistryStore& store) {
    return Report(store.HasKey(opened.path) ? RegistryStatus::Success : RegistryStatus::NotFound);
  });
  if (status == RegistryStatus::Success) state_ = std::make_unique<State>(std::move(opened));
  return status;
}

RegistryStatus RegistryKey::Create(HKEY__* root, const GString& path) {
  const RegistryStatus status = Open(root, path, RegistryAccess::ReadWrite);
  // A damaged file is found again by the change, which keeps it aside.
  if (status != RegistryStatus::NotFound && status != RegistryStatus::Damaged) return status;
  State opened{HiveName(root), {}, RegistryAccess::ReadWrite};
  RegistryStore::NormalizePath(path, opened.path);
  const RegistryStatus made =
      ChangeHive(opened.hive, [&](RegistryStore& store, StoreChange& change) {
        if (store.CreateKey(opened.path)) change = StoreChange::Made;
        return RegistryStatus::Success;
      });
  if (made == RegistryStatus::Success) state_ = std::make_unique<State>(std::move(opened));
  return made;
}

void RegistryKey::Close() {
  state_.reset();
}

RegistryStatus RegistryKey::Query(const GString& name, RegistryValue& value) const {
  if (!state_) return Report(RegistryStatus::InvalidHandle);
  return ReadHive(state_->hive, [&](const RegistryStore& store) {
    const RegistryValue* found = nullptr;
    const RegistryStatus status = store.Find(state_->path, RegistryStore::ToName(name), found);
    if (found) value = *found;
    return Report(status);
  });
}

RegistryStatus RegistryKey::Set(const GString& name, const RegistryValue& value) {
  if (!state_) return Report(RegistryStatus::InvalidHandle);
  if (state_->access == RegistryAccess::Read) return Report(RegistryStatus::AccessDenied);
  return ChangeHive(state_->hive, [&](RegistryStore& store, StoreChange& change) {
    const std::u16string unitName = RegistryStore::ToName(name);
    const RegistryValue* found = nullptr;
    store.Find(state_->path, unitName, found);
    if (found && *found == value) return RegistryStatus::Success;
    const RegistryStatus status = store.Set(state_->path, unitName, value);
    if (status == RegistryStatus::Success) change = StoreChange::Made;
    return Report(status);
  });
}

RegistryStatus RegistryKey::RemoveValue(const GString& name) {
  if (!state_) return Report(RegistryStatus::InvalidHandle);
  if (state_->access == RegistryAccess::Read) return Report(RegistryStatus::AccessDenied);
  return ChangeHive(state_->hive, [&](RegistryStore& store, StoreChange& change) {
    const RegistryStatus status = store.RemoveValue(state_->path, RegistryStore::ToName(name));
    if (status == RegistryStatus::Success) change = StoreChange::Made;
    return Report(status);
  });
}

RegistryStatus RegistryKey::RemoveKey(const GString& path) {
  if (!state_) return Report(RegistryStatus::InvalidHandle);
  std::u16string below;
  const RegistryStatus status = RegistryStore::NormalizePath(path, below);
  if (status != RegistryStatus::Success) return Report(status);
  std::u16string whole = state_->path;
  if (!whole.empty() && !below.empty()) whole += u'\\';
  whole += below;
  return ChangeHive(state_->hive, [&](RegistryStore& store, StoreChange& change) {
    if (!store.HasKey(state_->path)) return Report(RegistryStatus::KeyDeleted);
    const RegistryStatus removed = store.RemoveKey(whole);
    if (removed == RegistryStatus::Success) change = StoreChange::Made;
    return Report(removed);
  });
}

GString RegistryErrorText() {
  return ErrorText();
}

void SetRegistryErrorText(GString text) {
  ErrorText() = std::move(text);
}

}  // namespace shr::platform
