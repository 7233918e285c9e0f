// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The numbers of the objects in a stream; for shared/archive/ only. Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace shr {

class CTypedObject;

namespace ArchivePrivate {

/// Leads from objects to their numbers and back. Null always has number 0.
class ObjectTable {
public:
  ObjectTable() { Reset(); }

  void Reset() noexcept {
    numbers_.clear();
    sparse_.clear();
    created_.clear();
    dense_ = 0;
  }

  struct Number {
    std::uint32_t value;
    bool isNew;
  };

  /// Returns the number of an object to be stored; a new object gets the next one, from 1 on.
  Number NumberOf(const CTypedObject* object) {
    if (object == nullptr) return {0, false};
    const auto next = static_cast<std::uint32_t>(numbers_.size() + 1);
    const auto [found, isNew] = numbers_.try_emplace(object, next);
    return {found->second, isNew};
  }

  struct Found {
    CTypedObject* object;
    bool isKnown;
  };

  /// Returns the loaded object of a number.
  Found ObjectOf(std::uint32_t number) const {
    if (number == 0) return {nullptr, true};
    if (number <= dense_) return {created_[number - 1], true};
    const auto found = sparse_.find(number);
    if (found == sparse_.end()) return {nullptr, false};
    return {found->second, true};
  }

  /// Enters a loaded object under its number.
  void Add(std::uint32_t number, CTypedObject* object) {
    const bool isNext = number == created_.size() + 1 && dense_ == created_.size();
    created_.push_back(object);
    if (isNext) {
      ++dense_;
    } else {
      sparse_.emplace(number, object);
    }
  }

  /// Makes room for one more object, so that none is lost for want of memory to enter it.
  void Reserve() {
    if (created_.size() == created_.capacity()) created_.reserve(created_.size() * 2 + 8);
  }

  const std::vector<CTypedObject*>& Created() const { return created_; }

private:
  std::unordered_map<const CTypedObject*, std::uint32_t> numbers_;
  std::vector<CTypedObject*> created_;
  std::size_t dense_ = 0;  ///< how many of the first objects have the numbers 1, 2, 3, ...
  /// The objects with other numbers, which only damaged or foreign streams have.
  std::unordered_map<std::uint32_t, CTypedObject*> sparse_;
};

}  // namespace ArchivePrivate
}  // namespace shr
