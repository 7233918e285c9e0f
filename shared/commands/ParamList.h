// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CParamList`, a dictionary of named parameters whose values are held as text.
///
/// Setters of a type write the value as text, getters of a type scan it back, so a value may be
/// read as another type than it was set. For parameters that outlive the process use
/// shared/commands/RegParamList.h.
///
///     CParamList list;
///     list.Set(L"Depth", 0.1);          // held as "0.10000000000000001"
///     list.SetN(L"Color", 3, L"Red");   // held under "Color3"
///     double depth = 0;
///     if (list.Get(L"Depth", depth)) ...
///     for (const auto& [name, text] : list) ...
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <concepts>
#include <cstddef>
#include <map>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Parameters by name; names are case-sensitive.
///
/// Text forms: booleans "1" and "0", integers in decimal, doubles with up to 17 significant digits,
/// enough to read back the same double. Narrow text is read in the active ANSI code page.
///
/// A getter of a type skips white space, reads one value at the head of the text and ignores the
/// rest. It returns false and leaves `value` unchanged when the name is missing, its text empty or
/// without such a value, or the value out of range. A bool is read as an int that is not 0. Doubles
/// are read in decimal notation only.
class SHARED_API CParamList {
public:
  using const_iterator = std::map<GString, GString>::const_iterator;

  CParamList();
  CParamList(const CParamList& other);
  CParamList& operator=(const CParamList& other);
  virtual ~CParamList();

  /// Store a value under `name`, replacing an older one. Cost: O(log n).
  void Set(const GString& name, const GString& value);
  void Set(const GString& name, const wchar_t* value);
  void Set(const GString& name, const char* value);
  /// Takes a bool only, and no pointer that would convert to one.
  template <std::same_as<bool> Bool>
  void Set(const GString& name, Bool value) {
    SetBool(name, value);
  }
  void Set(const GString& name, int value);
  void Set(const GString& name, unsigned int value);
  void Set(const GString& name, double value);

  /// Returns true when the name is present, also with an empty text.
  bool Get(const GString& name, GString& value) const;
  bool Get(const GString& name, bool& value) const;
  bool Get(const GString& name, int& value) const;
  bool Get(const GString& name, unsigned int& value) const;
  bool Get(const GString& name, double& value) const;

  /// Do the same under the name followed directly by the index in decimal.
  template <typename Value>
  void SetN(const GString& name, int index, const Value& value) {
    Set(Concat(name, index), value);
  }
  void Set(const GString& name, int index, const wchar_t* value);
  template <typename Value>
  bool GetN(const GString& name, int index, Value& value) const {
    return Get(Concat(name, index), value);
  }

  /// Enumerate pairs of name and text in the order of the names. Valid until the next change.
  const_iterator begin() const noexcept { return values_.begin(); }
  const_iterator end() const noexcept { return values_.end(); }
  std::size_t size() const noexcept { return values_.size(); }
  [[nodiscard]] bool empty() const noexcept { return values_.empty(); }
  /// Returns the names in their order.
  std::vector<GString> Names() const;
  /// Returns true when the name is present, also with an empty text.
  bool Contains(const GString& name) const;

  /// Removes a parameter and returns whether it was there.
  bool Remove(const GString& name);
  /// Removes all parameters.
  void Clear() noexcept { values_.clear(); }
  /// Sets every parameter of `other`; those that are only here stay.
  void CopyFrom(const CParamList& other);

protected:
  /// Stores the text under the name, replacing any previous value.
  virtual void DoSet(const GString& name, const GString& value);
  /// Returns true and the text when the name is present.
  virtual bool DoGet(const GString& name, GString& value) const;

  /// Returns the name followed by the index in decimal.
  static GString Concat(const GString& name, int index);

private:
  void SetBool(const GString& name, bool value);
  template <typename Value>
  bool GetScanned(const GString& name, Value& value) const;

  std::map<GString, GString> values_;
};

}  // namespace shr
