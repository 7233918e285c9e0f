// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Transfers of containers, enumerations, pointers and handles, beside shared/archive/Archive.h.
///
/// With this header `archive(x, y, z)`, `archive.Transfer(x)` and `Transfer(archive, x)` take all
/// that an archive takes: classes with a `Serialize(Archive&)`, enumerations, arrays,
/// pointers, `std::shared_ptr`, `std::weak_ptr` and `std::unique_ptr` to classes derived from
/// `CTypedObject`, and `std::vector`, `array`, `pair`, `tuple`, `optional`, `variant`, `set`, `map`
/// and their unordered kin of any of these. A function `Transfer(Archive&, T&)` beside a class of
/// one's own joins them.
///
///     void CMap::Serialize(Archive& archive) {
///       archive(depths_,    // std::vector<double>: one block
///               layers_,    // std::vector<std::shared_ptr<CLayer>>
///               names_);    // std::map<int, GString>
///     }
///
/// Threads: as the archive.

#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

#include "shared/archive/Archive.h"
#include "shared/archive/TypedObject.h"

namespace shr {

/// True for types whose vectors are stored as one block, the bytes of their elements in order.
template <class T>
inline constexpr bool IS_BLOCK_VALUE = false;
template <>
inline constexpr bool IS_BLOCK_VALUE<char> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<unsigned char> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<short> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<unsigned short> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<int> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<unsigned int> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<float> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<double> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<Color4b> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<Vec2<float>> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<Vec2<double>> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<Vec3<int>> = true;
template <>
inline constexpr bool IS_BLOCK_VALUE<Vec3<double>> = true;

/// Transfers a value or an object held by value.
template <class T>
requires(ArchivePrivate::HasOwnTransfer<T> ||
         requires(Archive & a, T& v) { v.Serialize(a); }) void Transfer(Archive& archive, T& value);

/// Transfers the number of an enumerator as an integer of its size. Loading takes any number: a
/// program that reads files of others checks it.
template <class T>
requires(std::is_enum_v<T>) void Transfer(Archive& archive, T& value);

/// Transfers a reference as `Archive::TransferObject` does.
/// Errors: "An object of class %s in '%s' stands where another is expected."; the pointer is then
/// as it was.
template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, T*& object);

/// Transfers a reference. All handles loaded for one object share its ownership; do not mix them
/// with pointers that own. A new object is owned by handles before its fields are loaded, so that
/// a failure leaks nothing and `shared_from_this()` works also in its `Serialize`.
template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::shared_ptr<T>& handle);

/// The same without owning: what only weak handles refer to ends with the archive.
template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::weak_ptr<T>& handle);

/// Transfers a typed object as a reference that others may point to, but nobody else may own;
/// any other value as a bool, whether there is one, and the value.
/// Errors: "An object of class %s in '%s' has more than one owner."
template <class T>
void Transfer(Archive& archive, std::unique_ptr<T>& owner);

/// Transfer the elements in order, without a count; characters as text that ends at its first zero
/// unit, which must fit with its terminator.
template <class T, std::size_t N>
void Transfer(Archive& archive, T (&values)[N]);
template <class T, std::size_t N>
void Transfer(Archive& archive, std::array<T, N>& values);
template <class A, class B>
void Transfer(Archive& archive, std::pair<A, B>& values);
template <class... T>
void Transfer(Archive& archive, std::tuple<T...>& values);

/// Transfers a bool, whether there is a value, and the value.
template <class T>
void Transfer(Archive& archive, std::optional<T>& value);

/// Transfers the index of the alternative as an unsigned 32-bit integer, and its value.
/// Errors: "Unrecoverable error reading archive." for an index that the type does not have; an
/// unwritable value for a variant that lost its value by an exception.
template <class... T>
void Transfer(Archive& archive, std::variant<T...>& value);

/// Transfers an unsigned 32-bit count and the elements. Loading replaces the content; memory grows
/// with the bytes that really arrive.
template <class T>
void Transfer(Archive& archive, std::vector<T>& values);
/// The same for integers of 64 bits, 8 bytes each.
template <std::integral T>
requires(sizeof(T) == 8) void Transfer64(Archive& archive, std::vector<T>& values);

/// Transfer an unsigned 32-bit count and each key, with its value, in the order of the keys, also
/// of unordered ones when keys have an order. Of equal keys in a stream the first one is kept.
template <class K, class V, class Less>
void Transfer(Archive& archive, std::map<K, V, Less>& values);
template <class K, class V, class Hash, class Equal>
void Transfer(Archive& archive, std::unordered_map<K, V, Hash, Equal>& values);
template <class K, class Less>
void Transfer(Archive& archive, std::set<K, Less>& values);
template <class K, class Hash, class Equal>
void Transfer(Archive& archive, std::unordered_set<K, Hash, Equal>& values);

// Implementation details follow.

namespace ArchivePrivate {

/// Elements for which room is made before the first of them has arrived.
inline constexpr std::size_t MOST_RESERVED = 1024;
/// The same for elements that may take no bytes, of which any count can be true.
inline constexpr std::size_t MOST_RESERVED_WITHOUT_BYTES = 16;
/// Bytes of a block that are moved, and for which memory is taken, at a time.
inline constexpr std::size_t BLOCK_PIECE = std::size_t{1} << 26;

/// The least bytes that a value takes in a stream. 0 where that is the class's own business.
template <class T>
inline constexpr std::size_t LEAST_BYTES = IS_BLOCK_VALUE<T>         ? sizeof(T)
                                           : std::is_same_v<T, bool> ? 1
                                           : std::is_enum_v<T>       ? sizeof(T)
                                           : HasOwnTransfer<T>       ? 4
                                           : std::is_pointer_v<T>    ? 4
                                                                     : 0;
template <std::derived_from<CTypedObject> T>
inline constexpr std::size_t LEAST_BYTES<std::shared_ptr<T>> = 4;
template <std::derived_from<CTypedObject> T>
inline constexpr std::size_t LEAST_BYTES<std::weak_ptr<T>> = 4;
template <class T>
inline constexpr std::size_t LEAST_BYTES<std::unique_ptr<T>> = 1;
template <class T>
inline constexpr std::size_t LEAST_BYTES<std::optional<T>> = 1;
template <class T>
inline constexpr std::size_t LEAST_BYTES<std::vector<T>> = 4;
template <class K, class V, class Less>
inline constexpr std::size_t LEAST_BYTES<std::map<K, V, Less>> = 4;
template <class K, class Less>
inline constexpr std::size_t LEAST_BYTES<std::set<K, Less>> = 4;
template <class... T>
inline constexpr std::size_t LEAST_BYTES<std::variant<T...>> = 4;
template <class T, std::size_t N>
inline constexpr std::size_t LEAST_BYTES<std::array<T, N>> = N* LEAST_BYTES<T>;
template <class A, class B>
inline constexpr std::size_t LEAST_BYTES<std::pair<A, B>> = LEAST_BYTES<A> + LEAST_BYTES<B>;

/// Transfers the number of elements, each of which takes `leastEach` bytes or more.
inline std::size_t TransferSize(Archive& archive, std::size_t size, std::size_t leastEach) {
  archive.TransferCount(size);
  archive.RequireBytes(std::uint64_t{size} * leastEach);
  return size;
}

/// Calls `transfer` for one element, and counts the element when it took no bytes.
template <std::size_t LEAST, class Action>
void TransferElement(Archive& archive, const Action& transfer) {
  if constexpr (LEAST > 0) {
    transfer();
  } else {
    const std::uint64_t before = archive.GetPosition();
    transfer();
    if (archive.GetPosition() == before) archive.CountWithoutBytes();
  }
}

template <class T>
void TransferBlock(Archive& archive, std::vector<T>& values, std::size_t size) {
  constexpr std::size_t PIECE = BLOCK_PIECE / sizeof(T);
  if (values.size() > size) values.resize(size);
  for (std::size_t done = 0; done < size;) {
    const std::size_t count = std::min(size - done, PIECE);
    if (values.size() < done + count) values.resize(done + count);
    archive.Transfer(static_cast<void*>(values.data() + done),
                     static_cast<unsigned>(count * sizeof(T)));
    done += count;
  }
}

/// Transfers elements that stand one behind the other, without a count.
template <class T>
void TransferArray(Archive& archive, T* values, std::size_t size) {
  if constexpr (IS_BLOCK_VALUE<T>) {
    archive.Transfer(static_cast<void*>(values), static_cast<unsigned>(size * sizeof(T)));
  } else {
    Level level(archive);
    for (std::size_t i = 0; i < size; ++i) TransferAny(archive, values[i]);
    level.Done();
  }
}

/// An element of a set, or key and value of a map, as it can be loaded.
template <class Element>
struct Loadable {
  using Type = Element;
};
template <class K, class V>
struct Loadable<std::pair<const K, V>> {
  using Type = std::pair<K, V>;
};

template <class Element>
void StoreKeyed(Archive& archive, Element& element) {
  auto key = element;  // keys cannot be changed where they are
  TransferAny(archive, key);
}
template <class K, class V>
void StoreKeyed(Archive& archive, std::pair<const K, V>& element) {
  K key = element.first;
  TransferAny(archive, key);
  TransferAny(archive, element.second);
}

/// Returns the elements of an unordered container in the order of their keys, if they have one.
template <class Container>
auto InOrder(Container& values) {
  std::vector<decltype(&*values.begin())> order;
  order.reserve(values.size());
  for (auto& value : values) order.push_back(&value);
  if constexpr (requires(const typename Container::key_type& key) { key < key; }) {
    std::sort(order.begin(), order.end(), [](auto* a, auto* b) {
      if constexpr (requires { a->first; }) {
        return a->first < b->first;
      } else {
        return *a < *b;
      }
    });
  }
  return order;
}

/// Transfers a map or a set. `IS_ORDERED` tells whether it keeps its elements in order.
template <bool IS_ORDERED, class Container>
void TransferKeyed(Archive& archive, Container& values) {
  using Element = typename Loadable<typename Container::value_type>::Type;
  constexpr std::size_t LEAST = LEAST_BYTES<Element>;
  Level level(archive);
  const std::size_t size = TransferSize(archive, values.size(), LEAST);
  if (archive.IsLoading()) {
    values.clear();
    for (std::size_t i = 0; i < size; ++i) {
      Element element{};
      TransferElement<LEAST>(archive, [&] { TransferAny(archive, element); });
      values.emplace_hint(values.end(), std::move(element));
    }
  } else if constexpr (IS_ORDERED) {
    for (auto& element : values) {
      TransferElement<LEAST>(archive, [&] { StoreKeyed(archive, element); });
    }
  } else {
    for (auto* element : InOrder(values)) {
      TransferElement<LEAST>(archive, [&] { StoreKeyed(archive, *element); });
    }
  }
  level.Done();
}

/// Returns `base` as a `T`, or throws the error for an object of another class.
template <class T>
T* RequireClass(const Archive& archive, CTypedObject* base) {
  T* const loaded = dynamic_cast<T*>(base);
  if (base != nullptr && loaded == nullptr) archive.ThrowUnexpectedClass(*base);
  return loaded;
}

template <class T>
void TransferOwned(Archive& archive, std::unique_ptr<T>& owner) {
  CTypedObject* base = owner.get();
  if (archive.IsStoring()) {
    archive.TransferObject(base);
    return;
  }
  base = LoadAccess::LoadOwned(archive);
  T* const loaded = RequireClass<T>(archive, base);
  LoadAccess::Release(archive, base);
  owner.reset(loaded);
}

/// Loads the alternative of the index, found by trying them in order.
template <std::size_t I, class... T>
void LoadAlternative(Archive& archive, std::variant<T...>& value, std::size_t index) {
  if constexpr (I < sizeof...(T)) {
    if (index != I) {
      LoadAlternative<I + 1>(archive, value, index);
      return;
    }
    TransferAny(archive, value.template emplace<I>());
  } else {
    archive.ThrowUnreadable();
  }
}

}  // namespace ArchivePrivate

template <class T>
requires(ArchivePrivate::HasOwnTransfer<T> || requires(Archive & a, T& v) {
  v.Serialize(a);
}) void Transfer(Archive& archive, T& value) {
  if constexpr (ArchivePrivate::HasOwnTransfer<T>) {
    archive.Transfer(value);
  } else {
    ArchivePrivate::Level level(archive);
    value.Serialize(archive);
    level.Done();
  }
}

template <class T>
requires(std::is_enum_v<T>) void Transfer(Archive& archive, T& value) {
  auto number = static_cast<std::underlying_type_t<T>>(value);
  if constexpr (sizeof number == 8) {
    archive.Transfer64(number);
  } else {
    archive.Transfer(static_cast<void*>(&number), sizeof number);
  }
  if (archive.IsLoading()) value = static_cast<T>(number);
}

template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, T*& object) {
  CTypedObject* base = object;
  archive.TransferObject(base);
  if (archive.IsStoring()) return;
  object = ArchivePrivate::RequireClass<T>(archive, base);
}

template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::shared_ptr<T>& handle) {
  CTypedObject* base = handle.get();
  if (archive.IsStoring()) {
    archive.TransferObject(base);
    return;
  }
  ArchivePrivate::Sharer sharer = nullptr;
  if constexpr (ArchivePrivate::SharesItself<T>) sharer = &ArchivePrivate::ShareAs<T>;
  base = ArchivePrivate::LoadAccess::LoadShared(archive, sharer);
  T* const object = ArchivePrivate::RequireClass<T>(archive, base);
  handle = std::shared_ptr<T>(archive.GetManagedLoadStorage().UnmanagedToManaged(base), object);
}

template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::weak_ptr<T>& handle) {
  std::shared_ptr<T> shared = handle.lock();
  Transfer(archive, shared);
  handle = shared;
}

template <class T>
void Transfer(Archive& archive, std::unique_ptr<T>& owner) {
  if constexpr (std::derived_from<T, CTypedObject>) {
    ArchivePrivate::TransferOwned(archive, owner);
  } else {
    ArchivePrivate::Level level(archive);
    bool isThere = owner != nullptr;
    archive.Transfer(isThere);
    if (archive.IsLoading()) owner = isThere ? std::make_unique<T>() : nullptr;
    if (isThere) ArchivePrivate::TransferAny(archive, *owner);
    level.Done();
  }
}

template <class T, std::size_t N>
void Transfer(Archive& archive, T (&values)[N]) {
  if constexpr (std::same_as<T, char> || std::same_as<T, wchar_t>) {
    archive.Transfer(values, N);
  } else {
    ArchivePrivate::TransferArray(archive, values, N);
  }
}

template <class T, std::size_t N>
void Transfer(Archive& archive, std::array<T, N>& values) {
  ArchivePrivate::TransferArray(archive, values.data(), N);
}

template <class A, class B>
void Transfer(Archive& archive, std::pair<A, B>& values) {
  ArchivePrivate::Level level(archive);
  archive(values.first, values.second);
  level.Done();
}

template <class... T>
void Transfer(Archive& archive, std::tuple<T...>& values) {
  ArchivePrivate::Level level(archive);
  std::apply(archive, values);
  level.Done();
}

template <class T>
void Transfer(Archive& archive, std::optional<T>& value) {
  ArchivePrivate::Level level(archive);
  bool isThere = value.has_value();
  archive.Transfer(isThere);
  if (archive.IsLoading()) {
    value.reset();
    if (isThere) value.emplace();
  }
  if (isThere) ArchivePrivate::TransferAny(archive, *value);
  level.Done();
}

template <class... T>
void Transfer(Archive& archive, std::variant<T...>& value) {
  ArchivePrivate::Level level(archive);
  std::size_t index = value.index();
  archive.TransferCount(index);  // that of a variant without a value does not fit
  if (archive.IsLoading()) {
    ArchivePrivate::LoadAlternative<0>(archive, value, index);
  } else {
    std::visit([&archive](auto& alternative) { ArchivePrivate::TransferAny(archive, alternative); },
               value);
  }
  level.Done();
}

template <class T>
void Transfer(Archive& archive, std::vector<T>& values) {
  constexpr std::size_t LEAST = ArchivePrivate::LEAST_BYTES<T>;
  static_assert(!std::is_same_v<T, unsigned long>, "use Transfer64, or elements of another type");
  ArchivePrivate::Level level(archive);
  const std::size_t size = ArchivePrivate::TransferSize(archive, values.size(), LEAST);
  if constexpr (IS_BLOCK_VALUE<T>) {
    ArchivePrivate::TransferBlock(archive, values, size);
  } else if (archive.IsStoring()) {
    // The elements of a vector of `bool` have no address.
    using Stored = std::conditional_t<std::same_as<T, bool>, bool, T&>;
    for (Stored value : values) {
      ArchivePrivate::TransferElement<LEAST>(archive, [&] { Transfer(archive, value); });
    }
  } else {
    constexpr std::size_t MOST =
        LEAST > 0 ? ArchivePrivate::MOST_RESERVED : ArchivePrivate::MOST_RESERVED_WITHOUT_BYTES;
    values.clear();
    values.reserve(std::min(size, MOST));
    for (std::size_t i = 0; i < size; ++i) {
      T value{};
      ArchivePrivate::TransferElement<LEAST>(archive, [&] { Transfer(archive, value); });
      values.push_back(std::move(value));
    }
  }
  level.Done();
}

template <std::integral T>
requires(sizeof(T) == 8) void Transfer64(Archive& archive, std::vector<T>& values) {
  ArchivePrivate::Level level(archive);
  const std::size_t size = ArchivePrivate::TransferSize(archive, values.size(), sizeof(T));
  ArchivePrivate::TransferBlock(archive, values, size);
  level.Done();
}

template <class K, class V, class Less>
void Transfer(Archive& archive, std::map<K, V, Less>& values) {
  ArchivePrivate::TransferKeyed<true>(archive, values);
}

template <class K, class V, class Hash, class Equal>
void Transfer(Archive& archive, std::unordered_map<K, V, Hash, Equal>& values) {
  ArchivePrivate::TransferKeyed<false>(archive, values);
}

template <class K, class Less>
void Transfer(Archive& archive, std::set<K, Less>& values) {
  ArchivePrivate::TransferKeyed<true>(archive, values);
}

template <class K, class Hash, class Equal>
void Transfer(Archive& archive, std::unordered_set<K, Hash, Equal>& values) {
  ArchivePrivate::TransferKeyed<false>(archive, values);
}

}  // namespace shr
