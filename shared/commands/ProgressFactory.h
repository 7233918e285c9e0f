// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `ProgressFactory`, the registry that makes progress indicators by name.
///
/// The first creator that registers also makes the indicator of those who do not ask for a certain
/// one:
///
///     std::unique_ptr<IProgress> progress = ProgressFactory::Construct();
///     progress->Begin(L"Clipping", polygons.size());
///
/// Threads: see shared/commands/Factory.h.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/commands/Factory.h"
#include "shared/commands/IProgress.h"
#include "shared/text/GString.h"

namespace shr {

class ProgressFactory;

using ProgressRegistry = Factory<ProgressFactory, IProgress, GString>;
using ProgressFactoryBase = DefaultProductFactory<ProgressFactory, IProgress, GString>;
template <>
SHARED_API ProgressRegistry::RegistryType& ProgressRegistry::GetRegistry();
template <>
SHARED_API ProgressFactory*& ProgressFactoryBase::DefaultCreator();

/// Base of the creators of progress indicators. Keys match exactly, letter case included.
class SHARED_API ProgressFactory : public ProgressFactoryBase {
public:
  virtual ~ProgressFactory();

protected:
  /// Registers `creator` under `key`; the rules are those of `DefaultProductFactory`.
  ProgressFactory(const GString& key, ProgressFactory* creator);

private:
  friend ProgressFactoryBase;
  friend ProgressRegistry;

  /// Returns a new indicator.
  virtual std::unique_ptr<IProgress> ConstructImpl() const = 0;
};

}  // namespace shr
