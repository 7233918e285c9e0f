// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The example of docs/archives.md.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/TypedObject.h"
#include "shared/text/GString.h"

namespace shr::test {

// [classes]
struct Shape : TypedObject<Shape> {
  std::wstring name;
  void Serialize(Archive& archive) override { archive(name); }
};

struct Circle : TypedObject<Circle, Shape> {
  double x = 0, y = 0, radius = 0;
  void Serialize(Archive& archive) override {
    Shape::Serialize(archive);
    archive(x, y, radius);
  }
};
// [end]

// [use]
inline void SaveMap(const GString& path, std::vector<std::shared_ptr<Shape>>& shapes) {
  Archive archive(path, Archive::Store);
  archive(shapes);
  archive.SyncCheck();
  archive.Close();  // from here on the new file is there; until here, the old one
}

inline std::vector<std::shared_ptr<Shape>> LoadMap(const GString& path) {
  std::vector<std::shared_ptr<Shape>> shapes;
  Archive archive(path, Archive::Load);
  archive(shapes);
  archive.SyncCheck();
  return shapes;
}
// [end]

}  // namespace shr::test
