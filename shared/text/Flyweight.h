// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Flyweight`, an ordered map in which one value of the mapped type means "none".
///
/// A look-up of a missing key gives that value instead of failing, and the value can never be
/// stored, so a result other than "none" proves that the key is there. It is the table under the
/// factories (shared/commands/Factory.h).
///
///     Flyweight<GString, int> numbers;  // 0 means "none"
///     numbers.Set(L"Layer", 2);
///     numbers.Get(L"Layer");            // 2
///     numbers.Get(L"Map");              // 0
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <utility>

namespace shr {

/// Map from `Key` to `Value`, ordered by `Less`. Requires: `Value` can be compared for equality.
template <typename Key, typename Value, typename Less = std::less<Key>>
class Flyweight {
public:
  using Map = std::map<Key, Value, Less>;
  using const_iterator = typename Map::const_iterator;

  /// Makes an empty map in which `none` stands for a missing value.
  explicit Flyweight(Value none = Value()) : none_(std::move(none)) {}

  /// Returns the value of a missing key.
  const Value& None() const noexcept { return none_; }

  bool Has(const Key& key) const { return map_.find(key) != map_.end(); }

  /// Returns the value of `key`, or `None()`. The reference is valid until the entry changes.
  /// Cost: O(log n).
  const Value& Get(const Key& key) const {
    const auto found = map_.find(key);
    return found != map_.end() ? found->second : none_;
  }

  /// Stores `value` under `key`, replacing an older one.
  /// Errors: `std::invalid_argument` when `value` equals `None()`; the map is unchanged.
  void Set(const Key& key, Value value) {
    if (value == none_) throw std::invalid_argument("Invalid flyweight argument.");
    map_.insert_or_assign(key, std::move(value));
  }

  std::size_t size() const noexcept { return map_.size(); }
  [[nodiscard]] bool empty() const noexcept { return map_.empty(); }
  void clear() noexcept { map_.clear(); }

  /// Visit the entries in the order of their keys.
  const_iterator begin() const noexcept { return map_.begin(); }
  const_iterator end() const noexcept { return map_.end(); }

private:
  Map map_;
  Value none_;
};

}  // namespace shr
