// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Transfers of containers, typed pointers and shared handles, beside shared/archive/Archive.h.
///
/// `Transfer(archive, x)` takes whatever an archive takes, classes with a `Serialize(Archive&)`,
/// pointers and `std::shared_ptr` to classes derived from `CTypedObject`, `std::vector` and
/// `std::map` of any of these.
///
///     void CMap::Serialize(Archive& archive) {
///       Transfer(archive, depths_);   // std::vector<double>: one block
///       Transfer(archive, layers_);   // std::vector<std::shared_ptr<CLayer>>
///       Transfer(archive, names_);    // std::map<int, GString>
///     }
///
/// Threads: as the archive.

#pragma once

#include <algorithm>
#include <concepts>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>
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
requires(
    requires(Archive& a, T& v) { a.Transfer(v); } ||
    requires(Archive & a, T& v) { v.Serialize(a); }) void Transfer(Archive& archive, T& value) {
  if constexpr (requires { archive.Transfer(value); }) {
    archive.Transfer(value);
  } else {
    value.Serialize(archive);
  }
}

/// Transfers a reference as `Archive::TransferObject` does.
/// Errors: "An object of class %s in '%s' stands where another is expected."; the pointer is then
/// as it was.
template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, T*& object);

/// Transfers a reference. All handles loaded for one object share its ownership; do not mix them
/// with pointers that own.
template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::shared_ptr<T>& handle);

/// Transfers an unsigned 32-bit count and the elements. Loading replaces the content; memory grows
/// with the bytes that really arrive.
template <class T>
void Transfer(Archive& archive, std::vector<T>& values);

/// Transfers an unsigned 32-bit count and each key with its value, in the order of the keys. Of
/// equal keys in a stream the first one is kept.
template <class K, class V, class Less>
void Transfer(Archive& archive, std::map<K, V, Less>& values);

// Implementation details follow.

namespace ArchivePrivate {

/// Elements for which room is made before the first of them has arrived.
inline constexpr std::size_t MOST_RESERVED = 1024;
/// Bytes of a block that are moved, and for which memory is taken, at a time.
inline constexpr std::size_t BLOCK_PIECE = std::size_t{1} << 26;

/// Transfers the number of elements, each of which takes `bytesEach` bytes or more.
inline std::size_t TransferSize(Archive& archive, std::size_t size, std::size_t bytesEach) {
  archive.TransferCount(size);
  archive.RequireBytes(std::uint64_t{size} * bytesEach);
  return size;
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

}  // namespace ArchivePrivate

template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, T*& object) {
  CTypedObject* base = object;
  archive.TransferObject(base);
  if (archive.IsStoring()) return;
  T* const loaded = dynamic_cast<T*>(base);
  if (base != nullptr && loaded == nullptr) archive.ThrowUnexpectedClass(*base);
  object = loaded;
}

template <std::derived_from<CTypedObject> T>
void Transfer(Archive& archive, std::shared_ptr<T>& handle) {
  T* object = handle.get();
  Transfer(archive, object);
  if (archive.IsStoring()) return;
  handle = std::shared_ptr<T>(archive.GetManagedLoadStorage().UnmanagedToManaged(object), object);
}

template <class T>
void Transfer(Archive& archive, std::vector<T>& values) {
  constexpr std::size_t BYTES_EACH = IS_BLOCK_VALUE<T> ? sizeof(T) : 1;
  const std::size_t size = ArchivePrivate::TransferSize(archive, values.size(), BYTES_EACH);
  if constexpr (IS_BLOCK_VALUE<T>) {
    ArchivePrivate::TransferBlock(archive, values, size);
  } else if (archive.IsStoring()) {
    // The elements of a vector of `bool` have no address.
    using Stored = std::conditional_t<std::same_as<T, bool>, bool, T&>;
    for (Stored value : values) Transfer(archive, value);
  } else {
    values.clear();
    values.reserve(std::min(size, ArchivePrivate::MOST_RESERVED));
    for (std::size_t i = 0; i < size; ++i) {
      T value{};
      Transfer(archive, value);
      values.push_back(std::move(value));
    }
  }
}

template <class K, class V, class Less>
void Transfer(Archive& archive, std::map<K, V, Less>& values) {
  const std::size_t size = ArchivePrivate::TransferSize(archive, values.size(), 1);
  if (archive.IsStoring()) {
    for (auto& [key, value] : values) {
      K stored = key;
      Transfer(archive, stored);
      Transfer(archive, value);
    }
    return;
  }
  values.clear();
  for (std::size_t i = 0; i < size; ++i) {
    K key{};
    V value{};
    Transfer(archive, key);
    Transfer(archive, value);
    values.emplace_hint(values.end(), std::move(key), std::move(value));
  }
}

}  // namespace shr
