// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Saved maps: the whole model, as read and as edited, in one archive (docs/archive-format.md).
///
/// A file is magic, version, the model and a check; docs/mapreport.md lists its fields. The same
/// model gives the same bytes on every machine.
///
///     CReplacementFile file(path);
///     file.Write(StoreMap(model));
///     file.Commit();
///     Model again = LoadMap(path);

#pragma once

#include <string>
#include <string_view>

#include "examples/mapreport/Model.h"

namespace mapreport {

/// The version that `StoreMap` writes; `LoadMap` reads it and all before it.
inline constexpr int MAP_VERSION = 2;

/// Returns the bytes of a saved map. Storing leaves the model as it is.
std::string StoreMap(Model& model);

/// Returns the model of a saved map.
/// Errors: the library's exception when the file cannot be read, ends early or is damaged;
/// `ThrowInputError` when it is no saved map, one of a later version, or holds what no map holds.
Model LoadMap(const GString& path);
/// The same from bytes in memory; errors name them `name`.
Model LoadMap(std::string_view bytes, const GString& name);

/// Returns eight hexadecimal digits of the model without its history: a 32-bit FNV-1a hash of what
/// `StoreMap` stores of it. Equal models have equal ones.
GString Fingerprint(Model& model);

}  // namespace mapreport
