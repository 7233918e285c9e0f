// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Factory`, the registry of named creators behind commands and user-interface elements.
///
/// A creator is an object that makes products of one kind; it registers itself under a key when it
/// is constructed, typically as a static object at load time, and then stays registered. Everyone
/// else makes products by key:
///
///     std::unique_ptr<Command> move = CommandFactory::Construct(L"Move");
///
/// The ready-made registries are in shared/commands/CommandFactory.h, ModalElement.h,
/// ModelessElement.h and ProgressFactory.h. A class that the library exports must have one registry
/// for the library and all its users: its header declares the specialization of `GetRegistry`
/// behind a forward declaration of the creator, and its source defines it around a local static.
///
/// Threads: nothing is locked. Creators register while the program starts; look-ups alone may then
/// run together.

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>

#include "shared/text/Flyweight.h"

namespace shr {

/// Registry of creators, one for each set of template arguments, and base of the creators' class.
///
/// `Creator` derives from this class and offers `std::unique_ptr<Product> ConstructImpl() const`,
/// to which this class needs access. Keys are compared by `Less` alone.
template <typename Creator, typename Product, typename Key, typename Less = std::less<Key>>
class Factory {
public:
  using RegistryType = Flyweight<Key, Creator*, Less>;

  Factory(const Factory&) = delete;
  Factory& operator=(const Factory&) = delete;

  /// Returns true when a creator is registered under `key`.
  /// Errors: `std::invalid_argument` "Invalid factory key requested." for an empty key.
  static bool CanConstruct(const Key& key);

  /// Returns a new product of the creator registered under `key`.
  /// Errors: `std::invalid_argument` "Invalid factory key requested." when there is none.
  static std::unique_ptr<Product> Construct(const Key& key);

  /// Returns the number of registered creators.
  static std::size_t size() { return GetRegistry().size(); }

protected:
  /// Registers `creator` under `key` for the rest of the process.
  /// Lifetime: the creator must outlive the last use of the registry; it is never removed.
  /// Errors: `std::invalid_argument` "Invalid factory initialization." when the key is empty or
  /// taken, or the creator null; nothing is registered.
  Factory(const Key& key, Creator* creator);
  ~Factory() = default;

private:
  static RegistryType& GetRegistry();
};

/// `Factory` with a creator for products that are asked for without a key.
template <typename Creator, typename Product, typename Key, typename Less = std::less<Key>>
class DefaultProductFactory : public Factory<Creator, Product, Key, Less> {
public:
  using Base = Factory<Creator, Product, Key, Less>;
  using Base::Construct;

  /// Returns a new product of the default creator, the first one that was registered.
  /// Errors: `std::invalid_argument` "Invalid default factory constructor requested." when none is.
  static std::unique_ptr<Product> Construct();

protected:
  /// Registers as `Factory` does.
  DefaultProductFactory(const Key& key, Creator* creator);
  ~DefaultProductFactory() = default;

private:
  /// The pointer is null until the first creator registers.
  static Creator*& DefaultCreator();
};

// Implementation details follow.

template <typename Creator, typename Product, typename Key, typename Less>
bool Factory<Creator, Product, Key, Less>::CanConstruct(const Key& key) {
  if (key.empty()) throw std::invalid_argument("Invalid factory key requested.");
  return GetRegistry().Has(key);
}

template <typename Creator, typename Product, typename Key, typename Less>
std::unique_ptr<Product> Factory<Creator, Product, Key, Less>::Construct(const Key& key) {
  const Creator* const creator = GetRegistry().Get(key);
  if (!creator) throw std::invalid_argument("Invalid factory key requested.");
  return creator->ConstructImpl();
}

template <typename Creator, typename Product, typename Key, typename Less>
Factory<Creator, Product, Key, Less>::Factory(const Key& key, Creator* creator) {
  RegistryType& registry = GetRegistry();
  if (key.empty() || !creator || registry.Has(key)) {
    throw std::invalid_argument("Invalid factory initialization.");
  }
  registry.Set(key, creator);
}

template <typename Creator, typename Product, typename Key, typename Less>
typename Factory<Creator, Product, Key, Less>::RegistryType&
Factory<Creator, Product, Key, Less>::GetRegistry() {
  static RegistryType registry;
  return registry;
}

template <typename Creator, typename Product, typename Key, typename Less>
std::unique_ptr<Product> DefaultProductFactory<Creator, Product, Key, Less>::Construct() {
  const Creator* const creator = DefaultCreator();
  if (!creator) throw std::invalid_argument("Invalid default factory constructor requested.");
  return creator->ConstructImpl();
}

template <typename Creator, typename Product, typename Key, typename Less>
DefaultProductFactory<Creator, Product, Key, Less>::DefaultProductFactory(const Key& key,
                                                                          Creator* creator)
    : Base(key, creator) {
  if (!DefaultCreator()) DefaultCreator() = creator;
}

template <typename Creator, typename Product, typename Key, typename Less>
Creator*& DefaultProductFactory<Creator, Product, Key, Less>::DefaultCreator() {
  static Creator* creator = nullptr;
  return creator;
}

}  // namespace shr
