// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `ModalElement`, an element such as a dialog that runs until the user closes it, and the registry
/// that makes such elements by name.
///
///     std::unique_ptr<ModalElement> dialog = ModalElementFactory::Construct(L"Settings");
///     if (dialog->Execute() == Success) Redraw();
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

/// A dialog or the like.
class SHARED_API ModalElement : public BaseElement {
public:
  ~ModalElement() override;

  /// Runs the element and returns how the user left it.
  StatusCode Execute();

private:
  virtual StatusCode ExecuteImpl() = 0;
};

class ModalElementFactory;

using ModalElementFactoryBase = Factory<ModalElementFactory, ModalElement, GString>;
template <>
SHARED_API ModalElementFactoryBase::RegistryType& ModalElementFactoryBase::GetRegistry();

/// Base of the creators of modal elements. Keys match exactly, letter case included.
class SHARED_API ModalElementFactory : public ModalElementFactoryBase {
public:
  virtual ~ModalElementFactory();

protected:
  /// Registers `creator` under `key`; the rules are those of `Factory`.
  ModalElementFactory(const GString& key, ModalElementFactory* creator);

private:
  friend ModalElementFactoryBase;

  /// Returns a new element.
  virtual std::unique_ptr<ModalElement> ConstructImpl() const = 0;
};

}  // namespace shr
