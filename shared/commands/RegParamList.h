// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CRegParamList`, named parameters kept as text in one key of the registry and cached in memory.
///
/// Every call says whether it goes to the registry (`write`, `read`) or to the cache alone. Outside
/// Windows the registry is a file (shared/platform/Registry.h). The text forms of values and the
/// rules of the getters are those of shared/commands/ParamList.h.
///
///     CRegParamList settings(HKEY_CURRENT_USER, L"Software\\Demo\\Window");
///     const int width = settings.GetDef(L"Width", 800, true);
///     settings.Set(L"Width", 1024, true);
///
/// Threads: one thread an object; two objects on the same key do not see each other's caches.

#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

struct HKEY__;

namespace shr {

/// A settings group: filled by the reads that ask for it, written by the calls that ask for it.
/// Nothing is written by the destructor.
///
/// Each parameter is a value of type REG_SZ of its name below the key, without a terminating zero.
/// Names are case-sensitive in the cache and match in any letter case in the registry. An empty
/// text means that the parameter is absent.
class SHARED_API CRegParamList {
public:
  /// Uses the root HKEY_CURRENT_USER itself.
  CRegParamList();
  /// Uses the key at `subKey` below `rootKey`, one of the HKEY_ constants of
  /// shared/platform/WindowsTypes.h. The key is made by the first write.
  CRegParamList(HKEY__* rootKey, const GString& subKey);
  CRegParamList(const CRegParamList& other);
  CRegParamList& operator=(const CRegParamList& other);
  virtual ~CRegParamList();

  /// Changes the key and empties the cache.
  void SetRoot(HKEY__* rootKey, const GString& subKey);
  HKEY__* GetRootKey() const { return rootKey_; }
  const GString& GetRootSubKey() const { return subKey_; }

  /// Store a value in the cache and, with `write`, in the registry. Nothing at all happens when the
  /// cache holds the same text already.
  /// Errors: `Exception` "Unable to open registry key '...'." or "Unable to write registry key
  /// '...'."; the cache is unchanged.
  void Set(const GString& name, const GString& value, bool write);
  void Set(const GString& name, const wchar_t* value, bool write);
  void Set(const GString& name, const char* value, bool write);
  template <std::same_as<bool> Bool>
  void Set(const GString& name, Bool value, bool write) {
    SetBool(name, value, write);
  }
  void Set(const GString& name, int value, bool write);
  void Set(const GString& name, unsigned int value, bool write);
  void Set(const GString& name, unsigned long value, bool write);
  void Set(const GString& name, std::int64_t value, bool write);
  void Set(const GString& name, double value, bool write);

  /// Return true and the value, from the cache when it knows the name, else, with `read`, from the
  /// registry. What is not found or not of type REG_SZ is absent, and stays so in the cache until
  /// it is set or removed here, or `SetRoot` is called.
  bool Get(const GString& name, GString& value, bool read) const;
  bool Get(const GString& name, bool& value, bool read) const;
  bool Get(const GString& name, int& value, bool read) const;
  bool Get(const GString& name, unsigned int& value, bool read) const;
  bool Get(const GString& name, unsigned long& value, bool read) const;
  bool Get(const GString& name, std::int64_t& value, bool read) const;
  bool Get(const GString& name, double& value, bool read) const;

  /// Return the value when `Get` succeeds, otherwise `defaultValue`.
  GString GetDef(const GString& name, const GString& defaultValue, bool read) const;
  GString GetDef(const GString& name, const wchar_t* defaultValue, bool read) const;
  template <std::same_as<bool> Bool>
  bool GetDef(const GString& name, Bool defaultValue, bool read) const {
    Get(name, defaultValue, read);
    return defaultValue;
  }
  int GetDef(const GString& name, int defaultValue, bool read) const;
  unsigned int GetDef(const GString& name, unsigned int defaultValue, bool read) const;
  std::int64_t GetDef(const GString& name, std::int64_t defaultValue, bool read) const;
  double GetDef(const GString& name, double defaultValue, bool read) const;

  /// Forgets the parameter. With `fromRegistry` also deletes the key, not the value, of that name
  /// below the list's key; failures and the empty name are ignored there.
  void Remove(const GString& name, bool fromRegistry);

  /// Returns the names of the parameters that this object knows, in their order: those that were
  /// set here or found in the registry. What nobody asked for is not among them.
  std::vector<GString> Names() const;
  /// Forgets all parameters; what the registry has stays and is read again when asked for.
  void Clear() noexcept { cache_.clear(); }

protected:
  virtual void DoSet(const GString& name, const GString& value, bool write);
  virtual bool DoGet(const GString& name, GString& value, bool read) const;

private:
  void SetBool(const GString& name, bool value, bool write);
  template <typename Value>
  bool GetScanned(const GString& name, Value& value, bool read) const;
  void WriteValue(const GString& name, const GString& value) const;
  GString ReadValue(const GString& name) const;

  HKEY__* rootKey_;
  GString subKey_;
  /// An empty text stands for a parameter that is known to be absent.
  mutable std::map<GString, GString> cache_;
};

}  // namespace shr
