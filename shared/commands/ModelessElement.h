// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `ModelessElement`, an element such as a tool window that stays beside the user's work, and the
/// registry that makes such elements by name.
///
///     std::unique_ptr<ModelessElement> legend = ModelessElementFactory::Construct(L"Legend");
///     legend->Create(true);   // and shows it
///     legend->Hide();
///     legend->Destroy();
///
/// Threads: one thread an element; for the registry see shared/commands/Factory.h.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/commands/BaseElement.h"
#include "shared/commands/Factory.h"
#include "shared/commands/StatusCode.h"
#include "shared/text/GString.h"

namespace shr {

/// A tool window or the like. It is shown and hidden only while it is created.
class SHARED_API ModelessElement : public BaseElement {
public:
  ~ModelessElement() override;

  /// Creates the element unless it is created, and shows it when `show` is true and it is created.
  void Create(bool show);
  /// Destroys the element and returns how that ended; `Cancelled` when it is not created.
  StatusCode Destroy();
  /// Do nothing when the element is not created.
  void Show();
  void Hide();

private:
  virtual bool IsCreatedImpl() const = 0;
  virtual void CreateImpl() = 0;
  virtual StatusCode DestroyImpl() = 0;
  virtual void HideImpl() = 0;
  virtual void ShowImpl() = 0;

  bool AssertCreated() const { return IsCreatedImpl(); }
};

class ModelessElementFactory;

using ModelessElementFactoryBase = Factory<ModelessElementFactory, ModelessElement, GString>;
template <>
SHARED_API ModelessElementFactoryBase::RegistryType& ModelessElementFactoryBase::GetRegistry();

/// Base of the creators of modeless elements. Keys match exactly, letter case included.
class SHARED_API ModelessElementFactory : public ModelessElementFactoryBase {
public:
  virtual ~ModelessElementFactory();

protected:
  /// Registers `creator` under `key`; the rules are those of `Factory`.
  ModelessElementFactory(const GString& key, ModelessElementFactory* creator);

private:
  friend ModelessElementFactoryBase;

  /// Returns a new element, not created yet.
  virtual std::unique_ptr<ModelessElement> ConstructImpl() const = 0;
};

}  // namespace shr
