// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The file that holds one root of the registry: reading it, and replacing it under a lock.
///
/// A change reads the file, changes the content in memory, writes it to a new file beside it, hands
/// that to the disk and renames it over the old one, all under a lock file that every changing
/// process takes. Readers need no lock, since they see the old file or the whole new one. The
/// content is kept in memory and read again only when the file is another one. Threads: all
/// functions may be called on any thread.

#pragma once

#include <functional>

#include "shared/platform/Registry.h"
#include "shared/platform/posix/RegistryStore.h"

namespace shr::platform {

/// What a change did to the content.
enum class StoreChange { None, Made };

/// Hands the content of the root called `hive` to `read` and returns its result. A missing file has
/// no keys but the root.
/// Errors: `IoFailed`, `AccessDenied`, `Damaged`, `UnknownVersion`; the file stays as it is.
RegistryStatus ReadHive(const char* hive,
                        const std::function<RegistryStatus(const RegistryStore&)>& read);

/// Hands the content to `change`, which tells by its second argument whether it changed it, and
/// replaces the file when it did and returned `Success`.
///
/// Errors: those of `ReadHive`, and those of writing, with the file as it was. A damaged file is
/// renamed aside, so that the next change starts with an empty root.
RegistryStatus ChangeHive(
    const char* hive, const std::function<RegistryStatus(RegistryStore&, StoreChange&)>& change);

/// Notes what `RegistryErrorText` returns on this thread.
void SetRegistryErrorText(GString text);

}  // namespace shr::platform
