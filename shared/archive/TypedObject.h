// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTypedObject`, the base of all classes that archives store by reference and create by name, and
/// `TypedObject`, which supplies what each of them needs beside its fields.
///
///     struct CLayer : TypedObject<CLayer> {
///       void Serialize(Archive& archive) override { archive(name_, points_); }
///       ...
///     };
///     struct CRaster : TypedObject<CRaster, CLayer> {
///       void Serialize(Archive& archive) override { CLayer::Serialize(archive); archive(cells_); }
///       ...
///     };
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>

#include "shared/Export.h"
#include "shared/archive/TypeInfo.h"
#include "shared/platform/FunctionText.h"

namespace shr {

class Archive;

/// A polymorphic object that knows its class. It holds no data of its own.
class SHARED_API CTypedObject {
public:
  CTypedObject() = default;
  CTypedObject(const CTypedObject&) = default;
  CTypedObject& operator=(const CTypedObject&) = default;
  virtual ~CTypedObject();

  /// Returns the record of the object's own class.
  virtual const CTypeInfo* GetTypeId() const;

  /// Stores or loads the fields; an override first calls that of its parent class. The base does
  /// nothing.
  virtual void Serialize(Archive& archive);

  /// Returns true when the object's class is that of `info` or derived from it.
  bool IsKindOf(const CTypeInfo* info) const { return GetTypeId()->IsKindOf(info); }

  static const CTypeInfo* GetClassTypeId() { return &ClassTypeId; }

  /// Named "CTypedObject"; a root that creates nothing.
  static const CTypeInfo ClassTypeId;
};

/// The name of a class in archives, as an argument of `TypedObject`.
template <std::size_t N>
struct ClassName {
  constexpr ClassName(const char (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) value[i] = text[i];
  }
  char value[N];
};

namespace ArchivePrivate {

using Sharer = std::shared_ptr<CTypedObject> (*)(CTypedObject* object);

/// What deletes a loaded object when its last handle goes, unless it was deleted before.
struct LoadedDeleter {
  void operator()(CTypedObject* object) const {
    if (isArmed) delete object;
  }
  bool isArmed = true;
};

template <class T>
concept SharesItself = requires(T& object) {
  object.weak_from_this();
};

/// Makes the first handle to an object as one to a `T`, by which `shared_from_this()` knows it.
template <class T>
std::shared_ptr<CTypedObject> ShareAs(CTypedObject* object) {
  T* const own = dynamic_cast<T*>(object);
  if (own == nullptr) return nullptr;
  return std::shared_ptr<T>(own, LoadedDeleter());
}

/// Tells the archive that just asked for a new object how to share it.
SHARED_API void NoteSharer(Sharer sharer) noexcept;

/// Returns a text with the name of `T` in it, as the compiler spells it.
template <class T>
constexpr std::string_view CompilerNameOf() {
  return SHARED_FUNCTION_TEXT;
}

/// Returns the name of a class without the namespaces and classes that it is in.
template <class T>
constexpr std::string_view OwnNameOf() {
  constexpr std::string_view KNOWN = CompilerNameOf<double>();
  constexpr std::size_t BEFORE = KNOWN.find("double");
  constexpr std::size_t BEHIND = KNOWN.size() - BEFORE - 6;
  std::string_view name = CompilerNameOf<T>();
  name = name.substr(BEFORE, name.size() - BEFORE - BEHIND);
  const std::size_t last = name.find_last_of(": )");
  return last == std::string_view::npos ? name : name.substr(last + 1);
}

template <class T>
struct OwnName {
  static constexpr std::size_t SIZE = OwnNameOf<T>().size();
  static_assert(SIZE > 0 && OwnNameOf<T>().back() != '>',
                "a class template has no name of its own: name it in TypedObject's third argument");
  constexpr OwnName() {
    for (std::size_t i = 0; i < SIZE; ++i) text[i] = OwnNameOf<T>()[i];
  }
  char text[SIZE + 1] = {};
};
template <class T>
inline constexpr OwnName<T> OWN_NAME;

}  // namespace ArchivePrivate

/// Makes a `T`, as the creator of its record does.
template <class T>
void* CreateTypedObject() {
  T* const object = new T;
  if constexpr (ArchivePrivate::SharesItself<T>) {
    ArchivePrivate::NoteSharer(&ArchivePrivate::ShareAs<T>);
  }
  return static_cast<CTypedObject*>(object);
}

/// The base of a class `Derived` that archives store, between it and its parent class `Base`: it
/// supplies the record and `GetTypeId`, so that the class itself adds `Serialize` only.
///
/// Files know the class by its name without namespaces, or by the third argument, which a class
/// template and a class that was renamed need:
///
///     class CLayer : public TypedObject<CLayer, CTypedObject, "OldLayer"> { ... };
///
/// `Derived` has a public default constructor unless it is abstract. Constructors of `Base` are
/// those of this class.
template <class Derived, class Base = CTypedObject, ClassName NAME = "">
class TypedObject : public Base {
public:
  using Base::Base;

  const CTypeInfo* GetTypeId() const override { return &ClassTypeId; }
  static const CTypeInfo* GetClassTypeId() { return &ClassTypeId; }

  static const CTypeInfo ClassTypeId;

private:
  static constexpr const char* Name() {
    if constexpr (NAME.value[0] == '\0') {
      return ArchivePrivate::OWN_NAME<Derived>.text;
    } else {
      return NAME.value;
    }
  }
  static CTypeInfo::Creator Creator() {
    if constexpr (std::is_abstract_v<Derived>) {
      return nullptr;
    } else {
      return &CreateTypedObject<Derived>;
    }
  }

  // Registers classes that a program only loads and never makes itself.
  template <const CTypeInfo&>
  struct Registered;
  using RegisteredRecord = Registered<ClassTypeId>;
};

// Implementation details follow.

template <class Derived, class Base, ClassName NAME>
const CTypeInfo TypedObject<Derived, Base, NAME>::ClassTypeId{Name(), Creator(),
                                                              &Base::ClassTypeId};

}  // namespace shr
